// Fade curves as audio decision lists tell them: by three levels.
#pragma once

#include <cstdint>

#include "host/fade_levels_table.h"

// The levels of a curve; those of curve 0 for a number that is none.
[[nodiscard]] const FadeLevels& fade_levels_from_curve(std::uint16_t curve);

// The curve whose three amplitudes lie nearest to those of the levels in all; the
// lowest number among equals, and 0 when all are absurdly far.
[[nodiscard]] std::uint16_t fade_curve_from_levels(const FadeLevels& levels);
