// Any bytes as a CMX list, written and read again. What a list holds once it has
// been written as plain cuts must come back unchanged from the next writing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <tuple>
#include <vector>

#include "core/generic_edl_entry.h"
#include "fuzz/support/fuzz_file.h"
#include "text/cmx_edl.h"

namespace {

using Times = std::tuple<std::int64_t, std::int64_t, std::int64_t, std::int64_t>;

void prepare(CGenericEdl& edl, bool cuts_only) {
  EDL_DETAILS details;
  details.sample_rate_index = 2;
  details.frame_rate = 1;
  edl.set_edl_details(&details);
  EDL_CONVERSION_SETTINGS settings;
  settings.cmx_cuts_only = cuts_only ? 1 : 0;
  edl.set_edl_conversion_settings(&settings);
}

bool pass(CCMXEdl& from, const fuzzing::FuzzFile& file, CCMXEdl& to) {
  CCMXEdl out(4, &from, 0);
  if (out.export_edl(file.path().c_str(), 0) != 101) std::abort();
  return to.import_edl(file.path().c_str()) == 100;
}

std::vector<Times> times_of(const CGenericEdl& edl) {
  std::vector<Times> times;
  const CObList* const list = edl.get_generic_entry_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    const auto* const e = static_cast<const CGenericEdlEntry*>(list->GetNext(at));
    // Times of a day and more, and negative ones, have no text of their own.
    constexpr std::int64_t day = 24LL * 3600 * 48000;
    for (const std::int64_t t : {e->source_in, e->source_out, e->dest_in, e->dest_out}) {
      if (t < 0 || t >= day) return {};
    }
    times.emplace_back(e->source_in, e->source_out, e->dest_in, e->dest_out);
  }
  return times;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const bool cuts_only = data[0] % 2 == 0;
  const fuzzing::FuzzFile bytes(data + 1, size - 1);
  CCMXEdl first(4, nullptr, 0);
  prepare(first, cuts_only);
  if (first.import_edl(bytes.path().c_str()) != 100) return 0;
  const fuzzing::FuzzFile file;
  CCMXEdl second(4, nullptr, 0);
  prepare(second, cuts_only);
  if (!pass(first, file, second) || !cuts_only) return 0;
  const std::vector<Times> before = times_of(second);
  CCMXEdl third(4, nullptr, 0);
  prepare(third, cuts_only);
  const std::size_t written = before.size();
  if (!pass(second, file, third)) return 0;
  // Edits of no length are markers, which reading may take away.
  for (const auto& [source_in, source_out, dest_in, dest_out] : before) {
    if (dest_in == dest_out) return 0;
  }
  if (written != 0 && times_of(third) != before) std::abort();
  return 0;
}
