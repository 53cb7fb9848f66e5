// What the program ends with.
#pragma once

namespace cli {

enum ExitCode : int {
  exit_done = 0,
  exit_usage = 1,
  // The input cannot be opened, or is not of the format.
  exit_bad_input = 2,
  // Refused, or failed while writing.
  exit_failed = 3,
  // Done, but something was dropped or refused on the way.
  exit_incomplete = 4,
};

}  // namespace cli
