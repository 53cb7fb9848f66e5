#pragma once

#include "aafobj/model/stored_object.h"

namespace aafobj {

// Appends a tagged value with a text to a list of such.
[[nodiscard]] AAFRESULT append_tagged_text(StoredObject& object, std::uint16_t pid,
                                           aafCharacter_constptr name, aafCharacter_constptr value);

}  // namespace aafobj
