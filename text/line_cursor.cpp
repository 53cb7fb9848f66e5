#include "text/line_cursor.h"

#include <cmath>
#include <limits>

#include "host/text_format.h"

namespace {

// Whether a word does; NUL ends a terminated line.
constexpr bool goes_on(wide_char c) {
  return c > u' ' || (c != u'\0' && !parts_words(c));
}

}  // namespace

std::size_t leading_space(std::u16string_view text) {
  std::size_t count = 0;
  while (count < text.size() && parts_words(text[count]))
    ++count;
  return count;
}

std::u16string_view leading_token(std::u16string_view text) {
  const std::size_t limit = std::min(text.size(), longest_token);
  std::size_t length = 0;
  while (length < limit && !parts_words(text[length]))
    ++length;
  return text.substr(0, length);
}

bool all_digits(std::u16string_view text) {
  text = text.substr(0, 255);
  return std::all_of(text.begin(), text.end(), is_digit);
}

std::int32_t digits_value(std::u16string_view text) {
  std::int64_t value = 0;
  for (const wide_char c : text) {
    if (!is_digit(c)) break;
    value = std::min<std::int64_t>(value * 10 + (c - u'0'), INT32_MAX);
  }
  return static_cast<std::int32_t>(value);
}

float level_value(std::u16string_view word) {
  constexpr auto limit = static_cast<double>(std::numeric_limits<float>::max());
  double level = 0;
  return scan_number(word, level) && std::abs(level) <= limit ? static_cast<float>(level) : 0.0F;
}

std::uint16_t event_number_value(std::u16string_view text) {
  return static_cast<std::uint16_t>(digits_value(text));
}

void LineCursor::find_word() {
  const wide_char* begin = at_;
  while (begin != end_ && parts_words(*begin))
    ++begin;
  at_ = begin;
  length_ = 0;
  while (length_ < longest_token && begin + length_ != end_ && goes_on(begin[length_]))
    ++length_;
  peeked_ = true;
}
