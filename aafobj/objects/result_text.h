#pragma once

#include <string>

#include "aafobj/api/aaf_types.h"

namespace aafobj {

// The published name of a result code; empty for one that has none.
std::u16string result_text_of(AAFRESULT code);

}  // namespace aafobj
