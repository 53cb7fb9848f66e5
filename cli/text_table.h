// Columns of text for a screen of a given width.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

// Columns of the screen that a UTF-8 text takes: none for combining marks, two for
// the wide characters of East Asia and for pictographs.
std::size_t shown_width(std::string_view text);
// Cuts a text to `width` columns; what is cut ends in an ellipsis.
std::string fitted(std::string_view text, std::size_t width);

// Breaks lines between words so that none is wider than `width`; a word that is wider
// stands alone.
std::string wrapped(const std::string& text, std::size_t width);

struct Column {
  std::string title;
  // Of its cells, without the blank behind them.
  std::size_t width = 0;
};

// Lines of cells under a line of titles. The last column takes what is left of the
// screen. On a screen that is too narrow, columns are left out, the last one first,
// but never the first two.
class TextTable {
 public:
  TextTable(std::vector<Column> columns, std::size_t screen_columns);

  [[nodiscard]] std::string title_line() const;
  // One cell a column, with a line end. What could steer a terminal becomes blank.
  [[nodiscard]] std::string line(const std::vector<std::string>& cells) const;

 private:
  std::vector<Column> columns_;
};

}  // namespace cli
