// Any bytes as an AAF file.
#include <cstddef>
#include <cstdint>

#include "fuzz/aaf/import_host.h"
#include "fuzz/support/fuzz_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzzing::ImportHost host;
  const fuzzing::FuzzFile file(data, size);
  fuzzing::import_both_ways(host, file.path());
  host.clear();
  return 0;
}
