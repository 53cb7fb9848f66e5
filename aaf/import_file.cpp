// Import of a whole file: opening it, what it says of itself, and which composition is
// meant.
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "aaf/aaf_comp_mob.h"
#include "aaf/aaf_dll.h"
#include "aaf/aaf_edl_file.h"
#include "aaf/aaf_ids.h"
#include "aaf/aaf_numbers.h"
#include "aaf/aaf_rates.h"
#include "aaf/aaf_text.h"
#include "aaf/edl_selection_dialog.h"
#include "aaf/file_facts.h"
#include "aaf/import_index.h"
#include "aafobj/api/aaf_class_ids.h"
#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "core/sample_math.h"
#include "host/code_page.h"
#include "host/corrections.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/string_ids.h"
#include "host/strings.h"
#include "native/generic_edl_file_chunks.h"
#include "native/record_transfer.h"

namespace {

// Characters, terminator included.
constexpr std::size_t mob_name_room = 1204;
// Bytes of a text of the identification; longer ones are damage.
constexpr aafUInt32 most_text_bytes = 0x100000;

// What the host's code page cannot hold is lost here.
CString through_code_page(std::u16string_view text) {
  return CString(text_from_bytes(bytes_from_text(text)));
}

using Length = HRESULT (IAAFIdentification::*)(aafUInt32*);
using Text = HRESULT (IAAFIdentification::*)(aafCharacter*, aafUInt32);

// Leaves `out` alone when there is no such text.
void read_text(IAAFIdentification* from, Length length, Text text, CString& out) {
  aafUInt32 bytes = 0;
  if ((from->*length)(&bytes) != 0 || bytes == 0 || bytes > most_text_bytes) return;
  // One more than asked for, so that it ends in any case.
  std::vector<aafCharacter> buffer(bytes / sizeof(aafCharacter) + 2);
  if ((from->*text)(buffer.data(), bytes) != 0) return;
  out = through_code_page(text_from_aaf(aaf_string_view(buffer.data())));
}

// A library of another make may let its own faults out; false when it does. What Close
// answers says nothing about a file that was only read.
bool close_read_file(IAAFFile& file) {
  try {
    file.Close();
  } catch (...) {
    return false;
  }
  return true;
}

AafRef<IEnumAAFMobs> composition_mobs(IAAFHeader* header) {
  aafSearchCrit_t criterion{};
  criterion.searchTag = kAAFByMobKind;
  criterion.tags.mobKind = kAAFCompMob;
  AafRef<IEnumAAFMobs> mobs;
  if (header->GetMobs(&criterion, mobs.put()) != 0) mobs.reset();
  return mobs;
}

bool is_top_level_name(aaf_string_view name) {
  const std::u16string text = text_from_aaf(name);
  return text == u"kAAFUsage_TopLevel" ||
         (corrected(Correction::aaf_usage_names) && text == u"Usage_TopLevel");
}

}  // namespace

result_code CAAFEdlFile::import_edl(const wide_char* path) {
  const wide_char* const name = path == nullptr ? u"" : path;
  m_logger = std::make_unique<CAAFLogger>(1);
  m_logger->set_file_path(name);
  const bool read = open_and_read(name);
  if (read) {
    rescale_video_entries();
    transfer_entries();
    transfer_automation();
    transfer_locators();
  }
  finish_logger();
  return read ? result::import_complete : result::not_opened;
}

bool CAAFEdlFile::open_and_read(const wide_char* path) {
  m_aaf_path = path;
  AafRef<IAAFFile> file;
  if (AAFDLL::AAFFileOpenExistingRead(aaf_from_text(path).c_str(), 0, file.put()) != 0)
    return false;
  bool read = false;
  // A library of another make may let its own faults out. That memory ran out is for the
  // program to tell.
  try {
    read = read_open_file(*file.get());
  } catch (const std::bad_alloc&) {
    static_cast<void>(close_read_file(*file.get()));
    throw;
  } catch (...) {
    read = false;
  }
  return close_read_file(*file.get()) && read;
}

bool CAAFEdlFile::read_open_file(IAAFFile& file) {
  AafRef<IAAFHeader> header;
  if (file.GetHeader(header.put()) != 0 || !header) return false;
  read_identification(header.get());
  if (!extract_embedded_essence(header.get())) return false;
  aafNumSlots_t count = 0;
  if (header->CountMobs(kAAFAllMob, &count) != 0 || count == 0) return false;
  return import_composition(header.get());
}

// Each step by itself: what is missing stays empty in the report.
void CAAFEdlFile::read_identification(IAAFHeader* header) {
  aaf::report_file(*header, *m_logger);
  if (is_edit_protocol(header)) m_logger->edit_protocol = 1;
  AafRef<IAAFIdentification> last;
  if (header->GetLastIdentification(last.put()) != 0 || !last) return;
  read_text(last.get(), &IAAFIdentification::GetCompanyNameBufLen,
            &IAAFIdentification::GetCompanyName, m_logger->company_name);
  read_text(last.get(), &IAAFIdentification::GetProductNameBufLen,
            &IAAFIdentification::GetProductName, m_logger->product_name);
  read_text(last.get(), &IAAFIdentification::GetProductVersionStringBufLen,
            &IAAFIdentification::GetProductVersionString, m_logger->product_version);
  read_text(last.get(), &IAAFIdentification::GetPlatformBufLen, &IAAFIdentification::GetPlatform,
            m_logger->platform);
  const CString& product = m_logger->product_name;
  m_foreign_tool = product.Find(u"ProTools") >= 0 || product.Find(u"AAF Helper") >= 0 ? 1 : 0;
  aaf::report_identification(*last.get(), *m_logger);
}

bool CAAFEdlFile::is_edit_protocol(IAAFHeader* header) const {
  const auto object = AAF_QUERY(IAAFObject, header);
  AafRef<IAAFDictionary> dictionary;
  AafRef<IAAFClassDef> definition;
  AafRef<IAAFPropertyDef> property;
  aafBoolean_t present = 0;
  if (!object || header->GetDictionary(dictionary.put()) != 0 ||
      dictionary->LookupClassDef(AUID_AAFHeader, definition.put()) != 0 ||
      definition->LookupPropertyDef(aaf::operational_pattern_property, property.put()) != 0 ||
      object->IsPropertyPresent(property.get(), &present) != 0 || present != 1) {
    return false;
  }
  AafRef<IAAFPropertyValue> value;
  AafRef<IAAFTypeDef> type;
  if (object->GetPropertyValue(property.get(), value.put()) != 0 ||
      property->GetTypeDef(type.put()) != 0) {
    return false;
  }
  const auto record = AAF_QUERY(IAAFTypeDefRecord, type.get());
  aafUID_t pattern{};
  return record &&
         record->GetStruct(value.get(), reinterpret_cast<aafMemPtr_t>(&pattern), sizeof pattern) ==
             0 &&
         uids_match(pattern, aaf::edit_protocol_pattern);
}

// Compositions that are marked as top level; without any, those with time code; without
// any, all.
bool CAAFEdlFile::find_candidate_compositions(IAAFHeader* header, CStringArray& names,
                                              CArray<_aafMobID_t>& mobs) const {
  AafRef<IAAFDictionary> dictionary;
  if (header->GetDictionary(dictionary.put()) != 0) dictionary.reset();
  enum class Pass { usage, timecode, all };
  for (const Pass pass : {Pass::usage, Pass::timecode, Pass::all}) {
    const AafRef<IEnumAAFMobs> all = composition_mobs(header);
    if (!all) return false;
    for (AafRef<IAAFMob> mob; all->NextOne(mob.put()) == 0;) {
      if (!AAF_QUERY(IAAFCompositionMob, mob.get())) return false;
      if (pass == Pass::usage && !has_top_level_usage(dictionary.get(), mob.get())) continue;
      if (pass == Pass::timecode && !has_timecode_slot(mob.get())) continue;
      CString name;
      _aafMobID_t id{};
      if (!read_mob_identity(mob.get(), name, id)) return false;
      names.Add(name);
      mobs.Add(id);
    }
    if (names.GetSize() != 0) return true;
  }
  return true;
}

bool CAAFEdlFile::has_top_level_usage(IAAFDictionary* dictionary, IUnknown* source) const {
  const auto object = AAF_QUERY(IAAFObject, source);
  AafRef<IAAFClassDef> definition;
  AafRef<IAAFPropertyDef> property;
  aafBoolean_t present = 0;
  if (!object || dictionary == nullptr ||
      dictionary->LookupClassDef(AUID_AAFCompositionMob, definition.put()) != 0 ||
      definition->LookupPropertyDef(aaf::usage_code_property, property.put()) != 0 ||
      object->IsPropertyPresent(property.get(), &present) != 0 || present == 0) {
    return false;
  }
  AafRef<IAAFPropertyValue> value;
  AafRef<IAAFTypeDef> type;
  if (object->GetPropertyValue(property.get(), value.put()) != 0 || value->GetType(type.put()) != 0)
    return false;
  const auto codes = AAF_QUERY(IAAFTypeDefExtEnum, type.get());
  aafUInt32 bytes = 0;
  if (!codes || codes->GetNameBufLenFromValue(value.get(), &bytes) != 0 || bytes > most_text_bytes)
    return false;
  std::vector<aafCharacter> name(bytes / sizeof(aafCharacter) + 2);
  return codes->GetNameFromValue(value.get(), name.data(), bytes) == 0 &&
         is_top_level_name(name.data());
}

bool CAAFEdlFile::has_timecode_slot(IAAFMob* mob) const {
  AafRef<IEnumAAFMobSlots> slots;
  if (mob->GetSlots(slots.put()) != 0) return false;
  for (AafRef<IAAFMobSlot> slot; slots->NextOne(slot.put()) == 0;) {
    AafRef<IAAFDataDef> data;
    AafRef<IAAFSegment> segment;
    if (!AAF_QUERY(IAAFTimelineMobSlot, slot.get()) || slot->GetDataDef(data.put()) != 0 ||
        slot->GetSegment(segment.put()) != 0) {
      continue;
    }
    aafBoolean_t sound = 0;
    aafBoolean_t picture = 0;
    if (data->IsSoundKind(&sound) != 0 || data->IsPictureKind(&picture) != 0) continue;
    if (sound == 0 && picture == 0 && AAF_QUERY(IAAFTimecode, segment.get())) return true;
  }
  return false;
}

bool CAAFEdlFile::read_mob_identity(IUnknown* source, CString& name, _aafMobID_t& id) const {
  const auto mob = AAF_QUERY(IAAFMob, source);
  if (!mob || mob->GetMobID(&id) != 0) return false;
  std::u16string text;
  const aafInt32 result = read_aaf_text<mob_name_room>(
      text, [&mob](aafCharacter* out, aafUInt32 bytes) { return mob->GetName(out, bytes); });
  name = result == 0 ? through_code_page(text) : CString(u"Unspecified");
  return true;
}

bool CAAFEdlFile::import_composition(IAAFHeader* header) {
  const AafRef<IEnumAAFMobs> all = composition_mobs(header);
  CStringArray& names = m_composition_names;
  CArray<_aafMobID_t> mobs;
  if (!all || !find_candidate_compositions(header, names, mobs)) return false;
  std::intptr_t chosen = 0;
  if (names.GetSize() > 1) {
    CAAFEDLSelectionDialog dialog(&names);
    if (!dialog.do_modal()) return false;
    chosen = dialog.selection();
  }
  if (chosen >= mobs.GetSize()) {
    host().message_boxes().message(host().strings().load(string_id::aaf_no_composition),
                                   BoxIcon::information, BoxButtons::ok);
    return true;
  }
  m_composition = static_cast<std::int32_t>(chosen);
  for (AafRef<IAAFMob> mob; all->NextOne(mob.put()) == 0;) {
    const auto composition = AAF_QUERY(IAAFCompositionMob, mob.get());
    aafMobID_t id{};
    if (!composition || mob->GetMobID(&id) != 0) return false;
    if (!uids_match(id, mobs.GetAt(chosen))) continue;
    AafRef<IAAFDictionary> dictionary;
    if (header->GetDictionary(dictionary.put()) != 0) return false;
    CAAFCompMob walker(this);
    return walker.compose_top_level(composition.get(), dictionary.get()) != 0;
  }
  return false;
}

// Positions of the list's frame rate into samples. The rate itself goes into the entry's
// first free word.
void CAAFEdlFile::rescale_video_entries() {
  const CObList* const list = get_video_list();
  if (list == nullptr) return;
  const auto rate = static_cast<std::int64_t>(sample_rate());
  const double frames_per_second =
      aaf::quotient(aaf::rational_of_frame_rate(time_base().frame_rate_index));
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    auto& entry = *static_cast<CGenericEdlVideoEntry*>(list->GetNext(at));
    for (std::int64_t* const time :
         {&entry.dest_in, &entry.dest_out, &entry.source_in, &entry.source_out}) {
      *time = aaf::truncated(static_cast<double>(times(*time, rate)) / frames_per_second);
    }
    entry.detail_words[0] = static_cast<std::uint32_t>(rate);
  }
}

// An event whose source is not among the sources is left out.
void CAAFEdlFile::transfer_entries() {
  CObList* const list = get_generic_entry_list();
  if (list == nullptr) return;
  const native::TrackIndex tracks(m_sources);
  for (POSITION at = m_events.GetHeadPosition(); at != nullptr;) {
    const auto& event = *static_cast<const CGenericEDLFileEntry*>(m_events.GetNext(at));
    const CGenericEDLFileTrack* const track = tracks.find(event.m_track_index);
    if (track == nullptr) continue;
    auto* const entry = new CGenericEdlEntry(this);
    list->AddTail(entry);
    if (m_foreign_tool != 0) entry->source_is_timestamped = 0;
    native::entry_from_record(*entry, event);
    entry->no_channels = static_cast<std::uint16_t>(event.m_channel_offset + event.m_stream_count);
    native::entry_from_track(*entry, *track);
  }
}

void CAAFEdlFile::transfer_automation() {
  if (CObList* const list = get_automation_list()) native::transfer_automation(m_automation, *list);
}

void CAAFEdlFile::transfer_locators() {
  if (CObList* const list = get_locator_list()) native::transfer_locators(m_locator_groups, *list);
}
