// Which rates a list is read at, and what is told of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/cli/lists.h"
#include "tests/cli/program_run.h"
#include "tests/support/temp_folder.h"

namespace {

using nlohmann::json;
using support::list_with_fcm;
using support::RunResult;
using testing::HasSubstr;
using testing::Not;

struct Rates : testing::Test {
  // Reads a list; the rates that it was read at are in `sample_rate` and
  // `frame_rate`.
  RunResult read(const std::string& list, std::vector<std::string> options,
                 const std::string& name = "in.edl") {
    const std::string in = folder.file(name);
    support::write_file(in, list);
    options.insert(options.begin(), {"inspect", "--json", in});
    RunResult run = support::run_toy_edlconv(options);
    const json object = json::parse(run.out);
    sample_rate = object["sample_rate"];
    frame_rate = object["frame_rate"];
    if (!object["entries"].empty()) source_in = object["entries"][0]["source_in"];
    return run;
  }

  support::TempFolder folder;
  int sample_rate = 0;
  int frame_rate = 0;
  // Of the first edit, which begins at an hour.
  std::int64_t source_in = 0;
};

TEST_F(Rates, ASilentListStandsAt48000And25WithAWarning) {
  const RunResult run = read(support::silent_list, {});
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(sample_rate, 48000);
  EXPECT_EQ(frame_rate, 1);
  EXPECT_EQ(source_in, 172800000);
  EXPECT_THAT(run.err, HasSubstr("warning: "));
  EXPECT_THAT(run.err, HasSubstr("48000 Hz and 25 frames a second are assumed (--sample-rate and "
                                 "--frame-rate)"));
}

TEST_F(Rates, OneThatIsGivenIsNotToldOf) {
  RunResult run = read(support::silent_list, {"--sample-rate", "44100"});
  EXPECT_EQ(sample_rate, 44100);
  EXPECT_EQ(source_in, 158760000);
  EXPECT_THAT(run.err, HasSubstr("25 frames a second is assumed (--frame-rate)"));
  EXPECT_THAT(run.err, Not(HasSubstr("Hz")));
  run = read(support::silent_list, {"--frame-rate", "30"});
  EXPECT_EQ(frame_rate, 4);
  EXPECT_THAT(run.err, HasSubstr("48000 Hz is assumed (--sample-rate)"));
  run = read(support::silent_list, {"--frame-rate", "24", "--sample-rate", "96000"});
  EXPECT_EQ(frame_rate, 0);
  EXPECT_EQ(sample_rate, 96000);
  EXPECT_EQ(run.err, "");
}

TEST_F(Rates, NonDropIsReadAs2997WithAHint) {
  const RunResult run = read(list_with_fcm("NON-DROP"), {"--sample-rate", "48000"});
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(frame_rate, 2);
  // An hour of time code lasts 3603.6 seconds.
  EXPECT_EQ(source_in, 172972800);
  EXPECT_THAT(run.err, HasSubstr("hint: "));
  EXPECT_THAT(run.err, HasSubstr("--frame-rate"));
  EXPECT_THAT(run.err, Not(HasSubstr("warning")));
}

TEST_F(Rates, DropIsReadAsDropWithoutAWord) {
  const RunResult run = read(list_with_fcm("DROP"), {"--sample-rate", "48000"});
  EXPECT_EQ(frame_rate, 3);
  EXPECT_EQ(run.err, "");
}

TEST_F(Rates, WhatIsGivenWinsOverFcm) {
  for (const char* const mode : {"DROP", "NON-DROP"}) {
    const RunResult run =
        read(list_with_fcm(mode), {"--sample-rate", "48000", "--frame-rate", "24"});
    EXPECT_EQ(frame_rate, 0) << mode;
    EXPECT_EQ(source_in, 172800000) << mode;
    EXPECT_EQ(run.err, "") << mode;
  }
}

TEST_F(Rates, FcmBehindTheFirstEventComesTooLate) {
  const RunResult run = read(std::string(support::silent_list) + "FCM: DROP FRAME\n", {});
  EXPECT_EQ(frame_rate, 1);
  EXPECT_THAT(run.err, HasSubstr("25 frames a second are assumed"));
}

TEST_F(Rates, FcmOfNoKnownModeSaysNothing) {
  const RunResult run = read(list_with_fcm("ODD"), {});
  EXPECT_EQ(frame_rate, 1);
  EXPECT_THAT(run.err, HasSubstr("25 frames a second are assumed"));
}

TEST_F(Rates, EveryNameOfAFrameRate) {
  const std::pair<const char*, int> rates[] = {
      {"24", 0}, {"25", 1}, {"29.97", 2}, {"29.97drop", 3}, {"30", 4}};
  for (const auto& [name, index] : rates) {
    read(support::silent_list, {"--frame-rate", name});
    EXPECT_EQ(frame_rate, index) << name;
  }
}

TEST_F(Rates, WhatTheFileStatesIsTakenWhereNothingWasGiven) {
  const RunResult run = read("AWKWARD rates\n", {}, "a.awkward");
  EXPECT_EQ(sample_rate, 44100);
  EXPECT_EQ(frame_rate, 0);
  EXPECT_EQ(run.err, "");
}

TEST_F(Rates, StatedSampleRateIsTakenAndStatedFrameRateIsNot) {
  const RunResult run =
      read("AWKWARD rates\n", {"--sample-rate", "48000", "--frame-rate", "25"}, "a.awkward");
  EXPECT_EQ(sample_rate, 44100);
  EXPECT_EQ(frame_rate, 1);
  // Another sample rate than the one that was set is asked about.
  EXPECT_THAT(run.err, HasSubstr("The file states another sample rate"));
}

}  // namespace
