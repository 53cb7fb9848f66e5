#include "aafobj/container/sector_cache.h"

#include <algorithm>
#include <iterator>

namespace aafobj {

namespace {

constexpr std::size_t k_capacity_bytes = std::size_t{8} << 20;

}  // namespace

SectorCache::SectorCache(SectorIo& io)
    : m_io(io), m_capacity(k_capacity_bytes / io.sector_size()) {}

Result SectorCache::make_room(Slots::iterator& slot) {
  if (m_slots.size() < m_capacity) {
    m_slots.emplace_front();
    m_slots.front().bytes.resize(m_io.sector_size());
    slot = m_slots.begin();
    return Result::ok;
  }
  slot = std::prev(m_slots.end());
  if (slot->dirty) {
    const Result r = m_io.write(m_io.position_of(slot->sector), slot->bytes);
    if (r != Result::ok) return r;
    slot->dirty = false;
  }
  m_index.erase(slot->sector);
  m_slots.splice(m_slots.begin(), m_slots, slot);
  return Result::ok;
}

Result SectorCache::find(std::uint32_t sector, bool load, Slots::iterator& slot) {
  if (!m_slots.empty() && m_slots.front().sector == sector) {
    slot = m_slots.begin();
    return Result::ok;
  }
  if (const auto known = m_index.find(sector); known != m_index.end()) {
    slot = known->second;
    m_slots.splice(m_slots.begin(), m_slots, slot);
    return Result::ok;
  }
  if (const Result r = make_room(slot); r != Result::ok) return r;
  if (load) {
    if (const Result r = m_io.read(m_io.position_of(sector), slot->bytes); r != Result::ok) {
      m_slots.erase(slot);
      return r;
    }
  }
  slot->sector = sector;
  slot->dirty = false;
  m_index.emplace(sector, slot);
  return Result::ok;
}

Result SectorCache::read(std::uint32_t sector, const std::byte*& bytes) {
  Slots::iterator slot;
  if (const Result r = find(sector, true, slot); r != Result::ok) return r;
  bytes = slot->bytes.data();
  return Result::ok;
}

Result SectorCache::modify(std::uint32_t sector, std::byte*& bytes) {
  Slots::iterator slot;
  if (const Result r = find(sector, true, slot); r != Result::ok) return r;
  slot->dirty = true;
  bytes = slot->bytes.data();
  return Result::ok;
}

Result SectorCache::create(std::uint32_t sector, std::byte filler, std::byte*& bytes) {
  Slots::iterator slot;
  if (const Result r = find(sector, false, slot); r != Result::ok) return r;
  std::ranges::fill(slot->bytes, filler);
  slot->dirty = true;
  bytes = slot->bytes.data();
  return Result::ok;
}

void SectorCache::discard(std::uint32_t sector) {
  const auto known = m_index.find(sector);
  if (known == m_index.end()) return;
  m_slots.erase(known->second);
  m_index.erase(known);
}

Result SectorCache::flush() {
  std::vector<Slot*> dirty;
  for (Slot& slot : m_slots) {
    if (slot.dirty) dirty.push_back(&slot);
  }
  std::ranges::sort(dirty, {}, &Slot::sector);
  for (Slot* slot : dirty) {
    const Result r = m_io.write(m_io.position_of(slot->sector), slot->bytes);
    if (r != Result::ok) return r;
    slot->dirty = false;
  }
  return Result::ok;
}

}  // namespace aafobj
