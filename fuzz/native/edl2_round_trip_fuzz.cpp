// Any bytes as an EDL2 file, written and read again. A list that the format takes
// comes back with as many PQ entries and no more edits, and from then on its mono
// edits keep their times.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <tuple>

#include "core/generic_edl_entry.h"
#include "fuzz/support/fuzz_file.h"
#include "native/marlo2_edl.h"

namespace {

using Times = std::multiset<std::tuple<std::int64_t, std::int64_t, std::int64_t>>;

void read_directly(CMarlo2Edl& edl) {
  EDL_CONVERSION_SETTINGS settings;
  settings.native_direct_channels = 1;
  edl.set_edl_conversion_settings(&settings);
}

Times mono_times(const CGenericEdl& edl) {
  Times times;
  const CObList& entries = *edl.get_generic_entry_list();
  for (POSITION at = entries.GetHeadPosition(); at != nullptr;) {
    const auto* const entry = static_cast<const CGenericEdlEntry*>(entries.GetNext(at));
    if (entry->no_channels == 1 && entry->no_streams == 1) {
      times.emplace(entry->dest_in, entry->dest_out, entry->source_in);
    }
  }
  return times;
}

// A mono source on two streams is written as two mono edits.
bool has_spread_mono(const CGenericEdl& edl) {
  const CObList& entries = *edl.get_generic_entry_list();
  for (POSITION at = entries.GetHeadPosition(); at != nullptr;) {
    const auto* const entry = static_cast<const CGenericEdlEntry*>(entries.GetNext(at));
    if (entry->no_channels == 1 && entry->no_streams == 2) return true;
  }
  return false;
}

// False when the format refuses the list.
bool pass(CGenericEdl& edl, CMarlo2Edl& back) {
  const fuzzing::FuzzFile file;
  CMarlo2Edl format(&edl);
  const result_code told = format.export_edl(file.path().c_str(), 0);
  if (told == result::refused) return false;
  if (told != result::done) std::abort();
  if (back.import_edl(file.path().c_str()) != result::import_complete) std::abort();
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzzing::FuzzFile file(data, size);
  CMarlo2Edl first;
  read_directly(first);
  if (first.import_edl(file.path().c_str()) != result::import_complete) return 0;
  CMarlo2Edl second;
  read_directly(second);
  if (!pass(first, second)) return 0;
  if (second.get_pq_list()->GetCount() != first.get_pq_list()->GetCount()) std::abort();
  if (has_spread_mono(first)) return 0;
  if (second.get_generic_entry_list()->GetCount() > first.get_generic_entry_list()->GetCount()) {
    std::abort();
  }
  if (mono_times(second) != mono_times(first)) std::abort();
  return 0;
}
