#include <gtest/gtest.h>

#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"
#include "text/cmx_edl.h"

namespace {

using support::add_entry;
using support::Edit;
using Texts = std::vector<std::string>;

constexpr const char* title = "TITLE: b          FORMAT: CMX 3600 4-Ch \n";

class CmxWrite : public testing::Test {
 protected:
  CmxWrite() { support::set_rates(root_); }

  // What is written of the list behind its title.
  std::string written(unsigned char channels = 4) {
    CCMXEdl edl(channels, &root_, 0);
    EXPECT_EQ(edl.export_edl(folder_.wide_file("b.edl"), 0), 101);
    const std::string text = support::read_file(folder_.file("b.edl"));
    return text.substr(text.find('\n') + 1);
  }
  // The columns from the channels on of a standard edit on these streams.
  std::string column_of(const std::vector<int>& streams) {
    Edit edit = support::standard_edit();
    edit.streams = streams;
    add_entry(root_, edit);
    std::string line = written();
    delete_all(*root_.get_generic_entry_list());
    return line.empty() ? "" : line.substr(line.find('\t') + 1);
  }
  void cuts_only() {
    EDL_CONVERSION_SETTINGS settings;
    settings.cmx_cuts_only = 1;
    root_.set_edl_conversion_settings(&settings);
  }

  support::ScriptedHost host_;
  support::TempFolder folder_;
  CGenericEdl root_;
};

TEST_F(CmxWrite, FormatNames) {
  wide_char name[format_name_size];
  CCMXEdl(2, nullptr, 0).get_format_name(name);
  EXPECT_EQ(support::utf8(name), "CMX 340 2-Ch");
  CCMXEdl(4, nullptr, 0).get_format_name(name);
  EXPECT_EQ(support::utf8(name), "CMX 3600 4-Ch");
}

TEST_F(CmxWrite, PlainEdit) {
  add_entry(root_, support::standard_edit());
  CCMXEdl edl(4, &root_, 0);
  EXPECT_EQ(edl.export_edl(folder_.wide_file("b.edl"), 0), 101);
  EXPECT_TRUE(support::same_lines(
      support::read_file(folder_.file("b.edl")),
      std::string(title) +
          "001  TAPE01 \tA     C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n"));
}

TEST_F(CmxWrite, FadeIn) {
  Edit edit = support::standard_edit();
  edit.fade_in = 46080;
  add_entry(root_, edit);
  EXPECT_TRUE(support::same_lines(
      written(),
      "001  BLK \tA     C         00:00:00:00 00:00:00:00 10:00:00:00 10:00:00:00 \n"
      "001  TAPE01 \tA     D   024   01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n"));
}

TEST_F(CmxWrite, FadeOut) {
  Edit edit = support::standard_edit();
  edit.fade_out = 23040;
  add_entry(root_, edit);
  EXPECT_TRUE(support::same_lines(
      written(),
      "001  TAPE01 \tA     C         01:00:00:00 01:00:09:13 10:00:00:00 10:00:09:13 \n"
      "002  TAPE01 \tA     C         01:00:09:13 01:00:09:13 10:00:09:13 10:00:09:13 \n"
      "002  BLK \tA     D   012   00:00:00:00 00:00:00:12 10:00:09:13 10:00:10:00 \n"));
}

TEST_F(CmxWrite, BothFades) {
  Edit edit = support::standard_edit();
  edit.fade_in = 46080;
  edit.fade_out = 23040;
  add_entry(root_, edit);
  EXPECT_TRUE(support::same_lines(
      written(),
      "001  BLK \tA     C         00:00:00:00 00:00:00:00 10:00:00:00 10:00:00:00 \n"
      "001  TAPE01 \tA     D   024   01:00:00:00 01:00:09:13 10:00:00:00 10:00:09:13 \n"
      "002  TAPE01 \tA     C         01:00:09:13 01:00:09:13 10:00:09:13 10:00:09:13 \n"
      "002  BLK \tA     D   012   00:00:00:00 00:00:00:12 10:00:09:13 10:00:10:00 \n"));
}

TEST_F(CmxWrite, BothFadesComeBackAsOneEdit) {
  Edit edit = support::standard_edit();
  edit.fade_in = 46080;
  edit.fade_out = 23040;
  add_entry(root_, edit);
  written();
  CCMXEdl edl(4, nullptr, 0);
  support::set_rates(edl);
  ASSERT_EQ(edl.import_edl(folder_.wide_file("b.edl")), 100);
  const auto entries = support::entries_of(edl);
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0]->source_in, 172800000);
  EXPECT_EQ(entries[0]->source_out, 173280000);
  EXPECT_EQ(entries[0]->dest_in, 1728000000);
  EXPECT_EQ(entries[0]->dest_out, 1728480000);
  EXPECT_EQ(entries[0]->fade_in_length, 46080);
  EXPECT_EQ(entries[0]->fade_out_length, 23040);
}

TEST_F(CmxWrite, CutsOnly) {
  cuts_only();
  Edit edit = support::standard_edit();
  edit.fade_in = 46080;
  const CGenericEdlEntry& entry = add_entry(root_, edit);
  EXPECT_EQ(written(),
            "001  TAPE01 \tA     C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n");
  EXPECT_EQ(entry.transition_type, 50U);
}

TEST_F(CmxWrite, ChannelColumn) {
  const std::string rest = "C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n";
  EXPECT_EQ(column_of({0, 1}), "AA    " + rest);
  EXPECT_EQ(column_of({1}), "A2    " + rest);
  EXPECT_EQ(column_of({1, 2}), "A2    " + rest);
  EXPECT_EQ(column_of({2}), "NONE  " + rest + "AUD\t3\t\n");
  EXPECT_EQ(column_of({3}), "NONE  " + rest + "AUD\t4\t\n");
  EXPECT_EQ(column_of({2, 3}), "NONE  " + rest + "AUD\t3\t4\t\n");
}

TEST_F(CmxWrite, NoteOfTheSecondStreamAlone) {
  Edit edit = support::standard_edit();
  edit.streams = {1, 2};
  const auto entry = support::make_entry(root_, edit);
  CCMXEdl edl(4, &root_, 0);
  CTextFile file(250);
  ASSERT_TRUE(file.Open(folder_.wide_file("note"), CFile::modeCreate | CFile::modeWrite));
  EXPECT_EQ(edl.write_audio_comment(file, entry.get()), 101);
  file.flush_line();
  file.Close();
  EXPECT_EQ(support::read_file(folder_.file("note")), "\nAUD\t3\t\n");
}

TEST_F(CmxWrite, EventsBehindTheLastChannelAreRefused) {
  for (const std::vector<int>& streams : std::vector<std::vector<int>>{{2, 3}, {2}, {1, 2}}) {
    Edit edit = support::standard_edit();
    edit.streams = streams;
    add_entry(root_, edit);
  }
  Edit good = support::standard_edit();
  good.event_number = 9;
  add_entry(root_, good);
  // All start together, so the edit on stream 0 comes first and is number 1; the
  // others follow from stream 1 on, two to a number.
  const std::string text = written(2);
  EXPECT_EQ(text,
            "001  TAPE01 \tA     C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n");
  EXPECT_EQ(host_.boxes.report_bodies(),
            (Texts{"[22253] [22231] 2", "[22253] [22231] 2", "[22253] [22231] 3"}));
}

TEST_F(CmxWrite, StreamThatGoesNowhereIsRefused) {
  EXPECT_EQ(column_of({65535}), "");
  EXPECT_EQ(host_.boxes.shown.size(), 1U);
}

TEST_F(CmxWrite, ReelColumn) {
  const auto reel_column = [this](const std::u16string& reel) {
    Edit edit = support::standard_edit();
    edit.reel = reel;
    add_entry(root_, edit);
    const std::string line = written();
    delete_all(*root_.get_generic_entry_list());
    return line.substr(5, line.find('\t') - 4);
  };
  EXPECT_EQ(reel_column(u" A"), "N/A\t");
  EXPECT_EQ(reel_column(u""), "N/A\t");
  EXPECT_EQ(reel_column(u"ABCDEFGHIJKL"), "ABCDEFGHIJ \t");
}

TEST_F(CmxWrite, EventNumberHasThreeDigitsOrMore) {
  cuts_only();
  for (const std::uint16_t number : std::vector<std::uint16_t>{7, 1234}) {
    Edit edit = support::standard_edit();
    edit.event_number = number;
    add_entry(root_, edit);
  }
  const std::string text = written();
  EXPECT_EQ(text.substr(0, 5), "007  ");
  EXPECT_EQ(text.substr(text.find('\n') + 1, 6), "1234  ");
}

TEST_F(CmxWrite, TransitionColumn) {
  const auto column = [this](std::int64_t fade_in, std::int64_t fade_out) {
    Edit edit = support::standard_edit();
    edit.fade_in = fade_in;
    edit.fade_out = fade_out;
    edit.transition = 51;
    const auto entry = support::make_entry(root_, edit);
    CCMXEdl edl(4, &root_, 0);
    CTextFile file(250);
    EXPECT_TRUE(file.Open(folder_.wide_file("t"), CFile::modeCreate | CFile::modeWrite));
    EXPECT_EQ(edl.write_transition(file, entry.get()), 101);
    file.flush_line();
    file.Close();
    return support::read_file(folder_.file("t"));
  };
  EXPECT_EQ(column(0, 23040), "D   012   ");
  EXPECT_EQ(column(46080, 23040), "D   024   ");
  EXPECT_EQ(column(0, 0), "C         ");
  EXPECT_EQ(column(1920 * 1500, 0), "D   1500   ");
}

TEST_F(CmxWrite, NegativeTimesStandWhole) {
  Edit edit = support::standard_edit();
  edit.source_in = -48000;
  add_entry(root_, edit);
  EXPECT_NE(written().find(" -00:00:01:00 01:00:10:00 "), std::string::npos);
}

TEST_F(CmxWrite, FirstChannelMayStandForTheStream) {
  EDL_CONVERSION_SETTINGS settings;
  settings.cmx_use_first_channel = 1;
  root_.set_edl_conversion_settings(&settings);
  Edit edit = support::standard_edit();
  edit.streams = {3};
  edit.first_channel = 1;
  const CGenericEdlEntry& entry = add_entry(root_, edit);
  CCMXEdl edl(4, &root_, 0);
  EXPECT_EQ(edl.get_first_stream(&entry), 1);
  EXPECT_EQ(written().substr(13, 6), "A2    ");
  settings.cmx_use_first_channel = 0;
  root_.set_edl_conversion_settings(&settings);
  EXPECT_EQ(edl.get_first_stream(&entry), 3);
}

TEST_F(CmxWrite, RefusedWritesAreKnownAtTheEnd) {
  add_entry(root_, support::standard_edit());
  CCMXEdl edl(4, &root_, 0);
  EXPECT_EQ(edl.export_edl(u"/dev/full", 0), 101);
  EXPECT_NE(edl.output_incomplete(), 0);
}

}  // namespace
