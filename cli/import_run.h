// Reading a list, for every command that needs one.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "cli/arguments.h"
#include "cli/exit_codes.h"
#include "core/generic_edl.h"
#include "formats/format_table.h"

namespace cli {

// The file to be read, looked at and not yet read.
struct InputFile {
  std::string path;
  // Its first bytes.
  std::string head;
  const FormatRow* format = nullptr;
  // exit_done when it can be read; else the reason has been told.
  ExitCode exit = exit_bad_input;
};

// Finds out whether the input can be read, and as what.
InputFile open_input(std::span<const FormatRow> rows, const Arguments& arguments);

struct ImportRun {
  const FormatRow* format = nullptr;
  std::unique_ptr<CGenericEdl> edl;
  result_code result = result::not_done;
  // exit_done when the list was read; else the reason has been told.
  ExitCode exit = exit_bad_input;
};

// Gives a new list its settings and rates, reads the file into it, and applies the
// channel window. Tells what a person needs to know.
ImportRun import_list(const InputFile& input, const Arguments& arguments);

}  // namespace cli
