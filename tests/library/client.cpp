// A program that knows the library by its headers and its shared object alone: reads a
// CMX list and writes it as the two-channel form.
//
//   client IN OUT
#include <cstdio>

#include "core/edl_conversion.h"
#include "core/generic_edl_entry.h"
#include "host/rates.h"
#include "text/cmx_edl.h"

namespace {

void set_rates(CGenericEdl& edl) {
  EDL_DETAILS details;
  details.sample_rate_index = static_cast<std::uint8_t>(CGenericEdl::sample_rate_to_index(48000));
  details.frame_rate = frame_rate_25;
  edl.set_edl_details(&details);
}

bool convert(const CString& in, const CString& out) {
  CCMXEdl list(4, nullptr, 0);
  set_rates(list);
  if (list.import_edl(in) != result::import_complete) return false;
  const CObList* const entries = list.get_generic_entry_list();
  for (POSITION at = entries->GetHeadPosition(); at != nullptr;) {
    ENTRY_DETAILS details;
    dynamic_cast<CGenericEdlEntry&>(*entries->GetNext(at)).get_entry_details(&details);
    delete[] details.streams;
    std::printf("%d %s %lld\n", details.event_number,
                utf8_from_text(field_text(details.reel_name)).c_str(),
                static_cast<long long>(details.dest_in));
  }
  CCMXEdl written(2, &list, 0);
  return written.export_edl(out, 0) == result::done;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 || EDLConversionDLLInitialise(edl_conversion_version) != 0) return 1;
  const bool done = convert(CString(text_from_utf8(argv[1])), CString(text_from_utf8(argv[2])));
  EDLConversionDLLWindup();
  return done ? 0 : 2;
}
