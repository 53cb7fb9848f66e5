// Export of the EDL2 file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/framework/file_exception.h"
#include "native/marlo2_edl.h"
#include "tests/native/bytes.h"
#include "tests/native/scene.h"
#include "tests/native/small_edl.h"
#include "tests/support/faulty_files.h"

using namespace native_test;  // NOLINT
using support::same_bytes;
using support::utf8;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::size_t head_size = 430;
constexpr std::size_t record_size = 128;

class Edl2Export : public testing::Test, protected Scene<CMarlo2Edl> {
 protected:
  Edl2Export() { set_rates(root, 1); }

  std::string written() { return exported(root); }
  // The nth record of the file.
  std::string record(std::size_t n) {
    const std::string file = written();
    EXPECT_GE(file.size(), head_size + record_size * (n + 1));
    return file.substr(head_size + record_size * n, record_size);
  }
  static std::uint32_t word_at(const std::string& bytes, std::size_t at) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < 4; ++i)
      word |= std::uint32_t{static_cast<unsigned char>(bytes[at + i])} << (8 * i);
    return word;
  }
  // Events by channel, as the head counts them.
  std::vector<unsigned> counts() {
    const std::string file = written();
    std::vector<unsigned> all;
    for (std::size_t channel = 0; channel < 8; ++channel)
      all.push_back(word_at(file, 394 + 4 * channel));
    return all;
  }
  // Destination in of the events, in file order.
  std::vector<unsigned> starts() {
    const std::string file = written();
    std::vector<unsigned> all;
    for (std::size_t at = head_size; at + record_size <= file.size(); at += record_size)
      all.push_back(word_at(file, at));
    return all;
  }
  void expect_refused(const std::string& text_id) {
    host.boxes.shown.clear();
    EXPECT_EQ(export_from(root), result::refused);
    ASSERT_EQ(host.boxes.shown.size(), 1U);
    EXPECT_EQ(host.boxes.shown[0].title, "[22243]");
    EXPECT_EQ(host.boxes.shown[0].body, "[" + text_id + "]");
    EXPECT_EQ(host.boxes.shown[0].style, 0U);
    EXPECT_FALSE(support::file_exists(folder.file("out")));
  }

  CGenericEdl root;
};

TEST_F(Edl2Export, SmallList) {
  fill_edl2_small(root);
  const std::string file = written();
  EXPECT_EQ(file.size(), 942U);
  EXPECT_TRUE(same_bytes(file, golden_bytes("edl2_small.hex")));
}

TEST_F(Edl2Export, HeadOfAnEmptyList) {
  std::string head = golden_bytes("edl2_small.hex").substr(0, head_size);
  head = patched(head, 394, zeros(36));
  EXPECT_TRUE(same_bytes(written(), head));
  EXPECT_EQ(head.substr(4, 60),
            "Marlo(tm) EDL2(c) 2008 Lomond Tone Products Ltd        " + zeros(5));
}

TEST_F(Edl2Export, RatesOfTheHead) {
  const auto head_of = [this](std::uint8_t sample_rate, std::uint8_t frame_rate,
                              std::uint8_t depth) {
    CGenericEdl other;
    set_rates(other, 0, sample_rate, frame_rate, depth);
    return exported(other);
  };
  EXPECT_EQ(head_of(2, 1, 255).substr(196, 2), from_hex("80 BB"));
  EXPECT_EQ(head_of(1, 1, 255).substr(196, 2), from_hex("44 AC"));
  EXPECT_EQ(head_of(0, 1, 255).substr(196, 2), from_hex("00 7D"));
  EXPECT_EQ(head_of(255, 1, 255).substr(196, 2), from_hex("00 00"));
  for (const auto& [index, word] :
       {std::pair{0, 1U}, {1, 2U}, {2, 3U}, {3, 4U}, {4, 5U}, {5, 0U}, {255, 0U}}) {
    EXPECT_EQ(head_of(2, static_cast<std::uint8_t>(index), 255).substr(206, 2), le16(word))
        << index;
  }
  for (const auto& [depth, hex] : {std::pair{16, "10 00"},
                                   {18, "12 00"},
                                   {20, "14 00"},
                                   {24, "18 00"},
                                   {255, "00 00"},
                                   {17, "00 00"},
                                   {0, "00 00"}}) {
    EXPECT_EQ(head_of(2, 1, static_cast<std::uint8_t>(depth)).substr(198, 2), from_hex(hex))
        << depth;
  }
}

TEST_F(Edl2Export, RatesAreTheObjectsOwnOrTheRoots) {
  CMarlo2Edl format(&root);
  set_rates(format, 0, 1, 4, 24);
  ASSERT_EQ(format.export_edl(folder.wide_file("out"), 0), result::done);
  const std::string head = support::read_file(folder.file("out"));
  EXPECT_EQ(head.substr(196, 4), le16(44100) + le16(24));
  EXPECT_EQ(head.substr(206, 2), le16(5));
}

TEST_F(Edl2Export, SampleRatesAbove48000LeaveAnEmptyFile) {
  for (std::uint8_t index = 5; index < 15; ++index) {
    CGenericEdl other;
    set_rates(other, 0, index);
    EXPECT_EQ(export_from(other), result::refused);
    EXPECT_TRUE(support::file_exists(folder.file("out")));
    EXPECT_EQ(support::read_file(folder.file("out")), "");
  }
  EXPECT_THAT(host.boxes.shown, IsEmpty());
}

TEST_F(Edl2Export, TellsAFileThatCannotBeOpened) {
  CMarlo2Edl format(&root);
  EXPECT_EQ(format.export_edl(folder.wide_file("missing/out"), 0), result::not_opened);
}

TEST_F(Edl2Export, RefusedWritesPassThrough) {
  const support::FaultyFiles faults(FileFaults::Operation::write, 1, ENOSPC);
  CMarlo2Edl format(&root);
  EXPECT_THROW(static_cast<void>(format.export_edl(folder.wide_file("out"), 0)), CFileException);
}

TEST_F(Edl2Export, FadeShapesAreWrittenAndNotRead) {
  CGenericEdlEntry& entry = add_entry(root, 0, 100);
  entry.fade_out_shape = 3;
  entry.fade_in_shape = 4;
  EXPECT_EQ(record(0).substr(92, 4), from_hex("00 03 04 00"));
  ASSERT_EQ(import(written()), result::import_complete);
  EXPECT_EQ(entries_of(*edl)[0]->fade_out_shape, 0);
  EXPECT_EQ(entries_of(*edl)[0]->fade_in_shape, 0);
}

TEST_F(Edl2Export, FadesInTheTimeOfTheSource) {
  CGenericEdlEntry& entry = add_entry(root, 96000, 144000);
  entry.source_in = 49000;
  entry.source_timestamp = 1000;
  entry.fade_in_length = 480;
  entry.fade_out_length = 240;
  EXPECT_EQ(record(0).substr(52, 16), joined({le32(48000), le32(48480), le32(95760), le32(96000)}));
  entry.source_timestamp = time_not_given;
  entry.source_in = 500;
  EXPECT_EQ(word_at(record(0), 52), 500U);
  // Before the start of the source: the words wrap.
  entry.source_timestamp = 501;
  EXPECT_EQ(word_at(record(0), 52), 0xFFFFFFFFU);
}

TEST_F(Edl2Export, SourceNames) {
  struct Row {
    const wide_char* clip_name;
    std::uint32_t channel;
    std::uint16_t no_channels;
    std::uint16_t offset;
    const char* expected;
  };
  const Row rows[] = {
      {u"take", 7, 1, 0, "TAKE07  ADM"},          {u"TAKE12", 0, 1, 0, "TAKE12  ADM"},
      {u"MY TAKE", 3, 1, 0, "MY TAKE ADM"},       {u"A B", 3, 1, 0, "A03     ADM"},
      {u"LONGCL", 5, 2, 0, "LONGCL05ADL"},        {u"LONGC", 5, 2, 0, "LONGC05 ADL"},
      {u"LONGCLIPNAME", 5, 2, 0, "LONGCLIPADL"},  {u"", 7, 2, 1, "07      ADR"},
      {u"ABC", 12, 3, 0, "ABC12   AD "},          {u"ABC", 12, 0, 0, "ABC12   AD "},
      {u"take1", 100, 1, 0, "TAKE110 ADM"},       {u"LONGCL", 12345, 1, 0, "LONGCL12ADM"},
      {u"ABC", 4294967295U, 1, 0, "ABC-1   ADM"}, {u"\u00E9t\u00E9", 0, 1, 0, "\xC9T\xC9     ADM"}};
  CGenericEdlEntry& entry = add_entry(root, 0, 1);
  for (const Row& row : rows) {
    entry.set_clip_name(row.clip_name);
    entry.source_channel = row.channel;
    entry.no_channels = row.no_channels;
    entry.channel_offset = row.offset;
    EXPECT_TRUE(same_bytes(record(0).substr(36, 12), row.expected + zeros(1)));
  }
}

TEST_F(Edl2Export, SourceNamesInACodePageOfSeveralBytes) {
  host.page = &utf8_code_page();
  CGenericEdlEntry& entry = add_entry(root, 0, 1);
  entry.set_clip_name(u"\u00C9t\u00C9\u00C9\u00C9");
  EXPECT_TRUE(same_bytes(record(0).substr(36, 12),
                         "\xC3\x89T\xC3\x89\xC3\x89\xC3"
                         "ADM" +
                             zeros(1)));
}

TEST_F(Edl2Export, Layouts) {
  CGenericEdlEntry& entry = add_entry(root, 0, 1);
  const auto layout_of = [&](std::uint16_t no_channels, std::uint16_t offset) {
    entry.no_channels = no_channels;
    entry.channel_offset = offset;
    return static_cast<unsigned char>(record(0)[31]);
  };
  EXPECT_EQ(layout_of(1, 0), 0);
  EXPECT_EQ(layout_of(1, 1), 0);
  EXPECT_EQ(layout_of(2, 0), 1);
  EXPECT_EQ(layout_of(2, 1), 2);
  EXPECT_EQ(layout_of(3, 0), 0xFF);
  EXPECT_EQ(layout_of(0, 0), 0xFF);
}

TEST_F(Edl2Export, GainsByLayout) {
  CGenericEdlEntry& entry = add_entry(root, 0, 1);
  entry.gain_left = 0.5F;
  const auto gains_of = [&](std::uint16_t no_channels, std::uint16_t offset) {
    entry.no_channels = no_channels;
    entry.channel_offset = offset;
    return record(0).substr(96, 8);
  };
  const std::string to_left = le_float(1.0F) + le_float(0.0F);
  EXPECT_EQ(gains_of(1, 0), to_left);
  EXPECT_EQ(gains_of(2, 0), to_left);
  EXPECT_EQ(gains_of(2, 1), le_float(0.0F) + le_float(1.0F));
  EXPECT_EQ(gains_of(5, 0), to_left);
  EXPECT_EQ(record(0).substr(112, 4), le_float(0.5F));
}

TEST_F(Edl2Export, CurvesWithoutAName) {
  CGenericEdlEntry& entry = add_entry(root, 0, 1);
  entry.fade_in_curve = 20;
  entry.fade_out_curve = 65535;
  EXPECT_EQ(record(0).substr(68, 8), text("LINEAR ", 8));
  EXPECT_EQ(record(0).substr(80, 8), text("LINEAR ", 8));
}

TEST_F(Edl2Export, EachCurveComesBack) {
  for (std::uint16_t curve = 0; curve < 20; ++curve)
    add_entry(root, curve, curve + 1).fade_in_curve = curve;
  ASSERT_EQ(import(written()), result::import_complete);
  ASSERT_EQ(entries_of(*edl).size(), 20U);
  for (std::uint16_t curve = 0; curve < 20; ++curve)
    EXPECT_EQ(entries_of(*edl)[curve]->fade_in_curve, curve);
}

TEST_F(Edl2Export, PqTextsAreCut) {
  CGenericPQEntry& pq = add_pq_entry(root);
  pq.first_text = u"abcdefghijklmnopqrst";
  pq.third_text = u"abcdefghijklmnopqrstabcdefghijklmnopqrst";
  pq.flag_a = 5;
  pq.position_b = 1;
  const std::string bytes = record(0);
  EXPECT_EQ(bytes.substr(0, 8), le32(96000) + le32(96000));
  EXPECT_EQ(bytes.substr(20, 16), "abcdefghijklmno" + zeros(1));
  EXPECT_EQ(bytes.substr(52, 2), from_hex("01 00"));
  EXPECT_EQ(bytes.substr(54, 12), "GBAAA0012345");
  EXPECT_EQ(bytes.substr(66, 32), "abcdefghijklmnopqrstabcdefghijk" + zeros(1));
}

TEST_F(Edl2Export, MoreThanEightStreamsAreRefused) {
  root.note_stream(8);
  expect_refused("22246");
}

TEST_F(Edl2Export, StreamsThatTheListDoesNotKnowOfAreRefused) {
  CGenericEdlEntry& entry = add_entry(root, 0, 1);
  for (const std::uint16_t stream : {std::uint16_t{8}, no_stream}) {
    entry.streams[0] = stream;
    expect_refused("22246");
  }
  // Not so many streams, but folded onto channels that do not exist.
  entry.streams[0] = 6;
  expect_refused("22246");
}

TEST_F(Edl2Export, OnlyMonoAndStereo) {
  add_entry(root, 0, 1, {0, 1, 2});
  expect_refused("22247");
}

TEST_F(Edl2Export, EntriesWithoutStreamsAreRefused) {
  add_entry(root, 0, 1, {});
  expect_refused("22247");
}

TEST_F(Edl2Export, StereoBeginsOnAnEvenStream) {
  add_entry(root, 0, 1, {1, 2});
  expect_refused("22248");
}

TEST_F(Edl2Export, OverlapsAreRefused) {
  root.note_stream(7);
  add_entry(root, 0, 100, {2});
  add_entry(root, 99, 200, {2});
  expect_refused("22249");
}

TEST_F(Edl2Export, ARefusalLeavesNothingBehind) {
  root.note_stream(7);
  add_entry(root, 0, 100, {2});
  CGenericEdlEntry& second = add_entry(root, 99, 200, {2});
  CMarlo2Edl format(&root);
  EXPECT_EQ(format.export_edl(folder.wide_file("out"), 0), result::refused);
  second.dest_in = 100;
  ASSERT_EQ(format.export_edl(folder.wide_file("out"), 0), result::done);
  EXPECT_EQ(support::read_file(folder.file("out")).size(), head_size + 2 * record_size);
  EXPECT_EQ(host.boxes.shown[0].path, folder.file("out"));
}

TEST_F(Edl2Export, FourStreamsHaveTwoChannelsEach) {
  root.note_stream(3);
  for (unsigned stream = 0; stream < 4; ++stream)
    add_entry(root, 0, 100, {stream});
  EXPECT_THAT(counts(), ElementsAre(1, 1, 0, 0, 1, 1, 0, 0));
  for (unsigned stream = 0; stream < 4; ++stream)
    add_entry(root, 50, 150, {stream});
  EXPECT_THAT(counts(), ElementsAre(1, 1, 1, 1, 1, 1, 1, 1));
  support::write_file(folder.file("out"), "");
  add_entry(root, 60, 70, {2});
  EXPECT_EQ(export_from(root), result::refused);
  EXPECT_EQ(host.boxes.shown[0].body, "[22249]");
}

TEST_F(Edl2Export, FiveStreamsHaveOneChannelEach) {
  root.note_stream(4);
  add_entry(root, 0, 100, {2});
  EXPECT_THAT(counts(), ElementsAre(0, 0, 1, 0, 0, 0, 0, 0));
}

TEST_F(Edl2Export, StereoOnAFoldedPair) {
  add_entry(root, 0, 100, {0, 1});
  add_entry(root, 50, 150, {0, 1});
  EXPECT_THAT(counts(), ElementsAre(1, 1, 1, 1, 0, 0, 0, 0));
  EXPECT_EQ(record(2)[31], 1);
  EXPECT_EQ(record(3)[31], 2);
}

TEST_F(Edl2Export, NeighboursShareAChannel) {
  add_entry(root, 0, 100);
  add_entry(root, 100, 200);
  EXPECT_THAT(counts(), ElementsAre(2, 0, 0, 0, 0, 0, 0, 0));
  add_entry(root, 199, 300);
  EXPECT_THAT(counts(), ElementsAre(2, 0, 1, 0, 0, 0, 0, 0));
}

TEST_F(Edl2Export, AnEditThatEndsWhereAnotherBeginsGoesBehindIt) {
  add_entry(root, 100, 200);
  add_entry(root, 0, 100);
  EXPECT_THAT(starts(), ElementsAre(100, 0));
}

TEST_F(Edl2Export, AnEditThatEndsEarlierGoesInFront) {
  add_entry(root, 300, 400);
  add_entry(root, 0, 100);
  EXPECT_THAT(starts(), ElementsAre(0, 300));
}

TEST_F(Edl2Export, OutAndBackAndOut) {
  fill_edl2_small(root);
  ASSERT_EQ(import(golden_bytes("edl2_small.hex")), result::import_complete);
  const std::string again = exported(*edl);
  ASSERT_EQ(again.size(), 942U);
  const std::string first = golden_bytes("edl2_small.hex");
  EXPECT_TRUE(same_bytes(again.substr(head_size, 48), first.substr(head_size, 48)));
  EXPECT_TRUE(same_bytes(again.substr(head_size + 52, 68), first.substr(head_size + 52, 68)));
}

TEST_F(Edl2Export, TheSameObjectMayExportTwice) {
  fill_edl2_small(root);
  CMarlo2Edl format(&root);
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(format.export_edl(folder.wide_file("out"), 0), result::done);
    EXPECT_TRUE(same_bytes(support::read_file(folder.file("out")), golden_bytes("edl2_small.hex")));
  }
}

TEST_F(Edl2Export, AnObjectBelowTheParentsHasNoLists) {
  CMarlo2Edl format(&root);
  CMarlo2Edl below(&format);
  ASSERT_EQ(below.export_edl(folder.wide_file("out"), 0), result::done);
  EXPECT_EQ(support::read_file(folder.file("out")).size(), head_size);
}

}  // namespace
