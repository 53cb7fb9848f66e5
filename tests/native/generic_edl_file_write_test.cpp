// Export of the chunked file.
#include <gtest/gtest.h>

#include "host/framework/file_exception.h"
#include "native/generic_edl_file.h"
#include "tests/native/bytes.h"
#include "tests/native/scene.h"
#include "tests/native/small_edl.h"
#include "tests/support/faulty_files.h"

using namespace native_test;  // NOLINT
using support::same_bytes;
using support::utf8;

namespace {

class ChunkedExport : public testing::Test, protected Scene<CGenericEDLFile> {
 protected:
  ChunkedExport() { set_rates(root); }

  // The whole file as it is written, and pieces of it.
  std::string written(int flag = 0) { return exported(root, flag); }
  // The body of the nth list or item of an id (counted from 0), found by its id.
  std::string body_of(const std::string& file, const std::string& id, int nth = 0) {
    std::size_t at = 0;
    for (int i = 0; i <= nth; ++i)
      at = file.find(id, at + (i == 0 ? 0 : 1));
    EXPECT_NE(at, std::string::npos) << id;
    return file.substr(at + 12);
  }
  std::uint32_t size_of(const std::string& file, const std::string& id) {
    const std::size_t at = file.find(id);
    EXPECT_NE(at, std::string::npos) << id;
    std::uint32_t size = 0;
    for (std::size_t i = 0; i < 4; ++i)
      size |= std::uint32_t{static_cast<unsigned char>(file[at + 8 + i])} << (8 * i);
    return size;
  }
  std::uint32_t count_of(const std::string& file, const std::string& id) {
    const std::size_t at = file.find(id);
    if (at == std::string::npos) return 0;
    return static_cast<unsigned char>(file[at + 12]);
  }
  // Tracks written for the entries of the root.
  std::uint32_t track_count() { return count_of(written(), "TLST"); }

  // Two entries of one source that a change of the second may part.
  std::pair<CGenericEdlEntry*, CGenericEdlEntry*> add_twins() {
    CGenericEdlEntry* pair[2];
    for (CGenericEdlEntry*& entry : pair) {
      entry = &add_entry(root, 0, 100);
      entry->set_clip_name(u"clip");
      entry->set_reel_name(u"reel");
      entry->source_timestamp = 5;
    }
    return {pair[0], pair[1]};
  }

  CGenericEdl root;
};

TEST_F(ChunkedExport, EmptyList) {
  EXPECT_TRUE(same_bytes(written(), golden_bytes("chunk_empty.hex")));
}

TEST_F(ChunkedExport, SmallList) {
  fill_chunk_small(root);
  EXPECT_TRUE(same_bytes(written(), golden_bytes("chunk_small.hex")));
}

TEST_F(ChunkedExport, FlagWritesTheOtherMagicAndMapsCurves) {
  fill_chunk_small(root);
  std::string expected = patched(golden_bytes("chunk_small.hex"), 0, from_hex("6E 72 61 54"));
  expected = patched(expected, 0x178, from_hex("0D 00"));
  EXPECT_TRUE(same_bytes(written(1), expected));
  EXPECT_TRUE(same_bytes(written(-1), expected));
}

TEST_F(ChunkedExport, CurveMap) {
  const std::uint16_t mapped[] = {0, 13, 13, 12, 12, 11, 11, 11, 10, 10, 9, 9, 9, 8, 8, 5, 5,
                                  0, 0,  0,  0,  0,  0,  0,  0,  0,  0,  0, 0, 0, 0, 0, 0};
  CGenericEdlEntry& entry = add_entry(root, 0, 1);
  for (std::uint16_t curve = 0; curve <= 32; ++curve) {
    entry.fade_in_curve = curve;
    entry.fade_out_curve = static_cast<std::uint16_t>(32 - curve);
    EXPECT_EQ(body_of(written(1), "EDLE").substr(28, 4),
              le16(mapped[curve]) + le16(mapped[32 - curve]));
    EXPECT_EQ(body_of(written(0), "EDLE").substr(28, 4), le16(curve) + le16(32U - curve));
  }
  entry.fade_in_curve = 65535;
  EXPECT_EQ(body_of(written(1), "EDLE").substr(28, 2), le16(0));
}

TEST_F(ChunkedExport, MappedCurvesStayMapped) {
  fill_chunk_small(root);
  ASSERT_EQ(import(written(1)), result::import_complete);
  EXPECT_EQ(entries_of(*edl)[0]->fade_in_curve, 13);
}

TEST_F(ChunkedExport, TellsAFileThatCannotBeOpened) {
  CGenericEDLFile format(&root);
  EXPECT_EQ(format.export_edl(folder.wide_file("missing/out"), 0), result::not_opened);
}

TEST_F(ChunkedExport, RefusedWritesPassThrough) {
  const support::FaultyFiles faults(FileFaults::Operation::write, 1, ENOSPC);
  CGenericEDLFile format(&root);
  EXPECT_THROW(static_cast<void>(format.export_edl(folder.wide_file("out"), 0)), CFileException);
}

TEST_F(ChunkedExport, HeadChunkOfEightStreams) {
  root.note_stream(7);
  for (unsigned stream = 0; stream < 8; ++stream)
    root.set_track_id(stream, stream + 100);
  const std::string file = written();
  EXPECT_EQ(size_of(file, "HDR1"), 40U);
  EXPECT_TRUE(same_bytes(body_of(file, "HDR1").substr(0, 40),
                         joined({le32(48000), le16(1), le16(8), zeros(32)})));
}

TEST_F(ChunkedExport, RatesAreTheObjectsOwnOrTheRoots) {
  add_entry(root, 0, 1, {3});
  CGenericEDLFile format(&root);
  ASSERT_EQ(format.export_edl(folder.wide_file("out"), 0), result::done);
  EXPECT_EQ(body_of(support::read_file(folder.file("out")), "HDR1").substr(0, 8),
            joined({le32(48000), le16(1), le16(4)}));
  set_rates(format, 9, 7, 4);
  ASSERT_EQ(format.export_edl(folder.wide_file("out"), 0), result::done);
  // The highest stream stays the root's.
  EXPECT_EQ(body_of(support::read_file(folder.file("out")), "HDR1").substr(0, 8),
            joined({le32(96000), le16(4), le16(4)}));
}

TEST_F(ChunkedExport, RatesThatAreNotSet) {
  CGenericEdl bare;
  EXPECT_EQ(body_of(exported(bare), "HDR1").substr(0, 8), joined({le32(0), le16(255), le16(1)}));
}

TEST_F(ChunkedExport, DiscTextsAndCatalogueAreTheRoots) {
  PQ_DETAILS details;
  set_field(details.pq_text[0], u"root");
  std::fill(std::begin(details.pq_catalogue), std::end(details.pq_catalogue), u'7');
  root.set_pq_details(&details);
  set_disc_texts(1);
  add_pq_entry(root);
  const std::string file = written();
  EXPECT_EQ(body_of(file, "PQHC").substr(0, 13), "7777777777777");
  EXPECT_EQ(body_of(file, "PQDC").substr(0, 5), "root" + zeros(1));
}

TEST_F(ChunkedExport, ListsStandInOrderAndEmptyOnesAreLeftOut) {
  const std::string empty = written();
  for (const char* const id : {"TLST", "ELST", "ALST"})
    EXPECT_EQ(empty.find(id), std::string::npos) << id;
  fill_chunk_small(root);
  const std::string file = written();
  std::size_t before = 0;
  for (const char* const id : {"HDR1", "TLST", "ELST", "PLST", "LLST", "ALST"}) {
    const std::size_t at = file.find(id);
    ASSERT_NE(at, std::string::npos) << id;
    EXPECT_GT(at, before) << id;
    before = at;
  }
}

TEST_F(ChunkedExport, NamesOf20CharactersComeBackWith15) {
  CGenericEdlEntry& entry = add_entry(root, 0, 1);
  entry.set_source_reel_name(u"abcdefghijklmnopqrst");
  ASSERT_EQ(import(written()), result::import_complete);
  EXPECT_EQ(utf8(field_text(entries_of(*edl)[0]->source_reel_name)),
            "abcdefghijklmno" + std::string(17, ' '));
}

TEST_F(ChunkedExport, EntryWithoutStreams) {
  add_entry(root, 0, 1, {});
  EXPECT_EQ(body_of(written(), "EDLE").substr(48, 10),
            joined({le16(0), le16(0), le32(0), le16(65535)}));
}

TEST_F(ChunkedExport, EntryFlagsAndTimes) {
  CGenericEdlEntry& entry = add_entry(root, 96000, 120000, {4, 5});
  entry.chunk_flags = 5;
  entry.channel_offset = 1;
  entry.gain_left = 0.5F;
  entry.dest_length = 7;
  const std::string body = body_of(written(), "EDLE");
  EXPECT_EQ(body.substr(16, 4), from_hex("00 77 01 00"));
  EXPECT_EQ(body.substr(24, 4), from_hex("C0 5D 00 00"));
  EXPECT_EQ(body.substr(40, 4), le32(7));
  EXPECT_EQ(body.substr(44, 4), from_hex("00 00 00 3F"));
  EXPECT_EQ(body.substr(50, 10), joined({le16(2), le32(5), le16(4), le16(1)}));
}

TEST_F(ChunkedExport, ChannelsOfOneSourceShareItsTrack) {
  for (std::uint16_t channel = 0; channel < 3; ++channel) {
    CGenericEdlEntry& entry = add_entry(root, channel, channel + 1);
    entry.set_clip_name(u"stereo");
    entry.no_channels = 2;
    entry.first_channel = channel;
  }
  const std::string file = written();
  EXPECT_EQ(count_of(file, "TLST"), 2U);
  EXPECT_EQ(body_of(file, "EDLE", 0).substr(48, 2), le16(0));
  EXPECT_EQ(body_of(file, "EDLE", 1).substr(48, 2), le16(0));
  EXPECT_EQ(body_of(file, "EDLE", 2).substr(48, 2), le16(1));
}

TEST_F(ChunkedExport, TwinsShareATrackAndTheFirstOnesTexts) {
  const auto [first, second] = add_twins();
  first->set_file_path(u"/first");
  second->set_file_path(u"/second");
  second->source_index = 3;
  EXPECT_EQ(track_count(), 1U);
  EXPECT_EQ(body_of(written(), "TRAK").substr(72, 6), "/first");
}

TEST_F(ChunkedExport, WhatPartsTwins) {
  struct Row {
    const char* name;
    void (*change)(CGenericEdlEntry&);
  };
  const Row rows[] = {
      {"clip name", [](CGenericEdlEntry& e) { e.set_clip_name(u"CLIP"); }},
      {"reel name", [](CGenericEdlEntry& e) { e.set_reel_name(u"other"); }},
      {"time word", [](CGenericEdlEntry& e) { e.source_time_word = 1; }},
      {"source channel", [](CGenericEdlEntry& e) { e.source_channel = 1; }},
      {"wide source channel", [](CGenericEdlEntry& e) { e.source_channel = 65536; }},
      {"time stamp", [](CGenericEdlEntry& e) { e.source_timestamp = 6; }},
      {"first channel", [](CGenericEdlEntry& e) { e.first_channel = 1; }},
  };
  const auto [first, second] = add_twins();
  static_cast<void>(first);
  for (const Row& row : rows) {
    row.change(*second);
    EXPECT_EQ(track_count(), 2U) << row.name;
    second->set_clip_name(u"clip");
    second->set_reel_name(u"reel");
    second->source_time_word = 0;
    second->source_channel = 0;
    second->source_timestamp = 5;
    second->first_channel = 0;
    EXPECT_EQ(track_count(), 1U) << row.name;
  }
}

TEST_F(ChunkedExport, ReelsThatDifferOnlyInCaseAreOne) {
  const auto [first, second] = add_twins();
  second->set_reel_name(u"REEL");
  EXPECT_EQ(second->reel, first->reel);
  EXPECT_EQ(track_count(), 1U);
}

TEST_F(ChunkedExport, ClipNamesAreComparedOver100Characters) {
  const auto [first, second] = add_twins();
  const std::u16string head(100, u'n');
  first->set_clip_name((head + u"1").c_str());
  second->set_clip_name((head + u"2").c_str());
  EXPECT_EQ(track_count(), 1U);
  second->set_clip_name((head.substr(1) + u"x2").c_str());
  EXPECT_EQ(track_count(), 2U);
}

TEST_F(ChunkedExport, ReelNamesOf12Characters) {
  const auto [first, second] = add_twins();
  first->set_reel_name(u"ABCDEFGHIJKL");
  second->set_reel_name(u"ABCDEFGHIJKL");
  const std::string file = written();
  EXPECT_EQ(count_of(file, "TLST"), 1U);
  EXPECT_EQ(body_of(file, "TRAK").substr(200, 12), "ABCDEFGHIJK" + zeros(1));
}

TEST_F(ChunkedExport, EntriesWithoutChannelsNeverShare) {
  const auto [first, second] = add_twins();
  first->no_channels = second->no_channels = 0;
  EXPECT_EQ(track_count(), 2U);
}

TEST_F(ChunkedExport, Locators) {
  add_locator(root, 4800, u"Cue 1", 3);
  add_locator(root, 1, u"LEFT_LOCATOR\t\t\t", 0);
  add_locator(root, 2, u"RIGHT_LOCATOR\t\t", 0);
  add_locator(root, 3, u"LEFT_LOCATOR", 0);
  ASSERT_EQ(import(written()), result::import_complete);
  const auto back = locators_of(*edl);
  ASSERT_EQ(back.size(), 2U);
  EXPECT_EQ(back[0]->time, 4800);
  EXPECT_EQ(utf8(back[0]->name.view()), "Cue 1");
  EXPECT_EQ(back[0]->locator_value, 3);
  EXPECT_EQ(utf8(back[1]->name.view()), "LEFT_LOCATOR");
}

TEST_F(ChunkedExport, AutomationCountsThePointsThatAreThere) {
  add_automation(root, 1, 2, {{1, 2}, {3, 4}}).no_points = 99;
  add_automation(root, 1, 3, {}).no_points = 99;
  CGenericAutomationChunk& bare = add_automation(root, 1, 4, {});
  delete bare.points;
  bare.points = nullptr;
  ASSERT_EQ(import(written()), result::import_complete);
  const auto back = automation_of(*edl);
  ASSERT_EQ(back.size(), 3U);
  EXPECT_EQ(back[0]->no_points, 2U);
  EXPECT_EQ(back[1]->no_points, 0U);
  EXPECT_EQ(back[2]->no_points, 0U);
  ASSERT_NE(back[2]->points, nullptr);
}

TEST_F(ChunkedExport, SizesAreWrittenIn16Bits) {
  const auto points = [](int count) {
    std::vector<std::pair<std::int64_t, std::int64_t>> list;
    for (int i = 0; i < count; ++i)
      list.emplace_back(i, i);
    return list;
  };
  struct Row {
    int count;
    std::uint32_t size;
    result_code back;
  };
  for (const Row& row : {Row{8190, 65528, result::import_complete}, Row{8191, 0, result::damaged},
                         Row{8192, 8, result::damaged}}) {
    CGenericEdl edl_of_points;
    set_rates(edl_of_points);
    add_automation(edl_of_points, 0, 0, points(row.count));
    const std::string file = exported(edl_of_points);
    EXPECT_EQ(size_of(file, "AUTO"), row.size);
    EXPECT_EQ(size_of(file, "ALST"), 4 + 12 + row.size);
    EXPECT_EQ(body_of(file, "AUTO").size(), 8 + 8 * static_cast<std::size_t>(row.count));
    EXPECT_EQ(import(file), row.back);
  }
}

TEST_F(ChunkedExport, LocatorSizesAreWrittenIn16Bits) {
  for (int i = 0; i < 2730; ++i)
    add_locator(root, i, u"x", 0);
  std::string file = written();
  EXPECT_EQ(size_of(file, "LCTR"), 65524U);
  EXPECT_EQ(import(file), result::import_complete);
  EXPECT_EQ(locators_of(*edl).size(), 2730U);
  add_locator(root, 0, u"x", 0);
  file = written();
  EXPECT_EQ(size_of(file, "LCTR"), 12U);
  EXPECT_EQ(import(file), result::damaged);
}

TEST_F(ChunkedExport, LocatorCountWrapsAndTheBodyFollowsIt) {
  for (int i = 0; i < 65537; ++i)
    add_locator(root, i, u"x", 0);
  const std::string file = written();
  EXPECT_EQ(size_of(file, "LCTR"), 28U);
  ASSERT_EQ(import(file), result::import_complete);
  EXPECT_EQ(locators_of(*edl).size(), 1U);
}

TEST_F(ChunkedExport, DiscTextsStandBehindTheEntries) {
  set_disc_texts(1);
  add_pq_entry(root);
  PQ_DETAILS details;
  root.get_pq_details(&details);
  for (int i = 0; i < pq_text_count; ++i)
    set_field(details.pq_text[i], std::u16string(1, static_cast<wide_char>(u'a' + i)));
  details.pq_word = 77;
  root.set_pq_details(&details);
  const std::string file = written();
  EXPECT_EQ(size_of(file, "PLST"), 1108U);
  EXPECT_EQ(count_of(file, "PLST"), 3U);
  EXPECT_EQ(body_of(file, "PQDC").substr(896, 4), le16(77) + le16(0));
  ASSERT_EQ(import(file), result::import_complete);
  PQ_DETAILS back;
  edl->get_pq_details(&back);
  EXPECT_EQ(utf8(field_text(back.pq_text[6])), "g");
  EXPECT_EQ(back.pq_word, 77);
}

TEST_F(ChunkedExport, DiscTextsWithoutEntriesMakeABrokenFile) {
  set_disc_texts(1);
  PQ_DETAILS details;
  root.get_pq_details(&details);
  set_field(details.pq_text[0], u"one");
  set_field(details.pq_text[1], u"two");
  root.set_pq_details(&details);
  const std::string file = written();
  const std::string expected =
      joined({// list: 4 + 12 + 16 + 12 + 900
              std::string("PLST"), le16(0), le16(0), le32(944), le32(2), pq_header_item(0),
              // the texts under the id of an entry, with their own size
              std::string("PQEC"), le16(0), le16(0), le32(900),
              // but only 152 bytes of them
              text("one", 128), text("two", 24), std::string("LLST")});
  const std::size_t at = file.find("PLST");
  ASSERT_NE(at, std::string::npos);
  EXPECT_TRUE(same_bytes(file.substr(at, expected.size()), expected));
  EXPECT_EQ(import(file), result::damaged);
}

TEST_F(ChunkedExport, PqCountWrapsAndAllComeBack) {
  for (int i = 0; i < 65536; ++i)
    add_pq_entry(root);
  const std::string file = written();
  EXPECT_EQ(body_of(file, "PQHC").substr(14, 2), le16(0));
  ASSERT_EQ(import(file), result::import_complete);
  EXPECT_EQ(pq_of(*edl).size(), 65536U);
}

TEST_F(ChunkedExport, VersionsAreConstants) {
  ASSERT_EQ(import(chunk_file(
                {list_chunk("TLST", {track_item(0, 1)}), list_chunk("ELST", {entry_item()})})),
            result::import_complete);
  const std::string file = exported(*edl);
  EXPECT_EQ(file.substr(file.find("TRAK") + 4, 4), le16(0) + le16(2));
}

TEST_F(ChunkedExport, TheSameObjectMayExportTwice) {
  fill_chunk_small(root);
  CGenericEDLFile format(&root);
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(format.export_edl(folder.wide_file("out"), 0), result::done);
    EXPECT_TRUE(
        same_bytes(support::read_file(folder.file("out")), golden_bytes("chunk_small.hex")));
  }
}

TEST_F(ChunkedExport, MoreTracksThanNumbers) {
  // 65537 sources: the last one's number wraps to that of the first.
  for (int i = 0; i < 65537; ++i) {
    CGenericEdlEntry& entry = add_entry(root, i, i + 1);
    entry.source_timestamp = i;
  }
  const std::string file = written();
  const std::size_t list = file.find("ELST");
  const std::string last = file.substr(list + 16 + 72 * std::size_t{65536} + 12, 60);
  EXPECT_EQ(last.substr(16, 4), le32(65536));
  EXPECT_EQ(last.substr(48, 2), le16(0));
}

}  // namespace
