// Segments that become edits again, and edits that go out and come back.
#include <cstdio>
#include <random>

#include "tests/text/format_fixtures.h"
#include "tests/text/lightworks_table.h"
#include "text/lightworks_edl.h"

namespace {

using support::entries_of;
using support::lightworks_head;
using support::standard_edit;
using support::Streams;
using support::streams_of;
using support::TableLine;

class LightworksRebuild : public support::FormatTest {
 protected:
  LightworksRebuild() { support::set_rates(root_); }

  std::vector<CGenericEdlEntry*> there_and_back(const EDL_CONVERSION_SETTINGS& settings = {}) {
    edl_.set_edl_conversion_settings(&settings);
    EXPECT_EQ(read(edl_, written<CLightworksEdl>(root_)), 100);
    return entries_of(edl_);
  }
  std::vector<CGenericEdlEntry*> rebuilt(const std::string& table) {
    EXPECT_EQ(read(edl_, lightworks_head + table), 100);
    return entries_of(edl_);
  }

  CGenericEdl root_;
  CLightworksEdl edl_{nullptr, 0};
};

TEST_F(LightworksRebuild, FadeIn) {
  auto& entry = support::add_entry(root_, standard_edit());
  entry.transition_type = 14;
  entry.fade_in_length = 24000;
  const auto entries = there_and_back();
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_TRUE(support::has_times(*entries[0], standard_edit()));
  EXPECT_EQ(entries[0]->transition_type, 12U);
  EXPECT_EQ(entries[0]->fade_in_length, 24000);
  EXPECT_EQ(entries[0]->fade_out_length, 0);
  EXPECT_EQ(entries[0]->gain_left, 1.0F);
}

TEST_F(LightworksRebuild, FadeOut) {
  auto& entry = support::add_entry(root_, standard_edit());
  entry.transition_type = 15;
  entry.fade_out_length = 12000;
  const auto entries = there_and_back();
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_TRUE(support::has_times(*entries[0], standard_edit()));
  EXPECT_EQ(entries[0]->transition_type, 15U);
  EXPECT_EQ(entries[0]->fade_out_length, 12000);
}

TEST_F(LightworksRebuild, BothFadesKeepTheLevel) {
  auto& entry = support::add_entry(root_, standard_edit());
  entry.transition_type = 16;
  entry.fade_in_length = 24000;
  entry.fade_out_length = 12000;
  entry.gain_left = 0.5F;
  const auto entries = there_and_back();
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_TRUE(support::has_times(*entries[0], standard_edit()));
  EXPECT_EQ(entries[0]->transition_type, 16U);
  EXPECT_EQ(entries[0]->fade_in_length, 24000);
  EXPECT_EQ(entries[0]->fade_out_length, 12000);
  EXPECT_EQ(entries[0]->gain_left, 0.5F);
}

TEST_F(LightworksRebuild, CrossfadeComesBackAsAnOverlap) {
  support::add_entry(root_,
                     {.dest_out = 48000, .source_in = 480000, .source_out = 528000, .reel = u"R"});
  support::add_entry(root_, {.dest_in = 47900,
                             .dest_out = 95900,
                             .source_in = 480000,
                             .source_out = 528000,
                             .reel = u"R"});
  const auto entries = there_and_back();
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_TRUE(support::has_times(*entries[0], {0, 48000, 480000, 528000}));
  EXPECT_TRUE(support::has_times(*entries[1], {47900, 95900, 480000, 528000}));
  EXPECT_EQ(entries[0]->fade_out_length, 100);
  EXPECT_EQ(entries[1]->fade_in_length, 100);
  EXPECT_EQ(entries[0]->transition_type, 15U);
  EXPECT_EQ(entries[1]->transition_type, 12U);
}

// The level of plain edits is not read, nor is the level of the second stream
// written; reels and names are cut at seven characters; events have no numbers, and
// fades that are no overlap are not written at all.
TEST_F(LightworksRebuild, RoundTripOfWhatTheFormCarries) {
  for (int i = 0; i < 4; ++i) {
    support::add_entry(root_, {.dest_in = i * 960000,
                               .dest_out = i * 960000 + 480000,
                               .source_in = 48000 * i,
                               .source_out = 48000 * i + 480000,
                               .streams = {i, i + 1},
                               .reel = i % 2 == 0 ? u"EVENREEL" : u"ODD",
                               .fade_in = 9600,
                               .event_number = 7,
                               .first_channel = 3})
        .gain_left = 0.25F;
  }
  const auto entries = there_and_back();
  ASSERT_EQ(entries.size(), 8U);
  for (int i = 0; i < 4; ++i) {
    for (int side = 0; side < 2; ++side) {
      const CGenericEdlEntry& entry = *entries[static_cast<std::size_t>(2 * i + side)];
      EXPECT_TRUE(support::has_times(
          entry, {i * 960000, i * 960000 + 480000, 48000 * i, 48000 * i + 480000}));
      EXPECT_EQ(streams_of(entry), Streams{i + side});
      EXPECT_EQ(entry.first_channel, 3 + side);
      EXPECT_EQ(support::utf8(support::reel_of(entry)), i % 2 == 0 ? "EVENREE" : "ODD");
      EXPECT_EQ(entry.gain_left, 1.0F);
      EXPECT_EQ(entry.level_in, 0.25F);
      EXPECT_EQ(entry.fade_in_length, 0);
      EXPECT_EQ(entry.event_number, 65535);
    }
  }
}

TEST_F(LightworksRebuild, PairsOfMonoLinesAreMergedWhenAsked) {
  support::Edit edit = standard_edit();
  edit.streams = {0, 1};
  support::add_entry(root_, edit);
  EDL_CONVERSION_SETTINGS settings;
  settings.lightworks_merge_channels = 1;
  const auto entries = there_and_back(settings);
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(streams_of(*entries[0]), (Streams{0, 1}));
  EXPECT_TRUE(support::has_times(*entries[0], standard_edit()));
}

// A fade-in of a second and its body of two, on channel 1 of "R".
TableLine fade_segment() {
  TableLine line;
  line.level_in = "00.000";
  line.code = "DI";
  return line;
}
TableLine body_segment() {
  TableLine line;
  line.edit_in = line.source_in = "00001.000000";
  line.edit_out = line.source_out = "00003.000000";
  line.code = "CI";
  return line;
}

TEST_F(LightworksRebuild, SegmentsThatDoNotFitStayApart) {
  const auto count = [this](TableLine first, TableLine second) {
    CLightworksEdl edl(nullptr, 0);
    EXPECT_EQ(read(edl, lightworks_head + first.text() + second.text()), 100);
    return entries_of(edl).size();
  };
  const TableLine fade = fade_segment();
  EXPECT_EQ(count(fade, body_segment()), 1U);
  TableLine other = body_segment();
  other.name = "OTHER";
  EXPECT_EQ(count(fade, other), 2U);
  other = body_segment();
  other.edit_channel = "A02";
  EXPECT_EQ(count(fade, other), 2U);
  other = body_segment();
  other.source_in = "00001.000021";
  EXPECT_EQ(count(fade, other), 2U);
  other = body_segment();
  other.edit_in = "00001.000021";
  EXPECT_EQ(count(fade, other), 2U);
  for (const char* code : {"CT", "DI", "DO", "CO", "XX"}) {
    other = body_segment();
    other.code = code;
    EXPECT_EQ(count(fade, other), 2U) << code;
  }
  // Reels are not compared, and of names the first eight characters.
  other = body_segment();
  other.reel = "OTHER";
  EXPECT_EQ(count(fade, other), 1U);
  TableLine named = fade;
  named.name = "12345678 FIRST";
  other.name = "12345678 SECOND";
  EXPECT_EQ(count(named, other), 1U);
}

TEST_F(LightworksRebuild, LevelIsThatOfTheBody) {
  TableLine fade = fade_segment();
  fade.level_out = "00.700";
  TableLine body = body_segment();
  body.level_in = "00.750";
  const auto entries = rebuilt(fade.text() + body.text());
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0]->gain_left, 0.75F);
  EXPECT_EQ(entries[0]->level_in, 0.75F);
  EXPECT_EQ(entries[0]->fade_in_length, 48000);
  EXPECT_EQ(entries[0]->dest_out, 144000);
}

TEST_F(LightworksRebuild, EditsThatMeetAtDefaultFadesOverlap) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_length = 240;
  edl_.set_edl_conversion_settings(&settings);
  TableLine second;
  second.edit_in = "00001.000000";
  second.edit_out = "00002.000000";
  second.source_in = "00005.000000";
  second.source_out = "00006.000000";
  TableLine third;
  third.edit_in = "00002.000000";
  third.edit_out = "00003.000000";
  const auto entries = rebuilt(TableLine().text() + second.text() + third.text());
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_TRUE(support::has_times(*entries[0], {0, 48120, 0, 48120}));
  EXPECT_EQ(entries[0]->original_dest_out, 48000);
  EXPECT_EQ(entries[0]->original_source_out, 48000);
  EXPECT_TRUE(support::has_times(*entries[1], {47880, 96000, 239880, 288000}));
  EXPECT_EQ(entries[1]->original_dest_in, 48000);
  EXPECT_EQ(entries[1]->original_source_in, 240000);
  // Nothing of the third's source lies before it.
  EXPECT_EQ(entries[1]->fade_out_length, 0);
  EXPECT_EQ(entries[2]->fade_in_length, 0);
  EXPECT_TRUE(support::has_times(*entries[2], {96000, 144000, 0, 48000}));
}

// One sample in front of the second edit is enough; half the fade is taken all the same.
TEST_F(LightworksRebuild, AnOverlapMayBeginBeforeItsSource) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_length = 240;
  edl_.set_edl_conversion_settings(&settings);
  TableLine second;
  second.edit_in = "00001.000000";
  second.edit_out = "00002.000000";
  second.source_in = "00000.000021";
  second.source_out = "00001.000021";
  const auto entries = rebuilt(TableLine().text() + second.text());
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_TRUE(support::has_times(*entries[0], {0, 48120, 0, 48120}));
  EXPECT_TRUE(support::has_times(*entries[1], {47880, 96000, -119, 48001}));
  EXPECT_EQ(entries[1]->fade_in_length, 240);
}

TEST_F(LightworksRebuild, EditsThatMeetAtTheStartDoNotOverlap) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_length = 240;
  edl_.set_edl_conversion_settings(&settings);
  // An edit of no length at 0 ends where the next one begins.
  TableLine first;
  first.edit_out = first.source_out = "00000.000000";
  TableLine second;
  second.source_in = "00005.000000";
  second.source_out = "00006.000000";
  const auto entries = rebuilt(first.text() + second.text());
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0]->fade_in_length, 240);
  EXPECT_EQ(entries[0]->fade_out_length, 0);
  EXPECT_EQ(entries[1]->fade_in_length, 0);
  EXPECT_EQ(entries[1]->fade_out_length, 240);
  EXPECT_TRUE(support::has_times(*entries[1], {0, 48000, 240000, 288000}));
}

// The rules as they are told, on plain values: for each entry, try the one behind it
// until they do not fit.
struct Plain {
  std::int64_t dest_in, dest_out, source_in, source_out;
  int stream;
  std::uint32_t type;
  float level_in;
  std::string name;
  std::int64_t fade_in = 0, fade_out = 0;
  float gain = 1.0F;
};

bool fits(const Plain& a, const Plain& b) {
  const bool types = (a.type == 12 && (b.type == 16 || b.type == 14)) ||
                     ((a.type == 15 || a.type == 16) && b.type == 13);
  return types && a.stream == b.stream && a.dest_out == b.dest_in && a.source_out == b.source_in &&
         a.name == b.name;
}

void merge(Plain& a, const Plain& b) {
  const std::int64_t length = b.dest_out - b.dest_in;
  if (a.type == 12) {
    a.fade_in = a.dest_out - a.dest_in;
    a.gain = a.level_in = b.level_in;
    if (b.type == 16) a.type = 16;
  } else {
    a.fade_out = length;
    a.gain = a.level_in;
  }
  a.dest_out += length;
  a.source_out += length;
}

std::vector<Plain> merged(std::vector<Plain> list) {
  for (std::size_t i = 0; i + 1 < list.size();) {
    if (fits(list[i], list[i + 1])) {
      merge(list[i], list[i + 1]);
      list.erase(list.begin() + static_cast<std::ptrdiff_t>(i) + 1);
    } else {
      ++i;
    }
  }
  return list;
}

// Whole seconds, so that neighbours meet often.
Plain random_segment(std::mt19937& random, const Plain* before) {
  static const std::uint32_t types[] = {11, 12, 12, 13, 13, 14, 15, 16, 16};
  Plain p{};
  const bool meets = before != nullptr && random() % 4 != 0;
  p.dest_in = meets ? before->dest_out : static_cast<std::int64_t>(random() % 20) * 48000;
  p.source_in = meets ? before->source_out : static_cast<std::int64_t>(random() % 20) * 48000;
  const std::int64_t length = static_cast<std::int64_t>(random() % 3 + 1) * 48000;
  p.dest_out = p.dest_in + length;
  p.source_out = p.source_in + length;
  p.stream = random() % 5 == 0 ? 1 : 0;
  p.type = types[random() % std::size(types)];
  p.level_in = static_cast<float>(random() % 4) * 0.25F;
  p.name = random() % 6 == 0 ? "ONE" : "TWO";
  return p;
}

std::string line_of(const Plain& p) {
  static const char* const codes[] = {"CT", "DI", "DO", "CI", "CO", "CB"};
  const auto seconds = [](std::int64_t samples) {
    char text[32];
    std::snprintf(text, sizeof text, "%05lld.000000", static_cast<long long>(samples / 48000));
    return std::string(text);
  };
  char level[16];
  std::snprintf(level, sizeof level, "%06.3f", static_cast<double>(p.level_in));
  TableLine line;
  line.edit_channel = p.stream == 0 ? "A01" : "A02";
  line.edit_in = seconds(p.dest_in);
  line.edit_out = seconds(p.dest_out);
  line.source_in = seconds(p.source_in);
  line.source_out = seconds(p.source_out);
  line.level_in = level;
  line.code = codes[p.type - 11];
  line.name = p.name;
  return line.text();
}

TEST_F(LightworksRebuild, AgreesWithTryingEachNeighbour) {
  std::mt19937 random(23);
  std::size_t merges = 0;
  for (int run = 0; run < 800; ++run) {
    std::vector<Plain> segments;
    std::string table;
    const std::size_t count = random() % 30 + 1;
    for (std::size_t i = 0; i < count; ++i) {
      segments.push_back(random_segment(random, segments.empty() ? nullptr : &segments.back()));
      table += line_of(segments.back());
    }
    std::vector<Plain> expected = merged(segments);
    merges += segments.size() - expected.size();
    std::stable_sort(expected.begin(), expected.end(),
                     [](const Plain& a, const Plain& b) { return a.dest_in < b.dest_in; });
    CLightworksEdl edl(nullptr, 0);
    ASSERT_EQ(read(edl, lightworks_head + table), 100);
    const auto entries = entries_of(edl);
    ASSERT_EQ(entries.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      const Plain& e = expected[i];
      ASSERT_TRUE(
          support::has_times(*entries[i], {e.dest_in, e.dest_out, e.source_in, e.source_out}));
      ASSERT_EQ(entries[i]->transition_type, e.type);
      ASSERT_EQ(entries[i]->fade_in_length, e.fade_in);
      ASSERT_EQ(entries[i]->fade_out_length, e.fade_out);
      ASSERT_EQ(entries[i]->gain_left, e.gain);
      ASSERT_EQ(int{entries[i]->get_stream(0)}, e.stream);
    }
  }
  EXPECT_GT(merges, 500U);
}

}  // namespace
