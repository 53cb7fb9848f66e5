// An edit list as a table for people.
#pragma once

#include <string>

#include "core/generic_edl.h"

namespace cli {

// The table of the audio edits, with no line wider than `columns` (80 at the
// least). Times are time code.
std::string entry_table(const CGenericEdl& edl, std::size_t columns);

// Cuts a UTF-8 text to `width` characters, the last of them an ellipsis.
std::string fitted(std::string_view text, std::size_t width);

}  // namespace cli
