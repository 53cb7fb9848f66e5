#include "aaf/gain_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

TEST(GainTableTest, StepsBetweenTheTwelve) {
  const auto& table = aaf::gain_table();
  EXPECT_DOUBLE_EQ(table[0], 0.00000001);
  EXPECT_DOUBLE_EQ(table[4], 0.00003162);
  EXPECT_DOUBLE_EQ(table[8], 0.0001);
  EXPECT_DOUBLE_EQ(table[24], 0.00063096);
  EXPECT_DOUBLE_EQ(table[64], 0.00501187);
  EXPECT_DOUBLE_EQ(table[128], 0.02511886);
  EXPECT_DOUBLE_EQ(table[196], 0.1);
  EXPECT_DOUBLE_EQ(table[200], 0.10889345);
  EXPECT_DOUBLE_EQ(table[264], 0.25118864);
  EXPECT_DOUBLE_EQ(table[324], 0.50118723);
  EXPECT_DOUBLE_EQ(table[383], 0.99168645);
  EXPECT_DOUBLE_EQ(table[384], 1.0);
  EXPECT_DOUBLE_EQ(table[385], 1.01658771);
  EXPECT_DOUBLE_EQ(table[444], 1.99526231);
  EXPECT_DOUBLE_EQ(table[504], 3.98107171);
}

TEST(GainTableTest, ItRises) {
  const auto& table = aaf::gain_table();
  for (std::size_t i = 1; i < table.size(); ++i)
    ASSERT_LT(table[i - 1], table[i]) << i;
}

TEST(GainTableTest, TheNearestStep) {
  EXPECT_EQ(aaf::gain_step_from_ratio(0), 0U);
  EXPECT_EQ(aaf::gain_step_from_ratio(1e-8), 0U);
  EXPECT_EQ(aaf::gain_step_from_ratio(0.5), 324U);
  EXPECT_EQ(aaf::gain_step_from_ratio(1), 384U);
  EXPECT_EQ(aaf::gain_step_from_ratio(1.99526231), 444U);
  EXPECT_EQ(aaf::gain_step_from_ratio(4), 504U);
  EXPECT_EQ(aaf::gain_step_from_ratio(3.98107171), 504U);
  EXPECT_EQ(aaf::gain_step_from_ratio(-1), 0U);
}

TEST(GainTableTest, EveryStepFindsItself) {
  const auto& table = aaf::gain_table();
  for (std::uint32_t i = 0; i < aaf::gain_steps; ++i)
    ASSERT_EQ(aaf::gain_step_from_ratio(table[i]), i);
}

// Against a search through all of them.
TEST(GainTableTest, NothingLiesNearer) {
  const auto& table = aaf::gain_table();
  for (double ratio = 0.00001; ratio < 4.1; ratio *= 1.0007) {
    const double found = std::abs(table[aaf::gain_step_from_ratio(ratio)] - ratio);
    for (const double step : table)
      ASSERT_LE(found, std::abs(step - ratio)) << ratio;
  }
}

TEST(GainTableTest, WhatIsNoNumberIsSilence) {
  EXPECT_EQ(aaf::gain_step_from_ratio(std::numeric_limits<double>::quiet_NaN()), 0U);
  EXPECT_EQ(aaf::gain_step_from_ratio(std::numeric_limits<double>::infinity()), 504U);
  EXPECT_EQ(aaf::gain_step_from_ratio(-std::numeric_limits<double>::infinity()), 0U);
}

}  // namespace
