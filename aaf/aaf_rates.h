// Frame rates of the host and edit rates of AAF files.
#pragma once

#include <cstdint>

#include "aafobj/api/aaf_types.h"

namespace aaf {

// 24/1, 25/1, 30000/1001, 30000/1001 and 30/1 for the frame-rate indices 0 to 4, and 25/1
// for any other.
[[nodiscard]] aafRational_t rational_of_frame_rate(std::uint8_t index);

// The frame-rate index of an edit rate, numbers as they stand: 24/1, 25/1, 30000/1001 and
// 2997/100, 30/1. Anything else gives 0, which so stands for "unknown" as well.
[[nodiscard]] std::uint8_t rate_from_edit_rate(const aafRational_t& rate);

}  // namespace aaf
