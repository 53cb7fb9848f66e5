// Walks over the entries of a list that is being written.
#pragma once

#include "core/generic_edl_entry.h"
#include "host/framework/ob_list.h"

namespace native {

// Asks the processor for the parts of an entry that the binary formats read.
inline void fetch_ahead(const CGenericEdlEntry& entry) {
#if defined(__GNUC__)
  __builtin_prefetch(&entry.source_in);
  __builtin_prefetch(&entry.dest_in);
  __builtin_prefetch(&entry.first_channel);
  __builtin_prefetch(&entry.clip_name);
  __builtin_prefetch(&entry.chunk_flags);
  __builtin_prefetch(&entry.source_reel_name);
  __builtin_prefetch(&entry.source_timestamp);
#else
  static_cast<void>(entry);
#endif
}

// Calls `work` with each entry. Entries are large and lie far apart in memory, so the
// next one is fetched while one is worked on; without that, waiting for memory is
// half of an export.
template <class Work>
void for_each_entry(const CObList& entries, Work work) {
  for (POSITION at = entries.GetHeadPosition(); at != nullptr;) {
    auto& entry = *static_cast<CGenericEdlEntry*>(entries.GetNext(at));
    if (at != nullptr) fetch_ahead(*static_cast<const CGenericEdlEntry*>(entries.GetAt(at)));
    work(entry);
  }
}

}  // namespace native
