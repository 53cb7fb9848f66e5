// Markers of a cut to black, which become fade-outs of the edit before them.
#include <gtest/gtest.h>

#include "tests/text/plain_procedures.h"
#include "tests/text/text_fixtures.h"
#include "text/cmx_edl.h"

namespace {

using support::add_rows;
using support::crowded_rows;
using support::Row;
using support::Rows;
using support::rows_of;
using support::same_rows;

// Imports a list that stands in memory: the file gives no lines of its own.
class PreparedCmx final : public CCMXEdl {
 public:
  explicit PreparedCmx(const Rows& rows, const EDL_CONVERSION_SETTINGS& settings = {})
      : CCMXEdl(4, nullptr, 0) {
    set_edl_conversion_settings(&settings);
    support::set_rates(*this);
    add_rows(*this, rows);
  }
  int find_first_event(CTextFile&) override { return 1; }
};

class BlackTest : public support::TextTest {
 protected:
  // What the steps behind the last line make of the rows.
  Rows folded(const Rows& rows, const EDL_CONVERSION_SETTINGS& settings = {}) {
    PreparedCmx edl(rows, settings);
    EXPECT_EQ(import_bytes(edl, ""), 100);
    return rows_of(edl);
  }
  static Row edit(int mark, std::int64_t dest_in, std::int64_t dest_out,
                  const std::u16string& reel = u"R", int stream = 0) {
    Row row;
    row.mark = mark;
    row.dest_in = dest_in;
    row.dest_out = dest_out;
    row.source_in = 1000;
    row.source_out = 1000 + dest_out - dest_in;
    row.streams = {stream};
    row.reel = reel;
    // Neighbours share no fade, so that no crossfade is folded.
    row.fade_in = mark * 100 + 1;
    return row;
  }
  static std::vector<int> marks(const Rows& rows) {
    std::vector<int> found;
    for (const Row& row : rows)
      found.push_back(row.mark);
    return found;
  }
  using Marks = std::vector<int>;
};

TEST_F(BlackTest, AMarkerGivesTheEditBeforeItAFadeOut) {
  Row b = edit(3, 100, 200);
  b.fade_in = 40;
  const Rows rows = folded({edit(1, 0, 100), edit(2, 100, 100), b});
  ASSERT_EQ(marks(rows), (Marks{1, 3}));
  EXPECT_EQ(rows.front().dest_out, 140);
  EXPECT_EQ(rows.front().source_out, 1140);
  EXPECT_EQ(rows.front().fade_out, 40);
  EXPECT_EQ(rows.back(), b);
}

TEST_F(BlackTest, TheBlackBehindAMarkerGoesToo) {
  for (const char16_t* black : {u"blk1", u"BL", u"BLK", u"bL", u"BLUE1"}) {
    Row b = edit(3, 100, 200, black);
    b.fade_in = 40;
    const Rows rows = folded({edit(1, 0, 100), edit(2, 100, 100), b, edit(4, 300, 400)});
    ASSERT_EQ(marks(rows), (Marks{1, 4})) << utf8_from_text(black);
    EXPECT_EQ(rows.front().dest_out, 140);
  }
  EXPECT_EQ(folded({edit(1, 0, 100), edit(2, 100, 100), edit(3, 100, 200, u"B")}).size(), 2U);
}

TEST_F(BlackTest, ABlackMarkerGoesAndTheNextEventIsNotLookedAt) {
  EXPECT_EQ(marks(folded({edit(1, 0, 100), edit(2, 100, 100, u"BL"), edit(3, 100, 100),
                          edit(4, 100, 200), edit(5, 200, 200), edit(6, 200, 300)})),
            (Marks{1, 3, 4, 6}));
}

TEST_F(BlackTest, AMarkerAtTheEndStays) {
  EXPECT_EQ(marks(folded({edit(1, 0, 100), edit(2, 100, 100)})), (Marks{1, 2}));
  EXPECT_EQ(marks(folded({edit(2, 100, 100)})), (Marks{2}));
  EXPECT_EQ(marks(folded({edit(1, 0, 100), edit(2, 100, 100, u"BLK")})), (Marks{1, 2}));
  EXPECT_EQ(marks(folded({})), (Marks{}));
}

TEST_F(BlackTest, AMarkerThatEndsNoEditIsRemoved) {
  const Rows rows = folded({edit(1, 0, 100), edit(2, 150, 150), edit(3, 150, 200)});
  ASSERT_EQ(marks(rows), (Marks{1, 3}));
  EXPECT_EQ(rows.front(), edit(1, 0, 100)) << "nothing grows";
}

TEST_F(BlackTest, TheEditMustBeOnTheMarkersStream) {
  Row b = edit(4, 100, 200);
  b.fade_in = 40;
  const Rows rows =
      folded({edit(1, 0, 100, u"R", 0), edit(2, 10, 100, u"R", 1), edit(3, 100, 100), b});
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows.front().dest_out, 140);
  EXPECT_EQ(std::next(rows.begin())->dest_out, 100);
}

TEST_F(BlackTest, TheNearestEditGrows) {
  Row b = edit(4, 100, 200);
  b.fade_in = 40;
  const Rows rows = folded({edit(1, 0, 100), edit(2, 50, 100), edit(3, 100, 100), b});
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows.front().dest_out, 100);
  EXPECT_EQ(std::next(rows.begin())->dest_out, 140);
}

TEST_F(BlackTest, AMarkerAtTheHeadTakesTheNextEventsTurn) {
  // After it the new head is not looked at, so the marker 2 stays.
  EXPECT_EQ(marks(folded({edit(1, 50, 50), edit(2, 60, 60), edit(3, 70, 80)})), (Marks{2, 3}));
  EXPECT_EQ(marks(folded({edit(1, 50, 50), edit(2, 60, 70), edit(3, 80, 80), edit(4, 90, 95)})),
            (Marks{2, 4}));
  EXPECT_EQ(marks(folded({edit(1, 50, 50), edit(2, 60, 70, u"BLK")})), (Marks{}));
}

TEST_F(BlackTest, AnEditMayGrowTwice) {
  Row b = edit(3, 100, 200, u"BLK");
  b.fade_in = 40;
  Row d = edit(5, 140, 240, u"BLK");
  d.fade_in = 7;
  const Rows rows = folded({edit(1, 0, 100), edit(2, 100, 100), b, edit(4, 140, 140), d});
  ASSERT_EQ(marks(rows), (Marks{1}));
  EXPECT_EQ(rows.front().dest_out, 147);
  EXPECT_EQ(rows.front().fade_out, 7);
}

TEST_F(BlackTest, IsTheToldFold) {
  std::mt19937 random(7);
  for (int round = 0; round < 600; ++round) {
    Rows rows = crowded_rows(random, support::below(random, 40));
    PreparedCmx edl(rows);
    rows = rows_of(edl);  // reels share spellings
    ASSERT_EQ(import_bytes(edl, ""), 100);
    plain_fold_black(rows);
    plain_fold_crossfades(rows);
    plain_sort_by_dest_in(rows);
    ASSERT_TRUE(same_rows(rows_of(edl), rows)) << "round " << round;
  }
}

TEST_F(BlackTest, ManyMarkersOfOnePlace) {
  // Fades are few lengths on a small timeline, so that edits grow to ends which
  // other edits, before and behind them, have too.
  std::mt19937 random(8);
  for (int round = 0; round < 200; ++round) {
    Rows rows = crowded_rows(random, 60);
    for (Row& row : rows) {
      row.dest_in = 10 * support::below(random, 4);
      row.dest_out = row.dest_in + 10 * support::below(random, 3);
      row.fade_in = 10 * support::below(random, 2);
      row.streams = {support::below(random, 2)};
      row.reel = support::below(random, 3) == 0 ? u"BL" : u"R";
    }
    PreparedCmx edl(rows);
    ASSERT_EQ(import_bytes(edl, ""), 100);
    plain_fold_black(rows);
    plain_fold_crossfades(rows);
    plain_sort_by_dest_in(rows);
    ASSERT_TRUE(same_rows(rows_of(edl), rows)) << "round " << round;
  }
}

TEST_F(BlackTest, MergingIsTheToldRoadToo) {
  std::mt19937 random(9);
  EDL_CONVERSION_SETTINGS settings;
  settings.cmx_merge_channels = 1;
  for (int round = 0; round < 300; ++round) {
    Rows rows = crowded_rows(random, support::below(random, 80));
    for (Row& row : rows) {
      // Two sides of stereo edits, mostly.
      row.first_channel = row.stream() == 65535 ? 0 : row.stream();
      row.source_in = row.dest_in;
      row.source_out = row.dest_out;
    }
    PreparedCmx edl(rows, settings);
    rows = rows_of(edl);
    ASSERT_EQ(import_bytes(edl, ""), 100);
    plain_fold_black(rows);
    plain_sort_by_dest_in(rows);
    plain_merge(rows);
    plain_fold_crossfades(rows);
    ASSERT_TRUE(same_rows(rows_of(edl), rows)) << "round " << round;
  }
}

TEST_F(BlackTest, AHostileListTakesNoLongerThanItsLength) {
  // Edits that end at one place, each moved by a marker to the end of others that
  // stand behind it in the list: with a search or a shift for each, 40000 markers
  // would take minutes.
  Rows rows;
  constexpr int count = 40000;
  for (int i = 0; i < count; ++i)
    rows.push_back(edit(1, 0, 100));
  for (int i = 0; i < count; ++i)
    rows.push_back(edit(2, 0, 150));
  for (int i = 0; i < count; ++i) {
    rows.push_back(edit(3, 100, 100));
    Row b = edit(4, 100, 100, u"BLK");
    b.fade_in = 50;
    rows.push_back(b);
  }
  const Rows left = folded(rows);
  EXPECT_EQ(left.size(), 2U * count);
  for (const Row& row : left)
    EXPECT_EQ(row.dest_out, 150);
}

}  // namespace
