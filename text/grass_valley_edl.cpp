#include "text/grass_valley_edl.h"

#include "core/generic_edl_entry.h"
#include "host/text_format.h"
#include "text/event_line.h"
#include "text/sony_line.h"

namespace {

// Marks the fields that the digits of the channel word name; false when a digit names
// none. What is no digit is passed over.
bool mark_fields(std::u16string_view digits, int (&flags)[4]) {
  for (const wide_char c : digits) {
    if (!is_digit(c)) continue;
    if (c < u'1' || c > u'4') return false;
    flags[c - u'1'] = 1;
  }
  return true;
}

}  // namespace

CGrassValleyEdl::CGrassValleyEdl(CGenericEdl* parent, int interactive)
    : CCMXEdl(4, parent, interactive) {}

unsigned short CGrassValleyEdl::get_first_stream(const CGenericEdlEntry* entry) const {
  return settings().grass_valley_use_first_channel != 0 ? entry->first_channel
                                                        : entry->get_stream(0);
}

int CGrassValleyEdl::get_format_name(wide_char* out) const {
  copy_text(out, format_name_size, u"Grass Valley");
  return 1;
}

int CGrassValleyEdl::merge_channels_wanted() const {
  return settings().grass_valley_merge_channels;
}

int CGrassValleyEdl::cuts_only_wanted() const {
  return settings().grass_valley_cuts_only;
}

int CGrassValleyEdl::check_special_line(CGenericEdlEntry* entry, const wide_char* text) {
  return text::closes_list(cursor_of(text)) ? 0 : CCMXEdl::check_special_line(entry, text);
}

int CGrassValleyEdl::is_audio_event(const wide_char* text) {
  return is_audio_field(text::fields_of_numbered_event(cursor_of(text)).third);
}

int CGrassValleyEdl::is_video_event(const wide_char* text) {
  return is_video_field(text::fields_of_numbered_event(cursor_of(text)).third);
}

int CGrassValleyEdl::is_audio_field(std::u16string_view token) const {
  return token.starts_with(u'A') ? 1 : 0;
}

int CGrassValleyEdl::is_video_field(std::u16string_view token) const {
  return token.ends_with(u'V') ? 1 : 0;
}

result_code CGrassValleyEdl::parse_channels(CGenericEdlEntry* entry, std::u16string_view token,
                                            int* skip) {
  int flags[4] = {};
  if (token.size() == 1) {
    *skip = 1;
  } else if (!token.starts_with(u'A') || !mark_fields(token.substr(1), flags)) {
    *skip = 1;
    return result::line_bad;
  }
  apply_channel_mode(4, flags, settings().grass_valley_channel_mode, entry);
  return result::line_good;
}

void CGrassValleyEdl::parse_transition_length(CGenericEdlEntry* entry, std::u16string_view token) {
  text::take_seconds_and_frames(*this, token, *entry);
}

void CGrassValleyEdl::parse_audio_line(CGenericEdlEntry* entry, const wide_char* text) {
  take_fcm_or_comment(entry, text, settings().grass_valley_mapping_comments);
}

result_code CGrassValleyEdl::write_channels(CTextFile& file, const CGenericEdlEntry* entry,
                                            bool* need_comment) {
  *need_comment = false;
  const int first = entry->get_stream(0);
  if (first >= 4) return text::add_column(file, u"A\t");
  const std::u16string channel = u"A" + decimal(first + 1);
  return text::add_column(
      file, entry->no_streams == 1 ? channel + u"    " : channel + decimal(first + 2) + u"  ");
}

result_code CGrassValleyEdl::write_audio_comment(CTextFile& file, const CGenericEdlEntry* entry) {
  const result_code code = text::add_column(file, text::channel_note(*entry));
  return code == result::done ? file.flush_line() : code;
}

result_code CGrassValleyEdl::write_transition(CTextFile& file, const CGenericEdlEntry* entry) {
  return text::add_column(file, text::seconds_transition(*this, *entry));
}
