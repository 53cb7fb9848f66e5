// The flat records through which a host reads and fills entries. All times are
// samples at the owning EDL's sample rate; texts end in a terminator.
#pragma once

#include <cstdint>

#include "host/text.h"

class CGenericEdl;

struct ENTRY_DETAILS {
  CGenericEdl* owner = nullptr;
  std::int64_t source_in = 0;
  std::int64_t source_out = 0;
  // Time code of the two counts above; not stored back.
  wide_char source_in_string[12] = {};
  wide_char source_out_string[12] = {};
  std::uint32_t frame_rate = 0;
  std::uint32_t source_is_timestamped = 0;
  std::int64_t dest_in = 0;
  std::int64_t dest_out = 0;
  std::int64_t dest_length = 0;
  wide_char reel_name[13] = {};
  // Of the reel; 0 when there is none.
  std::uint16_t reel_frame_rate = 0;
  std::uint16_t reel_no_streams = 0;
  std::uint16_t first_channel = 0;
  std::uint16_t fade_in_curve = 0;
  std::uint16_t fade_out_curve = 0;
  std::int64_t fade_in_length = 0;
  std::int64_t fade_out_length = 0;
  wide_char fade_in_name[9] = {};
  wide_char fade_out_name[9] = {};
  wide_char clip_name[129] = {};
  wide_char file_path[257] = {};
  std::uint16_t event_number = 0;
  std::uint16_t event_flags = 0;
  std::uint16_t source_index = 0;
  wide_char comment[129] = {};
  std::uint32_t detail_word = 0;
  float gain_left = 0.0F;
  float gain_right = 0.0F;
  wide_char source_reel_name[33] = {};
  std::int64_t source_timestamp = 0;
  std::uint32_t source_time_word = 0;
  std::uint32_t source_channel = 0;
  std::int32_t chunk_flags = 0;
  std::int32_t no_streams = 0;
  // no_streams words. From get_entry_details a new[] array that the caller frees
  // with delete[] (null when there are none); in set_entry_details the caller's.
  std::uint16_t* streams = nullptr;
  std::uint16_t no_channels = 0;
  std::uint16_t channel_offset = 0;
  std::uint8_t fade_in_shape = 0;
  std::uint8_t mute_flag = 0;
  std::uint8_t fade_out_shape = 0;
  float level_in = 0.0F;
  float level_out = 0.0F;
  std::uint32_t transition_type = 0;
  std::int64_t original_dest_in = 0;
  std::int64_t original_dest_out = 0;
  std::int64_t original_source_in = 0;
  std::int64_t original_source_out = 0;
  wide_char src_index[10] = {};
  std::uint32_t lw_channel_word = 0;
  std::uint32_t source_word = 0;
  wide_char originator[33] = {};
  wide_char originator_reference[33] = {};
};

struct VIDEO_DETAILS {
  CGenericEdl* owner = nullptr;
  std::int64_t source_in = 0;
  std::int64_t source_out = 0;
  std::int64_t video_word = 0;
  std::int64_t dest_in = 0;
  std::int64_t dest_out = 0;
  std::int64_t dest_length = 0;
  wide_char reel_name[13] = {};
  std::uint16_t reel_frame_rate = 0;
  std::uint16_t fade_in_curve = 0;
  std::uint16_t fade_out_curve = 0;
  wide_char clip_name[129] = {};
  wide_char file_path[257] = {};
  wide_char source_reel_name[33] = {};
  std::uint16_t event_flags = 0;
  std::uint16_t event_number = 0;
  std::uint16_t reserved_word = 0;
  std::uint16_t source_index = 0;
  wide_char comment[128] = {};
  std::int64_t source_timestamp = 0;
  std::uint32_t detail_words[4] = {};
  std::uint32_t transition_type = 0;
  std::int64_t transition_times[4] = {};
  float gain = 0.0F;
};
