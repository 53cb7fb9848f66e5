// CMX 340 and CMX 3600. Lists by other makers have no "FORMAT:" in their title, so
// they are known by the shape of an event line.
#include <algorithm>

#include "formats/format_rows.h"
#include "text/cmx_edl.h"

namespace {

bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

bool is_digit_char(char c) {
  return c >= '0' && c <= '9';
}

std::vector<std::string_view> words_of(std::string_view line) {
  std::vector<std::string_view> words;
  for (std::size_t at = 0; at < line.size();) {
    while (at < line.size() && is_blank(line[at]))
      ++at;
    const std::size_t start = at;
    while (at < line.size() && !is_blank(line[at]))
      ++at;
    if (at > start) words.push_back(line.substr(start, at - start));
  }
  return words;
}

// "HH:MM:SS:FF" with any of the usual separators.
bool is_time_code(std::string_view word) {
  if (word.size() != 11) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    const bool separator = i % 3 == 2;
    if (separator ? std::string_view(":;.,").find(word[i]) == std::string_view::npos
                  : !is_digit_char(word[i])) {
      return false;
    }
  }
  return true;
}

// Number, reel, channels, transition, perhaps its length, and four time codes.
bool is_event_line(std::string_view line) {
  const std::vector<std::string_view> words = words_of(line);
  if (words.size() < 8 || !std::all_of(words[0].begin(), words[0].end(), is_digit_char)) {
    return false;
  }
  for (std::size_t i = 4; i + 4 <= words.size() && i <= 6; ++i) {
    if (std::all_of(words.begin() + static_cast<std::ptrdiff_t>(i),
                    words.begin() + static_cast<std::ptrdiff_t>(i) + 4, is_time_code)) {
      return true;
    }
  }
  return false;
}

bool has_event_line(std::string_view head) {
  while (!head.empty()) {
    const std::size_t end = std::min(head.find_first_of("\r\n"), head.size());
    if (is_event_line(head.substr(0, end))) return true;
    head.remove_prefix(std::min(end + 1, head.size()));
  }
  return false;
}

bool names_format(std::string_view head, std::string_view format) {
  const std::size_t line_end = head.find_first_of("\r\n");
  return head.substr(0, line_end).find(format) != std::string_view::npos;
}

HeadMatch match_cmx340(std::string_view head) {
  return names_format(head, "FORMAT: CMX 340") ? HeadMatch::certain : HeadMatch::none;
}

HeadMatch match_cmx3600(std::string_view head) {
  if (names_format(head, "FORMAT: CMX 3600")) return HeadMatch::certain;
  return has_event_line(head) ? HeadMatch::possible : HeadMatch::none;
}

// An "FCM:" line in front of the first event.
bool head_states_frame_rate(std::string_view head) {
  while (!head.empty()) {
    const std::size_t end = std::min(head.find_first_of("\r\n"), head.size());
    const std::vector<std::string_view> words = words_of(head.substr(0, end));
    if (words.size() > 1 && words[0].starts_with("FCM:") &&
        (words[1] == "DROP" || words[1] == "NON-DROP")) {
      return true;
    }
    if (!words.empty() && std::all_of(words[0].begin(), words[0].end(), is_digit_char)) {
      return false;
    }
    head.remove_prefix(std::min(end + 1, head.size()));
  }
  return false;
}

template <unsigned char channels>
std::unique_ptr<CGenericEdl> make_cmx(CGenericEdl* parent, int interactive, const FormatOptions&) {
  return std::make_unique<CCMXEdl>(channels, parent, interactive);
}

}  // namespace

FormatRow cmx340_row() {
  FormatRow row;
  row.name = "cmx340";
  row.title = "CMX 340, two channels";
  row.extensions = {".cmx"};
  row.make = make_cmx<2>;
  row.match = match_cmx340;
  row.states_sample_rate = never_stated;
  row.states_frame_rate = head_states_frame_rate;
  row.outputs = single_output;
  return row;
}

FormatRow cmx3600_row() {
  FormatRow row = cmx340_row();
  row.name = "cmx3600";
  row.title = "CMX 3600, four channels";
  row.extensions = {".edl"};
  row.make = make_cmx<4>;
  row.match = match_cmx3600;
  return row;
}
