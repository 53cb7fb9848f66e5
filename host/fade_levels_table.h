// The shape of each fade curve, by curve number: how loud a fade-in is at a
// quarter, at half and at three quarters of its length. A fade-out is the mirror.
#pragma once

#include <array>

#include "host/api.h"

// Decibels below full level. They rise from left to right and never pass 0.
struct FadeLevels {
  double quarter_db;
  double half_db;
  double three_quarters_db;
};

// One row a curve number. Row 0 is the straight line, with its levels rounded as
// audio decision lists write them; rows 113 and 114 are equal.
inline constexpr int fade_levels_count = 117;
EDL_API extern const std::array<FadeLevels, fade_levels_count> fade_levels_table;
