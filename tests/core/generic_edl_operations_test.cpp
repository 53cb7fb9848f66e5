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
  add_entry(edl, mono(0, 0));
  add_entry(edl, mono(1, 1));
  edl.merge_into_n_channel_entries();
  EXPECT_EQ(entries_of(edl).size(), 3U);
  add_entry(edl, mono(0, 0, 5000));
  edl.merge_into_n_channel_entries();
  EXPECT_EQ(entries_of(edl).size(), 3U);
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
  bool stereo = false;
};

std::vector<PlainEntry> plainly_merged(std::vector<PlainEntry> list) {
  std::size_t at = 0;
  while (at < list.size()) {
    std::size_t next = at + 1;
    bool stepped = false;
    for (; next < list.size(); ++next) {
      const PlainEntry& a = list[at];
      const PlainEntry& b = list[next];
      if (a.dest_in != b.dest_in) {
        stepped = true;
        break;
      }
      if (a.stream % 2 == 0 && a.dest_out == b.dest_out && a.source_in == b.source_in &&
          b.stream - a.stream == 1 && b.channel - a.channel == 1) {
        list[at].stereo = true;
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(next));
        stepped = true;
        break;
      }
    }
    if (!stepped) break;
    ++at;
  }
  return list;
}

TEST(Merge, EqualsTheScanOnRandomLists) {
  std::mt19937 random(7);
  const auto pick = [&random](int n) {
    return static_cast<int>(random() % static_cast<unsigned>(n));
  };
  for (int round = 0; round < 400; ++round) {
    CGenericEdl edl;
    std::vector<PlainEntry> plain;
    std::int64_t time = 0;
    const int groups = 1 + pick(4);
    for (int g = 0; g < groups; ++g) {
      time += 1000;
      const int size = 1 + pick(round % 2 == 0 ? 6 : 80);
      for (int i = 0; i < size; ++i) {
        const PlainEntry e{time,    time + 100 + pick(2),          10 * pick(2), pick(6),
                           pick(4), static_cast<int>(plain.size())};
        plain.push_back(e);
        add_entry(edl, {.dest_in = e.dest_in,
                        .dest_out = e.dest_out,
                        .source_in = e.source_in,
                        .source_out = e.source_in + 100,
                        .streams = {e.stream},
                        .event_number = static_cast<std::uint16_t>(e.id),
                        .first_channel = static_cast<std::uint16_t>(e.channel)});
      }
    }
    edl.merge_into_n_channel_entries();
    const std::vector<PlainEntry> expected = plainly_merged(plain);
    const auto entries = entries_of(edl);
    ASSERT_EQ(entries.size(), expected.size()) << round;
    for (std::size_t i = 0; i < entries.size(); ++i) {
      ASSERT_EQ(entries[i]->event_number, expected[i].id) << round;
      ASSERT_EQ(entries[i]->no_streams, expected[i].stereo ? 2 : 1) << round;
    }
  }
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
}

TEST(CheckReelFrameRates, AnswersOneAlways) {
  CGenericEdl edl;
  support::set_rates(edl);
  EXPECT_EQ(edl.check_reel_frame_rates(), 1);
  ASSERT_NE(edl.find_or_add_reel(u"R"), nullptr);
  EXPECT_EQ(edl.check_reel_frame_rates(), 1);
  CGenericEdlEntry& entry = add_entry(edl, {.source_in = 1920, .source_out = 3840, .reel = u"R"});
  entry.reel->set_frame_rate(4);
  EXPECT_EQ(edl.check_reel_frame_rates(), 1);
  EXPECT_EQ(entry.source_in, 1600);
}

}  // namespace
