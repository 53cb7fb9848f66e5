#pragma once

#include <memory>

#include "aafobj/objects/aaf_object.h"

namespace aafobj {

// Interface objects for mobs, their slots, tagged values and KLV data. Null for a class that
// has none of its own here.
AafObject* make_mob_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                           StoredObject& stored);

// Gives a new mob an identifier and the time of now.
[[nodiscard]] HRESULT begin_mob(StoredObject& mob);

}  // namespace aafobj
