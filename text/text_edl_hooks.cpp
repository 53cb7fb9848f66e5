// What the hooks of CTextEdl do in a format that does not replace them.
#include "core/error_report.h"
#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "core/generic_reel.h"
#include "host/rates.h"
#include "text/line_cursor.h"
#include "text/text_edl.h"

namespace {

constexpr std::u16string_view dump_reel = u"900";
constexpr std::u16string_view dump_format = u"Multitrack Audio";

// The file's name without its folder and extension. Folders end at "\\" or "/".
std::u16string_view title_of(std::u16string_view path) {
  const std::size_t folder = path.find_last_of(u"\\/");
  if (folder != std::u16string_view::npos) path.remove_prefix(folder + 1);
  const std::size_t point = path.rfind(u'.');
  return point == std::u16string_view::npos ? path : path.substr(0, point);
}

// A channel word "CH" and up to three digits, read as the 16-bit number less 1.
// False when it does not begin with "CH".
bool channel_word(std::u16string_view word, std::uint16_t& number) {
  if (!word.starts_with(u"CH")) return false;
  number = static_cast<std::uint16_t>(digits_value(word.substr(2, 3)));
  return true;
}

}  // namespace

result_code CTextEdl::write_event(CTextFile& /*file*/, CGenericEdlEntry* /*entry*/) {
  return result::not_done;
}

int CTextEdl::find_first_event(CTextFile& file) {
  for (;;) {
    const CTextFile::Mark mark = file.mark();
    if (file.get_line() == 0) return 0;
    const wide_char first = file.line()[0];
    if (!is_white_space(first) && !is_alphanumeric(first)) continue;
    dispatch_line(1, file.line());
    CString word;
    if (file.next_word(word) != 0 && is_number(word) != 0) {
      file.return_to(mark);
      return 1;
    }
  }
}

result_code CTextEdl::write_header(CTextFile& file, const wide_char* path) {
  return write_title(file, path, u"");
}

result_code CTextEdl::write_title(CTextFile& file, const wide_char* path,
                                  std::u16string_view note) const {
  std::u16string title(title_of({path, text_length(path)}));
  if (title.size() < 10) title.resize(10, u' ');
  wide_char format[format_name_size] = {};
  static_cast<void>(get_format_name(format));
  // In one piece: the pieces of a title that does not fit would stay in the buffer,
  // and no event behind them would find room.
  std::u16string line = u"TITLE: " + title;
  line.append(note).append(u" FORMAT: ").append(field_text(format)).append(u" \n");
  return file.add_text(line) != 0 ? file.flush_line() : result::line_full;
}

result_code CTextEdl::write_footer(CTextFile& /*file*/, const wide_char* /*path*/) {
  return result::done;
}

int CTextEdl::get_format_name(wide_char* out) const {
  out[0] = u'\0';
  return 0;
}

int CTextEdl::skip_token(const wide_char* text) const {
  const std::u16string_view line(text, text_length(text));
  const std::size_t space = leading_space(line);
  return static_cast<int>(space + leading_token(line.substr(space)).size());
}

int CTextEdl::check_special_line(CGenericEdlEntry* entry, const wide_char* text) {
  LineCursor line = cursor_of(text);
  const std::u16string_view number = line.next();
  if (line.next() != dump_reel) return 1;
  wide_char format[format_name_size] = {};
  static_cast<void>(get_format_name(format));
  if (field_text(format) != dump_format || load_dump() != 0) return 1;
  const std::uint16_t event =
      !number.empty() && all_digits(number) ? event_number_value(number) : entry->event_number;
  report(report_dump_errors, error_index::dump_file_missing, event, 1);
  return 1;
}

int CTextEdl::is_ignored_event(const wide_char* /*text*/) {
  return 0;
}

int CTextEdl::is_audio_event(const wide_char* /*text*/) {
  return 0;
}

int CTextEdl::is_video_event(const wide_char* /*text*/) {
  return 0;
}

void CTextEdl::parse_audio_line(CGenericEdlEntry* /*entry*/, const wide_char* /*text*/) {}

void CTextEdl::parse_video_line(CGenericEdlVideoEntry* /*entry*/, const wide_char* /*text*/) {}

int CTextEdl::parse_fcm(std::u16string_view word, std::u16string_view rest) {
  if (!word.starts_with(u"FCM:")) return 0;
  const std::u16string_view mode = LineCursor(rest).next();
  if (mode != u"DROP" && mode != u"NON-DROP") return 1;
  const unsigned char rate = mode == u"DROP" ? frame_rate_2997_drop : frame_rate_2997_non_drop;
  // In front of the question that the rate may bring up.
  note_reading_place();
  set_frame_rate(rate);
  // The file's rate counts for the reels of later events even where the list keeps
  // its own.
  set_original_frame_rate(rate);
  return 1;
}

int CTextEdl::parse_comment(std::u16string_view word, std::u16string_view rest,
                            CGenericEdlEntry* entry, int allow) {
  if (!word.starts_with(u"COMMENT:")) return 0;
  if (allow == 0) return 1;
  LineCursor line(rest);
  const std::u16string_view first = line.next();
  if (first.empty()) return 1;
  if (first != u"AUDIO") return take_channel_pair(first, entry);
  if (line.next() != u"MAPPING") return 1;
  return take_audio_mapping(line.rest(), entry);
}

void CTextEdl::take_fcm_or_comment(CGenericEdlEntry* entry, const wide_char* text,
                                   int allow_comments) {
  LineCursor line = cursor_of(text);
  const std::u16string_view word = line.next();
  if (word.empty() || parse_fcm(word, line.rest()) != 0) return;
  static_cast<void>(parse_comment(word, line.rest(), entry, allow_comments));
}

// "D-D", "D-DD", "DD-D" or "DD-DD" takes effect. One digit with no "-" behind it is
// a comment of another kind (1); all else is no comment of ours (0).
int CTextEdl::take_channel_pair(std::u16string_view word, CGenericEdlEntry* entry) {
  const auto digits = [](std::u16string_view text) {
    std::size_t count = 0;
    while (count < text.size() && count < 2 && is_digit(text[count]))
      ++count;
    return count;
  };
  const std::size_t first = digits(word);
  if (first == 0) return 0;
  const std::u16string_view behind = word.substr(first);
  if (behind.empty() || behind[0] != u'-') return first == 1 ? 1 : 0;
  const std::u16string_view second = behind.substr(1);
  if (second.empty() || digits(second) != second.size()) return 0;
  if (entry == nullptr) return 1;
  const auto stream = static_cast<std::uint16_t>(digits_value(word));
  const auto channel = static_cast<std::uint16_t>(digits_value(second));
  entry->raise_source_streams(channel);
  entry->set_no_streams(1);
  entry->no_channels = 1;
  entry->set_stream(0, static_cast<std::uint16_t>(stream - 1));
  entry->first_channel = static_cast<std::uint16_t>(channel - 1);
  return 1;
}

int CTextEdl::take_audio_mapping(std::u16string_view rest, CGenericEdlEntry* entry) {
  LineCursor line(rest);
  const auto word_behind = [&line](std::u16string_view filler) {
    const std::u16string_view word = line.next();
    return word == filler ? line.next() : word;
  };
  std::uint16_t stream = 0;
  std::uint16_t channel = 0;
  if (!channel_word(word_behind(u"FROM"), stream)) return 1;
  if (!channel_word(word_behind(u"TO"), channel)) return 0;
  if (entry == nullptr) return 0;
  entry->raise_source_streams(channel);
  entry->set_stream(0, static_cast<std::uint16_t>(stream - 1));
  entry->first_channel = static_cast<std::uint16_t>(channel - 1);
  return 0;
}

int CTextEdl::read_four_times(CGenericEdlEntry* entry, const wide_char* text,
                              bool* negative) const {
  LineCursor line(text);
  read_four_times(entry, line, negative);
  return static_cast<int>(line.at() - text);
}

void CTextEdl::read_four_times(CGenericEdlEntry* entry, LineCursor& line, bool* negative) const {
  const auto next = [&line, negative](bool watched) {
    const std::u16string_view word = line.next();
    if (watched && word.starts_with(u'-')) *negative = true;
    return word;
  };
  const std::u16string_view source_in = next(true);
  const std::u16string_view source_out = next(false);
  const std::u16string_view dest_in = next(true);
  entry->set_time_strings({source_in, source_out, dest_in, next(false)},
                          time_base().frame_rate_index);
}

int CTextEdl::read_four_times(CGenericEdlVideoEntry* entry, const wide_char* text) {
  LineCursor line(text);
  read_four_times(entry, line);
  return static_cast<int>(line.at() - text);
}

void CTextEdl::read_four_times(CGenericEdlVideoEntry* entry, LineCursor& line) {
  entry->set_source_in_string(line.next());
  entry->set_source_out_string(line.next());
  entry->set_dest_in_string(line.next());
  entry->set_dest_out_string(line.next());
}
