// Levels of the 505 fader steps, which audio decision lists write in decibels.
#pragma once

#include <cstdint>

inline constexpr std::uint32_t fader_steps = 505;
inline constexpr std::uint16_t no_fader_step = 0xFFFF;

// Decibels of a step, from -160 at 0 to +12 at 504, where steps above it stay; unity
// is step 384.
[[nodiscard]] double fader_db_from_step(std::uint32_t step);

// The step that is nearest to a level; the upper one half way between two. Levels
// below -160 dB are step 0, levels above 12 dB have none.
[[nodiscard]] std::uint16_t fader_step_from_db(double db);
