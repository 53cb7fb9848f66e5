// The report of an import: an HTML file with a row for each error, and for each warning
// that drops something. It is made with the first row and shown at the end.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/framework/file.h"

namespace adl {

enum class RowKind { error, warning };

// The head of a report, a row, and the end, as they stand in the file.
[[nodiscard]] std::u16string report_head();
[[nodiscard]] std::u16string report_row(RowKind kind, std::size_t line, std::u16string_view text);
[[nodiscard]] std::u16string report_end();

class ImportReport {
 public:
  // Deletes the report of an earlier import and makes ready for one of this list.
  void reset(std::string_view list);
  // A row of the message with this number, for a place in the list. Nothing is said
  // when the file cannot be made or written; the next row tries again.
  void write_line(unsigned message, RowKind kind, std::uint32_t position);
  // Ends the file and shows it. 1 when the viewer opened; 0 when it did not, which is
  // told in a box, and when there is no report.
  int close();
  [[nodiscard]] bool is_open() const { return m_file.is_open(); }

 private:
  [[nodiscard]] std::size_t line_at(std::uint32_t position);
  void write(std::u16string_view text);

  std::string_view m_list;
  // Places of the line ends, looked up when the first row asks for them.
  std::vector<std::size_t> m_line_ends;
  bool m_lines_known = false;
  CFile m_file;
};

}  // namespace adl
