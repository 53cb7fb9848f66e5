#include "cli/records_json.h"

#include <gtest/gtest.h>

#include "core/generic_edl.h"
#include "tests/support/scripted_host.h"

namespace {

using cli::Json;

TEST(RecordsJson, EntryFieldsUnderTheirNames) {
  const support::ScriptedHost host;
  CGenericEdl edl;
  EDL_DETAILS rates;
  rates.sample_rate_index = 2;
  rates.frame_rate = 1;
  edl.set_edl_details(&rates);
  CGenericEdlEntry entry(&edl);
  entry.source_in = 1920;
  entry.source_out = time_not_given;
  entry.dest_length = 7;
  entry.gain_left = 0.5F;
  entry.level_out = -0.25F;
  entry.chunk_flags = -1;
  entry.source_timestamp = 12;
  entry.set_source_reel_name(u"PADDED");
  set_field(entry.src_index, u"0001");
  entry.set_no_streams(3);
  entry.set_stream(0, 4);
  entry.set_stream(2, 1);
  const Json json = cli::entry_json(entry);
  EXPECT_EQ(json["source_in"], 1920);
  EXPECT_EQ(json["source_in_string"], "00:00:00:01");
  EXPECT_TRUE(json["source_out"].is_null());
  EXPECT_TRUE(json["dest_in"].is_null());
  EXPECT_EQ(json["dest_length"], 7);
  EXPECT_EQ(json["gain_left"], 0.5);
  EXPECT_EQ(json["level_out"], -0.25);
  EXPECT_EQ(json["chunk_flags"], -1);
  EXPECT_EQ(json["source_timestamp"], 12);
  EXPECT_EQ(json["source_reel_name"], "PADDED");
  EXPECT_EQ(json["src_index"], "0001");
  EXPECT_EQ(json["streams"], Json::array({4, 65535, 1}));
  EXPECT_EQ(json["no_streams"], 3);
}

TEST(RecordsJson, VideoFieldsUnderTheirNames) {
  const support::ScriptedHost host;
  CGenericEdl edl;
  CGenericEdlVideoEntry entry(&edl);
  entry.video_word = 9;
  entry.detail_words[3] = 4000000000U;
  entry.transition_times[1] = -5;
  entry.transition_times[2] = time_not_given;
  entry.gain = 2.0F;
  const Json json = cli::video_entry_json(entry);
  EXPECT_EQ(json["video_word"], 9);
  EXPECT_EQ(json["detail_words"], Json::array({0, 0, 0, 4000000000U}));
  EXPECT_EQ(json["transition_times"], Json::array({0, -5, nullptr, 0}));
  EXPECT_EQ(json["gain"], 2.0);
}

TEST(RecordsJson, Reel) {
  CGenericReel reel(u"TAPE  ", 4);
  reel.set_reel_no_streams(2);
  EXPECT_EQ(cli::reel_json(reel),
            (Json{{"reel_name", "TAPE"}, {"frame_rate", 4}, {"no_streams", 2}}));
}

TEST(RecordsJson, DiscIndex) {
  PQ_DETAILS details;
  for (wide_char& c : details.pq_catalogue)
    c = u'7';
  set_field(details.pq_text[6], u"last");
  details.pq_word = 3;
  EXPECT_EQ(cli::pq_json(details), (Json{{"catalogue", "7777777777777"},
                                         {"texts", {"", "", "", "", "", "", "last"}},
                                         {"word", 3}}));
  CGenericPQEntry entry;
  entry.position_a = 1;
  entry.position_b = time_not_given;
  entry.track_number = 3;
  entry.index_number = 4;
  entry.first_text = CString(u"one");
  entry.second_text = CString(u"two");
  entry.flag_a = 5;
  entry.flag_b = 6;
  entry.isrc = CString(u"ISRC");
  entry.third_text = CString(u"three");
  EXPECT_EQ(cli::pq_entry_json(entry), (Json{{"position_a", 1},
                                             {"position_b", nullptr},
                                             {"track_number", 3},
                                             {"index_number", 4},
                                             {"first_text", "one"},
                                             {"second_text", "two"},
                                             {"flag_a", 5},
                                             {"flag_b", 6},
                                             {"isrc", "ISRC"},
                                             {"third_text", "three"}}));
}

TEST(RecordsJson, LocatorAndAutomation) {
  CGenericLocatorEntry locator;
  locator.time = 48000;
  locator.name = CString(u"SCENE 2 ");
  locator.locator_value = -1;
  EXPECT_EQ(cli::locator_json(locator),
            (Json{{"time", 48000}, {"name", "SCENE 2"}, {"locator_value", -1}}));

  CObList points(10);
  CGenericAutomationEntry first;
  first.time = 10;
  first.value = 384;
  CGenericAutomationEntry second;
  second.time = 20;
  second.value = -3;
  points.AddTail(&first);
  points.AddTail(&second);
  CGenericAutomationChunk chunk;
  chunk.type = 2;
  chunk.channel = 7;
  EXPECT_EQ(cli::automation_json(chunk),
            (Json{{"type", 2}, {"channel", 7}, {"points", Json::array()}}));
  chunk.points = &points;
  EXPECT_EQ(cli::automation_json(chunk),
            (Json{{"type", 2}, {"channel", 7}, {"points", {{10, 384}, {20, -3}}}}));
  points.RemoveAll();
}

}  // namespace
