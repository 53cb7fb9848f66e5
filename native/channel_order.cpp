#include "native/channel_order.h"

#include <algorithm>

#include "core/generic_edl_entry.h"

namespace native {

bool ChannelOrder::insert(CGenericEdlEntry* entry) {
  const std::int64_t in = entry->dest_in;
  const std::int64_t out = entry->dest_out;
  if (m_root == none && m_bounds.latest_in <= out) {
    if (overlaps(m_bounds, in, out)) return false;
    m_bounds = joined(m_bounds, m_nodes[new_node(entry)].bounds);
    return true;
  }
  if (m_root == none) build_tree();
  std::uint32_t before = none;
  std::uint32_t behind = none;
  split(m_root, out, before, behind);
  const bool free = !overlaps(bounds_of(before), in, out);
  if (free) before = merge(before, new_node(entry));
  m_root = merge(before, behind);
  return free;
}

std::vector<CGenericEdlEntry*> ChannelOrder::entries() const {
  std::vector<CGenericEdlEntry*> order;
  order.reserve(m_nodes.size());
  if (m_root == none) {
    for (const Node& node : m_nodes)
      order.push_back(node.entry);
    return order;
  }
  std::vector<std::uint32_t> waiting;
  for (std::uint32_t at = m_root; at != none || !waiting.empty();) {
    for (; at != none; at = m_nodes[at].left)
      waiting.push_back(at);
    at = waiting.back();
    waiting.pop_back();
    order.push_back(m_nodes[at].entry);
    at = m_nodes[at].right;
  }
  return order;
}

ChannelOrder::Bounds ChannelOrder::joined(const Bounds& a, const Bounds& b) {
  Bounds both;
  both.latest_in = std::max(a.latest_in, b.latest_in);
  both.latest_out = std::max(a.latest_out, b.latest_out);
  both.latest_out_before =
      std::max(a.latest_in < both.latest_in ? a.latest_out : a.latest_out_before,
               b.latest_in < both.latest_in ? b.latest_out : b.latest_out_before);
  return both;
}

// Whether one of a run, none of which begins behind `out`, begins before `out` and
// ends behind `in`.
bool ChannelOrder::overlaps(const Bounds& bounds, std::int64_t in, std::int64_t out) {
  return (bounds.latest_in < out ? bounds.latest_out : bounds.latest_out_before) > in;
}

ChannelOrder::Bounds ChannelOrder::bounds_of(std::uint32_t node) const {
  return node == none ? Bounds() : m_nodes[node].bounds;
}

std::uint32_t ChannelOrder::new_node(CGenericEdlEntry* entry) {
  // xorshift: the shape of the tree is the same in every run.
  m_random ^= m_random << 13;
  m_random ^= m_random >> 17;
  m_random ^= m_random << 5;
  Node node;
  node.entry = entry;
  node.in = entry->dest_in;
  node.out = entry->dest_out;
  node.bounds = {node.in, node.out, INT64_MIN};
  node.priority = m_random;
  m_nodes.push_back(node);
  return static_cast<std::uint32_t>(m_nodes.size() - 1);
}

void ChannelOrder::update(std::uint32_t node) {
  Node& top = m_nodes[node];
  const Bounds own = {top.in, top.out, INT64_MIN};
  top.bounds = joined(joined(bounds_of(top.left), own), bounds_of(top.right));
}

void ChannelOrder::build_tree() {
  // Along the right edge: a node takes what stands below its priority to its left.
  std::vector<std::uint32_t> edge;
  for (std::uint32_t i = 0; i < m_nodes.size(); ++i) {
    std::uint32_t below = none;
    while (!edge.empty() && m_nodes[edge.back()].priority < m_nodes[i].priority) {
      below = edge.back();
      update(below);
      edge.pop_back();
    }
    m_nodes[i].left = below;
    if (!edge.empty()) m_nodes[edge.back()].right = i;
    edge.push_back(i);
  }
  for (; !edge.empty(); edge.pop_back()) {
    update(edge.back());
    m_root = edge.front();
  }
}

void ChannelOrder::split(std::uint32_t tree, std::int64_t time, std::uint32_t& left,
                         std::uint32_t& right) {
  if (tree == none || bounds_of(tree).latest_in <= time) {
    left = tree;
    right = none;
    return;
  }
  Node& top = m_nodes[tree];
  if (bounds_of(top.left).latest_in > time || top.in > time) {
    right = tree;
    split(top.left, time, left, top.left);
  } else {
    left = tree;
    split(top.right, time, top.right, right);
  }
  update(tree);
}

std::uint32_t ChannelOrder::merge(std::uint32_t left, std::uint32_t right) {
  if (left == none) return right;
  if (right == none) return left;
  if (m_nodes[left].priority > m_nodes[right].priority) {
    m_nodes[left].right = merge(m_nodes[left].right, right);
    update(left);
    return left;
  }
  m_nodes[right].left = merge(left, m_nodes[right].left);
  update(right);
  return right;
}

}  // namespace native
