#include "aafobj/container/sector_set.h"

#include <algorithm>
#include <cstddef>

namespace aafobj {

std::uint64_t& SectorSet::word_of(std::uint64_t sector) {
  const auto word = sector / 64;
  const std::size_t block = word / k_block_words;
  if (block >= m_blocks.size()) m_blocks.resize(block + 1);
  if (m_blocks[block] == nullptr) m_blocks[block] = std::make_unique<Block>();
  return (*m_blocks[block])[word % k_block_words];
}

bool SectorSet::insert(std::uint32_t first, std::uint32_t count) {
  bool all_new = true;
  std::uint64_t at = first;
  const std::uint64_t end = at + count;
  while (at < end) {
    const std::uint64_t bit = at % 64;
    const std::uint64_t part = std::min(64 - bit, end - at);
    const std::uint64_t ones = part == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << part) - 1;
    std::uint64_t& word = word_of(at);
    if ((word & (ones << bit)) != 0) all_new = false;
    word |= ones << bit;
    at += part;
  }
  return all_new;
}

bool SectorSet::contains(std::uint32_t sector) const {
  const std::size_t word = sector / 64;
  const std::size_t block = word / k_block_words;
  if (block >= m_blocks.size() || m_blocks[block] == nullptr) return false;
  return ((*m_blocks[block])[word % k_block_words] >> (sector % 64) & 1) != 0;
}

}  // namespace aafobj
