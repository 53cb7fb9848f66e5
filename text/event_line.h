// Columns of an event line that several formats share:
//
//   number  reel  channels  transition  source in, out  destination in, out
#pragma once

#include <string>
#include <string_view>

#include "core/clock_time.h"
#include "text/text_edl.h"

namespace text {

// Digits, or a word of three characters, may number an event.
[[nodiscard]] bool numbers_an_event(std::u16string_view word);

// 101, or 9 when the line buffer refuses the column.
[[nodiscard]] result_code add_column(CTextFile& file, std::u16string_view column);

// "001  " and the reel, "TAPE01 \t", of which reel_size - 1 characters are written;
// "N/A\t" for one that is empty or begins with white space.
[[nodiscard]] bool add_number_and_reel(CTextFile& file, const CGenericEdlEntry& entry,
                                       int reel_size);
// A time code at the rates of the entry's owner, a negative one with its sign.
class TimeText {
 public:
  TimeText(const CGenericEdlEntry& entry, std::int64_t samples);
  [[nodiscard]] std::u16string_view view() const { return field_text(text_); }

 private:
  wide_char text_[time_code_size] = {};
};
// Source in and out, destination in and out, each with a blank behind it.
[[nodiscard]] bool add_times(CTextFile& file, const CGenericEdlEntry& entry);

// "C         " for a cut, "D   025   " for a dissolve of 25 frames: those of the
// fade-in, or of the fade-out where the former has none. Without either it is a cut.
[[nodiscard]] std::u16string frames_transition(const CTextEdl& edl, const CGenericEdlEntry& entry);

}  // namespace text
