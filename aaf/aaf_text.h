// Between the wide characters of the published AAF interfaces, which hold a whole
// character each, and this library's 16-bit texts. All such text crosses here.
//
// A lone surrogate crosses as it is, so that a damaged name comes back as it went. What
// is no character at all (above 10FFFF hex) becomes U+FFFD.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "aafobj/api/aaf_types.h"
#include "host/text.h"

using aaf_string = std::basic_string<aafCharacter>;
using aaf_string_view = std::basic_string_view<aafCharacter>;

[[nodiscard]] std::u16string text_from_aaf(aaf_string_view text);
[[nodiscard]] aaf_string aaf_from_text(std::u16string_view text);

// Reads a text through an operation that fills a buffer of a size in bytes, such as
//   read_aaf_text<260>(name, [&](aafCharacter* out, aafUInt32 bytes) {
//     return mob->GetName(out, bytes);
//   })
// with room for `characters` of them, the terminator among them. The operation's result;
// `out` is empty when it is not 0, as with a text that has no room. At most `characters`
// are read, terminator or not.
template <std::size_t characters, class Operation>
[[nodiscard]] aafInt32 read_aaf_text(std::u16string& out, Operation&& operation) {
  aafCharacter buffer[characters] = {};
  const aafInt32 result = operation(buffer, static_cast<aafUInt32>(sizeof buffer));
  out.clear();
  if (result != 0) return result;
  const aaf_string_view whole(buffer, characters);
  out = text_from_aaf(whole.substr(0, whole.find(aafCharacter{})));
  return result;
}
