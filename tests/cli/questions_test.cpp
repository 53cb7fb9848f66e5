// Questions: at a terminal the person answers, without one an option does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/lists.h"
#include "tests/cli/program_run.h"
#include "tests/support/temp_folder.h"

namespace {

using support::run_at_terminal;
using support::run_edlconv;
using support::RunResult;
using support::with_rates;
using testing::HasSubstr;
using testing::Not;

constexpr const char* question = "Take the file's frame rate?";

struct Questions : testing::Test {
  Questions() { support::write_file(in, support::list_with_fcm("NON-DROP")); }

  [[nodiscard]] std::vector<std::string> arguments(std::vector<std::string> more = {}) const {
    std::vector<std::string> all =
        with_rates({"inspect", "--json", "--ask-on-frame-rate-change", "1", in});
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }

  support::TempFolder folder;
  std::string in = folder.file("in.edl");
};

TEST_F(Questions, ThePersonSaysYes) {
  const RunResult run = run_at_terminal(support::edlconv_path(), arguments(), "y\n");
  EXPECT_EQ(run.code, 0);
  EXPECT_THAT(run.out, HasSubstr(question + std::string(" [y/n] ")));
  EXPECT_THAT(run.out, HasSubstr("\"frame_rate\": 2"));
  EXPECT_THAT(run.out, HasSubstr("\"rates_changed\": {\"sample_rate\":false,\"frame_rate\":true}"));
}

TEST_F(Questions, ThePersonSaysNo) {
  const RunResult run = run_at_terminal(support::edlconv_path(), arguments(), "n\n");
  EXPECT_EQ(run.code, 0);
  EXPECT_THAT(run.out, HasSubstr("\"frame_rate\": 1"));
  EXPECT_THAT(run.out, HasSubstr("\"answer\":\"no\""));
}

TEST_F(Questions, AnOptionAnswersInThePersonsPlace) {
  const RunResult run =
      run_at_terminal(support::edlconv_path(), arguments({"--assume", "yes"}), "n\n");
  EXPECT_EQ(run.code, 0);
  EXPECT_THAT(run.out, HasSubstr("\"frame_rate\": 2"));
}

TEST_F(Questions, WhereNobodySitsTheAnswerIsNo) {
  const RunResult run = run_edlconv(arguments());
  EXPECT_EQ(run.code, 0);
  EXPECT_THAT(run.err, HasSubstr(question));
  EXPECT_THAT(run.err, HasSubstr("(answered no)"));
  EXPECT_THAT(run.out, HasSubstr("\"frame_rate\": 1"));
}

TEST_F(Questions, WhereNobodySitsAnOptionAnswers) {
  RunResult run = run_edlconv(arguments({"--assume", "yes"}));
  EXPECT_THAT(run.out, HasSubstr("\"frame_rate\": 2"));
  run = run_edlconv(arguments({"--assume", "no"}));
  EXPECT_THAT(run.out, HasSubstr("\"frame_rate\": 1"));
}

TEST_F(Questions, NothingIsAskedUnlessTheSettingSaysSo) {
  const RunResult run = run_edlconv(with_rates({"inspect", "--json", "--assume", "yes", in}));
  EXPECT_THAT(run.err, Not(HasSubstr(question)));
  EXPECT_THAT(run.out, HasSubstr("\"frame_rate\": 1"));
  EXPECT_THAT(run.out, HasSubstr("\"boxes\": []"));
}

}  // namespace
