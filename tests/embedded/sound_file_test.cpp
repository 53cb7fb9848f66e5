#include "embedded/sound_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "tests/embedded/audio_files.h"
#include "tests/support/temp_folder.h"

namespace {

using embedded::SoundFile;
using support::Audio;
using support::TempFolder;
using Samples = std::vector<std::int32_t>;

Audio small_stereo(unsigned bits) {
  if (bits == 16) return {48000, 16, {{0x1234, -1, -32768, 32767, 0}, {1, 2, 3, 4, 5}}};
  return {48000, 24, {{0x123456, -1, -8388608, 8388607, 0}, {1, 2, 3, 4, 5}}};
}

Samples read(SoundFile& file, std::uint32_t channel, std::uint64_t position, std::size_t count) {
  Samples out(count, 99);
  EXPECT_TRUE(file.read(channel, position, out));
  return out;
}

struct Kind {
  const char* name;
  std::function<std::string(const Audio&)> make;
};

const std::vector<Kind>& kinds() {
  static const std::vector<Kind> all = {
      {"a.wav", support::wave_file},
      {"a.bwf", support::broadcast_wave_file},
      {"b.wav", support::rf64_file},
      {"a.aif", support::aiff_file},
      {"a.aifc", [](const Audio& a) { return support::aifc_file(a, false); }},
      {"b.afc", [](const Audio& a) { return support::aifc_file(a, true); }},
      {"a.flac", support::flac_file},
  };
  return all;
}

TEST(SoundFile, EveryKindGivesTheSameSamples) {
  const TempFolder folder;
  for (const Kind& kind : kinds()) {
    for (const unsigned bits : {16U, 24U}) {
      support::write_file(folder.file(kind.name), kind.make(small_stereo(bits)));
      const auto file = SoundFile::open(folder.file(kind.name));
      ASSERT_NE(file, nullptr) << kind.name;
      EXPECT_EQ(file->format().samples_per_second, 48000U) << kind.name;
      EXPECT_EQ(file->format().sample_bits, bits) << kind.name;
      EXPECT_EQ(file->format().channels, 2U) << kind.name;
      EXPECT_EQ(file->format().total_samples, 5U) << kind.name;
      const Samples left = bits == 16 ? Samples{0x123400, -256, -8388608, 32767 * 256, 0}
                                      : Samples{0x123456, -1, -8388608, 8388607, 0};
      const Samples right =
          bits == 16 ? Samples{256, 512, 768, 1024, 1280} : Samples{1, 2, 3, 4, 5};
      EXPECT_EQ(read(*file, 0, 0, 5), left) << kind.name << " " << bits;
      EXPECT_EQ(read(*file, 1, 0, 5), right) << kind.name << " " << bits;
      EXPECT_EQ(read(*file, 1, 3, 4), (Samples{right[3], right[4], 0, 0})) << kind.name;
    }
  }
}

TEST(SoundFile, SilenceBehindTheEnd) {
  const TempFolder folder;
  support::write_file(folder.file("a.wav"), support::wave_file(small_stereo(24)));
  const auto file = SoundFile::open(folder.file("a.wav"));
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(read(*file, 0, 5, 2), (Samples{0, 0}));
  EXPECT_EQ(read(*file, 0, ~std::uint64_t{0}, 2), (Samples{0, 0}));
  EXPECT_EQ(read(*file, 0, 0, 0), Samples());
}

TEST(SoundFile, NoSuchChannel) {
  const TempFolder folder;
  support::write_file(folder.file("a.wav"), support::wave_file(small_stereo(24)));
  const auto file = SoundFile::open(folder.file("a.wav"));
  ASSERT_NE(file, nullptr);
  Samples out(1);
  EXPECT_FALSE(file->read(2, 0, out));
}

TEST(SoundFile, FractionsAreScaledAndKeptInside) {
  const TempFolder folder;
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  constexpr float infinite = std::numeric_limits<float>::infinity();
  // 2^-23 is the smallest step; half of it and less is rounded to the even one.
  const std::vector<float> values = {0.0F,     0.5F,     -0.5F,     1.0F,     -1.0F,
                                     2.5F,     -2.5F,    nan,       infinite, -infinite,
                                     0x1p-23F, 0x1p-24F, 0x1.8p-23F};
  support::write_file(folder.file("a.wav"), support::float_wave_file(44100, values));
  const auto file = SoundFile::open(folder.file("a.wav"));
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->format().samples_per_second, 44100U);
  EXPECT_EQ(file->format().sample_bits, 24U);
  EXPECT_EQ(read(*file, 0, 0, values.size()),
            (Samples{0, 4194304, -4194304, 8388607, -8388608, 8388607, -8388608, 0, 8388607,
                     -8388608, 1, 0, 2}));
}

TEST(SoundFile, LongFilesOfManyChannels) {
  const TempFolder folder;
  std::mt19937 random(23);
  Audio audio{96000, 24, {}};
  for (int c = 0; c < 5; ++c) {
    Samples channel(70001);
    for (auto& sample : channel)
      sample = static_cast<std::int32_t>(random() & 0xFFFFFF) - 0x800000;
    audio.channels.push_back(std::move(channel));
  }
  for (const Kind& kind : kinds()) {
    Audio held = audio;
    if (std::string_view(kind.name) == "a.flac") held.channels.resize(2);
    support::write_file(folder.file(kind.name), kind.make(held));
    const auto file = SoundFile::open(folder.file(kind.name));
    ASSERT_NE(file, nullptr) << kind.name;
    for (std::uint32_t c = 0; c < held.channels.size(); ++c)
      EXPECT_TRUE(read(*file, c, 0, 70001) == held.channels[c]) << kind.name << " " << c;
    for (int i = 0; i < 20; ++i) {
      const std::size_t at = random() % 70000;
      const std::size_t count = random() % (70001 - at);
      const auto c = static_cast<std::uint32_t>(random() % held.channels.size());
      const auto first = held.channels[c].begin() + static_cast<std::ptrdiff_t>(at);
      const Samples expected(first, first + static_cast<std::ptrdiff_t>(count));
      ASSERT_TRUE(read(*file, c, at, count) == expected) << kind.name << " " << at;
    }
  }
}

TEST(SoundFile, WhatIsNoAudioIsNull) {
  const TempFolder folder;
  EXPECT_EQ(SoundFile::open(folder.file("missing.wav")), nullptr);
  EXPECT_EQ(SoundFile::open(folder.path()), nullptr);
  support::write_file(folder.file("a.wav"), "");
  EXPECT_EQ(SoundFile::open(folder.file("a.wav")), nullptr);
  support::write_file(folder.file("a.wav"), "TITLE: not audio at all\n");
  EXPECT_EQ(SoundFile::open(folder.file("a.wav")), nullptr);
}

// A head that promises more than the file holds gives what there is.
TEST(SoundFile, CutFileGivesWhatThereIs) {
  const TempFolder folder;
  const Audio audio = {48000, 16, {Samples(1000, 7)}};
  std::string bytes = support::wave_file(audio);
  bytes.resize(bytes.size() - 1000);
  support::write_file(folder.file("a.wav"), bytes);
  const auto file = SoundFile::open(folder.file("a.wav"));
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->format().total_samples, 500U);
  Samples expected(600, 7 * 256);
  std::fill(expected.begin() + 500, expected.end(), 0);
  EXPECT_EQ(read(*file, 0, 0, 600), expected);
}

TEST(SoundFile, FileThatShrinksIsAnError) {
  const TempFolder folder;
  const std::string bytes = support::wave_file({48000, 24, {Samples(100000, 7)}});
  support::write_file(folder.file("a.wav"), bytes);
  const auto file = SoundFile::open(folder.file("a.wav"));
  ASSERT_NE(file, nullptr);
  support::write_file(folder.file("a.wav"), bytes.substr(0, 60000));
  Samples out(100000);
  EXPECT_FALSE(file->read(0, 0, out));
}

TEST(SoundFile, DamagedFilesAreReadOrRefused) {
  const TempFolder folder;
  std::mt19937 random(29);
  for (const Kind& kind : kinds()) {
    const std::string good = kind.make(small_stereo(24));
    for (int i = 0; i < 300; ++i) {
      std::string bytes = good;
      for (unsigned n = 1 + random() % 4; n > 0; --n)
        bytes[random() % bytes.size()] = static_cast<char>(random());
      if (i % 5 == 0) bytes.resize(random() % bytes.size());
      support::write_file(folder.file(kind.name), bytes);
      const auto file = SoundFile::open(folder.file(kind.name));
      if (file == nullptr) continue;
      ASSERT_GT(file->format().channels, 0U);
      Samples out(16, 0x7FFFFFFF);
      if (!file->read(0, 0, out)) continue;
      for (const std::int32_t sample : out)
        ASSERT_TRUE(sample >= -8388608 && sample <= 8388607) << kind.name;
    }
  }
}

}  // namespace
