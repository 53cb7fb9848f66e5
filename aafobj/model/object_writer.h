#pragma once

#include <vector>

#include "aafobj/model/object_file.h"

namespace aafobj {

// Writes objects into a compound file: the changed ones into their own, or all of them into
// another. Used once.
class ObjectWriter {
 public:
  explicit ObjectWriter(ObjectFile& file) : m_file(file) {}

  [[nodiscard]] AAFRESULT write_changes();
  [[nodiscard]] AAFRESULT write_copy(CompoundFile& copy);

  // Copies the object's streams from another storage into its own, and whatever else stands
  // there that no property of the object tells of.
  [[nodiscard]] AAFRESULT copy_streams(StoredObject& object, StorageId from);

 private:
  struct Place {
    StoredObject* object;
    StorageId to;
  };

  AAFRESULT write_object(StoredObject& object);
  AAFRESULT write_indexes(StoredObject& object, CompoundFile& container, StorageId storage,
                          bool all);
  AAFRESULT encode(StoredObject& object, std::vector<std::byte>& stream);
  void encode_value(StoredObject& object, const Property& property,
                    std::vector<std::byte>& bytes) const;
  AAFRESULT encode_foreign(StoredObject& object, const Property& property,
                           std::vector<std::byte>& bytes);
  AAFRESULT remove_streams();
  AAFRESULT remove_cast_off();
  AAFRESULT copy_object(CompoundFile& copy, const Place& place, std::vector<Place>& pending);
  AAFRESULT copy_children(CompoundFile& copy, const Place& place, std::vector<Place>& pending);
  AAFRESULT copy_elements(StoredObject& object, StorageId from, CompoundFile& copy, StorageId to);
  AAFRESULT copy_storage(StorageId from, CompoundFile& copy, StorageId to);
  AAFRESULT copy_stream(StorageId from, const std::u16string& name, CompoundFile& copy,
                        StorageId to);

  ObjectFile& m_file;
};

}  // namespace aafobj
