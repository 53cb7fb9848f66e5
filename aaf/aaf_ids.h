// Identifiers of AAF objects, as this library compares them.
#pragma once

#include "aafobj/api/aaf_types.h"

// Compares Data1, Data2 and Data3. Data4 is left out on purpose: two identifiers that
// differ only there are equal. Not for resolving references, which the object library
// does itself and whole.
[[nodiscard]] bool uids_match(const aafUID_t& a, const aafUID_t& b);
// The same of the material numbers of two mobs.
[[nodiscard]] bool uids_match(const aafMobID_t& a, const aafMobID_t& b);
