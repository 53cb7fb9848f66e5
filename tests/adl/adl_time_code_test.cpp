// The time text of an audio decision list, in both directions.
#include "adl/adl_time_code.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "host/rates.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"

namespace {

using support::utf8;

constexpr std::int64_t invalid = 0x7FFFFFFFFFFFFFFF;

struct Reading {
  std::int64_t samples = 0;
  std::uint32_t sample_rate = 7;
  std::uint8_t frame_rate = 77;
};

Reading reading(std::string_view text, std::size_t places = 17) {
  Reading wide;
  const std::u16string units(text.begin(), text.end());
  wide.samples = parse_time_code(units.c_str(), places, wide.sample_rate, wide.frame_rate);
  Reading narrow;
  const std::string bytes(text);
  narrow.samples = parse_time_code(bytes.c_str(), places, narrow.sample_rate, narrow.frame_rate);
  EXPECT_EQ(narrow.samples, wide.samples) << text;
  EXPECT_EQ(narrow.sample_rate, wide.sample_rate) << text;
  EXPECT_EQ(narrow.frame_rate, wide.frame_rate) << text;
  return wide;
}

std::int64_t samples_of(std::string_view text) {
  return reading(text).samples;
}

std::string text_of(std::int64_t samples, std::uint32_t sample_rate, std::uint8_t frame_rate) {
  wide_char out[time_code_places];
  std::fill(std::begin(out), std::end(out), u'x');
  format_time_code(samples, sample_rate, frame_rate, out);
  EXPECT_EQ(out[16], u'\0');
  return utf8(field_text(out));
}

std::vector<std::uint8_t> bytes(std::initializer_list<int> values) {
  std::vector<std::uint8_t> out;
  for (const int value : values)
    out.push_back(static_cast<std::uint8_t>(value));
  return out;
}

struct Pair {
  std::string_view text;
  std::int64_t samples;
};

void expect_readings(const std::vector<Pair>& pairs) {
  for (const Pair& pair : pairs)
    EXPECT_EQ(samples_of(pair.text), pair.samples) << pair.text;
}

TEST(ParseTimeCode, WantsAFieldOfSeventeenPlaces) {
  for (const std::size_t places : {16U, 15U, 18U, 0U}) {
    const Reading refused = reading("01.02.03.04/0567", places);
    EXPECT_EQ(refused.samples, invalid);
    EXPECT_EQ(refused.sample_rate, 7U);
    EXPECT_EQ(refused.frame_rate, 77);
  }
  EXPECT_NE(samples_of("01.02.03.04/0567"), invalid);
}

TEST(ParseTimeCode, CountsWholeTimesAtTheRatesOfTheText) {
  const Reading day = reading("23:59:59.00/0000");
  EXPECT_EQ(day.samples, 4151299152);
  EXPECT_EQ(day.sample_rate, 48000U);
  EXPECT_EQ(day.frame_rate, frame_rate_2997_non_drop);
  const Reading film = reading("01.02.03.04/0567");
  EXPECT_EQ(film.samples, 178712247);
  EXPECT_EQ(film.frame_rate, frame_rate_25);
  EXPECT_EQ(samples_of("00.00.00.12/0960"), 24000);
}

TEST(ParseTimeCode, ACommaOrSemicolonMakesDropFrame) {
  for (const char* const text : {"01:00:00,00/0000", "01:00:00;00/0000", "01.00.00,00/0000"}) {
    const Reading drop = reading(text);
    EXPECT_EQ(drop.samples, 172799827) << text;
    EXPECT_EQ(drop.frame_rate, frame_rate_2997_drop) << text;
  }
  const Reading dots = reading("00.00.00,00/0000");
  EXPECT_EQ(dots.samples, 0);
  EXPECT_EQ(dots.frame_rate, frame_rate_2997_drop);
  EXPECT_EQ(reading("00.00.00.00/0000").frame_rate, frame_rate_25);
  EXPECT_EQ(reading("00.00.00:00/0000").frame_rate, frame_rate_25);
}

TEST(ParseTimeCode, LeavesOutDroppedFrameNumbers) {
  expect_readings({{"00:01:00,02/0000", 2882880},
                   {"00:00:59,29/0000", 2881278},
                   {"00:01:00,00/0000", 2879677},
                   {"00:10:00,00/0000", 28799971},
                   {"00:02:00,02/0000", 5762557},
                   {"23:59:59,29/0000", 4147194251}});
}

TEST(ParseTimeCode, StretchesThePullDownRates) {
  expect_readings(
      {{"00:00:01.00/0000", 48048}, {"10:00:00.00/0000", 1729728000}, {"00:00:00.01/0001", 1603}});
}

TEST(ParseTimeCode, RoundsFrameStartsDown) {
  expect_readings({{"00=00=00.23|0000", 42262},
                   {"00=00=00.01|0000", 1837},
                   {"00=00=00.00|1837", 1837},
                   {"00=00=00.00|1838", invalid}});
}

TEST(ParseTimeCode, ReadsTheSampleRate) {
  const std::vector<std::pair<char, std::uint32_t>> marks = {
      {'=', 32000}, {'|', 44100}, {'/', 48000}, {'~', 44056}, {'-', 47952},
      {'@', 88200}, {'*', 96000}, {'?', 88112}, {'&', 95904}};
  for (const auto& [mark, rate] : marks) {
    std::string text = "00.00.01.00_0000";
    text[11] = mark;
    const Reading second = reading(text);
    EXPECT_EQ(second.samples, rate) << text;
    EXPECT_EQ(second.sample_rate, rate) << text;
  }
}

TEST(ParseTimeCode, WrapsProductsInThirtyTwoBits) {
  expect_readings({{"12.59.59.24*0000", 4492796160},
                   {"13.00.00.00*0000", 197832704},
                   {"14.00.00.00@0000", 150312704},
                   {"13.00.00.00&0000", 193339904}});
}

TEST(ParseTimeCode, LimitsSamplesToAFrameButNotInDropFrame) {
  expect_readings(
      {{"00:00:00,00/9999", 10009}, {"00.00.00.00/1920", 1920}, {"00.00.00.00/1921", invalid}});
}

TEST(ParseTimeCode, LimitsEachField) {
  for (const char* const text :
       {"24.00.00.00/0000", "00.60.00.00/0000", "00.00.60.00/0000", "00.00.00.25/0000",
        "00=00=00.24/0000", "00:00:00.30/0000", "00:00:00,30/0000", "00|00|00.30/0000"}) {
    EXPECT_EQ(samples_of(text), invalid) << text;
  }
  for (const char* const text : {"23.00.00.00/0000", "00.59.00.00/0000", "00.00.59.00/0000",
                                 "00.00.00.24/0000", "00=00=00.23/0000", "00:00:00.29/0000",
                                 "00:00:00,29/0000", "00|00|00.29/0000", "00.00.00.12/0000"}) {
    EXPECT_NE(samples_of(text), invalid) << text;
  }
}

TEST(ParseTimeCode, RefusesWhatIsNotOfTheForm) {
  for (const char* const text :
       {"00.00x00.00/0000", "00.00-00.00/0000", "00.00,00.00/0000", "00.00.00-00/0000",
        "00.00.00=00/0000", "00x00.00.00/0000", "00,00.00.00/0000", "00.00.00.00!0000",
        "00.00.00.0000000", "00.00.00.00x0000"}) {
    EXPECT_EQ(samples_of(text), invalid) << text;
  }
  const std::string good = "00.00.00.00/0000";
  for (const std::size_t place : {0U, 1U, 3U, 4U, 6U, 7U, 9U, 10U, 12U, 13U, 14U, 15U}) {
    for (const char wrong : {'x', ' ', '\0', '.', '/', ':', '\xB0'}) {
      std::string text = good;
      text[place] = wrong;
      EXPECT_EQ(samples_of(text), invalid) << "place " << place;
    }
  }
}

TEST(ParseTimeCode, EverySeparatorOfTheSecondPlaceWillDo) {
  for (const char mark : {'=', '.', ':', '|'}) {
    std::string text = "00.00_01.00/0000";
    text[5] = mark;
    EXPECT_EQ(samples_of(text), 48000) << text;
    EXPECT_EQ(reading(text).frame_rate, frame_rate_25) << text;
  }
}

TEST(ParseTimeCode, ReadsTheFrameRateFromTheFirstSeparator) {
  const std::vector<std::pair<char, std::uint8_t>> marks = {
      {'=', 0}, {'.', 1}, {':', 2}, {'|', 4}, {'-', 6}};
  for (const auto& [mark, code] : marks) {
    std::string text = "00_00.00.10/0000";
    text[2] = mark;
    EXPECT_EQ(reading(text).frame_rate, code) << text;
  }
  // Index 6 has 25 frames.
  EXPECT_EQ(samples_of("00-00.00.24/0000"), 46080);
  EXPECT_EQ(samples_of("00-00.00.25/0000"), invalid);
}

TEST(ParseTimeCode, KeepsTheFrameRateThatARefusedTextBeganWith) {
  EXPECT_EQ(reading("00|xx.00.00/0000").frame_rate, 4);
  EXPECT_EQ(reading("00|xx.00.00/0000").sample_rate, 7U);
  EXPECT_EQ(reading("0x|00.00.00/0000").frame_rate, 77);
  // Out of range, when all of it was read.
  EXPECT_EQ(reading("24|00.00.00*0000").sample_rate, 96000U);
}

TEST(FormatTimeCode, PutsTheFrameRateIntoTheSeparators) {
  const std::array<std::pair<const char*, const char*>, 7> of_zero_and_1920 = {{
      {"00=00=00.00/0000", "00=00=00.00/1920"},
      {"00.00.00.00/0000", "00.00.00.01/0000"},
      {"00:00:00.00/0000", "00:00:00.01/0318"},
      {"00:00:00,00/0000", "00:00:00,01/0318"},
      {"00|00|00.00/0000", "00|00|00.01/0320"},
      {"00|00|00.00/0000", nullptr},
      {"00-00-00.00/0000", nullptr},
  }};
  for (std::uint8_t code = 0; code < 7; ++code) {
    const auto& [zero, frame] = of_zero_and_1920[code];
    EXPECT_EQ(text_of(0, 48000, code), zero);
    if (frame != nullptr) {
      EXPECT_EQ(text_of(1920, 48000, code), frame);
    }
  }
}

TEST(FormatTimeCode, NumbersFramesAtThePullDownRates) {
  const support::ScriptedHost host;
  EXPECT_EQ(text_of(2882879, 48000, 3), "00:00:59,29/1599");
  EXPECT_EQ(text_of(2882880, 48000, 3), "00:01:00,02/0000");
  EXPECT_EQ(text_of(2882879, 48000, 2), "00:00:59.29/1599");
  EXPECT_EQ(text_of(2882880, 48000, 2), "00:01:00.00/0000");
}

struct DropCase {
  std::int64_t samples;
  const char* text;
  const char* exact;
};

// The minute that decides how many numbers were dropped lags behind the true one.
TEST(FormatTimeCode, DropsFrameNumbersByALaggingMinuteOrExactly) {
  const DropCase cases[] = {
      {5762556, "00:01:59,29/1599", "00:01:59,29/1599"},
      {5762557, "00:02:00,00/0000", "00:02:00,02/0000"},
      {178709731, "01:02:03,02/0000", "01:02:03,04/0000"},
      {172799827, "01:00:00,00/0000", "01:00:00,00/0000"},
      {28799971, "00:10:00,00/0000", "00:10:00,00/0000"},
      {4147194251, "23:59:59,27/0000", "23:59:59,29/0000"},
      {4147195852, "23:59:59,27/1599", "23:59:59,29/1599"},
      {4147195853, "23:59:59,28/0000", "23:59:59,00/0000"},
  };
  support::ScriptedHost host;
  for (const DropCase& one : cases) {
    host.fixes.set(Correction::adl_drop_frame, false);
    EXPECT_EQ(text_of(one.samples, 48000, 3), one.text);
    const bool in_the_day = one.samples < 4147195853;
    EXPECT_EQ(time_code_moves(one.samples, 48000, 3),
              in_the_day && std::string_view(one.text) != one.exact)
        << one.text;
    host.fixes.set(Correction::adl_drop_frame, true);
    EXPECT_EQ(text_of(one.samples, 48000, 3), one.exact);
    EXPECT_FALSE(time_code_moves(one.samples, 48000, 3));
  }
  host.fixes.set(Correction::adl_drop_frame, false);
  EXPECT_FALSE(time_code_moves(5762557, 48000, 2));
  EXPECT_FALSE(time_code_moves(invalid, 48000, 3));
  EXPECT_FALSE(time_code_moves(5762557, 0, 3));
}

TEST(FormatTimeCode, PutsFourDigitsForTheSamples) {
  EXPECT_EQ(text_of(9, 48000, 1), "00.00.00.00/0009");
  EXPECT_EQ(text_of(99, 48000, 1), "00.00.00.00/0099");
  EXPECT_EQ(text_of(100, 48000, 1), "00.00.00.00/0100");
  EXPECT_EQ(text_of(999, 48000, 1), "00.00.00.00/0999");
  EXPECT_EQ(text_of(1000, 48000, 1), "00.00.00.00/1000");
}

TEST(FormatTimeCode, MayUseTheFrameInFrontWhereFramesAreNotWhole) {
  EXPECT_EQ(text_of(1837, 44100, 0), "00=00=00.00|1837");
  EXPECT_EQ(text_of(1838, 44100, 0), "00=00=00.01|0001");
  EXPECT_EQ(text_of(3675, 44100, 0), "00=00=00.02|0000");
  EXPECT_EQ(text_of(44100, 44100, 0), "00=00=01.00|0000");
  // One more than a frame's length, which the parser refuses.
  EXPECT_EQ(text_of(2133, 32000, 4), "00|00|00.01=1067");
  EXPECT_EQ(samples_of("00|00|00.01=1067"), invalid);
  EXPECT_EQ(text_of(3671, 44056, 0), "00=00=00.01~1836");
  EXPECT_EQ(samples_of("00=00=00.01~1836"), invalid);
}

TEST(FormatTimeCode, ReadsBack) {
  struct Case {
    std::uint32_t sample_rate;
    std::uint8_t frame_rate;
    const char* text;
  };
  const Case cases[] = {
      {32000, 0, "01=04=18.00=0789"}, {44100, 1, "00.46.39.11|1485"},
      {48000, 2, "00:42:49.13/0656"}, {48000, 3, "00:42:51,29/0656"},
      {48000, 4, "00|42|52.00/0789"}, {96000, 1, "00.21.26.00*0789"},
      {88200, 0, "00=23=19.17@2514"},
  };
  support::ScriptedHost host;
  for (const Case& one : cases) {
    EXPECT_EQ(text_of(123456789, one.sample_rate, one.frame_rate), one.text);
    EXPECT_EQ(samples_of(one.text), 123456789) << one.text;
  }
}

TEST(FormatTimeCode, EndsWithTheDay) {
  support::ScriptedHost host;
  EXPECT_EQ(text_of(4147199999, 48000, 1), "23.59.59.24/1919");
  EXPECT_EQ(text_of(4147200000, 48000, 1), "23:59:59.00/0000");
  EXPECT_EQ(text_of(4151347199, 48000, 2), "23:59:59.29/1599");
  EXPECT_EQ(text_of(4151347200, 48000, 2), "23:59:59.00/0000");
}

TEST(FormatTimeCode, AnUnknownTimeIsBehindTheDay) {
  for (const bool exact : {false, true}) {
    support::ScriptedHost host;
    host.fixes.set(Correction::adl_drop_frame, exact);
    for (const std::uint32_t rate : {32000U, 44100U, 48000U, 96000U, 191808U}) {
      for (const std::uint8_t code : bytes({0, 1, 2, 4, 5, 6, 255}))
        EXPECT_EQ(text_of(invalid, rate, code), "23:59:59.00/0000");
      EXPECT_EQ(text_of(invalid, rate, 3), "23:59:59,00/0000");
    }
  }
}

TEST(FormatTimeCode, HasNoCharacterForSomeRates) {
  for (const std::uint32_t rate : {192000U, 64000U, 128000U, 176400U, 176224U, 191808U, 12345U}) {
    const std::string text = text_of(rate, rate, 1);
    EXPECT_EQ(text, "00.00.01.00!0000");
    EXPECT_EQ(samples_of(text), invalid);
  }
}

TEST(FormatTimeCode, LosesASampleInAThousandAndOneAtThePullDownRates) {
  for (const auto& [samples, back] : std::vector<std::pair<std::int64_t, std::int64_t>>{
           {499, 499}, {500, 501}, {501, 501}, {1500, 1500}, {1501, 1502}, {1502, 1502}}) {
    EXPECT_EQ(samples_of(text_of(samples, 48000, 2)), back);
  }
}

TEST(FormatTimeCode, FillsItsSixteenCharactersWhateverItIsGiven) {
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  for (const bool exact : {false, true}) {
    support::ScriptedHost host;
    host.fixes.set(Correction::adl_drop_frame, exact);
    for (const std::int64_t samples :
         {least, least + 1, std::int64_t{-4151347200}, std::int64_t{-1}, std::int64_t{0},
          std::int64_t{1} << 40, invalid - 1, invalid}) {
      for (const std::uint32_t rate :
           {0U, 1U, 29U, 48000U, 1U << 28U, 1U << 30U, 0x80000000U, 0xFFFFFFFFU}) {
        for (const std::uint8_t code : bytes({0, 1, 2, 3, 4, 5, 6, 7, 255}))
          EXPECT_EQ(text_of(samples, rate, code).size(), 16U) << samples << ' ' << rate;
      }
    }
  }
  EXPECT_EQ(text_of(0, 0, 1), "23:59:59.00/0000");
  EXPECT_EQ(text_of(0, 0, 3), "23:59:59,00/0000");
  EXPECT_EQ(text_of(0, 48000, 255), "00.00.00.00/0000");
  EXPECT_EQ(text_of(-5, 48000, 1), "00.00.00.00/000-");
}

// The rest is held against whole numbers and fractions alone.

struct Rates {
  std::uint32_t sample_rate;
  std::uint8_t frame_rate;
};

std::vector<Rates> all_rates() {
  std::vector<Rates> rates;
  for (const std::uint32_t sample_rate :
       {32000U, 44100U, 48000U, 44056U, 47952U, 88200U, 96000U, 88112U, 95904U}) {
    for (const std::uint8_t frame_rate : bytes({0, 1, 2, 3, 4}))
      rates.push_back({sample_rate, frame_rate});
  }
  return rates;
}

constexpr std::int64_t frames_per_day_second[] = {24, 25, 30, 30, 30};

// The numbers of a text, and the frame of the day that they name, counted along.
struct Label {
  int hours;
  int minutes;
  int seconds;
  int frames;
};

bool is_dropped(const Label& label) {
  return label.frames < 2 && label.seconds == 0 && label.minutes % 10 != 0;
}

std::string label_text(const Label& label, char mark, char frame_mark) {
  char text[32];
  std::snprintf(text, sizeof text, "%02d%c%02d%c%02d%c%02d", label.hours, mark, label.minutes, mark,
                label.seconds, frame_mark, label.frames);
  return text;
}

Label label_at(std::int64_t frame, std::int64_t fps) {
  return {static_cast<int>(frame / fps / 3600), static_cast<int>(frame / fps / 60 % 60),
          static_cast<int>(frame / fps % 60), static_cast<int>(frame % fps)};
}

std::vector<Label> drop_labels_of_a_day() {
  std::vector<Label> labels;
  for (std::int64_t frame = 0; frame < 24 * 3600 * 30; ++frame) {
    const Label label = label_at(frame, 30);
    if (!is_dropped(label)) labels.push_back(label);
  }
  return labels;
}

TEST(TimeCodeProperties, EveryDropFrameNumberOfADayComesBack) {
  support::ScriptedHost host;
  host.fixes.set(Correction::adl_drop_frame, true);
  const std::vector<Label> labels = drop_labels_of_a_day();
  ASSERT_EQ(labels.size(), 2589408U);
  std::int64_t before = -1;
  for (const Label& label : labels) {
    const std::string text = label_text(label, ':', ',') + "/0000";
    std::uint32_t rate = 0;
    std::uint8_t code = 0;
    const std::int64_t samples = parse_time_code(text.c_str(), 17, rate, code);
    wide_char out[time_code_places];
    format_time_code(samples, rate, code, out);
    ASSERT_TRUE(std::equal(text.begin(), text.end(), std::begin(out)))
        << text << " comes back as " << utf8(field_text(out));
    ASSERT_GT(samples, before);
    before = samples;
  }
}

TEST(TimeCodeProperties, MostDropFrameNumbersComeBackEarlierToTheLetter) {
  const support::ScriptedHost host;
  std::size_t moved = 0;
  for (const Label& label : drop_labels_of_a_day()) {
    const std::string text = label_text(label, ':', ',') + "/0000";
    std::uint32_t rate = 0;
    std::uint8_t code = 0;
    wide_char out[time_code_places];
    const std::int64_t samples = parse_time_code(text.c_str(), 17, rate, code);
    format_time_code(samples, rate, code, out);
    const bool moves = !std::equal(text.begin(), text.end(), std::begin(out));
    ASSERT_EQ(time_code_moves(samples, rate, code), moves) << text;
    if (moves) ++moved;
  }
  EXPECT_EQ(moved, 1538136U);
}

// A text names a frame and samples in it. Of a whole number of time-code samples t the
// frame is the last one that does not start behind t, and the samples are t less that
// frame's start, rounded down. At the pull-down rates t is the whole number nearest to
// 1000/1001 of the samples.
TEST(TimeCodeProperties, TextsNameTheFrameThatHoldsTheSample) {
  support::ScriptedHost host;
  host.fixes.set(Correction::adl_drop_frame, true);
  const std::vector<Label> drop_labels = drop_labels_of_a_day();
  std::mt19937_64 random(20240305);
  for (const Rates& rates : all_rates()) {
    const std::int64_t fps = frames_per_day_second[rates.frame_rate];
    const std::int64_t rate = rates.sample_rate;
    const bool pulled = rates.frame_rate == 2 || rates.frame_rate == 3;
    const std::int64_t end = rates.frame_rate == 3
                                 ? static_cast<std::int64_t>(drop_labels.size()) * rate / 30
                                 : 24 * 3600 * rate;
    for (int i = 0; i < 2000; ++i) {
      const auto t = static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(end));
      const std::int64_t frame = t * fps / rate;
      ASSERT_LE(frame * rate, t * fps);
      ASSERT_GT((frame + 1) * rate, t * fps);
      const std::int64_t start = frame / fps * rate + frame % fps * rate / fps;
      const bool drop = rates.frame_rate == 3;
      const Label label =
          drop ? drop_labels[static_cast<std::size_t>(frame)] : label_at(frame, fps);
      const char mark = "=.::|"[rates.frame_rate];
      char tail[8];
      std::snprintf(tail, sizeof tail, "%04d", static_cast<int>(t - start));
      // Of the samples for which t is nearest, the one in the middle.
      const std::int64_t samples = pulled ? (t * 1001 + 500) / 1000 : t;
      if (pulled) {
        ASSERT_LE(std::abs(samples * 1000 - t * 1001), 500);
      }
      std::string text = text_of(samples, rates.sample_rate, rates.frame_rate);
      EXPECT_EQ(text.substr(0, 11) + text.substr(12),
                label_text(label, mark, drop ? ',' : '.') + tail)
          << samples << " at " << rate;
    }
  }
}

// The exact place of a text is the sum of its fields as a fraction of samples. Frame
// starts, and the frames left out, are each rounded down before a pull-down rounds the
// sum, so a reading is off by less than two samples; where frames have whole numbers of
// samples only the last rounding is left.
TEST(TimeCodeProperties, ReadingsLieBesideTheExactFraction) {
  std::mt19937_64 random(7);
  const auto below = [&random](std::int64_t n) {
    return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(n));
  };
  const std::string sample_marks = "=|/~-!@*?&";
  for (const Rates& rates : all_rates()) {
    const std::int64_t fps = frames_per_day_second[rates.frame_rate];
    const std::int64_t rate = rates.sample_rate;
    const bool drop = rates.frame_rate == 3;
    const bool pulled = drop || rates.frame_rate == 2;
    const char sample_mark =
        sample_marks[static_cast<std::size_t>(sample_rate_index_of(rates.sample_rate))];
    // Hours that stay inside 32 bits.
    const std::int64_t hours = std::min<std::int64_t>(24, 4294967295 / (rate * 3600) + 1);
    for (int i = 0; i < 2000; ++i) {
      const std::int64_t frame = below(hours * 3600 * fps);
      const Label label = label_at(frame, fps);
      if (drop && is_dropped(label)) continue;
      const std::int64_t samples = below(rate / fps + 1);
      char tail[8];
      std::snprintf(tail, sizeof tail, "%c%04d", sample_mark, static_cast<int>(samples));
      const std::string text =
          label_text(label, "=.::|"[rates.frame_rate], drop ? ',' : '.') + tail;
      const std::int64_t minute = label.hours * 60 + label.minutes;
      const std::int64_t left_out = drop ? 2 * (minute - minute / 10) : 0;
      // The exact place times fps, and times 1000 where the rate is pulled down.
      const std::int64_t scale = pulled ? 1000 : 1;
      const std::int64_t exact = ((frame - left_out) * rate + samples * fps) * (pulled ? 1001 : 1);
      const std::int64_t read = samples_of(text) * fps * scale;
      const std::int64_t off = read - exact;
      const std::int64_t whole = fps * scale;
      const bool divides = rate % fps == 0;
      if (!divides) {
        EXPECT_LT(std::abs(off), 2 * whole) << text;
      } else if (pulled) {
        EXPECT_LE(std::abs(off) * 2, whole) << text;
      } else {
        EXPECT_EQ(off, 0) << text;
      }
    }
  }
}

}  // namespace
