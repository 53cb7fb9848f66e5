#include "adl/adl_fader_table.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

// Between these the level runs straight, rounded to hundredths, halves away from zero.
struct Corner {
  int step;
  int db;
};
constexpr Corner corners[] = {{0, -160},  {4, -90},   {8, -80},   {24, -64}, {64, -46},
                              {128, -32}, {196, -20}, {264, -12}, {504, 12}};

constexpr int rounded_quotient(int number, int by) {
  return number < 0 ? -((-2 * number + by) / (2 * by)) : (2 * number + by) / (2 * by);
}

// One row a step, in decibels; rises strictly.
constexpr std::array<double, fader_steps> make_table() {
  std::array<double, fader_steps> table{};
  for (std::size_t i = 0; i + 1 < std::size(corners); ++i) {
    const Corner& from = corners[i];
    const Corner& to = corners[i + 1];
    const int span = to.step - from.step;
    for (int step = from.step; step <= to.step; ++step) {
      const int hundredths_of_span =
          100 * (from.db * span + (to.db - from.db) * (step - from.step));
      table[static_cast<std::size_t>(step)] = rounded_quotient(hundredths_of_span, span) / 100.0;
    }
  }
  return table;
}

constexpr std::array<double, fader_steps> fader_table = make_table();

}  // namespace

double fader_db_from_step(std::uint32_t step) {
  return fader_table[std::min(step, fader_steps - 1)];
}

std::uint16_t fader_step_from_db(double db) {
  if (db > fader_table.back()) return no_fader_step;
  // Also for what is no number.
  if (!(db > fader_table.front())) return 0;
  // The interval whose lower end lies below the level.
  const auto* const upper = std::lower_bound(fader_table.begin(), fader_table.end(), db);
  const auto step = static_cast<std::uint16_t>(upper - fader_table.begin());
  return *upper - db > db - upper[-1] ? static_cast<std::uint16_t>(step - 1) : step;
}
