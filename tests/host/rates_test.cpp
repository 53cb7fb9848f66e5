#include "host/rates.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

const std::vector<std::uint32_t> rates = {32000,  44100,  48000,  44056,  47952,
                                          64000,  88200,  96000,  88112,  95904,
                                          128000, 176400, 192000, 176224, 191808};

TEST(Rates, EverySampleRateHasItsIndex) {
  ASSERT_EQ(rates.size(), 15U);
  for (std::size_t i = 0; i < rates.size(); ++i) {
    EXPECT_EQ(samples_per_second(static_cast<std::uint8_t>(i)), rates[i]) << i;
    EXPECT_EQ(sample_rate_index_of(rates[i]), static_cast<std::int8_t>(i)) << rates[i];
  }
}

TEST(Rates, OtherSampleRatesHaveNone) {
  for (const std::uint32_t rate : {44057U, 0U, 48001U, 22050U, 4294967295U})
    EXPECT_EQ(sample_rate_index_of(rate), -1) << rate;
  for (int i = 15; i < 256; ++i)
    EXPECT_EQ(samples_per_second(static_cast<std::uint8_t>(i)), 0U) << i;
}

TEST(Rates, PullDownFormsAreAThousandthSlower) {
  for (const auto& [slow, whole] : std::vector<std::pair<double, double>>{{44056, 44100},
                                                                          {47952, 48000},
                                                                          {88112, 88200},
                                                                          {95904, 96000},
                                                                          {176224, 176400},
                                                                          {191808, 192000}})
    EXPECT_EQ(std::round(whole * 1000.0 / 1001.0), slow);
}

TEST(Rates, FramesPerSecond) {
  EXPECT_EQ(frames_per_second(frame_rate_24), 24);
  EXPECT_EQ(frames_per_second(frame_rate_25), 25);
  EXPECT_EQ(frames_per_second(frame_rate_2997_non_drop), 30);
  EXPECT_EQ(frames_per_second(frame_rate_2997_drop), 30);
  EXPECT_EQ(frames_per_second(frame_rate_30), 30);
  for (int i = 5; i < 256; ++i)
    EXPECT_EQ(frames_per_second(static_cast<std::uint8_t>(i)), 25) << i;
}

}  // namespace
