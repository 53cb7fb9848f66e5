#include "aaf/export_track.h"

#include <algorithm>

#include "aaf/aaf_numbers.h"
#include "host/corrections.h"

namespace aaf {

namespace {

constexpr aafSlotID_t essence_slot = 1;

std::int64_t end_of(const CGenericEDLFileEntry& event) {
  return sum(event.m_dest_in, event.m_length);
}

aafDataBuffer_t bytes_of(aafRational_t& value) {
  return reinterpret_cast<aafDataBuffer_t>(&value);
}

}  // namespace

AafRef<IAAFOperationGroup> make_group(ObjectFactory& factory, IAAFOperationDef* definition,
                                      std::int64_t length) {
  AafRef<IAAFOperationGroup> group = AAF_MAKE(factory, OperationGroup);
  if (!group || definition == nullptr ||
      group->Initialize(factory.sound(), length, definition) != 0)
    return {};
  return group;
}

bool add_varying(ObjectFactory& factory, ExportDefinitions& definitions, IAAFOperationGroup& group,
                 Parameter parameter, const Points& points) {
  IAAFParameterDef* const definition = definitions.parameter(parameter);
  IAAFInterpolationDef* const linear = definitions.linear();
  const AafRef<IAAFVaryingValue> varying = AAF_MAKE(factory, VaryingValue);
  if (definition == nullptr || linear == nullptr || !varying ||
      varying->Initialize(definition, linear) != 0)
    return false;
  for (const CAAFPoint& point : points) {
    const AafRef<IAAFControlPoint> made = AAF_MAKE(factory, ControlPoint);
    aafRational_t value = point.m_value;
    if (!made ||
        made->Initialize(varying.get(), point.m_time, sizeof value, bytes_of(value)) != 0 ||
        varying->AddControlPoint(made.get()) != 0)
      return false;
  }
  const AafRef<IAAFParameter> added = AAF_QUERY(IAAFParameter, varying.get());
  return added && group.AddParameter(added.get()) == 0;
}

bool TrackExport::export_track() {
  const Events& events = m_tracks.timeline.on_stream(m_stream);
  for (std::size_t i = 0; i < events.size(); ++i) {
    const CGenericEDLFileEntry* const next = i + 1 < events.size() ? events[i + 1] : nullptr;
    if (!export_event(*events[i], next)) return false;
  }
  // An empty track lasts for a second.
  return !events.empty() || append_filler(m_tracks.sample_rate);
}

bool TrackExport::export_event(const CGenericEDLFileEntry& event,
                               const CGenericEDLFileEntry* next) {
  if (!lead_in(event)) return false;
  const bool crosses = next != nullptr && next->m_dest_in < end_of(event);
  const Crossfade crossfade = crosses ? crossfade_of(event, *next) : Crossfade{0, 0, 0};
  if (!append_clip(event, crossfade.post)) return false;
  m_cursor = sum(m_cursor, sum(event.m_length, sum(crossfade.post, m_pre)));
  m_joined = crosses;
  m_pre = crossfade.pre;
  if (!crosses) return fade_out(event, next == nullptr);
  m_cursor = difference(m_cursor, crossfade.length);
  return append_transition(&event, next, crossfade.length);
}

// The gap in front, and the fade-in unless a crossfade has brought it.
bool TrackExport::lead_in(const CGenericEDLFileEntry& event) {
  const std::int64_t fade = fade_in_length(event);
  if (m_joined) return true;
  const std::int64_t heard = sum(event.m_dest_in, fade);
  if (m_cursor < heard && !append_filler(difference(heard, m_cursor))) return false;
  m_cursor = difference(heard, fade);
  return fade == 0 || append_transition(nullptr, &event, fade);
}

bool TrackExport::fade_out(const CGenericEDLFileEntry& event, bool is_last) {
  const std::int64_t fade = fade_out_length(event);
  if (fade == 0) return true;
  m_cursor = difference(m_cursor, fade);
  return append_transition(&event, nullptr, fade) && (!is_last || append_filler(fade));
}

TrackExport::Crossfade TrackExport::crossfade_of(const CGenericEDLFileEntry& a,
                                                 const CGenericEDLFileEntry& b) {
  const std::int64_t end = end_of(a);
  const std::int64_t out_begins = difference(end, fade_out_length(a));
  const std::int64_t in_ends = sum(b.m_dest_in, fade_in_length(b));
  Crossfade crossfade{};
  crossfade.length = difference(std::max(in_ends, end), std::min(b.m_dest_in, out_begins));
  crossfade.post = std::max<std::int64_t>(difference(in_ends, end), 0);
  crossfade.pre = std::max<std::int64_t>(difference(b.m_dest_in, out_begins), 0);
  return crossfade;
}

bool TrackExport::append(IUnknown* component) {
  const AafRef<IAAFComponent> appended = AAF_QUERY(IAAFComponent, component);
  return appended && m_sequence->AppendComponent(appended.get()) == 0;
}

bool TrackExport::append_filler(std::int64_t length) {
  const AafRef<IAAFFiller> filler = AAF_MAKE(m_tracks.factory, Filler);
  const AafRef<IAAFComponent> component = AAF_QUERY(IAAFComponent, filler.get());
  return component && component->SetLength(length) == 0 &&
         component->SetDataDef(m_tracks.factory.sound()) == 0 && append(component.get());
}

bool TrackExport::append_clip(const CGenericEDLFileEntry& event, std::int64_t post) {
  const AafRef<IAAFSourceClip> clip = make_source_clip(event, post);
  if (!clip) return false;
  const AutomationPoints* const automation =
      m_tracks.levels.gain_automation ? m_tracks.timeline.automation(gain_parameter, m_stream)
                                      : nullptr;
  // To the letter a group is as long as the edit, also round a clip that is longer.
  const std::int64_t length = corrected(Correction::aaf_group_length)
                                  ? sum(event.m_length, sum(post, m_pre))
                                  : event.m_length;
  AafRef<IAAFOperationGroup> inner;
  AafRef<IAAFOperationGroup> outer;
  IUnknown* whole = clip.get();
  if (m_tracks.levels.fixed_gain) {
    inner = fixed_gain(event, length, whole);
    if (!inner) return false;
    whole = inner.get();
  }
  if (automation != nullptr) {
    outer = varying_gain(event, *automation, length, whole);
    if (!outer) return false;
    whole = outer.get();
  }
  return append(whole);
}

AafRef<IAAFSourceClip> TrackExport::make_source_clip(const CGenericEDLFileEntry& event,
                                                     std::int64_t post) const {
  const aafMobID_t* const mob = m_tracks.timeline.mob_of(event, m_stream);
  AafRef<IAAFSourceClip> clip = AAF_MAKE(m_tracks.factory, SourceClip);
  if (mob == nullptr || !clip) return {};
  const std::int64_t stamp = m_tracks.timeline.source_of(event)->m_time_stamp;
  aafSourceRef_t reference{};
  reference.sourceID = *mob;
  reference.sourceSlotID = essence_slot;
  reference.startTime = difference(event.m_source_in, m_pre);
  if (stamp != time_not_given) reference.startTime = difference(reference.startTime, stamp);
  const aafLength_t length = sum(event.m_length, sum(m_pre, post));
  if (clip->Initialize(m_tracks.factory.sound(), length, reference) != 0) return {};
  return clip;
}

AafRef<IAAFOperationGroup> TrackExport::fixed_gain(const CGenericEDLFileEntry& event,
                                                   std::int64_t length, IUnknown* input) {
  AafRef<IAAFOperationGroup> group =
      make_group(m_tracks.factory, m_tracks.definitions.operation(Operation::gain_fixed), length);
  IAAFParameterDef* const definition = m_tracks.definitions.parameter(Parameter::gain);
  const AafRef<IAAFConstantValue> constant = AAF_MAKE(m_tracks.factory, ConstantValue);
  const AafRef<IAAFSegment> segment = AAF_QUERY(IAAFSegment, input);
  aafRational_t level = level_fraction(event.m_level);
  if (!group || definition == nullptr || !constant || !segment ||
      constant->Initialize(definition, sizeof level, bytes_of(level)) != 0)
    return {};
  const AafRef<IAAFParameter> parameter = AAF_QUERY(IAAFParameter, constant.get());
  if (!parameter || group->AddParameter(parameter.get()) != 0 ||
      group->AppendInputSegment(segment.get()) != 0)
    return {};
  return group;
}

AafRef<IAAFOperationGroup> TrackExport::varying_gain(const CGenericEDLFileEntry& event,
                                                     const AutomationPoints& automation,
                                                     std::int64_t length, IUnknown* input) {
  AafRef<IAAFOperationGroup> group =
      make_group(m_tracks.factory, m_tracks.definitions.operation(Operation::gain_varying), length);
  const AafRef<IAAFSegment> segment = AAF_QUERY(IAAFSegment, input);
  const std::int64_t start = corrected(Correction::aaf_group_length)
                                 ? difference(event.m_dest_in, m_pre)
                                 : event.m_dest_in;
  const Points points =
      gain_points(automation.between(event.m_dest_in, end_of(event)), start, length);
  if (!group || !segment ||
      !add_varying(m_tracks.factory, m_tracks.definitions, *group.get(), Parameter::gain, points) ||
      group->AppendInputSegment(segment.get()) != 0)
    return {};
  return group;
}

// `a` goes out and `b` comes in; one of them may be null.
bool TrackExport::append_transition(const CGenericEDLFileEntry* a, const CGenericEDLFileEntry* b,
                                    std::int64_t length) {
  const AafRef<IAAFTransition> transition = AAF_MAKE(m_tracks.factory, Transition);
  const Operation operation =
      a != nullptr && b != nullptr ? Operation::two_level_dissolve : Operation::dissolve;
  const AafRef<IAAFOperationGroup> group =
      make_group(m_tracks.factory, m_tracks.definitions.operation(operation), length);
  return transition && group && add_levels(*group.get(), a, b, length) &&
         transition->Initialize(m_tracks.factory.sound(), length, length / 2, group.get()) == 0 &&
         append(transition.get());
}

// The level of a single fade is the share of the incoming side, so it always rises.
bool TrackExport::add_levels(IAAFOperationGroup& group, const CGenericEDLFileEntry* a,
                             const CGenericEDLFileEntry* b, std::int64_t length) {
  if (a != nullptr && b != nullptr) return build_dissolve_levels(group, *a, *b, length);
  return add_varying(
      m_tracks.factory, m_tracks.definitions, group, Parameter::fade_level,
      b != nullptr ? fade_in_points(*b, length, 0) : fade_out_points(*a, true, length, 0));
}

bool TrackExport::build_dissolve_levels(IAAFOperationGroup& group, const CGenericEDLFileEntry& a,
                                        const CGenericEDLFileEntry& b, std::int64_t length) {
  const std::int64_t out_begins = difference(end_of(a), fade_out_length(a));
  const std::int64_t start = std::min(b.m_dest_in, out_begins);
  return add_varying(m_tracks.factory, m_tracks.definitions, group, Parameter::outgoing,
                     fade_out_points(a, false, length, difference(out_begins, start))) &&
         add_varying(m_tracks.factory, m_tracks.definitions, group, Parameter::incoming,
                     fade_in_points(b, length, difference(b.m_dest_in, start)));
}

}  // namespace aaf
