#include "aafobj/objects/file_session.h"

#include "aafobj/objects/aaf_object.h"
#include "aafobj/objects/built_in_definitions.h"
#include "aafobj/objects/meta_objects.h"
#include "aafobj/objects/object_factory.h"

namespace aafobj {

FileSession::~FileSession() = default;

HRESULT FileSession::hand_out(StoredObject& object, REFIID iid, void** out) {
  if (object.attachment)
    return static_cast<AafObject*>(object.attachment)->query_interface(iid, out);
  const Ref<AafObject> made(make_object(shared_from_this(), object));
  return made->query_interface(iid, out);
}

template <typename Definition, typename Object>
HRESULT FileSession::hand_out_definition_object(const Definition& definition, REFIID iid,
                                                void** out) {
  if (const auto at = m_definitions.find(&definition); at != m_definitions.end()) {
    return at->second->query_interface(iid, out);
  }
  Ref<ComObject> made;
  if constexpr (std::is_same_v<Object, TypeObject>) {
    made = Ref<ComObject>(make_type_object(shared_from_this(), definition));
  } else {
    made = Ref<ComObject>(new Object(shared_from_this(), definition));
  }
  m_definitions.emplace(&definition, made.get());
  return made->query_interface(iid, out);
}

HRESULT FileSession::hand_out_class(const ClassDef& definition, REFIID iid, void** out) {
  return hand_out_definition_object<ClassDef, ClassObject>(definition, iid, out);
}

HRESULT FileSession::hand_out_property(const PropertyDef& definition, REFIID iid, void** out) {
  return hand_out_definition_object<PropertyDef, PropertyDefObject>(definition, iid, out);
}

HRESULT FileSession::hand_out_type(const TypeDef& definition, REFIID iid, void** out) {
  return hand_out_definition_object<TypeDef, TypeObject>(definition, iid, out);
}

HRESULT FileSession::find_definition(std::uint16_t set, const aafUID_t& id, StoredObject*& object,
                                     std::shared_ptr<FileSession>& session) {
  StoredObject* dictionary = nullptr;
  if (const HRESULT r = m_file->dictionary(dictionary); r < 0) return r;
  session = shared_from_this();
  const HRESULT found = dictionary->find_element(set, StoredKey(id), object);
  if (found != AAFRESULT_OBJECT_NOT_FOUND) return found;
  const BuiltInDefinition* known = find_built_in(set, id);
  if (!known) return AAFRESULT_NO_MORE_OBJECTS;
  if (is_writable()) return add_built_in(*m_file, *known, object);
  if (const HRESULT r = built_in_session(session); r < 0) return r;
  return session->find_definition(set, id, object, session);
}

HRESULT FileSession::built_in_session(std::shared_ptr<FileSession>& session) {
  if (!m_built_in) {
    std::unique_ptr<CompoundFile> container;
    std::unique_ptr<ObjectFile> file;
    const Result made =
        CompoundFile::create(std::make_shared<MemoryStorage>(), FileKind::aaf_512, container);
    if (made != Result::ok) return aaf_result(made);
    if (const HRESULT r = ObjectFile::create(std::move(container), file); r < 0) return r;
    m_built_in = std::make_shared<FileSession>(std::move(file));
  }
  session = m_built_in;
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
