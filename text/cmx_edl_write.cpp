// Writing the lines of CMX 340 and CMX 3600.
#include "core/generic_edl_entry.h"
#include "host/text_format.h"
#include "text/cmx_edl.h"
#include "text/event_line.h"

namespace {

// Ten characters of a reel name and the terminator.
constexpr int reel_column_size = 11;

}  // namespace

result_code CCMXEdl::export_edl(const wide_char* path, int option) {
  if (cuts_only_wanted() != 0) {
    mark_all_cuts();
  } else {
    split_for_export();
  }
  return CTextEdl::export_edl(path, option);
}

result_code CCMXEdl::write_event(CTextFile& file, CGenericEdlEntry* entry) {
  if (int{get_first_stream(entry)} + entry->no_streams > max_channels_) return result::line_bad;
  if (!text::add_number_and_reel(file, *entry, reel_column_size)) return result::line_full;
  bool need_comment = false;
  if (const result_code code = write_channels(file, entry, &need_comment); code != result::done) {
    return code;
  }
  if (const result_code code = write_transition(file, entry); code != result::done) return code;
  if (!text::add_times(file, *entry)) return result::line_full;
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
  return text::add_column(file, column);
}

result_code CCMXEdl::write_transition(CTextFile& file, const CGenericEdlEntry* entry) {
  return text::add_column(file, text::frames_transition(*this, *entry));
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
  return text::add_column(file, note + u"\n");
}
