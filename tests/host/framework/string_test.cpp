#include "host/framework/string.h"

#include <gtest/gtest.h>

#include "tests/support/compare.h"

namespace {

std::string shown(const CString& text) {
  return support::utf8(text.view());
}

TEST(String, BuildsFromTexts) {
  EXPECT_TRUE(CString().IsEmpty());
  EXPECT_TRUE(CString(static_cast<const wide_char*>(nullptr)).IsEmpty());
  EXPECT_EQ(CString(u"abc"), u"abc");
  EXPECT_EQ(CString(std::u16string_view(u"abcdef", 3)), u"abc");
  EXPECT_EQ(CString(std::u16string(u"x")).GetLength(), 1);
  EXPECT_EQ(shown(static_cast<const wide_char*>(CString(u"a"))), "a");
}

TEST(String, Appends) {
  CString text(u"a");
  text += u"b";
  text += u'c';
  text += std::u16string_view(u"d");
  text += CString(u"e");
  text += static_cast<const wide_char*>(nullptr);
  EXPECT_EQ(text, u"abcde");
  EXPECT_EQ(CString(u"x") + u"y", u"xy");
}

TEST(String, PartsAreBroughtInside) {
  const CString text(u"abcdef");
  EXPECT_EQ(text.Left(2), u"ab");
  EXPECT_EQ(text.Left(99), u"abcdef");
  EXPECT_EQ(text.Left(-1), u"");
  EXPECT_EQ(text.Right(2), u"ef");
  EXPECT_EQ(text.Right(99), u"abcdef");
  EXPECT_EQ(text.Right(-1), u"");
  EXPECT_EQ(text.Mid(2), u"cdef");
  EXPECT_EQ(text.Mid(2, 2), u"cd");
  EXPECT_EQ(text.Mid(2, 0), u"");
  EXPECT_EQ(text.Mid(99), u"");
  EXPECT_EQ(text.Mid(-3, 2), u"ab");
}

TEST(String, ReplacesAllAndCounts) {
  CString text(u"aXbXc");
  EXPECT_EQ(text.Replace(u"X", u"--"), 2);
  EXPECT_EQ(text, u"a--b--c");
  EXPECT_EQ(text.Replace(u"--", u""), 2);
  EXPECT_EQ(text, u"abc");
  EXPECT_EQ(text.Replace(u"z", u"y"), 0);
  EXPECT_EQ(text.Replace(u"", u"y"), 0);
  EXPECT_EQ(text, u"abc");
  // What a replacement puts in is not looked at again.
  CString growing(u"aa");
  EXPECT_EQ(growing.Replace(u"a", u"aa"), 2);
  EXPECT_EQ(growing, u"aaaa");
  CString overlapping(u"aaa");
  EXPECT_EQ(overlapping.Replace(u"aa", u"b"), 1);
  EXPECT_EQ(overlapping, u"ba");
}

TEST(String, DeletesAndInserts) {
  CString text(u"abcdef");
  EXPECT_EQ(text.Delete(1, 2), 4);
  EXPECT_EQ(text, u"adef");
  EXPECT_EQ(text.Delete(3, 99), 3);
  EXPECT_EQ(text.Delete(99), 3);
  EXPECT_EQ(text.Insert(1, u"bc"), 5);
  EXPECT_EQ(text, u"abcde");
  EXPECT_EQ(text.Insert(99, u"!"), 6);
  EXPECT_EQ(text.Insert(-1, u">"), 7);
  EXPECT_EQ(text, u">abcde!");
}

TEST(String, Finds) {
  const CString text(u"a/b/c");
  EXPECT_EQ(text.Find(u"/"), 1);
  EXPECT_EQ(text.Find(u"/", 2), 3);
  EXPECT_EQ(text.Find(u"/", 4), -1);
  EXPECT_EQ(text.Find(u"/", -5), 1);
  EXPECT_EQ(text.ReverseFind(u'/'), 3);
  EXPECT_EQ(text.ReverseFind(u'x'), -1);
}

TEST(String, TrimsWhiteSpace) {
  CString text(u" \t a b \r\n\v\f ");
  EXPECT_EQ(text.TrimRight(), u" \t a b");
  EXPECT_EQ(text.TrimLeft(), u"a b");
  CString blank(u"   ");
  EXPECT_EQ(blank.TrimLeft(), u"");
  // U+00A0 is no white space here.
  CString hard(u"\u00A0a");
  EXPECT_EQ(hard.TrimLeft(), u"\u00A0a");
}

TEST(String, UpperCaseOfLatin) {
  CString text(u"abz \u00E9\u00F7\u00FF\u00DF\u0151");
  // No capital of U+00FF, U+00DF or U+0151 lies in Latin-1.
  EXPECT_EQ(shown(text.MakeUpper()), "ABZ \xC3\x89\xC3\xB7\xC3\xBF\xC3\x9F\xC5\x91");
}

TEST(String, SetsUnits) {
  CString text(u"abc");
  text.SetAt(1, u'X');
  EXPECT_EQ(text.GetAt(1), u'X');
  EXPECT_TRUE(text.EqualNoCase(u"AxC"));
  EXPECT_FALSE(text.EqualNoCase(u"Ax"));
  text.Empty();
  EXPECT_TRUE(text.IsEmpty());
}

}  // namespace
