// Reads the entries of an event list.
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>

#include "adl/adl_time_code.h"
#include "adl/fade_curves.h"
#include "adl/list_parser.h"
#include "adl/source_url.h"
#include "host/application.h"
#include "host/host.h"
#include "host/string_ids.h"
#include "native/record_transfer.h"

namespace adl {

struct EventParser::Event {
  bool has_cut = false;
  bool has_infade = false;
  bool has_outfade = false;
  bool has_gain = false;
  // Its source is not in the index, so it is passed over.
  bool is_dropped = false;
  std::unique_ptr<CGenericEDLFileEntry> record;
  std::int64_t dest_out = time_not_given;
};

// The two kinds of fades.
struct EventParser::FadeForm {
  std::string_view keyword;
  bool Event::*has;
  std::int64_t CGenericEDLFileEntry::*length;
  std::uint16_t CGenericEDLFileEntry::*curve;
  // Levels stand from the end of the fade.
  bool is_mirrored;
  Message twice;
  Message no_time;
  Message bad_time;
  Message bad_shape;
};

namespace {

constexpr std::uint16_t wave_file = 2;
constexpr std::uint32_t mute_flag = 1;
// What an entry of a number and nothing else ends with, by which the text of the row
// is loaded like any other.
constexpr Message entry_of_a_number = 1;
constexpr std::size_t shape_parameters = 3;
constexpr std::size_t skipped_behind_fade = 3;

struct Channels {
  std::uint16_t first = 0;
  std::uint16_t count = 1;
  bool is_range = false;
};

// "3", "3~4" or "3-4", from 1. Empty for another form, and for a range without width.
std::optional<Channels> parse_channel_range(Token token) {
  constexpr std::int64_t most = 2147483647;
  const std::size_t separator = token.find_first_of("~-");
  const Token first = token.substr(0, separator);
  const bool is_range = separator != Token::npos;
  const Token last = is_range ? token.substr(separator + 1) : Token();
  // Of a range one end may be missing, but not both.
  const auto may_be_number = [](Token end) { return end.empty() || all_digits(end); };
  if (first.empty() && last.empty()) return std::nullopt;
  if (!may_be_number(first) || !may_be_number(last)) return std::nullopt;
  Channels channels;
  channels.first = channel_number(first);
  if (!is_range) return channels;
  const std::int64_t width = limited_number(last, most) - limited_number(first, most) + 1;
  if (width < 1 || width > 65535) return std::nullopt;
  channels.count = static_cast<std::uint16_t>(width);
  channels.is_range = true;
  return channels;
}

std::optional<std::int64_t> parse_time(Token token) {
  std::uint32_t sample_rate = 0;
  std::uint8_t frame_rate = 0;
  if (token.size() != time_code_length) return std::nullopt;
  const std::int64_t samples =
      parse_time_code(token.data(), time_code_places, sample_rate, frame_rate);
  return samples == invalid_time_code ? std::nullopt : std::optional(samples);
}

std::unique_ptr<CGenericEDLFileEntry> new_record(std::uint16_t infade_curve,
                                                 std::uint16_t outfade_curve) {
  auto record = std::make_unique<CGenericEDLFileEntry>();
  record->m_dest_in = record->m_source_in = time_not_given;
  record->m_fade_in_length = record->m_fade_out_length = time_not_given;
  record->m_fade_in_curve = infade_curve;
  record->m_fade_out_curve = outfade_curve;
  record->m_stream_count = 1;
  return record;
}

}  // namespace

EventParser::EventParser(ListRecords& records)
    : m_records(records),
      m_infade_curve(host().application().get_default_infade_curve()),
      m_outfade_curve(host().application().get_default_outfade_curve()) {
  for (std::size_t place = 0; place < records.source_numbers.size(); ++place)
    m_places.emplace(records.source_numbers[place], static_cast<std::uint16_t>(place));
}

std::optional<Token> EventParser::next() {
  ++m_at;
  return at_end() ? std::nullopt : std::optional(current());
}

Message EventParser::parse_event(const std::vector<Token>& tokens, std::size_t position) {
  m_tokens = &tokens;
  m_at = 0;
  if (tokens.empty()) return string_id::adl_entry_ended;
  if (!all_digits(tokens[0])) return string_id::adl_entry_number;
  if (!next()) return entry_of_a_number;
  Event event;
  event.record = new_record(m_infade_curve, m_outfade_curve);
  const auto warn_of_source = [&] {
    m_records.error_position = static_cast<std::uint32_t>(position);
    m_records.warn(string_id::adl_source_unknown);
  };
  while (!at_end()) {
    if (const Message message = parse_field(event); message != no_message) return message;
    if (event.is_dropped) {
      warn_of_source();
      return no_message;
    }
  }
  const CGenericEDLFileEntry& record = *event.record;
  if (event.has_infade && event.has_outfade &&
      record.m_fade_in_length + record.m_fade_out_length > record.m_length) {
    return string_id::adl_fades_too_long;
  }
  if (record.m_track_index == no_track_index) warn_of_source();
  add_event(event);
  return no_message;
}

// The field of the current word; the one behind it becomes the current word.
Message EventParser::parse_field(Event& event) {
  static constexpr FadeForm fades[] = {
      {"(INFADE)", &Event::has_infade, &CGenericEDLFileEntry::m_fade_in_length,
       &CGenericEDLFileEntry::m_fade_in_curve, false, string_id::adl_two_infades,
       string_id::adl_infade_no_time, string_id::adl_infade_time, string_id::adl_infade_shape},
      {"(OUTFADE)", &Event::has_outfade, &CGenericEDLFileEntry::m_fade_out_length,
       &CGenericEDLFileEntry::m_fade_out_curve, true, string_id::adl_two_outfades,
       string_id::adl_outfade_no_time, string_id::adl_outfade_time, string_id::adl_outfade_shape}};
  const Token keyword = current();
  if (is_keyword(keyword, "(CUT)")) return parse_cut(event);
  for (const FadeForm& form : fades) {
    if (is_keyword(keyword, form.keyword)) return parse_fade(event, form);
  }
  if (is_keyword(keyword, "(REM)")) return parse_remark(event);
  if (is_keyword(keyword, "(GAIN)")) return parse_gain(event);
  pass_unknown();
  return no_message;
}

Message EventParser::parse_cut(Event& event) {
  if (event.has_cut) return string_id::adl_two_cuts;
  event.has_cut = true;
  const auto kind = next();
  if (!kind) return string_id::adl_cut_no_kind;
  if (*kind != "I" && *kind != "F") return string_id::adl_cut_kind;
  const auto source = next();
  if (!source) return string_id::adl_cut_no_source;
  Message message = parse_source(event, *kind, *source);
  if (message == no_message && !event.is_dropped) message = parse_channels(event);
  if (message == no_message && !event.is_dropped) message = parse_times(event);
  if (message != no_message || event.is_dropped) return message;
  const auto mode = next();
  if (!mode) return string_id::adl_entry_ended;
  if (mode->size() != 1) return string_id::adl_mode;
  if (*mode == "M") event.record->m_flags |= mute_flag;
  next();
  return no_message;
}

Message EventParser::parse_source(Event& event, Token kind, Token source) {
  return kind == "I" ? parse_indexed_source(event, source) : parse_inline_source(event, source);
}

// The low 16 bits of the number are held against the whole numbers of the index.
Message EventParser::parse_indexed_source(Event& event, Token source) {
  if (!all_digits(source)) return string_id::adl_cut_source_number;
  const auto at = m_places.find(wrapped_number(source) & 0xFFFFU);
  event.is_dropped = at == m_places.end();
  if (!event.is_dropped) event.record->m_track_index = at->second;
  return no_message;
}

// Each such event has a source of its own.
Message EventParser::parse_inline_source(Event& event, Token source) {
  const auto url = parse_source_url(source);
  if (!url) return string_id::adl_url;
  if (!url->extension.empty() && url->extension != ".WAV" && url->extension != ".BWF")
    return string_id::adl_extension;
  CGenericEDLFileTrack* added = nullptr;
  const Message message = add_source(m_records.sources, url->path, wave_file, &added);
  if (message == no_message) event.record->m_track_index = added->m_index;
  return message;
}

Message EventParser::parse_channels(Event& event) {
  const auto source = next();
  if (!source) return string_id::adl_entry_ended;
  const auto from = parse_channel_range(*source);
  if (!from) return string_id::adl_source_channels;
  const auto destination = next();
  if (!destination) return string_id::adl_entry_ended;
  const auto to = parse_channel_range(*destination);
  if (!to || m_streams + to->count > native::most_stream_words)
    return string_id::adl_destination_channels;
  if (from->is_range != to->is_range || from->count != to->count)
    return string_id::adl_channels_differ;
  m_streams += to->count;
  event.record->m_channel_offset = from->first;
  event.record->m_first_stream = to->first;
  event.record->m_stream_count = to->count;
  return no_message;
}

Message EventParser::parse_times(Event& event) {
  struct Time {
    std::int64_t* to;
    Message bad;
  };
  const Time times[] = {{&event.record->m_source_in, string_id::adl_source_in},
                        {&event.record->m_dest_in, string_id::adl_destination_in},
                        {&event.dest_out, string_id::adl_destination_out}};
  for (const Time& time : times) {
    const auto token = next();
    if (!token) return string_id::adl_entry_ended;
    const auto samples = parse_time(*token);
    if (!samples) return time.bad;
    *time.to = *samples;
  }
  if (event.record->m_dest_in > event.dest_out) return string_id::adl_destination_order;
  event.record->m_length = event.dest_out - event.record->m_dest_in;
  return no_message;
}

Message EventParser::parse_fade(Event& event, const FadeForm& form) {
  if (event.*form.has) return form.twice;
  event.*form.has = true;
  const auto time = next();
  if (!time) return form.no_time;
  const auto length = parse_time(*time);
  if (!length) return form.bad_time;
  (*event.record).*form.length = *length;
  const auto shape = next();
  const bool is_curve = shape && is_keyword(*shape, "CURVE");
  if (!is_curve && !(shape && is_keyword(*shape, "LIN"))) return form.bad_shape;
  std::array<double, shape_parameters> levels{};
  for (double& level : levels) {
    const auto parameter = next();
    if (!parameter || (is_curve && !is_decimal_number(*parameter))) return form.bad_shape;
    level = is_curve ? decimal_number(*parameter) : 0.0;
  }
  if (form.is_mirrored) std::swap(levels.front(), levels.back());
  (*event.record).*form.curve = is_curve ? curve_of(levels) : std::uint16_t{0};
  // Words behind the parameters are skipped, a repeated keyword among them.
  next();
  for (std::size_t i = 0; i < skipped_behind_fade && !at_end(); ++i, next()) {
    if (current().starts_with('(') && !is_keyword(current(), form.keyword)) break;
  }
  return no_message;
}

// Lists repeat few shapes, so each is sought once.
std::uint16_t EventParser::curve_of(const std::array<double, 3>& levels) {
  constexpr std::size_t most_kept = 1024;
  if (m_curves.size() >= most_kept) m_curves.clear();
  const auto [at, is_new] = m_curves.try_emplace(levels, std::uint16_t{0});
  if (is_new) at->second = fade_curve_from_levels({levels[0], levels[1], levels[2]});
  return at->second;
}

Message EventParser::parse_remark(Event& event) {
  const auto word = next();
  if (!word) return no_message;
  const bool is_name = is_keyword(*word, "NAME");
  if (!is_name && !is_keyword(*word, "SOURCE") && !is_keyword(*word, "DESC") &&
      !is_keyword(*word, "USER")) {
    return string_id::adl_remark;
  }
  const auto text = next();
  if (text && is_name) event.record->set_name(widened_token(*text));
  next();
  return no_message;
}

// In decibels, in single precision throughout.
Message EventParser::parse_gain(Event& event) {
  if (event.has_gain) return string_id::adl_two_gains;
  event.has_gain = true;
  const auto unused = next();
  const auto value = unused ? next() : std::nullopt;
  if (!value) return string_id::adl_entry_ended;
  if (!is_decimal_number(*value)) return string_id::adl_gain;
  // Beyond these the level is no number or 0 all the same.
  const auto db = static_cast<float>(std::clamp(decimal_number(*value), -1e9, 1e9));
  event.record->m_level = std::pow(10.0F, db * 0.05F);
  next();
  return no_message;
}

void EventParser::pass_unknown() {
  while (next() && !current().starts_with('(')) {
  }
}

void EventParser::add_event(Event& event) {
  m_records.events.AddTail(event.record.get());
  static_cast<void>(event.record.release());
}

}  // namespace adl
