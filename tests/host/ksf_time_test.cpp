#include "host/ksf_time.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "host/rates.h"
#include "tests/support/compare.h"

namespace {

constexpr std::uint8_t rate_44100 = 1;
constexpr std::uint8_t rate_48000 = 2;

std::int64_t samples(std::u16string_view text, std::uint8_t frame_rate,
                     std::uint8_t sample_rate = rate_48000) {
  CKsfTime time(text, 3);
  time.set_rates(sample_rate, frame_rate);
  return time.to_samples();
}

std::string text(std::int64_t count, std::uint8_t frame_rate,
                 std::uint8_t sample_rate = rate_48000) {
  wide_char out[15];
  CKsfTime(sample_rate, frame_rate, count).to_text(out, 3);
  return support::utf8(out);
}

std::u16string time_code(std::int64_t hours, std::int64_t minutes, std::int64_t seconds,
                         std::int64_t frames) {
  std::u16string out;
  for (const std::int64_t part : {hours, minutes, seconds, frames}) {
    if (!out.empty()) out.push_back(u':');
    out.push_back(static_cast<wide_char>(u'0' + part / 10));
    out.push_back(static_cast<wide_char>(u'0' + part % 10));
  }
  return out;
}

TEST(KsfTime, TextToSamplesAt48000) {
  const std::int64_t second[] = {48000, 48000, 48048, 48048, 48000};
  const std::int64_t hour[] = {172800000, 172800000, 172972800, 172799827, 172800000};
  for (std::uint8_t rate = 0; rate < 5; ++rate) {
    EXPECT_EQ(samples(u"00:00:01:00", rate), second[rate]) << int{rate};
    EXPECT_EQ(samples(u"01:00:00:00", rate), hour[rate]) << int{rate};
  }
  EXPECT_EQ(samples(u"10:00:00:00", 1), 1728000000);
  EXPECT_EQ(samples(u"10:00:00:00", 2), 1729728000);
  EXPECT_EQ(samples(u"10:00:00:00", 3), 1727998272);
  EXPECT_EQ(samples(u"23:59:59:29", 2), 4151345598);
  EXPECT_EQ(samples(u"23:59:59:29", 3), 4147194251);
  EXPECT_EQ(samples(u"23:59:59:29", 4), 4147198400);
}

TEST(KsfTime, TextToSamplesAt44100) {
  EXPECT_EQ(samples(u"01:00:00:00", 2, rate_44100), 158918760);
  EXPECT_EQ(samples(u"01:00:00:00", 3, rate_44100), 158759841);
  EXPECT_EQ(samples(u"00:00:01:00", 3, rate_44100), 44144);
}

TEST(KsfTime, DropFrameAtTheMinute) {
  EXPECT_EQ(samples(u"00:00:59:29", 3), 2881278);
  EXPECT_EQ(samples(u"00:01:00:02", 3), 2882880);
  EXPECT_EQ(samples(u"00:09:59:29", 3), 28798370);
  EXPECT_EQ(samples(u"00:10:00:00", 3), 28799971);
  EXPECT_EQ(samples(u"00:02:00:02", 3), 5762557);
  EXPECT_EQ(samples(u"00:11:00:02", 3), 31682851);
  EXPECT_EQ(text(5762557, 3), "00:02:00:02");
  EXPECT_EQ(text(31682851, 3), "00:11:00:02");
  EXPECT_EQ(text(175682707, 3), "01:01:00:02");
}

TEST(KsfTime, DropFrameNumbersNeverComeUp) {
  std::string before;
  for (std::int64_t frame = 0; frame < 107892; ++frame) {
    // The start of the frame, rounded up, so that it lies inside it.
    const std::string now = text((frame * 1001 * 48000 + 29999) / 30000, 3);
    ASSERT_NE(now, before) << frame;
    const bool left_out = now.ends_with(":00:00") || now.ends_with(":00:01");
    const bool tenth = now[4] == '0';
    ASSERT_TRUE(!left_out || tenth) << now;
    before = now;
  }
  EXPECT_EQ(before, "00:59:59:29");
}

// Counts up as a clock does, leaving out the two numbers, for 24 hours.
TEST(KsfTime, DropFrameNumberFollowsTheClock) {
  std::int64_t number = 0;
  for (std::int64_t frame = 0; frame < 2589408; ++frame, ++number) {
    if (number % 1800 == 0 && number % 18000 != 0) number += 2;
    ASSERT_EQ(drop_frame_number(frame), number);
  }
  EXPECT_EQ(number, std::int64_t{24} * 3600 * 30);
}

TEST(KsfTime, EveryTimeOfAnHourComesBackWhereTheRatesDivide) {
  for (const std::uint32_t rate : {48000U, 96000U, 88200U, 176400U, 192000U}) {
    const auto sample_rate = static_cast<std::uint8_t>(sample_rate_index_of(rate));
    for (std::uint8_t frame_rate = 0; frame_rate < 5; ++frame_rate) {
      for (std::int64_t second = 0; second < 3600; ++second) {
        const bool short_minute = frame_rate == 3 && second % 60 == 0 && second / 60 % 10 != 0;
        for (std::int64_t frame = short_minute ? 2 : 0; frame < frames_per_second(frame_rate);
             ++frame) {
          const std::u16string in = time_code(1, second / 60, second % 60, frame);
          ASSERT_EQ(text(samples(in, frame_rate, sample_rate), frame_rate, sample_rate),
                    support::utf8(in))
              << rate << " " << int{frame_rate};
        }
      }
    }
  }
}

TEST(KsfTime, FrameIsLostWhereTheRatesDoNotDivide) {
  EXPECT_EQ(samples(u"00:00:00:01", 0, rate_44100), 1837);
  EXPECT_EQ(text(1837, 0, rate_44100), "00:00:00:00");
  EXPECT_EQ(text(1838, 0, rate_44100), "00:00:00:01");
}

TEST(KsfTime, SamplesToText) {
  EXPECT_EQ(text(172972800, 2), "01:00:00:00");
  EXPECT_EQ(text(0, 1), "00:00:00:00");
  EXPECT_EQ(text(172800000 + 1920 * 7 + 1919, 1), "01:00:00:07");
}

TEST(KsfTime, FromADayOnTheTextStandsStill) {
  for (std::uint8_t rate = 0; rate < 5; ++rate) {
    const std::int64_t day = samples(u"24:00:00:00", rate);
    EXPECT_EQ(text(day, rate), "23:59:59:00") << int{rate};
    EXPECT_EQ(text(day * 1000, rate), "23:59:59:00") << int{rate};
    EXPECT_EQ(text(-day, rate), "-23:59:59:00") << int{rate};
  }
  EXPECT_EQ(text(time_not_given, 3), "23:59:59:00");
  EXPECT_EQ(text(-time_not_given - 1, 3), "-23:59:59:00");
}

TEST(KsfTime, NegativeTimes) {
  EXPECT_EQ(text(-48000, 1), "-00:00:01:00");
  EXPECT_EQ(samples(u"-00:00:01:00", 1), -48000);
  EXPECT_EQ(samples(u"-01:00:00:00", 3), -172799827);
  EXPECT_EQ(text(-172799827, 3), "-01:00:00:00");
}

TEST(KsfTime, OtherTextsAreZero) {
  for (const char16_t* const other :
       {u"", u"abc", u"10:00", u"-", u"01:00:00:", u"01 00 00 00", u"01::00:00", u":01:00:00",
        u"--1:00:00:00", u"+01:00:00:00", u" 01:00:00:00", u"01/00/00/00"})
    EXPECT_EQ(samples(other, 1), 0) << support::utf8(other);
}

TEST(KsfTime, SeparatorsAndRangesAreFree) {
  EXPECT_EQ(samples(u"01;00;00;00", 1), 172800000);
  EXPECT_EQ(samples(u"01:00:00.00", 1), 172800000);
  EXPECT_EQ(samples(u"01,00,00,00", 1), 172800000);
  EXPECT_EQ(samples(u"1:0:0:0", 1), 172800000);
  EXPECT_EQ(samples(u"01:00:00:00 and more", 1), 172800000);
  EXPECT_EQ(samples(u"00:00:61:00", 1), 2928000);
  EXPECT_EQ(samples(u"00:00:00:50", 1), 96000);
  EXPECT_EQ(samples(u"100:00:00:00", 1), 17280000000);
}

TEST(KsfTime, LongRunsStayInsideTheNumbers) {
  const std::u16string nines(1000, u'9');
  const std::u16string time = nines + u":" + nines + u":" + nines + u":" + nines;
  const TimeCodeFields fields = parse_time_code_fields(time);
  EXPECT_EQ(fields.hours, 999999999);
  EXPECT_EQ(fields.frames, 999999999);
  for (std::uint8_t sample_rate = 0; sample_rate < sample_rate_count; ++sample_rate) {
    for (std::uint8_t frame_rate = 0; frame_rate < 6; ++frame_rate) {
      EXPECT_GT(samples(time, frame_rate, sample_rate), 0);
      EXPECT_EQ(text(samples(time, frame_rate, sample_rate), frame_rate, sample_rate),
                "23:59:59:00");
    }
  }
}

TEST(KsfTime, RatesThatAreNotSet) {
  EXPECT_EQ(samples(u"01:00:00:00", rate_not_set, rate_not_set), 0);
  EXPECT_EQ(text(48000, rate_not_set, rate_not_set), "00:00:00:00");
  EXPECT_EQ(text(-48000, rate_not_set, rate_not_set), "00:00:00:00");
  EXPECT_EQ(text(48000, 3, 15), "00:00:00:00");
  // A frame rate that is not set counts 25.
  EXPECT_EQ(samples(u"00:00:00:01", rate_not_set), 1920);
  EXPECT_EQ(samples(u"00:00:00:01", 7), 1920);
  wide_char out[15];
  CKsfTime().to_text(out, 3);
  EXPECT_EQ(support::utf8(out), "00:00:00:00");
  EXPECT_EQ(CKsfTime().to_samples(), 0);
}

TEST(KsfTime, SetRatesKeepsTheDigits) {
  CKsfTime time(rate_48000, 1, 172800000 + 3 * 1920);
  time.set_rates(rate_44100, 4);
  wide_char out[15];
  time.to_text(out, 3);
  EXPECT_EQ(support::utf8(out), "01:00:00:03");
  EXPECT_EQ(time.to_samples(), std::int64_t{3600} * 44100 + 3 * 1470);
  CKsfTime fresh(u"00:00:01:00", 3);
  fresh.set_rates(rate_48000, 2);
  EXPECT_EQ(fresh.to_samples(), 48048);
  fresh.set_rates(rate_48000, 1);
  EXPECT_EQ(fresh.to_samples(), 48000);
}

TEST(KsfTime, FormatDoesNotChangeTheText) {
  wide_char out[15];
  for (int i = 0; i < 256; ++i) {
    const auto format = static_cast<std::uint8_t>(i);
    CKsfTime(rate_48000, 3, 2882880).to_text(out, format);
    EXPECT_EQ(support::utf8(out), "00:01:00:02");
    CKsfTime time(u"00:01:00;02", format);
    time.set_rates(rate_48000, 3);
    EXPECT_EQ(time.to_samples(), 2882880);
  }
}

TEST(KsfTime, BothFormsOfTextAgree) {
  CKsfTime by_pointer(u"01:02:03:04", 3);
  CKsfTime by_view(std::u16string_view(u"01:02:03:04"), 3);
  by_pointer.set_rates(rate_48000, 1);
  by_view.set_rates(rate_48000, 1);
  EXPECT_EQ(by_pointer.to_samples(), by_view.to_samples());
  EXPECT_EQ(CKsfTime(static_cast<const wide_char*>(nullptr), 3).to_samples(), 0);
}

// A text of eleven units is read in one step where it can be. What follows the fourth run
// counts for nothing, so the same text with more behind it reads the same.
TEST(KsfTime, TheUsualFormReadsLikeAnyOther) {
  constexpr std::u16string_view near_digits = u"0123456789/:;.,- A\u0430\uffff";
  std::mt19937 random(29);
  int read = 0;
  for (int round = 0; round < 50000; ++round) {
    std::u16string text = u"00:00:00:00";
    for (std::size_t at = 0; at < text.size(); ++at) {
      const bool separator = at % 3 == 2;
      text[at] = random() % 40 == 0 ? near_digits[random() % near_digits.size()]
                 : separator        ? near_digits[11 + random() % 4]
                                    : near_digits[random() % 10];
    }
    const TimeCodeFields usual = parse_time_code_fields(text);
    const TimeCodeFields other = parse_time_code_fields(text + u" ");
    ASSERT_EQ(usual.hours, other.hours) << support::utf8(text);
    ASSERT_EQ(usual.minutes, other.minutes) << support::utf8(text);
    ASSERT_EQ(usual.seconds, other.seconds) << support::utf8(text);
    ASSERT_EQ(usual.frames, other.frames) << support::utf8(text);
    ASSERT_EQ(usual.negative, other.negative) << support::utf8(text);
    read += usual.frames != 0 ? 1 : 0;
  }
  EXPECT_GT(read, 25000);
  EXPECT_LT(read, 47500);
}

// The moment of a time code in seconds, as an exact fraction: whole frames, less
// those that drop frame left out, at 30000/1001, 30, 25 or 24 a second.
struct Fraction {
  std::int64_t over;
  std::int64_t under;
};

Fraction moment(const TimeCodeFields& t, std::uint8_t frame_rate) {
  const std::int64_t fps = frames_per_second(frame_rate);
  std::int64_t frames = ((t.hours * 60 + t.minutes) * 60 + t.seconds) * fps + t.frames;
  const std::int64_t minutes = t.hours * 60 + t.minutes;
  if (frame_rate == 3) frames -= 2 * (minutes - minutes / 10);
  const bool slow = frame_rate == 2 || frame_rate == 3;
  return slow ? Fraction{frames * 1001, fps * 1000} : Fraction{frames, fps};
}

// What is rounded lies at most two roundings, one of them stretched by 1.001, from
// the exact place.
TEST(KsfTime, StaysWithinTheRoundingOfTheExactMoment) {
  std::mt19937 random(13);
  const auto below = [&random](unsigned end) { return static_cast<std::int64_t>(random() % end); };
  for (int i = 0; i < 200000; ++i) {
    const auto frame_rate = static_cast<std::uint8_t>(random() % 5);
    const auto sample_rate = static_cast<std::uint8_t>(random() % sample_rate_count);
    TimeCodeFields t;
    t.hours = below(24);
    t.minutes = below(60);
    t.seconds = below(60);
    t.frames = below(frames_per_second(frame_rate));
    const std::int64_t got =
        samples(time_code(t.hours, t.minutes, t.seconds, t.frames), frame_rate, sample_rate);
    const Fraction exact = moment(t, frame_rate);
    const std::int64_t scaled = exact.over * samples_per_second(sample_rate);
    // |got - scaled / under| < 2.5, in whole numbers.
    ASSERT_LT(std::abs(got * exact.under - scaled) * 2, exact.under * 5)
        << support::utf8(time_code(t.hours, t.minutes, t.seconds, t.frames)) << " "
        << int{frame_rate} << " " << int{sample_rate};
  }
}

__extension__ using Wide = __int128;

// The told arithmetic in numbers that cannot overflow.
TEST(KsfTime, AgreesWithTheArithmeticInWiderNumbers) {
  std::mt19937_64 random(17);
  for (int i = 0; i < 200000; ++i) {
    const auto frame_rate = static_cast<std::uint8_t>(random() % 6);
    const auto sample_rate = static_cast<std::uint8_t>(random() % sample_rate_count);
    const std::uint64_t size = i % 3 == 0 ? 1000000000 : 100;
    const std::int64_t field[4] = {
        static_cast<std::int64_t>(random() % size), static_cast<std::int64_t>(random() % size),
        static_cast<std::int64_t>(random() % size), static_cast<std::int64_t>(random() % size)};
    const Wide sr = samples_per_second(sample_rate);
    const Wide fps = frames_per_second(frame_rate);
    Wide x = field[0] * 3600 * sr + field[1] * 60 * sr + field[2] * sr + field[3] * sr / fps;
    if (frame_rate == 3) {
      const Wide m = Wide{field[0]} * 60 + field[1];
      x -= (m % 10 + m / 10 * 9) * 2 * sr / fps;
    }
    if (frame_rate == 2 || frame_rate == 3) x = (x * 1001 + 500) / 1000;
    std::string digits;
    for (const std::int64_t f : field)
      digits += (digits.empty() ? "" : ":") + std::to_string(f);
    ASSERT_EQ(samples(std::u16string(digits.begin(), digits.end()), frame_rate, sample_rate),
              static_cast<std::int64_t>(x))
        << digits;
  }
}

TEST(KsfTime, TextOfRandomCountsByWiderNumbers) {
  std::mt19937_64 random(19);
  for (int i = 0; i < 200000; ++i) {
    const auto frame_rate = static_cast<std::uint8_t>(random() % 5);
    const auto sample_rate = static_cast<std::uint8_t>(random() % sample_rate_count);
    const std::int64_t sr = samples_per_second(sample_rate);
    const std::int64_t count = static_cast<std::int64_t>(random() % (86000ULL * 192000ULL));
    Wide x = count;
    if (frame_rate == 2 || frame_rate == 3) x = (x * 1000 + 500) / 1001;
    const std::int64_t fps = frames_per_second(frame_rate);
    const Wide rest = x % sr;
    std::int64_t number =
        static_cast<std::int64_t>(x / sr) * fps + static_cast<std::int64_t>(fps * rest / sr);
    if (frame_rate == 3) number = drop_frame_number(number);
    const std::int64_t seconds = number / fps;
    const std::u16string expected =
        seconds >= 86400 ? u"23:59:59:00"
                         : time_code(seconds / 3600, seconds / 60 % 60, seconds % 60, number % fps);
    ASSERT_EQ(text(count, frame_rate, sample_rate), support::utf8(expected)) << count;
  }
}

}  // namespace
