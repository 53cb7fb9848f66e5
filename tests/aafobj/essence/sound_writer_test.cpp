#include "aafobj/essence/sound_writer.h"

#include <gtest/gtest.h>

namespace aafobj {
namespace {

using Bytes = std::vector<std::byte>;

Bytes bytes_of(std::initializer_list<int> values) {
  Bytes bytes;
  for (const int value : values)
    bytes.push_back(static_cast<std::byte>(value));
  return bytes;
}

TEST(SoundHeader, RatesAsEightyBits) {
  // 44100 is 0xac44, whose top bit stands for 2^15: exponent 16383 + 15.
  EXPECT_EQ(extended_bytes({44100, 1}), bytes_of({0x40, 0x0e, 0xac, 0x44, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(extended_bytes({1, 1}), bytes_of({0x3f, 0xff, 0x80, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(extended_bytes({1, 2}), bytes_of({0x3f, 0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(extended_bytes({0, 1}), Bytes(10));
  EXPECT_EQ(extended_bytes({48000, 0}), Bytes(10));
  EXPECT_EQ(extended_bytes({-1, 1}), Bytes(10));
  // 48000000 / 1001 is 0xbb50 and 48 / 1001, which is 0x0c4695ddbaf2 of 2^48.
  EXPECT_EQ(extended_bytes({48000000, 1001}),
            bytes_of({0x40, 0x0e, 0xbb, 0x50, 0x0c, 0x46, 0x95, 0xdd, 0xba, 0xf2}));
}

TEST(SoundWriter, FramesAreOfAllChannels) {
  SoundFormat format;
  format.bits = 20;
  format.channels = 2;
  EXPECT_EQ(format.frame_bytes(), 6u);
  auto storage = std::make_shared<MemoryStorage>();
  SoundWriter writer(SoundCodec::wave, make_file_sink(storage));
  ASSERT_EQ(writer.set_format(format), Result::ok);
  ASSERT_EQ(writer.write(Bytes(12)), Result::ok);
  EXPECT_EQ(writer.frames(), 2u);
  EXPECT_EQ(writer.set_format(format), Result::invalid_argument);  // too late
  ASSERT_EQ(writer.finish(), Result::ok);
  ASSERT_EQ(storage->bytes().size(), 56u);
  EXPECT_EQ(storage->bytes()[32], std::byte{6});
  EXPECT_EQ(storage->bytes()[34], std::byte{20});
  EXPECT_EQ(storage->bytes()[40], std::byte{12});
}

TEST(SoundWriter, RefusesFormatsWithoutSamples) {
  SoundWriter writer(SoundCodec::wave, make_file_sink(std::make_shared<MemoryStorage>()));
  SoundFormat format;
  format.bits = 0;
  EXPECT_EQ(writer.set_format(format), Result::invalid_argument);
  format.bits = 16;
  format.channels = 0;
  EXPECT_EQ(writer.set_format(format), Result::invalid_argument);
}

// Takes any number of bytes without keeping them.
class Abyss final : public EssenceSink {
 public:
  Result write_at(std::uint64_t, std::span<const std::byte>) override { return Result::ok; }
  Result finish() override { return Result::ok; }
};

TEST(SoundWriter, SizesStayBelowTwoGibibytes) {
  const Bytes block(std::size_t{1} << 24);
  for (const auto& [codec, head] : {std::pair{SoundCodec::wave, 44u}, {SoundCodec::aifc, 74u}}) {
    SoundWriter writer(codec, std::make_unique<Abyss>());
    for (int i = 0; i < 127; ++i)
      ASSERT_EQ(writer.write(block), Result::ok);
    EXPECT_EQ(writer.write(block), Result::too_large);
    const std::size_t left = block.size() - 1 - head;
    EXPECT_EQ(writer.write(std::span(block).first(left + 1)), Result::too_large);
    EXPECT_EQ(writer.write(std::span(block).first(left)), Result::ok);
  }
  SoundWriter raw(SoundCodec::pcm, std::make_unique<Abyss>());
  for (int i = 0; i < 300; ++i)
    ASSERT_EQ(raw.write(block), Result::ok);
}

}  // namespace
}  // namespace aafobj
