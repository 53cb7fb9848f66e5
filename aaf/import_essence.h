// Essence of AAF files: what kind it is, and what its own head tells.
#pragma once

#include <cstdint>

#include "aafobj/api/aaf_interfaces.h"

namespace aaf {

// media_wave for a WAVE or PCM descriptor, media_aifc for an AIFC one, otherwise
// media_unknown.
[[nodiscard]] std::uint8_t media_type_of(IUnknown* descriptor);

// Samples from midnight to the start of the file, out of the "bext" chunk of a descriptor's
// summary; 0 without one. The chunk is only found in front of all others.
[[nodiscard]] std::int64_t read_bext_time_reference(IAAFWAVEDescriptor* descriptor);

}  // namespace aaf
