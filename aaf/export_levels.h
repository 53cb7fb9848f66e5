// The control points of exported fades, gain and pan: times and values as fractions.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "aaf/aaf_comp_mob.h"
#include "host/framework/ob_list.h"

class CGenericEDLFileEntry;

namespace aaf {

using Points = std::vector<CAAFPoint>;

// `value` over `whole`, both halved until they fit 32 bits.
[[nodiscard]] aafRational_t fraction_of(std::int64_t value, std::int64_t whole);
// Cut to a millionth, and brought to 32 bits.
[[nodiscard]] aafRational_t level_fraction(float level);

// Fades are read off their curve at every eighth, and take at most the whole edit.
[[nodiscard]] std::int64_t fade_in_length(const CGenericEDLFileEntry& event);
[[nodiscard]] std::int64_t fade_out_length(const CGenericEDLFileEntry& event);

// The level of a fade-in that begins `offset` samples into a transition of `length`: 0
// before it and 1 behind it.
[[nodiscard]] Points fade_in_points(const CGenericEDLFileEntry& event, std::int64_t length,
                                    std::int64_t offset);
// The level of a fade-out: 1 before it and 0 behind it. Mirrored it runs backwards in
// time, so that it rises.
[[nodiscard]] Points fade_out_points(const CGenericEDLFileEntry& event, bool mirrored,
                                     std::int64_t length, std::int64_t offset);

// The points of one run of automation.
class AutomationPoints {
 public:
  struct Point {
    std::int64_t time;
    std::uint32_t value;
  };

  explicit AutomationPoints(const CObList& points);

  [[nodiscard]] std::span<const Point> all() const { return m_points; }
  // Those from `start` on, in the order of the list, up to the first that stands behind
  // `end`.
  [[nodiscard]] std::vector<Point> between(std::int64_t start, std::int64_t end) const;

 private:
  std::vector<Point> m_points;
  bool m_ascends;
};

// Over a group of `length` samples from `start`; none when it has no length.
[[nodiscard]] Points gain_points(std::span<const AutomationPoints::Point> points,
                                 std::int64_t start, std::int64_t length);
[[nodiscard]] Points pan_points(std::span<const AutomationPoints::Point> points, std::int64_t start,
                                std::int64_t length);

}  // namespace aaf
