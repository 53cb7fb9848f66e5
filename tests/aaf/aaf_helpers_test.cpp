#include <gtest/gtest.h>

#include <limits>

#include "aaf/aaf_ids.h"
#include "aaf/aaf_numbers.h"
#include "aaf/aaf_ref.h"
#include "aaf/aaf_text.h"

namespace {

constexpr aafUID_t some_id = {0x11223344, 0x5566, 0x7788, {1, 2, 3, 4, 5, 6, 7, 8}};

TEST(AafIdsTest, ThreeOfFourPartsAreCompared) {
  aafUID_t other = some_id;
  EXPECT_TRUE(uids_match(some_id, other));
  for (aafUInt8& byte : other.Data4)
    byte = 0xEE;
  EXPECT_TRUE(uids_match(some_id, other));
  other = some_id;
  other.Data1 ^= 0x80000000U;
  EXPECT_FALSE(uids_match(some_id, other));
  other = some_id;
  other.Data2 = 0x5567;
  EXPECT_FALSE(uids_match(some_id, other));
  other = some_id;
  other.Data3 = 0x7789;
  EXPECT_FALSE(uids_match(some_id, other));
}

TEST(AafIdsTest, OfAMobTheMaterialNumberIsCompared) {
  aafMobID_t a = {};
  a.material = some_id;
  aafMobID_t b = a;
  b.SMPTELabel[0] = 9;
  b.instanceLow = 9;
  b.material.Data4[7] = 9;
  EXPECT_TRUE(uids_match(a, b));
  b.material.Data3 = 0;
  EXPECT_FALSE(uids_match(a, b));
}

TEST(AafTextTest, CharactersAboveSixteenBitsCrossWhole) {
  EXPECT_EQ(text_from_aaf(L"a\u00E9\U0001F3AC"), u"a\u00E9\xD83C\xDFAC");
  EXPECT_EQ(aaf_from_text(u"a\u00E9\xD83C\xDFAC"), L"a\u00E9\U0001F3AC");
  EXPECT_EQ(text_from_aaf(L"\U0010FFFF"), u"\xDBFF\xDFFF");
  EXPECT_EQ(text_from_aaf(L""), u"");
}

TEST(AafTextTest, WhatIsNoCharacterIsReplaced) {
  const aafCharacter wild[] = {L'a', static_cast<aafCharacter>(0x110000),
                               static_cast<aafCharacter>(0xFFFFFFFFU)};
  EXPECT_EQ(text_from_aaf({wild, 3}), u"a\uFFFD\uFFFD");
}

TEST(AafTextTest, EveryLoneUnitComesBack) {
  for (unsigned unit = 0; unit <= 0xFFFFU; ++unit) {
    const std::u16string text(1, static_cast<char16_t>(unit));
    ASSERT_EQ(text_from_aaf(aaf_from_text(text)), text) << unit;
  }
  const std::u16string wrong_way = {u'a', 0xDC00, 0xD800, u'b'};
  EXPECT_EQ(aaf_from_text(wrong_way).size(), 4U);
  EXPECT_EQ(text_from_aaf(aaf_from_text(wrong_way)), wrong_way);
}

TEST(AafTextTest, ReadThroughAnOperation) {
  std::u16string name = u"before";
  EXPECT_EQ(read_aaf_text<4>(name,
                             [](aafCharacter* out, aafUInt32 bytes) {
                               EXPECT_EQ(bytes, 16U);
                               out[0] = L'a';
                               out[1] = L'b';
                               return 0;
                             }),
            0);
  EXPECT_EQ(name, u"ab");
  // Without a terminator, all that has room.
  EXPECT_EQ(read_aaf_text<2>(name,
                             [](aafCharacter* out, aafUInt32) {
                               out[0] = out[1] = L'x';
                               return 0;
                             }),
            0);
  EXPECT_EQ(name, u"xx");
  EXPECT_EQ(read_aaf_text<2>(name, [](aafCharacter*, aafUInt32) { return -5; }), -5);
  EXPECT_EQ(name, u"");
}

struct Counted final : IUnknown {
  HRESULT QueryInterface(REFIID iid, LPVOID* out) override {
    if (iid.Data1 != IID_IUnknown.Data1) return static_cast<HRESULT>(0x80004002U);
    AddRef();
    *out = static_cast<IUnknown*>(this);
    return 0;
  }
  ULONG AddRef() override { return ++references; }
  ULONG Release() override { return --references; }
  ULONG references = 1;
};

TEST(AafRefTest, EveryReferenceGoesBack) {
  Counted object;
  {
    const AafRef<IUnknown> first(&object);
    EXPECT_EQ(object.references, 2U);
    AafRef<IUnknown> second = first;
    EXPECT_EQ(object.references, 3U);
    AafRef<IUnknown> third = std::move(second);
    EXPECT_FALSE(second);  // NOLINT: what a move leaves is the subject
    EXPECT_EQ(object.references, 3U);
    third = first;
    EXPECT_EQ(object.references, 3U);
    AafRef<IUnknown> asked = AAF_QUERY(IUnknown, &object);
    EXPECT_EQ(asked.get(), &object);
    EXPECT_EQ(object.references, 4U);
    EXPECT_EQ(*asked.put(), nullptr);
    EXPECT_EQ(object.references, 3U);
  }
  EXPECT_EQ(object.references, 1U);
}

TEST(AafRefTest, WithoutTheInterfaceItStaysEmpty) {
  Counted object;
  EXPECT_FALSE(AAF_QUERY(IAAFFile, &object));
  EXPECT_FALSE(AAF_QUERY(IAAFFile, nullptr));
  EXPECT_EQ(object.references, 1U);
}

constexpr std::int64_t most = 0x7FFFFFFFFFFFFFFF;
constexpr std::int64_t least = -most - 1;

TEST(AafNumbersTest, SumsStopAtTheEnds) {
  EXPECT_EQ(aaf::sum(most - 1, 1), most);
  EXPECT_EQ(aaf::sum(most, 1), most);
  EXPECT_EQ(aaf::sum(1, most), most);
  EXPECT_EQ(aaf::sum(most, most), most);
  EXPECT_EQ(aaf::sum(least, -1), -most);
  EXPECT_EQ(aaf::sum(least, least), -most);
  EXPECT_EQ(aaf::sum(most, least), -1);
}

TEST(AafNumbersTest, DifferencesStopAtTheEnds) {
  EXPECT_EQ(aaf::difference(5, 7), -2);
  EXPECT_EQ(aaf::difference(most, -1), most);
  EXPECT_EQ(aaf::difference(0, least), most);
  EXPECT_EQ(aaf::difference(-2, most), -most);
  EXPECT_EQ(aaf::difference(least, 1), -most);
  EXPECT_EQ(aaf::difference(least, least), 0);
}

TEST(AafNumbersTest, EveryNumberHasAnInteger) {
  constexpr double endless = std::numeric_limits<double>::infinity();
  EXPECT_EQ(aaf::truncated(1.999), 1);
  EXPECT_EQ(aaf::truncated(-1.999), -1);
  EXPECT_EQ(aaf::truncated(endless), most);
  EXPECT_EQ(aaf::truncated(-endless), -most);
  EXPECT_EQ(aaf::truncated(std::numeric_limits<double>::quiet_NaN()), 0);
  // The two doubles on either side of 2 to the 63rd.
  EXPECT_EQ(aaf::truncated(9223372036854775808.0), most);
  EXPECT_EQ(aaf::truncated(9223372036854774784.0), 9223372036854774784);
  EXPECT_EQ(aaf::truncated(-9223372036854775808.0), -most);
  EXPECT_EQ(aaf::truncated(-9223372036854774784.0), -9223372036854774784);
}

TEST(AafNumbersTest, SharesAreExactOrStopAtTheEnds) {
  EXPECT_EQ(aaf::scaled(7, 3, 2), 10);
  EXPECT_EQ(aaf::scaled(-7, 3, 2), -10);
  EXPECT_EQ(aaf::scaled(7, 3, 0), 0);
  // Beyond what a double tells apart.
  EXPECT_EQ(aaf::scaled(9007199254740993, 1, 1), 9007199254740993);
  EXPECT_EQ(aaf::scaled(least, 1, -1), most);
  EXPECT_EQ(aaf::scaled(most, most, 1), most);
  EXPECT_EQ(aaf::scaled(most, -most, 1), -most);
  // 2 to the 62nd, twice, by 2 to the 62nd.
  EXPECT_EQ(aaf::scaled(4611686018427387904, 4611686018427387904, 4611686018427387904),
            4611686018427387904);
}

TEST(AafNumbersTest, ARateHasTwoPositiveNumbers) {
  EXPECT_TRUE(aaf::is_positive({1, 1}));
  EXPECT_FALSE(aaf::is_positive({0, 1}));
  EXPECT_FALSE(aaf::is_positive({1, 0}));
  EXPECT_FALSE(aaf::is_positive({-25, 1}));
  EXPECT_FALSE(aaf::is_positive({25, -1}));
  EXPECT_FALSE(aaf::is_positive({-25, -1}));
}

}  // namespace
