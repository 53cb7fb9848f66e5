// Reads an audio decision list that stands in memory into records: the sections, the
// sources and the events. Every parser answers 0 or the number of the message that
// says what is wrong, and leaves the place of the fault in error_position.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "adl/list_tokens.h"
#include "host/framework/ob_list.h"
#include "native/generic_edl_file_chunks.h"

namespace adl {

using Message = std::uint32_t;
inline constexpr Message no_message = 0;

enum Section : std::size_t {
  section_version,
  section_project,
  section_system,
  section_sequence,
  section_tracklist,
  section_source_index,
  section_event_list,
  section_fader_list,
  section_mute_list,
  section_pan_list,
  section_count,
};
inline constexpr std::uint32_t section_not_seen = 0xFFFFFFFF;

// What a list is read into, and what the reader must know. Not owned.
struct ListRecords {
  // New sources go to the head; they are found by their number and not by their place.
  CObList& sources;
  // In rising order of their destination once they are all read.
  CObList& events;
  CObList& automation;
  bool sd2_sources = false;
  bool interchange_sources = false;
  // The number that the list gives each source, by its place.
  std::vector<std::uint32_t> source_numbers = {};
  // Even.
  std::int64_t crossfade_length = 0;
  // Byte offset of the next report row.
  std::uint32_t error_position = 0;
  std::uint32_t section_positions[section_count] = {};
  // Called with both rates, as indices, when the start of the sequence is read.
  std::function<void(std::uint8_t frame_rate, std::int8_t sample_rate_index)> set_rates = {};
  // Called for what is dropped while reading goes on.
  std::function<void(Message)> warn = {};
};

class ListParser {
 public:
  // Both must outlive this object.
  ListParser(std::string_view list, ListRecords& records);

  // Finds the sections. parse_sections then reads them in the order in which they
  // build on each other, whatever their order in the list.
  [[nodiscard]] Message scan_sections();
  [[nodiscard]] Message parse_sections();

  // Each started behind its opening tag.
  [[nodiscard]] Message parse_system_section(std::size_t position);
  [[nodiscard]] Message parse_sequence_section(std::size_t position);
  [[nodiscard]] Message parse_source_index(std::size_t position);
  [[nodiscard]] Message parse_event_list(std::size_t position);
  [[nodiscard]] Message parse_fader_list(std::size_t position);
  [[nodiscard]] Message parse_mute_list(std::size_t position);
  [[nodiscard]] Message parse_pan_list(std::size_t position);

 private:
  [[nodiscard]] Message fail(Message message, std::size_t position);
  [[nodiscard]] Message is_complete(std::size_t position);
  [[nodiscard]] Message take_section(Token tag, std::size_t& position);
  [[nodiscard]] Message take_crossfade_length(Token value, std::size_t position);
  [[nodiscard]] Message take_start(Token value);
  template <class Take>
  [[nodiscard]] Message walk_entries(std::size_t position, std::string_view keyword,
                                     std::string_view closing_tag, Message no_end, Take take);
  [[nodiscard]] Message parse_index_entry(const std::vector<Token>& tokens, std::size_t position);
  [[nodiscard]] bool allows_extension(std::string_view extension) const;

  std::string_view m_list;
  ListRecords& m_records;
  // Of the entry that is read.
  std::vector<Token> m_tokens;
};

// The characters of bytes of a list, each byte for itself.
[[nodiscard]] std::u16string widened(std::string_view bytes);
// The same of a word, in upper case where it looks like a keyword.
[[nodiscard]] std::u16string widened_token(Token token);

// Places a new source at the head; its number is the count of those before it.
// Answers no_message, or that of a path that is too long.
[[nodiscard]] Message add_source(CObList& sources, std::string_view path, std::uint16_t source_type,
                                 CGenericEDLFileTrack** added);

// Reads the events of one list, entry by entry, into `records`.
class EventParser {
 public:
  explicit EventParser(ListRecords& records);

  // One entry from its number on. `position` is where it stands.
  [[nodiscard]] Message parse_event(const std::vector<Token>& tokens, std::size_t position);

 private:
  struct Event;
  struct FadeForm;

  [[nodiscard]] Message parse_cut(Event& event);
  [[nodiscard]] Message parse_source(Event& event, Token kind, Token source);
  [[nodiscard]] Message parse_indexed_source(Event& event, Token source);
  [[nodiscard]] Message parse_inline_source(Event& event, Token source);
  [[nodiscard]] Message parse_channels(Event& event);
  [[nodiscard]] Message parse_times(Event& event);
  [[nodiscard]] Message parse_fade(Event& event, const FadeForm& form);
  [[nodiscard]] Message parse_remark(Event& event);
  [[nodiscard]] Message parse_gain(Event& event);
  [[nodiscard]] std::uint16_t curve_of(const std::array<double, 3>& levels);
  void pass_unknown();
  [[nodiscard]] Message parse_field(Event& event);
  void add_event(Event& event);
  // The word behind the current one, which it becomes; empty at the end.
  std::optional<Token> next();
  [[nodiscard]] bool at_end() const { return m_at >= m_tokens->size(); }
  [[nodiscard]] Token current() const { return (*m_tokens)[m_at]; }

  ListRecords& m_records;
  // By number, the first place.
  std::unordered_map<std::uint32_t, std::uint16_t> m_places;
  std::uint16_t m_infade_curve;
  std::uint16_t m_outfade_curve;
  // By the levels of a fade-in.
  std::map<std::array<double, 3>, std::uint16_t> m_curves;
  // Streams of all events so far.
  std::uint64_t m_streams = 0;
  const std::vector<Token>* m_tokens = nullptr;
  std::size_t m_at = 0;
};

}  // namespace adl
