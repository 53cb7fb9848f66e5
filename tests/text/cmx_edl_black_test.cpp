#include <gtest/gtest.h>

#include <random>

#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"
#include "text/cmx_edl.h"

namespace {

using support::entries_of;
using support::utf8;

// Lines whose times are frames: reel, source, destination, and a dissolve's length.
struct Line {
  std::string reel;
  int dest_in, dest_out;
  int dissolve = -1;
  int channel = 1;
};

std::string time_of(int frames) {
  char text[32];
  std::snprintf(text, sizeof text, "00:00:%02d:%02d", frames / 25, frames % 25);
  return text;
}

std::string list_of(const std::vector<Line>& lines) {
  std::string text;
  int number = 1;
  for (const Line& line : lines) {
    char head[64];
    std::snprintf(head, sizeof head, "%03d %s %s ", number++, line.reel.c_str(),
                  line.channel == 1 ? "A" : "A2");
    text += head;
    text += line.dissolve < 0 ? "C" : "D " + std::to_string(line.dissolve);
    text += " " + time_of(line.dest_in) + " " + time_of(line.dest_out) + " " +
            time_of(line.dest_in) + " " + time_of(line.dest_out) + "\n";
  }
  return text;
}

class CmxBlack : public testing::Test {
 protected:
  // Folded entries as "reel dest_in-dest_out fade_out", times in frames.
  std::vector<std::string> folded(const std::vector<Line>& lines) {
    support::write_file(folder_.file("in.edl"), list_of(lines));
    CCMXEdl edl(4, nullptr, 0);
    support::set_rates(edl);
    EXPECT_EQ(edl.import_edl(folder_.wide_file("in.edl")), 100);
    std::vector<std::string> out;
    for (const CGenericEdlEntry* e : entries_of(edl)) {
      EXPECT_EQ(e->source_out - e->source_in, e->dest_out - e->dest_in);
      out.push_back(utf8(support::reel_of(*e)) + " " + std::to_string(e->dest_in / 1920) + "-" +
                    std::to_string(e->dest_out / 1920) + " " +
                    std::to_string(e->fade_out_length / 1920));
    }
    return out;
  }
  support::ScriptedHost host_;
  support::TempFolder folder_;
};

using Texts = std::vector<std::string>;

TEST_F(CmxBlack, MarkerGivesTheEditBeforeItsFadeOut) {
  EXPECT_EQ(folded({{"X", 0, 100}, {"R", 100, 100}, {"Y", 100, 200, 40}}),
            (Texts{"X 0-140 40", "Y 100-200 0"}));
}

TEST_F(CmxBlack, BlackBehindTheMarkerGoesToo) {
  EXPECT_EQ(folded({{"X", 0, 100}, {"R", 100, 100}, {"blk1", 100, 200, 40}}),
            (Texts{"X 0-140 40"}));
  EXPECT_EQ(folded({{"X", 0, 100}, {"R", 100, 100}, {"BLUE1", 100, 200, 40}}),
            (Texts{"X 0-140 40"}));
}

TEST_F(CmxBlack, NodeBehindABlackMarkerIsNotLookedAt) {
  EXPECT_EQ(folded({{"X", 0, 100}, {"BL", 100, 100}, {"R", 100, 100}, {"Y", 100, 200, 40}}),
            (Texts{"X 0-100 0", "R 100-100 0", "Y 100-200 0"}));
}

TEST_F(CmxBlack, MarkerAtTheEndStays) {
  EXPECT_EQ(folded({{"X", 0, 100}, {"R", 100, 100}}), (Texts{"X 0-100 0", "R 100-100 0"}));
}

TEST_F(CmxBlack, MarkerBehindNothingGoesAndNothingGrows) {
  EXPECT_EQ(folded({{"X", 0, 90}, {"R", 100, 100}, {"Y", 100, 200, 40}}),
            (Texts{"X 0-90 0", "Y 100-200 0"}));
  EXPECT_EQ(folded({{"X", 0, 100, -1, 2}, {"R", 100, 100}, {"Y", 100, 200, 40}}),
            (Texts{"X 0-100 0", "Y 100-200 0"}));
}

// The told walk on a plain vector, with a scan for each marker.
struct PlainEdit {
  int id, stream, dest_in, dest_out, fade_in, fade_out;
  std::string reel;
};

bool is_black(const PlainEdit& e) {
  return e.reel.rfind("BL", 0) == 0;
}

void plainly_fold(std::vector<PlainEdit>& list) {
  const auto erase = [&list](std::size_t i) {
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(i));
  };
  for (std::size_t at = 0; at < list.size();) {
    if (list[at].dest_in != list[at].dest_out) {
      ++at;
      continue;
    }
    if (at + 1 >= list.size()) return;
    if (is_black(list[at])) {
      erase(at);
      ++at;
      continue;
    }
    const int f = list[at + 1].fade_in;
    if (is_black(list[at + 1])) erase(at + 1);
    for (std::size_t i = at; i > 0; --i) {
      PlainEdit& e = list[i - 1];
      if (e.dest_out != list[at].dest_in || e.stream != list[at].stream) continue;
      e.dest_out += f;
      e.fade_out = f;
      break;
    }
    erase(at);
    // Stand on the node before, or on the new head; then one on.
    at = at == 0 ? 1 : at;
  }
}

TEST_F(CmxBlack, EqualsTheScanOnRandomLists) {
  std::mt19937 random(5);
  const auto pick = [&random](int n) {
    return static_cast<int>(random() % static_cast<unsigned>(n));
  };
  for (int round = 0; round < 600; ++round) {
    std::vector<PlainEdit> plain;
    std::vector<Line> lines;
    // Starts rise, so that the sort at the end of an import changes nothing, and
    // sources differ, so that no crossfade is folded into another.
    int time = 0;
    for (int i = 0, n = 1 + pick(16); i < n; ++i) {
      time += pick(3);
      const int length = pick(2) == 0 ? 0 : pick(6);
      const int fade = pick(3) == 0 ? 1 + pick(3) : -1;
      const std::string reel = pick(4) == 0 ? "BLK" : "R" + std::to_string(i);
      lines.push_back({reel, time, time + length, fade, 1 + pick(2)});
      plain.push_back(
          {i + 1, lines.back().channel, time, time + length, fade < 0 ? 0 : fade, 0, reel});
      // A dissolve longer than its edit is cut to half of it, both ways.
      PlainEdit& e = plain.back();
      if (length > 0 && e.fade_in > length) continue;
    }
    support::write_file(folder_.file("in.edl"), list_of(lines));
    CCMXEdl edl(4, nullptr, 0);
    support::set_rates(edl);
    edl.report_errors = 0;
    ASSERT_EQ(edl.import_edl(folder_.wide_file("in.edl")), 100);
    // What the driver's length check does to fades that do not fit.
    for (PlainEdit& e : plain) {
      e.fade_in *= 1920;
      const int length = (e.dest_out - e.dest_in) * 1920;
      if (length != 0 && e.fade_in + e.fade_out > length) e.fade_in = e.fade_out = length / 2;
      e.dest_in *= 1920;
      e.dest_out *= 1920;
    }
    plainly_fold(plain);
    // Crossfade folding follows; it moves only pairs that meet with equal fades.
    for (std::size_t i = 0; i + 1 < plain.size(); ++i) {
      PlainEdit& a = plain[i];
      PlainEdit& b = plain[i + 1];
      if (a.dest_out != b.dest_in || a.fade_out != b.fade_in) continue;
      int h = a.fade_out / 2;
      // Source in equals destination in here.
      if (b.dest_in < h) h = a.fade_out = b.fade_in = b.dest_in;
      a.dest_out += h;
      b.dest_in -= h;
    }
    std::stable_sort(plain.begin(), plain.end(),
                     [](const PlainEdit& a, const PlainEdit& b) { return a.dest_in < b.dest_in; });
    const auto entries = entries_of(edl);
    ASSERT_EQ(entries.size(), plain.size()) << round << "\n" << list_of(lines);
    for (std::size_t i = 0; i < entries.size(); ++i) {
      ASSERT_EQ(entries[i]->event_number, plain[i].id) << round << "\n" << list_of(lines);
      ASSERT_EQ(entries[i]->dest_in, plain[i].dest_in) << round << "\n" << list_of(lines);
      ASSERT_EQ(entries[i]->dest_out, plain[i].dest_out) << round << "\n" << list_of(lines);
      ASSERT_EQ(entries[i]->fade_out_length, plain[i].fade_out) << round << "\n" << list_of(lines);
    }
  }
}

}  // namespace
