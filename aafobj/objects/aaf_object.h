#pragma once

#include <memory>
#include <vector>

#include "aafobj/model/stored_values.h"
#include "aafobj/objects/enumerator.h"
#include "aafobj/objects/file_session.h"
#include "aafobj/objects/not_offered_meta.h"
#include "aafobj/objects/text_conversion.h"

namespace aafobj {

// Our own way from an interface pointer of a caller's back to the object behind it. Pointers
// of other makers do not answer to it.
inline constexpr IID iid_aaf_object = {
    0x9c2f6f0a, 0x53a1, 0x4c57, {0x8e, 0x0d, 0x6d, 0x3a, 0xb2, 0x41, 0x7f, 0x15}};

// An object of a file behind its interfaces. Classes below add those of their AAF class.
//
// Getters give NULL_PARAM for a null argument and PROP_NOT_PRESENT for an absent property.
class AafObject : public Adds<ComObject, IAAFObject> {
 public:
  AafObject(std::shared_ptr<FileSession> session, StoredObject& stored);

  StoredObject& stored() const { return *m_stored; }
  FileSession& session() const { return *m_session; }
  const std::shared_ptr<FileSession>& shared_session() const { return m_session; }

  void* find_interface(REFIID iid) override;

  // The object behind a pointer; null for a null one and for one of another maker.
  static AafObject* behind(IUnknown* pointer);

  HRESULT GetGeneration(IAAFIdentification** ppGeneration) override;
  HRESULT GetGenerationAUID(aafUID_t* pResult) override;
  HRESULT GetDefinition(IAAFClassDef** ppClassDef) override;
  HRESULT GetProperties(IEnumAAFProperties** ppEnum) override;
  HRESULT CountProperties(aafUInt32* pCount) override;
  HRESULT GetPropertyValue(IAAFPropertyDef* pPropDef, IAAFPropertyValue** ppPropVal) override;
  HRESULT SetPropertyValue(IAAFPropertyDef* pPropDef, IAAFPropertyValue* pPropVal) override;
  HRESULT IsPropertyPresent(IAAFPropertyDef* pPropDef, aafBoolean_t* pResult) override;
  HRESULT RemoveOptionalProperty(IAAFPropertyDef* pPropDef) override;
  HRESULT CreateOptionalPropertyValue(IAAFPropertyDef* pPropDef,
                                      IAAFPropertyValue** ppPropVal) override;
  HRESULT GetDictionary(IAAFDictionary** ppDictionary) override;

 protected:
  ~AafObject() override;

  // A number, or a record without gaps, that is stored as Stored and passed as Api.
  template <typename Stored, typename Api>
  HRESULT read(std::uint16_t pid, Api* out) const {
    if (!out) return AAFRESULT_NULL_PARAM;
    Stored value{};
    if (const HRESULT r = get_value(*m_stored, pid, value); r < 0) return r;
    *out = value;
    return AAFRESULT_SUCCESS;
  }
  template <typename Stored, typename Api>
  HRESULT write(std::uint16_t pid, const Api& value) {
    return set_value(*m_stored, pid, static_cast<Stored>(value));
  }
  // The same where both have one type.
  template <typename T>
  HRESULT read_same(std::uint16_t pid, T* out) const {
    return out ? get_value(*m_stored, pid, *out) : AAFRESULT_NULL_PARAM;
  }
  template <typename T>
  HRESULT write_same(std::uint16_t pid, const T& value) {
    return set_value(*m_stored, pid, value);
  }

  HRESULT read_flag(std::uint16_t pid, aafBoolean_t* out) const;
  HRESULT write_flag(std::uint16_t pid, aafBoolean_t value);

  HRESULT read_text(std::uint16_t pid, aafCharacter* buffer, aafUInt32 bytes) const;
  HRESULT read_text_bytes(std::uint16_t pid, aafUInt32* bytes) const;
  HRESULT write_text(std::uint16_t pid, aafCharacter_constptr text);

  // The bytes of a DataValue.
  HRESULT read_bytes(std::uint16_t pid, aafUInt32 size, aafUInt8* out) const;
  HRESULT read_byte_count(std::uint16_t pid, aafUInt32* count) const;
  HRESULT write_bytes(std::uint16_t pid, aafUInt32 size, const aafUInt8* bytes);

  // Contained objects.
  template <typename Interface>
  HRESULT read_object(std::uint16_t pid, Interface** out) const {
    if (!out) return AAFRESULT_NULL_PARAM;
    StoredObject* object = nullptr;
    if (const HRESULT r = m_stored->get_object(pid, object); r < 0) return r;
    return m_session->hand_out(*object, out);
  }
  HRESULT write_object(std::uint16_t pid, IUnknown* object);
  // Errors: OBJECT_ALREADY_ATTACHED for one that is in another object.
  HRESULT take_object(IUnknown* pointer, StoredObject*& object) const;

  // Ordered collections.
  HRESULT count(std::uint16_t pid, aafUInt32* out) const;
  HRESULT append(std::uint16_t pid, IUnknown* object);
  HRESULT prepend(std::uint16_t pid, IUnknown* object);
  HRESULT insert_at(std::uint16_t pid, aafUInt32 index, IUnknown* object);
  HRESULT remove_at(std::uint16_t pid, aafUInt32 index);
  HRESULT remove_element(std::uint16_t pid, IUnknown* object);
  template <typename Interface>
  HRESULT element_at(std::uint16_t pid, aafUInt32 index, Interface** out) const {
    if (!out) return AAFRESULT_NULL_PARAM;
    StoredObject* object = nullptr;
    if (const HRESULT r = m_stored->element_at(pid, index, object); r < 0) return r;
    return m_session->hand_out(*object, out);
  }

  // Elements of a collection of any kind; those of an absent one are none.
  HRESULT elements(std::uint16_t pid, std::vector<StoredObject*>& objects) const;
  template <typename Enumerator, typename Interface>
  HRESULT enumerate(std::uint16_t pid, Enumerator** out) const {
    if (!out) return AAFRESULT_NULL_PARAM;
    std::vector<StoredObject*> objects;
    if (const HRESULT r = elements(pid, objects); r < 0) return r;
    return enumerate_objects<Enumerator, Interface>(m_session, std::move(objects), out);
  }

  // Weak references to definitions of the Dictionary, by the set that they are in.
  template <typename Interface>
  HRESULT read_definition(std::uint16_t pid, std::uint16_t set, Interface** out) const {
    if (!out) return AAFRESULT_NULL_PARAM;
    WeakTarget target;
    if (const HRESULT r = m_stored->get_weak(pid, target); r < 0) return r;
    return m_session->hand_out_definition(set, target.key.auid(), out);
  }
  // Errors: OBJECT_NOT_ATTACHED when the definition is in no Dictionary of this file.
  HRESULT write_definition(std::uint16_t pid, IUnknown* definition);
  HRESULT target_of(IUnknown* definition, WeakTarget& target) const;

  // Indirect values, without the identifier of their type.
  HRESULT read_indirect(std::uint16_t pid, aafUInt32 size, aafUInt8* out, aafUInt32* count) const;
  HRESULT read_indirect_size(std::uint16_t pid, aafUInt32* size) const;
  HRESULT read_indirect_type(std::uint16_t pid, IAAFTypeDef** out) const;
  HRESULT write_indirect(std::uint16_t pid, const aafUID_t& type, aafUInt32 size,
                         const aafUInt8* bytes);
  // With the type that the value has already.
  HRESULT rewrite_indirect(std::uint16_t pid, aafUInt32 size, const aafUInt8* bytes);

 private:
  std::shared_ptr<FileSession> m_session;
  StoredObject* m_stored;  // not owned; lives as long as the session
};

}  // namespace aafobj
