#include "text/cmx_edl.h"

#include <gtest/gtest.h>

#include "core/generic_edl_video_entry.h"
#include "core/generic_reel.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace {

using support::entries_of;
using support::reel_of;
using support::streams_of;
using support::utf8;

constexpr const char* times = " 01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n";

class CmxRead : public testing::Test {
 protected:
  CmxRead() { support::set_rates(edl_); }

  void use(const EDL_CONVERSION_SETTINGS& settings) { edl_.set_edl_conversion_settings(&settings); }
  result_code import(const std::string& bytes) {
    support::write_file(folder_.file("in.edl"), bytes);
    return edl_.import_edl(folder_.wide_file("in.edl"));
  }
  // The only audio entry of a file of one event line.
  CGenericEdlEntry& only(const std::string& head) {
    EXPECT_EQ(import(head + times), 100);
    EXPECT_EQ(entries_of(edl_).size(), 1U);
    return *entries_of(edl_).at(0);
  }
  [[nodiscard]] std::size_t audio_count() const { return entries_of(edl_).size(); }
  [[nodiscard]] std::intptr_t video_count() const { return edl_.get_video_list()->GetCount(); }

  support::ScriptedHost host_;
  support::TempFolder folder_;
  CCMXEdl edl_{4, nullptr, 0};
};

TEST_F(CmxRead, MissingFileAndFileOfAnotherFormat) {
  EXPECT_EQ(edl_.import_edl(folder_.wide_file("none")), 0);
  EXPECT_EQ(import("TITLE: x\nno event here\n"), 4);
}

TEST_F(CmxRead, CutTakesTheDefaultFades) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_length = 240;
  use(settings);
  const CGenericEdlEntry& entry = only("001  R1 A C");
  EXPECT_EQ(entry.event_number, 1);
  EXPECT_EQ(reel_of(entry), u"R1");
  EXPECT_EQ(utf8(entry.source_reel_name), "R1" + std::string(30, ' '));
  EXPECT_EQ(streams_of(entry), std::vector<int>{0});
  EXPECT_EQ(entry.fade_in_length, 240);
  EXPECT_EQ(entry.fade_out_length, 240);
  EXPECT_EQ(entry.transition_type, 50U);
  EXPECT_EQ(entry.source_in, 172800000);
  EXPECT_EQ(entry.source_out, 173280000);
  EXPECT_EQ(entry.dest_in, 1728000000);
  EXPECT_EQ(entry.dest_out, 1728480000);
  EXPECT_EQ(utf8(entry.source_in_string), "01:00:00:00");
  EXPECT_EQ(entry.reel->frame_rate(), 1);
}

TEST_F(CmxRead, Transitions) {
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_length = 240;
  use(settings);
  const auto read = [this](const std::string& transition) {
    CCMXEdl edl(4, nullptr, 0);
    support::set_rates(edl);
    const EDL_CONVERSION_SETTINGS same = edl_.settings();
    edl.set_edl_conversion_settings(&same);
    support::write_file(folder_.file("t.edl"), "001 R1 A " + transition + times);
    EXPECT_EQ(edl.import_edl(folder_.wide_file("t.edl")), 100);
    const CGenericEdlEntry& e = *entries_of(edl).at(0);
    EXPECT_EQ(e.dest_out, 1728480000) << transition;
    return std::make_tuple(e.transition_type, e.fade_in_length, e.fade_out_length);
  };
  using T = std::tuple<std::uint32_t, std::int64_t, std::int64_t>;
  EXPECT_EQ(read("D 024"), (T{51, 46080, 0}));
  EXPECT_EQ(read("D xx"), (T{51, 240, 240}));
  EXPECT_EQ(read("W 001 024"), (T{51, 46080, 0}));
  EXPECT_EQ(read("K"), (T{50, 240, 240}));
}

TEST_F(CmxRead, WipeNumberIsOneWordAlways) {
  // The length stands where the number is expected, and the times slide by one.
  EXPECT_EQ(import("001 R1 A W001 030 01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n"), 100);
  const CGenericEdlEntry& entry = *entries_of(edl_).at(0);
  EXPECT_EQ(entry.source_in, 173280000);
  EXPECT_EQ(entry.source_out, 1728000000);
  EXPECT_EQ(entry.dest_in, 1728480000);
  EXPECT_EQ(entry.dest_out, 0);
}

TEST_F(CmxRead, FieldsThatAreAudioAndVideo) {
  struct Case {
    const char* field;
    std::size_t audio;
    std::intptr_t video;
    std::vector<int> streams;
  };
  const Case cases[] = {{"B", 1, 1, {0}},  {"AA/V", 1, 1, {0, 1}},  {"A2/V", 1, 1, {1}},
                        {"V", 0, 1, {}},   {"NONE", 1, 0, {65535}}, {"A3", 1, 0, {65535}},
                        {"C1", 0, 0, {}},  {"AXYZ", 1, 0, {65535}}, {"AA", 1, 0, {0, 1}},
                        {"A2", 1, 0, {1}}, {"ABC", 0, 0, {}}};
  for (const Case& c : cases) {
    CCMXEdl edl(4, nullptr, 0);
    support::set_rates(edl);
    support::write_file(folder_.file("f.edl"), std::string("001 R1 ") + c.field + " C" + times);
    EXPECT_EQ(edl.import_edl(folder_.wide_file("f.edl")), 100);
    ASSERT_EQ(entries_of(edl).size(), c.audio) << c.field;
    EXPECT_EQ(edl.get_video_list()->GetCount(), c.video) << c.field;
    if (c.audio != 0) {
      EXPECT_EQ(streams_of(*entries_of(edl)[0]), c.streams) << c.field;
    }
    const std::string field = c.field;
    EXPECT_EQ(edl.skipped_count(), field == "A3" || field == "AXYZ" ? 1 : 0) << c.field;
  }
}

TEST_F(CmxRead, ChannelFieldOfUnknownLength) {
  CGenericEdlEntry entry(&edl_);
  int skip = 0;
  EXPECT_EQ(edl_.parse_channels(&entry, u"AAA", &skip), 92);
  EXPECT_NE(skip, 0);
  EXPECT_EQ(edl_.parse_channels(&entry, u"A", &skip), 90);
  EXPECT_EQ(skip, 0);
  EXPECT_EQ(edl_.parse_channels(&entry, u"", &skip), 92);
}

TEST_F(CmxRead, ReelOfElevenCharactersIsNotAvailable) {
  EXPECT_EQ(reel_of(only("001 ABCDEFGHIJ A C")), u"ABCDEFGHIJ");
  delete_all(*edl_.get_generic_entry_list());
  const CGenericEdlEntry& entry = only("001 ABCDEFGHIJK A C");
  EXPECT_EQ(reel_of(entry), u"N/A");
  EXPECT_EQ(utf8(entry.source_reel_name), "N/A" + std::string(29, ' '));
}

TEST_F(CmxRead, EventWordOfThreeCharacters) {
  EXPECT_EQ(
      import(std::string("001 R1 A C") + times + "12A R1 A C" + times + "12AB R1 A C" + times),
      100);
  ASSERT_EQ(audio_count(), 2U);
  EXPECT_EQ(entries_of(edl_)[1]->event_number, 65535);
}

TEST_F(CmxRead, NegativeTimes) {
  EXPECT_EQ(import("001 R1 A C -00:00:01:00 00:00:01:00 00:00:00:00 00:00:02:00\n"), 100);
  EXPECT_EQ(audio_count(), 0U);
  EXPECT_EQ(host_.boxes.report_bodies(), std::vector<std::string>{"[22253] [22258] 1"});
  EXPECT_EQ(import("002 R1 A C 00:00:00:00 -00:00:01:00 00:00:00:00 00:00:01:00\n"), 100);
  EXPECT_EQ(audio_count(), 1U);
}

TEST_F(CmxRead, StopOnTheFirstBadLine) {
  host_.boxes.default_report_answer = 4096;
  const std::string bad = "001 R1 A C -00:00:01:00 00:00:01:00 00:00:00:00 00:00:02:00\n";
  EXPECT_EQ(import(bad + bad + "003 R1 A C" + times), 100);
  EXPECT_EQ(host_.boxes.shown.size(), 1U);
  EXPECT_EQ(audio_count(), 1U);
}

// The streams and source channel behind these lines, in a channel mode.
struct Routed {
  std::vector<int> streams;
  int channel;
  friend bool operator==(const Routed&, const Routed&) = default;
};

class AudNote : public CmxRead {
 protected:
  Routed routed(const std::string& field, const std::string& note, std::uint16_t mode = 0,
                const std::uint16_t* map = nullptr) {
    EDL_CONVERSION_SETTINGS settings;
    settings.cmx_channel_mode = mode;
    settings.channel_map = map;
    use(settings);
    delete_all(*edl_.get_generic_entry_list());
    EXPECT_EQ(import("001 R1 " + field + " C" + times + note + "\n"), 100);
    const CGenericEdlEntry& entry = *entries_of(edl_).at(0);
    return {streams_of(entry), entry.first_channel};
  }
};

TEST_F(AudNote, ChannelsThreeAndFourInEachMode) {
  EXPECT_EQ(routed("NONE", "AUD 3 4", 0), (Routed{{2, 3}, 2}));
  EXPECT_EQ(routed("NONE", "AUD 3 4", 1), (Routed{{2, 3}, 0}));
  EXPECT_EQ(routed("NONE", "AUD 3 4", 2), (Routed{{0, 1}, 2}));
  EXPECT_EQ(routed("NONE", "AUD 3 4", 3), (Routed{{0, 1}, 0}));
}

TEST_F(AudNote, OneChannel) {
  EXPECT_EQ(routed("NONE", "AUD 3"), (Routed{{2}, 2}));
  EXPECT_EQ(routed("NONE", "AUD 4"), (Routed{{3}, 3}));
  EXPECT_EQ(routed("A2", "AUD 3"), (Routed{{1, 2}, 1}));
}

TEST_F(AudNote, OtherChannelsAreNone) {
  EXPECT_EQ(routed("A", "AUD 3 5").streams, std::vector<int>{65535});
  EXPECT_EQ(routed("A", "AUD 1").streams, std::vector<int>{65535});
  EXPECT_EQ(routed("A", "AUD"), (Routed{{0}, 0}));
}

TEST_F(AudNote, ByTheMap) {
  constexpr std::uint16_t map[20] = {0, 1, 0, 1, 1, 1, 2, 1, 0, 3, 1, 1, 0, 2, 0, 2, 2, 0, 0, 0};
  EXPECT_EQ(routed("NONE", "AUD 3 4", 0, map), (Routed{{2, 3}, 0}));
  EXPECT_EQ(routed("A2", "", 0, map), (Routed{{1}, 1}));
}

TEST_F(AudNote, InFrontOfAnyEventDoesNothing) {
  EXPECT_EQ(import(std::string("AUD 3 4\nCOMMENT: 2-3\n001 R1 A C") + times), 100);
  EXPECT_EQ(streams_of(*entries_of(edl_).at(0)), std::vector<int>{0});
}

TEST_F(AudNote, BehindARefusedEventGoesToTheOneBefore) {
  EXPECT_EQ(import(std::string("001 R1 A C") + times +
                   "002 R1 A C -1:00:00:00 1:00:10:00 2:00:00:00 2:00:10:00\nAUD 4\n"),
            100);
  EXPECT_EQ(streams_of(*entries_of(edl_).at(0)), std::vector<int>{3});
}

TEST_F(CmxRead, CommentsActOnlyWhereAllowed) {
  const std::string list =
      std::string("001 R1 A C") + times + "COMMENT: AUDIO MAPPING FROM CH3 TO CH1\n";
  EXPECT_EQ(import(list), 100);
  EXPECT_EQ(streams_of(*entries_of(edl_).at(0)), std::vector<int>{0});
  EDL_CONVERSION_SETTINGS settings;
  settings.cmx_mapping_comments = 1;
  use(settings);
  delete_all(*edl_.get_generic_entry_list());
  EXPECT_EQ(import(list), 100);
  EXPECT_EQ(streams_of(*entries_of(edl_).at(0)), std::vector<int>{2});
}

TEST_F(CmxRead, FrameRateBehindAnEventHoldsForWhatFollows) {
  CCMXEdl edl(4, nullptr, 1);
  EDL_CONVERSION_SETTINGS settings;
  settings.ask_on_frame_rate_change = 1;
  edl.set_edl_conversion_settings(&settings);
  support::set_rates(edl, 2, 1, 1);
  host_.boxes.default_question_answer = box_answer_yes;
  support::write_file(folder_.file("fcm.edl"),
                      "001 R1 A C 00:00:00:00 00:00:01:00 00:00:00:00 "
                      "00:00:01:00\nFCM: DROP FRAME\n002 R1 A C "
                      "00:00:00:00 00:00:01:00 01:00:00:00 01:00:01:00\n");
  EXPECT_EQ(edl.import_edl(folder_.wide_file("fcm.edl")), 100);
  EXPECT_EQ(entries_of(edl).at(0)->source_out, 48000);
  EXPECT_EQ(entries_of(edl).at(1)->source_out, 48048);
  EXPECT_EQ(entries_of(edl).at(1)->dest_in, 172799827);
}

TEST_F(CmxRead, FrameRateBehindABothEventIsAskedTwice) {
  CCMXEdl edl(4, nullptr, 1);
  EDL_CONVERSION_SETTINGS settings;
  settings.ask_on_frame_rate_change = 1;
  edl.set_edl_conversion_settings(&settings);
  support::set_rates(edl, 2, 1, 1);
  support::write_file(folder_.file("b.edl"), std::string("001 R1 B C") + times + "FCM: DROP\n");
  EXPECT_EQ(edl.import_edl(folder_.wide_file("b.edl")), 100);
  EXPECT_EQ(host_.boxes.shown.size(), 2U);
}

TEST_F(CmxRead, VideoEvents) {
  for (const std::string transition : {"C", "D 010", "W 001 010"}) {
    CGenericEdlVideoEntry entry(&edl_);
    const std::string line = "005 V1 V " + transition + times;
    EXPECT_EQ(edl_.parse_video_event(&entry, text_from_utf8(line).c_str()), 90);
    EXPECT_EQ(entry.transition_type, 50U);
    EXPECT_EQ(entry.event_number, 5);
    EXPECT_EQ(utf8(entry.reel->reel_name), "V1");
    EXPECT_EQ(entry.dest_out, 1728480000);
  }
}

TEST_F(CmxRead, AudIsAnEventOnlyWithALetterBehindItsNumber) {
  EXPECT_NE(edl_.is_audio_event(u"AUD 3 A"), 0);
  EXPECT_EQ(edl_.is_audio_event(u"AUD 3 4"), 0);
  EXPECT_EQ(edl_.is_audio_event(u""), 0);
  EXPECT_EQ(edl_.is_video_event(u"001 R1"), 0);
}

TEST_F(CmxRead, MonoPairsMergeWhereWanted) {
  const std::string list = std::string("001 R1 A C") + times + "002 R1 A2 C" + times;
  EXPECT_EQ(import(list), 100);
  EXPECT_EQ(audio_count(), 2U);
  EDL_CONVERSION_SETTINGS settings;
  settings.cmx_merge_channels = 1;
  use(settings);
  delete_all(*edl_.get_generic_entry_list());
  EXPECT_EQ(import(list), 100);
  ASSERT_EQ(audio_count(), 1U);
  EXPECT_EQ(streams_of(*entries_of(edl_)[0]), (std::vector<int>{0, 1}));
}

TEST_F(CmxRead, EventsComeOutInTimeOrder) {
  EXPECT_EQ(import("001 R1 A C 0:0:0:0 0:0:1:0 0:0:9:0 0:0:10:0\n"
                   "002 R1 A C 0:0:0:0 0:0:1:0 0:0:3:0 0:0:4:0\n"
                   "003 R1 A2 C 0:0:0:0 0:0:1:0 0:0:3:0 0:0:4:0\n"),
            100);
  std::vector<int> numbers;
  for (const CGenericEdlEntry* e : entries_of(edl_))
    numbers.push_back(e->event_number);
  EXPECT_EQ(numbers, (std::vector<int>{2, 3, 1}));
}

}  // namespace
