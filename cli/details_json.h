// The records of an edit list as JSON; docs/inspect_json.md tells the form.
#pragma once

#include <nlohmann/json.hpp>

#include "core/generic_edl.h"

namespace cli {

using Json = nlohmann::ordered_json;

Json entries_json(const CObList* entries);
Json video_json(const CObList* entries);
Json reels_json(const CObList* reels);
Json pq_json(const CGenericEdl& edl);
Json locators_json(const CObList* locators);
Json automation_json(const CObList* chunks);

// UTF-8 of a text without its trailing white space.
std::string shown_text(std::u16string_view text);

}  // namespace cli
