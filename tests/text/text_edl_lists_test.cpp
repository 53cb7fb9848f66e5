// Sorting, numbering and folding.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/text/plain_procedures.h"
#include "tests/text/text_fixtures.h"

namespace {

using support::add_entry;
using support::add_rows;
using support::crowded_rows;
using support::entries_of;
using support::Row;
using support::Rows;
using support::rows_of;
using support::same_rows;
using support::ToyEdl;
using Numbers = std::vector<int>;

class ListsTest : public testing::Test {
 protected:
  ListsTest() { support::set_rates(edl); }
  support::ScriptedHost host;
  ToyEdl edl;
};

// Sorting by destination in

TEST_F(ListsTest, SortsByDestinationIn) {
  for (const int time : {30, 10, 20})
    add_entry(edl, {.dest_in = time});
  edl.sort_by_dest_in();
  const auto entries = entries_of(edl);
  EXPECT_EQ(entries[0]->dest_in, 10);
  EXPECT_EQ(entries[1]->dest_in, 20);
  EXPECT_EQ(entries[2]->dest_in, 30);
}

TEST_F(ListsTest, EqualTimesKeepTheirOrder) {
  for (const std::uint16_t number : std::initializer_list<std::uint16_t>{1, 2, 3})
    add_entry(edl, {.dest_in = number == 3 ? 4 : 5, .event_number = number});
  edl.sort_by_dest_in();
  const auto entries = entries_of(edl);
  EXPECT_EQ(entries[0]->event_number, 3);
  EXPECT_EQ(entries[1]->event_number, 1);
  EXPECT_EQ(entries[2]->event_number, 2);
}

TEST_F(ListsTest, ShortListsAreLeftAlone) {
  edl.sort_by_dest_in();
  EXPECT_TRUE(entries_of(edl).empty());
  CGenericEdlEntry& only = add_entry(edl, {.dest_in = 7});
  edl.sort_by_dest_in();
  EXPECT_EQ(entries_of(edl), std::vector<CGenericEdlEntry*>{&only});
}

TEST_F(ListsTest, EntriesAreMovedNotCopied) {
  CGenericEdlEntry& late = add_entry(edl, {.dest_in = 2});
  CGenericEdlEntry& early = add_entry(edl, {.dest_in = 1});
  edl.sort_by_dest_in();
  EXPECT_EQ(entries_of(edl), (std::vector<CGenericEdlEntry*>{&early, &late}));
}

TEST_F(ListsTest, SortsTheExtremesOf64Bits) {
  add_entry(edl, {.dest_in = INT64_MAX});
  add_entry(edl, {.dest_in = 0});
  add_entry(edl, {.dest_in = INT64_MIN});
  edl.sort_by_dest_in();
  EXPECT_EQ(entries_of(edl)[0]->dest_in, INT64_MIN);
  EXPECT_EQ(entries_of(edl)[2]->dest_in, INT64_MAX);
}

TEST_F(ListsTest, TheSortIsTheToldOne) {
  std::mt19937 random(1);
  for (const int count : {2, 3, 10, 100, 1000}) {
    for (int round = 0; round < (count < 1000 ? 20 : 1); ++round) {
      Rows rows = crowded_rows(random, count);
      for (Row& row : rows)
        row.dest_in = support::below(random, count / 2 + 1);
      ToyEdl list;
      add_rows(list, rows);
      list.sort_by_dest_in();
      plain_sort_by_dest_in(rows);
      ASSERT_TRUE(same_rows(rows_of(list), rows)) << count << " entries, round " << round;
    }
  }
}

// Sorting inside equal starts

TEST_F(ListsTest, EqualStartsAreSortedByStream) {
  for (const int stream : {2, 0, 1})
    add_entry(edl, {.dest_in = 5, .streams = {stream}});
  add_entry(edl, {.dest_in = 3, .streams = {9}});
  add_entry(edl, {.dest_in = 5, .streams = {}});
  add_entry(edl, {.dest_in = 5, .streams = {0}});
  edl.sort_same_start(edl.get_generic_entry_list());
  Numbers streams;
  for (const CGenericEdlEntry* entry : entries_of(edl))
    streams.push_back(entry->get_stream(0));
  EXPECT_EQ(streams, (Numbers{0, 1, 2, 9, 0, 65535})) << "nothing moves across another start";
}

TEST_F(ListsTest, TheSortOfEqualStartsIsTheToldOne) {
  std::mt19937 random(2);
  for (const int count : {2, 3, 10, 60, 400}) {
    for (int round = 0; round < 20; ++round) {
      Rows rows = crowded_rows(random, count);
      for (Row& row : rows) {
        row.dest_in = support::below(random, 2);
        row.streams = {support::below(random, 4)};
      }
      if (round % 2 == 0) plain_sort_by_dest_in(rows);
      ToyEdl list;
      add_rows(list, rows);
      list.sort_same_start(list.get_generic_entry_list());
      plain_sort_same_start(rows);
      ASSERT_TRUE(same_rows(rows_of(list), rows)) << count << " entries, round " << round;
    }
  }
}

// Numbering

class RenumberTest : public ListsTest {
 protected:
  Numbers renumbered(const Numbers& numbers) {
    ToyEdl list;
    for (const int number : numbers)
      add_entry(list, {.event_number = static_cast<std::uint16_t>(number)});
    list.renumber_events(list.get_generic_entry_list());
    Numbers found;
    for (const CGenericEdlEntry* entry : entries_of(list))
      found.push_back(entry->event_number);
    return found;
  }
};

TEST_F(RenumberTest, AtMostTwoLinesShareANumber) {
  EXPECT_EQ(renumbered({65535, 65535, 65535}), (Numbers{1, 1, 2}));
  EXPECT_EQ(renumbered({5, 5, 9, 9, 9}), (Numbers{1, 1, 2, 2, 3}));
  // An edit that only fades out, and the edit behind it.
  EXPECT_EQ(renumbered({1, 2, 2, 2}), (Numbers{1, 2, 2, 3}));
  EXPECT_EQ(renumbered({}), (Numbers{}));
  EXPECT_EQ(renumbered({0}), (Numbers{1}));
  EXPECT_EQ(renumbered({3, 2, 1}), (Numbers{1, 2, 3}));
  EXPECT_EQ(renumbered({1, 1, 1, 1}), (Numbers{1, 1, 2, 2}));
  EXPECT_EQ(renumbered({4, 4, 4, 7, 4}), (Numbers{1, 1, 2, 3, 4}));
}

TEST_F(RenumberTest, NumbersWrapIn16Bits) {
  Numbers numbers;
  for (int i = 0; i < 65540; ++i)
    numbers.push_back(i % 2);
  const Numbers found = renumbered(numbers);
  EXPECT_EQ(found[65534], 65535);
  EXPECT_EQ(found[65535], 0);
  EXPECT_EQ(found[65536], 1);
}

TEST_F(RenumberTest, IsTheToldNumbering) {
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    Rows rows = crowded_rows(random, support::below(random, 40));
    ToyEdl list;
    add_rows(list, rows);
    list.renumber_events(list.get_generic_entry_list());
    plain_renumber(rows);
    ASSERT_TRUE(same_rows(rows_of(list), rows)) << "round " << round;
  }
}

// Cuts alone

TEST_F(ListsTest, MarksAllAsCuts) {
  for (const std::uint32_t type : {0U, 11U, 50U, 51U})
    add_entry(edl, {.fade_in = 99999, .transition = type});
  edl.mark_all_cuts();
  for (const CGenericEdlEntry* entry : entries_of(edl)) {
    EXPECT_EQ(entry->transition_type, 50U);
    EXPECT_EQ(entry->fade_in_length, 99999) << "fades stay";
  }
}

// Folding crossfades

struct Pair {
  CGenericEdlEntry* a;
  CGenericEdlEntry* b;
};

class FoldTest : public ListsTest {
 protected:
  // A 0-1000 and B 1000-2000, both from 5000-6000 of their source.
  Pair folded(std::int64_t fade_out, std::int64_t fade_in, std::int64_t b_source_in = 5000,
              std::int64_t b_dest_in = 1000) {
    Pair pair{};
    pair.a = &add_entry(edl, {.dest_in = b_dest_in - 1000,
                              .dest_out = b_dest_in,
                              .source_in = 5000,
                              .source_out = 6000,
                              .fade_out = fade_out});
    pair.b = &add_entry(edl, {.dest_in = b_dest_in,
                              .dest_out = b_dest_in + 1000,
                              .source_in = b_source_in,
                              .source_out = b_source_in + 1000,
                              .streams = {3},
                              .fade_in = fade_in});
    edl.fold_crossfades();
    return pair;
  }
};

TEST_F(FoldTest, EditsThatMeetAndShareAFadeOverlap) {
  const auto [a, b] = folded(240, 240);
  EXPECT_EQ(a->dest_out, 1120);
  EXPECT_EQ(a->source_out, 6120);
  EXPECT_EQ(b->dest_in, 880);
  EXPECT_EQ(b->source_in, 4880);
  EXPECT_EQ(a->original_dest_out, 1000);
  EXPECT_EQ(a->original_source_out, 6000);
  EXPECT_EQ(b->original_dest_in, 1000);
  EXPECT_EQ(b->original_source_in, 5000);
  EXPECT_EQ(a->fade_out_length, 240);
  EXPECT_EQ(b->fade_in_length, 240);
  EXPECT_EQ(a->dest_in, 0);
  EXPECT_EQ(b->dest_out, 2000);
  EXPECT_EQ(a->original_dest_in, 0) << "what did not move has no original";
  EXPECT_EQ(b->original_dest_out, 0);
}

TEST_F(FoldTest, TooLittleSource) {
  const auto [a, b] = folded(240, 240, 100);
  EXPECT_EQ(a->fade_out_length, 100);
  EXPECT_EQ(b->fade_in_length, 100);
  EXPECT_EQ(a->dest_out, 1100);
  EXPECT_EQ(a->source_out, 6100);
  EXPECT_EQ(b->dest_in, 900);
  EXPECT_EQ(b->source_in, 0);
}

TEST_F(FoldTest, JustEnoughSource) {
  const auto [a, b] = folded(240, 240, 120);
  EXPECT_EQ(a->fade_out_length, 240);
  EXPECT_EQ(b->source_in, 0);
  EXPECT_EQ(b->dest_in, 880);
}

TEST_F(FoldTest, TooLittleTimeline) {
  const auto [a, b] = folded(240, 240, 5000, 30);
  EXPECT_EQ(a->fade_out_length, 30);
  EXPECT_EQ(a->dest_out, 60);
  EXPECT_EQ(b->dest_in, 0);
  EXPECT_EQ(b->source_in, 4970);
}

TEST_F(FoldTest, AnOddLengthIsCut) {
  const auto [a, b] = folded(241, 241);
  EXPECT_EQ(a->dest_out, 1120);
  EXPECT_EQ(b->dest_in, 880);
  EXPECT_EQ(a->fade_out_length, 241);
  EXPECT_EQ(b->fade_in_length, 241);
}

TEST_F(FoldTest, DifferentFadesAreNoCrossfade) {
  const auto [a, b] = folded(240, 0);
  EXPECT_EQ(a->dest_out, 1000);
  EXPECT_EQ(b->dest_in, 1000);
  EXPECT_EQ(a->original_dest_out, 0);
}

TEST_F(FoldTest, FadesOf0StoreTheOriginals) {
  const auto [a, b] = folded(0, 0);
  EXPECT_EQ(a->dest_out, 1000);
  EXPECT_EQ(b->dest_in, 1000);
  EXPECT_EQ(a->original_dest_out, 1000);
  EXPECT_EQ(a->original_source_out, 6000);
  EXPECT_EQ(b->original_dest_in, 1000);
  EXPECT_EQ(b->original_source_in, 5000);
}

TEST_F(FoldTest, EditsThatDoNotMeet) {
  add_entry(edl, {.dest_in = 0, .dest_out = 1000, .fade_out = 240});
  add_entry(edl, {.dest_in = 1001, .dest_out = 2000, .fade_in = 240});
  edl.fold_crossfades();
  EXPECT_EQ(entries_of(edl)[0]->dest_out, 1000);
  EXPECT_EQ(entries_of(edl)[1]->original_dest_in, 0);
}

TEST_F(FoldTest, EveryPairOfNeighboursFolds) {
  // The first fold has only 10 samples of source; the second is whole.
  for (int i = 0; i < 3; ++i) {
    add_entry(edl, {.dest_in = i * 1000,
                    .dest_out = i * 1000 + 1000,
                    .source_in = i == 1 ? 10 : 5000,
                    .source_out = i == 1 ? 1010 : 6000,
                    .fade_in = 200,
                    .fade_out = 200});
  }
  edl.fold_crossfades();
  const auto entries = entries_of(edl);
  EXPECT_EQ(entries[0]->fade_out_length, 10);
  EXPECT_EQ(entries[0]->dest_out, 1010);
  EXPECT_EQ(entries[1]->dest_in, 990);
  EXPECT_EQ(entries[1]->fade_out_length, 200);
  EXPECT_EQ(entries[1]->dest_out, 2100);
  EXPECT_EQ(entries[2]->dest_in, 1900);
}

TEST_F(FoldTest, IsTheToldFold) {
  std::mt19937 random(4);
  for (int round = 0; round < 300; ++round) {
    Rows rows = crowded_rows(random, support::below(random, 60));
    if (round % 2 == 0) plain_sort_by_dest_in(rows);
    ToyEdl list;
    add_rows(list, rows);
    list.fold_crossfades();
    plain_fold_crossfades(rows);
    ASSERT_TRUE(same_rows(rows_of(list), rows)) << "round " << round;
  }
}

TEST_F(FoldTest, TimesAtTheEndsOf64BitsWrap) {
  add_entry(edl, {.dest_in = 0,
                  .dest_out = INT64_MAX,
                  .source_in = 0,
                  .source_out = INT64_MAX,
                  .fade_out = INT64_MAX});
  add_entry(edl, {.dest_in = INT64_MAX,
                  .dest_out = INT64_MAX,
                  .source_in = INT64_MAX,
                  .source_out = INT64_MAX,
                  .fade_in = INT64_MAX});
  edl.fold_crossfades();
  EXPECT_EQ(entries_of(edl)[0]->dest_out, INT64_MIN + INT64_MAX / 2 - 1);
  EXPECT_EQ(entries_of(edl)[1]->dest_in, INT64_MAX - INT64_MAX / 2);
}

}  // namespace
