#include "aafobj/model/object_writer.h"

#include <algorithm>
#include <set>

#include "aafobj/container/directory_entry.h"
#include "aafobj/model/meta_dictionary.h"
#include "aafobj/model/property_stream.h"
#include "aafobj/model/storage_name.h"
#include "aafobj/model/value_order.h"

namespace aafobj {
namespace {

constexpr std::size_t copy_block = std::size_t{2} << 20;

VectorIndex index_of(const StrongVectorValue& value) {
  VectorIndex index;
  index.first_free_key = value.first_free_key;
  index.last_free_key = value.last_free_key;
  for (const StrongElement& element : value.elements)
    index.local_keys.push_back(element.local_key);
  return index;
}

// In a big-endian file the order of the stored bytes is another one.
SetIndex index_of(const StrongSetValue& value, ByteOrder order) {
  SetIndex index;
  index.first_free_key = value.first_free_key;
  index.last_free_key = value.last_free_key;
  index.key_pid = value.key_pid;
  index.key_bytes = value.key_bytes;
  for (const auto& [key, element] : value.elements) {
    index.entries.push_back({element.local_key, element.reference_count, key});
  }
  if (order == ByteOrder::big) {
    std::stable_sort(index.entries.begin(), index.entries.end(), [](const auto& a, const auto& b) {
      return a.key.swapped() < b.key.swapped();
    });
  }
  return index;
}

// Names as a storage compares them, without regard to case.
using Names = std::set<std::u16string, decltype(&name_less)>;

// What was to be removed may have gone with its parent.
bool is_failure_to_remove(Result result) {
  return result != Result::ok && result != Result::invalid_argument && result != Result::not_found;
}

// The storages and streams that a property's value accounts for.
void add_names(const Property& property, Names& names) {
  if (!property.value) return;
  if (auto* strong = std::get_if<StrongValue>(property.value.get())) {
    names.insert(strong->name);
  } else if (auto* vector = std::get_if<StrongVectorValue>(property.value.get())) {
    names.insert(index_name(vector->name));
    for (const StrongElement& element : vector->elements) {
      names.insert(element_name(vector->name, element.local_key));
    }
  } else if (auto* set = std::get_if<StrongSetValue>(property.value.get())) {
    names.insert(index_name(set->name));
    for (const auto& [key, element] : set->elements) {
      names.insert(element_name(set->name, element.local_key));
    }
  } else if (auto* weak = std::get_if<WeakCollectionValue>(property.value.get())) {
    names.insert(index_name(weak->name));
  }
}

}  // namespace

AAFRESULT ObjectWriter::write_changes() {
  if (const AAFRESULT r = define_what_is_used(m_file); r < 0) return r;
  if (const AAFRESULT r = remove_streams(); r < 0) return r;
  if (const AAFRESULT r = m_file.set_cast_off_aside(); r < 0) return r;
  std::vector<StoredObject*> pending;
  pending.swap(m_file.m_changed);
  std::vector<StoredObject*> unattached;
  AAFRESULT failed = AAFRESULT_SUCCESS;
  for (StoredObject* object : pending) {
    if (failed >= 0 && object->is_attached()) {
      failed = write_object(*object);
      if (failed >= 0) {
        object->m_is_changed = false;
        continue;
      }
    }
    unattached.push_back(object);
  }
  m_file.m_changed.insert(m_file.m_changed.end(), unattached.begin(), unattached.end());
  if (failed < 0) return failed;
  if (m_file.m_paths_changed) {
    const std::vector<std::byte> table = m_file.m_paths.write(ByteOrder::little);
    const Result written =
        m_file.m_container->write_stream(k_root_storage, u"referenced properties", table);
    if (written != Result::ok) return aaf_result(written);
  }
  if (const AAFRESULT r = remove_cast_off(); r < 0) return r;
  if (const Result r = m_file.m_container->flush(); r != Result::ok) return aaf_result(r);
  m_file.m_paths_changed = false;
  return AAFRESULT_SUCCESS;
}

// Streams go before anything is written, since a property of the same number may be back.
AAFRESULT ObjectWriter::remove_streams() {
  for (const auto& each : m_file.m_removed_streams) {
    const Result removed = m_file.m_container->remove(each.parent, each.name);
    if (is_failure_to_remove(removed)) return aaf_result(removed);
  }
  m_file.m_removed_streams.clear();
  return AAFRESULT_SUCCESS;
}

AAFRESULT ObjectWriter::remove_cast_off() {
  for (const auto& each : m_file.m_cast_off) {
    const Result removed = m_file.m_container->remove(each.parent, each.name);
    if (is_failure_to_remove(removed)) return aaf_result(removed);
  }
  m_file.m_cast_off.clear();
  return AAFRESULT_SUCCESS;
}

AAFRESULT ObjectWriter::write_object(StoredObject& object) {
  if (const AAFRESULT r = object.ensure_storage(); r < 0) return r;
  std::vector<std::byte> stream;
  if (const AAFRESULT r = encode(object, stream); r < 0) return r;
  CompoundFile& container = *m_file.m_container;
  const Result written = container.write_stream(object.m_storage, u"properties", stream);
  if (written != Result::ok) return aaf_result(written);
  return write_indexes(object, container, object.m_storage, false);
}

AAFRESULT ObjectWriter::write_indexes(StoredObject& object, CompoundFile& container,
                                      StorageId storage, bool all) {
  const ByteOrder order = object.m_order;
  for (Property& property : object.m_properties) {
    if (!property.value) continue;
    std::u16string name;
    std::vector<std::byte> index;
    if (auto* vector = std::get_if<StrongVectorValue>(property.value.get())) {
      if (!all && !vector->is_changed) continue;
      name = vector->name;
      index = write_index(index_of(*vector), order);
      if (!all) vector->is_changed = false;
    } else if (auto* set = std::get_if<StrongSetValue>(property.value.get())) {
      if (!all && !set->is_changed) continue;
      name = set->name;
      index = write_index(index_of(*set, order), order);
      if (!all) set->is_changed = false;
    } else if (auto* weak = std::get_if<WeakCollectionValue>(property.value.get())) {
      if (!all && !weak->is_changed) continue;
      name = weak->name;
      index = write_index(weak->index, order);
      if (!all) weak->is_changed = false;
    } else {
      continue;
    }
    const Result written = container.write_stream(storage, index_name(name), index);
    if (written != Result::ok) return aaf_result(written);
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT ObjectWriter::encode(StoredObject& object, std::vector<std::byte>& stream) {
  std::vector<PropertyEntry> entries;
  std::vector<std::vector<std::byte>> encoded;
  encoded.reserve(object.m_properties.size());
  for (const Property& property : object.m_properties) {
    PropertyEntry entry{property.pid, property.form, {}};
    if (property.value) {
      encode_value(object, property, encoded.emplace_back());
      entry.value = encoded.back();
    } else if (object.m_order == ByteOrder::big && !property.is_foreign) {
      if (const AAFRESULT r = encode_foreign(object, property, encoded.emplace_back()); r < 0) {
        return r;
      }
      entry.value = encoded.back();
    } else {
      entry.value = {object.m_values.data() + property.offset, property.length};
    }
    entries.push_back(entry);
  }
  return write_property_stream(entries, object.m_order, stream);
}

void ObjectWriter::encode_value(StoredObject& object, const Property& property,
                                std::vector<std::byte>& bytes) const {
  ByteWriter writer(object.m_order);
  if (auto* weak = std::get_if<WeakValue>(property.value.get())) {
    const WeakTarget& target = weak->target;
    const bool is_big = object.m_order == ByteOrder::big;
    const StoredKey key = is_big ? target.key.swapped() : target.key;
    writer.put(target.tag);
    writer.put(target.key_pid);
    writer.put(static_cast<std::uint8_t>(key.size()));
    writer.put_bytes(key.bytes());
  } else if (auto* stream = std::get_if<DataStreamValue>(property.value.get())) {
    writer.put(static_cast<std::uint8_t>(stream->mark));
    writer.put_text(stream->name);
  } else {
    std::visit(
        [&](const auto& value) {
          if constexpr (requires { value.name; }) writer.put_text(value.name);
        },
        *property.value);
  }
  bytes = writer.release();
}

// A value of a big-endian object, put back into its order. One that does not fit its type any
// more cannot be.
AAFRESULT ObjectWriter::encode_foreign(StoredObject& object, const Property& property,
                                       std::vector<std::byte>& bytes) {
  const auto from = object.m_values.begin() + property.offset;
  bytes.assign(from, from + property.length);
  MetaModel& meta = m_file.m_meta;
  const PropertyDef* definition = meta.find_property(*object.m_class, property.pid);
  const TypeDef* type = definition ? meta.find_type(definition->type) : nullptr;
  if (!type || !turn_value(meta, *type, bytes, ByteOrder::little)) return AAFRESULT_BAD_TYPE;
  return AAFRESULT_SUCCESS;
}

AAFRESULT ObjectWriter::write_copy(CompoundFile& copy) {
  if (const AAFRESULT r = define_what_is_used(m_file); r < 0) return r;
  StoredObject& root = m_file.root();
  ClassId class_id{};
  std::memcpy(class_id.data(), StoredKey(root_class_id).bytes().data(), class_id.size());
  if (const Result r = copy.set_class_id(k_root_storage, class_id); r != Result::ok) {
    return aaf_result(r);
  }
  std::vector<Place> pending{{&root, k_root_storage}};
  while (!pending.empty()) {
    const Place place = pending.back();
    pending.pop_back();
    if (const AAFRESULT r = copy_object(copy, place, pending); r < 0) return r;
  }
  const std::vector<std::byte> table = m_file.m_paths.write(ByteOrder::little);
  return aaf_result(copy.write_stream(k_root_storage, u"referenced properties", table));
}

AAFRESULT ObjectWriter::copy_object(CompoundFile& copy, const Place& place,
                                    std::vector<Place>& pending) {
  StoredObject& object = *place.object;
  if (const AAFRESULT r = object.load(); r < 0) return r;
  for (Property& property : object.m_properties) {
    auto* weak = property.value ? std::get_if<WeakCollectionValue>(property.value.get()) : nullptr;
    if (!weak) continue;
    if (const AAFRESULT r = object.load_index(*weak); r < 0) return r;
  }
  if (const AAFRESULT r = copy_children(copy, place, pending); r < 0) return r;
  std::vector<std::byte> stream;
  if (const AAFRESULT r = encode(object, stream); r < 0) return r;
  const Result written = copy.write_stream(place.to, u"properties", stream);
  if (written != Result::ok) return aaf_result(written);
  if (const AAFRESULT r = write_indexes(object, copy, place.to, true); r < 0) return r;
  if (object.m_has_storage) return copy_elements(object, object.m_storage, copy, place.to);
  if (object.m_has_former_storage) {
    return copy_elements(object, object.m_former_storage, copy, place.to);
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT ObjectWriter::copy_children(CompoundFile& copy, const Place& place,
                                      std::vector<Place>& pending) {
  std::vector<StoredObject*> children;
  for (Property& property : place.object->m_properties) {
    if (!property.value) continue;
    if (const AAFRESULT r = place.object->load_all_of(property, children); r < 0) return r;
  }
  for (StoredObject* child : children) {
    ClassId class_id{};
    const StoredKey key(child->m_class->identifier);
    std::memcpy(class_id.data(), key.bytes().data(), class_id.size());
    StorageId storage{};
    const Result made = copy.create_storage(place.to, child->m_storage_name, class_id, storage);
    if (made != Result::ok) return aaf_result(made);
    pending.push_back({child, storage});
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT ObjectWriter::copy_streams(StoredObject& object, StorageId from) {
  return copy_elements(object, from, *m_file.m_container, object.m_storage);
}

// What was written by the object's properties is left out, and so is what was let go.
AAFRESULT ObjectWriter::copy_elements(StoredObject& object, StorageId from, CompoundFile& copy,
                                      StorageId to) {
  Names written(name_less);
  written.insert(u"properties");
  if (&object == &m_file.root()) written.insert(u"referenced properties");
  for (const Property& property : object.m_properties)
    add_names(property, written);
  for (const auto* gone : {&m_file.m_cast_off, &m_file.m_removed_streams}) {
    for (const auto& each : *gone) {
      if (each.parent == from) written.insert(each.name);
    }
  }
  std::vector<Element> elements;
  if (const Result r = m_file.m_container->children(from, elements); r != Result::ok) {
    return aaf_result(r);
  }
  for (const Element& element : elements) {
    if (written.contains(element.name)) continue;
    if (element.type == ElementType::stream) {
      if (const AAFRESULT r = copy_stream(from, element.name, copy, to); r < 0) return r;
      continue;
    }
    StorageId storage{};
    const Result made = copy.create_storage(to, element.name, element.class_id, storage);
    if (made != Result::ok) return aaf_result(made);
    if (const AAFRESULT r = copy_storage(element.storage, copy, storage); r < 0) return r;
  }
  return AAFRESULT_SUCCESS;
}

// A storage that no property tells of, with all that is in it.
AAFRESULT ObjectWriter::copy_storage(StorageId from, CompoundFile& copy, StorageId to) {
  std::vector<std::pair<StorageId, StorageId>> pending{{from, to}};
  while (!pending.empty()) {
    const auto [source, target] = pending.back();
    pending.pop_back();
    std::vector<Element> elements;
    if (const Result r = m_file.m_container->children(source, elements); r != Result::ok) {
      return aaf_result(r);
    }
    for (const Element& element : elements) {
      if (element.type == ElementType::stream) {
        if (const AAFRESULT r = copy_stream(source, element.name, copy, target); r < 0) return r;
        continue;
      }
      StorageId storage{};
      const Result made = copy.create_storage(target, element.name, element.class_id, storage);
      if (made != Result::ok) return aaf_result(made);
      pending.emplace_back(element.storage, storage);
    }
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT ObjectWriter::copy_stream(StorageId from, const std::u16string& name, CompoundFile& copy,
                                    StorageId to) {
  Stream source;
  Stream target;
  if (const Result r = m_file.m_container->open_stream(from, name, source); r != Result::ok) {
    return aaf_result(r);
  }
  if (const Result r = copy.create_stream(to, name, target); r != Result::ok) {
    return aaf_result(r);
  }
  std::vector<std::byte> block(
      static_cast<std::size_t>(std::min<std::uint64_t>(source.size(), copy_block)));
  for (std::size_t count = 1; count > 0 && !block.empty();) {
    if (const Result r = source.read(block, count); r != Result::ok) return aaf_result(r);
    const Result r = target.write(std::span(block).first(count));
    if (r != Result::ok) return aaf_result(r);
  }
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
