#include "text/line_words.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "text/line_cursor.h"

namespace text {

namespace {

constexpr std::size_t units_at_once = 8;
constexpr std::size_t units_in_bits = 64;

// A bit for each of eight units, the lowest for the first, set when it parts words.
std::uint64_t parting(const wide_char* units) {
  using Units = std::uint16_t __attribute__((vector_size(units_at_once * sizeof(wide_char))));
  using Bytes = std::uint8_t __attribute__((vector_size(units_at_once)));
  Units line;
  std::memcpy(&line, units, sizeof line);
  const auto found = (line == std::uint16_t{u' '}) | (line == std::uint16_t{u'\t'}) |
                     (line == std::uint16_t{u'\n'});
  const Bytes bytes = __builtin_convertvector(found, Bytes);
  std::uint64_t marks = 0;
  std::memcpy(&marks, &bytes, sizeof marks);
  if constexpr (std::endian::native == std::endian::big) marks = __builtin_bswap64(marks);
  // The product brings the lowest bit of byte i to bit 56 + i.
  return (marks & 0x0101010101010101) * 0x0102040810204080 >> 56;
}

// The same of up to 64 of them. Those that are missing part words.
std::uint64_t parting(std::u16string_view units) {
  std::uint64_t bits = 0;
  std::size_t at = 0;
  for (; units.size() - at >= units_at_once; at += units_at_once)
    bits |= parting(units.data() + at) << at;
  if (at == units_in_bits) return bits;
  std::array<wide_char, units_at_once> rest{};
  std::copy(units.begin() + static_cast<std::ptrdiff_t>(at), units.end(), rest.begin());
  bits |= parting(rest.data()) << at;
  return bits | ~std::uint64_t{0} << units.size();
}

}  // namespace

void LineWords::find(std::u16string_view line) {
  line_ = nullptr;
  if (line.size() > longest_token) return;
  std::size_t count = 0;
  // Whether the unit before parts words, as that in front of the line does.
  std::uint64_t before = 1;
  for (std::size_t at = 0; at < line.size(); at += units_in_bits) {
    const std::uint64_t bits = parting(line.substr(at, units_in_bits));
    std::uint64_t changes = bits ^ (bits << 1 | before);
    before = bits >> (units_in_bits - 1);
    for (; changes != 0; changes &= changes - 1)
      edges_[count++] =
          static_cast<std::uint16_t>(at + static_cast<std::size_t>(std::countr_zero(changes)));
    if (count > 2 * most_words - 2) return;
  }
  // The end of a word that reaches it, and the empty one.
  const auto end = static_cast<std::uint16_t>(line.size());
  if (count % 2 != 0) edges_[count++] = end;
  edges_[count] = edges_[count + 1] = end;
  line_ = line.data();
}

}  // namespace text
