// The streams in which objects are stored, byte by byte.

#include <gtest/gtest.h>

#include "aafobj/api/aaf_well_known_ids.h"
#include "aafobj/model/baseline.h"
#include "aafobj/model/index_stream.h"
#include "aafobj/model/property_stream.h"
#include "aafobj/model/referenced_properties.h"
#include "aafobj/model/storage_name.h"
#include "aafobj/model/stored_values.h"

namespace aafobj {
namespace {

using Bytes = std::vector<std::byte>;

Bytes bytes_of(std::initializer_list<int> values) {
  Bytes bytes;
  for (const int value : values)
    bytes.push_back(static_cast<std::byte>(value));
  return bytes;
}

// Two properties: 0x4402 with two bytes, 0x4403 as a vector with none.
const Bytes little_stream = bytes_of({0x4c, 0x20, 2, 0,           // order, version, count
                                      0x02, 0x44, 0x82, 0, 2, 0,  // number, form, length
                                      0x03, 0x44, 0x32, 0, 0, 0,  //
                                      0xaa, 0xbb});
const Bytes big_stream = bytes_of({0x42, 0x20, 0, 2,           //
                                   0x44, 0x02, 0, 0x82, 0, 2,  //
                                   0x44, 0x03, 0, 0x32, 0, 0,  //
                                   0xaa, 0xbb});

TEST(PropertyStream, IsReadInBothOrders) {
  for (const Bytes& stream : {little_stream, big_stream}) {
    ByteOrder order{};
    std::vector<PropertyEntry> entries;
    ASSERT_EQ(parse_property_stream(stream, order, entries), AAFRESULT_SUCCESS);
    EXPECT_EQ(static_cast<int>(order), static_cast<int>(stream[0]));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].pid, 0x4402);
    EXPECT_EQ(entries[0].form, StoredForm::data);
    ASSERT_EQ(entries[0].value.size(), 2u);
    EXPECT_EQ(entries[0].value[1], std::byte{0xbb});
    EXPECT_EQ(entries[1].form, StoredForm::strong_vector);
    EXPECT_TRUE(entries[1].value.empty());
    Bytes written;
    ASSERT_EQ(write_property_stream(entries, order, written), AAFRESULT_SUCCESS);
    EXPECT_EQ(written, stream);
  }
}

TEST(PropertyStream, IsRefusedWhenItIsCutOrForeign) {
  ByteOrder order{};
  std::vector<PropertyEntry> entries;
  for (std::size_t length = 0; length < little_stream.size(); ++length) {
    EXPECT_EQ(parse_property_stream(std::span(little_stream).first(length), order, entries),
              AAFRESULT_BADCONTAINER)
        << length;
  }
  Bytes other = little_stream;
  other[0] = std::byte{0x55};
  EXPECT_EQ(parse_property_stream(other, order, entries), AAFRESULT_BADCONTAINER);
  other = little_stream;
  other[1] = std::byte{31};
  EXPECT_EQ(parse_property_stream(other, order, entries), AAFRESULT_BADCONTAINER);
  other = little_stream;
  other[2] = other[3] = std::byte{0xff};  // 65535 entries in 16 bytes
  EXPECT_EQ(parse_property_stream(other, order, entries), AAFRESULT_BADCONTAINER);
  other = little_stream;
  other[8] = std::byte{3};  // one byte more than there is
  EXPECT_EQ(parse_property_stream(other, order, entries), AAFRESULT_BADCONTAINER);
}

TEST(PropertyStream, TakesNoValueThatItsLengthCannotTell) {
  const Bytes value(65536);
  Bytes written;
  PropertyEntry entry{1, StoredForm::data, value};
  EXPECT_EQ(write_property_stream(std::span(&entry, 1), ByteOrder::little, written),
            AAFRESULT_BAD_SIZE);
  entry.value = std::span(value).first(65535);
  EXPECT_EQ(write_property_stream(std::span(&entry, 1), ByteOrder::little, written), 0);
  EXPECT_EQ(written.size(), 4u + 6u + 65535u);
}

TEST(IndexStream, OfAVector) {
  const Bytes stream = bytes_of({2, 0, 0, 0, 9, 0, 0, 0, 0xff, 0xff, 0xff, 0xff,  //
                                 7, 0, 0, 0, 3, 0, 0, 0});
  VectorIndex index;
  ASSERT_EQ(parse_index(stream, ByteOrder::little, index), AAFRESULT_SUCCESS);
  EXPECT_EQ(index.first_free_key, 9u);
  EXPECT_EQ(index.last_free_key, 0xffffffffu);
  EXPECT_EQ(index.local_keys, (std::vector<std::uint32_t>{7, 3}));
  EXPECT_EQ(write_index(index, ByteOrder::little), stream);
  const Bytes big = bytes_of({0, 0, 0, 2, 0, 0, 0, 9, 0xff, 0xff, 0xff, 0xff,  //
                              0, 0, 0, 7, 0, 0, 0, 3});
  EXPECT_EQ(write_index(index, ByteOrder::big), big);
  VectorIndex read;
  ASSERT_EQ(parse_index(big, ByteOrder::big, read), AAFRESULT_SUCCESS);
  EXPECT_EQ(read.local_keys, index.local_keys);
}

TEST(IndexStream, OfASet) {
  Bytes stream = bytes_of({1,    0,    0,  0, 5, 0, 0, 0, 0xff, 0xff, 0xff, 0xff,  //
                           0x01, 0x1b, 16, 4, 0, 0, 0, 1, 0,    0,    0});
  const Bytes key = bytes_of({2, 2, 3, 1, 0, 2, 0, 0, 6, 0xe, 0x2b, 0x34, 4, 1, 1, 1});
  const Bytes big_key = bytes_of({1, 3, 2, 2, 2, 0, 0, 0, 6, 0xe, 0x2b, 0x34, 4, 1, 1, 1});
  stream.insert(stream.end(), key.begin(), key.end());
  SetIndex index;
  ASSERT_EQ(parse_index(stream, ByteOrder::little, index), AAFRESULT_SUCCESS);
  EXPECT_EQ(index.key_pid, 0x1b01);
  ASSERT_EQ(index.entries.size(), 1u);
  EXPECT_EQ(index.entries[0].local_key, 4u);
  EXPECT_EQ(index.entries[0].reference_count, 1u);
  EXPECT_EQ(index.entries[0].key.auid(), kAAFDataDef_Sound);
  EXPECT_EQ(write_index(index, ByteOrder::little), stream);
  const Bytes big = write_index(index, ByteOrder::big);
  EXPECT_TRUE(std::equal(big_key.begin(), big_key.end(), big.end() - 16));
  SetIndex read;
  ASSERT_EQ(parse_index(big, ByteOrder::big, read), AAFRESULT_SUCCESS);
  EXPECT_EQ(read.entries[0].key, index.entries[0].key);
}

TEST(IndexStream, OfWeakReferences) {
  Bytes stream = bytes_of({1, 0, 0, 0, 3, 0, 5, 0, 16});
  stream.insert(stream.end(), 16, std::byte{8});
  WeakIndex index;
  ASSERT_EQ(parse_index(stream, ByteOrder::little, index), AAFRESULT_SUCCESS);
  EXPECT_EQ(index.tag, 3);
  EXPECT_EQ(index.key_pid, 5);
  ASSERT_EQ(index.keys.size(), 1u);
  EXPECT_EQ(write_index(index, ByteOrder::little), stream);
}

TEST(IndexStream, IsRefusedWhenItsCountIsMoreThanItHolds) {
  VectorIndex vector;
  SetIndex set;
  WeakIndex weak;
  const Bytes many = bytes_of({0xff, 0xff, 0xff, 0xff, 0, 0, 0, 0, 16, 0, 0, 0, 1, 2, 16, 4});
  EXPECT_EQ(parse_index(many, ByteOrder::little, vector), AAFRESULT_BADCONTAINER);
  EXPECT_EQ(parse_index(many, ByteOrder::little, set), AAFRESULT_BADCONTAINER);
  EXPECT_EQ(parse_index(many, ByteOrder::little, weak), AAFRESULT_BADCONTAINER);
  for (std::size_t length = 0; length < 8; ++length) {
    EXPECT_EQ(parse_index(std::span(many).first(length), ByteOrder::little, vector),
              AAFRESULT_BADCONTAINER);
  }
  const Bytes long_key = bytes_of({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 33});
  EXPECT_EQ(parse_index(long_key, ByteOrder::little, set), AAFRESULT_BADCONTAINER);
  const Bytes no_key = bytes_of({1, 0, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(parse_index(no_key, ByteOrder::little, weak), AAFRESULT_BADCONTAINER);
}

TEST(StoredKey, OfAMobSwapsOnlyItsMaterialNumber) {
  aafMobID_t id{};
  id.SMPTELabel[0] = 1;
  id.SMPTELabel[1] = 2;
  id.material.Data1 = 0x01020304;
  const StoredKey swapped = StoredKey(id).swapped();
  EXPECT_EQ(swapped.bytes()[0], std::byte{1});
  EXPECT_EQ(swapped.bytes()[1], std::byte{2});
  EXPECT_EQ(swapped.bytes()[16], std::byte{1});
  EXPECT_EQ(swapped.bytes()[19], std::byte{4});
  EXPECT_EQ(swapped.swapped(), StoredKey(id));
}

TEST(ReferencedProperties, AreReadAndWritten) {
  const Bytes stream = bytes_of({0x4c, 2, 0, 7,    0, 0,    0,  // two paths, seven numbers
                                 1,    0, 3, 0,    0, 0,        //
                                 2,    0, 4, 0x3b, 5, 0x26, 0, 0});
  ReferencedProperties table;
  ASSERT_EQ(table.parse(stream), AAFRESULT_SUCCESS);
  ASSERT_NE(table.path_of(1), nullptr);
  EXPECT_EQ(*table.path_of(1), (ReferencedProperties::Path{2, 0x3b04, 0x2605}));
  EXPECT_EQ(table.path_of(2), nullptr);
  EXPECT_EQ(table.write(ByteOrder::little), stream);
  std::uint16_t tag = 99;
  ASSERT_EQ(table.tag_of(*table.path_of(0), tag), AAFRESULT_SUCCESS);
  EXPECT_EQ(tag, 0);
  const ReferencedProperties::Path mobs = {2, 0x3b03, 0x1901};
  ASSERT_EQ(table.tag_of(mobs, tag), AAFRESULT_SUCCESS);
  EXPECT_EQ(tag, 2);
  ReferencedProperties again;
  ASSERT_EQ(again.parse(table.write(ByteOrder::big)), AAFRESULT_SUCCESS);
  EXPECT_EQ(again.paths(), table.paths());
}

TEST(ReferencedProperties, AreRefusedWhenTheyContradictThemselves) {
  ReferencedProperties table;
  EXPECT_EQ(table.parse({}), AAFRESULT_BADCONTAINER);
  EXPECT_EQ(table.parse(bytes_of({0x4c, 1, 0})), AAFRESULT_BADCONTAINER);
  EXPECT_EQ(table.parse(bytes_of({0x55, 0, 0, 0, 0, 0, 0})), AAFRESULT_BADCONTAINER);
  // One path told, and none there; no end of a path; more numbers than bytes.
  EXPECT_EQ(table.parse(bytes_of({0x4c, 1, 0, 0, 0, 0, 0})), AAFRESULT_BADCONTAINER);
  EXPECT_EQ(table.parse(bytes_of({0x4c, 1, 0, 1, 0, 0, 0, 1, 0})), AAFRESULT_BADCONTAINER);
  EXPECT_EQ(table.parse(bytes_of({0x4c, 1, 0, 0xff, 0xff, 0xff, 0xff, 0, 0})),
            AAFRESULT_BADCONTAINER);
}

TEST(StorageName, IsTheTablesForEveryProperty) {
  for (const PropertyRow& row : property_table) {
    if (row.storage_name.empty()) continue;
    EXPECT_EQ(storage_name(widen(row.name), row.pid, row.form), widen(row.storage_name));
  }
}

TEST(StorageName, TellsElementsByTheirKeys) {
  EXPECT_EQ(element_name(u"Slots-4403", 0), u"Slots-4403{0}");
  EXPECT_EQ(element_name(u"Slots-4403", 26), u"Slots-4403{1a}");
  EXPECT_EQ(element_name(u"Slots-4403", 0xffffffff), u"Slots-4403{ffffffff}");
  EXPECT_EQ(index_name(u"Slots-4403"), u"Slots-4403 index");
}

// 31 characters are the most that a storage's name can have.
TEST(StorageName, FitsWhateverThePropertyIsCalled) {
  const std::u16string name(500, u'x');
  for (const StoredForm form : {StoredForm::strong_reference, StoredForm::data_stream}) {
    EXPECT_EQ(storage_name(name, 0xffff, form).size(), 31u);
  }
  const std::u16string collection = storage_name(name, 0xffff, StoredForm::strong_set);
  EXPECT_EQ(collection.size(), 21u);
  EXPECT_EQ(element_name(collection, 0xffffffff).size(), 31u);
  EXPECT_EQ(index_name(collection).size(), 27u);
  EXPECT_EQ(storage_name(u"AB", 1, StoredForm::strong_vector), u"AB-1");
}

}  // namespace
}  // namespace aafobj
