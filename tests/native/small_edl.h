// The lists of the golden files.
#pragma once

class CGenericEdl;

namespace native_test {

// Of chunk_small.hex. The root has rates already.
void fill_chunk_small(CGenericEdl& root);
// Of edl2_small.hex.
void fill_edl2_small(CGenericEdl& root);

}  // namespace native_test
