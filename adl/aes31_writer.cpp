// Writes an audio decision list: generic lists into records, records into text.
#include <vector>

#include "adl/aes31_file.h"
#include "adl/event_joins.h"
#include "adl/list_sections.h"
#include "core/generic_edl_entry.h"
#include "host/application.h"
#include "host/host.h"
#include "native/entry_walk.h"
#include "native/generic_edl_file_chunks.h"
#include "native/record_transfer.h"
#include "native/track_finder.h"
#include "text/text_file.h"

namespace {

constexpr unsigned short line_buffer_size = 250;

constexpr std::u16string_view list_extension = u".adl";
constexpr std::u16string_view replaced_extension = u".edl";

// Kinds of source files, as the host numbers them.
enum SourceType : std::uint16_t {
  source_marlo3 = 1,
  source_wave = 2,
  source_sd2 = 7,
  source_broadcast_wave = 11,
  source_type_19 = 19,
  source_type_21 = 21,
};

bool ends_with_no_case(std::u16string_view text, std::u16string_view end) {
  return text.size() >= end.size() && equal_no_case(text.substr(text.size() - end.size()), end);
}

// An object whose parent is no root has no lists.
const CObList& list_or_none(const CObList* list) {
  static const CObList none;
  return list == nullptr ? none : *list;
}

// The file's own name: folders are nobody else's business.
std::u16string_view title_of(std::u16string_view path) {
  std::u16string_view name = path.substr(path.find_last_of(u'/') + 1);
  if (ends_with_no_case(name, list_extension)) name.remove_suffix(list_extension.size());
  return name;
}

std::vector<CGenericEDLFileEntry*> events_of(const CObList& list) {
  std::vector<CGenericEDLFileEntry*> events;
  events.reserve(static_cast<std::size_t>(list.GetCount()));
  for (POSITION at = list.GetHeadPosition(); at != nullptr;)
    events.push_back(static_cast<CGenericEDLFileEntry*>(list.GetNext(at)));
  return events;
}

}  // namespace

std::u16string adl::output_path(std::u16string_view path) {
  std::u16string written(path);
  if (ends_with_no_case(path, replaced_extension)) {
    written.replace(path.size() - list_extension.size(), list_extension.size(), list_extension);
  }
  return written;
}

result_code CAES31File::export_edl(const wide_char* path, int /*option*/) {
  const std::u16string output = adl::output_path({path, text_length(path)});
  m_moved_times = 0;
  CTextFile file(line_buffer_size);
  collect_events();
  native::collect_automation(list_or_none(get_automation_list()), m_automation);
  if (const result_code refused = check_sources(); refused != result::done) return refused;
  if (!file.Open(output.c_str(), CFile::modeCreate | CFile::modeWrite)) return result::not_done;
  adl::ListText list{m_sources, m_events, m_automation, title_of(output), time_base()};
  list.extension = m_aiff_sources != 0  ? adl::SourceExtension::aif
                   : m_sd2_sources != 0 ? adl::SourceExtension::sd2
                                        : adl::SourceExtension::wav;
  list.interchange = m_interchange_sources != 0;
  m_moved_times = adl::write_list(file, list);
  file.Close();
  return result::done;
}

// The records of an earlier run go; kept, they would be written a second time.
void CAES31File::collect_events() {
  clear_records();
  delete_all(m_automation);
  native::TrackFinder sources(m_sources);
  native::for_each_entry(list_or_none(get_generic_entry_list()), [&](CGenericEdlEntry& entry) {
    auto event = std::make_unique<CGenericEDLFileEntry>();
    native::record_from_entry(*event, entry);
    event->m_track_index = sources.find_or_make(entry);
    m_events.AddTail(event.get());
    static_cast<void>(event.release());
  });
  const std::vector<CGenericEDLFileEntry*> events = events_of(m_events);
  Application& application = host().application();
  if (application.get_butt_splice_export() != 0) {
    adl::convert_butt_splices(events, application.get_default_crossfade_length());
  }
  adl::mark_overlaps(events);
}

// Whether the list can name all its sources: 101, or the code of the export.
result_code CAES31File::check_sources() const {
  for (POSITION at = m_sources.GetHeadPosition(); at != nullptr;) {
    const auto type =
        static_cast<const CGenericEDLFileTrack*>(m_sources.GetNext(at))->m_source_type;
    if (m_sd2_sources != 0) {
      if (type != source_sd2) return result::not_sd2;
    } else if (m_interchange_sources == 0 && !can_name(type)) {
      return result::source_refused;
    }
  }
  return result::done;
}

bool CAES31File::can_name(std::uint16_t source_type) const {
  switch (source_type) {
    case source_wave:
    case source_broadcast_wave:
    case source_type_19:
    case source_type_21:
      return true;
    case source_marlo3:
      return m_allow_marlo3_files != 0;
    default:
      return false;
  }
}
