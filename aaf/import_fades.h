// Level curves of AAF files: reading their points, and finding the fade that a
// transition's curve stands for.
#pragma once

#include <cstdint>
#include <vector>

#include "aaf/aaf_comp_mob.h"

namespace aaf {

// False for a point that lacks its time or value, whose denominator is 0, or whose value is shorter
// than a fraction.
[[nodiscard]] bool read_point(IAAFControlPoint* from, CAAFPoint& point);
// False for a value that is shorter than a fraction, or a fraction of 0.
[[nodiscard]] bool read_ratio(IAAFConstantValue* from, aafRational_t& ratio);

// Levels of both sides of a transition; the list of a side without a curve is empty.
// At most `most_points` of each are read.
struct DissolveLevels {
  std::vector<CAAFPoint> outgoing;
  std::vector<CAAFPoint> incoming;
};
[[nodiscard]] DissolveLevels read_dissolve_curves(IAAFTransition* transition);

// The part of a transition in which the level of one side moves, edit units: how long it
// is, and how far from that side's end of the transition. `curve` is the number of the
// host's fade curve that comes nearest to the points.
struct FadeShape {
  std::int64_t length = 0;
  std::uint16_t curve = 0;
  std::int64_t offset = 0;
};
// `length` is the transition's. A curve that begins at 0 rises, any other falls. Single
// precision throughout, so an offset can come out one unit early.
[[nodiscard]] FadeShape analyse_fade_curve(std::int64_t length,
                                           const std::vector<CAAFPoint>& points);

}  // namespace aaf
