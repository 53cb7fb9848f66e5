#pragma once

#include "aafobj/api/aaf_result_codes.h"
#include "aafobj/container/result.h"

namespace aafobj {

// Operations of the model answer with the published result codes; below zero is failure.
// Structures of a file that contradict themselves give AAFRESULT_BADCONTAINER.
[[nodiscard]] AAFRESULT aaf_result(Result result);

}  // namespace aafobj
