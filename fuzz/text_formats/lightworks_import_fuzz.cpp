#include "fuzz/text_formats/import_run.h"
#include "text/lightworks_edl.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return fuzzing::run<CLightworksEdl>(data, size);
}
