#include "text/lw_multi_channel_edl.h"

#include <cstdlib>
#include <filesystem>

#include "core/generic_edl_video_entry.h"
#include "core/generic_reel.h"
#include "tests/text/format_fixtures.h"

namespace {

using support::entries_of;
using support::standard_edit;
using support::Streams;
using support::streams_of;
using support::Texts;
using support::times_of_x;
using support::utf8;

class MultiChannel : public support::FormatTest {
 protected:
  std::string events(const support::Edit& edit, const EDL_CONVERSION_SETTINGS& settings = {}) {
    return written_events<CLWMultiChannelEdl>(edit, 1, settings);
  }
  result_code import(const std::string& lines) { return read(edl_, "TITLE: t\n" + lines); }
  const CGenericEdlEntry& only() {
    EXPECT_EQ(entries_of(edl_).size(), 1U);
    return *entries_of(edl_).at(0);
  }

  CLWMultiChannelEdl edl_{nullptr, 0};
};

TEST_F(MultiChannel, TitleAndPlainEdit) {
  CGenericEdl root;
  support::set_rates(root);
  support::add_entry(root, standard_edit());
  EXPECT_EQ(written<CLWMultiChannelEdl>(root),
            "TITLE: b          FORMAT: Multitrack Audio \n"
            "001  TAPE \tA1    C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n");
}

TEST_F(MultiChannel, ChannelAndReelColumns) {
  const auto columns = [this](std::vector<int> streams, const std::u16string& reel) {
    support::Edit edit = standard_edit();
    edit.streams = std::move(streams);
    edit.reel = reel;
    const std::string line = events(edit);
    return line.substr(5, line.find("C    ") - 5);
  };
  EXPECT_EQ(columns({0}, u"R"), "R \tA1    ");
  EXPECT_EQ(columns({0, 1}, u"R"), "R \tA12   ");
  EXPECT_EQ(columns({6, 7}, u"R"), "R \tA78   ");
  // More streams than two, or none: the second is written all the same.
  EXPECT_EQ(columns({0, 3, 5}, u"R"), "R \tA14   ");
  EXPECT_EQ(columns({}, u"R"), "R \tA6553665536   ");
  // Nothing stops a channel that no reader takes.
  EXPECT_EQ(columns({8}, u"R"), "R \tA9    ");
  EXPECT_EQ(columns({0}, u" X"), "N/A\tA1    ");
  EXPECT_EQ(columns({0}, u""), "N/A\tA1    ");
}

TEST_F(MultiChannel, MappingComment) {
  EDL_CONVERSION_SETTINGS settings;
  settings.lw_multichannel_mapping_comments = 1;
  support::Edit edit = standard_edit();
  edit.streams = {2};
  edit.first_channel = 5;
  const std::string times = "C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n";
  EXPECT_EQ(events(edit, settings),
            "001  TAPE \tA3    " + times + "COMMENT: AUDIO MAPPING\tFROM CH6 TO CH3\n");
  EXPECT_EQ(events(edit), "001  TAPE \tA3    " + times);
  edit.streams = {2, 3};
  edit.first_channel = 0;
  EXPECT_EQ(
      events(edit, settings),
      "001  TAPE \tA34   " + times + "COMMENT: AUDIO MAPPING\tFROM CH1 TO CH3\tFROM CH2 TO CH4\n");
  edit.first_channel = 2;
  EXPECT_EQ(events(edit, settings), "001  TAPE \tA34   " + times);
  // With the source channel in the place of the stream, the two are always equal.
  settings.lw_multichannel_use_first_channel = 1;
  edit.streams = {2};
  edit.first_channel = 5;
  EXPECT_EQ(events(edit, settings), "001  TAPE \tA6    " + times);
}

TEST_F(MultiChannel, Fades) {
  support::Edit edit = standard_edit();
  edit.fade_in = 46080;
  edit.fade_out = 23040;
  EXPECT_EQ(events(edit),
            "001  BLK \tA1    C         00:00:00:00 00:00:00:00 10:00:00:00 10:00:00:00 \n"
            "001  TAPE \tA1    D   024   01:00:00:00 01:00:09:13 10:00:00:00 10:00:09:13 \n"
            "002  TAPE \tA1    C         01:00:09:13 01:00:09:13 10:00:09:13 10:00:09:13 \n"
            "002  BLK \tA1    D   012   00:00:00:00 00:00:00:12 10:00:09:13 10:00:10:00 \n");
}

TEST_F(MultiChannel, CutsOnlyNeitherSplitsNorNumbers) {
  EDL_CONVERSION_SETTINGS settings;
  settings.lw_multichannel_cuts_only = 1;
  support::Edit edit = standard_edit();
  edit.fade_in = 46080;
  edit.event_number = 1234;
  EXPECT_EQ(events(edit, settings),
            "1234  TAPE \tA1    C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n");
}

TEST_F(MultiChannel, LineKinds) {
  EXPECT_EQ(edl_.is_audio_event(u"001 R A1"), 1);
  EXPECT_EQ(edl_.is_audio_event(u"001 R AXYZ"), 1);
  EXPECT_EQ(edl_.is_audio_event(u"001 R B"), 0);
  EXPECT_EQ(edl_.is_audio_event(u"001 R NONE"), 0);
  EXPECT_EQ(edl_.is_audio_event(u"001 R V"), 0);
  EXPECT_EQ(edl_.is_audio_event(u"001 R"), 0);
  EXPECT_EQ(edl_.is_audio_event(u"ABC R A1"), 1);
  EXPECT_EQ(edl_.is_audio_event(u"ABCD R A1"), 0);
  EXPECT_EQ(edl_.is_audio_event(u"1234 R A1"), 1);
  EXPECT_EQ(edl_.is_audio_event(u""), 0);
  EXPECT_EQ(edl_.is_video_event(u"001 R V"), 0);
  EXPECT_EQ(edl_.is_ignored_event(u"001 R A1"), 0);
}

TEST_F(MultiChannel, ChannelField) {
  struct Row {
    std::u16string token;
    result_code code;
    int skip;
    Streams streams;
  };
  const std::vector<Row> rows = {
      {u"A", 90, 0, {0}},        {u"B", 90, 0, {0}},        {u"AA", 90, 0, {0, 1}},
      {u"A1", 90, 0, {0}},       {u"A8", 90, 0, {7}},       {u"A37", 90, 0, {2, 6}},
      {u"A73", 90, 0, {2, 6}},   {u"A33", 90, 0, {2}},      {u"AA/V", 90, 0, {0, 1}},
      {u"A2/V", 90, 0, {1}},     {u"NONE", 90, 0, {65535}}, {u"A9", 90, 1, {65535}},
      {u"A0", 90, 1, {65535}},   {u"A19", 90, 1, {65535}},  {u"X", 90, 1, {65535}},
      {u"XY", 90, 1, {65535}},   {u"XYZ", 90, 1, {65535}},  {u"B12", 90, 1, {65535}},
      {u"WXYZ", 90, 1, {65535}}, {u"A123", 90, 1, {65535}}, {u"A1234", 92, 1, {}},
      {u"", 92, 1, {}},
  };
  for (const Row& row : rows) {
    CGenericEdlEntry entry(&edl_);
    int skip = 0;
    EXPECT_EQ(edl_.parse_channels(&entry, row.token, &skip), row.code) << utf8(row.token);
    EXPECT_EQ(skip, row.skip) << utf8(row.token);
    EXPECT_EQ(streams_of(entry), row.streams) << utf8(row.token);
  }
}

TEST_F(MultiChannel, PlainLine) {
  EXPECT_EQ(import("001 TAPE01 A2/V C" + times_of_x + "\n"), 100);
  EXPECT_EQ(only().event_number, 1);
  EXPECT_EQ(utf8(support::reel_of(only())), "TAPE");
  EXPECT_EQ(utf8(only().source_reel_name), "TAPE" + std::string(28, ' '));
  EXPECT_EQ(streams_of(only()), Streams{1});
  EXPECT_EQ(only().first_channel, 1);
  EXPECT_EQ(only().transition_type, 50U);
  EXPECT_TRUE(support::has_times(only(), standard_edit()));
}

TEST_F(MultiChannel, Transitions) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_length = 480;
  const auto entry_of = [&](const std::string& transition) {
    CLWMultiChannelEdl edl(nullptr, 0);
    edl.set_edl_conversion_settings(&settings);
    EXPECT_EQ(read(edl, "001 R A1 " + transition + times_of_x + "\n"), 100);
    const CGenericEdlEntry& entry = *entries_of(edl).at(0);
    EXPECT_TRUE(support::has_times(entry, standard_edit())) << transition;
    return std::tuple(entry.transition_type, entry.fade_in_length, entry.fade_out_length);
  };
  using Fades = std::tuple<std::uint32_t, std::int64_t, std::int64_t>;
  EXPECT_EQ(entry_of("C"), Fades(50, 480, 480));
  EXPECT_EQ(entry_of("D 024"), Fades(51, 46080, 480));
  EXPECT_EQ(entry_of("D xx"), Fades(51, 480, 480));
  EXPECT_EQ(entry_of("K"), Fades(0, 480, 480));
}

// An empty word has no character that is no digit, so it counts as 0.
TEST_F(MultiChannel, MissingWordsCountAsNumbers) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_length = 480;
  edl_.set_edl_conversion_settings(&settings);
  EXPECT_EQ(import("001 R A1 D\n"), 100);
  EXPECT_EQ(only().transition_type, 51U);
  EXPECT_EQ(only().fade_in_length, 0);
  EXPECT_EQ(only().fade_out_length, 480);
  CGenericEdlEntry entry(&edl_);
  int skip = 0;
  EXPECT_EQ(edl_.parse_event(&entry, u"", &skip), 92);
  EXPECT_EQ(entry.event_number, 0);
}

// A letter that is neither "C" nor "D" leaves the transition that the entry has.
TEST_F(MultiChannel, OtherLettersLeaveTheTransition) {
  CGenericEdlEntry entry(&edl_);
  support::set_rates(edl_);
  entry.transition_type = 51;
  int skip = 0;
  const std::u16string line = u"001 R A1 K 024 00:00:01:00 00:00:02:00 00:00:03:00 00:00:04:00";
  EXPECT_EQ(edl_.parse_event(&entry, line.c_str(), &skip), 90);
  EXPECT_EQ(entry.transition_type, 51U);
  EXPECT_EQ(entry.fade_in_length, 46080);
  EXPECT_TRUE(support::has_times(entry, {144000, 192000, 48000, 96000}));
}

// A wipe has no meaning here: its number and length are read as times.
TEST_F(MultiChannel, WipeShiftsTheTimes) {
  EXPECT_EQ(import("001 R A1 W001 025" + times_of_x + "\n"), 100);
  EXPECT_EQ(only().transition_type, 0U);
  EXPECT_EQ(only().source_in, 0);
  EXPECT_EQ(only().source_out, standard_edit().source_in);
  EXPECT_EQ(only().dest_in, standard_edit().source_out);
}

TEST_F(MultiChannel, FieldsThatCannotBeRead) {
  EXPECT_EQ(import("001 R AX C" + times_of_x + "\n002 R A1234 C" + times_of_x + "\n003 R A1 C " +
                   "-00:00:01:00 00:00:02:00 00:00:01:00 00:00:02:00\n"),
            100);
  EXPECT_EQ(streams_of(only()), Streams{65535});
  EXPECT_EQ(only().no_channels, 1);
  EXPECT_EQ(edl_.skipped_count(), 2);
  EXPECT_EQ(reports(), (Texts{"[22253] [22231] 2", "[22253] [22258] 3"}));
}

TEST_F(MultiChannel, VideoLinesAreNotRead) {
  EXPECT_EQ(import("001 R V C" + times_of_x + "\n"), 100);
  EXPECT_TRUE(entries_of(edl_).empty());
  EXPECT_TRUE(edl_.get_video_list()->IsEmpty());
  EXPECT_TRUE(reports().empty());
  CGenericEdlVideoEntry entry(&edl_);
  EXPECT_EQ(edl_.parse_video_event(&entry, u"001 R V C"), 92);
}

TEST_F(MultiChannel, LinesBehindAnEvent) {
  const std::string lines = "001 R A3 C" + times_of_x +
                            "\n COMMENT: AUDIO MAPPING\tFROM CH2 TO CH6\tFROM CH1 TO CH1\n" +
                            "FCM: DROP\n";
  EXPECT_EQ(import(lines), 100);
  EXPECT_EQ(streams_of(only()), Streams{2});
  EXPECT_EQ(edl_.original_frame_rate(), 3);
  CLWMultiChannelEdl allowed(nullptr, 0);
  EDL_CONVERSION_SETTINGS settings;
  settings.lw_multichannel_mapping_comments = 1;
  allowed.set_edl_conversion_settings(&settings);
  EXPECT_EQ(read(allowed, lines), 100);
  EXPECT_EQ(streams_of(*entries_of(allowed).at(0)), Streams{1});
  EXPECT_EQ(entries_of(allowed).at(0)->first_channel, 5);
}

TEST_F(MultiChannel, SettingsAreItsOwn) {
  EDL_CONVERSION_SETTINGS settings;
  settings.lw_multichannel_channel_mode = 3;
  settings.cmx_merge_channels = 1;
  const std::uint16_t map[20] = {9, 1, 0, 9, 1, 1, 9, 1, 0, 9, 1, 1, 9, 2, 0, 9, 2, 0, 0, 0};
  settings.channel_map = map;
  edl_.set_edl_conversion_settings(&settings);
  EXPECT_EQ(import("001 R A78 C" + times_of_x + "\n"), 100);
  EXPECT_EQ(streams_of(only()), (Streams{0, 1}));
  EXPECT_EQ(only().first_channel, 0);

  CGenericEdlEntry entry(&edl_);
  entry.set_no_streams(1);
  entry.set_stream(0, 2);
  entry.first_channel = 1;
  EXPECT_EQ(edl_.get_first_stream(&entry), 2);
  settings.lw_multichannel_use_first_channel = 1;
  edl_.set_edl_conversion_settings(&settings);
  EXPECT_EQ(edl_.get_first_stream(&entry), 1);
}

TEST_F(MultiChannel, MonoPairsAreMergedWhenAsked) {
  const std::string lines = "001 R A1 C" + times_of_x + "\n002 R A2 C" + times_of_x + "\n";
  EXPECT_EQ(import(lines), 100);
  EXPECT_EQ(entries_of(edl_).size(), 2U);
  CLWMultiChannelEdl merging(nullptr, 0);
  EDL_CONVERSION_SETTINGS settings;
  settings.lw_multichannel_merge_channels = 1;
  merging.set_edl_conversion_settings(&settings);
  EXPECT_EQ(read(merging, lines), 100);
  ASSERT_EQ(entries_of(merging).size(), 1U);
  EXPECT_EQ(streams_of(*entries_of(merging).at(0)), (Streams{0, 1}));
}

// Merging sorts first, so that edits which meet in time need not be neighbours in the
// file, and the crossfades are those of the stereo edits.
TEST_F(MultiChannel, MergedEditsAreFoldedIntoCrossfades) {
  EDL_CONVERSION_SETTINGS settings;
  settings.lw_multichannel_merge_channels = 1;
  settings.default_fade_length = 480;
  edl_.set_edl_conversion_settings(&settings);
  EXPECT_EQ(import("001 R A1 C 00:01:00:00 00:01:01:00 00:00:01:00 00:00:02:00\n"
                   "002 R A1 C 00:02:00:00 00:02:01:00 00:00:02:00 00:00:03:00\n"
                   "003 R A2 C 00:01:00:00 00:01:01:00 00:00:01:00 00:00:02:00\n"
                   "004 R A2 C 00:02:00:00 00:02:01:00 00:00:02:00 00:00:03:00\n"),
            100);
  const auto entries = entries_of(edl_);
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(streams_of(*entries[0]), (Streams{0, 1}));
  EXPECT_TRUE(support::has_times(*entries[0], {48000, 96240, 2880000, 2928240}));
  EXPECT_TRUE(support::has_times(*entries[1], {95760, 144000, 5759760, 5808000}));
  EXPECT_EQ(entries[1]->original_dest_in, 96000);
}

TEST_F(MultiChannel, WhatCannotBeReadOrWritten) {
  support::set_rates(edl_);
  EXPECT_EQ(edl_.import_edl(folder_.wide_file("none")), 0);
  EXPECT_EQ(import(""), 4);
  CGenericEdl root;
  support::set_rates(root);
  support::add_entry(root, standard_edit());
  CLWMultiChannelEdl out(&root, 0);
  EXPECT_EQ(out.export_edl(folder_.wide_file("no/such/b.edl"), 0), 0);
  EXPECT_EQ(out.export_edl(u"/dev/full", 0), 101);
  EXPECT_NE(out.output_incomplete(), 0);
}

TEST_F(MultiChannel, Golden) {
  CGenericEdl root;
  EDL_CONVERSION_SETTINGS settings;
  settings.lw_multichannel_mapping_comments = 1;
  root.set_edl_conversion_settings(&settings);
  support::fill_with_fades(root, {6, 7});
  EXPECT_TRUE(support::matches_golden("lightworks-multichannel/fades.edl",
                                      written<CLWMultiChannelEdl>(root)));
}

// Lost on the way, beside levels and names: reels are cut at four characters and
// source channels become stream numbers. A fade-in comes back with the black edit in
// front of it, which runs on under the fade, and a fade-out with the black behind it.
// Where a fade-in stands behind a gap, no edit leads into its black line; there the
// folding ends, and what follows stays as the lines have it.
TEST_F(MultiChannel, RoundTrip) {
  CGenericEdl root;
  support::fill_with_fades(root, {6, 7});
  EXPECT_EQ(read(edl_, written<CLWMultiChannelEdl>(root)), 100);
  struct Back {
    std::u16string reel;
    support::Edit times;
    Streams streams;
    std::int64_t fade_in;
    std::int64_t fade_out;
  };
  const std::vector<Back> expected = {
      {u"BLK", {0, 96000, 0, 96000}, {0}, 0, 96000},
      {u"ALPH", {0, 480000, 48000, 528000}, {0}, 96000, 0},
      {u"BETA", {480000, 960000, 4800000, 5280000}, {1}, 0, 23040},
      {u"BLK", {936960, 960000, 0, 23040}, {1}, 23040, 0},
      {u"BLK", {1440000, 1440000, 0, 0}, {0, 1}, 0, 0},
      {u"GAMM", {1440000, 1800960, 172800000, 173160960}, {0, 1}, 46080, 0},
      {u"GAMM", {1800960, 1800960, 173160960, 173160960}, {0, 1}, 0, 0},
      {u"BLK", {1800960, 1920000, 0, 119040}, {0, 1}, 119040, 0},
      {u"DELT", {1920000, 2400000, 0, 480000}, {6, 7}, 0, 0},
  };
  const auto entries = entries_of(edl_);
  ASSERT_EQ(entries.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(utf8(support::reel_of(*entries[i])), utf8(expected[i].reel)) << i;
    EXPECT_TRUE(support::has_times(*entries[i], expected[i].times)) << i;
    EXPECT_EQ(streams_of(*entries[i]), expected[i].streams) << i;
    EXPECT_EQ(entries[i]->fade_in_length, expected[i].fade_in) << i;
    EXPECT_EQ(entries[i]->fade_out_length, expected[i].fade_out) << i;
  }
  EXPECT_TRUE(reports().empty());
}

// A list by the maker of the picture editor, of which the folder of samples has one.
// Its picture lines are passed over; the times are frames of 1920 samples.
TEST_F(MultiChannel, ListByTheMaker) {
  const char* const samples = std::getenv("EDL_SAMPLES");
  if (samples == nullptr) GTEST_SKIP() << "EDL_SAMPLES names no folder of samples";
  struct Line {
    std::uint16_t event;
    const char* reel;
    std::int64_t source_in, source_out, dest_in, dest_out;
  };
  // 00:00:19:05 is frame 480, 00:00:41:07 frame 1032, 00:00:22:02 frame 552,
  // 00:00:34:12 and 00:00:36:06 are 862 and 906, 00:00:43:01 is 1076, 00:01:05:03 1628.
  const std::vector<Line> expected = {
      {2, "E00B", 480, 1032, 0, 552},
      {4, "E00B", 0, 480, 552, 1032},
      {5, "E00B", 862, 906, 1032, 1076},
      {6, "BL", 0, 552, 1076, 1628},
  };
  int files = 0;
  for (const auto& item :
       std::filesystem::directory_iterator(std::filesystem::path(samples) / "lightworks")) {
    for (const int mapped : {0, 1}) {
      CLWMultiChannelEdl edl(nullptr, 0);
      EDL_CONVERSION_SETTINGS settings;
      settings.lw_multichannel_mapping_comments = mapped;
      edl.set_edl_conversion_settings(&settings);
      support::set_rates(edl);
      ASSERT_EQ(edl.import_edl(text_from_utf8(item.path().string()).c_str()), 100);
      const auto entries = entries_of(edl);
      ASSERT_EQ(entries.size(), expected.size());
      for (std::size_t i = 0; i < expected.size(); ++i) {
        const Line& line = expected[i];
        EXPECT_EQ(entries[i]->event_number, line.event);
        EXPECT_EQ(utf8(support::reel_of(*entries[i])), line.reel);
        EXPECT_TRUE(
            support::has_times(*entries[i], {line.dest_in * 1920, line.dest_out * 1920,
                                             line.source_in * 1920, line.source_out * 1920}));
        EXPECT_EQ(streams_of(*entries[i]), (Streams{0, 1}));
        EXPECT_EQ(entries[i]->transition_type, 50U);
        // "FROM CH1 TO CH2" behind all events but the black one.
        EXPECT_EQ(entries[i]->first_channel, mapped != 0 && i < 3 ? 1 : 0);
      }
      EXPECT_TRUE(edl.get_video_list()->IsEmpty());
    }
    ++files;
  }
  EXPECT_EQ(files, 1);
  EXPECT_TRUE(reports().empty());
}

}  // namespace
