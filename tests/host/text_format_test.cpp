#include "host/text_format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

#include "tests/support/compare.h"

namespace {

using support::utf8;

TEST(Decimal, PadsWithZeros) {
  EXPECT_EQ(utf8(decimal(0)), "0");
  EXPECT_EQ(utf8(decimal(7, 3)), "007");
  EXPECT_EQ(utf8(decimal(1234, 3)), "1234");
  EXPECT_EQ(utf8(decimal(-5, 3)), "-05");
  EXPECT_EQ(utf8(decimal(-5)), "-5");
  EXPECT_EQ(utf8(decimal(5, -2)), "5");
  EXPECT_EQ(utf8(decimal(std::numeric_limits<std::int64_t>::min())), "-9223372036854775808");
  EXPECT_EQ(utf8(decimal(std::numeric_limits<std::int64_t>::max(), 21)), "009223372036854775807");
}

TEST(FixedPoint, RoundsAsTheCLibrary) {
  EXPECT_EQ(utf8(fixed_point(0.0, 2)), "0.00");
  EXPECT_EQ(utf8(fixed_point(-0.001, 2)), "-0.00");
  EXPECT_EQ(utf8(fixed_point(2.5, 0)), "2");
  EXPECT_EQ(utf8(fixed_point(3.5, 0)), "4");
  EXPECT_EQ(utf8(fixed_point(0.125, 2)), "0.12");
  EXPECT_EQ(utf8(fixed_point(2.675, 2)),
            "2.67");  // 2.67499999999999982236431605997495353221893310546875
  EXPECT_EQ(utf8(fixed_point(-160.0, 2)), "-160.00");
  EXPECT_EQ(utf8(signed_fixed_point(0.0, 1)), "+0.0");
  EXPECT_EQ(utf8(signed_fixed_point(-12.04, 2)), "-12.04");
  EXPECT_EQ(utf8(signed_fixed_point(3.0, 2)), "+3.00");
}

TEST(FixedPoint, AgreesWithTheCLibrary) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> range(-400.0, 400.0);
  char buffer[512];
  for (int i = 0; i < 20000; ++i) {
    const double value = range(random);
    const int places = i % 8;
    std::snprintf(buffer, sizeof buffer, "%.*f", places, value);
    ASSERT_EQ(utf8(fixed_point(value, places)), buffer);
  }
}

TEST(FixedPoint, TheLongestAndTheUnfit) {
  constexpr double largest = std::numeric_limits<double>::max();
  EXPECT_EQ(fixed_point(-largest, 60).size(), 1U + 309U + 1U + 60U);
  EXPECT_EQ(fixed_point(largest, 5000).size(), 309U + 1U + 60U);
  EXPECT_EQ(utf8(fixed_point(1.5, -3)), "2");
  EXPECT_EQ(utf8(fixed_point(std::numeric_limits<double>::quiet_NaN(), 2)), "nan");
  EXPECT_EQ(utf8(fixed_point(std::numeric_limits<double>::infinity(), 2)), "inf");
  EXPECT_EQ(utf8(fixed_point(-std::numeric_limits<double>::infinity(), 2)), "-inf");
}

TEST(HostFormat, TakesOneTextAndOneNumber) {
  const auto filled = [](std::u16string_view format) {
    return utf8(fill_host_format(format, u"TEXT", 12));
  };
  EXPECT_EQ(filled(u"%s (event %d)"), "TEXT (event 12)");
  EXPECT_EQ(filled(u"%d: %s"), "12: TEXT");
  EXPECT_EQ(filled(u"%ld %s"), "12 TEXT");
  EXPECT_EQ(filled(u"%lu"), "12");
  EXPECT_EQ(filled(u"%u"), "12");
  EXPECT_EQ(filled(u"%i"), "12");
  EXPECT_EQ(filled(u"100%% %s"), "100% TEXT");
  EXPECT_EQ(filled(u""), "");
  EXPECT_EQ(utf8(fill_host_format(u"%d", {}, -3)), "-3");
}

TEST(HostFormat, NoFormatReadsPastItsValues) {
  const auto filled = [](std::u16string_view format) {
    return utf8(fill_host_format(format, u"T", 1));
  };
  EXPECT_EQ(filled(u"%s%s%s"), "T%s%s");
  EXPECT_EQ(filled(u"%d%u%i%ld"), "1%u%i%ld");
  EXPECT_EQ(filled(u"%n%x%5d%"), "%n%x%5d%");
  EXPECT_EQ(filled(u"%"), "%");
  EXPECT_EQ(filled(u"%l"), "%l");
  EXPECT_EQ(filled(u"%%s"), "%s");
  EXPECT_EQ(filled(u"%%%s"), "%T");
  // What the text brings is not read as a format.
  EXPECT_EQ(utf8(fill_host_format(u"%s %d", u"%d%s", 5)), "%d%s 5");
}

double scanned(std::u16string_view text) {
  double value = 99.0;
  return scan_number(text, value) ? value : std::numeric_limits<double>::quiet_NaN();
}

TEST(ScanNumber, ReadsTheHeadOfAText) {
  EXPECT_EQ(scanned(u"12"), 12.0);
  EXPECT_EQ(scanned(u" \t\n+1.5xyz"), 1.5);
  EXPECT_EQ(scanned(u"-.5"), -0.5);
  EXPECT_EQ(scanned(u"5."), 5.0);
  EXPECT_EQ(scanned(u"1.2.3"), 1.2);
  EXPECT_EQ(scanned(u"1e3"), 1000.0);
  EXPECT_EQ(scanned(u"1E+2"), 100.0);
  EXPECT_EQ(scanned(u"1e-2"), 0.01);
  EXPECT_EQ(scanned(u"1e"), 1.0);
  EXPECT_EQ(scanned(u"1e+"), 1.0);
  EXPECT_EQ(scanned(u"1e+x"), 1.0);
  EXPECT_EQ(scanned(u"0x10"), 0.0);
  EXPECT_EQ(scanned(u"1,5"), 1.0);
  EXPECT_EQ(scanned(u"86399.999979"), 86399.999979);
}

TEST(ScanNumber, RefusesWhatIsNoNumber) {
  for (const char16_t* const text : {u"", u" ", u"-", u"+", u".", u"-.", u"+-5", u"--5", u"e5",
                                     u".e5", u"nan", u"inf", u"-infinity", u"abc", u"\u0661"}) {
    double value = 99.0;
    EXPECT_FALSE(scan_number(text, value)) << utf8(text);
    EXPECT_EQ(value, 0.0) << utf8(text);
  }
}

TEST(ScanNumber, BeyondTheRange) {
  EXPECT_TRUE(std::isnan(scanned(u"1e309")));
  EXPECT_TRUE(std::isnan(scanned(u"-1e99999999999999999999")));
  EXPECT_TRUE(std::isnan(scanned(std::u16string(400, u'9'))));
  EXPECT_EQ(scanned(u"1e-400"), 0.0);
  EXPECT_TRUE(std::signbit(scanned(u"-1e-400")));
  EXPECT_EQ(scanned(u"1e-99999999999999999999"), 0.0);
  EXPECT_EQ(scanned(u"0." + std::u16string(500, u'0') + u"1"), 0.0);
  EXPECT_EQ(scanned(u"0e99999999999999999999"), 0.0);
  // Many digits, but a number inside the range.
  EXPECT_EQ(scanned(std::u16string(400, u'0') + u"7"), 7.0);
  EXPECT_EQ(scanned(u"1" + std::u16string(400, u'0') + u"e-400"), 1.0);
  EXPECT_EQ(scanned(u"1.7976931348623157e308"), std::numeric_limits<double>::max());
  EXPECT_EQ(scanned(u"5e-324"), std::numeric_limits<double>::denorm_min());
}

TEST(ScanNumber, AgreesWithTheCLibrary) {
  std::mt19937_64 random(5);
  std::uniform_real_distribution<double> range(-1e6, 1e6);
  char buffer[64];
  for (int i = 0; i < 20000; ++i) {
    std::snprintf(buffer, sizeof buffer, i % 2 == 0 ? "%.6f" : "%.17g", range(random));
    const std::string_view digits = buffer;
    ASSERT_EQ(scanned(std::u16string(digits.begin(), digits.end())), std::strtod(buffer, nullptr))
        << buffer;
  }
}

TEST(ScanNumber, RandomTextsNeverFail) {
  std::mt19937 random(9);
  constexpr std::u16string_view letters = u"0123456789+-.eE xX";
  for (int i = 0; i < 20000; ++i) {
    std::u16string text;
    for (std::size_t n = random() % 24; n > 0; --n)
      text.push_back(letters[random() % letters.size()]);
    double value = 99.0;
    const bool read = scan_number(text, value);
    ASSERT_TRUE(std::isfinite(value)) << utf8(text);
    ASSERT_TRUE(read || value == 0.0) << utf8(text);
  }
}

}  // namespace
