// Names of audio files for the edits of lists that have none: line lists know clips and
// reels.
#pragma once

#include <string>

#include "core/generic_edl_entry.h"

// The name of its reel without blanks at its ends.
[[nodiscard]] std::u16string reel_name_of(const CGenericEdlEntry& entry);

// Gives an edit without a path the name of its clip, else of its reel, as a path. Whether
// it did.
bool give_source_name(CGenericEdlEntry& entry);
