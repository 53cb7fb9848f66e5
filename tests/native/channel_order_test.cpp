#include "native/channel_order.h"

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <random>
#include <vector>

#include "core/generic_edl_entry.h"

namespace {

// The plain rule: walk to the first edit that begins behind the new edit's end,
// looking for an overlap on the way.
class PlainOrder {
 public:
  bool insert(CGenericEdlEntry* entry) {
    auto at = m_entries.begin();
    for (; at != m_entries.end() && (*at)->dest_in <= entry->dest_out; ++at) {
      if (entry->dest_in < (*at)->dest_out && (*at)->dest_in < entry->dest_out) return false;
    }
    m_entries.insert(at, entry);
    return true;
  }
  [[nodiscard]] std::vector<CGenericEdlEntry*> entries() const {
    return {m_entries.begin(), m_entries.end()};
  }

 private:
  std::list<CGenericEdlEntry*> m_entries;
};

std::unique_ptr<CGenericEdlEntry> entry_at(std::int64_t in, std::int64_t out) {
  auto entry = std::make_unique<CGenericEdlEntry>(nullptr);
  entry->dest_in = in;
  entry->dest_out = out;
  return entry;
}

TEST(ChannelOrder, NeighboursDoNotOverlap) {
  const auto a = entry_at(0, 100);
  const auto b = entry_at(100, 200);
  const auto c = entry_at(199, 300);
  native::ChannelOrder order;
  EXPECT_TRUE(order.insert(a.get()));
  EXPECT_TRUE(order.insert(b.get()));
  EXPECT_FALSE(order.insert(c.get()));
  EXPECT_EQ(order.size(), 2U);
  EXPECT_EQ(order.entries(), (std::vector{a.get(), b.get()}));
}

TEST(ChannelOrder, AnEditThatEndsWhereAnotherBeginsGoesBehindIt) {
  const auto a = entry_at(100, 200);
  const auto b = entry_at(0, 100);
  native::ChannelOrder order;
  EXPECT_TRUE(order.insert(a.get()));
  EXPECT_TRUE(order.insert(b.get()));
  EXPECT_EQ(order.entries(), (std::vector{a.get(), b.get()}));
  // An overlap with it then goes unseen behind the first one's beginning.
  const auto c = entry_at(50, 80);
  EXPECT_TRUE(order.insert(c.get()));
  EXPECT_EQ(order.entries(), (std::vector{c.get(), a.get(), b.get()}));
}

TEST(ChannelOrder, AnEditThatEndsEarlierGoesInFront) {
  const auto a = entry_at(300, 400);
  const auto b = entry_at(0, 100);
  native::ChannelOrder order;
  EXPECT_TRUE(order.insert(a.get()));
  EXPECT_TRUE(order.insert(b.get()));
  EXPECT_EQ(order.entries(), (std::vector{b.get(), a.get()}));
}

constexpr unsigned kinds_of_times = 5;

// In and out of the ith edit: one behind the other; neighbours in any order; short
// ones; some that end before they begin; the ends of the range.
std::pair<std::int64_t, std::int64_t> random_times(unsigned kind, int i, std::mt19937& random) {
  const auto between = [&random](int low, int high) -> std::int64_t {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  if (kind == 0) return {i * 10, i * 10 + 10};
  const std::int64_t in = kind == 1 ? between(0, 400) * 10 : between(0, kind == 2 ? 3000 : 60);
  if (kind == 1) return {in, in + 10};
  if (kind == 2) return {in, in + between(0, 9)};
  if (kind == 3) return {in, in + between(-3, 6)};
  constexpr std::int64_t extremes[] = {INT64_MIN, -1, 0, 1, 5, INT64_MAX - 1, INT64_MAX};
  return {extremes[between(0, 6)], extremes[between(0, 6)]};
}

TEST(ChannelOrder, AgreesWithThePlainWalk) {
  std::size_t refused = 0;
  std::size_t accepted = 0;
  for (unsigned seed = 0; seed < 100; ++seed) {
    std::mt19937 random(seed);
    native::ChannelOrder order;
    PlainOrder plain;
    std::vector<std::unique_ptr<CGenericEdlEntry>> owner;
    for (int i = 0; i < 600; ++i) {
      const auto [in, out] = random_times(seed % kinds_of_times, i, random);
      owner.push_back(entry_at(in, out));
      const bool inserted = order.insert(owner.back().get());
      ASSERT_EQ(inserted, plain.insert(owner.back().get())) << seed << ", " << i;
      (inserted ? accepted : refused) += 1;
    }
    ASSERT_EQ(order.entries(), plain.entries()) << seed;
    EXPECT_EQ(order.size(), plain.entries().size());
  }
  EXPECT_GT(refused, 1000U);
  EXPECT_GT(accepted, 1000U);
}

}  // namespace
