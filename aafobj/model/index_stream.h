#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "aafobj/model/auid.h"
#include "aafobj/model/byte_stream.h"
#include "aafobj/model/model_result.h"

// The index streams of collections. A strong collection gives each element a local key, which
// is part of its storage's name; keys are not given out twice.
//
//   vector      count 4, first free key 4, last free key 4, local keys 4 each
//   set         count 4, first free key 4, last free key 4, number of the key property 2,
//               key size 1; each element: local key 4, reference count 4, key
//   weak ones   count 4, tag 2, number of the key property 2, key size 1; keys
namespace aafobj {

inline constexpr std::uint32_t no_last_free_key = 0xffffffff;

// The key of a set's element: the bytes of an identifier (16), a mob identifier (32) or a
// number, as a little-endian file stores them. Sets are in the order of these bytes.
class StoredKey {
 public:
  static constexpr std::size_t max_bytes = 32;

  StoredKey() = default;
  explicit StoredKey(std::span<const std::byte> bytes);  // at most max_bytes
  explicit StoredKey(const aafUID_t& id);
  explicit StoredKey(const aafMobID_t& id);

  std::span<const std::byte> bytes() const { return {m_bytes.data(), m_size}; }
  std::size_t size() const { return m_size; }

  // The key as an identifier; null unless it has 16 bytes.
  aafUID_t auid() const;
  aafMobID_t mob_id() const;  // null unless it has 32 bytes

  // From the order of a big-endian file, or to it.
  StoredKey swapped() const;

  friend bool operator==(const StoredKey&, const StoredKey&) = default;
  friend std::strong_ordering operator<=>(const StoredKey& a, const StoredKey& b) {
    const int order = std::memcmp(a.m_bytes.data(), b.m_bytes.data(), max_bytes);
    return order != 0 ? order <=> 0 : a.m_size <=> b.m_size;
  }

 private:
  std::array<std::byte, max_bytes> m_bytes{};
  std::uint8_t m_size = 0;
};

struct VectorIndex {
  std::uint32_t first_free_key = 0;
  std::uint32_t last_free_key = no_last_free_key;
  std::vector<std::uint32_t> local_keys;
};

struct SetIndex {
  struct Entry {
    std::uint32_t local_key = 0;
    std::uint32_t reference_count = 1;
    StoredKey key;
  };
  std::uint32_t first_free_key = 0;
  std::uint32_t last_free_key = no_last_free_key;
  std::uint16_t key_pid = 0;
  std::uint8_t key_bytes = 0;
  std::vector<Entry> entries;
};

struct WeakIndex {
  std::uint16_t tag = 0;
  std::uint16_t key_pid = 0;
  std::uint8_t key_bytes = 0;
  std::vector<StoredKey> keys;
};

// Errors: BADCONTAINER when the stream is shorter than its count says, or its keys are longer
// than 32 bytes.
[[nodiscard]] AAFRESULT parse_index(std::span<const std::byte> bytes, ByteOrder order,
                                    VectorIndex& index);
[[nodiscard]] AAFRESULT parse_index(std::span<const std::byte> bytes, ByteOrder order,
                                    SetIndex& index);
[[nodiscard]] AAFRESULT parse_index(std::span<const std::byte> bytes, ByteOrder order,
                                    WeakIndex& index);

std::vector<std::byte> write_index(const VectorIndex& index, ByteOrder order);
std::vector<std::byte> write_index(const SetIndex& index, ByteOrder order);
std::vector<std::byte> write_index(const WeakIndex& index, ByteOrder order);

}  // namespace aafobj
