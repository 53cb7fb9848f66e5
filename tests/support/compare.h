// Comparisons of bytes and texts that show where two sides part.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "host/text.h"

namespace support {

// Equal, or a hex dump of both sides round the first byte that differs. Use as
// EXPECT_TRUE(same_bytes(actual, expected)).
[[nodiscard]] testing::AssertionResult same_bytes(std::string_view actual,
                                                  std::string_view expected);
// Equal, or the first line that differs of both sides, with its number.
[[nodiscard]] testing::AssertionResult same_lines(std::string_view actual,
                                                  std::string_view expected);

// "0030  44 45 …  DE…", sixteen bytes a line, of at most `count` bytes from `start`.
[[nodiscard]] std::string hex_dump(std::string_view bytes, std::size_t start, std::size_t count);

// A 16-bit text as gtest can print it: EXPECT_EQ(utf8(field), "TAKE").
[[nodiscard]] inline std::string utf8(std::u16string_view text) {
  return utf8_from_text(text);
}

}  // namespace support
