#include "core/clock_time.h"

#include <gtest/gtest.h>

#include "core/generic_edl_entry.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"

namespace {

std::string text_at(std::uint8_t frame_rate, std::int64_t samples, std::uint8_t sample_rate = 2) {
  wide_char text[time_code_size];
  samples_to_timecode({sample_rate, frame_rate, 3}, samples, text, time_code_size);
  return support::utf8(text);
}

std::int64_t samples_at(std::uint8_t frame_rate, std::u16string_view text,
                        std::uint8_t sample_rate = 2) {
  return timecode_to_samples({sample_rate, frame_rate, 3}, text);
}

TEST(ClockTime, SamplesOfATextAtEachRate) {
  EXPECT_EQ(samples_at(1, u"01:00:00:00"), 172800000);
  EXPECT_EQ(samples_at(2, u"01:00:00:00"), 172972800);
  EXPECT_EQ(samples_at(3, u"01:00:00:00"), 172799827);
  EXPECT_EQ(samples_at(2, u"01:00:00:00", 1), 158918760);
  EXPECT_EQ(samples_at(3, u"01:00:00:00", 1), 158759841);
}

TEST(ClockTime, DropFrameAtTheMinute) {
  EXPECT_EQ(samples_at(3, u"00:00:59:29"), 2881278);
  // One frame is 1601.6 samples.
  EXPECT_EQ(samples_at(3, u"00:01:00:02"), 2882880);
  EXPECT_EQ(text_at(3, 5762557), "00:02:00:02");
  EXPECT_EQ(text_at(3, 31682851), "00:11:00:02");
  EXPECT_EQ(text_at(3, 175682707), "01:01:00:02");
}

TEST(ClockTime, NegativeAndOutOfRange) {
  EXPECT_EQ(text_at(1, -48000), "-00:00:01:00");
  EXPECT_EQ(samples_at(1, u"-00:00:01:00"), -48000);
  EXPECT_EQ(text_at(1, 24LL * 3600 * 48000), "23:59:59:00");
}

TEST(ClockTime, BufferLimitsAreKept) {
  wide_char field[12];
  samples_to_timecode({2, 1, 3}, -48000, field, 12);
  EXPECT_EQ(support::utf8(field), "-00:00:01:0");
}

TEST(ClockTime, BothFormsOfAnEntryAgree) {
  CGenericEdl edl;
  support::set_rates(edl);
  const CGenericEdlEntry entry(&edl);
  EXPECT_EQ(entry.timecode_to_samples(u"00:00:01:12"), 71040);
  EXPECT_EQ(entry.timecode_to_samples(CString(u"00:00:01:12")), 71040);
  wide_char text[12];
  entry.samples_to_timecode(71040, text);
  EXPECT_EQ(support::utf8(text), "00:00:01:12");
}

TEST(ClockTime, UnsetRatesConvertToNothing) {
  CGenericEdl edl;
  const CGenericEdlEntry entry(&edl);
  EXPECT_EQ(entry.timecode_to_samples(u"10:00:00:00"), 0);
  wide_char text[12];
  entry.samples_to_timecode(48000, text);
  EXPECT_EQ(support::utf8(text), "00:00:00:00");
}

}  // namespace
