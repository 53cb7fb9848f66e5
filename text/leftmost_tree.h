// Finds, in a row of elements, the leftmost one from a place on for which a test
// holds, without looking at each.
#pragma once

#include <cstddef>
#include <vector>

namespace text {

// `Summary` stands for one element or for a stretch of them. A default-made one is
// the summary of nothing, and Summary::join(a, b) that of two stretches. A test is
// asked of summaries: it must hold for every stretch that may have an element for
// which it holds, and be exact for a single element.
template <class Summary>
class LeftmostTree {
 public:
  explicit LeftmostTree(const std::vector<Summary>& row) {
    while (width_ < row.size())
      width_ *= 2;
    nodes_.resize(2 * width_);
    for (std::size_t i = 0; i < row.size(); ++i)
      nodes_[width_ + i] = row[i];
    for (std::size_t node = width_ - 1; node > 0; --node)
      nodes_[node] = Summary::join(nodes_[2 * node], nodes_[2 * node + 1]);
  }

  static constexpr std::size_t none = static_cast<std::size_t>(-1);

  // `from` may lie behind the row.
  template <class Test>
  [[nodiscard]] std::size_t find(std::size_t from, Test test) const {
    if (from >= width_) return none;
    std::size_t node = width_ + from;
    for (;;) {
      if (test(nodes_[node])) {
        if (node >= width_) return node - width_;
        node *= 2;
        continue;
      }
      // On to the stretch behind this one: up while it ends its parent's.
      while (node % 2 != 0)
        node /= 2;
      if (node == 0) return none;
      ++node;
    }
  }

  void set(std::size_t place, const Summary& element) {
    std::size_t node = width_ + place;
    nodes_[node] = element;
    for (node /= 2; node > 0; node /= 2)
      nodes_[node] = Summary::join(nodes_[2 * node], nodes_[2 * node + 1]);
  }

 private:
  // Elements in the lowest row, a power of two. Node 1 is the whole; below node n
  // stand 2n and 2n + 1.
  std::size_t width_ = 1;
  std::vector<Summary> nodes_;
};

}  // namespace text
