#include "tests/aafobj/model/object_trees.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "aafobj/model/stored_values.h"
#include "aafobj/model/tree_walk.h"

namespace aafobj::testing {
namespace {

std::string hexadecimal(std::span<const std::byte> bytes) {
  std::string text;
  for (const std::byte byte : bytes) {
    text += "0123456789abcdef"[static_cast<unsigned>(byte) >> 4];
    text += "0123456789abcdef"[static_cast<unsigned>(byte) & 15];
  }
  return text;
}

std::string stream_text(StoredObject& object, std::uint16_t pid) {
  Stream stream;
  if (object.open_stream(pid, stream) < 0) return "no stream";
  std::uint64_t sum = 14695981039346656037u;
  std::vector<std::byte> block(65536);
  for (std::size_t count = 1; count > 0;) {
    if (stream.read(block, count) != Result::ok) return "unreadable";
    for (std::size_t i = 0; i < count; ++i) {
      sum = (sum ^ static_cast<std::uint8_t>(block[i])) * 1099511628211u;
    }
  }
  return std::to_string(stream.size()) + " bytes " + std::to_string(sum);
}

std::string target_text(ObjectFile& file, const WeakTarget& target) {
  std::string text;
  if (const auto* path = file.referenced_properties().path_of(target.tag)) {
    for (const std::uint16_t step : *path)
      text += std::to_string(step) + "/";
  }
  return text + " " + std::to_string(target.key_pid) + " " + hexadecimal(target.key.bytes());
}

std::string value_text(StoredObject& object, const Property& property) {
  std::span<const std::byte> bytes;
  if (object.get_raw(property.pid, bytes) >= 0) return hexadecimal(bytes);
  if (property.form == StoredForm::data_stream) return stream_text(object, property.pid);
  WeakTarget target;
  if (object.get_weak(property.pid, target) >= 0) return target_text(object.file(), target);
  std::vector<WeakTarget> targets;
  if (object.get_weak_list(property.pid, targets) >= 0) {
    std::string text;
    for (const WeakTarget& each : targets)
      text += target_text(object.file(), each) + "; ";
    return text;
  }
  std::string text;
  StoredKey key;
  StoredObject* element = nullptr;
  for (bool first = true; object.next_element(property.pid, key, first, element) >= 0 && element;
       first = false) {
    text += hexadecimal(key.bytes()) + " ";
  }
  std::vector<StoredObject*> contained;
  if (object.contained_objects(property.pid, contained) < 0) return "unreadable";
  return text + std::to_string(contained.size()) + " objects";
}

}  // namespace

MemoryFile new_file(FileKind kind) {
  MemoryFile made;
  made.storage = std::make_shared<MemoryStorage>();
  std::unique_ptr<CompoundFile> container;
  EXPECT_EQ(CompoundFile::create(made.storage, kind, container), Result::ok);
  EXPECT_EQ(ObjectFile::create(std::move(container), made.file), AAFRESULT_SUCCESS);
  return made;
}

std::unique_ptr<ObjectFile> open_bytes(std::vector<std::byte> bytes, Access access) {
  auto storage = std::make_shared<MemoryStorage>(std::move(bytes), access == Access::modify);
  std::unique_ptr<CompoundFile> container;
  std::unique_ptr<ObjectFile> file;
  EXPECT_EQ(CompoundFile::open(storage, access, container), Result::ok);
  if (container) {
    EXPECT_EQ(ObjectFile::open(std::move(container), file), AAFRESULT_SUCCESS);
  }
  return file;
}

std::string tree_text(StoredObject& top) {
  std::string text;
  const AAFRESULT walked = walk_tree(top, [&](StoredObject& object) {
    text += to_text(object.class_def().identifier) + "\n";
    for (const Property& property : object.properties()) {
      text += "  " + std::to_string(property.pid) + " " +
              std::to_string(static_cast<unsigned>(property.form)) + " " +
              value_text(object, property) + "\n";
    }
    return AAFRESULT_SUCCESS;
  });
  return text + "result " + std::to_string(walked) + "\n";
}

std::size_t RandomTree::below(std::size_t count) {
  return m_random() % count;
}

std::vector<std::byte> RandomTree::random_bytes(std::size_t count) {
  std::vector<std::byte> bytes(count);
  for (std::byte& byte : bytes)
    byte = static_cast<std::byte>(m_random());
  return bytes;
}

ClassIndex RandomTree::random_class(ClassIndex ancestor) {
  std::vector<ClassIndex> found;
  for (const ClassRow& row : class_table) {
    if (row.is_concrete && is_kind_of(aafobj::index_of(row), ancestor)) {
      found.push_back(aafobj::index_of(row));
    }
  }
  return found.empty() ? ClassIndex::none : found[below(found.size())];
}

ClassIndex RandomTree::target_of(const PropertyDef& property) {
  const TypeDef* type = m_file.meta_model().find_type(property.type);
  const ClassDef* target =
      type ? m_file.meta_model().find_class(type->element ? type->element->target : type->target)
           : nullptr;
  return target ? target->nearest : ClassIndex::none;
}

StoredObject* RandomTree::make(ClassIndex index, int depth) {
  StoredObject* object = nullptr;
  EXPECT_EQ(m_file.create_object(index, object), AAFRESULT_SUCCESS);
  for (const ClassDef* cls = &object->class_def(); cls; cls = cls->parent) {
    for (const PropertyDef* property : m_file.meta_model().own_properties(*cls)) {
      if (below(4) != 0) fill(*object, *property, depth);
    }
  }
  return object;
}

void RandomTree::fill(StoredObject& object, const PropertyDef& property, int depth) {
  const bool is_single = property.form == StoredForm::strong_reference;
  switch (property.form) {
    case StoredForm::data:
      return fill_data(object, property);
    case StoredForm::strong_set:
      return fill_set(object, property, depth);
    case StoredForm::strong_reference:
    case StoredForm::strong_vector: {
      if (depth <= 0) return;
      for (std::size_t i = is_single ? 1 : below(4); i > 0; --i) {
        const ClassIndex index = random_class(target_of(property));
        if (index == ClassIndex::none) return;
        StoredObject* child = make(index, depth - 1);
        std::size_t count = 0;
        EXPECT_TRUE(is_single || object.count_elements(property.pid, count) >= 0);
        EXPECT_EQ(is_single ? object.set_object(property.pid, *child)
                            : object.insert_at(property.pid, below(count + 1), *child),
                  AAFRESULT_SUCCESS);
      }
      return;
    }
    case StoredForm::weak_reference: {
      WeakTarget target;
      constexpr std::uint16_t path[] = {2, 0x3b04, 0x2605};
      EXPECT_EQ(m_file.tag_of(path, target.tag), AAFRESULT_SUCCESS);
      target.key_pid = pid::DefinitionObject_Identification;
      target.key = StoredKey(random_bytes(16));
      EXPECT_EQ(object.set_weak(property.pid, target), AAFRESULT_SUCCESS);
      return;
    }
    case StoredForm::weak_vector:
    case StoredForm::weak_set: {
      std::vector<WeakTarget> targets(below(5));
      for (WeakTarget& target : targets)
        target = {0, 5, StoredKey(random_bytes(16))};
      EXPECT_EQ(object.set_weak_list(property.pid, targets), AAFRESULT_SUCCESS);
      return;
    }
    default:
      return;
  }
}

void RandomTree::fill_data(StoredObject& object, const PropertyDef& property) {
  const TypeDef* type = m_file.meta_model().find_type(property.type);
  ASSERT_NE(type, nullptr);
  std::size_t size = type->size_bytes;
  if (size == 0) size = 1 + (below(50) == 0 ? below(65535) : below(200));
  EXPECT_EQ(object.set_data(property.pid, random_bytes(size)), AAFRESULT_SUCCESS);
}

void RandomTree::fill_set(StoredObject& object, const PropertyDef& property, int depth) {
  if (depth <= 0) return;
  const std::size_t key_bytes =
      property.pid == pid::ContentStorage_Mobs || property.pid == pid::ContentStorage_EssenceData
          ? 32
          : 16;
  for (std::size_t i = below(5); i > 0; --i) {
    const ClassIndex index = random_class(target_of(property));
    if (index == ClassIndex::none) return;
    StoredObject* child = make(index, depth - 1);
    EXPECT_EQ(object.insert_keyed(property.pid, StoredKey(random_bytes(key_bytes)), *child),
              AAFRESULT_SUCCESS);
  }
}

void RandomTree::change(StoredObject& object, int depth) {
  std::vector<std::pair<std::uint16_t, StoredForm>> there;
  for (const Property& property : object.properties()) {
    there.emplace_back(property.pid, property.form);
  }
  for (const auto& [pid, form] : there) {
    const PropertyDef* definition = m_file.meta_model().find_property(object.class_def(), pid);
    ASSERT_NE(definition, nullptr);
    std::size_t count = 0;
    switch (below(6)) {
      case 0:
        EXPECT_EQ(object.remove(pid), AAFRESULT_SUCCESS);
        break;
      case 1:
        fill(object, *definition, depth);
        break;
      case 2:
        if (form != StoredForm::strong_vector) break;
        EXPECT_EQ(object.count_elements(pid, count), AAFRESULT_SUCCESS);
        if (count > 0) {
          EXPECT_EQ(object.remove_at(pid, below(count)), AAFRESULT_SUCCESS);
        }
        break;
      case 3: {
        if (form != StoredForm::strong_set) break;
        StoredKey key;
        StoredObject* element = nullptr;
        EXPECT_EQ(object.next_element(pid, key, true, element), AAFRESULT_SUCCESS);
        if (element) {
          EXPECT_EQ(object.remove_keyed(pid, key), AAFRESULT_SUCCESS);
        }
        break;
      }
      default:
        break;
    }
  }
}

}  // namespace aafobj::testing
