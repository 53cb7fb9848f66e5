#include "adl/adl_fader_table.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

// Between these the level runs straight, rounded to hundredths.
struct Corner {
  double step;
  double db;
};
constexpr Corner corners[] = {{0, -160},  {4, -90},   {8, -80},   {24, -64}, {64, -46},
                              {128, -32}, {196, -20}, {264, -12}, {504, 12}};

}  // namespace

double fader_db_from_step(std::uint32_t step) {
  const double place = std::min(step, 504U);
  const auto* const to = std::find_if(std::begin(corners) + 1, std::end(corners),
                                      [place](const Corner& c) { return place <= c.step; });
  const Corner& from = to[-1];
  const double db = from.db + (to->db - from.db) * (place - from.step) / (to->step - from.step);
  return std::round(db * 100) / 100;
}
