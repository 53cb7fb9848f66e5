#include "aafobj/essence/sound_header.h"

#include <bit>
#include <string_view>

#include "aafobj/model/byte_stream.h"

namespace aafobj {
namespace {

constexpr std::uint32_t wave_head_bytes = 44;
constexpr std::uint32_t aifc_head_bytes = 74;
constexpr std::size_t aifc_summary_bytes = 58;
constexpr std::uint16_t wave_format_pcm = 1;

void put_tag(ByteWriter& writer, std::string_view tag) {
  writer.put_bytes(std::as_bytes(std::span(tag)));
}

std::uint32_t whole_rate(const aafRational_t& rate) {
  if (rate.numerator <= 0 || rate.denominator <= 0) return 0;
  return static_cast<std::uint32_t>(rate.numerator / rate.denominator);
}

std::vector<std::byte> wave_header(const SoundFormat& format, std::uint64_t data_bytes) {
  const std::uint32_t rate = whole_rate(format.sample_rate);
  const auto frame = static_cast<std::uint32_t>(format.frame_bytes());
  const auto data = static_cast<std::uint32_t>(data_bytes);
  ByteWriter writer;
  put_tag(writer, "RIFF");
  writer.put(data + wave_head_bytes - 8);
  put_tag(writer, "WAVEfmt ");
  writer.put(std::uint32_t{16});
  writer.put(wave_format_pcm);
  writer.put(static_cast<std::uint16_t>(format.channels));
  writer.put(rate);
  writer.put(rate * frame);
  writer.put(static_cast<std::uint16_t>(frame));
  writer.put(static_cast<std::uint16_t>(format.bits));
  put_tag(writer, "data");
  writer.put(data);
  return writer.release();
}

std::vector<std::byte> aifc_header(const SoundFormat& format, std::uint64_t data_bytes) {
  const std::uint64_t frame = format.frame_bytes();
  const auto data = static_cast<std::uint32_t>(data_bytes);
  ByteWriter writer(ByteOrder::big);
  put_tag(writer, "FORM");
  writer.put(data + aifc_head_bytes - 8);
  put_tag(writer, "AIFCCOMM");
  writer.put(std::uint32_t{38});
  writer.put(static_cast<std::uint16_t>(format.channels));
  writer.put(static_cast<std::uint32_t>(frame == 0 ? 0 : data_bytes / frame));
  writer.put(static_cast<std::uint16_t>(format.bits));
  writer.put_bytes(extended_bytes(format.sample_rate));
  put_tag(writer, "NONE");
  writer.put(std::uint8_t{14});
  put_tag(writer, "Not Compressed");
  writer.put(std::uint8_t{0});
  put_tag(writer, "SSND");
  writer.put(data + 8);
  writer.put(std::uint32_t{0});
  writer.put(std::uint32_t{0});
  return writer.release();
}

}  // namespace

std::vector<std::byte> extended_bytes(const aafRational_t& rate) {
  ByteWriter writer(ByteOrder::big);
  if (rate.numerator <= 0 || rate.denominator <= 0) return std::vector<std::byte>(10);
  const auto numerator = static_cast<std::uint32_t>(rate.numerator);
  const auto denominator = static_cast<std::uint32_t>(rate.denominator);
  // The quotient with 32 bits behind the point, and what is then left with 32 more.
  const std::uint64_t dividend = std::uint64_t{numerator} << 32;
  std::uint64_t high = dividend / denominator;
  std::uint64_t low = ((dividend % denominator) << 32) / denominator;
  int exponent = 31;
  while ((high >> 63) == 0) {
    high = (high << 1) | ((low >> 31) & 1);
    low = (low << 1) & 0xffffffff;
    --exponent;
  }
  writer.put(static_cast<std::uint16_t>(16383 + exponent));
  writer.put(high);
  return writer.release();
}

std::vector<std::byte> sound_header(SoundCodec codec, const SoundFormat& format,
                                    std::uint64_t data_bytes) {
  switch (codec) {
    case SoundCodec::wave:
      return wave_header(format, data_bytes);
    case SoundCodec::aifc:
      return aifc_header(format, data_bytes);
    case SoundCodec::pcm:
      return {};
  }
  return {};
}

std::vector<std::byte> sound_summary(SoundCodec codec, const SoundFormat& format,
                                     std::uint64_t data_bytes) {
  if (codec != SoundCodec::aifc) return sound_header(codec, format, data_bytes);
  std::vector<std::byte> head = aifc_header(format, 0);
  head.resize(aifc_summary_bytes);
  head[7] = std::byte{aifc_summary_bytes - 8};  // FORM counts what stands here and no samples
  return head;
}

}  // namespace aafobj
