#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "aafobj/model/auid.h"
#include "aafobj/model/index_stream.h"
#include "aafobj/model/model_result.h"

// Values as people read them, in UTF-8.
namespace aafobj {

// Longer runs of bytes are shown by this many and their length.
inline constexpr std::size_t most_shown_bytes = 64;

// Halves of surrogate pairs that stand alone become U+FFFD.
std::string utf8_text(std::u16string_view text);

// The same of a name, which a damaged file may give any length and use any number of times:
// one of more than most_name_units is cut and ends in "...".
inline constexpr std::size_t most_name_units = 128;
std::string shown_name(std::u16string_view name);

// Two digits a byte, of the first most_shown_bytes.
std::string shown_bytes(std::span<const std::byte> bytes);
// The same, and how many there are when some are left out.
std::string shown_bytes_and_count(std::span<const std::byte> bytes);

// "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}"
std::string shown(const aafUID_t& id);
// Label, length and instance bytes in hexadecimal, then the material number.
std::string shown(const aafMobID_t& id);
// An identifier, a mob identifier, or bytes of another length.
std::string shown(const StoredKey& key);

// Why something could not be read; never empty.
std::string shown(AAFRESULT result);

}  // namespace aafobj
