#include "adl/list_tokens.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace adl {

namespace {

constexpr Token nothing = "_";

constexpr bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f';
}

constexpr char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

constexpr bool is_digit_char(char c) {
  return c >= '0' && c <= '9';
}

// What stands from a quote at `start` on; `position` moves behind the closing one.
Token quoted(std::string_view list, std::size_t start, std::size_t& position) {
  position = start + 1;
  while (position < list.size() && (list[position] != '"' || list[position - 1] == '\\'))
    ++position;
  position = std::min(position + 1, list.size());
  const std::size_t length = position - start;
  return length <= 2 ? nothing : list.substr(start + 1, length - 2);
}

// One word, whether it belongs to a comment or not.
bool raw_token(std::string_view list, std::size_t& position, Token& token) {
  token = {};
  while (position < list.size() && is_blank(list[position]))
    ++position;
  if (position >= list.size()) return false;
  const std::size_t start = position;
  if (list[start] == '"') {
    token = quoted(list, start, position);
  } else {
    if (list[start] == '<') {
      position = std::min(list.find('>', start), list.size() - 1) + 1;
    } else {
      while (position < list.size() && !is_blank(list[position]))
        ++position;
    }
    token = list.substr(start, position - start);
  }
  return position < list.size();
}

// A bit set when one of eight bytes is zero.
constexpr std::uint64_t zero_byte(std::uint64_t bytes) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  return (bytes - ones) & ~bytes & (ones << 7);
}

// The first sign from `position` on by which a word may be in quotes, a tag or a comment.
std::size_t next_sign(std::string_view list, std::size_t position) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  for (; list.size() - position >= sizeof ones; position += sizeof ones) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, list.data() + position, sizeof eight);
    if ((zero_byte(eight ^ (ones * '"')) | zero_byte(eight ^ (ones * '<')) |
         zero_byte(eight ^ (ones * '/'))) != 0) {
      break;
    }
  }
  while (position < list.size() && list[position] != '"' && list[position] != '<' &&
         list[position] != '/') {
    ++position;
  }
  return position;
}

// From between two words to the next one that may be in quotes, a tag or a comment, or to
// the end. Far the most words are none of these, and those stand between blanks.
std::size_t behind_plain_words(std::string_view list, std::size_t position) {
  for (std::size_t at = position;; ++at) {
    at = next_sign(list, at);
    if (at == list.size() || at == position || is_blank(list[at - 1])) return at;
  }
}

}  // namespace

bool get_next_token(std::string_view list, std::size_t& position, Token& token) {
  std::size_t depth = 0;
  while (raw_token(list, position, token)) {
    const bool ends = token.ends_with("*/");
    if (token.starts_with("/*")) {
      if (!ends) ++depth;
    } else if (depth == 0) {
      return true;
    } else if (ends) {
      --depth;
    }
  }
  return false;
}

bool skip_section(std::string_view list, std::size_t& position, Token opening_tag) {
  Token token;
  while (get_next_token(list, position = behind_plain_words(list, position), token)) {
    if (token.size() == opening_tag.size() + 1 && token.starts_with("</") &&
        std::equal(token.begin() + 2, token.end(), opening_tag.begin() + 1,
                   [](char a, char b) { return upper(a) == upper(b); })) {
      return true;
    }
  }
  return false;
}

bool is_keyword(Token token, std::string_view keyword) {
  return token.size() == keyword.size() && std::equal(token.begin(), token.end(), keyword.begin(),
                                                      [](char a, char b) { return upper(a) == b; });
}

bool all_digits(Token token) {
  return !token.empty() && std::all_of(token.begin(), token.end(), is_digit_char);
}

std::uint32_t wrapped_number(Token digits) {
  std::uint32_t number = 0;
  for (const char c : digits)
    number = number * 10 + static_cast<std::uint32_t>(c - '0');
  return number;
}

std::int64_t limited_number(Token digits, std::int64_t limit) {
  std::int64_t number = 0;
  for (const char c : digits) {
    const int digit = c - '0';
    if (number > (limit - digit) / 10) return limit;
    number = number * 10 + digit;
  }
  return number;
}

std::uint16_t channel_number(Token digits) {
  constexpr std::int64_t most = 2147483647;
  return static_cast<std::uint16_t>(limited_number(digits, most) - 1);
}

bool is_decimal_number(Token token) {
  if (token.starts_with('+') || token.starts_with('-')) token.remove_prefix(1);
  return std::count(token.begin(), token.end(), '.') <= 1 &&
         std::all_of(token.begin(), token.end(),
                     [](char c) { return is_digit_char(c) || c == '.'; });
}

double decimal_number(Token token) {
  if (token.starts_with('+')) token.remove_prefix(1);
  double number = 0.0;
  const auto read =
      std::from_chars(token.data(), token.data() + token.size(), number, std::chars_format::fixed);
  return read.ec == std::errc() ? number : 0.0;
}

}  // namespace adl
