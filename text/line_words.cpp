#include "text/line_words.h"

#include <bit>
#include <cstring>

#include "text/line_cursor.h"

namespace text {

namespace {

// Where a word that goes on at `at` ends. Four units at a time pass where none of them
// is a blank or below.
std::size_t end_of_word(std::u16string_view line, std::size_t at) {
  constexpr std::uint64_t ones = 0x0001000100010001;
  for (; line.size() - at >= 4; at += 4) {
    std::uint64_t units = 0;
    std::memcpy(&units, line.data() + at, sizeof units);
    const std::uint64_t low = (units - ones * (u' ' + 1)) & ~units & (ones << 15);
    if (low == 0) continue;
    // The mark of the first one is exact; the unit of lowest address stands lowest.
    if constexpr (std::endian::native == std::endian::little) {
      at += static_cast<std::size_t>(std::countr_zero(low)) / 16;
    }
    break;
  }
  while (at < line.size() && !parts_words(line[at]))
    ++at;
  return at;
}

}  // namespace

void LineWords::find(std::u16string_view line) {
  line_ = nullptr;
  if (line.size() > longest_token) return;
  std::size_t at = 0;
  for (Word& word : words_) {
    while (at < line.size() && parts_words(line[at]))
      ++at;
    const std::size_t end = end_of_word(line, at);
    word = {static_cast<std::uint16_t>(at), static_cast<std::uint16_t>(end - at)};
    if (end == at) {
      line_ = line.data();
      return;
    }
    at = end;
  }
}

}  // namespace text
