// The one text unit of the library and the few functions that work on it.
//
// All texts are sequences of 16-bit units, on every platform, because field
// limits are counted in them. Nothing of the C library's wide functions may be
// used on them: wchar_t has another width on most systems.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/api.h"

using wide_char = char16_t;

// A time that was not given, an unknown time stamp.
inline constexpr std::int64_t time_not_given = 0x7FFFFFFFFFFFFFFF;

// Character classes, independent of the locale. White space is blank, TAB, LF,
// VT, FF and CR. Alphanumeric is ASCII letters and digits and the Latin letters
// U+00C0 to U+024F but for the two signs U+00D7 and U+00F7.
constexpr bool is_white_space(wide_char c) {
  return c == u' ' || (c >= u'\t' && c <= u'\r');
}
constexpr bool is_digit(wide_char c) {
  return c >= u'0' && c <= u'9';
}
constexpr bool is_alphanumeric(wide_char c) {
  return is_digit(c) || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') ||
         (c >= 0xC0 && c <= 0x24F && c != 0xD7 && c != 0xF7);
}
// Case folding is ASCII only.
constexpr wide_char fold_case(wide_char c) {
  return c >= u'A' && c <= u'Z' ? static_cast<wide_char>(c + 32) : c;
}
// Upper case of ASCII and of the Latin-1 letters that have one there.
constexpr wide_char upper_case(wide_char c) {
  const bool lower = (c >= u'a' && c <= u'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7);
  return lower ? static_cast<wide_char>(c - 32) : c;
}

// Length up to the terminator; null counts as empty.
EDL_API std::size_t text_length(const wide_char* text);
// Length up to the terminator, but never past `limit` units.
EDL_API std::size_t text_length(const wide_char* text, std::size_t limit);
// The same of a field whose `size` units can all be read, terminator or not.
EDL_API std::size_t field_length(const wide_char* field, std::size_t size);

// Copies at most size - 1 units and terminates; the rest of `out` is zeroed.
// A null source is the empty text; a size of 0 does nothing.
EDL_API void copy_text(wide_char* out, std::size_t size, std::u16string_view text);
EDL_API void copy_text(wide_char* out, std::size_t size, const wide_char* text);

// Fills a fixed field, cutting what does not fit and keeping the terminator.
template <std::size_t size>
void set_field(wide_char (&field)[size], std::u16string_view text) {
  copy_text(field, size, text);
}
template <std::size_t size>
void set_field(wide_char (&field)[size], const wide_char* text) {
  copy_text(field, size, text);
}
// Reads a field up to its terminator or its end.
template <std::size_t size>
std::u16string_view field_text(const wide_char (&field)[size]) {
  return {field, field_length(field, size)};
}

// In lower case: equal for texts that equal_no_case calls equal.
EDL_API std::u16string folded_case(std::u16string_view text);
EDL_API bool equal_no_case(std::u16string_view a, std::u16string_view b);
EDL_API bool starts_with_no_case(std::u16string_view text, std::u16string_view head);
// Without leading or trailing white space; without trailing white space.
EDL_API std::u16string_view trimmed(std::u16string_view text);
EDL_API std::u16string_view trimmed_right(std::u16string_view text);

// Two bytes a unit, the lower one first, and no mark in front.
EDL_API std::string bytes_of_units(std::u16string_view text);

// Paths are 16-bit in the interfaces and UTF-8 at the file system. A lone
// surrogate or a malformed byte sequence becomes U+FFFD.
EDL_API std::string utf8_from_text(std::u16string_view text);
EDL_API std::u16string text_from_utf8(std::string_view bytes);
