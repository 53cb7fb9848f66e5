#include "aafobj/container/mini_stream.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace aafobj {

namespace {

// The mini stream grows by half of itself up to this, so that its sectors lie
// together.
constexpr std::uint32_t k_most_growth_bytes = 65536;

}  // namespace

MiniStream::MiniStream(SectorIo& io, SectorCache& cache, SectorTable& table)
    : m_io(io), m_cache(cache), m_table(table) {}

void MiniStream::start(const CompoundHeader& header, std::uint32_t first_sector,
                       std::uint64_t size) {
  const bool has_table =
      header.mini_fat_sector_count != 0 && header.first_mini_fat_sector <= k_last_sector;
  m_table_chain = Chain(has_table ? header.first_mini_fat_sector : k_end_of_chain);
  m_table_sectors = has_table ? header.mini_fat_sector_count : 0;
  m_data = Chain(size != 0 ? first_sector : k_end_of_chain);
  m_size = size;
  m_loaded = false;
}

Result MiniStream::load_table() {
  const std::uint32_t sector_size = m_io.sector_size();
  const std::uint32_t mini_count = divide_up(m_size, k_mini_sector_size);
  const std::uint32_t needed = divide_up(std::uint64_t{mini_count} * 4, sector_size);
  const std::uint32_t count = std::min(needed, m_table_sectors);
  std::vector<std::byte> bytes(std::size_t{count} * sector_size);
  for (std::uint32_t index = 0; index < count;) {
    SectorRun run;
    const Result r = m_table_chain.locate(m_table, index, m_table_sectors, run);
    if (r != Result::ok) return r;
    const std::uint32_t part = std::min(run.count, count - index);
    const Result read = m_io.read(m_io.position_of(run.first),
                                  std::span(bytes).subspan(std::size_t{index} * sector_size,
                                                           std::size_t{part} * sector_size));
    if (read != Result::ok) return read;
    index += part;
  }
  m_entries.resize(std::min<std::size_t>(bytes.size() / 4, mini_count));
  for (std::size_t i = 0; i < m_entries.size(); ++i)
    m_entries[i] = get_u32(bytes.data() + i * 4);
  return Result::ok;
}

Result MiniStream::load() {
  if (m_loaded) return Result::ok;
  const std::uint64_t file_bytes = std::uint64_t{m_table.sector_count()} * m_io.sector_size();
  if (m_size > file_bytes || m_table_sectors > m_table.sector_count()) return Result::damaged;
  m_data_sectors = divide_up(m_size, m_io.sector_size());
  m_flushed_sectors = m_data_sectors;
  m_entries.clear();
  if (const Result r = load_table(); r != Result::ok) return r;
  m_loaded = true;
  return Result::ok;
}

Result MiniStream::follow(std::uint32_t first, std::uint32_t count, bool claim,
                          std::vector<std::uint32_t>& minis) {
  if (const Result r = load(); r != Result::ok) return r;
  minis.clear();
  std::uint32_t mini = first;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (mini >= m_entries.size()) return Result::damaged;
    if (claim && !m_marked.insert(mini)) return Result::overlapping;
    minis.push_back(mini);
    mini = m_entries[mini];
  }
  return Result::ok;
}

Result MiniStream::verify_chain(std::uint32_t first, std::uint32_t count, SectorSet& used) {
  std::uint32_t followed = 0;
  for (std::uint32_t mini = first; mini != k_end_of_chain; mini = m_entries[mini]) {
    if (mini >= m_entries.size()) return Result::damaged;
    if (!used.insert(mini)) return Result::overlapping;
    ++followed;
  }
  return followed < count ? Result::damaged : Result::ok;
}

Result MiniStream::locate(std::uint32_t mini, std::uint32_t& sector, std::uint32_t& offset) {
  const std::uint64_t position = std::uint64_t{mini} * k_mini_sector_size;
  const auto index = static_cast<std::uint32_t>(position / m_io.sector_size());
  if (index >= m_data_sectors) return Result::damaged;
  SectorRun run;
  if (const Result r = m_data.locate(m_table, index, m_data_sectors, run); r != Result::ok)
    return r;
  sector = run.first;
  offset = static_cast<std::uint32_t>(position % m_io.sector_size());
  return Result::ok;
}

Result MiniStream::read(std::span<const std::uint32_t> minis, std::uint32_t position,
                        std::span<std::byte> out) {
  while (!out.empty()) {
    const std::uint32_t skip = position % k_mini_sector_size;
    const std::size_t part = std::min<std::size_t>(k_mini_sector_size - skip, out.size());
    std::uint32_t sector = 0;
    std::uint32_t offset = 0;
    const std::byte* bytes = nullptr;
    Result r = locate(minis[position / k_mini_sector_size], sector, offset);
    if (r == Result::ok) r = m_cache.read(sector, bytes);
    if (r != Result::ok) return r;
    std::memcpy(out.data(), bytes + offset + skip, part);
    out = out.subspan(part);
    position += static_cast<std::uint32_t>(part);
  }
  return Result::ok;
}

Result MiniStream::write(std::span<const std::uint32_t> minis, std::uint32_t position,
                         std::span<const std::byte> in) {
  while (!in.empty()) {
    const std::uint32_t skip = position % k_mini_sector_size;
    const std::size_t part = std::min<std::size_t>(k_mini_sector_size - skip, in.size());
    std::uint32_t sector = 0;
    std::uint32_t offset = 0;
    std::byte* bytes = nullptr;
    Result r = locate(minis[position / k_mini_sector_size], sector, offset);
    if (r == Result::ok) r = m_cache.modify(sector, bytes);
    if (r != Result::ok) return r;
    std::memcpy(bytes + offset + skip, in.data(), part);
    in = in.subspan(part);
    position += static_cast<std::uint32_t>(part);
  }
  return Result::ok;
}

Result MiniStream::verify(SectorSet& used) {
  if (const Result r = load(); r != Result::ok) return r;
  // The chains are followed anew: the known part may be an earlier claim.
  Chain table_chain(m_table_chain.first());
  Chain data(m_data.first());
  if (const Result r = table_chain.verify(m_table, m_table_sectors, used); r != Result::ok)
    return r;
  return data.verify(m_table, m_data_sectors, used);
}

Result MiniStream::start_changes(const SectorSet& used) {
  if (const Result r = load(); r != Result::ok) return r;
  m_marked.clear();
  SectorRun run;
  for (std::uint32_t mini = 0; mini < m_entries.size(); ++mini) {
    if (m_entries[mini] == k_free_sector && !used.contains(mini)) {
      ++run.count;
      continue;
    }
    m_free.add(run);
    run = {mini + 1, 0};
  }
  m_free.add(run);
  return Result::ok;
}

Result MiniStream::ensure_data(std::uint32_t mini_count) {
  const std::uint32_t sector_size = m_io.sector_size();
  const std::uint32_t needed =
      divide_up(std::uint64_t{mini_count} * k_mini_sector_size, sector_size);
  if (needed <= m_data_sectors) return Result::ok;
  const std::uint32_t step = std::min(m_data_sectors / 2, k_most_growth_bytes / sector_size);
  const std::uint32_t want = std::max(needed, m_data_sectors + step);
  const Result grown = m_data.resize(m_table, m_data_sectors, want);
  if (grown != Result::ok) return grown;
  for (std::uint32_t index = m_data_sectors; index < want; ++index) {
    SectorRun run;
    std::byte* bytes = nullptr;
    Result r = m_data.locate(m_table, index, want, run);
    if (r == Result::ok) r = m_cache.create(run.first, std::byte{0}, bytes);
    if (r != Result::ok) return r;
  }
  m_data_sectors = want;
  return Result::ok;
}

Result MiniStream::take(std::uint32_t wanted, std::vector<std::uint32_t>& minis) {
  static constexpr std::array<std::byte, k_mini_sector_size> zeros{};
  while (wanted != 0) {
    SectorRun run;
    if (!m_free.take(wanted, 1, run)) {
      const std::size_t count = m_entries.size() + wanted;
      if (count > k_last_sector) return Result::too_large;
      const Result r = ensure_data(static_cast<std::uint32_t>(count));
      if (r != Result::ok) return r;
      run = {static_cast<std::uint32_t>(m_entries.size()), wanted};
      m_entries.resize(count, k_free_sector);
    }
    wanted -= run.count;
    for (std::uint32_t mini = run.first; mini < run.first + run.count; ++mini) {
      minis.push_back(mini);
      const Result r = write(std::span(&mini, 1), 0, zeros);
      if (r != Result::ok) return r;
    }
  }
  return Result::ok;
}

Result MiniStream::resize(std::vector<std::uint32_t>& minis, std::uint32_t want) {
  m_changed = true;
  if (want < minis.size()) {
    m_released.insert(m_released.end(), minis.begin() + want, minis.end());
    minis.resize(want);
    if (want != 0) m_entries[minis.back()] = k_end_of_chain;
    return Result::ok;
  }
  std::vector<std::uint32_t> more;
  const Result r = take(want - static_cast<std::uint32_t>(minis.size()), more);
  if (r != Result::ok) {
    for (const std::uint32_t mini : more)
      m_free.add({mini, 1});
    return r;
  }
  for (const std::uint32_t mini : more) {
    if (!minis.empty()) m_entries[minis.back()] = mini;
    m_entries[mini] = k_end_of_chain;
    minis.push_back(mini);
  }
  return Result::ok;
}

// Sectors that came since the last flush can be used again at once.
Result MiniStream::cut_data() {
  const std::uint32_t want = divide_up(m_size, m_io.sector_size());
  for (std::uint32_t index = want; index < m_data_sectors; ++index) {
    SectorRun run;
    const Result r = m_data.locate(m_table, index, m_data_sectors, run);
    if (r != Result::ok) return r;
    m_cache.discard(run.first);
  }
  const std::size_t released = m_table.released_runs();
  if (const Result r = m_data.resize(m_table, m_data_sectors, want); r != Result::ok) return r;
  m_data_sectors = want;
  return want < m_flushed_sectors ? Result::ok : m_table.free_released(released);
}

Result MiniStream::place(CompoundHeader& header) {
  if (m_changed) {
    for (const std::uint32_t mini : m_released)
      m_entries[mini] = k_free_sector;
    while (!m_entries.empty() && m_entries.back() == k_free_sector)
      m_entries.pop_back();
    const auto count = static_cast<std::uint32_t>(m_entries.size());
    m_free.cut(count);
    std::erase_if(m_released, [count](std::uint32_t mini) { return mini >= count; });
    m_size = std::uint64_t{count} * k_mini_sector_size;
    if (const Result r = cut_data(); r != Result::ok) return r;
    const std::uint32_t want = divide_up(std::uint64_t{count} * 4, m_io.sector_size());
    const Result r = m_table_chain.resize(m_table, m_table_sectors, want);
    if (r != Result::ok) return r;
    m_table_sectors = want;
  }
  header.first_mini_fat_sector = m_table_chain.first();
  header.mini_fat_sector_count = m_table_sectors;
  return Result::ok;
}

Result MiniStream::write_table() {
  if (!m_changed) return Result::ok;
  const std::uint32_t sector_size = m_io.sector_size();
  std::vector<std::byte> bytes(std::size_t{m_table_sectors} * sector_size, std::byte{0xff});
  for (std::size_t i = 0; i < m_entries.size(); ++i)
    put_u32(bytes.data() + i * 4, m_entries[i]);
  for (std::uint32_t index = 0; index < m_table_sectors;) {
    SectorRun run;
    const Result r = m_table_chain.locate(m_table, index, m_table_sectors, run);
    if (r != Result::ok) return r;
    const std::uint32_t part = std::min(run.count, m_table_sectors - index);
    const Result written = m_io.write(m_io.position_of(run.first),
                                      std::span(bytes).subspan(std::size_t{index} * sector_size,
                                                               std::size_t{part} * sector_size));
    if (written != Result::ok) return written;
    index += part;
  }
  m_changed = false;
  return Result::ok;
}

void MiniStream::free_released() {
  for (const std::uint32_t mini : m_released)
    m_free.add({mini, 1});
  m_released.clear();
  m_flushed_sectors = m_data_sectors;
}

}  // namespace aafobj
