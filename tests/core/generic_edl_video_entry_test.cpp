#include "core/generic_edl_video_entry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "core/generic_reel.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"

namespace {

using support::utf8;

class GenericEdlVideoEntry : public testing::Test {
 protected:
  GenericEdlVideoEntry() { support::set_rates(edl_); }
  CGenericEdl edl_;
};

TEST_F(GenericEdlVideoEntry, NewEntry) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_in_curve = 3;
  settings.default_fade_out_curve = 4;
  edl_.set_edl_conversion_settings(&settings);
  const CGenericEdlVideoEntry entry(&edl_);
  for (const std::int64_t time : {entry.source_in, entry.source_out, entry.video_word,
                                  entry.dest_in, entry.dest_out, entry.dest_length}) {
    EXPECT_EQ(time, 0);
  }
  EXPECT_EQ(entry.gain, 1.0F);
  EXPECT_EQ(entry.event_number, 65535);
  EXPECT_EQ(entry.source_index, 65535);
  EXPECT_EQ(entry.event_flags + entry.reserved_word, 0);
  EXPECT_EQ(entry.source_timestamp, 0x7FFFFFFFFFFFFFFF);
  EXPECT_EQ(entry.fade_in_curve, 3);
  EXPECT_EQ(entry.fade_out_curve, 4);
  EXPECT_EQ(entry.reel, nullptr);
  EXPECT_EQ(entry.owner, &edl_);
  EXPECT_EQ(entry.transition_type, 0U);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(entry.detail_words[i], 0U);
    EXPECT_EQ(entry.transition_times[i], 0);
  }
  for (const std::u16string_view text :
       {field_text(entry.reel_name), field_text(entry.clip_name), field_text(entry.file_path),
        field_text(entry.source_reel_name), field_text(entry.comment)}) {
    EXPECT_EQ(utf8(text), "");
  }
}

TEST_F(GenericEdlVideoEntry, TextsAndTimesOfNothing) {
  CGenericEdlVideoEntry entry(nullptr);
  EXPECT_EQ(entry.fade_in_curve, 0);
  const wide_char* const none = nullptr;
  entry.set_reel_name(none);
  entry.set_clip_name(none);
  entry.set_file_path(none);
  entry.set_source_reel_name(none);
  entry.set_source_in_string(none);
  entry.set_source_out_string(none);
  entry.set_dest_in_string(none);
  entry.set_dest_out_string(none);
  EXPECT_EQ(entry.reel, nullptr);
  EXPECT_EQ(utf8(entry.source_reel_name), std::string(32, ' '));
  EXPECT_EQ(entry.source_in + entry.source_out + entry.dest_in + entry.dest_out, 0);
  wide_char text[12];
  entry.samples_to_timecode(48000, text);
  EXPECT_EQ(utf8(text), "00:00:00:00");
  EXPECT_EQ(entry.check_reel_name(), 0);
}

TEST_F(GenericEdlVideoEntry, TextsAreCutAtTheirFields) {
  CGenericEdlVideoEntry entry(&edl_);
  const std::u16string longest(300, u'x');
  entry.set_clip_name(longest.c_str());
  entry.set_file_path(longest.c_str());
  entry.set_source_reel_name(longest.c_str());
  entry.set_reel_name(longest.c_str());
  wide_char out[400];
  entry.get_clip_name(out, 400);
  EXPECT_EQ(utf8(out), std::string(128, 'x'));
  entry.get_file_path(out, 400);
  EXPECT_EQ(utf8(out), std::string(256, 'x'));
  entry.get_source_reel_name(out, 400);
  EXPECT_EQ(utf8(out), std::string(32, 'x'));
  entry.get_reel_name(out, 400);
  EXPECT_EQ(utf8(out), std::string(12, 'x'));
  entry.get_reel_name(out, 5);
  EXPECT_EQ(utf8(out), "xxxx");
  out[0] = u'!';
  entry.get_reel_name(out, 0);
  entry.get_clip_name(out, 0);
  entry.get_file_path(out, -1);
  entry.get_source_reel_name(out, 0);
  EXPECT_EQ(out[0], u'!');
}

TEST_F(GenericEdlVideoEntry, TimeCodeAtTheRatesOfTheOwner) {
  CGenericEdlVideoEntry entry(&edl_);
  EXPECT_EQ(entry.timecode_to_samples(u"00:00:01:12"), 71040);
  EXPECT_EQ(entry.timecode_to_samples(CString(u"00:00:01:12")), 71040);
  wide_char text[12];
  entry.samples_to_timecode(-48000, text);
  EXPECT_EQ(utf8(text), "-00:00:01:0");
  entry.set_source_out_string(u"00:00:00:01");
  entry.set_dest_in_string(u"00:00:00:02");
  EXPECT_EQ(entry.source_out, 1920);
  EXPECT_EQ(entry.dest_in, 3840);
}

TEST_F(GenericEdlVideoEntry, ForcedCurvesWin) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_in_curve = 3;
  settings.default_fade_out_curve = 6;
  settings.force_default_fade_curves = 1;
  edl_.set_edl_conversion_settings(&settings);
  CGenericEdlVideoEntry entry(&edl_);
  VIDEO_DETAILS details;
  details.owner = &edl_;
  details.fade_in_curve = details.fade_out_curve = 9;
  entry.set_video_details(&details);
  EXPECT_EQ(entry.fade_in_curve, 3);
  EXPECT_EQ(entry.fade_out_curve, 6);
  settings.force_default_fade_curves = 0;
  edl_.set_edl_conversion_settings(&settings);
  entry.set_video_details(&details);
  EXPECT_EQ(entry.fade_in_curve, 9);
  EXPECT_EQ(entry.fade_out_curve, 9);
}

TEST_F(GenericEdlVideoEntry, NewNameChangesTheRateOfTheReelOfBefore) {
  CGenericEdlVideoEntry entry(&edl_);
  entry.set_reel_name(u"OLD");
  CGenericReel* const old_reel = entry.reel;
  VIDEO_DETAILS details;
  entry.get_video_details(&details);
  set_field(details.reel_name, u"NEW");
  details.reel_frame_rate = 4;
  entry.set_video_details(&details);
  EXPECT_EQ(old_reel->frame_rate(), 4);
  EXPECT_EQ(utf8(entry.reel->reel_name), "NEW");
  EXPECT_EQ(entry.reel->frame_rate(), 1);
}

TEST_F(GenericEdlVideoEntry, DetailsWithoutReel) {
  CGenericEdlVideoEntry entry(&edl_);
  set_field(entry.reel_name, u"FIELD");
  VIDEO_DETAILS details;
  entry.get_video_details(&details);
  EXPECT_EQ(utf8(details.reel_name), "FIELD");
  EXPECT_EQ(details.reel_frame_rate, 0);
  entry.set_video_details(&details);
  EXPECT_EQ(utf8(entry.reel->reel_name), "FIELD");
}

TEST_F(GenericEdlVideoEntry, DetailsComeBackAsTheyWere) {
  CGenericEdlVideoEntry entry(&edl_);
  entry.set_reel_name(u"V1");
  entry.source_in = 11;
  entry.source_out = 12;
  entry.video_word = 13;
  entry.dest_in = 14;
  entry.dest_out = 15;
  entry.dest_length = 16;
  entry.fade_in_curve = 17;
  entry.fade_out_curve = 18;
  entry.set_clip_name(u"clip");
  entry.set_file_path(u"path");
  entry.set_source_reel_name(u"name");
  entry.event_flags = 19;
  entry.event_number = 20;
  entry.reserved_word = 21;
  entry.source_index = 22;
  set_field(entry.comment, u"remark");
  entry.source_timestamp = 23;
  entry.transition_type = 51;
  entry.gain = 0.5F;
  for (int i = 0; i < 4; ++i) {
    entry.detail_words[i] = 30U + static_cast<unsigned>(i);
    entry.transition_times[i] = 40 + i;
  }
  VIDEO_DETAILS details;
  entry.get_video_details(&details);
  EXPECT_EQ(details.owner, &edl_);
  EXPECT_EQ(utf8(details.reel_name), "V1");
  EXPECT_EQ(details.reel_frame_rate, 1);
  CGenericEdlVideoEntry copy(nullptr);
  copy.set_video_details(&details);
  EXPECT_EQ(copy.owner, &edl_);
  EXPECT_EQ(copy.reel, entry.reel);
  EXPECT_EQ(copy.source_in, 11);
  EXPECT_EQ(copy.source_out, 12);
  EXPECT_EQ(copy.video_word, 13);
  EXPECT_EQ(copy.dest_in, 14);
  EXPECT_EQ(copy.dest_out, 15);
  EXPECT_EQ(copy.dest_length, 16);
  EXPECT_EQ(copy.fade_in_curve, 17);
  EXPECT_EQ(copy.fade_out_curve, 18);
  EXPECT_EQ(utf8(copy.clip_name), "clip");
  EXPECT_EQ(utf8(copy.file_path), "path");
  EXPECT_EQ(utf8(copy.source_reel_name), "name" + std::string(28, ' '));
  EXPECT_EQ(copy.event_flags, 19);
  EXPECT_EQ(copy.event_number, 20);
  EXPECT_EQ(copy.reserved_word, 21);
  EXPECT_EQ(copy.source_index, 22);
  EXPECT_EQ(utf8(copy.comment), "remark");
  EXPECT_EQ(copy.source_timestamp, 23);
  EXPECT_EQ(copy.transition_type, 51U);
  EXPECT_EQ(copy.gain, 0.5F);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(copy.detail_words[i], 30U + static_cast<unsigned>(i));
    EXPECT_EQ(copy.transition_times[i], 40 + i);
  }
}

TEST_F(GenericEdlVideoEntry, DetailsWithoutTerminators) {
  VIDEO_DETAILS details;
  details.owner = &edl_;
  std::fill(std::begin(details.reel_name), std::end(details.reel_name), u'r');
  std::fill(std::begin(details.comment), std::end(details.comment), u'm');
  CGenericEdlVideoEntry entry(&edl_);
  entry.set_video_details(&details);
  entry.set_video_details(&details);
  EXPECT_EQ(edl_.get_reel_list()->GetCount(), 1);
  EXPECT_EQ(utf8(entry.comment), std::string(128, 'm'));
}

TEST_F(GenericEdlVideoEntry, LongReelNames) {
  CGenericEdlVideoEntry entry(&edl_);
  entry.set_reel_name(u"ABCDEFGHI");
  EXPECT_NE(entry.check_reel_name(), 0);
  entry.set_reel_name(u"ABCDEFGH");
  EXPECT_EQ(entry.check_reel_name(), 0);
}

}  // namespace
