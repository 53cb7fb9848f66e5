#include <random>

#include "tests/text/format_fixtures.h"
#include "tests/text/lightworks_table.h"
#include "text/lightworks_edl.h"

namespace {

using support::entries_of;
using support::lightworks_head;
using support::standard_edit;
using support::Streams;
using support::streams_of;
using support::TableLine;

// The segments of the standard edit.
TableLine segment(const std::string& code, const std::string& in, const std::string& out,
                  const std::string& level_in, const std::string& level_out) {
  TableLine line;
  line.edit_in = "360" + in;
  line.edit_out = "360" + out;
  line.source_in = "036" + in;
  line.source_out = "036" + out;
  line.reel = "TAPE01";
  line.level_in = level_in;
  line.level_out = level_out;
  line.code = code;
  return line;
}

class LightworksWrite : public support::FormatTest {
 protected:
  LightworksWrite() { support::set_rates(root_); }

  // The lines behind the head and the black line.
  std::string table() {
    const std::string text = written<CLightworksEdl>(root_);
    EXPECT_EQ(text.substr(0, lightworks_head.size()), lightworks_head);
    const std::string lines = text.substr(lightworks_head.size());
    return lines.substr(lines.find('\n') + 1);
  }
  std::string black_line() {
    const std::string lines = written<CLightworksEdl>(root_).substr(lightworks_head.size());
    return lines.substr(0, lines.find('\n') + 1);
  }
  // A column of the first line of a list with this edit.
  std::string column(std::size_t place) {
    const std::string line = table();
    std::size_t at = 0;
    for (std::size_t i = 0; i < place; ++i)
      at = line.find("\",\"", at) + 3;
    at += place == 0 ? 1 : 0;
    return line.substr(at, line.find('"', at) - at);
  }
  void clear() { delete_all(*root_.get_generic_entry_list()); }

  CGenericEdl root_;
};

TEST_F(LightworksWrite, HeadBlackLineAndPlainEdit) {
  support::add_entry(root_, standard_edit());
  EXPECT_TRUE(support::same_lines(
      written<CLightworksEdl>(root_),
      lightworks_head +
          "\"V01\",\"36000.000000\",\"36010.000000\",\"__BLACK\",\"V01\",\"00000.000000\","
          "\"00010.000000\",\"PR25.0\",\"00.000\",\"01.000\",\"CT\",\"EZ0Z0001\",\"EZ0Z0001\","
          "\"\",\"\",\"\"\n"
          "\"A01\",\"36000.000000\",\"36010.000000\",\"TAPE01\",\"A01\",\"03600.000000\","
          "\"03610.000000\",\"PR25.0\",\"01.000\",\"01.000\",\"CT\",\"\",\"\",\"\",\"\",\"\"\n"));
}

TEST_F(LightworksWrite, EmptyListHasBlackOfNoLength) {
  TableLine black{"V01", "00000.000000", "00000.000000", "__BLACK", "V01"};
  black.source_out = "00000.000000";
  black.level_in = "00.000";
  black.index = "EZ0Z0001";
  EXPECT_EQ(written<CLightworksEdl>(root_), lightworks_head + black.text());
}

TEST_F(LightworksWrite, BlackRunsFromTheFirstToTheLastEntry) {
  support::add_entry(root_, {.dest_in = 480000, .dest_out = 9600000});
  support::add_entry(root_, {.dest_in = 0, .dest_out = 960000});
  TableLine black{"V01", "00010.000000", "00020.000000", "__BLACK", "V01"};
  black.source_out = "00010.000000";
  black.level_in = "00.000";
  black.index = "EZ0Z0001";
  EXPECT_EQ(black_line(), black.text());
}

TEST_F(LightworksWrite, TimesAreSecondsInTwelvePlaces) {
  const auto time = [this](std::int64_t samples, std::uint8_t rate = 2) {
    clear();
    CGenericEdl other;
    support::set_rates(other, rate);
    support::add_entry(other, {.dest_in = samples, .dest_out = samples});
    const std::string text = written<CLightworksEdl>(other);
    const std::size_t at = text.find("\"A01\",\"") + 7;
    return text.substr(at, text.find('"', at) - at);
  };
  EXPECT_EQ(time(0), "00000.000000");
  EXPECT_EQ(time(72000), "00001.500000");
  EXPECT_EQ(time(1), "00000.000021");
  EXPECT_EQ(time(4800000000), "100000.00000");
  EXPECT_EQ(time(-72000), "000-1.500000");
  EXPECT_EQ(time(66150, 1), "00001.500000");
  EXPECT_EQ(time(72000, 255), "00000.000000");
}

TEST_F(LightworksWrite, LevelsHaveSixPlaces) {
  const auto level = [this](float gain) {
    clear();
    support::add_entry(root_, standard_edit()).gain_left = gain;
    return column(8);
  };
  EXPECT_EQ(level(1.0F), "01.000");
  EXPECT_EQ(level(0.0F), "00.000");
  EXPECT_EQ(level(10.5F), "10.500");
  EXPECT_EQ(level(100.0F), "00000000");
  EXPECT_EQ(level(99.9996F), "00000000");
}

TEST_F(LightworksWrite, StandardByFrameRate) {
  const auto standard = [this](std::uint8_t rate) {
    CGenericEdl other;
    support::set_rates(other, 2, rate);
    support::add_entry(other, standard_edit());
    const std::string text = written<CLightworksEdl>(other);
    const std::size_t at = text.find("\"03610.000000\",") + 15;
    return text.substr(at, text.find(',', at) - at);
  };
  EXPECT_EQ(standard(0), "\"FR24.0\"");
  EXPECT_EQ(standard(1), "\"PR25.0\"");
  EXPECT_EQ(standard(2), "\"NN\"");
  EXPECT_EQ(standard(3), "\"ND\"");
  EXPECT_EQ(standard(4), "\"FR30.0\"");
  // No standard of that number: the column repeats the one before it.
  EXPECT_EQ(standard(255), "\"03610.000000\"");
}

TEST_F(LightworksWrite, NamesAreCutAtSevenCharacters) {
  support::Edit edit = standard_edit();
  edit.reel = u"REEL567890";
  auto& entry = support::add_entry(root_, edit);
  entry.set_source_reel_name(u"NAME567890");
  set_field(entry.src_index, u"IDX456789");
  entry.first_channel = 11;
  TableLine line = segment("CT", "00.000000", "10.000000", "01.000", "01.000");
  line.reel = "REEL567";
  line.source_channel = "A12";
  line.index = "IDX456789";
  line.name = "NAME567";
  EXPECT_EQ(table(), line.text());
}

TEST_F(LightworksWrite, FadeIn) {
  auto& entry = support::add_entry(root_, standard_edit());
  entry.transition_type = 14;
  entry.fade_in_length = 24000;
  EXPECT_EQ(table(), segment("DI", "00.000000", "00.500000", "00.000", "01.000").text() +
                         segment("CI", "00.500000", "10.000000", "01.000", "01.000").text());
}

TEST_F(LightworksWrite, FadeOut) {
  auto& entry = support::add_entry(root_, standard_edit());
  entry.transition_type = 15;
  entry.fade_out_length = 12000;
  EXPECT_EQ(table(), segment("CO", "00.000000", "09.750000", "01.000", "01.000").text() +
                         segment("DO", "09.750000", "10.000000", "01.000", "00.000").text());
}

TEST_F(LightworksWrite, BothFadesLeaveTheLastSegmentInTheEntry) {
  auto& entry = support::add_entry(root_, standard_edit());
  entry.transition_type = 16;
  entry.fade_in_length = 24000;
  entry.fade_out_length = 12000;
  entry.gain_left = 0.5F;
  EXPECT_EQ(table(), segment("DI", "00.000000", "00.500000", "00.000", "00.500").text() +
                         segment("CB", "00.500000", "09.750000", "00.500", "00.500").text() +
                         segment("DO", "09.750000", "10.000000", "00.500", "00.000").text());
  EXPECT_EQ(entry.dest_in, 1728468000);
  EXPECT_EQ(entry.dest_out, 1728480000);
  EXPECT_EQ(entry.source_in, 173268000);
  EXPECT_EQ(entry.transition_type, 13U);
  EXPECT_EQ(entry.level_in, 0.5F);
  EXPECT_EQ(entry.level_out, 0.0F);
}

TEST_F(LightworksWrite, OtherTypesArePlain) {
  for (const std::uint32_t type : {0U, 11U, 12U, 13U, 17U, 50U, 51U}) {
    clear();
    auto& entry = support::add_entry(root_, standard_edit());
    entry.transition_type = type;
    entry.fade_in_length = entry.fade_out_length = 24000;
    EXPECT_EQ(table(), segment("CT", "00.000000", "10.000000", "01.000", "01.000").text()) << type;
    EXPECT_EQ(entry.transition_type, 11U);
  }
}

// Three edits of a second, each over the last 100 samples of the one before.
void add_overlapping(CGenericEdl& root, int count, std::int64_t overlap) {
  for (int i = 0; i < count; ++i) {
    const std::int64_t start = i * (48000 - overlap);
    support::add_entry(root, {.dest_in = start,
                              .dest_out = start + 48000,
                              .source_in = 480000,
                              .source_out = 528000,
                              .reel = u"R"});
  }
}

std::vector<std::string> codes_of(const std::string& table) {
  std::vector<std::string> codes;
  for (std::size_t at = 0; at < table.size(); at = table.find('\n', at) + 1) {
    std::size_t column = at;
    for (int i = 0; i < 10; ++i)
      column = table.find("\",\"", column) + 3;
    codes.push_back(table.substr(column, 2));
  }
  return codes;
}

using Codes = std::vector<std::string>;

TEST_F(LightworksWrite, OverlapIsMarkedInBothEdits) {
  add_overlapping(root_, 2, 100);
  const auto entries = entries_of(root_);
  EXPECT_EQ(codes_of(table()), (Codes{"CO", "DO", "DI", "CI"}));
  EXPECT_EQ(entries[0]->fade_out_length, 100);
  EXPECT_EQ(entries[1]->fade_in_length, 100);
}

// The overlap is exact however late it lies, and itself cut to single precision.
TEST_F(LightworksWrite, OverlapIsTheDifferenceInSinglePrecision) {
  // At ten hours single precision counts in steps of 128 samples.
  const std::int64_t late = std::int64_t{36000} * 48000 + 1;
  support::add_entry(root_, {.dest_in = late, .dest_out = late + 1000, .source_out = 1000});
  support::add_entry(root_, {.dest_in = late + 900, .dest_out = late + 1900, .source_out = 1000});
  auto entries = entries_of(root_);
  EXPECT_EQ(codes_of(table()), (Codes{"CO", "DO", "DI", "CI"}));
  EXPECT_EQ(entries[0]->fade_out_length, 100);
  EXPECT_EQ(entries[1]->fade_in_length, 100);
  // 2^24 + 1 is not a number of single precision; 2^24 is the even neighbour.
  clear();
  support::add_entry(root_, {.dest_out = 20000000, .source_out = 20000000});
  support::add_entry(root_, {.dest_in = 20000000 - 16777217,
                             .dest_out = 40000000,
                             .source_out = 40000000 - 20000000 + 16777217});
  entries = entries_of(root_);
  EXPECT_EQ(codes_of(table()), (Codes{"CO", "DO", "DI", "CI"}));
  EXPECT_EQ(entries[0]->fade_out_length, 16777216);
  EXPECT_EQ(entries[1]->fade_in_length, 16777216);
}

TEST_F(LightworksWrite, EditBetweenTwoOverlapsHasBothFades) {
  add_overlapping(root_, 3, 100);
  EXPECT_EQ(codes_of(table()), (Codes{"CO", "DO", "DI", "CB", "DO", "DI", "CI"}));
}

TEST_F(LightworksWrite, EditsOfOtherStreamsDoNotOverlap) {
  add_overlapping(root_, 2, 100);
  entries_of(root_)[1]->set_stream(0, 1);
  EXPECT_EQ(codes_of(table()), (Codes{"CT", "CT"}));
}

TEST_F(LightworksWrite, EditsThatMeetAreNotMarked) {
  add_overlapping(root_, 2, 0);
  EXPECT_EQ(codes_of(table()), (Codes{"CT", "CT"}));
}

TEST_F(LightworksWrite, ForcedCurvesCutOverlapsAtTheirMidpoint) {
  EDL_CONVERSION_SETTINGS settings;
  settings.force_default_fade_curves = 1;
  root_.set_edl_conversion_settings(&settings);
  for (const std::int64_t overlap : {100, 101}) {
    clear();
    add_overlapping(root_, 2, overlap);
    const auto entries = entries_of(root_);
    entries[0]->transition_type = 14;
    entries[0]->fade_in_length = 4800;
    const std::int64_t start = entries[1]->dest_in;
    const std::int64_t half = overlap == 100 ? 50 : 51;
    EXPECT_EQ(codes_of(table()), (Codes{"CT", "CT"}));
    EXPECT_EQ(entries[0]->dest_out, 48000 - half);
    EXPECT_EQ(entries[0]->source_out, 528000 - half);
    EXPECT_EQ(entries[1]->dest_in, start + half);
    EXPECT_EQ(entries[1]->source_in, 480000 + half);
  }
}

TEST_F(LightworksWrite, CutThatLeavesNothingIsPutBack) {
  EDL_CONVERSION_SETTINGS settings;
  settings.force_default_fade_curves = 1;
  root_.set_edl_conversion_settings(&settings);
  // The first edit lies inside the second, of which half the overlap is more than
  // the first has.
  support::add_entry(root_, {.dest_in = 990, .dest_out = 1000, .source_in = 0, .source_out = 10});
  support::add_entry(root_, {.dest_in = 0, .dest_out = 5000, .source_in = 0, .source_out = 5000});
  table();
  const auto entries = entries_of(root_);
  EXPECT_TRUE(support::has_times(*entries[0], {990, 1000, 0, 10}));
  EXPECT_TRUE(support::has_times(*entries[1], {500, 5000, 500, 5000}));
  // The second edit lies inside the first, which ends 4900 samples behind its start.
  clear();
  support::add_entry(root_, {.dest_in = 0, .dest_out = 5000, .source_in = 0, .source_out = 5000});
  support::add_entry(root_, {.dest_in = 100, .dest_out = 1000, .source_in = 0, .source_out = 900});
  table();
  const auto inner = entries_of(root_);
  EXPECT_TRUE(support::has_times(*inner[0], {0, 2550, 0, 2550}));
  EXPECT_TRUE(support::has_times(*inner[1], {100, 1000, 0, 900}));
}

TEST_F(LightworksWrite, EachStreamIsAMonoLine) {
  support::Edit edit = standard_edit();
  edit.streams = {4, 5};
  edit.first_channel = 2;
  support::add_entry(root_, edit);
  TableLine line = segment("CT", "00.000000", "10.000000", "01.000", "01.000");
  TableLine second = line;
  line.edit_channel = "A05";
  line.source_channel = "A03";
  second.edit_channel = "A06";
  second.source_channel = "A04";
  EXPECT_EQ(table(), line.text() + second.text());
}

TEST_F(LightworksWrite, ThirdStreamStandsAheadOfTheSecondOnTheList) {
  support::Edit edit = standard_edit();
  edit.streams = {0, 1, 2};
  support::add_entry(root_, edit);
  const std::string lines = table();
  const auto entries = entries_of(root_);
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_EQ(streams_of(*entries[0]), Streams{0});
  EXPECT_EQ(streams_of(*entries[1]), Streams{2});
  EXPECT_EQ(streams_of(*entries[2]), Streams{1});
  EXPECT_EQ(entries[0]->first_channel, 0);
  EXPECT_EQ(entries[1]->first_channel, 1);
  EXPECT_EQ(entries[2]->first_channel, 1);
  EXPECT_EQ(entries[1]->owner, &root_);
  const std::size_t second = lines.find("\"A02\",\"3600");
  EXPECT_LT(lines.find("\"A01\",\"3600"), second);
  EXPECT_LT(second, lines.find("\"A03\",\"3600"));
}

// The order as it is told: for stream 0, 1, 2 and so on, the entries of that stream.
TEST_F(LightworksWrite, OrderAgreesWithAppendingStreamByStream) {
  std::mt19937 random(5);
  for (int run = 0; run < 4; ++run) {
    clear();
    for (int i = 0; i < 40; ++i) {
      const int stream = random() % 10 == 0 ? 65535 : static_cast<int>(random() % 9);
      support::add_entry(root_, {.dest_in = i * 1000,
                                 .dest_out = i * 1000 + 500,
                                 .source_out = 500,
                                 .streams = {stream}});
    }
    std::vector<CGenericEdlEntry*> expected;
    for (unsigned stream = 0; stream <= 65535; ++stream) {
      for (CGenericEdlEntry* entry : entries_of(root_))
        if (entry->get_stream(0) == stream) expected.push_back(entry);
    }
    CLightworksEdl edl(&root_, 0);
    // Twice: the order of the first run does not stay.
    for (int times = 0; times < 2; ++times) {
      EXPECT_EQ(edl.export_edl(folder_.wide_file("b.edl"), 0), 101);
      EXPECT_EQ(entries_of(&edl.m_by_channel), expected);
    }
  }
}

TEST_F(LightworksWrite, WhatCannotBeWritten) {
  support::add_entry(root_, standard_edit());
  CLightworksEdl edl(&root_, 0);
  EXPECT_EQ(edl.export_edl(folder_.wide_file("no/such/b.edl"), 0), 0);
  EXPECT_EQ(edl.export_edl(u"/dev/full", 0), 101);
  EXPECT_NE(edl.output_incomplete(), 0);
  EXPECT_EQ(edl.export_edl(folder_.wide_file("b.edl"), 0), 101);
  EXPECT_EQ(edl.output_incomplete(), 0);
}

TEST_F(LightworksWrite, Golden) {
  auto& first = support::add_entry(root_, {.dest_in = 0,
                                           .dest_out = 480000,
                                           .source_in = 48000,
                                           .source_out = 528000,
                                           .streams = {0, 1},
                                           .reel = u"ALPHA"});
  first.gain_left = 0.5F;
  first.set_source_reel_name(u"TAKE ONE A");
  set_field(first.src_index, u"IX1");
  support::add_entry(root_, {.dest_in = 456000,
                             .dest_out = 960000,
                             .source_in = 0,
                             .source_out = 504000,
                             .reel = u"BETA-LONG"});
  support::add_entry(root_, {.dest_in = 960000,
                             .dest_out = 1440000,
                             .source_in = 0,
                             .source_out = 480000,
                             .streams = {2},
                             .first_channel = 1});
  EXPECT_TRUE(support::matches_golden("lightworks/crossfade.lw", written<CLightworksEdl>(root_)));
}

}  // namespace
