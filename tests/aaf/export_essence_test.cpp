// The audio of an export: what is written of it, in which order, and what ends it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <new>

#include "aaf/aaf_text.h"
#include "aaf/export_samples.h"
#include "aaf/export_url.h"
#include "aaf/source_paths.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "tests/aaf/export_scene.h"

namespace {

using aaf_test::Edit;
using aaf_test::ExportScene;
using aaf_test::ReadFile;
using support::FakeAudCnt;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

constexpr std::size_t block = 262144;

// The bytes that a channel has in a file, worked out by division rather than by shifts.
std::string expected_bytes(const std::vector<std::int32_t>& words, unsigned bits, bool aifc) {
  std::string out;
  for (const std::int32_t word : words) {
    std::int64_t value = word < 0 ? std::int64_t{word} + 0x1000000 : word;
    value %= 0x1000000;
    std::string sample;
    for (int i = 0; i < 3; ++i, value /= 256)
      sample.push_back(static_cast<char>(static_cast<unsigned char>(value % 256)));
    if (bits == 16) sample.erase(0, 1);
    if (aifc) std::reverse(sample.begin(), sample.end());
    out += sample;
  }
  return out;
}

// What stands behind the head of a sound file that holds nothing else.
std::string sound_of(const std::string& file, std::string_view chunk, std::size_t head) {
  const std::size_t at = file.find(chunk);
  EXPECT_NE(at, std::string::npos);
  return at == std::string::npos ? std::string() : file.substr(at + head);
}

std::string samples_of(const std::string& file, bool aifc) {
  return aifc ? sound_of(file, "SSND", 16) : sound_of(file, "data", 8);
}

struct Form {
  bool aifc;
  bool embed;
  std::uint32_t bits;
};

class EssenceForms : public testing::TestWithParam<Form> {};

TEST_P(EssenceForms, HoldTheVerySamples) {
  const Form form = GetParam();
  ExportScene scene;
  scene.host.app.aaf_export_file_type = form.aifc ? 1 : 0;
  scene.host.app.aaf_embed_audio = form.embed ? 1 : 0;
  FakeAudCnt& mono = scene.add_audio(1, 10, form.bits);
  FakeAudCnt& stereo = scene.add_audio(2, 1000, form.bits);
  // Both ends of the range, and a number of three different bytes.
  mono.channels[0]->samples = {0x00123456, -1, 0x7FFFFF, -0x800000, 0, 1, 255, 256, -256, -257};
  scene.add({.in = 0, .out = 10}, &mono);
  scene.add({.in = 10, .out = 1000, .streams = 2}, &stereo);
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  const char* const extension = form.aifc ? ".aif" : ".wav";
  const struct {
    const char* mob;
    std::string external;
    const std::vector<std::int32_t>& samples;
  } rows[] = {{"take 0", "take 0", mono.channels[0]->samples},
              {"take 11", "take 11", stereo.channels[0]->samples},
              {"take 12", "take 12", stereo.channels[1]->samples}};
  EXPECT_THAT(file.mob_names(kAAFMasterMob), ElementsAre("take 0", "take 11", "take 12"));
  for (const auto& row : rows) {
    const std::string bytes = form.embed ? file.essence(row.mob)
                                         : support::read_file(scene.path(row.external + extension));
    EXPECT_EQ(samples_of(bytes, form.aifc), expected_bytes(row.samples, form.bits, form.aifc));
    EXPECT_EQ(file.locator(row.mob).empty(), form.embed);
    EXPECT_EQ(file.essence(row.mob).empty(), !form.embed);
    EXPECT_EQ(static_cast<bool>(AAF_QUERY(IAAFAIFCDescriptor, file.descriptor(row.mob).get())),
              form.aifc);
    EXPECT_EQ(static_cast<bool>(AAF_QUERY(IAAFWAVEDescriptor, file.descriptor(row.mob).get())),
              !form.aifc);
  }
}

INSTANTIATE_TEST_SUITE_P(Export, EssenceForms,
                         testing::Values(Form{false, true, 16}, Form{false, true, 24},
                                         Form{true, true, 16}, Form{true, true, 24},
                                         Form{false, false, 16}, Form{false, false, 24},
                                         Form{true, false, 16}, Form{true, false, 24}),
                         [](const auto& each) {
                           return std::string(each.param.aifc ? "Aifc" : "Wave") +
                                  (each.param.embed ? "Embedded" : "External") +
                                  std::to_string(each.param.bits);
                         });

TEST(PackedSamples, HaveTheirBytesInTheOrderOfTheFile) {
  const std::int32_t word = 0x00123456;
  const auto packed = [&](std::uint32_t bytes, bool big_endian) {
    std::uint8_t out[4] = {};
    aaf::pack_samples({&word, 1}, bytes, big_endian, out);
    return std::vector<int>(out, out + bytes);
  };
  EXPECT_THAT(packed(3, false), ElementsAre(0x56, 0x34, 0x12));
  EXPECT_THAT(packed(3, true), ElementsAre(0x12, 0x34, 0x56));
  EXPECT_THAT(packed(2, false), ElementsAre(0x34, 0x12));
  EXPECT_THAT(packed(2, true), ElementsAre(0x12, 0x34));
  EXPECT_EQ(aaf::bytes_of_sample(24), 3U);
  EXPECT_EQ(aaf::bytes_of_sample(16), 2U);
  for (const std::uint32_t bits : {0U, 8U, 20U, 32U})
    EXPECT_EQ(aaf::bytes_of_sample(bits), 0U);
}

TEST(ExportedEssence, OfAnotherDepthIsRefused) {
  ExportScene scene;
  scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 10, 20));
  EXPECT_EQ(scene.run(), 0);
  EXPECT_FALSE(scene.exists());
  EXPECT_THAT(scene.host.boxes.shown, IsEmpty());
}

TEST(ExportedEssence, OfNoSamplesAsksForNone) {
  ExportScene scene;
  scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 0, 16));
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(scene.host.sound.requested, IsEmpty());
  EXPECT_THAT(ReadFile(scene.path()).mob_names(kAAFMasterMob), ElementsAre("take 0"));
}

TEST(ExportedPackets, AreWholeBlocksAndARest) {
  for (const auto& [samples, packets] : {std::pair{block, 1U}, std::pair{block + 1, 2U}}) {
    ExportScene scene;
    FakeAudCnt& audio = scene.add_audio(1, samples, 16);
    scene.add({.in = 0, .out = 10}, &audio);
    ASSERT_EQ(scene.run(), 101);
    ASSERT_EQ(scene.host.sound.requested.size(), packets);
    for (std::size_t i = 0; i < packets; ++i) {
      EXPECT_EQ(scene.host.sound.requested[i].position, static_cast<std::int64_t>(i * block));
      EXPECT_EQ(scene.host.sound.requested[i].count, block);
    }
    EXPECT_EQ(samples_of(ReadFile(scene.path()).essence("take 0"), false),
              expected_bytes(audio.channels[0]->samples, 16, false));
  }
}

// The queue as it then stands: 2 0 1 and 1 2 0, and all backwards.
TEST(ExportedPackets, AreWrittenInTheirOrderHoweverTheyCome) {
  const std::vector<std::deque<std::size_t>> orders = {{2, 0, 0, 0}, {1, 1, 0, 0}, {3, 2, 1, 0}};
  for (const auto& picks : orders) {
    for (const std::size_t at_once : {std::size_t{1}, std::size_t{0}}) {
      ExportScene scene;
      FakeAudCnt& audio = scene.add_audio(1, 3 * block + 5, 24);
      scene.add({.in = 0, .out = 10}, &audio);
      scene.host.sound.picks = picks;
      scene.host.sound.deliver_at_once = at_once;
      ASSERT_EQ(scene.run(), 101);
      EXPECT_EQ(samples_of(ReadFile(scene.path()).essence("take 0"), false),
                expected_bytes(audio.channels[0]->samples, 24, false));
    }
  }
}

// Counts what is queued when the first block is delivered.
TEST(ExportedPackets, AreAllAskedForBeforeTheFirstPoll) {
  ExportScene scene;
  scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 3 * block, 16));
  std::vector<std::size_t> requested;
  scene.host.windows.on_position = [&](std::uint32_t) {
    requested.push_back(scene.host.sound.requested.size());
  };
  ASSERT_EQ(scene.run(), 101);
  // The window opens at 0; then each block of 512 KiB.
  EXPECT_THAT(requested, ElementsAre(0, 3, 3, 3));
}

TEST(ExportedPackets, ComeFromTheChannelThatTheSourceBeginsWith) {
  ExportScene scene;
  FakeAudCnt& audio = scene.add_audio(4, 10);
  scene.add({.in = 0, .out = 10}, &audio).first_channel = 2;
  scene.add({.in = 10, .out = 20}, &audio).first_channel = 65535;
  scene.add({.in = 20, .out = 30}, &audio).first_channel = 9;
  ASSERT_EQ(scene.run(), 101);
  ASSERT_EQ(scene.host.sound.requested.size(), 3U);
  EXPECT_EQ(scene.host.sound.requested[0].file, audio.channels[2].get());
  EXPECT_EQ(scene.host.sound.requested[1].file, audio.channels[0].get());
  EXPECT_EQ(scene.host.sound.requested[2].file, audio.channels[0].get());
}

TEST(ExportedPackets, OfAChannelThatTheFileLacksEndTheExport) {
  ExportScene scene;
  scene.add({.in = 0, .out = 10, .streams = 2}, &scene.add_audio(1, 10));
  EXPECT_EQ(scene.run(), 0);
  EXPECT_FALSE(scene.exists());
}

TEST(ExportProgress, TellsTheTracksOfAllSources) {
  ExportScene scene;
  scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 1000, 24));
  scene.add({.in = 10, .out = 20, .streams = 2}, &scene.add_audio(2, 1000, 24));
  ASSERT_EQ(scene.run(), 101);
  ASSERT_EQ(scene.host.windows.windows.size(), 1U);
  const support::ProgressRecord& window = *scene.host.windows.windows[0];
  // 9000 bytes.
  EXPECT_EQ(window.range, 8U);
  EXPECT_THAT(window.captions, ElementsAre("Exporting embedded audio..."));
  EXPECT_THAT(window.texts, ElementsAre("Processing track 1 of 3...", "Processing track 2 of 3...",
                                        "Processing track 3 of 3..."));
  // 2 KiB a channel: each is cut.
  EXPECT_THAT(window.positions, ElementsAre(0, 2, 4, 6));
  EXPECT_TRUE(window.closed);
}

TEST(ExportProgress, IsNotBegunWithoutWaveforms) {
  ExportScene scene;
  scene.host.sound.enable_result = 1;
  scene.add({.in = 0, .out = 10});
  EXPECT_EQ(scene.run(), 0);
  EXPECT_FALSE(scene.exists());
  EXPECT_THAT(scene.host.windows.windows, IsEmpty());
  EXPECT_THAT(scene.host.sound.enabled, ElementsAre(1));
}

TEST(ExportProgress, FailsWhenWaveformsCannotBeSwitchedOff) {
  ExportScene scene;
  scene.host.sound.disable_result = 1;
  scene.add({.in = 0, .out = 10});
  EXPECT_EQ(scene.run(), 0);
  EXPECT_FALSE(scene.exists());
}

TEST(CancelledExport, LeavesNothingAtAnyPacket) {
  for (const bool embed : {true, false}) {
    // The first position opens the window.
    for (int position = 2; position <= 5; ++position) {
      ExportScene scene;
      scene.host.app.aaf_embed_audio = embed ? 1 : 0;
      scene.host.windows.cancel_at_position = position;
      scene.host.boxes.default_message_answer = box_answer_yes;
      scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 2 * block, 16));
      scene.add({.in = 10, .out = 20}, &scene.add_audio(1, 3 * block, 16));
      EXPECT_EQ(scene.run(), 0);
      EXPECT_FALSE(scene.exists());
      EXPECT_FALSE(scene.exists("take 0.wav"));
      EXPECT_FALSE(scene.exists("take 1.wav"));
      EXPECT_EQ(scene.host.boxes.shown.size(), 1U);
      EXPECT_EQ(scene.host.boxes.shown.at(0).body,
                "Are you sure you wish to abort exporting this audio?");
      EXPECT_GE(scene.host.sound.cancels, 1);
      EXPECT_THAT(scene.host.sound.waiting, IsEmpty());
      EXPECT_THAT(scene.host.sound.enabled, ElementsAre(1, 0));
      EXPECT_TRUE(scene.host.windows.windows.at(0)->closed);
    }
  }
}

TEST(CancelledExport, GoesOnWhenThePersonThinksAgain) {
  ExportScene scene;
  scene.host.windows.cancel_at_position = 2;
  scene.host.boxes.default_message_answer = box_answer_no;
  scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 3 * block, 16));
  EXPECT_EQ(scene.run(), 101);
}

TEST(CancelledExport, WithBlocksKeptForLaterDropsThem) {
  ExportScene scene;
  scene.host.windows.cancel_at_position = 2;
  scene.host.boxes.default_message_answer = box_answer_yes;
  scene.host.sound.picks = {3, 2, 0};
  scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 4 * block, 16));
  EXPECT_EQ(scene.run(), 0);
  EXPECT_FALSE(scene.exists());
}

TEST(FailedExport, OfAudioThatCannotBeReadIsSilent) {
  for (int delivery = 1; delivery <= 4; ++delivery) {
    ExportScene scene;
    scene.host.sound.error_at_delivery = delivery;
    scene.host.sound.order = support::ScriptedAudio::Order::backwards;
    scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 4 * block, 16));
    EXPECT_EQ(scene.run(), 0);
    EXPECT_FALSE(scene.exists());
    EXPECT_THAT(scene.host.boxes.shown, IsEmpty());
    EXPECT_THAT(scene.host.sound.enabled, ElementsAre(1, 0));
    EXPECT_EQ(scene.host.sound.deliveries, delivery);
  }
}

TEST(FailedExport, OfAFormatThatIsNotKnown) {
  ExportScene scene;
  FakeAudCnt& audio = scene.add_audio(1, 10);
  audio.format_known = false;
  scene.add({.in = 0, .out = 10}, &audio);
  EXPECT_EQ(scene.run(), 0);
  EXPECT_FALSE(scene.exists());
}

TEST(FailedExport, OfMemoryThatRunsOutLeavesNothing) {
  for (const bool embed : {true, false}) {
    ExportScene scene;
    scene.host.app.aaf_embed_audio = embed ? 1 : 0;
    scene.host.sound.order = support::ScriptedAudio::Order::backwards;
    scene.host.windows.on_position = [](std::uint32_t position) {
      if (position != 0) throw std::bad_alloc();
    };
    scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 4 * block, 16));
    EXPECT_EQ(scene.run(), 0);
    EXPECT_FALSE(scene.exists());
    EXPECT_FALSE(scene.exists("take 0.wav"));
    EXPECT_THAT(scene.host.sound.enabled, ElementsAre(1, 0));
    EXPECT_THAT(scene.host.sound.waiting, IsEmpty());
  }
}

// A service that loses what it was asked for: the export ends when no request is open.
TEST(FailedExport, OfPacketsThatAreNotItsOwnDoesNotWaitForEver) {
  ExportScene scene;
  scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 4 * block, 16));
  scene.host.windows.on_position = [&](std::uint32_t position) {
    // The first block has come; each of the others comes as that one again, which is
    // gone, and then nothing does. A person ends it.
    if (position == 0) return;
    for (auto& request : scene.host.sound.waiting)
      request.packet = scene.host.sound.requested.front().packet;
    scene.host.sound.on_idle_poll = [&] {
      for (const auto& request : scene.host.sound.requested)
        request.callback(nullptr, request.packet, 1);
    };
  };
  EXPECT_EQ(scene.run(), 0);
  EXPECT_FALSE(scene.exists());
}

// A service that holds no more of the last block than the channel has; once it comes in its
// turn, once it waits for the block before it.
TEST(ExportedPackets, OfALastBlockThatIsShortReadNoMore) {
  for (const std::size_t second : {std::size_t{0}, std::size_t{1}}) {
    ExportScene scene;
    FakeAudCnt& audio = scene.add_audio(1, 2 * block + 5, 16);
    scene.add({.in = 0, .out = 10}, &audio);
    scene.host.sound.picks = {0, second, 0};
    scene.host.windows.on_position = [&](std::uint32_t) {
      for (auto& request : scene.host.sound.waiting)
        if (request.position == std::int64_t{2 * block}) request.count = 5;
    };
    ASSERT_EQ(scene.run(), 101);
    EXPECT_EQ(scene.host.sound.deliveries, 3);
    EXPECT_EQ(samples_of(ReadFile(scene.path()).essence("take 0"), false),
              expected_bytes(audio.channels[0]->samples, 16, false));
  }
}

// A service that delivers once more what has been delivered or given up.
TEST(ExportedPackets, ThatComeWhenTheExportIsOverAreIgnored) {
  for (const bool cancelled : {false, true}) {
    ExportScene scene;
    scene.host.windows.cancel_at_position = cancelled ? 2 : 0;
    scene.host.boxes.default_message_answer = box_answer_yes;
    scene.host.sound.picks = {2, 0};
    scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 3 * block, 16));
    auto exporter = scene.exporter();
    const std::u16string path = text_from_utf8(scene.path());
    EXPECT_EQ(exporter->export_edl(path.c_str(), 0), cancelled ? 0 : 101);
    const std::string written = cancelled ? "" : support::read_file(scene.path());
    std::vector<std::int32_t> samples(block);
    const auto deliver_again = [&] {
      for (const auto& request : scene.host.sound.requested) {
        request.callback(samples.data(), request.packet, 0);
        request.callback(nullptr, request.packet, 1);
      }
    };
    const int cancels = scene.host.sound.cancels;
    deliver_again();
    exporter.reset();
    deliver_again();
    EXPECT_EQ(scene.host.sound.requested.size(), 3U);
    EXPECT_EQ(scene.host.sound.cancels, cancels);
    EXPECT_EQ(scene.exists(), !cancelled);
    EXPECT_EQ(cancelled ? "" : support::read_file(scene.path()), written);
  }
}

// The edits behind it would play the audio of others. The last source has a channel that is
// not heard, so that there are mobs enough for all that are.
TEST(FailedExport, OfAudioThatGoesAwayLeavesNothing) {
  for (const bool leaves : {false, true}) {
    ExportScene scene;
    scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 10));
    FakeAudCnt& leaving = scene.add_audio(1, 10);
    scene.add({.in = 10, .out = 20}, &leaving);
    FakeAudCnt& last = scene.add_audio(2, 10);
    scene.add({.in = 20, .out = 30}, &last);
    scene.add({.in = 30, .out = 30, .streams = 2}, &last);
    scene.host.windows.on_position = [&](std::uint32_t) { leaving.available = !leaves; };
    EXPECT_EQ(scene.run(), leaves ? 0 : 101);
    EXPECT_EQ(scene.exists(), !leaves);
  }
}

TEST(ExternalAudio, IsNamedBesideTheFileByAnAddress) {
  ExportScene scene;
  scene.host.app.aaf_embed_audio = 0;
  auto& entry = scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 10));
  entry.set_file_path(u"//D:/x/a b");
  ASSERT_EQ(scene.run(), 101);
  EXPECT_TRUE(scene.exists("a b.wav"));
  EXPECT_EQ(ReadFile(scene.path()).locator("take 0"),
            "file://" + scene.folder.path() + "/a%20b.wav");
}

TEST(ExternalAudio, OfAStemThatEndsLikeAnExtensionGetsNone) {
  ExportScene scene;
  scene.host.app.aaf_embed_audio = 0;
  auto& entry = scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 10));
  entry.set_file_path(u"//D:/x/take.123");
  ASSERT_EQ(scene.run(), 101);
  EXPECT_TRUE(scene.exists("take.123"));
}

TEST(ExternalAudio, NeverTakesThePlaceOfAnOlderFile) {
  ExportScene scene;
  scene.host.app.aaf_embed_audio = 0;
  scene.host.texts.texts[24793] = u"Exists: ";
  scene.host.texts.texts[24794] = u". Move";
  scene.host.texts.texts[24795] = u" it.";
  scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 10));
  scene.add({.in = 10, .out = 20}, &scene.add_audio(1, 10));
  support::write_file(scene.path("take 1.wav"), "mine");
  EXPECT_EQ(scene.run(), 0);
  EXPECT_EQ(support::read_file(scene.path("take 1.wav")), "mine");
  // What this run wrote goes.
  EXPECT_FALSE(scene.exists("take 0.wav"));
  EXPECT_FALSE(scene.exists());
  ASSERT_EQ(scene.host.boxes.shown.size(), 1U);
  EXPECT_EQ(scene.host.boxes.shown[0].body,
            "Exists: file://" + scene.folder.path() + "/take 1.wav. Move it.");
  EXPECT_EQ(scene.host.boxes.shown[0].message_icon, BoxIcon::warning);
}

TEST(ExternalAudio, ReplacesAnOlderFileWhenTheHostLetsIt) {
  ExportScene scene;
  scene.host.app.aaf_embed_audio = 0;
  scene.host.app.replace_audio = true;
  FakeAudCnt& audio = scene.add_audio(1, 10);
  scene.add({.in = 0, .out = 10}, &audio);
  support::write_file(scene.path("take 0.wav"), "mine");
  ASSERT_EQ(scene.run(), 101);
  EXPECT_EQ(samples_of(support::read_file(scene.path("take 0.wav")), false),
            expected_bytes(audio.channels[0]->samples, 24, false));
  EXPECT_THAT(scene.host.app.asked_to_replace, ElementsAre(scene.path("take 0.wav")));
  EXPECT_FALSE(scene.exists("take 0.wav.before-export"));
}

TEST(ExternalAudio, ComesBackWhenTheRunThatReplacesItFails) {
  ExportScene scene;
  scene.host.app.aaf_embed_audio = 0;
  scene.host.app.replace_audio = true;
  scene.host.sound.error_at_delivery = 2;
  scene.add({.in = 0, .out = 10}, &scene.add_audio(1, 10));
  scene.add({.in = 10, .out = 20}, &scene.add_audio(1, 10));
  support::write_file(scene.path("take 0.wav"), "mine");
  EXPECT_EQ(scene.run(), 0);
  EXPECT_EQ(support::read_file(scene.path("take 0.wav")), "mine");
  EXPECT_FALSE(scene.exists("take 0.wav.before-export"));
  EXPECT_FALSE(scene.exists("take 1.wav"));
}

// Three mono sources of one file, of which two play its first channel, and a further one
// of another folder.
void add_equal_stems(ExportScene& scene) {
  FakeAudCnt& audio = scene.add_audio(2, 10);
  for (std::uint16_t i = 0; i < 4; ++i) {
    auto& entry = scene.add({.in = i * 10, .out = i * 10 + 10}, &audio);
    entry.set_file_path(i == 3 ? u"//D:/other/TAKE" : u"//D:/audio/take");
    entry.source_time_word = i;
    entry.first_channel = i == 1 ? 1 : 0;
  }
}

TEST(ExternalAudio, OfEqualStemsGetsNamesOfItsOwn) {
  ExportScene scene;
  scene.host.app.aaf_embed_audio = 0;
  add_equal_stems(scene);
  ASSERT_EQ(scene.run(), 101);
  EXPECT_TRUE(scene.exists("take.wav"));
  EXPECT_TRUE(scene.exists("take2.wav"));
  EXPECT_TRUE(scene.exists("take1.wav"));
  EXPECT_TRUE(scene.exists("TAKE1-2.wav"));
}

TEST(ExternalAudio, OfEqualStemsIsRefusedToTheLetter) {
  ExportScene scene;
  scene.host.app.aaf_embed_audio = 0;
  // A file of this very run is not replaced either.
  scene.host.app.replace_audio = true;
  scene.host.fixes.set(Correction::aaf_external_names, false);
  add_equal_stems(scene);
  EXPECT_EQ(scene.run(), 0);
  EXPECT_EQ(scene.host.boxes.shown.size(), 1U);
  EXPECT_FALSE(scene.exists("take.wav"));
}

TEST(EssenceAddress, EscapesWhatHasAMeaning) {
  using aaf::essence_url;
  EXPECT_EQ(essence_url(u"D:\\out\\", u"a b.wav"), u"file:///D%3a/out/a%20b.wav");
  EXPECT_EQ(essence_url(u"/home/u/", u"a.wav"), u"file:///home/u/a.wav");
  EXPECT_EQ(essence_url(u"", u"a%20#b.wav"), u"file:///a%2520%23b.wav");
  EXPECT_EQ(essence_url(u"", u"\u00e9\u0142\t\u007f"), u"file:///%e9%142%9%7f");
  EXPECT_EQ(essence_url(u"", u"<>\"{}|^~[]`;?:@=&"),
            u"file:///%3c%3e%22%7b%7d%7c%5e%7e%5b%5d%60%3b%3f%3a%40%3d%26");
}

TEST(EssenceAddress, ReadsBackAsThePath) {
  const std::u16string url = aaf::essence_url(u"D:\\out\\", u"a b.wav");
  EXPECT_EQ(aaf::resolve_local_path(url, u"D:\\out\\y.aaf"), u"//D:/out/a b");
  const std::u16string rooted = aaf::essence_url(u"/home/u/", u"a b.wav");
  EXPECT_EQ(aaf::resolve_local_path(rooted, u"/home/u/y.aaf"), u"//home/u/a b");
}

TEST(EssenceAddress, HasTheExtensionOfItsCodec) {
  EXPECT_EQ(aaf::export_extension(kAAFCodecDef_WAVE), u".wav");
  EXPECT_EQ(aaf::export_extension(kAAFCodecDef_AIFC), u".aif");
  EXPECT_EQ(aaf::export_extension(kAAFCodecDef_PCM), u"");
}

}  // namespace
