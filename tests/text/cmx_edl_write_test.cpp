// Writing CMX 340 and CMX 3600: exact lines.
#include <gtest/gtest.h>

#include "core/generic_reel.h"
#include "host/rates.h"
#include "tests/support/golden.h"
#include "tests/text/text_fixtures.h"
#include "text/cmx_edl.h"

namespace {

using support::add_entry;
using support::Edit;
using support::entries_of;
using support::standard_edit;
using Texts = std::vector<std::string>;

class CmxWriteTest : public support::TextTest {
 protected:
  CmxWriteTest() { support::set_rates(root); }
  Edit faded(std::int64_t fade_in, std::int64_t fade_out) {
    Edit edit = standard_edit();
    edit.fade_in = fade_in;
    edit.fade_out = fade_out;
    return edit;
  }
  Edit on_streams(std::vector<int> streams) {
    Edit edit = standard_edit();
    edit.streams = std::move(streams);
    return edit;
  }
  // The lines that these edits give, behind the title.
  std::string lines(std::initializer_list<Edit> edits, std::uint8_t channels = 4) {
    root.set_edl_conversion_settings(&settings);
    delete_all(*root.get_generic_entry_list());
    for (const Edit& edit : edits)
      add_entry(root, edit);
    CCMXEdl edl(channels, &root, 0);
    return exported_events(edl);
  }
  // The channel column of one edit, and what stands behind its times.
  std::string column(const std::string& line) {
    const std::size_t tab = line.find('\t');
    return tab == std::string::npos ? "" : line.substr(tab + 1, 6);
  }

  EDL_CONVERSION_SETTINGS settings;
  CGenericEdl root;
};

const std::string reel = "TAPE01 \t";
const std::string whole = "01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n";

TEST_F(CmxWriteTest, ACut) {
  add_entry(root, standard_edit());
  CCMXEdl edl(4, &root, 0);
  EXPECT_TRUE(support::same_bytes(exported(edl),
                                  "TITLE: b          FORMAT: CMX 3600 4-Ch \n"
                                  "001  TAPE01 \tA     C         "
                                  "01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n"));
  CCMXEdl two(2, &root, 0);
  EXPECT_EQ(exported(two).substr(0, 41), "TITLE: b          FORMAT: CMX 340 2-Ch \n0");
}

TEST_F(CmxWriteTest, AFadeIn) {
  EXPECT_EQ(lines({faded(46080, 0)}),
            "001  BLK \tA     C         00:00:00:00 00:00:00:00 10:00:00:00 10:00:00:00 \n"
            "001  TAPE01 \tA     D   024   " +
                whole);
}

TEST_F(CmxWriteTest, AFadeOut) {
  EXPECT_EQ(lines({faded(0, 23040)}),
            "001  TAPE01 \tA     C         01:00:00:00 01:00:09:13 10:00:00:00 10:00:09:13 \n"
            "002  TAPE01 \tA     C         01:00:09:13 01:00:09:13 10:00:09:13 10:00:09:13 \n"
            "002  BLK \tA     D   012   00:00:00:00 00:00:00:12 10:00:09:13 10:00:10:00 \n");
}

TEST_F(CmxWriteTest, BothFades) {
  EXPECT_EQ(lines({faded(46080, 23040)}),
            "001  BLK \tA     C         00:00:00:00 00:00:00:00 10:00:00:00 10:00:00:00 \n"
            "001  TAPE01 \tA     D   024   01:00:00:00 01:00:09:13 10:00:00:00 10:00:09:13 \n"
            "002  TAPE01 \tA     C         01:00:09:13 01:00:09:13 10:00:09:13 10:00:09:13 \n"
            "002  BLK \tA     D   012   00:00:00:00 00:00:00:12 10:00:09:13 10:00:10:00 \n");
}

TEST_F(CmxWriteTest, BothFadesComeBack) {
  add_entry(root, faded(46080, 23040));
  CCMXEdl out(4, &root, 0);
  static_cast<void>(exported(out));
  CCMXEdl in(4, nullptr, 0);
  support::set_rates(in);
  ASSERT_EQ(in.import_edl(folder.wide_file("b.edl")), 100);
  ASSERT_EQ(entries_of(in).size(), 1U);
  const CGenericEdlEntry& entry = *entries_of(in)[0];
  EXPECT_EQ(entry.source_in, 172800000);
  EXPECT_EQ(entry.source_out, 173280000);
  EXPECT_EQ(entry.dest_in, 1728000000);
  EXPECT_EQ(entry.dest_out, 1728480000);
  EXPECT_EQ(entry.fade_in_length, 46080);
  EXPECT_EQ(entry.fade_out_length, 23040);
  EXPECT_EQ(support::reel_of(entry), u"TAPE01");
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(CmxWriteTest, CutsOnly) {
  settings.cmx_cuts_only = 1;
  Edit edit = faded(46080, 23040);
  edit.event_number = 12;
  EXPECT_EQ(lines({edit}), "012  TAPE01 \tA     C         " + whole);
  EXPECT_EQ(entries_of(root).size(), 1U);
  EXPECT_EQ(entries_of(root)[0]->transition_type, 50U);
  EXPECT_EQ(entries_of(root)[0]->event_number, 12) << "nothing is numbered anew";
  EXPECT_EQ(entries_of(root)[0]->fade_in_length, 46080);
}

TEST_F(CmxWriteTest, ChannelColumns) {
  EXPECT_EQ(column(lines({on_streams({0})})), "A     ");
  EXPECT_EQ(column(lines({on_streams({0, 1})})), "AA    ");
  EXPECT_EQ(column(lines({on_streams({0, 1, 2})})), "AA    ");
  EXPECT_EQ(column(lines({on_streams({1})})), "A2    ");
  const std::string pair = lines({on_streams({1, 2})});
  EXPECT_EQ(pair, "001  TAPE01 \tA2    C         " + whole) << "no note of the second";
}

TEST_F(CmxWriteTest, NotesOfChannelsThreeAndFour) {
  const std::string head = "001  TAPE01 \tNONE  C         ";
  const std::string times = whole.substr(0, whole.size() - 1);
  EXPECT_EQ(lines({on_streams({2})}), head + times + "\nAUD\t3\t\n");
  EXPECT_EQ(lines({on_streams({3})}), head + times + "\nAUD\t4\t\n");
  EXPECT_EQ(lines({on_streams({2, 3})}), head + times + "\nAUD\t3\t4\t\n");
}

TEST_F(CmxWriteTest, TheFormsOfTheNote) {
  CCMXEdl edl(4, &root, 0);
  const auto note = [&](std::vector<int> streams) {
    CTextFile file(line_file_size);
    EXPECT_TRUE(file.Open(folder.wide_file("note"), CFile::modeCreate | CFile::modeWrite));
    EXPECT_EQ(edl.write_audio_comment(
                  file, support::make_entry(root, on_streams(std::move(streams))).get()),
              101);
    static_cast<void>(file.flush_line());
    file.Close();
    return support::read_file(folder.file("note"));
  };
  EXPECT_EQ(note({1, 2}), "\nAUD\t3\t\n");
  EXPECT_EQ(note({0, 1}), "\nAUD\t1\t2\t\n");
  EXPECT_EQ(note({7}), "\nAUD\t8\t\n");
  EXPECT_EQ(note({}), "\nAUD\t65536\t65536\t\n");
  EXPECT_EQ(note({5, 6, 7}), "\nAUD\t6\t7\t\n");
}

TEST_F(CmxWriteTest, TooManyChannelsAreRefused) {
  const std::string kept = "002  TAPE01 \tA     C         " + whole;
  for (const auto& streams : {std::vector<int>{2, 3}, {2}, {1, 2}, {0, 1, 2}}) {
    host.boxes.shown.clear();
    Edit refused = on_streams(streams);
    Edit good = standard_edit();
    good.event_number = 2;
    good.dest_in += 1;
    EXPECT_EQ(lines({refused, good}, 2), kept);
    EXPECT_EQ(host.boxes.report_bodies(), (Texts{"[22253] [22231] 1"}));
  }
  host.boxes.shown.clear();
  EXPECT_EQ(lines({on_streams({3, 4}), on_streams({4}), on_streams({65535}), on_streams({})}), "");
  EXPECT_EQ(host.boxes.report_bodies().size(), 4U);
}

TEST_F(CmxWriteTest, TheFirstChannelMayStandForTheStream) {
  settings.cmx_use_first_channel = 1;
  Edit edit = on_streams({9});
  edit.first_channel = 1;
  EXPECT_EQ(column(lines({edit})), "A2    ");
  edit.first_channel = 2;
  // The column goes by the channel, the note by the stream.
  EXPECT_EQ(lines({edit}),
            "001  TAPE01 \tNONE  C         " + whole.substr(0, whole.size() - 1) + "\nAUD\t10\t\n");
}

TEST_F(CmxWriteTest, ReelColumns) {
  const auto reel_column = [this](const std::u16string& name) {
    Edit edit = standard_edit();
    edit.reel = name;
    const std::string line = lines({edit});
    return line.substr(5, line.find('\t') - 4);
  };
  EXPECT_EQ(reel_column(u" A"), "N/A\t");
  EXPECT_EQ(reel_column(u""), "N/A\t");
  EXPECT_EQ(reel_column(u"\tA"), "N/A\t");
  EXPECT_EQ(reel_column(u"ABCDEFGHIJKL"), "ABCDEFGHIJ \t");
  EXPECT_EQ(reel_column(u"ABCDEFGHIJ"), "ABCDEFGHIJ \t");
  EXPECT_EQ(reel_column(u"A B"), "A B \t");
  EXPECT_EQ(reel_column(u"\u00C9T\u4E00"), "\xC9T? \t");
}

TEST_F(CmxWriteTest, EventNumbers) {
  CCMXEdl edl(4, &root, 0);
  const auto number = [&](std::uint16_t event) {
    Edit edit = standard_edit();
    edit.event_number = event;
    CTextFile file(line_file_size);
    EXPECT_TRUE(file.Open(folder.wide_file("line"), CFile::modeCreate | CFile::modeWrite));
    EXPECT_EQ(edl.write_event(file, support::make_entry(root, edit).get()), 101);
    file.Close();
    const std::string line = support::read_file(folder.file("line"));
    return line.substr(0, line.find('T'));
  };
  EXPECT_EQ(number(7), "007  ");
  EXPECT_EQ(number(1234), "1234  ");
  EXPECT_EQ(number(65535), "65535  ");
  EXPECT_EQ(number(0), "000  ");
}

TEST_F(CmxWriteTest, TransitionColumns) {
  CCMXEdl edl(4, &root, 0);
  const auto transition = [&](std::uint32_t type, std::int64_t fade_in, std::int64_t fade_out) {
    Edit edit = faded(fade_in, fade_out);
    edit.transition = type;
    CTextFile file(line_file_size);
    EXPECT_TRUE(file.Open(folder.wide_file("line"), CFile::modeCreate | CFile::modeWrite));
    EXPECT_EQ(edl.write_transition(file, support::make_entry(root, edit).get()), 101);
    static_cast<void>(file.flush_line());
    file.Close();
    return support::read_file(folder.file("line"));
  };
  EXPECT_EQ(transition(50, 46080, 46080), "C         ");
  EXPECT_EQ(transition(51, 46080, 23040), "D   024   ");
  EXPECT_EQ(transition(51, 0, 23040), "D   012   ");
  EXPECT_EQ(transition(51, 1919, 23040), "D   012   ");
  EXPECT_EQ(transition(51, 0, 0), "C         ");
  EXPECT_EQ(transition(51, 1919, 1919), "C         ");
  EXPECT_EQ(transition(0, 1920, 0), "D   001   ");
  EXPECT_EQ(transition(51, 1920 * 1234, 0), "D   1234   ");
}

TEST_F(CmxWriteTest, NegativeTimesKeepTheirSign) {
  Edit edit = standard_edit();
  edit.source_in = -48000;
  edit.source_out = 0;
  EXPECT_EQ(lines({edit}),
            "001  TAPE01 \tA     C         -00:00:01:00 00:00:00:00 10:00:00:00 10:00:10:00 \n");
}

TEST_F(CmxWriteTest, EntriesStayUsableBehindTheExport) {
  add_entry(root, faded(46080, 23040));
  {
    auto edl = std::make_unique<CCMXEdl>(std::uint8_t{4}, &root, 0);
    EXPECT_EQ(edl->export_edl(folder.wide_file("b.edl"), 0), 101);
  }
  const auto entries = entries_of(root);
  ASSERT_EQ(entries.size(), 4U) << "the list of the host was changed";
  for (const CGenericEdlEntry* entry : entries) {
    ENTRY_DETAILS details;
    entry->get_entry_details(&details);
    EXPECT_EQ(details.owner, &root);
    delete[] details.streams;
  }
  EXPECT_EQ(support::reel_of(*entries[3]), u"BLK");
}

TEST_F(CmxWriteTest, AnExportThatCannotBeMade) {
  add_entry(root, standard_edit());
  CCMXEdl edl(4, &root, 0);
  EXPECT_EQ(edl.export_edl(folder.wide_file("no/b.edl"), 0), 0);
}

TEST_F(CmxWriteTest, ALongTitleHarmsNoEvent) {
  add_entry(root, standard_edit());
  CCMXEdl edl(4, &root, 0);
  EXPECT_EQ(exported(edl, std::string(240, 'n') + ".edl"),
            "001  TAPE01 \tA     C         " + whole);
}

TEST_F(CmxWriteTest, EveryRate) {
  // 3603.6 seconds: an hour of non-drop time code. The fraction is 14.4 frames of
  // 24, 15 of 25 and 18 of 30.
  for (const auto& [rate, text] : {std::pair{frame_rate_24, "01:00:03:14"},
                                   {frame_rate_25, "01:00:03:15"},
                                   {frame_rate_2997_non_drop, "01:00:00:00"},
                                   {frame_rate_2997_drop, "01:00:03:18"},
                                   {frame_rate_30, "01:00:03:18"}}) {
    CGenericEdl list;
    support::set_rates(list, 2, rate);
    Edit edit = standard_edit();
    edit.dest_in = 172972800;
    add_entry(list, edit);
    CCMXEdl edl(4, &list, 0);
    const std::string line = exported_events(edl);
    // Destination in stands in front of destination out, a blank and the line end.
    EXPECT_EQ(line.substr(line.size() - 25, 11), text) << int{rate};
  }
}

// A list with every kind of line, kept as files.
TEST_F(CmxWriteTest, AListOfAllKinds) {
  constexpr std::int64_t second = support::second;
  Edit edit = standard_edit();
  int number = 0;
  const auto next = [&](std::vector<int> streams, const std::u16string& name, std::int64_t fade_in,
                        std::int64_t fade_out) {
    edit.event_number = static_cast<std::uint16_t>(++number);
    edit.streams = std::move(streams);
    edit.reel = name;
    edit.fade_in = fade_in;
    edit.fade_out = fade_out;
    add_entry(root, edit);
    edit.dest_in += 10 * second;
    edit.dest_out += 10 * second;
  };
  next({0}, u"TAPE01", 0, 0);
  next({0, 1}, u"TAPE01", 46080, 0);
  next({1}, u"ROLL 2", 0, 23040);
  next({2}, u"", 19200, 19200);
  next({3}, u"ABCDEFGHIJKL", 0, 0);
  next({2, 3}, u"M1", 46080, 0);
  next({0}, u"M1", 1919, 0);
  CCMXEdl edl(4, &root, 0);
  EXPECT_TRUE(support::matches_golden("cmx/all_kinds.edl", exported(edl, "all_kinds.edl")));
}

}  // namespace
