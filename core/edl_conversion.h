// Opening and closing the library, and the settings by which the host tunes all
// formats at once.
#pragma once

#include <cstdint>

#include "host/api.h"

// The version that a host of this library passes to EDLConversionDLLInitialise.
inline constexpr unsigned long edl_conversion_version = 100738457;

// Opens the library. 0 on success; 1 for another version than
// edl_conversion_version, unless "Ignore Version Numbers" in section "Tribble" of
// "marlo3.ini" is set. Opens are counted in 16 bits.
EDL_API unsigned short EDLConversionDLLInitialise(unsigned long version);
// Closes one open; nothing happens when none is left.
EDL_API void EDLConversionDLLWindup();

// How many opens stand.
EDL_API std::uint16_t edl_conversion_open_count();
// What the platform's unload of the library calls: closes all opens at once.
EDL_API void edl_conversion_unload();

// Copied whole into an EDL by CGenericEdl::set_edl_conversion_settings; every
// object reads those of its root. All zeros by default.
//
// Channel modes tell how audio fields of a line become streams: 0 keeps field
// numbers and source channels, 1 keeps field numbers with source channels from 0,
// 2 keeps source channels with streams from 0, 3 counts both from 0.
struct EDL_CONVERSION_SETTINGS {
  std::uint8_t reserved_head[8] = {};
  // Samples; the fades of every new entry, and of every cut that a text format
  // reads.
  std::int64_t default_fade_length = 0;
  std::uint16_t default_fade_in_curve = 0;
  std::uint16_t default_fade_out_curve = 0;
  // Nonzero: a frame rate that a file states may be offered to the person.
  std::int32_t ask_on_frame_rate_change = 0;
  // EDL2: zero maps its channels to streams, nonzero takes them as they stand.
  std::int32_t native_direct_channels = 0;
  // Nonzero: fade curves are the two defaults, whatever a file says.
  std::int32_t force_default_fade_curves = 0;
  std::int32_t lightworks_merge_channels = 0;

  std::uint16_t cmx_channel_mode = 0;
  // Nonzero: an export names the entry's first_channel, not its first stream.
  std::uint16_t cmx_use_first_channel = 0;
  std::int32_t cmx_merge_channels = 0;
  std::int32_t cmx_cuts_only = 0;
  std::int32_t cmx_mapping_comments = 0;

  std::uint16_t sony_channel_mode = 0;
  std::uint16_t sony_use_first_channel = 0;
  std::int32_t sony_merge_channels = 0;
  std::int32_t sony_cuts_only = 0;
  std::int32_t sony_mapping_comments = 0;

  std::uint16_t grass_valley_channel_mode = 0;
  std::uint16_t grass_valley_use_first_channel = 0;
  std::int32_t grass_valley_merge_channels = 0;
  std::int32_t grass_valley_cuts_only = 0;
  std::int32_t grass_valley_mapping_comments = 0;

  std::uint16_t lw_multichannel_channel_mode = 0;
  std::uint16_t lw_multichannel_use_first_channel = 0;
  std::int32_t lw_multichannel_merge_channels = 0;
  std::int32_t lw_multichannel_cuts_only = 0;
  std::int32_t lw_multichannel_mapping_comments = 0;
  // 1 selects the export in two passes, with a dump file.
  std::int32_t lw_multichannel_export_mode = 0;

  // When set, the table by which audio fields become streams in place of a mode:
  // six rows of three words (first stream, stream count, first channel), four for
  // single fields and two for the pairs of fields 1-2 and 3-4, then 32 bits that
  // are nonzero to use single rows always. Not owned; 20 words.
  const std::uint16_t* channel_map = nullptr;
};
