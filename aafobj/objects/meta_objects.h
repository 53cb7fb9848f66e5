#pragma once

#include <memory>

#include "aafobj/objects/aaf_object.h"
#include "aafobj/objects/property_objects.h"

// Interfaces of classes, properties and types.
namespace aafobj {

inline constexpr IID iid_property_definition = {
    0x9c2f6f0c, 0x53a1, 0x4c57, {0x8e, 0x0d, 0x6d, 0x3a, 0xb2, 0x41, 0x7f, 0x15}};
inline constexpr IID iid_type_definition = {
    0x9c2f6f0d, 0x53a1, 0x4c57, {0x8e, 0x0d, 0x6d, 0x3a, 0xb2, 0x41, 0x7f, 0x15}};
inline constexpr IID iid_class_definition = {
    0x9c2f6f0e, 0x53a1, 0x4c57, {0x8e, 0x0d, 0x6d, 0x3a, 0xb2, 0x41, 0x7f, 0x15}};

// What all definitions have. A definition's description is not kept in the meta model, so it
// is never present.
class DefinitionObject : public Adds<ComObject, IAAFMetaDefinition> {
 public:
  DefinitionObject(std::shared_ptr<FileSession> session, const void* definition, const aafUID_t& id,
                   const std::u16string& name)
      : m_session(std::move(session)), m_definition(definition), m_id(id), m_name(&name) {}

  FileSession& session() const { return *m_session; }
  const std::shared_ptr<FileSession>& shared_session() const { return m_session; }

  HRESULT GetAUID(aafUID_t* pAuid) override;
  HRESULT GetName(aafCharacter* pName, aafUInt32 bufSize) override;
  HRESULT GetNameBufLen(aafUInt32* pBufSize) override;
  HRESULT GetDescription(aafCharacter*, aafUInt32) override { return AAFRESULT_PROP_NOT_PRESENT; }
  HRESULT GetDescriptionBufLen(aafUInt32*) override { return AAFRESULT_PROP_NOT_PRESENT; }

 protected:
  ~DefinitionObject() override { m_session->forget(m_definition); }

 private:
  std::shared_ptr<FileSession> m_session;
  const void* m_definition;
  aafUID_t m_id;
  const std::u16string* m_name;  // the definition's own
};

class ClassObject final : public Adds<DefinitionObject, IAAFClassDef> {
 public:
  ClassObject(std::shared_ptr<FileSession> session, const ClassDef& definition)
      : Adds(std::move(session), &definition, definition.identifier, definition.name),
        m_class(&definition) {}

  void* find_interface(REFIID iid) override;
  const ClassDef& definition() const { return *m_class; }

  HRESULT GetPropertyDefs(IEnumAAFPropertyDefs** ppEnum) override;
  HRESULT CountPropertyDefs(aafUInt32* pCount) override;
  HRESULT RegisterNewPropertyDef(aafUID_constref id, aafCharacter_constptr pName,
                                 IAAFTypeDef* pTypeDef, aafBoolean_t isOptional,
                                 aafBoolean_t isUniqueIdentifier,
                                 IAAFPropertyDef** ppPropDef) override;
  HRESULT RegisterOptionalPropertyDef(aafUID_constref id, aafCharacter_constptr pName,
                                      IAAFTypeDef* pTypeDef, IAAFPropertyDef** ppPropDef) override;
  HRESULT LookupPropertyDef(aafUID_constref propID, IAAFPropertyDef** ppPropDef) override;
  HRESULT GetName(aafCharacter* pName, aafUInt32 bufSize) override {
    return DefinitionObject::GetName(pName, bufSize);
  }
  HRESULT GetNameBufLen(aafUInt32* pBufSize) override {
    return DefinitionObject::GetNameBufLen(pBufSize);
  }
  HRESULT GetParent(IAAFClassDef** ppClassDef) override;
  HRESULT IsConcrete(aafBoolean_t* pResult) override;
  HRESULT IsRoot(aafBoolean_t* isRoot) override;
  HRESULT IsUniquelyIdentified(aafBoolean_t* pIsUniquelyIdentified) override;
  HRESULT GetUniqueIdentifier(IAAFPropertyDef** ppUniqueIdentifier) override;
  HRESULT CreateInstance(REFIID riid, IUnknown** ppvObject) override;

 private:
  ~ClassObject() override = default;

  const ClassDef* m_class;
};

class PropertyDefObject final : public Adds<DefinitionObject, IAAFPropertyDef> {
 public:
  PropertyDefObject(std::shared_ptr<FileSession> session, const PropertyDef& definition)
      : Adds(std::move(session), &definition, definition.identifier, definition.name),
        m_property(&definition) {}

  void* find_interface(REFIID iid) override;
  const PropertyDef& definition() const { return *m_property; }

  HRESULT GetTypeDef(IAAFTypeDef** ppTypeDef) override;
  HRESULT GetName(aafCharacter* pName, aafUInt32 bufSize) override {
    return DefinitionObject::GetName(pName, bufSize);
  }
  HRESULT GetNameBufLen(aafUInt32* pBufSize) override {
    return DefinitionObject::GetNameBufLen(pBufSize);
  }
  HRESULT GetIsOptional(aafBoolean_t* pIsOptional) override;
  HRESULT GetIsUniqueIdentifier(aafBoolean_t* pIsUniqueIdentifier) override;
  HRESULT GetDescription(aafCharacter*, aafUInt32) override { return AAFRESULT_PROP_NOT_PRESENT; }
  HRESULT GetDescriptionBufLen(aafUInt32*) override { return AAFRESULT_PROP_NOT_PRESENT; }

 private:
  ~PropertyDefObject() override = default;

  const PropertyDef* m_property;
};

// What all types have. Those of a kind are in type_objects.cpp.
class TypeObject : public Adds<DefinitionObject, IAAFTypeDef> {
 public:
  TypeObject(std::shared_ptr<FileSession> session, const TypeDef& definition)
      : Adds(std::move(session), &definition, definition.identifier, definition.name),
        m_type(&definition) {}

  void* find_interface(REFIID iid) override;
  const TypeDef& definition() const { return *m_type; }

  HRESULT GetTypeCategory(eAAFTypeCategory_t* pTid) override;
  HRESULT RawAccessType(IAAFTypeDef** ppRawTypeDef) override;

 protected:
  ~TypeObject() override = default;

 private:
  const TypeDef* m_type;
};

ComObject* make_type_object(const std::shared_ptr<FileSession>& session, const TypeDef& type);

// The definitions behind pointers of a caller's; null for those of another maker.
const ClassDef* class_behind(IUnknown* pointer);
const PropertyDef* property_behind(IUnknown* pointer);
const TypeDef* type_behind(IUnknown* pointer);

// The property of the object's class that a caller's definition means, by its identifier.
// Errors: INVALID_OBJ, BAD_PROP.
HRESULT definition_for(StoredObject& object, IAAFPropertyDef* pointer,
                       const PropertyDef*& definition);

}  // namespace aafobj
