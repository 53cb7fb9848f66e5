#include "aafobj/container/directory_entry.h"

#include <algorithm>

namespace aafobj {

namespace {

// Field positions.
constexpr std::size_t k_name_length_at = 0x40;
constexpr std::size_t k_type_at = 0x42;
constexpr std::size_t k_colour_at = 0x43;
constexpr std::size_t k_left_at = 0x44;
constexpr std::size_t k_right_at = 0x48;
constexpr std::size_t k_child_at = 0x4c;
constexpr std::size_t k_class_at = 0x50;
constexpr std::size_t k_flags_at = 0x60;
constexpr std::size_t k_creation_at = 0x64;
constexpr std::size_t k_modification_at = 0x6c;
constexpr std::size_t k_start_at = 0x74;
constexpr std::size_t k_size_at = 0x78;

// Upper case of the letters whose small form lies at a fixed distance: ASCII,
// Latin-1, Greek and Cyrillic. AAF names are ASCII; the others occur in names
// of extensions only.
char16_t upper(char16_t unit) {
  const auto within = [unit](char16_t first, char16_t last) {
    return unit >= first && unit <= last;
  };
  const auto minus = [unit](unsigned n) { return static_cast<char16_t>(unit - n); };
  if (within(u'a', u'z')) return minus(0x20);
  if (unit < 0xe0) return unit;
  if (within(0xe0, 0xfe) && unit != 0xf7) return minus(0x20);
  if (within(0x3b1, 0x3c9) && unit != 0x3c2) return minus(0x20);
  if (within(0x430, 0x44f)) return minus(0x20);
  if (within(0x450, 0x45f)) return minus(0x50);
  return unit;
}

}  // namespace

void DirectoryEntry::set_name(std::u16string_view name) {
  name_units.fill(0);
  name_length = static_cast<std::uint8_t>(std::min(name.size(), k_longest_name));
  std::copy_n(name.begin(), name_length, name_units.begin());
}

DirectoryEntry decode_entry(std::span<const std::byte, k_entry_size> bytes, bool small_sizes) {
  DirectoryEntry entry;
  const std::byte* at = bytes.data();
  const unsigned length = get_u16(at + k_name_length_at);
  if (length >= 4 && length <= (k_longest_name + 1) * 2 && length % 2 == 0) {
    entry.name_length = static_cast<std::uint8_t>(length / 2 - 1);
  }
  for (std::size_t i = 0; i < entry.name_length; ++i) {
    entry.name_units[i] = static_cast<char16_t>(get_u16(at + i * 2));
  }
  entry.type = std::to_integer<std::uint8_t>(at[k_type_at]);
  entry.black = at[k_colour_at] != std::byte{0};
  entry.left = get_u32(at + k_left_at);
  entry.right = get_u32(at + k_right_at);
  entry.child = get_u32(at + k_child_at);
  for (std::size_t i = 0; i < entry.class_id.size(); ++i) {
    entry.class_id[i] = std::to_integer<std::uint8_t>(at[k_class_at + i]);
  }
  entry.user_flags = get_u32(at + k_flags_at);
  entry.creation_time = get_u64(at + k_creation_at);
  entry.modification_time = get_u64(at + k_modification_at);
  entry.start = get_u32(at + k_start_at);
  entry.size = small_sizes ? get_u32(at + k_size_at) : get_u64(at + k_size_at);
  return entry;
}

void encode_entry(const DirectoryEntry& entry, std::span<std::byte, k_entry_size> bytes) {
  std::ranges::fill(bytes, std::byte{0});
  std::byte* at = bytes.data();
  for (std::size_t i = 0; i < entry.name_length; ++i)
    put_u16(at + i * 2, entry.name_units[i]);
  if (entry.name_length != 0) put_u16(at + k_name_length_at, (entry.name_length + 1U) * 2);
  at[k_type_at] = std::byte{entry.type};
  at[k_colour_at] = static_cast<std::byte>(entry.black && !entry.is(EntryType::unused));
  put_u32(at + k_left_at, entry.left);
  put_u32(at + k_right_at, entry.right);
  put_u32(at + k_child_at, entry.child);
  for (std::size_t i = 0; i < entry.class_id.size(); ++i) {
    at[k_class_at + i] = std::byte{entry.class_id[i]};
  }
  put_u32(at + k_flags_at, entry.user_flags);
  put_u64(at + k_creation_at, entry.creation_time);
  put_u64(at + k_modification_at, entry.modification_time);
  put_u32(at + k_start_at, entry.start);
  put_u64(at + k_size_at, entry.size);
}

bool is_valid_name(std::u16string_view name) {
  return !name.empty() && name.size() <= k_longest_name &&
         name.find(u'\0') == std::u16string_view::npos;
}

bool name_less(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return a.size() < b.size();
  return std::ranges::lexicographical_compare(a, b, {}, upper, upper);
}

}  // namespace aafobj
