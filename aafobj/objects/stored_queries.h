#pragma once

#include <limits>

#include "aafobj/model/object_file.h"

// Questions to the objects of a file that several interfaces ask.
namespace aafobj {

// All 32 bytes count. Errors: MOB_NOT_FOUND.
[[nodiscard]] AAFRESULT find_mob(ObjectFile& file, const aafMobID_t& id, StoredObject*& mob);
// The first slot with the identifier. Those that cannot be read are passed over. Looks through
// the mob; SearchIndex has an index. Errors: SLOT_NOT_FOUND.
[[nodiscard]] AAFRESULT find_slot(StoredObject& mob, aafSlotID_t id, StoredObject*& slot);

// 0 for a component without one.
[[nodiscard]] aafLength_t length_of(StoredObject& component);

// Where a source clip points: nothing there counts as zero, but for the slot.
[[nodiscard]] AAFRESULT read_source_reference(StoredObject& clip, aafSourceRef_t& reference);

// Of which kind the mob is; a source mob by its descriptor, and kAAFAllMob for one that is of
// none.
[[nodiscard]] AAFRESULT mob_kind(StoredObject& mob, aafMobKind_t& kind);

// A new identifier, unique in this process and most probably anywhere: of random bytes, in the
// form that a version 4 identifier has.
aafUID_t new_auid();
// One of the form that the published rules give to new mobs, with a new material number.
aafMobID_t new_mob_id();

bool is_null(const aafMobID_t& id);

inline aafInt64 saturating_add(aafInt64 a, aafInt64 b) {
  aafInt64 sum = 0;
  if (!__builtin_add_overflow(a, b, &sum)) return sum;
  return b > 0 ? std::numeric_limits<aafInt64>::max() : std::numeric_limits<aafInt64>::min();
}

inline aafInt64 saturating_subtract(aafInt64 a, aafInt64 b) {
  aafInt64 difference = 0;
  if (!__builtin_sub_overflow(a, b, &difference)) return difference;
  return b < 0 ? std::numeric_limits<aafInt64>::max() : std::numeric_limits<aafInt64>::min();
}

}  // namespace aafobj
