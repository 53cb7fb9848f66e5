#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <vector>

#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/model/property_stream.h"
#include "aafobj/model/stored_values.h"
#include "tests/aafobj/container/counting_storage.h"
#include "tests/aafobj/model/object_trees.h"

// Files that the model itself would not write.
namespace aafobj::testing {

using Bytes = std::vector<std::byte>;

inline Bytes bytes_of(std::initializer_list<int> values) {
  Bytes bytes;
  for (const int value : values)
    bytes.push_back(static_cast<std::byte>(value));
  return bytes;
}

inline ClassId stored(const aafUID_t& id) {
  ClassId class_id{};
  std::memcpy(class_id.data(), &id, sizeof(id));
  return class_id;
}

// A file put together storage by storage.
class HandMadeFile {
 public:
  HandMadeFile() {
    EXPECT_EQ(CompoundFile::create(m_storage, FileKind::aaf_512, m_container), Result::ok);
    EXPECT_EQ(m_container->set_class_id(k_root_storage, stored(root_class_id)), Result::ok);
  }

  CompoundFile& container() { return *m_container; }

  StorageId add(StorageId parent, std::u16string_view name, const aafUID_t& cls) {
    StorageId storage{};
    EXPECT_EQ(m_container->create_storage(parent, name, stored(cls), storage), Result::ok);
    return storage;
  }

  void put(StorageId storage, std::u16string_view name, const Bytes& bytes) {
    EXPECT_EQ(m_container->write_stream(storage, name, bytes), Result::ok);
  }

  struct Value {
    std::uint16_t pid;
    StoredForm form;
    Bytes bytes;
  };
  void put_properties(StorageId storage, ByteOrder order, const std::vector<Value>& values) {
    std::vector<PropertyEntry> entries;
    for (const Value& value : values)
      entries.push_back({value.pid, value.form, value.bytes});
    Bytes stream;
    EXPECT_EQ(write_property_stream(entries, order, stream), AAFRESULT_SUCCESS);
    put(storage, u"properties", stream);
  }

  // The usual top: a root, an empty MetaDictionary, and a header whose storage is returned.
  StorageId put_top() {
    put_properties(k_root_storage, ByteOrder::little,
                   {{1, StoredForm::strong_reference, stored_text(u"MetaDictionary-1")},
                    {2, StoredForm::strong_reference, stored_text(u"Header-2")}});
    put_properties(add(k_root_storage, u"MetaDictionary-1", AUID_AAFMetaDictionary),
                   ByteOrder::little, {});
    return add(k_root_storage, u"Header-2", AUID_AAFHeader);
  }

  std::unique_ptr<ObjectFile> open(Access access = Access::read) {
    EXPECT_EQ(m_container->close(), Result::ok);
    return open_bytes(m_storage->bytes(), access);
  }

  // On a storage that counts.
  std::unique_ptr<ObjectFile> open_counted(std::shared_ptr<CountingStorage>& storage) {
    EXPECT_EQ(m_container->close(), Result::ok);
    storage = std::make_shared<CountingStorage>(m_storage->bytes());
    std::unique_ptr<CompoundFile> container;
    std::unique_ptr<ObjectFile> file;
    EXPECT_EQ(CompoundFile::open(storage, Access::read, container), Result::ok);
    EXPECT_EQ(ObjectFile::open(std::move(container), file), AAFRESULT_SUCCESS);
    return file;
  }

  AAFRESULT open_result() {
    EXPECT_EQ(m_container->close(), Result::ok);
    std::unique_ptr<CompoundFile> container;
    std::unique_ptr<ObjectFile> file;
    EXPECT_EQ(CompoundFile::open(m_storage, Access::read, container), Result::ok);
    return ObjectFile::open(std::move(container), file);
  }

 private:
  std::shared_ptr<MemoryStorage> m_storage = std::make_shared<MemoryStorage>();
  std::unique_ptr<CompoundFile> m_container;
};

}  // namespace aafobj::testing
