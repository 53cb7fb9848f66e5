// "edlconv inspect --json". The expected objects under tests/golden/cli were worked
// out from the lists and the rules: at 48000 Hz and 25 frames a second lasts 48000
// samples and a frame 1920; at 29.97 all times are longer by 1.001.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>
#include <set>

#include "tests/cli/lists.h"
#include "tests/cli/program_run.h"
#include "tests/support/temp_folder.h"

namespace {

using Json = nlohmann::ordered_json;
using support::run_edlconv;
using support::RunResult;
using support::with_rates;
using testing::HasSubstr;

Json golden(const std::string& name) {
  return Json::parse(support::read_file(support::source_path("tests/golden/cli/" + name)));
}

std::string data(const std::string& name) {
  return support::source_path("tests/data/cli/" + name);
}

// Equal with the same order of keys, or where they differ.
testing::AssertionResult same_json(const std::string& actual, const Json& expected) {
  const Json json = Json::parse(actual, nullptr, false);
  if (json.is_discarded()) return testing::AssertionFailure() << "no JSON:\n" << actual;
  if (json == expected) return testing::AssertionSuccess();
  return testing::AssertionFailure()
         << "from expected to actual: " << Json::diff(expected, json).dump(2);
}

std::vector<std::string> keys_of(const Json& object) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : object.items())
    keys.push_back(key);
  return keys;
}

TEST(InspectJson, EveryKindOfLine) {
  const RunResult run = run_edlconv(with_rates({"inspect", "--json", data("kinds.edl")}));
  EXPECT_EQ(run.code, 4);
  EXPECT_TRUE(same_json(run.out, golden("kinds.json")));
  EXPECT_THAT(run.err, HasSubstr(data("kinds.edl") + ":5: error: "));
  EXPECT_THAT(run.err, HasSubstr("1 event has a channel field of no known form"));
}

TEST(InspectJson, DropFrame) {
  const RunResult run =
      run_edlconv({"inspect", "--json", "--sample-rate", "48000", data("drop.edl")});
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(same_json(run.out, golden("drop.json")));
}

TEST(InspectJson, QuestionAndChangedRate) {
  const RunResult run = run_edlconv(with_rates({"inspect", "--json", "--ask-on-frame-rate-change",
                                                "1", "--assume", "yes", data("non_drop.edl")}));
  EXPECT_EQ(run.code, 0);
  EXPECT_TRUE(same_json(run.out, golden("non_drop_taken.json")));
}

TEST(InspectJson, AListThatCannotBeReadHasItsResult) {
  const support::TempFolder folder;
  const std::string path = folder.file("a.edl");
  support::write_file(path, "TITLE: T\nno event here\n");
  const RunResult run = run_edlconv(with_rates({"inspect", "--json", path}));
  EXPECT_EQ(run.code, 2);
  const Json json = Json::parse(run.out);
  EXPECT_EQ(json["result"], 4);
  EXPECT_EQ(json["format"], "cmx3600");
  EXPECT_TRUE(json["entries"].empty());
}

TEST(InspectJson, BoxesOfEveryKindInTheirOrder) {
  const support::TempFolder folder;
  const std::string path = folder.file("a.awkward");
  support::write_file(path, "AWKWARD boxes\n");
  const RunResult run = support::run_toy_edlconv(with_rates({"inspect", "--json", path}));
  EXPECT_EQ(run.code, 4);
  const Json expected = Json::array(
      {{{"kind", "error"}, {"id", 0}, {"text", "an error"}, {"answer", "ok"}},
       {{"kind", "warning"}, {"id", 0}, {"text", "a warning"}, {"answer", "ok"}},
       {{"kind", "information"}, {"id", 0}, {"text", "some information"}, {"answer", "ok"}},
       {{"kind", "question"}, {"id", 0}, {"text", "a question"}, {"answer", "no"}}});
  EXPECT_EQ(Json::parse(run.out)["boxes"], expected);
}

TEST(InspectJson, TextsAreUtf8) {
  const support::TempFolder folder;
  const std::string path = folder.file("a.edl");
  // "Ö" and a quotation mark in Windows-1252.
  support::write_file(path,
                      "001  \xD6\"1  A  C  01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n");
  const RunResult run = run_edlconv(with_rates({"inspect", "--json", path}));
  EXPECT_EQ(Json::parse(run.out)["entries"][0]["reel_name"], "\xC3\x96\"1");
}

TEST(InspectJson, OneRecordALine) {
  const RunResult run = run_edlconv(with_rates({"inspect", "--json", data("kinds.edl")}));
  std::istringstream lines(run.out);
  std::string line;
  int entries = 0;
  while (std::getline(lines, line)) {
    if (line.starts_with("    {\"source_in\":")) ++entries;
  }
  // Five edits and a video edit.
  EXPECT_EQ(entries, 6);
}

TEST(InspectJson, OutputThatIsRefused) {
  const RunResult run = run_edlconv(with_rates({"inspect", "--json", data("kinds.edl")}), [] {
    if (::freopen("/dev/full", "w", stdout) == nullptr) ::_exit(126);
  });
  EXPECT_EQ(run.code, 3);
  EXPECT_THAT(run.err, HasSubstr("the output could not be written: No space left on device"));
}

// The names of the fields of a record as core/entry_details.h has them, but for the
// owner, which is a pointer.
std::vector<std::string> fields_of(const std::string& record) {
  const std::string header = support::read_file(support::source_path("core/entry_details.h"));
  const std::size_t start = header.find("struct " + record + " {");
  const std::string body = header.substr(start, header.find("\n};", start) - start);
  static const std::regex field(R"((\w+)(\[\w+\])? = [^;]*;)");
  std::vector<std::string> names;
  for (auto at = std::sregex_iterator(body.begin(), body.end(), field);
       at != std::sregex_iterator(); ++at) {
    if ((*at)[1] != "owner") names.push_back((*at)[1]);
  }
  return names;
}

TEST(InspectJson, EveryFieldOfTheRecordsIsThere) {
  const RunResult run = run_edlconv(with_rates({"inspect", "--json", data("kinds.edl")}));
  const Json json = Json::parse(run.out);
  const std::vector<std::string> entry = fields_of("ENTRY_DETAILS");
  EXPECT_EQ(entry.size(), 52U);
  EXPECT_EQ(keys_of(json["entries"][0]), entry);
  const std::vector<std::string> video = fields_of("VIDEO_DETAILS");
  EXPECT_EQ(video.size(), 23U);
  EXPECT_EQ(keys_of(json["video"][0]), video);
}

TEST(InspectJson, EveryKeyIsInThePage) {
  const std::string page = support::read_file(support::source_path("docs/inspect_json.md"));
  const Json json = golden("kinds.json");
  std::set<std::string> keys;
  for (const Json& object : {json, json["entries"][0], json["video"][0], json["reels"][0],
                             json["pq"], json["boxes"][0], json["rates_changed"]}) {
    for (const std::string& key : keys_of(object))
      keys.insert(key);
  }
  for (const char* const key :
       {"position_a", "position_b", "track_number", "index_number", "first_text", "second_text",
        "flag_a", "flag_b", "isrc", "third_text", "time", "name", "locator_value", "type",
        "channel", "points"}) {
    keys.insert(key);
  }
  for (const std::string& key : keys)
    EXPECT_NE(page.find("`" + key + "`"), std::string::npos) << key << " is not told";
}

}  // namespace
