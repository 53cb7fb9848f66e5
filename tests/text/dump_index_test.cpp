#include "text/dump_index.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/core/edl_fixtures.h"
#include "tests/support/scripted_host.h"
#include "tests/text/line_format.h"

namespace {

// The rule as it is told: the first entry of the list that fits.
const CGenericEdlEntry* first_that_covers(const CObList& dump, const CGenericEdlEntry& entry) {
  for (const CGenericEdlEntry* d : support::entries_of(&dump)) {
    const bool reel = support::reel_of(*d).substr(0, 3) == support::reel_of(entry).substr(0, 3);
    const bool covered = d->dest_in <= entry.source_in && d->dest_out >= entry.source_out;
    if (reel && d->get_stream(0) == entry.get_stream(0) &&
        (covered || entry.source_in == entry.source_out)) {
      return d;
    }
  }
  return nullptr;
}

const std::vector<std::u16string> reels = {u"", u"A", u"ABC", u"ABCD", u"ABCE", u"ABD", u"abc"};

support::Edit random_edit(std::mt19937& random, bool in_order, int place) {
  support::Edit edit;
  edit.streams = random() % 8 == 0 ? std::vector<int>{} : std::vector<int>{int(random() % 2)};
  edit.reel = reels[random() % reels.size()];
  edit.dest_in = in_order ? place * 10 : static_cast<int>(random() % 200);
  edit.dest_out = edit.dest_in + static_cast<int>(random() % 30);
  edit.source_in = static_cast<int>(random() % 250) - 10;
  edit.source_out = edit.source_in + static_cast<int>(random() % 12);
  return edit;
}

TEST(DumpIndex, AgreesWithAScan) {
  std::mt19937 random(11);
  int found = 0;
  for (int run = 0; run < 300; ++run) {
    CGenericEdl edl;
    CObList dump;
    const int entries = static_cast<int>(random() % 60);
    for (int i = 0; i < entries; ++i)
      dump.AddTail(support::make_entry(edl, random_edit(random, run % 2 == 0, i)).release());
    const text::DumpIndex index(dump);
    for (int query = 0; query < 40; ++query) {
      const auto entry = support::make_entry(edl, random_edit(random, false, 0));
      const CGenericEdlEntry* const expected = first_that_covers(dump, *entry);
      ASSERT_EQ(index.find(*entry), expected);
      if (expected != nullptr) ++found;
    }
    delete_all(dump);
  }
  EXPECT_GT(found, 1000);
}

TEST(DumpIndex, FollowsChangesOfTheList) {
  const support::ScriptedHost host;
  support::LineFormat edl;
  const auto entry = support::make_entry(edl, {.source_in = 5, .source_out = 6, .reel = u"ABC"});
  EXPECT_EQ(edl.find_dump_entry(entry.get()), nullptr);
  auto* const dump = support::make_entry(edl, {.dest_out = 10, .reel = u"ABC"}).release();
  edl.get_dump_list()->AddTail(dump);
  EXPECT_EQ(edl.find_dump_entry(entry.get()), dump);
  edl.get_dump_list()->RemoveHead();
  EXPECT_EQ(edl.find_dump_entry(entry.get()), nullptr);
  delete dump;
}

TEST(DumpIndex, ExtremeTimesFindNothingThatIsNotThere) {
  CGenericEdl edl;
  CObList dump;
  for (int i = 0; i < 3; ++i)
    dump.AddTail(support::make_entry(edl, {.dest_in = 0, .dest_out = 10}).release());
  const text::DumpIndex index(dump);
  const auto entry = support::make_entry(edl, {.source_in = INT64_MAX, .source_out = INT64_MIN});
  // Every entry begins before and ends behind that.
  EXPECT_EQ(index.find(*entry), dump.GetHead());
  delete_all(dump);
  const text::DumpIndex empty(dump);
  EXPECT_EQ(empty.find(*entry), nullptr);
}

}  // namespace
