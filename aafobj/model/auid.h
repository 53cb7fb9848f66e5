#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

#include "aafobj/api/aaf_types.h"

// Comparison of the published identifier structures, all of their bytes. The order of
// identifiers is that of their fields as numbers; sets in a file are in the order of
// stored bytes instead, see StoredKey.
constexpr std::strong_ordering operator<=>(const aafUID_t& a, const aafUID_t& b) {
  if (const auto order = a.Data1 <=> b.Data1; std::is_neq(order)) return order;
  if (const auto order = a.Data2 <=> b.Data2; std::is_neq(order)) return order;
  if (const auto order = a.Data3 <=> b.Data3; std::is_neq(order)) return order;
  for (std::size_t i = 0; i < 8; ++i) {
    if (const auto order = a.Data4[i] <=> b.Data4[i]; std::is_neq(order)) return order;
  }
  return std::strong_ordering::equal;
}

constexpr bool operator==(const aafUID_t& a, const aafUID_t& b) {
  return std::is_eq(a <=> b);
}

inline bool operator==(const aafMobID_t& a, const aafMobID_t& b) {
  return std::memcmp(&a, &b, sizeof(aafMobID_t)) == 0;
}

namespace aafobj {

inline constexpr aafUID_t null_auid = {};

// Class of the root storage of every file.
inline constexpr aafUID_t root_class_id = {
    0xb3b398a5, 0x1c90, 0x11d4, {0x80, 0x53, 0x08, 0x00, 0x36, 0x21, 0x08, 0x04}};

struct AuidHash {
  std::size_t operator()(const aafUID_t& id) const noexcept {
    std::array<std::uint64_t, 2> words{};
    std::memcpy(words.data(), &id, sizeof(id));
    return (words[0] ^ (words[1] * 0x9e3779b97f4a7c15u)) * 0xff51afd7ed558ccdu;
  }
};

// "aaaaaaaa-bbbb-cccc-dddd-eeeeeeeeeeee", lower case.
std::string to_text(const aafUID_t& id);

}  // namespace aafobj
