// Samples a frame as the edit lists count them: single-precision arithmetic on a
// small table, rounded after every step, then cut to whole samples.
#pragma once

#include <cstdint>

#include "host/api.h"

// Frames per second behind the index 0 to 4: 24, 25, 29, 29.97, 30, and 25 for any
// other. 29 at index 2 (29.97 non-drop) is this table's value, and results hang on
// it.
EDL_API float edl_frames_per_second(std::uint8_t frame_rate_index);

// Whole samples of one frame; 0 when the sample rate is not set.
EDL_API std::int64_t samples_per_frame(std::uint8_t sample_rate_index,
                                       std::uint8_t frame_rate_index);

// Samples of a count of frames: multiplied before it is cut, so 3 frames are not
// always three times one frame. Clamped to the 64-bit range.
EDL_API std::int64_t frames_to_samples(std::uint8_t sample_rate_index,
                                       std::uint8_t frame_rate_index, std::int64_t frames);

// Whole frames in a count of samples; 0 when the sample rate is not set.
EDL_API std::int64_t samples_to_frames(std::uint8_t sample_rate_index,
                                       std::uint8_t frame_rate_index, std::int64_t samples);
