#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <unordered_map>
#include <vector>

#include "aafobj/container/result.h"
#include "aafobj/container/sector_io.h"

namespace aafobj {

/// Sectors of the allocation tables and of the mini stream, held in a bounded
/// amount of memory and written back when they make room for others. Sectors
/// of large streams never pass through here.
class SectorCache {
 public:
  explicit SectorCache(SectorIo& io);

  /// The bytes of a sector, valid until the next call of any operation here.
  Result read(std::uint32_t sector, const std::byte*& bytes);

  /// The same for changing them.
  Result modify(std::uint32_t sector, std::byte*& bytes);

  /// A sector whose former content does not matter, filled with `filler`.
  Result create(std::uint32_t sector, std::byte filler, std::byte*& bytes);

  /// Forgets a sector, changes included.
  void discard(std::uint32_t sector);

  /// Writes all changes, in the order of the file.
  Result flush();

 private:
  struct Slot {
    std::uint32_t sector = 0;
    bool dirty = false;
    std::vector<std::byte> bytes;
  };
  using Slots = std::list<Slot>;

  Result find(std::uint32_t sector, bool load, Slots::iterator& slot);
  Result make_room(Slots::iterator& slot);

  SectorIo& m_io;
  std::size_t m_capacity;  // in sectors
  Slots m_slots;           // the one used last is in front
  std::unordered_map<std::uint32_t, Slots::iterator> m_index;
};

}  // namespace aafobj
