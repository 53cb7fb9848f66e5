// The records of an edit list as JSON; docs/inspect_json.md tells the form.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "core/edl_details.h"
#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "core/generic_locator_entry.h"
#include "core/generic_pq_entry.h"
#include "core/generic_reel.h"

namespace cli {

using Json = nlohmann::ordered_json;

// Every field of ENTRY_DETAILS and VIDEO_DETAILS but the owner, under its own name
// and in their order.
Json entry_json(const CGenericEdlEntry& entry);
Json video_entry_json(const CGenericEdlVideoEntry& entry);
Json reel_json(const CGenericReel& reel);
// The disc-level record without its entries.
Json pq_json(const PQ_DETAILS& details);
Json pq_entry_json(const CGenericPQEntry& entry);
Json locator_json(const CGenericLocatorEntry& locator);
Json automation_json(const CGenericAutomationChunk& chunk);

// UTF-8 of a text without its trailing white space.
std::string shown_text(std::u16string_view text);

}  // namespace cli
