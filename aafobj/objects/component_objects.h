#pragma once

#include <memory>

#include "aafobj/objects/aaf_object.h"

namespace aafobj {

// Interface objects for components, and for parameters and their control points. Null for a
// class that has none of its own here.
AafObject* make_component_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                                 StoredObject& stored);
AafObject* make_parameter_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                                 StoredObject& stored);

}  // namespace aafobj
