// The two drivers and the hooks that a format keeps, tried with a tiny format.
#include "text/text_edl.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "core/generic_edl_video_entry.h"
#include "host/rates.h"
#include "tests/support/faulty_files.h"
#include "tests/text/text_fixtures.h"

namespace {

using support::entries_of;
using support::frame;
using support::ToyEdl;
using support::utf8;
using support::videos_of;
using Texts = std::vector<std::string>;

class TextEdlTest : public support::TextTest {
 protected:
  TextEdlTest() { support::set_rates(edl); }

  void ask_on_rate_changes(CGenericEdl& list) {
    EDL_CONVERSION_SETTINGS settings;
    settings.ask_on_frame_rate_change = 1;
    list.set_edl_conversion_settings(&settings);
  }
  Texts reports() const { return host.boxes.report_bodies(); }

  ToyEdl edl;
};

// Import

TEST_F(TextEdlTest, WhatCannotBeOpenedGives0) {
  EXPECT_EQ(edl.import_edl(folder.wide_file("missing.edl")), 0);
  EXPECT_EQ(edl.import_edl(text_from_utf8(folder.folder("sub")).c_str()), 0);
  EXPECT_EQ(edl.import_edl(nullptr), 0);
  EXPECT_TRUE(entries_of(edl).empty());
}

TEST_F(TextEdlTest, AFileThatAnotherProgramWritesIsNotOpened) {
  support::write_file(folder.file("list.edl"), "1 A 0 100 0 100\n");
  CFile writer;
  ASSERT_TRUE(
      writer.Open(folder.wide_file("list.edl"), CFile::modeReadWrite | CFile::shareExclusive));
  EXPECT_EQ(edl.import_edl(folder.wide_file("list.edl")), 0);
  writer.Close();
  EXPECT_EQ(edl.import_edl(folder.wide_file("list.edl")), 100);
}

TEST_F(TextEdlTest, WithoutAFirstEventTheFormatIsWrong) {
  EXPECT_EQ(import_bytes(edl, ""), 4);
  EXPECT_EQ(import_bytes(edl, "\n \t\r\n"), 4);
  EXPECT_EQ(import_bytes(edl, "TITLE: X\nFCM: DROP FRAME\nnothing\n"), 4);
  EXPECT_EQ(import_bytes(edl, "\xFF\xFF\xFF\xFF"), 4);
  EXPECT_EQ(import_bytes(edl,
                         "\xFF"
                         "1 A 0 100 0 100\n"),
            4);
  EXPECT_TRUE(entries_of(edl).empty());
}

TEST_F(TextEdlTest, EventsGoToTheirLists) {
  EXPECT_EQ(import_bytes(edl, "TITLE: X\n1 A 1 2 3 4\n2 V 5 6 7 8\n3 B 10 20 30 40\n"), 100);
  const auto audio = entries_of(edl);
  const auto video = videos_of(edl);
  ASSERT_EQ(audio.size(), 2U);
  ASSERT_EQ(video.size(), 2U);
  EXPECT_EQ(audio[0]->event_number, 1);
  EXPECT_EQ(audio[0]->source_in, 1);
  EXPECT_EQ(audio[0]->source_out, 2);
  EXPECT_EQ(audio[0]->dest_in, 3);
  EXPECT_EQ(audio[0]->dest_out, 4);
  EXPECT_EQ(audio[0]->owner, &edl);
  EXPECT_EQ(audio[1]->event_number, 3);
  EXPECT_EQ(video[0]->event_number, 2);
  EXPECT_EQ(video[0]->dest_out, 8);
  EXPECT_EQ(video[1]->event_number, 3);
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(TextEdlTest, TheFirstEventLineIsReadOnceByTheParser) {
  EXPECT_EQ(import_bytes(edl, "TITLE: X\nHEAD\n\n1 A 1 2 3 4\n"), 100);
  EXPECT_EQ(edl.parsed, (Texts{"1 A 1 2 3 4"}));
  // Head lines and the first event line pass the line hook, each once.
  EXPECT_EQ(edl.calls,
            (Texts{"audio none: TITLE: X", "audio none: HEAD", "audio none: 1 A 1 2 3 4"}));
}

TEST_F(TextEdlTest, TheFirstEventNeedsDigits) {
  // A word of three characters in front of the first number is of the head.
  EXPECT_EQ(import_bytes(edl, "M2A A 1 2 3 4\n12X A 9 9 9 9\n5 A 1 2 3 4\n"), 100);
  EXPECT_EQ(edl.parsed, (Texts{"5 A 1 2 3 4"}));
}

TEST_F(TextEdlTest, LinesThatBeginWithSignsAreNotOfTheHead) {
  EXPECT_EQ(import_bytes(edl, "* FCM: DROP\n> SPLIT\n-FCM: DROP\nNOTE\n1 A 1 2 3 4\n"), 100);
  EXPECT_EQ(edl.calls, (Texts{"audio none: NOTE", "audio none: 1 A 1 2 3 4"}));
}

TEST_F(TextEdlTest, ASignedNumberIsNoFirstEventButLaterAnEvent) {
  // Signs in front of a line are blanked only behind the head.
  EXPECT_EQ(import_bytes(edl, "*1 A 1 2 3 4\n2 A 1 2 3 4\n*3 A 1 2 3 4\n"), 100);
  EXPECT_EQ(edl.parsed, (Texts{"2 A 1 2 3 4", "3 A 1 2 3 4"}));
}

TEST_F(TextEdlTest, TheDriverHandsOn150Characters) {
  const std::string text(300, 'x');
  EXPECT_EQ(import_bytes(edl, "1 A 1 2 3 4\n" + text + "\n2 A 5 6 7 8\n"), 100);
  ASSERT_EQ(edl.calls.size(), 2U);
  EXPECT_EQ(edl.calls[1], "audio 1: " + std::string(150, 'x'));
  EXPECT_EQ(edl.parsed.size(), 2U);
}

TEST_F(TextEdlTest, HeadLinesAreHandedOnWith249Characters) {
  EXPECT_EQ(import_bytes(edl, std::string(300, 'x') + "\n1 A 1 2 3 4\n"), 100);
  EXPECT_EQ(edl.calls.at(0), "audio none: " + std::string(249, 'x'));
}

TEST_F(TextEdlTest, LinesBehindAnEventGoWhereTheEventWent) {
  EXPECT_EQ(import_bytes(edl,
                         "1 A 0 0 0 0\nafter audio\n2 V 0 0 0 0\nafter video\n"
                         "3 B 0 0 0 0\nafter both\n"),
            100);
  EXPECT_EQ(edl.calls,
            (Texts{"audio none: 1 A 0 0 0 0", "audio 1: after audio", "video 2: after video",
                   "audio 3: after both", "video 3: after both"}));
}

TEST_F(TextEdlTest, DispatchByTheLastKind) {
  edl.dispatch_line(0, u"zero");
  edl.dispatch_line(4, u"four");
  edl.dispatch_line(-1, u"minus");
  EXPECT_TRUE(edl.calls.empty());
  edl.dispatch_line(1, u"one");
  edl.dispatch_line(2, u"two");
  edl.dispatch_line(3, u"three");
  EXPECT_EQ(edl.calls, (Texts{"audio none: one", "video none: two", "audio none: three",
                              "video none: three"}));
}

TEST_F(TextEdlTest, ALineBehindARefusedEventMeetsTheOneBefore) {
  EXPECT_EQ(import_bytes(edl, "1 V 0 0 0 0\n2 A 0 0 0 0\n3 A 0 0 0 0 =92\nnote\n"), 100);
  EXPECT_EQ(edl.calls.back(), "audio 2: note");
}

TEST_F(TextEdlTest, AnIgnoredEventLeavesTheLastKind) {
  EXPECT_EQ(import_bytes(edl,
                         "1 V 0 0 0 0\n2 A 0 0 0 0 IGNORE\nnote\n3 A 0 0 0 0\n"
                         "4 V 0 0 0 0 IGNORE\nnote\n"),
            100);
  EXPECT_EQ(edl.calls, (Texts{"audio none: 1 V 0 0 0 0", "video 1: note", "audio 3: note"}));
  EXPECT_EQ(entries_of(edl).size(), 1U);
  EXPECT_EQ(videos_of(edl).size(), 1U);
}

TEST_F(TextEdlTest, ASpecialLineMayDropTheEvent) {
  EXPECT_EQ(import_bytes(edl, "1 A 0 0 0 0\n2 A 0 0 0 0 DROPPED\nnote\n"), 100);
  EXPECT_EQ(edl.parsed, (Texts{"1 A 0 0 0 0"}));
  EXPECT_EQ(edl.special_lines, (Texts{"1 A 0 0 0 0", "2 A 0 0 0 0 DROPPED"}));
  EXPECT_EQ(entries_of(edl).size(), 1U);
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(TextEdlTest, RefusedLinesAreReportedUntilStopped) {
  EXPECT_EQ(import_bytes(edl, "1 A 0 0 0 0 =92\n2 A 0 0 0 0 =92\n3 A 0 0 0 0\n4 V 0 0 0 0 =92\n"),
            100);
  EXPECT_EQ(reports(), (Texts{"[22253] [22231] 1", "[22253] [22231] 2", "[22253] [22231] 4"}));
  EXPECT_EQ(host.boxes.shown[0].style, 16384U) << "may be stopped";
  ASSERT_EQ(entries_of(edl).size(), 1U);
  EXPECT_EQ(entries_of(edl)[0]->event_number, 3);
  EXPECT_TRUE(videos_of(edl).empty());

  ToyEdl stopped;
  support::set_rates(stopped);
  host.boxes.shown.clear();
  host.boxes.report_answers = {1, 4097};
  EXPECT_EQ(import_bytes(stopped,
                         "1 A 0 0 0 0 =92\n2 V 0 0 0 0 =92\n3 A 0 0 0 0 =92\n"
                         "4 A 0 0 0 0 =95\n5 A 0 0 0 100\n"),
            100);
  EXPECT_EQ(reports(), (Texts{"[22253] [22231] 1", "[22253] [22231] 2"}));
  EXPECT_EQ(entries_of(stopped).size(), 1U);
  EXPECT_EQ(stopped.report_errors, 1) << "the next run reports again";
}

TEST_F(TextEdlTest, NoBoxesWhenReportsAreOff) {
  edl.report_errors = 0;
  EXPECT_EQ(import_bytes(edl, "1 A 0 0 0 0 =92\n2 A 0 0 0 0 =95\n3 A 0 0 0 100\n"), 100);
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(TextEdlTest, ABoxKnowsTheFileAndTheLine) {
  EXPECT_EQ(import_bytes(edl, "TITLE: X\r\n\r\n1 A 0 0 0 0\r\n2 A 0 0 0 0 =92\r\n"), 100);
  ASSERT_EQ(host.boxes.shown.size(), 1U);
  EXPECT_EQ(host.boxes.shown[0].path, folder.file("list.edl"));
  EXPECT_EQ(host.boxes.shown[0].line, 4);
}

TEST_F(TextEdlTest, NegativeTimesAreRefusedWithAReportOfTheirOwn) {
  EXPECT_EQ(import_bytes(edl, "1 A 0 0 0 0\n12 A 0 0 0 0 =95\n"), 100);
  EXPECT_EQ(reports(), (Texts{"[22253] [22258] 12"}));
  EXPECT_EQ(entries_of(edl).size(), 1U);
}

TEST_F(TextEdlTest, OtherCodesDropTheEventInSilence) {
  EXPECT_EQ(
      import_bytes(edl, "1 A 0 0 0 0 =0\n2 A 0 0 0 0 =93\n3 V 0 0 0 0 =95\n4 A 0 0 0 0 =91\n"),
      100);
  EXPECT_TRUE(host.boxes.shown.empty());
  EXPECT_TRUE(entries_of(edl).empty());
  EXPECT_TRUE(videos_of(edl).empty());
}

TEST_F(TextEdlTest, SkippedLinesAreCountedWhateverTheirResult) {
  EXPECT_EQ(import_bytes(edl,
                         "1 A 0 0 0 0 SKIP\n2 A 0 0 0 0 SKIP =92\n3 A 0 0 0 0\n"
                         "4 A 0 0 0 0 SKIP =95\n5 A 0 0 0 0 SKIP =7\n"),
            100);
  EXPECT_EQ(edl.skipped_count(), 4);
  EXPECT_EQ(edl.skip_found, 0) << "the flag is cleared in front of each line";
  EXPECT_EQ(entries_of(edl).size(), 2U);
}

TEST_F(TextEdlTest, AnEntryWithoutNumberShows65535) {
  edl.on_entry = [](CGenericEdlEntry& entry) { entry.event_number = event_number_not_set; };
  EXPECT_EQ(import_bytes(edl, "1 A 0 0 0 0 =92\n"), 100);
  EXPECT_EQ(reports(), (Texts{"[22253] [22231] 65535"}));
}

// The length check

TEST_F(TextEdlTest, FadesLongerThanTheSourceAreHalved) {
  CGenericEdlEntry entry(&edl);
  entry.source_in = 1000;
  entry.source_out = 1101;
  entry.dest_in = 0;
  entry.dest_out = 101;
  entry.fade_in_length = entry.fade_out_length = 240;
  std::int32_t flag = 1;
  edl.check_lengths(entry, flag);
  EXPECT_EQ(entry.fade_in_length, 50);
  EXPECT_EQ(entry.fade_out_length, 50);

  entry.fade_in_length = 1;
  entry.fade_out_length = 100;
  edl.check_lengths(entry, flag);
  EXPECT_EQ(entry.fade_in_length, 1) << "a sum equal to the length stays";
  EXPECT_EQ(entry.fade_out_length, 100);

  entry.fade_out_length = 101;
  edl.check_lengths(entry, flag);
  EXPECT_EQ(entry.fade_in_length, 50);
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(TextEdlTest, FadesWhoseSumLeaves64Bits) {
  CGenericEdlEntry entry(&edl);
  entry.source_in = 0;
  entry.source_out = 200;
  entry.dest_in = 0;
  entry.dest_out = 200;
  entry.fade_in_length = entry.fade_out_length = INT64_MAX;
  std::int32_t flag = 1;
  edl.check_lengths(entry, flag);
  EXPECT_EQ(entry.fade_in_length, 100);
  entry.fade_in_length = entry.fade_out_length = INT64_MIN;
  edl.check_lengths(entry, flag);
  EXPECT_EQ(entry.fade_in_length, INT64_MIN) << "far below the length";
}

TEST_F(TextEdlTest, LengthsThatDifferByMoreThanAFrame) {
  EXPECT_EQ(import_bytes(edl, "1 A 0 10000 0 11920\n2 A 0 11920 0 10000\n"), 100);
  EXPECT_TRUE(host.boxes.shown.empty());
  ToyEdl second;
  support::set_rates(second);
  EXPECT_EQ(import_bytes(second, "3 A 0 10000 0 11921\n4 A 0 11921 0 10000\n"), 100);
  EXPECT_EQ(reports(), (Texts{"[22253] [22251] 3", "[22253] [22251] 4"}));
  EXPECT_EQ(entries_of(second).size(), 2U) << "they are added all the same";
}

TEST_F(TextEdlTest, ASourceWithoutLength) {
  EXPECT_EQ(import_bytes(edl, "1 A 500 500 0 1\n"), 100);
  EXPECT_EQ(reports(), (Texts{"[22253] [22250] 1"}));
  host.boxes.shown.clear();
  EXPECT_EQ(import_bytes(edl, "2 A 500 500 0 4800\n"), 100);
  EXPECT_EQ(reports(), (Texts{"[22253] [22251] 2", "[22253] [22250] 2"}));
}

TEST_F(TextEdlTest, AStopAtTheFirstOfTwoReportsSilencesTheSecond) {
  host.boxes.report_answers = {4096};
  EXPECT_EQ(import_bytes(edl, "2 A 500 500 0 4800\n"), 100);
  EXPECT_EQ(reports(), (Texts{"[22253] [22251] 2"}));
}

TEST_F(TextEdlTest, AnEventOfNoDestinationLengthIsNotChecked) {
  edl.on_entry = [](CGenericEdlEntry& entry) { entry.fade_in_length = 777; };
  EXPECT_EQ(import_bytes(edl, "1 A 0 999999 50 50\n"), 100);
  ASSERT_EQ(entries_of(edl).size(), 1U);
  EXPECT_EQ(entries_of(edl)[0]->fade_in_length, 777);
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(TextEdlTest, TimesAtTheEndsOf64Bits) {
  EXPECT_EQ(import_bytes(edl, "1 A -9223372036854775808 9223372036854775807 0 100\n"), 100);
  EXPECT_EQ(entries_of(edl).size(), 1U);
  // The source length wraps to -1: no more than a frame from 100, and not 0.
  EXPECT_TRUE(host.boxes.shown.empty());
}

// Objects without lists, exceptions, failing reads

TEST_F(TextEdlTest, WithoutListsEntriesAreDeleted) {
  CGenericEdl root;
  CGenericEdl child(&root);
  ToyEdl grandchild(&child);
  ASSERT_EQ(grandchild.get_generic_entry_list(), nullptr);
  EXPECT_EQ(import_bytes(grandchild, "1 A 0 100 0 100\n2 B 0 100 0 9999\n3 V 0 0 0 0\nnote\n"),
            100);
  EXPECT_EQ(grandchild.parsed.size(), 2U);
  EXPECT_EQ(grandchild.first_entry(), nullptr);
  EXPECT_EQ(grandchild.first_video_entry(), nullptr);
  EXPECT_EQ(grandchild.get_dump_list()->GetCount(), 0);
  grandchild.sort_by_dest_in();
  grandchild.fold_crossfades();
  grandchild.mark_all_cuts();
  grandchild.split_for_export();
  EXPECT_EQ(grandchild.export_edl(folder.wide_file("out.edl"), 0), 101);
  EXPECT_EQ(grandchild.import_edl(folder.wide_file("missing")), 0);
}

TEST_F(TextEdlTest, AnImportIntoAParentFillsItsLists) {
  CGenericEdl root;
  support::set_rates(root);
  ToyEdl child(&root);
  EXPECT_EQ(import_bytes(child, "1 B 0 100 0 100\n"), 100);
  EXPECT_EQ(entries_of(root).size(), 1U);
  EXPECT_EQ(videos_of(root).size(), 1U);
}

TEST_F(TextEdlTest, AnExceptionInAHookLosesNothing) {
  edl.on_entry = [](CGenericEdlEntry& entry) {
    if (entry.event_number == 2) throw std::runtime_error("hook");
  };
  EXPECT_THROW(static_cast<void>(import_bytes(edl, "1 A 0 0 0 0\n2 A 0 0 0 0\n")),
               std::runtime_error);
  EXPECT_EQ(entries_of(edl).size(), 1U);
  CFile free;
  EXPECT_TRUE(free.Open(folder.wide_file("list.edl"), CFile::modeReadWrite | CFile::shareExclusive))
      << "the file was closed";
}

TEST_F(TextEdlTest, AReadErrorRaisesAndKeepsWhatWasRead) {
  std::string bytes;
  for (int i = 1; i <= 9000; ++i)
    bytes += std::to_string(i) + " A 0 100 0 100\n";
  ASSERT_GT(bytes.size(), 2U * 65536U);
  support::write_file(folder.file("list.edl"), bytes);
  const support::FaultyFiles faults(FileFaults::Operation::read, 3, EIO);
  EXPECT_THROW(static_cast<void>(edl.import_edl(folder.wide_file("list.edl"))), CFileException);
  EXPECT_FALSE(entries_of(edl).empty());
  EXPECT_LT(entries_of(edl).size(), 9000U);
}

// Frame rates that a file states

TEST_F(TextEdlTest, AnFcmLineGivesTheRate) {
  ToyEdl fresh;
  EXPECT_EQ(import_bytes(fresh, "FCM: DROP FRAME\n1 A 0 0 0 0\n"), 100);
  EXPECT_EQ(fresh.frame_rate(), frame_rate_2997_drop);
  EXPECT_EQ(fresh.original_frame_rate(), frame_rate_2997_drop);
  ToyEdl other;
  EXPECT_EQ(import_bytes(other, "FCM: NON-DROP FRAME\n1 A 0 0 0 0\n"), 100);
  EXPECT_EQ(other.frame_rate(), frame_rate_2997_non_drop);
  EXPECT_EQ(other.original_frame_rate(), frame_rate_2997_non_drop);
}

TEST_F(TextEdlTest, OtherFcmLinesSayNothing) {
  for (const char* head : {"FCM:", "FCM: drop", "FCM: Drop", "FCM: DROPFRAME", "FCM: NON DROP",
                           "FCM: 25", "fcm: DROP"}) {
    ToyEdl fresh;
    EXPECT_EQ(import_bytes(fresh, std::string(head) + "\n1 A 0 0 0 0\n"), 100);
    EXPECT_EQ(fresh.frame_rate(), rate_not_set) << head;
    EXPECT_EQ(fresh.original_frame_rate(), rate_not_set) << head;
  }
}

TEST_F(TextEdlTest, TheAnswersOfParseFcm) {
  ToyEdl fresh;
  EXPECT_EQ(fresh.parse_fcm(u"TITLE:", u" DROP"), 0);
  EXPECT_EQ(fresh.parse_fcm(u"FCM", u" DROP"), 0);
  EXPECT_EQ(fresh.parse_fcm(u"", u""), 0);
  EXPECT_EQ(fresh.parse_fcm(u"FCM:", u""), 1);
  EXPECT_EQ(fresh.parse_fcm(u"FCM:DROP", u""), 1) << "no second word";
  EXPECT_EQ(fresh.frame_rate(), rate_not_set);
  EXPECT_EQ(fresh.parse_fcm(u"FCM:", u"  DROP FRAME"), 1);
  EXPECT_EQ(fresh.frame_rate(), frame_rate_2997_drop);
}

TEST_F(TextEdlTest, ARateAlreadySetStaysButTheFilesIsNoted) {
  EXPECT_EQ(import_bytes(edl, "FCM: DROP FRAME\n1 A 0 0 0 0\n"), 100);
  EXPECT_EQ(edl.frame_rate(), frame_rate_25);
  EXPECT_EQ(edl.original_frame_rate(), frame_rate_2997_drop);
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(TextEdlTest, AHeadLineAsksOnce) {
  ToyEdl asking(nullptr, 1);
  support::set_rates(asking, 2, 1, 1);
  ask_on_rate_changes(asking);
  EXPECT_EQ(import_bytes(asking, "TITLE: X\nFCM: DROP FRAME\nNOTE\n1 A 0 0 0 0\n"), 100);
  ASSERT_EQ(host.boxes.shown.size(), 1U);
  EXPECT_EQ(host.boxes.shown[0].kind, support::BoxRecord::Kind::question);
  EXPECT_EQ(host.boxes.shown[0].text_id, 22386U);
  EXPECT_EQ(host.boxes.shown[0].path, folder.file("list.edl"));
  EXPECT_EQ(host.boxes.shown[0].line, 2);
  EXPECT_EQ(asking.frame_rate(), frame_rate_25) << "answered No";
}

TEST_F(TextEdlTest, AYesTakesTheFilesRate) {
  ToyEdl asking(nullptr, 1);
  support::set_rates(asking, 2, 1, 1);
  ask_on_rate_changes(asking);
  host.boxes.question_answers = {box_answer_yes};
  EXPECT_EQ(import_bytes(asking, "FCM: NON-DROP FRAME\n1 A 0 0 0 0\n"), 100);
  EXPECT_EQ(asking.frame_rate(), frame_rate_2997_non_drop);
  UPDATE_SETTINGS_DETAILS updates;
  asking.get_update_settings_details(&updates);
  EXPECT_EQ(updates.frame_rate_changed, 1);
}

// Lines as the drivers see them

class ReadFileLineTest : public support::TextTest {
 protected:
  std::string read(std::string_view bytes, int size) {
    support::write_file(folder.file("in"), bytes);
    CTextFile file(line_file_size);
    EXPECT_TRUE(file.Open(folder.wide_file("in"), CFile::modeRead));
    std::u16string out(300, u'x');
    result = CTextEdl::read_file_line(file, out.data(), size);
    return utf8(std::u16string_view(out.c_str()));
  }
  int result = -1;
};

TEST_F(ReadFileLineTest, CutsAtItsSize) {
  EXPECT_EQ(read(std::string(200, 'a') + "\n", 151), std::string(150, 'a'));
  EXPECT_EQ(result, 1);
  EXPECT_EQ(read(std::string(150, 'a') + "\n", 151), std::string(150, 'a'));
  EXPECT_EQ(read("abc", 3), "ab");
  EXPECT_EQ(read("abc", 1), "");
}

TEST_F(ReadFileLineTest, BlanksOutLeadingSigns) {
  EXPECT_EQ(read("**A B", 151), "  A B");
  EXPECT_EQ(read("...", 151), "   ");
  EXPECT_EQ(read("* A", 151), "  A");
  EXPECT_EQ(read("*-* B", 151), "    B");
  EXPECT_EQ(read("A*", 151), "A*");
  EXPECT_EQ(read("\xE9t\xE9", 151), "\xC3\xA9t\xC3\xA9") << "Latin letters are letters";
  EXPECT_EQ(read("\xD7"
                 "A",
                 151),
            " A")
      << "the multiplication sign is none";
}

TEST_F(ReadFileLineTest, TheEndOfTheFile) {
  EXPECT_EQ(read("", 151), "");
  EXPECT_EQ(result, 0);
}

// Four times

TEST_F(TextEdlTest, FourTimesOfALine) {
  CGenericEdlEntry entry(&edl);
  bool negative = false;
  const std::u16string line = u" 00:00:01:00\t00:00:02:00  10:00:00:00 10:00:01:01 rest";
  EXPECT_EQ(edl.read_four_times(&entry, line.c_str(), &negative), 49);
  EXPECT_EQ(entry.source_in, 48000);
  EXPECT_EQ(entry.source_out, 96000);
  EXPECT_EQ(entry.dest_in, 1728000000);
  EXPECT_EQ(entry.dest_out, 1728000000 + 48000 + frame);
  EXPECT_EQ(utf8(entry.source_in_string), "00:00:01:00");
  EXPECT_EQ(utf8(entry.source_out_string), "00:00:02:00");
  EXPECT_EQ(entry.frame_rate, frame_rate_25);
  EXPECT_FALSE(negative);
}

TEST_F(TextEdlTest, MissingTimesAreZero) {
  CGenericEdlEntry entry(&edl);
  bool negative = false;
  const std::u16string line = u"00:00:01:00 00:00:02:00 00:00:03:00";
  EXPECT_EQ(edl.read_four_times(&entry, line.c_str(), &negative), 35);
  EXPECT_EQ(entry.dest_in, 144000);
  EXPECT_EQ(entry.dest_out, 0);
  EXPECT_EQ(edl.read_four_times(&entry, u"", &negative), 0);
  EXPECT_EQ(entry.source_in, 0);
  EXPECT_FALSE(negative);
}

TEST_F(TextEdlTest, ASignCountsInTwoOfTheFourTimes) {
  CGenericEdlEntry entry(&edl);
  const auto negative_at = [&](const wide_char* line) {
    bool negative = false;
    static_cast<void>(edl.read_four_times(&entry, line, &negative));
    return negative;
  };
  EXPECT_TRUE(negative_at(u"-00:00:01:00 00:00:02:00 00:00:03:00 00:00:04:00"));
  EXPECT_EQ(entry.source_in, -48000) << "it is stored all the same";
  EXPECT_FALSE(negative_at(u"00:00:01:00 -00:00:02:00 00:00:03:00 00:00:04:00"));
  EXPECT_EQ(entry.source_out, -96000);
  EXPECT_TRUE(negative_at(u"00:00:01:00 00:00:02:00 -00:00:03:00 00:00:04:00"));
  EXPECT_FALSE(negative_at(u"00:00:01:00 00:00:02:00 00:00:03:00 -00:00:04:00"));
  EXPECT_EQ(entry.dest_out, -192000);
  EXPECT_TRUE(negative_at(u"-"));
}

TEST_F(TextEdlTest, TimesOfManyDigits) {
  CGenericEdlEntry entry(&edl);
  bool negative = false;
  // Nine digits of a run count, however long it is.
  const std::u16string hours(60, u'0');
  const std::u16string line = hours + u":00:07:00 999999999:999999999:999999999:999999999 " +
                              std::u16string(40, u'9') + u":00:00:00 00:00:00:" +
                              std::u16string(40, u'1');
  static_cast<void>(edl.read_four_times(&entry, line.c_str(), &negative));
  EXPECT_EQ(entry.source_in, 7 * 48000);
  // 999999999 x 48000 x (3600 + 60 + 1) and 999999999 x 48000 / 25.
  EXPECT_EQ(entry.source_out, 999999999LL * 48000 * 3661 + 999999999LL * 1920);
  EXPECT_EQ(entry.dest_in, 999999999LL * 48000 * 3600);
  EXPECT_EQ(entry.dest_out, 111111111LL * 1920);
}

TEST_F(TextEdlTest, FourTimesOfAVideoLineWatchNoSign) {
  CGenericEdlVideoEntry entry(&edl);
  const std::u16string line = u"-00:00:01:00 00:00:02:00 -00:00:03:00 00:00:04:00";
  EXPECT_EQ(CTextEdl::read_four_times(&entry, line.c_str()), 49);
  EXPECT_EQ(entry.source_in, -48000);
  EXPECT_EQ(entry.source_out, 96000);
  EXPECT_EQ(entry.dest_in, -144000);
  EXPECT_EQ(entry.dest_out, 192000);
}

// Comments

class ParseCommentTest : public TextEdlTest {
 protected:
  int parse(std::u16string_view rest, int allow = 1) {
    entry.set_no_streams(2);
    entry.set_stream(0, 40);
    entry.no_channels = 2;
    entry.first_channel = 30;
    entry.reel_no_streams = 1;
    return edl.parse_comment(u"COMMENT:", rest, &entry, allow);
  }
  bool unchanged() const {
    return support::streams_of(entry) == std::vector<int>{40, 65535} && entry.no_channels == 2 &&
           entry.first_channel == 30 && entry.reel_no_streams == 1;
  }
  CGenericEdlEntry entry{&edl};
};

TEST_F(ParseCommentTest, OtherWordsAreNoComments) {
  EXPECT_EQ(edl.parse_comment(u"REM", u" 2-3", &entry, 1), 0);
  EXPECT_EQ(edl.parse_comment(u"COMMENT", u" 2-3", &entry, 1), 0);
  EXPECT_EQ(edl.parse_comment(u"", u"", &entry, 1), 0);
}

TEST_F(ParseCommentTest, NotAllowed) {
  EXPECT_EQ(parse(u" 2-3", 0), 1);
  EXPECT_TRUE(unchanged());
}

TEST_F(ParseCommentTest, AChannelPair) {
  EXPECT_EQ(parse(u" 2-3"), 1);
  EXPECT_EQ(support::streams_of(entry), std::vector<int>{1});
  EXPECT_EQ(entry.no_channels, 1);
  EXPECT_EQ(entry.first_channel, 2);
  EXPECT_EQ(entry.reel_no_streams, 3);

  EXPECT_EQ(parse(u"\t12-10 behind"), 1);
  EXPECT_EQ(support::streams_of(entry), std::vector<int>{11});
  EXPECT_EQ(entry.first_channel, 9);
  EXPECT_EQ(entry.reel_no_streams, 10);

  EXPECT_EQ(parse(u"1-12"), 1);
  EXPECT_EQ(support::streams_of(entry), std::vector<int>{0});
  EXPECT_EQ(entry.first_channel, 11);
  EXPECT_EQ(parse(u"99-1"), 1);
  EXPECT_EQ(support::streams_of(entry), std::vector<int>{98});
  EXPECT_EQ(edl.highest_stream(), 98);
}

TEST_F(ParseCommentTest, ANumberOf0WrapsToNone) {
  EXPECT_EQ(parse(u"0-0"), 1);
  EXPECT_EQ(support::streams_of(entry), std::vector<int>{65535});
  EXPECT_EQ(entry.first_channel, 65535);
  EXPECT_EQ(entry.reel_no_streams, 1);
  EXPECT_EQ(edl.highest_stream(), 40) << "a stream that goes nowhere is not noted";
}

TEST_F(ParseCommentTest, FormsThatAreNoPair) {
  for (const wide_char* one : {u"3", u"3x", u"3+4", u""}) {
    EXPECT_EQ(parse(one), 1) << utf8(one);
    EXPECT_TRUE(unchanged()) << utf8(one);
  }
  for (const wide_char* none : {u"33", u"33x", u"123-4", u"3-", u"3-x", u"33-", u"1-2x", u"1-12x",
                                u"1-123", u"12-123", u"x", u"-3", u"audio"}) {
    EXPECT_EQ(parse(none), 0) << utf8(none);
    EXPECT_TRUE(unchanged()) << utf8(none);
  }
}

TEST_F(ParseCommentTest, AnAudioMapping) {
  EXPECT_EQ(parse(u" AUDIO MAPPING FROM CH3 TO CH1"), 0) << "the line is passed on";
  EXPECT_EQ(support::streams_of(entry), (std::vector<int>{2, 65535})) << "the width stays";
  EXPECT_EQ(entry.first_channel, 0);
  EXPECT_EQ(entry.no_channels, 2);
  EXPECT_EQ(entry.reel_no_streams, 1);

  EXPECT_EQ(parse(u" AUDIO MAPPING CH12 CH7"), 0) << "FROM and TO may be missing";
  EXPECT_EQ(support::streams_of(entry), (std::vector<int>{11, 65535}));
  EXPECT_EQ(entry.first_channel, 6);
  EXPECT_EQ(entry.reel_no_streams, 7);

  EXPECT_EQ(parse(u" AUDIO MAPPING FROM CH1234 TO CH4x"), 0) << "three digits count";
  EXPECT_EQ(support::streams_of(entry), (std::vector<int>{122, 65535}));
  EXPECT_EQ(entry.first_channel, 3);

  EXPECT_EQ(parse(u" AUDIO MAPPING FROM CH TO CH"), 0) << "no digit counts as 0";
  EXPECT_EQ(support::streams_of(entry), (std::vector<int>{65535, 65535}));
  EXPECT_EQ(entry.first_channel, 65535);
}

TEST_F(ParseCommentTest, FormsThatAreNoMapping) {
  for (const wide_char* one :
       {u"AUDIO", u"AUDIO OTHER", u"AUDIO MAPPING", u"AUDIO MAPPING X", u"AUDIO MAPPING FROM",
        u"AUDIO MAPPING FROM X", u"AUDIO MAPPING TO CH1", u"AUDIO MAPPING FROM FROM CH1"}) {
    EXPECT_EQ(parse(one), 1) << utf8(one);
    EXPECT_TRUE(unchanged()) << utf8(one);
  }
  for (const wide_char* none :
       {u"AUDIO MAPPING CH1 X", u"AUDIO MAPPING CH1", u"AUDIO MAPPING CH1 TO",
        u"AUDIO MAPPING FROM CH1 TO TO CH2", u"AUDIO MAPPING CH1 ch2"}) {
    EXPECT_EQ(parse(none), 0) << utf8(none);
    EXPECT_TRUE(unchanged()) << utf8(none);
  }
}

TEST_F(ParseCommentTest, AMappingOfAnEntryWithoutStreams) {
  CGenericEdlEntry bare(&edl);
  EXPECT_EQ(edl.parse_comment(u"COMMENT:", u"AUDIO MAPPING CH3 CH2", &bare, 1), 0);
  EXPECT_EQ(bare.no_streams, 0);
  EXPECT_EQ(bare.first_channel, 1);
}

TEST_F(ParseCommentTest, WithoutAnEntryNothingHappens) {
  EXPECT_EQ(edl.parse_comment(u"COMMENT:", u"2-3", nullptr, 1), 1);
  EXPECT_EQ(edl.parse_comment(u"COMMENT:", u"AUDIO MAPPING CH3 CH2", nullptr, 1), 0);
}

// The hooks of a format that keeps them all

class BareEdl final : public CTextEdl {
 public:
  BareEdl() : CTextEdl(nullptr, 0) {}
  result_code parse_event(CGenericEdlEntry*, const wide_char*, int*) override { return 90; }
  result_code parse_video_event(CGenericEdlVideoEntry*, const wide_char*) override { return 90; }
};

TEST_F(TextEdlTest, TheBaseHooks) {
  BareEdl bare;
  EXPECT_EQ(bare.is_audio_event(u"001 A A"), 0);
  EXPECT_EQ(bare.is_video_event(u"001 A V"), 0);
  EXPECT_EQ(bare.is_ignored_event(u"001"), 0);
  wide_char name[format_name_size] = {u'x', u'x'};
  EXPECT_EQ(bare.get_format_name(name), 0);
  EXPECT_EQ(name[0], u'\0');
  EXPECT_EQ(import_bytes(bare, "NOTE\n1 X\nNOTE\n"), 100);
  EXPECT_TRUE(entries_of(bare).empty());
  CGenericEdlEntry entry(&bare);
  entry.set_no_streams(1);
  entry.set_stream(0, 3);
  EXPECT_EQ(bare.get_first_stream(&entry), 3);
  CTextFile file(line_file_size);
  EXPECT_EQ(bare.write_event(file, &entry), 0);
  EXPECT_EQ(bare.write_footer(file, u"x"), 101);
  EXPECT_EQ(bare.check_special_line(&entry, u"001 900 A"), 1);
  EXPECT_EQ(exported(bare), "TITLE: b          FORMAT:  \n");
}

TEST_F(TextEdlTest, RatesOfTheObject) {
  EXPECT_EQ(edl.frames_to_samples(3), 5760);
  EXPECT_EQ(edl.samples_to_frames(5759), 2);
  CGenericEdl root;
  support::set_rates(root, 2, 3);
  const ToyEdl child(&root);
  EXPECT_EQ(child.frames_to_samples(3), 4804) << "an object without rates takes its root's";
}

TEST_F(TextEdlTest, TheLastEntriesOfTheLists) {
  EXPECT_EQ(edl.first_entry(), nullptr);
  EXPECT_EQ(edl.first_video_entry(), nullptr);
  EXPECT_EQ(import_bytes(edl, "1 B 0 0 0 0\n2 B 0 0 0 0\n"), 100);
  EXPECT_EQ(edl.first_entry()->event_number, 2);
  EXPECT_EQ(edl.first_video_entry()->event_number, 2);
}

// Export

TEST_F(TextEdlTest, AnExportThatCannotBeMadeGives0) {
  EXPECT_EQ(edl.export_edl(folder.wide_file("no/such/b.edl"), 0), 0);
  EXPECT_EQ(edl.export_edl(text_from_utf8(folder.folder("sub")).c_str(), 0), 0);
  EXPECT_EQ(edl.export_edl(nullptr, 0), 0);
}

TEST_F(TextEdlTest, AnExportWritesTheListInItsOrder) {
  for (const int number : {3, 1, 2})
    support::add_entry(edl, {.event_number = static_cast<std::uint16_t>(number)});
  support::write_file(folder.file("b.edl"),
                      "what stood here before, and was longer than the list\n");
  EXPECT_EQ(exported(edl), "TITLE: b          FORMAT: Toy \nevent 3\nevent 1\nevent 2\n");
  EXPECT_EQ(edl.output_incomplete(), 0);
}

TEST_F(TextEdlTest, EntriesThatTheFormatRefusesAreReportedUntilStopped) {
  for (const std::uint16_t number : std::initializer_list<std::uint16_t>{901, 1, 909, 902, 903, 2})
    support::add_entry(edl, {.event_number = number});
  host.boxes.report_answers = {0, 4096};
  EXPECT_EQ(exported(edl), "TITLE: b          FORMAT: Toy \nevent 1\nevent 2\n");
  // 909 answers 9, which nobody is told of.
  EXPECT_EQ(reports(), (Texts{"[22253] [22231] 901", "[22253] [22231] 902"}));
  EXPECT_EQ(host.boxes.shown[0].style, 16384U);
  EXPECT_EQ(edl.report_errors, 1);
}

TEST_F(TextEdlTest, ABoxOfAnExportDoesNotNameAFileReadBefore) {
  EXPECT_EQ(import_bytes(edl, "1 A 0 0 0 0 =92\n901 A 0 0 0 0\n"), 100);
  host.boxes.shown.clear();
  EXPECT_EQ(edl.export_edl(folder.wide_file("b.edl"), 0), 101);
  ASSERT_EQ(host.boxes.shown.size(), 1U);
  EXPECT_EQ(host.boxes.shown[0].path, folder.file("b.edl"));
  EXPECT_EQ(host.boxes.shown[0].line, 0);
}

TEST_F(TextEdlTest, ARefusedWriteIsTold) {
  support::add_entry(edl, {.event_number = 1});
  const support::FaultyFiles faults(FileFaults::Operation::write, 1, ENOSPC);
  EXPECT_EQ(edl.export_edl(folder.wide_file("b.edl"), 0), 101);
  EXPECT_NE(edl.output_incomplete(), 0);
  EXPECT_EQ(edl.export_edl(folder.wide_file("no/such/b.edl"), 0), 0);
  EXPECT_EQ(edl.output_incomplete(), 0) << "that was another export";
}

class TitleTest : public TextEdlTest {
 protected:
  std::string title(const char16_t* path) {
    CTextFile file(line_file_size);
    EXPECT_TRUE(file.Open(folder.wide_file("title"), CFile::modeCreate | CFile::modeWrite));
    result = edl.write_header(file, path);
    file.Close();
    return support::read_file(folder.file("title"));
  }
  int result = 0;
};

TEST_F(TitleTest, NamesTheFileWithoutFolderAndExtension) {
  const std::string b = "TITLE: b          FORMAT: Toy \n";
  EXPECT_EQ(title(u"/x/b.edl"), b);
  EXPECT_EQ(result, 101);
  EXPECT_EQ(title(u"C:\\x\\b.edl"), b);
  EXPECT_EQ(title(u"b.edl"), b);
  EXPECT_EQ(title(u"/x.y/b"), b) << "a point in a folder is none of the name";
  EXPECT_EQ(title(u"a.b.edl"), "TITLE: a.b        FORMAT: Toy \n");
  EXPECT_EQ(title(u"LIST"), "TITLE: LIST       FORMAT: Toy \n");
  EXPECT_EQ(title(u"/x/longer_name1.edl"), "TITLE: longer_name1 FORMAT: Toy \n");
  EXPECT_EQ(title(u"tencharact.edl"), "TITLE: tencharact FORMAT: Toy \n");
  EXPECT_EQ(title(u"/x/.edl"), "TITLE:            FORMAT: Toy \n");
  EXPECT_EQ(title(u"caf\u00E9.edl"), "TITLE: caf\xE9       FORMAT: Toy \n");
}

TEST_F(TitleTest, ANameThatDoesNotFitLeavesTheTitleOut) {
  // "TITLE: ", " FORMAT: Toy" and " \n" take 21 of the 250 characters.
  EXPECT_EQ(title((std::u16string(229, u'n') + u".edl").c_str()),
            "TITLE: " + std::string(229, 'n') + " FORMAT: Toy \n");
  EXPECT_EQ(result, 101);
  EXPECT_EQ(title((std::u16string(230, u'n') + u".edl").c_str()), "");
  EXPECT_EQ(result, 9);
  support::add_entry(edl, {.event_number = 1});
  EXPECT_EQ(exported(edl, std::string(240, 'n') + ".edl"), "event 1\n")
      << "what follows is not harmed";
}

}  // namespace
