#include "formats/format_table.h"

#include "formats/format_rows.h"

std::span<const FormatRow> format_table() {
  static const std::vector<FormatRow> rows = {
      cmx340_row(),       cmx3600_row(),    sony9000_row(),
      grass_valley_row(), lightworks_row(), lightworks_multichannel_row(),
      native_text_row(),  edl2_row(),       chunked_row(),
      adl_row(),          aaf_row(),
  };
  return rows;
}
