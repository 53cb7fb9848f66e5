#include "aafobj/objects/text_conversion.h"

#include <gtest/gtest.h>

#include "aafobj/api/aaf_result_codes.h"

namespace aafobj {
namespace {

TEST(TextConversion, JoinsAndSplitsPairs) {
  EXPECT_EQ(to_wide(u"a\u00e9\U0001f3a7"), L"a\u00e9\U0001f3a7");
  EXPECT_EQ(from_wide(L"a\u00e9\U0001f3a7"), u"a\u00e9\U0001f3a7");
}

TEST(TextConversion, PassesHalvesOfPairsOn) {
  const std::u16string halves = {0xd83c, u'x', 0xdfa7, 0xd83c};
  const std::wstring wide = to_wide(halves);
  ASSERT_EQ(wide.size(), 4u);
  EXPECT_EQ(from_wide(wide), halves);
  EXPECT_EQ(from_wide(std::wstring(1, static_cast<wchar_t>(0x110000))), u"\ufffd");
}

TEST(TextConversion, CountsBytesOfWideCharacters) {
  EXPECT_EQ(wide_bytes(u""), 4u);
  EXPECT_EQ(wide_bytes(u"ab"), 12u);
  EXPECT_EQ(wide_bytes(u"\U0001f3a7"), 8u);
  wchar_t buffer[3];
  EXPECT_EQ(copy_text(u"ab", buffer, 12), 0);
  EXPECT_STREQ(buffer, L"ab");
  EXPECT_EQ(copy_text(u"ab", buffer, 11), AAFRESULT_SMALLBUF);
  EXPECT_EQ(copy_text(u"ab", nullptr, 12), AAFRESULT_NULL_PARAM);
}

TEST(TextConversion, GoesToUtf8AndBack) {
  EXPECT_EQ(to_utf8(L"a\u00e9\u20ac\U0001f3a7"), "a\xc3\xa9\xe2\x82\xac\xf0\x9f\x8e\xa7");
  EXPECT_EQ(from_utf8("a\xc3\xa9\xe2\x82\xac\xf0\x9f\x8e\xa7"), L"a\u00e9\u20ac\U0001f3a7");
  EXPECT_EQ(from_utf8("\xe9t\xc3"), L"\u00e9t\u00c3");  // no UTF-8: each byte for itself
}

}  // namespace
}  // namespace aafobj
