// The host's fade curves, made from the table of fade levels.
#pragma once

#include <array>
#include <cstdint>

#include "host/application.h"
#include "host/fade_levels_table.h"

namespace embedded {

using FadeCurve = std::array<std::uint16_t, fade_curve_levels>;

// Curve 0 is the straight line. Any other passes through the three levels of its
// row and is monotone between them: a cubic with limited slopes. Read backwards it
// is a fade-in, so the level of the row's first quarter lies three quarters down.
[[nodiscard]] FadeCurve make_fade_curve(int number);

// All of them, made once.
[[nodiscard]] const std::array<FadeCurve, fade_levels_count>& fade_curves();

// The rising form of a curve: the amplitude, 0 to 1, at `position`, 0 to 1.
[[nodiscard]] double fade_in_amplitude(const FadeLevels& levels, double position);

}  // namespace embedded
