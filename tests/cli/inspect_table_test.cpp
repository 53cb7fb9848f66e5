// "edlconv inspect" for people.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/text_table.h"
#include "tests/cli/lists.h"
#include "tests/cli/program_run.h"
#include "tests/support/compare.h"
#include "tests/support/temp_folder.h"

namespace {

using support::run_edlconv;
using support::RunResult;
using support::with_rates;
using testing::HasSubstr;

std::string kinds() {
  return support::source_path("tests/data/cli/kinds.edl");
}

TEST(InspectTable, EditsAndVideo) {
  const RunResult run = run_edlconv(with_rates({"inspect", kinds()}));
  EXPECT_EQ(run.code, 4);
  EXPECT_TRUE(support::same_lines(
      run.out,
      "CMX 3600 (4 channels), 48000 Hz, 25 frames a second\n"
      "5 edits, 1 video edit\n"
      "\n"
      "event reel     streams from        to          source in   fades   name\n"
      "1     TAPE01   1       10:00:00:00 10:00:10:00 01:00:00:00         TAPE01\n"
      "2     R2       1-2     10:00:10:00 10:00:14:00 02:00:00:00 24/0    R2\n"
      "4     N/A      2       10:00:20:00 10:00:21:00 00:00:01:00         N/A\n"
      "5     T5       3-4     10:00:21:00 10:00:22:00 00:00:05:00         T5\n"
      "6     T6       -       10:00:30:00 10:00:31:00 00:00:07:00         T6\n"
      "\n"
      "video reel             from        to          source in           name\n"
      "3     FILM             10:00:14:00 10:00:15:00 03:00:00:00         FILM\n"));
}

// Widest line of a text.
std::size_t widest(const std::string& text) {
  std::istringstream lines(text);
  std::size_t width = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with('\r')) line.pop_back();
    width = std::max(width, cli::shown_width(line));
  }
  return width;
}

TEST(InspectTable, FitsTheTerminal) {
  const support::TempFolder folder;
  const std::string in = folder.file("in.edl");
  support::write_file(in,
                      "001  T\xC4PE012345  A  C  "
                      "01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n");
  for (const std::uint16_t columns : std::initializer_list<std::uint16_t>{40, 60, 80, 132}) {
    const RunResult run =
        support::run_at_terminal(support::edlconv_path(), with_rates({"inspect", in}), "", columns);
    EXPECT_EQ(run.code, 0);
    EXPECT_LE(widest(run.out), columns) << run.out;
    EXPECT_THAT(run.out, HasSubstr("T\xC3\x84PE"));
  }
}

TEST(InspectTable, EightyColumnsWhereThereIsNoTerminal) {
  const support::TempFolder folder;
  const std::string in = folder.file("in.edl");
  support::write_file(in, support::silent_list);
  const RunResult run = run_edlconv(with_rates({"inspect", in}));
  EXPECT_LE(widest(run.out), 80U);
  const RunResult narrow =
      run_edlconv(with_rates({"inspect", in}), [] { ::setenv("COLUMNS", "50", 1); });
  EXPECT_LE(widest(narrow.out), 50U);
  EXPECT_THAT(narrow.out, HasSubstr("10:00:10:00"));
}

TEST(InspectTable, NothingIsShownOfAListThatCannotBeRead) {
  const support::TempFolder folder;
  const std::string in = folder.file("in.edl");
  support::write_file(in, "TITLE: T\n");
  const RunResult run = run_edlconv(with_rates({"inspect", in}));
  EXPECT_EQ(run.code, 2);
  EXPECT_EQ(run.out, "");
}

TEST(InspectTable, ListWithoutRecords) {
  const support::TempFolder folder;
  const std::string in = folder.file("in.awkward");
  support::write_file(in, "AWKWARD good\n");
  const RunResult run = support::run_toy_edlconv(with_rates({"inspect", in}));
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.out, "Awkward list, 48000 Hz, 25 frames a second\nno edits\n");
}

}  // namespace
