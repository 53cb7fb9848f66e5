// Where an AAF export writes.
#pragma once

#include <string>
#include <string_view>

#include "host/api.h"

namespace aaf {

// The name under which export_edl writes a file: ".edl" at the end becomes ".aaf".
EDL_API std::u16string output_path(std::u16string_view path);

}  // namespace aaf
