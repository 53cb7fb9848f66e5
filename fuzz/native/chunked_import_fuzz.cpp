// Any bytes as a chunked EDL file, without and with the texts of the disc. The
// result is a told one, and a list that was not read whole is empty.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/native/fuzz_host.h"
#include "fuzz/support/fuzz_file.h"
#include "native/generic_edl_file.h"

namespace {

void import(const fuzzing::FuzzFile& file) {
  CGenericEDLFile edl;
  const result_code told = edl.import_edl(file.path().c_str());
  if (told == result::import_complete) return;
  if (told != result::wrong_format && told != result::damaged) std::abort();
  const CObList* const lists[] = {edl.get_generic_entry_list(), edl.get_pq_list(),
                                  edl.get_locator_list(), edl.get_automation_list()};
  for (const CObList* const list : lists) {
    if (!list->IsEmpty()) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::SettingsHost host;
  const fuzzing::FuzzFile file(data, size);
  import(file);
  host.set_keys(1);
  import(file);
  return 0;
}
