#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "aafobj/container/compound_header.h"
#include "aafobj/container/result.h"
#include "aafobj/container/run_pool.h"
#include "aafobj/container/sector_cache.h"
#include "aafobj/container/sector_io.h"
#include "aafobj/container/sector_layout.h"
#include "aafobj/container/sector_set.h"

namespace aafobj {

/// The allocation table of sectors (FAT) and the list of its own sectors
/// (DIFAT). Of both only what is asked for is read.
///
/// Until the whole structure is checked, every sector that a chain claims is
/// marked, and a second claim is refused as overlapping. This ends loops too.
class SectorTable {
 public:
  SectorTable(SectorIo& io, SectorCache& cache);

  /// Takes over the table of an existing file.
  Result start(const CompoundHeader& header);

  /// Sectors in use or free, up to the highest one ever given out.
  std::uint32_t sector_count() const { return m_sector_count; }

  /// The entry of a sector: its follower or a special number.
  Result next(std::uint32_t sector, std::uint32_t& next);

  /// From `sector` on, the sectors that are linked and neighbours in the file,
  /// at most `most` (above 0). `next` is the entry of the last of them.
  Result run(std::uint32_t sector, std::uint32_t most, std::uint32_t& count, std::uint32_t& next);

  /// Claims sectors for a chain. Errors: overlapping.
  Result mark(SectorRun run);

  // What follows changes the table.

  /// Reads the whole list of table sectors and adds them all to `used`.
  Result load_all(SectorSet& used);

  /// From here on nothing is marked: the structure is sound. Free sectors that
  /// are not in `used` can be given out.
  Result start_changes(const SectorSet& used);

  /// Finds free sectors, in as few runs as it can. They have no links yet.
  /// Errors: too_large, and those of input and output.
  Result allocate(std::uint32_t count, std::vector<SectorRun>& runs);

  Result link(std::uint32_t sector, std::uint32_t next);

  /// Links the sectors of a run in order; the last one gets `last_entry`.
  Result link_run(SectorRun run, std::uint32_t last_entry);

  /// Gives up a chain. Its sectors are free after free_released().
  Result release_chain(std::uint32_t first);

  /// Frees what was given up, all or only what came after the first `keep`
  /// runs.
  Result free_released(std::size_t keep = 0);
  std::size_t released_runs() const { return m_released.size(); }

  /// Writes the list of table sectors and fills its part of the header.
  Result write_list(CompoundHeader& header);

  /// Gives free sectors at the end of the file back to the storage.
  void drop_free_tail();

 private:
  std::uint32_t entries() const { return m_io.sector_size() / 4; }

  Result check(std::uint32_t sector) const;
  Result locate_page(std::uint32_t page, std::uint32_t& sector);
  Result load_list(std::size_t page);
  Result load_list_sector();
  Result add_table_sector(std::uint32_t sector);
  Result set(std::uint32_t sector, std::uint32_t value);
  Result add_page();
  Result append(std::uint32_t most, SectorRun& run);
  Result find_free(const SectorSet& used, std::uint32_t page);

  SectorIo& m_io;
  SectorCache& m_cache;
  std::vector<std::uint32_t> m_pages;         // the FAT sectors, as far as read
  std::vector<std::uint32_t> m_list_sectors;  // the DIFAT sectors, as far as read
  std::uint32_t m_next_list_sector = k_end_of_chain;
  std::uint32_t m_page_limit = 0;  // FAT sectors that the header states
  std::uint32_t m_sector_count = 0;
  bool m_marking = false;
  SectorSet m_marked;
  RunPool m_free;
  std::vector<SectorRun> m_released;
};

}  // namespace aafobj
