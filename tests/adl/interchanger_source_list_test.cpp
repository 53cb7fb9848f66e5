// The source list of an interchange job, and the numbers that an export takes from it.
#include "adl/interchanger_source_list.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "adl/source_numbers.h"
#include "tests/support/scripted_host.h"

namespace {

class SourceList : public testing::Test {
 protected:
  ~SourceList() override { delete GetInterchangerSourceList(); }

  using Numbers = std::vector<int>;

  // The numbers of one export.
  static Numbers numbers(bool interchange, const std::vector<CAudCnt*>& sources) {
    adl::SourceNumbers count(interchange);
    Numbers numbers;
    for (CAudCnt* const source : sources)
      numbers.push_back(count.next(source));
    count.finish();
    return numbers;
  }

  support::ScriptedHost host;
  support::FakeAudCnt first{48000, 24, {}};
  support::FakeAudCnt second{48000, 24, {}};
  support::FakeAudCnt third{48000, 24, {}};
  CAudCnt* const a = &first;
  CAudCnt* const b = &second;
  CAudCnt* const c = &third;
};

TEST_F(SourceList, TheLastOneMadeIsThatOfTheProcess) {
  EXPECT_EQ(GetInterchangerSourceList(), nullptr);
  auto one = std::make_unique<CInterchangerSourceList>();
  EXPECT_EQ(GetInterchangerSourceList(), one.get());
  auto other = std::make_unique<CInterchangerSourceList>();
  EXPECT_EQ(GetInterchangerSourceList(), other.get());
  one.reset();
  EXPECT_EQ(GetInterchangerSourceList(), nullptr);
}

TEST_F(SourceList, AnswersTheFirstRecordOfASource) {
  CInterchangerSourceList list;
  EXPECT_EQ(list.GetSourceIndex(a), -1);
  list.AddSource(a, 4, 0);
  list.AddSource(a, 9, 1);
  list.AddSource(nullptr, 7, 1);
  EXPECT_EQ(list.GetSourceIndex(a), 4);
  EXPECT_EQ(list.is_new(a), 0);
  EXPECT_EQ(list.GetSourceIndex(nullptr), 7);
  EXPECT_EQ(list.is_new(nullptr), 1);
  EXPECT_EQ(list.GetSourceIndex(b), -1);
  EXPECT_EQ(list.is_new(b), 0);
}

TEST_F(SourceList, GivesTheFirstRecordToAnotherSource) {
  CInterchangerSourceList list;
  list.AddSource(a, 4, 0);
  list.AddSource(a, 9, 0);
  list.ChangeSource(c, b);
  EXPECT_EQ(list.GetSourceIndex(b), -1);
  list.ChangeSource(a, b);
  EXPECT_EQ(list.GetSourceIndex(b), 4);
  EXPECT_EQ(list.GetSourceIndex(a), 9);
  list.ChangeSource(a, a);
  EXPECT_EQ(list.GetSourceIndex(a), 9);
}

// What was changed keeps its place in the list, in front of what b had already.
TEST_F(SourceList, AChangedRecordKeepsItsPlace) {
  CInterchangerSourceList list;
  list.AddSource(a, 1, 0);
  list.AddSource(b, 2, 0);
  list.ChangeSource(a, b);
  EXPECT_EQ(list.GetSourceIndex(b), 1);
  list.ChangeSource(b, c);
  EXPECT_EQ(list.GetSourceIndex(b), 2);
  EXPECT_EQ(list.GetSourceIndex(c), 1);
}

TEST_F(SourceList, ReindexTellsTheAudioEngine) {
  CInterchangerSourceList list;
  list.AddSource(a, 4, 1);
  list.AddSource(a, 5, 1);
  list.reindex(b, 3);
  EXPECT_TRUE(host.sound.reindexed.empty());
  list.reindex(a, 2);
  EXPECT_EQ(host.sound.reindexed, (std::vector<std::pair<int, int>>{{4, 2}}));
  EXPECT_EQ(list.GetSourceIndex(a), 2);
  EXPECT_EQ(list.is_new(a), 0);
}

TEST_F(SourceList, APlainExportCountsFromOne) {
  EXPECT_EQ(numbers(false, {a, b, c}), (Numbers{1, 2, 3}));
  EXPECT_EQ(GetInterchangerSourceList(), nullptr);
}

TEST_F(SourceList, TheFirstExportOfAJobFillsAListAndTheSecondUsesItUp) {
  EXPECT_EQ(numbers(true, {a, b, c}), (Numbers{1, 2, 3}));
  CInterchangerSourceList* const list = GetInterchangerSourceList();
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->GetSourceIndex(a), 0);
  EXPECT_EQ(list->GetSourceIndex(b), 1);
  EXPECT_EQ(list->GetSourceIndex(c), 2);
  EXPECT_EQ(list->is_new(a), 0);
  EXPECT_EQ(numbers(true, {a, b, c}), (Numbers{1, 2, 3}));
  EXPECT_EQ(GetInterchangerSourceList(), nullptr);
  EXPECT_TRUE(host.sound.reindexed.empty());
}

TEST_F(SourceList, KnownSourcesMoveTheCount) {
  (new CInterchangerSourceList)->AddSource(b, 4, 0);
  EXPECT_EQ(numbers(true, {a, b, c}), (Numbers{1, 5, 6}));
  EXPECT_EQ(GetInterchangerSourceList(), nullptr);
}

TEST_F(SourceList, NewSourcesGetTheNumberOfTheCount) {
  (new CInterchangerSourceList)->AddSource(a, 7, 1);
  EXPECT_EQ(numbers(true, {a, a}), (Numbers{1, 1}));
  EXPECT_EQ(host.sound.reindexed, (std::vector<std::pair<int, int>>{{7, 0}}));
}

TEST_F(SourceList, APlainExportUsesUpAListAsWell) {
  (new CInterchangerSourceList)->AddSource(c, 11, 0);
  EXPECT_EQ(numbers(false, {a, c}), (Numbers{1, 12}));
  EXPECT_EQ(GetInterchangerSourceList(), nullptr);
}

// Sources without an audio content are all the same to the list.
TEST_F(SourceList, SourcesOfNoContentShareANumber) {
  EXPECT_EQ(numbers(true, {nullptr, nullptr}), (Numbers{1, 2}));
  EXPECT_EQ(numbers(true, {nullptr, a, nullptr}), (Numbers{1, 2, 1}));
}

TEST_F(SourceList, NumbersOf32768AndAboveAreUnknown) {
  (new CInterchangerSourceList)->AddSource(a, static_cast<short>(40000 - 65536), 0);
  EXPECT_EQ(numbers(true, {b, a}), (Numbers{1, 2}));
}

TEST_F(SourceList, TheCountIsSixteenBitsWide) {
  const std::vector<CAudCnt*> many(65537, nullptr);
  const Numbers all = numbers(false, many);
  EXPECT_EQ(all[32767], 32768);
  EXPECT_EQ(all[65534], 65535);
  EXPECT_EQ(all[65535], 0);
  EXPECT_EQ(all[65536], 1);
}

TEST_F(SourceList, AListOwnsItsRecords) {
  auto list = std::make_unique<CInterchangerSourceList>();
  for (short i = 0; i < 1000; ++i)
    list->AddSource(a, i, 0);
  // The leak check of the sanitizer build counts them.
  list.reset();
  EXPECT_EQ(GetInterchangerSourceList(), nullptr);
}

}  // namespace
