// Timecode slots, frame rates and marks.

#include "tests/aaf/import_fixture.h"

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr aafRational_t at_24 = {24, 1};
constexpr aafRational_t at_25 = {25, 1};
constexpr std::int64_t hour_48000 = 172'800'000;

class ImportTimecodeTest : public BothWaysImportTest {
 protected:
  // One clip at 0, of 48 kHz, beside the slots.
  result_code import_with(std::vector<AafSlot> slots, aafRational_t rate = at_48000) {
    slots.push_back(sound({clip(file().source({.slot_rate = rate}), 480)}, rate));
    return import(std::move(slots));
  }
  [[nodiscard]] std::int64_t start() const { return edits().at(0).in; }
};
INSTANTIATE_TEST_SUITE_P(, ImportTimecodeTest, both_ways(), way_name);

TEST_P(ImportTimecodeTest, TheStartMovesEntriesAndAutomationButNoMarks) {
  AafSlot clock = timecode(90'000, 25);
  clock.mark_in = 10;
  clock.mark_out = 20;
  const AafTake source = take();
  ASSERT_EQ(import({clock, sound({gain(1000, {point(0, 1, 1), point(1, 1, 1)}, clip(source, 1000)),
                                  clip(source, 1000)})}),
            100);
  EXPECT_EQ(aaf().frame_rate(), 1);
  EXPECT_EQ(aaf().sample_rate_index(), 2);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = hour_48000, .length = 1000},
                                   Edit{.in = hour_48000 + 1000, .length = 1000}));
  EXPECT_THAT(automation(),
              ElementsAre(Chunk{0, 0, {{hour_48000, 384}, {hour_48000 + 1000, 384}}}));
  EXPECT_THAT(locators(), ElementsAre("LEFT_LOCATOR\t\t\t 10", "RIGHT_LOCATOR\t\t 20"));
}

TEST_P(ImportTimecodeTest, DropFrames) {
  ASSERT_EQ(import_with({timecode(107'892, 30, kAAFTcDrop)}), 100);
  EXPECT_EQ(aaf().frame_rate(), 3);
  EXPECT_EQ(start(), 172'799'827);
}

TEST_P(ImportTimecodeTest, EachKindOfTimecodeHasItsFrameRate) {
  struct Row {
    aafDropType_t drop;
    aafUInt16 fps;
    int index;
  };
  constexpr Row rows[] = {{kAAFTcDrop, 29, 3},     {kAAFTcDrop, 30, 3},    {kAAFTcNonDrop, 24, 0},
                          {kAAFTcNonDrop, 25, 1},  {kAAFTcNonDrop, 29, 2}, {kAAFTcNonDrop, 30, 4},
                          {kAAFTcNonDrop, 60, 255}};
  int count = 0;
  for (const Row& row : rows) {
    path = folder.file(std::to_string(++count) + ".aaf");
    importer = std::make_unique<CAAFEdlFile>(&edl);
    ASSERT_EQ(import_with({timecode(0, row.fps, row.drop)}, at_25), 100);
    EXPECT_EQ(aaf().frame_rate(), row.index) << row.drop << " " << row.fps;
  }
}

TEST_P(ImportTimecodeTest, DropAt25LeavesTheRateToTheSlot) {
  ASSERT_EQ(import_with({timecode(0, 25, kAAFTcDrop)}, {30, 1}), 100);
  EXPECT_EQ(aaf().frame_rate(), 4);
}

TEST_P(ImportTimecodeTest, SixtyFramesGiveNoRateAndCountAs25) {
  ASSERT_EQ(import_with({timecode(216'000, 60)}, at_25), 100);
  EXPECT_EQ(aaf().frame_rate(), rate_not_set);
  EXPECT_EQ(start(), 414'720'000);
}

TEST_P(ImportTimecodeTest, OnlyTheFirstTrackOfTimecodeCounts) {
  ASSERT_EQ(import_with({timecode(90'000, 25, kAAFTcNonDrop, 2)}), 100);
  EXPECT_EQ(aaf().frame_rate(), rate_not_set);
  EXPECT_EQ(start(), 0);
}

TEST_P(ImportTimecodeTest, WithoutATrackNumberItCounts) {
  ASSERT_EQ(import_with({timecode(90'000, 25, kAAFTcNonDrop, 0)}), 100);
  EXPECT_EQ(aaf().frame_rate(), 1);
  EXPECT_EQ(start(), hour_48000);
}

TEST_P(ImportTimecodeTest, OfTwoTheLaterStartAndTheEarlierRate) {
  ASSERT_EQ(import_with({timecode(90'000, 25), timecode(1'000, 30)}), 100);
  EXPECT_EQ(aaf().frame_rate(), 1);
  EXPECT_EQ(start(), 1'920'000);
}

TEST_P(ImportTimecodeTest, TimecodeInASoundSlotIsNone) {
  AafSlot clock = timecode(90'000, 25);
  clock.segment.data = kAAFDataDef_Sound;
  ASSERT_EQ(import_with({clock}), 100);
  EXPECT_EQ(start(), 0);
}

TEST_P(ImportTimecodeTest, WithoutTimecodeTheEditRateDecides) {
  ASSERT_EQ(import_with({}, at_25), 100);
  EXPECT_EQ(aaf().frame_rate(), 1);
}

TEST_P(ImportTimecodeTest, AnEditRateOf24DecidesNothing) {
  ASSERT_EQ(import_with({}, at_24), 100);
  EXPECT_EQ(aaf().frame_rate(), rate_not_set);
}

TEST_P(ImportTimecodeTest, TheFirstKnownEditRateDecides) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({clip(source, 10)}, at_24), sound({clip(source, 10)}, {30, 1}),
                    sound({clip(source, 10)}, at_25)}),
            100);
  EXPECT_EQ(aaf().frame_rate(), 4);
}

TEST_P(ImportTimecodeTest, TheHostsFrameRateStays) {
  aaf().set_frame_rate(3);
  ASSERT_EQ(import_with({timecode(90'000, 25)}), 100);
  EXPECT_EQ(aaf().frame_rate(), 3);
  // At 30000/1001.
  EXPECT_EQ(start(), 144'144'000);
}

TEST_P(ImportTimecodeTest, OneMarkAlone) {
  AafSlot clock = timecode(0, 25);
  clock.mark_out = 20;
  ASSERT_EQ(import_with({clock}), 100);
  EXPECT_THAT(locators(), ElementsAre("RIGHT_LOCATOR\t\t 20"));
}

TEST_P(ImportTimecodeTest, ASlotWithoutMarksEndsTheirSearch) {
  AafSlot marked = timecode(0, 25);
  marked.mark_in = 10;
  ASSERT_EQ(import_with({timecode(0, 25), marked}), 100);
  EXPECT_THAT(locators(), IsEmpty());
}

// Marks are looked for on whatever is neither sound nor picture first.
TEST_P(ImportTimecodeTest, MarksOfASoundSlotAreReadWhenNoOtherSlotWas) {
  AafSlot marked = sound({clip(take(), 10)});
  marked.mark_in = 10;
  ASSERT_EQ(import({marked}), 100);
  EXPECT_THAT(locators(), ElementsAre("LEFT_LOCATOR\t\t\t 10"));
}

TEST_P(ImportTimecodeTest, MarksAreNotMovedAndMayLieAnywhere) {
  AafSlot clock = timecode(90'000, 25);
  clock.mark_in = -5;
  clock.mark_out = 9'000'000'000'000;
  ASSERT_EQ(import_with({clock}), 100);
  EXPECT_THAT(locators(), ElementsAre("LEFT_LOCATOR\t\t\t -5", "RIGHT_LOCATOR\t\t 9000000000000"));
}

}  // namespace
