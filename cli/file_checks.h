// What stands in the way of reading or writing a file, in words.
#pragma once

#include <string>

#include "formats/format_table.h"

namespace cli {

// Why the file of a list cannot be read; empty when nothing seems to be wrong.
std::string why_unreadable(const std::string& path);
// Why no file can be put at a path; empty when nothing seems to be wrong.
std::string why_unwritable(const std::string& path);

// What the system says when a file is made at a path, which leaves one there if it
// can; empty when it says nothing.
std::string why_not_made(const std::string& path);

// Where a path leads through links, also when nothing stands there yet.
std::string real_path(const std::string& path);
// The folder that a path lies in.
std::string folder_of(const std::string& path);
// The text of a system error.
std::string error_text(int error);

// A path as the format's library is handed it.
std::u16string path_for(const FormatRow& format, const std::string& path);

}  // namespace cli
