// Names and addresses of the audio files that an export writes beside an AAF file.
#pragma once

#include <string>
#include <string_view>

#include "aafobj/api/aaf_types.h"

namespace aaf {

// The folder of a path, with the "/" or "\" that closes it; empty without one.
[[nodiscard]] std::u16string_view folder_of(std::u16string_view path);

// ".wav" for the WAVE codec, ".aif" for AIFC, nothing for any other.
[[nodiscard]] std::u16string_view export_extension(const aafUID_t& codec);

// "file:///" and the path, with all escaped that has a meaning in addresses, the colon of
// a drive among it, and what is no printable ASCII by the number of its 16-bit unit. A "/"
// at the head of the folder is taken for the third one of "file:///".
[[nodiscard]] std::u16string essence_url(std::u16string_view folder, std::u16string_view file);

}  // namespace aaf
