#pragma once

#include "aafobj/api/aaf_types.h"

namespace aafobj {

// What identifications tell of the library that wrote a file: the level of the published one
// whose forms and names we follow, since readers take some of their choices by it.
inline constexpr aafProductVersion_t library_version = {1, 1, 6, 0, kAAFVersionReleased};

}  // namespace aafobj
