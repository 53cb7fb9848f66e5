// The flat records through which a host reads and fills an EDL.
#pragma once

#include <cstdint>

#include "host/text.h"

class CGenericEdl;
class CObList;

struct EDL_DETAILS {
  std::uint32_t highest_stream = 0;
  std::int32_t interactive = 0;
  // Rate indices; 255 for not set.
  std::uint8_t frame_rate = 255;
  std::uint8_t sample_rate_index = 255;
  std::uint8_t time_format = 3;
  std::uint8_t edl_word = 255;
};

// Not owned.
struct LIST_DETAILS {
  CObList* entry_list = nullptr;
  CObList* reel_list = nullptr;
  CObList* pq_list = nullptr;
  CObList* locator_list = nullptr;
  CObList* automation_list = nullptr;
  CObList* video_list = nullptr;
  CGenericEdl* parent = nullptr;
};

inline constexpr int pq_text_count = 7;

struct PQ_DETAILS {
  // Thirteen characters without a terminator.
  wide_char pq_catalogue[13] = {};
  // Disc-level texts, of at most 127 characters each.
  wide_char pq_text[pq_text_count][128] = {};
  std::uint16_t pq_word = 0;
};

// Nonzero: an import changed the rate that had been set.
struct UPDATE_SETTINGS_DETAILS {
  std::int32_t sample_rate_changed = 0;
  std::int32_t frame_rate_changed = 0;
};
