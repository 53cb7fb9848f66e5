#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "aafobj/container/compound_file.h"

namespace aafobj {

/// Lets GoogleTest print a result by its text.
void PrintTo(Result result, std::ostream* out);

namespace test {

using Bytes = std::vector<std::byte>;

/// What a stream or storage of a tree is expected to hold.
struct Node {
  bool is_storage = false;
  ClassId class_id{};
  Bytes bytes;
  std::map<std::u16string, Node> children;  // upper-case names only
  bool operator==(const Node&) const = default;
};

/// `count` bytes that depend on `seed` and on their place.
Bytes pattern(std::size_t count, unsigned seed);

ClassId class_of(unsigned number);

/// Makes an empty file in memory.
std::shared_ptr<MemoryStorage> make_file(FileKind kind, std::unique_ptr<CompoundFile>& file);

/// Opens a copy of these bytes.
Result open_bytes(const Bytes& bytes, Access access, std::unique_ptr<CompoundFile>& file);

/// Reads the whole tree below a storage. A failed operation fails the test.
Node read_tree(CompoundFile& file, StorageId storage = k_root_storage);

/// Does everything that a reader can do, whatever the bytes are. Gives the
/// first failure, after going on with the rest.
Result exercise(CompoundFile& file);

/// A path in the system's temporary folder; the file goes with the object.
class TemporaryFile {
 public:
  TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();
  const std::filesystem::path& path() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

}  // namespace test
}  // namespace aafobj
