// Reads an audio decision list: text into records, records into the generic lists.
#include <memory>
#include <string>
#include <vector>

#include "adl/aes31_file.h"
#include "adl/crossfades.h"
#include "adl/import_report.h"
#include "adl/list_parser.h"
#include "adl/timestamp_frig.h"
#include "core/generic_edl_entry.h"
#include "core/sample_math.h"
#include "host/application.h"
#include "host/framework/file.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/string_ids.h"
#include "native/record_transfer.h"

namespace {

// Positions in a list have 32 bits.
constexpr std::uint64_t longest_list = 0xFFFFFFFE;

// False when the file cannot be opened or read whole.
bool read_whole(const wide_char* path, std::string& bytes) {
  CFile file;
  try {
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone)) return false;
    const std::uint64_t length = file.GetLength();
    if (length > longest_list) return false;
    bytes.resize(length);
    return file.Read(bytes.data(), static_cast<unsigned>(length)) == length;
  } catch (const CFileException&) {
    return false;
  }
}

std::int64_t even_length(std::int64_t length) {
  return length % 2 == 0 ? length : minus(length, 1);
}

// Half of a fade, rounded up.
std::int64_t outer_half(std::int64_t fade) {
  return fade / 2 + (fade % 2 > 0 ? 1 : 0);
}

// The cut of a crossfade lies in its middle; that of an event with a crossfade at its
// other end alone is its own start or end.
void set_cut_points(CGenericEdlEntry& entry, const CGenericEDLFileEntry& event) {
  if (event.m_crossfade_in == 0 && event.m_crossfade_out == 0) return;
  const std::int64_t in = event.m_crossfade_in != 0 ? outer_half(event.m_fade_in_length) : 0;
  const std::int64_t out = event.m_crossfade_out != 0 ? outer_half(event.m_fade_out_length) : 0;
  entry.original_dest_in = plus(entry.dest_in, in);
  entry.original_source_in = plus(entry.source_in, in);
  entry.original_dest_out = minus(entry.dest_out, out);
  entry.original_source_out = minus(entry.source_out, out);
}

// Whether the host takes over the crossfade length of a list.
bool is_adopted() {
  int ask = 0;
  const bool adopt = host().application().get_crossfade_update_policy(ask);
  if (ask == 0) return adopt;
  return host().message_boxes().ask_by_ids(
             string_id::question_title, string_id::ask_crossfade_length,
             MessageBoxes::buttons_yes_no, MessageBoxes::icon_question) == box_answer_yes;
}

}  // namespace

result_code CAES31File::import_edl(const wide_char* path) {
  std::string list;
  if (!read_whole(path, list)) return result::not_opened;
  clear_records();
  return read_list(list) ? result::import_complete : result::not_done;
}

bool CAES31File::read_list(std::string_view list) {
  adl::ImportReport report;
  report.reset(list);
  adl::ListRecords records{m_sources, m_events, m_automation};
  records.sd2_sources = m_sd2_sources != 0;
  records.interchange_sources = m_interchange_sources != 0;
  records.crossfade_length = even_length(host().application().get_default_crossfade_length());
  records.set_rates = [this](std::uint8_t frame_rate, std::int8_t sample_rate_index) {
    set_frame_rate(frame_rate);
    if (sample_rate_index >= 0)
      set_sample_rate_index(static_cast<unsigned char>(sample_rate_index));
  };
  records.warn = [&](adl::Message message) {
    report.write_line(message, adl::RowKind::warning, records.error_position);
  };
  adl::ListParser parser(list, records);
  adl::Message message = parser.scan_sections();
  if (message == adl::no_message) message = parser.parse_sections();
  if (message != adl::no_message) {
    report.write_line(message, adl::RowKind::error, records.error_position);
    report.close();
    return false;
  }
  fill_fades(records.crossfade_length);
  report.close();
  build_generic_entries();
  build_generic_automation();
  Application& application = host().application();
  if (records.crossfade_length != application.get_default_crossfade_length() && is_adopted())
    application.set_default_crossfade_length(records.crossfade_length);
  return true;
}

void CAES31File::fill_fades(std::int64_t crossfade_length) {
  std::vector<CGenericEDLFileEntry*> events;
  events.reserve(static_cast<std::size_t>(m_events.GetCount()));
  for (POSITION at = m_events.GetHeadPosition(); at != nullptr;)
    events.push_back(static_cast<CGenericEDLFileEntry*>(m_events.GetNext(at)));
  Application& application = host().application();
  adl::FadeDefaults defaults;
  defaults.crossfade_length = crossfade_length;
  defaults.infade_curve = application.get_default_infade_curve();
  defaults.outfade_curve = application.get_default_outfade_curve();
  defaults.interchange = m_interchange_sources != 0;
  adl::reconcile_crossfades(events, defaults);
}

// An event without a source gives no entry.
void CAES31File::build_generic_entries() {
  const native::TrackIndex sources(m_sources);
  CObList* const entries = get_generic_entry_list();
  if (entries == nullptr) return;
  for (POSITION at = m_events.GetHeadPosition(); at != nullptr;) {
    const auto& event = *static_cast<const CGenericEDLFileEntry*>(m_events.GetNext(at));
    const CGenericEDLFileTrack* const source = sources.find(event.m_track_index);
    if (source == nullptr) continue;
    auto entry = std::make_unique<CGenericEdlEntry>(this);
    if (m_sd2_sources != 0 && adl::timestamp_frig()) entry->source_is_timestamped = 0;
    native::entry_from_record(*entry, event);
    set_cut_points(*entry, event);
    entry->no_channels = static_cast<std::uint16_t>(event.m_channel_offset + event.m_stream_count);
    native::entry_from_track(*entry, *source);
    entries->AddTail(entry.get());
    static_cast<void>(entry.release());
  }
}

void CAES31File::build_generic_automation() {
  if (CObList* const automation = get_automation_list(); automation != nullptr)
    native::transfer_automation(m_automation, *automation);
}
