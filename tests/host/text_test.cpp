#include "host/text.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/support/compare.h"

namespace {

using support::utf8;

TEST(Text, CharacterClasses) {
  for (int c = 0; c < 0x10000; ++c) {
    const auto unit = static_cast<wide_char>(c);
    const bool white = c == 0x20 || (c >= 0x09 && c <= 0x0D);
    const bool digit = c >= 0x30 && c <= 0x39;
    const bool ascii_letter = (c >= 0x41 && c <= 0x5A) || (c >= 0x61 && c <= 0x7A);
    const bool latin = c >= 0xC0 && c <= 0x24F && c != 0xD7 && c != 0xF7;
    ASSERT_EQ(is_white_space(unit), white) << c;
    ASSERT_EQ(is_digit(unit), digit) << c;
    ASSERT_EQ(is_alphanumeric(unit), digit || ascii_letter || latin) << c;
  }
}

TEST(Text, FoldsAsciiAlone) {
  EXPECT_TRUE(equal_no_case(u"aBz09", u"AbZ09"));
  EXPECT_FALSE(equal_no_case(u"\u00E9", u"\u00C9"));
  EXPECT_FALSE(equal_no_case(u"a", u"ab"));
  EXPECT_FALSE(equal_no_case(u"[", u"{"));
  EXPECT_TRUE(starts_with_no_case(u"FCM: drop", u"fcm:"));
  EXPECT_FALSE(starts_with_no_case(u"FC", u"fcm:"));
  EXPECT_TRUE(starts_with_no_case(u"x", u""));
}

TEST(Text, Lengths) {
  EXPECT_EQ(text_length(nullptr), 0U);
  EXPECT_EQ(text_length(u"abc"), 3U);
  const wide_char full[3] = {u'a', u'b', u'c'};
  EXPECT_EQ(text_length(full, 3), 3U);
  EXPECT_EQ(text_length(u"abc", 2), 2U);
  EXPECT_EQ(text_length(u"a\0c", 3), 1U);
  EXPECT_EQ(text_length(nullptr, 3), 0U);
  EXPECT_EQ(text_length(u"abc", 0), 0U);
}

TEST(Text, FieldsAreCutAndTerminated) {
  wide_char field[4] = {u'x', u'x', u'x', u'x'};
  set_field(field, u"ab");
  EXPECT_EQ(utf8({field, 4}), std::string("ab\0\0", 4));
  set_field(field, std::u16string_view(u"abcdef"));
  EXPECT_EQ(utf8({field, 4}), std::string("abc\0", 4));
  EXPECT_EQ(field_text(field), u"abc");
  set_field(field, static_cast<const wide_char*>(nullptr));
  EXPECT_EQ(field_text(field), u"");
  const wide_char full[2] = {u'a', u'b'};
  EXPECT_EQ(field_text(full), u"ab");
}

// A source without a terminator is read no further than is copied.
TEST(Text, CopyReadsNoMoreThanItKeeps) {
  const std::vector<wide_char> source = {u'a', u'b', u'c'};
  wide_char out[4];
  copy_text(out, 4, source.data());
  EXPECT_EQ(utf8(out), "abc");
  wide_char untouched = u'x';
  copy_text(&untouched, 0, source.data());
  EXPECT_EQ(untouched, u'x');
}

TEST(Text, Trims) {
  EXPECT_EQ(trimmed(u" \t a b\r\n"), u"a b");
  EXPECT_EQ(trimmed_right(u" a "), u" a");
  EXPECT_EQ(trimmed(u" \v\f"), u"");
  EXPECT_EQ(trimmed(u""), u"");
}

TEST(Utf8, WholeRangeComesBack) {
  for (char32_t point = 1; point <= 0x10FFFF; ++point) {
    if (point >= 0xD800 && point <= 0xDFFF) continue;
    std::u16string text;
    if (point < 0x10000) {
      text.push_back(static_cast<wide_char>(point));
    } else {
      text.push_back(static_cast<wide_char>(0xD7C0 + (point >> 10)));
      text.push_back(static_cast<wide_char>(0xDC00 | (point & 0x3FF)));
    }
    const std::string bytes = utf8_from_text(text);
    ASSERT_EQ(bytes.size(), point < 0x80 ? 1U : point < 0x800 ? 2U : point < 0x10000 ? 3U : 4U);
    ASSERT_EQ(text_from_utf8(bytes), text) << static_cast<unsigned>(point);
  }
}

TEST(Utf8, LoneSurrogatesAreReplaced) {
  const wide_char high[] = {u'a', 0xD800, u'b'};
  const wide_char low[] = {0xDC00, 0xD800};
  EXPECT_EQ(utf8_from_text({high, 3}),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(utf8_from_text({low, 2}), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Utf8, MalformedBytesAreReplacedOneByOne) {
  const auto read = [](std::string_view bytes) { return text_from_utf8(bytes); };
  EXPECT_EQ(read("\x80"), u"\uFFFD");
  EXPECT_EQ(read("a\xFF\xFE"), u"a\uFFFD\uFFFD");
  EXPECT_EQ(read("\xC0\x80"), u"\uFFFD\uFFFD");                      // overlong
  EXPECT_EQ(read("\xE0\x80\x80"), u"\uFFFD\uFFFD\uFFFD");            // overlong
  EXPECT_EQ(read("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");            // a surrogate
  EXPECT_EQ(read("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");  // past U+10FFFF
  EXPECT_EQ(read("\xE2\x82"), u"\uFFFD\uFFFD");                      // ends early
  EXPECT_EQ(read("\xE2\x82"
                 "a"),
            u"\uFFFD\uFFFD"
            u"a");
  EXPECT_EQ(read("\xC3"), u"\uFFFD");
}

TEST(Utf8, RandomBytesNeverFailAndSettle) {
  std::mt19937 random(11);
  for (int i = 0; i < 2000; ++i) {
    std::string bytes(random() % 40, '\0');
    for (char& byte : bytes)
      byte = static_cast<char>(random());
    const std::u16string text = text_from_utf8(bytes);
    // What came out is well formed, so it comes back as itself.
    ASSERT_EQ(text_from_utf8(utf8_from_text(text)), text);
  }
}

}  // namespace
