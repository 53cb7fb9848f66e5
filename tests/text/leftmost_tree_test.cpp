#include "text/leftmost_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

struct Least {
  int value = 1000;
  static Least join(const Least& a, const Least& b) { return {std::min(a.value, b.value)}; }
};
using Tree = text::LeftmostTree<Least>;

TEST(LeftmostTree, EmptyRowHasNothing) {
  const Tree tree({});
  EXPECT_EQ(tree.find(0, [](const Least& l) { return l.value < 1000; }), Tree::none);
  EXPECT_EQ(tree.find(9, [](const Least& l) { return l.value < 1000; }), Tree::none);
}

TEST(LeftmostTree, AgreesWithALookAtEach) {
  std::mt19937 random(7);
  for (int run = 0; run < 200; ++run) {
    std::vector<Least> row(random() % 40);
    for (Least& element : row)
      element.value = static_cast<int>(random() % 20);
    Tree tree(row);
    for (int step = 0; step < 50; ++step) {
      if (!row.empty() && random() % 3 == 0) {
        const std::size_t place = random() % row.size();
        row[place].value = static_cast<int>(random() % 20);
        tree.set(place, row[place]);
      }
      const std::size_t from = random() % 45;
      const int limit = static_cast<int>(random() % 20);
      std::size_t expected = Tree::none;
      for (std::size_t i = from; i < row.size() && expected == Tree::none; ++i)
        if (row[i].value < limit) expected = i;
      ASSERT_EQ(tree.find(from, [limit](const Least& l) { return l.value < limit; }), expected);
    }
  }
}

}  // namespace
