#include "text/event_line.h"

#include "core/clock_time.h"
#include "core/generic_edl_entry.h"
#include "host/text_format.h"
#include "text/line_cursor.h"

namespace text {

bool numbers_an_event(std::u16string_view word) {
  return word.size() == 3 || (!word.empty() && all_digits(word));
}

result_code add_column(CTextFile& file, std::u16string_view column) {
  return file.add_text(column) != 0 ? result::done : result::line_full;
}

bool add_number_and_reel(CTextFile& file, const CGenericEdlEntry& entry, int reel_size) {
  if (file.add_text(decimal(entry.event_number, 3)) == 0 || file.add_text(u"  ") == 0) return false;
  wide_char reel[13];
  entry.get_reel_name(reel, reel_size);
  if (reel[0] == u'\0' || is_white_space(reel[0])) return file.add_text(u"N/A\t") != 0;
  return file.add_text(field_text(reel)) != 0 && file.add_text(u" \t") != 0;
}

TimeText::TimeText(const CGenericEdlEntry& entry, std::int64_t samples) {
  const TimeBase base = entry.owner == nullptr ? TimeBase() : entry.owner->time_base();
  samples_to_timecode(base, samples, text_, time_code_size);
}

bool add_times(CTextFile& file, const CGenericEdlEntry& entry) {
  for (const std::int64_t samples :
       {entry.source_in, entry.source_out, entry.dest_in, entry.dest_out}) {
    if (file.add_text(TimeText(entry, samples).view()) == 0 || file.add_text(u" ") == 0) {
      return false;
    }
  }
  return true;
}

std::u16string frames_transition(const CTextEdl& edl, const CGenericEdlEntry& entry) {
  std::int64_t frames = 0;
  if (entry.transition_type != transition_cut) {
    frames = edl.samples_to_frames(entry.fade_in_length);
    if (frames == 0) frames = edl.samples_to_frames(entry.fade_out_length);
  }
  return frames == 0 ? u"C         " : u"D   " + decimal(frames, 3) + u"   ";
}

}  // namespace text
