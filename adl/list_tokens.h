// The words of an audio decision list.
//
// Blank, tab, CR, LF and form feed part them. "<" runs to the next ">", a quote to the
// next one without a backslash in front, which keeps its backslashes. A word that
// begins with "/*" opens a comment, which ends with a word that ends in "*/"; comments
// nest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace adl {

// A word, as a view into the list or of a constant. An empty text in quotes is "_".
using Token = std::string_view;

// Reads the next word behind `position`, which moves behind it. False when the list
// ends first, or with the word: one that touches the end is filled in and yet a failed
// read.
[[nodiscard]] bool get_next_token(std::string_view list, std::size_t& position, Token& token);

// Reads up to the closing tag of `opening_tag`. False when there is none, or when it
// touches the end of the list.
[[nodiscard]] bool skip_section(std::string_view list, std::size_t& position, Token opening_tag);

// Whether a word is this keyword, given in upper case.
[[nodiscard]] bool is_keyword(Token token, std::string_view keyword);
// Whether a word looks like a keyword or a tag; such words are taken in upper case.
[[nodiscard]] inline bool opens_keyword(Token token) {
  return token.starts_with('(') || token.starts_with('<');
}

[[nodiscard]] bool all_digits(Token token);
// Decimal digits, modulo 2^32.
[[nodiscard]] std::uint32_t wrapped_number(Token digits);
// Decimal digits, at most `limit`.
[[nodiscard]] std::int64_t limited_number(Token digits, std::int64_t limit);
// A channel as it is kept, from 0: the number less 1, in 16 bits.
[[nodiscard]] std::uint16_t channel_number(Token digits);

// Digits with at most one point, and "+" or "-" at the first place alone.
[[nodiscard]] bool is_decimal_number(Token token);
// Its value; 0 for one without a digit or beyond all numbers.
[[nodiscard]] double decimal_number(Token token);

}  // namespace adl
