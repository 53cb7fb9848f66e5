#include <gtest/gtest.h>

#include <random>

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

// The told search, a scan for each step.
struct Plain {
  std::vector<const CGenericEdlEntry*> pieces;
  bool whole = false;
};

Plain plain_search(const std::vector<CGenericEdlEntry*>& source, std::int64_t start,
                   std::int64_t end) {
  Plain found;
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

TEST_F(Traceback, EqualsTheScanOnRandomLists) {
  std::mt19937 random(11);
  const auto pick = [&random](int n) {
    return static_cast<std::int64_t>(random() % static_cast<unsigned>(n));
  };
  CGenericEdlEntry& edit = add_edit();
  for (int round = 0; round < 3000; ++round) {
    delete_all(*source_.get_generic_entry_list());
    std::int64_t at = pick(20);
    const bool overlapping = round % 3 == 0;
    for (std::int64_t i = 0, n = pick(12); i < n; ++i) {
      const std::int64_t length = pick(20);
      add_piece(at, at + length, 1000 * (i + 1));
      at += overlapping ? pick(30) - 8 : length + pick(3) * pick(10);
    }
    edit.source_in = pick(100);
    edit.source_out = edit.source_in + pick(80);
    const auto source = entries_of(source_);
    const Plain expected = plain_search(source, edit.source_in, edit.source_out);
    // Mode 1 gives one copy for each piece, each with the piece's own source.
    const std::vector<Span> pieces = trace(1);
    ASSERT_EQ(pieces.size(), expected.pieces.size()) << round;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      const std::int64_t begin = expected.pieces[i]->source_in;
      const std::int64_t shift = edit.source_in - expected.pieces[i]->dest_in;
      EXPECT_EQ(pieces[i].source_in, shift < 0 ? begin : begin + shift) << round;
    }
    // Mode 0 gives the same pieces, or the whole edit when they leave a gap.
    const std::vector<Span> whole = trace(0);
    ASSERT_EQ(whole.size(), expected.whole ? expected.pieces.size() : 1U) << round;
  }
}

}  // namespace
