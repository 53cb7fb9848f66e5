// The rows of the one error report. Callers name the row; its text is the host's.
#pragma once

#include <cstdint>

#include "host/api.h"

namespace error_index {

inline constexpr unsigned short bad_line = 1;
inline constexpr unsigned short too_many_streams = 13;
inline constexpr unsigned short bad_stream_count = 14;
inline constexpr unsigned short odd_stereo_start = 15;
inline constexpr unsigned short overlapping_edits = 16;
inline constexpr unsigned short source_length_zero = 17;
inline constexpr unsigned short lengths_differ = 18;
inline constexpr unsigned short negative_source_in = 20;
inline constexpr unsigned short video_level = 21;
inline constexpr unsigned short dump_file_missing = 22;
inline constexpr unsigned short no_edit_before = 23;
inline constexpr unsigned short negative_time = 24;

}  // namespace error_index

inline constexpr int error_row_count = 29;
// The string id of a row, 0 for an index outside the table.
EDL_API unsigned error_text_id(unsigned short error_index);

// No event number stands in a report with this one.
inline constexpr int no_event_number = -1;
