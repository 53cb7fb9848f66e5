#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "aafobj/model/index_stream.h"
#include "aafobj/model/model_result.h"

namespace aafobj {

class StoredObject;

// Finds the targets of weak references whose way from the root leads through collections, where
// walking it again for each reference would take as long as the collections are long. Every
// object that a way can lead over is visited once; the next change of the file ends the index.
class PathIndex {
 public:
  PathIndex();
  PathIndex(const PathIndex&) = delete;
  PathIndex& operator=(const PathIndex&) = delete;
  ~PathIndex();

  // The first object with the key in a set to which the properties lead, in the order of a walk
  // from the root. Errors: OBJECT_NOT_FOUND, and those of reading what stands before it.
  [[nodiscard]] AAFRESULT find(StoredObject& root, std::span<const std::uint16_t> path,
                               const StoredKey& key, StoredObject*& object);
  void clear();

 private:
  struct Set;
  struct Level;

  static void open_sets(Level& level);
  static void open_below(Level& level);

  std::unique_ptr<Level> m_top;
};

}  // namespace aafobj
