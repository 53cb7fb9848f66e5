#include "aafobj/model/property_stream.h"

namespace aafobj {
namespace {

constexpr std::uint8_t stream_version = 32;
constexpr std::size_t head_bytes = 4;
constexpr std::size_t entry_bytes = 6;

}  // namespace

AAFRESULT parse_property_stream(std::span<const std::byte> bytes, ByteOrder& order,
                                std::vector<PropertyEntry>& entries) {
  entries.clear();
  if (bytes.size() < head_bytes) return AAFRESULT_BADCONTAINER;
  order = static_cast<ByteOrder>(bytes[0]);
  if (order != ByteOrder::little && order != ByteOrder::big) return AAFRESULT_BADCONTAINER;
  if (bytes[1] != std::byte{stream_version}) return AAFRESULT_BADCONTAINER;

  ByteReader reader(bytes.subspan(2), order);
  const std::size_t count = reader.take<std::uint16_t>();
  if (count * entry_bytes > reader.left()) return AAFRESULT_BADCONTAINER;
  ByteReader values(bytes.subspan(head_bytes + count * entry_bytes), order);
  entries.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    PropertyEntry entry;
    entry.pid = reader.take<std::uint16_t>();
    entry.form = static_cast<StoredForm>(reader.take<std::uint16_t>());
    entry.value = values.take_bytes(reader.take<std::uint16_t>());
    if (values.failed()) return AAFRESULT_BADCONTAINER;
    entries.push_back(entry);
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT write_property_stream(std::span<const PropertyEntry> entries, ByteOrder order,
                                std::vector<std::byte>& bytes) {
  if (entries.size() > 65535) return AAFRESULT_BAD_SIZE;
  ByteWriter writer(order);
  writer.put(static_cast<std::uint8_t>(order));
  writer.put(stream_version);
  writer.put(static_cast<std::uint16_t>(entries.size()));
  for (const PropertyEntry& entry : entries) {
    if (entry.value.size() > max_value_bytes) return AAFRESULT_BAD_SIZE;
    writer.put(entry.pid);
    writer.put(static_cast<std::uint16_t>(entry.form));
    writer.put(static_cast<std::uint16_t>(entry.value.size()));
  }
  for (const PropertyEntry& entry : entries)
    writer.put_bytes(entry.value);
  bytes = writer.release();
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
