// Any bytes as an EDL2 file. The result is a told one, and no entry is in the list
// unless the file was read whole.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/support/fuzz_file.h"
#include "native/marlo2_edl.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzzing::FuzzFile file(data, size);
  CMarlo2Edl edl;
  const result_code told = edl.import_edl(file.path().c_str());
  if (told == result::import_complete) return 0;
  if (told != result::wrong_format && told != result::damaged) std::abort();
  if (!edl.get_generic_entry_list()->IsEmpty()) std::abort();
  return 0;
}
