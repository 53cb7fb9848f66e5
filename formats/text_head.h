// What the heads of line lists tell without being read as a format: the format that
// a title names, lines that look like events, and frame rates. Bytes are taken as
// they stand; all that is looked for is ASCII.
#pragma once

#include <string_view>
#include <vector>

namespace formats {

// The next line of a text, without its end; what was handed out is taken off `text`.
std::string_view take_line(std::string_view& text);
// The words of a line, parted by blanks and TABs.
std::vector<std::string_view> words_of(std::string_view line);

// What stands behind the last "FORMAT:" of the first line that begins with "TITLE:",
// without blanks at its ends. Empty when no title names a format.
std::string_view format_in_title(std::string_view head);

// "HH:MM:SS:FF", with any of the usual separators.
bool is_time_code(std::string_view word);
// Whether some line is a number, a reel, channels and a transition, perhaps with its
// length and the number of a wipe, and four time codes.
bool has_event_line(std::string_view head);
// Whether an "FCM:" line names a frame rate in front of the first numbered line.
bool states_fcm(std::string_view head);

}  // namespace formats
