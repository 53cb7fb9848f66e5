// The small parts under a compound file: sets and runs of sectors, names.
#include <random>
#include <vector>

#include "aafobj/container/directory_entry.h"
#include "aafobj/container/run_pool.h"
#include "aafobj/container/sector_set.h"
#include "tests/aafobj/container/container_test_support.h"

namespace aafobj::test {
namespace {

TEST(SectorSet, RunsAcrossWordsAndBlocksAgreeWithAPlainSet) {
  std::mt19937 random(1);
  SectorSet set;
  std::vector<bool> plain(200000);
  for (int round = 0; round < 500; ++round) {
    const auto first = static_cast<std::uint32_t>(random() % 195000);
    const auto count = static_cast<std::uint32_t>(random() % (round % 10 == 0 ? 5000 : 70));
    bool all_new = true;
    for (std::uint32_t i = first; i < first + count; ++i) {
      all_new = all_new && !plain[i];
      plain[i] = true;
    }
    ASSERT_EQ(set.insert(first, count), all_new);
  }
  for (std::uint32_t i = 0; i < plain.size(); ++i)
    ASSERT_EQ(set.contains(i), plain[i]) << i;
  EXPECT_FALSE(set.contains(0xfffffffa));
}

TEST(RunPool, NeighboursJoin) {
  RunPool pool;
  pool.add({10, 5});
  pool.add({20, 5});
  pool.add({15, 5});
  EXPECT_EQ(pool.run_count(), 1U);
  SectorRun run;
  ASSERT_TRUE(pool.take(100, 15, run));
  EXPECT_EQ(run.first, 10U);
  EXPECT_EQ(run.count, 15U);
  EXPECT_FALSE(pool.take(1, 1, run));
}

TEST(RunPool, TakesTheSmallestThatFitsElseTheLargest) {
  RunPool pool;
  pool.add({0, 10});
  pool.add({100, 4});
  pool.add({200, 6});
  SectorRun run;
  ASSERT_TRUE(pool.take(5, 1, run));
  EXPECT_EQ(run.first, 200U);
  EXPECT_EQ(run.count, 5U);
  EXPECT_FALSE(pool.take(20, 11, run));
  ASSERT_TRUE(pool.take(20, 10, run));
  EXPECT_EQ(run.first, 0U);
  EXPECT_EQ(run.count, 10U);
}

TEST(RunPool, CutAndTail) {
  RunPool pool;
  pool.add({0, 10});
  pool.add({50, 10});
  EXPECT_EQ(pool.take_tail(70), 70U);
  EXPECT_EQ(pool.take_tail(60), 50U);
  pool.cut(4);
  SectorRun run;
  ASSERT_TRUE(pool.take(10, 1, run));
  EXPECT_EQ(run.count, 4U);
}

TEST(RunPool, NumberOfRunsIsBounded) {
  RunPool pool;
  for (std::uint32_t i = 0; i < 100000; ++i)
    pool.add({i * 10, i < 50000 ? 1U : 2U});
  EXPECT_EQ(pool.run_count(), 65536U);
  // The smallest are forgotten first, so all runs of two are there.
  SectorRun run;
  for (int i = 0; i < 50000; ++i)
    ASSERT_TRUE(pool.take(2, 2, run));
  EXPECT_FALSE(pool.take(2, 2, run));
}

TEST(EntryNames, OrderIsByLengthThenUpperCase) {
  EXPECT_TRUE(name_less(u"zz", u"aaa"));
  EXPECT_TRUE(name_less(u"a", u"B"));
  EXPECT_TRUE(name_less(u"A", u"b"));
  EXPECT_FALSE(name_less(u"abc", u"ABC"));
  EXPECT_FALSE(name_less(u"ABC", u"abc"));
  EXPECT_TRUE(name_less(u"Z", u"_"));
  EXPECT_TRUE(name_less(u"z", u"_"));
  // Letters outside ASCII: e with acute, Cyrillic de.
  EXPECT_FALSE(name_less(u"\u00c9", u"\u00e9"));
  EXPECT_FALSE(name_less(u"\u00e9", u"\u00c9"));
  EXPECT_FALSE(name_less(u"\u0414", u"\u0434"));
  EXPECT_FALSE(name_less(u"\u0434", u"\u0414"));
}

TEST(EntryNames, StoredFieldsComeBack) {
  DirectoryEntry entry;
  entry.set_name(u"Mobs-1901{1a}");
  entry.type = 1;
  entry.black = false;
  entry.left = 3;
  entry.child = 0x12345678;
  entry.class_id = class_of(3);
  entry.user_flags = 7;
  entry.creation_time = 0x0123456789abcdef;
  entry.modification_time = 42;
  entry.start = 9;
  entry.size = 0x500000001;
  Bytes bytes(k_entry_size, std::byte{0xee});
  encode_entry(entry, std::span(bytes).first<k_entry_size>());
  EXPECT_EQ(bytes[0x40], std::byte{28});  // 13 units and the NUL
  const auto stored = std::span<const std::byte>(bytes).first<k_entry_size>();
  const DirectoryEntry back = decode_entry(stored, false);
  EXPECT_EQ(back.name(), u"Mobs-1901{1a}");
  EXPECT_FALSE(back.black);
  EXPECT_EQ(back.left, 3U);
  EXPECT_EQ(back.right, k_no_entry);
  EXPECT_EQ(back.child, 0x12345678U);
  EXPECT_EQ(back.class_id, class_of(3));
  EXPECT_EQ(back.user_flags, 7U);
  EXPECT_EQ(back.creation_time, 0x0123456789abcdefU);
  EXPECT_EQ(back.modification_time, 42U);
  EXPECT_EQ(back.start, 9U);
  EXPECT_EQ(back.size, 0x500000001U);
  EXPECT_EQ(decode_entry(stored, true).size, 1U);
}

}  // namespace
}  // namespace aafobj::test
