// Clips that play another composition, through the window that they leave open.
//
// Slots and sources count samples of 48 kHz here.

#include "tests/aaf/import_fixture.h"

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ImportNestedTest : public BothWaysImportTest {
 protected:
  // The composition that is chosen has the usage; the nested one has none.
  result_code import_top(std::vector<AafSlot> slots) {
    return import_composition({.slots = std::move(slots), .usage = kAAFUsage_TopLevel});
  }
  aafMobID_t nested(std::vector<AafSlot> slots) {
    return file().composition({.name = L"inner", .slots = std::move(slots)});
  }
};
INSTANTIATE_TEST_SUITE_P(, ImportNestedTest, both_ways(), way_name);

TEST_P(ImportNestedTest, OnlyWhatLiesInTheWindow) {
  const aafMobID_t inner = nested({sound({clip(take(), 200)})});
  ASSERT_EQ(import_top({sound({filler(30), clip(inner, 100, 50)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 30, .length = 100, .source = 50}));
}

TEST_P(ImportNestedTest, TheWindowCutsAtBothEnds) {
  const AafTake source = take();
  const aafMobID_t inner = nested({sound({clip(source, 60), clip(source, 140)})});
  ASSERT_EQ(import_top({sound({clip(inner, 100, 50)})}), 100);
  EXPECT_THAT(edits(),
              ElementsAre(Edit{.in = 0, .length = 10, .source = 50}, Edit{.in = 10, .length = 90}));
}

TEST_P(ImportNestedTest, ClipsBesideTheWindowAreLeftOut) {
  const AafTake source = take();
  const aafMobID_t inner =
      nested({sound({clip(source, 50), clip(source, 100, 3), clip(source, 50), filler(20)})});
  ASSERT_EQ(import_top({sound({clip(inner, 100, 50)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .source = 3}));
}

TEST_P(ImportNestedTest, FillersOfTheWindowKeepTheirPlace) {
  const AafTake source = take();
  const aafMobID_t inner = nested({sound({filler(60), clip(source, 100)})});
  ASSERT_EQ(import_top({sound({filler(7), clip(inner, 100, 50)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 17, .length = 90}));
}

TEST_P(ImportNestedTest, TwiceOnOneSlot) {
  const aafMobID_t inner = nested({sound({clip(take(), 200)})});
  ASSERT_EQ(import_top({sound({clip(inner, 100, 50), clip(inner, 60, 10)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .source = 50},
                                   Edit{.in = 100, .length = 60, .source = 10}));
}

TEST_P(ImportNestedTest, TheSlotThatIsAskedFor) {
  const AafTake source = take();
  const aafMobID_t inner = nested({sound({clip(source, 100, 1)}), sound({clip(source, 100, 2)})});
  ASSERT_EQ(import_top({sound({clip(inner, 10, 0, 2)}), sound({clip(inner, 10, 0, 1)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.stream = 0, .length = 10, .source = 2},
                                   Edit{.stream = 1, .length = 10, .source = 1}));
}

TEST_P(ImportNestedTest, NotSoundNotATimelineGiveNothing) {
  AafSlot event = sound({clip(take(), 100)});
  event.kind = AafSlot::Kind::event;
  const AafTake source = take();
  const aafMobID_t inner = nested({{.segment = filler(100).with_data(kAAFDataDef_Picture)}, event});
  ASSERT_EQ(import_top({sound({clip(inner, 100), clip(inner, 50, 0, 2), clip(source, 10)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 150, .length = 10}));
}

TEST_P(ImportNestedTest, AMissingSlotEndsTheImport) {
  const aafMobID_t inner = nested({sound({clip(take(), 100)})});
  EXPECT_EQ(import_top({sound({clip(inner, 100, 0, 9)})}), 11);
  EXPECT_THAT(edits(), IsEmpty());
}

TEST_P(ImportNestedTest, TheFadeBeforeItGoesToItsFirstClip) {
  const AafTake source = take();
  const aafMobID_t inner = nested({sound({clip(source, 30), clip(source, 100)})});
  ASSERT_EQ(import_top({sound({clip(source, 100), transition(10), clip(inner, 50)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .fade_out = 10},
                                   Edit{.in = 90, .length = 30, .fade_in = 10},
                                   Edit{.in = 120, .length = 20}));
}

TEST_P(ImportNestedTest, TheCurveAndTheOffsetBeforeItGoToItsFirstClipAsWell) {
  host.app.curve_count = 2;
  host.app.curves[0].fill(7);
  host.app.set_straight_curve(1);
  const AafTake source = take();
  const AafPart joint = dissolve(100, {point(0, 1, 0), point(1, 2, 0), point(1, 1, 1)});
  const aafMobID_t inner = nested({sound({clip(source, 200)})});
  ASSERT_EQ(import_top({sound({clip(source, 200), joint, clip(inner, 100)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 100},
                                   Edit{.in = 150, .length = 50, .source = 50, .fade_in = 50}));
  EXPECT_EQ(entry(1).fade_in_curve, 1);
}

// What the outer clip would have faded in with; its fade-out is lost.
TEST_P(ImportNestedTest, TheFadeInOfTheClipGoesToItsFirstClip) {
  const AafTake source = take();
  const AafFades own = {10, kAAFFadeLinearPower, 20, kAAFFadeLinearPower};
  const aafMobID_t inner = nested({sound({clip(source, 60), clip(source, 40)})});
  ASSERT_EQ(import_top({sound({clip(inner, 100).with_fades(own)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 60, .fade_in = 10},
                                   Edit{.in = 60, .length = 40}));
  EXPECT_EQ(entry(0).fade_in_curve, 114);
}

// Defaults are those of the composition that is walked, and an inner one has none.
TEST_P(ImportNestedTest, TheDefaultFadeReachesOnlyTheHeadOfAnInnerOne) {
  host.app.default_crossfade_length = 25;
  const AafTake source = take();
  const aafMobID_t inner =
      file().composition({.slots = {sound({clip(source, 60), clip(source, 40)})},
                          .default_fade = AafDefaultFade{.length = 7}});
  ASSERT_EQ(import_composition({.slots = {sound({clip(inner, 100)})},
                                .usage = kAAFUsage_TopLevel,
                                .default_fade = AafDefaultFade{.length = 25}}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 60, .fade_in = 25},
                                   Edit{.in = 60, .length = 40}));
  EXPECT_THAT(boxes(), IsEmpty());
}

// A filler before the window does not take the fade away, one in it does.
TEST_P(ImportNestedTest, OnlyAFillerInTheWindowStopsTheFadeBeforeIt) {
  const AafTake source = take();
  const aafMobID_t inner = nested({sound({filler(20), clip(source, 100)})});
  ASSERT_EQ(import_top({sound({clip(source, 100), transition(10), clip(inner, 50, 20)}),
                        sound({clip(source, 100), transition(10), clip(inner, 50, 19)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.stream = 0, .in = 0, .length = 100, .fade_out = 10},
                                   Edit{.stream = 1, .in = 0, .length = 100, .fade_out = 10},
                                   Edit{.stream = 0, .in = 90, .length = 50, .fade_in = 10},
                                   Edit{.stream = 1, .in = 91, .length = 49}));
}

TEST_P(ImportNestedTest, TransitionsInside) {
  const AafTake source = take();
  const aafMobID_t inner = nested({sound({clip(source, 100), transition(10), clip(source, 100)})});
  ASSERT_EQ(import_top({sound({filler(1000), clip(inner, 190)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 1000, .length = 100, .fade_out = 10},
                                   Edit{.in = 1090, .length = 100, .fade_in = 10}));
}

TEST_P(ImportNestedTest, InsideAGroup) {
  const aafMobID_t inner = nested({sound({clip(take(), 200)})});
  ASSERT_EQ(import_top({sound({gain(100, {1, 2}, clip(inner, 100)), clip(inner, 10)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100}, Edit{.in = 100, .length = 10}));
  EXPECT_THAT(levels(), ElementsAre(0.5F, 1.0F));
}

TEST_P(ImportNestedTest, TwoLevelsDeep) {
  const aafMobID_t innermost = nested({sound({filler(5), clip(take(), 200)})});
  const aafMobID_t inner = nested({sound({filler(10), clip(innermost, 100, 20)})});
  ASSERT_EQ(import_top({sound({filler(1000), clip(inner, 60, 30)})}), 100);
  // The innermost from 20 lies at 10 of the inner one, of which 30 on are seen: 40 on of
  // the innermost, so 35 on of the take.
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 1000, .length = 60, .source = 35}));
}

TEST_P(ImportNestedTest, MarksAndTimecodeOfAnInnerOneDoNotCount) {
  AafSlot clock = timecode(90'000, 25);
  clock.mark_in = 10;
  const aafMobID_t inner = nested({sound({clip(take(), 100)}), clock});
  ASSERT_EQ(import_top({sound({clip(inner, 100)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 100}));
  EXPECT_THAT(locators(), IsEmpty());
}

TEST_P(ImportNestedTest, EachMayWarnAgain) {
  const AafTake odd = file().source({.sample_rate = {22050, 1}});
  const aafMobID_t inner = nested({sound({clip(odd, 100)})});
  ASSERT_EQ(import_top({sound({clip(odd, 50), clip(odd, 50), clip(inner, 100)})}), 100);
  EXPECT_THAT(boxes(), ElementsAre("[24731] 22050", "[24731] 22050"));
}

TEST_P(ImportNestedTest, AGroupThatTheWindowCuts) {
  const AafTake source = take();
  const std::vector<AafPoint> points = {point(1, 4, 1), point(3, 4, 1)};
  const aafMobID_t inner =
      nested({sound({gain(100, {1, 2}, gain(100, points, clip(source, 100))), clip(source, 50)})});
  ASSERT_EQ(import_top({sound({filler(1000), clip(inner, 60, 50)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 1000, .length = 50, .source = 50},
                                   Edit{.in = 1050, .length = 10}));
  EXPECT_THAT(levels(), ElementsAre(0.5F, 1.0F));
  // A quarter lies before the window; three quarters are the middle of what is seen.
  EXPECT_THAT(automation(), ElementsAre(Chunk{0, 0, {{1025, 384}}}));
}

// Times are shares of the whole group, and those that are seen count from the window.
TEST_P(ImportNestedTest, PointsOfAGroupThatTheWindowCuts) {
  const AafTake source = take();
  const std::vector<AafPoint> points = {point(1, 4, 1, 10), point(1, 2, 1), point(3, 5, 1, 2),
                                        point(9, 10, 2), point(1, 1, 1, 10)};
  const aafMobID_t inner = nested({sound({gain(100, points, clip(source, 100))})});
  ASSERT_EQ(import_top({sound({filler(1000), clip(inner, 40, 50), clip(inner, 90)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 1000, .length = 40, .source = 50},
                                   Edit{.in = 1040, .length = 90}));
  EXPECT_THAT(automation(), ElementsAre(Chunk{0,
                                              0,
                                              {{1000, 384},
                                               {1010, 324},
                                               {1040, 444},
                                               {1065, 196},
                                               {1090, 384},
                                               {1100, 324},
                                               {1130, 444}}}));
}

TEST_P(ImportNestedTest, AGroupOfAnotherLengthThanItsInput) {
  const AafTake source = take();
  const aafMobID_t inner = nested({sound({gain(100, {1, 2}, clip(source, 80)), clip(source, 50)})});
  ASSERT_EQ(import_top({sound({filler(1000), clip(inner, 150)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 1000, .length = 80},
                                   Edit{.in = GetParam() ? 1100 : 1080, .length = 50}));
}

TEST_P(ImportNestedTest, NothingInsideMovesThePosition) {
  const AafTake source = take();
  const aafMobID_t inner = nested({sound(
      {gain(100, {1, 2}, clip(source, 100)), essence_group(40, {filler(1)}), clip(source, 50)})});
  ASSERT_EQ(import_top({sound({filler(1000), clip(inner, 190)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 1000, .length = 100},
                                   Edit{.in = GetParam() ? 1140 : 1100, .length = 50}));
}

TEST_P(ImportNestedTest, ATransitionBeforeTheWindow) {
  const AafTake source = take();
  const aafMobID_t inner = nested({sound({clip(source, 100), transition(10), clip(source, 100)})});
  ASSERT_EQ(import_top({sound({clip(inner, 30, 150)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 30, .source = 60}));
}

// The window begins inside the overlap, so the place of the parent does not go back.
TEST_P(ImportNestedTest, ATransitionAtTheHeadOfTheWindow) {
  const AafTake source = take();
  const aafMobID_t inner = nested({sound({clip(source, 100), transition(10), clip(source, 100)})});
  ASSERT_EQ(import_top({sound({clip(inner, 50, 95)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 5, .source = 95, .fade_out = 10},
                                   Edit{.in = 5, .length = 50, .source = 5, .fade_in = 10}));
}

// A transition that lies behind the window takes the parent back as well, when it comes
// within its own length of the window.
TEST_P(ImportNestedTest, TransitionsBehindTheWindow) {
  const AafTake source = take();
  const aafMobID_t inner =
      nested({sound({clip(source, 100), transition(10), transition(10), clip(source, 100)})});
  ASSERT_EQ(import_top({sound({clip(inner, 85)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 85}, Edit{.in = 65, .length = 5}));
}

class NestedStreamTest : public AafImportTest {
 protected:
  void import_gain_on_stream_three() {
    const AafTake source = take();
    const aafMobID_t inner =
        file().composition({.slots = {sound({gain(100, {1, 2}, clip(source, 100)),
                                             gain(100, {point(0, 1, 1)}, clip(source, 100)),
                                             transition(10), clip(source, 50)})}});
    ASSERT_EQ(import_composition({.slots = {sound({clip(source, 100)}), sound({filler(1)}),
                                            sound({filler(1)}), sound({clip(inner, 240)})},
                                  .usage = kAAFUsage_TopLevel}),
              100);
  }
};

TEST_F(NestedStreamTest, ByTheLetterGainGoesToStreamZero) {
  import_gain_on_stream_three();
  EXPECT_THAT(edits(), ElementsAre(Edit{.stream = 0, .length = 100, .fade_out = 10},
                                   Edit{.stream = 3, .length = 100},
                                   Edit{.stream = 3, .in = 100, .length = 100},
                                   Edit{.stream = 3, .in = 190, .length = 50, .fade_in = 10}));
  EXPECT_THAT(levels(), ElementsAre(0.5F, 1.0F, 1.0F, 1.0F));
  EXPECT_THAT(automation(), ElementsAre(Chunk{0, 0, {{100, 384}}}));
}

TEST_F(NestedStreamTest, CorrectedGainStaysOnItsStream) {
  correct(Correction::aaf_nested_stream, true);
  import_gain_on_stream_three();
  EXPECT_THAT(edits(),
              ElementsAre(Edit{.stream = 0, .length = 100}, Edit{.stream = 3, .length = 100},
                          Edit{.stream = 3, .in = 100, .length = 100, .fade_out = 10},
                          Edit{.stream = 3, .in = 190, .length = 50, .fade_in = 10}));
  EXPECT_THAT(levels(), ElementsAre(1.0F, 0.5F, 1.0F, 1.0F));
  EXPECT_THAT(automation(), ElementsAre(Chunk{0, 3, {{100, 384}}}));
}

// By the letter a chunk of a lower stream comes after one of a higher.
TEST_F(NestedStreamTest, ByTheLetterChunksOfLowerStreamsGoBefore) {
  const AafTake source = take();
  const AafPart with_gain = gain(100, {point(0, 1, 1)}, clip(source, 100));
  const aafMobID_t inner = file().composition({.slots = {sound({with_gain})}});
  ASSERT_EQ(import_composition({.slots = {sound({filler(1)}), sound({with_gain}),
                                          sound({filler(50), clip(inner, 100)})},
                                .usage = kAAFUsage_TopLevel}),
            100);
  EXPECT_THAT(automation(), ElementsAre(Chunk{0, 0, {{50, 384}}}, Chunk{0, 1, {{0, 384}}}));
}

}  // namespace
