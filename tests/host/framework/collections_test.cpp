#include "host/framework/collections.h"

#include <gtest/gtest.h>

namespace {

TEST(Array, GrowsOnDemand) {
  CArray<int> array;
  EXPECT_TRUE(array.IsEmpty());
  EXPECT_EQ(array.Add(7), 0);
  array.SetAtGrow(3, 9);
  EXPECT_EQ(array.GetSize(), 4);
  EXPECT_EQ(array.GetAt(0), 7);
  EXPECT_EQ(array.GetAt(1), 0);
  EXPECT_EQ(array.GetAt(3), 9);
  array.SetAtGrow(0, 5);
  EXPECT_EQ(array.GetSize(), 4);
  EXPECT_EQ(array.GetAt(0), 5);
  array.GetAt(1) = 6;
  EXPECT_EQ(std::vector<int>(array.begin(), array.end()), (std::vector<int>{5, 6, 0, 9}));
  array.RemoveAll();
  EXPECT_TRUE(array.IsEmpty());
}

TEST(Array, OfTexts) {
  CStringArray names;
  EXPECT_EQ(names.Add(u"a"), 0);
  EXPECT_EQ(names.Add(u"b"), 1);
  EXPECT_EQ(names.GetAt(1), u"b");
}

TEST(List, KeepsTheOrderOfArrival) {
  CStringList list;
  list.AddTail(u"a");
  list.AddTail(u"b");
  EXPECT_EQ(list.GetCount(), 2);
  EXPECT_EQ(list.RemoveHead(), u"a");
  EXPECT_EQ(*list.begin(), u"b");
  EXPECT_EQ(list.RemoveHead(), u"b");
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.begin(), list.end());
  list.AddTail(u"c");
  list.RemoveAll();
  EXPECT_EQ(list.GetCount(), 0);
}

}  // namespace
