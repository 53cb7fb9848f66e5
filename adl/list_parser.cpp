#include "adl/list_parser.h"

#include <algorithm>
#include <memory>

#include "adl/adl_time_code.h"
#include "adl/source_url.h"
#include "host/code_page.h"
#include "host/host.h"
#include "host/rates.h"
#include "host/string_ids.h"
#include "native/record_transfer.h"

namespace adl {

namespace {

constexpr std::uint16_t sd2_file = 7;
constexpr std::uint16_t broadcast_wave_file = 11;
constexpr std::size_t umid_length = 32;

struct SectionForm {
  std::string_view tag;
  Message twice;
  Message open;
};

// In the order of Section.
constexpr SectionForm section_forms[section_count] = {
    {"<VERSION>", string_id::adl_version_twice, string_id::adl_version_open},
    {"<PROJECT>", string_id::adl_project_twice, string_id::adl_project_open},
    {"<SYSTEM>", string_id::adl_system_twice, string_id::adl_system_open},
    {"<SEQUENCE>", string_id::adl_sequence_twice, string_id::adl_sequence_open},
    {"<TRACKLIST>", string_id::adl_tracklist_twice, string_id::adl_tracklist_open},
    {"<SOURCE_INDEX>", string_id::adl_source_index_twice, string_id::adl_source_index_open},
    {"<EVENT_LIST>", string_id::adl_event_list_twice, string_id::adl_event_list_open},
    {"<FADER_LIST>", string_id::adl_fader_list_twice, string_id::adl_fader_list_open},
    {"<MUTE_LIST>", string_id::adl_mute_list_twice, string_id::adl_mute_list_open},
    {"<PAN_LIST>", string_id::adl_pan_list_twice, string_id::adl_pan_list_open},
};

std::int64_t made_even(std::int64_t length) {
  return length % 2 == 0 ? length : length - 1;
}

}  // namespace

std::u16string widened(std::string_view bytes) {
  const CodePage& page = host().code_page();
  std::u16string text;
  text.reserve(bytes.size());
  if (const CodePage::ByteTable* const table = page.byte_table(); table != nullptr) {
    for (const char c : bytes)
      text.push_back((*table)[static_cast<unsigned char>(c)]);
  } else {
    for (std::size_t i = 0; i < bytes.size(); ++i)
      page.decode(bytes.substr(i, 1), text);
  }
  return text;
}

std::u16string widened_token(Token token) {
  std::u16string text = widened(token);
  if (opens_keyword(token)) std::transform(text.begin(), text.end(), text.begin(), upper_case);
  return text;
}

Message add_source(CObList& sources, std::string_view path, std::uint16_t source_type,
                   CGenericEDLFileTrack** added) {
  if (path.size() >= path_places) return string_id::adl_url;
  auto source = std::make_unique<CGenericEDLFileTrack>();
  source->m_source_type = source_type;
  source->set_path(widened(path));
  source->set_file_name(widened(file_name_of(path)));
  source->m_index = static_cast<std::uint16_t>(sources.GetCount());
  sources.AddHead(source.get());
  CGenericEDLFileTrack* const kept = source.release();
  if (added != nullptr) *added = kept;
  return no_message;
}

ListParser::ListParser(std::string_view list, ListRecords& records)
    : m_list(list), m_records(records) {}

Message ListParser::fail(Message message, std::size_t position) {
  m_records.error_position = static_cast<std::uint32_t>(position);
  return message;
}

Message ListParser::take_section(Token tag, std::size_t& position) {
  Message open = string_id::adl_unknown_section_open;
  for (std::size_t i = 0; i < section_count; ++i) {
    if (!is_keyword(tag, section_forms[i].tag)) continue;
    if (m_records.section_positions[i] != section_not_seen)
      return fail(section_forms[i].twice, position);
    m_records.section_positions[i] = static_cast<std::uint32_t>(position);
    open = section_forms[i].open;
  }
  return skip_section(m_list, position, tag) ? no_message : fail(open, position);
}

Message ListParser::is_complete(std::size_t position) {
  for (const Section section : {section_version, section_project, section_sequence}) {
    if (m_records.section_positions[section] == section_not_seen)
      return fail(string_id::adl_section_missing, position);
  }
  return no_message;
}

Message ListParser::scan_sections() {
  std::fill(std::begin(m_records.section_positions), std::end(m_records.section_positions),
            section_not_seen);
  std::size_t position = 0;
  Token token;
  do {
    if (!get_next_token(m_list, position, token)) return fail(string_id::adl_no_adl, position);
  } while (!is_keyword(token, "<ADL>"));
  while (position < m_list.size() && !is_keyword(token, "</ADL>")) {
    if (!get_next_token(m_list, position, token)) continue;
    if (!token.starts_with('<') || !token.ends_with('>') || is_keyword(token, "</ADL>")) continue;
    if (const Message message = take_section(token, position); message != no_message)
      return message;
  }
  return is_complete(position);
}

Message ListParser::parse_sections() {
  struct Parser {
    Section section;
    Message (ListParser::*parse)(std::size_t);
  };
  static constexpr Parser parsers[] = {
      {section_system, &ListParser::parse_system_section},
      {section_sequence, &ListParser::parse_sequence_section},
      {section_source_index, &ListParser::parse_source_index},
      {section_event_list, &ListParser::parse_event_list},
      {section_fader_list, &ListParser::parse_fader_list},
      {section_mute_list, &ListParser::parse_mute_list},
      {section_pan_list, &ListParser::parse_pan_list},
  };
  for (const Parser& parser : parsers) {
    const std::uint32_t position = m_records.section_positions[parser.section];
    if (position == section_not_seen && parser.section != section_sequence) continue;
    if (const Message message = (this->*parser.parse)(position); message != no_message)
      return message;
  }
  return no_message;
}

Message ListParser::parse_system_section(std::size_t position) {
  Token token;
  while (position < m_list.size() && !is_keyword(token, "</SYSTEM>")) {
    static_cast<void>(get_next_token(m_list, position, token));
    if (!is_keyword(token, "(SYS_XFADE_LEN)")) continue;
    if (!get_next_token(m_list, position, token))
      return fail(string_id::adl_token_expected, position);
    if (const Message message = take_crossfade_length(token, position); message != no_message)
      return message;
    token = {};
  }
  return no_message;
}

// A time code or a count of samples. A count that is none does not tell its place.
Message ListParser::take_crossfade_length(Token value, std::size_t position) {
  std::int64_t length = 0;
  if (value.size() == time_code_length) {
    std::uint32_t sample_rate = 0;
    std::uint8_t frame_rate = 0;
    length = parse_time_code(value.data(), time_code_places, sample_rate, frame_rate);
    if (length == invalid_time_code) return fail(string_id::adl_crossfade_length, position);
  } else {
    if (!all_digits(value)) return string_id::adl_crossfade_length;
    length = limited_number(value, INT64_MAX);
  }
  m_records.crossfade_length = made_even(length);
  return no_message;
}

Message ListParser::parse_sequence_section(std::size_t position) {
  if (position >= m_list.size()) return fail(string_id::adl_no_start, position);
  Token token;
  bool seen = false;
  while (position < m_list.size() && !is_keyword(token, "</SEQUENCE>")) {
    static_cast<void>(get_next_token(m_list, position, token));
    if (!is_keyword(token, "(SEQ_DEST_START)")) continue;
    if (!get_next_token(m_list, position, token))
      return fail(string_id::adl_token_expected, position);
    if (const Message message = take_start(token); message != no_message)
      return fail(message, position);
    seen = true;
    token = {};
  }
  if (!seen) return fail(string_id::adl_no_start, position);
  return is_keyword(token, "</SEQUENCE>") ? no_message
                                          : fail(string_id::adl_sequence_end, position);
}

// Only the rates of the time count.
Message ListParser::take_start(Token value) {
  std::uint32_t sample_rate = 0;
  std::uint8_t frame_rate = 0;
  if (value.size() != time_code_length ||
      parse_time_code(value.data(), time_code_places, sample_rate, frame_rate) ==
          invalid_time_code) {
    return string_id::adl_bad_start;
  }
  m_records.set_rates(frame_rate, sample_rate_index_of(sample_rate));
  return no_message;
}

// Calls `take` with the words and the place of each entry that holds any.
template <class Take>
Message ListParser::walk_entries(std::size_t position, std::string_view keyword,
                                 std::string_view closing_tag, Message no_end, Take take) {
  Token token;
  while (position < m_list.size() && !is_keyword(token, closing_tag)) {
    if (!is_keyword(token, keyword) && !get_next_token(m_list, position, token))
      return fail(string_id::adl_token_expected, position);
    if (!is_keyword(token, keyword)) continue;
    const std::size_t entry = position;
    m_tokens.clear();
    do {
      if (!get_next_token(m_list, position, token))
        return fail(string_id::adl_token_expected, position);
      m_tokens.emplace_back(token.data(), token.size());
    } while (!is_keyword(token, keyword) && !is_keyword(token, closing_tag));
    m_tokens.pop_back();
    if (m_tokens.empty()) continue;
    if (const Message message = take(m_tokens, entry); message != no_message)
      return fail(message, entry);
  }
  return is_keyword(token, closing_tag) ? no_message : fail(no_end, position);
}

Message ListParser::parse_source_index(std::size_t position) {
  return walk_entries(position, "(INDEX)", "</SOURCE_INDEX>", string_id::adl_source_index_end,
                      [this](const std::vector<Token>& tokens, std::size_t entry) {
                        return parse_index_entry(tokens, entry);
                      });
}

Message ListParser::parse_event_list(std::size_t position) {
  EventParser events(m_records);
  const Message message =
      walk_entries(position, "(ENTRY)", "</EVENT_LIST>", string_id::adl_event_list_end,
                   [&events](const std::vector<Token>& tokens, std::size_t entry) {
                     return events.parse_event(tokens, entry);
                   });
  native::sort_by_destination(m_records.events);
  return message;
}

// Number, marker, URL, identifier, time stamp; whatever else stands behind them.
Message ListParser::parse_index_entry(const std::vector<Token>& tokens, std::size_t position) {
  enum Field : std::size_t { number, marker, url, umid, time_stamp };
  if (!all_digits(tokens[number])) return string_id::adl_index_number;
  const auto place = static_cast<std::size_t>(m_records.sources.GetCount());
  m_records.source_numbers.resize(place + 1);
  m_records.source_numbers[place] = wrapped_number(tokens[number]);
  if (tokens.size() <= marker) return string_id::adl_index_marker;
  if (m_records.interchange_sources && !is_keyword(tokens[marker], "(F)") &&
      !is_keyword(tokens[marker], "(E)")) {
    return string_id::adl_index_marker;
  }
  if (tokens.size() <= url) return string_id::adl_index_no_url;
  const auto parsed = parse_source_url(tokens[url]);
  if (!parsed) return string_id::adl_url;
  if (!allows_extension(parsed->extension)) return string_id::adl_extension;
  if (tokens.size() <= umid) return string_id::adl_index_no_umid;
  const bool umid_too_long = tokens[umid].size() > umid_length;
  if (umid_too_long) {
    m_records.error_position = static_cast<std::uint32_t>(position);
    m_records.warn(string_id::adl_umid_long);
  }
  std::int64_t stamp = time_not_given;
  if (tokens.size() > time_stamp && tokens[time_stamp].size() == time_code_length) {
    std::uint32_t sample_rate = 0;
    std::uint8_t frame_rate = 0;
    stamp = parse_time_code(tokens[time_stamp].data(), time_code_places, sample_rate, frame_rate);
    if (stamp == invalid_time_code) return string_id::adl_index_time_stamp;
  }
  CGenericEDLFileTrack* source = nullptr;
  const std::uint16_t type = m_records.sd2_sources ? sd2_file : broadcast_wave_file;
  if (const Message message = add_source(m_records.sources, parsed->path, type, &source);
      message != no_message) {
    return message;
  }
  source->m_time_stamp = stamp;
  if (!umid_too_long && tokens[umid] != "_")
    source->set_originator_reference(widened_token(tokens[umid]));
  return no_message;
}

bool ListParser::allows_extension(std::string_view extension) const {
  const bool sd2 = m_records.sd2_sources;
  const bool interchange = m_records.interchange_sources;
  return extension.empty() || extension == ".WAV" || extension == ".BWF" ||
         (extension == ".SD2" && sd2 && !interchange) ||
         (extension == ".OMF" && interchange && !sd2);
}

}  // namespace adl
