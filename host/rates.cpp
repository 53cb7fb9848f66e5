#include "host/rates.h"

#include <algorithm>
#include <array>

namespace {

// The rates that look odd are the pull-down forms: 1000/1001 of a round rate.
constexpr std::array<std::uint32_t, sample_rate_count> sample_rates = {
    32000, 44100, 48000,  44056,  47952,  64000,  88200, 96000,
    88112, 95904, 128000, 176400, 192000, 176224, 191808};
constexpr std::array<std::uint8_t, frame_rate_count> nominal_frames = {24, 25, 30, 30, 30};

}  // namespace

std::uint32_t samples_per_second(std::uint8_t sample_rate_index) {
  return sample_rate_index < sample_rates.size() ? sample_rates[sample_rate_index] : 0;
}

std::int8_t sample_rate_index_of(std::uint32_t samples_per_second) {
  const auto* const at = std::find(sample_rates.begin(), sample_rates.end(), samples_per_second);
  return at == sample_rates.end() ? std::int8_t{-1}
                                  : static_cast<std::int8_t>(at - sample_rates.begin());
}

std::uint8_t frames_per_second(std::uint8_t frame_rate_index) {
  return frame_rate_index < nominal_frames.size() ? nominal_frames[frame_rate_index] : 25;
}
