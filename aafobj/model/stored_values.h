#pragma once

#include <concepts>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "aafobj/model/auid.h"
#include "aafobj/model/stored_object.h"

// Data values of the common types. Reading one of another length than its type's gives
// BAD_SIZE, an absent one PROP_NOT_PRESENT.
namespace aafobj {

// Numbers, enumerations, and records without gaps: identifiers, rationals, time stamps.
template <typename T>
concept StoredAsBytes = std::is_trivially_copyable_v<T> && !std::is_pointer_v<T>;

template <StoredAsBytes T>
[[nodiscard]] AAFRESULT get_value(StoredObject& object, std::uint16_t pid, T& value) {
  std::span<const std::byte> bytes;
  if (const AAFRESULT r = object.get_data(pid, bytes); r < 0) return r;
  if (bytes.size() != sizeof(T)) return AAFRESULT_BAD_SIZE;
  std::memcpy(&value, bytes.data(), sizeof(T));
  return AAFRESULT_SUCCESS;
}

template <StoredAsBytes T>
[[nodiscard]] AAFRESULT set_value(StoredObject& object, std::uint16_t pid, const T& value) {
  static_assert(std::has_unique_object_representations_v<T>, "a gap would be stored");
  return object.set_data(pid, std::as_bytes(std::span(&value, 1)));
}

// Text without its NUL. A missing NUL is forgiven, what stands behind one is not read.
[[nodiscard]] AAFRESULT get_text(StoredObject& object, std::uint16_t pid, std::u16string& text);
// Errors: BAD_SIZE above 32766 units.
[[nodiscard]] AAFRESULT set_text(StoredObject& object, std::uint16_t pid, std::u16string_view text);

// Texts one after the other, each with its NUL.
[[nodiscard]] AAFRESULT get_text_list(StoredObject& object, std::uint16_t pid,
                                      std::vector<std::u16string>& texts);
[[nodiscard]] AAFRESULT get_auid_list(StoredObject& object, std::uint16_t pid,
                                      std::vector<aafUID_t>& ids);

// An Indirect or Opaque value: the identifier of its type, and the value's bytes behind it.
// Errors: BAD_SIZE below 17 bytes; BAD_TYPE when it stands in big-endian order.
struct IndirectValue {
  aafUID_t type{};
  std::span<const std::byte> bytes;  // valid until the object changes
};
[[nodiscard]] AAFRESULT get_indirect(StoredObject& object, std::uint16_t pid, IndirectValue& value);
[[nodiscard]] AAFRESULT set_indirect(StoredObject& object, std::uint16_t pid,
                                     const IndirectValue& value);

// Units in little-endian order with a NUL at the end.
std::vector<std::byte> stored_text(std::u16string_view text);

// ASCII as UTF-16.
std::u16string widen(std::string_view text);

}  // namespace aafobj
