// Lists by other makers, in the folder "cmx3600" of the one that EDL_SAMPLES names.
// What they must give was worked out from their text and the rules of the format,
// apart from the program.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>

#include "core/generic_reel.h"
#include "host/rates.h"
#include "tests/text/text_fixtures.h"
#include "text/cmx_edl.h"

namespace {

using support::entries_of;
using support::utf8;
using support::videos_of;

std::string sample_folder() {
  const char* const samples = std::getenv("EDL_SAMPLES");
  return samples == nullptr ? std::string() : std::string(samples) + "/cmx3600/";
}

// An audio event: number, reel, streams, channel, transition, fades and times.
struct Event {
  int number = 0;
  std::string reel = {};
  std::vector<int> streams = {};
  int channel = 0;
  unsigned type = 50;
  std::int64_t fade_in = 0;
  std::int64_t fade_out = 0;
  std::int64_t source_in = 0;
  std::int64_t source_out = 0;
  std::int64_t dest_in = 0;
  std::int64_t dest_out = 0;
  friend bool operator==(const Event&, const Event&) = default;
  friend void PrintTo(const Event& e, std::ostream* out) {
    *out << e.number << ' ' << e.reel << " streams";
    for (const int stream : e.streams)
      *out << ' ' << stream;
    *out << " channel " << e.channel << " type " << e.type << " fades " << e.fade_in << ' '
         << e.fade_out << " source " << e.source_in << ' ' << e.source_out << " dest " << e.dest_in
         << ' ' << e.dest_out;
  }
};

Event event_of(const CGenericEdlEntry& e) {
  return {e.event_number,
          utf8(support::reel_of(e)),
          support::streams_of(e),
          e.first_channel,
          e.transition_type,
          e.fade_in_length,
          e.fade_out_length,
          e.source_in,
          e.source_out,
          e.dest_in,
          e.dest_out};
}

// A picture event: number, reel and times.
struct Picture {
  int number = 0;
  std::string reel = {};
  std::int64_t source_in = 0;
  std::int64_t source_out = 0;
  std::int64_t dest_in = 0;
  std::int64_t dest_out = 0;
  friend bool operator==(const Picture&, const Picture&) = default;
  friend void PrintTo(const Picture& p, std::ostream* out) {
    *out << p.number << ' ' << p.reel << " source " << p.source_in << ' ' << p.source_out
         << " dest " << p.dest_in << ' ' << p.dest_out;
  }
};

Picture picture_of(const CGenericEdlVideoEntry& e) {
  wide_char reel[13];
  e.get_reel_name(reel, 13);
  return {e.event_number, utf8(std::u16string_view(reel)), e.source_in, e.source_out, e.dest_in,
          e.dest_out};
}

// Over all audio events, so that none in the middle goes unseen.
struct Sums {
  std::int64_t source_in = 0;
  std::int64_t source_out = 0;
  std::int64_t dest_in = 0;
  std::int64_t dest_out = 0;
  std::int64_t fade_in = 0;
  std::int64_t fade_out = 0;
  friend bool operator==(const Sums&, const Sums&) = default;
  friend void PrintTo(const Sums& s, std::ostream* out) {
    *out << "source " << s.source_in << ' ' << s.source_out << " dest " << s.dest_in << ' '
         << s.dest_out << " fades " << s.fade_in << ' ' << s.fade_out;
  }
};

Sums sums_of(const CGenericEdl& edl) {
  Sums sums;
  for (const CGenericEdlEntry* e : entries_of(edl)) {
    sums.source_in += e->source_in;
    sums.source_out += e->source_out;
    sums.dest_in += e->dest_in;
    sums.dest_out += e->dest_out;
    sums.fade_in += e->fade_in_length;
    sums.fade_out += e->fade_out_length;
  }
  return sums;
}

class ForeignCmxTest : public support::TextTest {
 protected:
  void SetUp() override {
    if (sample_folder().empty()) GTEST_SKIP() << "EDL_SAMPLES names no folder of samples";
  }
  // Imports at 48000 Hz. A frame rate of 255 is left to the file.
  const CCMXEdl& import_sample(const std::string& name, std::uint8_t frame_rate,
                               const EDL_CONVERSION_SETTINGS& settings = {}) {
    edl = std::make_unique<CCMXEdl>(std::uint8_t{4}, nullptr, 0);
    edl->set_edl_conversion_settings(&settings);
    support::set_rates(*edl, 2, frame_rate);
    EXPECT_EQ(edl->import_edl(text_from_utf8(sample_folder() + name).c_str()), 100) << name;
    return *edl;
  }
  std::vector<Event> events() const {
    std::vector<Event> found;
    for (const CGenericEdlEntry* e : entries_of(*edl))
      found.push_back(event_of(*e));
    return found;
  }
  std::vector<Picture> pictures() const {
    std::vector<Picture> found;
    for (const CGenericEdlVideoEntry* e : videos_of(*edl))
      found.push_back(picture_of(*e));
    return found;
  }
  using Places = std::map<std::vector<int>, int>;
  // How many events go to which streams.
  Places places() const {
    Places found;
    for (const CGenericEdlEntry* e : entries_of(*edl))
      ++found[support::streams_of(*e)];
    return found;
  }
  // Reports as "18 of 7": the row of the error table and the event.
  std::vector<std::string> reports() const {
    static const std::map<std::string, std::string> rows = {
        {"[22231]", "1"}, {"[22250]", "17"}, {"[22251]", "18"}, {"[22258]", "24"}};
    std::vector<std::string> found;
    for (const std::string& body : host.boxes.report_bodies())
      found.push_back(rows.at(body.substr(8, 7)) + " of " + body.substr(16));
    return found;
  }
  std::unique_ptr<CCMXEdl> edl;
};

using Texts = std::vector<std::string>;

// Sound of one take on eleven channels: A3 to A9 are of no known form, A10 is no
// channel field of this format; the reel of 69 characters is not available.
TEST_F(ForeignCmxTest, ElevenChannels) {
  import_sample("roryyeung+edltools__Avid_Test_EDL_-_Simple.edl", 255);
  EXPECT_EQ(edl->frame_rate(), frame_rate_2997_non_drop);
  const auto all = events();
  ASSERT_EQ(all.size(), 9U);
  // 00:58:30:00 and 01:46:39:11 at 01:00:00:00 and 01:48:09:11.
  Event expected = {2, "N/A", {0}, 0, 50, 0, 0, 168648480, 307476770, 172972800, 311801090};
  EXPECT_EQ(all[0], expected);
  expected.number = 3;
  expected.streams = {1};
  expected.channel = 1;
  EXPECT_EQ(all[1], expected);
  for (int i = 2; i < 9; ++i) {
    expected.number = i + 2;
    expected.streams = {65535};
    expected.channel = 0;
    EXPECT_EQ(all[static_cast<std::size_t>(i)], expected);
  }
  EXPECT_EQ(pictures(),
            (std::vector<Picture>{{1, "N/A", 168648480, 307476770, 172972800, 311801090}}));
  EXPECT_EQ(edl->skipped_count(), 7);
  EXPECT_TRUE(reports().empty());
  EXPECT_EQ(edl->get_reel_list()->GetCount(), 1);
}

// Stereo on channels 1 and 2, and the same on 3 and 4 by notes.
TEST_F(ForeignCmxTest, NotesOfChannelsThreeAndFour) {
  import_sample("pietrop+edl-composer__mxfedl.edl", 255);
  EXPECT_EQ(edl->frame_rate(), frame_rate_2997_non_drop);
  EXPECT_EQ(events(), (std::vector<Event>{
                          {2, "AX", {0, 1}, 0, 50, 0, 0, 111693982, 112192080, 0, 490090},
                          {3, "AX", {2, 3}, 2, 50, 0, 0, 111693982, 112192080, 0, 490090},
                          {5, "AX", {0, 1}, 0, 50, 0, 0, 112389077, 112723811, 488488, 823222},
                          {6, "AX", {2, 3}, 2, 50, 0, 0, 112389077, 112723811, 488488, 823222}}));
  EXPECT_EQ(pictures(), (std::vector<Picture>{{1, "AX", 111693982, 112192080, 0, 490090},
                                              {4, "AX", 112389077, 112723811, 488488, 823222}}));
  // Ten seconds and 11 frames against ten seconds and 6.
  EXPECT_EQ(reports(), (Texts{"18 of 2", "18 of 3"}));
  EXPECT_EQ(edl->skipped_count(), 0);
}

// Sound and picture in one line, at 30 frames; the file says non-drop, which the
// list's own rate outlives and its reels take.
TEST_F(ForeignCmxTest, SoundAndPictureInOneLine) {
  import_sample("pietrop+edl-composer__regualr.edl", frame_rate_30);
  EXPECT_EQ(events(), (std::vector<Event>{
                          {1, "SOMEREE", {0, 1}, 0, 50, 0, 0, 1836800, 2316800, 0, 480000},
                          {2, "SOMEOTH", {0, 1}, 0, 50, 0, 0, 3518400, 3998400, 478400, 958400},
                          {3, "AX", {0, 1}, 0, 50, 0, 0, 3513600, 3993600, 960000, 1440000}}));
  EXPECT_EQ(pictures(), (std::vector<Picture>{{1, "SOMEREE", 1836800, 2316800, 0, 480000},
                                              {2, "SOMEOTH", 3518400, 3998400, 478400, 958400},
                                              {3, "AX", 3513600, 3993600, 960000, 1440000}}));
  EXPECT_EQ(edl->original_frame_rate(), frame_rate_2997_non_drop);
  for (const CGenericEdlEntry* e : entries_of(*edl))
    EXPECT_EQ(e->reel->frame_rate(), frame_rate_2997_non_drop);
  EXPECT_TRUE(reports().empty());
}

// A marker and a wipe to black written "W001 025": the length is passed for the
// wipe's number, so the event has the times of its neighbours' columns and no
// fade; it goes with its marker, which gives the edit before them a fade of 0.
TEST_F(ForeignCmxTest, AWipeToBlack) {
  import_sample("simonh10+python-edl__test.edl", frame_rate_25);
  EXPECT_EQ(events(),
            (std::vector<Event>{{2, "AX", {0, 1}, 0, 50, 0, 0, 0, 4320000, 0, 4320000},
                                {6, "AX", {0, 1}, 0, 50, 0, 0, 0, 1393920, 4320000, 5713920},
                                {11, "AX", {0, 1}, 0, 50, 0, 0, 0, 1441920, 6280320, 7722240}}));
  const auto picture = pictures();
  ASSERT_EQ(picture.size(), 8U);
  EXPECT_EQ(picture.front(), (Picture{1, "AX", 172800000, 175678080, 0, 2878080}));
  EXPECT_EQ(picture.back(), (Picture{10, "AX", 0, 1441920, 6280320, 7722240}));
  EXPECT_EQ(reports(), (Texts{"18 of 7"}));
  EXPECT_EQ(edl->skipped_count(), 0);
}

// A note of channel 3 alone behind a stereo event replaces its channels.
TEST_F(ForeignCmxTest, ANoteBehindStereo) {
  import_sample("OpenTimelineIO+otio-cmx3600-adapter__multi_audio.edl", frame_rate_25);
  EXPECT_EQ(events(),
            (std::vector<Event>{{1, "AX", {2}, 2, 50, 0, 0, 0, 163962240, 0, 163962240}}));
  EXPECT_TRUE(pictures().empty());
  EXPECT_TRUE(reports().empty());
}

// The same at the other channel modes.
TEST_F(ForeignCmxTest, ANoteBehindStereoInEachMode) {
  for (const auto& [mode, stream, channel] :
       {std::tuple{1, 2, 0}, std::tuple{2, 0, 2}, std::tuple{3, 0, 0}}) {
    EDL_CONVERSION_SETTINGS settings;
    settings.cmx_channel_mode = static_cast<std::uint16_t>(mode);
    import_sample("OpenTimelineIO+otio-cmx3600-adapter__multi_audio.edl", frame_rate_25, settings);
    EXPECT_EQ(
        events(),
        (std::vector<Event>{{1, "AX", {stream}, channel, 50, 0, 0, 0, 163962240, 0, 163962240}}));
  }
}

// Two long programmes at 24 frames, picture first.
TEST_F(ForeignCmxTest, SoundBehindPicture) {
  import_sample("GPLgithub+sg-otio__audio-at-end.edl", frame_rate_24);
  EXPECT_EQ(events(), (std::vector<Event>{
                          {3, "AX", {0, 1}, 0, 50, 0, 0, 0, 163964000, 0, 163964000},
                          {4, "AX", {0, 1}, 0, 50, 0, 0, 0, 155374000, 163964000, 319338000}}));
  EXPECT_EQ(pictures(), (std::vector<Picture>{{1, "AX", 0, 163964000, 0, 163964000},
                                              {2, "AX", 0, 155374000, 163964000, 319338000}}));
  EXPECT_EQ(entries_of(*edl)[0]->original_dest_out, 163964000) << "they meet";
  EXPECT_TRUE(reports().empty());
}

// Returns alone for line ends, six digits of number, a reel of 14 characters.
TEST_F(ForeignCmxTest, ReturnsForLineEnds) {
  import_sample("GPLgithub+sg-otio__SR001.edl", 255);
  EXPECT_EQ(edl->frame_rate(), frame_rate_2997_non_drop);
  EXPECT_TRUE(events().empty());
  EXPECT_EQ(pictures(), (std::vector<Picture>{{1, "N/A", 1876823749, 1877025550, 0, 201802}}));
}

// Drop frame, and motion lines that are no events.
TEST_F(ForeignCmxTest, DropFrame) {
  import_sample("bradcordeiro+edl-genius__cmx3600.edl", 255);
  EXPECT_EQ(edl->frame_rate(), frame_rate_2997_drop);
  EXPECT_TRUE(events().empty());
  const auto picture = pictures();
  ASSERT_EQ(picture.size(), 9U);
  EXPECT_EQ(picture.front(), (Picture{1, "ACC112", 315840325, 316155840, 172799827, 173115342}));
  EXPECT_EQ(picture.back(), (Picture{9, "KIRA_PAS", 176903126, 177228251, 174761787, 175082107}));
  EXPECT_EQ(edl->get_reel_list()->GetCount(), 6);
}

// Picture dissolves, their cuts under the same number, and control bytes at the end.
TEST_F(ForeignCmxTest, PictureDissolves) {
  import_sample("guerilla-di+edl__45S_SAMPLE.EDL", frame_rate_25);
  EXPECT_TRUE(events().empty());
  const auto picture = pictures();
  ASSERT_EQ(picture.size(), 33U);
  EXPECT_EQ(picture.front(), (Picture{1, "106771", 693945600, 694003200, 1728000000, 1728057600}));
  EXPECT_EQ(picture.back(), (Picture{30, "BL", 0, 61440, 1729985280, 1730046720}));
}

// The sound of a feature reel: 466 events on channels 1, 2 and 3 and beyond.
TEST_F(ForeignCmxTest, AFeatureReel) {
  const std::string name = "iluvcapra+pycmx__INS4_R1_DX_092117.edl";
  import_sample(name, frame_rate_24);
  const auto all = events();
  ASSERT_EQ(all.size(), 466U);
  EXPECT_EQ(all[0], (Event{1, "FKI_LEAD", {0}, 0, 50, 0, 0, 0, 0, 172800000, 173184000}));
  EXPECT_EQ(all[1], (Event{2, "FKI_LEAD", {1}, 1, 50, 0, 0, 0, 0, 172800000, 173184000}));
  EXPECT_EQ(all[2], (Event{3, "FKI_LEAD", {65535}, 0, 50, 0, 0, 0, 0, 172800000, 173184000}));
  EXPECT_EQ(all[464], (Event{465, "FKI_LEAD", {1}, 1, 50, 0, 0, 0, 0, 225242000, 225338000}));
  EXPECT_EQ(places(), (Places{{{0}, 325}, {{1}, 92}, {{65535}, 49}}));
  EXPECT_EQ(sums_of(*edl), (Sums{1095718856000, 1095774046000, 94145980000, 94213490000, 0, 0}));
  EXPECT_EQ(edl->skipped_count(), 49);
  EXPECT_EQ(edl->get_reel_list()->GetCount(), 26);
  // Leaders whose source has no length: both reports for each.
  const auto boxes = reports();
  ASSERT_EQ(boxes.size(), 113U);
  EXPECT_EQ(boxes[0], "18 of 1");
  EXPECT_EQ(boxes[1], "17 of 1");
  EXPECT_EQ(boxes[112], "17 of 466");

  // Merged, three pairs become stereo, and edits that meet share a crossfade of 480.
  EDL_CONVERSION_SETTINGS settings;
  settings.cmx_merge_channels = 1;
  settings.default_fade_length = 480;
  import_sample(name, frame_rate_24, settings);
  const auto merged = events();
  ASSERT_EQ(merged.size(), 463U);
  EXPECT_EQ(merged[0], (Event{1, "FKI_LEAD", {0, 1}, 0, 50, 0, 0, 0, 0, 172800000, 173184000}));
  EXPECT_EQ(
      merged[460],
      (Event{463, "SR002", {0}, 0, 50, 480, 480, 3153173760, 3153292000, 225125760, 225242000}));
  EXPECT_EQ(places(), (Places{{{0}, 322}, {{1}, 89}, {{65535}, 49}, {{0, 1}, 3}}));
  EXPECT_EQ(sums_of(*edl),
            (Sums{1095718795040, 1095774106960, 93574693040, 93640692960, 196320, 196320}));
}

// An hour of sound with notes, markers from black and wipes written "W001 043", whose
// times slide by one: 646 events of a kind, most of them reported.
TEST_F(ForeignCmxTest, AListOfWipes) {
  import_sample("iluvcapra+pycmx__adobe_dai109_test.txt", 255);
  EXPECT_EQ(edl->frame_rate(), frame_rate_2997_non_drop);
  const auto all = events();
  ASSERT_EQ(all.size(), 2597U);
  EXPECT_EQ(all[0], (Event{1, "AX", {0}, 0, 50, 0, 0, 0, 384384, 0, 384384}));
  EXPECT_EQ(all[2], (Event{4, "BL", {0}, 0, 50, 0, 0, 0, 78478, 682282, 0}));
  EXPECT_EQ(
      all[2595],
      (Event{
          2837, "230107", {1}, 1, 50, 0, -58591332, 547806459, 489562674, 286960274, 228716489}));
  EXPECT_EQ(all[2596],
            (Event{2839, "AX", {0}, 0, 50, 0, 0, 172972800, 173068896, 287459973, 287556069}));
  EXPECT_EQ(places(), (Places{{{0}, 1468}, {{1}, 466}, {{65535}, 338}, {{2}, 173}, {{3}, 152}}));
  EXPECT_EQ(std::count_if(all.begin(), all.end(), [](const Event& e) { return e.type == 51; }),
            646);
  EXPECT_EQ(sums_of(*edl), (Sums{5668645661105, 3892843750838, 320734662306, 47717379356,
                                 -800831080500, -979880135454}));
  EXPECT_EQ(edl->skipped_count(), 0);
  const auto boxes = reports();
  ASSERT_EQ(boxes.size(), 1589U);
  EXPECT_EQ(boxes.front(), "18 of 3");
  EXPECT_EQ(boxes.back(), "18 of 2838");
  EXPECT_EQ(edl->get_reel_list()->GetCount(), 68);
}

// Dissolves on "NONE" without a note: streams that go nowhere, fades from markers.
TEST_F(ForeignCmxTest, DissolvesWithoutChannels) {
  import_sample("GPLgithub+sg-otio__black_slug_fcp.edl", frame_rate_24);
  const auto all = events();
  ASSERT_EQ(all.size(), 14U);
  EXPECT_EQ(
      all[0],
      (Event{5, "AX", {65535}, 0, 51, 16000, 12000, 173106000, 173198000, 172800000, 172892000}));
  EXPECT_EQ(all[1],
            (Event{7, "AX", {65535}, 0, 51, 12000, 0, 173178000, 173450000, 172880000, 173152000}));
  EXPECT_EQ(
      all[13],
      (Event{452, "AX", {65535}, 0, 51, 22000, 16000, 172604000, 172774000, 247272000, 247442000}));
  EXPECT_EQ(sums_of(*edl), (Sums{2457944000, 2460556000, 2995514000, 2998126000, 338000, 84000}));
  const auto picture = pictures();
  ASSERT_EQ(picture.size(), 484U);
  EXPECT_EQ(picture.front(), (Picture{1, "AX", 172626000, 172866000, 172320000, 172560000}));
  EXPECT_EQ(picture.back(), (Picture{484, "AX", 172626000, 172690000, 249684000, 249748000}));
  EXPECT_EQ(reports(), (Texts{"18 of 23", "18 of 386", "18 of 433", "18 of 455"}));
}

TEST_F(ForeignCmxTest, AllAreReadAndWrittenAtManySettings) {
  static constexpr std::uint16_t map[20] = {0, 1, 0, 1, 1, 1, 2, 1, 0, 3,
                                            1, 1, 0, 2, 0, 2, 2, 0, 0, 0};
  int read = 0;
  for (const auto& item : std::filesystem::directory_iterator(sample_folder())) {
    ++read;
    for (const unsigned bits : {0U, 3U, 5U, 10U, 12U, 15U, 16U, 21U, 26U, 31U}) {
      EDL_CONVERSION_SETTINGS settings;
      settings.cmx_channel_mode = bits & 3U;
      settings.cmx_merge_channels = (bits & 4U) != 0 ? 1 : 0;
      settings.cmx_mapping_comments = (bits & 8U) != 0 ? 1 : 0;
      settings.default_fade_length = (bits & 8U) != 0 ? 480 : 0;
      settings.channel_map = (bits & 16U) != 0 ? map : nullptr;
      const CCMXEdl& list = import_sample(item.path().filename().string(),
                                          static_cast<std::uint8_t>(bits % 5), settings);
      EXPECT_FALSE(entries_of(list).empty() && videos_of(list).empty()) << item.path();
      CCMXEdl out(bits % 2 == 0 ? 4 : 2, edl.get(), 0);
      EXPECT_EQ(out.export_edl(folder.wide_file("out.edl"), 0), 101) << item.path();
      host.boxes.shown.clear();
    }
  }
  EXPECT_GE(read, 30);
}

}  // namespace
