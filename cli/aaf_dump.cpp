#include "aaf/aaf_tree.h"

#include "cli/aaf_dump_writers.h"
#include "cli/commands.h"
#include "cli/exit_codes.h"
#include "cli/file_checks.h"
#include "cli/messages.h"

namespace cli {

namespace {

// The libraries' result of a system error: no such library.
constexpr std::int32_t library_not_found = static_cast<std::int32_t>(0x8007007EU);

int refuse(const std::string& path, std::int32_t result) {
  if (result == library_not_found) {
    tell("the AAF object library is not there: neither beside this program nor in the system");
    hint("--aaf-library names one");
    return exit_failed;
  }
  tell(path + ": cannot be read as an AAF file: " + aaf::result_words(result));
  return exit_bad_input;
}

}  // namespace

int dump_aaf(const Arguments& arguments) {
  const std::string why = why_unreadable(arguments.input);
  if (!why.empty()) {
    tell(arguments.input + ": " + why);
    return exit_bad_input;
  }
  const std::unique_ptr<DumpWriter> writer =
      arguments.json ? make_json_dump_writer() : make_text_dump_writer();
  const std::int32_t result = aaf::tell_tree(arguments.input, *writer);
  if (result < 0) return refuse(arguments.input, result);
  if (!writer->finish()) return exit_failed;
  if (writer->faults() == 0) return exit_done;
  tell(arguments.input + ": " +
       counted(writer->faults(), "value could not be read", "values could not be read"));
  return exit_incomplete;
}

}  // namespace cli
