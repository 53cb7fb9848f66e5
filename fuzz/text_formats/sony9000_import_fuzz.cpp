#include "fuzz/text_formats/import_run.h"
#include "text/sony9000_edl.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return fuzzing::run<CSony9000Edl>(data, size);
}
