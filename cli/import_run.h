// Reading a list, for every command that needs one.
#pragma once

#include <memory>
#include <string>

#include "cli/arguments.h"
#include "cli/exit_codes.h"
#include "core/generic_edl.h"
#include "formats/format_table.h"

namespace cli {

struct ImportRun {
  const FormatRow* format = nullptr;
  std::unique_ptr<CGenericEdl> edl;
  result_code result = result::not_done;
  // exit_done when the list was read; else the reason has been told.
  ExitCode exit = exit_bad_input;
};

// Finds the format, gives the list its rates and settings, reads it, and applies
// the channel window. Tells what a person needs to know.
ImportRun import_list(std::span<const FormatRow> rows, const Arguments& arguments);

// Why a file cannot be read; empty when nothing seems to be wrong with it.
std::string why_unreadable(const std::string& path);

}  // namespace cli
