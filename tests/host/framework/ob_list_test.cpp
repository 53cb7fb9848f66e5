#include "host/framework/ob_list.h"

#include <gtest/gtest.h>

#include <array>
#include <iterator>
#include <list>
#include <memory>
#include <new>
#include <random>
#include <vector>

#include "tests/support/faulty_allocations.h"

namespace {

struct Item : CObject {
  Item() { ++alive; }
  ~Item() override { --alive; }
  Item(const Item&) = delete;
  Item& operator=(const Item&) = delete;
  static int alive;
};
int Item::alive = 0;

std::vector<CObject*> forward(const CObList& list) {
  std::vector<CObject*> out;
  for (POSITION at = list.GetHeadPosition(); at != nullptr;)
    out.push_back(list.GetNext(at));
  return out;
}

std::vector<CObject*> backward(const CObList& list) {
  std::vector<CObject*> out;
  for (POSITION at = list.GetTailPosition(); at != nullptr;)
    out.push_back(list.GetPrev(at));
  return out;
}

TEST(ObList, EmptyList) {
  const CObList list;
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.GetCount(), 0);
  EXPECT_EQ(list.GetHeadPosition(), nullptr);
  EXPECT_EQ(list.GetTailPosition(), nullptr);
  EXPECT_EQ(list.Find(nullptr), nullptr);
}

TEST(ObList, AddsAtBothEnds) {
  Item a, b, c;
  CObList list;
  list.AddTail(&b);
  list.AddTail(&c);
  list.AddHead(&a);
  EXPECT_EQ(forward(list), (std::vector<CObject*>{&a, &b, &c}));
  EXPECT_EQ(backward(list), (std::vector<CObject*>{&c, &b, &a}));
  EXPECT_EQ(list.GetHead(), &a);
  EXPECT_EQ(list.GetTail(), &c);
  EXPECT_EQ(list.GetCount(), 3);
}

TEST(ObList, InsertAfterANullPositionAppends) {
  Item a, b;
  CObList list;
  list.InsertAfter(nullptr, &a);
  list.InsertAfter(nullptr, &b);
  EXPECT_EQ(forward(list), (std::vector<CObject*>{&a, &b}));
}

TEST(ObList, InsertBeforeANullPositionGoesToTheHead) {
  Item a, b;
  CObList list;
  list.InsertBefore(nullptr, &a);
  list.InsertBefore(nullptr, &b);
  EXPECT_EQ(forward(list), (std::vector<CObject*>{&b, &a}));
}

TEST(ObList, InsertsBetween) {
  Item a, b, c, d;
  CObList list;
  const POSITION first = list.AddTail(&a);
  const POSITION last = list.AddTail(&d);
  EXPECT_EQ(list.GetAt(list.InsertAfter(first, &b)), &b);
  EXPECT_EQ(list.GetAt(list.InsertBefore(last, &c)), &c);
  EXPECT_EQ(forward(list), (std::vector<CObject*>{&a, &b, &c, &d}));
  EXPECT_EQ(backward(list), (std::vector<CObject*>{&d, &c, &b, &a}));
}

TEST(ObList, PositionsOutliveTheRemovalOfOthers) {
  Item a, b, c;
  CObList list;
  const POSITION first = list.AddTail(&a);
  const POSITION middle = list.AddTail(&b);
  const POSITION last = list.AddTail(&c);
  list.RemoveAt(middle);
  EXPECT_EQ(list.GetAt(first), &a);
  EXPECT_EQ(list.GetAt(last), &c);
  EXPECT_EQ(forward(list), (std::vector<CObject*>{&a, &c}));
  list.RemoveAt(first);
  list.RemoveAt(last);
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.GetHeadPosition(), nullptr);
  EXPECT_EQ(list.GetTailPosition(), nullptr);
}

TEST(ObList, RemovesFromTheEnds) {
  Item a, b, c;
  CObList list;
  list.AddTail(&a);
  list.AddTail(&b);
  list.AddTail(&c);
  EXPECT_EQ(list.RemoveHead(), &a);
  EXPECT_EQ(list.RemoveTail(), &c);
  EXPECT_EQ(list.RemoveHead(), &b);
  EXPECT_TRUE(list.IsEmpty());
}

TEST(ObList, FindGoesOnBehindAPosition) {
  Item a, b;
  CObList list;
  const POSITION first = list.AddTail(&a);
  list.AddTail(&b);
  const POSITION again = list.AddTail(&a);
  EXPECT_EQ(list.Find(&a), first);
  EXPECT_EQ(list.Find(&a, first), again);
  EXPECT_EQ(list.Find(&a, again), nullptr);
}

TEST(ObList, CountsItsChanges) {
  Item a, b;
  CObList list;
  std::uint64_t before = list.changes();
  const auto changed = [&] {
    const bool rose = list.changes() > before;
    before = list.changes();
    return rose;
  };
  const POSITION at = list.AddTail(&a);
  EXPECT_TRUE(changed());
  list.SetAt(at, &b);
  EXPECT_TRUE(changed());
  EXPECT_EQ(list.GetAt(at), &b);
  EXPECT_FALSE(changed());
  list.RemoveAt(at);
  EXPECT_TRUE(changed());
  list.RemoveAll();
  EXPECT_TRUE(changed());
}

TEST(ObList, DoesNotOwnItsObjects) {
  const auto item = std::make_unique<Item>();
  {
    CObList list;
    list.AddTail(item.get());
    list.RemoveAll();
    EXPECT_TRUE(list.IsEmpty());
    list.AddTail(item.get());
  }
  EXPECT_EQ(Item::alive, 1);
}

TEST(ObList, DeleteAllDeletesTheObjects) {
  CObList list;
  for (int i = 0; i < 25; ++i)
    list.AddTail(new Item);
  EXPECT_EQ(Item::alive, 25);
  delete_all(list);
  EXPECT_EQ(Item::alive, 0);
  EXPECT_TRUE(list.IsEmpty());
}

TEST(ObList, NodesComeInBlocks) {
  Item item;
  CObList list(10);
  support::FaultyAllocations counting(0);
  for (int i = 0; i < 10; ++i)
    list.AddTail(&item);
  // One block, and the place that remembers it.
  EXPECT_EQ(support::FaultyAllocations::count(), 2U);
  for (int i = 0; i < 1000; ++i) {
    list.RemoveHead();
    list.AddTail(&item);
  }
  EXPECT_EQ(support::FaultyAllocations::count(), 2U);
}

TEST(ObList, FailedAllocationLeavesTheListAsItWas) {
  Item item;
  for (std::uint64_t nth = 1; nth <= 2; ++nth) {
    CObList list(4);
    for (int i = 0; i < 4; ++i)
      list.AddTail(&item);
    bool failed = false;
    {
      const support::FaultyAllocations faults(nth);
      try {
        list.AddTail(&item);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
    }
    EXPECT_TRUE(failed) << nth;
    EXPECT_EQ(list.GetCount(), 4) << nth;
    EXPECT_EQ(forward(list).size(), 4U) << nth;
    list.AddTail(&item);
    EXPECT_EQ(backward(list).size(), 5U) << nth;
  }
}

// One random walk of every operation, beside the standard library's list.
class ListPair {
 public:
  explicit ListPair(unsigned seed) : random_(seed), list_(1 + static_cast<int>(seed % 12)) {}

  void step() {
    CObject* const object = &items_[below(items_.size())];
    switch (below(10)) {
      case 0:
        keep(list_.AddHead(object), plain_.insert(plain_.begin(), object));
        break;
      case 1:
      case 2:
        keep(list_.AddTail(object), plain_.insert(plain_.end(), object));
        break;
      case 3:
        insert_near(object, true);
        break;
      case 4:
        insert_near(object, false);
        break;
      case 5:
        set_one(object);
        break;
      default:
        remove_one();
    }
  }

  void compare() const {
    ASSERT_EQ(list_.GetCount(), static_cast<std::intptr_t>(plain_.size()));
    EXPECT_EQ(forward(list_), std::vector<CObject*>(plain_.begin(), plain_.end()));
    EXPECT_EQ(backward(list_), std::vector<CObject*>(plain_.rbegin(), plain_.rend()));
    for (const auto& [position, at] : places_)
      ASSERT_EQ(list_.GetAt(position), *at);
  }

 private:
  using Place = std::list<CObject*>::iterator;

  std::size_t below(std::size_t end) { return random_() % end; }
  void keep(POSITION position, Place at) { places_.emplace_back(position, at); }

  void insert_near(CObject* object, bool before) {
    if (places_.empty()) return;
    const auto [position, at] = places_[below(places_.size())];
    if (before)
      keep(list_.InsertBefore(position, object), plain_.insert(at, object));
    else
      keep(list_.InsertAfter(position, object), plain_.insert(std::next(at), object));
  }

  void set_one(CObject* object) {
    if (places_.empty()) return;
    const auto [position, at] = places_[below(places_.size())];
    list_.SetAt(position, object);
    *at = object;
  }

  void remove_one() {
    if (places_.empty()) return;
    const std::size_t i = below(places_.size());
    list_.RemoveAt(places_[i].first);
    plain_.erase(places_[i].second);
    places_[i] = places_.back();
    places_.pop_back();
  }

  std::mt19937 random_;
  std::array<Item, 4> items_;
  CObList list_;
  std::list<CObject*> plain_;
  std::vector<std::pair<POSITION, Place>> places_;
};

TEST(ObList, AgreesWithTheStandardListOnRandomOperations) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    ListPair pair(seed);
    for (int i = 0; i < 2000; ++i) {
      pair.step();
      if (i % 97 == 0) pair.compare();
    }
    pair.compare();
    if (HasFatalFailure()) return;
  }
}

}  // namespace
