#include "core/generic_edl_video_entry.h"

#include <gtest/gtest.h>

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
  const CGenericEdlVideoEntry entry(&edl_);
  EXPECT_EQ(entry.source_in, 0);
  EXPECT_EQ(entry.dest_out, 0);
  EXPECT_EQ(entry.gain, 1.0F);
  EXPECT_EQ(entry.event_number, 65535);
  EXPECT_EQ(entry.source_index, 65535);
  EXPECT_EQ(entry.source_timestamp, 0x7FFFFFFFFFFFFFFF);
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
  entry.set_source_in_string(u"00:00:01:00");
  entry.set_dest_out_string(u"00:00:02:00");
  entry.set_clip_name(u"clip");
  entry.set_source_reel_name(u"name");
  entry.detail_words[2] = 5;
  entry.transition_times[3] = 6;
  entry.gain = 0.5F;
  VIDEO_DETAILS details;
  entry.get_video_details(&details);
  CGenericEdlVideoEntry copy(&edl_);
  copy.set_video_details(&details);
  EXPECT_EQ(copy.source_in, 48000);
  EXPECT_EQ(copy.dest_out, 96000);
  EXPECT_EQ(utf8(copy.clip_name), "clip");
  EXPECT_EQ(utf8(copy.source_reel_name), "name" + std::string(28, ' '));
  EXPECT_EQ(copy.detail_words[2], 5U);
  EXPECT_EQ(copy.transition_times[3], 6);
  EXPECT_EQ(copy.gain, 0.5F);
  EXPECT_EQ(copy.reel, entry.reel);
}

TEST_F(GenericEdlVideoEntry, LongReelNames) {
  CGenericEdlVideoEntry entry(&edl_);
  entry.set_reel_name(u"ABCDEFGHI");
  EXPECT_NE(entry.check_reel_name(), 0);
  entry.set_reel_name(u"ABCDEFGH");
  EXPECT_EQ(entry.check_reel_name(), 0);
}

}  // namespace
