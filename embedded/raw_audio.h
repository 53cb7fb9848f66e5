// Files of bare samples, made into WAVE files that can be played.
#pragma once

#include <string>

#include "host/folders.h"

namespace embedded {

// Puts a WAVE head in front of a file's samples, in a new file that then takes its place
// (RF64 beyond 4 GiB). True when that was done. A file that has a head already, samples
// of another size than 8, 16, 24 or 32 bits, and a disk without room leave it as it was.
bool make_playable(const std::string& path, const RawAudioFormat& format);

}  // namespace embedded
