#include "native/record_transfer.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "core/generic_reel.h"
#include "tests/native/scene.h"

using namespace native_test;  // NOLINT
using support::utf8;

namespace {

// The plain rule: neighbours change places while the later one begins earlier.
void bubble_sort(CObList& entries) {
  bool swapped = entries.GetCount() > 1;
  while (swapped) {
    swapped = false;
    POSITION at = entries.GetHeadPosition();
    for (;;) {
      POSITION next = at;
      entries.GetNext(next);
      if (next == nullptr) break;
      auto* const here = static_cast<CGenericEDLFileEntry*>(entries.GetAt(at));
      if (static_cast<CGenericEDLFileEntry*>(entries.GetAt(next))->m_dest_in < here->m_dest_in) {
        entries.RemoveAt(at);
        at = entries.InsertAfter(next, here);
        swapped = true;
      } else {
        at = next;
      }
    }
  }
}

TEST(RecordTransfer, SortAgreesWithThePlainBubbleSort) {
  for (unsigned seed = 0; seed < 50; ++seed) {
    std::mt19937 random(seed);
    std::vector<std::unique_ptr<CGenericEDLFileEntry>> owner;
    CObList fast;
    CObList plain;
    for (unsigned i = 0; i < seed * 3; ++i) {
      owner.push_back(std::make_unique<CGenericEDLFileEntry>());
      owner.back()->m_dest_in = std::uniform_int_distribution<int>(-5, 20)(random);
      fast.AddTail(owner.back().get());
      plain.AddTail(owner.back().get());
    }
    native::sort_by_destination(fast);
    bubble_sort(plain);
    EXPECT_EQ(objects<CGenericEDLFileEntry>(&fast), objects<CGenericEDLFileEntry>(&plain)) << seed;
  }
}

TEST(RecordTransfer, TrackIndexFindsTheFirstOfANumber) {
  std::vector<std::unique_ptr<CGenericEDLFileTrack>> owner;
  CObList tracks;
  for (const unsigned index : {5U, 0U, 5U, 65535U}) {
    owner.push_back(std::make_unique<CGenericEDLFileTrack>());
    owner.back()->m_index = static_cast<std::uint16_t>(index);
    tracks.AddTail(owner.back().get());
  }
  const native::TrackIndex finder(tracks);
  EXPECT_EQ(finder.find(5), owner[0].get());
  EXPECT_EQ(finder.find(0), owner[1].get());
  EXPECT_EQ(finder.find(65535), owner[3].get());
  EXPECT_EQ(finder.find(1), nullptr);
  const CObList none;
  EXPECT_EQ(native::TrackIndex(none).find(0), nullptr);
}

// Every member of a source is copied to the entry that plays it and back.
TEST(RecordTransfer, MembersOfASource) {
  CGenericEdl root;
  CGenericEDLFileTrack track;
  track.set_file_name(u"file");
  track.m_source_type = 7;
  track.m_source_time_word = 8;
  track.set_path(u"/path");
  track.set_reel_name(u"reel");
  track.m_source_channel = 9;
  track.m_first_channel = 10;
  track.m_time_stamp = 11;
  track.m_no_channels = 12;
  track.set_originator(u"maker");
  track.m_source_word = 13;
  track.set_originator_reference(u"12345678901234567890123456789012");
  CGenericEdlEntry& entry = add_entry(root, 0, 1, {0});
  native::entry_from_track(entry, track);
  EXPECT_EQ(utf8(field_text(entry.clip_name)), "file");
  EXPECT_EQ(entry.source_index, 7);
  EXPECT_EQ(entry.source_time_word, 8U);
  EXPECT_EQ(utf8(field_text(entry.file_path)), "/path");
  ASSERT_NE(entry.reel, nullptr);
  EXPECT_EQ(utf8(field_text(entry.reel->reel_name)), "reel");
  EXPECT_EQ(entry.source_channel, 9U);
  EXPECT_EQ(entry.first_channel, 10);
  EXPECT_EQ(entry.source_timestamp, 11);
  EXPECT_EQ(entry.no_channels, 1) << "left to the format";
  EXPECT_EQ(utf8(field_text(entry.originator)), "maker");
  EXPECT_EQ(entry.source_word, 13U);
  EXPECT_EQ(utf8(field_text(entry.originator_reference)), "12345678901234567890123456789012");

  // Nothing of the host's is touched: the pointer is only carried.
  support::FakeAudCnt content(48000, 24, {{0}});
  entry.audio_content = &content;
  entry.no_channels = 12;
  CGenericEDLFileTrack back;
  native::track_from_entry(back, entry);
  EXPECT_EQ(back.m_index, no_track_index);
  EXPECT_EQ(back.get_file_name(), track.get_file_name());
  EXPECT_EQ(back.m_source_type, 7);
  EXPECT_EQ(back.m_source_time_word, 8U);
  EXPECT_EQ(back.get_path(), track.get_path());
  EXPECT_EQ(back.get_reel_name(), track.get_reel_name());
  EXPECT_EQ(back.m_source_channel, 9);
  EXPECT_EQ(back.m_first_channel, 10);
  EXPECT_EQ(back.m_time_stamp, 11);
  EXPECT_EQ(back.m_no_channels, 12);
  EXPECT_EQ(back.get_originator(), track.get_originator());
  EXPECT_EQ(back.m_source_word, 13U);
  EXPECT_EQ(back.get_originator_reference(), track.get_originator_reference());
  EXPECT_EQ(back.m_source_object, &content);
}

TEST(RecordTransfer, MembersOfAnEdit) {
  CGenericEdl root;
  CGenericEDLFileEntry record;
  record.set_name(u"name");
  record.m_dest_in = 1000;
  record.m_source_in = 2000;
  record.m_length = 300;
  record.m_fade_in_curve = 4;
  record.m_fade_out_curve = 5;
  record.m_fade_in_length = 6;
  record.m_fade_out_length = 7;
  record.m_third_position = 8;
  record.m_level = 0.25F;
  record.m_stream_count = 2;
  record.m_flags = 0x80000001;
  record.m_first_stream = 10;
  record.m_channel_offset = 11;
  auto* const entry = new CGenericEdlEntry(&root);
  root.get_generic_entry_list()->AddTail(entry);
  native::entry_from_record(*entry, record);
  EXPECT_EQ(utf8(field_text(entry->source_reel_name)), "name" + std::string(28, ' '));
  EXPECT_EQ(entry->dest_in, 1000);
  EXPECT_EQ(entry->dest_out, 1300);
  EXPECT_EQ(entry->source_in, 2000);
  EXPECT_EQ(entry->source_out, 2300);
  EXPECT_EQ(entry->fade_in_curve, 4);
  EXPECT_EQ(entry->fade_out_curve, 5);
  EXPECT_EQ(entry->fade_in_length, 6);
  EXPECT_EQ(entry->fade_out_length, 7);
  EXPECT_EQ(entry->dest_length, 8);
  EXPECT_EQ(entry->gain_left, 0.25F);
  EXPECT_EQ(entry->gain_right, 1.0F);
  EXPECT_EQ(entry->no_streams, 2);
  EXPECT_EQ(entry->get_stream(0), 10);
  EXPECT_EQ(entry->get_stream(1), 11);
  EXPECT_EQ(entry->first_channel, 10);
  EXPECT_EQ(static_cast<std::uint32_t>(entry->chunk_flags), 0x80000001U);
  EXPECT_EQ(entry->channel_offset, 11);
  EXPECT_EQ(entry->reel_no_streams, 2);
  EXPECT_EQ(root.highest_stream(), 11);

  CGenericEDLFileEntry back;
  back.m_flags = 2;
  native::record_from_entry(back, *entry);
  EXPECT_EQ(back.get_name().substr(0, 5), u"name ");
  EXPECT_EQ(back.m_dest_in, 1000);
  EXPECT_EQ(back.m_source_in, 2000);
  EXPECT_EQ(back.m_length, 300);
  EXPECT_EQ(back.m_fade_in_curve, 4);
  EXPECT_EQ(back.m_fade_out_curve, 5);
  EXPECT_EQ(back.m_fade_in_length, 6);
  EXPECT_EQ(back.m_fade_out_length, 7);
  EXPECT_EQ(back.m_third_position, 8);
  EXPECT_EQ(back.m_level, 0.25F);
  EXPECT_EQ(back.m_stream_count, 2);
  EXPECT_EQ(back.m_flags, 0x80000003U) << "joined to what stands there";
  EXPECT_EQ(back.m_first_stream, 10);
  EXPECT_EQ(back.m_channel_offset, 11);
  EXPECT_EQ(back.m_track_index, no_track_index);
}

TEST(RecordTransfer, LengthsOfTimesThatAreNotGivenWrap) {
  CGenericEdl root;
  CGenericEDLFileEntry record;
  record.m_dest_in = time_not_given;
  record.m_length = 1;
  auto* const entry = new CGenericEdlEntry(&root);
  root.get_generic_entry_list()->AddTail(entry);
  native::entry_from_record(*entry, record);
  EXPECT_EQ(entry->dest_out, INT64_MIN);
  CGenericEDLFileEntry back;
  native::record_from_entry(back, *entry);
  EXPECT_EQ(back.m_length, 1);
}

TEST(RecordTransfer, LocatorsOfEitherKind) {
  CGenericEdl root;
  add_locator(root, 1, u"LEFT_LOCATOR\t\t\t", 70000);
  add_locator(root, 2, u"Cue", 2);
  add_locator(root, 3, u"RIGHT_LOCATOR\t\t", 3);
  const auto range = native::collect_locators(*root.get_locator_list(), native::LocatorKind::range);
  ASSERT_EQ(range->m_count, 2);
  const auto marks = objects<CGenericEDLFileLocatorEntry>(&range->m_locators);
  EXPECT_EQ(marks[0]->m_time, 1);
  EXPECT_EQ(utf8(marks[0]->get_name()), "LEFT_LOCATOR\t\t\t");
  EXPECT_EQ(marks[0]->m_locator_value, 70000 - 65536);
  const auto others =
      native::collect_locators(*root.get_locator_list(), native::LocatorKind::others);
  EXPECT_EQ(others->m_count, 1);
}

}  // namespace
