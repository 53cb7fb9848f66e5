// Where an AAF export writes.
#pragma once

#include <string>
#include <string_view>

namespace aaf {

// The name under which export_edl writes a file: ".edl" at the end becomes ".aaf".
[[nodiscard]] std::u16string output_path(std::u16string_view path);

}  // namespace aaf
