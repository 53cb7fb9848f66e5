// Walks through lists of entries that do not fit the cache.
#pragma once

#include <cstddef>

#include "core/generic_edl_entry.h"
#include "host/framework/ob_list.h"

// Hands out the entries of a list from head to tail and asks for what lies ahead: the
// members that the caller looks at, one for each cache line of 64 bytes, are on their way
// from memory before an entry's turn comes. Entries may be null. Those that were handed
// out may leave the list; those ahead must stay until they have had their turn.
template <auto... members>
class EntryWalk {
 public:
  explicit EntryWalk(const CObList& list) : EntryWalk(list, list.GetHeadPosition()) {}
  EntryWalk(const CObList& list, POSITION first) : list_(list), at_(first), ahead_(first) {
    for (std::size_t i = 0; i < distance && ahead_ != nullptr; ++i)
      look_ahead();
  }

  // Of the entry that is handed out next; null behind the tail.
  [[nodiscard]] POSITION position() const { return at_; }
  CGenericEdlEntry* next() {
    if (ahead_ != nullptr) look_ahead();
    return static_cast<CGenericEdlEntry*>(list_.GetNext(at_));
  }

 private:
  static constexpr std::size_t distance = 16;

  void look_ahead() {
    const auto* const entry = static_cast<const CGenericEdlEntry*>(list_.GetNext(ahead_));
    if (entry != nullptr) (__builtin_prefetch(&(entry->*members)), ...);
  }

  const CObList& list_;
  POSITION at_;
  POSITION ahead_;
};
