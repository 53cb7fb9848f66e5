#include "aafobj/container/sector_table.h"

#include <algorithm>
#include <cstddef>

namespace aafobj {

namespace {

// Runs shorter than this are not worth breaking up a larger request for. Those
// of a file with 512-byte sectors are less than 64 KiB, since a sector of the
// table lies between them.
constexpr std::uint32_t k_worthwhile_bytes = 16384;

// Past this the sectors of a 512-byte file would reach the range lock, near
// the limit of 2 GiB that such files have anyway.
constexpr std::uint32_t k_most_small_sectors =
    static_cast<std::uint32_t>(k_range_lock_position >> 9) - 1;
constexpr std::uint32_t k_large_lock_sector =
    static_cast<std::uint32_t>(k_range_lock_position >> 12) - 1;

}  // namespace

SectorTable::SectorTable(SectorIo& io, SectorCache& cache) : m_io(io), m_cache(cache) {}

Result SectorTable::start(const CompoundHeader& header) {
  m_marking = true;
  m_sector_count = m_io.stored_sectors();
  m_page_limit = std::min(header.fat_sector_count, m_sector_count);
  m_pages.reserve(std::min<std::size_t>(m_page_limit, k_header_difat_count));
  for (const std::uint32_t sector : header.difat) {
    if (const Result r = add_table_sector(sector); r != Result::ok) return r;
  }
  const bool has_list =
      header.difat_sector_count != 0 && header.first_difat_sector <= k_last_sector;
  m_next_list_sector = has_list ? header.first_difat_sector : k_end_of_chain;
  return Result::ok;
}

// Unused words hold 0xffffffff, those of one known writer 0; sector 0 can only
// be the first table sector.
Result SectorTable::add_table_sector(std::uint32_t sector) {
  if (m_pages.size() >= m_page_limit || sector == k_free_sector) return Result::ok;
  if (sector == 0 && !m_pages.empty()) return Result::ok;
  m_pages.push_back(sector);
  return sector < m_sector_count ? mark({sector, 1}) : Result::ok;
}

Result SectorTable::load_list_sector() {
  const std::uint32_t sector = m_next_list_sector;
  if (sector > k_last_sector) return Result::damaged;
  if (sector >= m_sector_count) return Result::truncated;
  if (const Result r = mark({sector, 1}); r != Result::ok) return r;
  std::vector<std::byte> bytes(m_io.sector_size());
  if (const Result r = m_io.read(m_io.position_of(sector), bytes); r != Result::ok) return r;
  m_list_sectors.push_back(sector);
  for (std::uint32_t i = 0; i + 1 < entries(); ++i) {
    const Result r = add_table_sector(get_u32(bytes.data() + std::size_t{i} * 4));
    if (r != Result::ok) return r;
  }
  m_next_list_sector = get_u32(bytes.data() + std::size_t{entries() - 1} * 4);
  return Result::ok;
}

Result SectorTable::load_list(std::size_t page) {
  while (m_pages.size() <= page) {
    if (const Result r = load_list_sector(); r != Result::ok) return r;
  }
  return Result::ok;
}

Result SectorTable::check(std::uint32_t sector) const {
  if (sector > k_last_sector) return Result::damaged;
  if (sector >= m_sector_count) return Result::truncated;
  return sector / entries() < m_page_limit ? Result::ok : Result::damaged;
}

Result SectorTable::locate_page(std::uint32_t page, std::uint32_t& sector) {
  if (const Result r = load_list(page); r != Result::ok) return r;
  sector = m_pages[page];
  if (sector > k_last_sector) return Result::damaged;
  return sector < m_sector_count ? Result::ok : Result::truncated;
}

Result SectorTable::next(std::uint32_t sector, std::uint32_t& next) {
  std::uint32_t count = 0;
  return run(sector, 1, count, next);
}

Result SectorTable::run(std::uint32_t sector, std::uint32_t most, std::uint32_t& count,
                        std::uint32_t& next) {
  count = 0;
  const std::uint32_t per_page = entries();
  const std::byte* bytes = nullptr;
  std::uint32_t at = sector;
  while (true) {
    if (const Result r = check(at); r != Result::ok) return r;
    if (bytes == nullptr || at % per_page == 0) {
      std::uint32_t page_sector = 0;
      if (const Result r = locate_page(at / per_page, page_sector); r != Result::ok) return r;
      if (const Result r = m_cache.read(page_sector, bytes); r != Result::ok) return r;
    }
    next = get_u32(bytes + std::size_t{at % per_page} * 4);
    ++count;
    if (next != at + 1 || count >= most) return Result::ok;
    at = next;
  }
}

Result SectorTable::mark(SectorRun run) {
  if (!m_marking) return Result::ok;
  return m_marked.insert(run.first, run.count) ? Result::ok : Result::overlapping;
}

Result SectorTable::load_all(SectorSet& used) {
  if (m_page_limit != 0) {
    if (const Result r = load_list(m_page_limit - 1); r != Result::ok) return r;
  }
  for (const std::vector<std::uint32_t>* list : {&m_pages, &m_list_sectors}) {
    for (const std::uint32_t sector : *list) {
      if (sector > k_last_sector) return Result::damaged;
      if (sector >= m_sector_count) return Result::truncated;
      if (!used.insert(sector)) return Result::overlapping;
    }
  }
  return Result::ok;
}

Result SectorTable::find_free(const SectorSet& used, std::uint32_t page) {
  std::uint32_t page_sector = 0;
  const std::byte* bytes = nullptr;
  if (const Result r = locate_page(page, page_sector); r != Result::ok) return r;
  if (const Result r = m_cache.read(page_sector, bytes); r != Result::ok) return r;
  const std::uint32_t first = page * entries();
  const std::uint32_t end = std::min(first + entries(), m_sector_count);
  SectorRun run{first, 0};
  for (std::uint32_t sector = first; sector < end; ++sector) {
    const bool is_free = get_u32(bytes + std::size_t{sector - first} * 4) == k_free_sector &&
                         !used.contains(sector) &&
                         (entries() == 128 || sector != k_large_lock_sector);
    if (is_free) {
      ++run.count;
      continue;
    }
    m_free.add(run);
    run = {sector + 1, 0};
  }
  m_free.add(run);
  return Result::ok;
}

Result SectorTable::start_changes(const SectorSet& used) {
  m_marking = false;
  m_marked.clear();
  // Sectors of the file that the table does not reach belong to nobody.
  m_sector_count = static_cast<std::uint32_t>(
      std::min<std::uint64_t>(m_sector_count, std::uint64_t{m_page_limit} * entries()));
  for (std::uint32_t page = 0; std::uint64_t{page} * entries() < m_sector_count; ++page) {
    if (const Result r = find_free(used, page); r != Result::ok) return r;
  }
  return Result::ok;
}

Result SectorTable::set(std::uint32_t sector, std::uint32_t value) {
  return link_run({sector, 1}, value);
}

Result SectorTable::link(std::uint32_t sector, std::uint32_t next) {
  return set(sector, next);
}

Result SectorTable::link_run(SectorRun run, std::uint32_t last_entry) {
  const std::uint32_t per_page = entries();
  const std::uint32_t end = run.first + run.count;
  std::uint32_t at = run.first;
  while (at < end) {
    std::uint32_t page_sector = 0;
    std::byte* bytes = nullptr;
    if (const Result r = locate_page(at / per_page, page_sector); r != Result::ok) return r;
    if (const Result r = m_cache.modify(page_sector, bytes); r != Result::ok) return r;
    const std::uint32_t page_end = std::min(end, (at / per_page + 1) * per_page);
    for (; at < page_end; ++at) {
      put_u32(bytes + std::size_t{at % per_page} * 4, at + 1 == end ? last_entry : at + 1);
    }
  }
  return Result::ok;
}

// A new table sector is the first sector that it describes itself; a list
// sector, when one is due, is the second.
Result SectorTable::add_page() {
  const auto page = static_cast<std::uint32_t>(m_pages.size());
  const std::uint32_t sector = m_sector_count;
  const std::uint64_t listed =
      k_header_difat_count + std::uint64_t{m_list_sectors.size()} * (entries() - 1);
  std::byte* bytes = nullptr;
  if (const Result r = m_cache.create(sector, std::byte{0xff}, bytes); r != Result::ok) return r;
  m_pages.push_back(sector);
  m_page_limit = page + 1;
  m_sector_count = sector + 1;
  if (const Result r = set(sector, k_fat_sector); r != Result::ok) return r;
  if (page < listed) return Result::ok;
  m_list_sectors.push_back(m_sector_count);
  ++m_sector_count;
  return set(m_sector_count - 1, k_difat_sector);
}

Result SectorTable::append(std::uint32_t most, SectorRun& run) {
  const bool large = entries() != 128;
  const std::uint32_t limit = large ? k_last_sector : k_most_small_sectors;
  const std::uint64_t reach = std::uint64_t{m_pages.size()} * entries();
  // Room for the sectors of the table that may come first is left as well.
  if (m_sector_count >= limit - 2) return Result::too_large;
  if (m_sector_count >= reach) {
    if (const Result r = add_page(); r != Result::ok) return r;
  }
  if (large && m_sector_count == k_large_lock_sector) {
    ++m_sector_count;
    if (const Result r = set(k_large_lock_sector, k_end_of_chain); r != Result::ok) return r;
    return append(most, run);
  }
  std::uint64_t end = std::min<std::uint64_t>(limit, std::uint64_t{m_pages.size()} * entries());
  if (large && m_sector_count < k_large_lock_sector) {
    end = std::min<std::uint64_t>(end, k_large_lock_sector);
  }
  run.first = m_sector_count;
  run.count = static_cast<std::uint32_t>(std::min<std::uint64_t>(most, end - m_sector_count));
  m_sector_count += run.count;
  return Result::ok;
}

Result SectorTable::allocate(std::uint32_t count, std::vector<SectorRun>& runs) {
  runs.clear();
  const std::uint32_t worthwhile = k_worthwhile_bytes / m_io.sector_size();
  while (count != 0) {
    SectorRun run;
    if (!m_free.take(count, std::min(count, worthwhile), run)) {
      if (const Result r = append(count, run); r != Result::ok) {
        for (const SectorRun& taken : runs)
          m_free.add(taken);
        runs.clear();
        return r;
      }
    }
    count -= run.count;
    if (!runs.empty() && runs.back().first + runs.back().count == run.first) {
      runs.back().count += run.count;
    } else {
      runs.push_back(run);
    }
  }
  return Result::ok;
}

Result SectorTable::release_chain(std::uint32_t first) {
  std::uint32_t at = first;
  while (at != k_end_of_chain) {
    SectorRun part{at, 0};
    if (const Result r = run(at, m_sector_count, part.count, at); r != Result::ok) return r;
    m_released.push_back(part);
  }
  return Result::ok;
}

Result SectorTable::free_released(std::size_t keep) {
  while (m_released.size() > keep) {
    const SectorRun run = m_released.back();
    for (std::uint32_t i = 0; i < run.count; ++i) {
      if (const Result r = set(run.first + i, k_free_sector); r != Result::ok) return r;
    }
    m_released.pop_back();
    m_free.add(run);
  }
  return Result::ok;
}

Result SectorTable::write_list(CompoundHeader& header) {
  header.fat_sector_count = static_cast<std::uint32_t>(m_pages.size());
  header.difat_sector_count = static_cast<std::uint32_t>(m_list_sectors.size());
  header.first_difat_sector = m_list_sectors.empty() ? k_end_of_chain : m_list_sectors.front();
  const auto entry = [this](std::size_t i) {
    return i < m_pages.size() ? m_pages[i] : k_free_sector;
  };
  std::size_t at = 0;
  for (std::uint32_t& word : header.difat)
    word = entry(at++);
  std::vector<std::byte> bytes(m_io.sector_size());
  for (std::size_t i = 0; i < m_list_sectors.size(); ++i) {
    std::byte* word = bytes.data();
    for (std::uint32_t n = 0; n + 1 < entries(); ++n, word += 4)
      put_u32(word, entry(at++));
    put_u32(word, i + 1 < m_list_sectors.size() ? m_list_sectors[i + 1] : k_end_of_chain);
    const Result r = m_io.write(m_io.position_of(m_list_sectors[i]), bytes);
    if (r != Result::ok) return r;
  }
  return Result::ok;
}

void SectorTable::drop_free_tail() {
  m_sector_count = m_free.take_tail(m_sector_count);
}

}  // namespace aafobj
