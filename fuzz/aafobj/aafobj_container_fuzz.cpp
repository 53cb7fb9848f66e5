// Opens any bytes as a compound file, reads and checks all of it, and when it
// is sound changes it and holds the result against what was asked for.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "aafobj/container/compound_file.h"

namespace {

using aafobj::Access;
using aafobj::CompoundFile;
using aafobj::Element;
using aafobj::ElementType;
using aafobj::k_root_storage;
using aafobj::MemoryStorage;
using aafobj::Result;
using aafobj::StorageId;
using aafobj::Stream;
using Bytes = std::vector<std::byte>;

void require(bool truth) {
  if (!truth) std::abort();
}

void read_stream(const Stream& stream, std::size_t file_size) {
  require(stream.size() <= file_size);
  Bytes block(stream.size() % 3000 + 1);
  std::uint64_t position = 0;
  std::size_t count = 1;
  while (count != 0) {
    if (stream.read_at(position, block, count) != Result::ok) return;
    position += count;
  }
  require(position == stream.size());
}

void read_storage(CompoundFile& file, StorageId storage, std::size_t file_size) {
  std::vector<Element> elements;
  if (file.children(storage, elements) != Result::ok) return;
  for (const Element& element : elements) {
    Stream stream;
    if (element.type == ElementType::storage) {
      read_storage(file, element.storage, file_size);
    } else if (file.open_stream(storage, element.name, stream) == Result::ok) {
      read_stream(stream, file_size);
    }
  }
}

// A sound file takes any change and stays sound.
void change(CompoundFile& file, std::uint8_t choice) {
  const Bytes bytes(std::size_t{choice} * 60, std::byte{choice});
  std::vector<Element> elements;
  require(file.children(k_root_storage, elements) == Result::ok);
  if (!elements.empty()) {
    const Element& element = elements[choice % elements.size()];
    require(file.remove(k_root_storage, element.name) == Result::ok);
  }
  Element found;
  if (file.find(k_root_storage, u"added", found) == Result::ok) return;
  require(file.write_stream(k_root_storage, u"added", bytes) == Result::ok);
  require(file.flush() == Result::ok);
  require(file.verify() == Result::ok);
  Bytes read;
  require(file.read_stream(k_root_storage, u"added", bytes.size(), read) == Result::ok);
  require(read == bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(size);
  std::transform(data, data + size, bytes.begin(), [](std::uint8_t b) { return std::byte{b}; });
  const std::uint8_t choice = size == 0 ? std::uint8_t{0} : data[size / 2];
  const auto storage = std::make_shared<MemoryStorage>(std::move(bytes));
  std::unique_ptr<CompoundFile> file;
  if (CompoundFile::open(storage, Access::modify, file) != Result::ok) return 0;
  read_storage(*file, k_root_storage, size);
  if (file->verify() != Result::ok) {
    Stream stream;
    require(file->create_stream(k_root_storage, u"refused", stream) != Result::ok);
    return 0;
  }
  change(*file, choice);
  require(file->close() == Result::ok);
  require(CompoundFile::open(storage, Access::read, file) == Result::ok);
  require(file->verify() == Result::ok);
  return 0;
}
