// Little-endian words and fixed text fields, one behind the other, as the binary
// files of this folder hold them.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/text.h"

namespace native {

// The bytes up to the first NUL, or all of them.
inline std::string_view until_nul(std::string_view bytes) {
  return bytes.substr(0, bytes.find('\0'));
}

// Writes `text` in the host's code page into `width` bytes: cut when too long,
// filled with NULs when short, so a full field has no terminator.
void encode_text(std::u16string_view text, char* out, std::size_t width);

// Stores the characters of `bytes` up to the first NUL, at most `limit` of them,
// and clears the rest of the `places` of `out`.
void decode_text(std::string_view bytes, wide_char* out, std::size_t places, std::size_t limit);

// Walks over a record that is being written. The room must be there.
class WireOut {
 public:
  explicit WireOut(char* at) : m_at(at) {}

  void u8(unsigned value) { *m_at++ = static_cast<char>(static_cast<unsigned char>(value)); }
  void u16(unsigned value) {
    u8(value & 0xFF);
    u8((value >> 8) & 0xFF);
  }
  void u32(std::uint32_t value) {
    u16(value & 0xFFFF);
    u16(value >> 16);
  }
  // The low 32 bits of a sample count.
  void low32(std::int64_t value) { u32(static_cast<std::uint32_t>(value)); }
  void f32(float value) { u32(std::bit_cast<std::uint32_t>(value)); }
  void text(std::u16string_view value, std::size_t width) {
    encode_text(value, m_at, width);
    m_at += width;
  }
  void fill(std::size_t count, unsigned char byte = 0) {
    m_at = std::fill_n(m_at, count, static_cast<char>(byte));
  }
  void bytes(std::string_view value) { m_at = std::copy(value.begin(), value.end(), m_at); }
  [[nodiscard]] char* at() const { return m_at; }

 private:
  char* m_at;
};

// Walks over a record that was read. The bytes must be there.
class WireIn {
 public:
  explicit WireIn(const char* at) : m_at(at) {}

  std::uint8_t u8() { return static_cast<std::uint8_t>(*m_at++); }
  std::uint16_t u16() {
    const unsigned low = u8();
    return static_cast<std::uint16_t>(low | (unsigned{u8()} << 8));
  }
  std::uint32_t u32() {
    const std::uint32_t low = u16();
    return low | (std::uint32_t{u16()} << 16);
  }
  float f32() { return std::bit_cast<float>(u32()); }
  std::string_view bytes(std::size_t count) {
    const std::string_view taken(m_at, count);
    m_at += count;
    return taken;
  }
  // A text field whose last place in memory is a terminator.
  template <std::size_t places>
  void text(wide_char (&field)[places], std::size_t width) {
    decode_text(bytes(width), field, places, places - 1);
  }
  // A text field of which every place in memory may be text.
  template <std::size_t places>
  void full_text(wide_char (&field)[places], std::size_t width) {
    decode_text(bytes(width), field, places, places);
  }
  void skip(std::size_t count) { m_at += count; }
  [[nodiscard]] const char* at() const { return m_at; }

 private:
  const char* m_at;
};

}  // namespace native
