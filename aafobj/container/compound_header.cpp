#include "aafobj/container/compound_header.h"

#include <algorithm>
#include <cstring>

namespace aafobj {

namespace {

// Field positions.
constexpr std::size_t k_signature_at = 0x08;
constexpr std::size_t k_minor_version_at = 0x18;
constexpr std::size_t k_major_version_at = 0x1a;
constexpr std::size_t k_byte_order_at = 0x1c;
constexpr std::size_t k_sector_shift_at = 0x1e;
constexpr std::size_t k_mini_shift_at = 0x20;
constexpr std::size_t k_directory_count_at = 0x28;
constexpr std::size_t k_fat_count_at = 0x2c;
constexpr std::size_t k_first_directory_at = 0x30;
constexpr std::size_t k_mini_cutoff_at = 0x38;
constexpr std::size_t k_first_mini_fat_at = 0x3c;
constexpr std::size_t k_mini_fat_count_at = 0x40;
constexpr std::size_t k_first_difat_at = 0x44;
constexpr std::size_t k_difat_count_at = 0x48;
constexpr std::size_t k_difat_at = 0x4c;
static_assert(k_difat_at + k_header_difat_count * 4 == k_header_size);

constexpr std::uint16_t k_minor_version = 0x3e;
constexpr std::uint16_t k_byte_order = 0xfffe;
constexpr std::uint16_t k_mini_shift = 6;

constexpr std::array<std::uint8_t, 8> k_magic = {0xd0, 0xcf, 0x11, 0xe0, 0xa1, 0xb1, 0x1a, 0xe1};
// In the order of FileKind.
constexpr std::array<std::array<std::uint8_t, 16>, 2> k_signatures = {{
    {0x41, 0x41, 0x46, 0x42, 0x0d, 0x00, 0x4f, 0x4d, 0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01,
     0xff},
    {0x01, 0x02, 0x01, 0x0d, 0x00, 0x02, 0x00, 0x00, 0x06, 0x0e, 0x2b, 0x34, 0x03, 0x02, 0x01,
     0x01},
}};

}  // namespace

Result recognise_header(std::span<const std::byte> bytes, FileKind& kind) {
  if (bytes.size() < k_recognition_size) return Result::not_aaf;
  if (std::memcmp(bytes.data(), k_magic.data(), k_magic.size()) != 0) return Result::not_aaf;
  for (std::size_t i = 0; i < k_signatures.size(); ++i) {
    if (std::memcmp(bytes.data() + k_signature_at, k_signatures[i].data(), 16) != 0) continue;
    kind = static_cast<FileKind>(i);
    return Result::ok;
  }
  return Result::not_aaf;
}

Result decode_header(std::span<const std::byte> bytes, CompoundHeader& header) {
  if (const Result r = recognise_header(bytes, header.kind); r != Result::ok) return r;
  if (bytes.size() < k_header_size) return Result::truncated;
  const std::byte* at = bytes.data();
  header.has_signature = true;
  header.sector_shift = get_u16(at + k_sector_shift_at);
  if (header.sector_shift != 9 && header.sector_shift != 12) return Result::unsupported;
  if (get_u16(at + k_byte_order_at) != k_byte_order) return Result::unsupported;
  if (get_u16(at + k_mini_shift_at) != k_mini_shift) return Result::unsupported;
  if (get_u32(at + k_mini_cutoff_at) != k_mini_cutoff) return Result::unsupported;
  header.directory_sector_count = get_u32(at + k_directory_count_at);
  header.fat_sector_count = get_u32(at + k_fat_count_at);
  header.first_directory_sector = get_u32(at + k_first_directory_at);
  header.first_mini_fat_sector = get_u32(at + k_first_mini_fat_at);
  header.mini_fat_sector_count = get_u32(at + k_mini_fat_count_at);
  header.first_difat_sector = get_u32(at + k_first_difat_at);
  header.difat_sector_count = get_u32(at + k_difat_count_at);
  for (std::size_t i = 0; i < k_header_difat_count; ++i) {
    header.difat[i] = get_u32(at + k_difat_at + i * 4);
  }
  return Result::ok;
}

void encode_header(const CompoundHeader& header, std::span<std::byte, k_header_size> bytes) {
  std::fill(bytes.begin(), bytes.end(), std::byte{0});
  std::byte* at = bytes.data();
  std::memcpy(at, k_magic.data(), k_magic.size());
  if (header.has_signature) {
    const auto& signature = k_signatures[static_cast<std::size_t>(header.kind)];
    std::memcpy(at + k_signature_at, signature.data(), signature.size());
  }
  const bool large = header.sector_shift == 12;
  put_u16(at + k_minor_version_at, k_minor_version);
  put_u16(at + k_major_version_at, large ? 4 : 3);
  put_u16(at + k_byte_order_at, k_byte_order);
  put_u16(at + k_sector_shift_at, header.sector_shift);
  put_u16(at + k_mini_shift_at, k_mini_shift);
  put_u32(at + k_directory_count_at, large ? header.directory_sector_count : 0);
  put_u32(at + k_fat_count_at, header.fat_sector_count);
  put_u32(at + k_first_directory_at, header.first_directory_sector);
  put_u32(at + k_mini_cutoff_at, k_mini_cutoff);
  put_u32(at + k_first_mini_fat_at, header.first_mini_fat_sector);
  put_u32(at + k_mini_fat_count_at, header.mini_fat_sector_count);
  put_u32(at + k_first_difat_at, header.first_difat_sector);
  put_u32(at + k_difat_count_at, header.difat_sector_count);
  for (std::size_t i = 0; i < k_header_difat_count; ++i) {
    put_u32(at + k_difat_at + i * 4, header.difat[i]);
  }
}

}  // namespace aafobj
