// What the lines of Sony 9000 and Grass Valley lists share beside the CMX line:
// lengths as "ss:ff" and the channel note on a line of its own.
#pragma once

#include <string>
#include <string_view>

#include "text/line_cursor.h"
#include "text/text_edl.h"

namespace text {

// "." or "END", which close a list.
[[nodiscard]] bool closes_list(LineCursor&& line);

// Third and fourth word of a line whose first is a number; empty for other lines.
struct EventFields {
  std::u16string_view third;
  std::u16string_view fourth;
};
[[nodiscard]] EventFields fields_of_numbered_event(LineCursor&& line);

// "02:12", two seconds and twelve frames, becomes the fade-in, and the fade-out takes
// the settings' default. Any other form changes nothing.
void take_seconds_and_frames(const CTextEdl& edl, std::u16string_view word,
                             CGenericEdlEntry& entry);

// "C         ", or "D   02:12   ". The length is found as in frames_transition.
[[nodiscard]] std::u16string seconds_transition(const CTextEdl& edl, const CGenericEdlEntry& entry);

// A line of its own: "  A4" for one channel of even number, "A3", or "A3A4" for more
// than one.
[[nodiscard]] std::u16string channel_note(const CGenericEdlEntry& entry);

}  // namespace text
