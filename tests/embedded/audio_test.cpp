#include "embedded/audio.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>
#include <vector>

#include "embedded/embedded_host.h"
#include "tests/embedded/audio_files.h"
#include "tests/embedded/pty.h"
#include "tests/support/temp_folder.h"

namespace {

using embedded::EmbeddedAudio;
using support::TempFolder;
using Samples = std::vector<std::int32_t>;

constexpr std::uint32_t block = 262144;

// What was delivered, in order. A packet of the tests is an index into it.
struct Heard {
  struct Block {
    int packet = 0;
    int error = 0;
    std::int32_t first = 0;
    std::int32_t last = 0;
  };
  std::vector<Block> blocks;
  std::uint32_t count = block;
  std::thread::id thread;
  void (*then)(EmbeddedAudio&) = nullptr;
  EmbeddedAudio* audio = nullptr;
};
Heard* heard = nullptr;

void hear(std::int32_t* samples, void* packet, int error) {
  Heard::Block got;
  got.packet = *static_cast<int*>(packet);
  got.error = error;
  if (error == 0) {
    got.first = samples[0];
    got.last = samples[heard->count - 1];
  }
  heard->blocks.push_back(got);
  heard->thread = std::this_thread::get_id();
  if (heard->then != nullptr) heard->then(*heard->audio);
}

void hear_other(std::int32_t* samples, void* packet, int error) {
  hear(samples, packet, error);
}

// A mono file whose sample at i is i, and packets to ask for it with.
class Waveforms : public testing::Test {
 protected:
  Waveforms() {
    Samples ramp(3 * block + 10);
    for (std::size_t i = 0; i < ramp.size(); ++i)
      ramp[i] = static_cast<std::int32_t>(i);
    support::write_file(folder_.file("ramp.wav"), support::wave_file({48000, 24, {ramp}}));
    heard = &here_;
    here_.audio = &audio_;
    for (int i = 0; i < 32; ++i)
      packets_[i] = i;
  }
  ~Waveforms() override { heard = nullptr; }

  AudioFile* ramp() {
    CAudCnt* const source = audio_.source(folder_.file("ramp.wav"));
    return source == nullptr ? nullptr : audio_.channel_file(source->file(), 0);
  }
  void ask(AudioFile* file, std::int64_t position, int packet, WaveformCallback callback = hear) {
    audio_.add_waveform_request(file, position, block, callback, &packets_[packet]);
  }
  std::vector<int> packets_heard() const {
    std::vector<int> out;
    for (const auto& each : here_.blocks)
      out.push_back(each.packet);
    return out;
  }

  TempFolder folder_;
  EmbeddedAudio audio_;
  Heard here_;
  int packets_[32] = {};
};

TEST_F(Waveforms, DeliversInOrderOneAPoll) {
  AudioFile* const file = ramp();
  ASSERT_NE(file, nullptr);
  ASSERT_EQ(audio_.enable_waveforms(1), 0);
  for (int i = 0; i < 4; ++i)
    ask(file, std::int64_t{i} * block, i);
  EXPECT_TRUE(here_.blocks.empty());
  for (std::size_t i = 1; i <= 4; ++i) {
    audio_.poll_waveforms();
    ASSERT_EQ(here_.blocks.size(), i);
  }
  EXPECT_EQ(packets_heard(), (std::vector<int>{0, 1, 2, 3}));
  EXPECT_EQ(here_.blocks[0].first, 0);
  EXPECT_EQ(here_.blocks[0].last, 262143);
  EXPECT_EQ(here_.blocks[2].first, 524288);
  EXPECT_EQ(here_.blocks[3].first, 786432);
  EXPECT_EQ(here_.blocks[3].last, 0);
  EXPECT_EQ(here_.thread, std::this_thread::get_id());
  audio_.poll_waveforms();
  EXPECT_EQ(here_.blocks.size(), 4U);
  EXPECT_EQ(audio_.enable_waveforms(0), 0);
}

TEST_F(Waveforms, ManyMoreThanAreReadAhead) {
  AudioFile* const file = ramp();
  ASSERT_EQ(audio_.enable_waveforms(1), 0);
  for (int i = 0; i < 32; ++i)
    ask(file, i, i);
  for (int i = 0; i < 32; ++i)
    audio_.poll_waveforms();
  ASSERT_EQ(here_.blocks.size(), 32U);
  for (int i = 0; i < 32; ++i) {
    EXPECT_EQ(here_.blocks[static_cast<std::size_t>(i)].packet, i);
    EXPECT_EQ(here_.blocks[static_cast<std::size_t>(i)].first, i);
  }
}

TEST_F(Waveforms, CancelDropsTheRequestsOfItsCallbackAlone) {
  AudioFile* const file = ramp();
  ASSERT_EQ(audio_.enable_waveforms(1), 0);
  for (int i = 0; i < 12; ++i)
    ask(file, 0, i, i % 2 == 0 ? hear : hear_other);
  audio_.cancel_waveform_requests(hear);
  for (int i = 0; i < 12; ++i)
    audio_.poll_waveforms();
  EXPECT_EQ(packets_heard(), (std::vector<int>{1, 3, 5, 7, 9, 11}));
}

TEST_F(Waveforms, CancelFromInsideACallback) {
  AudioFile* const file = ramp();
  ASSERT_EQ(audio_.enable_waveforms(1), 0);
  for (int i = 0; i < 8; ++i)
    ask(file, 0, i);
  here_.then = [](EmbeddedAudio& audio) { audio.cancel_waveform_requests(hear); };
  for (int i = 0; i < 8; ++i)
    audio_.poll_waveforms();
  EXPECT_EQ(packets_heard(), std::vector<int>{0});
  here_.then = nullptr;
  ask(file, 0, 9);
  audio_.poll_waveforms();
  EXPECT_EQ(packets_heard(), (std::vector<int>{0, 9}));
}

TEST_F(Waveforms, SwitchingOffDropsEverything) {
  AudioFile* const file = ramp();
  ASSERT_EQ(audio_.enable_waveforms(1), 0);
  for (int i = 0; i < 8; ++i)
    ask(file, 0, i);
  here_.then = [](EmbeddedAudio& audio) { EXPECT_EQ(audio.enable_waveforms(0), 0); };
  for (int i = 0; i < 8; ++i)
    audio_.poll_waveforms();
  EXPECT_EQ(packets_heard(), std::vector<int>{0});
  ask(file, 0, 9);
  audio_.poll_waveforms();
  EXPECT_EQ(packets_heard(), std::vector<int>{0});
  here_.then = nullptr;
  ASSERT_EQ(audio_.enable_waveforms(1), 0);
  ask(file, 0, 10);
  audio_.poll_waveforms();
  EXPECT_EQ(packets_heard(), (std::vector<int>{0, 10}));
}

TEST_F(Waveforms, WhatCannotBeReadComesWithTheErrorFlag) {
  AudioFile* const file = ramp();
  ASSERT_EQ(audio_.enable_waveforms(1), 0);
  ask(nullptr, 0, 0);
  ask(file, -1, 1);
  ask(file, 0, 2);
  for (int i = 0; i < 3; ++i)
    audio_.poll_waveforms();
  ASSERT_EQ(here_.blocks.size(), 3U);
  EXPECT_NE(here_.blocks[0].error, 0);
  EXPECT_NE(here_.blocks[1].error, 0);
  EXPECT_EQ(here_.blocks[2].error, 0);
}

TEST_F(Waveforms, FileThatHasGoneIsAnError) {
  AudioFile* const file = ramp();
  std::filesystem::remove(folder_.file("ramp.wav"));
  ASSERT_EQ(audio_.enable_waveforms(1), 0);
  ask(file, 0, 0);
  audio_.poll_waveforms();
  ASSERT_EQ(here_.blocks.size(), 1U);
  EXPECT_NE(here_.blocks[0].error, 0);
}

TEST_F(Waveforms, FileThatHasChangedIsAnError) {
  AudioFile* const file = ramp();
  support::write_file(folder_.file("ramp.wav"), support::wave_file({44100, 24, {{1, 2, 3}}}));
  ASSERT_EQ(audio_.enable_waveforms(1), 0);
  ask(file, 0, 0);
  audio_.poll_waveforms();
  ASSERT_EQ(here_.blocks.size(), 1U);
  EXPECT_NE(here_.blocks[0].error, 0);
}

TEST_F(Waveforms, TheWholeFileStandsForItsFirstChannel) {
  CAudCnt* const source = audio_.source(folder_.file("ramp.wav"));
  ASSERT_NE(source, nullptr);
  ASSERT_EQ(audio_.enable_waveforms(1), 0);
  ask(source->file(), 5, 0);
  audio_.poll_waveforms();
  ASSERT_EQ(here_.blocks.size(), 1U);
  EXPECT_EQ(here_.blocks[0].first, 5);
}

TEST_F(Waveforms, FilesTakeTurns) {
  support::write_file(folder_.file("b.wav"), support::wave_file({48000, 24, {{7}, {8}}}));
  CAudCnt* const other = audio_.source(folder_.file("b.wav"));
  ASSERT_NE(other, nullptr);
  AudioFile* const second = audio_.channel_file(other->file(), 1);
  AudioFile* const file = ramp();
  ASSERT_EQ(audio_.enable_waveforms(1), 0);
  ask(file, 3, 0);
  ask(second, 0, 1);
  ask(file, 4, 2);
  for (int i = 0; i < 3; ++i)
    audio_.poll_waveforms();
  ASSERT_EQ(here_.blocks.size(), 3U);
  EXPECT_EQ(here_.blocks[0].first, 3);
  EXPECT_EQ(here_.blocks[1].first, 8);
  EXPECT_EQ(here_.blocks[2].first, 4);
}

TEST(AudioSource, StandsForOneFile) {
  const TempFolder folder;
  support::write_file(folder.file("a.wav"), support::wave_file({44100, 16, {{1, 2}, {3, 4}}}));
  std::filesystem::create_symlink(folder.file("a.wav"), folder.file("link.wav"));
  EmbeddedAudio audio;
  CAudCnt* const source = audio.source(folder.file("a.wav"));
  ASSERT_NE(source, nullptr);
  EXPECT_EQ(audio.source(folder.path() + "/./a.wav"), source);
  EXPECT_EQ(audio.source(folder.file("link.wav")), source);
  EXPECT_EQ(audio.path_of(source), std::filesystem::canonical(folder.file("a.wav")));
  EXPECT_EQ(audio.path_of(nullptr), "");
  EXPECT_TRUE(source->is_available());
  EXPECT_EQ(source->sample_rate(), 44100U);
  AudioFormat format;
  ASSERT_TRUE(source->get_format(format));
  EXPECT_EQ(format.sample_bits, 16U);
  EXPECT_EQ(format.total_samples, 2U);
  EXPECT_EQ(format.channels, 2U);
  AudioFile* const left = audio.channel_file(source->file(), 0);
  EXPECT_NE(left, nullptr);
  EXPECT_EQ(audio.channel_file(source->file(), 0), left);
  EXPECT_NE(audio.channel_file(source->file(), 1), left);
  EXPECT_EQ(audio.channel_file(source->file(), 2), nullptr);
  EXPECT_EQ(audio.channel_file(source->file(), -1), nullptr);
  EXPECT_EQ(audio.channel_file(nullptr, 0), nullptr);
  EXPECT_EQ(audio.channel_file(left, 0), nullptr);
}

TEST(AudioSource, NothingForWhatIsNoAudio) {
  const TempFolder folder;
  support::write_file(folder.file("a.txt"), "text");
  EmbeddedAudio audio;
  EXPECT_EQ(audio.source(folder.file("a.txt")), nullptr);
  EXPECT_EQ(audio.source(folder.file("missing.wav")), nullptr);
  EXPECT_EQ(audio.source(folder.path()), nullptr);
  EXPECT_EQ(audio.source(""), nullptr);
}

TEST(AudioService, WithoutBeingEnabledNothingIsDelivered) {
  EmbeddedAudio audio;
  audio.add_waveform_request(nullptr, 0, 1, hear, nullptr);
  audio.poll_waveforms();
  audio.cancel_waveform_requests(hear);
  EXPECT_EQ(audio.enable_waveforms(0), 0);
}

TEST(AudioService, RequestsLeftOpenDoNotHoldTheProgramUp) {
  const TempFolder folder;
  support::write_file(folder.file("a.wav"), support::wave_file({48000, 24, {Samples(block, 1)}}));
  EmbeddedAudio audio;
  CAudCnt* const source = audio.source(folder.file("a.wav"));
  ASSERT_NE(source, nullptr);
  ASSERT_EQ(audio.enable_waveforms(1), 0);
  int packet = 0;
  for (int i = 0; i < 50; ++i)
    audio.add_waveform_request(source->file(), 0, block, hear, &packet);
}

}  // namespace
