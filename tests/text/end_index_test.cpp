#include "text/end_index.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/core/edl_fixtures.h"
#include "tests/support/scripted_host.h"

namespace {

class EndIndexTest : public testing::Test {
 protected:
  CGenericEdlEntry& add(std::int64_t dest_out, int stream = 0) {
    CGenericEdlEntry& entry = support::add_entry(
        edl, {.dest_out = dest_out, .source_out = 1000 + dest_out, .streams = {stream}});
    index.add(&entry);
    return entry;
  }

  support::ScriptedHost host;
  CGenericEdl edl;
  text::EndIndex index;
};

TEST_F(EndIndexTest, TheLastOneThatEndsThereOnTheStream) {
  EXPECT_EQ(index.nearest(0, 100), nullptr);
  add(100);
  CGenericEdlEntry& second = add(100);
  CGenericEdlEntry& other = add(100, 1);
  EXPECT_EQ(index.nearest(0, 100), &second);
  EXPECT_EQ(index.nearest(1, 100), &other);
  EXPECT_EQ(index.nearest(2, 100), nullptr);
  EXPECT_EQ(index.nearest(0, 101), nullptr);
}

TEST_F(EndIndexTest, AnEntryThatRunsOnIsFoundAtItsNewEnd) {
  CGenericEdlEntry& first = add(100);
  CGenericEdlEntry& second = add(100);
  index.let_fade_out(second, 40);
  EXPECT_EQ(second.dest_out, 140);
  EXPECT_EQ(second.source_out, 1140);
  EXPECT_EQ(second.fade_out_length, 40);
  EXPECT_EQ(index.nearest(0, 140), &second);
  EXPECT_EQ(index.nearest(0, 100), &first) << "the one before it ends there still";
  index.let_fade_out(first, 0);
  EXPECT_EQ(index.nearest(0, 100), &first);
}

TEST_F(EndIndexTest, WhatRanOnKeepsItsPlaceInTheList) {
  CGenericEdlEntry& early = add(100);
  CGenericEdlEntry& late = add(140);
  index.let_fade_out(early, 40);
  EXPECT_EQ(index.nearest(0, 140), &late) << "passed later";
  index.let_fade_out(late, 1);
  EXPECT_EQ(index.nearest(0, 140), &early);
}

TEST_F(EndIndexTest, AgreesWithASearchBackwards) {
  std::mt19937 random(11);
  std::vector<CGenericEdlEntry*> passed;
  int found = 0;
  for (int step = 0; step < 3000; ++step) {
    const auto end = static_cast<std::int64_t>(random() % 12) * 10;
    const int stream = static_cast<int>(random() % 2);
    if (random() % 3 == 0) {
      passed.push_back(&add(end, stream));
      continue;
    }
    CGenericEdlEntry* expected = nullptr;
    for (std::size_t i = passed.size(); i > 0 && expected == nullptr; --i) {
      CGenericEdlEntry* const entry = passed[i - 1];
      if (entry->get_stream(0) == stream && entry->dest_out == end) expected = entry;
    }
    ASSERT_EQ(index.nearest(static_cast<unsigned short>(stream), end), expected) << step;
    if (expected == nullptr) continue;
    ++found;
    index.let_fade_out(*expected, 10 - end % 20);
  }
  EXPECT_GT(found, 500);
}

}  // namespace
