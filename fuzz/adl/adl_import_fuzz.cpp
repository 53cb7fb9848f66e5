// Any bytes as an audio decision list, read with every choice of flags. The list is
// read or refused; what is read is written without a fault.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "adl/aes31_file.h"
#include "adl/interchanger_source_list.h"
#include "fuzz/adl/adl_fuzz_host.h"
#include "fuzz/support/fuzz_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::AdlHost host;
  // The last byte chooses; a list does not need it.
  const unsigned choice = size == 0 ? 0 : data[size - 1];
  host.set_corrected(choice % 2 == 0);
  const fuzzing::FuzzFile file(data, size);
  CAES31File list(nullptr, 0, static_cast<int>(choice / 2 % 2), static_cast<int>(choice / 4 % 2),
                  0);
  const result_code code = list.import_edl(file.path().c_str());
  if (code != result::import_complete && code != result::not_done) std::abort();
  if (code == result::not_done && !list.get_generic_entry_list()->IsEmpty()) std::abort();
  if (code == result::not_done) return 0;
  const fuzzing::FuzzFile written;
  CAES31File again(&list, 0, 0, 1, 0);
  if (again.export_edl(written.path().c_str(), 0) != result::done) std::abort();
  // What an export of an interchange job leaves for the next one.
  delete GetInterchangerSourceList();
  return 0;
}
