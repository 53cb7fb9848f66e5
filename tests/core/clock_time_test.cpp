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

struct Moment {
  std::uint8_t sample_rate;
  std::uint8_t frame_rate;
  const wide_char* text;
  std::int64_t samples;
};

constexpr Moment moments[] = {
    {2, 0, u"00:00:01:00", 48000},      {2, 1, u"00:00:01:00", 48000},
    {2, 2, u"00:00:01:00", 48048},      {2, 3, u"00:00:01:00", 48048},
    {2, 4, u"00:00:01:00", 48000},      {2, 0, u"01:00:00:00", 172800000},
    {2, 1, u"01:00:00:00", 172800000},  {2, 2, u"01:00:00:00", 172972800},
    {2, 3, u"01:00:00:00", 172799827},  {2, 4, u"01:00:00:00", 172800000},
    {2, 1, u"10:00:00:00", 1728000000}, {2, 2, u"10:00:00:00", 1729728000},
    {2, 3, u"10:00:00:00", 1727998272}, {2, 2, u"23:59:59:29", 4151345598},
    {2, 3, u"23:59:59:29", 4147194251}, {2, 4, u"23:59:59:29", 4147198400},
    {1, 2, u"01:00:00:00", 158918760},  {1, 3, u"01:00:00:00", 158759841},
    {1, 3, u"00:00:01:00", 44144},      {2, 3, u"00:00:59:29", 2881278},
    {2, 3, u"00:01:00:02", 2882880},    {2, 3, u"00:09:59:29", 28798370},
    {2, 3, u"00:10:00:00", 28799971},   {2, 3, u"00:02:00:02", 5762557},
    {2, 3, u"00:11:00:02", 31682851},   {2, 3, u"01:01:00:02", 175682707}};

TEST(ClockTime, MomentsOfEachRateBothWays) {
  for (const Moment& m : moments) {
    EXPECT_EQ(samples_at(m.frame_rate, m.text, m.sample_rate), m.samples)
        << support::utf8(m.text) << " at " << int{m.frame_rate};
    if (m.sample_rate == 2) {
      EXPECT_EQ(text_at(m.frame_rate, m.samples), support::utf8(m.text)) << int{m.frame_rate};
    }
  }
}

TEST(ClockTime, FrameOfARateThatDoesNotDivideIsLost) {
  EXPECT_EQ(samples_at(0, u"00:00:00:01", 1), 1837);
  EXPECT_EQ(text_at(0, 1837, 1), "00:00:00:00");
}

TEST(ClockTime, OtherTexts) {
  EXPECT_EQ(samples_at(1, u""), 0);
  EXPECT_EQ(samples_at(1, u"abc"), 0);
  EXPECT_EQ(samples_at(1, u"10:00"), 0);
  EXPECT_EQ(samples_at(1, u"00:00:61:00"), 2928000);
  EXPECT_EQ(samples_at(1, u"01;00;00;00"), 172800000);
  EXPECT_EQ(samples_at(1, u"01:00:00.00"), 172800000);
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
  field[0] = u'x';
  samples_to_timecode({2, 1, 3}, 48000, field, 0);
  EXPECT_EQ(field[0], u'x');
  samples_to_timecode({2, 1, 3}, 48000, field, 1);
  EXPECT_EQ(field[0], u'\0');
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
  EXPECT_EQ(edl.samples_per_frame(), 0);
  for (const std::int64_t end : {INT64_MIN, INT64_MAX}) {
    entry.samples_to_timecode(end, text);
    EXPECT_EQ(support::utf8(text), "00:00:00:00");
  }
}

TEST(ClockTime, FrameOfAnEdl) {
  CGenericEdl edl;
  support::set_rates(edl, 1, 2);
  EXPECT_EQ(edl.samples_per_frame(), 1520);
  CGenericEdl other;
  support::set_rates(other, 1, 0);
  EXPECT_EQ(other.samples_per_frame(), 1837);
  CGenericEdl unknown;
  support::set_rates(unknown, 1, 7);
  EXPECT_EQ(unknown.samples_per_frame(), 1764);
}

}  // namespace
