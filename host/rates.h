// The two rate vocabularies of the host: a byte each, 255 for not set.
#pragma once

#include <cstdint>

#include "host/api.h"

inline constexpr std::uint8_t rate_not_set = 255;

// Frame-rate indices.
enum FrameRateIndex : std::uint8_t {
  frame_rate_24 = 0,
  frame_rate_25 = 1,
  frame_rate_2997_non_drop = 2,
  frame_rate_2997_drop = 3,
  frame_rate_30 = 4,
};
inline constexpr int frame_rate_count = 5;
inline constexpr int sample_rate_count = 15;

// Samples per second of a sample-rate index 0 to 14:
// 32000 44100 48000 44056 47952 64000 88200 96000 88112 95904 128000 176400
// 192000 176224 191808. 0 for any other index.
EDL_API std::uint32_t samples_per_second(std::uint8_t sample_rate_index);
// The opposite; -1 for a rate that has no index.
EDL_API std::int8_t sample_rate_index_of(std::uint32_t samples_per_second);
// Whole frames that a second of time code counts: 24, 25, 30, 30, 30 for the
// indices 0 to 4, and 25 for any other.
EDL_API std::uint8_t frames_per_second(std::uint8_t frame_rate_index);
