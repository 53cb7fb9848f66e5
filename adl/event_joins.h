// What a written list says of events that touch or overlap.
#pragma once

#include <cstdint>
#include <span>

#include "native/generic_edl_file_chunks.h"

namespace adl {

// Writes crossfades as plain joins, which a reader with the same crossfade length turns
// into crossfades again. For each event in order whose fade-out is no longer than
// `crossfade_length` (samples), the first event behind it on the same tracks that
// starts with its fade-out and has a fade-in of the same length: both give up half of
// the crossfade and both of those fades. Two plain neighbours without fades are such a
// pair as well.
void convert_butt_splices(std::span<CGenericEDLFileEntry* const> events,
                          std::int64_t crossfade_length);

// Takes the clean flag from events that sound on the same track at the same time. Each
// event that is still clean is held against those behind it, up to the first that
// starts behind its end, and the first that shares a track with it loses the flag
// together with it.
void mark_overlaps(std::span<CGenericEDLFileEntry* const> events);

}  // namespace adl
