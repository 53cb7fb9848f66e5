#include "formats/text_head.h"

#include <algorithm>

namespace formats {

namespace {

constexpr std::string_view line_ends("\r\n");
constexpr std::string_view title_mark("TITLE:");
constexpr std::string_view format_mark("FORMAT:");
constexpr std::string_view byte_order_mark("\xEF\xBB\xBF");

// Number, reel, channels and transition.
constexpr std::size_t first_time_word = 4;
// A wipe's number and a length stand in front of the times.
constexpr std::size_t last_time_word = first_time_word + 2;
constexpr std::size_t times_of_event = 4;

constexpr bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\0';
}

constexpr bool is_digit_char(char c) {
  return c >= '0' && c <= '9';
}

bool is_number(std::string_view word) {
  return std::all_of(word.begin(), word.end(), is_digit_char);
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back()))
    text.remove_suffix(1);
  return text;
}

bool is_event_line(std::string_view line) {
  const std::vector<std::string_view> words = words_of(line);
  if (words.size() < first_time_word + times_of_event || !is_number(words[0])) return false;
  for (std::size_t first = first_time_word;
       first <= last_time_word && first + times_of_event <= words.size(); ++first) {
    const auto at = words.begin() + static_cast<std::ptrdiff_t>(first);
    if (std::all_of(at, at + times_of_event, is_time_code)) return true;
  }
  return false;
}

}  // namespace

std::string_view take_line(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_of(line_ends), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
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

std::string_view format_in_title(std::string_view head) {
  if (head.starts_with(byte_order_mark)) head.remove_prefix(byte_order_mark.size());
  while (!head.empty()) {
    const std::string_view line = trimmed(take_line(head));
    if (!line.starts_with(title_mark)) continue;
    const std::size_t mark = line.rfind(format_mark);
    return mark == std::string_view::npos ? std::string_view()
                                          : trimmed(line.substr(mark + format_mark.size()));
  }
  return {};
}

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

bool has_event_line(std::string_view head) {
  while (!head.empty()) {
    if (is_event_line(take_line(head))) return true;
  }
  return false;
}

bool states_fcm(std::string_view head) {
  while (!head.empty()) {
    const std::vector<std::string_view> words = words_of(take_line(head));
    if (words.empty()) continue;
    if (is_number(words[0])) return false;
    if (words.size() > 1 && words[0].starts_with("FCM:") &&
        (words[1] == "DROP" || words[1] == "NON-DROP")) {
      return true;
    }
  }
  return false;
}

}  // namespace formats
