// Fades rewritten as events in front of an export, at 48000 Hz and 25 frames: a
// frame is 1920 samples, the edit lasts ten seconds.
#include <gtest/gtest.h>

#include "tests/text/plain_procedures.h"
#include "tests/text/text_fixtures.h"

namespace {

using support::add_entry;
using support::add_rows;
using support::crowded_rows;
using support::Edit;
using support::entries_of;
using support::Rows;
using support::rows_of;
using support::same_rows;
using support::ToyEdl;

constexpr std::int64_t in_24 = 46080;   // 24 frames
constexpr std::int64_t out_12 = 23040;  // 12 frames

// What a test looks at of an event that the split made.
struct Event {
  std::u16string reel;
  std::int64_t source_in;
  std::int64_t source_out;
  std::int64_t dest_in;
  std::int64_t dest_out;
  std::uint32_t type;
  std::int64_t fade_in;
  std::int64_t fade_out;
  int number;
  friend bool operator==(const Event&, const Event&) = default;
  friend void PrintTo(const Event& e, std::ostream* out) {
    *out << utf8_from_text(e.reel) << ' ' << e.source_in << '-' << e.source_out << " at "
         << e.dest_in << '-' << e.dest_out << " type " << e.type << " fades " << e.fade_in << ' '
         << e.fade_out << " event " << e.number;
  }
};

class SplitTest : public testing::Test {
 protected:
  SplitTest() { support::set_rates(edl); }
  std::vector<Event> events() const {
    std::vector<Event> found;
    for (const CGenericEdlEntry* e : entries_of(edl)) {
      found.push_back({support::reel_of(*e), e->source_in, e->source_out, e->dest_in, e->dest_out,
                       e->transition_type, e->fade_in_length, e->fade_out_length, e->event_number});
    }
    return found;
  }
  std::vector<Event> split(std::int64_t fade_in, std::int64_t fade_out) {
    Edit edit = support::standard_edit();
    edit.fade_in = fade_in;
    edit.fade_out = fade_out;
    edit.streams = {2};
    add_entry(edl, edit);
    edl.split_for_export();
    return events();
  }
  support::ScriptedHost host;
  ToyEdl edl;
};

TEST_F(SplitTest, WithoutFades) {
  EXPECT_EQ(
      split(0, 0),
      (std::vector<Event>{{u"TAPE01", 172800000, 173280000, 1728000000, 1728480000, 50, 0, 0, 1}}));
}

TEST_F(SplitTest, AFadeIn) {
  EXPECT_EQ(split(in_24, 0),
            (std::vector<Event>{
                {u"BLK", 0, 0, 1728000000, 1728000000, 50, in_24, 0, 1},
                {u"TAPE01", 172800000, 173280000, 1728000000, 1728480000, 51, in_24, 0, 1}}));
  EXPECT_EQ(support::streams_of(*entries_of(edl)[0]), std::vector<int>{2});
}

TEST_F(SplitTest, AFadeOut) {
  EXPECT_EQ(
      split(0, out_12),
      (std::vector<Event>{{u"TAPE01", 172800000, 173256960, 1728000000, 1728456960, 50, 0, 0, 1},
                          {u"TAPE01", 173256960, 173256960, 1728456960, 1728456960, 50, 0, 0, 2},
                          {u"BLK", 0, 23040, 1728456960, 1728480000, 51, 0, out_12, 2}}));
  EXPECT_EQ(support::streams_of(*entries_of(edl)[2]), std::vector<int>{2});
}

TEST_F(SplitTest, BothFades) {
  EXPECT_EQ(split(in_24, out_12),
            (std::vector<Event>{
                {u"BLK", 0, 0, 1728000000, 1728000000, 50, 0, 0, 1},
                {u"TAPE01", 172800000, 173256960, 1728000000, 1728456960, 51, in_24, 0, 1},
                {u"TAPE01", 173256960, 173256960, 1728456960, 1728456960, 50, 0, 0, 2},
                {u"BLK", 0, 23040, 1728456960, 1728480000, 51, out_12, 0, 2}}));
}

TEST_F(SplitTest, LessThanAFrameIsNoFadeAndStays) {
  EXPECT_EQ(split(1919, 1919), (std::vector<Event>{{u"TAPE01", 172800000, 173280000, 1728000000,
                                                    1728480000, 50, 1919, 1919, 1}}));
}

TEST_F(SplitTest, AFadeOfAFrameIsOne) {
  EXPECT_EQ(split(1920, 0).size(), 2U);
}

TEST_F(SplitTest, AShortFadeBesideARealOneGoes) {
  EXPECT_EQ(split(in_24, 1919),
            (std::vector<Event>{
                {u"BLK", 0, 0, 1728000000, 1728000000, 50, in_24, 0, 1},
                {u"TAPE01", 172800000, 173280000, 1728000000, 1728480000, 51, in_24, 0, 1}}));
}

TEST_F(SplitTest, NumbersOfTheNewEventsWrap) {
  Edit edit = support::standard_edit();
  edit.event_number = 65535;
  edit.fade_out = out_12;
  add_entry(edl, edit);
  edl.split_for_export();
  // 65535 became 65535 and twice 0, a change of number, which is what counts.
  EXPECT_EQ(events()[0].number, 1);
  EXPECT_EQ(events()[1].number, 2);
  EXPECT_EQ(events()[2].number, 2);
}

TEST_F(SplitTest, NewEventsBelongToTheOwnerOfTheirEdit) {
  CGenericEdl root;
  support::set_rates(root);
  Edit edit = support::standard_edit();
  edit.fade_in = in_24;
  edit.fade_out = out_12;
  add_entry(root, edit);
  {
    ToyEdl exporter(&root);
    exporter.split_for_export();
  }
  const auto entries = entries_of(root);
  ASSERT_EQ(entries.size(), 4U);
  for (const CGenericEdlEntry* entry : entries)
    EXPECT_EQ(entry->owner, &root);
  EXPECT_EQ(support::reel_of(*entries[0]), u"BLK");
  EXPECT_EQ(entries[0]->reel, entries[3]->reel) << "one reel of the root";
}

TEST_F(SplitTest, AnEditWithoutOwner) {
  CGenericEdl root;
  support::set_rates(root);
  Edit edit = support::standard_edit();
  edit.fade_in = in_24;
  add_entry(root, edit).owner = nullptr;
  ToyEdl exporter(&root);
  exporter.split_for_export();
  ASSERT_EQ(entries_of(root).size(), 2U);
  EXPECT_EQ(support::reel_of(*entries_of(root)[0]), u"BLK");
  EXPECT_EQ(entries_of(root)[0]->reel, nullptr);
}

// Black pairs

Edit all_fade_in(const std::u16string& reel, std::int64_t dest_in, std::int64_t length) {
  return {.dest_in = dest_in,
          .dest_out = dest_in + length,
          .source_in = 0,
          .source_out = length,
          .streams = {0},
          .reel = reel,
          .fade_in = length};
}

TEST_F(SplitTest, AnEditThatIsAllFadeInStaysBehindItsOwnBlack) {
  add_entry(edl, all_fade_in(u"R", 96000, in_24));
  edl.split_for_export();
  EXPECT_EQ(events(), (std::vector<Event>{{u"BLK", 0, 0, 96000, 96000, 50, in_24, 0, 1},
                                          {u"R", 0, in_24, 96000, 142080, 51, in_24, 0, 1}}));
}

TEST_F(SplitTest, WithALaterBlackOfTheSameStartBothGo) {
  add_entry(edl, all_fade_in(u"R", 96000, in_24));
  Edit longer = all_fade_in(u"S", 96000, in_24);
  longer.dest_out += 48000;
  longer.source_out += 48000;
  add_entry(edl, longer);
  edl.split_for_export();
  EXPECT_EQ(events(), (std::vector<Event>{{u"BLK", 0, 0, 96000, 96000, 50, in_24, 0, 1},
                                          {u"S", 0, 94080, 96000, 190080, 51, in_24, 0, 1}}));
}

TEST_F(SplitTest, ABlackOfAnotherStreamStartOrFadeIsNoPartner) {
  const auto count_with = [](Edit other) {
    ToyEdl list;
    support::set_rates(list);
    add_entry(list, all_fade_in(u"R", 96000, in_24));
    other.dest_out += 48000;
    other.source_out += 48000;
    add_entry(list, other);
    list.split_for_export();
    return entries_of(list).size();
  };
  Edit stream = all_fade_in(u"S", 96000, in_24);
  stream.streams = {1};
  EXPECT_EQ(count_with(stream), 4U);
  EXPECT_EQ(count_with(all_fade_in(u"S", 97920, in_24)), 4U);
  EXPECT_EQ(count_with(all_fade_in(u"S", 96000, in_24 + 1920)), 4U);
  EXPECT_EQ(count_with(all_fade_in(u"S", 96000, in_24)), 2U);
}

TEST_F(SplitTest, AnEditOnTheBlackReelIsNoPictureOfAFade) {
  const auto count_with = [](const std::u16string& reel) {
    ToyEdl list;
    support::set_rates(list);
    add_entry(list, all_fade_in(reel, 96000, in_24));
    Edit longer = all_fade_in(u"S", 96000, in_24);
    longer.dest_out += 48000;
    longer.source_out += 48000;
    add_entry(list, longer);
    list.split_for_export();
    return entries_of(list).size();
  };
  EXPECT_EQ(count_with(u"BLK"), 4U);
  EXPECT_EQ(count_with(u"BLKS"), 2U);
  EXPECT_EQ(count_with(u"blk"), 2U) << "case counts";
}

// The whole preparation

TEST_F(SplitTest, EventsOfOneStartAreOrderedByStream) {
  Edit two = support::standard_edit();
  two.streams = {1};
  two.fade_in = in_24;
  add_entry(edl, two);
  Edit one = support::standard_edit();
  one.event_number = 2;
  add_entry(edl, one);
  edl.split_for_export();
  std::vector<std::pair<int, int>> found;
  for (const CGenericEdlEntry* entry : entries_of(edl))
    found.emplace_back(entry->get_stream(0), entry->event_number);
  EXPECT_EQ(found, (std::vector<std::pair<int, int>>{{0, 1}, {1, 2}, {1, 2}}));
}

TEST_F(SplitTest, IsTheToldPreparation) {
  std::mt19937 random(5);
  for (int round = 0; round < 400; ++round) {
    Rows rows = crowded_rows(random, support::below(random, 50));
    ToyEdl list;
    support::set_rates(list);
    add_rows(list, rows);
    // Reels are shared by name without regard to case, so take the rows as they
    // stand on the list.
    rows = rows_of(list);
    list.split_for_export();
    plain_split_for_export(rows, 1920);
    ASSERT_TRUE(same_rows(rows_of(list), rows)) << "round " << round;
  }
}

TEST_F(SplitTest, ManyPairsOfOneStart) {
  // Edits that are all fade-in at one place, so that pairs are found and lost all
  // along the list.
  std::mt19937 random(6);
  for (int round = 0; round < 100; ++round) {
    Rows rows = crowded_rows(random, 40);
    for (support::Row& row : rows) {
      row.dest_in = 10000 * support::below(random, 2);
      row.fade_in = 5000 * support::below(random, 3);
      row.fade_out = support::below(random, 4) == 0 ? 5000 : 0;
      row.dest_out = row.dest_in + row.fade_in + row.fade_out;
      row.streams = {support::below(random, 2)};
      row.reel = support::below(random, 4) == 0 ? u"BLK" : u"R";
    }
    ToyEdl list;
    support::set_rates(list);
    add_rows(list, rows);
    list.split_for_export();
    plain_split_for_export(rows, 1920);
    ASSERT_TRUE(same_rows(rows_of(list), rows)) << "round " << round;
  }
}

TEST_F(SplitTest, TimesAtTheEndsOf64BitsWrap) {
  Edit edit;
  edit.dest_in = INT64_MIN;
  edit.dest_out = INT64_MIN;
  edit.source_in = INT64_MIN;
  edit.source_out = INT64_MIN;
  edit.fade_in = INT64_MAX;
  edit.fade_out = INT64_MAX;
  edit.reel = u"R";
  add_entry(edl, edit);
  edl.split_for_export();
  EXPECT_EQ(entries_of(edl).size(), 4U);
  EXPECT_EQ(entries_of(edl)[1]->dest_out, 1);
}

}  // namespace
