#include "cli/list_table.h"

#include <algorithm>

#include "cli/messages.h"
#include "cli/records_json.h"
#include "cli/text_table.h"
#include "core/clock_time.h"
#include "embedded/folders.h"
#include "host/rates.h"

namespace cli {

namespace {

constexpr std::size_t time_width = 11;
constexpr std::uint16_t no_event = 65535;
constexpr std::uint16_t no_track = 65535;

std::string time_text(const CGenericEdl& edl, std::int64_t samples) {
  if (samples == time_not_given) return "-";
  wide_char text[time_code_size];
  samples_to_timecode(edl.time_base(), samples, text, time_code_size);
  return utf8_from_text(field_text(text));
}

std::string number_text(std::uint16_t event_number) {
  return event_number == no_event ? "-" : std::to_string(event_number);
}

// Streams from 1, "1-2" for neighbours, "-" for one that goes nowhere.
std::string streams_text(const CGenericEdlEntry& entry) {
  std::string text;
  for (int i = 0; i < entry.no_streams; ++i) {
    const int first = entry.get_stream(i);
    if (!text.empty()) text += ',';
    if (first == no_track) {
      text += '-';
      continue;
    }
    int last = first;
    while (i + 1 < entry.no_streams && entry.get_stream(i + 1) == last + 1) {
      ++i;
      ++last;
    }
    text += std::to_string(first + 1);
    if (last > first) text += '-' + std::to_string(last + 1);
  }
  return text.empty() ? "-" : text;
}

// Frames of both fades; nothing when there are none.
std::string fades_text(const CGenericEdl& edl, const CGenericEdlEntry& entry) {
  if (entry.fade_in_length == 0 && entry.fade_out_length == 0) return {};
  const std::int64_t frame = std::max<std::int64_t>(edl.samples_per_frame(), 1);
  return std::to_string(entry.fade_in_length / frame) + "/" +
         std::to_string(entry.fade_out_length / frame);
}

template <class Entry>
std::string reel_text(const Entry& entry) {
  wide_char reel[13];
  entry.get_reel_name(reel, 13);
  return shown_text(field_text(reel));
}

template <class Entry>
std::string name_text(const Entry& entry) {
  const std::string clip = shown_text(field_text(entry.clip_name));
  return clip.empty() ? shown_text(field_text(entry.source_reel_name)) : clip;
}

template <class T, class Cells>
bool put_table(std::size_t screen_columns, const std::vector<Column>& columns, const CObList* list,
               Cells cells) {
  if (list->IsEmpty()) return true;
  const TextTable table(columns, screen_columns);
  if (!put_data("\n" + table.title_line())) return false;
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    const auto* const object = static_cast<T*>(list->GetNext(at));
    if (object != nullptr && !put_data(table.line(cells(*object)))) return false;
  }
  return true;
}

bool put_edits(const CGenericEdl& edl, std::size_t screen_columns) {
  return put_table<CGenericEdlEntry>(
      screen_columns,
      {{"event", 5},
       {"reel", 8},
       {"streams", 7},
       {"from", time_width},
       {"to", time_width},
       {"source in", time_width},
       {"fades", 7},
       {"name", 0}},
      edl.get_generic_entry_list(), [&edl](const CGenericEdlEntry& entry) {
        return std::vector<std::string>{number_text(entry.event_number),
                                        reel_text(entry),
                                        streams_text(entry),
                                        time_text(edl, entry.dest_in),
                                        time_text(edl, entry.dest_out),
                                        time_text(edl, entry.source_in),
                                        fades_text(edl, entry),
                                        name_text(entry)};
      });
}

bool put_video(const CGenericEdl& edl, std::size_t screen_columns) {
  return put_table<CGenericEdlVideoEntry>(
      screen_columns,
      {{"video", 5},
       {"reel", 8},
       {"", 7},
       {"from", time_width},
       {"to", time_width},
       {"source in", time_width},
       {"", 7},
       {"name", 0}},
      edl.get_video_list(), [&edl](const CGenericEdlVideoEntry& entry) {
        return std::vector<std::string>{number_text(entry.event_number),
                                        reel_text(entry),
                                        "",
                                        time_text(edl, entry.dest_in),
                                        time_text(edl, entry.dest_out),
                                        time_text(edl, entry.source_in),
                                        "",
                                        name_text(entry)};
      });
}

bool put_locators(const CGenericEdl& edl, std::size_t screen_columns) {
  return put_table<CGenericLocatorEntry>(
      screen_columns, {{"locator", time_width}, {"name", 0}}, edl.get_locator_list(),
      [&edl](const CGenericLocatorEntry& locator) {
        return std::vector<std::string>{time_text(edl, locator.time),
                                        shown_text(locator.name.view())};
      });
}

std::string kind_text(std::uint16_t type) {
  static constexpr const char* kinds[] = {"fader", "mute", "pan"};
  return type < std::size(kinds) ? kinds[type] : "kind " + std::to_string(type);
}

bool put_automation(const CGenericEdl& edl, std::size_t screen_columns) {
  return put_table<CGenericAutomationChunk>(
      screen_columns, {{"automation", 10}, {"channel", 7}, {"points", 0}},
      edl.get_automation_list(), [](const CGenericAutomationChunk& chunk) {
        const auto points = chunk.points == nullptr ? 0 : chunk.points->GetCount();
        return std::vector<std::string>{kind_text(chunk.type), std::to_string(chunk.channel),
                                        std::to_string(points)};
      });
}

bool put_disc_index(const CGenericEdl& edl, std::size_t screen_columns) {
  return put_table<CGenericPQEntry>(
      screen_columns,
      {{"disc index", time_width}, {"track", 5}, {"index", 5}, {"isrc", 12}, {"title", 0}},
      edl.get_pq_list(), [&edl](const CGenericPQEntry& entry) {
        return std::vector<std::string>{
            time_text(edl, entry.position_a), std::to_string(entry.track_number),
            std::to_string(entry.index_number), shown_text(entry.isrc.view()),
            shown_text(entry.first_text.view())};
      });
}

std::string summary(const FormatRow& format, const CGenericEdl& edl) {
  struct Kind {
    const CObList* list;
    const char* one;
    const char* many;
  };
  const Kind kinds[] = {{edl.get_generic_entry_list(), "edit", "edits"},
                        {edl.get_video_list(), "video edit", "video edits"},
                        {edl.get_locator_list(), "locator", "locators"},
                        {edl.get_automation_list(), "run of automation", "runs of automation"},
                        {edl.get_pq_list(), "disc index entry", "disc index entries"}};
  const TimeBase base = edl.time_base();
  std::string text = std::string(format.title) + ", " +
                     std::to_string(samples_per_second(base.sample_rate_index)) + " Hz, " +
                     frame_rate_text(base.frame_rate_index) + " frames a second\n";
  const std::size_t line = text.size();
  for (const Kind& kind : kinds) {
    const auto count = static_cast<std::size_t>(kind.list->GetCount());
    if (count == 0) continue;
    text += (text.size() == line ? "" : ", ") + counted(count, kind.one, kind.many);
  }
  return text + (text.size() == line ? "no edits\n" : "\n");
}

// Who made the file, and its lists where it can hold several.
bool put_facts(const FileFacts& facts, std::size_t screen_columns) {
  if (!facts.maker.empty() &&
      !put_data(
          wrapped("made by " + shown_text(text_from_utf8(facts.maker)) + "\n", screen_columns))) {
    return false;
  }
  if (facts.compositions.empty()) return true;
  const TextTable table({{"read", 4}, {"composition", 0}}, screen_columns);
  if (!put_data("\n" + table.title_line())) return false;
  int row = 0;
  for (const std::string& name : facts.compositions) {
    const bool read = row++ == facts.composition;
    if (!put_data(table.line({read ? "yes" : "", shown_text(text_from_utf8(name))}))) return false;
  }
  return true;
}

bool put_media(const std::vector<MediaRow>& media, std::size_t screen_columns) {
  if (media.empty()) return true;
  const TextTable table({{"audio", 6}, {"path", 0}}, screen_columns);
  if (!put_data("\n" + table.title_line())) return false;
  for (const MediaRow& row : media) {
    const std::size_t inside = row.path.find(embedded::inside_the_file);
    const bool is_inside = inside != std::string::npos;
    const std::string path =
        is_inside ? row.path.substr(inside + embedded::inside_the_file.size() + 1) : row.path;
    const char* const state = row.found ? "found" : is_inside ? "inside" : "-";
    if (!put_data(table.line({state, shown_text(text_from_utf8(path))}))) return false;
  }
  return true;
}

}  // namespace

bool put_list_table(const FormatRow& format, const CGenericEdl& edl,
                    const std::vector<MediaRow>& media, std::size_t screen_columns) {
  return put_data(wrapped(summary(format, edl), screen_columns)) &&
         put_facts(format.facts(edl), screen_columns) && put_edits(edl, screen_columns) &&
         put_video(edl, screen_columns) && put_locators(edl, screen_columns) &&
         put_automation(edl, screen_columns) && put_disc_index(edl, screen_columns) &&
         put_media(media, screen_columns) && flush_data();
}

}  // namespace cli
