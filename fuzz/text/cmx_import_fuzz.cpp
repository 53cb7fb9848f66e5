// Any bytes as a CMX list. The first three bytes pick settings and rates.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "fuzz/support/fuzz_file.h"
#include "text/cmx_edl.h"

namespace {

constexpr std::uint16_t map[20] = {0, 1, 0, 1, 1, 1, 2, 1, 0, 3, 1, 1, 0, 2, 0, 2, 2, 0, 0, 0};

EDL_CONVERSION_SETTINGS settings_from(unsigned bits) {
  EDL_CONVERSION_SETTINGS settings;
  settings.cmx_channel_mode = bits & 3U;
  settings.cmx_merge_channels = (bits & 4U) != 0 ? 1 : 0;
  settings.cmx_mapping_comments = (bits & 8U) != 0 ? 1 : 0;
  settings.default_fade_length = (bits & 16U) != 0 ? 240 : 0;
  settings.channel_map = (bits & 32U) != 0 ? map : nullptr;
  settings.ask_on_frame_rate_change = (bits & 64U) != 0 ? 1 : 0;
  return settings;
}

void read_all(CGenericEdl& edl) {
  for (POSITION at = edl.get_generic_entry_list()->GetHeadPosition(); at != nullptr;) {
    ENTRY_DETAILS details;
    static_cast<CGenericEdlEntry*>(edl.get_generic_entry_list()->GetNext(at))
        ->get_entry_details(&details);
    delete[] details.streams;
  }
  for (POSITION at = edl.get_video_list()->GetHeadPosition(); at != nullptr;) {
    VIDEO_DETAILS details;
    static_cast<CGenericEdlVideoEntry*>(edl.get_video_list()->GetNext(at))
        ->get_video_details(&details);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  const fuzzing::FuzzFile bytes(data + 3, size - 3);
  CCMXEdl edl(data[0] % 2 == 0 ? 4 : 2, nullptr, 1);
  const EDL_CONVERSION_SETTINGS settings = settings_from(data[0]);
  edl.set_edl_conversion_settings(&settings);
  EDL_DETAILS details;
  details.interactive = 1;
  details.sample_rate_index = data[1] % 16 == 15 ? 255 : data[1] % 16;
  details.frame_rate = data[2] % 6 == 5 ? 255 : data[2] % 6;
  edl.set_edl_details(&details);
  const result_code code = edl.import_edl(bytes.path().c_str());
  if (code != 100 && code != 4) std::abort();
  read_all(edl);
  edl.check_reel_frame_rates();
  edl.offset_edl(0, 4);
  return 0;
}
