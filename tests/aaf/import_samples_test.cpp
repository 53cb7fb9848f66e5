// Real files. EDL_SAMPLES names the folder above "aaf".

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <tuple>

#include "core/generic_automation.h"
#include "tests/aaf/import_fixture.h"
#include "tests/aaf/import_samples_table.h"

using namespace support;

namespace {

class SamplesTest : public AafImportTest {
 protected:
  void SetUp() override {
    const char* const samples = std::getenv("EDL_SAMPLES");
    if (samples == nullptr) GTEST_SKIP() << "EDL_SAMPLES is not set";
    source_ = std::filesystem::path(samples) / "aaf";
    host.boxes.default_message_answer = box_answer_yes;
    host.boxes.default_question_answer = box_answer_yes;
    static_cast<void>(folder.folder("x"));
  }

  result_code import_sample(const std::string& name) {
    const std::string link = folder.path() + "/x/" + name;
    if (!std::filesystem::exists(source_ / name)) ADD_FAILURE() << name << " is missing";
    std::filesystem::create_symlink(source_ / name, link);
    return import_path(link);
  }

  [[nodiscard]] std::string sample_path(const std::string& name) const { return source_ / name; }

  // The path with this test's folders, where the table has D:/x and D:/imp.
  [[nodiscard]] std::string here(std::string text) const {
    for (const auto& [from, to] :
         {std::pair<std::string, std::string>("//D:/x/", "/" + folder.path() + "/x/"),
          std::pair<std::string, std::string>("//D:/imp/", "/" + audio_folder->path + "/")}) {
      if (text.starts_with(from)) text.replace(0, from.size(), to);
    }
    return text;
  }

  // Of the first clip that was walked: the earliest of the first stream.
  [[nodiscard]] std::string first_path() const {
    const CGenericEdlEntry* first = nullptr;
    for (const CGenericEdlEntry* const each : entries()) {
      if (first == nullptr || std::tuple(each->get_stream(0), each->dest_in) <
                                  std::tuple(first->get_stream(0), first->dest_in)) {
        first = each;
      }
    }
    return first == nullptr ? std::string() : utf8(first->file_path);
  }

  template <class Predicate>
  [[nodiscard]] int count_entries(Predicate predicate) const {
    int count = 0;
    for (const CGenericEdlEntry* const each : entries())
      count += predicate(*each) ? 1 : 0;
    return count;
  }

  [[nodiscard]] int points(int parameter) const {
    std::size_t count = 0;
    for (const Chunk& chunk : automation()) {
      if (chunk.parameter == parameter) count += chunk.points.size();
    }
    return static_cast<int>(count);
  }

 private:
  std::filesystem::path source_;
};

testing::AssertionResult fits(const std::string& path, const std::string& pattern) {
  const std::size_t gap = pattern.find("...");
  const bool same = gap == std::string::npos ? path == pattern
                                             : path.size() >= pattern.size() - 3 &&
                                                   path.starts_with(pattern.substr(0, gap)) &&
                                                   path.ends_with(pattern.substr(gap + 3));
  if (same) return testing::AssertionSuccess();
  return testing::AssertionFailure() << path << " is not " << pattern;
}

class SampleRowsTest : public SamplesTest,
                       public testing::WithParamInterface<std::tuple<std::size_t, bool>> {
 protected:
  [[nodiscard]] const samples::Row& row() const {
    return samples::rows().at(std::get<0>(GetParam()));
  }
  [[nodiscard]] static bool corrected_way() { return std::get<1>(GetParam()); }

  void expect_spans() const {
    if (entries().empty()) return;
    const samples::Span first =
        corrected_way() ? row().first : row().letter_first.value_or(row().first);
    const samples::Span last =
        corrected_way() ? row().last : row().letter_last.value_or(row().last);
    EXPECT_EQ(entries().front()->dest_in, first.in);
    EXPECT_EQ(entries().front()->dest_out, first.out);
    EXPECT_EQ(entries().back()->dest_in, last.in);
    EXPECT_EQ(entries().back()->dest_out, last.out);
  }

  void expect_sources() const {
    std::set<std::string> sources;
    for (const std::string& path_of_one : paths())
      sources.insert(path_of_one);
    EXPECT_EQ(sources.size(), static_cast<std::size_t>(row().sources));
    const bool letter = !corrected_way() && row().letter_path != nullptr;
    EXPECT_TRUE(fits(first_path(), here(letter ? row().letter_path : row().path)));
    const auto& files = std::filesystem::directory_iterator(audio_folder->path);
    EXPECT_EQ(std::distance(begin(files), end(files)), row().copied);
  }

  void expect_entries() const {
    std::map<int, int> by_stream;
    for (const Edit& edit : edits())
      ++by_stream[edit.stream];
    std::map<int, int> expected;
    for (std::size_t i = 0; i < row().entries.size(); ++i) {
      if (row().entries[i] > 0) expected[static_cast<int>(i)] = row().entries[i];
    }
    EXPECT_EQ(by_stream, expected);
    EXPECT_EQ(count_entries([](const auto& each) { return each.fade_in_length > 0; }),
              row().fades_in);
    EXPECT_EQ(count_entries([](const auto& each) { return each.fade_out_length > 0; }),
              row().fades_out);
    EXPECT_EQ(count_entries([](const auto& each) { return each.gain_left != 1.0F; }),
              corrected_way() ? row().levels : row().letter_levels.value_or(row().levels));
    EXPECT_EQ(count_entries([](const auto& each) { return each.source_is_timestamped == 0; }),
              row().foreign ? static_cast<int>(entries().size()) : 0);
  }
};

TEST_P(SampleRowsTest, GivesItsRow) {
  if (corrected_way()) correct_all();
  host.windows.default_choice = row().choice;
  ASSERT_EQ(import_sample(row().file), row().code);
  EXPECT_EQ(host.windows.choices.size(), row().dialog ? 1U : 0U);
  EXPECT_EQ(aaf().sample_rate_index(), row().sample_rate);
  EXPECT_EQ(aaf().frame_rate(), row().frame_rate);
  expect_entries();
  expect_spans();
  expect_sources();
  EXPECT_EQ(points(0), row().gain_points);
  EXPECT_EQ(points(2), row().pan_points);
  EXPECT_EQ(boxes(), row().messages);
}

std::string row_name(const testing::TestParamInfo<std::tuple<std::size_t, bool>>& test) {
  const samples::Row& row = samples::rows().at(std::get<0>(test.param));
  std::string name = row.file;
  for (char& c : name) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
  }
  return name + std::to_string(row.choice) + (std::get<1>(test.param) ? "Corrected" : "Letter");
}
INSTANTIATE_TEST_SUITE_P(, SampleRowsTest,
                         testing::Combine(testing::Range<std::size_t>(0, samples::rows().size()),
                                          testing::Bool()),
                         row_name);

class SampleListingsTest : public SamplesTest, public testing::WithParamInterface<std::size_t> {};

TEST_P(SampleListingsTest, GivesEveryEntry) {
  const samples::Listing& listing = samples::listings().at(GetParam());
  correct_all();
  ASSERT_EQ(import_sample(listing.file), 100);
  ASSERT_EQ(entries().size(), listing.entries.size());
  for (std::size_t i = 0; i < listing.entries.size(); ++i) {
    SCOPED_TRACE(i);
    const samples::Entry& expected = listing.entries[i];
    const CGenericEdlEntry& found = entry(i);
    CString name(found.source_reel_name);
    CString expected_name(text_from_utf8(expected.name));
    EXPECT_EQ(utf8(name.TrimRight().view()), utf8(expected_name.TrimRight().view()));
    EXPECT_EQ(found.get_stream(0), expected.stream);
    EXPECT_EQ(found.dest_in, expected.in);
    EXPECT_EQ(found.dest_out, expected.out);
    EXPECT_EQ(found.source_in, expected.source_in);
    EXPECT_EQ(found.fade_in_length, expected.fade_in);
    EXPECT_EQ(found.fade_out_length, expected.fade_out);
    EXPECT_FLOAT_EQ(found.gain_left, expected.level);
  }
}

INSTANTIATE_TEST_SUITE_P(, SampleListingsTest,
                         testing::Range<std::size_t>(0, samples::listings().size()));

// A thousand copies with bytes changed, the same ones every time.
class SampleDamageTest : public SamplesTest, public testing::WithParamInterface<std::size_t> {
 protected:
  static constexpr unsigned copies = 18;
};

TEST_P(SampleDamageTest, ComesToAnEnd) {
  const samples::Row& row = samples::rows().at(GetParam());
  const std::string whole = read_file(sample_path(row.file));
  std::mt19937 random(static_cast<unsigned>(GetParam()));
  for (unsigned copy = 0; copy < copies; ++copy) {
    if (copy == copies / 2) correct_all();
    std::string bytes = whole;
    const std::size_t changes = 1 + random() % 50;
    for (std::size_t i = 0; i < changes; ++i)
      bytes[random() % bytes.size()] = static_cast<char>(random());
    const std::string path_of_copy = folder.file("damaged.aaf");
    write_file(path_of_copy, bytes);
    CGenericEdl list;
    CAAFEdlFile damaged(&list);
    const result_code code = damaged.import_edl(text_from_utf8(path_of_copy).c_str());
    ASSERT_TRUE(code == 100 || code == 11) << code;
    EXPECT_TRUE(code == 100 || list.get_generic_entry_list()->IsEmpty());
  }
}

INSTANTIATE_TEST_SUITE_P(, SampleDamageTest,
                         testing::Range<std::size_t>(0, samples::rows().size()));

}  // namespace
