#pragma once

#include "aafobj/model/object_file.h"

// Definitions of classes, properties and types as objects of a file's MetaDictionary.
namespace aafobj {

// Adds the whole baseline to an empty MetaDictionary. Properties without a number of their own
// get one of this file's.
[[nodiscard]] AAFRESULT define_baseline(StoredObject& meta_dictionary);

// Adds what the changed objects of the file use and its MetaDictionary lacks: their classes
// with all ancestors, the properties that they have, and the types of these.
[[nodiscard]] AAFRESULT define_what_is_used(ObjectFile& file);

// Weak references to definitions of the MetaDictionary, which need not be there yet.
[[nodiscard]] AAFRESULT target_of_class(ObjectFile& file, const aafUID_t& id, WeakTarget& target);
[[nodiscard]] AAFRESULT target_of_type(ObjectFile& file, const aafUID_t& id, WeakTarget& target);

}  // namespace aafobj
