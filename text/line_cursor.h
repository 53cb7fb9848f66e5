// Reading a line word by word. Words are parted by blanks, TABs and LFs.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/text.h"
#include "text/line_words.h"

// Longest word that counts; what is longer is read in pieces.
inline constexpr std::size_t longest_token = 1023;

constexpr bool parts_words(wide_char c) {
  return c == u' ' || c == u'\t' || c == u'\n';
}

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

// The number at the head of a word as a level; 0 for none, and for one that no level
// can be.
EDL_API float level_value(std::u16string_view word);

// Hands out the words of a line. The line must outlive the cursor and its words.
class EDL_API LineCursor {
 public:
  explicit LineCursor(std::u16string_view line)
      : at_(line.empty() ? u"" : line.data()), end_(at_ + line.size()) {}
  // Of a terminated line, which is read no further than the words that are asked for.
  LineCursor(const wide_char* line)  // NOLINT: it stands for its line
      : at_(line == nullptr ? u"" : line) {}
  // Of a line whose words are known. They must outlive the cursor too.
  explicit LineCursor(const text::LineWords& words)
      : at_(words.line()), line_(words.line()), edges_(words.edges()) {}

  // The next word, empty at the end of the line.
  std::u16string_view next() {
    const std::u16string_view token = peek();
    at_ += token.size();
    peeked_ = false;
    return token;
  }
  // The same without passing it; the space in front of it is passed.
  std::u16string_view peek() {
    if (!peeked_) {
      if (edges_ != nullptr) {
        take_known_word();
      } else {
        find_word();
      }
    }
    return {at_, length_};
  }
  [[nodiscard]] std::u16string_view rest() const {
    return {at_, end_ == nullptr ? text_length(at_) : static_cast<std::size_t>(end_ - at_)};
  }
  // Where the rest begins. It is terminated where the line was.
  [[nodiscard]] const wide_char* at() const { return at_; }

 private:
  // Move to the next word and measure it.
  void find_word();
  void take_known_word() {
    at_ = line_ + edges_[0];
    length_ = static_cast<std::size_t>(edges_[1] - edges_[0]);
    // The last one, which is empty, stays.
    if (length_ != 0) edges_ += 2;
    peeked_ = true;
  }

  const wide_char* at_;
  // Null for a line that ends at its terminator.
  const wide_char* end_ = nullptr;
  std::size_t length_ = 0;
  bool peeked_ = false;
  // Null where words are found as they are asked for.
  const wide_char* line_ = nullptr;
  const std::uint16_t* edges_ = nullptr;
};
