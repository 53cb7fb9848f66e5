// Wrong use, help, and the list of formats.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "formats/format_table.h"
#include "tests/cli/lists.h"
#include "tests/cli/program_run.h"
#include "tests/support/temp_folder.h"

namespace {

using support::run_edlconv;
using support::run_toy_edlconv;
using support::RunResult;
using testing::HasSubstr;

void expect_wrong_use(const std::vector<std::string>& arguments, const std::string& told) {
  const RunResult run = run_edlconv(arguments);
  EXPECT_EQ(run.code, 1) << told;
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, testing::StartsWith("edlconv: "));
  EXPECT_THAT(run.err, HasSubstr(told));
}

struct Usage : testing::Test {
  Usage() { support::write_file(in, support::silent_list); }
  support::TempFolder folder;
  std::string in = folder.file("in.edl");
};

TEST_F(Usage, WrongArguments) {
  expect_wrong_use({}, "A subcommand is required");
  expect_wrong_use({"compare"}, "edlconv --help");
  expect_wrong_use({"convert"}, "IN is required");
  expect_wrong_use({"convert", in}, "OUT is required");
  expect_wrong_use({"convert", in, "a.edl", "b.edl"}, "b.edl");
  expect_wrong_use({"convert", "--no-such-thing", in, "a.edl"}, "edlconv convert --help");
  expect_wrong_use({"inspect"}, "IN is required");
}

TEST_F(Usage, WrongValues) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"--frame-rate", "23.976"}, "expects 24|25|29.97|29.97drop|30, not \"23.976\""},
      {{"--sample-rate", "48001"}, "expects one of 32000, 44100"},
      {{"--sample-rate", "48k"}, "not \"48k\""},
      {{"--sample-rate", "0"}, "not \"0\""},
      {{"--channels", "1"}, "not \"1\""},
      {{"--channels", "0:1"}, "not \"0:1\""},
      {{"--channels", "1:0"}, "not \"1:0\""},
      {{"--channels", "1:65536"}, "not \"1:65536\""},
      {{"--channels", "1:2:3"}, "not \"1:2:3\""},
      {{"--channel-map", "1,2,3"}, "20 numbers"},
      {{"--channel-map", "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0"}, "20 numbers"},
      {{"--channel-map", "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,65536"}, "20 numbers"},
      {{"--channel-map", "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,"}, "20 numbers"},
      {{"--assume", "maybe"}, "yes or no"},
      {{"--max-reports", "-1"}, "a whole number"},
      {{"--max-reports", "010x"}, "a whole number"},
      {{"--code-page", "no-such-page"}, "a code page that is known here"},
      {{"--correction", "aaf_clip_rate"}, "NAME=on or NAME=off"},
      {{"--correction", "no_such=on"}, "NAME=on or NAME=off"},
      {{"--setting", "key=1"}, "SECTION/KEY=VALUE"},
      {{"--cmx-channel-mode", "65536"}, "a whole number, 0 to 65535"},
      {{"--cmx-merge-channels", "yes"}, "a whole number"},
      {{"--crossfade-policy", "never"}, "keep|adopt|ask"},
      {{"--essence", "mp3"}, "wave|aifc"},
  };
  for (const auto& [options, told] : cases) {
    std::vector<std::string> arguments = {"inspect", in};
    arguments.insert(arguments.end(), options.begin(), options.end());
    expect_wrong_use(arguments, told);
  }
}

TEST_F(Usage, FormatsThatAreNone) {
  const std::string out = folder.file("out.edl");
  expect_wrong_use({"convert", "--to", "edl", in, out}, "there is no format \"edl\"");
  expect_wrong_use({"convert", "--from", "edl", in, out}, "there is no format \"edl\"");
  expect_wrong_use({"convert", in, folder.file("out")}, "does not say which format to write");
  expect_wrong_use({"convert", in, folder.file("out.txt")}, "does not say which format to write");
  EXPECT_FALSE(support::file_exists(out));
}

TEST_F(Usage, FormatsOfOneDirection) {
  RunResult run = run_toy_edlconv({"convert", "--to", "reading", in, folder.file("a")});
  EXPECT_EQ(run.code, 1);
  EXPECT_EQ(run.err, "edlconv: Reading list can only be read\n");
  run = run_toy_edlconv({"convert", in, folder.file("a.reading")});
  EXPECT_EQ(run.code, 1);
  run = run_toy_edlconv({"convert", "--from", "writing", in, folder.file("a.edl")});
  EXPECT_EQ(run.code, 1);
  EXPECT_EQ(run.err, "edlconv: Writing list can only be written\n");
}

TEST_F(Usage, HelpTeaches) {
  RunResult run = run_edlconv({"--help"});
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.err, "");
  for (const char* const told : {"edlconv convert film.edl film.adl", "Exit codes: 0 done; 1"})
    EXPECT_THAT(run.out, HasSubstr(told));
  run = run_edlconv({"convert", "--help"});
  EXPECT_EQ(run.code, 0);
  for (const char* const told :
       {"--frame-rate 24 --sample-rate 48000", ".before-edlconv", "--to FORMAT", "--export-flag N",
        "Channel modes:", "--channel-map N,N,..."}) {
    EXPECT_THAT(run.out, HasSubstr(told));
  }
  run = run_edlconv({"inspect", "--help"});
  EXPECT_THAT(run.out, HasSubstr("docs/inspect_json.md"));
  EXPECT_THAT(run.out, testing::Not(HasSubstr("--export-flag")));
}

TEST_F(Usage, HelpFitsAPage) {
  for (const char* const command : {"convert", "inspect", "formats"}) {
    std::istringstream lines(run_edlconv({command, "--help"}).out);
    for (std::string line; std::getline(lines, line);)
      EXPECT_LE(line.size(), 96U) << line;
  }
}

TEST_F(Usage, Version) {
  const RunResult run = run_edlconv({"--version"});
  EXPECT_EQ(run.code, 0);
  EXPECT_THAT(run.out, testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(Usage, FormatsListsEveryRow) {
  const RunResult run = run_edlconv({"formats"});
  EXPECT_EQ(run.code, 0);
  for (const FormatRow& row : format_table()) {
    EXPECT_THAT(run.out, HasSubstr("\n" + std::string(row.name) + " "));
    EXPECT_THAT(run.out, HasSubstr(std::string(row.title)));
  }
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'),
            1 + static_cast<std::ptrdiff_t>(format_table().size()));
}

TEST_F(Usage, FormatsAsJson) {
  const RunResult run = run_toy_edlconv({"formats", "--json"});
  EXPECT_EQ(run.code, 0);
  const auto all = nlohmann::json::parse(run.out);
  const auto named = [&all](const std::string& name) {
    return *std::find_if(all.begin(), all.end(),
                         [&name](const auto& row) { return row["name"] == name; });
  };
  EXPECT_EQ(named("cmx340")["extensions"], nlohmann::json::array({".cmx"}));
  EXPECT_EQ(named("tally")["title"], "Tally list");
  EXPECT_EQ(named("reading")["exports"], false);
  EXPECT_EQ(named("writing")["imports"], false);
  EXPECT_EQ(named("cmx3600")["carries"]["video"], false);
}

}  // namespace
