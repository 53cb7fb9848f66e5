// Builds storages and streams as the input tells, opens them as a file of objects, dumps it and
// walks it. What can be walked can be copied, and the copy holds the same objects.
//
// Input: 1, length of name, name, class (16 bytes) makes a storage and goes into it; 2 goes
// back; 3, length of name, name, length (2 bytes), bytes makes a stream.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "aafobj/dump/tree_dump.h"
#include "aafobj/model/object_file.h"
#include "aafobj/model/stored_values.h"
#include "aafobj/model/tree_walk.h"

namespace {

using namespace aafobj;

void require(bool truth) {
  if (!truth) std::abort();
}

class Builder {
 public:
  explicit Builder(std::span<const std::byte> input) : m_input(input, ByteOrder::little) {
    require(CompoundFile::create(m_storage, FileKind::aaf_512, m_container) == Result::ok);
  }

  std::shared_ptr<MemoryStorage> build() {
    while (m_input.left() > 0 && step()) {
    }
    require(m_container->close() == Result::ok);
    return m_storage;
  }

 private:
  bool step() {
    switch (m_input.take<std::uint8_t>()) {
      case 1:
        return enter();
      case 2:
        if (m_way.size() > 1) m_way.pop_back();
        return true;
      case 3:
        return add_stream();
      default:
        return false;
    }
  }

  bool enter() {
    const std::u16string name = take_name();
    const std::span<const std::byte> cls = m_input.take_bytes(16);
    if (cls.empty() || m_way.size() > 1000) return false;
    ClassId class_id{};
    std::memcpy(class_id.data(), cls.data(), cls.size());
    StorageId storage{};
    if (m_container->create_storage(m_way.back(), name, class_id, storage) == Result::ok) {
      m_way.push_back(storage);
    }
    return true;
  }

  bool add_stream() {
    const std::u16string name = take_name();
    const std::size_t size = m_input.take<std::uint16_t>();
    const std::span<const std::byte> bytes = m_input.take_bytes(size);
    if (m_input.failed()) return false;
    static_cast<void>(m_container->write_stream(m_way.back(), name, bytes));
    return true;
  }

  std::u16string take_name() {
    std::u16string name;
    for (std::size_t i = m_input.take<std::uint8_t>(); i > 0 && m_input.left() > 0; --i) {
      name.push_back(m_input.take<std::uint8_t>());
    }
    return name;
  }

  ByteReader m_input;
  std::shared_ptr<MemoryStorage> m_storage = std::make_shared<MemoryStorage>();
  std::unique_ptr<CompoundFile> m_container;
  std::vector<StorageId> m_way{k_root_storage};
};

std::unique_ptr<ObjectFile> open(const std::shared_ptr<MemoryStorage>& storage) {
  std::unique_ptr<CompoundFile> container;
  std::unique_ptr<ObjectFile> file;
  require(CompoundFile::open(storage, Access::read, container) == Result::ok);
  if (ObjectFile::open(std::move(container), file) < 0) return nullptr;
  return file;
}

void add(std::string& text, std::span<const std::byte> bytes) {
  for (const std::byte byte : bytes)
    text.push_back(static_cast<char>(byte));
  text.push_back('\n');
}

void read_property(StoredObject& object, const Property& property, std::string& text) {
  MetaModel& meta = object.file().meta_model();
  if (const PropertyDef* known = meta.find_property(object.class_def(), property.pid)) {
    static_cast<void>(meta.find_type(known->type));
  }
  std::u16string words;
  IndirectValue indirect;
  static_cast<void>(get_text(object, property.pid, words));
  static_cast<void>(get_indirect(object, property.pid, indirect));
  text += std::to_string(property.pid) + " " +
          std::to_string(static_cast<unsigned>(property.form)) + " ";
  std::span<const std::byte> bytes;
  if (object.get_raw(property.pid, bytes) >= 0) add(text, bytes);
  std::vector<WeakTarget> targets(1);
  if (object.get_weak(property.pid, targets[0]) < 0) {
    targets.clear();
    static_cast<void>(object.get_weak_list(property.pid, targets));
  }
  StoredObject* found = nullptr;
  for (const WeakTarget& target : targets) {
    add(text, target.key.bytes());
    static_cast<void>(object.file().resolve(target, found));
  }
  StoredKey key;
  for (bool first = true; object.next_element(property.pid, key, first, found) >= 0 && found;
       first = false) {
    add(text, key.bytes());
  }
  Stream stream;
  static_cast<void>(object.open_stream(property.pid, stream));
}

AAFRESULT walk(ObjectFile& file, std::string& text) {
  return walk_tree(file.root(), [&](StoredObject& object) {
    text += to_text(object.class_def().identifier) + "\n";
    for (const Property& property : object.properties())
      read_property(object, property, text);
    return AAFRESULT_SUCCESS;
  });
}

// Holds begins and ends together.
class DumpChecker final : public DumpSink {
 public:
  ~DumpChecker() override { require(m_open == 0); }
  void begin_object(std::string_view class_name, bool) override {
    require(!class_name.empty());
    ++m_open;
  }
  void end_object() override { --m_open; }
  void name(std::string_view name) override { require(!name.empty()); }
  void unknown_property(std::uint16_t) override {}
  void begin_list(std::size_t, bool) override { ++m_open; }
  void end_list() override { --m_open; }
  void scalar(ShownKind, std::string_view) override {}
  void bytes(std::string_view hexadecimal, std::size_t count) override {
    require(hexadecimal.size() / 2 <= count);
  }
  void stream(std::uint64_t) override {}
  void fault(std::string_view words) override { require(!words.empty()); }

 private:
  int m_open = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto file = open(Builder(std::as_bytes(std::span(data, size))).build());
  if (!file) return 0;
  {
    DumpChecker checker;
    dump_tree(file->root(), checker);
  }
  std::string text;
  if (walk(*file, text) < 0) return 0;
  auto storage = std::make_shared<MemoryStorage>();
  std::unique_ptr<CompoundFile> copy;
  require(CompoundFile::create(storage, FileKind::aaf_4k, copy) == Result::ok);
  const AAFRESULT copied = file->save_copy(*copy);
  // A weak list that stands in no index cannot be walked over, but not copied either.
  if (copied < 0) return 0;
  require(copy->close() == Result::ok);
  const auto read = open(storage);
  require(read != nullptr);
  std::string again;
  require(walk(*read, again) >= 0);
  require(again == text);
  return 0;
}
