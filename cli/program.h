// The program, over any table of formats.
#pragma once

#include <span>

#include "formats/format_table.h"

namespace cli {

// Reads the arguments, runs the command and answers the exit code.
int run_program(std::span<const FormatRow> rows, int argc, const char* const* argv);

}  // namespace cli
