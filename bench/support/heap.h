// The C library's memory, in the state that a run is to find it in. What records cost
// depends on it more than on anything that is done with them.
#pragma once

#include <malloc.h>

#include <cstdint>

namespace bench {

// What the run before has freed goes back to the system, so that every page is new, as it
// is to a program that converts one file; or stays, as in a host that has run for hours.
enum class Heap : std::int64_t { fresh, kept };

// To be called before each turn, while the clock stands.
inline void prepare(Heap heap) {
  constexpr int largest_block_of_heap = 32 << 20;
  ::mallopt(M_MMAP_THRESHOLD, largest_block_of_heap);
  ::mallopt(M_TRIM_THRESHOLD, -1);
  if (heap == Heap::fresh) ::malloc_trim(0);
}

}  // namespace bench
