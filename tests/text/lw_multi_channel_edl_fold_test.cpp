#include <algorithm>
#include <list>
#include <random>

#include "tests/text/format_fixtures.h"
#include "text/lw_multi_channel_edl.h"

namespace {

using support::entries_of;
using support::Texts;
using support::utf8;

// A line whose times are frames; source and destination are alike.
struct Line {
  int event;
  std::string reel;
  int dest_in, dest_out;
  int dissolve = -1;
  int channel = 1;
};

std::string time_of(int frames) {
  char text[32];
  std::snprintf(text, sizeof text, "00:%02d:%02d:%02d", frames / 1500, frames / 25 % 60,
                frames % 25);
  return text;
}

std::string list_of(const std::vector<Line>& lines) {
  std::string text;
  for (const Line& line : lines) {
    text += std::to_string(line.event) + " " + line.reel + " A" + std::to_string(line.channel) +
            (line.dissolve < 0 ? " C" : " D " + std::to_string(line.dissolve));
    for (const int time : {line.dest_in, line.dest_out, line.dest_in, line.dest_out})
      text += " " + time_of(time);
    text += "\n";
  }
  return text;
}

class MultiChannelFold : public support::FormatTest {
 protected:
  // Entries as "reel dest_in-dest_out fade_out" in frames.
  Texts folded(const std::vector<Line>& lines) {
    CLWMultiChannelEdl edl(nullptr, 0);
    EXPECT_EQ(read(edl, list_of(lines)), 100);
    Texts out;
    for (const CGenericEdlEntry* e : entries_of(edl)) {
      EXPECT_EQ(e->source_out - e->source_in, e->dest_out - e->dest_in);
      out.push_back(utf8(support::reel_of(*e)) + " " + std::to_string(e->dest_in / 1920) + "-" +
                    std::to_string(e->dest_out / 1920) + " " +
                    std::to_string(e->fade_out_length / 1920));
    }
    return out;
  }
};

TEST_F(MultiChannelFold, CutOfNoLengthGivesTheEditBeforeItsFadeOut) {
  EXPECT_EQ(folded({{1, "X", 0, 100}, {2, "R", 100, 100}, {2, "Y", 100, 200, 40}}),
            (Texts{"X 0-140 40", "Y 100-200 0"}));
  // The edit that ends there may lie further back.
  EXPECT_EQ(folded({{1, "X", 0, 100}, {2, "Z", 0, 90}, {3, "R", 100, 100}, {3, "Y", 100, 200, 40}}),
            (Texts{"X 0-140 40", "Z 0-90 0", "Y 100-200 0"}));
}

TEST_F(MultiChannelFold, WalkStopsWhereNoEditEndsAtTheCut) {
  const Texts untouched = {"X 0-90 0",    "R 100-100 0", "Y 100-200 0",
                           "P 300-400 0", "R 400-400 0", "Q 400-500 0"};
  EXPECT_EQ(folded({{1, "X", 0, 90},
                    {2, "R", 100, 100},
                    {2, "Y", 100, 200, 40},
                    {3, "P", 300, 400},
                    {4, "R", 400, 400},
                    {4, "Q", 400, 500, 40}}),
            untouched);
  EXPECT_EQ(folded({{1, "X", 0, 100, -1, 2}, {2, "R", 100, 100}, {2, "Y", 100, 200, 40}}),
            (Texts{"X 0-100 0", "R 100-100 0", "Y 100-200 0"}));
}

TEST_F(MultiChannelFold, DissolveOfNoLengthGoesToo) {
  EXPECT_EQ(folded({{1, "X", 0, 100}, {2, "R", 100, 100}, {2, "Y", 100, 100, 40}}),
            (Texts{"X 0-140 40"}));
  // Nothing behind the cut: no fade.
  EXPECT_EQ(folded({{1, "X", 0, 100}, {2, "R", 100, 100}}), (Texts{"X 0-100 0"}));
}

TEST_F(MultiChannelFold, PairOfOneEvent) {
  EXPECT_EQ(folded({{1, "X", 0, 100}, {1, "Y", 100, 200, 40}}),
            (Texts{"X 0-140 40", "Y 100-200 0"}));
  EXPECT_EQ(folded({{1, "X", 0, 100}, {1, "Y", 100, 100, 40}, {2, "Z", 100, 200}}),
            (Texts{"X 0-140 40", "Z 100-200 0"}));
}

TEST_F(MultiChannelFold, DissolveLooksForItsEventFurtherOn) {
  EXPECT_EQ(
      folded({{1, "X", 0, 100}, {2, "Y", 100, 200, 40}, {3, "Z", 200, 300}, {2, "W", 300, 400}}),
      (Texts{"X 0-100 0", "Y 100-200 0", "Z 200-300 0", "W 300-440 40"}));
  EXPECT_EQ(folded({{1, "X", 0, 100}, {2, "Y", 100, 200, 40}, {3, "Z", 200, 300}}),
            (Texts{"X 0-100 0", "Y 100-200 0", "Z 200-300 0"}));
  EXPECT_EQ(folded({{1, "X", 0, 100}, {2, "Y", 100, 100, 40}, {3, "Z", 200, 300}}),
            (Texts{"X 0-100 0", "Z 200-300 0"}));
}

// The procedure as it is told, on plain values.
struct Plain {
  std::int64_t dest_in, dest_out, source_in, source_out, fade_in, fade_out;
  int event;
  unsigned stream;
  std::uint32_t type;
};
using PlainList = std::list<Plain>;

bool zero(const Plain& p) {
  return p.dest_in == p.dest_out;
}

void run_on(Plain& p, std::int64_t length) {
  p.source_out += length;
  p.dest_out += length;
  p.fade_out = length;
}

// Back from `from` to the head.
PlainList::iterator ends_at(PlainList& list, PlainList::iterator from, const Plain& cut) {
  for (;;) {
    if (from->stream == cut.stream && from->dest_out == cut.dest_in) return from;
    if (from == list.begin()) return list.end();
    --from;
  }
}

void fold(PlainList& list) {
  for (auto first = list.begin(); first != list.end(); ++first) {
    for (;;) {
      const auto second = std::next(first);
      if (second == list.end()) return;
      if (second->type != 51) {
        if (!zero(*second)) break;
        const auto found = ends_at(list, first, *second);
        if (found == list.end()) return;
        std::int64_t fade = 0;
        if (const auto third = std::next(second); third != list.end()) {
          fade = third->fade_in;
          if (zero(*third)) list.erase(third);
        }
        run_on(*found, fade);
        list.erase(second);
      } else {
        auto target = first;
        if (first->event != second->event) {
          target = std::find_if(std::next(second), list.end(),
                                [&](const Plain& p) { return p.event == second->event; });
        }
        if (target != list.end()) run_on(*target, second->fade_in);
        if (zero(*second)) list.erase(second);
      }
      break;  // on to the entry that now follows the first
    }
  }
}

void fold_crossfades(PlainList& list) {
  for (auto a = list.begin(), b = std::next(a); b != list.end(); ++a, ++b) {
    if (a->dest_out != b->dest_in || a->fade_out != b->fade_in) continue;
    std::int64_t h = a->fade_out / 2;
    if (b->source_in < h || b->dest_in < h) {
      h = std::min(b->source_in, b->dest_in);
      a->fade_out = b->fade_in = h;
    }
    a->source_out += h;
    a->dest_out += h;
    b->source_in -= h;
    b->dest_in -= h;
  }
}

// Stops behind the driver, so that a test sees what comes to the fold.
class Unfolded : public CLWMultiChannelEdl {
 public:
  Unfolded() : CLWMultiChannelEdl(nullptr, 0) {}
  result_code import_edl(const wide_char* path) override { return CTextEdl::import_edl(path); }
};

Plain plain_of(const CGenericEdlEntry& e) {
  return {e.dest_in,         e.dest_out,     e.source_in,     e.source_out,     e.fade_in_length,
          e.fade_out_length, e.event_number, e.get_stream(0), e.transition_type};
}

std::vector<Line> random_lines(std::mt19937& random) {
  std::vector<Line> lines;
  const int count = static_cast<int>(random() % 40) + 1;
  for (int i = 0; i < count; ++i) {
    Line line{static_cast<int>(random() % 6), "R", static_cast<int>(random() % 5) * 10, 0};
    if (!lines.empty() && random() % 3 != 0) line.dest_in = lines.back().dest_out;
    line.dest_out = line.dest_in + (random() % 3 == 0 ? 0 : static_cast<int>(random() % 4) * 10);
    if (random() % 3 == 0) line.dissolve = static_cast<int>(random() % 3) * 5;
    line.channel = random() % 6 == 0 ? 2 : 1;
    if (!lines.empty() && random() % 3 == 0) line.event = lines.back().event;
    lines.push_back(line);
  }
  return lines;
}

TEST_F(MultiChannelFold, AgreesWithSearchingTheList) {
  host_.boxes.default_report_answer = 4096;
  std::mt19937 random(41);
  std::size_t removed = 0;
  std::size_t grown = 0;
  for (int run = 0; run < 600; ++run) {
    const std::string text = list_of(random_lines(random));
    Unfolded before;
    ASSERT_EQ(read(before, text), 100);
    PlainList expected;
    for (const CGenericEdlEntry* e : entries_of(before))
      expected.push_back(plain_of(*e));
    removed += expected.size();
    fold(expected);
    removed -= expected.size();
    fold_crossfades(expected);
    expected.sort([](const Plain& a, const Plain& b) { return a.dest_in < b.dest_in; });
    CLWMultiChannelEdl edl(nullptr, 0);
    ASSERT_EQ(read(edl, text), 100);
    const auto entries = entries_of(edl);
    ASSERT_EQ(entries.size(), expected.size()) << text;
    std::size_t i = 0;
    for (const Plain& e : expected) {
      const Plain actual = plain_of(*entries[i++]);
      ASSERT_TRUE(
          support::has_times(*entries[i - 1], {e.dest_in, e.dest_out, e.source_in, e.source_out}))
          << text;
      ASSERT_EQ(actual.fade_in, e.fade_in) << text;
      ASSERT_EQ(actual.fade_out, e.fade_out) << text;
      ASSERT_EQ(actual.event, e.event) << text;
      ASSERT_EQ(actual.type, e.type) << text;
      if (e.fade_out != 0) ++grown;
    }
  }
  EXPECT_GT(removed, 400U);
  EXPECT_GT(grown, 400U);
}

}  // namespace
