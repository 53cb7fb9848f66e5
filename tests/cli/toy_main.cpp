// The program over a table with the formats of the tests behind the real ones.
#include "cli/program.h"
#include "tests/cli/awkward_format.h"
#include "tests/formats/toy/tally_format.h"

int main(int argc, char** argv) {
  std::vector<FormatRow> rows(format_table().begin(), format_table().end());
  rows.insert(rows.end(),
              {tally_row(), writing_row(), awkward_row(), renaming_row(), reading_row()});
  return cli::run_program(rows, argc, argv);
}
