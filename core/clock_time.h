// A time for one conversion between samples and time code text. It adds nothing
// to the host's class: build it, convert, drop it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/ksf_time.h"

class EDL_API CClockTime : public CKsfTime {
 public:
  using CKsfTime::CKsfTime;
};

// The rates and the time format that give a time its meaning.
struct TimeBase {
  std::uint8_t sample_rate_index = 255;
  std::uint8_t frame_rate_index = 255;
  std::uint8_t time_format = 3;
};

// Longest time code text and its terminator: a sign and eleven characters.
inline constexpr std::size_t time_code_size = 13;

// The text of a sample count, at most `size` - 1 units of it. A line of a file
// takes it whole (time_code_size); a record's field of 11 loses the last
// character of a negative time.
EDL_API void samples_to_timecode(const TimeBase& base, std::int64_t samples, wide_char* out,
                                 std::size_t size);
EDL_API std::int64_t timecode_to_samples(const TimeBase& base, std::u16string_view text);
