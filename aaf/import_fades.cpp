#include "aaf/import_fades.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "aaf/aaf_ids.h"
#include "aaf/aaf_numbers.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "host/application.h"
#include "host/host.h"

namespace aaf {

namespace {

// Values longer than this are none of a level's.
constexpr aafUInt32 most_value_bytes = 65536;
// Real curves have some thousands.
constexpr std::size_t most_points = 1'000'000;

// Of an object with a value of any type, of which the first eight bytes are a fraction.
template <class Valued>
bool read_value(Valued* from, aafRational_t& value) {
  aafUInt32 size = 0;
  if (from->GetValueBufLen(&size) != 0 || size < sizeof value || size > most_value_bytes)
    return false;
  std::vector<aafUInt8> bytes(size);
  aafUInt32 read = 0;
  if (from->GetValue(size, bytes.data(), &read) != 0 || read < sizeof value) return false;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value.denominator != 0;
}

std::vector<CAAFPoint> read_level_points(IAAFOperationGroup* group, const aafUID_t& id) {
  std::vector<CAAFPoint> points;
  AafRef<IAAFParameter> parameter;
  if (group->LookupParameter(id, parameter.put()) != 0) return points;
  const auto varying = AAF_QUERY(IAAFVaryingValue, parameter.get());
  AafRef<IEnumAAFControlPoints> all;
  if (!varying || varying->GetControlPoints(all.put()) != 0) return points;
  AafRef<IAAFControlPoint> next;
  for (std::size_t i = 0; i < most_points && all->NextOne(next.put()) == 0; ++i) {
    CAAFPoint point;
    if (read_point(next.get(), point)) points.push_back(point);
  }
  return points;
}

float single(const aafRational_t& value) {
  return static_cast<float>(value.numerator) / static_cast<float>(value.denominator);
}

std::int64_t place(std::int64_t length, const CAAFPoint& point) {
  const float product = static_cast<float>(length) * single(point.m_time);
  return truncated(static_cast<double>(product));
}

// Where the level starts to move and where it has arrived.
struct Ramp {
  bool rises;
  std::int64_t start;
  std::int64_t end;
};

Ramp find_ramp(std::int64_t length, const std::vector<CAAFPoint>& points) {
  Ramp ramp{points.front().m_value.numerator == 0, 0, length};
  const float from = ramp.rises ? 0.0F : 1.0F;
  const float to = ramp.rises ? 1.0F : 0.0F;
  bool end_seen = false;
  for (const CAAFPoint& point : points) {
    const float level = single(point.m_value);
    const std::int64_t at = std::clamp<std::int64_t>(place(length, point), 0, length);
    if (level == from) {
      ramp.start = at;
    } else if (level == to && !end_seen) {
      ramp.end = at;
      end_seen = true;
    }
  }
  return ramp;
}

// A point of the ramp as a step of a fade curve.
struct CurvePoint {
  std::size_t index;
  std::int32_t level;
};

std::vector<CurvePoint> points_on_ramp(std::int64_t length, const std::vector<CAAFPoint>& points,
                                       const Ramp& ramp) {
  constexpr float last_index = 127.0F;
  constexpr float full_level = 16384.0F;
  std::vector<CurvePoint> steps;
  const auto width = static_cast<float>(ramp.end - ramp.start);
  for (const CAAFPoint& point : points) {
    const std::int64_t at = place(length, point);
    if (at < ramp.start || at > ramp.end) continue;
    const std::int64_t behind = ramp.rises ? ramp.end - at : at - ramp.start;
    const float index = static_cast<float>(behind) / width * last_index;
    const std::int64_t level = truncated(static_cast<double>(single(point.m_value) * full_level));
    steps.push_back(
        {static_cast<std::size_t>(std::clamp(truncated(static_cast<double>(index)), std::int64_t{0},
                                             std::int64_t{fade_curve_levels - 1})),
         static_cast<std::int32_t>(std::clamp(level, std::int64_t{0}, std::int64_t{32767}))});
  }
  return steps;
}

std::uint16_t nearest_curve(const std::vector<CurvePoint>& steps) {
  Application& application = host().application();
  std::uint32_t least = 0xFFFFFFFF;
  std::uint16_t nearest = 0;
  const int curves = std::min(application.fade_curve_count(), 0xFFFF);
  for (int number = 0; number < curves; ++number) {
    const std::uint16_t* const levels = application.get_fade_curve(number);
    if (levels == nullptr) continue;
    std::uint32_t distance = 0;
    for (const CurvePoint& step : steps)
      distance += static_cast<std::uint32_t>(std::abs(step.level - levels[step.index]));
    if (distance < least) {
      least = distance;
      nearest = static_cast<std::uint16_t>(number);
    }
  }
  return nearest;
}

}  // namespace

bool read_point(IAAFControlPoint* from, CAAFPoint& point) {
  return from->GetTime(&point.m_time) == 0 && point.m_time.denominator != 0 &&
         read_value(from, point.m_value);
}

bool read_ratio(IAAFConstantValue* from, aafRational_t& ratio) {
  return read_value(from, ratio);
}

DissolveLevels read_dissolve_curves(IAAFTransition* transition) {
  AafRef<IAAFOperationGroup> group;
  AafRef<IAAFOperationDef> definition;
  aafUID_t id{};
  if (transition->GetOperationGroup(group.put()) != 0 || !group ||
      group->GetOperationDefinition(definition.put()) != 0) {
    return {};
  }
  const auto named = AAF_QUERY(IAAFDefObject, definition.get());
  if (!named || named->GetAUID(&id) != 0) return {};
  if (uids_match(id, kAAFOperationDef_MonoAudioDissolve))
    return {{}, read_level_points(group.get(), kAAFParameterDef_Level)};
  if (uids_match(id, kAAFOperationDef_TwoParameterMonoAudioDissolve)) {
    return {read_level_points(group.get(), kAAFParameterDef_OutgoingLevel),
            read_level_points(group.get(), kAAFParameterDef_IncomingLevel)};
  }
  return {};
}

FadeShape analyse_fade_curve(std::int64_t length, const std::vector<CAAFPoint>& points) {
  if (points.empty()) return {};
  const Ramp ramp = find_ramp(length, points);
  FadeShape shape;
  shape.offset = ramp.rises ? ramp.start : length - ramp.end;
  // All points at one time: there is no ramp to compare with a curve.
  if (ramp.end <= ramp.start) return shape;
  shape.length = ramp.end - ramp.start;
  shape.curve = nearest_curve(points_on_ramp(length, points, ramp));
  return shape;
}

}  // namespace aaf
