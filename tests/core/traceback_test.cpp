#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

#include "core/generic_edl.h"
#include "core/generic_edl_entry.h"
#include "core/generic_reel.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"

namespace {

using support::add_entry;
using support::Edit;
using support::entries_of;

struct Span {
  std::int64_t source_in, source_out, dest_in, dest_out;
  friend bool operator==(const Span&, const Span&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Span& s) {
    return out << s.source_in << "-" << s.source_out << " at " << s.dest_in << "-" << s.dest_out;
  }
};

std::vector<Span> spans_of(const CObList& list) {
  std::vector<Span> spans;
  for (const CGenericEdlEntry* e : entries_of(&list)) {
    spans.push_back({e->source_in, e->source_out, e->dest_in, e->dest_out});
  }
  return spans;
}

class Traceback : public testing::Test {
 protected:
  ~Traceback() override { delete_all(out_); }

  // Traces the edits of reel "R" and answers what comes out.
  std::vector<Span> trace(unsigned short mode, bool with_source = true) {
    delete_all(out_);
    EXPECT_EQ(
        edl_.traceback(&out_, with_source ? &source_ : nullptr, edl_.find_or_add_reel(u"R"), mode),
        101);
    return spans_of(out_);
  }

  CGenericEdlEntry& add_edit() {
    return add_entry(
        edl_,
        {.dest_in = 1000, .dest_out = 1100, .source_in = 100, .source_out = 200, .reel = u"R"});
  }
  CGenericEdlEntry& add_piece(std::int64_t dest_in, std::int64_t dest_out, std::int64_t source_in) {
    return add_entry(source_, {.dest_in = dest_in,
                               .dest_out = dest_out,
                               .source_in = source_in,
                               .source_out = source_in + dest_out - dest_in,
                               .reel = u"SRC"});
  }

  CGenericEdl edl_;
  CGenericEdl source_;
  CObList out_;
};

TEST_F(Traceback, WithoutSourceEachEditIsCopiedOnce) {
  add_edit();
  add_entry(edl_, {.reel = u"OTHER"});
  EXPECT_EQ(trace(0, false), (std::vector<Span>{{100, 200, 1000, 1100}}));
}

TEST_F(Traceback, NoMatchGivesAnEmptyList) {
  add_entry(edl_, {.reel = u"OTHER"});
  EXPECT_TRUE(trace(0, false).empty());
}

TEST_F(Traceback, ReelIsMatchedByObject) {
  add_edit();
  auto* const twin = new CGenericReel(u"R", 1);
  edl_.get_reel_list()->AddTail(twin);
  EXPECT_EQ(edl_.traceback(&out_, nullptr, twin, 0), 101);
  EXPECT_TRUE(out_.IsEmpty());
}

TEST_F(Traceback, PiecesThatFollowOnOneAnother) {
  add_edit();
  add_piece(50, 150, 500);
  add_piece(150, 250, 900);
  EXPECT_EQ(trace(0), (std::vector<Span>{{550, 600, 1000, 1050}, {900, 950, 1050, 1100}}));
}

TEST_F(Traceback, PiecesWithAGap) {
  add_edit();
  add_piece(50, 120, 500);
  add_piece(150, 250, 900);
  EXPECT_EQ(trace(0), (std::vector<Span>{{100, 200, 1000, 1100}}));
  EXPECT_EQ(trace(1), (std::vector<Span>{{550, 570, 1000, 1020}, {900, 950, 1050, 1100}}));
  EXPECT_EQ(trace(2), (std::vector<Span>{
                          {550, 570, 1000, 1020}, {120, 150, 1020, 1050}, {900, 950, 1050, 1100}}));
  EXPECT_TRUE(trace(3).empty());
}

TEST_F(Traceback, NoPieceAtAll) {
  add_edit();
  add_piece(500, 600, 0);
  EXPECT_EQ(trace(0), (std::vector<Span>{{100, 200, 1000, 1100}}));
  EXPECT_TRUE(trace(1).empty());
  EXPECT_EQ(trace(2), (std::vector<Span>{{100, 200, 1000, 1100}}));
}

TEST_F(Traceback, PieceGivesItsNames) {
  add_edit();
  CGenericEdlEntry& piece = add_piece(0, 1000, 0);
  piece.set_clip_name(u"clip");
  piece.set_file_path(u"path");
  piece.source_channel = 5;
  piece.source_index = 6;
  piece.no_channels = 7;
  piece.source_is_timestamped = 0;
  ASSERT_EQ(trace(0).size(), 1U);
  const CGenericEdlEntry& copy = *entries_of(&out_)[0];
  EXPECT_EQ(support::reel_of(copy), u"SRC");
  EXPECT_EQ(support::utf8(copy.clip_name), "clip");
  EXPECT_EQ(support::utf8(copy.file_path), "path");
  EXPECT_EQ(copy.source_channel, 5U);
  EXPECT_EQ(copy.source_index, 6);
  EXPECT_EQ(copy.no_channels, 7);
  EXPECT_EQ(copy.source_is_timestamped, 0);
  EXPECT_EQ(copy.owner, &edl_);
}

TEST_F(Traceback, PieceThatEndsBeforeItStartsEndsTheSearch) {
  add_edit();
  add_entry(source_, {.dest_in = 150, .dest_out = 90});
  EXPECT_EQ(trace(0), (std::vector<Span>{{100, 200, 1000, 1100}}));
}

TEST_F(Traceback, ListMayTraceIntoItself) {
  add_edit();
  CObList* const list = edl_.get_generic_entry_list();
  EXPECT_EQ(edl_.traceback(list, &edl_, edl_.find_or_add_reel(u"R"), 2), 101);
  EXPECT_EQ(list->GetCount(), 2);
}

// What comes out for one edit, by a scan of the source for every step.
struct Traced {
  Span span;
  std::uint32_t source_channel;
  friend bool operator==(const Traced&, const Traced&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Traced& t) {
    return out << t.span << " from " << t.source_channel;
  }
};

struct PlainSearch {
  std::vector<const CGenericEdlEntry*> pieces;
  bool whole = false;
};

PlainSearch plain_search(const std::vector<CGenericEdlEntry*>& source, std::int64_t start,
                         std::int64_t end) {
  PlainSearch found;
  bool contiguous = true;
  std::int64_t last = 0;
  const auto first = [&source](auto test) -> const CGenericEdlEntry* {
    for (const CGenericEdlEntry* x : source) {
      if (test(*x)) return x;
    }
    return nullptr;
  };
  for (;;) {
    const auto* x = first([&](const auto& e) { return e.dest_in <= start && start < e.dest_out; });
    if (x != nullptr) {
      found.pieces.push_back(x);
      if (x->dest_out >= end) break;
      start = x->dest_out;
      last = x->dest_in;
      continue;
    }
    x = first(
        [&](const auto& e) { return e.dest_in > start && e.dest_out < end && e.dest_out > start; });
    if (x != nullptr) {
      found.pieces.push_back(x);
      start = x->dest_out;
      if (x->dest_in <= last) {
        last = x->dest_out;
      } else {
        contiguous = false;
      }
      continue;
    }
    x = first([&](const auto& e) { return e.dest_in < end && end <= e.dest_out; });
    if (x == nullptr) return found;
    contiguous = contiguous && x->dest_in <= last;
    found.pieces.push_back(x);
    break;
  }
  found.whole = contiguous;
  return found;
}

Traced plainly_trimmed(const CGenericEdlEntry& e, const CGenericEdlEntry& x) {
  Span t{e.source_in, e.source_out, e.dest_in, e.dest_out};
  if (x.dest_in > t.source_in) {
    t.dest_in += x.dest_in - t.source_in;
    t.source_in = x.source_in;
  } else {
    t.source_in = x.source_in + t.source_in - x.dest_in;
  }
  if (x.dest_out < t.source_out) {
    t.dest_out += x.dest_out - t.source_out;
    t.source_out = x.source_out;
  } else {
    t.source_out = x.source_out - x.dest_out + t.source_out;
  }
  return {t, x.source_channel};
}

std::vector<Traced> plainly_traced(const CGenericEdlEntry& e,
                                   const std::vector<CGenericEdlEntry*>& source,
                                   unsigned short mode) {
  const PlainSearch found = plain_search(source, e.source_in, e.source_out);
  const Traced copy{{e.source_in, e.source_out, e.dest_in, e.dest_out}, e.source_channel};
  if (mode == 0 && !found.whole) return {copy};
  std::vector<Traced> out;
  std::int64_t p = e.dest_in;
  for (const CGenericEdlEntry* x : found.pieces) {
    const Traced t = plainly_trimmed(e, *x);
    if (mode == 2 && t.span.dest_in > p) {
      const std::int64_t from = e.source_in + p - e.dest_in;
      const std::int64_t length = t.span.dest_in - p;
      out.push_back({{from, from + length, p, p + length}, e.source_channel});
    }
    p = t.span.dest_out;
    out.push_back(t);
  }
  if (mode == 2 && p < e.dest_out) {
    out.push_back({{e.source_in + p - e.dest_in, e.source_out, p, e.dest_out}, e.source_channel});
  }
  return out;
}

// Source lists of the shapes in which hosts hold them, and of none.
class RandomTraceback : public Traceback, public testing::WithParamInterface<int> {
 protected:
  enum Shape : int { one_track, overlapping, tracks_by_time, track_after_track, shuffled, damaged };

  std::int64_t below(std::int64_t n) {
    return static_cast<std::int64_t>(random_() % static_cast<std::uint64_t>(n));
  }

  // Starts and ends of a list of about `count` pieces.
  std::vector<std::pair<std::int64_t, std::int64_t>> times(Shape shape, std::int64_t count) {
    std::vector<std::pair<std::int64_t, std::int64_t>> list;
    const int tracks = shape == one_track || shape == overlapping ? 1 : 4;
    for (int track = 0; track < tracks; ++track) {
      std::int64_t at = below(20);
      for (std::int64_t i = 0; i < count / tracks; ++i) {
        const std::int64_t length = below(20);
        list.emplace_back(at, at + length);
        at += shape == overlapping ? below(30) - 8 : length + below(3) * below(10);
      }
    }
    if (shape == tracks_by_time) std::stable_sort(list.begin(), list.end());
    if (shape == shuffled || shape == damaged) std::shuffle(list.begin(), list.end(), random_);
    if (shape == damaged) {
      for (auto& [begin, end] : list) {
        if (below(3) == 0) std::swap(begin, end);
      }
    }
    return list;
  }

  void compare(const CGenericEdlEntry& edit, int round) {
    const auto source = entries_of(source_);
    for (unsigned short mode = 0; mode < 3; ++mode) {
      static_cast<void>(trace(mode));
      std::vector<Traced> got;
      for (const CGenericEdlEntry* t : entries_of(&out_)) {
        got.push_back({{t->source_in, t->source_out, t->dest_in, t->dest_out}, t->source_channel});
      }
      ASSERT_EQ(got, plainly_traced(edit, source, mode)) << "round " << round << " mode " << mode;
    }
  }

  std::mt19937_64 random_{static_cast<std::uint64_t>(GetParam()) + 11};
};

TEST_P(RandomTraceback, EqualsTheScanInEveryMode) {
  CGenericEdlEntry& edit = add_edit();
  edit.source_channel = 100000;
  int with_several = 0;
  for (int round = 0; round < 600; ++round) {
    delete_all(*source_.get_generic_entry_list());
    const std::int64_t count = round % 10 == 0 ? 150 : 1 + below(24);
    std::uint32_t channel = 0;
    for (const auto& [begin, end] : times(Shape{GetParam()}, count)) {
      add_piece(begin, end, 1000 * (1 + channel)).source_channel = channel;
      ++channel;
    }
    edit.source_in = below(count * 8);
    edit.source_out = edit.source_in + below(120);
    edit.dest_out = edit.dest_in + edit.source_out - edit.source_in;
    compare(edit, round);
    with_several += trace(1).size() > 2 ? 1 : 0;
  }
  EXPECT_GT(with_several, 20) << "the lists hold too few pieces to say anything";
}

INSTANTIATE_TEST_SUITE_P(Shapes, RandomTraceback, testing::Range(0, 6));

TEST_F(Traceback, TimesAtTheEndsOfTheRangeEndTheSearch) {
  CGenericEdlEntry& edit = add_edit();
  const std::int64_t ends[] = {INT64_MIN, INT64_MIN + 1, -1, 0, 1, INT64_MAX - 1, INT64_MAX};
  for (const std::int64_t in : ends) {
    for (const std::int64_t out : ends) {
      add_entry(source_, {.dest_in = in, .dest_out = out, .source_in = out, .source_out = in});
    }
  }
  const auto source = entries_of(source_);
  for (const std::int64_t in : ends) {
    for (const std::int64_t out : ends) {
      edit.source_in = in;
      edit.source_out = out;
      EXPECT_EQ(trace(1).size(), plain_search(source, in, out).pieces.size()) << in << " " << out;
      static_cast<void>(trace(2));
    }
  }
}

TEST_F(Traceback, SourceWithoutAListHasNoPieces) {
  add_edit();
  CGenericEdl child(&source_, 0);
  CGenericEdl grandchild(&child, 0);
  EXPECT_EQ(edl_.traceback(&out_, &grandchild, edl_.find_or_add_reel(u"R"), 2), 101);
  EXPECT_EQ(spans_of(out_), (std::vector<Span>{{100, 200, 1000, 1100}}));
  delete_all(out_);
  EXPECT_EQ(grandchild.traceback(&out_, &source_, edl_.find_or_add_reel(u"R"), 0), 101);
  EXPECT_TRUE(out_.IsEmpty());
}

TEST_F(Traceback, EveryEditOfTheReelIsTracedInListOrder) {
  add_edit();
  add_entry(edl_, {.dest_in = 5, .dest_out = 9, .reel = u"OTHER"});
  add_entry(edl_,
            {.dest_in = 2000, .dest_out = 2010, .source_in = 60, .source_out = 70, .reel = u"R"});
  add_piece(0, 150, 500);
  add_piece(150, 250, 900);
  EXPECT_EQ(trace(0), (std::vector<Span>{
                          {600, 650, 1000, 1050}, {900, 950, 1050, 1100}, {560, 570, 2000, 2010}}));
  EXPECT_EQ(entries_of(edl_).size(), 3U) << "the list itself stays as it is";
}

TEST_F(Traceback, FillersStandBeforeAndBehindThePieces) {
  add_edit();
  add_piece(120, 130, 500);
  EXPECT_EQ(trace(2), (std::vector<Span>{
                          {100, 120, 1000, 1020}, {500, 510, 1020, 1030}, {130, 200, 1030, 1100}}));
  const auto copies = entries_of(&out_);
  EXPECT_EQ(support::reel_of(*copies[0]), u"R");
  EXPECT_EQ(support::reel_of(*copies[1]), u"SRC");
  EXPECT_EQ(support::reel_of(*copies[2]), u"R");
}

}  // namespace
