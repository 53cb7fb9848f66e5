// What a run dropped or refused, told in sentences, and whether there was any.
#pragma once

#include <span>
#include <string>

#include "core/generic_edl.h"
#include "embedded/boxes.h"
#include "embedded/viewer.h"
#include "formats/format_table.h"

namespace cli {

// Tells of all that the list holds and the format has no place for. Whether there
// was any.
bool tell_of_losses(const FormatRow& format, const CGenericEdl& edl);

// Tells how much of what was read or written is not as it stood: reports that were
// shown, and lines with a channel field of no known form. `done` is the sentence's
// beginning, such as "out.edl is written". Whether there was any.
bool tell_of_reports(const embedded::EmbeddedBoxes& boxes, unsigned skipped,
                     const std::string& done);

// Sends a person to the report of an import, when there is one that tells of faults.
// Whether there was any.
bool tell_of_import_report(const FormatRow& format, bool was_read,
                           const embedded::EmbeddedViewer& reports);

// Why an export that ended with this code was not done. May leave an empty file at
// the path.
std::string why_not_exported(const FormatRow& format, const std::string& path, result_code code);

}  // namespace cli
