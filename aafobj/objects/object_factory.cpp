#include "aafobj/objects/object_factory.h"

#include "aafobj/objects/component_objects.h"
#include "aafobj/objects/definition_objects.h"
#include "aafobj/objects/descriptor_objects.h"
#include "aafobj/objects/essence_access.h"
#include "aafobj/objects/header_objects.h"
#include "aafobj/objects/mob_objects.h"

namespace aafobj {
namespace {

class PlainObject final : public AafObject {
 public:
  using AafObject::AafObject;

 private:
  ~PlainObject() override = default;
};

AafObject* make_of_class(ClassIndex index, const std::shared_ptr<FileSession>& session,
                         StoredObject& stored) {
  using Maker = AafObject* (*)(ClassIndex, const std::shared_ptr<FileSession>&, StoredObject&);
  static constexpr Maker makers[] = {
      make_component_object,  make_parameter_object, make_mob_object,   make_definition_object,
      make_descriptor_object, make_essence_object,   make_header_object};
  for (const Maker maker : makers) {
    if (AafObject* made = maker(index, session, stored)) return made;
  }
  return nullptr;
}

}  // namespace

AafObject* make_object(const std::shared_ptr<FileSession>& session, StoredObject& stored) {
  for (ClassIndex index = stored.class_def().nearest; index != ClassIndex::none;
       index = row_of(index).parent) {
    if (AafObject* made = make_of_class(index, session, stored)) return made;
  }
  return new PlainObject(session, stored);
}

HRESULT create_stored(FileSession& session, ClassIndex index, StoredObject*& object) {
  const HRESULT r = session.file().create_object(index, object);
  if (r < 0 || !object->is_kind_of(ClassIndex::Mob)) return r;
  return begin_mob(*object);
}

HRESULT create_instance(FileSession& session, const aafUID_t& class_id, REFIID iid,
                        IUnknown** out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  *out = nullptr;
  StoredObject* object = nullptr;
  HRESULT r = session.file().create_object(class_id, object);
  if (r < 0) return r;
  if (object->is_kind_of(ClassIndex::Mob)) {
    if (r = begin_mob(*object); r < 0) return r;
  }
  return session.hand_out(*object, iid, reinterpret_cast<void**>(out));
}

}  // namespace aafobj
