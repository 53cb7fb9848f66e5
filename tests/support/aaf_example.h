// One AAF file with something of everything that an import reads.
#pragma once

#include "tests/support/aaf_builder.h"

namespace support {

// Adds a composition of the top level with a timecode slot and two sound slots, the one
// that it plays, and two sources, of which one lies in the file.
void describe_everything(AafBuilder& file);

}  // namespace support
