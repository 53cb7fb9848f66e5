#pragma once

#include "aafobj/api/aaf_types.h"

namespace aafobj {

// What identifications tell of the library that wrote a file.
inline constexpr aafProductVersion_t library_version = {1, 1, 6, 0, kAAFVersionReleased};

}  // namespace aafobj
