// Files that we would not write: in the other byte order, with forms and properties that
// nobody knows, and with contradictions between objects.

#include <gtest/gtest.h>

#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/model/property_stream.h"
#include "aafobj/model/stored_values.h"
#include "tests/aafobj/model/hand_made_file.h"
#include "tests/aafobj/model/object_trees.h"

namespace aafobj {
namespace {

using testing::Bytes;
using testing::bytes_of;
using testing::HandMadeFile;
using testing::stored;

Bytes big_text(std::u16string_view text) {
  ByteWriter writer(ByteOrder::big);
  writer.put_text(text);
  return writer.release();
}

// A big-endian header, with a number in each place where the order counts.
void put_big_header(HandMadeFile& file) {
  const StorageId header = file.put_top();
  Bytes weak =
      bytes_of({0, 0, 0, 5, 16, 0x0d, 1, 1, 1, 1, 1, 0x2f, 0, 6, 14, 0x2b, 0x34, 2, 6, 1, 1});
  file.put_properties(header, ByteOrder::big,
                      {{0x0101, StoredForm::weak_reference, weak},
                       {0x3b01, StoredForm::data, bytes_of({0x4d, 0x4d})},
                       {0x3b02, StoredForm::data, bytes_of({0x07, 0xea, 11, 21, 1, 2, 3, 4})},
                       {0x3b05, StoredForm::data, bytes_of({1, 2})},
                       {0x3b06, StoredForm::strong_vector, big_text(u"Identifi-ionList-3b06")},
                       {0x3b07, StoredForm::data, bytes_of({0, 0, 0, 1})},
                       {0x9999, StoredForm::data, bytes_of({1, 2, 3})}});
  file.put(header, u"Identifi-ionList-3b06 index",
           bytes_of({0, 0, 0, 1, 0, 0, 0, 6, 0xff, 0xff, 0xff, 0xff, 0, 0, 0, 5}));
  const StorageId identification =
      file.add(header, u"Identifi-ionList-3b06{5}", AUID_AAFIdentification);
  file.put_properties(identification, ByteOrder::big,
                      {{0x3c01, StoredForm::data, big_text(u"Büro")},
                       {0x3c03, StoredForm::data, bytes_of({0, 1, 0, 2, 0, 3, 0, 4, 5})},
                       {0x3c05, StoredForm::data,
                        bytes_of({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16})}});
}

TEST(ForeignFiles, BigEndianValuesAreRead) {
  HandMadeFile made;
  put_big_header(made);
  const auto file = made.open();
  ASSERT_NE(file, nullptr);
  StoredObject* header = nullptr;
  ASSERT_EQ(file->header(header), AAFRESULT_SUCCESS);
  std::uint16_t order = 0;
  EXPECT_EQ(get_value(*header, pid::Header_ByteOrder, order), AAFRESULT_SUCCESS);
  EXPECT_EQ(order, 0x4d4d);
  aafTimeStamp_t time{};
  EXPECT_EQ(get_value(*header, pid::Header_LastModified, time), AAFRESULT_SUCCESS);
  EXPECT_EQ(time.date.year, 2026);
  EXPECT_EQ(time.date.day, 21);
  EXPECT_EQ(time.time.fraction, 4);
  std::uint32_t version = 0;
  EXPECT_EQ(get_value(*header, pid::Header_ObjectModelVersion, version), AAFRESULT_SUCCESS);
  EXPECT_EQ(version, 1u);
  WeakTarget target;
  ASSERT_EQ(header->get_weak(0x0101, target), AAFRESULT_SUCCESS);
  EXPECT_EQ(target.key_pid, 5);
  EXPECT_EQ(target.key.auid(), AUID_AAFHeader);
  StoredObject* identification = nullptr;
  ASSERT_EQ(header->element_at(pid::Header_IdentificationList, 0, identification), 0);
  std::u16string company;
  EXPECT_EQ(get_text(*identification, pid::Identification_CompanyName, company), 0);
  EXPECT_EQ(company, u"Büro");
  aafUID_t product{};
  EXPECT_EQ(get_value(*identification, pid::Identification_ProductID, product), 0);
  EXPECT_EQ(product.Data1, 0x01020304u);
  EXPECT_EQ(product.Data3, 0x0708u);
  EXPECT_EQ(product.Data4[0], 9);
}

TEST(ForeignFiles, BigEndianObjectsStaySoWhenTheyAreSaved) {
  HandMadeFile made;
  put_big_header(made);
  const auto file = made.open(Access::modify);
  ASSERT_NE(file, nullptr);
  StoredObject* header = nullptr;
  ASSERT_EQ(file->header(header), AAFRESULT_SUCCESS);
  ASSERT_EQ(set_value(*header, pid::Header_ObjectModelVersion, std::uint32_t{0x01020304}), 0);
  ASSERT_EQ(file->save(), AAFRESULT_SUCCESS);
  StorageId storage{};
  ASSERT_EQ(file->container().open_storage(k_root_storage, u"Header-2", storage), Result::ok);
  Bytes stream;
  ASSERT_EQ(file->container().read_stream(storage, u"properties", 1000, stream), Result::ok);
  ByteOrder order{};
  std::vector<PropertyEntry> entries;
  ASSERT_EQ(parse_property_stream(stream, order, entries), AAFRESULT_SUCCESS);
  EXPECT_EQ(order, ByteOrder::big);
  ASSERT_EQ(entries.size(), 7u);
  const auto value = [&](std::size_t i) {
    return Bytes(entries[i].value.begin(), entries[i].value.end());
  };
  EXPECT_EQ(value(1), bytes_of({0x4d, 0x4d}));
  EXPECT_EQ(value(2), bytes_of({0x07, 0xea, 11, 21, 1, 2, 3, 4}));
  EXPECT_EQ(value(4), big_text(u"Identifi-ionList-3b06"));
  EXPECT_EQ(value(5), bytes_of({1, 2, 3, 4}));
  EXPECT_EQ(value(6), bytes_of({1, 2, 3}));  // nobody knows its type, so it stays
}

TEST(ForeignFiles, WhatNobodyKnowsIsKept) {
  HandMadeFile made;
  const StorageId header = made.put_top();
  made.put_properties(header, ByteOrder::little,
                      {{0x3b01, StoredForm::data, bytes_of({0x49, 0x49})},
                       {0x7123, StoredForm::data, bytes_of({1})},
                       {0xc001, static_cast<StoredForm>(0x40), bytes_of({4, 5})},
                       {0xc002, static_cast<StoredForm>(0x777), {}},
                       {0xc003, StoredForm::strong_reference, stored_text(u"Odd-c003")}});
  made.put(header, u"loose stream", bytes_of({7, 7, 7}));
  const StorageId odd = made.add(header, u"Odd-c003", {0x12345678, 1, 1, {}});
  made.put_properties(odd, ByteOrder::little, {{0x8001, StoredForm::data, bytes_of({9})}});
  const StorageId loose = made.add(header, u"loose storage", {0x77, 0, 0, {}});
  made.put(made.add(loose, u"inner", {}), u"innermost", Bytes(5000, std::byte{3}));

  const auto file = made.open(Access::modify);
  ASSERT_NE(file, nullptr);
  StoredObject* object = nullptr;
  ASSERT_EQ(file->header(object), AAFRESULT_SUCCESS);
  const std::string text = testing::tree_text(*object);
  ASSERT_EQ(object->properties().size(), 5u);
  StoredObject* child = nullptr;
  ASSERT_EQ(object->get_object(0xc003, child), AAFRESULT_SUCCESS);
  EXPECT_TRUE(child->class_def().name.empty());
  EXPECT_TRUE(child->is_kind_of(ClassIndex::InterchangeObject));
  std::span<const std::byte> raw;
  EXPECT_EQ(object->get_raw(0xc001, raw), AAFRESULT_SUCCESS);
  EXPECT_EQ(raw.size(), 2u);

  auto storage = std::make_shared<MemoryStorage>();
  std::unique_ptr<CompoundFile> copy;
  ASSERT_EQ(CompoundFile::create(storage, FileKind::aaf_4k, copy), Result::ok);
  ASSERT_EQ(file->save_copy(*copy), AAFRESULT_SUCCESS);
  ASSERT_EQ(copy->close(), Result::ok);
  // The change of one value leaves the rest alone, in place as well.
  ASSERT_EQ(set_value(*object, pid::Header_ByteOrder, std::uint16_t{0x4949}), AAFRESULT_SUCCESS);
  ASSERT_EQ(file->save(), AAFRESULT_SUCCESS);
  const auto copied = testing::open_bytes(storage->bytes());
  ASSERT_NE(copied, nullptr);
  for (ObjectFile* each : {copied.get(), file.get()}) {
    ASSERT_EQ(each->header(object), AAFRESULT_SUCCESS);
    EXPECT_EQ(testing::tree_text(*object), text);
    CompoundFile& container = each->container();
    StorageId at{};
    Bytes bytes;
    ASSERT_EQ(container.open_storage(k_root_storage, u"Header-2", at), Result::ok);
    EXPECT_EQ(container.read_stream(at, u"loose stream", 100, bytes), Result::ok);
    EXPECT_EQ(bytes, bytes_of({7, 7, 7}));
    ASSERT_EQ(container.open_storage(at, u"loose storage", at), Result::ok);
    ClassId class_id{};
    EXPECT_EQ(container.class_id(at, class_id), Result::ok);
    EXPECT_EQ(class_id, stored({0x77, 0, 0, {}}));
    ASSERT_EQ(container.open_storage(at, u"inner", at), Result::ok);
    EXPECT_EQ(container.read_stream(at, u"innermost", 10000, bytes), Result::ok);
    EXPECT_EQ(bytes, Bytes(5000, std::byte{3}));
  }
}

TEST(ForeignFiles, OneStorageStandsForOneObject) {
  HandMadeFile made;
  const StorageId header = made.put_top();
  made.put_properties(header, ByteOrder::little,
                      {{0x3b03, StoredForm::strong_reference, stored_text(u"Content-3b03")},
                       {0x3b04, StoredForm::strong_reference, stored_text(u"Content-3b03")}});
  made.put_properties(made.add(header, u"Content-3b03", AUID_AAFContentStorage), ByteOrder::little,
                      {});
  const auto file = made.open();
  ASSERT_NE(file, nullptr);
  StoredObject* content = nullptr;
  StoredObject* dictionary = nullptr;
  EXPECT_EQ(file->content(content), AAFRESULT_SUCCESS);
  EXPECT_EQ(file->dictionary(dictionary), AAFRESULT_BADCONTAINER);
}

TEST(ForeignFiles, ObjectsInObjectsHaveABoundedDepth) {
  HandMadeFile made;
  StorageId at = made.put_top();
  for (int depth = 0; depth < 600; ++depth) {
    made.put_properties(at, ByteOrder::little,
                        {{0x3b03, StoredForm::strong_reference, stored_text(u"x")}});
    at = made.add(at, u"x", AUID_AAFSequence);
  }
  made.put_properties(at, ByteOrder::little, {});
  const auto file = made.open();
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(testing::tree_text(file->root())
                  .ends_with("result " + std::to_string(AAFRESULT_BADCONTAINER) + "\n"));
}

TEST(ForeignFiles, WithoutAHeaderThereIsNoFile) {
  HandMadeFile made;
  made.put_properties(k_root_storage, ByteOrder::little, {});
  EXPECT_EQ(made.open_result(), AAFRESULT_BADCONTAINER);
  HandMadeFile missing;
  missing.put_properties(k_root_storage, ByteOrder::little,
                         {{2, StoredForm::strong_reference, stored_text(u"Header-2")}});
  EXPECT_EQ(missing.open_result(), AAFRESULT_BADCONTAINER);
  HandMadeFile wrong;
  wrong.put_properties(k_root_storage, ByteOrder::little,
                       {{2, StoredForm::data, stored_text(u"Header-2")}});
  EXPECT_LT(wrong.open_result(), 0);
}

// Definitions that need themselves come to no end, and are not known.
TEST(ForeignFiles, DefinitionsThatNeedThemselvesAreUnknown) {
  const aafUID_t cls = {0xabcd, 0, 0, {1}};
  const aafUID_t type = {0xabce, 0, 0, {1}};
  testing::MemoryFile made = testing::new_file();
  StoredObject* dictionary = nullptr;
  StoredObject* object = nullptr;
  ASSERT_EQ(made.file->meta_dictionary(dictionary), AAFRESULT_SUCCESS);
  WeakTarget self;
  ASSERT_EQ(made.file->create_object(ClassIndex::ClassDefinition, object), AAFRESULT_SUCCESS);
  ASSERT_EQ(set_value(*object, pid::MetaDefinition_Identification, cls), AAFRESULT_SUCCESS);
  ASSERT_EQ(set_text(*object, pid::MetaDefinition_Name, u"Ouroboros"), AAFRESULT_SUCCESS);
  ASSERT_EQ(dictionary->insert_keyed(pid::MetaDictionary_ClassDefinitions, StoredKey(cls), *object),
            AAFRESULT_SUCCESS);
  ASSERT_EQ(made.file->target_to(*object, self), AAFRESULT_SUCCESS);
  ASSERT_EQ(object->set_weak(pid::ClassDefinition_ParentClass, self), AAFRESULT_SUCCESS);
  ASSERT_EQ(made.file->create_object(ClassIndex::TypeDefinitionFixedArray, object), 0);
  ASSERT_EQ(set_value(*object, pid::MetaDefinition_Identification, type), AAFRESULT_SUCCESS);
  ASSERT_EQ(set_text(*object, pid::MetaDefinition_Name, u"Nest"), AAFRESULT_SUCCESS);
  ASSERT_EQ(dictionary->insert_keyed(pid::MetaDictionary_TypeDefinitions, StoredKey(type), *object),
            AAFRESULT_SUCCESS);
  ASSERT_EQ(made.file->target_to(*object, self), AAFRESULT_SUCCESS);
  ASSERT_EQ(object->set_weak(pid::TypeDefinitionFixedArray_ElementType, self), AAFRESULT_SUCCESS);
  EXPECT_EQ(made.file->meta_model().find_class(cls), nullptr);
  EXPECT_EQ(made.file->meta_model().find_type(type), nullptr);
  const ClassDef& unknown = made.file->meta_model().class_or_unknown(cls);
  EXPECT_EQ(unknown.nearest, ClassIndex::InterchangeObject);
}

TEST(ForeignFiles, IndirectValuesTellTheirOwnOrder) {
  HandMadeFile made;
  const StorageId header = made.put_top();
  const StorageId value = made.add(header, u"x", AUID_AAFTaggedValue);
  made.put_properties(header, ByteOrder::little,
                      {{0xc000, StoredForm::strong_reference, stored_text(u"x")}});
  // An Int32 of 258 in a big-endian object.
  made.put_properties(value, ByteOrder::big,
                      {{0x5003, StoredForm::data, bytes_of({0x42, 1,    1, 7, 0, 0, 0, 0, 0, 6, 14,
                                                            0x2b, 0x34, 1, 4, 1, 1, 0, 0, 1, 2})}});
  const auto file = made.open();
  ASSERT_NE(file, nullptr);
  StoredObject* object = nullptr;
  ASSERT_EQ(file->header(object), AAFRESULT_SUCCESS);
  ASSERT_EQ(object->get_object(0xc000, object), AAFRESULT_SUCCESS);
  IndirectValue read;
  ASSERT_EQ(get_indirect(*object, pid::TaggedValue_Value, read), AAFRESULT_SUCCESS);
  EXPECT_EQ(read.type, row_of(TypeIndex::Int32).identifier);
  EXPECT_EQ(Bytes(read.bytes.begin(), read.bytes.end()), bytes_of({2, 1, 0, 0}));
}

// A reference to something in a damaged set can stand in a file a million times.
TEST(ForeignFiles, DamageIsLookedAtOnce) {
  HandMadeFile made;
  const StorageId header = made.put_top();
  made.put_properties(header, ByteOrder::little,
                      {{0x3b06, StoredForm::strong_vector, stored_text(u"Identifi-ionList-3b06")}});
  made.put(header, u"Identifi-ionList-3b06 index", Bytes(20000, std::byte{0xff}));
  std::shared_ptr<CountingStorage> storage;
  const auto file = made.open_counted(storage);
  ASSERT_NE(file, nullptr);
  StoredObject* top = nullptr;
  StoredObject* element = nullptr;
  ASSERT_EQ(file->header(top), AAFRESULT_SUCCESS);
  EXPECT_EQ(top->element_at(0x3b06, 0, element), AAFRESULT_BADCONTAINER);
  const std::size_t reads = storage->reads;
  EXPECT_GT(reads, 0U);
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(top->element_at(0x3b06, 0, element), AAFRESULT_BADCONTAINER);
  EXPECT_EQ(storage->reads, reads);
}

TEST(ForeignFiles, DamagedPropertiesAreLookedAtOnce) {
  HandMadeFile made;
  const StorageId header = made.put_top();
  made.put_properties(header, ByteOrder::little,
                      {{0x3b03, StoredForm::strong_reference, stored_text(u"Content-3b03")}});
  made.put(made.add(header, u"Content-3b03", AUID_AAFContentStorage), u"properties",
           Bytes(20000, std::byte{0xff}));
  std::shared_ptr<CountingStorage> storage;
  const auto file = made.open_counted(storage);
  ASSERT_NE(file, nullptr);
  StoredObject* content = nullptr;
  ASSERT_EQ(file->content(content), AAFRESULT_SUCCESS);
  EXPECT_EQ(content->load(), AAFRESULT_BADCONTAINER);
  const std::size_t reads = storage->reads;
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(content->load(), AAFRESULT_BADCONTAINER);
  EXPECT_EQ(storage->reads, reads);
}

}  // namespace
}  // namespace aafobj
