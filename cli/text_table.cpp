#include "cli/text_table.h"

#include <algorithm>
#include <array>

#include "embedded/terminal.h"

namespace cli {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Combining marks of the scripts that text exports bring, and joiners.
constexpr std::array<Range, 6> no_columns = {{{0x0300, 0x036F},
                                              {0x0483, 0x0489},
                                              {0x200B, 0x200F},
                                              {0x20D0, 0x20FF},
                                              {0xFE00, 0xFE0F},
                                              {0xFE20, 0xFE2F}}};
constexpr std::array<Range, 9> two_columns = {{{0x1100, 0x115F},
                                               {0x2E80, 0x303E},
                                               {0x3041, 0xA4CF},
                                               {0xAC00, 0xD7A3},
                                               {0xF900, 0xFAFF},
                                               {0xFE30, 0xFE6F},
                                               {0xFF00, 0xFF60},
                                               {0x1F300, 0x1FAFF},
                                               {0x20000, 0x3FFFD}}};

constexpr std::size_t least_last_column = 8;
constexpr std::size_t kept_columns = 2;

template <std::size_t count>
bool in_ranges(const std::array<Range, count>& ranges, char32_t c) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [c](const Range& range) { return c >= range.first && c <= range.last; });
}

constexpr bool is_tail(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// The character at the head of a text, and its bytes.
struct Character {
  std::string_view bytes;
  std::size_t columns;
};

Character first_character(std::string_view text) {
  std::size_t size = 1;
  while (size < text.size() && size < 4 && is_tail(text[size]))
    ++size;
  const auto lead = static_cast<unsigned char>(text[0]);
  char32_t code = size == 1 ? lead : lead & (0xFFU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i)
    code = (code << 6U) | (static_cast<unsigned char>(text[i]) & 0x3FU);
  const std::size_t columns = in_ranges(no_columns, code)    ? 0
                              : in_ranges(two_columns, code) ? 2
                                                             : 1;
  return {text.substr(0, size), columns};
}

}  // namespace

std::size_t shown_width(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const Character c = first_character(text);
    width += c.columns;
    text.remove_prefix(c.bytes.size());
  }
  return width;
}

std::string fitted(std::string_view text, std::size_t width) {
  if (shown_width(text) <= width) return std::string(text);
  std::string out;
  std::size_t shown = 0;
  while (!text.empty()) {
    const Character c = first_character(text);
    // The last column is the ellipsis's.
    if (shown + c.columns + 1 > width) break;
    shown += c.columns;
    out += c.bytes;
    text.remove_prefix(c.bytes.size());
  }
  return width == 0 ? std::string() : out + "…";
}

std::string wrapped(const std::string& text, std::size_t screen_columns) {
  std::string out;
  std::size_t used = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_of(" \n", at), text.size());
    const std::string word = text.substr(at, end - at);
    const std::size_t width = shown_width(word);
    const bool fits = used == 0 || used + 1 + width <= screen_columns;
    out += used == 0 ? "" : fits ? " " : "\n";
    out += word;
    used = fits && used > 0 ? used + 1 + width : width;
    if (end < text.size() && text[end] == '\n') {
      out += '\n';
      used = 0;
    }
    at = end + 1;
  }
  return out;
}

TextTable::TextTable(std::vector<Column> columns, std::size_t screen_columns)
    : columns_(std::move(columns)) {
  const auto width_before_last = [this] {
    std::size_t width = 0;
    for (std::size_t i = 0; i + 1 < columns_.size(); ++i)
      width += columns_[i].width + 1;
    return width;
  };
  std::size_t least = least_last_column;
  while (columns_.size() > kept_columns && width_before_last() + least > screen_columns) {
    columns_.pop_back();
    least = columns_.back().width;
  }
  const std::size_t before = width_before_last();
  columns_.back().width = screen_columns > before ? screen_columns - before : 1;
}

std::string TextTable::title_line() const {
  std::vector<std::string> titles;
  for (const Column& column : columns_)
    titles.push_back(column.title);
  return line(titles);
}

std::string TextTable::line(const std::vector<std::string>& cells) const {
  std::string out;
  std::size_t gap = 0;
  for (std::size_t i = 0; i < columns_.size() && i < cells.size(); ++i) {
    const std::string cell = fitted(embedded::printable(cells[i]), columns_[i].width);
    if (!cell.empty()) out.append(gap, ' ').append(cell);
    gap = (cell.empty() ? gap : 0) + columns_[i].width - shown_width(cell) + 1;
  }
  return out + '\n';
}

}  // namespace cli
