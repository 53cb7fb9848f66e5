#include "host/code_page.h"

#include <algorithm>

#include "host/host.h"

namespace {

// Bytes 80 to 9F hex; all others are the characters of the same number.
constexpr std::array<wide_char, 32> upper_controls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr CodePage::ByteTable make_table() {
  CodePage::ByteTable table{};
  for (std::size_t i = 0; i < table.size(); ++i)
    table[i] = static_cast<wide_char>(i);
  for (std::size_t i = 0; i < upper_controls.size(); ++i)
    table[0x80 + i] = upper_controls[i];
  return table;
}

constexpr CodePage::ByteTable table_1252 = make_table();

class Windows1252 final : public CodePage {
 public:
  void decode(std::string_view bytes, std::u16string& out) const override {
    out.reserve(out.size() + bytes.size());
    for (const char byte : bytes)
      out.push_back(table_1252[static_cast<unsigned char>(byte)]);
  }

  void encode(std::u16string_view text, std::string& out) const override {
    out.reserve(out.size() + text.size());
    for (const wide_char c : text)
      out.push_back(byte_of(c));
  }

  [[nodiscard]] const ByteTable* byte_table() const override { return &table_1252; }

 private:
  static char byte_of(wide_char c) {
    if (c < 0x100 && table_1252[c] == c) return static_cast<char>(static_cast<unsigned char>(c));
    const auto* const at = std::find(upper_controls.begin(), upper_controls.end(), c);
    if (at == upper_controls.end()) return '?';
    return static_cast<char>(static_cast<unsigned char>(0x80 + (at - upper_controls.begin())));
  }
};

class Utf8 final : public CodePage {
 public:
  void decode(std::string_view bytes, std::u16string& out) const override {
    out += text_from_utf8(bytes);
  }
  void encode(std::u16string_view text, std::string& out) const override {
    out += utf8_from_text(text);
  }
};

}  // namespace

const CodePage& windows_1252() {
  static const Windows1252 page;
  return page;
}

const CodePage& utf8_code_page() {
  static const Utf8 page;
  return page;
}

std::u16string text_from_bytes(std::string_view bytes) {
  std::u16string out;
  host().code_page().decode(bytes, out);
  return out;
}

std::string bytes_from_text(std::u16string_view text) {
  std::string out;
  host().code_page().encode(text, out);
  return out;
}
