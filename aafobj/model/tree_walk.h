#pragma once

#include <functional>

#include "aafobj/model/stored_object.h"

namespace aafobj {

// Calls `visit` for the object and for everything that it contains, an object before what is
// in it, elements in their order. Stops at the first failure, whether of reading or of `visit`,
// and returns it.
[[nodiscard]] AAFRESULT walk_tree(StoredObject& top,
                                  const std::function<AAFRESULT(StoredObject&)>& visit);

}  // namespace aafobj
