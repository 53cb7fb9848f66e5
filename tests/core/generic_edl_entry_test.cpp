#include "core/generic_edl_entry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "core/generic_reel.h"
#include "host/audio.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"
#include "tests/support/faulty_allocations.h"

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
  for (const std::int64_t time :
       {entry.source_in, entry.source_out, entry.dest_in, entry.dest_out, entry.dest_length}) {
    EXPECT_EQ(time, time_not_given);
  }
  for (const std::u16string_view text :
       {field_text(entry.source_in_string), field_text(entry.source_out_string),
        field_text(entry.reel_name), field_text(entry.fade_in_name),
        field_text(entry.fade_out_name), field_text(entry.clip_name), field_text(entry.file_path),
        field_text(entry.comment), field_text(entry.source_reel_name), field_text(entry.src_index),
        field_text(entry.originator), field_text(entry.originator_reference)}) {
    EXPECT_EQ(utf8(text), "");
  }
  EXPECT_EQ(entry.reel, nullptr);
  EXPECT_EQ(entry.owner, &edl_);
  EXPECT_EQ(entry.streams, nullptr);
  EXPECT_EQ(entry.audio_content, nullptr);
  EXPECT_EQ(entry.reel_no_streams + entry.first_channel + entry.event_flags, 0);
  EXPECT_EQ(entry.no_channels + entry.channel_offset + entry.chunk_flags, 0);
  EXPECT_EQ(entry.fade_in_shape + entry.mute_flag + entry.fade_out_shape, 0);
  EXPECT_EQ(entry.level_in, 0.0F);
  EXPECT_EQ(entry.level_out, 0.0F);
  EXPECT_EQ(entry.detail_word + entry.source_time_word + entry.source_channel, 0U);
  EXPECT_EQ(entry.transition_type + entry.lw_channel_word + entry.source_word, 0U);
  EXPECT_EQ(entry.original_dest_in + entry.original_dest_out, 0);
  EXPECT_EQ(entry.original_source_in + entry.original_source_out, 0);
}

TEST_F(GenericEdlEntry, StreamsWithoutMemoryAreNone) {
  CGenericEdlEntry entry(&edl_);
  entry.set_no_streams(2);
  {
    const support::FaultyAllocations faults(1);
    entry.set_no_streams(4);
    ASSERT_EQ(support::FaultyAllocations::failed(), 1U);
  }
  EXPECT_EQ(entry.no_streams, 0);
  EXPECT_EQ(entry.streams, nullptr);
  entry.set_stream(0, 1);
  EXPECT_EQ(entry.get_stream(0), 65535);
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

// Gives every field a value of its own, far from its default.
void fill(CGenericEdlEntry& e) {
  e.set_reel_name(u"TAPE01");
  e.source_in = 11;
  e.source_out = 12;
  set_field(e.source_in_string, u"01:02:03:04");
  set_field(e.source_out_string, u"05:06:07:08");
  e.frame_rate = 4;
  e.source_is_timestamped = 0;
  e.dest_in = 13;
  e.dest_out = 14;
  e.dest_length = 15;
  set_field(e.reel_name, u"FIELDNAME");
  e.reel_no_streams = 16;
  e.first_channel = 17;
  e.fade_in_curve = 18;
  e.fade_out_curve = 19;
  e.fade_in_length = 20;
  e.fade_out_length = 21;
  e.set_fade_in_name(u"INCURVE1");
  e.set_fade_out_name(u"OUTCURV2");
  e.set_clip_name(std::u16string(128, u'c').c_str());
  e.set_file_path(std::u16string(256, u'p').c_str());
  e.event_number = 22;
  e.event_flags = 23;
  e.source_index = 24;
  set_field(e.comment, std::u16string(128, u'm'));
  e.chunk_flags = 25;
  e.set_no_streams(3);
  e.set_stream(0, 26);
  e.set_stream(1, 65535);
  e.set_stream(2, 28);
  e.no_channels = 29;
  e.channel_offset = 30;
  e.detail_word = 31;
  e.gain_left = 0.25F;
  e.gain_right = 0.75F;
  e.fade_in_shape = 32;
  e.mute_flag = 33;
  e.fade_out_shape = 34;
  e.set_source_reel_name(u"A LONG NAME");
  e.source_timestamp = 35;
  e.source_time_word = 36;
  e.source_channel = 37;
  e.level_in = 0.5F;
  e.level_out = 0.125F;
  e.transition_type = 51;
  e.original_dest_in = 38;
  e.original_dest_out = 39;
  e.original_source_in = 40;
  e.original_source_out = 41;
  set_field(e.src_index, u"123456789");
  e.lw_channel_word = 42;
  set_field(e.originator, std::u16string(32, u'o'));
  e.source_word = 43;
  set_field(e.originator_reference, std::u16string(32, u'r'));
}

// Fields that a copy and a details record both carry.
void expect_carried(const CGenericEdlEntry& got, const CGenericEdlEntry& e) {
  EXPECT_EQ(got.source_in, e.source_in);
  EXPECT_EQ(got.source_out, e.source_out);
  EXPECT_EQ(got.frame_rate, e.frame_rate);
  EXPECT_EQ(got.source_is_timestamped, e.source_is_timestamped);
  EXPECT_EQ(got.dest_in, e.dest_in);
  EXPECT_EQ(got.dest_out, e.dest_out);
  EXPECT_EQ(got.dest_length, e.dest_length);
  EXPECT_EQ(got.first_channel, e.first_channel);
  EXPECT_EQ(got.fade_in_curve, e.fade_in_curve);
  EXPECT_EQ(got.fade_out_curve, e.fade_out_curve);
  EXPECT_EQ(got.fade_in_length, e.fade_in_length);
  EXPECT_EQ(got.fade_out_length, e.fade_out_length);
  EXPECT_EQ(utf8(got.fade_in_name), utf8(e.fade_in_name));
  EXPECT_EQ(utf8(got.fade_out_name), utf8(e.fade_out_name));
  EXPECT_EQ(utf8(got.clip_name), utf8(e.clip_name));
  EXPECT_EQ(utf8(got.file_path), utf8(e.file_path));
  EXPECT_EQ(got.event_number, e.event_number);
  EXPECT_EQ(got.event_flags, e.event_flags);
  EXPECT_EQ(got.source_index, e.source_index);
  EXPECT_EQ(utf8(got.comment), utf8(e.comment));
  EXPECT_EQ(got.chunk_flags, e.chunk_flags);
  EXPECT_EQ(streams_of(got), streams_of(e));
  EXPECT_EQ(got.no_channels, e.no_channels);
  EXPECT_EQ(got.channel_offset, e.channel_offset);
  EXPECT_EQ(got.gain_left, e.gain_left);
  EXPECT_EQ(got.gain_right, e.gain_right);
  EXPECT_EQ(got.fade_in_shape, e.fade_in_shape);
  EXPECT_EQ(got.mute_flag, e.mute_flag);
  EXPECT_EQ(got.fade_out_shape, e.fade_out_shape);
  EXPECT_EQ(utf8(got.source_reel_name), utf8(e.source_reel_name));
  EXPECT_EQ(got.source_timestamp, e.source_timestamp);
  EXPECT_EQ(got.source_time_word, e.source_time_word);
  EXPECT_EQ(got.source_channel, e.source_channel);
  EXPECT_EQ(got.level_in, e.level_in);
  EXPECT_EQ(got.level_out, e.level_out);
  EXPECT_EQ(got.transition_type, e.transition_type);
  EXPECT_EQ(got.original_dest_in, e.original_dest_in);
  EXPECT_EQ(got.original_dest_out, e.original_dest_out);
  EXPECT_EQ(got.original_source_in, e.original_source_in);
  EXPECT_EQ(got.original_source_out, e.original_source_out);
  EXPECT_EQ(utf8(got.src_index), utf8(e.src_index));
  EXPECT_EQ(got.lw_channel_word, e.lw_channel_word);
  EXPECT_EQ(utf8(got.originator), utf8(e.originator));
  EXPECT_EQ(got.source_word, e.source_word);
  EXPECT_EQ(utf8(got.originator_reference), utf8(e.originator_reference));
}

struct Content final : CAudCnt {
  [[nodiscard]] bool is_available() const override { return false; }
  [[nodiscard]] std::uint32_t sample_rate() const override { return 0; }
  bool get_format(AudioFormat&) const override { return false; }
  [[nodiscard]] AudioFile* file() const override { return nullptr; }
};

TEST_F(GenericEdlEntry, CopyTakesAllButContentAndDetailWord) {
  Content content;
  CGenericEdlEntry original(&edl_);
  fill(original);
  original.audio_content = &content;
  EXPECT_EQ(original.get_audio_content(), &content);
  CGenericEdl other;
  CGenericEdlEntry copy(&other, &original);
  expect_carried(copy, original);
  EXPECT_EQ(utf8(copy.source_in_string), "01:02:03:04");
  EXPECT_EQ(utf8(copy.source_out_string), "05:06:07:08");
  EXPECT_EQ(utf8(copy.reel_name), "FIELDNAME");
  EXPECT_EQ(copy.reel_no_streams, 16);
  EXPECT_EQ(copy.owner, &other);
  EXPECT_EQ(copy.reel, original.reel);
  EXPECT_EQ(copy.detail_word, 0U);
  EXPECT_EQ(copy.get_audio_content(), nullptr);
  EXPECT_NE(copy.streams, original.streams);
  EXPECT_TRUE(other.get_reel_list()->IsEmpty());
  copy.set_stream(0, 5);
  EXPECT_EQ(original.get_stream(0), 26);
}

TEST_F(GenericEdlEntry, CopyOfAnEntryWithoutStreams) {
  const CGenericEdlEntry original(&edl_);
  const CGenericEdlEntry copy(&edl_, &original);
  EXPECT_EQ(copy.no_streams, 0);
  EXPECT_EQ(copy.streams, nullptr);
}

TEST_F(GenericEdlEntry, TextSettersCutAtTheirFields) {
  CGenericEdlEntry entry(&edl_);
  entry.set_clip_name(std::u16string(130, u'c').c_str());
  EXPECT_EQ(utf8(entry.clip_name), std::string(128, 'c'));
  // The rest of the field is cleared.
  entry.set_clip_name(u"ab");
  EXPECT_EQ(std::u16string(entry.clip_name, 129), u"ab" + std::u16string(127, u'\0'));
  entry.set_clip_name(nullptr);
  EXPECT_EQ(utf8(entry.clip_name), "");
  entry.set_file_path(std::u16string(300, u'p').c_str());
  EXPECT_EQ(utf8(entry.file_path), std::string(256, 'p'));
  entry.set_fade_in_name(u"LINEARXYZ");
  EXPECT_EQ(utf8(entry.fade_in_name), "LINEARXY");
  entry.set_fade_out_name(u"SMOOTHXYZ");
  EXPECT_EQ(utf8(entry.fade_out_name), "SMOOTHXY");
  entry.set_originator_reference(std::u16string(40, u'r').c_str());
  EXPECT_EQ(utf8(entry.originator_reference), std::string(32, 'r'));
  entry.set_source_reel_name(std::u16string(40, u's').c_str());
  EXPECT_EQ(utf8(entry.source_reel_name), std::string(32, 's'));
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
  fill(entry);
  entry.set_file_path(nullptr);
  entry.set_originator(nullptr);
  entry.set_originator_reference(nullptr);
  entry.set_fade_in_name(nullptr);
  entry.set_fade_out_name(nullptr);
  for (const std::u16string_view text :
       {field_text(entry.file_path), field_text(entry.originator),
        field_text(entry.originator_reference), field_text(entry.fade_in_name),
        field_text(entry.fade_out_name)}) {
    EXPECT_EQ(utf8(text), "");
  }
  const wide_char* const none = nullptr;
  entry.set_source_in_string(none, 1);
  entry.set_source_out_string(none);
  entry.set_dest_in_string(none);
  entry.set_dest_out_string(none);
  EXPECT_EQ(entry.source_in, 0);
  EXPECT_EQ(entry.source_out, 0);
  EXPECT_EQ(entry.dest_in, 0);
  EXPECT_EQ(entry.dest_out, 0);
  EXPECT_EQ(utf8(entry.source_in_string), "");
  EXPECT_EQ(entry.timecode_to_samples(none), 0);
  NoReels edl;
  CGenericEdlEntry named(&edl);
  set_field(named.reel_name, u"OLD");
  named.set_reel_name(nullptr);
  EXPECT_EQ(utf8(named.reel_name), "");
}

TEST_F(GenericEdlEntry, GettersKeepToTheSizeAskedFor) {
  CGenericEdlEntry entry(&edl_);
  fill(entry);
  using Getter = void (CGenericEdlEntry::*)(wide_char*, int) const;
  const std::pair<Getter, const char*> getters[] = {
      {&CGenericEdlEntry::get_reel_name, "TAPE01"},
      {&CGenericEdlEntry::get_clip_name, "cccccccc"},
      {&CGenericEdlEntry::get_file_path, "pppppppp"},
      {&CGenericEdlEntry::get_source_reel_name, "A LONG N"},
      {&CGenericEdlEntry::get_originator, "oooooooo"},
      {&CGenericEdlEntry::get_originator_reference, "rrrrrrrr"},
      {&CGenericEdlEntry::get_fade_in_name, "INCURVE1"},
      {&CGenericEdlEntry::get_fade_out_name, "OUTCURV2"}};
  for (const auto& [get, text] : getters) {
    for (const int size : {-1, 0}) {
      wide_char out[1] = {u'x'};
      (entry.*get)(out, size);
      EXPECT_EQ(out[0], u'x') << text;
    }
    for (int size = 1; size <= 9; ++size) {
      const auto out = std::make_unique<wide_char[]>(static_cast<std::size_t>(size));
      (entry.*get)(out.get(), size);
      EXPECT_EQ(utf8(out.get()), std::string(text).substr(0, static_cast<std::size_t>(size) - 1));
    }
  }
  wide_char whole[400];
  entry.get_file_path(whole, 400);
  EXPECT_EQ(utf8(whole), std::string(256, 'p'));
  entry.reel = nullptr;
  entry.get_reel_name(whole, 8);
  EXPECT_EQ(utf8(whole), "FIELDNA");
}

TEST_F(GenericEdlEntry, ReelsOfLongNames) {
  CGenericEdlEntry first(&edl_);
  first.set_reel_name(u"ABCDEFGHIJKLMN");
  EXPECT_EQ(reel_of(first), u"ABCDEFGHIJKL");
  CGenericEdlEntry second(&edl_);
  second.set_reel_name(u"ABCDEFGHIJKLMN");
  EXPECT_EQ(reel_of(second), u"ABCDEFGHIJKL");
  EXPECT_NE(second.reel, first.reel);
  CGenericEdlEntry third(&edl_);
  third.set_reel_name(u"abcdefghijkl");
  EXPECT_EQ(third.reel, first.reel);
  third.set_reel_name(u"AB  ");
  EXPECT_EQ(reel_of(third), u"AB");
  EXPECT_EQ(third.reel->frame_rate(), 1);
  third.raise_source_streams(3);
  third.raise_source_streams(2);
  EXPECT_EQ(third.reel->no_streams, 3);
  EXPECT_EQ(third.reel_no_streams, 0);
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
  EXPECT_FALSE(is_long(u"A CDEFGHIJ"));
  EXPECT_TRUE(is_long(u" BCDEFGHIJ")) << "the first character is not looked at";
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
  CGenericEdlEntry entry(&edl_);
  fill(entry);
  entry.reel->set_reel_no_streams(6);
  ENTRY_DETAILS details;
  entry.get_entry_details(&details);
  const std::unique_ptr<std::uint16_t[]> streams(details.streams);
  EXPECT_EQ(details.owner, &edl_);
  EXPECT_EQ(details.reel_frame_rate, 1);
  EXPECT_EQ(details.reel_no_streams, 6);
  EXPECT_EQ(details.no_streams, 3);
  EXPECT_NE(details.streams, entry.streams);
  EXPECT_EQ(details.detail_word, 31U);
  CGenericEdl other;
  support::set_rates(other);
  details.owner = &other;
  details.reel_frame_rate = 4;
  CGenericEdlEntry copy(&edl_);
  set_field(copy.source_in_string, u"keep");
  set_field(copy.source_out_string, u"keep too");
  copy.set_entry_details(&details);
  expect_carried(copy, entry);
  EXPECT_EQ(copy.owner, &other);
  EXPECT_EQ(copy.detail_word, 31U);
  EXPECT_EQ(reel_of(copy), u"TAPE01");
  EXPECT_NE(copy.reel, entry.reel);
  EXPECT_EQ(copy.reel->frame_rate(), 4);
  EXPECT_EQ(copy.reel->no_streams, 6);
  EXPECT_EQ(other.highest_stream(), 28);
  EXPECT_EQ(utf8(copy.source_in_string), "keep");
  EXPECT_EQ(utf8(copy.source_out_string), "keep too");
}

TEST_F(GenericEdlEntry, DetailsFindAReelThatIsThere) {
  CGenericEdlEntry entry(&edl_);
  entry.set_reel_name(u"TAPE");
  entry.reel->set_reel_no_streams(8);
  ENTRY_DETAILS details;
  details.owner = &edl_;
  set_field(details.reel_name, u"tape");
  details.reel_frame_rate = 3;
  details.reel_no_streams = 2;
  CGenericEdlEntry other(&edl_);
  other.set_entry_details(&details);
  EXPECT_EQ(other.reel, entry.reel);
  EXPECT_EQ(entry.reel->frame_rate(), 3);
  EXPECT_EQ(entry.reel->no_streams, 8);
}

TEST_F(GenericEdlEntry, DetailsWithoutReelObjectsStayInTheEntry) {
  NoReels edl;
  ENTRY_DETAILS details;
  details.owner = &edl;
  std::fill(std::begin(details.reel_name), std::end(details.reel_name), u'r');
  details.reel_no_streams = 5;
  CGenericEdlEntry entry(&edl);
  entry.reel_no_streams = 9;
  entry.set_entry_details(&details);
  EXPECT_EQ(utf8(entry.reel_name), std::string(12, 'r'));
  EXPECT_EQ(entry.reel_no_streams, 5);
  entry.get_entry_details(&details);
  EXPECT_EQ(details.reel_frame_rate, 0);
  EXPECT_EQ(details.reel_no_streams, 5);
}

TEST_F(GenericEdlEntry, ForcedCurvesWinOverDetails) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_in_curve = 3;
  settings.default_fade_out_curve = 6;
  settings.force_default_fade_curves = 1;
  use(settings);
  ENTRY_DETAILS details;
  details.owner = &edl_;
  details.fade_in_curve = details.fade_out_curve = 9;
  CGenericEdlEntry entry(nullptr);
  entry.set_entry_details(&details);
  EXPECT_EQ(entry.fade_in_curve, 3);
  EXPECT_EQ(entry.fade_out_curve, 6);
}

TEST_F(GenericEdlEntry, DetailsThatAreDamaged) {
  ENTRY_DETAILS details;
  details.owner = nullptr;
  details.no_streams = 3;
  details.streams = nullptr;
  std::fill(std::begin(details.reel_name), std::end(details.reel_name), u'r');
  std::fill(std::begin(details.clip_name), std::end(details.clip_name), u'c');
  std::fill(std::begin(details.comment), std::end(details.comment), u'm');
  std::fill(std::begin(details.fade_out_name), std::end(details.fade_out_name), u'f');
  std::fill(std::begin(details.originator_reference), std::end(details.originator_reference), u'o');
  CGenericEdlEntry entry(&edl_);
  entry.set_entry_details(&details);
  EXPECT_EQ(entry.no_streams, 0);
  EXPECT_EQ(utf8(entry.reel_name), std::string(12, 'r'));
  EXPECT_EQ(utf8(entry.clip_name), std::string(128, 'c'));
  EXPECT_EQ(utf8(entry.comment), std::string(128, 'm'));
  EXPECT_EQ(utf8(entry.fade_out_name), std::string(8, 'f'));
  EXPECT_EQ(utf8(entry.originator_reference), std::string(32, 'o'));
  // With reels, a name without its terminator still makes one reel and finds it again.
  details.owner = &edl_;
  entry.set_entry_details(&details);
  entry.set_entry_details(&details);
  EXPECT_EQ(edl_.get_reel_list()->GetCount(), 1);
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
