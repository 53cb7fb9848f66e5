#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "aafobj/model/byte_stream.h"
#include "aafobj/model/model_result.h"
#include "aafobj/model/stored_form.h"

// The "properties" stream of an object:
//
//   1  byte order letter       1  version, 32        2  count of entries
//   6 for each entry: number of the property, stored form, length of the value
//   the values, back to back, in the order of the entries
namespace aafobj {

// A value cannot be longer: its length has 16 bits.
inline constexpr std::size_t max_value_bytes = 65535;

struct PropertyEntry {
  std::uint16_t pid = 0;
  StoredForm form = StoredForm::data;  // any number, as it stands in the stream
  std::span<const std::byte> value;    // not owned
};

// Entries in stream order; their values are parts of `bytes`.
// Errors: BADCONTAINER when the stream is cut or of another version.
[[nodiscard]] AAFRESULT parse_property_stream(std::span<const std::byte> bytes, ByteOrder& order,
                                              std::vector<PropertyEntry>& entries);

// Errors: BAD_SIZE when there are more than 65535 entries or a value is too long.
[[nodiscard]] AAFRESULT write_property_stream(std::span<const PropertyEntry> entries,
                                              ByteOrder order, std::vector<std::byte>& bytes);

}  // namespace aafobj
