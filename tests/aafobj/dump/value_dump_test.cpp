#include "aafobj/dump/value_dump.h"

#include <gtest/gtest.h>

#include <string>

#include "aafobj/dump/shown_text.h"
#include "tests/aafobj/dump/recording_sink.h"
#include "tests/aafobj/model/hand_made_file.h"

namespace aafobj {
namespace {

using testing::Bytes;
using testing::bytes_of;
using testing::RecordingSink;
using namespace std::string_literals;

// The lines that a value is told in.
std::string told(MetaModel& meta, const TypeDef& type, const Bytes& bytes, int level = 0) {
  RecordingSink sink;
  ValueDump(meta, sink).tell(type, bytes, level);
  return sink.lines;
}

std::string told(TypeIndex type, const Bytes& bytes) {
  MetaModel meta;
  return told(meta, meta.type_of(type), bytes);
}

Bytes text_bytes(std::u16string_view text) {
  Bytes bytes;
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::byte>(unit & 0xff));
    bytes.push_back(static_cast<std::byte>(unit >> 8));
  }
  return bytes;
}

const Bytes sound_id = bytes_of(
    {0xe1, 0xeb, 0xe1, 0x78, 0xef, 0x6c, 0xd2, 0x11, 0x80, 0x7d, 0, 0x60, 8, 0x14, 0x3e, 0x6f});

TEST(ValueDump, Numbers) {
  EXPECT_EQ(told(TypeIndex::UInt8, bytes_of({200})), "number 200\n");
  EXPECT_EQ(told(TypeIndex::Int8, bytes_of({200})), "number -56\n");
  EXPECT_EQ(told(TypeIndex::UInt16, bytes_of({0x01, 0xff})), "number 65281\n");
  EXPECT_EQ(told(TypeIndex::Int32, bytes_of({0xff, 0xff, 0xff, 0xff})), "number -1\n");
  EXPECT_EQ(told(TypeIndex::Int64, bytes_of({0, 0, 0, 0, 0, 0, 0, 0x80})),
            "number -9223372036854775808\n");
  EXPECT_EQ(told(TypeIndex::UInt64, bytes_of({0, 0, 0, 0, 0, 0, 0, 0x80})),
            "number 9223372036854775808\n");
  // A rename of a 64-bit number.
  EXPECT_EQ(told(TypeIndex::PositionType, bytes_of({5, 0, 0, 0, 0, 0, 0, 0})), "number 5\n");
}

TEST(ValueDump, BytesThatAreNoValueOfTheTypeAreAFaultThatShowsThem) {
  EXPECT_EQ(told(TypeIndex::UInt16, bytes_of({1, 2, 3})), "FAULT no value of aafUInt16: 010203\n");
  EXPECT_EQ(told(TypeIndex::UInt16, {}), "FAULT no bytes, where aafUInt16 is expected\n");
  EXPECT_EQ(told(TypeIndex::Rational, bytes_of({1, 0, 0, 0})),
            "FAULT no value of Rational: 01000000\n");
  EXPECT_EQ(told(TypeIndex::AUIDSet, Bytes(17, std::byte{1})),
            "FAULT no value of AUIDSet: 0101010101010101010101010101010101\n");
  EXPECT_EQ(told(TypeIndex::Boolean, bytes_of({1, 1})), "FAULT no value of Boolean: 0101\n");
  // Long ones are cut.
  EXPECT_EQ(
      told(TypeIndex::UInt8, Bytes(65, std::byte{0xab})), "FAULT no value of aafUInt8: " + [] {
        std::string digits;
        for (int i = 0; i < 64; ++i)
          digits += "ab";
        return digits;
      }() + "... (65 bytes)\n");
}

TEST(ValueDump, Texts) {
  EXPECT_EQ(told(TypeIndex::String, text_bytes(u"Büro\0"s)), "text Büro\n");
  EXPECT_EQ(told(TypeIndex::String, text_bytes(u"no end")), "text no end\n");
  EXPECT_EQ(told(TypeIndex::String, text_bytes(u"seen\0unseen"s)), "text seen\n");
  EXPECT_EQ(told(TypeIndex::String, text_bytes(u"\U0001F39E\xd800x"s)), "text \U0001F39E\uFFFDx\n");
  EXPECT_EQ(told(TypeIndex::String, bytes_of({65, 0, 66})),
            "FAULT no value of aafString: 410042\n");
  EXPECT_EQ(told(TypeIndex::Character, bytes_of({65, 0})), "text A\n");
}

// As the names of an enumeration's values are stored: an array of characters.
TEST(ValueDump, ListsOfTexts) {
  EXPECT_EQ(told(TypeIndex::StringArray, text_bytes(u"True\0False\0"s)),
            "list 2\n  text True\n  text False\n");
  EXPECT_EQ(told(TypeIndex::StringArray, text_bytes(u"a\0\0b"s)),
            "list 3\n  text a\n  text \n  text b\n");
  EXPECT_EQ(told(TypeIndex::StringArray, {}), "list 0\n");
}

TEST(ValueDump, NamesOfValues) {
  EXPECT_EQ(told(TypeIndex::Boolean, bytes_of({1})), "boolean True\n");
  EXPECT_EQ(told(TypeIndex::Boolean, bytes_of({0})), "boolean False\n");
  EXPECT_EQ(told(TypeIndex::Boolean, bytes_of({2})), "number 2\n");
  EXPECT_EQ(told(TypeIndex::LayoutType, bytes_of({1})), "word SeparateFields\n");
  EXPECT_EQ(told(TypeIndex::LayoutType, bytes_of({0xff})), "number 255\n");
  EXPECT_EQ(told(TypeIndex::OperationCategoryType,
                 bytes_of({0x02, 0x01, 0x01, 0x0d, 0x01, 0x01, 0x00, 0x01, 0x06, 0x0e, 0x2b, 0x34,
                           0x04, 0x01, 0x01, 0x01})),
            "word OperationCategory_Effect\n");
  EXPECT_EQ(told(TypeIndex::OperationCategoryType,
                 bytes_of({0x02, 0x01, 0x01, 0x0d, 0x01, 0x01, 0x00, 0x01, 0x04, 0x01, 0x01, 0x01,
                           0x06, 0x0e, 0x2b, 0x34})),
            "word {0d010102-0101-0100-0401-0101060e2b34}\n");
}

TEST(ValueDump, RecordsWithAFormOfTheirOwn) {
  EXPECT_EQ(told(TypeIndex::AUID, sound_id), "word {78e1ebe1-6cef-11d2-807d-006008143e6f}\n");
  EXPECT_EQ(told(TypeIndex::Rational, bytes_of({0x30, 0x75, 0, 0, 0xe9, 3, 0, 0})),
            "text 30000/1001\n");
  EXPECT_EQ(told(TypeIndex::Rational, bytes_of({0xff, 0xff, 0xff, 0xff, 0, 0, 0, 0})),
            "text -1/0\n");
  EXPECT_EQ(told(TypeIndex::TimeStamp, bytes_of({0xea, 7, 11, 21, 7, 5, 9, 3})),
            "text 2026-11-21 07:05:09.03\n");
  EXPECT_EQ(told(TypeIndex::VersionType, bytes_of({1, 2})), "text 1.2\n");
  EXPECT_EQ(told(TypeIndex::ProductVersion, bytes_of({1, 0, 2, 0, 0, 1, 4, 0, 3})),
            "text 1.2.256.4 type 3\n");
  Bytes mob = bytes_of({6, 10, 43, 52, 1, 1, 1, 5, 1, 1, 15, 16, 19, 0, 0, 1});
  mob.insert(mob.end(), sound_id.begin(), sound_id.end());
  EXPECT_EQ(told(TypeIndex::MobIDType, mob),
            "word 060a2b340101010501010f10-13-000001-{78e1ebe1-6cef-11d2-807d-006008143e6f}\n");
}

TEST(ValueDump, RecordsAndArrays) {
  EXPECT_EQ(told(TypeIndex::RGBAComponent, bytes_of({0x52, 8})),
            "record 2\n  .Code\n  word CompRed\n  .Size\n  number 8\n");
  EXPECT_EQ(told(TypeIndex::Int32Array, bytes_of({1, 0, 0, 0, 0xfe, 0xff, 0xff, 0xff})),
            "list 2\n  number 1\n  number -2\n");
  Bytes two = sound_id;
  two.insert(two.end(), sound_id.begin(), sound_id.end());
  EXPECT_EQ(told(TypeIndex::AUIDSet, two),
            "list 2\n  word {78e1ebe1-6cef-11d2-807d-006008143e6f}\n"
            "  word {78e1ebe1-6cef-11d2-807d-006008143e6f}\n");
  EXPECT_EQ(told(TypeIndex::ChannelStatusModeArray, bytes_of({2, 9})),
            "list 2\n  word ChannelStatusMode_Standard\n  number 9\n");
  EXPECT_EQ(told(TypeIndex::UInt8Array, bytes_of({1, 2, 255})), "bytes 3 0102ff\n");
  EXPECT_EQ(told(TypeIndex::DataValue, {}), "bytes 0 \n");
  EXPECT_EQ(told(TypeIndex::UInt8Array8, bytes_of({1, 2, 3, 4, 5, 6, 7, 8})),
            "bytes 8 0102030405060708\n");
  EXPECT_EQ(told(TypeIndex::UInt8Array8, bytes_of({1})), "FAULT no value of aafUInt8Array8: 01\n");
}

// The letter of the byte order, the type, the value.
TEST(ValueDump, ValuesThatBringTheirType) {
  Bytes value = bytes_of({0x4c});
  const auto id = std::as_bytes(std::span(&row_of(TypeIndex::Int16).identifier, 1));
  value.insert(value.end(), id.begin(), id.end());
  const Bytes head = value;
  value.insert(value.end(), {std::byte{0xff}, std::byte{0xff}});
  EXPECT_EQ(told(TypeIndex::Indirect, value), "number -1\n");
  EXPECT_EQ(told(TypeIndex::Opaque, value),
            "record 2\n  .Type\n  word {01010600-0000-0000-060e-2b3401040101}\n"
            "  .Value\n  bytes 2 ffff\n");
  value[1] = std::byte{0x77};  // a type that nobody knows
  EXPECT_EQ(told(TypeIndex::Indirect, value),
            "record 2\n  .Type\n  word {01010677-0000-0000-060e-2b3401040101}\n"
            "  .Value\n  bytes 2 ffff\n");
  EXPECT_EQ(told(TypeIndex::Indirect, head), "FAULT no bytes, where aafInt16 is expected\n");
  EXPECT_EQ(told(TypeIndex::Indirect, bytes_of({0x4c, 1})),
            "FAULT no value of aafIndirect: 4c01\n");
  value[0] = std::byte{0x42};
  EXPECT_TRUE(told(TypeIndex::Indirect, value).starts_with("FAULT no value of aafIndirect: 4277"));
}

// Each value in it names the same type again.
TEST(ValueDump, ValuesInValuesHaveABoundedDepth) {
  Bytes value;
  const auto id = std::as_bytes(std::span(&row_of(TypeIndex::Indirect).identifier, 1));
  for (int i = 0; i < 300; ++i) {
    value.push_back(std::byte{0x4c});
    value.insert(value.end(), id.begin(), id.end());
  }
  EXPECT_EQ(told(TypeIndex::Indirect, value), "FAULT the tree is too deep\n");
  MetaModel meta;
  EXPECT_EQ(told(meta, meta.type_of(TypeIndex::UInt8), bytes_of({1}), deepest_level), "number 1\n");
  EXPECT_EQ(told(meta, meta.type_of(TypeIndex::UInt8), bytes_of({1}), deepest_level + 1),
            "FAULT the tree is too deep\n");
}

// Records whose fields take no bytes could fan out without end.
TEST(ValueDump, RecordsOfEmptyFieldsAreRefused) {
  MetaModel meta;
  TypeDef type;
  type.name = u"Odd";
  type.identifier = {0x44, 0, 0, {1}};
  type.kind = TypeKind::record;
  type.members = {{u"a", &meta.type_of(TypeIndex::String), 0, {}}};
  EXPECT_EQ(told(meta, type, bytes_of({1, 2})), "FAULT no value of Odd: 0102\n");
}

// A file may use one name a million times.
TEST(ValueDump, LongNamesAreCut) {
  MetaModel meta;
  TypeDef type;
  type.identifier = {0x44, 0, 0, {1}};
  type.kind = TypeKind::enumeration;
  type.size_bytes = 1;
  type.element = &meta.type_of(TypeIndex::UInt8);
  type.members = {{std::u16string(128, u'a'), nullptr, 1, {}},
                  {std::u16string(129, u'b'), nullptr, 2, {}},
                  {u"the second of one number", nullptr, 1, {}}};
  EXPECT_EQ(told(meta, type, bytes_of({1})), "word " + std::string(128, 'a') + "\n");
  EXPECT_EQ(told(meta, type, bytes_of({2})), "word " + std::string(128, 'b') + "...\n");
  type.kind = TypeKind::record;
  EXPECT_EQ(told(meta, type, bytes_of({2})),
            "FAULT no value of {00000044-0000-0000-0100-000000000000}: 02\n");
}

TEST(ShownText, Results) {
  EXPECT_EQ(shown(AAFRESULT_BADCONTAINER), "the structure of the file is damaged here");
  EXPECT_EQ(shown(static_cast<AAFRESULT>(0x80001234)), "result 0x80001234");
}

}  // namespace
}  // namespace aafobj
