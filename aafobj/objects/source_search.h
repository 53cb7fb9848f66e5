#pragma once

#include <memory>

#include "aafobj/objects/file_session.h"
#include "aafobj/objects/not_offered_mob.h"

namespace aafobj {

// Follows the source clips of a mob from a slot and a position in it, through sequences,
// groups with one input, pulldowns and the first choice of essence groups, to the first mob of
// the wanted kind. The mob that the search starts from is never the answer.
// Errors: SLOT_NOT_FOUND, MOB_NOT_FOUND; TRAVERSAL_NOT_POSS when the way ends before.
HRESULT search_source(const std::shared_ptr<FileSession>& session, StoredObject& mob,
                      aafSlotID_t slot_id, aafPosition_t offset, aafMobKind_t kind,
                      IAAFFindSourceInfo** out);

// A slot's edit rate; 1/1 for one that has none. Errors: those of reading.
[[nodiscard]] HRESULT edit_rate_of(StoredObject& slot, aafRational_t& rate);

// A position or length from one edit rate to another, towards zero. Rates that are not above
// zero leave it as it is; what is out of range becomes the nearest.
aafInt64 convert_rate(aafInt64 position, const aafRational_t& from, const aafRational_t& to);

}  // namespace aafobj
