// Whole runs of "edlconv convert": what is written, what is told, and the exit code.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>

#include "tests/cli/lists.h"
#include "tests/cli/program_run.h"
#include "tests/support/compare.h"
#include "tests/support/temp_folder.h"

namespace {

using support::read_file;
using support::run_edlconv;
using support::run_toy_edlconv;
using support::RunResult;
using support::silent_list;
using support::TempFolder;
using support::with_rates;
using support::write_file;
using support::written_list;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

struct Convert : testing::Test {
  Convert() { write_file(in, silent_list); }

  TempFolder folder;
  std::string in = folder.file("in.edl");
  std::string out = folder.file("out.edl");
};

TEST_F(Convert, CmxToCmx) {
  const RunResult run = run_edlconv(with_rates({"convert", in, out}));
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(support::same_lines(read_file(out), written_list("out       ")));
}

TEST_F(Convert, ExampleOfTheReadme) {
  const std::string example = support::source_path("examples/feature.edl");
  const RunResult run = run_edlconv({"convert", example, out});
  EXPECT_EQ(run.code, 0) << run.err;
  EXPECT_THAT(read_file(out), HasSubstr("FORMAT: CMX 3600 4-Ch"));
}

TEST_F(Convert, ToTakesTheNameOfAFormat) {
  const std::string list = folder.file("list");
  EXPECT_EQ(run_edlconv(with_rates({"convert", "--to", "cmx340", in, list})).code, 0);
  EXPECT_TRUE(support::same_lines(read_file(list), written_list("list      ", "CMX 340 2-Ch")));
}

TEST_F(Convert, ExtensionOfTheOutputNamesTheFormat) {
  const std::string list = folder.file("list.CMX");
  EXPECT_EQ(run_edlconv(with_rates({"convert", in, list})).code, 0);
  EXPECT_THAT(read_file(list), HasSubstr("FORMAT: CMX 340 2-Ch"));
}

TEST_F(Convert, FormatOfTheInputWinsWhereTheNameFitsIt) {
  // Two formats have this extension; the first of them writes another name.
  const std::string list = folder.file("b.awkward");
  const std::string awkward = folder.file("a.awkward");
  write_file(awkward, "AWKWARD good\n");
  EXPECT_EQ(run_toy_edlconv(with_rates({"convert", awkward, list})).code, 0);
  EXPECT_EQ(read_file(list), "AWKWARD good\n");
  const std::string other = folder.file("c.awkward");
  EXPECT_EQ(run_toy_edlconv(with_rates({"convert", in, other})).code, 0);
  EXPECT_FALSE(support::file_exists(other));
  EXPECT_EQ(read_file(folder.file("c.renamed")), "AWKWARD good\n");
}

TEST_F(Convert, FromNamesTheFormatOfTheInput) {
  // The head says CMX 3600; as a tally list it is none.
  const RunResult run = run_toy_edlconv(with_rates({"convert", "--from", "tally", in, out}));
  EXPECT_EQ(run.code, 2);
  EXPECT_THAT(run.err, HasSubstr(in + " is not a list of the format Tally list"));
  EXPECT_FALSE(support::file_exists(out));
}

TEST_F(Convert, FormatOfTheTestsOutAndBack) {
  const std::string tally = folder.file("a.tally");
  EXPECT_EQ(run_toy_edlconv(with_rates({"convert", in, tally})).code, 0);
  EXPECT_EQ(read_file(tally),
            "TALLY LIST 1\n"
            "1 TAPE01 1 01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n");
  EXPECT_EQ(run_toy_edlconv(with_rates({"convert", tally, out})).code, 0);
  EXPECT_TRUE(support::same_lines(read_file(out), written_list("out       ")));
}

TEST_F(Convert, InPlace) {
  const RunResult run = run_edlconv(with_rates({"convert", in, in}));
  EXPECT_EQ(run.code, 0) << run.err;
  EXPECT_TRUE(support::same_lines(read_file(in), written_list("in        ")));
}

TEST_F(Convert, ChannelWindow) {
  write_file(in,
             "001  T1  A   C  01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n"
             "002  T2  A2  C  01:00:00:00 01:00:10:00 10:00:20:00 10:00:30:00\n");
  EXPECT_EQ(run_edlconv(with_rates({"convert", "--channels", "2:1", in, out})).code, 0);
  EXPECT_TRUE(support::same_lines(
      read_file(out),
      "TITLE: out        FORMAT: CMX 3600 4-Ch \n"
      "001  T2 \tA     C         01:00:00:00 01:00:10:00 10:00:20:00 10:00:30:00 \n"));
}

TEST_F(Convert, TextsGoThroughTheCodePage) {
  // "é" is E9 hex in Windows-1252 and C3 A9 in UTF-8.
  write_file(in, "001  CAF\xE9  A  C  01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n");
  EXPECT_EQ(run_edlconv(with_rates({"convert", in, out})).code, 0);
  EXPECT_THAT(read_file(out), HasSubstr("CAF\xE9 \t"));
  write_file(in, "001  CAF\xC3\xA9  A  C  01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n");
  const RunResult run = run_edlconv(with_rates({"inspect", "--json", "--code-page", "utf-8", in}));
  EXPECT_THAT(run.out, HasSubstr("\"reel_name\":\"CAF\xC3\xA9\""));
}

// --- 2: the input

TEST_F(Convert, MissingInput) {
  const std::string missing = folder.file("no.edl");
  const RunResult run = run_edlconv({"convert", missing, out});
  EXPECT_EQ(run.code, 2);
  EXPECT_EQ(run.err, "edlconv: " + missing + ": No such file or directory\n");
  EXPECT_FALSE(support::file_exists(out));
}

TEST_F(Convert, FolderAsInput) {
  const RunResult run = run_edlconv({"convert", folder.path(), out});
  EXPECT_EQ(run.code, 2);
  EXPECT_EQ(run.err, "edlconv: " + folder.path() + " is a folder\n");
}

TEST_F(Convert, EmptyInput) {
  write_file(in, "");
  const RunResult run = run_edlconv({"convert", in, out});
  EXPECT_EQ(run.code, 2);
  EXPECT_EQ(run.err, "edlconv: " + in + " is empty\n");
}

TEST_F(Convert, UnreadableInput) {
  std::filesystem::permissions(in, std::filesystem::perms::none);
  std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
  const RunResult run = run_edlconv({"convert", in, out}, support::become_nobody);
  EXPECT_EQ(run.code, 2);
  EXPECT_EQ(run.err, "edlconv: " + in + ": Permission denied\n");
}

TEST_F(Convert, DeviceOrPipeAsInput) {
  const RunResult run = run_edlconv({"convert", "/dev/null", out});
  EXPECT_EQ(run.code, 2);
  EXPECT_THAT(run.err, HasSubstr("/dev/null is not a plain file"));
}

TEST_F(Convert, BinaryInput) {
  std::string bytes;
  for (int i = 0; i < 5000; ++i)
    bytes += static_cast<char>((i * 37) % 256);
  write_file(in, bytes);
  RunResult run = run_edlconv({"convert", in, out});
  EXPECT_EQ(run.code, 2);
  EXPECT_THAT(run.err, HasSubstr(in + " is not a list of the format CMX 3600"));
  const std::string unnamed = folder.file("bytes");
  write_file(unnamed, bytes);
  run = run_edlconv({"convert", unnamed, out});
  EXPECT_EQ(run.code, 2);
  EXPECT_THAT(run.err, HasSubstr(unnamed + " is of no format that is known here"));
  EXPECT_FALSE(support::file_exists(out));
}

TEST_F(Convert, ListWithNoEvent) {
  write_file(in, "TITLE: T\nFCM: NON-DROP FRAME\n* nothing here\n");
  const RunResult run = run_edlconv({"convert", in, out});
  EXPECT_EQ(run.code, 2);
  EXPECT_THAT(run.err, HasSubstr("or holds no event of it"));
}

TEST_F(Convert, ResultsOfAnImport) {
  const std::string list = folder.file("a.awkward");
  const auto convert = [&](const std::string& word) {
    write_file(list, "AWKWARD " + word + "\n");
    return run_toy_edlconv(with_rates({"convert", list, folder.file("b.awkward")}));
  };
  RunResult run = convert("damaged");
  EXPECT_EQ(run.code, 2);
  EXPECT_THAT(run.err, HasSubstr(list + " is damaged"));
  run = convert("unread");
  EXPECT_EQ(run.code, 2);
  EXPECT_THAT(run.err, HasSubstr(list + " could not be read as Awkward list"));
  run = convert("failing");
  EXPECT_EQ(run.code, 2);
  EXPECT_THAT(run.err, HasSubstr(list + " could not be read to its end: Input/output error"));
  EXPECT_FALSE(support::file_exists(folder.file("b.awkward")));
}

TEST_F(Convert, NameThatIsNotUtf8) {
  const std::string odd = folder.file("f\xE9.edl");
  write_file(odd, silent_list);
  RunResult run = run_edlconv(with_rates({"convert", odd, out}));
  EXPECT_EQ(run.code, 2);
  EXPECT_THAT(run.err, HasSubstr("is not UTF-8"));
  run = run_edlconv(with_rates({"convert", in, odd}));
  EXPECT_EQ(run.code, 3);
  EXPECT_EQ(read_file(odd), silent_list);
}

// --- 4: something was dropped or refused

TEST_F(Convert, VideoEditsThatTheFormatHasNoPlaceFor) {
  write_file(in, std::string(silent_list) +
                     "002  FILM  V  C  01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n");
  const RunResult run = run_edlconv(with_rates({"convert", in, out}));
  EXPECT_EQ(run.code, 4);
  EXPECT_EQ(run.err,
            "edlconv: warning: 1 video edit left out: CMX 3600 (4 channels) has no place for "
            "video edits\n");
  EXPECT_TRUE(support::same_lines(read_file(out), written_list("out       ")));
}

TEST_F(Convert, LineThatCannotBeRead) {
  write_file(in, std::string("TITLE: T\n\n") +
                     "001  TAPE01  A  C  01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n"
                     "002  TAPE02  A  C  -01:00:00:00 01:00:10:00 10:00:20:00 10:00:30:00\n");
  const RunResult run = run_edlconv(with_rates({"convert", in, out}));
  EXPECT_EQ(run.code, 4);
  EXPECT_THAT(run.err, HasSubstr(in + ":4: error: A time in this line is negative"));
  EXPECT_THAT(run.err, HasSubstr("(event 2)"));
  EXPECT_THAT(run.err,
              HasSubstr(out + " is written, but not all went well: 1 report stands above"));
  EXPECT_TRUE(support::same_lines(read_file(out), written_list("out       ")));
}

TEST_F(Convert, FieldOfNoKnownForm) {
  write_file(in, std::string(silent_list) +
                     "002  TAPE02  AXYZ  C  01:00:00:00 01:00:10:00 10:00:20:00 10:00:30:00\n");
  const RunResult run = run_edlconv(with_rates({"convert", in, out}));
  EXPECT_EQ(run.code, 4);
  EXPECT_THAT(run.err, HasSubstr("1 event has a channel field of no known form"));
}

TEST_F(Convert, EventThatTheFormatCannotHold) {
  write_file(in, std::string(silent_list) +
                     "002  TAPE02  NONE  C  01:00:00:00 01:00:10:00 10:00:20:00 10:00:30:00\n"
                     "AUD  3    4\n");
  const std::string list = folder.file("out.cmx");
  const RunResult run = run_edlconv(with_rates({"convert", in, list}));
  EXPECT_EQ(run.code, 4);
  // The line of the input that was read last says nothing about an event refused.
  EXPECT_THAT(run.err, HasSubstr(list + ": error: "));
  EXPECT_THAT(run.err, HasSubstr("(event 2)"));
  EXPECT_TRUE(support::same_lines(read_file(list), written_list("out       ", "CMX 340 2-Ch")));
}

TEST_F(Convert, MaxReports) {
  std::string list = silent_list;
  for (int i = 2; i < 7; ++i) {
    list += "00" + std::to_string(i) +
            "  TAPE02  A  C  -01:00:00:00 01:00:10:00 10:00:20:00 10:00:30:00\n";
  }
  write_file(in, list);
  const RunResult run = run_edlconv(with_rates({"convert", "--max-reports", "2", in, out}));
  EXPECT_EQ(run.code, 4);
  EXPECT_THAT(run.err, AllOf(HasSubstr("(event 2)"), HasSubstr("(event 3)"),
                             HasSubstr("no further reports are shown"), Not(HasSubstr("(event 4)")),
                             HasSubstr("2 reports stand above")));
}

TEST_F(Convert, BoxesOfAnImport) {
  const std::string list = folder.file("a.awkward");
  write_file(list, "AWKWARD boxes\n");
  const RunResult run = run_toy_edlconv(with_rates({"convert", list, folder.file("b.awkward")}));
  EXPECT_EQ(run.code, 4);
  // An error and a warning count; information and a question do not.
  EXPECT_THAT(run.err, HasSubstr("2 reports stand above"));
  EXPECT_EQ(read_file(folder.file("b.awkward")), "AWKWARD good\n");
}

TEST_F(Convert, ListWithoutEdits) {
  const std::string list = folder.file("a.awkward");
  write_file(list, "AWKWARD good\n");
  const RunResult run = run_toy_edlconv(with_rates({"convert", list, out}));
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.err, "edlconv: warning: the list holds no audio edit\n");
}

TEST_F(Convert, WhoReadsTheMessagesMayGo) {
  write_file(in, std::string(silent_list) +
                     "002  TAPE02  A  C  -01:00:00:00 01:00:10:00 10:00:20:00 10:00:30:00\n");
  const auto close_reader = [] {
    int ends[2];
    if (::pipe(ends) != 0 || ::dup2(ends[1], STDERR_FILENO) < 0) ::_exit(126);
    ::close(ends[0]);
  };
  const RunResult run = run_edlconv({"convert", in, out}, close_reader);
  EXPECT_EQ(run.signal, 0);
  EXPECT_EQ(run.code, 4);
  EXPECT_TRUE(support::same_lines(read_file(out), written_list("out       ")));
}

}  // namespace
