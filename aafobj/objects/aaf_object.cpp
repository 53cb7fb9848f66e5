#include "aafobj/objects/aaf_object.h"

#include <algorithm>

#include "aafobj/objects/meta_objects.h"
#include "aafobj/objects/not_offered_definition.h"
#include "aafobj/objects/not_offered_file.h"
#include "aafobj/objects/property_objects.h"

namespace aafobj {

AafObject::AafObject(std::shared_ptr<FileSession> session, StoredObject& stored)
    : m_session(std::move(session)), m_stored(&stored) {
  m_stored->attachment = this;
}

AafObject::~AafObject() {
  m_stored->attachment = nullptr;
}

void* AafObject::find_interface(REFIID iid) {
  if (same_iid(iid, iid_aaf_object)) return this;
  return Adds::find_interface(iid);
}

AafObject* AafObject::behind(IUnknown* pointer) {
  void* object = nullptr;
  if (!pointer || pointer->QueryInterface(iid_aaf_object, &object) < 0) return nullptr;
  // The caller's own reference keeps it.
  auto* behind = static_cast<AafObject*>(object);
  behind->release();
  return behind;
}

HRESULT AafObject::GetGeneration(IAAFIdentification** ppGeneration) {
  if (!ppGeneration) return AAFRESULT_NULL_PARAM;
  aafUID_t generation{};
  if (const HRESULT r = GetGenerationAUID(&generation); r < 0) return r;
  StoredObject* header = nullptr;
  if (const HRESULT r = m_session->file().header(header); r < 0) return r;
  Ref<IAAFHeader> header_object;
  if (const HRESULT r = m_session->hand_out(*header, header_object.put()); r < 0) return r;
  return header_object->LookupIdentification(generation, ppGeneration);
}

HRESULT AafObject::GetGenerationAUID(aafUID_t* pResult) {
  return read_same(pid::InterchangeObject_Generation, pResult);
}

HRESULT AafObject::GetDefinition(IAAFClassDef** ppClassDef) {
  if (!ppClassDef) return AAFRESULT_NULL_PARAM;
  return m_session->hand_out(m_stored->class_def(), ppClassDef);
}

HRESULT AafObject::GetProperties(IEnumAAFProperties** ppEnum) {
  if (!ppEnum) return AAFRESULT_NULL_PARAM;
  if (const HRESULT r = m_stored->load(); r < 0) return r;
  return enumerate_properties(*this, ppEnum);
}

HRESULT AafObject::CountProperties(aafUInt32* pCount) {
  if (!pCount) return AAFRESULT_NULL_PARAM;
  if (const HRESULT r = m_stored->load(); r < 0) return r;
  *pCount = static_cast<aafUInt32>(m_stored->properties().size());
  return AAFRESULT_SUCCESS;
}

HRESULT AafObject::GetPropertyValue(IAAFPropertyDef* pPropDef, IAAFPropertyValue** ppPropVal) {
  if (!pPropDef || !ppPropVal) return AAFRESULT_NULL_PARAM;
  const PropertyDef* definition = nullptr;
  if (const HRESULT r = definition_for(*m_stored, pPropDef, definition); r < 0) return r;
  return make_value_of_property(*this, *definition, ppPropVal);
}

HRESULT AafObject::SetPropertyValue(IAAFPropertyDef* pPropDef, IAAFPropertyValue* pPropVal) {
  if (!pPropDef || !pPropVal) return AAFRESULT_NULL_PARAM;
  const PropertyDef* definition = nullptr;
  if (const HRESULT r = definition_for(*m_stored, pPropDef, definition); r < 0) return r;
  return store_value(*this, *definition, pPropVal);
}

HRESULT AafObject::IsPropertyPresent(IAAFPropertyDef* pPropDef, aafBoolean_t* pResult) {
  if (!pPropDef || !pResult) return AAFRESULT_NULL_PARAM;
  const PropertyDef* definition = nullptr;
  if (const HRESULT r = definition_for(*m_stored, pPropDef, definition); r < 0) return r;
  bool present = false;
  if (const HRESULT r = m_stored->is_present(definition->pid, present); r < 0) return r;
  *pResult = present ? kAAFTrue : kAAFFalse;
  return AAFRESULT_SUCCESS;
}

HRESULT AafObject::RemoveOptionalProperty(IAAFPropertyDef* pPropDef) {
  if (!pPropDef) return AAFRESULT_NULL_PARAM;
  const PropertyDef* definition = nullptr;
  if (const HRESULT r = definition_for(*m_stored, pPropDef, definition); r < 0) return r;
  if (!definition->is_optional) return AAFRESULT_BAD_PROP;
  return m_stored->remove(definition->pid);
}

HRESULT AafObject::CreateOptionalPropertyValue(IAAFPropertyDef* pPropDef,
                                               IAAFPropertyValue** ppPropVal) {
  if (!pPropDef || !ppPropVal) return AAFRESULT_NULL_PARAM;
  const PropertyDef* definition = nullptr;
  if (const HRESULT r = definition_for(*m_stored, pPropDef, definition); r < 0) return r;
  bool present = false;
  if (const HRESULT r = m_stored->is_present(definition->pid, present); r < 0) return r;
  if (present) return AAFRESULT_PROP_ALREADY_PRESENT;
  if (!definition->is_optional) return AAFRESULT_BAD_PROP;
  return make_empty_value(*this, *definition, ppPropVal);
}

HRESULT AafObject::GetDictionary(IAAFDictionary** ppDictionary) {
  if (!ppDictionary) return AAFRESULT_NULL_PARAM;
  StoredObject* dictionary = nullptr;
  if (const HRESULT r = m_session->file().dictionary(dictionary); r < 0) return r;
  return m_session->hand_out(*dictionary, ppDictionary);
}

HRESULT AafObject::read_flag(std::uint16_t pid, aafBoolean_t* out) const {
  if (!out) return AAFRESULT_NULL_PARAM;
  std::uint8_t value = 0;
  if (const HRESULT r = get_value(*m_stored, pid, value); r < 0) return r;
  *out = value != 0 ? kAAFTrue : kAAFFalse;
  return AAFRESULT_SUCCESS;
}

HRESULT AafObject::write_flag(std::uint16_t pid, aafBoolean_t value) {
  if (value != kAAFTrue && value != kAAFFalse) return AAFRESULT_INVALID_PARAM;
  return set_value(*m_stored, pid, static_cast<std::uint8_t>(value));
}

HRESULT AafObject::read_text(std::uint16_t pid, aafCharacter* buffer, aafUInt32 bytes) const {
  if (!buffer) return AAFRESULT_NULL_PARAM;
  std::u16string text;
  if (const HRESULT r = get_text(*m_stored, pid, text); r < 0) return r;
  return copy_text(text, buffer, bytes);
}

HRESULT AafObject::read_text_bytes(std::uint16_t pid, aafUInt32* bytes) const {
  if (!bytes) return AAFRESULT_NULL_PARAM;
  std::u16string text;
  if (const HRESULT r = get_text(*m_stored, pid, text); r < 0) return r;
  *bytes = wide_bytes(text);
  return AAFRESULT_SUCCESS;
}

HRESULT AafObject::write_text(std::uint16_t pid, aafCharacter_constptr text) {
  if (!text) return AAFRESULT_NULL_PARAM;
  return set_text(*m_stored, pid, from_wide(text));
}

HRESULT AafObject::read_bytes(std::uint16_t pid, aafUInt32 size, aafUInt8* out) const {
  if (!out) return AAFRESULT_NULL_PARAM;
  std::span<const std::byte> bytes;
  if (const HRESULT r = m_stored->get_data(pid, bytes); r < 0) return r;
  if (bytes.size() > size) return AAFRESULT_SMALLBUF;
  if (!bytes.empty()) std::memcpy(out, bytes.data(), bytes.size());
  return AAFRESULT_SUCCESS;
}

HRESULT AafObject::read_byte_count(std::uint16_t pid, aafUInt32* count) const {
  if (!count) return AAFRESULT_NULL_PARAM;
  std::span<const std::byte> bytes;
  if (const HRESULT r = m_stored->get_data(pid, bytes); r < 0) return r;
  *count = static_cast<aafUInt32>(bytes.size());
  return AAFRESULT_SUCCESS;
}

HRESULT AafObject::write_bytes(std::uint16_t pid, aafUInt32 size, const aafUInt8* bytes) {
  if (!bytes) return AAFRESULT_NULL_PARAM;
  return m_stored->set_data(pid, std::as_bytes(std::span(bytes, size)));
}

HRESULT AafObject::take_object(IUnknown* pointer, StoredObject*& object) const {
  if (!pointer) return AAFRESULT_NULL_PARAM;
  AafObject* behind = AafObject::behind(pointer);
  if (!behind || behind->m_session != m_session) return AAFRESULT_INVALID_OBJ;
  object = behind->m_stored;
  return object->owner() ? AAFRESULT_OBJECT_ALREADY_ATTACHED : AAFRESULT_SUCCESS;
}

HRESULT AafObject::write_object(std::uint16_t pid, IUnknown* object) {
  StoredObject* taken = nullptr;
  if (const HRESULT r = take_object(object, taken); r < 0) return r;
  return m_stored->set_object(pid, *taken);
}

HRESULT AafObject::count(std::uint16_t pid, aafUInt32* out) const {
  if (!out) return AAFRESULT_NULL_PARAM;
  std::size_t elements = 0;
  if (const HRESULT r = m_stored->count_elements(pid, elements); r < 0) return r;
  *out = static_cast<aafUInt32>(elements);
  return AAFRESULT_SUCCESS;
}

HRESULT AafObject::insert_at(std::uint16_t pid, aafUInt32 index, IUnknown* object) {
  StoredObject* taken = nullptr;
  if (const HRESULT r = take_object(object, taken); r < 0) return r;
  return m_stored->insert_at(pid, index, *taken);
}

HRESULT AafObject::append(std::uint16_t pid, IUnknown* object) {
  aafUInt32 end = 0;
  if (const HRESULT r = count(pid, &end); r < 0) return r;
  return insert_at(pid, end, object);
}

HRESULT AafObject::prepend(std::uint16_t pid, IUnknown* object) {
  return insert_at(pid, 0, object);
}

HRESULT AafObject::remove_at(std::uint16_t pid, aafUInt32 index) {
  return m_stored->remove_at(pid, index);
}

HRESULT AafObject::remove_element(std::uint16_t pid, IUnknown* object) {
  if (!object) return AAFRESULT_NULL_PARAM;
  AafObject* behind = AafObject::behind(object);
  std::vector<StoredObject*> objects;
  if (const HRESULT r = elements(pid, objects); r < 0) return r;
  const auto at =
      behind ? std::find(objects.begin(), objects.end(), behind->m_stored) : objects.end();
  if (at == objects.end()) return AAFRESULT_OBJECT_NOT_FOUND;
  return m_stored->remove_at(pid, static_cast<std::size_t>(at - objects.begin()));
}

HRESULT AafObject::elements(std::uint16_t pid, std::vector<StoredObject*>& objects) const {
  const HRESULT r = m_stored->contained_objects(pid, objects);
  return r == AAFRESULT_PROP_NOT_PRESENT ? AAFRESULT_SUCCESS : r;
}

HRESULT AafObject::target_of(IUnknown* definition, WeakTarget& target) const {
  if (!definition) return AAFRESULT_NULL_PARAM;
  AafObject* behind = AafObject::behind(definition);
  if (!behind) return AAFRESULT_INVALID_OBJ;
  if (behind->m_session != m_session) return AAFRESULT_OBJECT_NOT_ATTACHED;
  return m_session->file().target_to(*behind->m_stored, target);
}

HRESULT AafObject::write_definition(std::uint16_t pid, IUnknown* definition) {
  WeakTarget target;
  if (const HRESULT r = target_of(definition, target); r < 0) return r;
  return m_stored->set_weak(pid, target);
}

HRESULT AafObject::read_indirect(std::uint16_t pid, aafUInt32 size, aafUInt8* out,
                                 aafUInt32* count) const {
  if (!out || !count) return AAFRESULT_NULL_PARAM;
  IndirectValue value;
  if (const HRESULT r = get_indirect(*m_stored, pid, value); r < 0) return r;
  if (value.bytes.size() > size) return AAFRESULT_SMALLBUF;
  if (!value.bytes.empty()) std::memcpy(out, value.bytes.data(), value.bytes.size());
  *count = static_cast<aafUInt32>(value.bytes.size());
  return AAFRESULT_SUCCESS;
}

HRESULT AafObject::read_indirect_size(std::uint16_t pid, aafUInt32* size) const {
  if (!size) return AAFRESULT_NULL_PARAM;
  IndirectValue value;
  if (const HRESULT r = get_indirect(*m_stored, pid, value); r < 0) return r;
  *size = static_cast<aafUInt32>(value.bytes.size());
  return AAFRESULT_SUCCESS;
}

HRESULT AafObject::read_indirect_type(std::uint16_t pid, IAAFTypeDef** out) const {
  if (!out) return AAFRESULT_NULL_PARAM;
  IndirectValue value;
  if (const HRESULT r = get_indirect(*m_stored, pid, value); r < 0) return r;
  const TypeDef* type = m_session->meta_model().find_type(value.type);
  return type ? m_session->hand_out(*type, out) : AAFRESULT_TYPE_NOT_FOUND;
}

HRESULT AafObject::write_indirect(std::uint16_t pid, const aafUID_t& type, aafUInt32 size,
                                  const aafUInt8* bytes) {
  if (!bytes) return AAFRESULT_NULL_PARAM;
  return set_indirect(*m_stored, pid, {type, std::as_bytes(std::span(bytes, size))});
}

HRESULT AafObject::rewrite_indirect(std::uint16_t pid, aafUInt32 size, const aafUInt8* bytes) {
  IndirectValue value;
  if (const HRESULT r = get_indirect(*m_stored, pid, value); r < 0) return r;
  return write_indirect(pid, value.type, size, bytes);
}

}  // namespace aafobj
