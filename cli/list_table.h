// An edit list for people: a summary, and a table of each kind of record.
#pragma once

#include <cstddef>
#include <vector>

#include "cli/media_report.h"
#include "core/generic_edl.h"
#include "formats/format_table.h"

namespace cli {

// To standard output, with `media` as what was looked for, and no line wider than the screen.
// False, with the reason told, when the system refuses it.
[[nodiscard]] bool put_list_table(const FormatRow& format, const CGenericEdl& edl,
                                  const std::vector<MediaRow>& media, std::size_t screen_columns);

}  // namespace cli
