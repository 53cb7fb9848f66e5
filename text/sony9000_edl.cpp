#include "text/sony9000_edl.h"

#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "host/text_format.h"
#include "text/event_line.h"
#include "text/line_cursor.h"
#include "text/sony_line.h"

namespace {

constexpr std::u16string_view column_head =
    u"\nEDT REL MODE  TYP P S   T     P-VTR IN     P-VTR OUT    R-VTR IN     R-VTR OUT\n"
    u"BLOCK 001\n";

// Characters of a time code; shorter words are columns in front of the times.
constexpr std::size_t time_code_length = 11;

// What a word in the place of the channels says.
struct ChannelField {
  result_code code = result::line_good;
  bool odd = false;
  int flags[4] = {};
};

// Marks the field that the digit at `place` names.
bool mark_field(std::u16string_view token, std::size_t place, ChannelField& field) {
  const wide_char digit = token[place];
  if (digit < u'1' || digit > u'4') return false;
  field.flags[digit - u'1'] = 1;
  return true;
}

// "A1", "VA1", "A1A2", "VA1A2": where the digits stand follows from the length
// alone.
bool mark_fields(std::u16string_view token, ChannelField& field) {
  switch (token.size()) {
    case 2:
      return mark_field(token, 1, field);
    case 3:
      return mark_field(token, 2, field);
    case 4:
      return mark_field(token, 1, field) && mark_field(token, 3, field);
    case 5:
      return mark_field(token, 2, field) && mark_field(token, 4, field);
    default:
      return false;
  }
}

ChannelField read_channel_field(std::u16string_view token) {
  ChannelField field;
  if (token == u"C" || token == u"D") {
    field.code = result::field_is_transition;
  } else if (token == u"V") {
    field.code = result::field_is_video;
    field.odd = true;
  } else if (token.size() != 1 && !mark_fields(token, field)) {
    field.code = result::line_bad;
    field.odd = true;
  }
  return field;
}

struct Transition {
  bool dissolve = false;
  std::u16string_view length;
};

// Leaves the line at its times.
Transition read_transition(LineCursor& line) {
  Transition transition;
  const std::u16string_view letter = line.peek();
  // A line may have no transition.
  if (letter.size() != time_code_length) line.next();
  const bool wipe = letter.starts_with(u'W');
  // A wipe's number stands in front of its length.
  if (wipe) line.next();
  if (wipe || letter.starts_with(u'D')) {
    transition.dissolve = true;
    transition.length = line.next();
  }
  if (line.peek().size() < time_code_length) line.next();
  return transition;
}

}  // namespace

CSony9000Edl::CSony9000Edl(CGenericEdl* parent, int interactive)
    : CCMXEdl(4, parent, interactive) {}

unsigned short CSony9000Edl::get_first_stream(const CGenericEdlEntry* entry) const {
  return settings().sony_use_first_channel != 0 ? entry->first_channel : entry->get_stream(0);
}

int CSony9000Edl::get_format_name(wide_char* out) const {
  copy_text(out, format_name_size, u"Sony-9000");
  return 1;
}

int CSony9000Edl::merge_channels_wanted() const {
  return settings().sony_merge_channels;
}

int CSony9000Edl::cuts_only_wanted() const {
  return settings().sony_cuts_only;
}

int CSony9000Edl::check_special_line(CGenericEdlEntry* entry, const wide_char* text) {
  return text::closes_list(cursor_of(text)) ? 0 : CCMXEdl::check_special_line(entry, text);
}

int CSony9000Edl::is_ignored_event(const wide_char* /*text*/) {
  return 0;
}

int CSony9000Edl::is_audio_event(const wide_char* text) {
  const auto [field, behind] = text::fields_of_numbered_event(cursor_of(text));
  return is_audio_field(field) != 0 || behind.starts_with(u'A') ? 1 : 0;
}

int CSony9000Edl::is_video_event(const wide_char* text) {
  return is_video_field(text::fields_of_numbered_event(cursor_of(text)).third);
}

int CSony9000Edl::is_audio_field(std::u16string_view token) const {
  switch (token.size()) {
    case 1:
      return token[0] == u'A' || token[0] == u'D' || token[0] == u'C' ? 1 : 0;
    case 2:
    case 4:
      return token[0] == u'A' ? 1 : 0;
    case 3:
    case 5:
      return token[1] == u'A' ? 1 : 0;
    default:
      return 0;
  }
}

int CSony9000Edl::is_video_field(std::u16string_view token) const {
  const bool has_mark = token.size() == 1 || token.size() == 3 || token.size() == 5;
  return has_mark && token[0] == u'V' ? 1 : 0;
}

result_code CSony9000Edl::parse_channels(CGenericEdlEntry* entry, std::u16string_view token,
                                         int* skip) {
  const ChannelField field = read_channel_field(token);
  if (field.odd) *skip = 1;
  if (field.code == result::line_good) {
    apply_channels(field.flags, settings().sony_channel_mode, entry);
  }
  return field.code;
}

void CSony9000Edl::parse_transition_length(CGenericEdlEntry* entry, std::u16string_view token) {
  text::take_seconds_and_frames(*this, token, *entry);
}

result_code CSony9000Edl::parse_event(CGenericEdlEntry* entry, const wide_char* text, int* skip) {
  LineCursor line = cursor_of(text);
  take_number_and_reel(line, *entry);
  result_code code = parse_channels(entry, line.peek(), skip);
  if (code == result::field_is_video) {
    line.next();
    code = parse_channels(entry, line.peek(), skip);
  }
  if (code == result::line_bad) return code;
  if (code == result::line_good) line.next();

  const Transition transition = read_transition(line);
  entry->transition_type = transition.dissolve ? transition_dissolve : transition_cut;
  if (transition.dissolve) {
    parse_transition_length(entry, transition.length);
  } else {
    entry->fade_in_length = entry->fade_out_length = settings().default_fade_length;
  }
  bool negative = false;
  read_four_times(entry, line, &negative);
  const std::u16string_view field = line.next();
  if (!field.empty() && parse_channels(entry, field, skip) == result::line_bad) {
    return result::line_bad;
  }
  entry->update_reel_frame_rate();
  return negative ? result::negative_time : result::line_good;
}

result_code CSony9000Edl::parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) {
  LineCursor line = cursor_of(text);
  take_number_and_reel(line, *entry);
  const result_code code = read_channel_field(line.peek()).code;
  if (code != result::field_is_transition) line.next();
  if (code == result::field_is_video && read_channel_field(line.peek()).code == result::line_good) {
    line.next();
  }
  read_transition(line);
  entry->transition_type = transition_cut;
  read_four_times(entry, line);
  return result::line_good;
}

void CSony9000Edl::parse_audio_line(CGenericEdlEntry* entry, const wide_char* text) {
  take_fcm_or_comment(entry, text, settings().sony_mapping_comments);
}

result_code CSony9000Edl::write_header(CTextFile& file, const wide_char* path) {
  static_cast<void>(CCMXEdl::write_header(file, path));
  if (file.add_text(column_head) == 0) return result::line_full;
  return file.flush_line();
}

result_code CSony9000Edl::write_footer(CTextFile& file, const wide_char* /*path*/) {
  if (file.add_text(u".\nEND\n") == 0) return result::line_full;
  return file.flush_line();
}

result_code CSony9000Edl::write_channels(CTextFile& file, const CGenericEdlEntry* entry,
                                         bool* need_comment) {
  const int first = entry->get_stream(0);
  // Channels 3 and 4 have no place in the column.
  *need_comment = first >= 2;
  if (*need_comment) return text::add_column(file, u"A\t");
  const std::u16string channel = u"A" + decimal(first + 1);
  if (entry->no_streams != 1) {
    return text::add_column(file, channel + u"A" + decimal(first + 2) + u"  ");
  }
  return text::add_column(file, first % 2 != 0 ? u"  " + channel + u"  " : channel + u"    ");
}

result_code CSony9000Edl::write_audio_comment(CTextFile& file, const CGenericEdlEntry* entry) {
  const result_code code = text::add_column(file, text::channel_note(*entry));
  return code == result::done ? file.flush_line() : code;
}

result_code CSony9000Edl::write_transition(CTextFile& file, const CGenericEdlEntry* entry) {
  return text::add_column(file, text::seconds_transition(*this, *entry));
}
