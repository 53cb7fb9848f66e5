#include "text/text_edl.h"

#include <gtest/gtest.h>

#include "core/generic_reel.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"
#include "tests/text/line_format.h"

namespace {

using support::entries_of;
using support::LineFormat;
using support::utf8;
using Texts = std::vector<std::string>;

// Ten seconds against ten seconds.
constexpr const char* times = " 00:00:00:00 00:00:10:00 01:00:00:00 01:00:10:00\n";

class TextEdl : public testing::Test {
 protected:
  result_code import(const std::string& bytes) { return import_into(edl_, bytes); }
  result_code import_into(CGenericEdl& edl, const std::string& bytes) {
    support::write_file(folder_.file("in.edl"), bytes);
    return edl.import_edl(folder_.wide_file("in.edl"));
  }
  Texts reports() { return host_.boxes.report_bodies(); }

  support::ScriptedHost host_;
  support::TempFolder folder_;
  LineFormat edl_;
};

TEST_F(TextEdl, WhatCannotBeOpenedGivesZero) {
  EXPECT_EQ(edl_.import_edl(folder_.wide_file("none")), 0);
  EXPECT_EQ(edl_.import_edl(CString(text_from_utf8(folder_.path()))), 0);
  EXPECT_EQ(edl_.export_edl(folder_.wide_file("no/such/folder"), 0), 0);
}

TEST_F(TextEdl, FileWithoutAnEventIsOfAnotherFormat) {
  EXPECT_EQ(import(""), 4);
  EXPECT_EQ(import("TITLE: x\nFCM: DROP FRAME\n"), 4);
  EXPECT_EQ(import("\xFF\xFF\xFF"), 4);
}

TEST_F(TextEdl, HeadLinesTakeEffectOnceAndStarredOnesNot) {
  EXPECT_EQ(import(std::string("TITLE: x\n* note\n> other\n001 A") + times), 100);
  EXPECT_EQ(edl_.calls, (Texts{"audio - TITLE: x",
                               "audio - 001 A 00:00:00:00 00:00:10:00 "
                               "01:00:00:00 01:00:10:00"}));
  EXPECT_EQ(entries_of(edl_).size(), 1U);
}

TEST_F(TextEdl, FrameRateOfTheHead) {
  EXPECT_EQ(import(std::string("FCM: DROP FRAME\n001 A") + times), 100);
  EXPECT_EQ(edl_.frame_rate(), 3);
  EXPECT_EQ(edl_.original_frame_rate(), 3);
  const auto rate_of = [this](const std::string& line) {
    LineFormat edl;
    EXPECT_EQ(import_into(edl, line + "\n001 A" + times), 100);
    return int{edl.frame_rate()};
  };
  EXPECT_EQ(rate_of("FCM: NON-DROP FRAME"), 2);
  EXPECT_EQ(rate_of("FCM:"), 255);
  EXPECT_EQ(rate_of("FCM: drop"), 255);
  EXPECT_EQ(rate_of("FCM:DROP"), 255);
}

TEST_F(TextEdl, RateOfAFileThatMayNotChangeTheListStillReachesItsReels) {
  support::set_rates(edl_);
  EXPECT_EQ(import(std::string("FCM: DROP\n001 A") + times), 100);
  EXPECT_EQ(edl_.frame_rate(), 1);
  EXPECT_EQ(edl_.original_frame_rate(), 3);
}

TEST_F(TextEdl, OneQuestionForOneLineOfTheHead) {
  LineFormat edl(nullptr, 1);
  EDL_CONVERSION_SETTINGS settings;
  settings.ask_on_frame_rate_change = 1;
  edl.set_edl_conversion_settings(&settings);
  support::set_rates(edl, 2, 1, 1);
  EXPECT_EQ(import_into(edl, std::string("FCM: DROP\n001 A") + times), 100);
  EXPECT_EQ(host_.boxes.shown.size(), 1U);
}

TEST_F(TextEdl, LinesGoToTheHooksOfTheEventBeforeThem) {
  EXPECT_EQ(import(std::string("001 A") + times + "behind audio\n002 V\nbehind video\n"), 100);
  EXPECT_EQ(edl_.calls.size(), 3U);
  EXPECT_EQ(edl_.calls[1], "audio + behind audio");
  EXPECT_EQ(edl_.calls[2], "video behind video");
}

TEST_F(TextEdl, DispatchByKind) {
  edl_.dispatch_line(0, u"x");
  edl_.dispatch_line(4, u"x");
  EXPECT_TRUE(edl_.calls.empty());
  edl_.dispatch_line(3, u"x");
  EXPECT_EQ(edl_.calls, (Texts{"audio - x", "video x"}));
}

TEST_F(TextEdl, BadLinesAreReportedWithTheirPlace) {
  support::set_rates(edl_);
  EXPECT_EQ(
      import(std::string("001 A") + times + "\n002 Abad\n003 Vbad\n004 Aother\n005 A" + times),
      100);
  EXPECT_EQ(reports(), (Texts{"[22253] [22231] 2", "[22253] [22231] 3"}));
  EXPECT_EQ(host_.boxes.shown[0].path, folder_.file("in.edl"));
  EXPECT_EQ(host_.boxes.shown[0].line, 3);
  EXPECT_EQ(host_.boxes.shown[0].style, 16384U);
  EXPECT_EQ(entries_of(edl_).size(), 2U);
  EXPECT_EQ(edl_.skipped_count(), 1);
}

TEST_F(TextEdl, StopEndsTheBoxesAndNotTheImport) {
  host_.boxes.default_report_answer = 4096;
  EXPECT_EQ(import(std::string("001 Abad\n002 Abad\n003 As") + times), 100);
  EXPECT_EQ(reports().size(), 1U);
  EXPECT_EQ(entries_of(edl_).size(), 1U);
  EXPECT_EQ(edl_.skipped_count(), 3);
  EXPECT_EQ(edl_.report_errors, 1);
}

TEST_F(TextEdl, NoBoxesWhereReportsAreOff) {
  edl_.report_errors = 0;
  EXPECT_EQ(import("001 Abad\n"), 100);
  EXPECT_TRUE(host_.boxes.shown.empty());
}

TEST_F(TextEdl, NegativeTimeIsReportedAndDropped) {
  support::set_rates(edl_);
  EXPECT_EQ(import("007 A -00:00:01:00 00:00:01:00 00:00:00:00 00:00:02:00\n"), 100);
  EXPECT_EQ(reports(), Texts{"[22253] [22258] 7"});
  EXPECT_TRUE(entries_of(edl_).empty());
}

class Lengths : public TextEdl {
 protected:
  Lengths() { support::set_rates(edl_); }
  // One event with these times; the settings give its fades.
  CGenericEdlEntry& only(const std::string& line) {
    EXPECT_EQ(import("001 A " + line + "\n"), 100);
    return *entries_of(edl_).at(0);
  }
  void fades(std::int64_t length) {
    EDL_CONVERSION_SETTINGS settings;
    settings.default_fade_length = length;
    edl_.set_edl_conversion_settings(&settings);
  }
};

TEST_F(Lengths, FadesAreBroughtInsideTheEdit) {
  fades(1000);
  const CGenericEdlEntry& entry = only("00:00:00:00 00:00:00:01 00:00:00:00 00:00:00:01");
  EXPECT_EQ(entry.fade_in_length, 960);
  EXPECT_EQ(entry.fade_out_length, 960);
}

TEST_F(Lengths, FadesThatFitExactlyStay) {
  fades(960);
  EXPECT_EQ(only("00:00:00:00 00:00:00:01 00:00:00:00 00:00:00:01").fade_in_length, 960);
}

TEST_F(Lengths, OneFrameOfDifferencePasses) {
  only("00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:01");
  EXPECT_TRUE(reports().empty());
}

TEST_F(Lengths, MoreThanOneFrameIsReported) {
  only("00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:02");
  EXPECT_EQ(reports(), Texts{"[22253] [22251] 1"});
}

TEST_F(Lengths, EmptySourceIsReported) {
  only("00:00:00:00 00:00:00:00 00:00:00:00 00:00:00:01");
  EXPECT_EQ(reports(), Texts{"[22253] [22250] 1"});
}

TEST_F(Lengths, BothReportsComeInOrder) {
  only("00:00:00:00 00:00:00:00 00:00:00:00 00:00:00:02");
  EXPECT_EQ(reports(), (Texts{"[22253] [22251] 1", "[22253] [22250] 1"}));
}

TEST_F(Lengths, EventOfNoLengthIsNotLookedAt) {
  fades(1000);
  EXPECT_EQ(only("00:00:00:00 00:00:05:00 00:00:01:00 00:00:01:00").fade_in_length, 1000);
  EXPECT_TRUE(reports().empty());
}

TEST_F(TextEdl, LinesAreCutAt150AndCleanedInFront) {
  const auto line_of = [this](const std::string& bytes) {
    support::write_file(folder_.file("line"), bytes);
    CTextFile file(250);
    EXPECT_TRUE(file.Open(folder_.wide_file("line"), CFile::modeRead));
    wide_char out[151];
    EXPECT_EQ(CTextEdl::read_file_line(file, out, 151), 1);
    return utf8(out);
  };
  EXPECT_EQ(line_of(std::string(200, 'x')), std::string(150, 'x'));
  EXPECT_EQ(line_of("**A B"), "  A B");
  EXPECT_EQ(line_of("..."), "   ");
  EXPECT_EQ(line_of("* A"), "  A");
}

TEST_F(TextEdl, TokenHelpers) {
  EXPECT_EQ(edl_.read_token(u"AB\tC"), 2);
  EXPECT_EQ(utf8(edl_.token()), "AB");
  EXPECT_EQ(edl_.read_token(u" A"), 0);
  EXPECT_EQ(edl_.read_token(std::u16string(3000, u'y').c_str()), 1023);
  EXPECT_EQ(CTextEdl::skip_space(u" \t\nA"), 3);
  EXPECT_EQ(CTextEdl::skip_space(u"\rA"), 0);
  EXPECT_EQ(CTextEdl::is_number(u""), 1);
  EXPECT_EQ(CTextEdl::is_number(u"1a"), 0);
  EXPECT_EQ(edl_.skip_token(u"  AB CD"), 4);
}

TEST_F(TextEdl, FourTimes) {
  support::set_rates(edl_);
  CGenericEdlEntry entry(&edl_);
  bool negative = false;
  EXPECT_EQ(edl_.read_four_times(&entry, u" 00:00:01:00 -00:00:02:00 00:00:03:00 rest", &negative),
            42);
  EXPECT_FALSE(negative);
  EXPECT_EQ(entry.source_in, 48000);
  EXPECT_EQ(entry.source_out, -96000);
  EXPECT_EQ(entry.dest_in, 144000);
  EXPECT_EQ(entry.dest_out, 0);
  edl_.read_four_times(&entry, u"1:1:1:1 1:1:1:1 -1:1:1:1 1:1:1:1", &negative);
  EXPECT_TRUE(negative);
  negative = false;
  edl_.read_four_times(&entry, u"1:1:1:1 1:1:1:1 1:1:1:1", &negative);
  EXPECT_FALSE(negative);
  EXPECT_EQ(entry.dest_out, 0);
  edl_.read_four_times(&entry, u"-1:1:1:1", &negative);
  EXPECT_TRUE(negative);
}

std::string header_of(const wide_char* path, const support::TempFolder& folder) {
  LineFormat edl;
  CTextFile file(250);
  EXPECT_TRUE(file.Open(folder.wide_file("head"), CFile::modeCreate | CFile::modeWrite));
  static_cast<void>(edl.write_header(file, path));
  file.Close();
  return support::read_file(folder.file("head"));
}

TEST_F(TextEdl, TitleIsTheNameOfTheFile) {
  EXPECT_EQ(header_of(u"/x/b.edl", folder_), "TITLE: b          FORMAT: Lines \n");
  EXPECT_EQ(header_of(u"C:\\x\\b.edl", folder_), "TITLE: b          FORMAT: Lines \n");
  EXPECT_EQ(header_of(u"a.b.edl", folder_), "TITLE: a.b        FORMAT: Lines \n");
  EXPECT_EQ(header_of(u"/x.y/LIST", folder_), "TITLE: LIST       FORMAT: Lines \n");
  EXPECT_EQ(header_of(u"longer_name1.edl", folder_), "TITLE: longer_name1 FORMAT: Lines \n");
}

TEST_F(TextEdl, TitleThatDoesNotFitIsMissing) {
  EXPECT_EQ(header_of((std::u16string(240, u'n') + u".edl").c_str(), folder_), "");
}

TEST_F(TextEdl, ExportReportsRefusedEventsAndGoesOn) {
  CGenericEdl root;
  support::add_entry(root, {.event_number = 5});
  support::add_entry(root, {.event_number = 6});
  LineFormat edl(&root);
  edl.refused_event = 5;
  EXPECT_EQ(edl.export_edl(folder_.wide_file("b.edl"), 0), 101);
  EXPECT_EQ(reports(), Texts{"[22253] [22231] 5"});
  EXPECT_EQ(support::read_file(folder_.file("b.edl")), "TITLE: b          FORMAT: Lines \nevent\n");
  EXPECT_EQ(edl.output_incomplete(), 0);
}

TEST_F(TextEdl, FullDiskIsKnownAtTheEnd) {
  CGenericEdl root;
  support::add_entry(root, {});
  LineFormat edl(&root);
  EXPECT_EQ(edl.export_edl(u"/dev/full", 0), 101);
  EXPECT_NE(edl.output_incomplete(), 0);
  EXPECT_EQ(edl.export_edl(folder_.wide_file("good"), 0), 101);
  EXPECT_EQ(edl.output_incomplete(), 0);
}

TEST_F(TextEdl, NineHundredIsAnOrdinaryReelElsewhere) {
  EXPECT_EQ(import(std::string("001 900 A") + times + "001 A" + times), 100);
  EXPECT_TRUE(reports().empty());
}

TEST_F(TextEdl, MissingDumpFileIsReportedForTheFormatThatHasOne) {
  edl_.format_name = u"Multitrack Audio";
  CGenericEdlEntry entry(&edl_);
  EXPECT_EQ(edl_.check_special_line(&entry, u"012 900 A"), 1);
  EXPECT_EQ(edl_.check_special_line(&entry, u"xyz 900 A"), 1);
  EXPECT_EQ(reports(), (Texts{"[22252] [22256] 12", "[22252] [22256] 65535"}));
  host_.boxes.default_report_answer = 4096;
  edl_.check_special_line(&entry, u"012 900 A");
  edl_.check_special_line(&entry, u"012 900 A");
  EXPECT_EQ(reports().size(), 3U);
}

TEST_F(TextEdl, NeighbourOfTheSameEvent) {
  CGenericEdl root;
  for (const std::uint16_t number : std::vector<std::uint16_t>{1, 1, 2, 3, 3}) {
    support::add_entry(root, {.event_number = number});
  }
  const LineFormat edl(&root);
  const auto entries = entries_of(root);
  POSITION at = root.get_generic_entry_list()->GetHeadPosition();
  const CGenericEdlEntry* const expected[] = {entries[1], entries[0], nullptr, entries[4],
                                              entries[3]};
  for (std::size_t i = 0; i < entries.size(); ++i) {
    EXPECT_EQ(edl.find_event_neighbour(entries[i], at), expected[i]) << i;
    root.get_generic_entry_list()->GetNext(at);
  }
}

class Comments : public TextEdl {
 protected:
  Comments() : entry_(&edl_) {
    support::set_rates(edl_);
    entry_.set_no_streams(1);
    entry_.set_stream(0, 7);
    entry_.first_channel = 7;
  }
  int parse(std::u16string_view rest, int allow = 1) {
    return edl_.parse_comment(u"COMMENT:", rest, &entry_, allow);
  }
  [[nodiscard]] bool unchanged() const {
    return entry_.get_stream(0) == 7 && entry_.first_channel == 7;
  }
  CGenericEdlEntry entry_;
};

TEST_F(Comments, OtherWordsAreNone) {
  EXPECT_EQ(edl_.parse_comment(u"REM", u"2-3", &entry_, 1), 0);
  EXPECT_TRUE(unchanged());
}

TEST_F(Comments, NotAllowedDoesNothing) {
  EXPECT_EQ(parse(u"2-3", 0), 1);
  EXPECT_TRUE(unchanged());
}

TEST_F(Comments, ChannelPair) {
  EXPECT_EQ(parse(u" 2-3"), 1);
  EXPECT_EQ(entry_.get_stream(0), 1);
  EXPECT_EQ(entry_.first_channel, 2);
  EXPECT_EQ(entry_.reel_no_streams, 3);
  EXPECT_EQ(entry_.no_channels, 1);
  EXPECT_EQ(parse(u"12-10"), 1);
  EXPECT_EQ(entry_.get_stream(0), 11);
  EXPECT_EQ(entry_.first_channel, 9);
  EXPECT_EQ(parse(u"0-0"), 1);
  EXPECT_EQ(entry_.get_stream(0), 65535);
  EXPECT_EQ(entry_.first_channel, 65535);
}

TEST_F(Comments, WhatIsNoPair) {
  for (const std::u16string_view text :
       {u"33", u"33x", u"333-1", u"3-", u"3-x", u"1-2x", u"1-234", u"x"}) {
    EXPECT_EQ(parse(text), 0) << utf8(text);
  }
  for (const std::u16string_view text : {u"3", u"3x", u""})
    EXPECT_EQ(parse(text), 1) << utf8(text);
  EXPECT_TRUE(unchanged());
}

TEST_F(Comments, AudioMapping) {
  EXPECT_EQ(parse(u"AUDIO MAPPING FROM CH3 TO CH1"), 0);
  EXPECT_EQ(entry_.get_stream(0), 2);
  EXPECT_EQ(entry_.first_channel, 0);
  EXPECT_EQ(parse(u"AUDIO MAPPING CH5 CH6"), 0);
  EXPECT_EQ(entry_.get_stream(0), 4);
  EXPECT_EQ(entry_.first_channel, 5);
}

TEST_F(Comments, WhatIsNoMapping) {
  EXPECT_EQ(parse(u"AUDIO OTHER"), 1);
  EXPECT_EQ(parse(u"AUDIO MAPPING X"), 1);
  EXPECT_EQ(parse(u"AUDIO MAPPING CH1 X"), 0);
  EXPECT_TRUE(unchanged());
}

TEST_F(Comments, EntryWithoutStreamsOrNoEntryAtAll) {
  entry_.set_no_streams(0);
  EXPECT_EQ(parse(u"AUDIO MAPPING CH1 CH2"), 0);
  EXPECT_EQ(entry_.no_streams, 0);
  EXPECT_EQ(edl_.parse_comment(u"COMMENT:", u"2-3", nullptr, 1), 1);
  EXPECT_EQ(edl_.parse_comment(u"COMMENT:", u"AUDIO MAPPING CH1 CH2", nullptr, 1), 0);
}

}  // namespace
