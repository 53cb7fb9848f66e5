#include "host/text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

std::size_t text_length(const wide_char* text) {
  return text == nullptr ? 0 : std::char_traits<wide_char>::length(text);
}

std::size_t text_length(const wide_char* text, std::size_t limit) {
  if (text == nullptr) return 0;
  const wide_char* end = std::char_traits<wide_char>::find(text, limit, u'\0');
  return end == nullptr ? limit : static_cast<std::size_t>(end - text);
}

std::size_t field_length(const wide_char* field, std::size_t size) {
  std::size_t at = 0;
  // Four units at a time. The test is true when one of them is zero, and only then;
  // which one it is, the units tell.
  constexpr std::uint64_t ones = 0x0001000100010001;
  for (; size - at >= 4; at += 4) {
    std::uint64_t units = 0;
    std::memcpy(&units, field + at, sizeof units);
    if (((units - ones) & ~units & (ones << 15)) != 0) break;
  }
  while (at < size && field[at] != u'\0')
    ++at;
  return at;
}

void copy_text(wide_char* out, std::size_t size, std::u16string_view text) {
  if (size == 0) return;
  const std::size_t kept = std::min(size - 1, text.size());
  std::copy_n(text.data(), kept, out);
  std::fill(out + kept, out + size, u'\0');
}

void copy_text(wide_char* out, std::size_t size, const wide_char* text) {
  if (size == 0) return;
  copy_text(out, size, std::u16string_view(text, text_length(text, size - 1)));
}

std::u16string folded_case(std::u16string_view text) {
  std::u16string folded(text);
  std::transform(folded.begin(), folded.end(), folded.begin(), fold_case);
  return folded;
}

bool equal_no_case(std::u16string_view a, std::u16string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(),
                    [](wide_char x, wide_char y) { return fold_case(x) == fold_case(y); });
}

bool starts_with_no_case(std::u16string_view text, std::u16string_view head) {
  return text.size() >= head.size() && equal_no_case(text.substr(0, head.size()), head);
}

std::u16string_view trimmed_right(std::u16string_view text) {
  while (!text.empty() && is_white_space(text.back()))
    text.remove_suffix(1);
  return text;
}

std::u16string_view trimmed(std::u16string_view text) {
  while (!text.empty() && is_white_space(text.front()))
    text.remove_prefix(1);
  return trimmed_right(text);
}

namespace {

constexpr char32_t replacement = 0xFFFD;

void append_utf8(std::string& out, char32_t point) {
  const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (point < 0x80) {
    put(point);
  } else if (point < 0x800) {
    put(0xC0 | (point >> 6));
    put(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    put(0xE0 | (point >> 12));
    put(0x80 | ((point >> 6) & 0x3F));
    put(0x80 | (point & 0x3F));
  } else {
    put(0xF0 | (point >> 18));
    put(0x80 | ((point >> 12) & 0x3F));
    put(0x80 | ((point >> 6) & 0x3F));
    put(0x80 | (point & 0x3F));
  }
}

void append_text(std::u16string& out, char32_t point) {
  if (point < 0x10000) {
    out.push_back(static_cast<wide_char>(point));
    return;
  }
  out.push_back(static_cast<wide_char>(0xD800 + ((point - 0x10000) >> 10)));
  out.push_back(static_cast<wide_char>(0xDC00 + ((point - 0x10000) & 0x3FF)));
}

// Reads one code point at `at` and moves behind it. Overlong forms, surrogates
// and values past U+10FFFF are malformed, and take one byte.
char32_t next_point(std::string_view bytes, std::size_t& at) {
  const auto byte = [&bytes](std::size_t i) {
    return static_cast<char32_t>(static_cast<unsigned char>(bytes[i]));
  };
  const char32_t lead = byte(at);
  if (lead < 0x80) {
    ++at;
    return lead;
  }
  const std::size_t more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  static constexpr char32_t least[] = {0, 0x80, 0x800, 0x10000};
  char32_t point = lead & (0x3FU >> more);
  bool good = lead >= 0xC2 && lead <= 0xF4 && at + more < bytes.size();
  for (std::size_t i = 1; good && i <= more; ++i) {
    good = (byte(at + i) & 0xC0) == 0x80;
    point = (point << 6) | (byte(at + i) & 0x3F);
  }
  good = good && point >= least[more] && point <= 0x10FFFF && (point < 0xD800 || point > 0xDFFF);
  at += good ? more + 1 : 1;
  return good ? point : replacement;
}

}  // namespace

std::string bytes_of_units(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (const wide_char c : text) {
    bytes.push_back(static_cast<char>(c & 0xFFU));
    bytes.push_back(static_cast<char>(c >> 8U));
  }
  return bytes;
}

std::string utf8_from_text(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char32_t unit = text[i];
    if (unit < 0xD800 || unit > 0xDFFF) {
      append_utf8(out, unit);
      continue;
    }
    const bool pair =
        unit < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
    append_utf8(out,
                pair ? 0x10000 + ((unit - 0xD800) << 10) + (text[i + 1] - 0xDC00U) : replacement);
    if (pair) ++i;
  }
  return out;
}

std::u16string text_from_utf8(std::string_view bytes) {
  std::u16string out;
  out.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();)
    append_text(out, next_point(bytes, at));
  return out;
}
