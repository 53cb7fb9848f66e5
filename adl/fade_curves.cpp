#include "adl/fade_curves.h"

#include <array>
#include <cmath>

namespace {

using Amplitudes = std::array<double, 3>;

Amplitudes amplitudes_of(const FadeLevels& levels) {
  const auto amplitude = [](double db) { return std::pow(10.0, db / 20.0); };
  return {amplitude(levels.quarter_db), amplitude(levels.half_db),
          amplitude(levels.three_quarters_db)};
}

const std::array<Amplitudes, fade_levels_count>& all_amplitudes() {
  static const std::array<Amplitudes, fade_levels_count> rows = [] {
    std::array<Amplitudes, fade_levels_count> all{};
    for (std::size_t i = 0; i < all.size(); ++i)
      all[i] = amplitudes_of(fade_levels_table[i]);
    return all;
  }();
  return rows;
}

}  // namespace

const FadeLevels& fade_levels_from_curve(std::uint16_t curve) {
  return fade_levels_table[curve < fade_levels_table.size() ? curve : 0];
}

std::uint16_t fade_curve_from_levels(const FadeLevels& levels) {
  const Amplitudes wanted = amplitudes_of(levels);
  const auto& rows = all_amplitudes();
  double least = 1e9;
  std::uint16_t nearest = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const double sum = std::abs(wanted[0] - rows[i][0]) + std::abs(wanted[1] - rows[i][1]) +
                       std::abs(wanted[2] - rows[i][2]);
    if (sum < least) {
      least = sum;
      nearest = static_cast<std::uint16_t>(i);
    }
  }
  return nearest;
}
