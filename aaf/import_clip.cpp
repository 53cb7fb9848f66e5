// Source clips: from a clip to a record of its owner's lists, or into the composition
// that it plays.
#include <algorithm>
#include <memory>
#include <string>

#include "aaf/aaf_comp_mob.h"
#include "aaf/aaf_edl_file.h"
#include "aaf/aaf_numbers.h"
#include "aaf/aaf_text.h"
#include "aaf/import_essence.h"
#include "aaf/import_index.h"
#include "aaf/source_paths.h"
#include "host/code_page.h"
#include "host/corrections.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/string_ids.h"
#include "host/strings.h"
#include "host/text_format.h"
#include "native/generic_edl_file_chunks.h"

// Where a clip's audio comes from.
struct CAAFClipSource {
  // There is a file or a tape; the members below are only filled then, but for the rates.
  bool found = false;
  AafRef<IAAFSourceMob> mob;
  AafRef<IAAFEssenceDescriptor> descriptor;
  std::uint8_t media_type = aaf::media_unknown;
  // Samples from the start of the day to the start of the file.
  std::int64_t time_reference = 0;
  // Units of the clip are `edit_rate` a second, and become `sample_rate`.
  aafRational_t edit_rate{0, 1};
  aafRational_t sample_rate{0, 1};
};

namespace {

constexpr std::uint16_t curve_of_linear_power = 114;
// Characters, terminator included.
constexpr std::size_t name_room = 260;
constexpr std::size_t path_room = 1204;
constexpr std::size_t record_name_room = 32;

std::uint16_t fade_type_to_curve(aafFadeType_t type) {
  return type == kAAFFadeLinearPower ? curve_of_linear_power : std::uint16_t{0};
}

std::u16string name_of(IAAFMob* mob, const aafMobID_t& id) {
  std::u16string name;
  const aafInt32 result = read_aaf_text<name_room>(
      name, [mob](aafCharacter* out, aafUInt32 bytes) { return mob->GetName(out, bytes); });
  if (result == 0) return text_from_bytes(bytes_from_text(name));
  return decimal(id.material.Data1) + u" " + decimal(id.material.Data2) + u" " +
         decimal(id.material.Data3);
}

std::int64_t scaled_time(std::int64_t units, const CAAFClipSource& source) {
  if (!aaf::is_positive(source.edit_rate) || !aaf::is_positive(source.sample_rate)) return 0;
  // Multiplied first: the other way round loses a sample at many a rate.
  return aaf::truncated(static_cast<double>(units) * aaf::quotient(source.sample_rate) /
                        aaf::quotient(source.edit_rate));
}

void scale_entry_to_samples(CGenericEDLFileEntry& record, const CAAFClipSource& source) {
  for (std::int64_t* const time : {&record.m_dest_in, &record.m_length, &record.m_source_in,
                                   &record.m_fade_in_length, &record.m_fade_out_length})
    *time = scaled_time(*time, source);
}

// The place that a clip's descriptor names; false when it holds no locator at all. A
// locator without a path leaves `path` alone, as one that cannot be read does.
bool first_locator(IAAFEssenceDescriptor* descriptor, bool& has_path, std::u16string& path) {
  AafRef<IEnumAAFLocators> locators;
  if (descriptor->GetLocators(locators.put()) != 0 || !locators) return false;
  AafRef<IAAFLocator> locator;
  if (locators->NextOne(locator.put()) != 0) return true;
  std::u16string text;
  const aafInt32 result = read_aaf_text<path_room>(
      text,
      [&locator](aafCharacter* out, aafUInt32 bytes) { return locator->GetPath(out, bytes); });
  has_path = result == 0;
  if (has_path) path = text;
  return true;
}

}  // namespace

int CAAFCompMob::process_source_clip(IAAFSourceClip* clip, const Extent& extent) {
  if (!m_owner->import_index().make_record()) return 0;
  auto record = std::make_unique<CGenericEDLFileEntry>();
  // 32 bits, as the host counts positions.
  record->m_dest_in = static_cast<std::uint32_t>(aaf::sum(base(), m_pending_offset));
  record->m_length = aaf::difference(extent.visible, m_pending_offset);
  set_fades(clip, extent.visible, *record);

  aafSourceRef_t reference{};
  AafRef<IAAFMob> mob;
  aafMobID_t id{};
  if (clip->GetSourceReference(&reference) != 0 || clip->ResolveRef(mob.put()) != 0 || !mob ||
      mob->GetMobID(&id) != 0) {
    return 0;
  }
  const std::int64_t start =
      is_nested() ? aaf::sum(reference.startTime, extent.offset) : reference.startTime;
  record->m_source_in = std::max<std::int64_t>(aaf::sum(m_pending_offset, start), 0);
  record->set_name(std::u16string_view(name_of(mob.get(), id)).substr(0, record_name_room - 1));
  record->m_first_stream = clip_stream();
  record->m_stream_count = 1;

  if (const auto master = AAF_QUERY(IAAFMasterMob, mob.get())) {
    CAAFClipSource source;
    if (!find_source(master.get(), reference.sourceSlotID, source) ||
        place_record(*record, source) == 0) {
      return 0;
    }
    m_owner->import_index().add_event(record.get());
    m_owner->m_events.AddTail(record.release());
    return 1;
  }
  if (!AAF_QUERY(IAAFCompositionMob, mob.get())) return 0;
  CAAFCompMob nested(m_owner);
  return nested.start_nested(mob.get(), reference.sourceSlotID,
                             {.length = extent.visible,
                              .start = aaf::sum(reference.startTime, extent.offset),
                              .rate = m_edit_rate,
                              .pending_fade_length = record->m_fade_in_length,
                              .pending_fade_curve = record->m_fade_in_curve,
                              .pending_offset = m_pending_offset,
                              .parent_position = base(),
                              .parent_stream = record->m_first_stream});
}

// The fade that a transition left goes before the clip's own, and that before the
// composition's default. What the transition left of an offset stays for the next clip.
void CAAFCompMob::set_fades(IAAFSourceClip* clip, std::int64_t visible,
                            CGenericEDLFileEntry& record) {
  struct Fade {
    aafLength_t length = 0;
    aafFadeType_t type = 0;
    aafBoolean_t present = 0;
  };
  Fade in;
  Fade out;
  if (clip->GetFade(&in.length, &in.type, &in.present, &out.length, &out.type, &out.present) != 0) {
    in.present = 0;
    out.present = 0;
  }
  const Fade standard{m_default_fade_length, m_default_fade_type, m_default_fade_valid != 0};
  if (in.present == 0) in = standard;
  if (out.present == 0) out = standard;
  if (m_pending_fade_length != 0) {
    record.m_fade_in_length = std::min(m_pending_fade_length, visible);
    record.m_fade_in_curve = m_pending_fade_curve;
    m_pending_fade_length = 0;
    m_pending_fade_curve = 0;
  } else if (in.present != 0) {
    record.m_fade_in_length = std::clamp<std::int64_t>(in.length, 0, visible);
    record.m_fade_in_curve = fade_type_to_curve(in.type);
  }
  if (out.present != 0) {
    record.m_fade_out_length =
        std::clamp<std::int64_t>(out.length, 0, visible - record.m_fade_in_length);
    record.m_fade_out_curve = fade_type_to_curve(out.type);
  }
}

// False when the search itself does not hold together; a clip without a file or a tape
// is a clip all the same.
bool CAAFCompMob::find_source(IAAFMasterMob* master, aafSlotID_t slot,
                              CAAFClipSource& source) const {
  const auto search = AAF_QUERY(IAAFSearchSource, master);
  if (!search) return false;
  source.edit_rate = m_edit_rate;
  source.sample_rate = {static_cast<aafInt32>(sample_rate()), 1};
  AafRef<IAAFFindSourceInfo> info;
  if (search->SearchSource(slot, 0, kAAFFileMob, nullptr, nullptr, info.put()) != 0) info.reset();
  if (!info && search->SearchSource(slot, 0, kAAFTapeMob, nullptr, nullptr, info.put()) != 0)
    info.reset();
  if (!info) return true;

  source.found = true;
  aafRational_t rate{};
  aafLength_t length = 0;
  AafRef<IAAFMob> mob;
  if (info->GetEditRate(&rate) != 0 || info->GetLength(&length) != 0 ||
      info->GetMob(mob.put()) != 0 || !mob) {
    return false;
  }
  if (!corrected(Correction::aaf_clip_rate)) source.edit_rate = rate;
  source.sample_rate = source.edit_rate;
  source.mob = AAF_QUERY(IAAFSourceMob, mob.get());
  if (!source.mob || source.mob->GetEssenceDescriptor(source.descriptor.put()) != 0 ||
      !source.descriptor) {
    return false;
  }
  const auto file = AAF_QUERY(IAAFFileDescriptor, source.descriptor.get());
  if (!file) return static_cast<bool>(AAF_QUERY(IAAFTapeDescriptor, source.descriptor.get()));
  aafRational_t own_rate{};
  if (file->GetSampleRate(&own_rate) == 0) source.sample_rate = own_rate;
  source.media_type = aaf::media_type_of(source.descriptor.get());
  if (const auto wave = AAF_QUERY(IAAFWAVEDescriptor, source.descriptor.get()))
    source.time_reference = aaf::read_bext_time_reference(wave.get());
  return true;
}

int CAAFCompMob::place_record(CGenericEDLFileEntry& record, const CAAFClipSource& source) {
  scale_entry_to_samples(record, source);
  record.m_source_in = aaf::sum(record.m_source_in, source.time_reference);
  const bool has_rate = aaf::is_positive(source.sample_rate);
  take_sample_rate(has_rate ? static_cast<std::uint32_t>(source.sample_rate.numerator /
                                                         source.sample_rate.denominator)
                            : 0);
  std::u16string path;
  if (!find_path(source, path)) return 0;
  const int index = m_owner->find_or_add_source(path, source.media_type);
  if (index < 0) return 0;
  record.m_track_index = static_cast<std::uint16_t>(index);
  return 1;
}

// The list takes the rate of its clips; a box tells of the first that differs.
void CAAFCompMob::take_sample_rate(std::uint32_t rate) {
  const auto warn = [](unsigned text_id, std::uint32_t value) {
    const std::u16string text =
        fill_host_format(host().strings().load(text_id), {}, std::int64_t{value});
    host().message_boxes().message(text.c_str(), BoxIcon::information, BoxButtons::ok);
  };
  const auto index = static_cast<std::uint8_t>(CGenericEdl::sample_rate_to_index(rate));
  if (index == rate_not_set) {
    if (m_unknown_rate_warned == 0) warn(string_id::aaf_rate_unknown, rate);
    m_unknown_rate_warned = 1;
    return;
  }
  const std::uint8_t present = m_owner->time_base().sample_rate_index;
  if (m_last_rate_index != rate_not_set && m_last_rate_index != index) {
    if (m_rate_change_warned == 0) warn(string_id::aaf_rate_changes, samples_per_second(present));
    m_rate_change_warned = 1;
  } else if (present != index) {
    m_owner->set_sample_rate_index(index);
  }
  m_last_rate_index = index;
}

// The first locator's path; the copy of the essence when there is none, or when it names
// an AAF file, which then is this one.
bool CAAFCompMob::find_path(const CAAFClipSource& source, std::u16string& path) const {
  path = u"UNKNOWN";
  if (!source.found) return true;
  bool has_path = false;
  if (!first_locator(source.descriptor.get(), has_path, path)) return false;
  const bool names_aaf =
      path.size() >= 3 && equal_no_case(std::u16string_view(path).substr(path.size() - 3), u"aaf");
  if (has_path && !path.empty() && !names_aaf) return true;

  const CArray<_aafMobID_t>& mobs = m_owner->m_essence_mobs;
  if (mobs.GetSize() == 0) {
    path = u"unknown";
    if (source.media_type == aaf::media_wave) path += u".wav";
    if (source.media_type == aaf::media_aifc) path += u".afc";
    return true;
  }
  const auto mob = AAF_QUERY(IAAFMob, source.mob.get());
  aafMobID_t id{};
  if (!mob || mob->GetMobID(&id) != 0) return false;
  const std::ptrdiff_t copy = m_owner->import_index().find_mob(mobs, id);
  path = copy < 0 ? std::u16string(u"unknown")
                  : std::u16string(m_owner->m_essence_paths.GetAt(copy).view());
  return true;
}
