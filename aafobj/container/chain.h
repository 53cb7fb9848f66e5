#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "aafobj/container/result.h"
#include "aafobj/container/sector_layout.h"
#include "aafobj/container/sector_table.h"

namespace aafobj {

/// One chain of sectors, known as far as it was followed. It is kept as runs
/// of neighbouring sectors; when these grow too many, only every second one is
/// kept, and the way between them is found again in the table. So memory is
/// bounded however scattered the chain is.
class Chain {
 public:
  explicit Chain(std::uint32_t first = k_end_of_chain) : m_first(first), m_next(first) {}

  std::uint32_t first() const { return m_first; }

  /// The sectors from the `index`th on that are neighbours in the file, at
  /// least one. No sector past `limit` is followed, which must be above index.
  /// Errors: damaged (the chain ends before), and those of the table.
  Result locate(SectorTable& table, std::uint32_t index, std::uint32_t limit, SectorRun& run);

  /// Follows the chain to its end. `most` sectors or fewer, else too_large.
  Result measure(SectorTable& table, std::uint32_t most, std::uint32_t& count);

  /// Follows the chain to its end from scratch, whatever the table has marked,
  /// and adds its sectors to `used`. Errors: overlapping; damaged when they are
  /// fewer than `least`.
  Result verify(SectorTable& table, std::uint32_t least, SectorSet& used) const;

  /// Brings a chain of `have` sectors to `want`. What the chain holds past
  /// `have` is given up. On failure the chain still has its first `have`
  /// sectors.
  Result resize(SectorTable& table, std::uint32_t have, std::uint32_t want);

  /// How many sectors from the start were claimed in the table, by this object
  /// or an earlier one on the same chain.
  std::uint32_t marked() const { return m_marked; }
  void set_marked(std::uint32_t count) { m_marked = count; }

 private:
  struct Extent {
    std::uint32_t index = 0;  // place in the chain
    std::uint32_t first = 0;  // sector
    std::uint32_t count = 0;
    bool holds(std::uint32_t i) const { return i >= index && i - index < count; }
  };

  Result explore(SectorTable& table, std::uint32_t limit);
  Result search(SectorTable& table, std::uint32_t index);
  Result cut(SectorTable& table, std::uint32_t count);
  Result grow(SectorTable& table, std::uint32_t have, std::uint32_t want);
  void add(SectorRun run);
  void thin();

  std::uint32_t m_first;
  std::uint32_t m_next;       // the entry of the last known sector
  std::uint32_t m_known = 0;  // sectors followed so far
  std::uint32_t m_marked = 0;
  std::uint32_t m_stride = 1;  // every so manieth extent is kept
  std::uint32_t m_tail_number = 0;
  std::vector<Extent> m_extents;  // ascending; the last one is always there
  Extent m_current;
};

}  // namespace aafobj
