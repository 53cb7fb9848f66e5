// Random lists that CMX can hold, written, read, written and read again.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "host/rates.h"
#include "tests/text/plain_procedures.h"
#include "tests/text/text_fixtures.h"
#include "text/cmx_edl.h"

namespace {

using support::below;
using support::Row;
using support::Rows;
using support::rows_of;

struct Rates {
  std::uint8_t sample_rate_index;
  std::uint8_t frame_rate;
  // Samples of a frame; the fade columns hold whole frames only at rates that divide.
  std::int64_t frame;
};

class RoundTripTest : public support::TextTest {
 protected:
  // Edits of whole frames, in the order of their start and, at one start, of their
  // stream; edits with the same first stream do not overlap. Fade-ins are odd and
  // fade-outs even counts of frames, so that edits that meet share no crossfade.
  Rows representable(std::mt19937& random, int count, std::int64_t frame, bool fades) {
    static const std::array<std::vector<int>, 6> streams = {{{0}, {0, 1}, {1}, {2}, {3}, {2, 3}}};
    std::array<std::int64_t, 4> free_from{};
    Rows rows;
    for (int i = 0; i < count; ++i) {
      Row row;
      row.streams = streams[static_cast<std::size_t>(below(random, 6))];
      row.no_channels = static_cast<int>(row.streams.size());
      row.first_channel = row.stream();
      std::int64_t& next = free_from[static_cast<std::size_t>(row.stream())];
      const std::int64_t start = next + (below(random, 2) == 0 ? 0 : below(random, 200));
      std::int64_t length = 1 + below(random, 500);
      std::int64_t fade_in = 0;
      std::int64_t fade_out = 0;
      if (fades) {
        fade_in = below(random, 2) * (1 + 2 * below(random, 30));
        fade_out = below(random, 2) * (2 + 2 * below(random, 30));
        length += fade_in + fade_out;
      }
      row.dest_in = start * frame;
      row.dest_out = (start + length) * frame;
      const std::int64_t source = below(random, 1000000);
      row.source_in = source * frame;
      row.source_out = (source + length) * frame;
      row.fade_in = fade_in * frame;
      row.fade_out = fade_out * frame;
      row.reel = random_reel(random);
      next = start + length;
      rows.push_back(std::move(row));
    }
    rows.sort([](const Row& a, const Row& b) {
      return std::pair(a.dest_in, a.stream()) < std::pair(b.dest_in, b.stream());
    });
    return rows;
  }

  static std::u16string random_reel(std::mt19937& random) {
    static constexpr std::u16string_view letters = u"ACDEFGHIJKMNOPQRSTUVWXYZ0123456789_-./";
    std::u16string reel;
    for (int n = 1 + below(random, 10); n > 0; --n)
      reel += letters[static_cast<std::size_t>(below(random, static_cast<int>(letters.size())))];
    return reel;
  }

  // The lines without the numbers that they begin with: those of a second writing hang
  // on those of the first.
  static std::string without_numbers(const std::string& list) {
    std::string out;
    for (std::size_t at = 0; at < list.size();) {
      const std::size_t text = list.find_first_not_of("0123456789", at);
      at = list.find('\n', at) + 1;
      out += list.substr(text, at - text);
    }
    return out;
  }

  // What a round trip keeps. Numbers are given anew and originals are of the fold.
  static Rows kept(Rows rows) {
    for (Row& row : rows) {
      row.event_number = 0;
      row.transition = 0;
      row.original_source_in = row.original_source_out = 0;
      row.original_dest_in = row.original_dest_out = 0;
      row.mark = 0;
    }
    return rows;
  }

  std::unique_ptr<CCMXEdl> read_back(const Rates& rates) {
    auto edl = std::make_unique<CCMXEdl>(std::uint8_t{4}, nullptr, 0);
    support::set_rates(*edl, rates.sample_rate_index, rates.frame_rate);
    EXPECT_EQ(edl->import_edl(folder.wide_file("b.edl")), 100);
    return edl;
  }
  std::string written(CGenericEdl& root) {
    CCMXEdl out(4, &root, 0);
    return exported(out);
  }

  void go_round(const Rows& rows, const Rates& rates) {
    CGenericEdl root;
    support::set_rates(root, rates.sample_rate_index, rates.frame_rate);
    add_rows(root, rows);
    const std::string first = written(root);
    const auto once = read_back(rates);
    ASSERT_TRUE(same_rows(kept(rows_of(*once)), kept(rows))) << first;
    const std::string second = written(*once);
    ASSERT_TRUE(support::same_lines(without_numbers(second), without_numbers(first)));
    const auto twice = read_back(rates);
    ASSERT_TRUE(same_rows(kept(rows_of(*twice)), kept(rows)));
    ASSERT_TRUE(host.boxes.shown.empty()) << host.boxes.shown[0].body << "\n" << first;
  }
};

TEST_F(RoundTripTest, ListsWithFades) {
  std::mt19937 random(10);
  constexpr Rates rates[] = {{2, frame_rate_25, 1920},
                             {2, frame_rate_24, 2000},
                             {2, frame_rate_30, 1600},
                             {7, frame_rate_25, 3840},
                             {1, frame_rate_25, 1764}};
  for (int round = 0; round < 100; ++round) {
    const Rates& at = rates[static_cast<std::size_t>(round) % std::size(rates)];
    go_round(representable(random, 1 + below(random, 60), at.frame, true), at);
    if (HasFatalFailure()) return;
  }
}

TEST_F(RoundTripTest, CutsAtTheRatesOf2997) {
  // A frame of 1601.6 samples: a count is cut from its frame's start, and comes back
  // as that start.
  std::mt19937 random(11);
  for (const std::uint8_t rate : {frame_rate_2997_non_drop, frame_rate_2997_drop}) {
    CGenericEdl clock;
    support::set_rates(clock, 2, rate);
    const CGenericEdlEntry converter(&clock);
    const auto on_a_frame = [&converter](std::int64_t& samples) {
      wide_char text[12];
      converter.samples_to_timecode(samples, text);
      samples = converter.timecode_to_samples(text);
    };
    for (int round = 0; round < 30; ++round) {
      Rows rows = representable(random, 1 + below(random, 60), 1602, false);
      for (Row& row : rows) {
        on_a_frame(row.source_in);
        on_a_frame(row.source_out);
        on_a_frame(row.dest_in);
        on_a_frame(row.dest_out);
        // Edits of a frame may have shrunk to none.
        if (row.dest_in == row.dest_out) row.dest_out += 48048;
      }
      CGenericEdl root;
      support::set_rates(root, 2, rate);
      add_rows(root, rows);
      const std::string first = written(root);
      const auto once = read_back({2, rate, 0});
      ASSERT_TRUE(same_rows(kept(rows_of(*once)), kept(rows))) << first;
      ASSERT_TRUE(support::same_lines(without_numbers(written(*once)), without_numbers(first)));
    }
  }
}

TEST_F(RoundTripTest, ReadWrittenAndReadAgain) {
  // From a file by hand: the fades that the import makes of its markers go out as the
  // same markers.
  const std::string list =
      "TITLE: b          FORMAT: CMX 3600 4-Ch \n"
      "001  R1 \tA     C         00:00:00:00 00:00:04:00 01:00:00:00 01:00:04:00 \n"
      "002  R1 \tA     C         00:00:04:00 00:00:04:00 01:00:04:00 01:00:04:00 \n"
      "002  BLK \tA     D   025   00:00:00:00 00:00:01:00 01:00:04:00 01:00:05:00 \n"
      "003  BLK \tNONE  C         00:00:00:00 00:00:00:00 01:00:05:00 01:00:05:00 \n"
      "AUD\t3\t4\t\n"
      "003  R2 \tNONE  D   010   00:00:10:00 00:00:20:00 01:00:05:00 01:00:15:00 \n"
      "AUD\t3\t4\t\n";
  support::write_file(folder.file("b.edl"), list);
  const auto edl = read_back({2, frame_rate_25, 1920});
  const Rows rows = rows_of(*edl);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows.front().fade_out, 48000);
  EXPECT_EQ(rows.front().dest_out - rows.front().dest_in, 5 * 48000);
  EXPECT_EQ(rows.back().fade_in, 19200);
  EXPECT_EQ(rows.back().streams, (std::vector<int>{2, 3}));
  EXPECT_TRUE(support::same_lines(written(*edl), list));
}

}  // namespace
