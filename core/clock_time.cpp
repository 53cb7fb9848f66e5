#include "core/clock_time.h"

void samples_to_timecode(const TimeBase& base, std::int64_t samples, wide_char* out,
                         std::size_t size) {
  const CClockTime time(base.sample_rate_index, base.frame_rate_index, samples);
  wide_char text[15] = {};
  time.to_text(text, base.time_format);
  copy_text(out, size, text);
}

std::int64_t timecode_to_samples(const TimeBase& base, std::u16string_view text) {
  return time_code_samples(text, base.sample_rate_index, base.frame_rate_index);
}
