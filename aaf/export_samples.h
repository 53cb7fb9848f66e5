// Samples of the host's audio library as the bytes of a sound file.
#pragma once

#include <cstdint>
#include <span>

namespace aaf {

// 3 and 2 for 24 and 16 bits; 0 for a size that is not written.
[[nodiscard]] std::uint32_t bytes_of_sample(std::uint32_t bits);

// Writes each word's audio, which stands in its low 24 bits, to `out`: all of it for 3
// bytes a sample, the upper 16 bits for 2. The first byte is the highest when
// `big_endian` says so. `out` has room for all of them.
void pack_samples(std::span<const std::int32_t> words, std::uint32_t sample_bytes, bool big_endian,
                  std::uint8_t* out);

}  // namespace aaf
