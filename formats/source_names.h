// Names of audio files for the edits of lists that have none: line lists know clips and
// reels.
#pragma once

#include "core/generic_edl_entry.h"

// Gives an edit without a path the name of its clip, else of its reel, as a path. Whether
// it did.
bool give_source_name(CGenericEdlEntry& entry);
