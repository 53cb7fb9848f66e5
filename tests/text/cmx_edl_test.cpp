// Reading CMX 340 and CMX 3600, at 48000 Hz and 25 frames where nothing else is said.
#include "text/cmx_edl.h"

#include <gtest/gtest.h>

#include "core/generic_reel.h"
#include "host/rates.h"
#include "tests/text/text_fixtures.h"

namespace {

using support::entries_of;
using support::frame;
using support::reel_of;
using support::second;
using support::streams_of;
using support::utf8;
using support::videos_of;
using Texts = std::vector<std::string>;
using Streams = std::vector<int>;

// An hour of timeline and ten of source.
constexpr std::int64_t hour = 3600 * second;

class CmxTest : public support::TextTest {
 protected:
  // Imports events behind a title, with these settings.
  CCMXEdl& import_events(std::string_view events) {
    edl = std::make_unique<CCMXEdl>(std::uint8_t{4}, nullptr, interactive);
    edl->set_edl_conversion_settings(&settings);
    support::set_rates(*edl, 2, frame_rate, interactive);
    EXPECT_EQ(import_bytes(*edl, "TITLE: X\n" + std::string(events)), 100);
    return *edl;
  }
  // The one entry of a list of these events.
  const CGenericEdlEntry& only_entry(std::string_view events) {
    const auto entries = entries_of(import_events(events));
    EXPECT_EQ(entries.size(), 1U);
    if (entries.size() != 1) throw std::runtime_error("not one entry");
    return *entries[0];
  }
  // Streams of the one entry behind a channel field and the lines that follow it.
  Streams streams_behind(const std::string& channels, const std::string& lines = "") {
    const CGenericEdlEntry& entry =
        only_entry("001  R1 " + channels + " C " + times + "\n" + lines);
    first_channel = entry.first_channel;
    EXPECT_EQ(entry.no_channels, entry.no_streams);
    return streams_of(entry);
  }

  const std::string times = "01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00";
  EDL_CONVERSION_SETTINGS settings;
  int interactive = 0;
  std::uint8_t frame_rate = frame_rate_25;
  int first_channel = -1;
  std::unique_ptr<CCMXEdl> edl;
};

TEST_F(CmxTest, FormatNames) {
  const auto name = [](std::uint8_t channels) {
    const CCMXEdl list(channels, nullptr, 0);
    wide_char out[format_name_size];
    static_cast<void>(list.get_format_name(out));
    return utf8(std::u16string_view(out));
  };
  EXPECT_EQ(name(2), "CMX 340 2-Ch");
  EXPECT_EQ(name(4), "CMX 3600 4-Ch");
}

TEST_F(CmxTest, MissingAndForeignFiles) {
  CCMXEdl list(4, nullptr, 0);
  support::set_rates(list);
  EXPECT_EQ(list.import_edl(folder.wide_file("missing")), 0);
  EXPECT_EQ(import_bytes(list, "TITLE: X\nM2A  R 025.0\nABC  R1 A C " + times + "\n"), 4);
  EXPECT_TRUE(entries_of(list).empty());
}

TEST_F(CmxTest, ACut) {
  settings.default_fade_length = 96;
  const CGenericEdlEntry& entry = only_entry("001  R1 A C " + times + "\n");
  EXPECT_EQ(entry.event_number, 1);
  EXPECT_EQ(reel_of(entry), u"R1");
  EXPECT_EQ(utf8(entry.source_reel_name), "R1" + std::string(30, ' '));
  EXPECT_EQ(streams_of(entry), Streams{0});
  EXPECT_EQ(entry.first_channel, 0);
  EXPECT_EQ(entry.transition_type, 50U);
  EXPECT_EQ(entry.fade_in_length, 96);
  EXPECT_EQ(entry.fade_out_length, 96);
  EXPECT_EQ(entry.source_in, hour);
  EXPECT_EQ(entry.source_out, hour + 10 * second);
  EXPECT_EQ(entry.dest_in, 10 * hour);
  EXPECT_EQ(entry.dest_out, 10 * hour + 10 * second);
  EXPECT_EQ(utf8(entry.source_in_string), "01:00:00:00");
  EXPECT_EQ(utf8(entry.source_out_string), "01:00:10:00");
  EXPECT_EQ(entry.reel->frame_rate(), frame_rate_25);
  EXPECT_TRUE(host.boxes.shown.empty());
  EXPECT_TRUE(videos_of(*edl).empty());
}

TEST_F(CmxTest, OtherLettersAreCuts) {
  settings.default_fade_length = 96;
  for (const char* letter : {"K", "KB", "c", "d", "X", "1"}) {
    const CGenericEdlEntry& entry =
        only_entry(std::string("001  R1 A ") + letter + " " + times + "\n");
    EXPECT_EQ(entry.transition_type, 50U) << letter;
    EXPECT_EQ(entry.fade_in_length, 96) << letter;
    EXPECT_EQ(entry.source_in, hour) << letter;
  }
}

TEST_F(CmxTest, ADissolve) {
  settings.default_fade_length = 96;
  const CGenericEdlEntry& entry = only_entry("001  R1 A D 024 " + times + "\n");
  EXPECT_EQ(entry.transition_type, 51U);
  EXPECT_EQ(entry.fade_in_length, 46080);
  EXPECT_EQ(entry.fade_out_length, 0);
  EXPECT_EQ(entry.source_in, hour);
}

TEST_F(CmxTest, ALengthThatIsNoNumberChangesNothing) {
  settings.default_fade_length = 96;
  for (const char* length : {"xx", "2x", "-24", "0.5"}) {
    const CGenericEdlEntry& entry =
        only_entry(std::string("001  R1 A D ") + length + " " + times + "\n");
    EXPECT_EQ(entry.transition_type, 51U) << length;
    EXPECT_EQ(entry.fade_in_length, 96) << length;
    EXPECT_EQ(entry.fade_out_length, 96) << length;
    EXPECT_EQ(entry.source_in, hour) << length;
  }
}

TEST_F(CmxTest, AMissingLengthIsNone) {
  // An empty word has no character that is no digit, so it counts as 0 frames.
  settings.default_fade_length = 96;
  const CGenericEdlEntry& entry = only_entry("001  R1 A D\n");
  EXPECT_EQ(entry.transition_type, 51U);
  EXPECT_EQ(entry.fade_in_length, 0);
  EXPECT_EQ(entry.fade_out_length, 0);
}

TEST_F(CmxTest, AHugeLengthIsHalvedToFit) {
  // The digits count as 2147483647 frames, far above the source length.
  const CGenericEdlEntry& entry = only_entry("001  R1 A D 99999999999999999999999 " + times + "\n");
  EXPECT_EQ(entry.fade_in_length, 5 * second);
  EXPECT_EQ(entry.fade_out_length, 5 * second);
}

TEST_F(CmxTest, AWipePassesItsNumber) {
  const CGenericEdlEntry& entry = only_entry("001  R1 A W 001 024 " + times + "\n");
  EXPECT_EQ(entry.transition_type, 51U);
  EXPECT_EQ(entry.fade_in_length, 46080);
  EXPECT_EQ(entry.source_in, hour);
}

TEST_F(CmxTest, AWipeWithoutBlankTakesTheLengthForItsNumber) {
  settings.default_fade_length = 96;
  // The token behind is the source in; it is no number, and the times move up.
  const CGenericEdlEntry& entry = only_entry("001  R1 A W001 024 " + times + "\n");
  EXPECT_EQ(entry.transition_type, 51U);
  EXPECT_EQ(entry.fade_in_length, 96);
  EXPECT_EQ(entry.source_in, hour + 10 * second);
  EXPECT_EQ(entry.source_out, 10 * hour);
  EXPECT_EQ(entry.dest_in, 10 * hour + 10 * second);
  EXPECT_EQ(entry.dest_out, 0);
}

// Channel fields

TEST_F(CmxTest, ChannelFields) {
  EXPECT_EQ(streams_behind("A"), Streams{0});
  EXPECT_EQ(streams_behind("AA"), (Streams{0, 1}));
  EXPECT_EQ(first_channel, 0);
  EXPECT_EQ(streams_behind("A2"), Streams{1});
  EXPECT_EQ(first_channel, 1);
  EXPECT_EQ(streams_behind("NONE"), Streams{65535});
  EXPECT_EQ(edl->skipped_count(), 0);
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(CmxTest, FieldsOfAudioAndVideo) {
  EXPECT_EQ(streams_behind("B"), Streams{0});
  EXPECT_EQ(videos_of(*edl).size(), 1U);
  EXPECT_EQ(streams_behind("AA/V"), (Streams{0, 1}));
  EXPECT_EQ(videos_of(*edl).size(), 1U);
  EXPECT_EQ(streams_behind("A2/V"), Streams{1});
  EXPECT_EQ(videos_of(*edl).size(), 1U);
  EXPECT_EQ(edl->skipped_count(), 0);
}

TEST_F(CmxTest, UnknownFieldsOfAKnownLengthAreSkippedAndStand) {
  EXPECT_EQ(streams_behind("A3"), Streams{65535});
  EXPECT_EQ(edl->skipped_count(), 1);
  EXPECT_EQ(streams_behind("AXYZ"), Streams{65535});
  EXPECT_EQ(edl->skipped_count(), 1);
  EXPECT_EQ(streams_behind("AX/V"), Streams{65535}) << "audio and video";
  EXPECT_EQ(edl->skipped_count(), 1);
  EXPECT_EQ(videos_of(*edl).size(), 1U);
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(CmxTest, OtherFieldsAreNoEvents) {
  for (const char* field :
       {"C1", "V2", "X", "VA1", "A12", "A1A2B", "VA/A", "a", "aa", "none", "b", "V/VX"}) {
    import_events("001  R0 A C " + times + "\n002  R1 " + field + " C " + times + "\n");
    EXPECT_EQ(entries_of(*edl).size(), 1U) << field;
    EXPECT_TRUE(videos_of(*edl).empty()) << field;
    EXPECT_EQ(edl->skipped_count(), 0) << field;
  }
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(CmxTest, VideoFields) {
  const auto video_of = [this](const std::string& field) {
    import_events("001  R1 " + field + " C " + times + "\n");
    return std::pair(entries_of(*edl).size(), videos_of(*edl).size());
  };
  using Counts = std::pair<std::size_t, std::size_t>;
  EXPECT_EQ(video_of("V"), (Counts{0, 1}));
  EXPECT_EQ(video_of("XXXV"), (Counts{0, 1}));
  EXPECT_EQ(video_of("XXXB"), (Counts{0, 1}));
  EXPECT_EQ(video_of("AAAB"), (Counts{1, 1}));
}

TEST_F(CmxTest, TheFieldHooks) {
  CCMXEdl list(4, nullptr, 0);
  for (const wide_char* audio : {u"A", u"B", u"A2", u"AX", u"AA/V", u"A...", u"NONE"})
    EXPECT_EQ(list.is_audio_field(audio), 1) << utf8(audio);
  for (const wide_char* none :
       {u"", u"V", u"C", u"BA", u"AAA", u"NON", u"NONES", u"AAAAA", u"VA2V"})
    EXPECT_EQ(list.is_audio_field(none), 0) << utf8(none);
  for (const wide_char* video : {u"V", u"B", u"AA/V", u"...B", u"NONV"})
    EXPECT_EQ(list.is_video_field(video), 1) << utf8(video);
  for (const wide_char* none : {u"", u"A", u"NONE", u"AV", u"A/V", u"AAA/V", u"VVVA"})
    EXPECT_EQ(list.is_video_field(none), 0) << utf8(none);
  EXPECT_EQ(list.is_ignored_event(u"001 R1 A"), 0);
}

TEST_F(CmxTest, AFieldOfAnotherLengthIsRefused) {
  CCMXEdl list(4, nullptr, 0);
  CGenericEdlEntry entry(&list);
  for (const wide_char* token : {u"", u"AAA", u"A1A2V"}) {
    int skip = 0;
    EXPECT_EQ(list.parse_channels(&entry, token, &skip), 92) << utf8(token);
    EXPECT_EQ(skip, 1);
    EXPECT_EQ(entry.no_streams, 0);
  }
  int skip = 1;
  EXPECT_EQ(list.parse_channels(&entry, u"A", &skip), 90);
  EXPECT_EQ(skip, 0) << "it is cleared";
  EXPECT_EQ(list.parse_event(&entry, u"001 R AAA C", &skip), 92);
  EXPECT_EQ(skip, 1);
}

TEST_F(CmxTest, ChannelModes) {
  settings.cmx_channel_mode = 1;
  EXPECT_EQ(streams_behind("A2"), Streams{1});
  EXPECT_EQ(first_channel, 0);
  settings.cmx_channel_mode = 2;
  EXPECT_EQ(streams_behind("A2"), Streams{0});
  EXPECT_EQ(first_channel, 1);
  settings.cmx_channel_mode = 3;
  EXPECT_EQ(streams_behind("AA"), (Streams{0, 1}));
}

TEST_F(CmxTest, TheSourceKnowsItsWidth) {
  import_events("001  R1 A2 C " + times + "\n002  R1 A C " + times + "\n");
  EXPECT_EQ(entries_of(*edl)[0]->reel->no_streams, 2);
  EXPECT_EQ(edl->get_reel_list()->GetCount(), 1) << "one reel for both";
}

// Numbers and reels

TEST_F(CmxTest, WhatNumbersAnEvent) {
  import_events("001  R1 A C " + times + "\n12A  R2 A C " + times + "\n12AB R3 A C " + times +
                "\n7 R4 A C " + times + "\n1234567 R5 A C " + times + "\nAB R6 A C " + times +
                "\n");
  Texts found;
  for (const CGenericEdlEntry* entry : entries_of(*edl))
    found.push_back(utf8(reel_of(*entry)) + " " + std::to_string(entry->event_number));
  // 1234567 is 18 times 65536 and 54919.
  EXPECT_EQ(found, (Texts{"R1 1", "R2 65535", "R4 7", "R5 54919"}));
}

TEST_F(CmxTest, ReelsOfTenAndElevenCharacters) {
  EXPECT_EQ(reel_of(only_entry("001  ABCDEFGHIJ A C " + times + "\n")), u"ABCDEFGHIJ");
  const CGenericEdlEntry& entry = only_entry("001  ABCDEFGHIJK A C " + times + "\n");
  EXPECT_EQ(reel_of(entry), u"N/A");
  EXPECT_EQ(utf8(entry.source_reel_name), "N/A" + std::string(29, ' '));
}

TEST_F(CmxTest, ALineThatEndsEarly) {
  const CGenericEdlEntry& entry = only_entry("001  R1 A\n");
  EXPECT_EQ(entry.transition_type, 50U);
  EXPECT_EQ(entry.source_in, 0);
  EXPECT_EQ(entry.dest_out, 0);
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(CmxTest, ALineWithoutChannelsIsNoEvent) {
  import_events("001\n002 R1\n003 R1 A C " + times + "\n");
  EXPECT_EQ(entries_of(*edl).size(), 1U);
}

TEST_F(CmxTest, ADotIsNoEvent) {
  // The dot is blanked; an empty word counts as digits, but names no field.
  import_events("001 R1 A C " + times + "\n.\n...\n. R2 A C " + times + "\n");
  EXPECT_EQ(entries_of(*edl).size(), 1U);
}

TEST_F(CmxTest, AnAudLineOfThreeWordsMayBeAnEvent) {
  import_events("001 R1 A C " + times + "\nAUD 3 A\n");
  ASSERT_EQ(entries_of(*edl).size(), 2U);
  EXPECT_EQ(entries_of(*edl)[0]->event_number, 65535) << "it starts at 0, in front of the other";
  EXPECT_EQ(reel_of(*entries_of(*edl)[0]), u"3");
}

// Negative times

TEST_F(CmxTest, NegativeTimes) {
  import_events("001 R1 A C " + times +
                "\n"
                "002 R1 A C -00:00:01:00 00:00:01:00 10:00:10:00 10:00:12:00\n"
                "003 R1 A C 00:00:01:00 00:00:02:00 -00:00:10:00 10:00:12:00\n"
                "004 R1 A C 00:00:05:00 -00:00:02:00 10:00:10:00 10:00:10:00\n");
  EXPECT_EQ(host.boxes.report_bodies(), (Texts{"[22253] [22258] 2", "[22253] [22258] 3"}));
  ASSERT_EQ(entries_of(*edl).size(), 2U);
  EXPECT_EQ(entries_of(*edl)[1]->source_out, -2 * second);
}

TEST_F(CmxTest, AStopAtTheFirstBadLine) {
  host.boxes.report_answers = {4096};
  import_events("001 R1 A C -" + times + "\n002 R1 A C -" + times + "\n003 R1 A C " + times +
                "\n"
                "004 R1 A C 01:00:00:00 01:00:10:00 10:00:10:00 10:00:50:00\n");
  EXPECT_EQ(host.boxes.shown.size(), 1U);
  EXPECT_EQ(entries_of(*edl).size(), 2U);
}

// "AUD" lines

TEST_F(CmxTest, ChannelsThreeAndFour) {
  EXPECT_EQ(streams_behind("NONE", "AUD 3 4\n"), (Streams{2, 3}));
  EXPECT_EQ(first_channel, 2);
  settings.cmx_channel_mode = 1;
  EXPECT_EQ(streams_behind("NONE", "AUD 3 4\n"), (Streams{2, 3}));
  EXPECT_EQ(first_channel, 0);
  settings.cmx_channel_mode = 2;
  EXPECT_EQ(streams_behind("NONE", "AUD 3 4\n"), (Streams{0, 1}));
  EXPECT_EQ(first_channel, 2);
  settings.cmx_channel_mode = 3;
  EXPECT_EQ(streams_behind("NONE", "AUD 3 4\n"), (Streams{0, 1}));
  EXPECT_EQ(first_channel, 0);
}

TEST_F(CmxTest, FormsOfTheAudLine) {
  EXPECT_EQ(streams_behind("NONE", "AUD\t3\t\n"), Streams{2});
  EXPECT_EQ(first_channel, 2);
  EXPECT_EQ(streams_behind("NONE", "AUD 4\n"), Streams{3});
  EXPECT_EQ(streams_behind("NONE", "AUD 4 3\n"), Streams{3});
  EXPECT_EQ(streams_behind("NONE", "AUD 34 45\n"), (Streams{2, 3})) << "first characters count";
  EXPECT_EQ(streams_behind("A2", "AUD 3\n"), (Streams{1, 2}));
  EXPECT_EQ(first_channel, 1);
  EXPECT_EQ(streams_behind("A2", "AUD 3 4\n"), (Streams{2, 3}));
  for (const char* line : {"AUD 3 5\n", "AUD 1\n", "AUD X\n"}) {
    EXPECT_EQ(streams_behind("AA", line), Streams{65535}) << line;
  }
  for (const char* line : {"AUD\n", "AUDIO 3 4\n", "aud 3 4\n", "AU 3 4\n"}) {
    EXPECT_EQ(streams_behind("AA", line), (Streams{0, 1})) << line;
  }
}

TEST_F(CmxTest, AudLinesByTheMap) {
  const std::uint16_t map[20] = {0, 1, 0, 1, 1, 1, 6, 1, 5, 3, 1, 1, 0, 2, 0, 10, 2, 4, 0, 0};
  settings.channel_map = map;
  EXPECT_EQ(streams_behind("NONE", "AUD 3 4\n"), (Streams{10, 11}));
  EXPECT_EQ(first_channel, 4);
  EXPECT_EQ(streams_behind("NONE", "AUD 3\n"), Streams{6});
  EXPECT_EQ(first_channel, 5);
  EXPECT_EQ(streams_behind("NONE", "AUD 1\n"), Streams{65535});
  EXPECT_EQ(streams_behind("AA"), (Streams{0, 1}));
  EXPECT_EQ(streams_behind("A2"), Streams{1});
  EXPECT_EQ(streams_behind("NONE"), Streams{65535});
}

TEST_F(CmxTest, AnAudLineInTheHeadDoesNothing) {
  import_events("AUD 3 4\nCOMMENT: 2-3\n001 R1 A C " + times + "\n");
  EXPECT_EQ(streams_of(*entries_of(*edl)[0]), Streams{0});
}

TEST_F(CmxTest, AnAudLineBehindVideoAloneDoesNothing) {
  import_events("001 R1 A C " + times + "\n002 R1 V C " + times + "\nAUD 3 4\n");
  EXPECT_EQ(streams_of(*entries_of(*edl)[0]), Streams{0});
  import_events("001 R1 AA/V C " + times + "\nAUD 3 4\n");
  EXPECT_EQ(streams_of(*entries_of(*edl)[0]), (Streams{2, 3}));
}

TEST_F(CmxTest, AnAudLineBehindARefusedEventMeetsTheOneBefore) {
  import_events("001 R1 A C " + times + "\n002 R1 A C -" + times + "\nAUD 3 4\n");
  EXPECT_EQ(streams_of(*entries_of(*edl)[0]), (Streams{2, 3}));
}

// Comments and rates

TEST_F(CmxTest, CommentsActOnlyWhenWanted) {
  EXPECT_EQ(streams_behind("A", "COMMENT: 2-3\n"), Streams{0});
  EXPECT_EQ(streams_behind("A", "COMMENT: AUDIO MAPPING FROM CH3 TO CH1\n"), Streams{0});
  settings.cmx_mapping_comments = 1;
  EXPECT_EQ(streams_behind("A", "COMMENT: 2-3\n"), Streams{1});
  EXPECT_EQ(first_channel, 2);
  EXPECT_EQ(streams_behind("AA", "* COMMENT: AUDIO MAPPING FROM CH3 TO CH1\n"), (Streams{2, 1}));
  EXPECT_EQ(first_channel, 0);
}

TEST_F(CmxTest, AnFcmLineChangesWhatFollows) {
  interactive = 1;
  settings.ask_on_frame_rate_change = 1;
  host.boxes.question_answers = {box_answer_yes};
  import_events(
      "001 R1 A C 00:00:00:00 00:00:10:00 00:00:00:00 00:00:10:00\n"
      "FCM: DROP FRAME\n"
      "002 R2 A C 00:00:00:00 00:00:10:00 00:00:10:00 00:00:20:00\n");
  const auto e = entries_of(*edl);
  ASSERT_EQ(e.size(), 2U);
  EXPECT_EQ(e[0]->source_out, 480000);
  // Ten seconds of time code last 10.01 seconds.
  EXPECT_EQ(e[1]->source_out, 480480);
  EXPECT_EQ(e[1]->dest_out, 960960);
  EXPECT_EQ(e[0]->frame_rate, frame_rate_25);
  EXPECT_EQ(e[1]->frame_rate, frame_rate_2997_drop);
  EXPECT_EQ(edl->frame_rate(), frame_rate_2997_drop);
  EXPECT_EQ(edl->original_frame_rate(), frame_rate_2997_drop);
}

TEST_F(CmxTest, AnFcmLineBehindVideo) {
  interactive = 1;
  settings.ask_on_frame_rate_change = 1;
  host.boxes.question_answers = {box_answer_yes};
  import_events("001 R1 V C " + times + "\nFCM: DROP FRAME\n");
  EXPECT_EQ(edl->frame_rate(), frame_rate_2997_drop);
  // Behind an event of both kinds both hooks see the line, so No is asked twice.
  host.boxes.shown.clear();
  import_events("001 R1 B C " + times + "\nFCM: DROP FRAME\n");
  EXPECT_EQ(host.boxes.shown.size(), 2U);
}

TEST_F(CmxTest, AReelTakesTheRateThatTheFileStated) {
  import_events("001 R1 A C " + times + "\nFCM: DROP FRAME\n002 R2 A C " + times + "\n");
  const auto e = entries_of(*edl);
  EXPECT_EQ(e[0]->reel->frame_rate(), frame_rate_25);
  EXPECT_EQ(e[1]->reel->frame_rate(), frame_rate_2997_drop);
  EXPECT_EQ(e[1]->source_in, hour) << "the list keeps its own rate";
}

// Video events

TEST_F(CmxTest, AVideoEvent) {
  import_events("007  TAPE V C " + times + "\n");
  ASSERT_EQ(videos_of(*edl).size(), 1U);
  const CGenericEdlVideoEntry& video = *videos_of(*edl)[0];
  EXPECT_EQ(video.event_number, 7);
  EXPECT_EQ(video.source_in, hour);
  EXPECT_EQ(video.source_out, hour + 10 * second);
  EXPECT_EQ(video.dest_in, 10 * hour);
  EXPECT_EQ(video.dest_out, 10 * hour + 10 * second);
  EXPECT_EQ(video.transition_type, 50U);
  wide_char reel[13];
  video.get_reel_name(reel, 13);
  EXPECT_EQ(std::u16string(reel), u"TAPE");
  EXPECT_EQ(utf8(video.source_reel_name), "TAPE" + std::string(28, ' '));
}

TEST_F(CmxTest, VideoTransitionsAreAllCuts) {
  for (const char* transition : {"C", "D 024", "W 001 024", "K"}) {
    import_events(std::string("001  R V ") + transition + " " + times + "\n");
    const CGenericEdlVideoEntry& video = *videos_of(*edl).at(0);
    EXPECT_EQ(video.transition_type, 50U) << transition;
    EXPECT_EQ(video.source_in, hour) << transition;
    EXPECT_EQ(video.dest_out, 10 * hour + 10 * second) << transition;
  }
  CCMXEdl list(4, nullptr, 0);
  CGenericEdlVideoEntry entry(&list);
  EXPECT_EQ(list.parse_video_event(&entry, u"001 R V C -1"), 90);
  EXPECT_EQ(list.parse_video_event(&entry, u""), 90);
}

TEST_F(CmxTest, TheFirstStream) {
  CCMXEdl list(4, nullptr, 0);
  CGenericEdlEntry entry(&list);
  entry.set_no_streams(1);
  entry.set_stream(0, 3);
  entry.first_channel = 7;
  EXPECT_EQ(list.get_first_stream(&entry), 3);
  settings.cmx_use_first_channel = 1;
  list.set_edl_conversion_settings(&settings);
  EXPECT_EQ(list.get_first_stream(&entry), 7);
}

// What happens behind the last line

TEST_F(CmxTest, TheEndSortsByDestination) {
  import_events(
      "001 R1 A C 00:00:00:00 00:00:01:00 00:00:09:00 00:00:10:00\n"
      "002 R2 A C 00:00:00:00 00:00:01:00 00:00:01:00 00:00:02:00\n");
  EXPECT_EQ(entries_of(*edl)[0]->event_number, 2);
}

TEST_F(CmxTest, MonoPairsMergeWhenWanted) {
  const std::string pair = "001 R1 A2 C " + times + "\n001 R1 A C " + times + "\n";
  import_events(pair);
  EXPECT_EQ(entries_of(*edl).size(), 2U);
  settings.cmx_merge_channels = 1;
  import_events(pair);
  // The right side comes first in the file; both start at the same time, and the
  // sort leaves them so.
  EXPECT_EQ(entries_of(*edl).size(), 2U);
  import_events("001 R1 A C " + times + "\n001 R1 A2 C " + times + "\n");
  ASSERT_EQ(entries_of(*edl).size(), 1U);
  EXPECT_EQ(streams_of(*entries_of(*edl)[0]), (Streams{0, 1}));
  EXPECT_EQ(entries_of(*edl)[0]->no_channels, 2);
}

TEST_F(CmxTest, WithoutMergingTheFoldComesBeforeTheSort) {
  // In file order the second line follows the first on the timeline; in time order
  // a third stands between them.
  const std::string list =
      "001 R1 A C 00:01:00:00 00:01:01:00 00:00:01:00 00:00:02:00\n"
      "002 R2 A C 00:01:00:00 00:01:01:00 00:00:02:00 00:00:03:00\n"
      "003 R3 A C 00:01:00:00 00:01:01:00 00:00:01:12 00:00:02:12\n";
  settings.default_fade_length = 480;
  import_events(list);
  EXPECT_EQ(entries_of(*edl)[2]->dest_in, 2 * second - 240);
  EXPECT_EQ(entries_of(*edl)[2]->original_dest_in, 2 * second);
  settings.cmx_merge_channels = 1;
  import_events(list);
  EXPECT_EQ(entries_of(*edl)[2]->dest_in, 2 * second) << "sorted first, nothing meets";
}

}  // namespace
