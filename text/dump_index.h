// Finds entries of a dump list by reel, stream and the stretch that they cover.
#pragma once

#include <cstdint>
#include <limits>
#include <unordered_map>
#include <vector>

#include "core/generic_edl_entry.h"
#include "host/framework/ob_list.h"
#include "text/leftmost_tree.h"

namespace text {

// Made from a list of CGenericEdlEntry objects, which must stay as they are.
class DumpIndex {
 public:
  explicit DumpIndex(const CObList& dump_list);

  // The first entry in list order with the same first three characters of its reel
  // and the same stream 0 whose destination covers the source of `entry`, or any
  // such when that source has no length. Null for none.
  [[nodiscard]] CGenericEdlEntry* find(const CGenericEdlEntry& entry) const;

  // Whether the list has not changed since.
  [[nodiscard]] bool is_of(const CObList& dump_list) const {
    return dump_list.changes() == list_changes_;
  }

 private:
  struct Extent {
    std::int64_t least_in = std::numeric_limits<std::int64_t>::max();
    std::int64_t greatest_out = std::numeric_limits<std::int64_t>::min();
    static Extent join(const Extent& a, const Extent& b);
  };
  struct Bucket {
    // In list order.
    std::vector<CGenericEdlEntry*> entries;
    LeftmostTree<Extent> extents;
  };

  // By key_of.
  std::unordered_map<std::uint64_t, Bucket> buckets_;
  std::uint64_t list_changes_;

  // Three characters of the reel's name and the stream, 16 bits each.
  static std::uint64_t key_of(const CGenericEdlEntry& entry);
};

}  // namespace text
