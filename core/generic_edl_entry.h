// One audio edit: a stretch of a source placed at a stretch of the timeline, with
// its fades and channels. A large flat record: texts in place, one allocation
// beside it for the streams.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/entry_details.h"
#include "host/framework/object.h"
#include "host/framework/string.h"
#include "host/text.h"

class CAudCnt;
class CGenericEdl;
class CGenericReel;

// The stream of a channel that goes nowhere; an index or number that is not set.
inline constexpr std::uint16_t no_stream = 65535;
inline constexpr std::uint16_t event_number_not_set = 65535;

// Transitions of the line formats. (The table format of Lightworks has codes of
// its own in the same field.)
inline constexpr std::uint32_t transition_cut = 50;
inline constexpr std::uint32_t transition_dissolve = 51;

class EDL_API CGenericEdlEntry : public CObject {
 public:
  // Fades, curves and the frame rate come from the owner, which is not owned and
  // may be null (then from zero settings).
  explicit CGenericEdlEntry(CGenericEdl* owner);
  // A copy under a new owner: all fields but `audio_content` and `detail_word`,
  // with streams of its own and the same reel.
  CGenericEdlEntry(CGenericEdl* owner, const CGenericEdlEntry* other);
  CGenericEdlEntry(const CGenericEdlEntry&) = delete;
  CGenericEdlEntry& operator=(const CGenericEdlEntry&) = delete;
  ~CGenericEdlEntry() override;

  // The host's audio content; not owned, may be null.
  virtual CAudCnt* get_audio_content() { return audio_content; }

  // Replaces the streams by `n` that go nowhere. Below 1: none.
  void set_no_streams(int n);
  // Stores a stream and tells the owner; an index outside the array is dropped.
  void set_stream(int i, unsigned short stream);
  // 65535 for an index outside the array.
  [[nodiscard]] unsigned short get_stream(int i) const {
    return i >= 0 && i < no_streams ? streams[i] : no_stream;
  }

  // Ties the entry to the owner's reel of that name, made if need be. Where the
  // owner has no reels, 12 characters of the name go into the entry itself.
  void set_reel_name(const wide_char* name);
  void set_reel_name(std::u16string_view name);
  // At most size - 1 characters. A size of 0 does nothing.
  void get_reel_name(wide_char* out, int size) const;
  // Raises the stream count of the source: of the reel, else of the entry's own.
  void raise_source_streams(unsigned short n);

  // Setters cut at the field (128, 256, 32, 8 characters); null is the empty text.
  void set_clip_name(const wide_char* text);
  void set_clip_name(std::u16string_view text);
  void set_file_path(const wide_char* text);
  void set_file_path(std::u16string_view text);
  // Padded with blanks to 32 characters.
  void set_source_reel_name(const wide_char* text);
  void set_source_reel_name(std::u16string_view text);
  void set_originator(const wide_char* text);
  void set_originator_reference(const wide_char* text);
  void set_fade_in_name(const wide_char* text);
  void set_fade_out_name(const wide_char* text);
  // At most size - 1 characters, terminated.
  void get_clip_name(wide_char* out, int size) const;
  void get_file_path(wide_char* out, int size) const;
  void get_source_reel_name(wide_char* out, int size) const;
  void get_originator(wide_char* out, int size) const;
  void get_originator_reference(wide_char* out, int size) const;
  void get_fade_in_name(wide_char* out, int size) const;
  void get_fade_out_name(wide_char* out, int size) const;

  // Store the argument, or the settings' default when curves are forced.
  void set_fade_in_curve(unsigned short curve);
  void set_fade_out_curve(unsigned short curve);

  // Samples to time code at the owner's rates, into `out` of 12 units.
  void samples_to_timecode(std::int64_t samples, wide_char* out) const;
  [[nodiscard]] std::int64_t timecode_to_samples(const wide_char* text) const;
  [[nodiscard]] std::int64_t timecode_to_samples(const CString& text) const;
  [[nodiscard]] std::int64_t timecode_to_samples(std::u16string_view text) const;

  // Convert a time code at the owner's rates. The source setters also keep its
  // first 11 characters.
  void set_source_in_string(const wide_char* text, unsigned short frame_rate);
  void set_source_in_string(std::u16string_view text, unsigned short frame_rate);
  void set_source_out_string(const wide_char* text);
  void set_source_out_string(std::u16string_view text);
  void set_dest_in_string(const wide_char* text);
  void set_dest_in_string(std::u16string_view text);
  void set_dest_out_string(const wide_char* text);
  void set_dest_out_string(std::u16string_view text);

  // The four setters in one.
  struct TimeTexts {
    std::u16string_view source_in;
    std::u16string_view source_out;
    std::u16string_view dest_in;
    std::u16string_view dest_out;
  };
  void set_time_strings(const TimeTexts& texts, unsigned short frame_rate);

  // Gives the reel the owner's original frame rate.
  void update_reel_frame_rate();
  // Brings the source times to what their time code means at the reel's rate, if
  // that differs from the entry's.
  void check_reel_frame_rate();
  // Nonzero when the reel name is too long for formats of eight characters. The
  // name is cut at its last blank before it is measured.
  [[nodiscard]] int check_reel_name() const;

  // Zeroes the record and fills it; `streams` of the record is a new array that
  // the caller frees with delete[].
  void get_entry_details(ENTRY_DETAILS* details) const;
  void set_entry_details(const ENTRY_DETAILS* details);

  // What every walk through a list looks at stands first, together; texts, which are
  // most of the record, stand last.
  std::int64_t dest_in;
  std::int64_t dest_out;
  std::int64_t source_in;
  // Destination stream of each channel; owned.
  std::uint16_t* streams = nullptr;
  std::int32_t no_streams = 0;

 private:
  // Where `streams` points while there are few of them.
  std::uint16_t few_streams_[2] = {};

 public:
  std::int64_t source_out;
  // First channel of the source that this edit plays, from 0.
  std::uint16_t first_channel = 0;
  std::uint16_t event_number = event_number_not_set;
  // Shared, not owned; dies with the EDL that made it.
  CGenericReel* reel = nullptr;
  std::int64_t fade_in_length;
  std::int64_t fade_out_length;
  std::uint32_t transition_type = 0;
  // Frame-rate index of the texts of source in and out.
  std::uint16_t frame_rate;
  // Channels that this edit plays.
  std::uint16_t no_channels = 0;
  CGenericEdl* owner;
  std::int64_t dest_length;
  // Times as they stood before a crossfade was folded into the edit.
  std::int64_t original_dest_in = 0;
  std::int64_t original_dest_out = 0;
  std::int64_t original_source_in = 0;
  std::int64_t original_source_out = 0;
  // 0 marks source times that count from the start of the file.
  std::int32_t source_is_timestamped = 1;
  // Stands in when there is no reel.
  std::uint16_t reel_no_streams = 0;
  std::uint16_t fade_in_curve;
  std::uint16_t fade_out_curve;
  std::uint16_t channel_offset = 0;
  // Linear; the level of a mono edit, and of the second channel behind a merge.
  float gain_left = 1.0F;
  float gain_right = 1.0F;
  float level_in = 0.0F;
  float level_out = 0.0F;
  std::uint16_t event_flags = 0;
  std::uint16_t source_index = 65535;
  std::int32_t chunk_flags = 0;
  std::uint32_t detail_word = 0;
  std::uint8_t fade_in_shape = 0;
  std::uint8_t mute_flag = 0;
  std::uint8_t fade_out_shape = 0;
  // Timeline position of the start of the source file; time_not_given: unknown.
  std::int64_t source_timestamp = time_not_given;
  std::uint32_t source_time_word = 0;
  std::uint32_t source_channel = 0;
  std::uint32_t lw_channel_word = 0;
  std::uint32_t source_word = 0;
  CAudCnt* audio_content = nullptr;

  wide_char source_in_string[12] = {};
  wide_char source_out_string[12] = {};
  // Stands in when there is no reel.
  wide_char reel_name[13] = {};
  wide_char fade_in_name[9] = {};
  wide_char fade_out_name[9] = {};
  wide_char src_index[10] = {};
  wide_char source_reel_name[33] = {};
  wide_char clip_name[129] = {};
  wide_char originator[33] = {};
  wide_char originator_reference[33] = {};
  wide_char comment[129] = {};
  wide_char file_path[257] = {};
};
