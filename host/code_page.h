// Between 8-bit text of files and the library's 16-bit texts: "the thread's ANSI
// code page" of the host. All 8-bit text crosses here and nowhere else.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "host/api.h"
#include "host/text.h"

class EDL_API CodePage {
 public:
  using ByteTable = std::array<wide_char, 256>;

  virtual ~CodePage() = default;
  // Appends the characters of `bytes`. A malformed sequence becomes U+FFFD.
  virtual void decode(std::string_view bytes, std::u16string& out) const = 0;
  // Appends the bytes of `text`. What the page cannot hold becomes "?".
  virtual void encode(std::u16string_view text, std::string& out) const = 0;
  // The character of each byte when every byte is one character, so that readers
  // can convert by table; null for a page of several bytes a character.
  [[nodiscard]] virtual const ByteTable* byte_table() const { return nullptr; }
};

// Windows-1252. Its five undefined bytes (81, 8D, 8F, 90, 9D hex) map to the
// control characters of the same number, so that every byte survives.
EDL_API const CodePage& windows_1252();
EDL_API const CodePage& utf8_code_page();

// Through the page of the host in force.
EDL_API std::u16string text_from_bytes(std::string_view bytes);
EDL_API std::string bytes_from_text(std::u16string_view text);
