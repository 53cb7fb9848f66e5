// The order of edits on one channel of the EDL2 file, as they are put there one by
// one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class CGenericEdlEntry;

namespace native {

// A new edit goes in front of the first edit of the channel that begins behind the
// new edit's end, or to the end of the channel; it is refused when it overlaps any
// edit in front of that place. Edits behind the place are not looked at, and an
// edit that ends exactly where another begins goes behind it, so the order is not
// always that of time, and an overlap may go unseen once it is not.
//
// Edits in time order cost a step each. From the first one out of order on, the
// edits stand in a balanced tree by place, and each new one costs a logarithm.
class ChannelOrder {
 public:
  // False, with nothing changed, when the edit overlaps. Not owned.
  [[nodiscard]] bool insert(CGenericEdlEntry* entry);
  [[nodiscard]] std::vector<CGenericEdlEntry*> entries() const;
  [[nodiscard]] std::size_t size() const { return m_nodes.size(); }

 private:
  // Of a run of neighbours: the latest beginning, the latest end, and the latest
  // end among those that begin before the latest beginning.
  struct Bounds {
    std::int64_t latest_in = INT64_MIN;
    std::int64_t latest_out = INT64_MIN;
    std::int64_t latest_out_before = INT64_MIN;
  };
  static constexpr std::uint32_t none = 0xFFFFFFFF;
  struct Node {
    CGenericEdlEntry* entry = nullptr;
    // Its own, then those of its tree.
    std::int64_t in = 0;
    std::int64_t out = 0;
    Bounds bounds;
    std::uint32_t left = none;
    std::uint32_t right = none;
    std::uint32_t priority = 0;
  };

  static Bounds joined(const Bounds& a, const Bounds& b);
  static bool overlaps(const Bounds& bounds, std::int64_t in, std::int64_t out);
  [[nodiscard]] Bounds bounds_of(std::uint32_t node) const;
  std::uint32_t new_node(CGenericEdlEntry* entry);
  void update(std::uint32_t node);
  void build_tree();
  // Parts a tree in front of its first edit that begins behind `time`.
  void split(std::uint32_t tree, std::int64_t time, std::uint32_t& left, std::uint32_t& right);
  std::uint32_t merge(std::uint32_t left, std::uint32_t right);

  std::vector<Node> m_nodes;
  // Of all nodes while they stand in the order of `m_nodes`, which is until there
  // is a tree.
  Bounds m_bounds;
  std::uint32_t m_root = none;
  std::uint32_t m_random = 0x9E3779B9;
};

}  // namespace native
