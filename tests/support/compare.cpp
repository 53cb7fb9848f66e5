#include "tests/support/compare.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace support {

namespace {

constexpr std::size_t row = 16;

std::string_view line_at(std::string_view text, std::size_t start) {
  const std::size_t end = std::min(text.find('\n', start), text.size());
  return text.substr(start, end - start);
}

std::string visible(std::string_view line) {
  std::string out;
  for (const char c : line) {
    if (c == '\r')
      out += "\\r";
    else if (c == '\t')
      out += "\\t";
    else
      out += c;
  }
  return out;
}

std::size_t first_difference(std::string_view a, std::string_view b) {
  const auto at = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first;
  return static_cast<std::size_t>(at - a.begin());
}

}  // namespace

std::string hex_dump(std::string_view bytes, std::size_t start, std::size_t count) {
  std::string out;
  const std::size_t end = std::min(bytes.size(), start + count);
  std::array<char, 32> field;
  for (std::size_t at = start; at < end; at += row) {
    std::snprintf(field.data(), field.size(), "%06zx ", at);
    out += field.data();
    std::string letters;
    for (std::size_t i = at; i < at + row; ++i) {
      if (i >= end) {
        out += "   ";
        continue;
      }
      const auto byte = static_cast<unsigned char>(bytes[i]);
      std::snprintf(field.data(), field.size(), " %02x", unsigned{byte});
      out += field.data();
      letters += byte >= 0x20 && byte < 0x7F ? bytes[i] : '.';
    }
    out += "  " + letters + "\n";
  }
  return out;
}

testing::AssertionResult same_bytes(std::string_view actual, std::string_view expected) {
  if (actual == expected) return testing::AssertionSuccess();
  const std::size_t at = first_difference(actual, expected);
  const std::size_t start = at / row >= 2 ? (at / row - 2) * row : 0;
  return testing::AssertionFailure()
         << "differ at byte " << at << " (" << std::hex << "0x" << at << std::dec << ")\nactual, "
         << actual.size() << " bytes:\n"
         << hex_dump(actual, start, 6 * row) << "expected, " << expected.size() << " bytes:\n"
         << hex_dump(expected, start, 6 * row);
}

testing::AssertionResult same_lines(std::string_view actual, std::string_view expected) {
  if (actual == expected) return testing::AssertionSuccess();
  const std::size_t at = first_difference(actual, expected);
  const std::string_view before = actual.substr(0, at);
  const auto number = std::count(before.begin(), before.end(), '\n') + 1;
  const std::size_t start =
      before.rfind('\n') == std::string_view::npos ? 0 : before.rfind('\n') + 1;
  const auto shown = [start](std::string_view text) {
    return start >= text.size() ? std::string("(ends before it)") : visible(line_at(text, start));
  };
  return testing::AssertionFailure()
         << "line " << number << " differs\n  actual:   " << shown(actual)
         << "\n  expected: " << shown(expected) << "\n  (" << actual.size() << " bytes against "
         << expected.size() << ")";
}

}  // namespace support
