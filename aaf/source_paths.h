// Paths of an AAF file's sources: from the locators in the file to the form in which this
// library keeps paths, "//" in front, "/" between, and no extension of three letters.
//
// Everything works on the text. No file is looked for.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace aaf {

// What a source's descriptor says that its essence is.
inline constexpr std::uint8_t media_wave = 0;
inline constexpr std::uint8_t media_aifc = 1;
inline constexpr std::uint8_t media_unknown = 0xFF;

// Reads a "file:///" address, a path from the root, a path with a drive, or a path
// relative to the folder of `aaf_path`. Three letters behind a point at the end go.
//
// With the correction aaf_host_locators an address "file://host/…" is read as well; the
// host becomes the first folder, and "localhost" goes. Without it such an address counts
// as a relative path.
[[nodiscard]] std::u16string resolve_local_path(std::u16string_view text,
                                                std::u16string_view aaf_path);

// What stands behind the last "/", or if there is none the last "\", with its escapes
// decoded when `decode` says so. A text with neither comes back as it is.
[[nodiscard]] std::u16string file_name_of(std::u16string_view path, bool decode);

// Each "%" with two hexadecimal digits becomes the character of that number. Addresses
// with UTF-8 in escapes so give one character for each byte.
[[nodiscard]] std::u16string decode_percent_escapes(std::u16string_view text);

// The host's number for a kind of file: 2 WAVE, 3 AIFF, 11 BWF, 14 AIFC, 65535 unknown.
// What the descriptor says goes before the extension of three letters.
[[nodiscard]] std::uint16_t file_type_code(std::u16string_view extension, std::uint8_t media_type);

}  // namespace aaf
