// What an AAF export takes from the generic lists, and what it refuses.
#include <algorithm>
#include <memory>
#include <vector>

#include "aaf/aaf_edl_file.h"
#include "aaf/export_overlap.h"
#include "core/generic_edl_entry.h"
#include "host/audio.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/rates.h"
#include "host/string_ids.h"
#include "host/strings.h"
#include "host/text_format.h"
#include "native/entry_walk.h"
#include "native/generic_edl_file_chunks.h"
#include "native/record_transfer.h"
#include "native/track_finder.h"

namespace {

// Places of a source; the last number stands for none.
constexpr std::intptr_t most_sources = no_track_index;

// An object whose parent is no root has no lists.
const CObList& list_or_none(const CObList* list) {
  static const CObList none;
  return list == nullptr ? none : *list;
}

void warn(const std::u16string& text) {
  host().message_boxes().message(text.c_str(), BoxIcon::warning, BoxButtons::ok);
}

// The records of entries whose audio is there, and their sources.
class Collector {
 public:
  Collector(CObList& events, CObList& sources)
      : m_events(events), m_sources(sources), m_finder(sources) {}

  // False when there are more sources than have numbers.
  [[nodiscard]] bool add(CGenericEdlEntry& entry) {
    const CAudCnt* const content = entry.get_audio_content();
    if (content == nullptr) return true;
    if (!content->is_available()) {
      m_missing = true;
      return true;
    }
    auto event = std::make_unique<CGenericEDLFileEntry>();
    native::record_from_entry(*event, entry);
    event->m_track_index = find_source(entry, *event);
    m_events.AddTail(event.get());
    static_cast<void>(event.release());
    return m_sources.GetCount() <= most_sources;
  }
  [[nodiscard]] bool is_audio_missing() const { return m_missing; }

 private:
  // A source has at least the channels that its edits play.
  std::uint16_t find_source(CGenericEdlEntry& entry, const CGenericEDLFileEntry& event) {
    const std::uint16_t place = m_finder.find_or_make(entry);
    if (m_tracks.size() < static_cast<std::size_t>(m_sources.GetCount())) {
      m_tracks.push_back(static_cast<CGenericEDLFileTrack*>(m_sources.GetTail()));
    }
    const std::uint32_t played = std::uint32_t{event.m_channel_offset} + event.m_stream_count;
    const std::uint32_t channels = std::max<std::uint32_t>(entry.no_channels, played);
    m_finder.raise_channels(*m_tracks[place], place,
                            static_cast<std::uint16_t>(std::min<std::uint32_t>(channels, 0xFFFF)));
    return place;
  }

  CObList& m_events;
  CObList& m_sources;
  native::TrackFinder m_finder;
  // By place.
  std::vector<CGenericEDLFileTrack*> m_tracks;
  bool m_missing = false;
};

std::u16string block_of(std::u16string_view name, const CGenericEDLFileEntry& event,
                        const std::u16string& start, const std::u16string& length) {
  std::u16string text = u"Entry: ";
  text.append(name).append(u" \nstarts at: ").append(start);
  text.append(u"\nduration: ").append(length);
  text.append(u"\nstream(s): ").append(decimal(event.m_first_stream + 1));
  return text;
}

}  // namespace

bool CAAFEdlFile::collect_export_entries() {
  Collector collector(m_events, m_sources);
  bool fits = true;
  native::for_each_entry(list_or_none(get_generic_entry_list()),
                         [&](CGenericEdlEntry& entry) { fits = fits && collector.add(entry); });
  if (!fits) return false;
  if (!collector.is_audio_missing()) return true;
  return host().message_boxes().ask_by_ids(
             string_id::question_title, string_id::aaf_ask_missing_sources,
             MessageBoxes::buttons_yes_no, MessageBoxes::icon_warning) == box_answer_yes;
}

void CAAFEdlFile::collect_export_automation() {
  native::collect_automation(list_or_none(get_automation_list()), m_automation);
}

void CAAFEdlFile::collect_export_locators() {
  const CObList& locators = list_or_none(get_locator_list());
  m_locator_groups.AddTail(
      native::collect_locators(locators, native::LocatorKind::range).release());
}

bool CAAFEdlFile::check_exportable() const {
  const CGenericEDLFileEntry* first = nullptr;
  const CGenericEDLFileEntry* second = nullptr;
  if (find_bad_overlap(first, second)) {
    warn(format_overlap_message(*first, *second));
    return false;
  }
  return sample_rate_is_exportable() && sources_are_uniform();
}

bool CAAFEdlFile::find_bad_overlap(const CGenericEDLFileEntry*& first,
                                   const CGenericEDLFileEntry*& second) const {
  const aaf::EventPair pair = aaf::first_bad_overlap(m_events);
  first = pair.first;
  second = pair.second;
  return first != nullptr;
}

bool CAAFEdlFile::sample_rate_is_exportable() const {
  const std::uint32_t rate = sample_rate();
  if (rate != 32000 && rate != 64000 && rate != 128000) return true;
  warn(fill_host_format(host().strings().load(string_id::aaf_rate_refused), u"", rate));
  return false;
}

bool CAAFEdlFile::sources_are_uniform() const {
  for (POSITION at = m_sources.GetHeadPosition(); at != nullptr;) {
    const CAudCnt* const content =
        static_cast<const CGenericEDLFileTrack*>(m_sources.GetNext(at))->m_source_object;
    if (content == nullptr || !content->is_available() || content->sample_rate() == sample_rate())
      continue;
    warn(host().strings().load(string_id::aaf_source_rates_differ));
    return false;
  }
  return true;
}

// Both blocks show the second name.
std::u16string CAAFEdlFile::format_overlap_message(const CGenericEDLFileEntry& a,
                                                   const CGenericEDLFileEntry& b) const {
  const auto length = [this](const CGenericEDLFileEntry& event) {
    return event.m_length < 0 ? std::u16string(u"INVALID!!!") : format_sample_time(event.m_length);
  };
  std::u16string text =
      u"Overlaps other than time-symmetrical crossfades cannot be exported to Advanced Authoring "
      u"Format files!\n\n";
  text += block_of(b.get_name(), a, format_sample_time(a.m_dest_in), length(a));
  text += u"\n\nOverlaps with...\n\n";
  text += block_of(b.get_name(), b, format_sample_time(b.m_dest_in), length(b));
  return text;
}

// Hours, minutes and seconds keep 8 bits.
std::u16string CAAFEdlFile::format_sample_time(std::int64_t samples) const {
  const std::int64_t rate = std::max<std::int64_t>(sample_rate(), 1);
  const std::int64_t seconds = samples / rate;
  const auto field = [](std::int64_t value) {
    return decimal(static_cast<std::uint8_t>(value), 2);
  };
  return field(seconds / 3600) + u":" + field(seconds / 60 % 60) + u":" + field(seconds % 60) +
         u":" + decimal(samples % rate, 6);
}
