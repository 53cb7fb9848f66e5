// An edit list as one JSON object, written piece by piece: a list of a million edits
// must not stand in memory twice. docs/inspect_json.md tells the form.
#pragma once

#include "cli/import_run.h"
#include "embedded/boxes.h"

namespace cli {

// To standard output. False, with the reason told, when the system refuses it.
[[nodiscard]] bool put_list_json(const ImportRun& run, const embedded::EmbeddedBoxes& boxes);

}  // namespace cli
