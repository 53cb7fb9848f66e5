#include "aafobj/model/referenced_properties.h"

#include <algorithm>

namespace aafobj {

AAFRESULT ReferencedProperties::parse(std::span<const std::byte> bytes) {
  m_paths.clear();
  if (bytes.empty()) return AAFRESULT_BADCONTAINER;
  const ByteOrder order = static_cast<ByteOrder>(bytes[0]);
  if (order != ByteOrder::little && order != ByteOrder::big) return AAFRESULT_BADCONTAINER;
  ByteReader reader(bytes.subspan(1), order);
  const std::size_t path_count = reader.take<std::uint16_t>();
  const std::uint64_t numbers = reader.take<std::uint32_t>();
  if (reader.failed() || numbers * 2 > reader.left()) return AAFRESULT_BADCONTAINER;
  Path path;
  for (std::uint64_t i = 0; i < numbers; ++i) {
    const std::uint16_t number = reader.take<std::uint16_t>();
    if (number != 0) {
      path.push_back(number);
      continue;
    }
    m_paths.push_back(std::move(path));
    path.clear();
  }
  if (!path.empty() || m_paths.size() != path_count) return AAFRESULT_BADCONTAINER;
  return AAFRESULT_SUCCESS;
}

std::vector<std::byte> ReferencedProperties::write(ByteOrder order) const {
  std::size_t numbers = 0;
  for (const Path& path : m_paths)
    numbers += path.size() + 1;
  ByteWriter writer(order);
  writer.put(static_cast<std::uint8_t>(order));
  writer.put(static_cast<std::uint16_t>(m_paths.size()));
  writer.put(static_cast<std::uint32_t>(numbers));
  for (const Path& path : m_paths) {
    for (const std::uint16_t number : path)
      writer.put(number);
    writer.put(std::uint16_t{0});
  }
  return writer.release();
}

const ReferencedProperties::Path* ReferencedProperties::path_of(std::uint16_t tag) const {
  return tag < m_paths.size() ? &m_paths[tag] : nullptr;
}

AAFRESULT ReferencedProperties::tag_of(std::span<const std::uint16_t> path, std::uint16_t& tag) {
  const auto at = std::find_if(m_paths.begin(), m_paths.end(), [&](const Path& p) {
    return std::equal(p.begin(), p.end(), path.begin(), path.end());
  });
  if (at == m_paths.end() && m_paths.size() >= 65535) return AAFRESULT_BAD_SIZE;
  tag = static_cast<std::uint16_t>(at - m_paths.begin());
  if (at == m_paths.end()) m_paths.emplace_back(path.begin(), path.end());
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
