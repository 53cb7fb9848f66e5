#include "core/edl_rates.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

namespace {

// Whole samples a frame at frame-rate indices 0 to 4, by sample-rate index.
const std::map<int, std::array<std::int64_t, 5>> frame_lengths = {
    {0, {1333, 1280, 1103, 1067, 1066}},  {1, {1837, 1764, 1520, 1471, 1470}},
    {2, {2000, 1920, 1655, 1601, 1600}},  {3, {1835, 1762, 1519, 1470, 1468}},
    {4, {1998, 1918, 1653, 1600, 1598}},  {5, {2666, 2560, 2206, 2135, 2133}},
    {6, {3675, 3528, 3041, 2942, 2940}},  {7, {4000, 3840, 3310, 3203, 3200}},
    {8, {3671, 3524, 3038, 2940, 2937}},  {9, {3996, 3836, 3307, 3200, 3196}},
    {10, {5333, 5120, 4413, 4270, 4266}}, {11, {7350, 7056, 6082, 5885, 5880}},
    {12, {8000, 7680, 6620, 6406, 6400}}, {13, {7342, 7048, 6076, 5880, 5874}},
    {14, {7992, 7672, 6614, 6400, 6393}}};

TEST(EdlRates, SamplesAFrameOfEveryPairOfRates) {
  ASSERT_EQ(frame_lengths.size(), 15U);
  for (const auto& [sample_rate, lengths] : frame_lengths) {
    for (std::uint8_t frame_rate = 0; frame_rate < 5; ++frame_rate) {
      EXPECT_EQ(samples_per_frame(static_cast<std::uint8_t>(sample_rate), frame_rate),
                lengths[frame_rate])
          << sample_rate << "/" << int{frame_rate};
    }
    EXPECT_EQ(samples_per_frame(static_cast<std::uint8_t>(sample_rate), 7), lengths[1]);
  }
}

TEST(EdlRates, FramesAreMultipliedBeforeTheyAreCut) {
  const std::array<std::int64_t, 5> three = {6000, 5760, 4965, 4804, 4800};
  for (std::uint8_t rate = 0; rate < 5; ++rate)
    EXPECT_EQ(frames_to_samples(2, rate, 3), three[rate]);
  EXPECT_EQ(frames_to_samples(2, 3, 12), 19219);
  EXPECT_EQ(frames_to_samples(2, 3, 100), 160160);
  EXPECT_EQ(frames_to_samples(2, 2, 999), 1653517);
  EXPECT_EQ(frames_to_samples(1, 0, 2), 3675);
}

TEST(EdlRates, ArithmeticIsSinglePrecision) {
  // In double precision this is 259999.
  EXPECT_EQ(frames_to_samples(0, 0, 195), 260000);
}

TEST(EdlRates, SamplesToFramesDividesByTheCutFrame) {
  EXPECT_EQ(samples_to_frames(2, 3, 3201), 1);
  EXPECT_EQ(samples_to_frames(2, 3, 3202), 2);
  EXPECT_EQ(samples_to_frames(2, 1, 1919), 0);
  EXPECT_EQ(samples_to_frames(2, 3, frames_to_samples(2, 3, 2661)), 2662);
}

TEST(EdlRates, UnsetSampleRateGivesNothing) {
  EXPECT_EQ(samples_per_frame(255, 1), 0);
  EXPECT_EQ(samples_to_frames(255, 255, 96000), 0);
  EXPECT_EQ(frames_to_samples(255, 255, 10), 0);
}

TEST(EdlRates, HugeCountsStayInsideTheRange) {
  EXPECT_EQ(frames_to_samples(12, 0, INT64_MAX), INT64_MAX);
  EXPECT_EQ(frames_to_samples(12, 0, INT64_MIN), INT64_MIN);
}

}  // namespace
