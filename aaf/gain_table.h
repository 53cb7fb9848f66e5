// Gain as the host's automation counts it: 505 steps of linear gain, from next to silence
// up to 12 dB. Step 384 is unity.
#pragma once

#include <array>
#include <cstdint>

namespace aaf {

inline constexpr std::uint32_t gain_steps = 505;
inline constexpr std::uint32_t unity_gain_step = 384;

// Linear gain by step, ascending, to eight decimals: straight lines between twelve steps.
[[nodiscard]] const std::array<double, gain_steps>& gain_table();

// The step nearest to a linear gain; the upper one of two that are equally near. What is
// no number gives step 0.
[[nodiscard]] std::uint32_t gain_step_from_ratio(double ratio);

}  // namespace aaf
