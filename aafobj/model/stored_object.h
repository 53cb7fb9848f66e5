#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "aafobj/container/compound_file.h"
#include "aafobj/model/auid.h"
#include "aafobj/model/byte_stream.h"
#include "aafobj/model/index_stream.h"
#include "aafobj/model/meta_model.h"
#include "aafobj/model/model_result.h"
#include "aafobj/model/stored_form.h"

namespace aafobj {

class ObjectFile;
class StoredObject;
struct PropertyEntry;

// What a weak reference says: the set by a tag of the file's path table, the target by its key.
struct WeakTarget {
  std::uint16_t tag = 0;
  std::uint16_t key_pid = 0;
  StoredKey key;
};

// An element of a strong collection.
struct StrongElement {
  std::uint32_t local_key = 0;
  std::uint32_t reference_count = 1;
  StoredObject* object = nullptr;  // null until it is asked for
};

// The values of the stored forms that are more than bytes.
struct StrongValue {
  std::u16string name;
  StoredObject* object = nullptr;  // null until it is asked for
};

struct StrongVectorValue {
  std::u16string name;
  std::uint32_t first_free_key = 0;
  std::uint32_t last_free_key = no_last_free_key;
  std::vector<StrongElement> elements;
  bool is_loaded = false;
  bool is_damaged = false;  // reading it again would end as before
  bool is_changed = false;
};

struct StrongSetValue {
  std::u16string name;
  std::uint32_t first_free_key = 0;
  std::uint32_t last_free_key = no_last_free_key;
  std::uint16_t key_pid = 0;
  std::uint8_t key_bytes = 0;
  std::multimap<StoredKey, StrongElement> elements;  // a damaged file may have a key twice
  bool is_loaded = false;
  bool is_damaged = false;  // reading it again would end as before
  bool is_changed = false;
};

struct WeakValue {
  WeakTarget target;
};

struct WeakCollectionValue {
  std::u16string name;
  WeakIndex index;
  bool is_loaded = false;
  bool is_damaged = false;  // reading it again would end as before
  bool is_changed = false;
};

struct DataStreamValue {
  std::u16string name;
  std::byte mark{};  // byte order of the stream's content; 0x55 where it has none
};

using PropertyValue = std::variant<StrongValue, StrongVectorValue, StrongSetValue, WeakValue,
                                   WeakCollectionValue, DataStreamValue>;

// A property that an object has. The bytes of forms without a PropertyValue are kept as they
// are, whether or not anything is known of them.
struct Property {
  std::uint16_t pid = 0;
  StoredForm form = StoredForm::data;
  bool is_foreign = false;   // bytes in big-endian order, since their type is not known
  std::uint32_t offset = 0;  // into the object's value bytes
  std::uint32_t length = 0;
  std::unique_ptr<PropertyValue> value;
};

// One object of a file: a class and properties. Its properties are read from its storage when
// one of them is first asked for. The file owns all of its objects; an object that is in no
// other one yet is part of the file's memory, but not of what is saved.
//
// An error of reading leaves the object as it was, and is met again by the next call:
// AAFRESULT_BADCONTAINER for damage, without another look at the file; READ_FAILURE for the
// medium, NOT_OPEN after closing.
// Every change of a file opened for reading gives NOT_WRITEABLE.
class StoredObject {
 public:
  StoredObject(const StoredObject&) = delete;
  StoredObject& operator=(const StoredObject&) = delete;

  ObjectFile& file() const { return *m_file; }
  const ClassDef& class_def() const { return *m_class; }
  bool is_kind_of(ClassIndex ancestor) const;

  // The object that this one is in, and by which property; null and 0 at the root and for an
  // object that is in none.
  StoredObject* owner() const { return m_owner; }
  std::uint16_t owner_pid() const { return m_owner_pid; }
  // Whether the way of owners leads to the root, so that the object is saved.
  bool is_attached() const;

  // Reads the properties now. Others do that by themselves.
  [[nodiscard]] AAFRESULT load();

  // In the order of their numbers; empty when they cannot be read.
  std::span<const Property> properties();
  [[nodiscard]] AAFRESULT is_present(std::uint16_t pid, bool& present);
  // Takes the property away, with all that it contains. Errors: PROP_NOT_PRESENT.
  [[nodiscard]] AAFRESULT remove(std::uint16_t pid);

  // The bytes of a data value, in little-endian order, valid until the object changes.
  // Errors: PROP_NOT_PRESENT; BAD_TYPE when the property is stored in another form.
  [[nodiscard]] AAFRESULT get_data(std::uint16_t pid, std::span<const std::byte>& bytes);
  // The same for a property of any form without references; for those that nobody knows.
  [[nodiscard]] AAFRESULT get_raw(std::uint16_t pid, std::span<const std::byte>& bytes);
  // Errors: BAD_SIZE for no bytes or more than 65535, which the format cannot hold.
  [[nodiscard]] AAFRESULT set_data(std::uint16_t pid, std::span<const std::byte> bytes);

  // Contained objects. Setting takes over an object that is in no other one
  // (OBJECT_ALREADY_ATTACHED otherwise) and lets go of the one that was there.
  [[nodiscard]] AAFRESULT get_object(std::uint16_t pid, StoredObject*& object);
  [[nodiscard]] AAFRESULT set_object(std::uint16_t pid, StoredObject& object);

  // Ordered collections. An absent one counts 0 and is made by the first insertion. An index
  // out of range gives BADINDEX.
  [[nodiscard]] AAFRESULT count_elements(std::uint16_t pid, std::size_t& count);
  [[nodiscard]] AAFRESULT element_at(std::uint16_t pid, std::size_t index, StoredObject*& object);
  [[nodiscard]] AAFRESULT insert_at(std::uint16_t pid, std::size_t index, StoredObject& object);
  [[nodiscard]] AAFRESULT append(std::uint16_t pid, StoredObject& object);
  [[nodiscard]] AAFRESULT remove_at(std::uint16_t pid, std::size_t index);

  // Keyed collections, in the order of their keys; count_elements() counts them too. A key
  // that is not there gives OBJECT_NOT_FOUND, one that is there already PROPERTY_DUPLICATE.
  [[nodiscard]] AAFRESULT find_element(std::uint16_t pid, const StoredKey& key,
                                       StoredObject*& object);
  // The first element behind the key, or the first of all; null at the end. `key` becomes the
  // key of the element found.
  [[nodiscard]] AAFRESULT next_element(std::uint16_t pid, StoredKey& key, bool from_start,
                                       StoredObject*& object);
  [[nodiscard]] AAFRESULT insert_keyed(std::uint16_t pid, const StoredKey& key,
                                       StoredObject& object);
  [[nodiscard]] AAFRESULT remove_keyed(std::uint16_t pid, const StoredKey& key);
  // Every element of a strong reference or collection.
  [[nodiscard]] AAFRESULT contained_objects(std::uint16_t pid, std::vector<StoredObject*>& objects);

  // Weak references. Resolving one whose target is missing gives OBJECT_NOT_FOUND.
  [[nodiscard]] AAFRESULT get_weak(std::uint16_t pid, WeakTarget& target);
  [[nodiscard]] AAFRESULT set_weak(std::uint16_t pid, const WeakTarget& target);
  [[nodiscard]] AAFRESULT get_weak_list(std::uint16_t pid, std::vector<WeakTarget>& targets);
  // The targets of one list share tag and key property. A set's are put in order.
  [[nodiscard]] AAFRESULT set_weak_list(std::uint16_t pid, std::span<const WeakTarget> targets);

  // Streams of bytes beside the properties. An object that was let go has them until the next
  // save, and keeps them when it is in another object by then.
  [[nodiscard]] AAFRESULT open_stream(std::uint16_t pid, Stream& stream);
  // The same, made when it is missing. The object must be attached, since the stream is part
  // of the file at once: OBJECT_NOT_ATTACHED.
  [[nodiscard]] AAFRESULT create_stream(std::uint16_t pid, Stream& stream);

  // Makes an empty collection, as required ones are stored.
  [[nodiscard]] AAFRESULT make_collection(std::uint16_t pid);

  // A place for the layer above to keep what it made for this object. Not owned.
  void* attachment = nullptr;

 private:
  friend class ObjectFile;
  friend class ObjectWriter;

  StoredObject(ObjectFile& file, const ClassDef& cls) : m_file(&file), m_class(&cls) {}

  AAFRESULT begin_change();
  AAFRESULT read_properties();
  Property* find(std::uint16_t pid);
  AAFRESULT require(std::uint16_t pid, Property*& property);
  Property& add_property(std::uint16_t pid, StoredForm form);
  AAFRESULT definition_of(std::uint16_t pid, const PropertyDef*& definition);
  AAFRESULT take_entries(std::span<const PropertyEntry> entries);
  AAFRESULT take_entry(const PropertyEntry& entry, std::size_t offset);
  AAFRESULT take_value(const PropertyEntry& entry, Property& property);
  void take_data(Property& property);
  void compact_values();

  template <typename Value>
  AAFRESULT value_of(std::uint16_t pid, Value*& value);
  template <typename Value>
  AAFRESULT value_to_change(std::uint16_t pid, Value*& value);

  AAFRESULT get_set(std::uint16_t pid, StrongSetValue*& value);
  template <typename Value>
  AAFRESULT load_index(Value& value);
  AAFRESULT read_index(StrongVectorValue& value);
  AAFRESULT read_index(StrongSetValue& value);
  AAFRESULT read_index(WeakCollectionValue& value);
  AAFRESULT read_index_stream(const std::u16string& name, std::vector<std::byte>& bytes);
  AAFRESULT open_child(std::uint16_t pid, const std::u16string& name, StoredObject*& object);
  AAFRESULT open_element(std::uint16_t pid, const std::u16string& collection,
                         StrongElement& element);
  AAFRESULT check_can_own(const StoredObject& object) const;
  void own(StoredObject& object, std::uint16_t pid, std::u16string storage_name);
  AAFRESULT let_go(StoredObject& object);
  AAFRESULT let_go_of_all(Property& property);
  AAFRESULT load_deep();
  AAFRESULT load_all_of(Property& property, std::vector<StoredObject*>& found);
  void forget_storage();
  AAFRESULT new_stream(const std::u16string& name, Stream& stream);
  AAFRESULT ensure_storage();
  AAFRESULT make_storage();
  AAFRESULT fill_key_shape(std::uint16_t pid, StrongSetValue& value);
  AAFRESULT fill_weak_shape(std::uint16_t pid, WeakIndex& index);

  ObjectFile* m_file;       // not owned
  const ClassDef* m_class;  // not owned
  StoredObject* m_owner = nullptr;
  std::uint16_t m_owner_pid = 0;
  std::uint16_t m_depth = 0;      // owners above it when it was read
  std::u16string m_storage_name;  // in the owner's storage
  StorageId m_storage{};
  bool m_has_storage = false;
  StorageId m_former_storage{};  // where its streams still are, after it moved
  bool m_has_former_storage = false;
  bool m_is_loaded = false;
  bool m_is_damaged = false;
  bool m_is_changed = false;
  ByteOrder m_order = ByteOrder::little;
  std::vector<Property> m_properties;  // in the order of their numbers
  std::vector<std::byte> m_values;
};

}  // namespace aafobj
