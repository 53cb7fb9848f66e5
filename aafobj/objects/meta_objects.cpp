#include "aafobj/objects/meta_objects.h"

#include "aafobj/objects/object_factory.h"

namespace aafobj {
namespace {

// The object behind a pointer that answers to an identifier of our own.
template <typename Object>
Object* behind(IUnknown* pointer, REFIID iid) {
  void* object = nullptr;
  if (!pointer || pointer->QueryInterface(iid, &object) < 0) return nullptr;
  auto* found = static_cast<Object*>(object);
  found->release();  // the caller's own reference keeps it
  return found;
}

HRESULT tell(bool truth, aafBoolean_t* out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  *out = truth ? kAAFTrue : kAAFFalse;
  return AAFRESULT_SUCCESS;
}

}  // namespace

const ClassDef* class_behind(IUnknown* pointer) {
  auto* object = behind<ClassObject>(pointer, iid_class_definition);
  return object ? &object->definition() : nullptr;
}

const PropertyDef* property_behind(IUnknown* pointer) {
  auto* object = behind<PropertyDefObject>(pointer, iid_property_definition);
  return object ? &object->definition() : nullptr;
}

const TypeDef* type_behind(IUnknown* pointer) {
  auto* object = behind<TypeObject>(pointer, iid_type_definition);
  return object ? &object->definition() : nullptr;
}

HRESULT definition_for(StoredObject& object, IAAFPropertyDef* pointer,
                       const PropertyDef*& definition) {
  const PropertyDef* meant = property_behind(pointer);
  if (!meant) return AAFRESULT_INVALID_OBJ;
  definition = object.file().meta_model().find_property(object.class_def(), meant->identifier);
  return definition ? AAFRESULT_SUCCESS : AAFRESULT_BAD_PROP;
}

HRESULT DefinitionObject::GetAUID(aafUID_t* pAuid) {
  if (!pAuid) return AAFRESULT_NULL_PARAM;
  *pAuid = m_id;
  return AAFRESULT_SUCCESS;
}

HRESULT DefinitionObject::GetName(aafCharacter* pName, aafUInt32 bufSize) {
  return copy_text(*m_name, pName, bufSize);
}

HRESULT DefinitionObject::GetNameBufLen(aafUInt32* pBufSize) {
  if (!pBufSize) return AAFRESULT_NULL_PARAM;
  *pBufSize = wide_bytes(*m_name);
  return AAFRESULT_SUCCESS;
}

void* ClassObject::find_interface(REFIID iid) {
  return same_iid(iid, iid_class_definition) ? this : Adds::find_interface(iid);
}

HRESULT ClassObject::GetPropertyDefs(IEnumAAFPropertyDefs** ppEnum) {
  if (!ppEnum) return AAFRESULT_NULL_PARAM;
  return enumerate_objects<IEnumAAFPropertyDefs, IAAFPropertyDef>(
      shared_session(), session().meta_model().own_properties(*m_class), ppEnum);
}

HRESULT ClassObject::CountPropertyDefs(aafUInt32* pCount) {
  if (!pCount) return AAFRESULT_NULL_PARAM;
  *pCount = static_cast<aafUInt32>(session().meta_model().own_properties(*m_class).size());
  return AAFRESULT_SUCCESS;
}

HRESULT ClassObject::RegisterNewPropertyDef(aafUID_constref id, aafCharacter_constptr pName,
                                            IAAFTypeDef* pTypeDef, aafBoolean_t isOptional,
                                            aafBoolean_t isUniqueIdentifier,
                                            IAAFPropertyDef** ppPropDef) {
  if (!pName || !pTypeDef || !ppPropDef) return AAFRESULT_NULL_PARAM;
  const TypeDef* type = type_behind(pTypeDef);
  if (!type) return AAFRESULT_INVALID_OBJ;
  if (!session().is_writable()) return AAFRESULT_NOT_WRITEABLE;
  PropertyDef definition;
  definition.identifier = id;
  definition.name = from_wide(pName);
  definition.type = type->identifier;
  definition.is_optional = isOptional != kAAFFalse;
  definition.is_unique_identifier = isUniqueIdentifier != kAAFFalse;
  const PropertyDef* added = nullptr;
  const HRESULT r = session().meta_model().add_property(*m_class, std::move(definition), added);
  return r < 0 ? r : session().hand_out(*added, ppPropDef);
}

HRESULT ClassObject::RegisterOptionalPropertyDef(aafUID_constref id, aafCharacter_constptr pName,
                                                 IAAFTypeDef* pTypeDef,
                                                 IAAFPropertyDef** ppPropDef) {
  return RegisterNewPropertyDef(id, pName, pTypeDef, kAAFTrue, kAAFFalse, ppPropDef);
}

HRESULT ClassObject::LookupPropertyDef(aafUID_constref propID, IAAFPropertyDef** ppPropDef) {
  if (!ppPropDef) return AAFRESULT_NULL_PARAM;
  const PropertyDef* found = session().meta_model().find_property(*m_class, propID);
  return found ? session().hand_out(*found, ppPropDef) : AAFRESULT_NO_MORE_OBJECTS;
}

HRESULT ClassObject::GetParent(IAAFClassDef** ppClassDef) {
  if (!ppClassDef) return AAFRESULT_NULL_PARAM;
  if (!m_class->parent) return AAFRESULT_IS_ROOT_CLASS;
  return session().hand_out(*m_class->parent, ppClassDef);
}

HRESULT ClassObject::IsConcrete(aafBoolean_t* pResult) {
  return tell(m_class->is_concrete, pResult);
}

HRESULT ClassObject::IsRoot(aafBoolean_t* isRoot) {
  return tell(!m_class->parent, isRoot);
}

HRESULT ClassObject::IsUniquelyIdentified(aafBoolean_t* pIsUniquelyIdentified) {
  return tell(session().meta_model().unique_identifier(*m_class) != nullptr, pIsUniquelyIdentified);
}

HRESULT ClassObject::GetUniqueIdentifier(IAAFPropertyDef** ppUniqueIdentifier) {
  if (!ppUniqueIdentifier) return AAFRESULT_NULL_PARAM;
  const PropertyDef* found = session().meta_model().unique_identifier(*m_class);
  return found ? session().hand_out(*found, ppUniqueIdentifier) : AAFRESULT_OBJECT_NOT_FOUND;
}

HRESULT ClassObject::CreateInstance(REFIID riid, IUnknown** ppvObject) {
  return create_instance(session(), m_class->identifier, riid, ppvObject);
}

void* PropertyDefObject::find_interface(REFIID iid) {
  return same_iid(iid, iid_property_definition) ? this : Adds::find_interface(iid);
}

HRESULT PropertyDefObject::GetTypeDef(IAAFTypeDef** ppTypeDef) {
  if (!ppTypeDef) return AAFRESULT_NULL_PARAM;
  const TypeDef* type = session().meta_model().find_type(m_property->type);
  return type ? session().hand_out(*type, ppTypeDef) : AAFRESULT_TYPE_NOT_FOUND;
}

HRESULT PropertyDefObject::GetIsOptional(aafBoolean_t* pIsOptional) {
  return tell(m_property->is_optional, pIsOptional);
}

HRESULT PropertyDefObject::GetIsUniqueIdentifier(aafBoolean_t* pIsUniqueIdentifier) {
  return tell(m_property->is_unique_identifier, pIsUniqueIdentifier);
}

void* TypeObject::find_interface(REFIID iid) {
  return same_iid(iid, iid_type_definition) ? this : Adds::find_interface(iid);
}

HRESULT TypeObject::GetTypeCategory(eAAFTypeCategory_t* pTid) {
  if (!pTid) return AAFRESULT_NULL_PARAM;
  static constexpr eAAFTypeCategory_e categories[] = {
      kAAFTypeCatInt,        kAAFTypeCatCharacter,     kAAFTypeCatString,    kAAFTypeCatStream,
      kAAFTypeCatIndirect,   kAAFTypeCatOpaque,        kAAFTypeCatEnum,      kAAFTypeCatExtEnum,
      kAAFTypeCatFixedArray, kAAFTypeCatVariableArray, kAAFTypeCatSet,       kAAFTypeCatRecord,
      kAAFTypeCatRename,     kAAFTypeCatStrongObjRef,  kAAFTypeCatWeakObjRef};
  *pTid = categories[static_cast<std::size_t>(m_type->kind)];
  return AAFRESULT_SUCCESS;
}

HRESULT TypeObject::RawAccessType(IAAFTypeDef** ppRawTypeDef) {
  if (!ppRawTypeDef) return AAFRESULT_NULL_PARAM;
  return session().hand_out(session().meta_model().type_of(TypeIndex::UInt8Array), ppRawTypeDef);
}

}  // namespace aafobj
