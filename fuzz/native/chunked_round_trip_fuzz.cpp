// Any bytes as a chunked EDL file, written and read again. What has been through
// the writer once is written the same from then on.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/generic_automation.h"
#include "fuzz/native/fuzz_host.h"
#include "fuzz/support/fuzz_file.h"
#include "host/framework/file.h"
#include "native/generic_edl_file.h"

namespace {

// Runs whose size does not fit 16 bits make a file that cannot be read back.
bool can_be_read_back(const CGenericEdl& edl) {
  if (edl.get_locator_list()->GetCount() > 2730) return false;
  const CObList& runs = *edl.get_automation_list();
  for (POSITION at = runs.GetHeadPosition(); at != nullptr;) {
    if (static_cast<const CGenericAutomationChunk*>(runs.GetNext(at))->points->GetCount() > 8190) {
      return false;
    }
  }
  return true;
}

std::string bytes_of(const fuzzing::FuzzFile& file) {
  CFile in;
  if (!in.Open(file.path().c_str(), CFile::modeRead)) std::abort();
  std::string bytes(in.GetLength(), '\0');
  in.Read(bytes.data(), static_cast<unsigned>(bytes.size()));
  return bytes;
}

// Writes the list and reads it into `back`.
std::string pass(CGenericEdl& edl, CGenericEDLFile& back) {
  const fuzzing::FuzzFile file;
  CGenericEDLFile format(&edl);
  if (format.export_edl(file.path().c_str(), 0) != result::done) std::abort();
  if (back.import_edl(file.path().c_str()) != result::import_complete) std::abort();
  return bytes_of(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzzing::SettingsHost host;
  const fuzzing::FuzzFile file(data, size);
  CGenericEDLFile first;
  if (first.import_edl(file.path().c_str()) != result::import_complete) return 0;
  if (!can_be_read_back(first)) return 0;
  CGenericEDLFile second;
  static_cast<void>(pass(first, second));
  // Names that the file cuts may have made two sources one, so the second writing is
  // the first that counts.
  CGenericEDLFile third;
  const std::string written = pass(second, third);
  CGenericEDLFile fourth;
  if (pass(third, fourth) != written) std::abort();
  return 0;
}
