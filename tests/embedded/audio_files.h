// Small audio files, made byte by byte.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace support {

struct Audio {
  std::uint32_t rate = 48000;
  // 16 or 24.
  unsigned bits = 24;
  // Signed numbers of that many bits, by channel; all channels are equally long.
  std::vector<std::vector<std::int32_t>> channels;
};

[[nodiscard]] std::string wave_file(const Audio& audio);
// With a "bext" chunk in front of the format.
[[nodiscard]] std::string broadcast_wave_file(const Audio& audio);
[[nodiscard]] std::string rf64_file(const Audio& audio);
[[nodiscard]] std::string aiff_file(const Audio& audio);
// Big-endian ("NONE") or little-endian ("sowt") samples.
[[nodiscard]] std::string aifc_file(const Audio& audio, bool little_endian);
// Lossless, with every block stored as it is. Mono or stereo.
[[nodiscard]] std::string flac_file(const Audio& audio);
// WAVE with 32-bit fractions of full scale.
[[nodiscard]] std::string float_wave_file(std::uint32_t rate, const std::vector<float>& samples);

}  // namespace support
