// Finds the edit that ends where another begins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "core/generic_edl_entry.h"

namespace text {

// The entries that a walk through a list has passed, by stream 0 and destination
// out. Passed entries stay on the list and change through the index alone.
class EndIndex {
 public:
  // Entries come in list order.
  void add(CGenericEdlEntry* entry) { ends_[key_of(*entry)].emplace_back(count_++, entry); }

  // The last one passed that ends at `dest_out` on the stream; null for none.
  [[nodiscard]] CGenericEdlEntry* nearest(unsigned short stream, std::int64_t dest_out) const;

  // Lets an entry run on for `length` samples more, in which it fades out. It must be
  // the last one passed of those that end where it does.
  void let_fade_out(CGenericEdlEntry& entry, std::int64_t length);

 private:
  using Key = std::pair<unsigned short, std::int64_t>;
  // Places in the list, rising, with their entries.
  using Ends = std::vector<std::pair<std::size_t, CGenericEdlEntry*>>;

  static Key key_of(const CGenericEdlEntry& entry) { return {entry.get_stream(0), entry.dest_out}; }

  std::map<Key, Ends> ends_;
  std::size_t count_ = 0;
};

}  // namespace text
