#include "formats/format_table.h"

#include "formats/format_rows.h"

std::span<const FormatRow> format_table() {
  static const std::vector<FormatRow> rows = {
      cmx340_row(),
      cmx3600_row(),
  };
  return rows;
}
