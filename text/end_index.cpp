#include "text/end_index.h"

#include <algorithm>

#include "core/sample_math.h"

namespace text {

void EndIndex::add(CGenericEdlEntry* entry) {
  put({count_++, entry});
}

void EndIndex::put(const Passed& passed) {
  Ends& ends = ends_[key_of(*passed.second)];
  ends.push_back(passed);
  std::push_heap(ends.begin(), ends.end());
}

CGenericEdlEntry* EndIndex::nearest(unsigned short stream, std::int64_t dest_out) const {
  const auto hit = ends_.find({stream, dest_out});
  return hit == ends_.end() || hit->second.empty() ? nullptr : hit->second.front().second;
}

void EndIndex::let_fade_out(CGenericEdlEntry& entry, std::int64_t length) {
  Ends& from = ends_[key_of(entry)];
  std::pop_heap(from.begin(), from.end());
  const Passed moved = from.back();
  from.pop_back();
  entry.source_out = plus(entry.source_out, length);
  entry.dest_out = plus(entry.dest_out, length);
  entry.fade_out_length = length;
  put(moved);
}

}  // namespace text
