#include "aafobj/objects/text_conversion.h"

#include <algorithm>

#include "aafobj/api/aaf_result_codes.h"

namespace aafobj {
namespace {

constexpr char32_t first_pair = 0x10000;

bool is_high(char16_t unit) {
  return unit >= 0xd800 && unit < 0xdc00;
}
bool is_low(char16_t unit) {
  return unit >= 0xdc00 && unit < 0xe000;
}

void append_utf8(std::string& text, char32_t c) {
  if (c < 0x80) {
    text += static_cast<char>(c);
    return;
  }
  if (c < 0x800) {
    text += static_cast<char>(0xc0 | (c >> 6));
  } else if (c < first_pair) {
    text += static_cast<char>(0xe0 | (c >> 12));
    text += static_cast<char>(0x80 | ((c >> 6) & 0x3f));
  } else {
    text += static_cast<char>(0xf0 | (c >> 18));
    text += static_cast<char>(0x80 | ((c >> 12) & 0x3f));
    text += static_cast<char>(0x80 | ((c >> 6) & 0x3f));
  }
  text += static_cast<char>(0x80 | (c & 0x3f));
}

// The character that begins at `at`, which moves behind it. What is no UTF-8 stands for itself.
char32_t take_utf8(std::string_view text, std::size_t& at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(at);
  const std::size_t length = first < 0xc0 ? 1 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
  if (length == 1 || at + length > text.size()) return byte(at++);
  char32_t c = first & (0xffu >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xc0) != 0x80) return byte(at++);
    c = (c << 6) | (byte(at + i) & 0x3fu);
  }
  at += length;
  return c;
}

}  // namespace

std::wstring to_wide(std::u16string_view text) {
  std::wstring wide;
  wide.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    if (is_high(text[i]) && i + 1 < text.size() && is_low(text[i + 1])) {
      c = first_pair + ((c - 0xd800) << 10) + (char32_t{text[i + 1]} - 0xdc00);
      ++i;
    }
    wide.push_back(static_cast<wchar_t>(c));
  }
  return wide;
}

std::u16string from_wide(std::wstring_view text) {
  std::u16string units;
  units.reserve(text.size());
  for (const wchar_t wide : text) {
    const auto c = static_cast<char32_t>(wide);
    if (c < first_pair) {
      units.push_back(static_cast<char16_t>(c));
    } else if (c > 0x10ffff) {
      units.push_back(0xfffd);
    } else {
      units.push_back(static_cast<char16_t>(0xd800 + ((c - first_pair) >> 10)));
      units.push_back(static_cast<char16_t>(0xdc00 + ((c - first_pair) & 0x3ff)));
    }
  }
  return units;
}

aafUInt32 wide_bytes(std::u16string_view text) {
  return static_cast<aafUInt32>((to_wide(text).size() + 1) * sizeof(aafCharacter));
}

HRESULT copy_text(std::u16string_view text, aafCharacter* buffer, aafUInt32 bytes) {
  if (!buffer) return AAFRESULT_NULL_PARAM;
  const std::wstring wide = to_wide(text);
  if ((wide.size() + 1) * sizeof(aafCharacter) > bytes) return AAFRESULT_SMALLBUF;
  std::copy(wide.begin(), wide.end(), buffer);
  buffer[wide.size()] = L'\0';
  return AAFRESULT_SUCCESS;
}

std::string to_utf8(std::wstring_view text) {
  std::string bytes;
  for (const wchar_t wide : text) {
    const auto c = static_cast<char32_t>(wide);
    append_utf8(bytes, c > 0x10ffff ? U'\ufffd' : c);
  }
  return bytes;
}

std::wstring from_utf8(std::string_view text) {
  std::wstring wide;
  for (std::size_t at = 0; at < text.size();) {
    wide.push_back(static_cast<wchar_t>(take_utf8(text, at)));
  }
  return wide;
}

}  // namespace aafobj
