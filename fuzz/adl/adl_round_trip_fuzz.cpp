// Any bytes as an audio decision list, written and read again. Edits whose times and
// levels the form can hold must come back as they were; texts are replaced beforehand,
// since quotes in them are not safe.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "adl/aes31_file.h"
#include "core/generic_edl_entry.h"
#include "fuzz/adl/adl_fuzz_host.h"
#include "fuzz/support/fuzz_file.h"
#include "host/rates.h"

namespace {

using Entries = std::vector<CGenericEdlEntry*>;

Entries entries_of(const CGenericEdl& edl) {
  Entries entries;
  const CObList& list = *edl.get_generic_entry_list();
  for (POSITION at = list.GetHeadPosition(); at != nullptr;)
    entries.push_back(static_cast<CGenericEdlEntry*>(list.GetNext(at)));
  return entries;
}

// Whole frames, no pull-down, and no sum beyond 32 bits in a day.
bool has_exact_times(const CGenericEdl& edl) {
  const TimeBase base = edl.time_base();
  const std::uint32_t rate = samples_per_second(base.sample_rate_index);
  const bool pulled = base.frame_rate_index == frame_rate_2997_non_drop ||
                      base.frame_rate_index == frame_rate_2997_drop;
  // The rate behind "-" is written with a separator that no reader takes.
  if (base.frame_rate_index >= frame_rate_count) return false;
  return (rate == 44100 || rate == 48000) && !pulled &&
         rate % frames_per_second(base.frame_rate_index) == 0;
}

bool fits(const CGenericEdlEntry& entry, std::int64_t day) {
  const auto in_day = [day](std::int64_t time) { return time >= 0 && time < day; };
  const std::int64_t length = entry.dest_out - entry.dest_in;
  return in_day(entry.dest_in) && in_day(entry.dest_out) && in_day(entry.source_in) &&
         in_day(entry.fade_in_length) && in_day(entry.fade_out_length) && length >= 0 &&
         entry.fade_in_length + entry.fade_out_length <= length && std::isfinite(entry.gain_left);
}

void replace_texts(CGenericEdlEntry& entry) {
  entry.set_source_reel_name(u"name");
  entry.set_clip_name(u"clip");
  entry.set_file_path(u"//C:/audio/clip");
  entry.set_originator_reference(u"");
}

void require(bool holds) {
  if (!holds) std::abort();
}

void require_same(const CGenericEdlEntry& a, const CGenericEdlEntry& b) {
  require(a.dest_in == b.dest_in && a.dest_out == b.dest_out && a.source_in == b.source_in);
  require(a.fade_in_length == b.fade_in_length && a.fade_out_length == b.fade_out_length);
  require(a.channel_offset == b.channel_offset && (a.chunk_flags & 1) == b.chunk_flags);
  require(a.no_streams == b.no_streams &&
          std::equal(a.streams, a.streams + a.no_streams, b.streams));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzzing::AdlHost host;
  const fuzzing::FuzzFile file(data, size);
  CAES31File first(nullptr, 0, 0, 0, 0);
  if (first.import_edl(file.path().c_str()) != result::import_complete) return 0;
  if (!has_exact_times(first)) return 0;
  const std::int64_t day =
      std::int64_t{24 * 3600} * samples_per_second(first.time_base().sample_rate_index);
  Entries edits = entries_of(first);
  if (!std::all_of(edits.begin(), edits.end(),
                   [day](const CGenericEdlEntry* e) { return fits(*e, day); })) {
    return 0;
  }
  for (CGenericEdlEntry* const edit : edits)
    replace_texts(*edit);
  const fuzzing::FuzzFile written;
  CAES31File exporter(&first, 0, 0, 0, 0);
  require(exporter.export_edl(written.path().c_str(), 0) == result::done);
  CAES31File second(nullptr, 0, 0, 0, 0);
  require(second.import_edl(written.path().c_str()) == result::import_complete);
  const Entries back = entries_of(second);
  require(back.size() == edits.size());
  std::stable_sort(edits.begin(), edits.end(),
                   [](const auto* a, const auto* b) { return a->dest_in < b->dest_in; });
  for (std::size_t i = 0; i < edits.size(); ++i)
    require_same(*edits[i], *back[i]);
  return 0;
}
