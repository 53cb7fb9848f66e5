#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/aafobj/container/container_test_support.h"

namespace aafobj::test {

/// Finds the places of structures in the bytes of a sound compound file,
/// without the library, so that tests can look at them and damage them.
class RawView {
 public:
  explicit RawView(Bytes& bytes) : m_bytes(bytes) {}

  std::uint32_t u16(std::size_t at) const;
  std::uint32_t u32(std::size_t at) const;
  void put_u32(std::size_t at, std::uint32_t value);

  std::size_t sector_size() const { return std::size_t{1} << u16(0x1e); }
  std::size_t sector_at(std::uint32_t sector) const {
    return (sector + std::size_t{1}) * sector_size();
  }

  /// Place of the table entry of a sector.
  std::size_t fat_at(std::uint32_t sector) const;
  std::uint32_t fat(std::uint32_t sector) const { return u32(fat_at(sector)); }
  std::vector<std::uint32_t> chain(std::uint32_t first) const;

  std::size_t mini_fat_at(std::uint32_t mini) const;

  /// Place of a directory entry by number, and by name (0 when there is none).
  std::size_t entry_at(std::uint32_t id) const;
  std::size_t entry_at(const std::u16string& name) const;
  std::uint32_t entry_count() const;
  std::uint32_t id_of(const std::u16string& name) const;
  std::u16string name_of(std::uint32_t id) const;

  // Fields of a directory entry.
  static constexpr std::size_t k_type = 0x42;
  static constexpr std::size_t k_colour = 0x43;
  static constexpr std::size_t k_left = 0x44;
  static constexpr std::size_t k_right = 0x48;
  static constexpr std::size_t k_child = 0x4c;
  static constexpr std::size_t k_start = 0x74;
  static constexpr std::size_t k_size = 0x78;
  static constexpr std::uint32_t k_none = 0xffffffff;
  static constexpr std::uint32_t k_end = 0xfffffffe;

 private:
  std::uint32_t fat_sector(std::size_t page) const;

  Bytes& m_bytes;
};

}  // namespace aafobj::test
