// Makes the nth allocation fail. A test that uses it links
// edl_test_allocation_faults, which replaces the operators new and delete.
#pragma once

#include <cstdint>

namespace support {

// In force for the calling thread while it lives; they do not nest.
class FaultyAllocations {
 public:
  enum class After { recover, keep_failing };

  // Allocations count from 1; an nth of 0 never fails and only counts.
  explicit FaultyAllocations(std::uint64_t nth, After after = After::recover);
  ~FaultyAllocations();
  FaultyAllocations(const FaultyAllocations&) = delete;
  FaultyAllocations& operator=(const FaultyAllocations&) = delete;

  // How many allocations there were, and how many of them failed.
  [[nodiscard]] static std::uint64_t count();
  [[nodiscard]] static std::uint64_t failed();
  // The most bytes asked for in one allocation.
  [[nodiscard]] static std::uint64_t largest();
};

}  // namespace support
