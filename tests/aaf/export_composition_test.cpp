// Edits as the components of tracks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "tests/aaf/export_scene.h"

namespace {

using aaf_test::Edit;
using aaf_test::ExportScene;
using aaf_test::ReadFile;
using testing::ElementsAre;

struct Row {
  const char* name;
  std::vector<Edit> edits;
  std::vector<std::string> components;
};

std::string clip(std::int64_t length, std::int64_t from) {
  return "clip " + std::to_string(length) + " from " + std::to_string(from) + " of take 0";
}

class TrackForms : public testing::TestWithParam<Row> {};

TEST_P(TrackForms, OfOneStream) {
  ExportScene scene;
  for (Edit edit : GetParam().edits) {
    edit.source_in = 10000 + edit.in;
    scene.add(edit);
  }
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_EQ(file.track(0), GetParam().components);
}

// In, out, fade-in, fade-out; each plays its source from 10000 samples behind its place.
INSTANTIATE_TEST_SUITE_P(
    Export, TrackForms,
    testing::Values(Row{"LoneFadeIn",
                        {{1000, 6000, 200, 0}},
                        {"filler 1200", "dissolve 200 cut 100", clip(5000, 11000)}},
                    Row{"FadeInAtTheStart",
                        {{0, 5000, 200, 0}},
                        {"filler 200", "dissolve 200 cut 100", clip(5000, 10000)}},
                    Row{"LoneFadeOut",
                        {{1000, 6000, 0, 300}},
                        {"filler 1000", clip(5000, 11000), "dissolve 300 cut 150", "filler 300"}},
                    Row{"BothFades",
                        {{1000, 6000, 200, 300}},
                        {"filler 1200", "dissolve 200 cut 100", clip(5000, 11000),
                         "dissolve 300 cut 150", "filler 300"}},
                    Row{"SymmetricCrossfade",
                        {{0, 1000, 0, 100}, {900, 1900, 100, 0}},
                        {clip(1000, 10000), "two-level dissolve 100 cut 50", clip(1000, 10900)}},
                    Row{"OutFadeFirst",
                        {{0, 1000, 0, 300}, {900, 1900, 100, 0}},
                        {clip(1000, 10000), "two-level dissolve 300 cut 150", clip(1200, 10700)}},
                    Row{"InFadeLonger",
                        {{0, 1000, 0, 100}, {900, 1900, 300, 0}},
                        {clip(1200, 10000), "two-level dissolve 300 cut 150", clip(1000, 10900)}},
                    Row{"BothLonger",
                        {{0, 1000, 0, 300}, {900, 1900, 300, 0}},
                        {clip(1200, 10000), "two-level dissolve 500 cut 250", clip(1200, 10700)}},
                    Row{"FadesShorterThanTheOverlap",
                        {{0, 1000, 0, 50}, {900, 1900, 50, 0}},
                        {clip(1000, 10000), "two-level dissolve 100 cut 50", clip(1000, 10900)}},
                    Row{"OverlapWithoutFades",
                        {{0, 1000, 0, 0}, {900, 1900, 0, 0}},
                        {clip(1000, 10000), "two-level dissolve 100 cut 50", clip(1000, 10900)}},
                    Row{"ButtWithFades",
                        {{0, 1000, 0, 100}, {1000, 2000, 100, 0}},
                        {clip(1000, 10000), "dissolve 100 cut 50", "filler 200",
                         "dissolve 100 cut 50", clip(1000, 11000)}},
                    Row{"ButtWithoutFades",
                        {{0, 1000, 0, 0}, {1000, 2000, 0, 0}},
                        {clip(1000, 10000), clip(1000, 11000)}},
                    Row{"FadeOutGapFadeIn",
                        {{0, 1000, 0, 100}, {3000, 4000, 50, 0}},
                        {clip(1000, 10000), "dissolve 100 cut 50", "filler 2150",
                         "dissolve 50 cut 25", clip(1000, 13000)}}),
    [](const auto& each) { return each.param.name; });

constexpr std::int64_t hour = 172800000;

std::string straight_fade_in() {
  return "level [0/100 0/1000000 12/100 118103/1000000 25/100 244079/1000000 "
         "37/100 370056/1000000 50/100 496032/1000000 62/100 622070/1000000 "
         "75/100 748046/1000000 87/100 874023/1000000 100/100 1000000/1000000]";
}

TEST(ExportedFades, AreSampledAtEighthsAndAlwaysRise) {
  ExportScene scene;
  scene.add({.in = 1000, .out = 6000, .fade_in = 100, .fade_out = 100});
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_THAT(file.levels(0, 0), ElementsAre(straight_fade_in()));
  EXPECT_THAT(file.levels(0, 1),
              ElementsAre("level [0/100 0/1000000 13/100 125976/1000000 25/100 251953/1000000 "
                          "38/100 377929/1000000 50/100 503967/1000000 63/100 629943/1000000 "
                          "75/100 755920/1000000 88/100 881896/1000000 100/100 1000000/1000000]"));
}

TEST(ExportedFades, OfACrossfadeHaveALevelForEachSide) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000, .fade_out = 300});
  scene.add({.in = 900, .out = 1900, .fade_in = 100});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(
      ReadFile(scene.path()).levels(0, 0),
      ElementsAre("outgoing [0/300 1000000/1000000 37/300 881896/1000000 75/300 755920/1000000 "
                  "112/300 629943/1000000 150/300 503967/1000000 187/300 377929/1000000 "
                  "225/300 251953/1000000 262/300 125976/1000000 300/300 0/1000000]",
                  "incoming [0/300 0/1000000 200/300 0/1000000 212/300 118103/1000000 "
                  "225/300 244079/1000000 237/300 370056/1000000 250/300 496032/1000000 "
                  "262/300 622070/1000000 275/300 748046/1000000 287/300 874023/1000000 "
                  "300/300 1000000/1000000]"));
}

TEST(ExportedFades, ThatEndBeforeTheTransitionStayWhereTheyAre) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000, .fade_out = 100});
  scene.add({.in = 900, .out = 1900, .fade_in = 300});
  ASSERT_EQ(scene.run(), 101);
  const auto levels = ReadFile(scene.path()).levels(0, 0);
  ASSERT_EQ(levels.size(), 2U);
  // The fade-out takes the first 100 of the 300.
  EXPECT_TRUE(levels[0].starts_with("outgoing [0/300 1000000/1000000 12/300 881896/1000000 "));
  EXPECT_TRUE(levels[0].ends_with(" 100/300 0/1000000 300/300 0/1000000]"));
}

TEST(ExportedFades, OfThreeSamplesHavePointsAtEqualTimes) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000, .fade_in = 3});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).levels(0, 0),
              ElementsAre("level [0/3 0/1000000 0/3 118103/1000000 0/3 244079/1000000 "
                          "1/3 370056/1000000 1/3 496032/1000000 1/3 622070/1000000 "
                          "2/3 748046/1000000 2/3 874023/1000000 3/3 1000000/1000000]"));
}

TEST(ExportedFades, OfACurveThatTheHostDoesNotHaveFallEvenly) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000, .fade_in = 100}).fade_in_curve = 77;
  ASSERT_EQ(scene.run(), 101);
  EXPECT_TRUE(ReadFile(scene.path()).levels(0, 0).at(0).starts_with("level [0/100 0/1000000 "));
}

TEST(ExportedComposition, HasASlotForEachStreamAndOneForTheTimeCode) {
  ExportScene scene;
  for (std::uint16_t stream = 0; stream < 3; ++stream)
    scene.add({.in = 0, .out = 1000, .stream = stream});
  ASSERT_EQ(scene.run("My film.aaf"), 101);
  const ReadFile file(scene.path("My film.aaf"));
  const auto slots = file.slots();
  ASSERT_EQ(slots.size(), 4U);
  const char* const names[] = {"Audio 1", "Audio 2", "Audio 3", "Timecode slot"};
  const aafSlotID_t ids[] = {2, 3, 4, 1};
  const aafUInt32 physical[] = {1, 2, 1, 1};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(slots[i].name, names[i]);
    EXPECT_EQ(slots[i].id, ids[i]);
    EXPECT_EQ(slots[i].physical, physical[i]);
    EXPECT_EQ(slots[i].rate.numerator, 48000);
    EXPECT_EQ(slots[i].rate.denominator, 1);
  }
  EXPECT_THAT(file.mob_names(kAAFCompMob), ElementsAre("My film"));
}

TEST(ExportedComposition, HasTheHostsCrossfadeAsItsDefaultFade) {
  ExportScene scene;
  scene.host.app.default_crossfade_length = 480;
  scene.add({.in = 0, .out = 1000});
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  const auto mob = AAF_QUERY(IAAFCompositionMob, file.composition().get());
  aafDefaultFade_t fade{};
  ASSERT_EQ(mob->GetDefaultFade(&fade), 0);
  EXPECT_EQ(fade.fadeLength, 480);
  EXPECT_EQ(fade.fadeType, 1);
  EXPECT_EQ(fade.fadeEditUnit.numerator, 48000);
  EXPECT_EQ(fade.fadeEditUnit.denominator, 1);
}

TEST(ExportedComposition, OfNothingLastsForASecond) {
  ExportScene scene;
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_EQ(file.slots().size(), 2U);
  EXPECT_THAT(file.track(0), ElementsAre("filler 48000"));
}

TEST(ExportedComposition, FillsAStreamThatIsNotUsed) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000, .stream = 0});
  scene.add({.in = 0, .out = 1000, .stream = 2});
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_EQ(file.slots().size(), 4U);
  EXPECT_THAT(file.track(1), ElementsAre("filler 48000"));
}

TEST(ExportedComposition, GivesNoTrackToAStreamThatGoesNowhere) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000});
  scene.add({.in = 0, .out = 1000, .stream = 65535});
  scene.add({.in = 2000, .out = 3000, .streams = 0});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_EQ(ReadFile(scene.path()).slots().size(), 2U);
}

struct Timecode {
  aafTimecode_t code{};
  aafLength_t length = 0;
};

Timecode timecode_of(const ReadFile& file) {
  Timecode read;
  const auto slots = file.slots();
  const auto timecode = AAF_QUERY(IAAFTimecode, slots.back().segment.get());
  EXPECT_EQ(timecode->GetTimecode(&read.code), 0);
  read.length = file.length(slots.size() - 1);
  return read;
}

TEST(ExportedTimeCode, BeginsWithTheFrameOfTheFirstEvent) {
  ExportScene scene;
  scene.add({.in = hour, .out = hour + 1000});
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_EQ(timecode_of(file).code.startFrame, 90000);
  EXPECT_THAT(file.track(0), ElementsAre("clip 1000 from 0 of take 0"));
}

TEST(ExportedTimeCode, CountsWholeFramesAlone) {
  for (const auto& [in, frames] : {std::pair{1919, 0}, std::pair{1920, 1}}) {
    ExportScene scene;
    scene.add({.in = in, .out = 5000});
    ASSERT_EQ(scene.run(), 101);
    EXPECT_EQ(timecode_of(ReadFile(scene.path())).code.startFrame, frames);
  }
}

// 1601.6 samples a frame: exactly 107892 frames and 173 samples.
TEST(ExportedTimeCode, OfBrokenRatesDoesNotPassTheFirstEvent) {
  ExportScene scene(2, 3);
  scene.add({.in = hour, .out = hour + 1000});
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_EQ(timecode_of(file).code.startFrame, 107892);
  EXPECT_THAT(file.track(0), ElementsAre("filler 173", "clip 1000 from 0 of take 0"));
}

TEST(ExportedTimeCode, OfBrokenRatesPassesTheFirstEventToTheLetter) {
  ExportScene scene(2, 3);
  scene.host.fixes.set(Correction::aaf_start_frames, false);
  scene.add({.in = hour, .out = hour + 1000});
  scene.add({.in = hour + 1000, .out = hour + 100000});
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_EQ(timecode_of(file).code.startFrame, 107932);
  EXPECT_THAT(file.track(0),
              ElementsAre("clip 1000 from 0 of take 0", "clip 99000 from 0 of take 0"));
}

TEST(ExportedTimeCode, HasTheFormOfTheFrameRate) {
  const struct {
    std::uint8_t index;
    aafUInt16 fps;
    aafDropType_t drop;
  } rows[] = {{0, 24, 0}, {1, 25, 0}, {2, 29, 0}, {3, 29, 1}, {4, 30, 0}, {255, 25, 0}};
  for (const auto& row : rows) {
    ExportScene scene(2, row.index);
    scene.add({.in = 0, .out = 1000});
    ASSERT_EQ(scene.run(), 101);
    const ReadFile file(scene.path());
    EXPECT_EQ(timecode_of(file).code.fps, row.fps) << +row.index;
    EXPECT_EQ(timecode_of(file).code.drop, row.drop) << +row.index;
  }
}

// 1920 samples a frame: 5000 and the 1160 behind its last whole frame.
TEST(ExportedTimeCode, AddsTheRestOfTheLastFrameToItsLength) {
  for (const auto& [out, length] : {std::pair{5000, 6160}, std::pair{3840, 3840}}) {
    ExportScene scene;
    scene.add({.in = 0, .out = out});
    ASSERT_EQ(scene.run(), 101);
    EXPECT_EQ(timecode_of(ReadFile(scene.path())).length, length);
  }
}

// Of 6000 samples, whose last 300 fade out; 5700 is 2 frames and 1860 samples.
TEST(ExportedTimeCode, DoesNotCountTheLastFadeOut) {
  ExportScene scene;
  scene.add({.in = 1000, .out = 6000, .fade_in = 200, .fade_out = 300});
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_EQ(timecode_of(file).length, 5700 + 1860);
  EXPECT_EQ(file.length(0), 6000);
}

TEST(ExportedGain, IsAConstantRoundTheClip) {
  ExportScene scene;
  scene.host.app.aaf_export_fixed_gain = 1;
  scene.add({.in = 0, .out = 1000, .level = 0.5F});
  scene.add({.in = 1000, .out = 2000, .level = 1.0F / 3.0F});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("gain 1000 500000/1000000 (clip 1000 from 0 of take 0)",
                          "gain 1000 333333/1000000 (clip 1000 from 0 of take 0)"));
}

TEST(ExportedGain, OfALevelThatIsNoNumberIsBroughtInto32Bits) {
  ExportScene scene;
  scene.host.app.aaf_export_fixed_gain = 1;
  scene.add({.in = 0, .out = 1000, .level = std::numeric_limits<float>::infinity()});
  scene.add({.in = 1000, .out = 2000, .level = std::numeric_limits<float>::quiet_NaN()});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("gain 1000 2147483647/1000000 (clip 1000 from 0 of take 0)",
                          "gain 1000 0/1000000 (clip 1000 from 0 of take 0)"));
}

TEST(ExportedGain, OfAutomationHasThePointsInsideTheEdit) {
  ExportScene scene;
  scene.host.app.aaf_export_gain_automation = 1;
  scene.add({.in = 1000, .out = 2000});
  scene.add_automation(0, 0, {{999, 10}, {1000, 384}, {1250, 504}, {2000, 0}, {2001, 384}});
  scene.add_automation(0, 1, {{1500, 384}});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("filler 1000",
                          "gain 1000 [0/1000 100000000/100000000 "
                          "250/1000 398107171/100000000 1000/1000 1/100000000] "
                          "(clip 1000 from 0 of take 0)"));
}

TEST(ExportedGain, OfAutomationAboveTheTableIsItsLastStep) {
  ExportScene scene;
  scene.host.app.aaf_export_gain_automation = 1;
  scene.add({.in = 0, .out = 1000});
  scene.add_automation(0, 0, {{0, 4000000000}});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("gain 1000 [0/1000 398107171/100000000] (clip 1000 from 0 of take 0)"));
}

TEST(ExportedGain, OfBothKindsNests) {
  ExportScene scene;
  scene.host.app.aaf_export_gain_automation = 1;
  scene.host.app.aaf_export_fixed_gain = 1;
  scene.add({.in = 0, .out = 1000, .level = 0.5F});
  scene.add_automation(0, 0, {{500, 384}});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("gain 1000 [500/1000 100000000/100000000] "
                          "(gain 1000 500000/1000000 (clip 1000 from 0 of take 0))"));
}

TEST(ExportedGain, IsLeftOutUnlessTheHostAsksForIt) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000, .level = 0.5F});
  scene.add_automation(0, 0, {{500, 384}});
  scene.add_automation(2, 0, {{500, 252}});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0), ElementsAre("clip 1000 from 0 of take 0"));
  EXPECT_EQ(ReadFile(scene.path()).pan(0), "");
}

TEST(ExportedGain, OfAChannelWithoutPointsIsTheFixedOneAlone) {
  ExportScene scene;
  scene.host.app.aaf_export_gain_automation = 1;
  scene.host.app.aaf_export_fixed_gain = 1;
  scene.add({.in = 0, .out = 1000});
  scene.add({.in = 0, .out = 1000, .stream = 1});
  scene.add_automation(0, 0, {});
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_THAT(file.track(0), ElementsAre("gain 1000 1000000/1000000 (clip 1000 from 0 of take 0)"));
  EXPECT_THAT(file.track(1), ElementsAre("gain 1000 1000000/1000000 (clip 1000 from 0 of take 0)"));
}

TEST(ExportedGain, IsAsLongAsAClipThatACrossfadeMakesLonger) {
  ExportScene scene;
  scene.host.app.aaf_export_fixed_gain = 1;
  scene.add({.in = 0, .out = 1000, .fade_out = 300, .level = 0.5F});
  scene.add({.in = 900, .out = 1900, .fade_in = 300, .source_in = 900});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("gain 1200 500000/1000000 (clip 1200 from 0 of take 0)",
                          "two-level dissolve 500 cut 250",
                          "gain 1200 1000000/1000000 (clip 1200 from 700 of take 0)"));
}

TEST(ExportedGain, IsAsLongAsTheEditToTheLetter) {
  ExportScene scene;
  scene.host.fixes.set(Correction::aaf_group_length, false);
  scene.host.app.aaf_export_fixed_gain = 1;
  scene.host.app.aaf_export_gain_automation = 1;
  scene.add({.in = 0, .out = 1000, .fade_out = 300, .level = 0.5F});
  scene.add({.in = 900, .out = 1900, .fade_in = 300, .source_in = 900});
  scene.add_automation(0, 0, {{1000, 384}});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("gain 1000 [1000/1000 100000000/100000000] "
                          "(gain 1000 500000/1000000 (clip 1200 from 0 of take 0))",
                          "two-level dissolve 500 cut 250",
                          "gain 1000 [100/1000 100000000/100000000] "
                          "(gain 1000 1000000/1000000 (clip 1200 from 700 of take 0))"));
}

// The second clip begins 200 samples before its edit.
TEST(ExportedGain, OfAutomationCountsFromTheStartOfTheLongerClip) {
  ExportScene scene;
  scene.host.app.aaf_export_gain_automation = 1;
  scene.add({.in = 0, .out = 1000, .fade_out = 300});
  scene.add({.in = 900, .out = 1900, .fade_in = 100, .source_in = 900});
  scene.add_automation(0, 0, {{1000, 384}});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("gain 1000 [1000/1000 100000000/100000000] (clip 1000 from 0 of take 0)",
                          "two-level dissolve 300 cut 150",
                          "gain 1200 [300/1200 100000000/100000000] "
                          "(clip 1200 from 700 of take 0)"));
}

TEST(ExportedPan, IsAGroupRoundTheTrack) {
  ExportScene scene;
  scene.host.app.aaf_export_pan_automation = 1;
  scene.add({.in = 1000, .out = 2000});
  scene.add({.in = 0, .out = 1000, .stream = 1});
  scene.add_automation(2, 0, {{0, 0}, {1000, 252}, {2000, 504}});
  scene.add_automation(2, 1, {});
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_EQ(file.pan(0),
            "2000 [0/2000 0/100000000 1000/2000 50000000/100000000 2000/2000 "
            "100000000/100000000]");
  EXPECT_THAT(file.track(0), ElementsAre("filler 1000", "clip 1000 from 0 of take 0"));
  EXPECT_EQ(file.pan(1), "");
}

TEST(ExportedPan, CountsFromTheStartOfTheComposition) {
  ExportScene scene(2, 3);
  scene.host.app.aaf_export_pan_automation = 1;
  scene.add({.in = hour, .out = hour + 1000});
  scene.add_automation(2, 0, {{hour, 504}});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_EQ(ReadFile(scene.path()).pan(0), "1173 [173/1173 100000000/100000000]");
  // To the letter in whole samples a frame: 1601 of them, 107932 times.
  scene.host.fixes.set(Correction::aaf_start_frames, false);
  ASSERT_EQ(scene.run("y.aaf"), 101);
  EXPECT_EQ(ReadFile(scene.path("y.aaf")).pan(0), "1868 [868/1868 100000000/100000000]");
}

TEST(ExportedPan, OfAStreamWithoutEditsLastsForItsSecond) {
  ExportScene scene;
  scene.host.app.aaf_export_pan_automation = 1;
  scene.add({.in = 0, .out = 1000, .stream = 1});
  scene.add_automation(2, 0, {{24000, 504}});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_EQ(ReadFile(scene.path()).pan(0), "48000 [24000/48000 100000000/100000000]");
}

TEST(ExportedPan, BehindTheLastStepIsTheLastStep) {
  ExportScene scene;
  scene.host.app.aaf_export_pan_automation = 1;
  scene.add({.in = 0, .out = 1000});
  scene.add_automation(2, 0, {{0, 505}, {1000, 4000000000}});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_EQ(ReadFile(scene.path()).pan(0),
            "1000 [0/1000 100000000/100000000 1000/1000 100000000/100000000]");
}

// 3,000,000,000 samples: halved.
TEST(ExportedPan, OfTimesAbove32BitsKeepsTheirShare) {
  ExportScene scene;
  scene.host.app.aaf_export_pan_automation = 1;
  scene.add({.in = 0, .out = 3000000000});
  scene.add_automation(2, 0, {{1000000001, 504}});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_EQ(ReadFile(scene.path()).pan(0), "3000000000 [500000000/1500000000 100000000/100000000]");
}

TEST(ExportedMarks, StandOnEverySlot) {
  const std::u16string left = u"LEFT_LOCATOR\t\t\t";
  const std::u16string right = u"RIGHT_LOCATOR\t\t";
  for (const bool turned : {false, true}) {
    ExportScene scene;
    scene.add({.in = 700, .out = 1000});
    scene.add({.in = 0, .out = 1000, .stream = 1});
    scene.add_locator(u"a mark", 5);
    scene.add_locator(turned ? right : left, turned ? 20 : 10);
    scene.add_locator(turned ? left : right, turned ? 10 : 20);
    ASSERT_EQ(scene.run(), 101);
    const ReadFile file(scene.path());
    ASSERT_EQ(file.slots().size(), 3U);
    for (std::size_t slot = 0; slot < 3; ++slot) {
      EXPECT_EQ(file.mark(slot, 0x010c), 10);
      EXPECT_EQ(file.mark(slot, 0x0203), 20);
      EXPECT_EQ(file.mark(slot, 0x010d), 700);
    }
  }
}

TEST(ExportedMarks, AreTwoOfTheirKind) {
  const std::vector<std::vector<std::u16string>> none = {
      {u"LEFT_LOCATOR\t\t\t"},
      {u"LEFT_LOCATOR\t\t\t", u"LEFT_LOCATOR\t\t\t"},
      {u"LEFT_LOCATOR\t\t\t", u"right_locator\t\t"},
      {u"LEFT_LOCATOR\t\t\t", u"RIGHT_LOCATOR\t\t", u"RIGHT_LOCATOR\t\t"}};
  for (const auto& names : none) {
    ExportScene scene;
    for (const auto& name : names)
      scene.add_locator(name, 10);
    ASSERT_EQ(scene.run(), 101);
    EXPECT_EQ(ReadFile(scene.path()).mark(0, 0x010c), -1);
  }
}

TEST(ExportedClips, OfAStereoEditStandOnBothStreams) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000}, &scene.add_audio(1, 10));
  scene.add({.in = 1000, .out = 2000, .streams = 2}, &scene.add_audio(2, 10));
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_THAT(file.track(0),
              ElementsAre("clip 1000 from 0 of take 0", "clip 1000 from 0 of take 11"));
  EXPECT_THAT(file.track(1), ElementsAre("filler 1000", "clip 1000 from 0 of take 12"));
}

TEST(ExportedClips, PlayTheChannelOfTheirOffset) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000}, &scene.add_audio(1, 10));
  scene.add({.in = 1000, .out = 2000, .channel_offset = 1}, &scene.add_audio(2, 10));
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("clip 1000 from 0 of take 0", "clip 1000 from 0 of take 12"));
}

TEST(ExportedClips, CountFromTheTimeStampOfTheirSource) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000, .source_in = 5000}).source_timestamp = 1000;
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0), ElementsAre("clip 1000 from 4000 of take 0"));
}

TEST(ExportedClips, MayBeginBeforeTheirSource) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000, .fade_out = 300});
  scene.add({.in = 900, .out = 1900, .fade_in = 100, .source_in = 50});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_EQ(ReadFile(scene.path()).track(0).back(), "clip 1200 from -150 of take 0");
}

TEST(ExportedClips, WithoutLengthAreLeftOut) {
  ExportScene scene;
  scene.add({.in = 100, .out = 100});
  scene.add({.in = 200, .out = 150});
  scene.add({.in = 300, .out = 400});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("filler 300", "clip 100 from 0 of take 0"));
}

TEST(ExportedClips, HaveNoFadeThatIsLongerThanThey) {
  ExportScene scene;
  scene.add({.in = 1000, .out = 1100, .fade_in = 500});
  scene.add({.in = 2000, .out = 2100, .fade_out = 500});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(
      ReadFile(scene.path()).track(0),
      ElementsAre("filler 1100", "dissolve 100 cut 50", "clip 100 from 0 of take 0", "filler 900",
                  "clip 100 from 0 of take 0", "dissolve 100 cut 50", "filler 100"));
}

TEST(ExportedComposition, EndsWithTheLastEdit) {
  ExportScene scene;
  scene.add({.in = hour + 1000, .out = hour + 6000, .fade_out = 300});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_EQ(ReadFile(scene.path()).length(0), 6000);
}

}  // namespace
