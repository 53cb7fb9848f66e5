#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "aafobj/container/chain.h"
#include "aafobj/container/compound_header.h"
#include "aafobj/container/result.h"
#include "aafobj/container/run_pool.h"
#include "aafobj/container/sector_cache.h"
#include "aafobj/container/sector_io.h"
#include "aafobj/container/sector_set.h"
#include "aafobj/container/sector_table.h"

namespace aafobj {

/// The mini stream, which holds all streams below the cut-off in sectors of
/// 64 bytes, and its allocation table. The table is read whole when the first
/// small stream is opened; the bytes go through the sector cache.
class MiniStream {
 public:
  MiniStream(SectorIo& io, SectorCache& cache, SectorTable& table);

  /// Takes over those of an existing file; first sector and size of the mini
  /// stream are in the root entry.
  void start(const CompoundHeader& header, std::uint32_t first_sector, std::uint64_t size);

  /// Follows a chain of `count` mini sectors. With `claim` they are claimed,
  /// and a second claim is refused as overlapping.
  Result follow(std::uint32_t first, std::uint32_t count, bool claim,
                std::vector<std::uint32_t>& minis);

  /// `position` and the end of `out` lie within the chain.
  Result read(std::span<const std::uint32_t> minis, std::uint32_t position,
              std::span<std::byte> out);

  /// Checks both chains and adds their sectors to `used`.
  Result verify(SectorSet& used);

  /// As follow(), for a check of the whole file: claims in `used`, and goes to
  /// the end of the chain, which must have `count` sectors at least.
  Result verify_chain(std::uint32_t first, std::uint32_t count, SectorSet& used);

  // What follows changes the mini stream.

  /// From here on nothing is claimed; mini sectors not in `used` are free.
  Result start_changes(const SectorSet& used);

  Result write(std::span<const std::uint32_t> minis, std::uint32_t position,
               std::span<const std::byte> bytes);

  /// Brings a chain to `want` mini sectors. New ones hold zeros. Those given up
  /// are free after free_released().
  Result resize(std::vector<std::uint32_t>& minis, std::uint32_t want);

  /// Before a flush: drops unused space at the end and finds room for the
  /// table. Fills its part of the header.
  Result place(CompoundHeader& header);

  /// Writes the table. The bytes of the mini stream are in the cache.
  Result write_table();

  void free_released();

  std::uint32_t first_sector() const { return m_data.first(); }
  std::uint64_t size() const { return m_size; }

 private:
  Result load();
  Result load_table();
  Result locate(std::uint32_t mini, std::uint32_t& sector, std::uint32_t& offset);
  Result ensure_data(std::uint32_t mini_count);
  Result take(std::uint32_t wanted, std::vector<std::uint32_t>& minis);
  Result cut_data();

  SectorIo& m_io;
  SectorCache& m_cache;
  SectorTable& m_table;
  Chain m_table_chain;
  Chain m_data;
  std::uint32_t m_table_sectors = 0;    // of m_table_chain
  std::uint32_t m_data_sectors = 0;     // of m_data
  std::uint32_t m_flushed_sectors = 0;  // of m_data, at the last flush
  std::uint64_t m_size = 0;             // of the mini stream, in bytes
  bool m_loaded = true;
  bool m_changed = false;
  std::vector<std::uint32_t> m_entries;  // the table, one for each mini sector
  SectorSet m_marked;
  RunPool m_free;
  std::vector<std::uint32_t> m_released;
};

}  // namespace aafobj
