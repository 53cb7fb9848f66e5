// References, collections and streams of an object; see stored_object.cpp for the rest.

#include <algorithm>
#include <cassert>

#include "aafobj/model/object_file.h"
#include "aafobj/model/object_writer.h"
#include "aafobj/model/storage_name.h"
#include "aafobj/model/stored_object.h"

namespace aafobj {
namespace {

constexpr std::size_t max_index_stream = std::size_t{256} << 20;
constexpr std::uint16_t max_depth = 512;  // of objects in objects
constexpr std::byte no_byte_order{0x55};

bool is_strong(StoredForm form) {
  return form == StoredForm::strong_reference || form == StoredForm::strong_vector ||
         form == StoredForm::strong_set;
}

}  // namespace

template <typename Value>
AAFRESULT StoredObject::load_index(Value& value) {
  if (value.is_loaded) return AAFRESULT_SUCCESS;
  if (value.is_damaged) return AAFRESULT_BADCONTAINER;
  const AAFRESULT r = read_index(value);
  value.is_loaded = r >= 0;
  value.is_damaged = r == AAFRESULT_BADCONTAINER;
  return r;
}

template AAFRESULT StoredObject::load_index(WeakCollectionValue& value);

// The value of a property that is there, in the form asked for, its index read.
template <typename Value>
AAFRESULT StoredObject::value_of(std::uint16_t pid, Value*& value) {
  Property* property = nullptr;
  if (const AAFRESULT r = require(pid, property); r < 0) return r;
  value = property->value ? std::get_if<Value>(property->value.get()) : nullptr;
  if (!value) return AAFRESULT_BAD_TYPE;
  if constexpr (requires { value->is_loaded; }) {
    return load_index(*value);
  } else {
    return AAFRESULT_SUCCESS;
  }
}

// The same before a change, which makes the property when it is missing.
template <typename Value>
AAFRESULT StoredObject::value_to_change(std::uint16_t pid, Value*& value) {
  if (const AAFRESULT r = begin_change(); r < 0) return r;
  if (!find(pid)) {
    if (const AAFRESULT r = make_collection(pid); r < 0) return r;
  }
  if (const AAFRESULT r = value_of(pid, value); r < 0) return r;
  value->is_changed = true;
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::read_index_stream(const std::u16string& name,
                                          std::vector<std::byte>& bytes) {
  if (!m_file->is_open()) return AAFRESULT_NOT_OPEN;
  const Result read =
      m_file->m_container->read_stream(m_storage, index_name(name), max_index_stream, bytes);
  return read == Result::not_found ? AAFRESULT_BADCONTAINER : aaf_result(read);
}

AAFRESULT StoredObject::read_index(StrongVectorValue& value) {
  std::vector<std::byte> bytes;
  if (const AAFRESULT r = read_index_stream(value.name, bytes); r < 0) return r;
  VectorIndex index;
  if (const AAFRESULT r = parse_index(bytes, m_order, index); r < 0) return r;
  value.first_free_key = index.first_free_key;
  value.last_free_key = index.last_free_key;
  value.elements.reserve(index.local_keys.size());
  for (const std::uint32_t key : index.local_keys)
    value.elements.push_back({key, 1, nullptr});
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::read_index(StrongSetValue& value) {
  std::vector<std::byte> bytes;
  if (const AAFRESULT r = read_index_stream(value.name, bytes); r < 0) return r;
  SetIndex index;
  if (const AAFRESULT r = parse_index(bytes, m_order, index); r < 0) return r;
  value.first_free_key = index.first_free_key;
  value.last_free_key = index.last_free_key;
  value.key_pid = index.key_pid;
  value.key_bytes = index.key_bytes;
  for (const SetIndex::Entry& entry : index.entries) {
    // Entries stand in this order already, so each goes to the end at once.
    value.elements.emplace_hint(value.elements.end(), entry.key,
                                StrongElement{entry.local_key, entry.reference_count, nullptr});
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::read_index(WeakCollectionValue& value) {
  std::vector<std::byte> bytes;
  if (const AAFRESULT r = read_index_stream(value.name, bytes); r < 0) return r;
  if (const AAFRESULT r = parse_index(bytes, m_order, value.index); r < 0) return r;
  return AAFRESULT_SUCCESS;
}

// The object in a storage of this one's.
AAFRESULT StoredObject::open_child(std::uint16_t pid, const std::u16string& name,
                                   StoredObject*& object) {
  if (!m_file->is_open()) return AAFRESULT_NOT_OPEN;
  if (m_depth >= max_depth) return AAFRESULT_BADCONTAINER;
  CompoundFile& container = *m_file->m_container;
  StorageId storage{};
  const Result opened = container.open_storage(m_storage, name, storage);
  if (opened == Result::not_found) return AAFRESULT_BADCONTAINER;
  if (opened != Result::ok) return aaf_result(opened);
  ClassId class_id{};
  if (const Result r = container.class_id(storage, class_id); r != Result::ok) {
    return aaf_result(r);
  }
  if (const AAFRESULT r = m_file->claim(storage); r < 0) return r;
  const ClassDef& cls =
      m_file->m_meta.class_or_unknown(StoredKey(std::as_bytes(std::span(class_id))).auid());
  object = &m_file->add_object(cls);
  object->m_storage = storage;
  object->m_has_storage = true;
  own(*object, pid, name);
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::open_element(std::uint16_t pid, const std::u16string& collection,
                                     StrongElement& element) {
  if (element.object) return AAFRESULT_SUCCESS;
  return open_child(pid, element_name(collection, element.local_key), element.object);
}

AAFRESULT StoredObject::get_object(std::uint16_t pid, StoredObject*& object) {
  StrongValue* value = nullptr;
  if (const AAFRESULT r = value_of(pid, value); r < 0) return r;
  if (!value->object) {
    StoredObject* opened = nullptr;
    if (const AAFRESULT r = open_child(pid, value->name, opened); r < 0) return r;
    value->object = opened;
  }
  object = value->object;
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::check_can_own(const StoredObject& object) const {
  if (object.m_file != m_file) return AAFRESULT_INVALID_OBJ;
  if (object.m_owner || &object == &m_file->root()) return AAFRESULT_OBJECT_ALREADY_ATTACHED;
  for (const StoredObject* above = this; above; above = above->m_owner) {
    if (above == &object) return AAFRESULT_INVALID_OBJ;
  }
  return AAFRESULT_SUCCESS;
}

void StoredObject::own(StoredObject& object, std::uint16_t pid, std::u16string storage) {
  object.m_owner = this;
  object.m_owner_pid = pid;
  object.m_depth = static_cast<std::uint16_t>(m_depth + 1);
  object.m_storage_name = std::move(storage);
}

AAFRESULT StoredObject::set_object(std::uint16_t pid, StoredObject& object) {
  if (const AAFRESULT r = begin_change(); r < 0) return r;
  if (const AAFRESULT r = check_can_own(object); r < 0) return r;
  Property* property = find(pid);
  if (property) {
    if (property->form != StoredForm::strong_reference) return AAFRESULT_BAD_TYPE;
    if (const AAFRESULT r = let_go_of_all(*property); r < 0) return r;
  } else {
    const PropertyDef* definition = nullptr;
    if (const AAFRESULT r = definition_of(pid, definition); r < 0) return r;
    if (definition->form != StoredForm::strong_reference) return AAFRESULT_BAD_TYPE;
    property = &add_property(pid, definition->form);
    property->value = std::make_unique<PropertyValue>(
        StrongValue{storage_name(definition->name, pid, definition->form), nullptr});
  }
  StrongValue& value = std::get<StrongValue>(*property->value);
  value.object = &object;
  own(object, pid, value.name);
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::get_set(std::uint16_t pid, StrongSetValue*& value) {
  return value_of(pid, value);
}

AAFRESULT StoredObject::make_collection(std::uint16_t pid) {
  if (const AAFRESULT r = begin_change(); r < 0) return r;
  if (find(pid)) return AAFRESULT_PROP_ALREADY_PRESENT;
  const PropertyDef* definition = nullptr;
  if (const AAFRESULT r = definition_of(pid, definition); r < 0) return r;
  const StoredForm form = definition->form;
  PropertyValue made;
  std::u16string name = storage_name(definition->name, pid, form);
  if (form == StoredForm::strong_vector) {
    StrongVectorValue value;
    value.name = std::move(name);
    value.is_loaded = value.is_changed = true;
    made = std::move(value);
  } else if (form == StoredForm::strong_set) {
    StrongSetValue value;
    value.name = std::move(name);
    value.is_loaded = value.is_changed = true;
    if (const AAFRESULT r = fill_key_shape(pid, value); r < 0) return r;
    made = std::move(value);
  } else if (form == StoredForm::weak_vector || form == StoredForm::weak_set) {
    WeakCollectionValue value;
    value.name = std::move(name);
    value.is_loaded = value.is_changed = true;
    if (const AAFRESULT r = fill_weak_shape(pid, value.index); r < 0) return r;
    made = std::move(value);
  } else {
    return AAFRESULT_BAD_TYPE;
  }
  add_property(pid, form).value = std::make_unique<PropertyValue>(std::move(made));
  return AAFRESULT_SUCCESS;
}

// A set's key is the property that identifies its elements. Parameters alone are keyed by the
// identifier of their definition, under the number of a definition's own identifier.
AAFRESULT StoredObject::fill_key_shape(std::uint16_t pid, StrongSetValue& value) {
  if (pid == pid::OperationGroup_Parameters) {
    value.key_pid = pid::DefinitionObject_Identification;
    value.key_bytes = sizeof(aafUID_t);
    return AAFRESULT_SUCCESS;
  }
  MetaModel& meta = m_file->m_meta;
  const PropertyDef* definition = meta.find_property(*m_class, pid);
  const TypeDef* type = definition ? meta.find_type(definition->type) : nullptr;
  if (!type || !type->element) return AAFRESULT_BAD_TYPE;
  const PropertyDef* key = meta.unique_identifier(meta.class_or_unknown(type->element->target));
  const TypeDef* key_type = key ? meta.find_type(key->type) : nullptr;
  if (!key_type || key_type->size_bytes == 0 || key_type->size_bytes > StoredKey::max_bytes) {
    return AAFRESULT_BAD_TYPE;
  }
  value.key_pid = key->pid;
  value.key_bytes = static_cast<std::uint8_t>(key_type->size_bytes);
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::fill_weak_shape(std::uint16_t pid, WeakIndex& index) {
  MetaModel& meta = m_file->m_meta;
  const PropertyDef* definition = meta.find_property(*m_class, pid);
  const TypeDef* type = definition ? meta.find_type(definition->type) : nullptr;
  if (!type || !type->element) return AAFRESULT_BAD_TYPE;
  std::vector<std::uint16_t> path;
  for (const TypeDef::Member& step : type->element->members) {
    const PropertyRow* row = find_property(step.identifier);
    if (!row) return AAFRESULT_BAD_TYPE;
    path.push_back(row->pid);
  }
  const PropertyDef* key = meta.unique_identifier(meta.class_or_unknown(type->element->target));
  const TypeDef* key_type = key ? meta.find_type(key->type) : nullptr;
  if (path.empty() || !key_type) return AAFRESULT_BAD_TYPE;
  index.key_pid = key->pid;
  index.key_bytes = static_cast<std::uint8_t>(key_type->size_bytes);
  return m_file->tag_of(path, index.tag);
}

AAFRESULT StoredObject::count_elements(std::uint16_t pid, std::size_t& count) {
  count = 0;
  Property* property = nullptr;
  const AAFRESULT there = require(pid, property);
  if (there == AAFRESULT_PROP_NOT_PRESENT) return AAFRESULT_SUCCESS;
  if (there < 0) return there;
  if (property->form == StoredForm::strong_set) {
    StrongSetValue* set = nullptr;
    if (const AAFRESULT r = value_of(pid, set); r < 0) return r;
    count = set->elements.size();
    return AAFRESULT_SUCCESS;
  }
  if (property->form == StoredForm::weak_vector || property->form == StoredForm::weak_set) {
    WeakCollectionValue* weak = nullptr;
    if (const AAFRESULT r = value_of(pid, weak); r < 0) return r;
    count = weak->index.keys.size();
    return AAFRESULT_SUCCESS;
  }
  StrongVectorValue* vector = nullptr;
  if (const AAFRESULT r = value_of(pid, vector); r < 0) return r;
  count = vector->elements.size();
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::element_at(std::uint16_t pid, std::size_t index, StoredObject*& object) {
  StrongVectorValue* value = nullptr;
  const AAFRESULT there = value_of(pid, value);
  if (there == AAFRESULT_PROP_NOT_PRESENT) return AAFRESULT_BADINDEX;
  if (there < 0) return there;
  if (index >= value->elements.size()) return AAFRESULT_BADINDEX;
  StrongElement& element = value->elements[index];
  if (const AAFRESULT r = open_element(pid, value->name, element); r < 0) return r;
  object = element.object;
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::insert_at(std::uint16_t pid, std::size_t index, StoredObject& object) {
  if (const AAFRESULT r = check_can_own(object); r < 0) return r;
  StrongVectorValue* value = nullptr;
  if (const AAFRESULT r = value_to_change(pid, value); r < 0) return r;
  if (index > value->elements.size()) return AAFRESULT_BADINDEX;
  if (value->first_free_key == no_last_free_key) return AAFRESULT_BAD_SIZE;
  const std::uint32_t key = value->first_free_key++;
  value->elements.insert(value->elements.begin() + static_cast<std::ptrdiff_t>(index),
                         {key, 1, &object});
  own(object, pid, element_name(value->name, key));
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::append(std::uint16_t pid, StoredObject& object) {
  std::size_t count = 0;
  if (const AAFRESULT r = count_elements(pid, count); r < 0) return r;
  return insert_at(pid, count, object);
}

AAFRESULT StoredObject::remove_at(std::uint16_t pid, std::size_t index) {
  StoredObject* object = nullptr;
  if (const AAFRESULT r = element_at(pid, index, object); r < 0) return r;
  StrongVectorValue* value = nullptr;
  if (const AAFRESULT r = value_to_change(pid, value); r < 0) return r;
  if (const AAFRESULT r = let_go(*object); r < 0) return r;
  value->elements.erase(value->elements.begin() + static_cast<std::ptrdiff_t>(index));
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::find_element(std::uint16_t pid, const StoredKey& key,
                                     StoredObject*& object) {
  StrongSetValue* value = nullptr;
  const AAFRESULT there = value_of(pid, value);
  if (there == AAFRESULT_PROP_NOT_PRESENT) return AAFRESULT_OBJECT_NOT_FOUND;
  if (there < 0) return there;
  const auto at = value->elements.lower_bound(key);
  if (at == value->elements.end() || at->first != key) return AAFRESULT_OBJECT_NOT_FOUND;
  if (const AAFRESULT r = open_element(pid, value->name, at->second); r < 0) return r;
  object = at->second.object;
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::next_element(std::uint16_t pid, StoredKey& key, bool from_start,
                                     StoredObject*& object) {
  object = nullptr;
  StrongSetValue* value = nullptr;
  const AAFRESULT there = value_of(pid, value);
  if (there == AAFRESULT_PROP_NOT_PRESENT) return AAFRESULT_SUCCESS;
  if (there < 0) return there;
  const auto at = from_start ? value->elements.begin() : value->elements.upper_bound(key);
  if (at == value->elements.end()) return AAFRESULT_SUCCESS;
  if (const AAFRESULT r = open_element(pid, value->name, at->second); r < 0) return r;
  key = at->first;
  object = at->second.object;
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::insert_keyed(std::uint16_t pid, const StoredKey& key,
                                     StoredObject& object) {
  if (const AAFRESULT r = check_can_own(object); r < 0) return r;
  StrongSetValue* value = nullptr;
  if (const AAFRESULT r = value_to_change(pid, value); r < 0) return r;
  if (key.size() != value->key_bytes) return AAFRESULT_BAD_SIZE;
  if (value->elements.contains(key)) return AAFRESULT_PROPERTY_DUPLICATE;
  if (value->first_free_key == no_last_free_key) return AAFRESULT_BAD_SIZE;
  const std::uint32_t local_key = value->first_free_key++;
  value->elements.emplace(key, StrongElement{local_key, 1, &object});
  own(object, pid, element_name(value->name, local_key));
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::remove_keyed(std::uint16_t pid, const StoredKey& key) {
  StoredObject* object = nullptr;
  if (const AAFRESULT r = find_element(pid, key, object); r < 0) return r;
  StrongSetValue* value = nullptr;
  if (const AAFRESULT r = value_to_change(pid, value); r < 0) return r;
  if (const AAFRESULT r = let_go(*object); r < 0) return r;
  value->elements.erase(value->elements.find(key));
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::load_all_of(Property& property, std::vector<StoredObject*>& found) {
  if (!is_strong(property.form)) return AAFRESULT_SUCCESS;
  const std::uint16_t pid = property.pid;
  if (property.form == StoredForm::strong_reference) {
    StoredObject* object = nullptr;
    if (const AAFRESULT r = get_object(pid, object); r < 0) return r;
    found.push_back(object);
    return AAFRESULT_SUCCESS;
  }
  if (auto* vector = std::get_if<StrongVectorValue>(property.value.get())) {
    if (const AAFRESULT r = load_index(*vector); r < 0) return r;
    for (StrongElement& element : vector->elements) {
      if (const AAFRESULT r = open_element(pid, vector->name, element); r < 0) return r;
      found.push_back(element.object);
    }
    return AAFRESULT_SUCCESS;
  }
  auto& set = std::get<StrongSetValue>(*property.value);
  if (const AAFRESULT r = load_index(set); r < 0) return r;
  for (auto& [key, element] : set.elements) {
    if (const AAFRESULT r = open_element(pid, set.name, element); r < 0) return r;
    found.push_back(element.object);
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::contained_objects(std::uint16_t pid, std::vector<StoredObject*>& objects) {
  Property* property = nullptr;
  if (const AAFRESULT r = require(pid, property); r < 0) return r;
  if (!is_strong(property->form)) return AAFRESULT_BAD_TYPE;
  return load_all_of(*property, objects);
}

AAFRESULT StoredObject::get_weak(std::uint16_t pid, WeakTarget& target) {
  WeakValue* value = nullptr;
  if (const AAFRESULT r = value_of(pid, value); r < 0) return r;
  target = value->target;
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::set_weak(std::uint16_t pid, const WeakTarget& target) {
  if (const AAFRESULT r = begin_change(); r < 0) return r;
  Property* property = find(pid);
  if (!property) {
    const PropertyDef* definition = nullptr;
    if (const AAFRESULT r = definition_of(pid, definition); r < 0) return r;
    if (definition->form != StoredForm::weak_reference) return AAFRESULT_BAD_TYPE;
    property = &add_property(pid, definition->form);
    property->value = std::make_unique<PropertyValue>(WeakValue{});
  }
  WeakValue* value = property->value ? std::get_if<WeakValue>(property->value.get()) : nullptr;
  if (!value) return AAFRESULT_BAD_TYPE;
  value->target = target;
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::get_weak_list(std::uint16_t pid, std::vector<WeakTarget>& targets) {
  targets.clear();
  WeakCollectionValue* value = nullptr;
  if (const AAFRESULT r = value_of(pid, value); r < 0) return r;
  targets.reserve(value->index.keys.size());
  for (const StoredKey& key : value->index.keys) {
    targets.push_back({value->index.tag, value->index.key_pid, key});
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::set_weak_list(std::uint16_t pid, std::span<const WeakTarget> targets) {
  for (const WeakTarget& target : targets) {
    const WeakTarget& first = targets.front();
    if (target.tag != first.tag || target.key_pid != first.key_pid ||
        target.key.size() != first.key.size() || target.key.size() == 0) {
      return AAFRESULT_INVALID_PARAM;
    }
  }
  WeakCollectionValue* value = nullptr;
  if (const AAFRESULT r = value_to_change(pid, value); r < 0) return r;
  WeakIndex& index = value->index;
  index.keys.clear();
  for (const WeakTarget& target : targets)
    index.keys.push_back(target.key);
  if (find(pid)->form == StoredForm::weak_set) {
    std::sort(index.keys.begin(), index.keys.end());
    index.keys.erase(std::unique(index.keys.begin(), index.keys.end()), index.keys.end());
  }
  if (!targets.empty()) {
    index.tag = targets.front().tag;
    index.key_pid = targets.front().key_pid;
    index.key_bytes = static_cast<std::uint8_t>(targets.front().key.size());
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::open_stream(std::uint16_t pid, Stream& stream) {
  DataStreamValue* value = nullptr;
  if (const AAFRESULT r = value_of(pid, value); r < 0) return r;
  if (!m_file->is_open()) return AAFRESULT_NOT_OPEN;
  StorageId storage = m_storage;
  if (!m_has_storage) {
    if (!m_has_former_storage) return AAFRESULT_OBJECT_NOT_ATTACHED;
    storage = m_former_storage;
  }
  const Result opened = m_file->m_container->open_stream(storage, value->name, stream);
  return opened == Result::not_found ? AAFRESULT_BADCONTAINER : aaf_result(opened);
}

AAFRESULT StoredObject::create_stream(std::uint16_t pid, Stream& stream) {
  if (const AAFRESULT r = begin_change(); r < 0) return r;
  if (!is_attached()) return AAFRESULT_OBJECT_NOT_ATTACHED;
  if (const AAFRESULT r = ensure_storage(); r < 0) return r;
  if (find(pid)) return open_stream(pid, stream);
  const PropertyDef* definition = nullptr;
  if (const AAFRESULT r = definition_of(pid, definition); r < 0) return r;
  if (definition->form != StoredForm::data_stream) return AAFRESULT_BAD_TYPE;
  DataStreamValue value{storage_name(definition->name, pid, definition->form), no_byte_order};
  if (const AAFRESULT r = new_stream(value.name, stream); r < 0) return r;
  add_property(pid, definition->form).value = std::make_unique<PropertyValue>(std::move(value));
  return AAFRESULT_SUCCESS;
}

// A stream that the object had and that was removed since the last save is still there.
AAFRESULT StoredObject::new_stream(const std::u16string& name, Stream& stream) {
  CompoundFile& container = *m_file->m_container;
  const auto removed = std::erase_if(m_file->m_removed_streams, [&](const auto& each) {
    return each.parent == m_storage && each.name == name;
  });
  if (removed == 0) return aaf_result(container.create_stream(m_storage, name, stream));
  const Result opened = container.open_stream(m_storage, name, stream);
  return aaf_result(opened == Result::ok ? stream.set_size(0) : opened);
}

// Lets go of what a property contains, before the property goes or gets another value.
AAFRESULT StoredObject::let_go_of_all(Property& property) {
  std::vector<StoredObject*> contained;
  if (const AAFRESULT r = load_all_of(property, contained); r < 0) return r;
  for (StoredObject* object : contained) {
    if (const AAFRESULT r = let_go(*object); r < 0) return r;
  }
  if (!m_has_storage && !m_has_former_storage) return AAFRESULT_SUCCESS;
  std::u16string name;
  if (auto* vector = std::get_if<StrongVectorValue>(property.value.get())) {
    name = index_name(vector->name);
  } else if (auto* set = std::get_if<StrongSetValue>(property.value.get())) {
    name = index_name(set->name);
  } else if (auto* weak = std::get_if<WeakCollectionValue>(property.value.get())) {
    name = index_name(weak->name);
  } else if (auto* stream = std::get_if<DataStreamValue>(property.value.get())) {
    name = stream->name;
  } else {
    return AAFRESULT_SUCCESS;
  }
  const StorageId storage = m_has_storage ? m_storage : m_former_storage;
  m_file->m_removed_streams.push_back({storage, std::move(name), false});
  return AAFRESULT_SUCCESS;
}

// The object is in no other one afterwards. Its storage stays until the next save, so that its
// streams can be had when it goes into another object.
AAFRESULT StoredObject::let_go(StoredObject& object) {
  if (object.m_has_storage) {
    if (const AAFRESULT r = object.load_deep(); r < 0) return r;
    m_file->m_cast_off.push_back({m_storage, object.m_storage_name, false});
    object.forget_storage();
  }
  object.m_owner = nullptr;
  object.m_owner_pid = 0;
  object.m_depth = 0;
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::load_deep() {
  std::vector<StoredObject*> pending{this};
  while (!pending.empty()) {
    StoredObject* object = pending.back();
    pending.pop_back();
    if (const AAFRESULT r = object->load(); r < 0) return r;
    for (Property& property : object->m_properties) {
      if (!property.value) continue;
      if (const AAFRESULT r = object->load_all_of(property, pending); r < 0) return r;
      if (auto* weak = std::get_if<WeakCollectionValue>(property.value.get())) {
        if (const AAFRESULT r = object->load_index(*weak); r < 0) return r;
      }
    }
  }
  return AAFRESULT_SUCCESS;
}

// Everything below is in memory by now, but for streams.
void StoredObject::forget_storage() {
  std::vector<StoredObject*> pending{this};
  while (!pending.empty()) {
    StoredObject* object = pending.back();
    pending.pop_back();
    if (object->m_has_storage) {
      object->m_former_storage = object->m_storage;
      object->m_has_former_storage = true;
      object->m_has_storage = false;
    }
    m_file->note_change(*object);
    for (Property& property : object->m_properties) {
      if (!property.value) continue;
      std::visit(
          [](auto& value) {
            if constexpr (requires { value.is_changed; }) value.is_changed = true;
          },
          *property.value);
      if (object->load_all_of(property, pending) < 0) assert(false);
    }
  }
}

// Makes the storages of this object and of those that it is in, from the top.
AAFRESULT StoredObject::ensure_storage() {
  std::vector<StoredObject*> missing;
  for (StoredObject* object = this; object && !object->m_has_storage; object = object->m_owner) {
    missing.push_back(object);
  }
  while (!missing.empty()) {
    if (const AAFRESULT r = missing.back()->make_storage(); r < 0) return r;
    missing.pop_back();
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::make_storage() {
  assert(m_owner && m_owner->m_has_storage);
  ClassId class_id{};
  const StoredKey key(m_class->identifier);
  std::memcpy(class_id.data(), key.bytes().data(), class_id.size());
  CompoundFile& container = *m_file->m_container;
  StorageId storage{};
  Result made = container.create_storage(m_owner->m_storage, m_storage_name, class_id, storage);
  if (made == Result::already_exists) {
    if (const AAFRESULT r = m_file->set_cast_off_aside(); r < 0) return r;
    made = container.create_storage(m_owner->m_storage, m_storage_name, class_id, storage);
  }
  if (made != Result::ok) return aaf_result(made);
  m_storage = storage;
  m_has_storage = true;
  if (const AAFRESULT r = m_file->claim(storage); r < 0) return r;
  if (!m_has_former_storage) return AAFRESULT_SUCCESS;
  m_has_former_storage = false;
  ClassId former{};
  if (container.class_id(m_former_storage, former) == Result::invalid_argument) {
    // It went with a save while the object was in no other one, and the streams with it.
    std::erase_if(m_properties, [](const Property& property) {
      return property.value && std::holds_alternative<DataStreamValue>(*property.value);
    });
    return AAFRESULT_SUCCESS;
  }
  return ObjectWriter(*m_file).copy_streams(*this, m_former_storage);
}

}  // namespace aafobj
