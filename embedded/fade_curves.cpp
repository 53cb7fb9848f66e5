#include "embedded/fade_curves.h"

#include <algorithm>
#include <cmath>

namespace embedded {

namespace {

constexpr std::size_t pieces = 4;
constexpr double step = 1.0 / pieces;
using Knots = std::array<double, pieces + 1>;

double amplitude(double db) {
  return std::pow(10.0, db / 20.0);
}

// Slopes at the knots with which the cubic between two of them rises as they do:
// inside, the harmonic mean of the two neighbours' slopes, or flat where one of
// them is; at the ends a one-sided estimate, kept between flat and three times the
// piece's own slope.
Knots slopes_of(const Knots& y) {
  std::array<double, pieces> rise;
  for (std::size_t i = 0; i < pieces; ++i)
    rise[i] = (y[i + 1] - y[i]) / step;
  Knots slopes{};
  for (std::size_t i = 1; i < pieces; ++i) {
    const double sum = rise[i - 1] + rise[i];
    slopes[i] = rise[i - 1] * rise[i] > 0.0 ? 2.0 * rise[i - 1] * rise[i] / sum : 0.0;
  }
  const auto end_slope = [](double own, double next) {
    return std::clamp((3.0 * own - next) / 2.0, 0.0, 3.0 * own);
  };
  slopes[0] = end_slope(rise[0], rise[1]);
  slopes[pieces] = end_slope(rise[pieces - 1], rise[pieces - 2]);
  return slopes;
}

}  // namespace

double fade_in_amplitude(const FadeLevels& levels, double position) {
  const Knots y = {0.0, amplitude(levels.quarter_db), amplitude(levels.half_db),
                   amplitude(levels.three_quarters_db), 1.0};
  const Knots slope = slopes_of(y);
  const auto i =
      static_cast<std::size_t>(std::clamp(position / step, 0.0, static_cast<double>(pieces - 1)));
  // The cubic of the piece by its two values and slopes.
  const double t = position / step - static_cast<double>(i);
  const double t2 = t * t;
  const double t3 = t2 * t;
  return (2.0 * t3 - 3.0 * t2 + 1.0) * y[i] + (t3 - 2.0 * t2 + t) * step * slope[i] +
         (3.0 * t2 - 2.0 * t3) * y[i + 1] + (t3 - t2) * step * slope[i + 1];
}

FadeCurve make_fade_curve(int number) {
  FadeCurve curve{};
  const FadeLevels& levels = fade_levels_table[static_cast<std::size_t>(number)];
  for (std::size_t i = 0; i < curve.size(); ++i) {
    const double position =
        1.0 - static_cast<double>(i) / static_cast<double>(fade_curve_levels - 1);
    const double value = number == 0 ? position : fade_in_amplitude(levels, position);
    curve[i] = static_cast<std::uint16_t>(
        std::lround(std::clamp(value, 0.0, 1.0) * fade_curve_full_level));
  }
  return curve;
}

const std::array<FadeCurve, fade_levels_count>& fade_curves() {
  static const auto curves = [] {
    std::array<FadeCurve, fade_levels_count> made{};
    for (std::size_t i = 0; i < made.size(); ++i)
      made[i] = make_fade_curve(static_cast<int>(i));
    return made;
  }();
  return curves;
}

}  // namespace embedded
