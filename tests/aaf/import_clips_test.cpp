// Clips: where they land, what they play, their fades and names.

#include "core/generic_reel.h"
#include "tests/aaf/import_fixture.h"

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr aafRational_t at_25 = {25, 1};
constexpr aafRational_t at_29_97 = {30000, 1001};
constexpr aafRational_t at_23_976 = {24000, 1001};
// A track of a finished mix.
constexpr aafUID_t sound_master = {
    0x0e040101, 0x0101, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01}};

class ImportClipsTest : public BothWaysImportTest {};
INSTANTIATE_TEST_SUITE_P(, ImportClipsTest, both_ways(), way_name);

TEST_P(ImportClipsTest, AFillerMovesTheClip) {
  ASSERT_EQ(import({sound({filler(30), clip(take(), 100)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 30, .length = 100}));
}

TEST_P(ImportClipsTest, ASlotBeginsAtItsOrigin) {
  AafSlot slot = sound({clip(take(), 50)});
  slot.origin = 100;
  ASSERT_EQ(import({slot}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 100, .length = 50}));
}

TEST_P(ImportClipsTest, AClipMayStandAloneInItsSlot) {
  ASSERT_EQ(import({AafSlot{.segment = clip(take(), 100, 7)}}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .source = 7}));
}

TEST_P(ImportClipsTest, FadesOfTheClip) {
  ASSERT_EQ(import({sound(
                {clip(take(), 100).with_fades({10, kAAFFadeLinearPower, 20, kAAFFadeLinearAmp})})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 100, .fade_in = 10, .fade_out = 20}));
  EXPECT_EQ(entry(0).fade_in_curve, 114);
  EXPECT_EQ(entry(0).fade_out_curve, 0);
}

TEST_P(ImportClipsTest, TheFadeOutTakesWhatTheFadeInLeaves) {
  ASSERT_EQ(import({sound({clip(take(), 100).with_fades({.in_length = 80, .out_length = 50})})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 100, .fade_in = 80, .fade_out = 20}));
}

TEST_P(ImportClipsTest, DefaultFadesOfTheComposition) {
  host.app.default_crossfade_length = 25;
  const AafTake source = take();
  ASSERT_EQ(import_composition(
                {.slots = {sound({clip(source, 100), clip(source, 30),
                                  clip(source, 100).with_fades({.in_length = 10, .out_length = 5}),
                                  clip(source, 100), transition(40), clip(source, 100)})},
                 .default_fade = AafDefaultFade{.length = 25, .type = kAAFFadeLinearPower}}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 0, .length = 100, .fade_in = 25, .fade_out = 25},
                                   Edit{.in = 100, .length = 30, .fade_in = 25, .fade_out = 5},
                                   Edit{.in = 130, .length = 100, .fade_in = 10, .fade_out = 5},
                                   Edit{.in = 230, .length = 100, .fade_in = 25, .fade_out = 40},
                                   Edit{.in = 290, .length = 100, .fade_in = 40, .fade_out = 25}));
  EXPECT_EQ(entry(0).fade_in_curve, 114);
  EXPECT_EQ(entry(0).fade_out_curve, 114);
  EXPECT_EQ(entry(2).fade_in_curve, 0);
  EXPECT_THAT(boxes(), IsEmpty());
}

TEST_P(ImportClipsTest, ADefaultFadeOfNoTypeIsNone) {
  host.app.default_crossfade_length = 7;
  ASSERT_EQ(
      import_composition({.slots = {sound({clip(take(), 100)})},
                          .default_fade = AafDefaultFade{.length = 25, .type = kAAFFadeNone}}),
      100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 100}));
  EXPECT_THAT(boxes(), IsEmpty());
}

TEST_P(ImportClipsTest, AnotherDefaultFadeIsOfferedToTheHost) {
  host.app.default_crossfade_length = 7;
  host.boxes.message_answers = {box_answer_yes};
  ASSERT_EQ(import_composition({.slots = {sound({clip(take(), 1000)})},
                                .default_fade = AafDefaultFade{.length = 480}}),
            100);
  EXPECT_THAT(boxes(), ElementsAre("[24732]"));
  EXPECT_THAT(host.app.crossfade_lengths_set, ElementsAre(480));
}

TEST_P(ImportClipsTest, ADefaultFadeThatIsRefusedStays) {
  host.app.default_crossfade_length = 7;
  host.boxes.message_answers = {box_answer_no};
  ASSERT_EQ(import_composition({.slots = {sound({clip(take(), 1000)})},
                                .default_fade = AafDefaultFade{.length = 480}}),
            100);
  EXPECT_THAT(boxes(), ElementsAre("[24732]"));
  EXPECT_THAT(host.app.crossfade_lengths_set, IsEmpty());
}

TEST_P(ImportClipsTest, ADefaultFadeThatTheHostHasIsNotOffered) {
  host.app.default_crossfade_length = 480;
  ASSERT_EQ(import_composition({.slots = {sound({clip(take(), 1000)})},
                                .default_fade = AafDefaultFade{.length = 480}}),
            100);
  EXPECT_THAT(boxes(), IsEmpty());
}

// The unit is multiplied and the sample rate divides, so frames give nothing.
TEST_P(ImportClipsTest, ADefaultFadeInFramesComesOutAsNothing) {
  host.app.default_crossfade_length = 7;
  host.boxes.message_answers = {box_answer_yes};
  ASSERT_EQ(import_composition({.slots = {sound({clip(take(), 1000)})},
                                .default_fade = AafDefaultFade{.length = 2, .unit = at_25}}),
            100);
  EXPECT_THAT(host.app.crossfade_lengths_set, ElementsAre(0));
}

TEST_P(ImportClipsTest, WithoutAnyClipTheDefaultFadeIsOffered) {
  host.app.default_crossfade_length = 7;
  ASSERT_EQ(import_composition(
                {.slots = {sound({filler(10)})}, .default_fade = AafDefaultFade{.length = 480}}),
            100);
  EXPECT_THAT(boxes(), ElementsAre("[24732]"));
}

TEST_P(ImportClipsTest, SoundSlotsAloneBecomeStreams) {
  const AafTake source = take();
  AafSlot picture{.segment = filler(100).with_data(kAAFDataDef_Picture)};
  AafSlot mix = sound({clip(source, 100)});
  mix.segment.data = sound_master;
  AafSlot events = sound({clip(source, 100)});
  events.kind = AafSlot::Kind::event;
  AafSlot fixed = sound({clip(source, 100)});
  fixed.kind = AafSlot::Kind::fixed;
  ASSERT_EQ(import({picture, sound({clip(source, 10)}), mix, events, fixed,
                    sound({clip(source, 20)}), timecode(0, 25)}),
            100);
  EXPECT_THAT(edits(),
              ElementsAre(Edit{.stream = 0, .length = 10}, Edit{.stream = 1, .length = 20}));
}

TEST_P(ImportClipsTest, TheOldDefinitionOfSoundIsSound) {
  AafSlot slot = sound({clip(take(), 10).with_data(kAAFDataDef_LegacySound)});
  slot.segment.data = kAAFDataDef_LegacySound;
  ASSERT_EQ(import({slot}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 10}));
}

TEST_F(AafImportTest, ByTheLetterAClipCountsAtTheRateOfItsSource) {
  ASSERT_EQ(import({sound({filler(2), clip(take(), 48, 3)}, at_25)}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 2, .length = 48, .source = 3}));
}

TEST_F(AafImportTest, CorrectedAClipCountsAtTheRateOfItsSlot) {
  correct(Correction::aaf_clip_rate, true);
  ASSERT_EQ(import({sound({filler(2), clip(take(), 48, 3)}, at_25)}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 3840, .length = 92'160, .source = 5760}));
}

TEST_P(ImportClipsTest, FramesOf2997) {
  const AafTake source = file().source({.slot_rate = at_29_97});
  ASSERT_EQ(import({sound({filler(30), clip(source, 5)}, at_29_97)}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 48'048, .length = 8'008}));
}

// The times go through doubles, which take one sample off some of them.
TEST_P(ImportClipsTest, FramesOf23976) {
  const AafTake source = file().source({.slot_rate = at_23_976});
  ASSERT_EQ(import({sound({filler(240), clip(source, 72)}, at_23_976)}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 480'479, .length = 144'144}));
}

TEST_P(ImportClipsTest, TheStartInTheSource) {
  const AafTake source = file().source({.slot_rate = at_25});
  ASSERT_EQ(import({sound({clip(source, 10, 33)}, at_25)}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 19'200, .source = 63'360}));
}

TEST_P(ImportClipsTest, AStartBeforeTheSourceIsItsHead) {
  ASSERT_EQ(import({sound({clip(take(), 10, -33)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 10, .source = 0}));
}

TEST_P(ImportClipsTest, FadesScaleWithTheClip) {
  const AafTake source = file().source({.slot_rate = at_25});
  ASSERT_EQ(import({sound({clip(source, 50).with_fades({.in_length = 2, .out_length = 3}),
                           transition(4), clip(source, 10)},
                          at_25)}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 96'000, .fade_in = 3'840, .fade_out = 7'680},
                                   Edit{.in = 88'320, .length = 19'200, .fade_in = 7'680}));
}

TEST_P(ImportClipsTest, WithoutASourceTheClipStaysWithItsSlotsRate) {
  aaf().set_sample_rate_index(2);
  const AafTake nowhere = file().source({.essence = AafSource::Essence::none});
  ASSERT_EQ(import({sound({filler(25), clip(nowhere, 50)}, at_25)}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.in = 48'000, .length = 96'000}));
  EXPECT_THAT(paths(), ElementsAre(beside("UNKNOWN")));
  EXPECT_EQ(utf8(entry(0).clip_name), "UNKNOWN");
  EXPECT_EQ(entry(0).source_index, 65535);
}

TEST_P(ImportClipsTest, ATapeIsNoFile) {
  const AafTake tape = file().source({.essence = AafSource::Essence::tape});
  ASSERT_EQ(import({sound({clip(tape, 50)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 50}));
  EXPECT_THAT(paths(), ElementsAre(beside("unknown")));
  EXPECT_EQ(utf8(entry(0).clip_name), "unknown");
  EXPECT_EQ(entry(0).source_index, 65535);
}

TEST_P(ImportClipsTest, AnImportedSourceIsNeither) {
  aaf().set_sample_rate_index(2);
  const AafTake imported = file().source({.essence = AafSource::Essence::import_only});
  ASSERT_EQ(import({sound({clip(imported, 50)})}), 100);
  EXPECT_THAT(paths(), ElementsAre(beside("UNKNOWN")));
}

TEST_P(ImportClipsTest, AClipThatLeadsNowhereEndsTheImport) {
  const AafTake source = take();
  const aafMobID_t missing = file().new_id();
  EXPECT_EQ(import({sound({clip(source, 50), clip(missing, 100)})}), 11);
  EXPECT_THAT(edits(), IsEmpty());
}

TEST_P(ImportClipsTest, AClipOnAFileItselfEndsTheImport) {
  const AafTake source = take();
  EXPECT_EQ(import({sound({clip(source.file, 100)})}), 11);
  EXPECT_THAT(edits(), IsEmpty());
}

TEST_P(ImportClipsTest, AMissingSlotOfTheSourceLeavesThePathUnknown) {
  aaf().set_sample_rate_index(2);
  ASSERT_EQ(import({sound({clip(take().master, 100, 5, 9)})}), 100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 100, .source = 5}));
  EXPECT_THAT(paths(), ElementsAre(beside("UNKNOWN")));
}

TEST_P(ImportClipsTest, WithoutANameTheNumbersOfTheMob) {
  const AafTake source = file().source({.name = std::nullopt});
  ASSERT_EQ(import({sound({clip(source, 100)})}), 100);
  EXPECT_EQ(utf8(entry(0).source_reel_name), "1 7 9" + std::string(27, ' '));
}

TEST_P(ImportClipsTest, LongNamesAreCut) {
  const AafTake source = file().source({.name = L"abcdefghijklmnopqrstuvwxyz0123456789ABCD"});
  ASSERT_EQ(import({sound({clip(source, 100)})}), 100);
  EXPECT_EQ(utf8(entry(0).source_reel_name), "abcdefghijklmnopqrstuvwxyz01234 ");
}

TEST_P(ImportClipsTest, ANameWithoutRoomIsNotRead) {
  const AafTake source = file().source({.name = std::wstring(260, L'x')});
  ASSERT_EQ(import({sound({clip(source, 100)})}), 100);
  EXPECT_EQ(utf8(entry(0).source_reel_name), "1 7 9" + std::string(27, ' '));
}

TEST_P(ImportClipsTest, NamesGoThroughTheCodePage) {
  const AafTake source = file().source({.name = L"é\u4e00"});
  ASSERT_EQ(import({sound({clip(source, 100)})}), 100);
  EXPECT_EQ(utf8(entry(0).source_reel_name), "é?" + std::string(30, ' '));
}

TEST_P(ImportClipsTest, ARateWithoutAnIndexIsToldOnce) {
  const AafTake source = file().source({.sample_rate = {22050, 1}, .slot_rate = at_25});
  ASSERT_EQ(import({sound({clip(source, 25), clip(source, 25)}, at_25)}), 100);
  EXPECT_THAT(boxes(), ElementsAre("[24731] 22050"));
  EXPECT_EQ(aaf().sample_rate_index(), rate_not_set);
  EXPECT_THAT(edits(), ElementsAre(Edit{.length = 22'050}, Edit{.in = 22'050, .length = 22'050}));
}

TEST_P(ImportClipsTest, ARateThatChangesIsToldOnce) {
  const AafTake first = file().source({});
  const AafTake second = file().source({.sample_rate = {44100, 1}});
  ASSERT_EQ(import({sound({clip(first, 10), clip(second, 10), clip(first, 10)})}), 100);
  EXPECT_THAT(boxes(), ElementsAre("[24730] 48000"));
  EXPECT_EQ(aaf().sample_rate_index(), 2);
}

// A rate without an index is no change of rate, neither to it nor from it.
TEST_P(ImportClipsTest, ARateWithoutAnIndexIsLeftOutOfTheComparison) {
  const AafTake odd = file().source({.sample_rate = {22050, 1}});
  const AafTake usual = file().source({});
  ASSERT_EQ(import({sound({clip(odd, 10), clip(usual, 10), clip(odd, 10), clip(usual, 10)})}), 100);
  EXPECT_THAT(boxes(), ElementsAre("[24731] 22050"));
  EXPECT_EQ(aaf().sample_rate_index(), 2);
}

// Each is told once, and every clip counts at its own rate on the timeline too.
TEST_P(ImportClipsTest, AClipOfAnotherRateLandsWhereItsRatePutsIt) {
  const AafTake usual = file().source({.slot_rate = at_25});
  const AafTake odd = file().source({.sample_rate = {22050, 1}, .slot_rate = at_25});
  const AafTake other = file().source({.sample_rate = {44100, 1}, .slot_rate = at_25});
  ASSERT_EQ(import({sound({clip(usual, 25), clip(odd, 25), clip(other, 25)}, at_25)}), 100);
  EXPECT_THAT(edits(),
              ElementsAre(Edit{.in = 0, .length = 48'000}, Edit{.in = 22'050, .length = 22'050},
                          Edit{.in = 88'200, .length = 44'100}));
  EXPECT_THAT(boxes(), ElementsAre("[24731] 22050", "[24730] 48000"));
}

// Two clips of one rate on end take the list along, whatever was told before.
TEST_P(ImportClipsTest, ARateThatStaysChangedIsTaken) {
  const AafTake first = file().source({});
  const AafTake second = file().source({.sample_rate = {44100, 1}});
  ASSERT_EQ(import({sound({clip(first, 10), clip(second, 10), clip(second, 10)})}), 100);
  EXPECT_THAT(boxes(), ElementsAre("[24730] 48000", "21715/22387"));
  EXPECT_EQ(aaf().sample_rate_index(), 1);
}

TEST_P(ImportClipsTest, AnotherRateThanTheHostsIsAskedAboutAndTaken) {
  for (const int answer : {box_answer_yes, box_answer_no}) {
    host.boxes.shown.clear();
    host.boxes.question_answers = {answer};
    importer = std::make_unique<CAAFEdlFile>(&edl);
    aaf().set_sample_rate_index(1);
    ASSERT_EQ(import({sound({clip(take(), 10)})}), 100);
    EXPECT_THAT(boxes(), ElementsAre("21715/22387"));
    EXPECT_EQ(aaf().sample_rate_index(), 2);
    path = folder.file("y.aaf");
  }
}

TEST_P(ImportClipsTest, EntriesStandInTheOrderOfTheirStarts) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({filler(100), clip(source, 10)}),
                    sound({clip(source, 10), clip(source, 90), clip(source, 5)})}),
            100);
  EXPECT_THAT(edits(), ElementsAre(Edit{.stream = 1, .in = 0, .length = 10},
                                   Edit{.stream = 1, .in = 10, .length = 90},
                                   Edit{.stream = 0, .in = 100, .length = 10},
                                   Edit{.stream = 1, .in = 100, .length = 5}));
}

TEST_P(ImportClipsTest, WithoutSlotsThereIsNothingToRead) {
  EXPECT_EQ(import(std::vector<AafSlot>{}), 11);
}

TEST_P(ImportClipsTest, ASequenceWithoutALengthEndsTheImport) {
  AafSlot slot = sound({});
  slot.segment = slot.segment.without_length();
  EXPECT_EQ(import({slot}), 11);
}

TEST_P(ImportClipsTest, AComponentWithoutALengthEndsTheImport) {
  EXPECT_EQ(import({sound({clip(take(), 10), filler(0).without_length()})}), 11);
  EXPECT_THAT(edits(), IsEmpty());
}

TEST_P(ImportClipsTest, WhatTheRecordDoesNotSay) {
  ASSERT_EQ(import({sound({clip(take(), 100, 7)})}), 100);
  const CGenericEdlEntry& only = entry(0);
  EXPECT_EQ(only.first_channel, 65535);
  EXPECT_EQ(only.no_channels, 1);
  EXPECT_EQ(only.channel_offset, 0);
  EXPECT_EQ(only.source_channel, 0U);
  EXPECT_EQ(only.source_time_word, 0xFFFFFFFFU);
  EXPECT_EQ(only.source_timestamp, time_not_given);
  EXPECT_EQ(only.dest_length, 0);
  EXPECT_EQ(only.gain_left, 1.0F);
  EXPECT_EQ(only.gain_right, 1.0F);
  EXPECT_EQ(only.source_index, 2);
  EXPECT_EQ(utf8(only.clip_name), "take.wav");
  EXPECT_EQ(utf8(only.file_path), "//C:/audio/take");
  EXPECT_EQ(only.source_in, 7);
  EXPECT_EQ(only.source_out, 107);
  EXPECT_EQ(utf8(only.source_reel_name), "take" + std::string(28, ' '));
}

TEST_P(ImportClipsTest, AllEntriesShareOneReelWithoutAName) {
  const AafTake source = take();
  ASSERT_EQ(import({sound({clip(source, 100), clip(source, 100)})}), 100);
  ASSERT_NE(entry(0).reel, nullptr);
  EXPECT_EQ(entry(0).reel, entry(1).reel);
  EXPECT_EQ(utf8(entry(0).reel->reel_name), "");
  EXPECT_EQ(entry(0).reel->no_streams, 0);
}

TEST_P(ImportClipsTest, ForcedCurvesGoBeforeThoseOfTheFile) {
  EDL_CONVERSION_SETTINGS settings;
  settings.force_default_fade_curves = 1;
  settings.default_fade_in_curve = 5;
  settings.default_fade_out_curve = 6;
  edl.set_edl_conversion_settings(&settings);
  ASSERT_EQ(
      import({sound(
          {clip(take(), 100).with_fades({10, kAAFFadeLinearPower, 10, kAAFFadeLinearPower})})}),
      100);
  EXPECT_EQ(entry(0).fade_in_curve, 5);
  EXPECT_EQ(entry(0).fade_out_curve, 6);
}

}  // namespace
