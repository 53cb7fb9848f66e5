#include "text/end_index.h"

#include <algorithm>

#include "core/sample_math.h"

namespace text {

CGenericEdlEntry* EndIndex::nearest(unsigned short stream, std::int64_t dest_out) const {
  const auto hit = ends_.find({stream, dest_out});
  return hit == ends_.end() || hit->second.empty() ? nullptr : hit->second.back().second;
}

void EndIndex::let_fade_out(CGenericEdlEntry& entry, std::int64_t length) {
  Ends& from = ends_[key_of(entry)];
  const auto moved = from.back();
  from.pop_back();
  entry.source_out = plus(entry.source_out, length);
  entry.dest_out = plus(entry.dest_out, length);
  entry.fade_out_length = length;
  Ends& to = ends_[key_of(entry)];
  to.insert(std::upper_bound(to.begin(), to.end(), moved), moved);
}

}  // namespace text
