#include "cli/entry_table.h"

#include <algorithm>

#include "cli/details_json.h"
#include "core/clock_time.h"
#include "core/generic_edl_entry.h"
#include "embedded/terminal.h"
#include "host/text_format.h"

namespace cli {

namespace {

std::string time_text(const CGenericEdl& edl, std::int64_t samples) {
  if (samples == time_not_given) return "-";
  wide_char text[time_code_size];
  samples_to_timecode(edl.time_base(), samples, text, time_code_size);
  return utf8_from_text(field_text(text));
}

// Streams from 1, "1-2" for neighbours; "-" for those that go nowhere.
std::string streams_text(const CGenericEdlEntry& entry) {
  std::string text;
  for (int i = 0; i < entry.no_streams; ++i) {
    const int first = entry.get_stream(i);
    if (!text.empty()) text += ',';
    if (first == no_stream) {
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

std::string fades_text(const CGenericEdl& edl, const CGenericEdlEntry& entry) {
  const std::int64_t frame = std::max<std::int64_t>(edl.samples_per_frame(), 1);
  if (entry.fade_in_length == 0 && entry.fade_out_length == 0) return "";
  return std::to_string(entry.fade_in_length / frame) + "/" +
         std::to_string(entry.fade_out_length / frame);
}

std::string padded(std::string text, std::size_t width) {
  std::size_t shown = 0;
  for (const char c : text) {
    if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) ++shown;
  }
  if (shown < width) text.append(width - shown, ' ');
  return text;
}

std::string number_text(const CGenericEdlEntry& entry) {
  return entry.event_number == event_number_not_set ? "-" : std::to_string(entry.event_number);
}

std::string row_text(const CGenericEdl& edl, const CGenericEdlEntry& entry,
                     std::size_t name_width) {
  wide_char reel[13];
  entry.get_reel_name(reel, 13);
  const std::string clip = shown_text(field_text(entry.clip_name));
  const std::string name = clip.empty() ? shown_text(field_text(entry.source_reel_name)) : clip;
  std::string row =
      padded(number_text(entry), 6) + padded(fitted(shown_text(field_text(reel)), 8), 9) +
      padded(fitted(streams_text(entry), 7), 8) + padded(time_text(edl, entry.source_in), 12) +
      padded(time_text(edl, entry.dest_in), 12) + padded(time_text(edl, entry.dest_out), 12) +
      padded(fitted(fades_text(edl, entry), 9), 10);
  if (name_width > 0) row += fitted(name, name_width);
  while (!row.empty() && row.back() == ' ')
    row.pop_back();
  return embedded::printable(row);
}

constexpr std::size_t fixed_width = 6 + 9 + 8 + 12 + 12 + 12 + 10;

}  // namespace

std::string fitted(std::string_view text, std::size_t width) {
  std::string out;
  std::size_t shown = 0;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t next = at + 1;
    while (next < text.size() && (static_cast<unsigned char>(text[next]) & 0xC0U) == 0x80U)
      ++next;
    if (++shown == width && next < text.size()) return out + "…";
    out += text.substr(at, next - at);
    at = next;
  }
  return out;
}

std::string entry_table(const CGenericEdl& edl, std::size_t columns) {
  columns = std::max<std::size_t>(columns, 80);
  const std::size_t name_width = columns - fixed_width;
  std::string table = padded("event", 6) + padded("reel", 9) + padded("streams", 8) +
                      padded("source in", 12) + padded("from", 12) + padded("to", 12) +
                      padded("fades", 10) + "name\n";
  const CObList* const list = edl.get_generic_entry_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    table += row_text(edl, *static_cast<CGenericEdlEntry*>(list->GetNext(at)), name_width) + '\n';
  }
  return table;
}

}  // namespace cli
