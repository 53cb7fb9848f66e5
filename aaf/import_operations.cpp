// Operation groups: gain and pan of the clips in them.
#include <algorithm>

#include "aaf/aaf_comp_mob.h"
#include "aaf/aaf_edl_file.h"
#include "aaf/aaf_ids.h"
#include "aaf/aaf_numbers.h"
#include "aaf/gain_table.h"
#include "aaf/import_fades.h"
#include "aaf/import_index.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "native/generic_edl_file_chunks.h"

namespace {

constexpr std::uint16_t parameter_gain = 0;
constexpr std::uint16_t parameter_pan = 2;
constexpr double pan_steps = 504.0;

std::uint32_t step_of(std::uint16_t parameter, const aafRational_t& value) {
  const double ratio = aaf::quotient(value);
  if (parameter == parameter_gain) return aaf::gain_step_from_ratio(ratio);
  const std::int64_t step = aaf::truncated(ratio * pan_steps);
  return static_cast<std::uint32_t>(
      std::clamp<std::int64_t>(step, 0, static_cast<std::int64_t>(pan_steps)));
}

}  // namespace

CAAFCompMob::Walk CAAFCompMob::process_operation_group(IAAFOperationGroup* group,
                                                       const Extent& extent) {
  AafRef<IAAFOperationDef> definition;
  if (group->GetOperationDefinition(definition.put()) != 0) return Walk::skipped;
  std::int64_t start = base();
  Walk walk = Walk::skipped;
  aafUInt32 inputs = 0;
  AafRef<IAAFSegment> input;
  if (group->CountSourceSegments(&inputs) == 0 && inputs > 0 &&
      group->GetInputSegmentAt(0, input.put()) == 0) {
    walk = process_segment(input.get()) != 0 ? Walk::walked : Walk::failed;
  }
  // On a scope reference inside a scope the clip lies behind.
  if (m_last_kind == kind_scope_reference && m_in_nested_scope != 0 && extent.visible <= start)
    start -= extent.visible;

  const auto named = AAF_QUERY(IAAFDefObject, definition.get());
  aafUID_t id{};
  if (!named || named->GetAUID(&id) != 0) return walk;
  const Span span{extent, edit_to_samples(start), edit_to_samples(extent.visible)};
  if (uids_match(id, kAAFOperationDef_MonoAudioGain)) apply_gain(group, span);
  if (uids_match(id, kAAFOperationDef_MonoAudioPan)) apply_pan(group, span);
  return walk;
}

void CAAFCompMob::apply_gain(IAAFOperationGroup* group, const Span& span) {
  AafRef<IAAFParameter> parameter;
  if (group->LookupParameter(kAAFParameterDef_Amplitude, parameter.put()) != 0 &&
      group->LookupParameter(kAAFParameterDef_Level, parameter.put()) != 0) {
    return;
  }
  if (const auto constant = AAF_QUERY(IAAFConstantValue, parameter.get()))
    apply_constant_gain(constant.get(), span);
  else if (const auto varying = AAF_QUERY(IAAFVaryingValue, parameter.get()))
    add_points(varying.get(), span, parameter_gain);
}

// A pan that does not move has no place in the list.
void CAAFCompMob::apply_pan(IAAFOperationGroup* group, const Span& span) {
  AafRef<IAAFParameter> parameter;
  if (group->LookupParameter(kAAFParameterDef_Pan, parameter.put()) != 0) return;
  if (const auto varying = AAF_QUERY(IAAFVaryingValue, parameter.get()))
    add_points(varying.get(), span, parameter_pan);
}

// One record at most, also when the group holds several clips.
void CAAFCompMob::apply_constant_gain(IAAFConstantValue* value, const Span& span) const {
  aafRational_t ratio{};
  if (!aaf::read_ratio(value, ratio)) return;
  CGenericEDLFileEntry* const event = m_owner->import_index().first_event_within(
      effective_stream(), span.start, aaf::sum(span.start, span.samples));
  if (event == nullptr) return;
  event->m_level *= static_cast<float>(ratio.numerator) / static_cast<float>(ratio.denominator);
}

// Points outside the visible part are left out. The way between points is not told.
void CAAFCompMob::add_points(IAAFVaryingValue* value, const Span& span, std::uint16_t parameter) {
  AafRef<IEnumAAFControlPoints> points;
  if (span.extent.visible <= 0 || value->GetControlPoints(points.put()) != 0) return;
  AafRef<IAAFControlPoint> next;
  while (points->NextOne(next.put()) == 0 && m_owner->import_index().visit()) {
    CAAFPoint point;
    if (!aaf::read_point(next.get(), point)) continue;
    const std::int64_t at =
        aaf::scaled(span.extent.length, point.m_time.numerator, point.m_time.denominator);
    const std::int64_t inside = aaf::difference(at, span.extent.offset);
    if (inside < 0 || inside > span.extent.visible) continue;
    add_automation_point(
        parameter, aaf::sum(aaf::scaled(inside, span.samples, span.extent.visible), span.start),
        step_of(parameter, point.m_value));
  }
}

void CAAFCompMob::add_automation_point(std::uint16_t parameter, std::int64_t time,
                                       std::uint32_t value) {
  aaf::ImportIndex& index = m_owner->import_index();
  if (!index.make_point()) return;
  index.add_point(m_owner->m_automation, parameter, effective_stream(), time, value);
}
