#include "text/line_cursor.h"

#include <gtest/gtest.h>

#include "tests/text/text_fixtures.h"

namespace {

using support::ToyEdl;
using support::utf8;

TEST(LineCursor, HandsOutWords) {
  LineCursor line(u"  001\tTAPE \n A ");
  EXPECT_EQ(utf8(line.next()), "001");
  EXPECT_EQ(utf8(line.peek()), "TAPE");
  EXPECT_EQ(utf8(line.next()), "TAPE");
  EXPECT_EQ(utf8(line.rest()), " \n A ");
  EXPECT_EQ(utf8(line.next()), "A");
  EXPECT_EQ(utf8(line.next()), "");
  EXPECT_EQ(utf8(line.next()), "");
}

TEST(LineCursor, OnlyBlankTabAndLineFeedPartWords) {
  LineCursor line(u"a\rb\vc\fd e");
  EXPECT_EQ(utf8(line.next()), "a\rb\vc\fd");
  EXPECT_EQ(utf8(line.next()), "e");
}

TEST(LineCursor, AWordLongerThanTheLimitComesInPieces) {
  const std::u16string text(1500, u'x');
  LineCursor line(text);
  EXPECT_EQ(line.next().size(), 1023U);
  EXPECT_EQ(line.next().size(), 477U);
  EXPECT_EQ(line.next().size(), 0U);
}

TEST(LineCursor, NullIsTheEmptyLine) {
  LineCursor line(static_cast<const wide_char*>(nullptr));
  EXPECT_TRUE(line.next().empty());
}

TEST(ReadToken, UpToABlank) {
  const support::ScriptedHost host;
  ToyEdl edl;
  EXPECT_EQ(edl.read_token(u"AB\tC"), 2);
  EXPECT_EQ(utf8(edl.token()), "AB");
  EXPECT_EQ(edl.read_token(u"ABC\nD"), 3);
  EXPECT_EQ(utf8(edl.token()), "ABC");
  EXPECT_EQ(edl.read_token(u" AB"), 0);
  EXPECT_EQ(utf8(edl.token()), "");
  EXPECT_EQ(edl.read_token(u""), 0);
}

TEST(ReadToken, StopsAt1023Characters) {
  const support::ScriptedHost host;
  ToyEdl edl;
  const std::u16string text(2000, u'y');
  EXPECT_EQ(edl.read_token(text.c_str()), 1023);
  EXPECT_EQ(text_length(edl.token()), 1023U);
}

TEST(SkipSpace, CountsBlanksTabsAndLineFeeds) {
  EXPECT_EQ(CTextEdl::skip_space(u" \t\nA"), 3);
  EXPECT_EQ(CTextEdl::skip_space(u"\r A"), 0);
  EXPECT_EQ(CTextEdl::skip_space(u"\vA"), 0);
  EXPECT_EQ(CTextEdl::skip_space(u"   "), 3);
  EXPECT_EQ(CTextEdl::skip_space(u""), 0);
}

TEST(SkipToken, PastTheNextWord) {
  const support::ScriptedHost host;
  const ToyEdl edl;
  EXPECT_EQ(edl.skip_token(u"  AB CD"), 4);
  EXPECT_EQ(edl.skip_token(u"AB"), 2);
  EXPECT_EQ(edl.skip_token(u" \t"), 2);
  EXPECT_EQ(edl.skip_token(u""), 0);
}

TEST(IsNumber, AllDigits) {
  EXPECT_EQ(CTextEdl::is_number(u""), 1);
  EXPECT_EQ(CTextEdl::is_number(u"012"), 1);
  EXPECT_EQ(CTextEdl::is_number(u"1a"), 0);
  EXPECT_EQ(CTextEdl::is_number(u"-1"), 0);
  EXPECT_EQ(CTextEdl::is_number(u"1 "), 0);
  // Digits of other scripts are none.
  EXPECT_EQ(CTextEdl::is_number(u"\u0661"), 0);
}

TEST(IsNumber, LooksAt255Characters) {
  std::u16string text(300, u'7');
  text[255] = u'a';
  EXPECT_EQ(CTextEdl::is_number(text.c_str()), 1);
  text[254] = u'a';
  EXPECT_EQ(CTextEdl::is_number(text.c_str()), 0);
}

TEST(EventNumbers, KeepTheLow16Bits) {
  EXPECT_EQ(event_number_value(u"7"), 7);
  EXPECT_EQ(event_number_value(u"65535"), 65535);
  EXPECT_EQ(event_number_value(u"65536"), 0);
  EXPECT_EQ(event_number_value(u"70001"), 4465);
  // 2147483647 has all low bits set; what is larger is taken as that.
  EXPECT_EQ(event_number_value(u"2147483647"), 65535);
  EXPECT_EQ(event_number_value(u"2147483648"), 65535);
  EXPECT_EQ(event_number_value(u"99999999999999999999999999"), 65535);
  EXPECT_EQ(digits_value(u"99999999999999999999999999"), 2147483647);
  EXPECT_EQ(digits_value(u"12a"), 12);
  EXPECT_EQ(digits_value(u""), 0);
}

}  // namespace
