#include "text/lightworks_edl.h"

#include <random>

#include "core/generic_edl_video_entry.h"
#include "core/generic_reel.h"
#include "tests/text/format_fixtures.h"
#include "tests/text/lightworks_table.h"

namespace {

using support::entries_of;
using support::lightworks_head;
using support::standard_edit;
using support::Streams;
using support::streams_of;
using support::TableLine;
using support::Texts;
using support::utf8;

class Lightworks : public support::FormatTest {
 protected:
  result_code import(const std::string& table) { return read(edl_, lightworks_head + table); }
  const CGenericEdlEntry& only() {
    EXPECT_EQ(entries_of(edl_).size(), 1U);
    return *entries_of(edl_).at(0);
  }
  const CGenericEdlVideoEntry& video(int place = 0) {
    POSITION at = edl_.get_video_list()->GetHeadPosition();
    for (int i = 0; i < place; ++i)
      edl_.get_video_list()->GetNext(at);
    return *static_cast<const CGenericEdlVideoEntry*>(edl_.get_video_list()->GetAt(at));
  }

  CLightworksEdl edl_{nullptr, 0};
};

TEST_F(Lightworks, HeadTextsAreKeptWithTheirClosingQuotes) {
  EXPECT_EQ(import(TableLine().text()), 100);
  EXPECT_EQ(edl_.m_variant, u"us_film\"");
  EXPECT_EQ(edl_.m_edit_cookie, u"INVALID\"");
  EXPECT_EQ(edl_.m_project_name, u"INVALID\"");
  EXPECT_EQ(edl_.m_edit_name, u"marlo\"");
  EXPECT_EQ(edl_.m_modification_time, u"896478818\"");
  EXPECT_EQ(edl_.m_edit_date, u"14:53, 29 May 1998\"");
  EXPECT_EQ(edl_.m_edit_label_std, u"P\"");
}

TEST_F(Lightworks, HeadsOfOtherForms) {
  support::set_rates(edl_);
  const std::string whole = lightworks_head + TableLine().text();
  // Each of the ten lines that are looked at, changed in its second character.
  std::size_t line = 0;
  for (int i = 0; i < 10; ++i) {
    std::string changed = whole;
    changed[line + 1] = '#';
    EXPECT_EQ(read(edl_, changed), 4) << i;
    line = whole.find('\n', line) + 1;
  }
  std::string other = whole;
  other.replace(other.find("Rev 1"), 5, "Rev 2");
  EXPECT_EQ(read(edl_, other), 4);
  other = whole;
  other.insert(other.find("Rev 4") + 6, "x");
  EXPECT_EQ(read(edl_, other), 4);
  EXPECT_TRUE(entries_of(edl_).empty());
}

TEST_F(Lightworks, HeadMustEndInATable) {
  for (std::size_t end = 0; end < lightworks_head.size();) {
    EXPECT_EQ(read(edl_, lightworks_head.substr(0, end)), 4) << end;
    end = lightworks_head.find('\n', end) + 1;
  }
  EXPECT_EQ(read(edl_, lightworks_head), 4);
  EXPECT_EQ(read(edl_, lightworks_head + "\n \n"), 4);
  EXPECT_EQ(edl_.import_edl(folder_.wide_file("none")), 0);
  EXPECT_EQ(edl_.import_edl(folder_.wide_file("")), 0);
}

TEST_F(Lightworks, PlainLine) {
  TableLine line;
  line.edit_in = "36000.000000";
  line.edit_out = "36010.000000";
  line.reel = "TAPE01";
  line.source_channel = "A03";
  line.source_in = "03600.000000";
  line.source_out = "03610.000000";
  line.level_out = "00.500";
  line.index = "IX";
  line.name = "TAKE 1";
  EXPECT_EQ(import(line.text()), 100);
  EXPECT_TRUE(support::has_times(only(), standard_edit()));
  EXPECT_EQ(only().original_dest_out, 1728480000);
  EXPECT_EQ(only().original_source_out, 173280000);
  EXPECT_EQ(utf8(support::reel_of(only())), "TAPE01");
  EXPECT_EQ(only().reel->no_streams, 1);
  EXPECT_EQ(streams_of(only()), Streams{0});
  EXPECT_EQ(only().first_channel, 2);
  EXPECT_EQ(only().no_channels, 1);
  EXPECT_EQ(only().channel_offset, 0);
  EXPECT_EQ(only().level_in, 1.0F);
  EXPECT_EQ(only().level_out, 0.5F);
  EXPECT_EQ(only().gain_left, 1.0F);
  EXPECT_EQ(only().transition_type, 11U);
  EXPECT_EQ(utf8(only().source_reel_name), "TAKE 1" + std::string(26, ' '));
  EXPECT_EQ(utf8(only().src_index), "");
  EXPECT_EQ(only().event_number, 65535);
  EXPECT_TRUE(reports().empty());
}

TEST_F(Lightworks, EmptyReelLeavesNone) {
  TableLine line;
  line.reel = "";
  EXPECT_EQ(import(line.text()), 100);
  EXPECT_EQ(only().reel, nullptr);
  EXPECT_EQ(only().reel_no_streams, 1);
  EXPECT_TRUE(edl_.get_reel_list()->IsEmpty());
}

TEST_F(Lightworks, ChannelsOfTwoDigits) {
  const auto stream = [this](const std::string& channel) {
    CLightworksEdl edl(nullptr, 0);
    TableLine line;
    line.edit_channel = channel;
    EXPECT_EQ(read(edl, lightworks_head + line.text()), 100);
    return entries_of(edl).at(0)->get_stream(0);
  };
  EXPECT_EQ(stream("A12"), 11);
  EXPECT_EQ(stream("A01"), 0);
  EXPECT_EQ(stream("A1"), 0);
  EXPECT_EQ(stream("A 2"), 1);
  EXPECT_EQ(stream("A123"), 11);
  EXPECT_EQ(stream("A"), 65535);
  EXPECT_EQ(stream("Axx"), 65535);
}

TEST_F(Lightworks, SourceBeforeZeroMovesTheEdit) {
  TableLine line;
  line.edit_in = "00010.000000";
  line.edit_out = "00012.000000";
  line.source_in = "000-1.000000";
  // Such a column reads as no number.
  EXPECT_EQ(import(line.text()), 100);
  EXPECT_EQ(only().source_in, 0);
  EXPECT_TRUE(reports().empty());

  CLightworksEdl moved(nullptr, 0);
  line.source_in = "-1.000000";
  EXPECT_EQ(read(moved, lightworks_head + line.text()), 100);
  // -48000 + 0.5, cut towards zero, is taken from the destination.
  EXPECT_EQ(entries_of(moved).at(0)->dest_in, 527999);
  EXPECT_EQ(entries_of(moved).at(0)->source_in, 0);
  EXPECT_EQ(reports(), Texts{"[22254]"});
  EXPECT_EQ(host_.boxes.shown.at(0).style, 0U);
  EXPECT_EQ(host_.boxes.shown.at(0).line, 14);
}

TEST_F(Lightworks, SegmentCodes) {
  const auto type = [this](const std::string& code) {
    CLightworksEdl edl(nullptr, 0);
    TableLine line;
    line.code = code;
    EXPECT_EQ(read(edl, lightworks_head + line.text()), 100);
    return entries_of(edl).at(0)->transition_type;
  };
  EXPECT_EQ(type("CT"), 11U);
  EXPECT_EQ(type("DI"), 12U);
  EXPECT_EQ(type("DO"), 13U);
  EXPECT_EQ(type("CI"), 14U);
  EXPECT_EQ(type("CO"), 15U);
  EXPECT_EQ(type("CB"), 16U);
  EXPECT_EQ(type("CX"), 11U);
  EXPECT_EQ(type("XX"), 17U);
  EXPECT_EQ(type("D"), 17U);
  EXPECT_EQ(type(""), 17U);
}

TEST_F(Lightworks, StandardGivesTheFrameRate) {
  const auto rate = [this](const std::string& standard) {
    CLightworksEdl edl(nullptr, 0);
    support::set_rates(edl, 2, 255);
    TableLine line;
    line.standard = standard;
    EXPECT_EQ(read(edl, lightworks_head + line.text()), 100);
    return int{edl.frame_rate()};
  };
  EXPECT_EQ(rate("NN"), 2);
  EXPECT_EQ(rate("ND"), 3);
  EXPECT_EQ(rate("nd"), 3);
  EXPECT_EQ(rate("FR24.0"), 0);
  EXPECT_EQ(rate("PR25.0"), 1);
  EXPECT_EQ(rate("FR30.0"), 4);
  EXPECT_EQ(rate("X"), 255);
  EXPECT_EQ(rate("PR60"), 255);
  EXPECT_EQ(rate(""), 255);
}

TEST_F(Lightworks, DefaultFadeIsTakenAsSixteenBits) {
  const auto fades = [this](std::int64_t length) {
    CLightworksEdl edl(nullptr, 0);
    EDL_CONVERSION_SETTINGS settings;
    settings.default_fade_length = length;
    edl.set_edl_conversion_settings(&settings);
    EXPECT_EQ(read(edl, lightworks_head + TableLine().text()), 100);
    EXPECT_EQ(entries_of(edl).at(0)->fade_in_length, entries_of(edl).at(0)->fade_out_length);
    return entries_of(edl).at(0)->fade_in_length;
  };
  EXPECT_EQ(fades(240), 240);
  EXPECT_EQ(fades(32767), 24000);  // half the second that the edit lasts
  EXPECT_EQ(fades(40000), -25536);
  EXPECT_EQ(fades(65536), 0);
}

TEST_F(Lightworks, LengthsAreMadeToAgree) {
  TableLine line;
  line.edit_out = "00010.000000";
  line.source_out = "00009.000000";
  EXPECT_EQ(import(line.text()), 100);
  EXPECT_TRUE(support::has_times(only(), {0, 432000, 0, 432000}));
  EXPECT_EQ(only().original_dest_out, 480000);
  EXPECT_TRUE(reports().empty());
  // Ten seconds at 5 s play nine of a source that begins at 2 s.
  CLightworksEdl later(nullptr, 0);
  line.edit_in = "00005.000000";
  line.edit_out = "00015.000000";
  line.source_in = "00002.000000";
  line.source_out = "00011.000000";
  EXPECT_EQ(read(later, lightworks_head + line.text()), 100);
  EXPECT_TRUE(support::has_times(*entries_of(later).at(0), {240000, 672000, 96000, 528000}));
}

TEST_F(Lightworks, BlackLines) {
  TableLine black;
  black.reel = "__BLACK";
  EXPECT_EQ(import(black.text() + black.text() + TableLine().text()), 100);
  EXPECT_EQ(utf8(support::reel_of(only())), "R");
  // Only where the columns in front of it have their widths.
  CLightworksEdl shifted(nullptr, 0);
  black.edit_in = "0.000000";
  EXPECT_EQ(read(shifted, lightworks_head + black.text()), 100);
  EXPECT_EQ(entries_of(shifted).size(), 1U);
}

TEST_F(Lightworks, BlackLineOfTheWriterIsAVideoEntry) {
  TableLine black{"V01", "36000.000000", "36010.000000", "__BLACK", "V01"};
  black.source_out = "00010.000000";
  black.level_in = "00.000";
  black.index = "EZ0Z0001";
  black.name = "NAME";
  EXPECT_EQ(import(black.text()), 100);
  EXPECT_TRUE(entries_of(edl_).empty());
  ASSERT_EQ(edl_.get_video_list()->GetCount(), 1);
  EXPECT_EQ(video().dest_in, 1728000000);
  EXPECT_EQ(video().dest_out, 1728480000);
  EXPECT_EQ(video().source_in, 0);
  EXPECT_EQ(video().source_out, 480000);
  EXPECT_EQ(video().transition_type, 11U);
  EXPECT_EQ(video().gain, 1.0F);
  EXPECT_EQ(video().detail_words[0], 0U);
  wide_char reel[13];
  video().get_reel_name(reel, 13);
  EXPECT_EQ(utf8(reel), "__BLACK");
  EXPECT_EQ(utf8(video().source_reel_name), "NAME" + std::string(28, ' '));
  EXPECT_TRUE(reports().empty());
}

TEST_F(Lightworks, VideoLines) {
  TableLine line{"V01"};
  line.standard = "ND";
  line.level_out = "00.500";
  TableLine second{"V02"};
  EXPECT_EQ(import(line.text() + second.text() + "x\n"), 100);
  ASSERT_EQ(edl_.get_video_list()->GetCount(), 3);
  EXPECT_EQ(video(0).gain, 0.5F);
  EXPECT_EQ(video(0).detail_words[0], 1U);
  // A second channel of picture is not read.
  EXPECT_EQ(video(1).transition_type, 0U);
  EXPECT_EQ(video(1).dest_out, 0);
  // Whatever else stands there reads as a picture line without columns.
  EXPECT_EQ(video(2).transition_type, 11U);
  EXPECT_EQ(video(2).gain, 0.0F);
  // The shorter length counts here too: four seconds of source in five.
  CLightworksEdl lengths(nullptr, 0);
  TableLine longer{"V01"};
  longer.edit_in = "00002.000000";
  longer.edit_out = "00007.000000";
  longer.source_in = "00010.000000";
  longer.source_out = "00014.000000";
  EXPECT_EQ(read(lengths, lightworks_head + longer.text()), 100);
  const auto& agreed =
      *static_cast<const CGenericEdlVideoEntry*>(lengths.get_video_list()->GetHead());
  EXPECT_EQ(agreed.dest_in, 96000);
  EXPECT_EQ(agreed.dest_out, 288000);
  EXPECT_EQ(agreed.source_in, 480000);
  EXPECT_EQ(agreed.source_out, 672000);
  EXPECT_EQ(reports(), (Texts{"[22255]", "[22255]"}));
}

TEST_F(Lightworks, ColumnsThatDoNotClose) {
  const std::string start = "\"A01\",\"00000.000000\",\"00001.000000\",\"";
  EXPECT_EQ(import(start + std::string(130, 'R') + "\",\"A02\"\n" + start + std::string(131, 'R') +
                   "\",\"A02\"\n" + start + "\n\"A"),
            100);
  ASSERT_EQ(entries_of(edl_).size(), 4U);
  EXPECT_EQ(utf8(support::reel_of(*entries_of(edl_)[0])), "RRRRRRRRRRRR");
  EXPECT_EQ(entries_of(edl_)[0]->first_channel, 1);
  EXPECT_EQ(entries_of(edl_)[1]->reel, nullptr);
  // The columns behind an open one are empty.
  EXPECT_EQ(entries_of(edl_)[1]->first_channel, 65535);
  EXPECT_EQ(entries_of(edl_)[1]->level_in, 0.0F);
  EXPECT_EQ(entries_of(edl_)[2]->get_stream(0), 0);
  EXPECT_EQ(entries_of(edl_)[3]->get_stream(0), 65535);
}

TEST_F(Lightworks, NumbersThatAreNone) {
  const auto dest_in = [this](const std::string& time) {
    CLightworksEdl edl(nullptr, 0);
    TableLine line;
    line.edit_in = time;
    EXPECT_EQ(read(edl, lightworks_head + line.text()), 100);
    return entries_of(edl).at(0)->dest_in;
  };
  for (const char* time : {"", "x", "nan", "inf", "0x10", "1e300", "-1e300", "99999999999999999"}) {
    EXPECT_EQ(dest_in(time), 0) << time;
  }
  EXPECT_EQ(dest_in("1e1"), 480000);
  TableLine line;
  line.level_in = "1e99";
  line.level_out = "0.2500001";
  EXPECT_EQ(import(line.text()), 100);
  EXPECT_EQ(only().level_in, 0.0F);
  EXPECT_EQ(only().level_out, 0.25F);
}

TEST_F(Lightworks, LongLinesAreReadToTheirEnd) {
  TableLine line;
  line.name = std::string(60, 'N');
  std::string text = line.text();
  // 249 characters of a line count; what follows is no line of its own.
  text.insert(text.size() - 1, std::string(500, 'x'));
  EXPECT_EQ(import(text + TableLine().text()), 100);
  EXPECT_EQ(entries_of(edl_).size(), 2U);
  EXPECT_EQ(edl_.get_video_list()->GetCount(), 0);
}

TEST_F(Lightworks, FooterAndWords) {
  CTextFile file(250);
  EXPECT_EQ(edl_.read_footer(file), 100);
  EXPECT_EQ(edl_.m_words[0], 0);
  EXPECT_EQ(edl_.m_words[1], 0);
}

// Every sample of the table's range keeps its place through a write and a read.
TEST_F(Lightworks, TimesSurviveAtAllSampleRates) {
  std::mt19937_64 random(3);
  for (std::uint8_t rate = 0; rate < 15; ++rate) {
    CGenericEdl root;
    support::set_rates(root, rate);
    const std::uint64_t second = samples_per_second(rate);
    std::vector<support::Edit> edits;
    for (int i = 0; i < 200; ++i) {
      // Up to ten hours; in order, so that no two change places.
      const auto step = static_cast<std::int64_t>(random() % (179 * second));
      const std::int64_t start = edits.empty() ? step : edits.back().dest_out + 1 + step;
      const auto length = static_cast<std::int64_t>(random() % 1000);
      const auto source = static_cast<std::int64_t>(random() % (35999 * second));
      edits.push_back({start, start + length, source, source + length});
      support::add_entry(root, edits.back());
    }
    CLightworksEdl in(nullptr, 0);
    support::set_rates(in, rate);
    EXPECT_EQ(read(in, written<CLightworksEdl>(root)), 100);
    const auto entries = entries_of(in);
    ASSERT_EQ(entries.size(), edits.size());
    for (std::size_t i = 0; i < edits.size(); ++i) {
      ASSERT_TRUE(support::has_times(*entries[i], edits[i])) << int{rate};
    }
  }
}

}  // namespace
