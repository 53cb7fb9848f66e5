#pragma once

#include <deque>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

#include "aafobj/container/compound_file.h"
#include "aafobj/model/auid.h"
#include "aafobj/model/meta_model.h"
#include "aafobj/model/model_result.h"
#include "aafobj/model/path_index.h"
#include "aafobj/model/referenced_properties.h"
#include "aafobj/model/stored_object.h"

namespace aafobj {

// The system's time, UTC, in hundredths of a second.
aafTimeStamp_t time_now();

// The objects of one AAF file: a tree under the root, which holds the MetaDictionary (the
// description of classes and types) and the Header (everything else). Objects live as long as
// the ObjectFile, also after close(), when only what was read before can be had.
//
// Nothing of the file is changed before save(), but for the bytes of streams. Destroying the
// object without save() leaves the former tree in the file.
class ObjectFile {
 public:
  // Reads an existing file. Errors: NOT_AAF_FILE; BADCONTAINER when the root is damaged or
  // holds no objects, as in a file that was closed before it was saved.
  [[nodiscard]] static AAFRESULT open(std::unique_ptr<CompoundFile> container,
                                      std::unique_ptr<ObjectFile>& file);
  // Begins a new one with the whole baseline in its MetaDictionary, and with a Header that has
  // empty Content and Dictionary and the time of now.
  [[nodiscard]] static AAFRESULT create(std::unique_ptr<CompoundFile> container,
                                        std::unique_ptr<ObjectFile>& file);

  ObjectFile(const ObjectFile&) = delete;
  ObjectFile& operator=(const ObjectFile&) = delete;
  ~ObjectFile();

  bool is_open() const { return m_is_open; }
  bool is_writable() const { return m_is_open && m_container->access() == Access::modify; }
  CompoundFile& container() { return *m_container; }
  MetaModel& meta_model() { return m_meta; }
  StoredObject& root() { return *m_root; }

  // Parts of the tree. Errors: those of reading.
  [[nodiscard]] AAFRESULT header(StoredObject*& object);
  [[nodiscard]] AAFRESULT content(StoredObject*& object);
  [[nodiscard]] AAFRESULT dictionary(StoredObject*& object);
  [[nodiscard]] AAFRESULT meta_dictionary(StoredObject*& object);

  // A new object, in no other one yet. Collections that its class requires are there, empty.
  // Errors: CLASS_NOT_FOUND, ABSTRACT_CLASS.
  [[nodiscard]] AAFRESULT create_object(const aafUID_t& class_id, StoredObject*& object);
  [[nodiscard]] AAFRESULT create_object(ClassIndex index, StoredObject*& object);

  // The object that a weak reference names. Errors: OBJECT_NOT_FOUND.
  [[nodiscard]] AAFRESULT resolve(const WeakTarget& target, StoredObject*& object);
  // A weak reference to an object that is in a set of this file, by the property that holds
  // the object's key. Errors: OBJECT_NOT_ATTACHED.
  [[nodiscard]] AAFRESULT target_to(StoredObject& object, WeakTarget& target);
  const ReferencedProperties& referenced_properties() const { return m_paths; }
  // The tag of the set to which the properties lead from the root; new ones are added.
  [[nodiscard]] AAFRESULT tag_of(std::span<const std::uint16_t> path, std::uint16_t& tag);

  // Writes every change. Definitions that new objects need are added to the MetaDictionary.
  // After an error the file on disk still has its former tree.
  [[nodiscard]] AAFRESULT save();
  // Writes the whole tree, with what nobody knows, into an empty container. The file itself
  // is not saved. Objects in memory only are written as well.
  [[nodiscard]] AAFRESULT save_copy(CompoundFile& copy);
  // Ends the connection with the container. What was not saved is lost, but for the bytes of
  // streams.
  [[nodiscard]] AAFRESULT close();
  // Gives the container away, for something else to be written into it. The file counts as
  // closed. Errors: NOT_WRITEABLE when it was saved or read before, so that it is not empty.
  [[nodiscard]] AAFRESULT release_container(std::unique_ptr<CompoundFile>& container);
  // Objects that differ from what is in the file, in the order in which they changed.
  const std::vector<StoredObject*>& changed_objects() const { return m_changed; }
  // Grows with every change, so that what was gathered before it is known to be old.
  std::uint64_t change_count() const { return m_change_count; }
  bool has_unsaved_changes() const { return !m_changed.empty() || m_paths_changed; }

 private:
  friend class StoredObject;
  friend class ObjectWriter;

  explicit ObjectFile(std::unique_ptr<CompoundFile> container);

  AAFRESULT read_root();
  AAFRESULT read_paths();
  AAFRESULT make_root();
  AAFRESULT make_header();
  StoredObject& add_object(const ClassDef& cls);
  AAFRESULT claim(StorageId storage);
  AAFRESULT set_cast_off_aside();
  void note_change(StoredObject& object);

  std::unique_ptr<CompoundFile> m_container;
  bool m_is_open = true;
  MetaModel m_meta;
  ReferencedProperties m_paths;
  bool m_paths_changed = false;
  PathIndex m_path_index;
  std::uint64_t m_change_count = 0;
  std::deque<std::unique_ptr<StoredObject>> m_objects;
  StoredObject* m_root = nullptr;
  std::vector<StoredObject*> m_changed;  // in the order in which they changed
  std::vector<bool> m_claimed;           // storages that an object stands for
  struct CastOff {
    StorageId parent{};
    std::u16string name;
    bool is_aside = false;  // has a name of its own, which is in the way of nothing
  };
  // Storages of objects that were let go, and streams of properties that were removed. They
  // stay in the container until the next save.
  std::vector<CastOff> m_cast_off;
  std::vector<CastOff> m_removed_streams;
  std::uint32_t m_cast_off_count = 0;
};

}  // namespace aafobj
