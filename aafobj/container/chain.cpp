#include "aafobj/container/chain.h"

#include <algorithm>

namespace aafobj {

namespace {

constexpr std::size_t k_most_extents = 65536;

}  // namespace

void Chain::thin() {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < m_extents.size(); i += 2)
    m_extents[kept++] = m_extents[i];
  m_extents.resize(kept);
  m_stride *= 2;
}

void Chain::add(SectorRun run) {
  if (!m_extents.empty()) {
    Extent& tail = m_extents.back();
    if (tail.index + tail.count == m_known && tail.first + tail.count == run.first) {
      tail.count += run.count;
      m_known += run.count;
      m_current = tail;
      return;
    }
    if (m_tail_number % m_stride != 0) m_extents.pop_back();
    if (m_extents.size() >= k_most_extents) thin();
  }
  ++m_tail_number;
  m_current = {m_known, run.first, run.count};
  m_extents.push_back(m_current);
  m_known += run.count;
}

Result Chain::explore(SectorTable& table, std::uint32_t limit) {
  if (m_next == k_end_of_chain) return Result::damaged;
  SectorRun run{m_next, 0};
  std::uint32_t next = 0;
  const Result r = table.run(m_next, limit - m_known, run.count, next);
  if (r != Result::ok) return r;
  if (const std::uint32_t end = m_known + run.count; end > m_marked) {
    const std::uint32_t skip = m_marked > m_known ? m_marked - m_known : 0;
    if (const Result m = table.mark({run.first + skip, run.count - skip}); m != Result::ok)
      return m;
    m_marked = end;
  }
  add(run);
  m_next = next;
  return Result::ok;
}

// Leaves in m_current the extent that holds a known sector.
Result Chain::search(SectorTable& table, std::uint32_t index) {
  const auto after = std::ranges::upper_bound(m_extents, index, {}, &Extent::index);
  m_current = *(after - 1);
  while (!m_current.holds(index)) {
    Extent following{m_current.index + m_current.count, 0, 0};
    std::uint32_t next = 0;
    Result r = table.next(m_current.first + m_current.count - 1, following.first);
    if (r == Result::ok) {
      r = table.run(following.first, m_known - following.index, following.count, next);
    }
    if (r != Result::ok) return r;
    m_current = following;
  }
  return Result::ok;
}

Result Chain::locate(SectorTable& table, std::uint32_t index, std::uint32_t limit, SectorRun& run) {
  while (index >= m_known) {
    if (const Result r = explore(table, limit); r != Result::ok) return r;
  }
  if (!m_current.holds(index)) {
    if (const Result r = search(table, index); r != Result::ok) return r;
  }
  const std::uint32_t skip = index - m_current.index;
  run = {m_current.first + skip, m_current.count - skip};
  return Result::ok;
}

Result Chain::measure(SectorTable& table, std::uint32_t most, std::uint32_t& count) {
  while (m_next != k_end_of_chain) {
    if (m_known >= most) return Result::too_large;
    if (const Result r = explore(table, most); r != Result::ok) return r;
  }
  count = m_known;
  return Result::ok;
}

Result Chain::verify(SectorTable& table, std::uint32_t least, SectorSet& used) const {
  std::uint32_t followed = 0;
  std::uint32_t at = m_first;
  while (at != k_end_of_chain) {
    SectorRun part{at, 0};
    const Result r = table.run(at, table.sector_count(), part.count, at);
    if (r != Result::ok) return r;
    if (!used.insert(part.first, part.count)) return Result::overlapping;
    followed += part.count;
  }
  return followed < least ? Result::damaged : Result::ok;
}

// The followers of the last kept sector go; until the next flush they keep
// their bytes and their links.
Result Chain::cut(SectorTable& table, std::uint32_t count) {
  if (count == 0) {
    const std::uint32_t first = m_first;
    *this = Chain();
    return table.release_chain(first);
  }
  SectorRun last;
  std::uint32_t next = 0;
  if (const Result r = locate(table, count - 1, count, last); r != Result::ok) return r;
  if (const Result r = table.next(last.first, next); r != Result::ok) return r;
  if (next != k_end_of_chain) {
    if (const Result r = table.link(last.first, k_end_of_chain); r != Result::ok) return r;
    if (const Result r = table.release_chain(next); r != Result::ok) return r;
  }
  const auto after = std::ranges::upper_bound(m_extents, count - 1, {}, &Extent::index);
  m_extents.erase(after, m_extents.end());
  Extent& tail = m_extents.back();
  tail.count = std::min(tail.count, count - tail.index);
  m_current = tail;
  m_tail_number = 0;  // keeps the new last one
  m_known = count;
  m_next = k_end_of_chain;
  m_marked = std::min(m_marked, count);
  return Result::ok;
}

Result Chain::grow(SectorTable& table, std::uint32_t have, std::uint32_t want) {
  std::vector<SectorRun> runs;
  if (const Result r = table.allocate(want - have, runs); r != Result::ok) return r;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const std::uint32_t next = i + 1 < runs.size() ? runs[i + 1].first : k_end_of_chain;
    if (const Result r = table.link_run(runs[i], next); r != Result::ok) return r;
  }
  if (have == 0) {
    m_first = runs.front().first;
  } else {
    SectorRun last;
    if (const Result r = locate(table, have - 1, have, last); r != Result::ok) return r;
    if (const Result r = table.link(last.first, runs.front().first); r != Result::ok) return r;
  }
  for (const SectorRun& run : runs)
    add(run);
  m_next = k_end_of_chain;
  return Result::ok;
}

Result Chain::resize(SectorTable& table, std::uint32_t have, std::uint32_t want) {
  if (have == 0 && m_first != k_end_of_chain) *this = Chain();
  if (have != 0 && (want < have || m_known != have || m_next != k_end_of_chain)) {
    if (const Result r = cut(table, std::min(have, want)); r != Result::ok) return r;
  }
  return want > have ? grow(table, have, want) : Result::ok;
}

}  // namespace aafobj
