// One video edit.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/entry_details.h"
#include "host/framework/object.h"
#include "host/framework/string.h"
#include "host/text.h"

class CGenericEdl;
class CGenericReel;

class EDL_API CGenericEdlVideoEntry : public CObject {
 public:
  // Curves come from the owner, which is not owned and may be null.
  explicit CGenericEdlVideoEntry(CGenericEdl* owner);

  // As those of CGenericEdlEntry.
  void set_reel_name(const wide_char* name);
  void set_reel_name(std::u16string_view name);
  void get_reel_name(wide_char* out, int size) const;
  void set_clip_name(const wide_char* text);
  void set_file_path(const wide_char* text);
  void set_source_reel_name(const wide_char* text);
  void set_source_reel_name(std::u16string_view text);
  void get_clip_name(wide_char* out, int size) const;
  void get_file_path(wide_char* out, int size) const;
  void get_source_reel_name(wide_char* out, int size) const;
  void set_fade_in_curve(unsigned short curve);
  void set_fade_out_curve(unsigned short curve);
  void samples_to_timecode(std::int64_t samples, wide_char* out) const;
  [[nodiscard]] std::int64_t timecode_to_samples(const wide_char* text) const;
  [[nodiscard]] std::int64_t timecode_to_samples(const CString& text) const;
  void set_source_in_string(const wide_char* text);
  void set_source_in_string(std::u16string_view text);
  void set_source_out_string(const wide_char* text);
  void set_source_out_string(std::u16string_view text);
  void set_dest_in_string(const wide_char* text);
  void set_dest_in_string(std::u16string_view text);
  void set_dest_out_string(const wide_char* text);
  void set_dest_out_string(std::u16string_view text);
  [[nodiscard]] int check_reel_name() const;

  void get_video_details(VIDEO_DETAILS* details) const;
  // Sets the rate of the reel that stood here before the new name was looked up:
  // that order is fixed, so the reel must be set before.
  void set_video_details(const VIDEO_DETAILS* details);

  std::int64_t source_in = 0;
  std::int64_t source_out = 0;
  std::int64_t video_word = 0;
  std::int64_t dest_in = 0;
  std::int64_t dest_out = 0;
  std::int64_t dest_length = 0;
  // Shared, not owned.
  CGenericReel* reel = nullptr;
  CGenericEdl* owner;
  wide_char reel_name[13] = {};
  std::uint16_t fade_in_curve;
  std::uint16_t fade_out_curve;
  wide_char clip_name[129] = {};
  wide_char file_path[257] = {};
  wide_char source_reel_name[33] = {};
  std::uint16_t event_flags = 0;
  std::uint16_t event_number = 65535;
  std::uint16_t reserved_word = 0;
  std::uint16_t source_index = 65535;
  wide_char comment[129] = {};
  std::int64_t source_timestamp = time_not_given;
  std::uint32_t detail_words[4] = {};
  std::uint32_t transition_type = 0;
  std::int64_t transition_times[4] = {};
  float gain = 1.0F;
};
