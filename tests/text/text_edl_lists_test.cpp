#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/core/edl_fixtures.h"
#include "tests/text/line_format.h"

namespace {

using support::add_entry;
using support::Edit;
using support::entries_of;
using support::LineFormat;

std::vector<int> numbers_of(const CGenericEdl& edl) {
  std::vector<int> numbers;
  for (const CGenericEdlEntry* e : entries_of(edl))
    numbers.push_back(e->event_number);
  return numbers;
}

class Random {
 public:
  explicit Random(unsigned seed) : source_(seed) {}
  std::int64_t below(int n) {
    return static_cast<std::int64_t>(source_() % static_cast<unsigned>(n));
  }

 private:
  std::mt19937 source_;
};

// Exchanges neighbours for which `swap` holds until none are left.
template <class T, class Swap>
void bubble(std::vector<T>& list, Swap swap) {
  for (bool moved = true; moved;) {
    moved = false;
    for (std::size_t i = 0; i + 1 < list.size(); ++i) {
      if (!swap(list[i], list[i + 1])) continue;
      std::swap(list[i], list[i + 1]);
      moved = true;
    }
  }
}

struct Keyed {
  std::int64_t dest_in;
  int stream;
  int number;
};

std::vector<Keyed> random_keys(Random& random, std::size_t count) {
  std::vector<Keyed> keys;
  for (std::size_t i = 0; i < count; ++i) {
    keys.push_back({random.below(40), static_cast<int>(random.below(5)), static_cast<int>(i)});
  }
  return keys;
}

void fill(CGenericEdl& edl, const std::vector<Keyed>& keys) {
  for (const Keyed& key : keys) {
    add_entry(edl, {.dest_in = key.dest_in,
                    .streams = {key.stream},
                    .event_number = static_cast<std::uint16_t>(key.number)});
  }
}

std::vector<int> numbers_of(const std::vector<Keyed>& keys) {
  std::vector<int> numbers;
  for (const Keyed& key : keys)
    numbers.push_back(key.number);
  return numbers;
}

TEST(SortByDestIn, EqualsExchangingNeighbours) {
  Random random(1);
  std::vector<Keyed> keys = random_keys(random, 1000);
  LineFormat edl;
  fill(edl, keys);
  edl.sort_by_dest_in();
  bubble(keys, [](const Keyed& a, const Keyed& b) { return b.dest_in < a.dest_in; });
  EXPECT_EQ(numbers_of(edl), numbers_of(keys));
}

TEST(SortByDestIn, ShortListsAreLeftAlone) {
  LineFormat edl;
  edl.sort_by_dest_in();
  add_entry(edl, {.dest_in = 5});
  edl.sort_by_dest_in();
  EXPECT_EQ(entries_of(edl).size(), 1U);
}

TEST(SortSameStart, EqualsExchangingNeighboursAndCrossesNoRun) {
  Random random(2);
  for (int round = 0; round < 50; ++round) {
    std::vector<Keyed> keys = random_keys(random, 60);
    for (Keyed& key : keys)
      key.dest_in /= 10;
    LineFormat edl;
    fill(edl, keys);
    edl.sort_same_start(edl.get_generic_entry_list());
    bubble(keys, [](const Keyed& a, const Keyed& b) {
      return a.dest_in == b.dest_in && b.stream < a.stream;
    });
    ASSERT_EQ(numbers_of(edl), numbers_of(keys)) << round;
  }
}

std::vector<int> renumbered(const std::vector<int>& numbers) {
  LineFormat edl;
  for (const int n : numbers)
    add_entry(edl, {.event_number = static_cast<std::uint16_t>(n)});
  edl.renumber_events(edl.get_generic_entry_list());
  return numbers_of(edl);
}

TEST(RenumberEvents, AtMostTwoLinesShareANumber) {
  EXPECT_EQ(renumbered({65535, 65535, 65535}), (std::vector<int>{1, 1, 2}));
  EXPECT_EQ(renumbered({5, 5, 9, 9, 9}), (std::vector<int>{1, 1, 2, 2, 3}));
  EXPECT_EQ(renumbered({1, 2, 2, 2}), (std::vector<int>{1, 2, 2, 3}));
  EXPECT_EQ(renumbered({}), std::vector<int>{});
}

TEST(MarkAllCuts, EveryEntryIsACut) {
  LineFormat edl;
  add_entry(edl, {.transition = 51});
  add_entry(edl, {});
  edl.mark_all_cuts();
  for (const CGenericEdlEntry* e : entries_of(edl))
    EXPECT_EQ(e->transition_type, 50U);
}

class FoldCrossfades : public testing::Test {
 protected:
  // A ends at 1000 where B begins, each from 5000 in its source.
  void meet(std::int64_t fade_out, std::int64_t fade_in, std::int64_t b_source = 5000) {
    a_ = &add_entry(edl_, {.dest_in = 0,
                           .dest_out = 1000,
                           .source_in = 5000,
                           .source_out = 6000,
                           .fade_out = fade_out});
    b_ = &add_entry(edl_, {.dest_in = 1000,
                           .dest_out = 2000,
                           .source_in = b_source,
                           .source_out = b_source + 1000,
                           .fade_in = fade_in});
    edl_.fold_crossfades();
  }
  LineFormat edl_;
  CGenericEdlEntry* a_ = nullptr;
  CGenericEdlEntry* b_ = nullptr;
};

TEST_F(FoldCrossfades, EachSideGrowsByHalf) {
  meet(240, 240);
  EXPECT_EQ(a_->dest_out, 1120);
  EXPECT_EQ(a_->source_out, 6120);
  EXPECT_EQ(b_->dest_in, 880);
  EXPECT_EQ(b_->source_in, 4880);
  EXPECT_EQ(a_->original_dest_out, 1000);
  EXPECT_EQ(a_->original_source_out, 6000);
  EXPECT_EQ(b_->original_dest_in, 1000);
  EXPECT_EQ(b_->original_source_in, 5000);
}

TEST_F(FoldCrossfades, TooLittleSourceLimitsIt) {
  meet(240, 240, 100);
  EXPECT_EQ(a_->fade_out_length, 100);
  EXPECT_EQ(b_->fade_in_length, 100);
  EXPECT_EQ(a_->dest_out, 1100);
  EXPECT_EQ(a_->source_out, 6100);
  EXPECT_EQ(b_->dest_in, 900);
  EXPECT_EQ(b_->source_in, 0);
}

TEST_F(FoldCrossfades, OddLengthsAreHalvedTowardsZero) {
  meet(241, 241);
  EXPECT_EQ(a_->dest_out, 1120);
  EXPECT_EQ(a_->fade_out_length, 241);
}

TEST_F(FoldCrossfades, DifferentFadesAreLeft) {
  meet(240, 0);
  EXPECT_EQ(a_->dest_out, 1000);
  EXPECT_EQ(a_->original_dest_out, 0);
}

TEST_F(FoldCrossfades, EditsWithoutFadesOnlyKeepTheirTimes) {
  meet(0, 0);
  EXPECT_EQ(a_->dest_out, 1000);
  EXPECT_EQ(b_->dest_in, 1000);
  EXPECT_EQ(a_->original_dest_out, 1000);
  EXPECT_EQ(b_->original_source_in, 5000);
}

TEST_F(FoldCrossfades, HugeTimesWrapAndDoNoHarm) {
  add_entry(edl_, {.dest_out = 100, .source_out = INT64_MAX, .fade_out = 50});
  add_entry(edl_, {.dest_in = 100, .source_in = 100, .fade_in = 50});
  edl_.fold_crossfades();
  EXPECT_EQ(entries_of(edl_)[0]->source_out, INT64_MIN + 24);
}

}  // namespace
