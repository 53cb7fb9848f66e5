#include "text/dump_index.h"

#include <algorithm>

namespace text {

DumpIndex::Extent DumpIndex::Extent::join(const Extent& a, const Extent& b) {
  return {std::min(a.least_in, b.least_in), std::max(a.greatest_out, b.greatest_out)};
}

std::uint64_t DumpIndex::key_of(const CGenericEdlEntry& entry) {
  wide_char reel[4];
  entry.get_reel_name(reel, 4);
  std::uint64_t key = entry.get_stream(0);
  for (int i = 0; i < 3; ++i)
    key = key << 16 | reel[i];
  return key;
}

DumpIndex::DumpIndex(const CObList& dump_list) : list_changes_(dump_list.changes()) {
  std::unordered_map<std::uint64_t, std::vector<CGenericEdlEntry*>> by_key;
  for (POSITION at = dump_list.GetHeadPosition(); at != nullptr;) {
    auto* const entry = static_cast<CGenericEdlEntry*>(dump_list.GetNext(at));
    by_key[key_of(*entry)].push_back(entry);
  }
  for (auto& [key, entries] : by_key) {
    std::vector<Extent> extents;
    extents.reserve(entries.size());
    for (const CGenericEdlEntry* entry : entries)
      extents.push_back({entry->dest_in, entry->dest_out});
    buckets_.emplace(key, Bucket{std::move(entries), LeftmostTree<Extent>(extents)});
  }
}

CGenericEdlEntry* DumpIndex::find(const CGenericEdlEntry& entry) const {
  const auto hit = buckets_.find(key_of(entry));
  if (hit == buckets_.end()) return nullptr;
  const Bucket& bucket = hit->second;
  if (entry.source_in == entry.source_out) return bucket.entries.front();
  const std::size_t place = bucket.extents.find(0, [&entry](const Extent& extent) {
    return extent.least_in <= entry.source_in && extent.greatest_out >= entry.source_out;
  });
  return place < bucket.entries.size() ? bucket.entries[place] : nullptr;
}

}  // namespace text
