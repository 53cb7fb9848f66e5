#include "host/fade_levels_table.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<double> row(std::size_t n) {
  const FadeLevels& r = fade_levels_table[n];
  return {r.quarter_db, r.half_db, r.three_quarters_db};
}

TEST(FadeLevelsTable, RowsAreAsGiven) {
  EXPECT_EQ(fade_levels_table.size(), 117U);
  EXPECT_EQ(row(0), (std::vector<double>{-12.0, -6.0, -2.5}));
  EXPECT_EQ(row(1), (std::vector<double>{-43.1, -27.8, -13.8}));
  EXPECT_EQ(row(16), (std::vector<double>{-12.8, -6.5, -2.7}));
  EXPECT_EQ(row(17), (std::vector<double>{-3.3, -1.1, -0.2}));
  EXPECT_EQ(row(32), (std::vector<double>{-0.2, 0.0, 0.0}));
  EXPECT_EQ(row(33), (std::vector<double>{-3.2, -1.5, -0.6}));
  EXPECT_EQ(row(48), (std::vector<double>{-10.7, -5.2, -2.1}));
  EXPECT_EQ(row(49), (std::vector<double>{-4.2, -1.6, -0.4}));
  EXPECT_EQ(row(64), (std::vector<double>{-9.0, -5.4, -2.8}));
  EXPECT_EQ(row(65), (std::vector<double>{-44.2, -22.1, -9.2}));
  EXPECT_EQ(row(80), (std::vector<double>{-14.1, -7.0, -2.9}));
  EXPECT_EQ(row(81), (std::vector<double>{-3.1, -1.0, -0.2}));
  EXPECT_EQ(row(96), (std::vector<double>{-0.6, 0.0, 0.0}));
  EXPECT_EQ(row(97), (std::vector<double>{-33.4, -12.0, -2.8}));
  EXPECT_EQ(row(112), (std::vector<double>{-13.6, -4.1, -0.8}));
  EXPECT_EQ(row(113), (std::vector<double>{-8.3, -3.0, -0.7}));
  EXPECT_EQ(row(113), row(114));
  EXPECT_EQ(row(115), (std::vector<double>{-24.8, -12.6, -5.3}));
  EXPECT_EQ(row(116), (std::vector<double>{-1.5, -0.2, 0.0}));
}

TEST(FadeLevelsTable, LevelsRiseUpToFull) {
  for (std::size_t n = 0; n < fade_levels_table.size(); ++n) {
    EXPECT_LE(row(n)[0], row(n)[1]) << n;
    EXPECT_LE(row(n)[1], row(n)[2]) << n;
    EXPECT_LE(row(n)[2], 0.0) << n;
  }
}

}  // namespace
