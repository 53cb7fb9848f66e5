#include "aaf/gain_table.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace aaf {

namespace {

constexpr double decimals = 100000000.0;

// In units of the eighth decimal.
struct Knot {
  std::uint32_t step;
  std::int64_t gain;
};

constexpr Knot knots[] = {
    {0, 1},          {4, 3162},        {8, 10000},       {24, 63096},
    {64, 501187},    {128, 2511886},   {196, 10000000},  {264, 25118864},
    {324, 50118723}, {384, 100000000}, {444, 199526231}, {504, 398107171},
};

// Rounded to the unit, halves upward.
constexpr std::int64_t between(const Knot& low, const Knot& high, std::uint32_t step) {
  const std::int64_t width = high.step - low.step;
  const std::int64_t rise = (high.gain - low.gain) * (step - low.step);
  return low.gain + (2 * rise + width) / (2 * width);
}

std::array<double, gain_steps> make_table() {
  std::array<double, gain_steps> table{};
  for (std::size_t k = 0; k + 1 < std::size(knots); ++k) {
    for (std::uint32_t step = knots[k].step; step <= knots[k + 1].step; ++step)
      table[step] = static_cast<double>(between(knots[k], knots[k + 1], step)) / decimals;
  }
  return table;
}

}  // namespace

const std::array<double, gain_steps>& gain_table() {
  static const std::array<double, gain_steps> table = make_table();
  return table;
}

std::uint32_t gain_step_from_ratio(double ratio) {
  const auto& table = gain_table();
  if (!(ratio >= table.front())) return 0;
  if (ratio > table.back()) return gain_steps - 1;
  const auto above = std::lower_bound(table.begin(), table.end(), ratio);
  const auto high = static_cast<std::uint32_t>(above - table.begin());
  if (high == 0) return 0;
  const std::uint32_t low = high - 1;
  return ratio - table[low] < table[high] - ratio ? low : high;
}

}  // namespace aaf
