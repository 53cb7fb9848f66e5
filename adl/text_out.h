// Gathers text and hands it to the file in large pieces.
#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

#include "text/text_file.h"

namespace adl {

class TextOut {
 public:
  // The file must be open for writing and outlive this object.
  explicit TextOut(CTextFile& file) : m_file(file) { m_text.reserve(piece_size * 2); }

  TextOut& operator<<(std::u16string_view text) {
    m_text.append(text);
    return *this;
  }

  // Decimal digits, at least `width` of them with zeros in front. The number must not
  // be negative where there is a width.
  TextOut& number(std::int64_t value, std::ptrdiff_t width = 0) {
    std::array<char, 24> digits{};
    const char* const start = digits.data();
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    if (end - start < width) m_text.append(static_cast<std::size_t>(width - (end - start)), u'0');
    m_text.append(start, end);
    return *this;
  }

  // Between two lines. Both raise CFileException.
  void write_when_full() {
    if (m_text.size() >= piece_size) write();
  }
  void write() {
    m_file.WriteString(m_text);
    m_text.clear();
  }

 private:
  static constexpr std::size_t piece_size = 32768;

  CTextFile& m_file;
  std::u16string m_text;
};

}  // namespace adl
