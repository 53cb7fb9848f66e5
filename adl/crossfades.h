// The fades that a list leaves out.
#pragma once

#include <cstdint>
#include <span>

#include "native/generic_edl_file_chunks.h"

namespace adl {

struct FadeDefaults {
  // Samples, even and not negative.
  std::int64_t crossfade_length = 0;
  std::uint16_t infade_curve = 0;
  std::uint16_t outfade_curve = 0;
  // Events that meet get no crossfade.
  bool interchange = false;
};

// Gives every event the fades that it has not (time_not_given). An event without a
// fade-out and the first one behind it that starts at its end on the same tracks and
// has no fade-in become a crossfade: each grows by half of it over the cut, as far as
// the source has material before it. The events must be in rising order of their
// destination. Sums wrap.
void reconcile_crossfades(std::span<CGenericEDLFileEntry* const> events,
                          const FadeDefaults& defaults);

}  // namespace adl
