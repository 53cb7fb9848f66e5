#include "tests/formats/toy/tally_edl.h"

#include "core/clock_time.h"
#include "core/generic_edl_entry.h"
#include "host/text_format.h"
#include "text/line_cursor.h"

namespace {

constexpr std::u16string_view head = u"TALLY LIST 1";
constexpr int reel_size = 9;

// What one line says.
struct TallyLine {
  std::u16string_view number;
  std::u16string_view reel;
  std::u16string_view track;
  std::u16string_view times;
};

TallyLine split(const wide_char* text) {
  LineCursor line(text);
  TallyLine fields;
  fields.number = line.next();
  fields.reel = line.next();
  fields.track = line.next();
  fields.times = line.rest();
  return fields;
}

std::u16string time_column(const CGenericEdlEntry& entry, std::int64_t samples) {
  wide_char text[time_code_size];
  samples_to_timecode(entry.owner->time_base(), samples, text, time_code_size);
  return u" " + std::u16string(field_text(text));
}

}  // namespace

CTallyEdl::CTallyEdl(CGenericEdl* parent, int interactive) : CTextEdl(parent, interactive) {}

int CTallyEdl::find_first_event(CTextFile& file) {
  if (file.get_line() == 0 || trimmed(file.line()) != head) return 0;
  return CTextEdl::find_first_event(file);
}

int CTallyEdl::is_audio_event(const wide_char* text) {
  const std::u16string_view number = split(text).number;
  return !number.empty() && all_digits(number) ? 1 : 0;
}

result_code CTallyEdl::parse_event(CGenericEdlEntry* entry, const wide_char* text, int* skip) {
  const TallyLine line = split(text);
  *skip = 0;
  entry->event_number = event_number_value(line.number);
  if (!all_digits(line.track) || digits_value(line.track) < 1) return result::line_bad;
  entry->set_reel_name(CString(line.reel));
  entry->set_no_streams(1);
  entry->no_channels = 1;
  entry->set_stream(0, static_cast<std::uint16_t>(digits_value(line.track) - 1));
  entry->transition_type = transition_cut;
  bool negative = false;
  read_four_times(entry, line.times.data(), &negative);
  return negative ? result::negative_time : result::line_good;
}

result_code CTallyEdl::parse_video_event(CGenericEdlVideoEntry*, const wide_char*) {
  return result::line_bad;
}

result_code CTallyEdl::write_header(CTextFile& file, const wide_char*) {
  const bool fits = file.add_text(head) != 0 && file.add_text(u"\n") != 0;
  return fits ? file.flush_line() : result::line_full;
}

result_code CTallyEdl::write_event(CTextFile& file, CGenericEdlEntry* entry) {
  if (entry->no_streams != 1) return result::line_bad;
  wide_char reel[reel_size];
  entry->get_reel_name(reel, reel_size);
  const std::u16string line =
      decimal(entry->event_number) + u" " + std::u16string(field_text(reel)) + u" " +
      decimal(entry->get_stream(0) + 1) + time_column(*entry, entry->source_in) +
      time_column(*entry, entry->source_out) + time_column(*entry, entry->dest_in) +
      time_column(*entry, entry->dest_out) + u"\n";
  return file.add_text(line) != 0 ? file.flush_line() : result::line_full;
}
