#pragma once

#include <cstddef>
#include <cstdint>

/// Numbers and byte order of the compound file format, shared by its parts.
/// All integers in the file are little-endian.
namespace aafobj {

inline constexpr std::uint32_t k_last_sector = 0xfffffffa;  // the largest normal number
inline constexpr std::uint32_t k_difat_sector = 0xfffffffc;
inline constexpr std::uint32_t k_fat_sector = 0xfffffffd;
inline constexpr std::uint32_t k_end_of_chain = 0xfffffffe;
inline constexpr std::uint32_t k_free_sector = 0xffffffff;

inline constexpr std::uint32_t k_no_entry = 0xffffffff;  // no sibling, no child

inline constexpr std::uint32_t k_mini_sector_size = 64;
inline constexpr std::uint32_t k_mini_cutoff = 4096;  // smaller streams are in the mini stream

// These bytes of a file are reserved for locks of other implementations. No
// stream may use the sector that covers them.
inline constexpr std::uint64_t k_range_lock_position = 0x7fffff00;

/// Sectors that follow one another in the file.
struct SectorRun {
  std::uint32_t first = 0;
  std::uint32_t count = 0;
};

constexpr std::uint32_t divide_up(std::uint64_t bytes, std::uint32_t unit) {
  return static_cast<std::uint32_t>((bytes + unit - 1) / unit);
}

inline std::uint16_t get_u16(const std::byte* at) {
  return static_cast<std::uint16_t>(std::to_integer<unsigned>(at[0]) |
                                    std::to_integer<unsigned>(at[1]) << 8);
}

inline std::uint32_t get_u32(const std::byte* at) {
  return std::to_integer<std::uint32_t>(at[0]) | std::to_integer<std::uint32_t>(at[1]) << 8 |
         std::to_integer<std::uint32_t>(at[2]) << 16 | std::to_integer<std::uint32_t>(at[3]) << 24;
}

inline std::uint64_t get_u64(const std::byte* at) {
  return get_u32(at) | std::uint64_t{get_u32(at + 4)} << 32;
}

inline void put_u16(std::byte* at, std::uint32_t value) {
  at[0] = static_cast<std::byte>(value);
  at[1] = static_cast<std::byte>(value >> 8);
}

inline void put_u32(std::byte* at, std::uint32_t value) {
  put_u16(at, value);
  put_u16(at + 2, value >> 16);
}

inline void put_u64(std::byte* at, std::uint64_t value) {
  put_u32(at, static_cast<std::uint32_t>(value));
  put_u32(at + 4, static_cast<std::uint32_t>(value >> 32));
}

}  // namespace aafobj
