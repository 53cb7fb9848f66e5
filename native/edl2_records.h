// The bytes of the EDL2 file: one head, then records of 128 bytes, the edits of
// eight channels and the disc index, then extensions.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "host/text.h"

class CGenericEdlEntry;
class CGenericPQEntry;

namespace native {

inline constexpr std::size_t edl2_channel_count = 8;
inline constexpr std::size_t edl2_head_size = 430;
inline constexpr std::size_t edl2_record_size = 128;
inline constexpr std::uint32_t edl2_no_extensions = 0xFFFFFFFF;
// A block of reel records within the extensions.
inline constexpr std::size_t edl2_reel_record_size = 32;
// The highest rate that the head can name.
inline constexpr std::uint32_t edl2_most_samples_per_second = 48000;

struct Edl2Head {
  std::uint16_t sample_rate_hz = 0;
  // 16, 18, 20 or 24; 0 for none. Not read.
  std::uint16_t bit_depth = 0;
  // Frame-rate index plus 1; 0 for none.
  std::uint16_t frame_rate = 0;
  // A distance from the end of the records; edl2_no_extensions for none.
  std::uint32_t extension_offset = edl2_no_extensions;
  // As stored; extensions are found by this many of the event counts.
  std::uint16_t channel_count = edl2_channel_count;
  std::array<std::uint32_t, edl2_channel_count> event_counts = {};
  std::uint32_t pq_count = 0;
};

// False for a wrong magic.
[[nodiscard]] bool read_edl2_head(const char* bytes, Edl2Head& head);
void write_edl2_head(char* out, const Edl2Head& head);

// Which side of a source an edit plays, as byte 31 of its record says it.
enum Edl2Layout : std::uint8_t {
  edl2_mono = 0,
  edl2_left = 1,
  edl2_right = 2,
  edl2_other = 0xFF,
};

struct Edl2Event {
  std::uint32_t dest_in = 0;
  std::uint32_t dest_out = 0;
  // Up to the first NUL of 32 bytes, which run on into the fields behind the name.
  wide_char name[33] = {};
  std::uint8_t layout = edl2_mono;
  // Taken apart: eight places of clip name, in which two digits at the end are a
  // channel; and the letter at position 10.
  wide_char clip_name[9] = {};
  std::uint32_t source_channel = 0;
  // "/" and the eight places as they stand.
  wide_char file_path[10] = {};
  char letter = ' ';
  // Samples from the start of the source.
  std::uint32_t fade_in_start = 0;
  std::uint32_t fade_in_end = 0;
  std::uint32_t fade_out_start = 0;
  std::uint32_t fade_out_end = 0;
  std::uint16_t fade_in_curve = 0;
  std::uint16_t fade_out_curve = 0;
  float level = 1.0F;
};

[[nodiscard]] Edl2Event read_edl2_event(const char* bytes);
// The layout of an entry on one of the eight channels.
[[nodiscard]] Edl2Layout edl2_layout(const CGenericEdlEntry& entry, unsigned channel);
void write_edl2_event(char* out, const CGenericEdlEntry& entry, Edl2Layout layout);

// False for a record of another type, which leaves the entry as it was.
[[nodiscard]] bool read_edl2_pq(const char* bytes, CGenericPQEntry& entry);
void write_edl2_pq(char* out, const CGenericPQEntry& entry);

}  // namespace native
