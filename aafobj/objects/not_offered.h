#pragma once

#include "aafobj/api/aaf_result_codes.h"

namespace aafobj {

// An interface with every operation answered by AAFRESULT_NOT_IMPLEMENTED, but for the three of
// IUnknown, and with its identifier as `interface_id`. What a class offers it overrides. One
// specialisation for each interface is in the headers not_offered_*.h.
template <typename Interface>
struct NotOffered;

}  // namespace aafobj
