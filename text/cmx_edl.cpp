#include "text/cmx_edl.h"

#include <algorithm>
#include <array>

#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "text/event_line.h"
#include "text/line_cursor.h"

namespace {

// A reel of this many characters and more is not available to these formats.
constexpr std::size_t long_reel = 11;

// Channel fields and the audio fields (from 0) that they name.
struct ChannelField {
  std::u16string_view token;
  std::array<int, 4> flags;
};
constexpr std::array<ChannelField, 7> channel_fields = {{
    {u"A", {1, 0, 0, 0}},
    {u"B", {1, 0, 0, 0}},
    {u"AA", {1, 1, 0, 0}},
    {u"A2", {0, 1, 0, 0}},
    {u"AA/V", {1, 1, 0, 0}},
    {u"A2/V", {0, 1, 0, 0}},
    {u"NONE", {0, 0, 0, 0}},
}};

constexpr bool is_known_length(std::size_t length) {
  return length == 1 || length == 2 || length == 4;
}

std::u16string_view channel_token(LineCursor&& line) {
  const std::u16string_view number = line.next();
  if (!text::numbers_an_event(number)) return {};
  line.next();
  return line.next();
}

template <class Entry>
void take_head(LineCursor& line, Entry& entry) {
  const std::u16string_view number = line.next();
  if (all_digits(number)) entry.event_number = event_number_value(number);
  std::u16string_view reel = line.next();
  if (reel.empty()) return;
  if (reel.size() >= long_reel) reel = u"N/A";
  entry.set_reel_name(reel);
  entry.set_source_reel_name(reel);
}

// Fields of an "AUD" note: the first of them and how many; a width of 0 is none.
struct NotedFields {
  int first = 0;
  int width = 0;
};

NotedFields noted_fields(std::u16string_view first, std::u16string_view second,
                         bool on_second_stream) {
  if (first.starts_with(u'4')) return {3, 1};
  if (!first.starts_with(u'3')) return {};
  if (second.empty()) return on_second_stream ? NotedFields{1, 2} : NotedFields{2, 1};
  return second.starts_with(u'4') ? NotedFields{2, 2} : NotedFields{};
}

}  // namespace

CCMXEdl::CCMXEdl(unsigned char max_channels, CGenericEdl* parent, int interactive)
    : CTextEdl(parent, interactive), max_channels_(max_channels) {}

result_code CCMXEdl::import_edl(const wide_char* path) {
  const result_code code = CTextEdl::import_edl(path);
  if (code != result::import_complete) return code;
  fold_black_edits();
  if (merge_channels_wanted() != 0) {
    sort_by_dest_in();
    merge_into_n_channel_entries();
    fold_crossfades();
  } else {
    fold_crossfades();
    sort_by_dest_in();
  }
  return code;
}

unsigned short CCMXEdl::get_first_stream(const CGenericEdlEntry* entry) const {
  return settings().cmx_use_first_channel != 0 ? entry->first_channel : entry->get_stream(0);
}

int CCMXEdl::get_format_name(wide_char* out) const {
  copy_text(out, format_name_size, max_channels_ == 2 ? u"CMX 340 2-Ch" : u"CMX 3600 4-Ch");
  return 1;
}

int CCMXEdl::merge_channels_wanted() const {
  return settings().cmx_merge_channels;
}

int CCMXEdl::cuts_only_wanted() const {
  return settings().cmx_cuts_only;
}

int CCMXEdl::is_audio_event(const wide_char* text) {
  const std::u16string_view channels = channel_token(cursor_of(text));
  return !channels.empty() && is_audio_field(channels) != 0 ? 1 : 0;
}

int CCMXEdl::is_video_event(const wide_char* text) {
  const std::u16string_view channels = channel_token(cursor_of(text));
  return !channels.empty() && is_video_field(channels) != 0 ? 1 : 0;
}

int CCMXEdl::is_audio_field(std::u16string_view token) const {
  switch (token.size()) {
    case 1:
      return token[0] == u'A' || token[0] == u'B' ? 1 : 0;
    case 2:
      return token[0] == u'A' ? 1 : 0;
    case 4:
      return token[0] == u'A' || token == u"NONE" ? 1 : 0;
    default:
      return 0;
  }
}

int CCMXEdl::is_video_field(std::u16string_view token) const {
  switch (token.size()) {
    case 1:
      return token[0] == u'V' || token[0] == u'B' ? 1 : 0;
    case 4:
      return token[3] == u'V' || token[3] == u'B' ? 1 : 0;
    default:
      return 0;
  }
}

result_code CCMXEdl::parse_channels(CGenericEdlEntry* entry, std::u16string_view token, int* skip) {
  *skip = 0;
  if (!is_known_length(token.size())) {
    *skip = 1;
    return result::line_bad;
  }
  int flags[4] = {};
  const auto* const field =
      std::find_if(channel_fields.begin(), channel_fields.end(),
                   [token](const ChannelField& f) { return f.token == token; });
  if (field == channel_fields.end()) {
    *skip = 1;
  } else {
    std::copy(field->flags.begin(), field->flags.end(), flags);
  }
  apply_channels(flags, settings().cmx_channel_mode, entry);
  return result::line_good;
}

void CCMXEdl::apply_channels(const int (&flags)[4], unsigned mode, CGenericEdlEntry* entry) const {
  if (const std::uint16_t* const map = settings().channel_map; map != nullptr) {
    apply_mapped_channels(4, flags, map, entry);
  } else {
    apply_channel_mode(4, flags, mode, entry);
  }
}

void CCMXEdl::parse_transition_length(CGenericEdlEntry* entry, std::u16string_view token) {
  if (!all_digits(token)) return;
  entry->fade_in_length = frames_to_samples(digits_value(token));
  entry->fade_out_length = 0;
}

void CCMXEdl::take_number_and_reel(LineCursor& line, CGenericEdlEntry& entry) {
  take_head(line, entry);
}

void CCMXEdl::take_number_and_reel(LineCursor& line, CGenericEdlVideoEntry& entry) {
  take_head(line, entry);
}

result_code CCMXEdl::parse_event(CGenericEdlEntry* entry, const wide_char* text, int* skip) {
  LineCursor line = cursor_of(text);
  take_number_and_reel(line, *entry);
  if (parse_channels(entry, line.next(), skip) == result::line_bad) return result::line_bad;
  const std::u16string_view transition = line.next();
  const bool wipe = transition.starts_with(u'W');
  if (wipe || transition.starts_with(u'D')) {
    entry->transition_type = transition_dissolve;
    // A wipe's number stands in front of its length.
    if (wipe) line.next();
    parse_transition_length(entry, line.next());
  } else {
    entry->transition_type = transition_cut;
    entry->fade_in_length = entry->fade_out_length = settings().default_fade_length;
  }
  bool negative = false;
  read_four_times(entry, line, &negative);
  entry->update_reel_frame_rate();
  return negative ? result::negative_time : result::line_good;
}

result_code CCMXEdl::parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) {
  LineCursor line = cursor_of(text);
  take_number_and_reel(line, *entry);
  line.next();
  const std::u16string_view transition = line.next();
  const bool wipe = transition.starts_with(u'W');
  if (wipe) line.next();
  if (wipe || transition.starts_with(u'D')) line.next();
  entry->transition_type = transition_cut;
  read_four_times(entry, line);
  return result::line_good;
}

void CCMXEdl::parse_audio_line(CGenericEdlEntry* entry, const wide_char* text) {
  LineCursor line = cursor_of(text);
  if (line.next() == u"AUD") {
    take_aud_line(entry, line.rest());
  } else {
    take_fcm_or_comment(entry, text, settings().cmx_mapping_comments);
  }
}

void CCMXEdl::take_aud_line(CGenericEdlEntry* entry, std::u16string_view rest) {
  LineCursor line(rest);
  const std::u16string_view first = line.next();
  if (entry == nullptr || first.empty()) return;
  const NotedFields noted = noted_fields(first, line.next(), entry->get_stream(0) == 1);
  int flags[4] = {};
  std::fill_n(flags + noted.first, noted.width, 1);
  apply_channels(flags, settings().cmx_channel_mode, entry);
}

void CCMXEdl::parse_video_line(CGenericEdlVideoEntry* /*entry*/, const wide_char* text) {
  LineCursor line = cursor_of(text);
  const std::u16string_view word = line.next();
  static_cast<void>(parse_fcm(word, line.rest()));
}
