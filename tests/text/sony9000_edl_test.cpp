#include "text/sony9000_edl.h"

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

constexpr std::string_view head =
    "TITLE: b          FORMAT: Sony-9000 \n"
    "\nEDT REL MODE  TYP P S   T     P-VTR IN     P-VTR OUT    R-VTR IN     R-VTR OUT\n"
    "BLOCK 001\n";

class Sony : public support::FormatTest {
 protected:
  // The event lines of a list with this edit alone.
  std::string events(const support::Edit& edit, const EDL_CONVERSION_SETTINGS& settings = {}) {
    std::string text = written_events<CSony9000Edl>(edit, 4, settings);
    EXPECT_TRUE(text.ends_with(".\nEND\n"));
    return text.substr(0, text.size() - 6);
  }
  // Reads event lines behind a title.
  result_code import(const std::string& lines) { return read(edl_, "TITLE: t\n" + lines); }
  const CGenericEdlEntry& only() {
    EXPECT_EQ(entries_of(edl_).size(), 1U);
    return *entries_of(edl_).at(0);
  }

  CSony9000Edl edl_{nullptr, 0};
};

TEST_F(Sony, HeadAndTail) {
  CGenericEdl root;
  support::set_rates(root);
  EXPECT_EQ(written<CSony9000Edl>(root), std::string(head) + ".\nEND\n");
}

TEST_F(Sony, PlainEdit) {
  EXPECT_EQ(events(standard_edit()),
            "001  TAPE01 \tA1    C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n");
}

TEST_F(Sony, ChannelColumnAndNote) {
  const auto column = [this](std::vector<int> streams) {
    support::Edit edit = standard_edit();
    edit.streams = std::move(streams);
    const std::string line = events(edit);
    const std::size_t start = line.find('\t') + 1;
    const std::size_t end = line.find("C   ");
    return line.substr(start, end - start) + "|" + line.substr(line.find(" \n") + 1);
  };
  EXPECT_EQ(column({0}), "A1    |\n");
  EXPECT_EQ(column({1}), "  A2  |\n");
  EXPECT_EQ(column({0, 1}), "A1A2  |\n");
  EXPECT_EQ(column({1, 2}), "A2A3  |\n");
  EXPECT_EQ(column({2}), "A\t|\nA3\n");
  EXPECT_EQ(column({3}), "A\t|\n  A4\n");
  EXPECT_EQ(column({2, 3}), "A\t|\nA3A4\n");
}

TEST_F(Sony, EventsBehindTheLastChannelAreRefused) {
  support::Edit edit = standard_edit();
  edit.streams = {3, 4};
  edit.event_number = 7;
  EXPECT_EQ(events(edit), "");
  EXPECT_EQ(reports(), Texts{"[22253] [22231] 1"});
}

TEST_F(Sony, TransitionColumn) {
  const auto column = [this](std::int64_t fade_in, std::int64_t fade_out, std::uint32_t type) {
    CSony9000Edl edl(nullptr, 0);
    support::set_rates(edl);
    CGenericEdlEntry entry(&edl);
    entry.fade_in_length = fade_in;
    entry.fade_out_length = fade_out;
    entry.transition_type = type;
    CTextFile file(250);
    EXPECT_TRUE(file.Open(folder_.wide_file("column"), CFile::modeCreate | CFile::modeWrite));
    EXPECT_EQ(edl.write_transition(file, &entry), 101);
    file.flush_line();
    file.Close();
    return support::read_file(folder_.file("column"));
  };
  EXPECT_EQ(column(119040, 0, 51), "D   02:12   ");
  EXPECT_EQ(column(46080, 0, 51), "D   00:24   ");
  EXPECT_EQ(column(1919, 23040, 51), "D   00:12   ");
  EXPECT_EQ(column(1919, 1919, 51), "C         ");
  EXPECT_EQ(column(119040, 0, 50), "C         ");
  // 61 minutes: three and more digits of seconds.
  EXPECT_EQ(column(std::int64_t{3660} * 48000, 0, 51), "D   3660:00   ");
  // Above 2^24 samples single precision holds even numbers alone. 350 seconds and 1919
  // samples are 16801919, half way to 16801920, which is a multiple of four: a frame.
  EXPECT_EQ(column(16801919, 0, 51), "D   350:01   ");
  EXPECT_EQ(column(16801917, 0, 51), "D   350:00   ");
}

TEST_F(Sony, TransitionLength) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_length = 480;
  const auto lengths = [&settings](std::u16string_view word, std::uint8_t rate) {
    CSony9000Edl edl(nullptr, 0);
    edl.set_edl_conversion_settings(&settings);
    support::set_rates(edl, 2, rate);
    CGenericEdlEntry entry(&edl);
    entry.fade_in_length = entry.fade_out_length = 7;
    edl.parse_transition_length(&entry, word);
    return std::pair(entry.fade_in_length, entry.fade_out_length);
  };
  using Lengths = std::pair<std::int64_t, std::int64_t>;
  EXPECT_EQ(lengths(u"02:12", 1), Lengths(119040, 480));
  EXPECT_EQ(lengths(u"02:12", 3), Lengths(115219, 480));
  for (const std::u16string_view word : {u"2:12", u"xx:12", u"02:1x", u"02", u"", u"002:12"}) {
    EXPECT_EQ(lengths(word, 1), Lengths(7, 7)) << utf8(word);
  }
}

TEST_F(Sony, ChannelField) {
  struct Row {
    std::u16string token;
    result_code code;
    int skip;
    Streams streams;
  };
  const std::vector<Row> rows = {
      {u"A1", 90, 0, {0}},      {u"A4", 90, 0, {3}},      {u"VA1", 90, 0, {0}},
      {u"A1A2", 90, 0, {0, 1}}, {u"A4A3", 90, 0, {2, 3}}, {u"VA1A2", 90, 0, {0, 1}},
      {u"A", 90, 0, {65535}},   {u"C", 93, 0, {}},        {u"D", 93, 0, {}},
      {u"V", 94, 1, {}},        {u"A5", 92, 1, {}},       {u"A0", 92, 1, {}},
      {u"A1A5", 92, 1, {}},     {u"VA9", 92, 1, {}},      {u"AA", 92, 1, {}},
      {u"A1A2A3", 92, 1, {}},   {u"", 92, 1, {}},         {u"VA1Ax", 92, 1, {}},
  };
  for (const Row& row : rows) {
    CGenericEdlEntry entry(&edl_);
    int skip = 0;
    EXPECT_EQ(edl_.parse_channels(&entry, row.token, &skip), row.code) << utf8(row.token);
    EXPECT_EQ(skip, row.skip) << utf8(row.token);
    EXPECT_EQ(streams_of(entry), row.streams) << utf8(row.token);
  }
}

TEST_F(Sony, FieldsByTheirLength) {
  struct Row {
    std::u16string token;
    int audio;
    int video;
  };
  for (const Row& row : std::vector<Row>{{u"A", 1, 0},
                                         {u"D", 1, 0},
                                         {u"C", 1, 0},
                                         {u"V", 0, 1},
                                         {u"B", 0, 0},
                                         {u"A1", 1, 0},
                                         {u"V1", 0, 0},
                                         {u"XA1", 1, 0},
                                         {u"VA1", 1, 1},
                                         {u"A1A2", 1, 0},
                                         {u"VVVV", 0, 0},
                                         {u"VA1A2", 1, 1},
                                         {u"XA1A2", 1, 0},
                                         {u"XYZ", 0, 0},
                                         {u"", 0, 0},
                                         {u"AAAAAA", 0, 0}}) {
    EXPECT_EQ(edl_.is_audio_field(row.token), row.audio) << utf8(row.token);
    EXPECT_EQ(edl_.is_video_field(row.token), row.video) << utf8(row.token);
  }
}

TEST_F(Sony, PlainLine) {
  EXPECT_EQ(import("001 R1 A2 C" + times_of_x + "\n"), 100);
  EXPECT_EQ(streams_of(only()), Streams{1});
  EXPECT_EQ(only().transition_type, 50U);
  EXPECT_EQ(only().event_number, 1);
  EXPECT_EQ(utf8(support::reel_of(only())), "R1");
  EXPECT_EQ(utf8(only().source_reel_name), "R1" + std::string(30, ' '));
  EXPECT_TRUE(support::has_times(only(), standard_edit()));
}

TEST_F(Sony, VideoMarkInFrontOfTheAudioField) {
  EXPECT_EQ(import("001 R1 V A1 C" + times_of_x + "\n"), 100);
  EXPECT_EQ(streams_of(only()), Streams{0});
  EXPECT_TRUE(support::has_times(only(), standard_edit()));
  // The mark counts as a field of its own kind.
  EXPECT_EQ(edl_.skipped_count(), 1);
  ASSERT_EQ(edl_.get_video_list()->GetCount(), 1);
  const auto* const video =
      static_cast<const CGenericEdlVideoEntry*>(edl_.get_video_list()->GetHead());
  EXPECT_EQ(video->event_number, 1);
  EXPECT_EQ(video->transition_type, 50U);
  EXPECT_EQ(video->dest_in, standard_edit().dest_in);
  EXPECT_EQ(video->source_out, standard_edit().source_out);
}

TEST_F(Sony, VideoLines) {
  const auto video_times = [this](const std::string& columns) {
    CSony9000Edl edl(nullptr, 0);
    EXPECT_EQ(read(edl, "001 R1 " + columns + times_of_x + "\n"), 100);
    EXPECT_TRUE(entries_of(edl).empty()) << columns;
    EXPECT_EQ(edl.get_video_list()->GetCount(), 1) << columns;
    const auto* const video =
        static_cast<const CGenericEdlVideoEntry*>(edl.get_video_list()->GetHead());
    EXPECT_EQ(video->transition_type, 50U);
    return video->source_in == standard_edit().source_in &&
           video->dest_out == standard_edit().dest_out;
  };
  EXPECT_TRUE(video_times("V C"));
  EXPECT_TRUE(video_times("V D 00:10"));
  EXPECT_TRUE(video_times("V W 001 00:10"));
  EXPECT_TRUE(video_times("V C X"));
  EXPECT_TRUE(video_times("V"));
}

TEST_F(Sony, LineWithoutAChannelField) {
  EXPECT_EQ(import("001 R1 C" + times_of_x + "\n"), 100);
  EXPECT_EQ(only().no_streams, 0);
  EXPECT_EQ(only().get_stream(0), 65535);
  EXPECT_EQ(only().transition_type, 50U);
  EXPECT_TRUE(support::has_times(only(), standard_edit()));
}

TEST_F(Sony, LineWithoutATransition) {
  EXPECT_EQ(import("001 R1 A1" + times_of_x + "\n"), 100);
  EXPECT_EQ(only().transition_type, 50U);
  EXPECT_TRUE(support::has_times(only(), standard_edit()));
}

TEST_F(Sony, ShortColumnInFrontOfTheTimesIsPassed) {
  EXPECT_EQ(import("001 R1 A1 C X" + times_of_x + "\n"), 100);
  EXPECT_TRUE(support::has_times(only(), standard_edit()));
}

TEST_F(Sony, Dissolve) {
  EXPECT_EQ(import("001 R1 A1 D 00:24" + times_of_x + "\n"), 100);
  EXPECT_EQ(only().transition_type, 51U);
  EXPECT_EQ(only().fade_in_length, 46080);
  EXPECT_TRUE(support::has_times(only(), standard_edit()));
}

TEST_F(Sony, Wipe) {
  EXPECT_EQ(import("001 R1 A1 W 001 00:10" + times_of_x + "\n"), 100);
  EXPECT_EQ(only().transition_type, 51U);
  EXPECT_EQ(only().fade_in_length, 19200);
  EXPECT_TRUE(support::has_times(only(), standard_edit()));
}

TEST_F(Sony, ChannelColumnBehindTheTimes) {
  EXPECT_EQ(import("001 R1 A1 C" + times_of_x + " A3\n" + "002 R1 A1 C" + times_of_x + " A9\n"),
            100);
  EXPECT_EQ(streams_of(only()), Streams{2});
  EXPECT_EQ(reports(), Texts{"[22253] [22231] 2"});
}

TEST_F(Sony, CutsTakeTheDefaultFade) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_length = 960;
  edl_.set_edl_conversion_settings(&settings);
  EXPECT_EQ(import("001 R1 A1 C" + times_of_x + "\n"), 100);
  EXPECT_EQ(only().fade_in_length, 960);
  EXPECT_EQ(only().fade_out_length, 960);
}

TEST_F(Sony, EventNumberMustBeOfDigits) {
  EXPECT_EQ(import("001 R1 A1 C" + times_of_x + "\n12A R1 A1 C" + times_of_x + "\n"), 100);
  EXPECT_EQ(only().event_number, 1);
}

TEST_F(Sony, AudioFieldMayBeTheFourthWord) {
  EXPECT_EQ(edl_.is_audio_event(u"001 R1 V A1 C"), 1);
  EXPECT_EQ(edl_.is_audio_event(u"001 R1 XYZ A1 C"), 1);
  EXPECT_EQ(edl_.is_audio_event(u"001 R1 XYZ V C"), 0);
  EXPECT_EQ(edl_.is_audio_event(u"001 R1"), 0);
  EXPECT_EQ(edl_.is_audio_event(u""), 0);
  EXPECT_EQ(edl_.is_video_event(u"001 R1 XYZ V C"), 0);
  EXPECT_EQ(edl_.is_video_event(u"01A R1 V C"), 0);
  EXPECT_EQ(edl_.is_ignored_event(u"001 R1 A1"), 0);
}

TEST_F(Sony, LinesThatCloseTheListAreNoEvents) {
  EXPECT_EQ(import("001 R1 A1 C" + times_of_x + "\n.\nEND\n"), 100);
  EXPECT_TRUE(support::has_times(only(), standard_edit()));
  CGenericEdlEntry entry(&edl_);
  EXPECT_EQ(edl_.check_special_line(&entry, u"."), 0);
  EXPECT_EQ(edl_.check_special_line(&entry, u"  END"), 0);
  EXPECT_EQ(edl_.check_special_line(&entry, u"ENDS"), 1);
  EXPECT_EQ(edl_.check_special_line(&entry, u"001 900 A1"), 1);
  EXPECT_TRUE(reports().empty());
}

TEST_F(Sony, LinesBehindAnEvent) {
  EDL_CONVERSION_SETTINGS settings;
  settings.cmx_mapping_comments = 1;
  edl_.set_edl_conversion_settings(&settings);
  const std::string lines = "001 R1 A1 C" + times_of_x + "\nAUD 3 4\nCOMMENT: 4-2\nFCM: DROP\n";
  EXPECT_EQ(import(lines), 100);
  EXPECT_EQ(streams_of(only()), Streams{0});
  EXPECT_EQ(edl_.original_frame_rate(), 3);

  CSony9000Edl allowed(nullptr, 0);
  settings.cmx_mapping_comments = 0;
  settings.sony_mapping_comments = 1;
  allowed.set_edl_conversion_settings(&settings);
  EXPECT_EQ(read(allowed, lines), 100);
  EXPECT_EQ(streams_of(*entries_of(allowed).at(0)), Streams{3});
  EXPECT_EQ(entries_of(allowed).at(0)->first_channel, 1);
}

TEST_F(Sony, NegativeTimeIsDropped) {
  EXPECT_EQ(import("001 R1 A1 C -01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n"), 100);
  EXPECT_TRUE(entries_of(edl_).empty());
  EXPECT_EQ(reports(), Texts{"[22253] [22258] 1"});
}

TEST_F(Sony, ReelTakesTheRateOfTheFile) {
  EXPECT_EQ(import("001 R1 A1 C" + times_of_x + "\nFCM: DROP\n002 R2 A1 C" + times_of_x + "\n"),
            100);
  EXPECT_EQ(entries_of(edl_).at(0)->reel->frame_rate(), 1);
  EXPECT_EQ(entries_of(edl_).at(1)->reel->frame_rate(), 3);
}

TEST_F(Sony, SettingsAreItsOwn) {
  EDL_CONVERSION_SETTINGS settings;
  settings.sony_channel_mode = 3;
  settings.sony_merge_channels = 1;
  settings.cmx_cuts_only = 1;
  edl_.set_edl_conversion_settings(&settings);
  EXPECT_EQ(edl_.merge_channels_wanted(), 1);
  EXPECT_EQ(edl_.cuts_only_wanted(), 0);
  EXPECT_EQ(import("001 R1 A2 C" + times_of_x + "\n"), 100);
  EXPECT_EQ(streams_of(only()), Streams{0});
  EXPECT_EQ(only().first_channel, 0);

  settings.sony_use_first_channel = 1;
  edl_.set_edl_conversion_settings(&settings);
  CGenericEdlEntry entry(&edl_);
  entry.set_no_streams(1);
  entry.set_stream(0, 2);
  entry.first_channel = 1;
  EXPECT_EQ(edl_.get_first_stream(&entry), 1);
  settings.sony_use_first_channel = 0;
  settings.cmx_use_first_channel = 1;
  edl_.set_edl_conversion_settings(&settings);
  EXPECT_EQ(edl_.get_first_stream(&entry), 2);
}

TEST_F(Sony, ChannelMapStandsInForTheMode) {
  const std::uint16_t map[20] = {0, 1, 0, 1, 1, 1, 2, 1, 0, 3, 1, 1, 4, 2, 0, 6, 2, 0, 0, 0};
  EDL_CONVERSION_SETTINGS settings;
  settings.channel_map = map;
  edl_.set_edl_conversion_settings(&settings);
  EXPECT_EQ(import("001 R1 A1A2 C" + times_of_x + "\n"), 100);
  EXPECT_EQ(streams_of(only()), (Streams{4, 5}));
}

TEST_F(Sony, MonoPairsAreMergedWhenAsked) {
  const std::string lines = "001 R1 A1 C" + times_of_x + "\n" + "002 R1 A2 C" + times_of_x + "\n";
  EXPECT_EQ(import(lines), 100);
  EXPECT_EQ(entries_of(edl_).size(), 2U);
  CSony9000Edl merging(nullptr, 0);
  EDL_CONVERSION_SETTINGS settings;
  settings.sony_merge_channels = 1;
  merging.set_edl_conversion_settings(&settings);
  EXPECT_EQ(read(merging, lines), 100);
  ASSERT_EQ(entries_of(merging).size(), 1U);
  EXPECT_EQ(streams_of(*entries_of(merging).at(0)), (Streams{0, 1}));
}

TEST_F(Sony, CutsOnly) {
  EDL_CONVERSION_SETTINGS settings;
  settings.sony_cuts_only = 1;
  support::Edit edit = standard_edit();
  edit.fade_in = 46080;
  edit.fade_out = 23040;
  EXPECT_EQ(events(edit, settings),
            "001  TAPE01 \tA1    C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n");
}

TEST_F(Sony, WhatCannotBeRead) {
  support::set_rates(edl_);
  EXPECT_EQ(edl_.import_edl(folder_.wide_file("none")), 0);
  EXPECT_EQ(edl_.import_edl(folder_.wide_file("")), 0);
  EXPECT_EQ(import(""), 4);
  EXPECT_EQ(import("EDT REL\nBLOCK 001\n.\nEND\n"), 4);
  EXPECT_TRUE(entries_of(edl_).empty());
}

TEST_F(Sony, WhatCannotBeWritten) {
  CGenericEdl root;
  support::set_rates(root);
  support::add_entry(root, standard_edit());
  CSony9000Edl out(&root, 0);
  EXPECT_EQ(out.export_edl(folder_.wide_file("no/such/b.edl"), 0), 0);
  EXPECT_EQ(out.export_edl(u"/dev/full", 0), 101);
  EXPECT_NE(out.output_incomplete(), 0);
}

// A name that leaves no room for the title must not cost the events.
TEST_F(Sony, EventsAreWrittenBehindATitleThatDoesNotFit) {
  CGenericEdl root;
  support::set_rates(root);
  support::add_entry(root, standard_edit());
  const std::string text = written<CSony9000Edl>(root, std::string(230, 'n') + ".edl");
  EXPECT_EQ(text, std::string(head.substr(head.find('\n') + 1)) +
                      "001  TAPE01 \tA1    C         01:00:00:00 01:00:10:00 10:00:00:00 "
                      "10:00:10:00 \n.\nEND\n");
}

TEST_F(Sony, Golden) {
  CGenericEdl root;
  support::fill_with_fades(root, {2});
  EXPECT_TRUE(support::matches_golden("sony9000/fades.edl", written<CSony9000Edl>(root)));
}

// Lost on the way: channels 3 and 4, which readers do not take from their own line;
// the source channel, levels and names; fades below a frame, and parts of frames.
TEST_F(Sony, RoundTrip) {
  CGenericEdl root;
  support::fill_with_fades(root, {2});
  EXPECT_EQ(read(edl_, written<CSony9000Edl>(root)), 100);
  const auto entries = entries_of(edl_);
  ASSERT_EQ(entries.size(), 4U);
  CGenericEdl original;
  support::fill_with_fades(original, {2});
  const auto expected = entries_of(original);
  for (std::size_t i = 0; i < 4; ++i) {
    const CGenericEdlEntry& e = *expected[i];
    EXPECT_TRUE(
        support::has_times(*entries[i], {e.dest_in, e.dest_out, e.source_in, e.source_out}));
    EXPECT_EQ(entries[i]->fade_in_length, e.fade_in_length);
    EXPECT_EQ(entries[i]->fade_out_length, e.fade_out_length);
    EXPECT_EQ(support::reel_of(*entries[i]), support::reel_of(e));
    EXPECT_EQ(streams_of(*entries[i]), i == 3 ? Streams{65535} : streams_of(e));
  }
  EXPECT_TRUE(reports().empty());
}

}  // namespace
