#include "embedded/code_pages.h"

#include <gtest/gtest.h>

#include "tests/support/compare.h"

namespace {

using embedded::make_code_page;

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

TEST(CodePages, BuiltInNames) {
  for (const char* const name : {"windows-1252", "Windows-1252", "CP1252", "1252"}) {
    const auto page = make_code_page(name);
    ASSERT_NE(page, nullptr) << name;
    EXPECT_EQ(decoded(*page, "\x80\x81"), u"\u20AC\u0081") << name;
    ASSERT_NE(page->byte_table(), nullptr);
  }
  for (const char* const name : {"utf-8", "UTF8", "Utf-8"}) {
    const auto page = make_code_page(name);
    ASSERT_NE(page, nullptr) << name;
    EXPECT_EQ(decoded(*page, "\xE2\x82\xAC\x80"), u"\u20AC\uFFFD") << name;
    EXPECT_EQ(page->byte_table(), nullptr);
  }
}

TEST(CodePages, UnknownNameIsNull) {
  EXPECT_EQ(make_code_page("no-such-page"), nullptr);
  EXPECT_EQ(make_code_page("1252; rm"), nullptr);
}

TEST(CodePages, SingleBytePageOfThePlatform) {
  const auto page = make_code_page("CP1251");
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(decoded(*page, "\xC4\xF3\xE1\xEB\xFC"), u"\u0414\u0443\u0431\u043B\u044C");
  EXPECT_EQ(encoded(*page, u"\u0414\u0443\u0431\u043B\u044C 1"), "\xC4\xF3\xE1\xEB\xFC 1");
  ASSERT_NE(page->byte_table(), nullptr);
  EXPECT_EQ((*page->byte_table())[0xC4], u'\u0414');
}

// What the table says of a byte is what the byte reads as in a text.
TEST(CodePages, TableAgreesWithTheReader) {
  for (const char* const name : {"CP1251", "ISO-8859-7", "CP437", "MACINTOSH", "KOI8-R"}) {
    const auto page = make_code_page(name);
    ASSERT_NE(page, nullptr) << name;
    ASSERT_NE(page->byte_table(), nullptr) << name;
    for (int byte = 0; byte < 256; ++byte) {
      const char c = static_cast<char>(byte);
      EXPECT_EQ(decoded(*page, {&c, 1}),
                std::u16string(1, (*page->byte_table())[static_cast<std::size_t>(byte)]))
          << name << " " << byte;
    }
  }
}

TEST(CodePages, WhatThePageLacksBecomesAQuestionMark) {
  const auto page = make_code_page("CP1251");
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(encoded(*page, u"a\u20B9b"), "a?b");
  // A pair of surrogates is one character; a lone one is one too.
  EXPECT_EQ(encoded(*page,
                    u"a\U0001F3AC"
                    u"b"),
            "a?b");
  const char16_t lone[] = {u'a', 0xD800, u'b', 0};
  EXPECT_EQ(encoded(*page, lone), "a?b");
  const char16_t at_end[] = {u'a', 0xD800, 0};
  EXPECT_EQ(encoded(*page, at_end), "a?");
}

TEST(CodePages, PageOfSeveralBytesACharacter) {
  const auto page = make_code_page("SHIFT_JIS");
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(page->byte_table(), nullptr);
  EXPECT_EQ(decoded(*page, "\x83\x65\x83\x43\x83\x4E 1"), u"\u30C6\u30A4\u30AF 1");
  EXPECT_EQ(encoded(*page, u"\u30C6\u30A4\u30AF 1"), "\x83\x65\x83\x43\x83\x4E 1");
  // Half a character at the end, and a byte that begins none.
  EXPECT_EQ(decoded(*page, "a\x83"), u"a\uFFFD");
  EXPECT_EQ(decoded(*page,
                    "\xFF"
                    "a"),
            u"\uFFFD"
            u"a");
}

TEST(CodePages, ShiftStatesEndWithTheText) {
  const auto page = make_code_page("ISO-2022-JP");
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(page->byte_table(), nullptr);
  const std::string bytes = encoded(*page, u"\u30C6");
  EXPECT_EQ(bytes, "\x1b$B%F\x1b(B");
  EXPECT_EQ(decoded(*page, bytes + "a"),
            u"\u30C6"
            u"a");
}

TEST(CodePages, LongTextsPassWhole) {
  const auto page = make_code_page("CP1251");
  ASSERT_NE(page, nullptr);
  std::u16string text;
  for (int i = 0; i < 5000; ++i)
    text.push_back(static_cast<char16_t>(u'\u0410' + i % 64));
  const std::string bytes = encoded(*page, text);
  EXPECT_EQ(bytes.size(), 5000U);
  EXPECT_EQ(decoded(*page, bytes), text);
}

}  // namespace
