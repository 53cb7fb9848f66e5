// The audio of an edit list: what was found of it, and what was not.
#pragma once

#include <string>
#include <vector>

#include "core/generic_edl.h"
#include "embedded/media.h"

namespace cli {

struct MediaRow {
  // As the edits have it, UTF-8.
  std::string path;
  bool found = false;
  // Why not; empty for what was found.
  std::string reason;
};

// Hands each edit that has a path the audio of it, and tells of each path once, in the
// order of the edits.
std::vector<MediaRow> find_media(const CGenericEdl& edl, embedded::MediaLibrary& media);

}  // namespace cli
