#include "aaf/export_levels.h"

#include <algorithm>
#include <limits>

#include "aaf/aaf_numbers.h"
#include "aaf/gain_table.h"
#include "host/application.h"
#include "host/host.h"
#include "native/generic_edl_file_chunks.h"

namespace aaf {

namespace {

constexpr std::int32_t fade_scale = 1000000;
constexpr std::int32_t automation_scale = 100000000;
constexpr double pan_steps = 504.0;
constexpr std::int64_t eighths = 8;
constexpr std::int64_t last_level = fade_curve_levels - 1;

constexpr std::int32_t most_32 = std::numeric_limits<std::int32_t>::max();

std::int32_t to_32(double value) {
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(truncated(value), -std::int64_t{most_32}, most_32));
}

CAAFPoint point_at(std::int64_t time, std::int64_t length, std::int32_t value) {
  CAAFPoint point;
  point.m_time = fraction_of(time, length);
  point.m_value = {value, fade_scale};
  return point;
}

// A level of a curve as millionths. A curve that the host does not have falls evenly.
std::int32_t curve_value(const std::uint16_t* curve, std::int64_t index) {
  const std::int64_t level =
      curve != nullptr ? curve[index] : (last_level - index) * fade_curve_full_level / last_level;
  return static_cast<std::int32_t>(level * fade_scale / fade_curve_full_level);
}

// The place on a curve of so many eighths.
std::int64_t curve_index(std::int64_t eighth) {
  return last_level * eighth / eighths;
}

std::int64_t eighths_of(std::int64_t length, std::int64_t count) {
  return length / eighths * count + length % eighths * count / eighths;
}

std::int64_t fade_within(std::int64_t fade, std::int64_t length) {
  return std::clamp<std::int64_t>(fade, 0, std::max<std::int64_t>(length, 0));
}

}  // namespace

aafRational_t fraction_of(std::int64_t value, std::int64_t whole) {
  while (whole > most_32 || value > most_32 || value < -std::int64_t{most_32}) {
    value /= 2;
    whole /= 2;
  }
  // A time far outside of a short whole.
  if (whole == 0) whole = 1;
  return {static_cast<aafInt32>(value), static_cast<aafInt32>(whole)};
}

aafRational_t level_fraction(float level) {
  return {to_32(static_cast<double>(level) * fade_scale), fade_scale};
}

std::int64_t fade_in_length(const CGenericEDLFileEntry& event) {
  return fade_within(event.m_fade_in_length, event.m_length);
}

std::int64_t fade_out_length(const CGenericEDLFileEntry& event) {
  return fade_within(event.m_fade_out_length, event.m_length);
}

Points fade_in_points(const CGenericEDLFileEntry& event, std::int64_t length, std::int64_t offset) {
  const std::uint16_t* const curve = host().application().get_fade_curve(event.m_fade_in_curve);
  const std::int64_t fade = fade_in_length(event);
  Points points;
  if (offset != 0) points.push_back(point_at(0, length, 0));
  for (std::int64_t k = 0; k <= eighths; ++k) {
    points.push_back(point_at(sum(eighths_of(fade, k), offset), length,
                              curve_value(curve, last_level - curve_index(k))));
  }
  if (sum(fade, offset) < length) points.push_back(point_at(length, length, fade_scale));
  return points;
}

Points fade_out_points(const CGenericEDLFileEntry& event, bool mirrored, std::int64_t length,
                       std::int64_t offset) {
  const std::uint16_t* const curve = host().application().get_fade_curve(event.m_fade_out_curve);
  const std::int64_t fade = fade_out_length(event);
  Points points;
  const auto add = [&](std::int64_t time, std::int32_t value) {
    points.push_back(point_at(mirrored ? difference(length, time) : time, length, value));
  };
  if (offset != 0) add(0, fade_scale);
  for (std::int64_t k = 0; k <= eighths; ++k)
    add(sum(eighths_of(fade, k), offset), curve_value(curve, curve_index(k)));
  if (sum(fade, offset) < length) add(length, 0);
  if (mirrored) std::reverse(points.begin(), points.end());
  return points;
}

AutomationPoints::AutomationPoints(const CObList& points) {
  m_points.reserve(static_cast<std::size_t>(points.GetCount()));
  for (POSITION at = points.GetHeadPosition(); at != nullptr;) {
    const auto* const point =
        static_cast<const CGenericEDLFileAutomationEntry*>(points.GetNext(at));
    m_points.push_back({point->m_time, point->m_value});
  }
  m_ascends = std::is_sorted(m_points.begin(), m_points.end(),
                             [](const Point& a, const Point& b) { return a.time < b.time; });
}

std::vector<AutomationPoints::Point> AutomationPoints::between(std::int64_t start,
                                                               std::int64_t end) const {
  std::vector<Point> found;
  auto at = m_points.begin();
  if (m_ascends) {
    at = std::lower_bound(m_points.begin(), m_points.end(), start,
                          [](const Point& point, std::int64_t time) { return point.time < time; });
  }
  for (; at != m_points.end() && at->time <= end; ++at) {
    if (at->time >= start) found.push_back(*at);
  }
  return found;
}

Points gain_points(std::span<const AutomationPoints::Point> points, std::int64_t start,
                   std::int64_t length) {
  Points out;
  if (length <= 0) return out;
  for (const AutomationPoints::Point& from : points) {
    const double gain = gain_table()[std::min(from.value, gain_steps - 1)];
    CAAFPoint point;
    point.m_time = fraction_of(difference(from.time, start), length);
    point.m_value = {to_32(gain * automation_scale), automation_scale};
    out.push_back(point);
  }
  return out;
}

Points pan_points(std::span<const AutomationPoints::Point> points, std::int64_t start,
                  std::int64_t length) {
  Points out;
  if (length <= 0) return out;
  for (const AutomationPoints::Point& from : points) {
    const double share = std::min(static_cast<double>(from.value), pan_steps) / pan_steps;
    CAAFPoint point;
    point.m_time = fraction_of(difference(from.time, start), length);
    point.m_value = {to_32(share * 100000000.0), automation_scale};
    out.push_back(point);
  }
  return out;
}

}  // namespace aaf
