// Lists out to an AAF file and back in.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "tests/aaf/export_scene.h"

namespace {

using aaf_test::Edit;
using aaf_test::ExportScene;

// What of an entry comes back.
struct Came {
  std::uint16_t stream = 0;
  std::int64_t in = 0;
  std::int64_t out = 0;
  std::int64_t source_in = 0;
  std::int64_t fade_in = 0;
  std::int64_t fade_out = 0;
  float level = 0;

  bool operator==(const Came&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Came& came) {
  return out << came.stream << ": [" << came.in << ", " << came.out << ") from " << came.source_in
             << " fades " << came.fade_in << " " << came.fade_out << " level " << came.level;
}

// The entries by stream and start; one of several streams once for each.
std::vector<Came> entries_of(const CGenericEdl& list) {
  std::vector<Came> all;
  const CObList& entries = *list.get_generic_entry_list();
  for (POSITION at = entries.GetHeadPosition(); at != nullptr;) {
    const auto& entry = *static_cast<const CGenericEdlEntry*>(entries.GetNext(at));
    for (int i = 0; i < entry.no_streams; ++i) {
      all.push_back({entry.get_stream(i), entry.dest_in, entry.dest_out, entry.source_in,
                     entry.fade_in_length, entry.fade_out_length, entry.gain_left});
    }
  }
  std::sort(all.begin(), all.end(), [](const Came& a, const Came& b) {
    return std::pair(a.stream, a.in) < std::pair(b.stream, b.in);
  });
  return all;
}

struct Imported {
  CGenericEdl list;
  std::unique_ptr<CAAFEdlFile> file;
};

std::unique_ptr<Imported> import_of(ExportScene& scene, std::string_view name = "x.aaf") {
  auto imported = std::make_unique<Imported>();
  imported->file = std::make_unique<CAAFEdlFile>(&imported->list, 0);
  scene.host.app.imported_audio_folder = scene.host.places.add(scene.folder.folder("imported"));
  EXPECT_EQ(imported->file->import_edl(scene.folder.wide_file(name)), 100);
  return imported;
}

std::vector<Came> back(ExportScene& scene) {
  EXPECT_EQ(scene.run(), 101);
  return entries_of(import_of(scene)->list);
}

struct Row {
  const char* name;
  std::vector<Edit> edits;
};

class RoundTrips : public testing::TestWithParam<Row> {};

TEST_P(RoundTrips, OfOneStream) {
  ExportScene scene;
  for (Edit edit : GetParam().edits) {
    edit.source_in = 10000 + edit.in;
    scene.add(edit);
  }
  EXPECT_EQ(back(scene), entries_of(scene.list));
}

INSTANTIATE_TEST_SUITE_P(
    Export, RoundTrips,
    testing::Values(Row{"LoneFadeIn", {{1000, 6000, 200, 0}}},
                    Row{"FadeInAtTheStart", {{0, 5000, 200, 0}}},
                    Row{"LoneFadeOut", {{1000, 6000, 0, 300}}},
                    Row{"BothFades", {{1000, 6000, 200, 300}}},
                    Row{"SymmetricCrossfade", {{0, 1000, 0, 100}, {900, 1900, 100, 0}}},
                    Row{"OutFadeFirst", {{0, 1000, 0, 300}, {900, 1900, 100, 0}}},
                    Row{"InFadeLonger", {{0, 1000, 0, 100}, {900, 1900, 300, 0}}},
                    Row{"BothLonger", {{0, 1000, 0, 300}, {900, 1900, 300, 0}}},
                    Row{"FadesShorterThanTheOverlap", {{0, 1000, 0, 50}, {900, 1900, 50, 0}}},
                    Row{"OverlapWithoutFades", {{0, 1000, 0, 0}, {900, 1900, 0, 0}}},
                    Row{"ButtWithFades", {{0, 1000, 0, 100}, {1000, 2000, 100, 0}}},
                    Row{"ButtWithoutFades", {{0, 1000, 0, 0}, {1000, 2000, 0, 0}}},
                    Row{"FadeOutGapFadeIn", {{0, 1000, 0, 100}, {3000, 4000, 50, 0}}},
                    Row{"BeforeItsSource", {{0, 1000, 0, 300}, {900, 1900, 100, 0, -10850}}},
                    Row{"AnHour", {{172800000, 172801000, 0, 0}}}),
    [](const auto& each) { return each.param.name; });

// Gaps, butts and symmetric crossfades on three streams.
TEST(RandomRoundTrips, OfSymmetricListsAreExact) {
  std::mt19937 engine(11);
  const auto below = [&](std::uint32_t limit) {
    return static_cast<std::int64_t>(engine() % limit);
  };
  for (int round = 0; round < 60; ++round) {
    ExportScene scene;
    scene.host.app.aaf_export_fixed_gain = round % 2;
    std::vector<Edit> edits;
    for (std::uint16_t stream = 0; stream < 3; ++stream) {
      std::int64_t at = below(5000);
      std::int64_t join = 0;
      for (std::int64_t count = 1 + below(8); count > 0; --count) {
        Edit edit{.in = at - join, .out = at + 2000 + below(3000), .fade_in = join};
        edit.stream = stream;
        edit.source_in = below(100000);
        if (round % 2 != 0) edit.level = static_cast<float>(below(2000000)) / 1000000.0F;
        const std::int64_t kind = count == 1 ? 0 : below(3);
        join = kind == 2 ? 10 + below(500) : 0;
        if (join != 0) edit.fade_out = join;
        edits.push_back(edit);
        at = edit.out + (kind == 0 ? 1 + below(2000) : 0);
      }
    }
    std::stable_sort(edits.begin(), edits.end(),
                     [](const Edit& a, const Edit& b) { return a.in < b.in; });
    for (const Edit& edit : edits)
      scene.add(edit);
    const std::vector<Came> expected = entries_of(scene.list);
    const std::vector<Came> came = back(scene);
    ASSERT_EQ(came.size(), expected.size()) << round;
    for (std::size_t i = 0; i < came.size(); ++i) {
      Came exact = expected[i];
      // Millionths, cut.
      EXPECT_NEAR(came[i].level, exact.level, 0.0000011);
      exact.level = came[i].level;
      ASSERT_EQ(came[i], exact) << round;
    }
  }
}

TEST(RandomRoundTrips, OfAsymmetricPairsAreWithinASample) {
  std::mt19937 engine(13);
  const auto below = [&](std::uint32_t limit) {
    return static_cast<std::int64_t>(engine() % limit);
  };
  for (int round = 0; round < 150; ++round) {
    ExportScene scene;
    const std::int64_t overlap = 1 + below(400);
    scene.add({.in = 0, .out = 4000, .fade_out = below(1000)});
    scene.add({.in = 4000 - overlap, .out = 8000, .fade_in = below(1000), .source_in = 50000});
    const std::vector<Came> expected = entries_of(scene.list);
    const std::vector<Came> came = back(scene);
    ASSERT_EQ(came.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
      EXPECT_LE(std::abs(came[i].in - expected[i].in), 1) << came[i] << expected[i];
      EXPECT_LE(std::abs(came[i].out - expected[i].out), 1) << came[i] << expected[i];
      EXPECT_LE(std::abs(came[i].source_in - expected[i].source_in), 1) << came[i] << expected[i];
      EXPECT_LE(std::abs(came[i].fade_in - expected[i].fade_in), 1) << came[i] << expected[i];
      EXPECT_LE(std::abs(came[i].fade_out - expected[i].fade_out), 1) << came[i] << expected[i];
    }
  }
}

using Points = std::vector<std::pair<std::int64_t, std::int64_t>>;

Points automation_of(const CGenericEdl& list, std::uint16_t type, std::uint16_t channel) {
  Points all;
  const CObList& chunks = *list.get_automation_list();
  for (POSITION at = chunks.GetHeadPosition(); at != nullptr;) {
    const auto& chunk = *static_cast<const CGenericAutomationChunk*>(chunks.GetNext(at));
    if (chunk.type != type || chunk.channel != channel) continue;
    for (POSITION inner = chunk.points->GetHeadPosition(); inner != nullptr;) {
      const auto& point =
          *static_cast<const CGenericAutomationEntry*>(chunk.points->GetNext(inner));
      all.emplace_back(point.time, point.value);
    }
  }
  return all;
}

void expect_near(const Points& came, const Points& expected) {
  ASSERT_EQ(came.size(), expected.size());
  for (std::size_t i = 0; i < came.size(); ++i) {
    EXPECT_LE(std::abs(came[i].first - expected[i].first), 1) << i;
    EXPECT_EQ(came[i].second, expected[i].second) << i;
  }
}

TEST(RoundTrip, OfAWholeListBringsEverythingBack) {
  ExportScene scene;
  scene.host.app.aaf_export_fixed_gain = 1;
  scene.host.app.aaf_export_gain_automation = 1;
  scene.host.app.aaf_export_pan_automation = 1;
  scene.add({.in = 0, .out = 5000, .fade_in = 200, .fade_out = 300, .level = 0.5F});
  scene.add({.in = 4700, .out = 9000, .fade_in = 300, .source_in = 700, .level = 0.25F});
  scene.add({.in = 1920, .out = 8000, .fade_out = 100, .source_in = 99, .stream = 1});
  const Points gain = {{100, 384}, {2500, 0}, {4650, 504}, {8999, 200}};
  const Points pan = {{0, 0}, {4500, 252}, {7999, 504}};
  scene.add_automation(0, 0, gain);
  scene.add_automation(2, 1, pan);
  scene.add_locator(u"LEFT_LOCATOR\t\t\t", 10);
  scene.add_locator(u"RIGHT_LOCATOR\t\t", 20);
  ASSERT_EQ(scene.run(), 101);
  const auto imported = import_of(scene);
  EXPECT_EQ(entries_of(imported->list), entries_of(scene.list));
  expect_near(automation_of(imported->list, 0, 0), gain);
  expect_near(automation_of(imported->list, 2, 1), pan);
  const CObList& locators = *imported->list.get_locator_list();
  ASSERT_EQ(locators.GetCount(), 2);
  EXPECT_EQ(static_cast<const CGenericLocatorEntry*>(locators.GetHead())->time, 10);
  EXPECT_EQ(static_cast<const CGenericLocatorEntry*>(locators.GetTail())->time, 20);
}

// The level of a clip is lost when its group is shorter than it.
TEST(RoundTrip, OfAnAsymmetricCrossfadeKeepsTheLevels) {
  ExportScene scene;
  scene.host.app.aaf_export_fixed_gain = 1;
  scene.add({.in = 0, .out = 4000, .fade_out = 300, .level = 0.5F});
  scene.add({.in = 3900, .out = 8000, .fade_in = 300, .source_in = 5000, .level = 0.25F});
  const std::vector<Came> came = back(scene);
  ASSERT_EQ(came.size(), 2U);
  EXPECT_EQ(came[0].level, 0.5F);
  EXPECT_EQ(came[1].level, 0.25F);
}

TEST(RoundTrip, OfEmbeddedAudioBringsItsFilesBack) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000, .streams = 2}, &scene.add_audio(2, 1000, 24));
  ASSERT_EQ(scene.run(), 101);
  const auto imported = import_of(scene);
  const CObList& entries = *imported->list.get_generic_entry_list();
  ASSERT_EQ(entries.GetCount(), 2);
  const aaf_test::ReadFile file(scene.path());
  const std::string first = utf8_from_text(
      field_text(static_cast<const CGenericEdlEntry*>(entries.GetHead())->file_path));
  const std::string second = utf8_from_text(
      field_text(static_cast<const CGenericEdlEntry*>(entries.GetTail())->file_path));
  EXPECT_EQ(support::read_file(first + ".wav"), file.essence("take 01"));
  EXPECT_EQ(support::read_file(second + ".wav"), file.essence("take 02"));
}

}  // namespace
