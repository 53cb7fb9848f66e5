// Walks through lists of entries that do not fit the cache.
#pragma once

#include <cstddef>

#include "core/generic_edl_entry.h"
#include "host/framework/ob_list.h"

// Asks for entries of a list ahead of the one whose turn it is, so that the members that
// its walk looks at, one for each cache line of 64 bytes, are on their way from memory
// before that. Entries may be null.
template <auto... members>
class EntryLookAhead {
 public:
  EntryLookAhead(const CObList& list, POSITION first) : list_(list), ahead_(first) {
    for (std::size_t i = 0; i < distance && ahead_ != nullptr; ++i)
      step();
  }

  // For each entry that has its turn.
  void step() {
    if (ahead_ == nullptr) return;
    const auto* const entry = static_cast<const CGenericEdlEntry*>(list_.GetNext(ahead_));
    if (entry != nullptr) (__builtin_prefetch(&(entry->*members)), ...);
  }
  // To be told before a node leaves the list.
  void before_removal(POSITION position) {
    if (position == ahead_) list_.GetNext(ahead_);
  }

 private:
  static constexpr std::size_t distance = 16;

  const CObList& list_;
  POSITION ahead_;
};

// Hands out the entries of a list from head to tail and looks ahead. Those that were
// handed out may leave the list; those ahead must stay until they have had their turn.
template <auto... members>
class EntryWalk {
 public:
  explicit EntryWalk(const CObList& list) : EntryWalk(list, list.GetHeadPosition()) {}
  EntryWalk(const CObList& list, POSITION first) : list_(list), at_(first), ahead_(list, first) {}

  // Of the entry that is handed out next; null behind the tail.
  [[nodiscard]] POSITION position() const { return at_; }
  CGenericEdlEntry* next() {
    ahead_.step();
    return static_cast<CGenericEdlEntry*>(list_.GetNext(at_));
  }

 private:
  const CObList& list_;
  POSITION at_ = nullptr;
  EntryLookAhead<members...> ahead_;
};
