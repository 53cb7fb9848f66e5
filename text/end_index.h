// Finds the edit that ends where another begins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "core/generic_edl_entry.h"

namespace text {

// The entries that a walk through a list has passed, by stream 0 and destination
// out. Passed entries stay on the list and change through the index alone.
class EndIndex {
 public:
  // Entries come in list order.
  void add(CGenericEdlEntry* entry);

  // The last one passed that ends at `dest_out` on the stream; null for none.
  [[nodiscard]] CGenericEdlEntry* nearest(unsigned short stream, std::int64_t dest_out) const;

  // Lets an entry run on for `length` samples more, in which it fades out. It must be
  // the last one passed of those that end where it does.
  void let_fade_out(CGenericEdlEntry& entry, std::int64_t length);

 private:
  using Key = std::pair<unsigned short, std::int64_t>;
  // An entry with its place in the list.
  using Passed = std::pair<std::size_t, CGenericEdlEntry*>;
  // One key's entries. Nearly always there is one, so only others go to a heap of their
  // own, the last one passed on top: an entry that ran on may come to stand before any
  // number of others.
  struct Slot {
    Key key;
    bool used = false;
    std::uint32_t others = none;
    Passed last{};
  };
  static constexpr std::uint32_t none = UINT32_MAX;

  static Key key_of(const CGenericEdlEntry& entry) { return {entry.get_stream(0), entry.dest_out}; }

  // Where the key stands or would stand. The table must have room.
  [[nodiscard]] std::size_t place_of(const Key& key) const;
  void grow();
  void put(const Passed& passed);

  // Open addressing, at most half full; its size is a power of two, or 0.
  std::vector<Slot> slots_;
  std::size_t used_ = 0;
  std::vector<std::vector<Passed>> heaps_;
  std::size_t count_ = 0;
};

}  // namespace text
