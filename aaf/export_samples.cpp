#include "aaf/export_samples.h"

namespace aaf {

namespace {

template <unsigned sample_bytes, bool big_endian>
void pack(std::span<const std::int32_t> words, std::uint8_t* out) {
  constexpr unsigned lowest_shift = 24 - 8 * sample_bytes;
  for (const std::int32_t word : words) {
    const auto bits = static_cast<std::uint32_t>(word) >> lowest_shift;
    for (unsigned i = 0; i < sample_bytes; ++i) {
      const unsigned place = big_endian ? sample_bytes - 1 - i : i;
      out[i] = static_cast<std::uint8_t>(bits >> 8 * place);
    }
    out += sample_bytes;
  }
}

}  // namespace

std::uint32_t bytes_of_sample(std::uint32_t bits) {
  if (bits == 24) return 3;
  return bits == 16 ? 2 : 0;
}

void pack_samples(std::span<const std::int32_t> words, std::uint32_t sample_bytes, bool big_endian,
                  std::uint8_t* out) {
  if (sample_bytes == 3) {
    big_endian ? pack<3, true>(words, out) : pack<3, false>(words, out);
  } else {
    big_endian ? pack<2, true>(words, out) : pack<2, false>(words, out);
  }
}

}  // namespace aaf
