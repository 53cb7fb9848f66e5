#pragma once

#include <cstdint>
#include <vector>

#include "aafobj/api/aaf_types.h"

// Heads of sound files. All sizes are those of a file that ends with its samples.
//
// RIFF WAVE, 44 bytes, little-endian: "RIFF" size "WAVE"; "fmt " 16, format 1, channels,
// rate, bytes a second, bytes a frame, bits; "data" size. No pad byte follows odd data.
//
// AIFC, 74 bytes, big-endian: "FORM" size "AIFC"; "COMM" 38, channels, frames, bits, rate as an
// 80-bit number, "NONE" and the words "Not Compressed"; "SSND" size, offset 0, block 0.
namespace aafobj {

enum class SoundCodec : std::uint8_t { wave, aifc, pcm };

struct SoundFormat {
  aafRational_t sample_rate = {44100, 1};  // frames a second
  std::uint32_t bits = 8;                  // of one sample
  std::uint32_t channels = 1;

  // Bytes of one sample of each channel.
  std::uint64_t frame_bytes() const { return (std::uint64_t{bits} + 7) / 8 * channels; }
};

// What stands before the samples; nothing for raw PCM.
std::vector<std::byte> sound_header(SoundCodec codec, const SoundFormat& format,
                                    std::uint64_t data_bytes);

// The copy of the head that a descriptor keeps: the whole of a WAVE head, and the FORM and COMM
// of an AIFC one with nothing counted.
std::vector<std::byte> sound_summary(SoundCodec codec, const SoundFormat& format,
                                     std::uint64_t data_bytes);

// An 80-bit number: sign and exponent, then 64 bits with the leading one. 0 for a rate that is
// not above 0.
std::vector<std::byte> extended_bytes(const aafRational_t& rate);

}  // namespace aafobj
