// An edit list as one JSON object, written piece by piece: a list of a million edits
// must not stand in memory twice. docs/inspect_json.md tells the form.
#pragma once

#include <vector>

#include "cli/import_run.h"
#include "cli/media_report.h"
#include "embedded/boxes.h"

namespace cli {

// To standard output. `media` is what was looked for. False, with the reason told, when the system
// refuses it.
[[nodiscard]] bool put_list_json(const ImportRun& run, const std::vector<MediaRow>& media,
                                 const embedded::EmbeddedBoxes& boxes);

}  // namespace cli
