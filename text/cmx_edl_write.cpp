// Writing the lines of CMX 340 and CMX 3600.
#include <iterator>

#include "core/clock_time.h"
#include "core/generic_edl_entry.h"
#include "host/text_format.h"
#include "text/cmx_edl.h"

namespace {

// Ten characters of a reel name and the terminator.
constexpr int reel_column_size = 11;

bool add_time(CTextFile& file, const CGenericEdlEntry& entry, std::int64_t samples) {
  wide_char text[time_code_size];
  samples_to_timecode(entry.owner == nullptr ? TimeBase() : entry.owner->time_base(), samples, text,
                      time_code_size);
  return file.add_text(field_text(text)) != 0 && file.add_text(u" ") != 0;
}

}  // namespace

result_code CCMXEdl::export_edl(const wide_char* path, int option) {
  if (cuts_only_wanted() != 0) {
    mark_all_cuts();
  } else {
    split_for_export();
  }
  return CTextEdl::export_edl(path, option);
}

bool CCMXEdl::add_number_and_reel(CTextFile& file, const CGenericEdlEntry& entry) {
  if (file.add_text(decimal(entry.event_number, 3)) == 0 || file.add_text(u"  ") == 0) return false;
  wide_char reel[reel_column_size];
  entry.get_reel_name(reel, reel_column_size);
  if (reel[0] == u'\0' || is_white_space(reel[0])) return file.add_text(u"N/A\t") != 0;
  return file.add_text(field_text(reel)) != 0 && file.add_text(u" \t") != 0;
}

bool CCMXEdl::add_times(CTextFile& file, const CGenericEdlEntry& entry) {
  return add_time(file, entry, entry.source_in) && add_time(file, entry, entry.source_out) &&
         add_time(file, entry, entry.dest_in) && add_time(file, entry, entry.dest_out);
}

result_code CCMXEdl::write_event(CTextFile& file, CGenericEdlEntry* entry) {
  if (int{get_first_stream(entry)} + entry->no_streams > max_channels_) return result::line_bad;
  if (!add_number_and_reel(file, *entry)) return result::line_full;
  bool need_comment = false;
  if (const result_code code = write_channels(file, entry, &need_comment); code != result::done) {
    return code;
  }
  if (const result_code code = write_transition(file, entry); code != result::done) return code;
  if (!add_times(file, *entry)) return result::line_full;
  if (!need_comment) return file.add_text(u"\n") != 0 ? file.flush_line() : result::line_full;
  if (const result_code code = write_audio_comment(file, entry); code != result::done) return code;
  return file.flush_line();
}

result_code CCMXEdl::write_channels(CTextFile& file, const CGenericEdlEntry* entry,
                                    bool* need_comment) {
  const int first = get_first_stream(entry);
  std::u16string column = u"NONE  ";
  if (first == 0) column = entry->no_streams == 1 ? u"A     " : u"AA    ";
  if (first == 1) column = u"A" + decimal(first + 1) + u"    ";
  // Channels 3 and 4 have no place in the column.
  *need_comment = first >= 2;
  return file.add_text(column) != 0 ? result::done : result::line_full;
}

result_code CCMXEdl::write_transition(CTextFile& file, const CGenericEdlEntry* entry) {
  std::int64_t frames = 0;
  if (entry->transition_type != transition_cut) {
    frames = samples_to_frames(entry->fade_in_length);
    if (frames == 0) frames = samples_to_frames(entry->fade_out_length);
  }
  const std::u16string column = frames == 0 ? u"C         " : u"D   " + decimal(frames, 3) + u"   ";
  return file.add_text(column) != 0 ? result::done : result::line_full;
}

result_code CCMXEdl::write_audio_comment(CTextFile& file, const CGenericEdlEntry* entry) {
  const auto channel = [entry](int i) { return decimal(entry->get_stream(i) + 1) + u"\t"; };
  std::u16string note = u"\nAUD\t";
  if (entry->no_streams == 1) {
    note += channel(0);
  } else if (entry->get_stream(0) == 1) {
    note += channel(1);
  } else {
    note += channel(0) + channel(1);
  }
  return file.add_text(note + u"\n") != 0 ? result::done : result::line_full;
}
