// The walk along the components of a slot.
#include <algorithm>
#include <cstddef>

#include "aaf/aaf_comp_mob.h"
#include "aaf/aaf_edl_file.h"
#include "aaf/aaf_numbers.h"
#include "aaf/import_fades.h"
#include "aaf/import_index.h"
#include "host/corrections.h"
#include "native/generic_edl_file_chunks.h"

namespace {

// Fewer points than this tell no curve.
constexpr std::size_t least_curve_points = 3;

}  // namespace

std::uint16_t CAAFCompMob::effective_stream() const {
  return corrected(Correction::aaf_nested_stream) ? clip_stream() : m_stream;
}

int CAAFCompMob::process_segment(IAAFSegment* segment) {
  const auto component = AAF_QUERY(IAAFComponent, segment);
  return component ? process_component(component.get()) : 0;
}

CAAFCompMob::Extent CAAFCompMob::extent_of(std::int64_t length) const {
  Extent extent{length, length, 0, true};
  if (!is_nested()) return extent;
  const std::int64_t end = aaf::sum(m_position, length);
  const std::int64_t window_end = aaf::sum(m_window_start, m_window_length);
  extent.in_window = end > m_window_start && m_position < window_end;
  if (!extent.in_window) return extent;
  if (m_position < m_window_start) {
    extent.offset = aaf::difference(m_window_start, m_position);
    extent.visible = aaf::difference(length, extent.offset);
  }
  if (window_end < end)
    extent.visible = aaf::difference(extent.visible, aaf::difference(end, window_end));
  extent.visible = std::max<std::int64_t>(extent.visible, 0);
  return extent;
}

// An object is of one kind, so the first that answers is the only one.
int CAAFCompMob::process_component(IAAFComponent* component) {
  aaf::ImportIndex& index = m_owner->import_index();
  const aaf::ImportIndex::Deeper deeper(index);
  aafLength_t length = 0;
  if (!deeper.fits() || !index.visit() || component->GetLength(&length) != 0 || length < 0)
    return 0;
  const Extent extent = extent_of(length);
  const Place before{m_position, m_parent_position, m_in_nested_scope != 0};
  std::uint8_t kind = 0;
  const Walk walk = walk_container(component, extent, kind);
  if (kind == 0) {
    if (const auto clip = AAF_QUERY(IAAFSourceClip, component)) {
      if (extent.in_window && process_source_clip(clip.get(), extent) == 0) return 0;
      kind = kind_source_clip;
    } else if (AAF_QUERY(IAAFFiller, component)) {
      if (extent.in_window) {
        m_pending_fade_length = 0;
        m_pending_fade_curve = 0;
        m_pending_offset = 0;
      }
      kind = kind_filler;
    } else if (const auto transition = AAF_QUERY(IAAFTransition, component)) {
      process_transition(transition.get(), extent);
      kind = kind_transition;
    } else if (AAF_QUERY(IAAFScopeReference, component)) {
      kind = kind_scope_reference;
    }
  } else if (walk == Walk::failed && (kind == kind_sequence || kind == kind_nested_scope)) {
    return 0;
  }
  if (kind != 0) m_last_kind = kind;
  advance(extent, before, kind, walk);
  return 1;
}

CAAFCompMob::Walk CAAFCompMob::walk_container(IAAFComponent* component, const Extent& extent,
                                              std::uint8_t& kind) {
  if (const auto sequence = AAF_QUERY(IAAFSequence, component)) {
    kind = kind_sequence;
    return extent.in_window ? process_sequence(sequence.get()) : Walk::skipped;
  }
  if (const auto group = AAF_QUERY(IAAFOperationGroup, component)) {
    kind = kind_operation_group;
    return extent.in_window ? process_operation_group(group.get(), extent) : Walk::skipped;
  }
  if (const auto scope = AAF_QUERY(IAAFNestedScope, component)) {
    kind = kind_nested_scope;
    return extent.in_window ? process_nested_scope(scope.get()) : Walk::skipped;
  }
  if (const auto selector = AAF_QUERY(IAAFSelector, component)) {
    kind = kind_selector;
    return extent.in_window ? process_selector(selector.get()) : Walk::skipped;
  }
  return Walk::skipped;
}

// Moves on behind a component, unless what it holds has done so. `kind` is 0 for a
// component of no known kind.
void CAAFCompMob::advance(const Extent& extent, const Place& before, std::uint8_t kind, Walk walk) {
  const bool holds_others = kind == kind_sequence || kind == kind_nested_scope ||
                            kind == kind_operation_group || kind == kind_selector;
  const bool own_length =
      (holds_others && walk != Walk::walked && corrected(Correction::aaf_stale_position)) ||
      (kind == kind_operation_group && !before.in_scope && corrected(Correction::aaf_group_length));
  if (own_length) {
    m_position = before.position;
    m_parent_position = before.parent_position;
  } else {
    const std::uint8_t last =
        kind == 0 && corrected(Correction::aaf_stale_position) ? kind_none : m_last_kind;
    const bool moved = last >= kind_transition && last <= kind_selector;
    if (moved && (extent.in_window || last == kind_transition)) return;
  }
  m_position = aaf::sum(m_position, extent.length);
  if (is_nested() && extent.in_window)
    m_parent_position = aaf::sum(m_parent_position, extent.visible);
}

CAAFCompMob::Walk CAAFCompMob::process_sequence(IAAFSequence* sequence) {
  aafUInt32 count = 0;
  AafRef<IEnumAAFComponents> components;
  if (sequence->CountComponents(&count) != 0 || sequence->GetComponents(components.put()) != 0)
    return Walk::failed;
  Walk walk = Walk::skipped;
  AafRef<IAAFComponent> component;
  for (aafUInt32 i = 0; i < count && components->NextOne(component.put()) == 0; ++i) {
    if (process_component(component.get()) == 0) return Walk::failed;
    walk = Walk::walked;
  }
  return walk;
}

// An inner scope ends the outer one's mark as well.
CAAFCompMob::Walk CAAFCompMob::process_nested_scope(IAAFNestedScope* scope) {
  AafRef<IEnumAAFSegments> segments;
  if (scope->GetSegments(segments.put()) != 0) return Walk::skipped;
  m_in_nested_scope = 1;
  Walk walk = Walk::skipped;
  AafRef<IAAFSegment> segment;
  while (walk != Walk::failed && segments->NextOne(segment.put()) == 0)
    walk = process_segment(segment.get()) != 0 ? Walk::walked : Walk::failed;
  m_in_nested_scope = 0;
  return walk;
}

CAAFCompMob::Walk CAAFCompMob::process_selector(IAAFSelector* selector) {
  AafRef<IAAFSegment> segment;
  if (selector->GetSelectedSegment(segment.put()) != 0 || !segment) return Walk::skipped;
  return process_segment(segment.get()) != 0 ? Walk::walked : Walk::failed;
}

// Goes back by the transition's length, so that the clips beside it overlap.
void CAAFCompMob::process_transition(IAAFTransition* transition, const Extent& extent) {
  const std::int64_t length = extent.length;
  if (extent.in_window) {
    TransitionFade in{length, 0, 0};
    const aaf::DissolveLevels levels = aaf::read_dissolve_curves(transition);
    if (levels.incoming.size() >= least_curve_points) {
      const aaf::FadeShape shape = aaf::analyse_fade_curve(length, levels.incoming);
      in = {shape.length, shape.curve, shape.offset};
    }
    TransitionFade out{length, in.curve, 0};
    if (levels.outgoing.size() >= least_curve_points) {
      const aaf::FadeShape shape = aaf::analyse_fade_curve(length, levels.outgoing);
      out = {shape.length, shape.curve, shape.offset};
    }
    if (m_last_kind == kind_source_clip || m_last_kind == kind_nested_scope ||
        m_last_kind == kind_operation_group) {
      trim_previous_entry(out);
    }
    m_pending_fade_length = in.length;
    m_pending_fade_curve = in.curve;
    m_pending_offset = in.offset;
  }
  m_position = std::max<std::int64_t>(aaf::difference(m_position, length), 0);
  if (is_nested() && m_window_start < m_position &&
      aaf::difference(m_position, length) < aaf::sum(m_window_start, m_window_length)) {
    m_parent_position = std::max<std::int64_t>(aaf::difference(m_parent_position, length), 0);
  }
}

void CAAFCompMob::trim_previous_entry(const TransitionFade& fade) const {
  aaf::ImportIndex& index = m_owner->import_index();
  CGenericEDLFileEntry* const event = index.last_event(effective_stream());
  if (event == nullptr) return;
  event->m_length = aaf::difference(event->m_length, edit_to_samples(fade.offset));
  event->m_fade_out_length = edit_to_samples(fade.length);
  event->m_fade_out_curve = fade.curve;
  index.note_length(*event);
}
