// Import of the chunked file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/generic_reel.h"
#include "native/generic_edl_file.h"
#include "tests/native/bytes.h"
#include "tests/native/scene.h"
#include "tests/support/faulty_files.h"

using namespace native_test;  // NOLINT
using support::utf8;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ChunkedImport : public testing::Test, protected Scene<CGenericEDLFile> {
 protected:
  // The warning boxes of the last import, each by the id of its first text.
  std::vector<std::string> boxes_of_import(std::string_view bytes) {
    host.boxes.shown.clear();
    EXPECT_EQ(import(bytes), result::import_complete);
    std::vector<std::string> ids;
    for (const std::string& body : host.boxes.report_bodies())
      ids.push_back(body.substr(1, 5));
    return ids;
  }

  void expect_empty_lists() {
    EXPECT_TRUE(edl->get_generic_entry_list()->IsEmpty());
    EXPECT_TRUE(edl->get_pq_list()->IsEmpty());
    EXPECT_TRUE(edl->get_locator_list()->IsEmpty());
    EXPECT_TRUE(edl->get_automation_list()->IsEmpty());
  }

  // Rates as an import left them: sample rate index, frame rate index.
  std::pair<int, int> rates() const { return {edl->sample_rate_index(), edl->frame_rate()}; }
};

// Lists of one item of each kind.
std::string tracks() {
  return list_chunk("TLST", {track_item()});
}
std::string edits() {
  return list_chunk("ELST", {entry_item()});
}
std::string automation_item() {
  return chunk("AUTO", joined({le16(0), le16(1), le32(1), le32(5), le32(6)}));
}
std::string locator_item() {
  return chunk("LCTR", joined({le16(1), le16(0), locator(4800, "Cue 1", 3)}));
}
// An item of an edit with some bytes of its body changed.
std::string edit_with(std::size_t offset, const std::string& patch) {
  return chunk("EDLE", patched(entry_body(), offset, patch));
}
std::string track_with(std::size_t offset, const std::string& patch, unsigned minor = 2) {
  return chunk("TRAK", patched(track_body(), offset, patch), 0, minor);
}
// A head chunk of any size and minor, whose body is `body`.
std::string head_with(std::string_view body, unsigned minor = 1, unsigned major = 0) {
  return chunk("HDR1", body, major, minor);
}
std::string head_body(std::uint32_t rate, unsigned frame_rate, unsigned streams) {
  return joined({le32(rate), le16(frame_rate), le16(streams), zeros(4 * std::size_t{streams})});
}

TEST_F(ChunkedImport, TellsAFileThatCannotBeOpened) {
  CGenericEDLFile file;
  EXPECT_EQ(file.import_edl(folder.wide_file("missing")), result::not_opened);
  EXPECT_EQ(file.import_edl(CString(text_from_utf8(folder.path()))), result::not_opened);
}

TEST_F(ChunkedImport, ReadsTheSmallFile) {
  ASSERT_EQ(import(golden_bytes("chunk_small.hex")), result::import_complete);
  EXPECT_EQ(rates(), (std::pair{2, 1}));
  EXPECT_EQ(edl->highest_stream(), 0);
  ASSERT_EQ(entries_of(*edl).size(), 1U);
  const CGenericEdlEntry& entry = *entries_of(*edl)[0];
  EXPECT_EQ(utf8(field_text(entry.source_reel_name)), "Dialogue take 1" + std::string(17, ' '));
  EXPECT_EQ(entry.dest_in, 96000);
  EXPECT_EQ(entry.dest_out, 120000);
  EXPECT_EQ(entry.source_in, 48000);
  EXPECT_EQ(entry.source_out, 72000);
  EXPECT_EQ(entry.fade_in_length, 480);
  EXPECT_EQ(entry.fade_out_length, 240);
  EXPECT_EQ(entry.fade_in_curve, 2);
  EXPECT_EQ(entry.fade_out_curve, 0);
  EXPECT_EQ(entry.dest_length, time_not_given);
  EXPECT_EQ(entry.gain_left, 1.0F);
  EXPECT_EQ(entry.gain_right, 1.0F);
  EXPECT_EQ(entry.no_streams, 1);
  EXPECT_EQ(entry.get_stream(0), 0);
  EXPECT_EQ(utf8(field_text(entry.clip_name)), "TAKE12");
  EXPECT_EQ(utf8(field_text(entry.file_path)), "//C:/audio/TAKE12");
  ASSERT_NE(entry.reel, nullptr);
  EXPECT_EQ(utf8(field_text(entry.reel->reel_name)), "REEL1");
  // The count is noted before the entry has its reel.
  EXPECT_EQ(entry.reel->no_streams, 0);
  EXPECT_EQ(entry.reel_no_streams, 1);
  EXPECT_EQ(entry.source_timestamp, 1000);
  EXPECT_EQ(entry.source_index, 11);
  EXPECT_EQ(entry.no_channels, 1);
  EXPECT_EQ(entry.first_channel, 0);
  EXPECT_EQ(entry.source_channel, 0U);
  EXPECT_EQ(entry.source_time_word, 0U);
  EXPECT_EQ(utf8(field_text(entry.originator)), "MARLO");
  EXPECT_EQ(entry.source_word, 7U);
  EXPECT_EQ(utf8(field_text(entry.originator_reference)), "");
}

TEST_F(ChunkedImport, ReadsTheSideListsOfTheSmallFile) {
  ASSERT_EQ(import(golden_bytes("chunk_small.hex")), result::import_complete);
  ASSERT_EQ(pq_of(*edl).size(), 1U);
  const CGenericPQEntry& pq = *pq_of(*edl)[0];
  EXPECT_EQ(pq.position_a, 96000);
  EXPECT_EQ(pq.position_b, 96000);
  EXPECT_EQ(pq.track_number, 1);
  EXPECT_EQ(pq.index_number, 1);
  EXPECT_EQ(utf8(pq.first_text.view()), "Title");
  EXPECT_EQ(utf8(pq.second_text.view()), "Artist");
  EXPECT_EQ(pq.flag_a, 1);
  EXPECT_EQ(pq.flag_b, 0);
  EXPECT_EQ(utf8(pq.isrc.view()), "GBAAA0012345");
  EXPECT_EQ(utf8(pq.third_text.view()), "Note");
  ASSERT_EQ(locators_of(*edl).size(), 1U);
  EXPECT_EQ(locators_of(*edl)[0]->time, 4800);
  EXPECT_EQ(utf8(locators_of(*edl)[0]->name.view()), "Cue 1");
  EXPECT_EQ(locators_of(*edl)[0]->locator_value, 3);
  ASSERT_EQ(automation_of(*edl).size(), 1U);
  const CGenericAutomationChunk& run = *automation_of(*edl)[0];
  EXPECT_EQ(run.type, 0);
  EXPECT_EQ(run.channel, 1);
  EXPECT_EQ(run.no_points, 2U);
  const auto points = objects<CGenericAutomationEntry>(run.points);
  ASSERT_EQ(points.size(), 2U);
  EXPECT_EQ(points[0]->time, 0);
  EXPECT_EQ(points[0]->value, 384);
  EXPECT_EQ(points[1]->time, 96000);
  EXPECT_EQ(points[1]->value, 324);
  EXPECT_THAT(host.boxes.shown, IsEmpty());
  EXPECT_EQ(host.windows.waits, 0);
}

TEST_F(ChunkedImport, AcceptsBothMagicsAlike) {
  const std::string small = golden_bytes("chunk_small.hex");
  ASSERT_EQ(import(patched(small, 0, le32(0x5461726E))), result::import_complete);
  EXPECT_EQ(entries_of(*edl).size(), 1U);
  EXPECT_EQ(entries_of(*edl)[0]->fade_in_curve, 2);
  EXPECT_EQ(import(patched(small, 0, le32(0x76172795))), result::damaged);
}

TEST_F(ChunkedImport, RefusesLaterFileVersions) {
  const std::string small = golden_bytes("chunk_small.hex");
  EXPECT_EQ(import(patched(small, 4, le16(1))), result::damaged);
  EXPECT_EQ(import(patched(small, 6, le16(1))), result::damaged);
}

TEST_F(ChunkedImport, FilesThatEndEarly) {
  const std::string small = golden_bytes("chunk_small.hex");
  EXPECT_EQ(import(""), result::damaged);
  EXPECT_EQ(import(small.substr(0, 7)), result::damaged);
  EXPECT_EQ(import(small.substr(0, 8)), result::wrong_format);
  EXPECT_EQ(import(small.substr(0, 19)), result::wrong_format);
  // Inside the body of HDR1.
  EXPECT_EQ(import(small.substr(0, 31)), result::damaged);
  EXPECT_EQ(import(small.substr(0, 32)), result::import_complete);
  expect_empty_lists();
  EXPECT_EQ(rates(), (std::pair{2, 1}));
  // Inside the header of ALST.
  EXPECT_EQ(import(small.substr(0, 680)), result::import_complete);
  EXPECT_EQ(entries_of(*edl).size(), 1U);
  EXPECT_EQ(pq_of(*edl).size(), 1U);
  EXPECT_EQ(locators_of(*edl).size(), 1U);
  EXPECT_TRUE(edl->get_automation_list()->IsEmpty());
  // Inside its item count, and inside its body.
  EXPECT_EQ(import(small.substr(0, 686)), result::damaged);
  EXPECT_EQ(import(small.substr(0, 700)), result::damaged);
  expect_empty_lists();
  EXPECT_EQ(host.windows.waits, 0);
}

TEST_F(ChunkedImport, SkipsWhateverStandsInFrontOfTheHeadChunk) {
  const std::string stray = chunk("\x01\x02\x03\x04", zeros(1000), 7, 7);
  const std::string lists = head_chunk() + tracks() + edits();
  EXPECT_THAT(boxes_of_import(file_head() + stray + stray + lists), IsEmpty());
  EXPECT_EQ(entries_of(*edl).size(), 1U);
  const std::string endless = patched(chunk("ABCD", "x"), 8, le32(0xFFFFFFFF));
  EXPECT_EQ(import(file_head() + endless + lists), result::wrong_format);
}

TEST_F(ChunkedImport, HeadChunkTooShortIsSkipped) {
  ASSERT_EQ(import(file_head() + head_with(head_body(48000, 1, 0)) + tracks() + edits()),
            result::import_complete);
  EXPECT_EQ(rates(), (std::pair{255, 255}));
  EXPECT_EQ(entries_of(*edl).size(), 1U);
}

TEST_F(ChunkedImport, HeadChunkWithBytesBehindItsValues) {
  const std::string body = head_body(44100, 0, 1);
  // Minor 1: what is left of 16 bytes behind the 12 is skipped.
  ASSERT_EQ(import(file_head() + head_with(body + zeros(4)) + tracks() + edits()),
            result::import_complete);
  EXPECT_EQ(rates(), (std::pair{1, 0}));
  EXPECT_EQ(entries_of(*edl).size(), 1U);
}

TEST_F(ChunkedImport, HeadChunkOfMinor0StopsFourBytesShort) {
  const std::string body = head_body(48000, 1, 1);
  const std::string pq = list_chunk("PLST", {pq_header_item(1), pq_entry_item()});
  // Size 12 is what minor 1 has, and exact.
  EXPECT_EQ(import(file_head() + head_with(body, 0) + pq), result::import_complete);
  EXPECT_EQ(pq_of(*edl).size(), 1U);
  // Size 16: the next header is read from the last four bytes of the body.
  const std::string overlapping = head_with(body + pq.substr(0, 4), 0) + pq.substr(4);
  EXPECT_EQ(import(file_head() + overlapping), result::import_complete);
  EXPECT_EQ(pq_of(*edl).size(), 1U);
  EXPECT_EQ(import(file_head() + head_with(body + zeros(4), 0) + pq), result::damaged);
  // Size 20: four bytes are skipped, and four are still short.
  const std::string skipping = head_with(body + zeros(4) + pq.substr(0, 4), 0) + pq.substr(4);
  EXPECT_EQ(import(file_head() + skipping), result::import_complete);
  EXPECT_EQ(pq_of(*edl).size(), 1U);
}

TEST_F(ChunkedImport, HeadChunkVersions) {
  const std::string body = head_body(48000, 1, 1);
  EXPECT_THAT(boxes_of_import(file_head() + head_with(body, 2, 0)), ElementsAre("23873"));
  EXPECT_THAT(boxes_of_import(file_head() + head_with(body, 1, 1)), ElementsAre("23873"));
  EXPECT_THAT(boxes_of_import(file_head() + head_with(body, 2, 1)), ElementsAre("23873", "23873"));
  EXPECT_EQ(rates(), (std::pair{2, 1}));
}

TEST_F(ChunkedImport, RatesOfTheHeadChunk) {
  for (const auto& [frame_rate, index] : {std::pair{0U, 0}, {4U, 4}, {5U, 255}, {65535U, 255}}) {
    ASSERT_EQ(import(file_head() + head_with(head_body(48000, frame_rate, 1))),
              result::import_complete);
    EXPECT_EQ(rates(), (std::pair{2, index}));
  }
  ASSERT_EQ(import(file_head() + head_with(head_body(44057, 1, 1))), result::import_complete);
  EXPECT_EQ(rates(), (std::pair{255, 1}));
  ASSERT_EQ(import(file_head() + head_with(head_body(191808, 1, 1))), result::import_complete);
  EXPECT_EQ(rates(), (std::pair{14, 1}));
}

TEST_F(ChunkedImport, RateChangesAreAskedFor) {
  for (const int answer : {box_answer_no, box_answer_yes}) {
    edl = std::make_unique<CGenericEDLFile>();
    set_rates(*edl, 0, 1);
    host.boxes.question_answers = {answer};
    ASSERT_EQ(import_again(chunk_file({})), result::import_complete);
    EXPECT_EQ(edl->sample_rate_index(), 2);
    UPDATE_SETTINGS_DETAILS updates;
    edl->get_update_settings_details(&updates);
    EXPECT_EQ(updates.sample_rate_changed, answer == box_answer_yes ? 1 : 0);
    EXPECT_EQ(host.boxes.shown.back().text_id, 22387U);
  }
}

TEST_F(ChunkedImport, StreamValuesGoToTheTrackIds) {
  const std::string body = joined({le32(48000), le16(1), le16(3), le32(5), le32(6), le32(7)});
  ASSERT_EQ(import(file_head() + head_with(body)), result::import_complete);
  EXPECT_EQ(edl->highest_stream(), 2);
  EXPECT_EQ(edl->track_id(0), 5U);
  EXPECT_EQ(edl->track_id(1), 6U);
  EXPECT_EQ(edl->track_id(2), 7U);
  EXPECT_EQ(edl->track_id(3), 0U);
  // No streams, in a body long enough to be read.
  ASSERT_EQ(import(file_head() + head_with(head_body(48000, 1, 0) + zeros(4))),
            result::import_complete);
  EXPECT_EQ(edl->highest_stream(), 0);
  // More streams than the body and the file hold.
  const std::string many = joined({le32(48000), le16(1), le16(4), le32(5)});
  EXPECT_EQ(import(file_head() + head_with(many)), result::damaged);
}

TEST_F(ChunkedImport, ListVersions) {
  const std::pair<const char*, std::string> lists[] = {{"ELST", entry_item()},
                                                       {"TLST", track_item()},
                                                       {"PLST", pq_header_item(0)},
                                                       {"LLST", locator_item()},
                                                       {"ALST", automation_item()}};
  for (const auto& [id, item] : lists) {
    EXPECT_THAT(boxes_of_import(chunk_file({list_chunk(id, {item}, 1, 0)})), ElementsAre("23874"));
    EXPECT_THAT(boxes_of_import(chunk_file({list_chunk(id, {item}, 0, 1)})), ElementsAre("23874"));
    EXPECT_THAT(boxes_of_import(chunk_file({list_chunk(id, {item}, 1, 1)})),
                ElementsAre("23874", "23874"));
  }
  EXPECT_EQ(automation_of(*edl).size(), 1U);
}

TEST_F(ChunkedImport, ItemVersions) {
  set_disc_texts(1);
  const auto with = [](std::string item, unsigned major, unsigned minor) {
    return patched(std::move(item), 4, le16(major) + le16(minor));
  };
  const auto pq = [](const std::string& header, const std::string& last) {
    return chunk_file({list_chunk("PLST", {header, last})});
  };
  EXPECT_THAT(boxes_of_import(chunk_file({tracks(), list_chunk("ELST", {entry_item(0, 1)})})),
              ElementsAre("23875"));
  EXPECT_EQ(entries_of(*edl).size(), 1U);
  EXPECT_THAT(boxes_of_import(chunk_file({list_chunk("TLST", {track_item(0, 3)})})),
              ElementsAre("23876"));
  EXPECT_THAT(boxes_of_import(chunk_file({list_chunk("TLST", {track_item(1, 2)})})),
              ElementsAre("23876"));
  EXPECT_THAT(boxes_of_import(chunk_file({list_chunk("ALST", {with(automation_item(), 0, 1)})})),
              ElementsAre("23877"));
  EXPECT_THAT(boxes_of_import(chunk_file({list_chunk("LLST", {with(locator_item(), 1, 0)})})),
              ElementsAre("23877"));
  EXPECT_THAT(boxes_of_import(pq(with(pq_header_item(1), 0, 1), pq_entry_item())),
              ElementsAre("23878"));
  EXPECT_THAT(boxes_of_import(pq(pq_header_item(1), with(pq_entry_item(), 0, 1))),
              ElementsAre("23879"));
  EXPECT_THAT(boxes_of_import(pq(pq_header_item(0), chunk("PQDC", pq_details_body(), 0, 1))),
              ElementsAre("23884"));
}

TEST_F(ChunkedImport, BodiesOfAnotherSizeEndTheImport) {
  set_disc_texts(1);
  const auto expect_damaged = [this](const std::string& list, const std::string& item) {
    EXPECT_EQ(import(chunk_file({list_chunk(list, {item})})), result::damaged) << item.substr(0, 4);
  };
  expect_damaged("ELST", chunk("EDLE", entry_body().substr(0, 59)));
  expect_damaged("ELST", chunk("EDLE", entry_body() + "x"));
  for (const unsigned minor : {0U, 1U, 2U}) {
    expect_damaged("TLST", chunk("TRAK", track_body().substr(0, 259), 0, minor));
    expect_damaged("TLST", chunk("TRAK", track_body() + "xxxx", 0, minor));
  }
  expect_damaged("PLST", chunk("PQHC", pq_header_body(0).substr(0, 15)));
  expect_damaged("PLST", chunk("PQEC", pq_entry_body().substr(0, 151)));
  expect_damaged("PLST", chunk("PQDC", pq_details_body().substr(0, 899)));
  expect_damaged("LLST", chunk("LCTR", ""));
  expect_damaged("ALST", chunk("AUTO", ""));
  expect_damaged("LLST", chunk("LCTR", joined({le16(2), le16(0), locator(0, "", 0)})));
  expect_damaged("ALST", chunk("AUTO", joined({le32(0), le32(3), zeros(16)})));
}

TEST_F(ChunkedImport, ListsMustEndOnTheirLength) {
  const std::string good = list_chunk("ELST", {entry_item()});
  const auto with_count = [&](std::uint32_t count) { return patched(good, 12, le32(count)); };
  EXPECT_EQ(import(chunk_file({with_count(0)})), result::damaged);
  EXPECT_EQ(import(chunk_file({with_count(2)})), result::damaged);
  EXPECT_EQ(import(chunk_file({with_count(0xFFFFFFFF)})), result::damaged);
  EXPECT_EQ(import(chunk_file({chunk("ELST", zeros(3)), zeros(100)})), result::damaged);
  EXPECT_EQ(import(chunk_file({chunk("ELST", zeros(4)), zeros(100)})), result::damaged);
  EXPECT_EQ(import(chunk_file({chunk("ELST", zeros(4))})), result::damaged);
  // One byte more than the items, and a list longer than the file.
  EXPECT_EQ(import(chunk_file({chunk("ELST", good.substr(12) + "x")})), result::damaged);
  EXPECT_EQ(import(chunk_file({patched(good, 8, le32(0xFFFFFFFF))})), result::damaged);
}

TEST_F(ChunkedImport, ItemSizesPastTheListAreDamage) {
  const std::string good = list_chunk("ELST", {entry_item()});
  for (const std::uint32_t size : {61U, 0x7FFFFFFFU, 0xFFFFFFF4U, 0xFFFFFFFFU})
    EXPECT_EQ(import(chunk_file({patched(good, 16 + 8, le32(size))})), result::damaged) << size;
}

TEST_F(ChunkedImport, UnknownItemsAreSkippedAndCounted) {
  const std::string list =
      list_chunk("ELST", {entry_item(), chunk("XYZ ", zeros(7)), track_item(), entry_item()});
  EXPECT_THAT(boxes_of_import(chunk_file({tracks(), list})), ElementsAre("23881", "23881"));
  EXPECT_EQ(entries_of(*edl).size(), 2U);
  EXPECT_EQ(import(chunk_file({list_chunk("ELST", {chunk("A BC", "")})})), result::damaged);
}

TEST_F(ChunkedImport, UnknownListsAreSkipped) {
  const std::string unknown = chunk("XLST", zeros(5));
  EXPECT_THAT(boxes_of_import(chunk_file({tracks(), unknown, edits()})), ElementsAre("23880"));
  EXPECT_EQ(entries_of(*edl).size(), 1U);
  EXPECT_EQ(host.boxes.shown[0].path, folder.file("in"));
  // One that passes the end of the file ends it cleanly.
  const std::string endless = patched(unknown, 8, le32(0xFFFFFFFF));
  EXPECT_THAT(boxes_of_import(chunk_file({tracks(), edits(), endless})), ElementsAre("23880"));
  EXPECT_EQ(entries_of(*edl).size(), 1U);
  EXPECT_EQ(import(chunk_file({chunk("A BC", "")})), result::damaged);
}

TEST_F(ChunkedImport, ListsMayStandInAnyOrder) {
  const std::string small = golden_bytes("chunk_small.hex");
  const std::string head = small.substr(0, 0x20);
  const std::string t = small.substr(0x20, 0x140 - 0x20);
  const std::string e = small.substr(0x140, 0x198 - 0x140);
  const std::string p = small.substr(0x198, 0x268 - 0x198);
  const std::string l = small.substr(0x268, 0x2A0 - 0x268);
  const std::string a = small.substr(0x2A0);
  for (const std::string& lists : {t + e + p + l + a, a + l + p + e + t, e + a + t + p + l}) {
    ASSERT_EQ(import(head + lists), result::import_complete);
    ASSERT_EQ(entries_of(*edl).size(), 1U);
    EXPECT_EQ(utf8(field_text(entries_of(*edl)[0]->clip_name)), "TAKE12");
    EXPECT_EQ(pq_of(*edl).size(), 1U);
    EXPECT_EQ(locators_of(*edl).size(), 1U);
    EXPECT_EQ(automation_of(*edl).size(), 1U);
  }
}

TEST_F(ChunkedImport, EntriesAreSortedAndEqualOnesKeepTheirOrder) {
  const auto edit = [](std::uint32_t dest_in, char name) {
    return chunk("EDLE", patched(patched(entry_body(), 16, le32(dest_in)), 0,
                                 text(std::string(1, name), 16)));
  };
  // In two lists, which add up.
  ASSERT_EQ(import(chunk_file({tracks(), list_chunk("ELST", {edit(5, 'a'), edit(3, 'b')}),
                               list_chunk("ELST", {edit(5, 'c'), edit(3, 'd')})})),
            result::import_complete);
  std::string names;
  for (const CGenericEdlEntry* const entry : entries_of(*edl))
    names += utf8(field_text(entry->source_reel_name)).substr(0, 1);
  EXPECT_EQ(names, "bdac");
}

TEST_F(ChunkedImport, EditsWithoutTheirSourceDisappear) {
  const std::string lost = chunk("EDLE", patched(patched(entry_body(), 48, le16(9)), 56, le16(40)));
  EXPECT_THAT(boxes_of_import(chunk_file({tracks(), list_chunk("ELST", {lost, entry_item()})})),
              IsEmpty());
  EXPECT_EQ(entries_of(*edl).size(), 1U);
  // Its stream has been noted.
  EXPECT_EQ(edl->highest_stream(), 40);
}

TEST_F(ChunkedImport, TheFirstOfEqualTrackNumbersCounts) {
  const std::string list =
      list_chunk("TLST", {track_with(2, text("first", 64)), track_with(2, text("second", 64))});
  ASSERT_EQ(import(chunk_file({list, edits()})), result::import_complete);
  EXPECT_EQ(utf8(field_text(entries_of(*edl)[0]->clip_name)), "first");
}

TEST_F(ChunkedImport, StreamsFollowTheFirst) {
  const std::string edit = edit_with(50, joined({le16(2), le32(5), le16(4), le16(1)}));
  ASSERT_EQ(import(chunk_file({tracks(), list_chunk("ELST", {edit})})), result::import_complete);
  const CGenericEdlEntry& entry = *entries_of(*edl)[0];
  EXPECT_EQ(entry.no_streams, 2);
  EXPECT_EQ(entry.get_stream(0), 4);
  EXPECT_EQ(entry.get_stream(1), 5);
  EXPECT_EQ(edl->highest_stream(), 5);
  EXPECT_EQ(entry.chunk_flags, 5);
  EXPECT_EQ(entry.channel_offset, 1);
  EXPECT_EQ(entry.reel_no_streams, 2);
}

TEST_F(ChunkedImport, StreamsWrapIn16Bits) {
  const std::string edit = edit_with(50, joined({le16(3), le32(0), le16(65534)}));
  ASSERT_EQ(import(chunk_file({tracks(), list_chunk("ELST", {edit})})), result::import_complete);
  const CGenericEdlEntry& entry = *entries_of(*edl)[0];
  EXPECT_EQ(entry.get_stream(0), 65534);
  EXPECT_EQ(entry.get_stream(1), 65535);
  EXPECT_EQ(entry.get_stream(2), 0);
  EXPECT_EQ(edl->highest_stream(), 65534);
}

TEST_F(ChunkedImport, StreamsOfAllEditsAreLimited) {
  // 1024 edits of 65535 streams stay below 2^26 words by 1024; one more is above.
  const std::string edit = edit_with(50, le16(65535));
  std::string items;
  for (int i = 0; i < 1025; ++i)
    items += edit;
  EXPECT_EQ(import(chunk_file({chunk("ELST", le32(1025) + items)})), result::damaged);
  items.resize(items.size() - edit.size());
  EXPECT_EQ(import(chunk_file({chunk("ELST", le32(1024) + items)})), result::import_complete);
}

TEST_F(ChunkedImport, NoChannelsComeFromTheTrackOrItsVersion) {
  const std::string edit = edit_with(50, le16(3));
  for (const auto& [minor, channels] : {std::pair{0U, 3}, {1U, 2}, {2U, 2}, {3U, 0}}) {
    const std::string list = list_chunk("TLST", {track_with(220, le16(2), minor)});
    ASSERT_EQ(import(chunk_file({list, list_chunk("ELST", {edit})})), result::import_complete);
    EXPECT_EQ(entries_of(*edl)[0]->no_channels, channels) << minor;
  }
}

TEST_F(ChunkedImport, CurvesAreForcedWhenTheSettingsSaySo) {
  EDL_CONVERSION_SETTINGS settings;
  settings.force_default_fade_curves = 1;
  settings.default_fade_in_curve = 7;
  settings.default_fade_out_curve = 8;
  edl = std::make_unique<CGenericEDLFile>();
  edl->set_edl_conversion_settings(&settings);
  ASSERT_EQ(import_again(golden_bytes("chunk_small.hex")), result::import_complete);
  EXPECT_EQ(entries_of(*edl)[0]->fade_in_curve, 7);
  EXPECT_EQ(entries_of(*edl)[0]->fade_out_curve, 8);
}

TEST_F(ChunkedImport, LevelsMayBeIgnored) {
  const std::string file =
      chunk_file({tracks(), list_chunk("ELST", {edit_with(44, le_float(0.5F))})});
  ASSERT_EQ(import(file), result::import_complete);
  EXPECT_EQ(entries_of(*edl)[0]->gain_left, 0.5F);
  set_key(u"Edl Conversion", u"Studer", 2);
  ASSERT_EQ(import(file), result::import_complete);
  EXPECT_EQ(entries_of(*edl)[0]->gain_left, 1.0F);
}

TEST_F(ChunkedImport, DiscTextsNeedTheSetting) {
  const std::string file = chunk_file(
      {list_chunk("PLST", {pq_header_item(1), pq_entry_item(), chunk("PQDC", pq_details_body())})});
  EXPECT_EQ(import(file), result::damaged);
  expect_empty_lists();
  set_disc_texts(2);
  EXPECT_EQ(import(file), result::damaged);
  set_disc_texts(1);
  ASSERT_EQ(import(file), result::import_complete);
  PQ_DETAILS details;
  edl->get_pq_details(&details);
  const char* const expected[] = {"one", "two", "three", "four", "five", "six", "seven"};
  for (int i = 0; i < 7; ++i)
    EXPECT_EQ(utf8(field_text(details.pq_text[i])), expected[i]);
  EXPECT_EQ(details.pq_word, 0x1234);
  EXPECT_EQ(pq_of(*edl).size(), 1U);
}

TEST_F(ChunkedImport, EmptyDiscTextsPassOnlyWithoutTheSetting) {
  const std::string file = chunk_file({list_chunk("PLST", {pq_header_item(0), chunk("PQDC", "")})});
  EXPECT_EQ(import(file), result::import_complete);
  set_disc_texts(1);
  EXPECT_EQ(import(file), result::damaged);
}

TEST_F(ChunkedImport, PqEntriesAreCountedDownFromTheHeader) {
  const auto count_of = [this](unsigned announced, int present) {
    std::string items = pq_header_item(announced);
    for (int i = 0; i < present; ++i)
      items += pq_entry_item();
    EXPECT_EQ(
        import(chunk_file({chunk("PLST", le32(static_cast<std::uint32_t>(present) + 1) + items)})),
        result::import_complete);
    return pq_of(*edl).size();
  };
  EXPECT_EQ(count_of(1, 2), 1U);
  EXPECT_EQ(count_of(2, 2), 2U);
  EXPECT_EQ(count_of(3, 2), 2U);
  EXPECT_EQ(count_of(0, 2), 2U);
  EXPECT_EQ(count_of(0, 0), 0U);
}

TEST_F(ChunkedImport, PqChunksOfTheWrongKindForTheirPlace) {
  // No header in front.
  ASSERT_EQ(import(chunk_file({list_chunk("PLST", {pq_entry_item(), pq_header_item(1)})})),
            result::import_complete);
  EXPECT_THAT(pq_of(*edl), IsEmpty());
  // A second header in place of an entry.
  ASSERT_EQ(import(chunk_file(
                {list_chunk("PLST", {pq_header_item(2), pq_header_item(1), pq_entry_item()})})),
            result::import_complete);
  ASSERT_EQ(pq_of(*edl).size(), 2U);
  EXPECT_EQ(pq_of(*edl)[0]->position_a, 0);
  EXPECT_TRUE(pq_of(*edl)[0]->first_text.IsEmpty());
  EXPECT_EQ(pq_of(*edl)[1]->position_a, 96000);
  // An entry in place of the texts of the disc.
  set_disc_texts(1);
  ASSERT_EQ(import(chunk_file(
                {list_chunk("PLST", {pq_header_item(1), pq_entry_item(), pq_entry_item()})})),
            result::import_complete);
  PQ_DETAILS details;
  edl->get_pq_details(&details);
  EXPECT_EQ(utf8(field_text(details.pq_text[0])), "");
}

TEST_F(ChunkedImport, CatalogueNumberAndFlags) {
  const std::string header = chunk("PQHC", patched(pq_header_body(1), 0, "5012345678900"));
  const std::string entry = chunk("PQEC", patched(pq_entry_body(), 72, le16(0x0101)));
  ASSERT_EQ(import(chunk_file({list_chunk("PLST", {header, entry})})), result::import_complete);
  PQ_DETAILS details;
  edl->get_pq_details(&details);
  EXPECT_EQ(utf8({details.pq_catalogue, 13}), "5012345678900");
  EXPECT_EQ(pq_of(*edl)[0]->flag_a, 1);
}

TEST_F(ChunkedImport, PauseThatBeginsWithItsTrack) {
  const auto mark = [](std::uint32_t time, unsigned index) {
    return chunk("PQEC", patched(patched(pq_entry_body(), 0, le32(time)), 6, le16(index)));
  };
  ASSERT_EQ(
      import(chunk_file({list_chunk("PLST", {pq_header_item(2), mark(100, 0), mark(100, 1)})})),
      result::import_complete);
  ASSERT_EQ(pq_of(*edl).size(), 2U);
  EXPECT_EQ(pq_of(*edl)[0]->position_a, 100);
  EXPECT_EQ(pq_of(*edl)[1]->position_a, 100);
}

TEST_F(ChunkedImport, PausesOfTheListBeforeAreMendedAsWell) {
  // Entries that stood in the list take part: the earlier start takes the later one.
  edl = std::make_unique<CGenericEDLFile>();
  CGenericPQEntry& pause = add_pq_entry(*edl);
  pause.index_number = 0;
  pause.position_a = 50;
  ASSERT_EQ(import_again(chunk_file({list_chunk("PLST", {pq_header_item(1), pq_entry_item()})})),
            result::import_complete);
  EXPECT_EQ(pause.position_a, 96000);
}

TEST_F(ChunkedImport, ReadErrorsAreDamage) {
  const std::string small = golden_bytes("chunk_small.hex");
  int reads = 0;
  {
    const support::FaultyFiles none(FileFaults::Operation::read, 0);
    ASSERT_EQ(import(small), result::import_complete);
    reads = none.count();
  }
  ASSERT_GT(reads, 0);
  for (int nth = 1; nth <= reads; ++nth) {
    const support::FaultyFiles faults(FileFaults::Operation::read, nth);
    EXPECT_EQ(import(small), result::damaged) << nth;
    EXPECT_EQ(faults.failed(), 1);
    expect_empty_lists();
    EXPECT_EQ(host.windows.waits, 0);
  }
}

TEST_F(ChunkedImport, AFailedImportMayBeFollowedByAnother) {
  ASSERT_EQ(import(golden_bytes("chunk_small.hex").substr(0, 700)), result::damaged);
  ASSERT_EQ(import_again(golden_bytes("chunk_small.hex")), result::import_complete);
  EXPECT_EQ(entries_of(*edl).size(), 1U);
  EXPECT_EQ(pq_of(*edl).size(), 1U);
}

TEST_F(ChunkedImport, AnObjectUnderAnotherFillsItsParentsLists) {
  CGenericEdl root;
  CGenericEDLFile format(&root);
  support::write_file(folder.file("in"), golden_bytes("chunk_small.hex"));
  ASSERT_EQ(format.import_edl(folder.wide_file("in")), result::import_complete);
  EXPECT_EQ(entries_of(root).size(), 1U);
  // Lists are looked for one level up alone.
  CGenericEDLFile below(&format);
  EXPECT_EQ(below.import_edl(folder.wide_file("in")), result::import_complete);
  EXPECT_EQ(entries_of(root).size(), 1U);
}

}  // namespace
