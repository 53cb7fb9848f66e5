// Reading a line word by word. Words are parted by blanks, TABs and LFs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/text.h"

// Longest word that counts; what is longer is read in pieces.
inline constexpr std::size_t longest_token = 1023;

// Leading blanks, TABs and LFs of a text.
EDL_API std::size_t leading_space(std::u16string_view text);
// The characters up to the first blank, LF or TAB, at most longest_token.
EDL_API std::u16string_view leading_token(std::u16string_view text);

// Whether every character is a decimal digit; so is the empty text. Only the first
// 255 are looked at.
EDL_API bool all_digits(std::u16string_view text);
// The value of the digits at the head of a text, at most 2147483647.
EDL_API std::int32_t digits_value(std::u16string_view text);
// An event number: the low 16 bits of that value.
EDL_API std::uint16_t event_number_value(std::u16string_view text);

// Hands out the words of a line. The line must outlive the cursor and its words.
class EDL_API LineCursor {
 public:
  explicit LineCursor(std::u16string_view line) : rest_(line) {}
  explicit LineCursor(const wide_char* line) : rest_(line, text_length(line)) {}

  // The next word, empty at the end of the line.
  std::u16string_view next() {
    const std::u16string_view token = peek();
    rest_.remove_prefix(token.size());
    return token;
  }
  // The same without passing it; the space in front of it is passed.
  std::u16string_view peek() {
    rest_.remove_prefix(leading_space(rest_));
    return leading_token(rest_);
  }
  [[nodiscard]] std::u16string_view rest() const { return rest_; }

 private:
  std::u16string_view rest_;
};
