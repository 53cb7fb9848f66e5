#include "core/generic_edl_entry.h"

#include <gtest/gtest.h>

#include <memory>

#include "core/generic_reel.h"
#include "host/audio.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"

namespace {

using support::reel_of;
using support::streams_of;
using support::utf8;

class NoReels final : public CGenericEdl {
 public:
  [[nodiscard]] int supports_reel_objects(const wide_char*) const override { return 0; }
};

class GenericEdlEntry : public testing::Test {
 protected:
  GenericEdlEntry() { support::set_rates(edl_); }

  void use(const EDL_CONVERSION_SETTINGS& settings) { edl_.set_edl_conversion_settings(&settings); }

  CGenericEdl edl_;
};

TEST_F(GenericEdlEntry, NewEntryTakesSettingsAndDefaults) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_length = 240;
  settings.default_fade_in_curve = 3;
  settings.default_fade_out_curve = 4;
  use(settings);
  const CGenericEdlEntry entry(&edl_);
  EXPECT_EQ(entry.event_number, 65535);
  EXPECT_EQ(entry.source_index, 65535);
  EXPECT_EQ(entry.gain_left, 1.0F);
  EXPECT_EQ(entry.gain_right, 1.0F);
  EXPECT_EQ(entry.source_timestamp, 0x7FFFFFFFFFFFFFFF);
  EXPECT_EQ(entry.no_streams, 0);
  EXPECT_EQ(entry.source_is_timestamped, 1);
  EXPECT_EQ(entry.frame_rate, 1);
  EXPECT_EQ(entry.fade_in_curve, 3);
  EXPECT_EQ(entry.fade_out_curve, 4);
  EXPECT_EQ(entry.fade_in_length, 240);
  EXPECT_EQ(entry.fade_out_length, 240);
  EXPECT_EQ(entry.dest_in, time_not_given);
  EXPECT_EQ(entry.chunk_flags, 0);
}

TEST_F(GenericEdlEntry, StreamsAreReplacedWhole) {
  CGenericEdlEntry entry(&edl_);
  entry.set_no_streams(2);
  EXPECT_EQ(streams_of(entry), (std::vector<int>{65535, 65535}));
  entry.set_stream(0, 4);
  entry.set_stream(1, 5);
  entry.set_no_streams(3);
  EXPECT_EQ(streams_of(entry), (std::vector<int>{65535, 65535, 65535}));
  entry.set_no_streams(-5);
  EXPECT_EQ(entry.no_streams, 0);
  EXPECT_EQ(entry.streams, nullptr);
}

TEST_F(GenericEdlEntry, StreamsRaiseTheHighestOfTheOwner) {
  CGenericEdlEntry entry(&edl_);
  entry.set_no_streams(2);
  entry.set_stream(0, 9);
  entry.set_stream(1, 65535);
  EXPECT_EQ(edl_.highest_stream(), 9);
}

TEST_F(GenericEdlEntry, StreamIndexOutsideTheArrayIsHarmless) {
  CGenericEdlEntry entry(&edl_);
  EXPECT_EQ(entry.get_stream(0), 65535);
  entry.set_no_streams(1);
  entry.set_stream(0, 2);
  entry.set_stream(1, 7);
  entry.set_stream(-1, 7);
  EXPECT_EQ(entry.get_stream(1), 65535);
  EXPECT_EQ(entry.get_stream(-1), 65535);
  EXPECT_EQ(streams_of(entry), std::vector<int>{2});
  EXPECT_EQ(edl_.highest_stream(), 2);
}

TEST_F(GenericEdlEntry, WithoutReelObjectsTheNameStaysInTheEntry) {
  NoReels edl;
  CGenericEdlEntry entry(&edl);
  entry.set_reel_name(u"ABCDEFGHIJKLMN");
  EXPECT_EQ(entry.reel, nullptr);
  EXPECT_EQ(reel_of(entry), u"ABCDEFGHIJKL");
  entry.raise_source_streams(3);
  entry.raise_source_streams(2);
  EXPECT_EQ(entry.reel_no_streams, 3);
}

TEST_F(GenericEdlEntry, CopyTakesAllButContentAndDetailWord) {
  struct Content final : CAudCnt {
    [[nodiscard]] bool is_available() const override { return false; }
    [[nodiscard]] std::uint32_t sample_rate() const override { return 0; }
    bool get_format(AudioFormat&) const override { return false; }
    [[nodiscard]] AudioFile* file() const override { return nullptr; }
  } content;
  support::Edit edit = support::standard_edit();
  edit.streams = {3, 4};
  const auto original = support::make_entry(edl_, edit);
  original->set_clip_name(u"clip");
  original->set_file_path(u"path");
  original->set_originator_reference(u"ref");
  original->gain_right = 0.5F;
  original->lw_channel_word = 9;
  original->source_word = 8;
  original->detail_word = 7;
  original->audio_content = &content;
  CGenericEdl other;
  const CGenericEdlEntry copy(&other, original.get());
  EXPECT_EQ(copy.owner, &other);
  EXPECT_EQ(copy.reel, original->reel);
  EXPECT_EQ(copy.detail_word, 0U);
  EXPECT_EQ(copy.audio_content, nullptr);
  EXPECT_NE(copy.streams, original->streams);
  EXPECT_EQ(streams_of(copy), streams_of(*original));
  EXPECT_EQ(utf8(copy.clip_name), "clip");
  EXPECT_EQ(utf8(copy.file_path), "path");
  EXPECT_EQ(utf8(copy.originator_reference), "ref");
  EXPECT_EQ(copy.gain_right, 0.5F);
  EXPECT_EQ(copy.lw_channel_word, 9U);
  EXPECT_EQ(copy.source_word, 8U);
  EXPECT_EQ(copy.source_out, original->source_out);
  EXPECT_EQ(copy.event_number, 1);
}

TEST_F(GenericEdlEntry, TextSettersCutAtTheirFields) {
  CGenericEdlEntry entry(&edl_);
  entry.set_clip_name(std::u16string(130, u'c').c_str());
  EXPECT_EQ(utf8(entry.clip_name), std::string(128, 'c'));
  entry.set_clip_name(nullptr);
  EXPECT_EQ(utf8(entry.clip_name), "");
  entry.set_file_path(std::u16string(300, u'p').c_str());
  EXPECT_EQ(utf8(entry.file_path), std::string(256, 'p'));
  entry.set_fade_in_name(u"LINEARXYZ");
  EXPECT_EQ(utf8(entry.fade_in_name), "LINEARXY");
  entry.set_originator(std::u16string(40, u'o').c_str());
  EXPECT_EQ(utf8(entry.originator), std::string(32, 'o'));
  entry.set_source_reel_name(u"AB");
  EXPECT_EQ(utf8(entry.source_reel_name), "AB" + std::string(30, ' '));
  entry.set_source_reel_name(nullptr);
  EXPECT_EQ(utf8(entry.source_reel_name), std::string(32, ' '));
}

TEST_F(GenericEdlEntry, NullTextsCountAsEmpty) {
  CGenericEdlEntry entry(&edl_);
  entry.set_reel_name(nullptr);
  EXPECT_EQ(reel_of(entry), u"");
  entry.set_file_path(nullptr);
  entry.set_source_in_string(nullptr, 1);
  EXPECT_EQ(entry.source_in, 0);
}

TEST_F(GenericEdlEntry, ForcedCurvesWin) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_in_curve = 3;
  settings.default_fade_out_curve = 6;
  settings.force_default_fade_curves = 1;
  use(settings);
  CGenericEdlEntry entry(&edl_);
  entry.set_fade_in_curve(5);
  entry.set_fade_out_curve(5);
  EXPECT_EQ(entry.fade_in_curve, 3);
  EXPECT_EQ(entry.fade_out_curve, 6);
  settings.force_default_fade_curves = 0;
  use(settings);
  entry.set_fade_in_curve(5);
  EXPECT_EQ(entry.fade_in_curve, 5);
}

TEST_F(GenericEdlEntry, LongReelNamesAreFoundByTheirLastBlank) {
  NoReels edl;
  const auto is_long = [&edl](const wide_char* name) {
    CGenericEdlEntry entry(&edl);
    entry.set_reel_name(name);
    return entry.check_reel_name() != 0;
  };
  EXPECT_TRUE(is_long(u"ABCDEFGHI"));
  EXPECT_FALSE(is_long(u"ABCDEFGH"));
  EXPECT_FALSE(is_long(u"AB CDEFGHI"));
  EXPECT_TRUE(is_long(u"ABCDEFGHI J"));
  EXPECT_FALSE(is_long(u""));
}

TEST_F(GenericEdlEntry, TimesFromTimeCode) {
  CGenericEdlEntry entry(&edl_);
  entry.set_source_in_string(u"00:00:01:00xyz", 4);
  EXPECT_EQ(entry.source_in, 48000);
  EXPECT_EQ(utf8(entry.source_in_string), "00:00:01:00");
  EXPECT_EQ(entry.frame_rate, 4);
  entry.set_source_out_string(u"00:00:02:00");
  EXPECT_EQ(entry.source_out, 96000);
  EXPECT_EQ(entry.frame_rate, 4);
  entry.set_dest_in_string(u"00:00:03:00");
  entry.set_dest_out_string(u"00:00:04:00");
  EXPECT_EQ(entry.dest_in, 144000);
  EXPECT_EQ(entry.dest_out, 192000);
}

TEST_F(GenericEdlEntry, ReelRateMovesSourceTimesAndKeepsTheirDigits) {
  CGenericEdlEntry entry(&edl_);
  entry.set_reel_name(u"R");
  entry.source_in = 1920;
  entry.source_out = 3840;
  entry.dest_in = 1920;
  entry.reel->set_frame_rate(4);
  entry.check_reel_frame_rate();
  EXPECT_EQ(entry.source_in, 1600);
  EXPECT_EQ(entry.source_out, 3200);
  EXPECT_EQ(utf8(entry.source_in_string), "00:00:00:01");
  EXPECT_EQ(entry.frame_rate, 4);
  EXPECT_EQ(entry.dest_in, 1920);
  entry.reel = nullptr;
  entry.check_reel_frame_rate();
  EXPECT_EQ(entry.source_in, 1600);
}

TEST_F(GenericEdlEntry, ReelTakesTheOriginalFrameRate) {
  CGenericEdlEntry entry(&edl_);
  entry.update_reel_frame_rate();
  entry.set_reel_name(u"R");
  entry.reel->set_frame_rate(4);
  entry.update_reel_frame_rate();
  EXPECT_EQ(entry.reel->frame_rate(), 1);
}

TEST_F(GenericEdlEntry, DetailsAreConvertedFromTheCounts) {
  CGenericEdlEntry entry(&edl_);
  entry.set_reel_name(u"ABCDEFGHIJKL");
  entry.source_in = 48000;
  entry.source_out = 96000;
  set_field(entry.source_in_string, u"99:99:99:99");
  ENTRY_DETAILS details;
  entry.get_entry_details(&details);
  EXPECT_EQ(utf8(details.source_in_string), "00:00:01:00");
  EXPECT_EQ(utf8(details.source_out_string), "00:00:02:00");
  EXPECT_EQ(utf8(details.reel_name), "ABCDEFGHIJKL");
  EXPECT_EQ(details.reel_frame_rate, 1);
  EXPECT_EQ(details.streams, nullptr);
  entry.reel = nullptr;
  entry.get_entry_details(&details);
  EXPECT_EQ(details.reel_frame_rate, 0);
}

TEST_F(GenericEdlEntry, DetailsComeBackAsTheyWere) {
  support::Edit edit = support::standard_edit();
  edit.streams = {2, 3};
  const auto entry = support::make_entry(edl_, edit);
  entry->set_clip_name(u"KICK");
  entry->set_source_reel_name(u"LONG NAME");
  set_field(entry->comment, u"remark");
  entry->chunk_flags = 5;
  entry->mute_flag = 1;
  entry->level_in = 0.25F;
  entry->detail_word = 77;
  ENTRY_DETAILS details;
  entry->get_entry_details(&details);
  const std::unique_ptr<std::uint16_t[]> streams(details.streams);
  CGenericEdl other;
  support::set_rates(other);
  details.owner = &other;
  details.reel_frame_rate = 4;
  details.reel_no_streams = 6;
  CGenericEdlEntry copy(&other);
  set_field(copy.source_in_string, u"keep");
  copy.set_entry_details(&details);
  EXPECT_EQ(reel_of(copy), u"TAPE01");
  EXPECT_NE(copy.reel, entry->reel);
  EXPECT_EQ(copy.reel->frame_rate(), 4);
  EXPECT_EQ(copy.reel->no_streams, 6);
  EXPECT_EQ(streams_of(copy), (std::vector<int>{2, 3}));
  EXPECT_EQ(other.highest_stream(), 3);
  EXPECT_EQ(utf8(copy.source_in_string), "keep");
  EXPECT_EQ(copy.dest_out, entry->dest_out);
  EXPECT_EQ(utf8(copy.clip_name), "KICK");
  EXPECT_EQ(utf8(copy.comment), "remark");
  EXPECT_EQ(utf8(copy.source_reel_name), "LONG NAME" + std::string(23, ' '));
  EXPECT_EQ(copy.chunk_flags, 5);
  EXPECT_EQ(copy.mute_flag, 1);
  EXPECT_EQ(copy.level_in, 0.25F);
  EXPECT_EQ(copy.detail_word, 77U);
}

TEST_F(GenericEdlEntry, EntryWithoutOwnerWorksWithZeroSettings) {
  CGenericEdlEntry entry(nullptr);
  EXPECT_EQ(entry.fade_in_length, 0);
  entry.set_reel_name(u"R");
  entry.set_no_streams(1);
  entry.set_stream(0, 3);
  entry.update_reel_frame_rate();
  entry.check_reel_frame_rate();
  EXPECT_EQ(reel_of(entry), u"R");
  EXPECT_EQ(entry.timecode_to_samples(u"00:00:01:00"), 0);
}

}  // namespace
