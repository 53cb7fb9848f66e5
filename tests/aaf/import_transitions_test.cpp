// Transitions: two clips that overlap, and the fades between them.
//
// Slots and sources count samples of 48 kHz here.

#include <algorithm>
#include <array>
#include <cmath>

#include "tests/aaf/import_fixture.h"

using namespace support;
using testing::ElementsAre;

namespace {

class ImportTransitionsTest : public BothWaysImportTest {
 protected:
  // Clip of 200, transition, clip of 200.
  result_code import_between(const AafPart& joint) {
    const AafTake source = take();
    return import({sound({clip(source, 200), joint, clip(source, 200)})});
  }
  // What a transition of 100 without usable levels gives.
  void expect_plain() const {
    EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 100},
                                     Edit{.in = 100, .length = 200, .fade_in = 100}));
    for (const CGenericEdlEntry* const each : entries()) {
      EXPECT_EQ(each->fade_in_curve, 0);
      EXPECT_EQ(each->fade_out_curve, 0);
    }
  }
};
INSTANTIATE_TEST_SUITE_P(, ImportTransitionsTest, both_ways(), way_name);

TEST_P(ImportTransitionsTest, TwoClipsOverlapByItsLength) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({clip(source, 100), transition(10), clip(source, 50)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .fade_out = 10},
                                   Edit{.in = 90, .length = 50, .fade_in = 10}));
}

TEST_P(ImportTransitionsTest, OutOfAFillerAtTheHead) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({filler(10), transition(10), clip(source, 100)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .fade_in = 10}));
}

TEST_P(ImportTransitionsTest, IntoAFillerOnlyTheClipBeforeFades) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({clip(source, 100), transition(10), filler(40), clip(source, 20)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .fade_out = 10},
                                   Edit{.in = 130, .length = 20}));
}

TEST_P(ImportTransitionsTest, OutOfAFillerTheClipBeforeItKeepsItsEnd) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({clip(source, 50), filler(20), transition(10), clip(source, 40)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 50},
                                   Edit{.in = 60, .length = 40, .fade_in = 10}));
}

TEST_P(ImportTransitionsTest, SilenceAtTheHeadOfTheIncomingLevelMovesTheClip) {
  ASSERT_EQ(import_between(dissolve(100, {point(0, 1, 0), point(1, 2, 0), point(1, 1, 1)})), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 100},
                                   Edit{.in = 150, .length = 150, .source = 50, .fade_in = 50}));
}

TEST_P(ImportTransitionsTest, SilenceAtTheEndOfTheOutgoingLevelShortensTheClip) {
  ASSERT_EQ(import_between(dissolve(100, {point(0, 1, 1), point(1, 2, 0), point(1, 1, 0)},
                                    {point(0, 1, 0), point(1, 1, 1)})),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 150, .fade_out = 50},
                                   Edit{.in = 100, .length = 200, .fade_in = 100}));
}

TEST_P(ImportTransitionsTest, TwoPointsAreTooFew) {
  ASSERT_EQ(import_between(dissolve(100, {point(1, 4, 0), point(3, 4, 1)})), 100);
  expect_plain();
}

TEST_P(ImportTransitionsTest, AConstantLevelSaysNothing) {
  ASSERT_EQ(import_between(transition(100, kAAFOperationDef_MonoAudioDissolve,
                                      {constant(kAAFParameterDef_Level, {1, 2})})),
            100);
  expect_plain();
}

TEST_P(ImportTransitionsTest, LevelsOfAnotherOperationAreNotRead) {
  ASSERT_EQ(import_between(transition(100, kAAFOperationDef_StereoAudioDissolve,
                                      {varying(kAAFParameterDef_Level,
                                               {point(0, 1, 0), point(1, 2, 0), point(1, 1, 1)})})),
            100);
  expect_plain();
}

TEST_P(ImportTransitionsTest, WithoutAnOperation) {
  ASSERT_EQ(import_between(transition(100)), 100);
  expect_plain();
}

// Nine points of each of the host's curves, up and down.
TEST_P(ImportTransitionsTest, TheNearestCurveIsFound) {
  host.app.curve_count = 3;
  for (std::size_t i = 0; i < 128; ++i) {
    const double share = static_cast<double>(127 - i) / 127.0;
    host.app.curves[1][i] = static_cast<std::uint16_t>(std::lround(16384.0 * share * share));
    host.app.curves[2][i] = static_cast<std::uint16_t>(std::lround(16384.0 * std::sqrt(share)));
  }
  // Of 800 the points stand at whole hundreds; a curve's index at 127 eighths of them.
  constexpr std::array<std::size_t, 9> index = {127, 111, 95, 79, 63, 47, 31, 15, 0};
  const AafTake source = take();
  std::vector<AafPart> parts = {clip(source, 2000)};
  for (int number = 0; number < 3; ++number) {
    std::vector<AafPoint> rising;
    std::vector<AafPoint> falling;
    for (aafInt32 i = 0; i <= 8; ++i) {
      const auto& levels = host.app.curves[number];
      rising.push_back(point(i, 8, levels[index[static_cast<std::size_t>(i)]], 16384));
      falling.push_back(point(i, 8, levels[index[static_cast<std::size_t>(8 - i)]], 16384));
    }
    parts.push_back(dissolve(800, falling, rising));
    parts.push_back(clip(source, 2000));
  }
  ASSERT_EQ(import({sound(parts)}), 100);
  ASSERT_EQ(entries().size(), 4U);
  for (std::uint16_t number = 0; number < 3; ++number) {
    EXPECT_EQ(entry(number).fade_out_curve, number);
    EXPECT_EQ(entry(number).fade_out_length, 800);
    EXPECT_EQ(entry(number + 1U).fade_in_curve, number);
    EXPECT_EQ(entry(number + 1U).fade_in_length, 800);
  }
}

TEST_P(ImportTransitionsTest, OfEqualCurvesTheLowestNumberIsTaken) {
  host.app.curve_count = 3;
  host.app.set_straight_curve(1);
  host.app.set_straight_curve(2);
  host.app.curves[0].fill(7);
  ASSERT_EQ(import_between(dissolve(
                100, {point(0, 1, 0), point(1, 4, 1, 4), point(1, 2, 1, 2), point(1, 1, 1)})),
            100);
  EXPECT_EQ(entry(1).fade_in_curve, 1);
  // There is no outgoing level, so the clip before takes the same curve.
  EXPECT_EQ(entry(0).fade_out_curve, 1);
}

TEST_P(ImportTransitionsTest, ALevelThatNeverBecomesFullEndsWithTheTransition) {
  ASSERT_EQ(import_between(dissolve(100, {point(0, 1, 0), point(1, 2, 0), point(1, 1, 9, 10)})),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 100},
                                   Edit{.in = 150, .length = 150, .source = 50, .fade_in = 50}));
}

// From where the level is silent for the last time to where it is full for the first.
TEST_P(ImportTransitionsTest, ALevelThatGoesUpTwice) {
  ASSERT_EQ(import_between(dissolve(100, {point(0, 1, 0), point(1, 10, 1, 2), point(1, 5, 0),
                                          point(1, 2, 1), point(3, 4, 1, 2), point(1, 1, 1)})),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 100},
                                   Edit{.in = 120, .length = 180, .source = 20, .fade_in = 30}));
}

TEST_P(ImportTransitionsTest, ALevelThatGoesDownTwice) {
  ASSERT_EQ(import_between(dissolve(100,
                                    {point(0, 1, 1), point(1, 10, 1, 2), point(1, 5, 1),
                                     point(1, 2, 0), point(3, 4, 1, 2), point(1, 1, 0)},
                                    {point(0, 1, 0), point(1, 1, 1)})),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 150, .fade_out = 30},
                                   Edit{.in = 100, .length = 200, .fade_in = 100}));
}

TEST_P(ImportTransitionsTest, ALevelThatIsSilentLastHasNoRamp) {
  ASSERT_EQ(import_between(dissolve(100, {point(0, 1, 0), point(1, 4, 1), point(1, 2, 0)})), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 100},
                                   Edit{.in = 150, .length = 150, .source = 50}));
}

// The first point alone tells the direction, and any sound in it makes a level that falls.
TEST_P(ImportTransitionsTest, ALevelThatBeginsHalfwayUpFalls) {
  ASSERT_EQ(import_between(dissolve(100, {point(0, 1, 1, 2), point(1, 4, 1), point(1, 2, 0)})),
            100);
  // Full last at 25, silent at 50, which lies 50 before the end.
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 100},
                                   Edit{.in = 150, .length = 150, .source = 50, .fade_in = 25}));
}

// Times are multiplied in single precision: 29 hundredths of 100 are 29, which double
// precision makes 28, but 53 hundredths are 52.
TEST_P(ImportTransitionsTest, TimesGoThroughSinglePrecision) {
  const AafTake source = take();
  const auto joint = [](aafInt32 hundredths) {
    return dissolve(100, {point(0, 1, 0), point(hundredths, 100, 0), point(1, 1, 1)});
  };
  ASSERT_EQ(import({sound({clip(source, 200), joint(29), clip(source, 200)}),
                    sound({filler(1), clip(source, 200), joint(53), clip(source, 200)})}),
            100);
  EXPECT_THAT(
      edits(),
      ElementsAre(Edit{.stream = 0, .in = 0, .length = 200, .fade_out = 100},
                  Edit{.stream = 1, .in = 1, .length = 200, .fade_out = 100},
                  Edit{.stream = 0, .in = 129, .length = 171, .source = 29, .fade_in = 71},
                  Edit{.stream = 1, .in = 153, .length = 148, .source = 52, .fade_in = 48}));
}

TEST_P(ImportTransitionsTest, PointsAtOneTimeMakeNoFade) {
  ASSERT_EQ(import_between(dissolve(100, {point(1, 2, 0), point(1, 2, 0), point(1, 2, 1)})), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 100},
                                   Edit{.in = 150, .length = 150, .source = 50}));
  EXPECT_EQ(entry(1).fade_in_curve, 0);
}

TEST_P(ImportTransitionsTest, TheOffsetGoesOnFromClipToClip) {
  const AafTake source = take();
  const AafPart joint = dissolve(80, {point(0, 1, 0), point(1, 4, 0), point(1, 1, 1)});
  ASSERT_EQ(import({sound({clip(source, 200), joint, clip(source, 100), clip(source, 100)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 80},
                                   Edit{.in = 140, .length = 80, .source = 20, .fade_in = 60},
                                   Edit{.in = 240, .length = 80, .source = 20}));
}

TEST_P(ImportTransitionsTest, AFillerStopsTheOffset) {
  const AafTake source = take();
  const AafPart joint = dissolve(80, {point(0, 1, 0), point(1, 4, 0), point(1, 1, 1)});
  ASSERT_EQ(
      import({sound({clip(source, 200), joint, clip(source, 100), filler(10), clip(source, 100)})}),
      100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 80},
                                   Edit{.in = 140, .length = 80, .source = 20, .fade_in = 60},
                                   Edit{.in = 230, .length = 100}));
}

TEST_P(ImportTransitionsTest, NoFadeIsLongerThanItsClip) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({clip(source, 100), transition(50),
                           clip(source, 30).with_fades({.out_length = 20})})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .fade_out = 50},
                                   Edit{.in = 50, .length = 30, .fade_in = 30}));
}

// What the offset takes off the clip does not count there.
TEST_P(ImportTransitionsTest, BehindAnOffsetTheFadesMayBeLongerThanTheClip) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({clip(source, 200),
                           dissolve(100, {point(0, 1, 0), point(1, 2, 0), point(1, 1, 1)}),
                           clip(source, 100).with_fades({.out_length = 100})})}),
            100);
  EXPECT_THAT(
      edits(),
      ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 100},
                  Edit{.in = 150, .length = 50, .source = 50, .fade_in = 50, .fade_out = 50}));
}

TEST_P(ImportTransitionsTest, TheFadeOfATransitionGoesBeforeTheClipsOwn) {
  const AafTake source = take();
  const AafFades own = {.in_length = 7, .in_type = kAAFFadeLinearPower};
  ASSERT_EQ(import({sound({clip(source, 100).with_fades(own), transition(10),
                           clip(source, 50).with_fades(own)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .fade_in = 7, .fade_out = 10},
                                   Edit{.in = 90, .length = 50, .fade_in = 10}));
  EXPECT_EQ(entry(0).fade_in_curve, 114);
  EXPECT_EQ(entry(1).fade_in_curve, 0);
}

TEST_P(ImportTransitionsTest, ASlotHandsItsLastFadeToTheNextSlot) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({clip(source, 100), transition(10)}), sound({clip(source, 50)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.stream = 0, .length = 100, .fade_out = 10},
                                   Edit{.stream = 1, .length = 50, .fade_in = 10}));
}

// Each slot trims the clip of its own stream.
TEST_P(ImportTransitionsTest, ClipsOfOtherStreamsAreLeftAlone) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({clip(source, 500)}),
                    sound({clip(source, 100), transition(10), clip(source, 50)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.stream = 0, .length = 500},
                                   Edit{.stream = 1, .length = 100, .fade_out = 10},
                                   Edit{.stream = 1, .in = 90, .length = 50, .fade_in = 10}));
}

TEST_P(ImportTransitionsTest, LevelsWithoutADenominatorAreSkipped) {
  ASSERT_EQ(import_between(dissolve(100, {point(0, 1, 0), point(1, 4, 1, 0), point(1, 0, 1),
                                          point(1, 2, 0), point(1, 1, 1)})),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 200, .fade_out = 100},
                                   Edit{.in = 150, .length = 150, .source = 50, .fade_in = 50}));
}

TEST_P(ImportTransitionsTest, WildLevelsDoNoHarm) {
  constexpr aafInt32 most = 2'147'483'647;
  ASSERT_EQ(import_between(dissolve(100, {point(0, 1, 0), point(1, 2, most), point(-most, 1, most),
                                          point(most, 1, 1)})),
            100);
  EXPECT_EQ(entries().size(), 2U);
}

}  // namespace
