#include "aafobj/container/run_pool.h"

#include <algorithm>
#include <iterator>

namespace aafobj {

namespace {

constexpr std::size_t k_most_runs = 65536;

}  // namespace

void RunPool::insert(SectorRun run) {
  m_by_first.emplace(run.first, run.count);
  m_by_size.emplace(run.count, run.first);
}

RunPool::ByFirst::iterator RunPool::erase(ByFirst::iterator at) {
  m_by_size.erase({at->second, at->first});
  return m_by_first.erase(at);
}

void RunPool::add(SectorRun run) {
  if (run.count == 0) return;
  auto next = m_by_first.lower_bound(run.first);
  if (next != m_by_first.begin()) {
    const auto before = std::prev(next);
    if (before->first + before->second == run.first) {
      run = {before->first, before->second + run.count};
      next = erase(before);
    }
  }
  if (next != m_by_first.end() && run.first + run.count == next->first) {
    run.count += next->second;
    erase(next);
  }
  insert(run);
  if (m_by_first.size() > k_most_runs) erase(m_by_first.find(m_by_size.begin()->second));
}

bool RunPool::take(std::uint32_t wanted, std::uint32_t smallest, SectorRun& run) {
  if (m_by_size.empty() || wanted == 0) return false;
  auto fit = m_by_size.lower_bound({wanted, 0});
  if (fit == m_by_size.end()) {
    fit = std::prev(fit);
    if (fit->first < smallest) return false;
  }
  const SectorRun found{fit->second, fit->first};
  erase(m_by_first.find(found.first));
  run = {found.first, std::min(found.count, wanted)};
  if (run.count < found.count) insert({found.first + run.count, found.count - run.count});
  return true;
}

void RunPool::cut(std::uint32_t limit) {
  while (!m_by_first.empty()) {
    const auto last = std::prev(m_by_first.end());
    const SectorRun run{last->first, last->second};
    if (run.first + run.count <= limit) return;
    erase(last);
    if (run.first < limit) insert({run.first, limit - run.first});
  }
}

std::uint32_t RunPool::take_tail(std::uint32_t limit) {
  if (m_by_first.empty()) return limit;
  const auto last = std::prev(m_by_first.end());
  if (last->first + last->second != limit) return limit;
  const std::uint32_t first = last->first;
  erase(last);
  return first;
}

}  // namespace aafobj
