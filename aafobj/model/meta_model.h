#pragma once

#include <deque>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "aafobj/model/auid.h"
#include "aafobj/model/baseline.h"
#include "aafobj/model/model_result.h"
#include "aafobj/model/stored_form.h"

namespace aafobj {

class StoredObject;
struct ClassDef;
struct TypeDef;

// A property as one file knows it. Numbers from 0x8000 up mean nothing outside that file.
struct PropertyDef {
  std::u16string name;
  aafUID_t identifier{};
  std::uint16_t pid = 0;
  aafUID_t type{};
  StoredForm form = StoredForm::data;
  bool is_optional = true;
  bool is_unique_identifier = false;
  const ClassDef* owner = nullptr;
  const PropertyRow* baseline = nullptr;  // null for an extension
};

// A class as one file knows it. Lives as long as its MetaModel.
struct ClassDef {
  std::u16string name;  // empty when neither the tables nor the file know the class
  aafUID_t identifier{};
  const ClassDef* parent = nullptr;  // null at the top of a branch
  bool is_concrete = true;
  ClassIndex baseline = ClassIndex::none;  // none for an extension
  ClassIndex nearest = ClassIndex::none;   // the class itself or its nearest baseline ancestor
  std::vector<const PropertyDef*> own;     // in the order of their numbers
  bool has_read_stored = false;            // what the file adds to the class is in `own`
};

// A type as one file knows it. Lives as long as its MetaModel.
struct TypeDef {
  struct Member {
    std::u16string name;
    const TypeDef* type = nullptr;  // of a record's field
    std::int64_t value = 0;         // of an enumeration
    aafUID_t identifier{};          // of an extendible enumeration, of a path step
  };
  std::u16string name;
  aafUID_t identifier{};
  TypeKind kind = TypeKind::opaque;
  std::size_t size_bytes = 0;  // stored; 0 where the value decides
  bool is_signed = false;
  const TypeDef* element = nullptr;      // of arrays, sets, strings; base of renames, enumerations
  aafUID_t target{};                     // class, of references
  std::uint32_t element_count = 0;       // of a fixed array
  std::vector<Member> members;           // fields, values, or the steps of a weak reference's path
  TypeIndex baseline = TypeIndex::none;  // none for an extension
};

// The classes, properties and types of one file: those of the tables, and what the file's own
// MetaDictionary adds to them. Definitions are made when they are first asked for.
class MetaModel {
 public:
  MetaModel() = default;
  MetaModel(const MetaModel&) = delete;
  MetaModel& operator=(const MetaModel&) = delete;

  // Where extensions are looked up; null: the tables alone. Not owned.
  void set_dictionary(StoredObject* meta_dictionary) { m_dictionary = meta_dictionary; }

  // Null when neither the tables nor the file know it. A stored definition that is damaged
  // counts as unknown.
  const ClassDef* find_class(const aafUID_t& identifier);
  const TypeDef* find_type(const aafUID_t& identifier);

  // The same, but a class that nobody knows becomes a nameless child of InterchangeObject.
  const ClassDef& class_or_unknown(const aafUID_t& identifier);
  const ClassDef& class_of(ClassIndex index);
  const TypeDef& type_of(TypeIndex index);

  // Properties of the class and its ancestors; null when there is none.
  const PropertyDef* find_property(const ClassDef& cls, std::uint16_t pid);
  const PropertyDef* find_property(const ClassDef& cls, const aafUID_t& identifier);
  // Those of the class alone, extensions of the file included, in the order of their numbers.
  const std::vector<const PropertyDef*>& own_properties(const ClassDef& cls);

  // The property that tells objects of the class apart in a set; null when it has none.
  const PropertyDef* unique_identifier(const ClassDef& cls);

  // Adds definitions that a program makes. A property with number 0 gets a free one.
  // Errors: PROPERTY_DUPLICATE, BAD_SIZE when no number is free.
  [[nodiscard]] AAFRESULT add_class(const ClassDef& definition, const ClassDef*& added);
  [[nodiscard]] AAFRESULT add_property(const ClassDef& cls, PropertyDef definition,
                                       const PropertyDef*& added);
  [[nodiscard]] AAFRESULT add_type(const TypeDef& definition, const TypeDef*& added);

  // The form in which values of the type are stored as a property.
  StoredForm form_of(const TypeDef& type) const;

 private:
  ClassDef& insert(ClassDef definition);
  TypeDef& insert(TypeDef definition);
  ClassDef& insert_baseline(ClassIndex index);
  const TypeDef& insert_baseline(TypeIndex index);
  ClassDef* read_class(const aafUID_t& identifier);
  const TypeDef* read_type(const aafUID_t& identifier);
  bool read_type_parts(StoredObject& object, TypeDef& type);
  bool read_integer(StoredObject& object, TypeDef& type);
  bool read_enumeration(StoredObject& object, TypeDef& type);
  bool read_extendible(StoredObject& object, TypeDef& type);
  bool read_record(StoredObject& object, TypeDef& type);
  bool read_target(StoredObject& object, std::uint16_t pid, TypeDef& type);
  bool read_weak_reference(StoredObject& object, TypeDef& type);
  void read_stored_properties(ClassDef& cls);
  void read_all_classes();
  void add_stored_values(TypeDef& type);
  void add_own(ClassDef& cls, PropertyDef definition);
  ClassDef& mutable_class(const ClassDef& cls);
  bool allot_pid(std::uint16_t& pid);

  StoredObject* m_dictionary = nullptr;
  std::deque<ClassDef> m_class_store;
  std::deque<TypeDef> m_type_store;
  std::deque<PropertyDef> m_property_store;
  std::unordered_map<aafUID_t, ClassDef*, AuidHash> m_classes;
  std::unordered_map<aafUID_t, TypeDef*, AuidHash> m_types;
  std::optional<std::uint16_t> m_next_pid;  // for an extension property; none: not known yet
  int m_depth = 0;                          // of definitions that need others; bounded
};

}  // namespace aafobj
