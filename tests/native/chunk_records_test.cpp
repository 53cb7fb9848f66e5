// Records against their bytes, one by one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "native/chunk_header.h"
#include "native/generic_edl_file_chunks.h"
#include "tests/native/bytes.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"

using namespace native_test;  // NOLINT
using support::same_bytes;
using support::utf8;
using testing::ElementsAre;

namespace {

template <class Chunk>
std::string body_of(const Chunk& chunk) {
  std::string record;
  chunk.to_file_record(record);
  return record;
}

// Reads one item, header and body; answers what read_from_buffer answered.
template <class Chunk>
int read_item(Chunk& record, std::string_view item, std::string_view* rest = nullptr) {
  const ChunkHeader header = native::read_chunk_header(item.data());
  std::string_view cursor = item.substr(native::chunk_header_size);
  const int result = record.read_from_buffer(cursor, header);
  if (rest != nullptr) *rest = cursor;
  return result;
}

TEST(ChunkId, FourPrintableCharactersWithBlanksOnlyAtTheEnd) {
  for (const std::string_view id : {"ABCD", "ABC ", "A   ", "    ", "AB~ "})
    EXPECT_TRUE(is_chunk_id(id)) << id;
  for (const std::string_view id : {" ABC", "A BC", "AB C", "ABC\x7F",
                                    "AB\x1F"
                                    "C",
                                    "\x80"
                                    "ABC"})
    EXPECT_FALSE(is_chunk_id(id)) << id;
  EXPECT_FALSE(is_chunk_id(std::string_view("ABC\0", 4)));
  EXPECT_FALSE(is_chunk_id("ABC"));
}

TEST(ChunkHeader, TwelveBytesThatTheSizeDoesNotCount) {
  std::string bytes(12, '?');
  native::write_chunk_header(bytes.data(), "EDLE", 0, 60);
  EXPECT_TRUE(same_bytes(bytes, from_hex("45 44 4C 45  00 00  00 00  3C 00 00 00")));
  const ChunkHeader header =
      native::read_chunk_header(chunk("ABCD", zeros(5), 0x102, 0x304).data());
  EXPECT_EQ(header.id_text(), "ABCD");
  EXPECT_EQ(header.major, 0x102);
  EXPECT_EQ(header.minor, 0x304);
  EXPECT_EQ(header.size, 5U);
}

TEST(ChunkRecords, TypesAndSizes) {
  EXPECT_EQ(CGenericEDLFileEntry().chunk_type(), 1);
  EXPECT_EQ(CGenericEDLFileEntry().chunk_size(), 60U);
  EXPECT_EQ(CGenericEDLFileTrack().chunk_type(), 2);
  EXPECT_EQ(CGenericEDLFileTrack().chunk_size(), 260U);
  CGenericEDLFileLocatorEntryChunk locators;
  EXPECT_EQ(locators.chunk_type(), 3);
  EXPECT_EQ(locators.chunk_size(), 4U);
  locators.m_count = 3;
  EXPECT_EQ(locators.chunk_size(), 4U + 72);
  EXPECT_EQ(CGenericEDLFilePQHeaderChunk().chunk_type(), 4);
  EXPECT_EQ(CGenericEDLFilePQHeaderChunk().chunk_size(), 16U);
  EXPECT_EQ(CGenericEDLFilePQEntryChunk().chunk_type(), 5);
  EXPECT_EQ(CGenericEDLFilePQEntryChunk().chunk_size(), 152U);
  EXPECT_EQ(CGenericEDLFilePQDetailsChunk().chunk_type(), 6);
  EXPECT_EQ(CGenericEDLFilePQDetailsChunk().chunk_size(), 900U);
  CGenericEDLFileAutomationEntryChunk automation;
  EXPECT_EQ(automation.chunk_type(), 7);
  EXPECT_EQ(automation.chunk_size(), 8U);
  automation.m_count = 5;
  EXPECT_EQ(automation.chunk_size(), 48U);
}

TEST(ChunkRecords, NewOnes) {
  const CGenericEDLFileEntry entry;
  EXPECT_EQ(entry.m_level, 1.0F);
  EXPECT_EQ(entry.m_track_index, 65535);
  EXPECT_EQ(entry.m_dest_in, 0);
  EXPECT_EQ(entry.m_third_position, 0);
  EXPECT_EQ(entry.m_crossfade_in, 0U);
  EXPECT_EQ(entry.m_crossfade_out, 0U);
  EXPECT_EQ(entry.m_clean, 1U);
  const CGenericEDLFileTrack track;
  EXPECT_EQ(track.m_index, 65535);
  EXPECT_EQ(track.m_source_type, 65535);
  EXPECT_EQ(track.m_first_channel, 65535);
  EXPECT_EQ(track.m_source_time_word, 4294967295U);
  EXPECT_EQ(track.m_time_stamp, 0x7FFFFFFFFFFFFFFF);
  EXPECT_EQ(track.m_no_channels, 0);
  EXPECT_EQ(track.m_source_word, 0U);
  EXPECT_EQ(track.m_source_object, nullptr);
  EXPECT_TRUE(track.get_file_name().empty());
  EXPECT_EQ(utf8(CGenericEDLFilePQHeaderChunk().get_catalogue()), "0000000000000");
  const CGenericEDLFileAutomationEntryChunk automation;
  EXPECT_EQ(automation.m_parameter, 65535);
  EXPECT_EQ(automation.m_channel, 65535);
  EXPECT_EQ(automation.m_count, 0U);
  EXPECT_EQ(automation.m_points, nullptr);
}

TEST(ChunkRecords, SettersCutAtTheField) {
  const std::u16string longer(300, u'x');
  CGenericEDLFileEntry entry;
  entry.set_name(longer);
  EXPECT_EQ(entry.get_name().size(), 31U);
  CGenericEDLFileTrack track;
  track.set_file_name(longer);
  track.set_path(longer);
  track.set_reel_name(longer);
  track.set_originator(longer);
  track.set_originator_reference(longer);
  EXPECT_EQ(track.get_file_name().size(), 127U);
  EXPECT_EQ(track.get_path().size(), 255U);
  EXPECT_EQ(track.get_reel_name().size(), 11U);
  EXPECT_EQ(track.get_originator().size(), 31U);
  EXPECT_EQ(track.get_originator_reference().size(), 32U);
  CGenericEDLFileLocatorEntry locator;
  locator.set_name(longer);
  EXPECT_EQ(locator.get_name().size(), 16U);
  locator.set_name(u"short");
  EXPECT_EQ(utf8(locator.get_name()), "short");
  CGenericEDLFilePQHeaderChunk header;
  header.set_catalogue(longer);
  EXPECT_EQ(header.get_catalogue().size(), 13U);
  CGenericEDLFilePQEntryChunk pq;
  pq.set_text_a(longer);
  pq.set_text_c(longer);
  pq.set_isrc(longer);
  EXPECT_EQ(pq.get_text_a().size(), 31U);
  EXPECT_EQ(pq.get_text_c().size(), 63U);
  EXPECT_EQ(pq.get_isrc().size(), 12U);
  CGenericEDLFilePQDetailsChunk details;
  details.set_details(6, longer);
  EXPECT_EQ(details.get_details(6).size(), 128U);
}

class ChunkRecordsUnderHost : public testing::Test {
 protected:
  // The numbers of the warnings shown since the last call, by their text ids.
  std::vector<std::string> warnings() {
    std::vector<std::string> bodies = host.boxes.report_bodies();
    host.boxes.shown.clear();
    return bodies;
  }

  support::ScriptedHost host;
};

TEST_F(ChunkRecordsUnderHost, WarningTextsByNumber) {
  constexpr const char* ids[] = {"23872", "23873", "23874", "23875", "23876", "23877",
                                 "23878", "23879", "23880", "23881", "23884"};
  for (int number = 0; number < 11; ++number)
    report_chunk_warning(number);
  report_chunk_warning(-1);
  report_chunk_warning(11);
  ASSERT_EQ(host.boxes.shown.size(), 11U);
  for (std::size_t number = 0; number < 11; ++number) {
    EXPECT_EQ(host.boxes.shown[number].title, "[23882]");
    EXPECT_EQ(host.boxes.shown[number].body, std::string("[") + ids[number] + "]\n\n[23883]");
  }
}

TEST_F(ChunkRecordsUnderHost, WarningTextsAreCutAt299Characters) {
  host.texts.texts[23873] = std::u16string(400, u'a');
  host.texts.texts[23883] = std::u16string(400, u'b');
  report_chunk_warning(1);
  EXPECT_EQ(host.boxes.shown[0].body, std::string(299, 'a') + "\n\n" + std::string(299, 'b'));
}

TEST_F(ChunkRecordsUnderHost, CheckChunkHeaderAnswersTheSizeAndWarnsOfEachVersion) {
  CGenericEDLFileTrack track;
  EXPECT_EQ(track.check_chunk_header(native::read_chunk_header(track_item(0, 2).data())), 260U);
  EXPECT_TRUE(warnings().empty());
  EXPECT_EQ(track.check_chunk_header(native::read_chunk_header(track_item(1, 3).data())), 260U);
  EXPECT_THAT(warnings(), ElementsAre("[23876]\n\n[23883]", "[23876]\n\n[23883]"));
  EXPECT_EQ(track.m_major, 1);
  EXPECT_EQ(track.m_minor, 3);
  EXPECT_EQ(track.check_chunk_header(native::read_chunk_header(entry_item().data())), 0U);
  EXPECT_TRUE(warnings().empty());
}

TEST_F(ChunkRecordsUnderHost, ReadingLeavesTheCursorBehindTheBodyOrUnmoved) {
  std::string_view rest;
  CGenericEDLFileEntry entry;
  const std::string good = entry_item() + "behind";
  EXPECT_EQ(read_item(entry, good, &rest), 1);
  EXPECT_EQ(rest, "behind");
  // A header that counts 61.
  const std::string wrong = patched(entry_item() + "x", 8, le32(61));
  EXPECT_EQ(read_item(entry, wrong, &rest), 0);
  EXPECT_EQ(rest.size(), 61U);
  // A body that is cut, under a header that is right.
  const std::string cut = entry_item().substr(0, 12 + 59);
  EXPECT_EQ(read_item(entry, cut, &rest), 0);
  EXPECT_EQ(rest.size(), 59U);
  CGenericEDLFileTrack track;
  EXPECT_EQ(read_item(track, good, &rest), 0);
}

TEST_F(ChunkRecordsUnderHost, EntryBytes) {
  CGenericEDLFileEntry entry;
  entry.set_name(u"Dialogue take 12 B");
  entry.m_dest_in = 96000;
  entry.m_source_in = 48000;
  entry.m_length = 24000;
  entry.m_fade_in_curve = 2;
  entry.m_fade_in_length = 480;
  entry.m_fade_out_length = 240;
  entry.m_third_position = time_not_given;
  entry.m_track_index = 0;
  entry.m_stream_count = 1;
  EXPECT_TRUE(same_bytes(body_of(entry), entry_body()));
  entry.m_level = 0.5F;
  entry.m_flags = 5;
  entry.m_channel_offset = 1;
  entry.m_third_position = 7;
  std::string expected = patched(entry_body(), 44, from_hex("00 00 00 3F"));
  expected = patched(expected, 52, from_hex("05 00 00 00"));
  expected = patched(expected, 58, from_hex("01 00"));
  expected = patched(expected, 40, from_hex("07 00 00 00"));
  EXPECT_TRUE(same_bytes(body_of(entry), expected));
}

TEST_F(ChunkRecordsUnderHost, EntryNameKeeps15Characters) {
  CGenericEDLFileEntry entry;
  EXPECT_TRUE(same_bytes(body_of(entry).substr(0, 16), zeros(16)));
  // As an entry pads its name.
  entry.set_name(u"ABC                             ");
  EXPECT_TRUE(same_bytes(body_of(entry).substr(0, 16), "ABC            " + zeros(1)));
}

TEST_F(ChunkRecordsUnderHost, EntryNameIsWidenedWithItsSign) {
  CGenericEDLFileEntry entry;
  ASSERT_EQ(read_item(entry, chunk("EDLE", patched(entry_body(), 0,
                                                   "\x80"
                                                   "A" +
                                                       zeros(14)))),
            1);
  EXPECT_EQ(entry.m_name[0], 0xFF80);
  EXPECT_EQ(entry.m_name[1], 0x0041);
  EXPECT_EQ(entry.m_name[2], 0);
  ASSERT_EQ(read_item(entry, chunk("EDLE", patched(entry_body(), 0, "0123456789ABCDEF"))), 1);
  EXPECT_EQ(utf8(entry.get_name()), "0123456789ABCDEF");
}

TEST_F(ChunkRecordsUnderHost, EntryWordsWidenWithZeros) {
  CGenericEDLFileEntry entry;
  std::string body = patched(entry_body(), 16, le32(0xFFFFFFFF));
  body = patched(body, 28, le16(0xFFFF));
  body = patched(body, 30, le16(0xFFFF));
  ASSERT_EQ(read_item(entry, chunk("EDLE", body)), 1);
  EXPECT_EQ(entry.m_dest_in, 4294967295);
  EXPECT_EQ(entry.m_fade_in_curve, 0);
  EXPECT_EQ(entry.m_fade_out_curve, 0);
  EXPECT_EQ(entry.m_third_position, time_not_given);
  ASSERT_EQ(read_item(entry, chunk("EDLE", patched(body, 40, le32(7)))), 1);
  EXPECT_EQ(entry.m_third_position, 7);
}

TEST_F(ChunkRecordsUnderHost, TrackBytes) {
  CGenericEDLFileTrack track;
  track.m_index = 0;
  track.set_file_name(u"TAKE12");
  track.m_source_type = 11;
  track.m_source_time_word = 0;
  track.set_path(u"//C:/audio/TAKE12");
  track.set_reel_name(u"REEL1");
  track.m_first_channel = 0;
  track.m_time_stamp = 1000;
  track.m_no_channels = 1;
  track.set_originator(u"MARLO");
  track.m_source_word = 7;
  // Never in the file.
  track.set_originator_reference(u"reference");
  track.m_major = 9;
  track.m_minor = 9;
  EXPECT_TRUE(same_bytes(body_of(track), track_body()));
}

TEST_F(ChunkRecordsUnderHost, TrackPassesWordsThrough) {
  CGenericEDLFileTrack track;
  std::string body = patched(track_body(), 68, le32(0xFFFFFFFF));
  body = patched(body, 216, le32(0xFFFFFFFF));
  body = patched(body, 256, le32(0x80000000));
  ASSERT_EQ(read_item(track, chunk("TRAK", body, 0, 2)), 1);
  EXPECT_EQ(track.m_source_time_word, 4294967295U);
  // Not taken for "unknown", as the third position of an entry is.
  EXPECT_EQ(track.m_time_stamp, 4294967295);
  EXPECT_EQ(track.m_source_word, 0x80000000U);
  EXPECT_TRUE(same_bytes(body_of(track), body));
  EXPECT_TRUE(same_bytes(body_of(CGenericEDLFileTrack()).substr(216, 4), le32(0xFFFFFFFF)));
}

TEST_F(ChunkRecordsUnderHost, TrackMembersByMinorVersion) {
  struct Row {
    unsigned minor;
    unsigned channels;
    std::string originator;
    std::uint32_t word;
    std::size_t boxes;
  };
  const Row rows[] = {{0, 0, "", 0, 0}, {1, 2, "", 0, 0}, {2, 2, "X", 9, 0}, {3, 0, "", 0, 1}};
  std::string body = patched(track_body(), 220, le16(2));
  body = patched(body, 224, text("X", 32));
  body = patched(body, 256, le32(9));
  for (const Row& row : rows) {
    CGenericEDLFileTrack track;
    ASSERT_EQ(read_item(track, chunk("TRAK", body, 0, row.minor)), 1);
    EXPECT_EQ(track.m_no_channels, row.channels) << row.minor;
    EXPECT_EQ(utf8(track.get_originator()), row.originator) << row.minor;
    EXPECT_EQ(track.m_source_word, row.word) << row.minor;
    EXPECT_EQ(warnings().size(), row.boxes) << row.minor;
    EXPECT_EQ(utf8(track.get_file_name()), "TAKE12") << row.minor;
  }
}

TEST_F(ChunkRecordsUnderHost, FullTextFieldsHaveNoTerminator) {
  const std::string name(64, 'n');
  const std::string path(128, 'p');
  std::string body = patched(track_body(), 2, name);
  body = patched(body, 72, path);
  body = patched(body, 200, "ABCDEFGHIJKL");
  body = patched(body, 224, std::string(32, 'o'));
  CGenericEDLFileTrack track;
  ASSERT_EQ(read_item(track, chunk("TRAK", body, 0, 2)), 1);
  EXPECT_EQ(utf8(track.get_file_name()), name);
  EXPECT_EQ(utf8(track.get_path()), path);
  EXPECT_EQ(utf8(track.get_reel_name()), "ABCDEFGHIJK");
  EXPECT_EQ(utf8(track.get_originator()), std::string(31, 'o'));
  track.set_file_name(std::u16string(100, u'n'));
  track.set_path(std::u16string(200, u'p'));
  EXPECT_TRUE(same_bytes(body_of(track).substr(2, 64), name));
  EXPECT_TRUE(same_bytes(body_of(track).substr(72, 128), path));
}

TEST_F(ChunkRecordsUnderHost, EmptyFileNameComesFromThePath) {
  const std::pair<const char*, const char*> rows[] = {
      {"a/b/c", "c"}, {"a\\b\\c", ""}, {"a/b/", ""}, {"", ""}};
  for (const auto& [path, name] : rows) {
    CGenericEDLFileTrack track;
    const std::string body = patched(patched(track_body(), 2, zeros(64)), 72, text(path, 128));
    ASSERT_EQ(read_item(track, chunk("TRAK", body, 0, 2)), 1);
    EXPECT_EQ(utf8(track.get_file_name()), name) << path;
  }
}

TEST_F(ChunkRecordsUnderHost, TextsGoThroughTheCodePage) {
  CGenericEDLFileTrack track;
  track.set_file_name(u"\u20AC\u00E9\u4E00");
  EXPECT_TRUE(same_bytes(body_of(track).substr(2, 5), "\x80\xE9?" + zeros(2)));
  ASSERT_EQ(read_item(track, chunk("TRAK", patched(track_body(), 2, "\x80\xE9" + zeros(1)))), 1);
  EXPECT_EQ(track.get_file_name(), u"\u20AC\u00E9");
}

TEST_F(ChunkRecordsUnderHost, CodePagesOfSeveralBytesAreCutAtTheField) {
  host.page = &utf8_code_page();
  CGenericEDLFileTrack track;
  track.set_reel_name(u"\u00E9\u00E9\u00E9\u00E9\u00E9\u00E9\u00E9");
  // Seven characters of two bytes each in a field of twelve.
  EXPECT_TRUE(same_bytes(body_of(track).substr(200, 12),
                         "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"));
  ASSERT_EQ(read_item(track, chunk("TRAK", patched(track_body(), 200, "\xC3\xA9" + zeros(10)))), 1);
  EXPECT_EQ(track.get_reel_name(), u"\u00E9");
}

TEST_F(ChunkRecordsUnderHost, LocatorBytes) {
  CGenericEDLFileLocatorEntryChunk chunk_record;
  auto* const added = new CGenericEDLFileLocatorEntry;
  chunk_record.m_locators.AddTail(added);
  added->m_time = 4800;
  added->set_name(u"Cue 1");
  added->m_locator_value = 3;
  chunk_record.m_count = 1;
  const std::string body = joined({le16(1), le16(0), locator(4800, "Cue 1", 3)});
  EXPECT_TRUE(same_bytes(body_of(chunk_record), body));

  CGenericEDLFileLocatorEntryChunk read;
  const std::string full =
      joined({le16(1), le16(0xFFFF), locator(0xFFFFFFFF, "0123456789ABCDEF", 0xFFFF)});
  ASSERT_EQ(read_item(read, chunk("LCTR", full)), 1);
  ASSERT_EQ(read.m_locators.GetCount(), 1);
  const auto* const back = static_cast<CGenericEDLFileLocatorEntry*>(read.m_locators.GetHead());
  EXPECT_EQ(back->m_time, 4294967295);
  EXPECT_EQ(utf8(back->get_name()), "0123456789ABCDEF");
  EXPECT_EQ(back->m_locator_value, 65535);
}

TEST_F(ChunkRecordsUnderHost, LocatorCountMustFitTheSize) {
  const std::string one = locator(0, "", 0);
  CGenericEDLFileLocatorEntryChunk a;
  EXPECT_EQ(read_item(a, chunk("LCTR", joined({le16(2), le16(0), one}))), 0);
  CGenericEDLFileLocatorEntryChunk b;
  EXPECT_EQ(read_item(b, chunk("LCTR", joined({le16(0), le16(0), one}))), 0);
  CGenericEDLFileLocatorEntryChunk c;
  EXPECT_EQ(read_item(c, chunk("LCTR", "")), 0);
  CGenericEDLFileLocatorEntryChunk d;
  EXPECT_EQ(read_item(d, chunk("LCTR", zeros(4))), 1);
  EXPECT_TRUE(d.m_locators.IsEmpty());
}

TEST_F(ChunkRecordsUnderHost, PqHeaderBytes) {
  CGenericEDLFilePQHeaderChunk header;
  header.m_count = 2;
  EXPECT_TRUE(same_bytes(body_of(header), pq_header_body(2)));
  header.set_catalogue(u"5012345678900");
  const std::string body = patched(pq_header_body(2), 0, "5012345678900");
  EXPECT_TRUE(same_bytes(body_of(header), body));
  CGenericEDLFilePQHeaderChunk read;
  ASSERT_EQ(read_item(read, chunk("PQHC", body)), 1);
  EXPECT_EQ(utf8(read.get_catalogue()), "5012345678900");
  EXPECT_EQ(read.m_count, 2);
}

TEST_F(ChunkRecordsUnderHost, PqEntryBytes) {
  CGenericEDLFilePQEntryChunk entry;
  entry.m_time = 96000;
  entry.m_track_number = 1;
  entry.m_index_number = 1;
  entry.set_text_a(u"Title");
  entry.set_text_b(u"Artist");
  entry.m_flag_a = 1;
  entry.set_isrc(u"GBAAA0012345");
  entry.set_text_c(u"Note");
  EXPECT_TRUE(same_bytes(body_of(entry), pq_entry_body()));

  std::string body = patched(pq_entry_body(), 8, std::string(32, 'a'));
  body = patched(body, 72, le16(0x0101));
  body = patched(body, 88, std::string(64, 'c'));
  CGenericEDLFilePQEntryChunk read;
  ASSERT_EQ(read_item(read, chunk("PQEC", body)), 1);
  EXPECT_EQ(read.m_time, 96000);
  EXPECT_EQ(utf8(read.get_text_a()), std::string(31, 'a'));
  EXPECT_EQ(utf8(read.get_text_b()), "Artist");
  EXPECT_EQ(utf8(read.get_isrc()), "GBAAA0012345");
  EXPECT_EQ(utf8(read.get_text_c()), std::string(63, 'c'));
  EXPECT_EQ(read.m_flag_a, 257U);
}

TEST_F(ChunkRecordsUnderHost, PqDetailsBytes) {
  CGenericEDLFilePQDetailsChunk details;
  const char16_t* const texts[] = {u"one", u"two", u"three", u"four", u"five", u"six", u"seven"};
  for (int i = 0; i < 7; ++i)
    details.set_details(i, texts[i]);
  details.m_value = 0x1234;
  EXPECT_EQ(pq_details_body().size(), 900U);
  EXPECT_TRUE(same_bytes(body_of(details), pq_details_body()));
  CGenericEDLFilePQDetailsChunk read;
  ASSERT_EQ(read_item(read, chunk("PQDC", patched(pq_details_body(), 128, std::string(128, 'x')))),
            1);
  EXPECT_EQ(utf8(read.get_details(0)), "one");
  EXPECT_EQ(utf8(read.get_details(1)), std::string(128, 'x'));
  EXPECT_EQ(utf8(read.get_details(6)), "seven");
  EXPECT_EQ(read.m_value, 0x1234);
}

TEST_F(ChunkRecordsUnderHost, AutomationBytes) {
  CGenericEDLFileAutomationEntryChunk run;
  run.m_parameter = 0;
  run.m_channel = 1;
  for (const auto& [time, value] : {std::pair{0, 384U}, std::pair{96000, 324U}}) {
    auto* const point = new CGenericEDLFileAutomationEntry;
    run.points().AddTail(point);
    point->m_time = time;
    point->m_value = value;
  }
  run.m_count = 2;
  const std::string body =
      joined({le16(0), le16(1), le32(2), le32(0), le32(384), le32(96000), le32(324)});
  EXPECT_TRUE(same_bytes(body_of(run), body));
  CGenericEDLFileAutomationEntryChunk read;
  ASSERT_EQ(read_item(read, chunk("AUTO", body)), 1);
  EXPECT_EQ(read.m_count, 2U);
  ASSERT_EQ(read.m_points->GetCount(), 2);
  EXPECT_EQ(static_cast<CGenericEDLFileAutomationEntry*>(read.m_points->GetTail())->m_value, 324U);
}

TEST_F(ChunkRecordsUnderHost, AutomationCountMustFitTheSize) {
  const auto body = [](std::uint32_t count, std::size_t points) {
    return joined({le16(0), le16(1), le32(count), zeros(8 * points)});
  };
  CGenericEDLFileAutomationEntryChunk a;
  EXPECT_EQ(read_item(a, chunk("AUTO", body(3, 2))), 0);
  CGenericEDLFileAutomationEntryChunk b;
  EXPECT_EQ(read_item(b, chunk("AUTO", "")), 0);
  CGenericEDLFileAutomationEntryChunk c;
  EXPECT_EQ(read_item(c, chunk("AUTO", body(0, 0))), 1);
  EXPECT_TRUE(c.m_points->IsEmpty());
  // 8 + 8 x 2^29 is 8 in 32 bits.
  CGenericEDLFileAutomationEntryChunk d;
  EXPECT_EQ(read_item(d, chunk("AUTO", body(0x20000000, 0))), 0);
}

TEST_F(ChunkRecordsUnderHost, TimesAreWrittenByTheirLow32Bits) {
  CGenericEDLFileEntry entry;
  entry.m_dest_in = 0x100000001;
  entry.m_source_in = -1;
  EXPECT_TRUE(same_bytes(body_of(entry).substr(16, 8), le32(1) + le32(0xFFFFFFFF)));
}

}  // namespace
