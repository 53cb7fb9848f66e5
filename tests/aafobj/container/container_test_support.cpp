#include "tests/aafobj/container/container_test_support.h"

#include <unistd.h>

#include <algorithm>
#include <ostream>

namespace aafobj {

void PrintTo(Result result, std::ostream* out) {
  *out << '"' << result_text(result) << '"';
}

namespace test {

Bytes pattern(std::size_t count, unsigned seed) {
  Bytes bytes(count);
  std::uint32_t state = seed * 2654435761U + 1;
  for (std::byte& byte : bytes) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<std::byte>(state >> 24);
  }
  return bytes;
}

ClassId class_of(unsigned number) {
  ClassId id{};
  for (std::size_t i = 0; i < id.size(); ++i)
    id[i] = static_cast<std::uint8_t>(number + i);
  return id;
}

std::shared_ptr<MemoryStorage> make_file(FileKind kind, std::unique_ptr<CompoundFile>& file) {
  auto storage = std::make_shared<MemoryStorage>();
  EXPECT_EQ(CompoundFile::create(storage, kind, file), Result::ok);
  return storage;
}

Result open_bytes(const Bytes& bytes, Access access, std::unique_ptr<CompoundFile>& file) {
  return CompoundFile::open(std::make_shared<MemoryStorage>(bytes), access, file);
}

Node read_tree(CompoundFile& file, StorageId storage) {
  Node node;
  node.is_storage = true;
  EXPECT_EQ(file.class_id(storage, node.class_id), Result::ok);
  std::vector<Element> elements;
  EXPECT_EQ(file.children(storage, elements), Result::ok);
  for (const Element& element : elements) {
    if (element.type == ElementType::storage) {
      node.children[element.name] = read_tree(file, element.storage);
      continue;
    }
    Node& child = node.children[element.name];
    EXPECT_EQ(file.read_stream(storage, element.name, std::size_t{1} << 40, child.bytes),
              Result::ok);
    EXPECT_EQ(child.bytes.size(), element.size);
  }
  return node;
}

namespace {

Result read_all(const Stream& stream) {
  Bytes block(100000);
  std::uint64_t position = 0;
  while (true) {
    std::size_t count = 0;
    if (const Result r = stream.read_at(position, block, count); r != Result::ok) return r;
    if (count == 0) return Result::ok;
    position += count;
  }
}

Result exercise_storage(CompoundFile& file, StorageId storage) {
  std::vector<Element> elements;
  Result first = file.children(storage, elements);
  for (const Element& element : elements) {
    Result r = Result::ok;
    if (element.type == ElementType::storage) {
      r = exercise_storage(file, element.storage);
    } else {
      Stream stream;
      r = file.open_stream(storage, element.name, stream);
      if (r == Result::ok) r = read_all(stream);
    }
    if (first == Result::ok) first = r;
  }
  return first;
}

}  // namespace

Result exercise(CompoundFile& file) {
  return exercise_storage(file, k_root_storage);
}

TemporaryFile::TemporaryFile() {
  static int number = 0;
  m_path = std::filesystem::temp_directory_path() /
           ("compound_file_test_" + std::to_string(::getpid()) + "_" + std::to_string(number++));
}

TemporaryFile::~TemporaryFile() {
  std::error_code ignored;
  std::filesystem::remove(m_path, ignored);
}

}  // namespace test
}  // namespace aafobj
