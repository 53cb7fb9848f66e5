#include "aaf/aaf_rates.h"

#include "host/rates.h"

namespace aaf {

namespace {

struct RateRow {
  aafRational_t rate;
  std::uint8_t index;
};

constexpr RateRow rates[] = {
    {{24, 1}, frame_rate_24},
    {{25, 1}, frame_rate_25},
    {{30000, 1001}, frame_rate_2997_non_drop},
    {{2997, 100}, frame_rate_2997_non_drop},
    {{30, 1}, frame_rate_30},
};

}  // namespace

aafRational_t rational_of_frame_rate(std::uint8_t index) {
  switch (index) {
    case frame_rate_24:
      return {24, 1};
    case frame_rate_2997_non_drop:
    case frame_rate_2997_drop:
      return {30000, 1001};
    case frame_rate_30:
      return {30, 1};
    default:
      return {25, 1};
  }
}

std::uint8_t rate_from_edit_rate(const aafRational_t& rate) {
  for (const RateRow& row : rates) {
    if (row.rate.numerator == rate.numerator && row.rate.denominator == rate.denominator)
      return row.index;
  }
  return 0;
}

}  // namespace aaf
