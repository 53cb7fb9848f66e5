// Operation groups, gain and pan, and components that hold others.
//
// Slots and sources count samples of 48 kHz here.

#include "tests/aaf/import_fixture.h"

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Nobody's operation.
constexpr aafUID_t some_operation = {0xabcdef01, 0x1234, 0x5678, {1, 2, 3, 4, 5, 6, 7, 8}};

const std::vector<AafPoint> level = {point(0, 1, 1), point(1, 1, 1)};

class ImportOperationsTest : public BothWaysImportTest {};
INSTANTIATE_TEST_SUITE_P(, ImportOperationsTest, both_ways(), way_name);

TEST_P(ImportOperationsTest, AConstantGainIsTheLevel) {
  ASSERT_EQ(import({sound({gain(100, {1, 2}, clip(take(), 100))})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 100}));
  EXPECT_THAT(levels(), ElementsAre(0.5F));
  EXPECT_EQ(entry(0).gain_right, 1.0F);
}

TEST_P(ImportOperationsTest, GainInGainMultiplies) {
  ASSERT_EQ(import({sound({gain(100, {1, 2}, gain(100, {1, 2}, clip(take(), 100)))})}), 100);
  EXPECT_THAT(levels(), ElementsAre(0.25F));
}

TEST_P(ImportOperationsTest, GainRoundTwoClipsReachesTheFirst) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({gain(100, {1, 2}, sequence({clip(source, 60), clip(source, 40)}))})}),
            100);
  EXPECT_THAT(levels(), ElementsAre(0.5F, 1.0F));
}

TEST_P(ImportOperationsTest, GainReachesOnlyItsOwnSpanAndStream) {
  const AafTake source = take();
  ASSERT_EQ(
      import({sound({clip(source, 300)}),
              sound({clip(source, 100), gain(100, {1, 2}, clip(source, 100)), clip(source, 100)})}),
      100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.stream = 0, .in = 0, .length = 300},
                                   Edit{.stream = 1, .in = 0, .length = 100},
                                   Edit{.stream = 1, .in = 100, .length = 100},
                                   Edit{.stream = 1, .in = 200, .length = 100}));
  EXPECT_THAT(levels(), ElementsAre(1.0F, 1.0F, 0.5F, 1.0F));
}

TEST_P(ImportOperationsTest, TheOtherNameOfTheGain) {
  ASSERT_EQ(import({sound({group(100, kAAFOperationDef_MonoAudioGain, {clip(take(), 100)},
                                 {constant(kAAFParameterDef_Level, {1, 4})})})}),
            100);
  EXPECT_THAT(levels(), ElementsAre(0.25F));
}

TEST_P(ImportOperationsTest, OfBothNamesTheAmplitudeCounts) {
  ASSERT_EQ(import({sound({group(100, kAAFOperationDef_MonoAudioGain, {clip(take(), 100)},
                                 {constant(kAAFParameterDef_Level, {1, 4}),
                                  constant(kAAFParameterDef_Amplitude, {1, 2})})})}),
            100);
  EXPECT_THAT(levels(), ElementsAre(0.5F));
}

TEST_P(ImportOperationsTest, AGainWithoutEitherIsNone) {
  ASSERT_EQ(import({sound({group(100, kAAFOperationDef_MonoAudioGain, {clip(take(), 100)},
                                 {constant(kAAFParameterDef_Pan, {1, 4})})})}),
            100);
  EXPECT_THAT(levels(), ElementsAre(1.0F));
  EXPECT_THAT(automation(), IsEmpty());
}

TEST_P(ImportOperationsTest, AVaryingGainIsAutomation) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({filler(96'000), gain(48'000, level, clip(source, 48'000)),
                           gain(48'000, level, clip(source, 48'000))})}),
            100);
  // Where the second begins there is a point already, so its own is one sample late.
  EXPECT_THAT(
      automation(),
      ElementsAre(Chunk{0, 0, {{96'000, 384}, {144'000, 384}, {144'001, 384}, {192'000, 384}}}));
  EXPECT_THAT(levels(), ElementsAre(1.0F, 1.0F));
}

TEST_P(ImportOperationsTest, PointsBehindTheEndAreDropped) {
  ASSERT_EQ(import({sound({gain(100, {point(0, 1, 1), point(2, 1, 1)}, clip(take(), 100))})}), 100);
  EXPECT_THAT(automation(), ElementsAre(Chunk{0, 0, {{0, 384}}}));
}

TEST_P(ImportOperationsTest, PanIsAutomationInStepsOfTheWholeWidth) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({clip(source, 10)}),
                    sound({pan(1000, {point(1, 2, 1, 4)}, clip(source, 1000))})}),
            100);
  EXPECT_THAT(automation(), ElementsAre(Chunk{2, 1, {{500, 126}}}));
}

TEST_P(ImportOperationsTest, AConstantPanIsDropped) {
  ASSERT_EQ(import({sound({pan(1000, {1, 4}, clip(take(), 1000))})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 1000}));
  EXPECT_THAT(automation(), IsEmpty());
  EXPECT_THAT(levels(), ElementsAre(1.0F));
}

TEST_P(ImportOperationsTest, PanRoundAWholeTrack) {
  const AafTake source = take();
  ASSERT_EQ(import({AafSlot{
                .segment = pan(300, {point(0, 1, 0), point(1, 1, 1)},
                               sequence({clip(source, 100), filler(100), clip(source, 100)}))}}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 100}, Edit{.in = 200, .length = 100}));
  EXPECT_THAT(automation(), ElementsAre(Chunk{2, 0, {{0, 0}, {300, 504}}}));
}

// The first chunk of a parameter goes to the head, a later one behind that of the stream
// before it.
TEST_P(ImportOperationsTest, ChunksStandByParameterAndStream) {
  const AafTake source = take();
  const AafPart both = pan(10, {point(0, 1, 1)}, gain(10, {point(0, 1, 1)}, clip(source, 10)));
  ASSERT_EQ(import({sound({both}), sound({both}), sound({both})}), 100);
  EXPECT_THAT(automation(), ElementsAre(Chunk{2, 0, {{0, 504}}}, Chunk{2, 1, {{0, 504}}},
                                        Chunk{2, 2, {{0, 504}}}, Chunk{0, 0, {{0, 384}}},
                                        Chunk{0, 1, {{0, 384}}}, Chunk{0, 2, {{0, 384}}}));
}

TEST_P(ImportOperationsTest, PointsStandInTheOrderOfTheirTimes) {
  const AafTake source = take();
  const std::vector<AafPoint> end = {point(1, 1, 1)};
  ASSERT_EQ(import({sound({gain(10, end, clip(source, 10)), transition(10),
                           gain(5, end, clip(source, 5)), gain(2, end, clip(source, 2))})}),
            100);
  EXPECT_THAT(automation(), ElementsAre(Chunk{0, 0, {{5, 384}, {7, 384}, {10, 384}}}));
}

TEST_P(ImportOperationsTest, APointIsRaisedOnceOnly) {
  const std::vector<AafPoint> three = {point(0, 1, 1), point(0, 1, 1), point(0, 1, 1)};
  ASSERT_EQ(import({sound({gain(10, three, clip(take(), 10))})}), 100);
  // The second and the third both stand one sample behind the first: the third meets the
  // second only as a point that is later.
  EXPECT_THAT(automation(), ElementsAre(Chunk{0, 0, {{0, 384}, {1, 384}, {1, 384}}}));
}

TEST_P(ImportOperationsTest, GainValuesBecomeSteps) {
  ASSERT_EQ(import({sound({gain(80,
                                {point(0, 8, 0), point(1, 8, 1, 2), point(2, 8, 4),
                                 point(3, 8, 1, 10), point(4, 8, -1)},
                                clip(take(), 80))})}),
            100);
  EXPECT_THAT(automation(),
              ElementsAre(Chunk{0, 0, {{0, 0}, {10, 324}, {20, 504}, {30, 196}, {40, 0}}}));
}

TEST_P(ImportOperationsTest, PanValuesStayInTheirRange) {
  ASSERT_EQ(import({sound({pan(80, {point(0, 8, -1), point(1, 8, 2), point(2, 8, 1, 0)},
                               clip(take(), 80))})}),
            100);
  EXPECT_THAT(automation(), ElementsAre(Chunk{2, 0, {{0, 0}, {10, 504}}}));
}

TEST_P(ImportOperationsTest, PanIsCutToAWholeStep) {
  ASSERT_EQ(
      import({sound({pan(80, {point(0, 8, 1, 5), point(1, 8, 503, 505)}, clip(take(), 80))})}),
      100);
  // 100.8 and 502.004.
  EXPECT_THAT(automation(), ElementsAre(Chunk{2, 0, {{0, 100}, {10, 502}}}));
}

TEST_P(ImportOperationsTest, AnotherOperationPassesItsFirstInputThrough) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({group(100, some_operation, {clip(source, 100, 1), clip(source, 100, 2)},
                                 {constant(kAAFParameterDef_Amplitude, {1, 2})}),
                           clip(source, 50)})}),
            100);
  EXPECT_THAT(edits(),
              ElementsAre(Edit{.length = 100, .source = 1}, Edit{.in = 100, .length = 50}));
  EXPECT_THAT(levels(), ElementsAre(1.0F, 1.0F));
}

TEST_P(ImportOperationsTest, ATransitionTrimsTheClipOfAGroup) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({gain(100, {1, 2}, clip(source, 100)), transition(10),
                           gain(50, {1, 4}, clip(source, 50))})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .fade_out = 10},
                                   Edit{.in = 90, .length = 50, .fade_in = 10}));
  EXPECT_THAT(levels(), ElementsAre(0.5F, 0.25F));
}

TEST_P(ImportOperationsTest, ATransitionTrimsTheClipOfAScope) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({scope(100, {sequence({clip(source, 100)}),
                                       group(100, some_operation, {scope_reference(100)})}),
                           transition(10), clip(source, 50)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .fade_out = 10},
                                   Edit{.in = 90, .length = 50, .fade_in = 10}));
}

// Only what plays a clip itself is trimmed, and not what holds others.
TEST_P(ImportOperationsTest, ATransitionDoesNotTrimTheClipOfASequenceOrSelector) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({sequence({clip(source, 100)}), transition(10), clip(source, 50)}),
                    sound({selector(100, clip(source, 100)), transition(10), clip(source, 50)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.stream = 0, .in = 0, .length = 100},
                                   Edit{.stream = 1, .in = 0, .length = 100},
                                   Edit{.stream = 0, .in = 90, .length = 50, .fade_in = 10},
                                   Edit{.stream = 1, .in = 90, .length = 50, .fade_in = 10}));
}

TEST_P(ImportOperationsTest, ASequenceInASequence) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({sequence({filler(10), clip(source, 20)}), clip(source, 30)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 10, .length = 20}, Edit{.in = 30, .length = 30}));
}

TEST_P(ImportOperationsTest, AScopeAddsOnlyItsRealLayers) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({scope(100, {sequence({clip(source, 100)}),
                                       group(100, some_operation, {scope_reference(100)})}),
                           clip(source, 50)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 100}, Edit{.in = 100, .length = 50}));
}

TEST_P(ImportOperationsTest, GainOnAScopeReferenceReachesTheLayerBefore) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({scope(100, {sequence({clip(source, 100)}),
                                       gain(100, {1, 2}, scope_reference(100))}),
                           clip(source, 50)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 100}, Edit{.in = 100, .length = 50}));
  EXPECT_THAT(levels(), ElementsAre(0.5F, 1.0F));
}

// A scope lets no failure pass, unlike a group or a selector.
TEST_P(ImportOperationsTest, AClipThatLeadsNowhereInAScopeEndsTheImport) {
  const AafTake source = take();
  const aafMobID_t missing = file().new_id();
  EXPECT_EQ(import({sound({clip(source, 50), scope(100, {sequence({clip(missing, 100)})})})}), 11);
  EXPECT_THAT(edits(), IsEmpty());
}

TEST_P(ImportOperationsTest, BehindAScopeAReferenceReachesNothing) {
  const AafTake source = take();
  const AafPart layer = sequence({clip(source, 50), clip(source, 50)});
  ASSERT_EQ(import({sound({scope(100, {layer}), gain(50, {1, 2}, scope_reference(50))})}), 100);
  EXPECT_THAT(levels(), ElementsAre(1.0F, 1.0F));
}

// An inner scope ends the outer one as far as references go.
TEST_P(ImportOperationsTest, BehindAnInnerScopeAReferenceReachesNothing) {
  const AafTake source = take();
  const AafPart inner = scope(50, {sequence({clip(source, 50)})});
  ASSERT_EQ(import({sound({scope(100, {inner, sequence({clip(source, 50)}),
                                       gain(50, {1, 2}, scope_reference(50))})})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 50}, Edit{.in = 50, .length = 50}));
  EXPECT_THAT(levels(), ElementsAre(1.0F, 1.0F));
}

TEST_P(ImportOperationsTest, VaryingGainOnAScopeReference) {
  ASSERT_EQ(import({sound({filler(40), scope(100, {sequence({clip(take(), 100)}),
                                                   gain(100, level, scope_reference(100))})})}),
            100);
  EXPECT_THAT(automation(), ElementsAre(Chunk{0, 0, {{40, 384}, {140, 384}}}));
}

TEST_P(ImportOperationsTest, OfASelectorTheSelectedSegment) {
  const AafTake source = take();
  ASSERT_EQ(import({sound(
                {selector(100, filler(100)), selector(50, clip(source, 50)), clip(source, 10)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 100, .length = 50}, Edit{.in = 150, .length = 10}));
}

// What follows a component in which nothing moved the position.
struct Stale {
  AafPart component;
  std::int64_t by_the_letter;
  std::int64_t corrected;
};

class StalePositionTest : public AafImportTest {
 protected:
  // Two slots, so that a component that stands first in one is held as well.
  std::int64_t place_behind(AafPart component) {
    path = folder.file(std::to_string(++files_) + ".aaf");
    importer = std::make_unique<CAAFEdlFile>(&edl);
    while (!edl.get_generic_entry_list()->IsEmpty())
      delete edl.get_generic_entry_list()->RemoveHead();
    const AafTake source = take();
    EXPECT_EQ(import({sound(
                  {gain(100, {1, 2}, clip(source, 100)), std::move(component), clip(source, 10)})}),
              100);
    EXPECT_EQ(entries().size(), 2U);
    return edits().back().in;
  }
  [[nodiscard]] AafPart lost(aafLength_t length) {
    aafMobID_t nobody{};
    nobody.material.Data1 = 0xFFFFFFFF;
    return clip(nobody, length);
  }
  int files_ = 0;
};

TEST_F(StalePositionTest, ByTheLetterItIsLost) {
  EXPECT_EQ(place_behind(gain(40, {1, 2}, lost(40))), 100);
  EXPECT_EQ(place_behind(group(40, some_operation, {})), 100);
  EXPECT_EQ(place_behind(selector(40)), 100);
  EXPECT_EQ(place_behind(selector(40, lost(40))), 100);
  // The kind of the group before says that its children have moved the position.
  EXPECT_EQ(place_behind(essence_group(40, {clip(aafMobID_t{}, 40)})), 100);
  EXPECT_EQ(place_behind(pulldown(40, filler(40))), 100);
}

TEST_F(StalePositionTest, CorrectedItIsItsLength) {
  correct(Correction::aaf_stale_position, true);
  EXPECT_EQ(place_behind(gain(40, {1, 2}, lost(40))), 140);
  EXPECT_EQ(place_behind(group(40, some_operation, {})), 140);
  EXPECT_EQ(place_behind(selector(40)), 140);
  EXPECT_EQ(place_behind(selector(40, lost(40))), 140);
  EXPECT_EQ(place_behind(essence_group(40, {clip(aafMobID_t{}, 40)})), 140);
  EXPECT_EQ(place_behind(pulldown(40, filler(40))), 140);
}

TEST_P(ImportOperationsTest, AnUnknownComponentBehindAClipTakesItsLength) {
  const AafTake source = take();
  ASSERT_EQ(
      import({sound({clip(source, 100), essence_group(40, {clip(source, 40)}), clip(source, 10)})}),
      100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 100}, Edit{.in = 140, .length = 10}));
}

// What ended the slot before does not hold back the first component of the next.
TEST_P(ImportOperationsTest, AnUnknownComponentAtTheHeadOfASlotTakesItsLength) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({gain(100, {1, 2}, clip(source, 100))}),
                    AafSlot{.segment = essence_group(40, {clip(source, 40)})},
                    sound({essence_group(40, {clip(source, 40)}), clip(source, 10)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.stream = 0, .length = 100},
                                   Edit{.stream = 2, .in = 40, .length = 10}));
}

class GroupLengthTest : public AafImportTest {
 protected:
  void import_longer() {
    const AafTake source = take();
    ASSERT_EQ(import({sound({group(93'860, some_operation, {clip(source, 92'000)}), filler(106'140),
                             clip(source, 500)})}),
              100);
  }
  void import_shorter() {
    const AafTake source = take();
    ASSERT_EQ(import({sound({group(100, some_operation, {clip(source, 121)}), clip(source, 50)})}),
              100);
  }
};

TEST_F(GroupLengthTest, ByTheLetterTheInputMovesThePosition) {
  import_longer();
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 92'000}, Edit{.in = 198'140, .length = 500}));
}

TEST_F(GroupLengthTest, ByTheLetterAlsoWhenItIsLonger) {
  import_shorter();
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 121}, Edit{.in = 121, .length = 50}));
}

TEST_F(GroupLengthTest, CorrectedTheGroupMovesThePosition) {
  correct(Correction::aaf_group_length, true);
  import_longer();
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 92'000}, Edit{.in = 200'000, .length = 500}));
}

TEST_F(GroupLengthTest, CorrectedAlsoWhenTheInputIsLonger) {
  correct(Correction::aaf_group_length, true);
  import_shorter();
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 121}, Edit{.in = 100, .length = 50}));
}

TEST_F(GroupLengthTest, CorrectedAScopeStillGoesByItsChildren) {
  correct(Correction::aaf_group_length, true);
  const AafTake source = take();
  ASSERT_EQ(import({sound({scope(100, {group(90, some_operation, {clip(source, 100)}),
                                       group(100, some_operation, {scope_reference(100)})}),
                           clip(source, 50)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 100}, Edit{.in = 100, .length = 50}));
}

}  // namespace
