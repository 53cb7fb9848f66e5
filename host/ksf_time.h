// A time with the two rates that give it meaning, as the host counts it.
//
// Time code counts 24, 25 or 30 frames a second. At the two 29.97 rates a second
// of time code lasts 1.001 seconds; the drop form leaves out the frame numbers 0
// and 1 of each minute that is not a multiple of ten. A frame start is
// (frame * samples per second) / frames per second, rounded down, so at pairs of
// rates that do not divide, a text does not always come back as itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/api.h"
#include "host/framework/object.h"
#include "host/text.h"

// Hours, minutes, seconds and frames as a text gives them; no range is tested.
struct TimeCodeFields {
  std::int64_t hours = 0;
  std::int64_t minutes = 0;
  std::int64_t seconds = 0;
  std::int64_t frames = 0;
  bool negative = false;
};

// Reads an optional "-", then four runs of decimal digits (9 of each run at the
// most) parted by one of ":", ";", "." or ",". What follows the fourth run is
// ignored. Any other text gives all zeros.
EDL_API TimeCodeFields parse_time_code_fields(std::u16string_view text);

// Samples of a time code at the two rates; 0 when the sample rate is not set.
EDL_API std::int64_t time_code_samples(const TimeCodeFields& fields, std::uint8_t sample_rate_index,
                                       std::uint8_t frame_rate_index);
EDL_API std::int64_t time_code_samples(std::u16string_view text, std::uint8_t sample_rate_index,
                                       std::uint8_t frame_rate_index);

// Turns the whole frames of time at 30 a second into the frame number of drop
// frame time code, so that the left-out numbers never come up.
EDL_API std::int64_t drop_frame_number(std::int64_t frames);

class EDL_API CKsfTime : public CObject {
 public:
  // Zero, with rates to be set.
  CKsfTime() = default;
  // The digits of a text; the rates are set next. `time_format` does not change
  // what is read.
  CKsfTime(const wide_char* text, std::uint8_t time_format);
  CKsfTime(std::u16string_view text, std::uint8_t time_format);
  // A count of samples at the two rates.
  CKsfTime(std::uint8_t sample_rate_index, std::uint8_t frame_rate_index, std::int64_t samples);

  // Keeps the time code digits and takes these rates for the next conversion.
  void set_rates(std::uint8_t sample_rate_index, std::uint8_t frame_rate_index);

  // Samples of the digits at the set rates; 0 when the sample rate is not set.
  [[nodiscard]] std::int64_t to_samples() const;
  // "HH:MM:SS:FF" with a "-" in front of a negative time, into `out` of at least
  // 15 units. A time of 24 hours and above gives "23:59:59:00". Always ":",
  // whatever `time_format` says.
  void to_text(wide_char* out, std::uint8_t time_format) const;

 private:
  void take_digits(std::u16string_view text);

  TimeCodeFields digits_;
  std::int64_t samples_ = 0;
  std::uint8_t sample_rate_index_ = 255;
  std::uint8_t frame_rate_index_ = 255;
  bool from_samples_ = false;
};
