// Slots of a composition: sound tracks, time code and marks.
#include <algorithm>
#include <memory>

#include "aaf/aaf_comp_mob.h"
#include "aaf/aaf_edl_file.h"
#include "aaf/aaf_ids.h"
#include "aaf/aaf_numbers.h"
#include "aaf/aaf_rates.h"
#include "aaf/file_facts.h"
#include "aaf/import_index.h"
#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "core/generic_edl_entry.h"
#include "host/application.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/string_ids.h"
#include "host/strings.h"
#include "native/generic_edl_file_chunks.h"
#include "native/record_transfer.h"

namespace {

// Neither is told of a slot whose definition does not answer.
struct SlotKind {
  bool known = false;
  bool sound = false;
  bool picture = false;
};

SlotKind kind_of(IAAFMobSlot* slot) {
  SlotKind kind;
  AafRef<IAAFDataDef> definition;
  if (slot->GetDataDef(definition.put()) != 0 || !definition) return kind;
  aafBoolean_t sound = 0;
  aafBoolean_t picture = 0;
  kind.known = true;
  kind.sound = definition->IsSoundKind(&sound) == 0 && sound != 0;
  kind.picture = definition->IsPictureKind(&picture) == 0 && picture != 0;
  return kind;
}

// The host's frame rate for time code; 255 for none.
std::uint8_t frame_rate_of(const aafTimecode_t& timecode) {
  struct Row {
    bool drop;
    aafUInt16 frames;
    std::uint8_t index;
  };
  constexpr Row rows[] = {
      {true, 29, frame_rate_2997_drop},
      {true, 30, frame_rate_2997_drop},
      {false, 24, frame_rate_24},
      {false, 25, frame_rate_25},
      {false, 29, frame_rate_2997_non_drop},
      {false, 30, frame_rate_30},
  };
  for (const Row& row : rows) {
    if (row.drop == (timecode.drop != 0) && row.frames == timecode.fps) return row.index;
  }
  return rate_not_set;
}

// An integer of eight bytes under a renamed type.
bool read_mark_value(IAAFObject* slot, IAAFPropertyDef* property, aafInt64& value) {
  AafRef<IAAFPropertyValue> stored;
  AafRef<IAAFPropertyValue> base;
  AafRef<IAAFTypeDef> type;
  if (slot->GetPropertyValue(property, stored.put()) != 0 || stored->GetType(type.put()) != 0)
    return false;
  const auto rename = AAF_QUERY(IAAFTypeDefRename, type.get());
  if (!rename || rename->GetBaseValue(stored.get(), base.put()) != 0 ||
      base->GetType(type.put()) != 0) {
    return false;
  }
  const auto integer = AAF_QUERY(IAAFTypeDefInt, type.get());
  aafUInt32 size = 0;
  return integer && integer->GetSize(&size) == 0 && size == sizeof value &&
         integer->GetInteger(base.get(), reinterpret_cast<aafMemPtr_t>(&value), sizeof value) == 0;
}

}  // namespace

int CAAFCompMob::compose_top_level(IAAFCompositionMob* composition, IAAFDictionary* dictionary) {
  m_top_level = 1;
  const auto mob = AAF_QUERY(IAAFMob, composition);
  if (!mob || m_owner == nullptr) return 0;
  aafMobID_t id{};
  if (mob->GetMobID(&id) != 0) return 0;
  read_default_fade(composition);
  aafNumSlots_t count = 0;
  if (mob->CountSlots(&count) != 0 || count == 0) return 0;
  if (read_timecode_slots(mob.get(), dictionary) == 0) return 0;
  if (import_sound_slots(mob.get(), count, dictionary) == 0) return 0;
  // Nothing is left out of what the host gets.
  if (m_owner->import_index().is_exhausted()) return 0;
  // Records were appended as they came; equal starts keep that order.
  native::sort_by_destination(m_owner->m_events);
  if (m_start_frames != 0) shift_by_timecode();
  if (m_default_fade_valid != 0) offer_default_fade();
  return 1;
}

void CAAFCompMob::read_default_fade(IAAFCompositionMob* composition) {
  aafDefaultFade_t fade{};
  if (composition->GetDefaultFade(&fade) < 0 || fade.valid == 0) return;
  m_default_fade_length = fade.fadeLength;
  m_default_fade_type = fade.fadeType;
  m_default_fade_unit = fade.fadeEditUnit;
  m_default_fade_valid = 1;
}

int CAAFCompMob::import_sound_slots(IAAFMob* mob, aafNumSlots_t count, IAAFDictionary* dictionary) {
  AafRef<IEnumAAFMobSlots> slots;
  if (mob->GetSlots(slots.put()) != 0) return 0;
  aafMobID_t id{};
  if (mob->GetMobID(&id) != 0) return 0;
  AafRef<IAAFMobSlot> slot;
  for (aafNumSlots_t i = 0; i < count && slots->NextOne(slot.put()) == 0; ++i) {
    if (!AAF_QUERY(IAAFTimelineMobSlot, slot.get())) continue;
    const SlotKind kind = kind_of(slot.get());
    if (!kind.known) return 0;
    // The last number stands for no stream at all.
    if (!kind.sound || m_stream == no_stream) continue;
    aafSlotID_t slot_id = 0;
    if (slot->GetSlotID(&slot_id) != 0) return 0;
    const aaf::ImportIndex::Playing playing(m_owner->import_index(), id, slot_id);
    if (!playing.fits() || import_track(slot.get(), dictionary) == 0) return 0;
    ++m_stream;
  }
  return 1;
}

int CAAFCompMob::read_timecode_slots(IAAFMob* mob, IAAFDictionary* dictionary) {
  AafRef<IEnumAAFMobSlots> slots;
  if (mob->GetSlots(slots.put()) != 0) return 0;
  AafRef<IAAFMobSlot> slot;
  while (slots->NextOne(slot.put()) == 0) {
    if (!m_owner->import_index().visit()) return 0;
    if (!AAF_QUERY(IAAFTimelineMobSlot, slot.get())) continue;
    const SlotKind kind = kind_of(slot.get());
    if (!kind.known || kind.sound || kind.picture) continue;
    read_slot_marks(slot.get(), dictionary);
    read_timecode(slot.get());
  }
  return 1;
}

void CAAFCompMob::read_timecode(IAAFMobSlot* slot) {
  AafRef<IAAFSegment> segment;
  if (slot->GetSegment(segment.put()) != 0) return;
  const auto timecode = AAF_QUERY(IAAFTimecode, segment.get());
  if (!timecode) return;
  aafUInt32 number = 0;
  if (slot->GetPhysicalNum(&number) == 0 && number != 1) return;
  aafTimecode_t start{};
  if (timecode->GetTimecode(&start) != 0) return;
  const std::uint8_t rate = frame_rate_of(start);
  if (rate != rate_not_set) m_owner->set_frame_rate(rate);
  // Time code that counts straight on settles the rate, also one that the host has not.
  if (rate != rate_not_set || start.drop == 0) m_frame_rate_set = 1;
  m_start_frames = start.startFrame;
}

int CAAFCompMob::import_track(IAAFMobSlot* slot, IAAFDictionary* dictionary) {
  m_last_kind = kind_none;
  const auto timeline = AAF_QUERY(IAAFTimelineMobSlot, slot);
  aafPosition_t origin = 0;
  if (!timeline || timeline->GetOrigin(&origin) != 0 || timeline->GetEditRate(&m_edit_rate) != 0)
    return 0;
  m_position = std::max<std::int64_t>(origin, 0);
  if (m_frame_rate_set == 0) {
    const std::uint8_t rate = aaf::rate_from_edit_rate(m_edit_rate);
    if (rate != 0) {
      m_owner->set_frame_rate(rate);
      m_frame_rate_set = 1;
    }
  }
  if (dictionary != nullptr) read_slot_marks(slot, dictionary);
  AafRef<IAAFSegment> segment;
  if (slot->GetSlotID(&m_slot_id) != 0 || slot->GetSegment(segment.put()) != 0) return 0;
  // Nothing can be placed on a slot without a rate.
  if (!aaf::is_positive(m_edit_rate)) return 1;
  return process_segment(segment.get());
}

int CAAFCompMob::start_nested(IAAFMob* mob, aafSlotID_t slot_id, const Window& window) {
  m_top_level = 0;
  m_window_length = window.length;
  m_window_start = window.start;
  m_window_rate = window.rate;
  m_pending_fade_length = window.pending_fade_length;
  m_pending_fade_curve = window.pending_fade_curve;
  m_pending_offset = window.pending_offset;
  m_parent_position = window.parent_position;
  m_parent_stream = window.parent_stream;
  AafRef<IAAFMobSlot> slot;
  aafMobID_t id{};
  if (mob->LookupSlot(slot_id, slot.put()) != 0 || mob->GetMobID(&id) != 0) return 0;
  if (!AAF_QUERY(IAAFTimelineMobSlot, slot.get())) return 1;
  const SlotKind kind = kind_of(slot.get());
  if (!kind.known) return 0;
  if (!kind.sound) return 1;
  const aaf::ImportIndex::Playing playing(m_owner->import_index(), id, slot_id);
  return playing.fits() ? import_track(slot.get(), nullptr) : 0;
}

void CAAFCompMob::shift_by_timecode() const {
  const aafRational_t rate = aaf::rational_of_frame_rate(m_owner->time_base().frame_rate_index);
  const std::int64_t shift =
      aaf::scaled(m_start_frames, std::int64_t{sample_rate()} * rate.denominator, rate.numerator);
  CObList& events = m_owner->m_events;
  for (POSITION at = events.GetHeadPosition(); at != nullptr;) {
    auto& event = *static_cast<CGenericEDLFileEntry*>(events.GetNext(at));
    event.m_dest_in = aaf::sum(event.m_dest_in, shift);
  }
  CObList& runs = m_owner->m_automation;
  for (POSITION at = runs.GetHeadPosition(); at != nullptr;) {
    CObList& points = static_cast<CGenericEDLFileAutomationEntryChunk*>(runs.GetNext(at))->points();
    for (POSITION inner = points.GetHeadPosition(); inner != nullptr;) {
      auto& point = *static_cast<CGenericEDLFileAutomationEntry*>(points.GetNext(inner));
      point.m_time = aaf::sum(point.m_time, shift);
    }
  }
}

// The rates stand this way round by design: where the unit is the sample rate, as our own
// files have it, the length comes back unchanged.
void CAAFCompMob::offer_default_fade() const {
  if (m_default_fade_unit.denominator == 0) return;
  const std::int64_t length = aaf::truncated(aaf::quotient(m_default_fade_unit) *
                                             static_cast<double>(m_default_fade_length) /
                                             static_cast<double>(sample_rate()));
  Application& application = host().application();
  if (application.get_default_crossfade_length() == length) return;
  const wide_char* const question = host().strings().load(string_id::aaf_ask_default_fade);
  const int answer =
      host().message_boxes().message(question, BoxIcon::question, BoxButtons::yes_no);
  if (answer == box_answer_yes) application.set_default_crossfade_length(length);
}

void CAAFCompMob::read_slot_marks(IAAFMobSlot* slot, IAAFDictionary* dictionary) {
  if (m_marks_read != 0) return;
  const auto object = AAF_QUERY(IAAFObject, slot);
  AafRef<IAAFClassDef> definition;
  if (!object || dictionary == nullptr ||
      dictionary->LookupClassDef(AUID_AAFTimelineMobSlot, definition.put()) != 0) {
    return;
  }
  read_mark(object.get(), definition.get(), aaf::mark_in_property);
  read_mark(object.get(), definition.get(), aaf::mark_out_property);
}

// A mark that cannot be read leaves the search open for the next slot.
void CAAFCompMob::read_mark(IAAFObject* slot, IAAFClassDef* definition, const aafUID_t& property) {
  AafRef<IAAFPropertyDef> known;
  aafBoolean_t present = 0;
  if (definition->LookupPropertyDef(property, known.put()) != 0 ||
      slot->IsPropertyPresent(known.get(), &present) != 0) {
    return;
  }
  if (present != 0) {
    aafInt64 value = 0;
    if (!read_mark_value(slot, known.get(), value)) return;
    add_mark_locator(value, property);
  }
  m_marks_read = 1;
}

void CAAFCompMob::add_mark_locator(std::int64_t value, const aafUID_t& property) const {
  CObList& groups = m_owner->m_locator_groups;
  if (groups.IsEmpty()) groups.AddHead(new CGenericEDLFileLocatorEntryChunk);
  auto& group = *static_cast<CGenericEDLFileLocatorEntryChunk*>(groups.GetHead());
  auto* const locator = new CGenericEDLFileLocatorEntry;
  group.m_locators.AddTail(locator);
  locator->m_time = value;
  locator->set_name(uids_match(property, aaf::mark_in_property) ? native::left_locator_name
                                                                : native::right_locator_name);
  ++group.m_count;
}
