#pragma once

#include <memory>

#include "aafobj/objects/aaf_object.h"

namespace aafobj {

// Interface objects for the Dictionary and its definitions. Null for a class that has none of
// its own here.
AafObject* make_definition_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                                  StoredObject& stored);

}  // namespace aafobj
