// Which events may sound at the same time in an exported AAF file: a track there joins
// two clips by one transition, so of two events that meet on a stream the later one
// begins behind the fade-in of the earlier, and its fade-out behind the earlier's end.
#pragma once

#include "host/framework/ob_list.h"
#include "native/generic_edl_file_chunks.h"

namespace aaf {

struct EventPair {
  const CGenericEDLFileEntry* first = nullptr;
  const CGenericEDLFileEntry* second = nullptr;
};

// `b` stands behind `a` in the list.
[[nodiscard]] bool is_bad_overlap(const CGenericEDLFileEntry& a, const CGenericEDLFileEntry& b);

// Of CGenericEDLFileEntry objects the first bad pair: by the place of the one in front,
// then by that of the other. Nulls when there is none.
[[nodiscard]] EventPair first_bad_overlap(const CObList& events);

}  // namespace aaf
