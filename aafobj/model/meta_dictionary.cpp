#include "aafobj/model/meta_dictionary.h"

#include <unordered_set>

#include "aafobj/model/stored_values.h"

namespace aafobj {
namespace {

constexpr std::uint16_t class_set_path[] = {pid::Root_MetaDictionary,
                                            pid::MetaDictionary_ClassDefinitions};
constexpr std::uint16_t type_set_path[] = {pid::Root_MetaDictionary,
                                           pid::MetaDictionary_TypeDefinitions};

AAFRESULT target_in(ObjectFile& file, std::span<const std::uint16_t> path, const aafUID_t& id,
                    WeakTarget& target) {
  target.key_pid = pid::MetaDefinition_Identification;
  target.key = StoredKey(id);
  return file.tag_of(path, target.tag);
}

ClassIndex class_for(TypeKind kind) {
  switch (kind) {
    case TypeKind::integer:
      return ClassIndex::TypeDefinitionInteger;
    case TypeKind::character:
      return ClassIndex::TypeDefinitionCharacter;
    case TypeKind::string:
      return ClassIndex::TypeDefinitionString;
    case TypeKind::stream:
      return ClassIndex::TypeDefinitionStream;
    case TypeKind::indirect:
      return ClassIndex::TypeDefinitionIndirect;
    case TypeKind::opaque:
      return ClassIndex::TypeDefinitionOpaque;
    case TypeKind::enumeration:
      return ClassIndex::TypeDefinitionEnumeration;
    case TypeKind::extendible_enumeration:
      return ClassIndex::TypeDefinitionExtendibleEnumeration;
    case TypeKind::fixed_array:
      return ClassIndex::TypeDefinitionFixedArray;
    case TypeKind::variable_array:
      return ClassIndex::TypeDefinitionVariableArray;
    case TypeKind::set:
      return ClassIndex::TypeDefinitionSet;
    case TypeKind::record:
      return ClassIndex::TypeDefinitionRecord;
    case TypeKind::rename:
      return ClassIndex::TypeDefinitionRename;
    case TypeKind::strong_reference:
      return ClassIndex::TypeDefinitionStrongObjectReference;
    case TypeKind::weak_reference:
      return ClassIndex::TypeDefinitionWeakObjectReference;
  }
  return ClassIndex::TypeDefinitionOpaque;
}

// Makes definitions in one MetaDictionary, each with what it names. Every step of a definition
// is skipped once one has failed, and result() tells of the first failure.
class Definer {
 public:
  explicit Definer(StoredObject& meta_dictionary)
      : m_dictionary(meta_dictionary),
        m_file(meta_dictionary.file()),
        m_meta(meta_dictionary.file().meta_model()) {}

  AAFRESULT result() const { return m_result; }

  void need_class(const ClassDef& cls) {
    if (cls.baseline == ClassIndex::Root || !m_seen.insert(cls.identifier).second) return;
    m_classes.push_back(&cls);
  }

  void need_type(const aafUID_t& id) {
    if (!m_seen.insert(id).second) return;
    if (const TypeDef* type = m_meta.find_type(id)) m_types.push_back(type);
  }

  void need_property(const PropertyDef& property) {
    if (property.owner->baseline == ClassIndex::Root) return;
    if (!m_seen.insert(property.identifier).second) return;
    need_class(*property.owner);
    m_properties.push_back(&property);
  }

  // Makes what is needed, and what that needs in turn.
  AAFRESULT work_off() {
    while (m_result >= 0) {
      if (!m_classes.empty()) {
        const ClassDef* cls = m_classes.back();
        m_classes.pop_back();
        define(*cls);
      } else if (!m_types.empty()) {
        const TypeDef* type = m_types.back();
        m_types.pop_back();
        define(*type);
      } else if (!m_properties.empty()) {
        const PropertyDef* property = m_properties.back();
        m_properties.pop_back();
        define(*property);
      } else {
        break;
      }
    }
    return m_result;
  }

 private:
  void step(AAFRESULT result) {
    if (m_result >= 0) m_result = result;
  }

  // Whether the set has the definition; otherwise makes it with its identifier and name.
  bool make(StoredObject& owner, std::uint16_t set, ClassIndex index, const aafUID_t& id,
            std::u16string_view name, StoredObject*& object) {
    const AAFRESULT there = owner.find_element(set, StoredKey(id), object);
    if (there != AAFRESULT_OBJECT_NOT_FOUND) {
      step(there);
      return false;
    }
    step(m_file.create_object(index, object));
    if (m_result < 0) return false;
    step(set_value(*object, pid::MetaDefinition_Identification, id));
    step(set_text(*object, pid::MetaDefinition_Name, name));
    step(owner.insert_keyed(set, StoredKey(id), *object));
    return m_result >= 0;
  }

  void define(const ClassDef& cls) {
    StoredObject* object = nullptr;
    const ClassDef& parent = cls.parent ? *cls.parent : cls;  // a top class names itself
    need_class(parent);
    if (cls.name.empty()) return;  // a class that nobody has defined stays so
    if (!make(m_dictionary, pid::MetaDictionary_ClassDefinitions, ClassIndex::ClassDefinition,
              cls.identifier, cls.name, object)) {
      return;
    }
    const std::uint8_t is_concrete = cls.is_concrete ? 1 : 0;
    step(set_value(*object, pid::ClassDefinition_IsConcrete, is_concrete));
    set_class(*object, pid::ClassDefinition_ParentClass, parent.identifier);
    for (const PropertyDef* property : m_meta.own_properties(cls))
      need_property(*property);
  }

  void define(const PropertyDef& property) {
    StoredObject* cls = nullptr;
    const AAFRESULT there = m_dictionary.find_element(pid::MetaDictionary_ClassDefinitions,
                                                      StoredKey(property.owner->identifier), cls);
    if (there == AAFRESULT_OBJECT_NOT_FOUND) return;
    step(there);
    if (m_result < 0) return;
    StoredObject* object = nullptr;
    const PropertyRow* row = property.baseline;
    const aafUID_t& type = row ? row_of(row->stored_type).identifier : property.type;
    need_type(type);
    if (!make(*cls, pid::ClassDefinition_Properties, ClassIndex::PropertyDefinition,
              property.identifier, property.name, object)) {
      return;
    }
    const std::uint8_t is_optional = property.is_optional ? 1 : 0;
    step(set_value(*object, pid::PropertyDefinition_Type, type));
    step(set_value(*object, pid::PropertyDefinition_IsOptional, is_optional));
    step(set_value(*object, pid::PropertyDefinition_LocalIdentification, property.pid));
    if (property.is_unique_identifier) {
      step(set_value(*object, pid::PropertyDefinition_IsUniqueIdentifier, std::uint8_t{1}));
    }
  }

  void define(const TypeDef& type) {
    StoredObject* object = nullptr;
    if (type.element) need_type(type.element->identifier);
    for (const TypeDef::Member& member : type.members) {
      if (member.type) need_type(member.type->identifier);
    }
    if (const ClassDef* target = m_meta.find_class(type.target)) need_class(*target);
    if (!make(m_dictionary, pid::MetaDictionary_TypeDefinitions, class_for(type.kind),
              type.identifier, type.name, object)) {
      return;
    }
    define_parts(*object, type);
  }

  void define_parts(StoredObject& object, const TypeDef& type) {
    switch (type.kind) {
      case TypeKind::integer:
        step(set_value(object, pid::TypeDefinitionInteger_Size,
                       static_cast<std::uint8_t>(type.size_bytes)));
        step(set_value(object, pid::TypeDefinitionInteger_IsSigned,
                       static_cast<std::uint8_t>(type.is_signed ? 1 : 0)));
        break;
      case TypeKind::enumeration:
        define_enumeration(object, type);
        break;
      case TypeKind::extendible_enumeration:
        define_extendible(object, type);
        break;
      case TypeKind::fixed_array:
        set_type(object, pid::TypeDefinitionFixedArray_ElementType, type.element);
        step(set_value(object, pid::TypeDefinitionFixedArray_ElementCount, type.element_count));
        break;
      case TypeKind::variable_array:
        set_type(object, pid::TypeDefinitionVariableArray_ElementType, type.element);
        break;
      case TypeKind::set:
        set_type(object, pid::TypeDefinitionSet_ElementType, type.element);
        break;
      case TypeKind::string:
        set_type(object, pid::TypeDefinitionString_ElementType, type.element);
        break;
      case TypeKind::rename:
        set_type(object, pid::TypeDefinitionRename_RenamedType, type.element);
        break;
      case TypeKind::record:
        define_record(object, type);
        break;
      case TypeKind::strong_reference:
        set_class(object, pid::TypeDefinitionStrongObjectReference_ReferencedType, type.target);
        break;
      case TypeKind::weak_reference:
        define_weak_reference(object, type);
        break;
      case TypeKind::character:
      case TypeKind::stream:
      case TypeKind::indirect:
      case TypeKind::opaque:
        break;
    }
  }

  void define_enumeration(StoredObject& object, const TypeDef& type) {
    ByteWriter names;
    ByteWriter values;
    for (const TypeDef::Member& member : type.members) {
      names.put_text(member.name);
      values.put(static_cast<std::uint64_t>(member.value));
    }
    set_type(object, pid::TypeDefinitionEnumeration_ElementType, type.element);
    set_list(object, pid::TypeDefinitionEnumeration_ElementNames, names);
    set_list(object, pid::TypeDefinitionEnumeration_ElementValues, values);
  }

  void define_extendible(StoredObject& object, const TypeDef& type) {
    ByteWriter names;
    ByteWriter values;
    for (const TypeDef::Member& member : type.members) {
      names.put_text(member.name);
      values.put_auid(member.identifier);
    }
    set_list(object, pid::TypeDefinitionExtendibleEnumeration_ElementNames, names);
    set_list(object, pid::TypeDefinitionExtendibleEnumeration_ElementValues, values);
  }

  void define_record(StoredObject& object, const TypeDef& type) {
    ByteWriter names;
    std::vector<WeakTarget> types;
    for (const TypeDef::Member& member : type.members) {
      names.put_text(member.name);
      step(target_of_type(m_file, member.type->identifier, types.emplace_back()));
    }
    if (m_result < 0) return;
    step(object.set_weak_list(pid::TypeDefinitionRecord_MemberTypes, types));
    set_list(object, pid::TypeDefinitionRecord_MemberNames, names);
  }

  void define_weak_reference(StoredObject& object, const TypeDef& type) {
    ByteWriter path;
    for (const TypeDef::Member& member : type.members)
      path.put_auid(member.identifier);
    set_class(object, pid::TypeDefinitionWeakObjectReference_ReferencedType, type.target);
    set_list(object, pid::TypeDefinitionWeakObjectReference_TargetSet, path);
  }

  // An empty list cannot be stored; its property is left out.
  void set_list(StoredObject& object, std::uint16_t pid, const ByteWriter& list) {
    if (!list.bytes().empty()) step(object.set_data(pid, list.bytes()));
  }

  void set_type(StoredObject& object, std::uint16_t pid, const TypeDef* type) {
    WeakTarget target;
    step(type == nullptr ? AAFRESULT_BADCONTAINER
                         : target_of_type(m_file, type->identifier, target));
    if (m_result >= 0) step(object.set_weak(pid, target));
  }

  void set_class(StoredObject& object, std::uint16_t pid, const aafUID_t& id) {
    WeakTarget target;
    step(target_of_class(m_file, id, target));
    if (m_result >= 0) step(object.set_weak(pid, target));
  }

  StoredObject& m_dictionary;
  ObjectFile& m_file;
  MetaModel& m_meta;
  AAFRESULT m_result = AAFRESULT_SUCCESS;
  std::unordered_set<aafUID_t, AuidHash> m_seen;
  std::vector<const ClassDef*> m_classes;
  std::vector<const TypeDef*> m_types;
  std::vector<const PropertyDef*> m_properties;
};

// A property of the tables that has no number there.
AAFRESULT number_property(MetaModel& meta, const PropertyRow& row) {
  PropertyDef definition;
  definition.name = widen(row.name);
  definition.identifier = row.identifier;
  definition.type = row_of(row.type).identifier;
  definition.is_optional = row.is_optional;
  definition.is_unique_identifier = row.is_unique_identifier;
  definition.baseline = &row;
  const PropertyDef* added = nullptr;
  return meta.add_property(meta.class_of(row.owner), std::move(definition), added);
}

}  // namespace

AAFRESULT target_of_class(ObjectFile& file, const aafUID_t& id, WeakTarget& target) {
  return target_in(file, class_set_path, id, target);
}

AAFRESULT target_of_type(ObjectFile& file, const aafUID_t& id, WeakTarget& target) {
  return target_in(file, type_set_path, id, target);
}

AAFRESULT define_baseline(StoredObject& meta_dictionary) {
  MetaModel& meta = meta_dictionary.file().meta_model();
  for (const PropertyRow& row : property_table) {
    if (row.pid != 0) continue;
    if (const AAFRESULT r = number_property(meta, row); r < 0) return r;
  }
  Definer definer(meta_dictionary);
  for (const ClassRow& row : class_table)
    definer.need_class(meta.class_of(index_of(row)));
  for (const TypeRow& row : type_table)
    definer.need_type(row.identifier);
  return definer.work_off();
}

AAFRESULT define_what_is_used(ObjectFile& file) {
  StoredObject* dictionary = nullptr;
  const AAFRESULT there = file.meta_dictionary(dictionary);
  if (there == AAFRESULT_PROP_NOT_PRESENT) return AAFRESULT_SUCCESS;
  if (there < 0) return there;
  Definer definer(*dictionary);
  MetaModel& meta = file.meta_model();
  for (StoredObject* object : file.changed_objects()) {
    if (!object->is_attached() || object->class_def().baseline == ClassIndex::Root) continue;
    definer.need_class(object->class_def());
    for (const Property& property : object->properties()) {
      const PropertyDef* definition = meta.find_property(object->class_def(), property.pid);
      if (definition) definer.need_property(*definition);
    }
  }
  return definer.work_off();
}

}  // namespace aafobj
