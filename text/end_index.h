// Finds the edit that ends where another begins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
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
  // A heap, the last one passed on top: an entry that ran on may come to stand before
  // any number of others.
  using Ends = std::vector<Passed>;

  struct Hash {
    std::size_t operator()(const Key& key) const {
      const auto mixed =
          (static_cast<std::uint64_t>(key.second) * 64 + key.first) * 0x9E3779B97F4A7C15ULL;
      return static_cast<std::size_t>(mixed ^ (mixed >> 32));
    }
  };

  static Key key_of(const CGenericEdlEntry& entry) { return {entry.get_stream(0), entry.dest_out}; }

  void put(const Passed& passed);

  std::unordered_map<Key, Ends, Hash> ends_;
  std::size_t count_ = 0;
};

}  // namespace text
