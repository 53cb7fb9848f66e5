#include "tests/embedded/audio_files.h"

#include <algorithm>
#include <bit>
#include <string_view>

namespace support {

namespace {

std::string little(std::uint64_t value, unsigned bytes) {
  std::string out;
  for (unsigned i = 0; i < bytes; ++i)
    out.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
  return out;
}

std::string big(std::uint64_t value, unsigned bytes) {
  std::string out;
  for (unsigned i = bytes; i > 0; --i)
    out.push_back(static_cast<char>((value >> (8 * (i - 1))) & 0xFF));
  return out;
}

std::uint32_t channel_count(const Audio& audio) {
  return static_cast<std::uint32_t>(audio.channels.size());
}

std::uint32_t length_of(const Audio& audio) {
  return static_cast<std::uint32_t>(audio.channels.front().size());
}

std::string samples_of(const Audio& audio, bool big_endian) {
  std::string out;
  const unsigned bytes = audio.bits / 8;
  for (std::size_t i = 0; i < length_of(audio); ++i) {
    for (const auto& channel : audio.channels) {
      const auto value = static_cast<std::uint32_t>(channel[i]);
      out += big_endian ? big(value, bytes) : little(value, bytes);
    }
  }
  return out;
}

// A RIFF chunk, padded to an even length.
std::string riff_chunk(std::string_view id, const std::string& body) {
  std::string out = std::string(id) + little(body.size(), 4) + body;
  if (body.size() % 2 != 0) out.push_back('\0');
  return out;
}

std::string iff_chunk(std::string_view id, const std::string& body) {
  std::string out = std::string(id) + big(body.size(), 4) + body;
  if (body.size() % 2 != 0) out.push_back('\0');
  return out;
}

std::string wave_format(unsigned tag, std::uint32_t channels, std::uint32_t rate, unsigned bits) {
  const std::uint32_t block = channels * bits / 8;
  return little(tag, 2) + little(channels, 2) + little(rate, 4) +
         little(std::uint64_t{rate} * block, 4) + little(block, 2) + little(bits, 2);
}

std::string pcm_format(const Audio& audio) {
  return riff_chunk("fmt ", wave_format(1, channel_count(audio), audio.rate, audio.bits));
}

// A whole number as an 80-bit float: exponent, then the number moved up until its
// top bit is set.
std::string extended(std::uint32_t value) {
  const auto up = static_cast<unsigned>(std::countl_zero(std::uint64_t{value}));
  return big(16383 + 63 - up, 2) + big(std::uint64_t{value} << up, 8);
}

std::string common_fields(const Audio& audio) {
  return big(channel_count(audio), 2) + big(length_of(audio), 4) + big(audio.bits, 2) +
         extended(audio.rate);
}

// Offset and block size in front of the samples are 0.
std::string sound_chunk(const std::string& samples) {
  return iff_chunk("SSND", std::string(8, '\0') + samples);
}

// Bits from the top of each byte down.
class BitWriter {
 public:
  void put(std::uint64_t value, unsigned count) {
    for (unsigned i = count; i > 0; --i) {
      if (filled_ == 0) bytes_.push_back('\0');
      const auto bit = static_cast<unsigned>((value >> (i - 1)) & 1);
      bytes_.back() =
          static_cast<char>(static_cast<unsigned char>(bytes_.back()) | (bit << (7 - filled_)));
      filled_ = (filled_ + 1) % 8;
    }
  }
  void align() { filled_ = 0; }
  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
  unsigned filled_ = 0;
};

std::uint32_t crc(const std::string& bytes, unsigned width, std::uint32_t polynomial) {
  std::uint32_t sum = 0;
  for (const char byte : bytes) {
    sum ^= static_cast<std::uint32_t>(static_cast<unsigned char>(byte)) << (width - 8);
    for (int i = 0; i < 8; ++i) {
      const bool top = (sum >> (width - 1)) != 0;
      sum = ((sum << 1) ^ (top ? polynomial : 0)) & ((1U << width) - 1);
    }
  }
  return sum;
}

// One frame of a FLAC stream with every channel stored as it is.
std::string flac_frame(const Audio& audio, unsigned number, std::size_t first, std::size_t count) {
  BitWriter bits;
  bits.put(0x3FFE, 14);  // mark
  bits.put(0, 2);        // blocks of one size
  bits.put(7, 4);        // the size stands behind, in 16 bits
  bits.put(0, 4);        // rate as in the head
  bits.put(channel_count(audio) - 1, 4);
  bits.put(audio.bits == 24 ? 6 : 4, 3);
  bits.put(0, 1);
  bits.put(number, 8);  // below 128, so one byte
  bits.put(count - 1, 16);
  bits.put(crc(bits.bytes(), 8, 0x07), 8);
  for (const auto& channel : audio.channels) {
    bits.put(2, 8);  // stored as it is
    for (std::size_t i = first; i < first + count; ++i)
      bits.put(static_cast<std::uint32_t>(channel[i]), audio.bits);
  }
  bits.align();
  return bits.bytes() + big(crc(bits.bytes(), 16, 0x8005), 2);
}

constexpr std::size_t flac_block = 4096;

}  // namespace

std::string wave_file(const Audio& audio) {
  const std::string body =
      "WAVE" + pcm_format(audio) + riff_chunk("data", samples_of(audio, false));
  return "RIFF" + little(body.size(), 4) + body;
}

std::string broadcast_wave_file(const Audio& audio) {
  // Texts, date and time, time reference 7, version 1, and the rest of 602 bytes.
  const std::string bext =
      std::string(338, '\0') + little(7, 8) + little(1, 2) + std::string(602 - 338 - 10, '\0');
  const std::string body = "WAVE" + riff_chunk("bext", bext) + pcm_format(audio) +
                           riff_chunk("data", samples_of(audio, false));
  return "RIFF" + little(body.size(), 4) + body;
}

std::string rf64_file(const Audio& audio) {
  const std::string samples = samples_of(audio, false);
  const std::string format = pcm_format(audio);
  const std::uint64_t size = 4 + 36 + format.size() + 8 + samples.size();
  // Sizes of the file and of the data in 64 bits, samples, and an empty table.
  const std::string ds64 = riff_chunk("ds64", little(size, 8) + little(samples.size(), 8) +
                                                  little(length_of(audio), 8) + little(0, 4));
  return "RF64" + little(0xFFFFFFFF, 4) + "WAVE" + ds64 + format + "data" + little(0xFFFFFFFF, 4) +
         samples;
}

std::string aiff_file(const Audio& audio) {
  const std::string body =
      "AIFF" + iff_chunk("COMM", common_fields(audio)) + sound_chunk(samples_of(audio, true));
  return "FORM" + big(body.size(), 4) + body;
}

std::string aifc_file(const Audio& audio, bool little_endian) {
  // The name of the coding is a text with its length in front.
  const std::string coding =
      little_endian ? std::string("sowt\0\0", 6) : std::string("NONE\0\0", 6);
  const std::string body = "AIFC" + iff_chunk("FVER", big(0xA2805140, 4)) +
                           iff_chunk("COMM", common_fields(audio) + coding) +
                           sound_chunk(samples_of(audio, !little_endian));
  return "FORM" + big(body.size(), 4) + body;
}

std::string flac_file(const Audio& audio) {
  BitWriter info;
  info.put(flac_block, 16);
  info.put(flac_block, 16);
  info.put(0, 24);  // frame sizes are not known
  info.put(0, 24);
  info.put(audio.rate, 20);
  info.put(channel_count(audio) - 1, 3);
  info.put(audio.bits - 1, 5);
  info.put(length_of(audio), 36);
  // The one block of information is the last one; no checksum of the samples.
  std::string out = "fLaC" + big(0x80000000 | 34, 4) + info.bytes() + std::string(16, '\0');
  unsigned number = 0;
  for (std::size_t first = 0; first < length_of(audio); first += flac_block) {
    const std::size_t count = std::min<std::size_t>(flac_block, length_of(audio) - first);
    out += flac_frame(audio, number++, first, count);
  }
  return out;
}

std::string float_wave_file(std::uint32_t rate, const std::vector<float>& samples) {
  std::string data;
  for (const float sample : samples)
    data += little(std::bit_cast<std::uint32_t>(sample), 4);
  const std::string fact = riff_chunk("fact", little(samples.size(), 4));
  const std::string body =
      "WAVE" + riff_chunk("fmt ", wave_format(3, 1, rate, 32)) + fact + riff_chunk("data", data);
  return "RIFF" + little(body.size(), 4) + body;
}

}  // namespace support
