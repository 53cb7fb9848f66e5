#include "host/ksf_time.h"

#include <algorithm>

#include "host/rates.h"

namespace {

constexpr bool is_separator(wide_char c) {
  return c == u':' || c == u';' || c == u'.' || c == u',';
}

constexpr bool is_2997(std::uint8_t frame_rate_index) {
  return frame_rate_index == frame_rate_2997_non_drop || frame_rate_index == frame_rate_2997_drop;
}

// Reads the run of digits at `at`. A run longer than nine digits is read to its
// end but counts only nine, so that no later product leaves 64 bits.
bool read_run(std::u16string_view text, std::size_t& at, std::int64_t& value) {
  const std::size_t start = at;
  value = 0;
  for (; at < text.size() && is_digit(text[at]); ++at) {
    if (at - start < 9) value = value * 10 + (text[at] - u'0');
  }
  return at > start;
}

// Reads the common form, "HH:MM:SS:FF" and no more, in one step. False for any other.
bool read_usual_form(std::u16string_view text, TimeCodeFields& fields) {
  if (text.size() != 11 || !is_separator(text[2]) || !is_separator(text[5]) ||
      !is_separator(text[8])) {
    return false;
  }
  unsigned worst = 0;
  const auto two_digits = [&text, &worst](std::size_t at) {
    const unsigned tens = text[at] - unsigned{u'0'};
    const unsigned ones = text[at + 1] - unsigned{u'0'};
    worst = std::max({worst, tens, ones});
    return std::int64_t{tens * 10 + ones};
  };
  fields = {two_digits(0), two_digits(3), two_digits(6), two_digits(9), false};
  return worst <= 9;
}

// Samples of a count of frames within a second. The rates are few, and a division by a
// known number is several times as fast.
std::int64_t samples_of_frames(std::int64_t frames, std::int64_t sr, std::int64_t fps) {
  const std::int64_t product = frames * sr;
  if (fps == 25) [[likely]] {
    return product / 25;
  }
  if (fps == 30) [[likely]] {
    return product / 30;
  }
  return product / fps;
}

// Frame numbers that drop frame has left out before this minute.
constexpr std::int64_t dropped_before(std::int64_t minutes) {
  return (minutes % 10 + (minutes / 10) * 9) * 2;
}

// Samples of a time code without its sign; 0 when the sample rate is not set.
std::int64_t magnitude_of(std::int64_t hours, std::int64_t minutes, std::int64_t seconds,
                          std::int64_t frames, std::uint8_t sample_rate_index,
                          std::uint8_t frame_rate_index) {
  const std::int64_t sr = samples_per_second(sample_rate_index);
  if (sr == 0) return 0;
  const std::int64_t fps = frames_per_second(frame_rate_index);
  // Nine digits a field keep the sum below 2^60.
  std::int64_t x =
      hours * 3600 * sr + minutes * 60 * sr + seconds * sr + samples_of_frames(frames, sr, fps);
  if (frame_rate_index == frame_rate_2997_drop) {
    x -= samples_of_frames(dropped_before(hours * 60 + minutes), sr, fps);
  }
  if (is_2997(frame_rate_index)) {
    // Split so that the product with 1001 stays inside 64 bits.
    x = x / 1000 * 1001 + (x % 1000 * 1001 + 500) / 1000;
  }
  return x;
}

void put_two_digits(wide_char*& out, std::int64_t value) {
  *out++ = static_cast<wide_char>(u'0' + value / 10 % 10);
  *out++ = static_cast<wide_char>(u'0' + value % 10);
}

}  // namespace

TimeCodeFields parse_time_code_fields(std::u16string_view text) {
  TimeCodeFields fields;
  if (read_usual_form(text, fields)) return fields;
  fields = {};
  std::size_t at = 0;
  if (!text.empty() && text[0] == u'-') {
    fields.negative = true;
    ++at;
  }
  std::int64_t* const runs[] = {&fields.hours, &fields.minutes, &fields.seconds, &fields.frames};
  for (std::size_t i = 0; i < 4; ++i) {
    if (i > 0) {
      if (at >= text.size() || !is_separator(text[at])) return {};
      ++at;
    }
    if (!read_run(text, at, *runs[i])) return {};
  }
  return fields;
}

std::int64_t time_code_samples(const TimeCodeFields& fields, std::uint8_t sample_rate_index,
                               std::uint8_t frame_rate_index) {
  const std::int64_t samples = magnitude_of(fields.hours, fields.minutes, fields.seconds,
                                            fields.frames, sample_rate_index, frame_rate_index);
  return fields.negative ? -samples : samples;
}

std::int64_t time_code_samples(std::u16string_view text, std::uint8_t sample_rate_index,
                               std::uint8_t frame_rate_index) {
  return time_code_samples(parse_time_code_fields(text), sample_rate_index, frame_rate_index);
}

std::int64_t drop_frame_number(std::int64_t frames) {
  // Ten minutes hold 17982 frames, a minute of the nine that drop holds 1798.
  const std::int64_t tens = frames / 17982;
  const std::int64_t rest = frames % 17982;
  std::int64_t number = frames + 18 * tens;
  if (rest > 1) number += 2 * ((rest - 2) / 1798);
  return number;
}

CKsfTime::CKsfTime(const wide_char* text, std::uint8_t time_format)
    : CKsfTime(std::u16string_view(text, text_length(text)), time_format) {}

CKsfTime::CKsfTime(std::u16string_view text, std::uint8_t /*time_format*/)
    : digits_(parse_time_code_fields(text)) {}

CKsfTime::CKsfTime(std::uint8_t sample_rate_index, std::uint8_t frame_rate_index,
                   std::int64_t samples)
    : samples_(samples),
      sample_rate_index_(sample_rate_index),
      frame_rate_index_(frame_rate_index),
      from_samples_(true) {}

void CKsfTime::set_rates(std::uint8_t sample_rate_index, std::uint8_t frame_rate_index) {
  if (from_samples_) {
    wide_char text[16];
    to_text(text, 3);
    digits_ = parse_time_code_fields(text);
    from_samples_ = false;
  }
  sample_rate_index_ = sample_rate_index;
  frame_rate_index_ = frame_rate_index;
}

std::int64_t CKsfTime::to_samples() const {
  return from_samples_ ? samples_
                       : time_code_samples(digits_, sample_rate_index_, frame_rate_index_);
}

void CKsfTime::to_text(wide_char* out, std::uint8_t time_format) const {
  if (!from_samples_) {
    CKsfTime(sample_rate_index_, frame_rate_index_, to_samples()).to_text(out, time_format);
    return;
  }
  const std::int64_t sr = samples_per_second(sample_rate_index_);
  const std::int64_t fps = frames_per_second(frame_rate_index_);
  if (samples_ < 0 && sr != 0) *out++ = u'-';
  // The magnitude of the lowest number does not fit; one less is as far out of
  // range.
  std::int64_t x = samples_ < 0 ? -std::max(samples_, -time_not_given) : samples_;
  if (is_2997(frame_rate_index_)) {
    x = x / 1001 * 1000 + (x % 1001 * 1000 + 500) / 1001;
  }
  std::int64_t seconds = sr == 0 ? 0 : x / sr;
  std::int64_t frames = sr == 0 ? 0 : fps * (x % sr) / sr;
  if (frame_rate_index_ == frame_rate_2997_drop) {
    const std::int64_t number = drop_frame_number(seconds * 30 + frames);
    seconds = number / 30;
    frames = number % 30;
  }
  if (seconds >= 24 * 3600) {
    seconds = 24 * 3600 - 1;
    frames = 0;
  }
  put_two_digits(out, seconds / 3600);
  *out++ = u':';
  put_two_digits(out, seconds / 60 % 60);
  *out++ = u':';
  put_two_digits(out, seconds % 60);
  *out++ = u':';
  put_two_digits(out, frames);
  *out = u'\0';
}
