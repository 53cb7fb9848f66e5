// Levels of the 505 fader steps.
#pragma once

#include <cstdint>

// Decibels of a step, from -160 at 0 to +12 at 504, where steps above it stay; unity
// is step 384.
[[nodiscard]] double fader_db_from_step(std::uint32_t step);
