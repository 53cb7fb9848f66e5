#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "aafobj/container/compound_file.h"
#include "aafobj/container/sector_layout.h"

namespace aafobj {

inline constexpr std::size_t k_entry_size = 128;
inline constexpr std::size_t k_longest_name = 31;  // UTF-16 units

enum class EntryType : std::uint8_t { unused = 0, storage = 1, stream = 2, root = 5 };

/// One entry of the directory as numbers.
struct DirectoryEntry {
  std::array<char16_t, k_longest_name> name_units{};
  std::uint8_t name_length = 0;  ///< in units; 0 when the stored length is impossible
  std::uint8_t type = 0;         ///< as stored, see EntryType
  bool black = true;
  std::uint32_t left = k_no_entry;
  std::uint32_t right = k_no_entry;
  std::uint32_t child = k_no_entry;
  ClassId class_id{};
  std::uint32_t user_flags = 0;
  std::uint64_t creation_time = 0;
  std::uint64_t modification_time = 0;
  std::uint32_t start = 0;
  std::uint64_t size = 0;

  std::u16string_view name() const { return {name_units.data(), name_length}; }
  void set_name(std::u16string_view name);

  bool is(EntryType wanted) const { return type == static_cast<std::uint8_t>(wanted); }
  bool is_folder() const { return is(EntryType::storage) || is(EntryType::root); }
};

/// With 512-byte sectors only the low half of a stored size counts.
DirectoryEntry decode_entry(std::span<const std::byte, k_entry_size> bytes, bool small_sizes);
void encode_entry(const DirectoryEntry& entry, std::span<std::byte, k_entry_size> bytes);

/// 1 to 31 units and no NUL.
bool is_valid_name(std::u16string_view name);

/// The format's order of names: the shorter is less; equal lengths compare by
/// upper-cased units.
bool name_less(std::u16string_view a, std::u16string_view b);

}  // namespace aafobj
