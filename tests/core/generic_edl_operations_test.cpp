#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/generic_edl.h"
#include "core/generic_edl_entry.h"
#include "core/generic_reel.h"
#include "tests/core/edl_fixtures.h"

namespace {

using support::add_entry;
using support::Edit;
using support::entries_of;
using support::streams_of;

std::vector<std::int64_t> dest_ins(const CGenericEdl& edl) {
  std::vector<std::int64_t> times;
  for (const CGenericEdlEntry* entry : entries_of(edl))
    times.push_back(entry->dest_in);
  return times;
}

TEST(SortGenericList, OnePassAndNoMore) {
  const auto sorted = [](std::vector<std::int64_t> times) {
    CGenericEdl edl;
    for (const std::int64_t t : times)
      add_entry(edl, {.dest_in = t});
    edl.sort_generic_list();
    return dest_ins(edl);
  };
  EXPECT_EQ(sorted({3, 2, 1}), (std::vector<std::int64_t>{2, 1, 3}));
  EXPECT_EQ(sorted({5, 1, 4, 2}), (std::vector<std::int64_t>{1, 4, 2, 5}));
  EXPECT_EQ(sorted({}), std::vector<std::int64_t>{});
}

TEST(SortGenericList, EqualTimesKeepTheirOrder) {
  CGenericEdl edl;
  const CGenericEdlEntry* const a = &add_entry(edl, {.dest_in = 1});
  const CGenericEdlEntry* const b = &add_entry(edl, {.dest_in = 1});
  edl.sort_generic_list();
  EXPECT_EQ(entries_of(edl)[0], a);
  EXPECT_EQ(entries_of(edl)[1], b);
}

// The pass as it is told, on the times alone with their places.
TEST(SortGenericList, EqualsTheToldPassOnRandomLists) {
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    CGenericEdl edl;
    const auto keys = 1 + random() % 40;
    for (auto left = random() % 60; left > 0; --left) {
      add_entry(edl, {.dest_in = static_cast<std::int64_t>(random() % keys) - 20});
    }
    std::vector<CGenericEdlEntry*> expected = entries_of(edl);
    for (std::size_t i = 1; i < expected.size(); ++i) {
      if (expected[i]->dest_in < expected[i - 1]->dest_in) std::swap(expected[i - 1], expected[i]);
    }
    edl.sort_generic_list();
    ASSERT_EQ(entries_of(edl), expected) << round;
  }
}

TEST(SortGenericList, ListOfTheParentIsLeftAlone) {
  CGenericEdl root;
  add_entry(root, {.dest_in = 2});
  add_entry(root, {.dest_in = 1});
  CGenericEdl child(&root, 0);
  child.sort_generic_list();
  EXPECT_EQ(dest_ins(root), (std::vector<std::int64_t>{2, 1}));
}

Edit mono(int stream, int channel, std::int64_t dest_in = 0) {
  return {.dest_in = dest_in,
          .dest_out = dest_in + 100,
          .source_in = 1000,
          .source_out = 1100,
          .streams = {stream},
          .first_channel = static_cast<std::uint16_t>(channel)};
}

TEST(Merge, TwoSidesOfAStereoEdit) {
  CGenericEdl edl;
  CGenericEdlEntry& a = add_entry(edl, mono(0, 0));
  a.set_reel_name(u"R");
  add_entry(edl, mono(1, 1)).gain_left = 0.25F;
  edl.merge_into_n_channel_entries();
  ASSERT_EQ(entries_of(edl).size(), 1U);
  EXPECT_EQ(streams_of(a), (std::vector<int>{0, 1}));
  EXPECT_EQ(a.no_channels, 2);
  EXPECT_EQ(a.gain_right, 0.25F);
  EXPECT_EQ(a.reel->no_streams, 2);
}

TEST(Merge, WithoutReelTheCountIsAssigned) {
  CGenericEdl edl;
  CGenericEdlEntry& a = add_entry(edl, mono(0, 0));
  a.reel_no_streams = 8;
  add_entry(edl, mono(1, 1));
  edl.merge_into_n_channel_entries();
  EXPECT_EQ(a.reel_no_streams, 2);
}

TEST(Merge, WhatDoesNotMerge) {
  const auto count = [](const Edit& a, const Edit& b) {
    CGenericEdl edl;
    add_entry(edl, a);
    add_entry(edl, b);
    edl.merge_into_n_channel_entries();
    return entries_of(edl).size();
  };
  EXPECT_EQ(count(mono(1, 0), mono(2, 1)), 2U);
  EXPECT_EQ(count(mono(0, 0), mono(1, 0)), 2U);
  EXPECT_EQ(count(mono(1, 1), mono(0, 0)), 2U);
  Edit longer = mono(1, 1);
  longer.source_out = 1101;
  EXPECT_EQ(count(mono(0, 0), longer), 2U);
}

TEST(Merge, EndsAtTheFirstUnmatchedEntryOfTheLastGroup) {
  CGenericEdl edl;
  add_entry(edl, mono(4, 0));
  const CGenericEdlEntry& left = add_entry(edl, mono(0, 0));
  add_entry(edl, mono(1, 1));
  edl.merge_into_n_channel_entries();
  EXPECT_EQ(entries_of(edl).size(), 3U);
  EXPECT_EQ(streams_of(left), std::vector<int>{0});
  // With a later edit behind it the group is not the last.
  add_entry(edl, mono(0, 0, 5000));
  edl.merge_into_n_channel_entries();
  EXPECT_EQ(entries_of(edl).size(), 3U);
  EXPECT_EQ(streams_of(left), (std::vector<int>{0, 1}));
}

TEST(Merge, GroupsBeforeTheLastAreTriedWhole) {
  CGenericEdl edl;
  add_entry(edl, mono(4, 0));
  add_entry(edl, mono(0, 0));
  add_entry(edl, mono(1, 1));
  add_entry(edl, mono(7, 0, 200));
  add_entry(edl, mono(0, 0, 200));
  add_entry(edl, mono(1, 1, 200));
  edl.merge_into_n_channel_entries();
  EXPECT_EQ(dest_ins(edl), (std::vector<std::int64_t>{0, 0, 200, 200, 200}));
}

TEST(Merge, ChildMergesOnTheListOfItsParent) {
  CGenericEdl root;
  add_entry(root, mono(0, 0));
  add_entry(root, mono(1, 1));
  CGenericEdl child(&root, 0);
  child.merge_into_n_channel_entries();
  EXPECT_EQ(entries_of(root).size(), 1U);
}

TEST(Merge, MergedEntryIsNotTriedAgain) {
  CGenericEdl edl;
  add_entry(edl, mono(0, 0));
  add_entry(edl, mono(1, 1));
  add_entry(edl, mono(1, 1));
  edl.merge_into_n_channel_entries();
  EXPECT_EQ(entries_of(edl).size(), 2U);
}

// The procedure step by step, with a scan for each entry.
struct PlainEntry {
  std::int64_t dest_in, dest_out, source_in;
  int stream, channel, id;
  // The entry that it was merged with.
  int other = -1;
};

bool plainly_mergeable(const PlainEntry& a, const PlainEntry& b) {
  return a.stream % 2 == 0 && a.dest_out == b.dest_out && a.source_in == b.source_in &&
         b.stream - a.stream == 1 && b.channel - a.channel == 1;
}

std::vector<PlainEntry> plainly_merged(std::vector<PlainEntry> list) {
  std::size_t at = 0;
  while (at < list.size()) {
    std::size_t next = at + 1;
    for (;; ++next) {
      if (next == list.size()) return list;
      if (list[at].dest_in != list[next].dest_in) break;
      if (plainly_mergeable(list[at], list[next])) {
        list[at].other = list[next].id;
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(next));
        break;
      }
    }
    ++at;
  }
  return list;
}

// Builds the list, merges it, and holds it against the plain procedure.
void compare_merge(const std::vector<PlainEntry>& plain, int round) {
  CGenericEdl edl;
  for (const PlainEntry& e : plain) {
    CGenericEdlEntry& entry =
        add_entry(edl, {.dest_in = e.dest_in,
                        .dest_out = e.dest_out,
                        .source_in = e.source_in,
                        .source_out = e.source_in + 100,
                        .streams = {e.stream},
                        .event_number = static_cast<std::uint16_t>(e.id),
                        .first_channel = static_cast<std::uint16_t>(e.channel)});
    entry.gain_left = static_cast<float>(e.id);
    entry.gain_right = -1.0F;
  }
  edl.merge_into_n_channel_entries();
  const std::vector<PlainEntry> expected = plainly_merged(plain);
  const auto entries = entries_of(edl);
  ASSERT_EQ(entries.size(), expected.size()) << round;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const PlainEntry& e = expected[i];
    ASSERT_EQ(entries[i]->event_number, e.id) << round;
    // The right gain tells which of several partners was taken.
    ASSERT_EQ(entries[i]->gain_right, static_cast<float>(e.other)) << round;
    const auto streams =
        e.other < 0 ? std::vector<int>{e.stream} : std::vector<int>{e.stream, e.stream + 1};
    ASSERT_EQ(streams_of(*entries[i]), streams) << round;
  }
}

TEST(Merge, EqualsTheScanOnRandomLists) {
  std::mt19937 random(7);
  const auto pick = [&random](int n) {
    return static_cast<int>(random() % static_cast<unsigned>(n));
  };
  for (int round = 0; round < 600; ++round) {
    std::vector<PlainEntry> plain;
    std::int64_t time = 0;
    const int groups = 1 + pick(4);
    const int streams = 2 + pick(8);
    for (int g = 0; g < groups; ++g) {
      time += 1000;
      // Short groups, groups about the length from which partners are indexed, and
      // long ones.
      const int longest[] = {6, 20, 120};
      const int size = 1 + pick(longest[round % 3]);
      for (int i = 0; i < size; ++i) {
        plain.push_back({time, time + 100 + pick(10) / 9, 10 * (pick(10) / 9), pick(streams),
                         pick(3), static_cast<int>(plain.size())});
      }
    }
    compare_merge(plain, round);
  }
}

TEST(Merge, EqualsTheScanInOneLongStretch) {
  std::mt19937 random(8);
  std::vector<PlainEntry> plain;
  constexpr int pairs = 1500;
  for (int i = 0; i < 2 * pairs; ++i)
    plain.push_back({0, 100, 0, i, i % 2, 0});
  const auto number = [&plain] {
    for (std::size_t i = 0; i < plain.size(); ++i)
      plain[i].id = static_cast<int>(i);
  };
  // All left sides, then all right sides in the opposite order: everything merges.
  std::stable_sort(plain.begin(), plain.end(), [](const PlainEntry& a, const PlainEntry& b) {
    if (a.channel != b.channel) return a.channel < b.channel;
    return a.channel == 0 ? a.stream < b.stream : a.stream > b.stream;
  });
  number();
  ASSERT_EQ(plainly_merged(plain).size(), std::size_t{pairs});
  compare_merge(plain, 0);
  // Out of order many right sides stand before their left sides. Without an edit
  // behind it, the stretch ends at the first entry that finds no partner.
  std::shuffle(plain.begin(), plain.end(), random);
  number();
  compare_merge(plain, 1);
  plain.push_back({5000, 5100, 0, 0, 0, 2 * pairs});
  compare_merge(plain, 2);
}

std::vector<int> windowed(const std::vector<int>& streams) {
  CGenericEdl edl;
  add_entry(edl, {.streams = streams});
  edl.offset_edl(2, 2);
  const auto entries = entries_of(edl);
  return entries.empty() ? std::vector<int>{-1} : streams_of(*entries[0]);
}

TEST(OffsetEdl, KeepsTheWindowAndMovesItDown) {
  EXPECT_EQ(windowed({1, 2}), std::vector<int>{0});
  EXPECT_EQ(windowed({4}), std::vector<int>{-1});
  EXPECT_EQ(windowed({5, 6, 7}), std::vector<int>{-1});
  EXPECT_EQ(windowed({0, 1}), std::vector<int>{-1});
  EXPECT_EQ(windowed({3, 4}), std::vector<int>{1});
  EXPECT_EQ(windowed({2, 3}), (std::vector<int>{0, 1}));
}

TEST(OffsetEdl, EntryFromTheStartOfTheWindowIsNotCutAtItsEnd) {
  EXPECT_EQ(windowed({2, 3, 4}), (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(windowed({1, 2, 3, 4, 5}), (std::vector<int>{0, 1, 2, 3}));
}

TEST(OffsetEdl, StreamThatGoesNowhereWraps) {
  EXPECT_EQ(windowed({2, 65535}), (std::vector<int>{0, 65533}));
  // Without streams an entry begins at no stream, which no window holds.
  EXPECT_EQ(windowed({}), std::vector<int>{-1});
}

TEST(MinMaxChannels, OnePastTheHighest) {
  CGenericEdl edl;
  add_entry(edl, {.streams = {2}});
  add_entry(edl, {.streams = {5, 6}});
  unsigned short low = 65535;
  unsigned short high = 0;
  edl.get_min_max_channels(&low, &high);
  EXPECT_EQ(low, 2);
  EXPECT_EQ(high, 7);
}

TEST(MinMaxChannels, SumIsSixteenBits) {
  CGenericEdl edl;
  add_entry(edl, {.streams = {65535}});
  unsigned short low = 65535;
  unsigned short high = 3;
  edl.get_min_max_channels(&low, &high);
  EXPECT_EQ(high, 3);
  add_entry(edl, {.streams = {65534, 65535}});
  edl.get_min_max_channels(&low, &high);
  EXPECT_EQ(low, 65534);
  EXPECT_EQ(high, 3);
}

// Formats may take an entry's channels from elsewhere.
class ByFirstChannel final : public CGenericEdl {
 public:
  [[nodiscard]] unsigned short get_first_stream(const CGenericEdlEntry* entry) const override {
    return entry->first_channel;
  }
};

TEST(MinMaxChannels, AskTheFormatWhereChannelsBegin) {
  ByFirstChannel edl;
  add_entry(edl, {.streams = {9, 10}, .first_channel = 4});
  unsigned short low = 65535;
  unsigned short high = 0;
  edl.get_min_max_channels(&low, &high);
  EXPECT_EQ(low, 4);
  EXPECT_EQ(high, 6);
}

TEST(OffsetEdl, AsksTheFormatWhereChannelsBegin) {
  ByFirstChannel edl;
  add_entry(edl, {.streams = {9, 10}, .first_channel = 2});
  add_entry(edl, {.streams = {2, 3}, .first_channel = 9});
  edl.offset_edl(2, 2);
  ASSERT_EQ(entries_of(edl).size(), 1U);
  EXPECT_EQ(streams_of(*entries_of(edl)[0]), (std::vector<int>{7, 8}));
}

class CheckReelFrameRates : public testing::Test {
 protected:
  CheckReelFrameRates() { support::set_rates(edl_); }
  CGenericEdl edl_;
};

TEST_F(CheckReelFrameRates, AnswersOneAlways) {
  EXPECT_EQ(edl_.check_reel_frame_rates(), 1);
  ASSERT_NE(edl_.find_or_add_reel(u"R"), nullptr);
  EXPECT_EQ(edl_.check_reel_frame_rates(), 1);
  CGenericEdlEntry& entry = add_entry(edl_, {.source_in = 1920, .source_out = 3840, .reel = u"R"});
  entry.reel->set_frame_rate(4);
  EXPECT_EQ(edl_.check_reel_frame_rates(), 1);
  EXPECT_EQ(entry.source_in, 1600);
}

TEST_F(CheckReelFrameRates, MovesOnlyWhatDiffersAndOnlyOnce) {
  CGenericEdlEntry& changed = add_entry(
      edl_,
      {.dest_in = 1920, .dest_out = 3840, .source_in = 1920, .source_out = 3840, .reel = u"R"});
  const CGenericEdlEntry& same =
      add_entry(edl_, {.source_in = 1920, .source_out = 3840, .reel = u"S"});
  const CGenericEdlEntry& without = add_entry(edl_, {.source_in = 1920, .source_out = 3840});
  changed.reel->set_frame_rate(4);
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(edl_.check_reel_frame_rates(), 1);
    EXPECT_EQ(changed.source_in, 1600);
    EXPECT_EQ(changed.source_out, 3200);
    EXPECT_EQ(changed.dest_in, 1920);
    EXPECT_EQ(changed.dest_out, 3840);
    EXPECT_EQ(same.source_in, 1920);
    EXPECT_EQ(without.source_in, 1920);
  }
}

TEST_F(CheckReelFrameRates, NegativeTimesKeepTheirDigits) {
  CGenericEdlEntry& entry =
      add_entry(edl_, {.source_in = -1920 * 13, .source_out = 0, .reel = u"R"});
  entry.reel->set_frame_rate(4);
  EXPECT_EQ(edl_.check_reel_frame_rates(), 1);
  // Frame 13 of 30 a second; its last digit must not fall off with the sign in front.
  EXPECT_EQ(entry.source_in, -1600 * 13);
}

TEST_F(CheckReelFrameRates, RateBehindTheTableCountsTwentyFive) {
  CGenericEdlEntry& entry = add_entry(edl_, {.source_in = 1920, .source_out = 3840, .reel = u"R"});
  entry.reel->set_frame_rate(256);
  EXPECT_EQ(edl_.check_reel_frame_rates(), 1);
  EXPECT_EQ(entry.source_in, 1920);
  EXPECT_EQ(entry.source_out, 3840);
}

TEST_F(CheckReelFrameRates, ReelsOfAChildWithoutRatesHaveThoseOfTheRoot) {
  CGenericEdl child(&edl_, 0);
  auto entry = std::make_unique<CGenericEdlEntry>(&child);
  entry->set_reel_name(u"R");
  EXPECT_EQ(entry->reel->frame_rate(), 1);
  entry->reel->set_frame_rate(4);
  entry->update_reel_frame_rate();
  EXPECT_EQ(entry->reel->frame_rate(), entry->frame_rate);
}

}  // namespace
