#include "text/marlo_text_edl.h"

#include <algorithm>
#include <cstdio>
#include <random>

#include "core/generic_edl_video_entry.h"
#include "core/generic_reel.h"
#include "tests/text/format_fixtures.h"

namespace {

using support::entries_of;
using support::standard_edit;
using support::Streams;
using support::streams_of;
using support::Texts;
using support::utf8;

const std::string magic = "Marlo v2.1 Text EDL (c) 1991-1994 Karsten Sound & Film Ltd\n";
const std::string head = magic + "FRAME RATE=25\nSAMPLE RATE=48\n\n";
// Both lines of the standard edit, with the short name "KICK".
const std::string first_of_x =
    "0001\t\tTAPE01    \t\t1\t\t01:00:00:00\t\t01:00:10:00\t\t10:00:00:00\t\t10:00:10:00\t\t\\\n";
const std::string second_of_x = "1\tKICK    \t1,2\t00:00:00:01\t00:00:00:02\t1.00dB\tKICK    \n";

class NativeText : public support::FormatTest {
 protected:
  NativeText() { support::set_rates(root_); }

  CGenericEdlEntry& add_x(const std::u16string& clip = u"") {
    CGenericEdlEntry& entry = support::add_entry(root_, standard_edit());
    entry.set_clip_name(clip.c_str());
    return entry;
  }
  // The lines of the edits.
  std::string lines() {
    const std::string text = written<CMarloTextEdl>(root_);
    EXPECT_EQ(text.substr(0, head.size()), head);
    return text.substr(head.size());
  }
  // A column of the second line of the first edit.
  std::string second_column(std::size_t place) {
    const std::string text = lines();
    std::size_t at = text.find('\n') + 1;
    for (std::size_t i = 0; i < place; ++i)
      at = text.find('\t', at) + 1;
    return text.substr(at, text.find_first_of("\t\n", at) - at);
  }
  result_code import(const std::string& text) { return read(edl_, text); }
  const CGenericEdlEntry& only() {
    EXPECT_EQ(entries_of(edl_).size(), 1U);
    return *entries_of(edl_).at(0);
  }

  CGenericEdl root_;
  CMarloTextEdl edl_{nullptr, 0};
};

TEST_F(NativeText, HeadByRates) {
  const std::vector<std::string> frame_rates = {"24", "25", "29.97", "29.97 DROP", "30"};
  const std::vector<std::string> sample_rates = {"32",  "44.1",    "48",  "44.056",  "47.952",
                                                 "64",  "88.2",    "96",  "88.112",  "95.904",
                                                 "128", "176.400", "192", "176.224", "191.808"};
  for (std::uint8_t sample = 0; sample <= 15; ++sample) {
    for (std::uint8_t frame = 0; frame <= 5; ++frame) {
      CGenericEdl root;
      support::set_rates(root, sample == 15 ? 255 : sample, frame == 5 ? 255 : frame);
      EXPECT_EQ(written<CMarloTextEdl>(root),
                magic + "FRAME RATE=" + (frame == 5 ? "UNKNOWN" : frame_rates[frame]) +
                    "\nSAMPLE RATE=" + (sample == 15 ? "UNKNOWN" : sample_rates[sample]) + "\n\n");
    }
  }
}

TEST_F(NativeText, RatesBehindTheLastAreUnknown) {
  CGenericEdl root;
  support::set_rates(root, 15, 5);
  EXPECT_EQ(written<CMarloTextEdl>(root), magic + "FRAME RATE=UNKNOWN\nSAMPLE RATE=UNKNOWN\n\n");
}

TEST_F(NativeText, BothLines) {
  CGenericEdlEntry& x = add_x(u"KICK DRM");
  x.fade_in_length = 1920;
  x.fade_out_length = 3840;
  EXPECT_EQ(lines(), first_of_x + second_of_x);
}

TEST_F(NativeText, StreamsReelAndNumber) {
  const auto start = [this](std::vector<int> streams, const std::u16string& reel, int event) {
    delete_all(*root_.get_generic_entry_list());
    support::Edit edit = standard_edit();
    edit.streams = std::move(streams);
    edit.reel = reel;
    edit.event_number = static_cast<std::uint16_t>(event);
    support::add_entry(root_, edit);
    const std::string text = lines();
    return text.substr(0, text.find("01:00:00:00"));
  };
  EXPECT_EQ(start({0, 1}, u"", 1), "0001\t\tdefault    \t\t1+2\t\t");
  EXPECT_EQ(start({3}, u"R", 12345), "12345\t\tR    \t\t4\t\t");
  EXPECT_EQ(start({0}, u"ABCDEFGHIJKL", 1), "0001\t\tABCDEFGHIJK    \t\t1\t\t");
  EXPECT_EQ(start({2, 4, 6}, u"R", 1), "0001\t\tR    \t\t3+5\t\t");
  EXPECT_EQ(start({}, u"R", 1), "0001\t\tR    \t\t65536+65536\t\t");
}

TEST_F(NativeText, ShortNames) {
  const auto name = [this](const std::u16string& clip, std::uint32_t channel = 0) {
    delete_all(*root_.get_generic_entry_list());
    add_x(clip).source_channel = channel;
    EXPECT_EQ(second_column(1), second_column(6));
    return second_column(1);
  };
  const std::string blank(8, ' ');
  EXPECT_EQ(name(u"DRUMS"), blank);
  EXPECT_EQ(name(u"ABCDEFGHI"), blank);
  EXPECT_EQ(name(u"ABCDEFGH I"), blank);
  EXPECT_EQ(name(u""), blank);
  EXPECT_EQ(name(u" ABC"), blank);
  EXPECT_EQ(name(u"AB CD"), "AB      ");
  EXPECT_EQ(name(u"AB CD", 12), "AB12    ");
  EXPECT_EQ(name(u"DRUMS", 3), "03      ");
  EXPECT_EQ(name(u"ABCDEF GH", 3), "ABCDEF03");
  EXPECT_EQ(name(u"ABCDEFG H", 3), "ABCDEFG ");
  EXPECT_EQ(name(u"KICK DRM", 123), "KICK123 ");
  EXPECT_EQ(name(u"ABCDEF GH", 123), "ABCDEF12");
  EXPECT_EQ(name(u"AB CD", 4294967295U), "AB-1    ");
}

TEST_F(NativeText, LevelAndFades) {
  CGenericEdlEntry& x = add_x();
  x.gain_left = 0.5F;
  x.first_channel = 11;
  x.fade_in_length = 48000;
  EXPECT_EQ(second_column(0), "12");
  EXPECT_EQ(second_column(2), "1,2");
  EXPECT_EQ(second_column(3), "00:00:01:00");
  EXPECT_EQ(second_column(4), "00:00:00:00");
  EXPECT_EQ(second_column(5), "0.50dB");
  x.gain_left = 3.0e38F;
  EXPECT_EQ(second_column(5).size(), 39U + 5U);
}

TEST_F(NativeText, WriteEventAnswersDone) {
  CGenericEdlEntry& x = add_x();
  CMarloTextEdl edl(&root_, 0);
  CTextFile file(250);
  ASSERT_TRUE(file.Open(folder_.wide_file("b.edl"), CFile::modeCreate | CFile::modeWrite));
  EXPECT_EQ(edl.write_event(file, &x), 101);
  EXPECT_EQ(edl.write_header(file, u"b.edl"), 101);
  EXPECT_NE(file.add_text(std::u16string(200, u'x')), 0);
  EXPECT_EQ(edl.write_header(file, u"b.edl"), 9);
}

TEST_F(NativeText, BothLinesAreRead) {
  EXPECT_EQ(import(head + first_of_x + second_of_x), 100);
  EXPECT_EQ(only().event_number, 1);
  EXPECT_EQ(utf8(support::reel_of(only())), "TAPE01");
  EXPECT_EQ(only().reel->no_streams, 1);
  EXPECT_EQ(streams_of(only()), Streams{0});
  EXPECT_EQ(only().no_channels, 1);
  EXPECT_TRUE(support::has_times(only(), standard_edit()));
  EXPECT_EQ(utf8(only().clip_name), "KICK");
  EXPECT_EQ(only().fade_in_length, 1920);
  EXPECT_EQ(only().fade_out_length, 3840);
  EXPECT_EQ(only().gain_left, 1.0F);
  EXPECT_EQ(utf8(only().source_reel_name), "KICK" + std::string(28, ' '));
  EXPECT_TRUE(reports().empty());
  EXPECT_EQ(edl_.skipped_count(), 0);
}

TEST_F(NativeText, RatesOfTheHead) {
  const auto rates = [this](const std::string& frame, const std::string& sample) {
    CMarloTextEdl edl(nullptr, 0);
    const std::string text = magic + frame + "\n" + sample + "\n\n" + first_of_x;
    support::write_file(folder_.file("in.edl"), text);
    const result_code code = edl.import_edl(folder_.wide_file("in.edl"));
    return std::tuple(int{code}, int{edl.frame_rate()}, int{edl.sample_rate_index()});
  };
  using Rates = std::tuple<int, int, int>;
  EXPECT_EQ(rates("FRAME RATE=24", "SAMPLE RATE=48"), Rates(100, 0, 2));
  EXPECT_EQ(rates("FRAME RATE=25", "SAMPLE RATE=48"), Rates(100, 1, 2));
  EXPECT_EQ(rates("FRAME RATE=29.97", "SAMPLE RATE=48"), Rates(100, 2, 2));
  // The word behind the blank is not looked at.
  EXPECT_EQ(rates("FRAME RATE=29.97 DROP", "SAMPLE RATE=48"), Rates(100, 2, 2));
  EXPECT_EQ(rates("FRAME RATE=30", "SAMPLE RATE=48"), Rates(100, 4, 2));
  EXPECT_EQ(rates("FRAME RATE=23", "SAMPLE RATE=48"), Rates(100, 255, 2));
  EXPECT_EQ(rates("FRAME RATE=UNKNOWN", "SAMPLE RATE=48"), Rates(100, 255, 2));
  EXPECT_EQ(rates("FRAME RATE=250", "SAMPLE RATE=48"), Rates(100, 255, 2));
  EXPECT_EQ(rates("x FRAME RATE=25", "SAMPLE RATE=48"), Rates(100, 255, 2));
  const std::vector<std::string> words = {"32",  "44.1",    "48",  "44.056",  "47.952",
                                          "64",  "88.2",    "96",  "88.112",  "95.904",
                                          "128", "176.400", "192", "176.224", "191.808"};
  for (std::size_t i = 0; i < words.size(); ++i) {
    EXPECT_EQ(rates("FRAME RATE=25", "SAMPLE RATE=" + words[i]),
              Rates(100, 1, static_cast<int>(i)));
  }
  for (const char* line : {"SAMPLE RATE=UNKNOWN", "SAMPLE RATE=47",
                           "SAMPLE RATE=", "SAMPLE RATE=176.4", "x SAMPLE RATE=48"}) {
    EXPECT_EQ(std::get<0>(rates("FRAME RATE=25", line)), 4) << line;
  }
}

TEST_F(NativeText, HeadsThatAreNone) {
  support::set_rates(edl_);
  EXPECT_EQ(edl_.import_edl(folder_.wide_file("none")), 0);
  EXPECT_EQ(edl_.import_edl(folder_.wide_file("")), 0);
  EXPECT_EQ(import(""), 4);
  EXPECT_EQ(import("FRAME RATE=25\nSAMPLE RATE=48\n\n" + first_of_x), 4);
  EXPECT_EQ(import(magic + "SAMPLE RATE=48\n\n" + first_of_x), 4);
  EXPECT_EQ(import(magic + "FRAME RATE=25\n\n" + first_of_x), 4);
  EXPECT_EQ(import(magic), 4);
  EXPECT_TRUE(entries_of(edl_).empty());
  EXPECT_EQ(import("some text in front of " + head + first_of_x), 100);
  EXPECT_EQ(entries_of(edl_).size(), 1U);
  CMarloTextEdl empty(nullptr, 0);
  EXPECT_EQ(read(empty, head), 100);
  EXPECT_TRUE(entries_of(empty).empty());
}

TEST_F(NativeText, ChannelWords) {
  const auto streams = [this](const std::string& channels, const std::string& second = "") {
    CMarloTextEdl edl(nullptr, 0);
    EXPECT_EQ(read(edl, head + "0001 R " + channels + " 00:00:01:00 00:00:02:00 00:00:01:00 " +
                            "00:00:02:00\n" + second),
              100);
    const CGenericEdlEntry& entry = *entries_of(edl).at(0);
    EXPECT_EQ(entry.no_channels, entry.no_streams);
    EXPECT_EQ(entry.reel->no_streams, entry.no_streams);
    EXPECT_EQ(entry.channel_offset, 0);
    return streams_of(entry);
  };
  EXPECT_EQ(streams("1"), Streams{0});
  EXPECT_EQ(streams("2"), Streams{1});
  EXPECT_EQ(streams("1+2"), (Streams{0, 1}));
  for (const char* word : {"3", "4", "2+3", "12", "1+3", "x"}) {
    EXPECT_EQ(streams(word), Streams{65535}) << word;
  }
  EXPECT_EQ(streams("4", "4 KICK 1,2 00:00:00:01 00:00:00:02 1.00dB KICK\n"), Streams{3});
  EXPECT_EQ(streams("1+2", "2 KICK 1,2 00:00:00:01 00:00:00:02 1.00dB KICK\n"), (Streams{1, 2}));
  EXPECT_EQ(streams("1+2", "x KICK 1,2 00:00:00:01 00:00:00:02 1.00dB KICK\n"), (Streams{0, 1}));
  EXPECT_EQ(streams("1+2", "0\n"), (Streams{65535, 0}));
}

TEST_F(NativeText, SecondLineOfNoNumberChangesNothing) {
  EXPECT_EQ(import(head + first_of_x + "x\tKICK\t1,2\t00:00:00:01\t00:00:00:02\t0.50dB\tKICK\n"),
            100);
  EXPECT_EQ(utf8(only().clip_name), "");
  EXPECT_EQ(only().gain_left, 1.0F);
  EXPECT_EQ(only().fade_in_length, 0);
}

TEST_F(NativeText, SecondLineThatEndsEarly) {
  EXPECT_EQ(import(head + first_of_x + "1 KICK 1,2 00:00:00:01\n"), 100);
  EXPECT_EQ(utf8(only().clip_name), "KICK");
  EXPECT_EQ(only().fade_in_length, 1920);
  EXPECT_EQ(only().fade_out_length, 0);
  EXPECT_EQ(only().gain_left, 0.0F);
  EXPECT_EQ(utf8(only().source_reel_name), std::string(32, ' '));
}

TEST_F(NativeText, Levels) {
  const auto level = [this](const std::string& word) {
    CMarloTextEdl edl(nullptr, 0);
    EXPECT_EQ(read(edl, head + first_of_x + "1 N 1,2 00:00:00:01 00:00:00:02 " + word + " N\n"),
              100);
    return entries_of(edl).at(0)->gain_left;
  };
  EXPECT_EQ(level("0.50dB"), 0.5F);
  EXPECT_EQ(level("-2.00dB"), -2.0F);
  EXPECT_EQ(level("dB"), 0.0F);
  EXPECT_EQ(level("infdB"), 0.0F);
  EXPECT_EQ(level("1e39"), 0.0F);
}

// A source channel of two digits makes the second line look like a first one.
TEST_F(NativeText, SourceChannelOfTwoDigitsIsReadAsAnEdit) {
  CGenericEdlEntry& x = add_x(u"KICK DRM");
  x.first_channel = 9;
  EXPECT_EQ(import(head + lines()), 100);
  const auto entries = entries_of(edl_);
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[1]->event_number, 10);
  EXPECT_EQ(utf8(support::reel_of(*entries[1])), "KICK");
  EXPECT_EQ(utf8(entries[0]->clip_name), "");
}

// A short name of blanks is no word, so the words behind it move up.
TEST_F(NativeText, LostNameShiftsTheColumns) {
  CGenericEdlEntry& x = add_x(u"DRUMS");
  x.fade_in_length = 1920;
  x.fade_out_length = 3840;
  EXPECT_EQ(import(head + lines()), 100);
  EXPECT_EQ(utf8(only().clip_name), "1,2");
  EXPECT_EQ(only().fade_in_length, 3840);
  EXPECT_EQ(only().fade_out_length, 0);
  EXPECT_EQ(only().gain_left, 0.0F);
  EXPECT_EQ(utf8(only().source_reel_name), std::string(32, ' '));
}

TEST_F(NativeText, NegativeTimeIsReportedAndItsSecondLineGoesToTheEditBefore) {
  EXPECT_EQ(import(head + first_of_x + second_of_x +
                   "0002 R 1 -00:00:01:00 00:00:02:00 00:00:01:00 00:00:02:00 \\\n"
                   "2 SNARE 1,2 00:00:00:03 00:00:00:04 0.50dB SNARE\n"),
            100);
  EXPECT_EQ(utf8(only().clip_name), "SNARE");
  EXPECT_EQ(streams_of(only()), Streams{1});
  EXPECT_EQ(only().gain_left, 0.5F);
  EXPECT_EQ(edl_.skipped_count(), 1);
  EXPECT_EQ(reports(), Texts{"[22253] [22258] 2"});
}

TEST_F(NativeText, SecondLineInFrontOfTheFirstEditIsIgnored) {
  EXPECT_EQ(import(head + second_of_x + first_of_x), 100);
  EXPECT_EQ(utf8(only().clip_name), "");
  EXPECT_TRUE(reports().empty());
}

TEST_F(NativeText, LinesOfOtherKinds) {
  EXPECT_EQ(edl_.is_audio_event(u""), 1);
  EXPECT_EQ(edl_.is_video_event(u"001 R V"), 0);
  EXPECT_EQ(edl_.is_ignored_event(u"001 R V"), 0);
  CGenericEdlVideoEntry video(&edl_);
  EXPECT_EQ(edl_.parse_video_event(&video, u"001 R V"), 0);
  // Whatever else stands there becomes an edit without times.
  EXPECT_EQ(import(head + "words\n" + std::string(1000, 'w') + "\n900 900 900\n"), 100);
  EXPECT_EQ(entries_of(edl_).size(), 3U);
  EXPECT_TRUE(reports().empty());
}

// Signs in front of a line are blanked, and a line of signs alone is an edit whose
// number is the empty word, which counts as 0.
TEST_F(NativeText, LineOfSignsIsAnEditOfNumber0) {
  EXPECT_EQ(import(head + "***\n"), 100);
  EXPECT_EQ(only().event_number, 0);
  EXPECT_EQ(streams_of(only()), Streams{65535});
  EXPECT_EQ(only().dest_out, 0);
}

TEST_F(NativeText, WhatCannotBeWritten) {
  add_x();
  CMarloTextEdl edl(&root_, 0);
  EXPECT_EQ(edl.export_edl(folder_.wide_file("no/such/b.edl"), 0), 0);
  EXPECT_EQ(edl.export_edl(u"/dev/full", 0), 101);
  EXPECT_NE(edl.output_incomplete(), 0);
}

TEST_F(NativeText, Golden) {
  CGenericEdlEntry& first = add_x(u"KICK DRM");
  first.fade_in_length = 1920;
  first.fade_out_length = 3840;
  CGenericEdlEntry& second = support::add_entry(root_, {.dest_in = 1728480000,
                                                        .dest_out = 1729440000,
                                                        .source_in = 0,
                                                        .source_out = 960000,
                                                        .streams = {0, 1},
                                                        .event_number = 2,
                                                        .first_channel = 1});
  second.set_clip_name(u"OVERHEAD LEFT");
  second.source_channel = 7;
  second.gain_left = 0.125F;
  EXPECT_TRUE(support::matches_golden("native-text/two_edits.txt", written<CMarloTextEdl>(root_)));
}

// Edits as the form can carry them: reels without blanks of up to eleven characters,
// a short name, the source channel equal to the first stream and below nine, fades
// and times of whole frames, levels of two decimals. Lost otherwise: drop frame, the
// source channel itself, the rest of the clip name, the third and further streams.
TEST_F(NativeText, RoundTrip) {
  std::mt19937 random(17);
  const auto frames = [&random](unsigned limit) {
    return static_cast<std::int64_t>(random() % limit) * 1920;
  };
  for (int i = 0; i < 1000; ++i) {
    support::Edit edit;
    edit.event_number = static_cast<std::uint16_t>(i + 1);
    edit.dest_in = frames(2000000);
    edit.source_in = frames(2000000);
    const std::int64_t length = frames(100) + 96 * 1920;
    edit.dest_out = edit.dest_in + length;
    edit.source_out = edit.source_in + length;
    edit.fade_in = frames(48);
    edit.fade_out = frames(48);
    const int stream = static_cast<int>(random() % 8);
    edit.streams = random() % 2 == 0 ? std::vector<int>{stream} : std::vector<int>{0, 1};
    edit.first_channel = static_cast<std::uint16_t>(edit.streams[0]);
    edit.reel = std::u16string(random() % 11 + 1, static_cast<char16_t>(u'A' + random() % 26));
    CGenericEdlEntry& entry = support::add_entry(root_, edit);
    entry.set_clip_name(u"A B");
    entry.gain_left = static_cast<float>(random() % 1000) / 100.0F;
  }
  EXPECT_EQ(import(written<CMarloTextEdl>(root_)), 100);
  const auto expected = entries_of(root_);
  const auto entries = entries_of(edl_);
  ASSERT_EQ(entries.size(), 1000U);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const CGenericEdlEntry& e = *expected[i];
    ASSERT_TRUE(
        support::has_times(*entries[i], {e.dest_in, e.dest_out, e.source_in, e.source_out}));
    ASSERT_EQ(entries[i]->event_number, e.event_number);
    ASSERT_EQ(support::reel_of(*entries[i]), support::reel_of(e));
    ASSERT_EQ(streams_of(*entries[i]), streams_of(e));
    ASSERT_EQ(entries[i]->fade_in_length, e.fade_in_length);
    ASSERT_EQ(entries[i]->fade_out_length, e.fade_out_length);
    ASSERT_EQ(entries[i]->gain_left, e.gain_left);
    ASSERT_EQ(utf8(entries[i]->clip_name), "A");
  }
  EXPECT_TRUE(reports().empty());
}

}  // namespace
