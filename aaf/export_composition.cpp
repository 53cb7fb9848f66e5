// Makes the composition of an exported AAF file.
#include <algorithm>

#include "aaf/aaf_comp_mob.h"
#include "aaf/aaf_edl_file.h"
#include "aaf/aaf_ids.h"
#include "aaf/aaf_numbers.h"
#include "aaf/aaf_rates.h"
#include "aaf/aaf_text.h"
#include "aaf/export_marks.h"
#include "aaf/export_track.h"
#include "aaf/file_facts.h"
#include "aaf/source_paths.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "host/application.h"
#include "host/corrections.h"
#include "host/host.h"
#include "host/text_format.h"

namespace aaf {

namespace {

constexpr aafFadeType_t default_fade_type = 1;
constexpr aafSlotID_t timecode_slot = 1;
constexpr aafSlotID_t first_audio_slot = 2;
constexpr std::size_t extension_size = 4;

struct TimecodeForm {
  aafUInt16 frames_per_second;
  aafDropType_t drop;
};

TimecodeForm timecode_form(std::uint8_t frame_rate) {
  constexpr TimecodeForm forms[] = {{24, 0}, {25, 0}, {29, 0}, {29, 1}, {30, 0}};
  return frame_rate < std::size(forms) ? forms[frame_rate] : TimecodeForm{25, 0};
}

std::u16string mob_name(std::u16string_view path) {
  std::u16string name = file_name_of(path, false);
  if (name.size() > extension_size && name[name.size() - extension_size] == u'.') {
    name.resize(name.size() - extension_size);
  }
  return name;
}

AafRef<IAAFPropertyValue> usage_value(IAAFTypeDefExtEnum& type) {
  AafRef<IAAFPropertyValue> value;
  if (type.CreateValueFromName(L"kAAFUsage_TopLevel", value.put()) == 0) return value;
  // The name that today's libraries know it by.
  if (!corrected(Correction::aaf_usage_names) ||
      type.CreateValueFromName(L"Usage_TopLevel", value.put()) != 0)
    value.reset();
  return value;
}

}  // namespace

// The work of CAAFCompMob::export_composition.
class CompositionExport {
 public:
  struct Lists {
    const CObList& events;
    const CObList& sources;
    const CObList& automation;
    const CObList& locator_groups;
    const CArray<_aafMobID_t>& mobs;
  };

  CompositionExport(IAAFHeader* header, const Lists& lists, const ExportLevels& levels,
                    std::uint32_t sample_rate, std::uint8_t frame_rate)
      : m_header(header),
        m_factory(header),
        m_definitions(m_factory),
        m_timeline(lists.events, lists.sources, lists.automation, lists.mobs),
        m_marks(m_factory, lists.locator_groups,
                m_timeline.first_event() != nullptr ? m_timeline.first_event()->m_dest_in : 0),
        m_levels(levels),
        m_sample_rate(sample_rate),
        m_frame_rate(frame_rate),
        m_rate{static_cast<aafInt32>(sample_rate), 1},
        m_frame_samples(m_sample_rate / quotient(rational_of_frame_rate(frame_rate))) {}

  [[nodiscard]] bool run(std::u16string_view path) {
    return m_factory.is_ready() && m_timeline.is_whole() && make_mob(path) && export_tracks() &&
           add_timecode_slot();
  }

  [[nodiscard]] std::int64_t start_frames() const { return m_start_frames; }
  [[nodiscard]] std::int64_t end_position() const { return m_end_position; }

 private:
  bool make_mob(std::u16string_view path) {
    const AafRef<IAAFCompositionMob> composition = AAF_MAKE(m_factory, CompositionMob);
    m_mob = AAF_QUERY(IAAFMob, composition.get());
    if (!m_mob) return false;
    const std::int64_t fade = host().application().get_default_crossfade_length();
    if (composition->SetDefaultFade(fade, default_fade_type, m_rate) != 0) return false;
    if (m_mob->SetName(aaf_from_text(mob_name(path)).c_str()) != 0) return false;
    set_usage_code(kAAFUsage_TopLevel);
    if (m_header->AddMob(m_mob.get()) != 0) return false;
    compute_start_frames();
    return true;
  }

  // A library that does not know the name leaves the mob without a usage.
  bool set_usage_code(const aafUID_t& usage) {
    if (!uids_match(usage, kAAFUsage_TopLevel)) return false;
    IAAFClassDef* const cls = m_factory.class_def(AUID_AAFCompositionMob);
    const AafRef<IAAFObject> object = AAF_QUERY(IAAFObject, m_mob.get());
    AafRef<IAAFPropertyDef> property;
    AafRef<IAAFTypeDef> type;
    if (cls == nullptr || !object ||
        cls->LookupPropertyDef(usage_code_property, property.put()) != 0 ||
        property->GetTypeDef(type.put()) != 0)
      return false;
    const AafRef<IAAFTypeDefExtEnum> names = AAF_QUERY(IAAFTypeDefExtEnum, type.get());
    if (!names) return false;
    const AafRef<IAAFPropertyValue> value = usage_value(*names.get());
    return value && object->SetPropertyValue(property.get(), value.get()) == 0;
  }

  // The first event of the list counts, whatever its stream.
  void compute_start_frames() {
    const CGenericEDLFileEntry* const first = m_timeline.first_event();
    if (first == nullptr || first->m_dest_in < 0) return;
    const bool exact = corrected(Correction::aaf_start_frames);
    const std::int64_t whole = truncated(m_frame_samples);
    if (exact && m_frame_samples > 0) {
      m_start_frames = truncated(static_cast<double>(first->m_dest_in) / m_frame_samples);
    } else if (whole > 0 && whole <= first->m_dest_in) {
      m_start_frames = first->m_dest_in / whole;
    }
  }

  [[nodiscard]] std::int64_t start_samples() const {
    return truncated(m_frame_samples * static_cast<double>(m_start_frames));
  }

  // What pan groups and the time code count from; to the letter in whole samples a frame.
  [[nodiscard]] std::int64_t counted_start() const {
    if (corrected(Correction::aaf_start_frames)) return start_samples();
    return scaled(m_start_frames, truncated(m_frame_samples), 1);
  }

  bool export_tracks() {
    const ExportTracks tracks{m_factory, m_definitions, m_timeline,
                              m_levels,  m_sample_rate, start_samples()};
    for (std::uint32_t stream = 0; stream < m_timeline.stream_count(); ++stream) {
      if (!export_stream(tracks, stream)) return false;
    }
    return true;
  }

  bool export_stream(const ExportTracks& tracks, std::uint32_t stream) {
    const AutomationPoints* const pan =
        m_levels.pan_automation ? m_timeline.automation(pan_parameter, stream) : nullptr;
    AafRef<IAAFOperationGroup> group;
    const AafRef<IAAFSequence> sequence = AAF_MAKE(m_factory, Sequence);
    if (!sequence || sequence->Initialize(m_factory.sound()) != 0) return false;
    AafRef<IAAFSegment> segment = AAF_QUERY(IAAFSegment, sequence.get());
    if (pan != nullptr) {
      group = add_pan_operation(*pan, stream);
      if (!group || group->AppendInputSegment(segment.get()) != 0) return false;
      segment = AAF_QUERY(IAAFSegment, group.get());
    }
    const std::u16string name = u"Audio " + decimal(std::int64_t{stream} + 1);
    // Streams go out as pairs of left and right.
    if (!append_slot(segment.get(), first_audio_slot + stream, name, stream % 2 + 1)) return false;
    TrackExport track(tracks, stream, sequence.get());
    if (!track.export_track()) return false;
    m_end_position = std::max(m_end_position, track.end());
    return true;
  }

  AafRef<IAAFOperationGroup> add_pan_operation(const AutomationPoints& pan, std::uint32_t stream) {
    const Events& events = m_timeline.on_stream(stream);
    const std::int64_t start = counted_start();
    std::int64_t length = m_sample_rate;
    if (!events.empty()) {
      length = difference(sum(events.back()->m_dest_in, events.back()->m_length), start);
    }
    AafRef<IAAFOperationGroup> group =
        make_group(m_factory, m_definitions.operation(Operation::pan), length);
    if (!group || !add_varying(m_factory, m_definitions, *group.get(), Parameter::pan,
                               pan_points(pan.all(), start, length)))
      return {};
    return group;
  }

  bool append_slot(IAAFSegment* segment, aafSlotID_t id, std::u16string_view name,
                   aafUInt32 physical_number) {
    AafRef<IAAFTimelineMobSlot> slot;
    if (m_mob->AppendNewTimelineSlot(m_rate, segment, id, aaf_from_text(name).c_str(), 0,
                                     slot.put()) != 0)
      return false;
    const AafRef<IAAFMobSlot> numbered = AAF_QUERY(IAAFMobSlot, slot.get());
    if (!numbered || numbered->SetPhysicalNum(physical_number) != 0) return false;
    m_marks.write_marks(slot.get());
    return true;
  }

  bool add_timecode_slot() {
    const TimecodeForm form = timecode_form(m_frame_rate);
    const std::int64_t frame = truncated(m_frame_samples);
    const std::int64_t length = difference(m_end_position, counted_start());
    const AafRef<IAAFTimecode> timecode = AAF_MAKE(m_factory, Timecode);
    const AafRef<IAAFSegment> segment = AAF_QUERY(IAAFSegment, timecode.get());
    aafTimecode_t value{m_start_frames, form.drop, form.frames_per_second};
    const std::int64_t rest = frame > 0 ? length % frame : 0;
    return segment && timecode->Initialize(sum(length, rest), &value) == 0 &&
           append_slot(segment.get(), timecode_slot, u"Timecode slot", 1);
  }

  IAAFHeader* m_header;
  ObjectFactory m_factory;
  ExportDefinitions m_definitions;
  ExportTimeline m_timeline;
  ExportMarks m_marks;
  ExportLevels m_levels;
  std::uint32_t m_sample_rate;
  std::uint8_t m_frame_rate;
  aafRational_t m_rate;
  // Samples of a frame, not rounded.
  double m_frame_samples;
  AafRef<IAAFMob> m_mob;
  std::int64_t m_start_frames = 0;
  std::int64_t m_end_position = 0;
};

}  // namespace aaf

int CAAFCompMob::export_composition(IAAFHeader* header) {
  Application& application = host().application();
  m_export_fixed_gain = application.get_aaf_export_fixed_gain();
  m_export_gain_automation = application.get_aaf_export_gain_automation();
  m_export_pan_automation = application.get_aaf_export_pan_automation();
  const aaf::ExportLevels levels{m_export_fixed_gain != 0, m_export_gain_automation != 0,
                                 m_export_pan_automation != 0};
  aaf::CompositionExport work(header,
                              {m_owner->m_events, m_owner->m_sources, m_owner->m_automation,
                               m_owner->m_locator_groups, m_owner->m_essence_mobs},
                              levels, m_owner->sample_rate(),
                              m_owner->time_base().frame_rate_index);
  const bool written = work.run(m_owner->m_aaf_path.view());
  m_start_frames = work.start_frames();
  m_end_position = work.end_position();
  return written ? 1 : 0;
}
