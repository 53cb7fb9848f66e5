#pragma once

#include <string_view>

#include "aafobj/model/object_file.h"

// Definitions that everyone knows: a file that names one need not hold it.
namespace aafobj {

struct BuiltInDefinition {
  std::uint16_t set;  // property of the Dictionary
  aafUID_t identifier;
  std::u16string_view name;
  std::u16string_view description;
};

// Null when the identifier is not built in, or is of another set.
const BuiltInDefinition* find_built_in(std::uint16_t set, const aafUID_t& id);

// Makes the definition in the file's Dictionary, which must not have it.
[[nodiscard]] AAFRESULT add_built_in(ObjectFile& file, const BuiltInDefinition& definition,
                                     StoredObject*& object);

}  // namespace aafobj
