#include "aafobj/model/index_stream.h"

#include <algorithm>
#include <cassert>

namespace aafobj {
namespace {

StoredKey take_key(ByteReader& reader, ByteOrder order, std::size_t key_bytes) {
  const StoredKey key(reader.take_bytes(key_bytes));
  return order == ByteOrder::big ? key.swapped() : key;
}

void put_key(ByteWriter& writer, ByteOrder order, const StoredKey& key) {
  writer.put_bytes(order == ByteOrder::big ? key.swapped().bytes() : key.bytes());
}

bool fits(const ByteReader& reader, std::uint64_t count, std::size_t each) {
  return !reader.failed() && count * each <= reader.left();
}

// Fields 4, 2 and 2 bytes wide of an identifier change places; its last 8 bytes stay.
void swap_auid(std::span<std::byte, 16> id) {
  std::reverse(id.begin(), id.begin() + 4);
  std::reverse(id.begin() + 4, id.begin() + 6);
  std::reverse(id.begin() + 6, id.begin() + 8);
}

}  // namespace

StoredKey::StoredKey(std::span<const std::byte> bytes)
    : m_size(static_cast<std::uint8_t>(bytes.size())) {
  assert(bytes.size() <= max_bytes);
  std::copy(bytes.begin(), bytes.end(), m_bytes.begin());
}

StoredKey::StoredKey(const aafUID_t& id) : StoredKey(std::as_bytes(std::span(&id, 1))) {}

StoredKey::StoredKey(const aafMobID_t& id) : StoredKey(std::as_bytes(std::span(&id, 1))) {}

aafUID_t StoredKey::auid() const {
  aafUID_t id{};
  if (m_size == sizeof(id)) std::memcpy(&id, m_bytes.data(), sizeof(id));
  return id;
}

aafMobID_t StoredKey::mob_id() const {
  aafMobID_t id{};
  if (m_size == sizeof(id)) std::memcpy(&id, m_bytes.data(), sizeof(id));
  return id;
}

StoredKey StoredKey::swapped() const {
  StoredKey key = *this;
  const std::span<std::byte, max_bytes> bytes(key.m_bytes);
  if (m_size == 16) {
    swap_auid(bytes.first<16>());
  } else if (m_size == 32) {
    swap_auid(bytes.last<16>());  // of a mob identifier only the material number has numbers
  } else {
    std::reverse(bytes.begin(), bytes.begin() + m_size);
  }
  return key;
}

AAFRESULT parse_index(std::span<const std::byte> bytes, ByteOrder order, VectorIndex& index) {
  ByteReader reader(bytes, order);
  const std::uint32_t count = reader.take<std::uint32_t>();
  index.first_free_key = reader.take<std::uint32_t>();
  index.last_free_key = reader.take<std::uint32_t>();
  index.local_keys.clear();
  if (!fits(reader, count, 4)) return AAFRESULT_BADCONTAINER;
  index.local_keys.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    index.local_keys.push_back(reader.take<std::uint32_t>());
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT parse_index(std::span<const std::byte> bytes, ByteOrder order, SetIndex& index) {
  ByteReader reader(bytes, order);
  const std::uint32_t count = reader.take<std::uint32_t>();
  index.first_free_key = reader.take<std::uint32_t>();
  index.last_free_key = reader.take<std::uint32_t>();
  index.key_pid = reader.take<std::uint16_t>();
  index.key_bytes = reader.take<std::uint8_t>();
  index.entries.clear();
  if (index.key_bytes > StoredKey::max_bytes) return AAFRESULT_BADCONTAINER;
  if (!fits(reader, count, std::size_t{8} + index.key_bytes)) return AAFRESULT_BADCONTAINER;
  index.entries.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    SetIndex::Entry entry;
    entry.local_key = reader.take<std::uint32_t>();
    entry.reference_count = reader.take<std::uint32_t>();
    entry.key = take_key(reader, order, index.key_bytes);
    index.entries.push_back(entry);
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT parse_index(std::span<const std::byte> bytes, ByteOrder order, WeakIndex& index) {
  ByteReader reader(bytes, order);
  const std::uint32_t count = reader.take<std::uint32_t>();
  index.tag = reader.take<std::uint16_t>();
  index.key_pid = reader.take<std::uint16_t>();
  index.key_bytes = reader.take<std::uint8_t>();
  index.keys.clear();
  if (index.key_bytes == 0 || index.key_bytes > StoredKey::max_bytes) {
    return AAFRESULT_BADCONTAINER;
  }
  if (!fits(reader, count, index.key_bytes)) return AAFRESULT_BADCONTAINER;
  index.keys.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    index.keys.push_back(take_key(reader, order, index.key_bytes));
  }
  return AAFRESULT_SUCCESS;
}

std::vector<std::byte> write_index(const VectorIndex& index, ByteOrder order) {
  ByteWriter writer(order);
  writer.put(static_cast<std::uint32_t>(index.local_keys.size()));
  writer.put(index.first_free_key);
  writer.put(index.last_free_key);
  for (const std::uint32_t key : index.local_keys)
    writer.put(key);
  return writer.release();
}

std::vector<std::byte> write_index(const SetIndex& index, ByteOrder order) {
  ByteWriter writer(order);
  writer.put(static_cast<std::uint32_t>(index.entries.size()));
  writer.put(index.first_free_key);
  writer.put(index.last_free_key);
  writer.put(index.key_pid);
  writer.put(index.key_bytes);
  for (const SetIndex::Entry& entry : index.entries) {
    writer.put(entry.local_key);
    writer.put(entry.reference_count);
    put_key(writer, order, entry.key);
  }
  return writer.release();
}

std::vector<std::byte> write_index(const WeakIndex& index, ByteOrder order) {
  ByteWriter writer(order);
  writer.put(static_cast<std::uint32_t>(index.keys.size()));
  writer.put(index.tag);
  writer.put(index.key_pid);
  writer.put(index.key_bytes);
  for (const StoredKey& key : index.keys)
    put_key(writer, order, key);
  return writer.release();
}

}  // namespace aafobj
