// The time text of an audio decision list: 16 characters that hold, beside a time, the
// frame rate in their separators and the sample rate in one more character.
//
//   01:02:03,04/0567
//     ^  ^  ^  ^ sample rate
//     |  |  drop frame
//     frame rate
//
// Hours, minutes, seconds and frames have two digits, the samples inside the frame
// four. The first separator tells the frame rate: "=" 24, "." 25, ":" 29.97, "|" 30,
// "-" index 6. "," or ";" in front of the frames make 29.97 the drop form.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

#include "host/text.h"

// Characters of a time text, and places of a field for one with its terminator.
inline constexpr std::size_t time_code_length = 16;
inline constexpr std::size_t time_code_places = time_code_length + 1;

// What an invalid text gives.
inline constexpr std::int64_t invalid_time_code = std::numeric_limits<std::int64_t>::max();

// Samples of a text, or invalid_time_code. `places` is the size of the field that
// `text` stands in, which must be time_code_places; nothing is read otherwise.
//
// `sample_rate` (hertz) and `frame_rate` (index) get what the text says. After a
// failure they hold what was found up to it: the frame rate from the first separator
// on, the sample rate once all digits are read.
//
// Products of fields and the sample rate are 32 bits wide and wrap: at 96000 Hz a
// time from 13 hours on reads as one that is 12 hours and 25 minutes earlier.
[[nodiscard]] std::int64_t parse_time_code(const wide_char* text, std::size_t places,
                                           std::uint32_t& sample_rate, std::uint8_t& frame_rate);
// The same of bytes, for a file that is read as such.
[[nodiscard]] std::int64_t parse_time_code(const char* text, std::size_t places,
                                           std::uint32_t& sample_rate, std::uint8_t& frame_rate);

// Fills `out` with 16 characters and a terminator, whatever the arguments are. A time
// of 24 hours or more gives "23:59:59.00/0000" ("23:59:59,00/0000" in drop frame),
// which is a time of its own and no mark. So does a sample rate of 0.
//
// With drop frame, the numbers that are left out are counted from a minute that was
// worked out without them, so three times in five read back two or four frames early.
// The correction adl_drop_frame counts them exactly.
//
// A sample rate that the text has no character for is written as "!", which
// parse_time_code refuses.
void format_time_code(std::int64_t samples, std::uint32_t sample_rate, std::uint8_t frame_rate,
                      wide_char (&out)[time_code_places]);

// Whether the text of a time names an earlier frame than that of the time, so that it
// reads back moved. Never with the correction adl_drop_frame, nor outside drop frame.
[[nodiscard]] bool time_code_moves(std::int64_t samples, std::uint32_t sample_rate,
                                   std::uint8_t frame_rate);
