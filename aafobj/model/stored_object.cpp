#include "aafobj/model/stored_object.h"

#include <algorithm>
#include <cassert>
#include <functional>

#include "aafobj/model/object_file.h"
#include "aafobj/model/property_stream.h"
#include "aafobj/model/storage_name.h"
#include "aafobj/model/value_order.h"

namespace aafobj {
namespace {

constexpr std::size_t max_properties_stream = std::size_t{64} << 20;

// A storage name: UTF-16 with a NUL at its end.
AAFRESULT take_name(std::span<const std::byte> bytes, ByteOrder order, std::u16string& name) {
  if (bytes.size() < 4 || bytes.size() % 2 != 0) return AAFRESULT_BADCONTAINER;
  ByteReader reader(bytes, order);
  while (reader.left() > 2)
    name.push_back(static_cast<char16_t>(reader.take<std::uint16_t>()));
  return reader.take<std::uint16_t>() == 0 ? AAFRESULT_SUCCESS : AAFRESULT_BADCONTAINER;
}

AAFRESULT take_weak(std::span<const std::byte> bytes, ByteOrder order, WeakTarget& target) {
  ByteReader reader(bytes, order);
  target.tag = reader.take<std::uint16_t>();
  target.key_pid = reader.take<std::uint16_t>();
  const std::size_t size = reader.take<std::uint8_t>();
  if (reader.failed() || size > StoredKey::max_bytes || size != reader.left()) {
    return AAFRESULT_BADCONTAINER;
  }
  const StoredKey key(reader.take_bytes(size));
  target.key = order == ByteOrder::big ? key.swapped() : key;
  return AAFRESULT_SUCCESS;
}

template <typename Value>
AAFRESULT take_named(std::span<const std::byte> bytes, ByteOrder order, PropertyValue& value) {
  Value named;
  if (const AAFRESULT r = take_name(bytes, order, named.name); r < 0) return r;
  value = std::move(named);
  return AAFRESULT_SUCCESS;
}

AAFRESULT take_stream(std::span<const std::byte> bytes, ByteOrder order, PropertyValue& value) {
  if (bytes.empty()) return AAFRESULT_BADCONTAINER;
  DataStreamValue stream;
  stream.mark = bytes[0];
  if (const AAFRESULT r = take_name(bytes.subspan(1), order, stream.name); r < 0) return r;
  value = std::move(stream);
  return AAFRESULT_SUCCESS;
}

bool has_value(StoredForm form) {
  switch (form) {
    case StoredForm::strong_reference:
    case StoredForm::strong_vector:
    case StoredForm::strong_set:
    case StoredForm::weak_reference:
    case StoredForm::weak_vector:
    case StoredForm::weak_set:
    case StoredForm::data_stream:
      return true;
    default:
      return false;
  }
}

// Whether the bytes lie in the vector, so that growing it would move them.
bool lies_in(std::span<const std::byte> bytes, const std::vector<std::byte>& store) {
  const std::less<const std::byte*> before;
  return !store.empty() && !before(bytes.data(), store.data()) &&
         before(bytes.data(), store.data() + store.size());
}

}  // namespace

bool StoredObject::is_kind_of(ClassIndex ancestor) const {
  return aafobj::is_kind_of(m_class->nearest, ancestor);
}

bool StoredObject::is_attached() const {
  const StoredObject* object = this;
  while (object->m_owner)
    object = object->m_owner;
  return object == &m_file->root();
}

AAFRESULT StoredObject::load() {
  if (m_is_loaded) return AAFRESULT_SUCCESS;
  if (!m_file->is_open()) return AAFRESULT_NOT_OPEN;
  if (m_is_damaged) return AAFRESULT_BADCONTAINER;
  const AAFRESULT r = read_properties();
  m_is_loaded = r >= 0;
  m_is_damaged = r == AAFRESULT_BADCONTAINER;
  return r;
}

AAFRESULT StoredObject::read_properties() {
  std::vector<std::byte> bytes;
  const Result read =
      m_file->m_container->read_stream(m_storage, u"properties", max_properties_stream, bytes);
  if (read == Result::not_found) return AAFRESULT_BADCONTAINER;
  if (read != Result::ok) return aaf_result(read);
  std::vector<PropertyEntry> entries;
  if (const AAFRESULT r = parse_property_stream(bytes, m_order, entries); r < 0) return r;
  m_values = std::move(bytes);  // the entries' values stay where they are
  const AAFRESULT r = take_entries(entries);
  if (r < 0) {
    m_properties.clear();
    m_values.clear();
  }
  return r;
}

AAFRESULT StoredObject::take_entries(std::span<const PropertyEntry> entries) {
  m_properties.clear();
  m_properties.reserve(entries.size());
  for (const PropertyEntry& entry : entries) {
    const auto offset = static_cast<std::size_t>(entry.value.data() - m_values.data());
    if (const AAFRESULT r = take_entry(entry, offset); r < 0) return r;
  }
  // Of a number that stands twice the first one counts.
  std::stable_sort(m_properties.begin(), m_properties.end(),
                   [](const Property& a, const Property& b) { return a.pid < b.pid; });
  const auto end = std::unique(m_properties.begin(), m_properties.end(),
                               [](const Property& a, const Property& b) { return a.pid == b.pid; });
  m_properties.erase(end, m_properties.end());
  if (m_order == ByteOrder::big) {
    for (Property& property : m_properties)
      take_data(property);
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::take_entry(const PropertyEntry& entry, std::size_t offset) {
  Property property;
  property.pid = entry.pid;
  property.form = entry.form;
  property.offset = static_cast<std::uint32_t>(offset);
  property.length = static_cast<std::uint32_t>(entry.value.size());
  if (has_value(entry.form)) {
    if (const AAFRESULT r = take_value(entry, property); r < 0) return r;
  }
  m_properties.push_back(std::move(property));
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::take_value(const PropertyEntry& entry, Property& property) {
  property.value = std::make_unique<PropertyValue>();
  PropertyValue& value = *property.value;
  switch (entry.form) {
    case StoredForm::strong_reference:
      return take_named<StrongValue>(entry.value, m_order, value);
    case StoredForm::strong_vector:
      return take_named<StrongVectorValue>(entry.value, m_order, value);
    case StoredForm::strong_set:
      return take_named<StrongSetValue>(entry.value, m_order, value);
    case StoredForm::weak_vector:
    case StoredForm::weak_set:
      return take_named<WeakCollectionValue>(entry.value, m_order, value);
    case StoredForm::weak_reference:
      value = WeakValue{};
      return take_weak(entry.value, m_order, std::get<WeakValue>(value).target);
    default:
      return take_stream(entry.value, m_order, value);
  }
}

// Puts the value of a big-endian object in our order. What has no known type stays.
void StoredObject::take_data(Property& property) {
  if (property.value) return;
  property.is_foreign = true;
  const PropertyDef* definition = m_file->m_meta.find_property(*m_class, property.pid);
  if (!definition || property.form != StoredForm::data) return;
  const TypeDef* type = m_file->m_meta.find_type(definition->type);
  const std::span<std::byte> bytes(m_values.data() + property.offset, property.length);
  if (type) property.is_foreign = !turn_value(m_file->m_meta, *type, bytes, ByteOrder::big);
}

std::span<const Property> StoredObject::properties() {
  if (load() < 0) return {};
  return m_properties;
}

Property* StoredObject::find(std::uint16_t pid) {
  const auto at = std::lower_bound(m_properties.begin(), m_properties.end(), pid,
                                   [](const Property& p, std::uint16_t n) { return p.pid < n; });
  return at != m_properties.end() && at->pid == pid ? &*at : nullptr;
}

AAFRESULT StoredObject::require(std::uint16_t pid, Property*& property) {
  if (const AAFRESULT r = load(); r < 0) return r;
  property = find(pid);
  return property ? AAFRESULT_SUCCESS : AAFRESULT_PROP_NOT_PRESENT;
}

AAFRESULT StoredObject::is_present(std::uint16_t pid, bool& present) {
  if (const AAFRESULT r = load(); r < 0) return r;
  present = find(pid) != nullptr;
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::begin_change() {
  if (!m_file->is_writable()) return AAFRESULT_NOT_WRITEABLE;
  if (const AAFRESULT r = load(); r < 0) return r;
  m_file->note_change(*this);
  return AAFRESULT_SUCCESS;
}

Property& StoredObject::add_property(std::uint16_t pid, StoredForm form) {
  const auto at = std::lower_bound(m_properties.begin(), m_properties.end(), pid,
                                   [](const Property& p, std::uint16_t n) { return p.pid < n; });
  Property property;
  property.pid = pid;
  property.form = form;
  return *m_properties.insert(at, std::move(property));
}

AAFRESULT StoredObject::definition_of(std::uint16_t pid, const PropertyDef*& definition) {
  definition = m_file->m_meta.find_property(*m_class, pid);
  return definition ? AAFRESULT_SUCCESS : AAFRESULT_BAD_PROP;
}

AAFRESULT StoredObject::remove(std::uint16_t pid) {
  if (const AAFRESULT r = begin_change(); r < 0) return r;
  Property* property = find(pid);
  if (!property) return AAFRESULT_PROP_NOT_PRESENT;
  if (property->value) {
    if (const AAFRESULT r = let_go_of_all(*property); r < 0) return r;
    property = find(pid);
  }
  m_properties.erase(m_properties.begin() + (property - m_properties.data()));
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::get_data(std::uint16_t pid, std::span<const std::byte>& bytes) {
  Property* property = nullptr;
  if (const AAFRESULT r = require(pid, property); r < 0) return r;
  if (property->form != StoredForm::data) return AAFRESULT_BAD_TYPE;
  bytes = {m_values.data() + property->offset, property->length};
  return AAFRESULT_SUCCESS;
}

AAFRESULT StoredObject::get_raw(std::uint16_t pid, std::span<const std::byte>& bytes) {
  Property* property = nullptr;
  if (const AAFRESULT r = require(pid, property); r < 0) return r;
  if (property->value) return AAFRESULT_BAD_TYPE;
  bytes = {m_values.data() + property->offset, property->length};
  return AAFRESULT_SUCCESS;
}

// Values that grew leave their former bytes behind; these go once they are the larger part.
void StoredObject::compact_values() {
  std::size_t in_use = 0;
  for (const Property& property : m_properties)
    in_use += property.length;
  if (m_values.size() < 2 * in_use + 4096) return;
  std::vector<std::byte> values;
  values.reserve(in_use);
  for (Property& property : m_properties) {
    const auto from = m_values.begin() + property.offset;
    property.offset = static_cast<std::uint32_t>(values.size());
    values.insert(values.end(), from, from + property.length);
  }
  m_values = std::move(values);
}

AAFRESULT StoredObject::set_data(std::uint16_t pid, std::span<const std::byte> bytes) {
  if (bytes.empty() || bytes.size() > max_value_bytes) return AAFRESULT_BAD_SIZE;
  if (lies_in(bytes, m_values)) {
    const std::vector<std::byte> copy(bytes.begin(), bytes.end());
    return set_data(pid, copy);
  }
  if (const AAFRESULT r = begin_change(); r < 0) return r;
  Property* property = find(pid);
  if (!property) {
    const PropertyDef* definition = nullptr;
    if (const AAFRESULT r = definition_of(pid, definition); r < 0) return r;
    if (definition->form != StoredForm::data) return AAFRESULT_BAD_TYPE;
    property = &add_property(pid, StoredForm::data);
  }
  if (property->form != StoredForm::data) return AAFRESULT_BAD_TYPE;
  if (bytes.size() > property->length) {
    property->length = 0;
    compact_values();
    property->offset = static_cast<std::uint32_t>(m_values.size());
    m_values.resize(m_values.size() + bytes.size());
  }
  property->length = static_cast<std::uint32_t>(bytes.size());
  property->is_foreign = false;
  std::copy(bytes.begin(), bytes.end(), m_values.begin() + property->offset);
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
