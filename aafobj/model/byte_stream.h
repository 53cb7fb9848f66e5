#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "aafobj/api/aaf_types.h"

namespace aafobj {

// The letter that begins a "properties" stream.
enum class ByteOrder : std::uint8_t { little = 0x4c, big = 0x42 };

template <std::unsigned_integral T>
constexpr T swap_bytes(T value) {
  T swapped = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i) {
    swapped = static_cast<T>((swapped << (sizeof(T) > 1 ? 8 : 0)) | (value & 0xff));
    value = static_cast<T>(sizeof(T) > 1 ? value >> 8 : 0);
  }
  return swapped;
}

// Takes numbers from bytes in a given order. A read past the end gives zeros and sets failed().
class ByteReader {
 public:
  ByteReader(std::span<const std::byte> bytes, ByteOrder order) : m_bytes(bytes), m_order(order) {}

  template <std::unsigned_integral T>
  T take() {
    T value = 0;
    const std::span<const std::byte> bytes = take_bytes(sizeof(T));
    if (bytes.size() != sizeof(T)) return 0;
    std::memcpy(&value, bytes.data(), sizeof(T));
    return m_order == ByteOrder::big ? swap_bytes(value) : value;
  }

  aafUID_t take_auid() {
    aafUID_t id{};
    id.Data1 = take<std::uint32_t>();
    id.Data2 = take<std::uint16_t>();
    id.Data3 = take<std::uint16_t>();
    const std::span<const std::byte> tail = take_bytes(sizeof(id.Data4));
    if (!tail.empty()) std::memcpy(id.Data4, tail.data(), tail.size());
    return id;
  }

  // The next bytes; empty when fewer are left.
  std::span<const std::byte> take_bytes(std::size_t count) {
    if (count > left()) {
      m_failed = true;
      m_bytes = {};
      return {};
    }
    const std::span<const std::byte> taken = m_bytes.first(count);
    m_bytes = m_bytes.subspan(count);
    return taken;
  }

  std::size_t left() const { return m_bytes.size(); }
  bool failed() const { return m_failed; }

 private:
  std::span<const std::byte> m_bytes;
  ByteOrder m_order;
  bool m_failed = false;
};

// Appends numbers to bytes in a given order.
class ByteWriter {
 public:
  explicit ByteWriter(ByteOrder order = ByteOrder::little) : m_order(order) {}

  template <std::unsigned_integral T>
  void put(T value) {
    if (m_order == ByteOrder::big) value = swap_bytes(value);
    std::byte bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    m_bytes.insert(m_bytes.end(), bytes, bytes + sizeof(T));
  }

  void put_auid(const aafUID_t& id) {
    put(std::uint32_t{id.Data1});
    put(std::uint16_t{id.Data2});
    put(std::uint16_t{id.Data3});
    put_bytes(std::as_bytes(std::span(id.Data4)));
  }

  void put_bytes(std::span<const std::byte> bytes) {
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
  }

  // UTF-16 units and the NUL behind them.
  void put_text(std::u16string_view text) {
    for (const char16_t unit : text)
      put(static_cast<std::uint16_t>(unit));
    put(std::uint16_t{0});
  }

  const std::vector<std::byte>& bytes() const { return m_bytes; }
  std::vector<std::byte> release() { return std::move(m_bytes); }

 private:
  std::vector<std::byte> m_bytes;
  ByteOrder m_order;
};

}  // namespace aafobj
