// Any bytes as a list of a line format: read, looked at in every field, written by
// the same format and read again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "fuzz/support/fuzz_file.h"
#include "text/text_edl.h"

namespace fuzzing {

// The first bytes of an input pick settings and rates.
inline constexpr std::size_t choice_bytes = 3;

inline constexpr std::uint16_t channel_map[20] = {0, 1, 0, 1, 1, 1, 2, 1, 0, 3,
                                                  1, 1, 0, 2, 0, 2, 2, 0, 0, 0};

// Every format reads its own fields of these.
inline EDL_CONVERSION_SETTINGS settings_from(unsigned bits) {
  EDL_CONVERSION_SETTINGS settings;
  const auto bit = [bits](unsigned place) { return (bits >> place & 1U) != 0 ? 1 : 0; };
  const auto mode = static_cast<std::uint16_t>(bits & 3U);
  settings.sony_channel_mode = settings.grass_valley_channel_mode =
      settings.lw_multichannel_channel_mode = mode;
  settings.sony_merge_channels = settings.grass_valley_merge_channels =
      settings.lw_multichannel_merge_channels = settings.lightworks_merge_channels = bit(2);
  settings.sony_mapping_comments = settings.grass_valley_mapping_comments =
      settings.lw_multichannel_mapping_comments = bit(3);
  settings.default_fade_length = bit(4) * 240;
  settings.channel_map = bit(5) != 0 ? channel_map : nullptr;
  settings.sony_cuts_only = settings.grass_valley_cuts_only = settings.lw_multichannel_cuts_only =
      settings.force_default_fade_curves = bit(6);
  settings.lw_multichannel_export_mode = bit(7);
  return settings;
}

inline void prepare(CGenericEdl& edl, const std::uint8_t* choice) {
  const EDL_CONVERSION_SETTINGS settings = settings_from(choice[0]);
  edl.set_edl_conversion_settings(&settings);
  EDL_DETAILS details;
  details.sample_rate_index = choice[1] % 16 == 15 ? 255 : choice[1] % 16;
  details.frame_rate = choice[2] % 6 == 5 ? 255 : choice[2] % 6;
  edl.set_edl_details(&details);
}

inline void read_all(CGenericEdl& edl) {
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

inline void require(bool holds) {
  if (!holds) std::abort();
}

template <class Edl>
result_code read(Edl& edl, const std::u16string& path) {
  const result_code code = edl.import_edl(path.c_str());
  require(code == result::import_complete || code == result::wrong_format);
  read_all(edl);
  return code;
}

// Reads a list from `in`, writes it to `out` and reads that.
template <class Edl>
void there_and_back(const std::uint8_t* choice, const std::u16string& in,
                    const std::u16string& out) {
  Edl edl(nullptr, 1);
  prepare(edl, choice);
  if (read(edl, in) != result::import_complete) return;
  edl.check_reel_frame_rates();
  {
    Edl writer(&edl, 0);
    require(writer.export_edl(out.c_str(), 0) == result::done);
    require(writer.output_incomplete() == 0);
  }
  read_all(edl);
  Edl again(nullptr, 0);
  prepare(again, choice);
  static_cast<void>(read(again, out));
}

template <class Edl>
int run(const std::uint8_t* data, std::size_t size) {
  if (size < choice_bytes) return 0;
  const FuzzFile in(data + choice_bytes, size - choice_bytes);
  const FuzzFile out;
  there_and_back<Edl>(data, in.path(), out.path());
  return 0;
}

}  // namespace fuzzing
