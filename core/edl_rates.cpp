#include "core/edl_rates.h"

#include <array>

#include "host/rates.h"

namespace {

constexpr std::array<float, frame_rate_count> frames_table = {24.0F, 25.0F, 29.0F, 29.97F, 30.0F};

float exact_samples_per_frame(std::uint8_t sample_rate_index, std::uint8_t frame_rate_index) {
  return static_cast<float>(samples_per_second(sample_rate_index)) /
         edl_frames_per_second(frame_rate_index);
}

// Cuts towards zero; what lies outside 64 bits becomes the nearest end.
std::int64_t cut_to_samples(float samples) {
  constexpr float limit = 9223372036854775808.0F;
  if (samples >= limit) return INT64_MAX;
  if (samples < -limit) return INT64_MIN;
  return static_cast<std::int64_t>(samples);
}

}  // namespace

float edl_frames_per_second(std::uint8_t frame_rate_index) {
  return frame_rate_index < frames_table.size() ? frames_table[frame_rate_index] : 25.0F;
}

std::int64_t samples_per_frame(std::uint8_t sample_rate_index, std::uint8_t frame_rate_index) {
  return cut_to_samples(exact_samples_per_frame(sample_rate_index, frame_rate_index));
}

std::int64_t frames_to_samples(std::uint8_t sample_rate_index, std::uint8_t frame_rate_index,
                               std::int64_t frames) {
  return cut_to_samples(exact_samples_per_frame(sample_rate_index, frame_rate_index) *
                        static_cast<float>(frames));
}

std::int64_t samples_to_frames(std::uint8_t sample_rate_index, std::uint8_t frame_rate_index,
                               std::int64_t samples) {
  const std::int64_t frame = samples_per_frame(sample_rate_index, frame_rate_index);
  return frame == 0 ? 0 : samples / frame;
}
