#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <utility>

#include "aafobj/container/sector_layout.h"

namespace aafobj {

/// Free sectors as runs. Keeps a bounded number of runs: past it the smallest
/// is forgotten, which only leaves its sectors unused until the file is opened
/// again.
class RunPool {
 public:
  /// Joins the run with free neighbours.
  void add(SectorRun run);

  /// Takes up to `wanted` sectors as one run: the smallest run that holds them
  /// all, else the largest, if that has at least `smallest`.
  bool take(std::uint32_t wanted, std::uint32_t smallest, SectorRun& run);

  /// Forgets everything at or past `limit`.
  void cut(std::uint32_t limit);

  /// Forgets the run that ends just before `limit` and returns its first
  /// sector, or `limit` when there is none.
  std::uint32_t take_tail(std::uint32_t limit);

  std::size_t run_count() const { return m_by_first.size(); }

 private:
  using ByFirst = std::map<std::uint32_t, std::uint32_t>;

  void insert(SectorRun run);
  ByFirst::iterator erase(ByFirst::iterator at);

  ByFirst m_by_first;                                           // first → count
  std::set<std::pair<std::uint32_t, std::uint32_t>> m_by_size;  // (count, first)
};

}  // namespace aafobj
