#include "tests/aafobj/container/raw_view.h"

namespace aafobj::test {

std::uint32_t RawView::u16(std::size_t at) const {
  return std::to_integer<std::uint32_t>(m_bytes.at(at)) |
         std::to_integer<std::uint32_t>(m_bytes.at(at + 1)) << 8;
}

std::uint32_t RawView::u32(std::size_t at) const {
  return u16(at) | u16(at + 2) << 16;
}

void RawView::put_u32(std::size_t at, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i)
    m_bytes.at(at + i) = static_cast<std::byte>(value >> (8 * i));
}

std::uint32_t RawView::fat_sector(std::size_t page) const {
  if (page < 109) return u32(0x4c + page * 4);
  page -= 109;
  const std::size_t per_sector = sector_size() / 4 - 1;
  std::uint32_t sector = u32(0x44);
  for (; page >= per_sector; page -= per_sector)
    sector = u32(sector_at(sector) + per_sector * 4);
  return u32(sector_at(sector) + page * 4);
}

std::size_t RawView::fat_at(std::uint32_t sector) const {
  const std::size_t per_page = sector_size() / 4;
  return sector_at(fat_sector(sector / per_page)) + sector % per_page * 4;
}

std::vector<std::uint32_t> RawView::chain(std::uint32_t first) const {
  std::vector<std::uint32_t> sectors;
  for (std::uint32_t at = first; at != k_end && sectors.size() < 1000000; at = fat(at)) {
    sectors.push_back(at);
  }
  return sectors;
}

std::size_t RawView::mini_fat_at(std::uint32_t mini) const {
  const std::size_t per_page = sector_size() / 4;
  return sector_at(chain(u32(0x3c)).at(mini / per_page)) + mini % per_page * 4;
}

std::uint32_t RawView::entry_count() const {
  return static_cast<std::uint32_t>(chain(u32(0x30)).size() * sector_size() / 128);
}

std::size_t RawView::entry_at(std::uint32_t id) const {
  const std::size_t per_sector = sector_size() / 128;
  return sector_at(chain(u32(0x30)).at(id / per_sector)) + id % per_sector * 128;
}

std::u16string RawView::name_of(std::uint32_t id) const {
  const std::size_t at = entry_at(id);
  std::u16string name;
  for (std::size_t i = 0; i + 2 < u16(at + 0x40); i += 2) {
    name += static_cast<char16_t>(u16(at + i));
  }
  return name;
}

std::uint32_t RawView::id_of(const std::u16string& name) const {
  for (std::uint32_t id = 0; id < entry_count(); ++id) {
    if (name_of(id) == name) return id;
  }
  return 0;
}

std::size_t RawView::entry_at(const std::u16string& name) const {
  return entry_at(id_of(name));
}

}  // namespace aafobj::test
