// What imports, exports and the hooks of the text formats return, by name.
#pragma once

// 16-bit, as the host sees them.
using result_code = unsigned short;

namespace result {

// To the host.
inline constexpr result_code not_done = 0;         // not opened, or nothing was done
inline constexpr result_code wrong_format = 4;     // opened, but the head is of another format
inline constexpr result_code refused = 9;          // EDL2 export: the list does not fit the format
inline constexpr result_code damaged = 10;         // a fault in the structure of the file
inline constexpr result_code not_opened = 11;      // binary formats and ADL: could not be opened
inline constexpr result_code source_refused = 27;  // ADL export: a source that it cannot name
inline constexpr result_code not_sd2 = 28;         // ADL export: a source of another type
inline constexpr result_code import_complete = 100;
inline constexpr result_code done = 101;  // export complete; also of export hooks and traceback

// Between the hooks of a text format and its driver.
inline constexpr result_code line_full = 9;             // a piece did not fit the line buffer
inline constexpr result_code line_good = 90;            // add the entry
inline constexpr result_code line_bad = 92;             // report it, drop the entry, go on
inline constexpr result_code field_is_transition = 93;  // the channel field is missing
inline constexpr result_code field_is_video = 94;       // the audio field may stand behind it
inline constexpr result_code negative_time = 95;        // report it, drop the entry, go on
inline constexpr result_code dropped = 102;             // EDL2: the record gives no entry
inline constexpr result_code nothing_to_dump = 200;

}  // namespace result
