#include "aafobj/model/meta_model.h"

#include <algorithm>

#include "aafobj/model/property_stream.h"
#include "aafobj/model/stored_values.h"

namespace aafobj {
namespace {

constexpr int max_depth = 64;  // of definitions that need others
constexpr std::uint16_t last_fixed_pid = 0x7fff;

bool number_below(const PropertyDef* a, std::uint16_t pid) {
  return a->pid < pid;
}

PropertyDef definition_from(const PropertyRow& row) {
  PropertyDef definition;
  definition.name = widen(row.name);
  definition.identifier = row.identifier;
  definition.pid = row.pid;
  definition.type = row.type == TypeIndex::none ? null_auid : row_of(row.type).identifier;
  definition.form = row.form;
  definition.is_optional = row.is_optional;
  definition.is_unique_identifier = row.is_unique_identifier;
  definition.baseline = &row;
  return definition;
}

TypeKind kind_of(const StoredObject& object) {
  static constexpr std::pair<ClassIndex, TypeKind> kinds[] = {
      {ClassIndex::TypeDefinitionInteger, TypeKind::integer},
      {ClassIndex::TypeDefinitionCharacter, TypeKind::character},
      {ClassIndex::TypeDefinitionString, TypeKind::string},
      {ClassIndex::TypeDefinitionStream, TypeKind::stream},
      {ClassIndex::TypeDefinitionOpaque, TypeKind::opaque},
      {ClassIndex::TypeDefinitionIndirect, TypeKind::indirect},
      {ClassIndex::TypeDefinitionEnumeration, TypeKind::enumeration},
      {ClassIndex::TypeDefinitionExtendibleEnumeration, TypeKind::extendible_enumeration},
      {ClassIndex::TypeDefinitionFixedArray, TypeKind::fixed_array},
      {ClassIndex::TypeDefinitionVariableArray, TypeKind::variable_array},
      {ClassIndex::TypeDefinitionSet, TypeKind::set},
      {ClassIndex::TypeDefinitionRecord, TypeKind::record},
      {ClassIndex::TypeDefinitionRename, TypeKind::rename},
      {ClassIndex::TypeDefinitionStrongObjectReference, TypeKind::strong_reference},
      {ClassIndex::TypeDefinitionWeakObjectReference, TypeKind::weak_reference}};
  for (const auto& [cls, kind] : kinds) {
    if (object.is_kind_of(cls)) return kind;
  }
  return TypeKind::opaque;
}

// The number of the property that names the element or base type.
std::uint16_t element_pid(TypeKind kind) {
  switch (kind) {
    case TypeKind::enumeration:
      return pid::TypeDefinitionEnumeration_ElementType;
    case TypeKind::fixed_array:
      return pid::TypeDefinitionFixedArray_ElementType;
    case TypeKind::variable_array:
      return pid::TypeDefinitionVariableArray_ElementType;
    case TypeKind::set:
      return pid::TypeDefinitionSet_ElementType;
    case TypeKind::string:
      return pid::TypeDefinitionString_ElementType;
    case TypeKind::rename:
      return pid::TypeDefinitionRename_RenamedType;
    default:
      return 0;
  }
}

bool read_numbers(StoredObject& object, std::uint16_t pid, std::vector<std::int64_t>& numbers) {
  std::span<const std::byte> bytes;
  if (object.get_data(pid, bytes) < 0 || bytes.size() % 8 != 0) return false;
  numbers.resize(bytes.size() / 8);
  if (!numbers.empty()) std::memcpy(numbers.data(), bytes.data(), bytes.size());
  return true;
}

}  // namespace

ClassDef& MetaModel::insert(ClassDef definition) {
  ClassDef& stored = m_class_store.emplace_back(std::move(definition));
  m_classes.emplace(stored.identifier, &stored);
  return stored;
}

TypeDef& MetaModel::insert(TypeDef definition) {
  TypeDef& stored = m_type_store.emplace_back(std::move(definition));
  m_types.emplace(stored.identifier, &stored);
  return stored;
}

void MetaModel::add_own(ClassDef& cls, PropertyDef definition) {
  definition.owner = &cls;
  const PropertyDef& stored = m_property_store.emplace_back(std::move(definition));
  const auto at = std::lower_bound(cls.own.begin(), cls.own.end(), stored.pid, number_below);
  cls.own.insert(at, &stored);
}

ClassDef& MetaModel::mutable_class(const ClassDef& cls) {
  return *m_classes.at(cls.identifier);
}

ClassDef& MetaModel::insert_baseline(ClassIndex index) {
  const ClassRow& row = row_of(index);
  ClassDef definition;
  definition.name = widen(row.name);
  definition.identifier = row.identifier;
  definition.is_concrete = row.is_concrete;
  definition.baseline = definition.nearest = index;
  // The root storage's class is above the others in the tables, but they have nothing of it.
  const bool is_top = row.parent == ClassIndex::none || row.parent == ClassIndex::Root;
  if (!is_top) definition.parent = &class_of(row.parent);
  ClassDef& stored = insert(std::move(definition));
  for (const PropertyRow& property : own_properties_of(index)) {
    if (property.pid != 0) add_own(stored, definition_from(property));
  }
  return stored;
}

const ClassDef& MetaModel::class_of(ClassIndex index) {
  const auto at = m_classes.find(row_of(index).identifier);
  return at != m_classes.end() ? *at->second : insert_baseline(index);
}

const ClassDef* MetaModel::find_class(const aafUID_t& identifier) {
  if (const auto at = m_classes.find(identifier); at != m_classes.end()) {
    return at->second->name.empty() ? nullptr : at->second;
  }
  if (const ClassRow* row = aafobj::find_class(identifier)) return &insert_baseline(index_of(*row));
  return read_class(identifier);
}

const ClassDef& MetaModel::class_or_unknown(const aafUID_t& identifier) {
  if (const ClassDef* known = find_class(identifier)) return *known;
  if (const auto at = m_classes.find(identifier); at != m_classes.end()) return *at->second;
  ClassDef definition;
  definition.identifier = identifier;
  definition.parent = &class_of(ClassIndex::InterchangeObject);
  definition.nearest = ClassIndex::InterchangeObject;
  definition.has_read_stored = true;
  return insert(std::move(definition));
}

// An extension class of the file. Its parents are read first, so a class that is its own
// ancestor never comes to an end within the depth allowed, and is unknown.
ClassDef* MetaModel::read_class(const aafUID_t& identifier) {
  if (!m_dictionary || m_depth >= max_depth) return nullptr;
  StoredObject* object = nullptr;
  if (m_dictionary->find_element(pid::MetaDictionary_ClassDefinitions, StoredKey(identifier),
                                 object) < 0) {
    return nullptr;
  }
  ClassDef definition;
  definition.identifier = identifier;
  WeakTarget parent;
  std::uint8_t is_concrete = 1;
  if (get_text(*object, pid::MetaDefinition_Name, definition.name) < 0) return nullptr;
  if (object->get_weak(pid::ClassDefinition_ParentClass, parent) < 0) return nullptr;
  if (get_value(*object, pid::ClassDefinition_IsConcrete, is_concrete) < 0) is_concrete = 1;
  definition.is_concrete = is_concrete != 0;
  if (definition.name.empty()) definition.name.push_back(u'?');
  ++m_depth;
  definition.parent = find_class(parent.key.auid());
  --m_depth;
  if (!definition.parent) return nullptr;
  definition.nearest = definition.parent->nearest;
  return &insert(std::move(definition));
}

// What the file's own definition of a class says beyond the tables: extension properties, and
// the numbers of those that have none in the tables.
void MetaModel::read_stored_properties(ClassDef& cls) {
  if (cls.has_read_stored || !m_dictionary) return;
  cls.has_read_stored = true;
  StoredObject* object = nullptr;
  if (m_dictionary->find_element(pid::MetaDictionary_ClassDefinitions, StoredKey(cls.identifier),
                                 object) < 0) {
    return;
  }
  StoredKey key;
  StoredObject* property = nullptr;
  for (bool first = true;
       object->next_element(pid::ClassDefinition_Properties, key, first, property) >= 0 && property;
       first = false) {
    PropertyDef definition;
    definition.identifier = key.auid();
    const PropertyRow* row = aafobj::find_property(definition.identifier);
    if (row && row->pid != 0) continue;
    if (row) definition = definition_from(*row);
    std::uint8_t is_optional = 1;
    std::uint8_t is_unique = 0;
    const bool whole =
        get_text(*property, pid::MetaDefinition_Name, definition.name) >= 0 &&
        get_value(*property, pid::PropertyDefinition_Type, definition.type) >= 0 &&
        get_value(*property, pid::PropertyDefinition_LocalIdentification, definition.pid) >= 0;
    if (!whole || definition.pid <= last_fixed_pid) continue;
    if (get_value(*property, pid::PropertyDefinition_IsOptional, is_optional) < 0) is_optional = 1;
    if (get_value(*property, pid::PropertyDefinition_IsUniqueIdentifier, is_unique) < 0) {
      is_unique = 0;
    }
    definition.is_optional = is_optional != 0;
    definition.is_unique_identifier = is_unique != 0;
    const TypeDef* type = find_type(definition.type);
    if (type) definition.form = form_of(*type);
    add_own(cls, std::move(definition));
  }
}

const PropertyDef* MetaModel::find_property(const ClassDef& cls, std::uint16_t pid) {
  for (const ClassDef* at = &cls; at; at = at->parent) {
    if (pid > last_fixed_pid) read_stored_properties(mutable_class(*at));
    const auto found = std::lower_bound(at->own.begin(), at->own.end(), pid, number_below);
    if (found != at->own.end() && (*found)->pid == pid) return *found;
  }
  return nullptr;
}

const PropertyDef* MetaModel::find_property(const ClassDef& cls, const aafUID_t& identifier) {
  for (const ClassDef* at = &cls; at; at = at->parent) {
    for (const PropertyDef* property : own_properties(*at)) {
      if (property->identifier == identifier) return property;
    }
  }
  return nullptr;
}

const std::vector<const PropertyDef*>& MetaModel::own_properties(const ClassDef& cls) {
  read_stored_properties(mutable_class(cls));
  return cls.own;
}

const PropertyDef* MetaModel::unique_identifier(const ClassDef& cls) {
  for (const ClassDef* at = &cls; at; at = at->parent) {
    for (const PropertyDef* property : own_properties(*at)) {
      if (property->is_unique_identifier) return property;
    }
  }
  return nullptr;
}

const TypeDef& MetaModel::insert_baseline(TypeIndex index) {
  const TypeRow& row = row_of(index);
  TypeDef type;
  type.name = widen(row.stored_name);
  type.identifier = row.identifier;
  type.kind = row.kind;
  type.size_bytes = row.size_bytes;
  type.is_signed = row.is_signed;
  type.element_count = row.element_count;
  type.baseline = index;
  if (row.element != TypeIndex::none) type.element = &type_of(row.element);
  if (row.target != ClassIndex::none) type.target = row_of(row.target).identifier;
  for (const TypeMemberRow& member : members_of(row)) {
    const TypeDef* field = member.type != TypeIndex::none ? &type_of(member.type) : nullptr;
    type.members.push_back({widen(member.name), field, member.value, member.identifier});
  }
  TypeDef& stored = insert(std::move(type));
  if (stored.kind == TypeKind::extendible_enumeration) add_stored_values(stored);
  return stored;
}

const TypeDef& MetaModel::type_of(TypeIndex index) {
  const auto at = m_types.find(row_of(index).identifier);
  return at != m_types.end() ? *at->second : insert_baseline(index);
}

const TypeDef* MetaModel::find_type(const aafUID_t& identifier) {
  if (const auto at = m_types.find(identifier); at != m_types.end()) return at->second;
  if (const TypeRow* row = aafobj::find_type(identifier)) return &insert_baseline(index_of(*row));
  return read_type(identifier);
}

// Values that the file's own definition adds to an extendible enumeration of the tables.
void MetaModel::add_stored_values(TypeDef& type) {
  StoredObject* object = nullptr;
  if (!m_dictionary || m_dictionary->find_element(pid::MetaDictionary_TypeDefinitions,
                                                  StoredKey(type.identifier), object) < 0) {
    return;
  }
  std::vector<std::u16string> names;
  std::vector<aafUID_t> values;
  if (get_text_list(*object, pid::TypeDefinitionExtendibleEnumeration_ElementNames, names) < 0 ||
      get_auid_list(*object, pid::TypeDefinitionExtendibleEnumeration_ElementValues, values) < 0) {
    return;
  }
  for (std::size_t i = 0; i < std::min(names.size(), values.size()); ++i) {
    const auto known = std::find_if(type.members.begin(), type.members.end(),
                                    [&](const auto& m) { return m.identifier == values[i]; });
    if (known == type.members.end()) {
      type.members.push_back({names[i], nullptr, 0, values[i]});
    } else {
      known->name = names[i];
    }
  }
}

const TypeDef* MetaModel::read_type(const aafUID_t& identifier) {
  if (!m_dictionary || m_depth >= max_depth) return nullptr;
  StoredObject* object = nullptr;
  if (m_dictionary->find_element(pid::MetaDictionary_TypeDefinitions, StoredKey(identifier),
                                 object) < 0) {
    return nullptr;
  }
  TypeDef type;
  type.identifier = identifier;
  type.kind = kind_of(*object);
  if (get_text(*object, pid::MetaDefinition_Name, type.name) < 0) return nullptr;
  ++m_depth;
  const bool whole = read_type_parts(*object, type);
  --m_depth;
  return whole ? &insert(std::move(type)) : nullptr;
}

bool MetaModel::read_type_parts(StoredObject& object, TypeDef& type) {
  if (const std::uint16_t pid = element_pid(type.kind); pid != 0) {
    WeakTarget element;
    if (object.get_weak(pid, element) < 0) return false;
    type.element = find_type(element.key.auid());
    if (!type.element) return false;
  }
  switch (type.kind) {
    case TypeKind::integer:
      return read_integer(object, type);
    case TypeKind::character:
      type.size_bytes = 2;
      return true;
    case TypeKind::rename:
      type.size_bytes = type.element->size_bytes;
      return true;
    case TypeKind::enumeration:
      return read_enumeration(object, type);
    case TypeKind::extendible_enumeration:
      type.size_bytes = sizeof(aafUID_t);
      return read_extendible(object, type);
    case TypeKind::fixed_array:
      if (get_value(object, pid::TypeDefinitionFixedArray_ElementCount, type.element_count) < 0) {
        return false;
      }
      type.size_bytes = type.element->size_bytes * std::size_t{type.element_count};
      return type.size_bytes <= max_value_bytes;
    case TypeKind::variable_array:
    case TypeKind::set:
      type.target = type.element->target;
      return true;
    case TypeKind::record:
      return read_record(object, type);
    case TypeKind::strong_reference:
      return read_target(object, pid::TypeDefinitionStrongObjectReference_ReferencedType, type);
    case TypeKind::weak_reference:
      return read_weak_reference(object, type);
    case TypeKind::string:
    case TypeKind::stream:
    case TypeKind::indirect:
    case TypeKind::opaque:
      return true;
  }
  return false;
}

bool MetaModel::read_integer(StoredObject& object, TypeDef& type) {
  std::uint8_t size = 0;
  std::uint8_t is_signed = 0;
  if (get_value(object, pid::TypeDefinitionInteger_Size, size) < 0) return false;
  if (get_value(object, pid::TypeDefinitionInteger_IsSigned, is_signed) < 0) return false;
  if (size != 1 && size != 2 && size != 4 && size != 8) return false;
  type.size_bytes = size;
  type.is_signed = is_signed != 0;
  return true;
}

bool MetaModel::read_enumeration(StoredObject& object, TypeDef& type) {
  std::vector<std::u16string> names;
  std::vector<std::int64_t> values;
  if (get_text_list(object, pid::TypeDefinitionEnumeration_ElementNames, names) < 0) return false;
  if (!read_numbers(object, pid::TypeDefinitionEnumeration_ElementValues, values)) return false;
  for (std::size_t i = 0; i < std::min(names.size(), values.size()); ++i) {
    type.members.push_back({names[i], nullptr, values[i], null_auid});
  }
  type.size_bytes = type.element->size_bytes;
  return true;
}

bool MetaModel::read_extendible(StoredObject& object, TypeDef& type) {
  std::vector<std::u16string> names;
  std::vector<aafUID_t> values;
  if (get_text_list(object, pid::TypeDefinitionExtendibleEnumeration_ElementNames, names) < 0 ||
      get_auid_list(object, pid::TypeDefinitionExtendibleEnumeration_ElementValues, values) < 0) {
    return false;
  }
  for (std::size_t i = 0; i < std::min(names.size(), values.size()); ++i) {
    type.members.push_back({names[i], nullptr, 0, values[i]});
  }
  return true;
}

bool MetaModel::read_record(StoredObject& object, TypeDef& type) {
  std::vector<std::u16string> names;
  std::vector<WeakTarget> types;
  if (get_text_list(object, pid::TypeDefinitionRecord_MemberNames, names) < 0) return false;
  if (object.get_weak_list(pid::TypeDefinitionRecord_MemberTypes, types) < 0) return false;
  if (names.size() != types.size()) return false;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const TypeDef* field = find_type(types[i].key.auid());
    if (!field || field->size_bytes == 0) return false;
    type.members.push_back({names[i], field, 0, null_auid});
    type.size_bytes += field->size_bytes;
  }
  return type.size_bytes <= max_value_bytes;
}

bool MetaModel::read_target(StoredObject& object, std::uint16_t pid, TypeDef& type) {
  WeakTarget target;
  if (object.get_weak(pid, target) < 0) return false;
  type.target = target.key.auid();
  return true;
}

bool MetaModel::read_weak_reference(StoredObject& object, TypeDef& type) {
  std::vector<aafUID_t> path;
  if (get_auid_list(object, pid::TypeDefinitionWeakObjectReference_TargetSet, path) < 0) {
    return false;
  }
  for (const aafUID_t& step : path)
    type.members.push_back({u"", nullptr, 0, step});
  return read_target(object, pid::TypeDefinitionWeakObjectReference_ReferencedType, type);
}

StoredForm MetaModel::form_of(const TypeDef& type) const {
  const TypeKind element = type.element ? type.element->kind : TypeKind::opaque;
  switch (type.kind) {
    case TypeKind::stream:
      return StoredForm::data_stream;
    case TypeKind::strong_reference:
      return StoredForm::strong_reference;
    case TypeKind::weak_reference:
      return StoredForm::weak_reference;
    case TypeKind::set:
      if (element == TypeKind::strong_reference) return StoredForm::strong_set;
      if (element == TypeKind::weak_reference) return StoredForm::weak_set;
      return StoredForm::data;
    case TypeKind::fixed_array:
    case TypeKind::variable_array:
      if (element == TypeKind::strong_reference) return StoredForm::strong_vector;
      if (element == TypeKind::weak_reference) return StoredForm::weak_vector;
      return StoredForm::data;
    default:
      return StoredForm::data;
  }
}

AAFRESULT MetaModel::add_class(const ClassDef& definition, const ClassDef*& added) {
  if (find_class(definition.identifier)) return AAFRESULT_PROPERTY_DUPLICATE;
  if (!definition.parent || definition.name.empty()) return AAFRESULT_INVALID_PARAM;
  ClassDef cls = definition;
  cls.nearest = cls.parent->nearest;
  cls.baseline = ClassIndex::none;
  cls.own.clear();
  cls.has_read_stored = true;
  m_classes.erase(cls.identifier);
  added = &insert(std::move(cls));
  return AAFRESULT_SUCCESS;
}

AAFRESULT MetaModel::add_property(const ClassDef& cls, PropertyDef definition,
                                  const PropertyDef*& added) {
  if (find_property(cls, definition.identifier)) return AAFRESULT_PROPERTY_DUPLICATE;
  const TypeDef* type = find_type(definition.type);
  if (!type) return AAFRESULT_TYPE_NOT_FOUND;
  definition.form = form_of(*type);
  if (definition.pid == 0 && !allot_pid(definition.pid)) return AAFRESULT_BAD_SIZE;
  const std::uint16_t pid = definition.pid;
  add_own(mutable_class(cls), std::move(definition));
  added = find_property(cls, pid);
  return AAFRESULT_SUCCESS;
}

AAFRESULT MetaModel::add_type(const TypeDef& definition, const TypeDef*& added) {
  if (find_type(definition.identifier)) return AAFRESULT_PROPERTY_DUPLICATE;
  added = &insert(TypeDef(definition));
  return AAFRESULT_SUCCESS;
}

// Numbers of extensions go down from the top. Every class of the file has to be looked at,
// since a number has one meaning in the whole file.
bool MetaModel::allot_pid(std::uint16_t& pid) {
  if (!m_next_pid) {
    std::uint16_t lowest = 0;
    read_all_classes();
    for (const PropertyDef& property : m_property_store) {
      if (property.pid <= last_fixed_pid) continue;
      if (lowest == 0 || property.pid < lowest) lowest = property.pid;
    }
    m_next_pid = lowest == 0 ? std::uint16_t{0xffff} : static_cast<std::uint16_t>(lowest - 1);
  }
  if (*m_next_pid <= last_fixed_pid) return false;
  pid = *m_next_pid;
  --*m_next_pid;
  return true;
}

void MetaModel::read_all_classes() {
  if (!m_dictionary) return;
  StoredKey key;
  StoredObject* object = nullptr;
  for (bool first = true;
       m_dictionary->next_element(pid::MetaDictionary_ClassDefinitions, key, first, object) >= 0 &&
       object;
       first = false) {
    if (const ClassDef* cls = find_class(key.auid())) read_stored_properties(mutable_class(*cls));
  }
}

}  // namespace aafobj
