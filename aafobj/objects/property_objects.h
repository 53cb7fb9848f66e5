#pragma once

#include <memory>
#include <vector>

#include "aafobj/objects/aaf_object.h"

namespace aafobj {

inline constexpr IID iid_property_value = {
    0x9c2f6f0b, 0x53a1, 0x4c57, {0x8e, 0x0d, 0x6d, 0x3a, 0xb2, 0x41, 0x7f, 0x15}};

// A value on its way from or to a property: a copy of the stored bytes, or the objects that a
// reference or collection leads to. A change of it reaches an object by SetPropertyValue.
class ValueObject final : public Adds<ComObject, IAAFPropertyValue> {
 public:
  ValueObject(std::shared_ptr<FileSession> session, const TypeDef& type)
      : m_session(std::move(session)), m_type(&type) {}

  // Null for a pointer of another maker.
  static ValueObject* behind(IAAFPropertyValue* pointer);
  void* find_interface(REFIID iid) override;

  FileSession& session() const { return *m_session; }
  const std::shared_ptr<FileSession>& shared_session() const { return m_session; }
  const TypeDef& type() const { return *m_type; }

  std::vector<std::byte> bytes;          // in stored form
  std::vector<StoredObject*> objects;    // of strong references; not owned
  std::vector<WeakTarget> targets;       // of weak references
  StoredObject* stream_owner = nullptr;  // of a stream: where it is; not owned
  std::uint16_t stream_pid = 0;
  std::uint64_t stream_position = 0;

  HRESULT GetType(IAAFTypeDef** ppTypeDef) override;
  HRESULT IsDefinedType(aafBoolean_t* pIsDefined) override;

 private:
  ~ValueObject() override = default;

  std::shared_ptr<FileSession> m_session;
  const TypeDef* m_type;  // not owned; lives as long as the session
};

// The value of a property that is there. Errors: PROP_NOT_PRESENT, TYPE_NOT_FOUND.
HRESULT make_value_of_property(AafObject& object, const PropertyDef& definition,
                               IAAFPropertyValue** out);
// One of the property's type with zeros, or without elements.
HRESULT make_empty_value(AafObject& object, const PropertyDef& definition, IAAFPropertyValue** out);
// Stores a value whose type is the property's, or the one behind other names of either.
// Errors: BAD_TYPE; those of taking over objects.
HRESULT store_value(AafObject& object, const PropertyDef& definition, IAAFPropertyValue* value);

HRESULT enumerate_properties(AafObject& object, IEnumAAFProperties** out);

}  // namespace aafobj
