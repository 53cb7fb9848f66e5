#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace aafobj {

/// A set of sector numbers: one bit each, in blocks made when first needed.
class SectorSet {
 public:
  /// Adds a run; false when any of it was in the set already.
  bool insert(std::uint32_t first, std::uint32_t count = 1);
  bool contains(std::uint32_t sector) const;
  void clear() { m_blocks.clear(); }

 private:
  static constexpr std::uint32_t k_block_words = 512;
  using Block = std::array<std::uint64_t, k_block_words>;

  std::uint64_t& word_of(std::uint64_t sector);

  std::vector<std::unique_ptr<Block>> m_blocks;
};

}  // namespace aafobj
