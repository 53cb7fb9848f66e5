#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "aafobj/container/compound_file.h"
#include "aafobj/container/result.h"
#include "aafobj/container/sector_layout.h"

namespace aafobj {

inline constexpr std::size_t k_header_size = 512;
inline constexpr std::size_t k_header_difat_count = 109;
inline constexpr std::size_t k_recognition_size = 24;  // magic and signature

/// The header as numbers. With 4096-byte sectors it fills the first 4096
/// bytes of the file, the rest of them zero.
struct CompoundHeader {
  FileKind kind = FileKind::aaf_512;
  bool has_signature = false;  ///< false while a new file is not closed
  std::uint32_t sector_shift = 9;
  std::uint32_t directory_sector_count = 0;  ///< 0 with 512-byte sectors
  std::uint32_t fat_sector_count = 0;
  std::uint32_t first_directory_sector = k_end_of_chain;
  std::uint32_t first_mini_fat_sector = k_end_of_chain;
  std::uint32_t mini_fat_sector_count = 0;
  std::uint32_t first_difat_sector = k_end_of_chain;
  std::uint32_t difat_sector_count = 0;
  std::array<std::uint32_t, k_header_difat_count> difat{};
};

/// Tells the kind by the first 24 bytes; not_aaf when they are fewer.
Result recognise_header(std::span<const std::byte> bytes, FileKind& kind);

/// Needs k_header_size bytes. Errors: not_aaf, unsupported.
Result decode_header(std::span<const std::byte> bytes, CompoundHeader& header);

void encode_header(const CompoundHeader& header, std::span<std::byte, k_header_size> bytes);

}  // namespace aafobj
