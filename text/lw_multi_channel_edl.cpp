#include "text/lw_multi_channel_edl.h"

#include <algorithm>

#include "core/generic_edl_entry.h"
#include "host/text_format.h"
#include "text/event_line.h"
#include "text/line_cursor.h"

namespace {

constexpr int field_count = 8;
// Four characters of a reel name and the terminator.
constexpr int reel_column_size = 5;

// Words that name fields other than by their digits.
struct NamedFields {
  std::u16string_view token;
  int flags[2];
};
constexpr NamedFields named_fields[] = {
    {u"A", {1, 0}},    {u"B", {1, 0}},    {u"AA", {1, 1}},
    {u"AA/V", {1, 1}}, {u"A2/V", {0, 1}}, {u"NONE", {0, 0}},
};

// "A3" and "A37" name the fields of their digits, 1 to 8.
bool mark_digits(std::u16string_view token, int (&flags)[field_count]) {
  const bool has_form = (token.size() == 2 || token.size() == 3) && token[0] == u'A';
  const std::u16string_view digits = has_form ? token.substr(1) : std::u16string_view();
  const auto names_field = [](wide_char c) { return c >= u'1' && c <= u'8'; };
  if (!has_form || !std::all_of(digits.begin(), digits.end(), names_field)) return false;
  for (const wide_char c : digits)
    flags[c - u'1'] = 1;
  return true;
}

bool mark_fields(std::u16string_view token, int (&flags)[field_count]) {
  for (const NamedFields& named : named_fields) {
    if (named.token != token) continue;
    std::copy(std::begin(named.flags), std::end(named.flags), flags);
    return true;
  }
  return mark_digits(token, flags);
}

std::u16string mapping(int source_channel, int stream) {
  return u"\tFROM CH" + decimal(source_channel) + u" TO CH" + decimal(stream + 1);
}

}  // namespace

CLWMultiChannelEdl::CLWMultiChannelEdl(CGenericEdl* parent, int interactive)
    : CTextEdl(parent, interactive) {}

result_code CLWMultiChannelEdl::import_edl(const wide_char* path) {
  const result_code code = CTextEdl::import_edl(path);
  if (code != result::import_complete) return code;
  resolve_dump_sources();
  fold_dissolves();
  if (settings().lw_multichannel_merge_channels != 0) {
    sort_by_dest_in();
    merge_into_n_channel_entries();
    fold_crossfades();
  } else {
    fold_crossfades();
    sort_by_dest_in();
  }
  return code;
}

unsigned short CLWMultiChannelEdl::get_first_stream(const CGenericEdlEntry* entry) const {
  return settings().lw_multichannel_use_first_channel != 0 ? entry->first_channel
                                                           : entry->get_stream(0);
}

int CLWMultiChannelEdl::get_format_name(wide_char* out) const {
  copy_text(out, format_name_size, u"Multitrack Audio");
  return 1;
}

int CLWMultiChannelEdl::is_ignored_event(const wide_char* /*text*/) {
  return 0;
}

int CLWMultiChannelEdl::is_audio_event(const wide_char* text) {
  LineCursor line = cursor_of(text);
  if (!text::numbers_an_event(line.next())) return 0;
  line.next();
  return line.next().starts_with(u'A') ? 1 : 0;
}

int CLWMultiChannelEdl::is_video_event(const wide_char* /*text*/) {
  return 0;
}

result_code CLWMultiChannelEdl::parse_channels(CGenericEdlEntry* entry, std::u16string_view token,
                                               int* skip) {
  int flags[field_count] = {};
  if (!mark_fields(token, flags)) *skip = 1;
  if (token.empty() || token.size() > 4) return result::line_bad;
  apply_channel_mode(field_count, flags, settings().lw_multichannel_channel_mode, entry);
  return result::line_good;
}

void CLWMultiChannelEdl::parse_transition_length(CGenericEdlEntry* entry,
                                                 std::u16string_view token) {
  if (!all_digits(token)) return;
  entry->fade_in_length = frames_to_samples(digits_value(token));
  entry->fade_out_length = settings().default_fade_length;
}

result_code CLWMultiChannelEdl::parse_event(CGenericEdlEntry* entry, const wide_char* text,
                                            int* skip) {
  LineCursor line = cursor_of(text);
  const std::u16string_view number = line.next();
  if (all_digits(number)) entry->event_number = event_number_value(number);
  if (const std::u16string_view reel = line.next().substr(0, reel_column_size - 1); !reel.empty()) {
    entry->set_reel_name(reel);
    entry->set_source_reel_name(reel);
  }
  if (parse_channels(entry, line.next(), skip) != result::line_good) return result::line_bad;
  const std::u16string_view transition = line.next();
  if (transition.starts_with(u'C')) entry->transition_type = transition_cut;
  if (transition.starts_with(u'D')) entry->transition_type = transition_dissolve;
  if (entry->transition_type == transition_dissolve) {
    parse_transition_length(entry, line.next());
  } else {
    entry->fade_in_length = entry->fade_out_length = settings().default_fade_length;
  }
  bool negative = false;
  read_four_times(entry, line, &negative);
  return negative ? result::negative_time : result::line_good;
}

result_code CLWMultiChannelEdl::parse_video_event(CGenericEdlVideoEntry* /*entry*/,
                                                  const wide_char* /*text*/) {
  return result::line_bad;
}

void CLWMultiChannelEdl::parse_audio_line(CGenericEdlEntry* entry, const wide_char* text) {
  take_fcm_or_comment(entry, text, settings().lw_multichannel_mapping_comments);
}

result_code CLWMultiChannelEdl::write_columns(CTextFile& file, const CGenericEdlEntry* entry,
                                              bool* need_comment) {
  if (!text::add_number_and_reel(file, *entry, reel_column_size)) return result::line_full;
  if (const result_code code = write_channels(file, entry, need_comment); code != result::done) {
    return code;
  }
  if (const result_code code = write_transition(file, entry); code != result::done) return code;
  return text::add_times(file, *entry) ? result::done : result::line_full;
}

result_code CLWMultiChannelEdl::write_event(CTextFile& file, CGenericEdlEntry* entry) {
  bool need_comment = false;
  result_code code = write_columns(file, entry, &need_comment);
  if (code != result::done) return code;
  code = need_comment ? write_mapping_comment(file, entry) : text::add_column(file, u"\n");
  return code == result::done ? file.flush_line() : code;
}

result_code CLWMultiChannelEdl::write_channels(CTextFile& file, const CGenericEdlEntry* entry,
                                               bool* need_comment) {
  const int first = get_first_stream(entry);
  *need_comment =
      settings().lw_multichannel_mapping_comments != 0 && int{entry->first_channel} != first;
  const std::u16string column = u"A" + decimal(first + 1);
  return text::add_column(file, entry->no_streams == 1
                                    ? column + u"    "
                                    : column + decimal(entry->get_stream(1) + 1) + u"   ");
}

result_code CLWMultiChannelEdl::write_transition(CTextFile& file, const CGenericEdlEntry* entry) {
  return text::add_column(file, text::frames_transition(*this, *entry));
}

result_code CLWMultiChannelEdl::write_mapping_comment(CTextFile& file,
                                                      const CGenericEdlEntry* entry) {
  const int source = entry->first_channel + 1;
  const int stream = entry->get_stream(0);
  std::u16string comment = u"\nCOMMENT: AUDIO MAPPING" + mapping(source, stream);
  if (entry->no_streams != 1) comment += mapping(source + 1, stream + 1);
  return text::add_column(file, comment + u"\n");
}
