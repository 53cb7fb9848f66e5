#pragma once

#include <memory>

#include "aafobj/objects/aaf_object.h"

namespace aafobj {

// The interface object for an object, by its class or the nearest one above it that has
// interfaces of its own. A reference of the caller's is on it.
AafObject* make_object(const std::shared_ptr<FileSession>& session, StoredObject& stored);

// A new object that is in no other one yet. Mobs get an identifier and the time of now.
// Errors: CLASS_NOT_FOUND, ABSTRACT_CLASS, E_NOINTERFACE.
HRESULT create_instance(FileSession& session, const aafUID_t& class_id, REFIID iid, IUnknown** out);

// The same as one of the classes of the baseline.
HRESULT create_stored(FileSession& session, ClassIndex index, StoredObject*& object);

}  // namespace aafobj
