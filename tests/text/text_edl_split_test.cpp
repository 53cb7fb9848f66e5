#include <gtest/gtest.h>

#include <map>
#include <random>

#include "tests/core/edl_fixtures.h"
#include "tests/support/scripted_host.h"
#include "tests/text/line_format.h"

namespace {

using support::add_entry;
using support::Edit;
using support::entries_of;
using support::LineFormat;
using support::utf8;

struct Row {
  std::string reel;
  std::int64_t source_in, source_out, dest_in, dest_out;
  unsigned type;
  std::int64_t fade_in, fade_out;
  int event;
  friend bool operator==(const Row&, const Row&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Row& r) {
    return out << r.event << " " << r.reel << " " << r.source_in << "-" << r.source_out << " at "
               << r.dest_in << "-" << r.dest_out << " type " << r.type << " fades " << r.fade_in
               << "/" << r.fade_out;
  }
};

std::vector<Row> rows_of(const CGenericEdl& edl) {
  std::vector<Row> rows;
  for (const CGenericEdlEntry* e : entries_of(edl)) {
    rows.push_back({utf8(support::reel_of(*e)), e->source_in, e->source_out, e->dest_in,
                    e->dest_out, e->transition_type, e->fade_in_length, e->fade_out_length,
                    e->event_number});
  }
  return rows;
}

// Ten seconds of TAPE01, 48000 Hz and 25 frames: 1920 samples a frame.
std::vector<Row> split(std::int64_t fade_in, std::int64_t fade_out) {
  CGenericEdl root;
  support::set_rates(root);
  Edit edit = support::standard_edit();
  edit.fade_in = fade_in;
  edit.fade_out = fade_out;
  add_entry(root, edit);
  LineFormat edl(&root);
  edl.split_for_export();
  return rows_of(root);
}

TEST(SplitForExport, NoFades) {
  EXPECT_EQ(
      split(0, 0),
      (std::vector<Row>{{"TAPE01", 172800000, 173280000, 1728000000, 1728480000, 50, 0, 0, 1}}));
}

TEST(SplitForExport, LessThanAFrameIsNoFade) {
  EXPECT_EQ(split(1919, 1919), (std::vector<Row>{{"TAPE01", 172800000, 173280000, 1728000000,
                                                  1728480000, 50, 1919, 1919, 1}}));
}

TEST(SplitForExport, FadeInComesFromBlack) {
  EXPECT_EQ(split(46080, 0),
            (std::vector<Row>{
                {"BLK", 0, 0, 1728000000, 1728000000, 50, 46080, 0, 1},
                {"TAPE01", 172800000, 173280000, 1728000000, 1728480000, 51, 46080, 0, 1}}));
}

TEST(SplitForExport, FadeOutGoesToBlack) {
  EXPECT_EQ(split(0, 23040),
            (std::vector<Row>{{"TAPE01", 172800000, 173256960, 1728000000, 1728456960, 50, 0, 0, 1},
                              {"TAPE01", 173256960, 173256960, 1728456960, 1728456960, 50, 0, 0, 2},
                              {"BLK", 0, 23040, 1728456960, 1728480000, 51, 0, 23040, 2}}));
}

TEST(SplitForExport, BothFades) {
  EXPECT_EQ(
      split(46080, 23040),
      (std::vector<Row>{{"BLK", 0, 0, 1728000000, 1728000000, 50, 0, 0, 1},
                        {"TAPE01", 172800000, 173256960, 1728000000, 1728456960, 51, 46080, 0, 1},
                        {"TAPE01", 173256960, 173256960, 1728456960, 1728456960, 50, 0, 0, 2},
                        {"BLK", 0, 23040, 1728456960, 1728480000, 51, 23040, 0, 2}}));
}

TEST(SplitForExport, NewEntriesOutliveTheExporter) {
  CGenericEdl root;
  support::set_rates(root);
  Edit edit = support::standard_edit();
  edit.fade_out = 23040;
  add_entry(root, edit);
  { LineFormat(&root).split_for_export(); }
  for (const CGenericEdlEntry* e : entries_of(root)) {
    EXPECT_EQ(e->owner, &root);
    wide_char text[12];
    e->samples_to_timecode(e->dest_in, text);
    EXPECT_NE(utf8(text), "");
  }
}

TEST(SplitForExport, EditThatIsAllFadeInStays) {
  CGenericEdl root;
  support::set_rates(root);
  add_entry(root, {.dest_in = 0,
                   .dest_out = 46080,
                   .source_out = 46080,
                   .reel = u"R",
                   .fade_in = 46080,
                   .event_number = 1});
  LineFormat(&root).split_for_export();
  EXPECT_EQ(rows_of(root).size(), 2U);
}

TEST(SplitForExport, DissolveWithABlackBehindItGoesWithIt) {
  CGenericEdl root;
  support::set_rates(root);
  // Two edits that are nothing but the same fade-in; the second one's cut from black
  // stands behind the first.
  for (int i = 0; i < 2; ++i) {
    add_entry(root, {.dest_in = 0,
                     .dest_out = 46080,
                     .source_out = 46080,
                     .reel = u"R",
                     .fade_in = 46080,
                     .event_number = 1});
  }
  LineFormat(&root).split_for_export();
  // Left are the first cut from black and the second edit.
  const std::vector<Row> rows = rows_of(root);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].reel, "BLK");
  EXPECT_EQ(rows[1].reel, "R");
}

// The told steps one after another, on plain rows with scans.
struct PlainEdit {
  int id;
  std::string reel;
  int stream;
  std::int64_t dest_in, dest_out, fade_in, fade_out;
  bool dissolve = false;
};

constexpr std::int64_t frame = 1920;

std::vector<PlainEdit> plainly_split(const std::vector<PlainEdit>& edits) {
  std::vector<PlainEdit> out;
  for (PlainEdit e : edits) {
    const bool in = e.fade_in / frame != 0;
    const bool fades_out = e.fade_out / frame != 0;
    if (!in && !fades_out) {
      e.dissolve = false;
      out.push_back(e);
      continue;
    }
    const std::int64_t length = e.fade_out;
    if (!fades_out) e.fade_out = 0;
    if (!in) e.fade_in = 0;
    PlainEdit cut = e;
    PlainEdit black = e;
    if (in) {
      PlainEdit front = e;
      front.reel = "BLK";
      front.dest_out = front.dest_in;
      if (fades_out) front.fade_in = front.fade_out = 0;
      front.dissolve = false;
      out.push_back(front);
    }
    e.dissolve = in;
    if (fades_out) {
      e.dest_out -= length;
      e.fade_out = 0;
    }
    out.push_back(e);
    if (!fades_out) continue;
    cut.dest_in = cut.dest_out = cut.dest_out - length;
    cut.fade_in = cut.fade_out = 0;
    cut.dissolve = false;
    out.push_back(cut);
    black.reel = "BLK";
    black.dest_in = black.dest_out - length;
    black.dissolve = true;
    black.fade_in = in ? length : 0;
    black.fade_out = in ? 0 : length;
    out.push_back(black);
  }
  return out;
}

void plainly_remove_pairs(std::vector<PlainEdit>& list) {
  for (std::size_t i = 0; i < list.size();) {
    const PlainEdit& e = list[i];
    std::size_t j = list.size();
    if (e.dest_out - e.dest_in == e.fade_in && e.dissolve && e.reel != "BLK") {
      for (j = i + 1; j < list.size(); ++j) {
        const PlainEdit& b = list[j];
        if (b.stream == e.stream && b.dest_in == e.dest_in && b.fade_in == e.fade_in &&
            (b.dest_in == b.dest_out || b.reel == "BLK")) {
          break;
        }
      }
    }
    if (j >= list.size()) {
      ++i;
      continue;
    }
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(j));
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(i));
  }
}

TEST(SplitForExport, EqualsTheScanOnRandomLists) {
  std::mt19937 random(3);
  const auto pick = [&random](int n) {
    return static_cast<int>(random() % static_cast<unsigned>(n));
  };
  for (int round = 0; round < 500; ++round) {
    CGenericEdl root;
    support::set_rates(root);
    std::vector<PlainEdit> edits;
    for (int i = 0, n = pick(14); i < n; ++i) {
      const std::int64_t start = frame * pick(4);
      const std::int64_t length = frame * pick(4);
      edits.push_back({i, pick(5) == 0 ? "BLK" : "R", pick(2), start, start + length,
                       frame * pick(3), pick(3) == 0 ? frame * pick(3) : 0});
      const PlainEdit& e = edits.back();
      add_entry(root, {.dest_in = e.dest_in,
                       .dest_out = e.dest_out,
                       .streams = {e.stream},
                       .reel = std::u16string(e.reel.begin(), e.reel.end()),
                       .fade_in = e.fade_in,
                       .fade_out = e.fade_out,
                       .event_number = 1})
          .source_word = static_cast<std::uint32_t>(i);
    }
    LineFormat(&root).split_for_export();
    std::vector<PlainEdit> expected = plainly_split(edits);
    plainly_remove_pairs(expected);
    for (bool moved = true; moved;) {
      moved = false;
      for (std::size_t i = 0; i + 1 < expected.size(); ++i) {
        if (expected[i].dest_in != expected[i + 1].dest_in ||
            expected[i + 1].stream >= expected[i].stream) {
          continue;
        }
        std::swap(expected[i], expected[i + 1]);
        moved = true;
      }
    }
    const auto entries = entries_of(root);
    ASSERT_EQ(entries.size(), expected.size()) << round;
    for (std::size_t i = 0; i < entries.size(); ++i) {
      ASSERT_EQ(static_cast<int>(entries[i]->source_word), expected[i].id) << round << ":" << i;
      ASSERT_EQ(utf8(support::reel_of(*entries[i])), expected[i].reel) << round << ":" << i;
      ASSERT_EQ(entries[i]->dest_in, expected[i].dest_in) << round << ":" << i;
      ASSERT_EQ(entries[i]->dest_out, expected[i].dest_out) << round << ":" << i;
      ASSERT_EQ(entries[i]->fade_in_length, expected[i].fade_in) << round << ":" << i;
      ASSERT_EQ(entries[i]->fade_out_length, expected[i].fade_out) << round << ":" << i;
      ASSERT_EQ(entries[i]->transition_type, expected[i].dissolve ? 51U : 50U) << round << ":" << i;
    }
  }
}

}  // namespace
