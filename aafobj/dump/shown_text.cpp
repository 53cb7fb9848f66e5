#include "aafobj/dump/shown_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace aafobj {
namespace {

constexpr char32_t replacement = 0xfffd;

void put_utf8(char32_t code, std::string& text) {
  const auto tail = [&](unsigned shift) {
    text += static_cast<char>(0x80u | ((code >> shift) & 0x3fu));
  };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xc0u | (code >> 6));
    tail(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xe0u | (code >> 12));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xf0u | (code >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

bool is_high(char16_t unit) {
  return unit >= 0xd800 && unit < 0xdc00;
}

bool is_low(char16_t unit) {
  return unit >= 0xdc00 && unit < 0xe000;
}

void put_digits(std::span<const std::byte> bytes, std::string& text) {
  constexpr std::string_view digits = "0123456789abcdef";
  for (const std::byte byte : bytes) {
    text += digits[std::to_integer<unsigned>(byte) >> 4];
    text += digits[std::to_integer<unsigned>(byte) & 15u];
  }
}

struct ResultWords {
  AAFRESULT result;
  std::string_view words;
};

// Those that reading a tree can end with.
constexpr std::array<ResultWords, 8> result_words = {{
    {AAFRESULT_NOT_AAF_FILE, "not an AAF file"},
    {AAFRESULT_FILEREV_NOT_SUPP, "an unsupported form of file"},
    {AAFRESULT_BADCONTAINER, "the structure of the file is damaged here"},
    {AAFRESULT_BAD_SIZE, "a length is out of range"},
    {AAFRESULT_READ_FAILURE, "reading the file failed"},
    {AAFRESULT_FILE_NOT_FOUND, "a stream is missing"},
    {AAFRESULT_OPEN_FAILURE, "the system forbids it"},
    {AAFRESULT_PROP_NOT_PRESENT, "a required property is missing"},
}};

}  // namespace

std::string utf8_text(std::u16string_view text) {
  std::string shown;
  shown.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t code = text[i];
    if (is_high(text[i]) && i + 1 < text.size() && is_low(text[i + 1])) {
      code = 0x10000 + ((code - 0xd800) << 10) + (text[++i] - 0xdc00u);
    } else if (is_high(text[i]) || is_low(text[i])) {
      code = replacement;
    }
    put_utf8(code, shown);
  }
  return shown;
}

std::string shown_name(std::u16string_view name) {
  if (name.size() <= most_name_units) return utf8_text(name);
  return utf8_text(name.substr(0, most_name_units)) + "...";
}

std::string shown_bytes(std::span<const std::byte> bytes) {
  std::string text;
  put_digits(bytes.first(std::min(bytes.size(), most_shown_bytes)), text);
  return text;
}

std::string shown_bytes_and_count(std::span<const std::byte> bytes) {
  std::string text = shown_bytes(bytes);
  if (bytes.size() <= most_shown_bytes) return text;
  return text + "... (" + std::to_string(bytes.size()) + " bytes)";
}

std::string shown(const aafUID_t& id) {
  return "{" + to_text(id) + "}";
}

std::string shown(const aafMobID_t& id) {
  const auto bytes = std::as_bytes(std::span(&id, 1));
  std::string text;
  put_digits(bytes.first(12), text);
  text += '-';
  put_digits(bytes.subspan(12, 1), text);
  text += '-';
  put_digits(bytes.subspan(13, 3), text);
  return text + "-" + shown(id.material);
}

std::string shown(const StoredKey& key) {
  if (key.size() == sizeof(aafUID_t)) return shown(key.auid());
  if (key.size() == sizeof(aafMobID_t)) return shown(key.mob_id());
  return shown_bytes(key.bytes());
}

std::string shown(AAFRESULT result) {
  const auto* const row = std::find_if(result_words.begin(), result_words.end(),
                                       [result](const auto& r) { return r.result == result; });
  if (row != result_words.end()) return std::string(row->words);
  std::array<char, 24> number{};
  std::snprintf(number.data(), number.size(), "result 0x%08x", static_cast<unsigned>(result));
  return number.data();
}

}  // namespace aafobj
