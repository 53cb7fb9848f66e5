#include "host/code_page.h"

#include <gtest/gtest.h>

#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"

namespace {

std::u16string decoded(const CodePage& page, std::string_view bytes) {
  std::u16string out;
  page.decode(bytes, out);
  return out;
}

std::string encoded(const CodePage& page, std::u16string_view text) {
  std::string out;
  page.encode(text, out);
  return out;
}

TEST(Windows1252, EveryByteComesBack) {
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    const std::u16string text = decoded(windows_1252(), {&c, 1});
    ASSERT_EQ(text.size(), 1U) << byte;
    EXPECT_EQ(encoded(windows_1252(), text), std::string(1, c)) << byte;
    EXPECT_EQ((*windows_1252().byte_table())[static_cast<std::size_t>(byte)], text[0]) << byte;
  }
}

TEST(Windows1252, KnownCharacters) {
  EXPECT_EQ(decoded(windows_1252(), "\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E"),
            u"\u20AC\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u017D");
  EXPECT_EQ(
      decoded(windows_1252(), "\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F"),
      u"\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u017E\u0178");
  EXPECT_EQ(decoded(windows_1252(), "A~\xA0\xE9\xFF"), u"A~\u00A0\u00E9\u00FF");
}

TEST(Windows1252, UndefinedBytesAreTheirOwnControls) {
  EXPECT_EQ(decoded(windows_1252(), "\x81\x8D\x8F\x90\x9D"), u"\u0081\u008D\u008F\u0090\u009D");
}

TEST(Windows1252, WhatItLacksBecomesAQuestionMark) {
  EXPECT_EQ(encoded(windows_1252(), u"a\u0416b\u4E00\uFFFD"), "a?b??");
  // The number of a byte, but not its character.
  EXPECT_EQ(encoded(windows_1252(), u"\u0080\u0099"), "??");
}

// Every unit either comes back or is a question mark: nothing turns into another
// character.
TEST(Windows1252, NoUnitTurnsIntoAnother) {
  int held = 0;
  for (int c = 0; c < 0x10000; ++c) {
    const std::u16string text(1, static_cast<wide_char>(c));
    const std::string bytes = encoded(windows_1252(), text);
    ASSERT_EQ(bytes.size(), 1U);
    if (bytes == "?" && c != '?') continue;
    ++held;
    ASSERT_EQ(decoded(windows_1252(), bytes), text) << c;
  }
  EXPECT_EQ(held, 256);
}

TEST(CodePages, AppendToWhatIsThere) {
  std::u16string text = u"x";
  windows_1252().decode("y", text);
  utf8_code_page().decode("z", text);
  EXPECT_EQ(text, u"xyz");
  std::string bytes = "x";
  windows_1252().encode(u"y", bytes);
  utf8_code_page().encode(u"\u00E9", bytes);
  EXPECT_EQ(bytes, "xy\xC3\xA9");
}

TEST(CodePages, TheHostsPageIsUsed) {
  support::ScriptedHost host;
  EXPECT_EQ(text_from_bytes("\xE9"), u"\u00E9");
  EXPECT_EQ(bytes_from_text(u"\u00E9"), "\xE9");
  host.page = &utf8_code_page();
  EXPECT_EQ(text_from_bytes("\xC3\xA9\xE9"), u"\u00E9\uFFFD");
  EXPECT_EQ(bytes_from_text(u"\u00E9"), "\xC3\xA9");
  EXPECT_EQ(utf8_code_page().byte_table(), nullptr);
}

}  // namespace
