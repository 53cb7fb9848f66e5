// Lists in memory of the kind that a film's sound edit gives.
#pragma once

#include <cstdint>
#include <string>

#include "core/generic_edl.h"

namespace bench {

inline constexpr int reel_count = 40;

// "R000" to "R039".
[[nodiscard]] std::u16string reel_name(int reel);

// Fills an empty root with `count` entries in destination order, at 48000 Hz and 25
// frames: eight pairs of tracks that run side by side, edits of one to nine seconds
// with some silence between them; most are the two mono sides of a stereo edit, some
// mono, some stereo in one entry. Sources lie anywhere in [0, source_end) of 40
// reels. The same count gives the same list.
void fill(CGenericEdl& edl, std::int64_t count, std::int64_t source_end);

// About where the timeline of such a list ends, in samples.
[[nodiscard]] std::int64_t timeline_end(std::int64_t count);

}  // namespace bench
