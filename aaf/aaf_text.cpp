#include "aaf/aaf_text.h"

namespace {

constexpr char32_t first_above_16_bits = 0x10000;
constexpr char32_t last_character = 0x10FFFF;
constexpr char16_t no_character = 0xFFFD;

constexpr bool is_high_surrogate(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool is_low_surrogate(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

void append(std::u16string& out, char32_t character) {
  if (character > last_character) {
    out.push_back(no_character);
  } else if (character < first_above_16_bits) {
    out.push_back(static_cast<char16_t>(character));
  } else {
    const char32_t offset = character - first_above_16_bits;
    out.push_back(static_cast<char16_t>(0xD800U + (offset >> 10U)));
    out.push_back(static_cast<char16_t>(0xDC00U + (offset & 0x3FFU)));
  }
}

}  // namespace

std::u16string text_from_aaf(aaf_string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (const aafCharacter character : text)
    append(out, static_cast<char32_t>(character));
  return out;
}

aaf_string aaf_from_text(std::u16string_view text) {
  if constexpr (sizeof(aafCharacter) == sizeof(char16_t)) return {text.begin(), text.end()};
  aaf_string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t character = text[i];
    if (is_high_surrogate(text[i]) && i + 1 < text.size() && is_low_surrogate(text[i + 1])) {
      const auto high = static_cast<char32_t>(text[i] & 0x3FFU);
      const auto low = static_cast<char32_t>(text[++i] & 0x3FFU);
      character = first_above_16_bits + (high << 10U) + low;
    }
    out.push_back(static_cast<aafCharacter>(character));
  }
  return out;
}
