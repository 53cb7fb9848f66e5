#include "embedded/fade_curves.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using embedded::fade_curves;
using embedded::fade_in_amplitude;

constexpr std::size_t last = fade_curve_levels - 1;

TEST(FadeCurves, FallFromFullToSilence) {
  for (std::size_t n = 0; n < fade_curves().size(); ++n) {
    const auto& curve = fade_curves()[n];
    EXPECT_EQ(curve[0], 16384) << n;
    EXPECT_EQ(curve[last], 0) << n;
    for (std::size_t i = 1; i <= last; ++i)
      ASSERT_LE(curve[i], curve[i - 1]) << n << " at " << i;
  }
}

TEST(FadeCurves, CurveZeroIsStraight) {
  const auto& curve = fade_curves()[0];
  // 16384 * (127 - i) / 127
  EXPECT_EQ(curve[1], 16255);   // 16254.99
  EXPECT_EQ(curve[32], 12256);  // 12255.75
  EXPECT_EQ(curve[64], 8127);   // 8127.50 less a little: 63 * 16384 / 127 = 8127.496
  EXPECT_EQ(curve[126], 129);   // 129.01
}

TEST(FadeCurves, PassThroughTheLevelsOfTheirRow) {
  for (std::size_t n = 1; n < fade_levels_table.size(); ++n) {
    const FadeLevels& row = fade_levels_table[n];
    const auto level = [](double db) { return std::pow(10.0, db / 20.0); };
    EXPECT_NEAR(fade_in_amplitude(row, 0.0), 0.0, 1e-12) << n;
    EXPECT_NEAR(fade_in_amplitude(row, 0.25), level(row.quarter_db), 1e-12) << n;
    EXPECT_NEAR(fade_in_amplitude(row, 0.5), level(row.half_db), 1e-12) << n;
    EXPECT_NEAR(fade_in_amplitude(row, 0.75), level(row.three_quarters_db), 1e-12) << n;
    EXPECT_NEAR(fade_in_amplitude(row, 1.0), 1.0, 1e-12) << n;
  }
}

// The nearest two levels enclose the row's own: three quarters down the fall, which
// is 95.25 of 127, lies the level of the first quarter of a rise.
TEST(FadeCurves, LevelsLieMirrored) {
  for (std::size_t n = 1; n < fade_levels_table.size(); ++n) {
    const auto& curve = fade_curves()[n];
    const double quarter = 16384.0 * std::pow(10.0, fade_levels_table[n].quarter_db / 20.0);
    const double most = 16384.0 * std::pow(10.0, fade_levels_table[n].three_quarters_db / 20.0);
    EXPECT_GE(curve[95] + 0.5, quarter) << n;
    EXPECT_LE(curve[96] - 0.5, quarter) << n;
    EXPECT_GE(curve[31] + 0.5, most) << n;
    EXPECT_LE(curve[32] - 0.5, most) << n;
  }
}

TEST(FadeCurves, RiseBetweenTheLevelsToo) {
  for (std::size_t n = 1; n < fade_levels_table.size(); ++n) {
    double before = 0.0;
    for (int i = 0; i <= 10000; ++i) {
      const double value = fade_in_amplitude(fade_levels_table[n], i / 10000.0);
      ASSERT_GE(value, before - 1e-12) << n << " at " << i;
      ASSERT_LE(value, 1.0 + 1e-12) << n << " at " << i;
      before = value;
    }
  }
}

TEST(FadeCurves, EveryRowHasItsOwnCurve) {
  for (std::size_t a = 0; a < fade_curves().size(); ++a) {
    for (std::size_t b = a + 1; b < fade_curves().size(); ++b) {
      const FadeLevels& x = fade_levels_table[a];
      const FadeLevels& y = fade_levels_table[b];
      const bool same_row = a > 0 && x.quarter_db == y.quarter_db && x.half_db == y.half_db &&
                            x.three_quarters_db == y.three_quarters_db;
      EXPECT_EQ(fade_curves()[a] == fade_curves()[b], same_row) << a << " and " << b;
    }
  }
}

}  // namespace
