#pragma once

#include <memory>
#include <random>
#include <string>

#include "aafobj/model/object_file.h"

namespace aafobj::testing {

// A new file in memory, and what it is stored in.
struct MemoryFile {
  std::shared_ptr<MemoryStorage> storage;
  std::unique_ptr<ObjectFile> file;
};
MemoryFile new_file(FileKind kind = FileKind::aaf_512);

// The bytes opened as a file; null with a failure of the test when they cannot be.
std::unique_ptr<ObjectFile> open_bytes(std::vector<std::byte> bytes, Access access = Access::read);

// One line for each object and property below `top`: classes, forms, value bytes, keys, the
// targets of weak references, size and sum of each stream. Equal texts mean equal trees; local
// keys and tags, which carry no meaning, are not in it.
std::string tree_text(StoredObject& top);

// An object with random values in most of its properties, and objects in objects up to a depth.
class RandomTree {
 public:
  RandomTree(ObjectFile& file, unsigned seed) : m_file(file), m_random(seed) {}

  // A concrete class that is the given one or below it.
  ClassIndex random_class(ClassIndex ancestor);
  StoredObject* make(ClassIndex index, int depth);
  // Gives the object other values, elements more and fewer, and takes properties away.
  void change(StoredObject& object, int depth);
  std::size_t below(std::size_t count);

 private:
  void fill(StoredObject& object, const PropertyDef& property, int depth);
  void fill_data(StoredObject& object, const PropertyDef& property);
  void fill_set(StoredObject& object, const PropertyDef& property, int depth);
  std::vector<std::byte> random_bytes(std::size_t count);
  ClassIndex target_of(const PropertyDef& property);

  ObjectFile& m_file;
  std::mt19937 m_random;
};

}  // namespace aafobj::testing
