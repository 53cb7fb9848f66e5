// The records of an edit list in interchange form: an edit, its source, disc
// index data, locators and automation. They are the chunks of the chunked EDL
// file, and the working records of every format that reads or writes edits and
// their sources apart.
//
// Members hold a record as the formats work on it: 64-bit times, 16-bit texts.
// The bytes of a chunk stand in chunk_records.cpp.
//
// Texts: a setter cuts what does not fit and clears the rest of the field. Where a
// terminator is not promised, every place of the field may be text: read such a
// field with its getter or field_text, never as a terminated text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/framework/ob_list.h"
#include "host/framework/object.h"
#include "host/text.h"

class CAudCnt;
struct ChunkHeader;

// What chunk_type() answers.
enum ChunkType : int {
  chunk_type_entry = 1,
  chunk_type_track = 2,
  chunk_type_locators = 3,
  chunk_type_pq_header = 4,
  chunk_type_pq_entry = 5,
  chunk_type_pq_details = 6,
  chunk_type_automation = 7,
};

// No source; a source without a number.
inline constexpr std::uint16_t no_track_index = 0xFFFF;

class CGenericEDLFileChunk : public CObject {
 public:
  [[nodiscard]] virtual int chunk_type() const = 0;
  // Bytes of the body, without the chunk's header.
  [[nodiscard]] virtual std::uint32_t chunk_size() const = 0;

  // Each derived class has, beside its setters and getters:
  //
  //   check_chunk_header(header): 0 when the id is not its own. Otherwise shows a
  //     warning box for each version number above what is known, keeps the
  //     versions where it has members for them, and answers the size.
  //   read_from_buffer(cursor, header): takes the body from the front of `cursor`
  //     and answers 1; answers 0, with `cursor` unmoved and the record in no
  //     promised state, when the header, the size or a count is not right.
  //   to_file_record(record): appends the body.
};

// One edit.
class CGenericEDLFileEntry : public CGenericEDLFileChunk {
 public:
  [[nodiscard]] int chunk_type() const override { return chunk_type_entry; }
  [[nodiscard]] std::uint32_t chunk_size() const override;
  std::uint32_t check_chunk_header(const ChunkHeader& header);
  [[nodiscard]] int read_from_buffer(std::string_view& cursor, const ChunkHeader& header);
  void to_file_record(std::string& record) const;

  void set_name(std::u16string_view text) { set_field(m_name, text); }
  [[nodiscard]] std::u16string_view get_name() const { return field_text(m_name); }

  wide_char m_name[32] = {};
  // Samples.
  std::int64_t m_dest_in = 0;
  std::int64_t m_source_in = 0;
  std::int64_t m_length = 0;
  std::uint16_t m_fade_in_curve = 0;
  std::uint16_t m_fade_out_curve = 0;
  std::int64_t m_fade_in_length = 0;
  std::int64_t m_fade_out_length = 0;
  std::int64_t m_third_position = 0;
  // Linear.
  float m_level = 1.0F;
  // The m_index of the source that this edit plays.
  std::uint16_t m_track_index = no_track_index;
  // Streams on the timeline: how many, and the first of them.
  std::uint16_t m_stream_count = 0;
  std::uint32_t m_flags = 0;
  std::uint16_t m_first_stream = 0;
  // First channel of the source, from 0.
  std::uint16_t m_channel_offset = 0;

  // Working members; never in the chunked file. Nonzero: the fade belongs to a
  // crossfade with the edit before, or behind.
  std::uint32_t m_crossfade_in = 0;
  std::uint32_t m_crossfade_out = 0;
  // Zero: another edit sounds on the same tracks at the same time.
  std::uint32_t m_clean = 1;
};

// One source.
class CGenericEDLFileTrack : public CGenericEDLFileChunk {
 public:
  [[nodiscard]] int chunk_type() const override { return chunk_type_track; }
  [[nodiscard]] std::uint32_t chunk_size() const override;
  std::uint32_t check_chunk_header(const ChunkHeader& header);
  // An empty file name is taken from the path: the part behind its last "/".
  [[nodiscard]] int read_from_buffer(std::string_view& cursor, const ChunkHeader& header);
  void to_file_record(std::string& record) const;

  void set_file_name(std::u16string_view text) { set_field(m_file_name, text); }
  void set_path(std::u16string_view text) { set_field(m_path, text); }
  void set_reel_name(std::u16string_view text) { set_field(m_reel_name, text); }
  void set_originator(std::u16string_view text) { set_field(m_originator, text); }
  void set_originator_reference(std::u16string_view text) {
    set_field(m_originator_reference, text);
  }
  [[nodiscard]] std::u16string_view get_file_name() const { return field_text(m_file_name); }
  [[nodiscard]] std::u16string_view get_path() const { return field_text(m_path); }
  [[nodiscard]] std::u16string_view get_reel_name() const { return field_text(m_reel_name); }
  [[nodiscard]] std::u16string_view get_originator() const { return field_text(m_originator); }
  [[nodiscard]] std::u16string_view get_originator_reference() const {
    return field_text(m_originator_reference);
  }

  std::uint16_t m_index = no_track_index;
  wide_char m_file_name[128] = {};
  std::uint16_t m_source_type = 0xFFFF;
  std::uint32_t m_source_time_word = 0xFFFFFFFF;
  wide_char m_path[256] = {};
  wide_char m_reel_name[12] = {};
  std::uint16_t m_source_channel = 0;
  // First channel that an edit of this source plays; with m_no_channels the range
  // of channels for which the record stands.
  std::uint16_t m_first_channel = 0xFFFF;
  // Samples; time_not_given: unknown.
  std::int64_t m_time_stamp = time_not_given;
  std::uint16_t m_no_channels = 0;
  wide_char m_originator[32] = {};
  std::uint32_t m_source_word = 0;

  // Working members; never in the chunked file. The reference is a text of up to
  // 32 characters that names the source for good.
  wide_char m_originator_reference[33] = {};
  // The host's audio content. Not owned.
  CAudCnt* m_source_object = nullptr;

  // Versions of the chunk that this was read from.
  std::uint16_t m_major = 0;
  std::uint16_t m_minor = 0;
};

class CGenericEDLFileLocatorEntry : public CObject {
 public:
  // Sixteen places, no terminator promised.
  void set_name(std::u16string_view text);
  [[nodiscard]] std::u16string_view get_name() const { return field_text(m_name); }

  // Samples.
  std::int64_t m_time = 0;
  wide_char m_name[16] = {};
  std::uint16_t m_locator_value = 0;
};

// A run of locators.
class CGenericEDLFileLocatorEntryChunk : public CGenericEDLFileChunk {
 public:
  ~CGenericEDLFileLocatorEntryChunk() override;
  [[nodiscard]] int chunk_type() const override { return chunk_type_locators; }
  [[nodiscard]] std::uint32_t chunk_size() const override;
  std::uint32_t check_chunk_header(const ChunkHeader& header);
  [[nodiscard]] int read_from_buffer(std::string_view& cursor, const ChunkHeader& header);
  // Writes m_count locators.
  void to_file_record(std::string& record) const;

  // Locators written; 16 bits, so it wraps when the list is longer.
  std::uint16_t m_count = 0;
  std::uint16_t m_major = 0;
  std::uint16_t m_minor = 0;
  // CGenericEDLFileLocatorEntry objects, owned.
  CObList m_locators{10};
};

// The head of the disc index: the catalogue number and the count of its entries.
class CGenericEDLFilePQHeaderChunk : public CGenericEDLFileChunk {
 public:
  CGenericEDLFilePQHeaderChunk();
  [[nodiscard]] int chunk_type() const override { return chunk_type_pq_header; }
  [[nodiscard]] std::uint32_t chunk_size() const override;
  std::uint32_t check_chunk_header(const ChunkHeader& header);
  [[nodiscard]] int read_from_buffer(std::string_view& cursor, const ChunkHeader& header);
  void to_file_record(std::string& record) const;

  void set_catalogue(std::u16string_view text);
  [[nodiscard]] std::u16string_view get_catalogue() const { return field_text(m_catalogue); }

  // Thirteen places and no terminator.
  wide_char m_catalogue[13] = {};
  // Narrowed to 16 bits, so 65536 entries count as 0.
  std::uint16_t m_count = 0;
  std::uint16_t m_major = 0;
  std::uint16_t m_minor = 0;
};

// One entry of the disc index.
class CGenericEDLFilePQEntryChunk : public CGenericEDLFileChunk {
 public:
  [[nodiscard]] int chunk_type() const override { return chunk_type_pq_entry; }
  [[nodiscard]] std::uint32_t chunk_size() const override;
  std::uint32_t check_chunk_header(const ChunkHeader& header);
  [[nodiscard]] int read_from_buffer(std::string_view& cursor, const ChunkHeader& header);
  void to_file_record(std::string& record) const;

  void set_text_a(std::u16string_view text) { set_field(m_text_a, text); }
  void set_text_b(std::u16string_view text) { set_field(m_text_b, text); }
  void set_text_c(std::u16string_view text) { set_field(m_text_c, text); }
  void set_isrc(std::u16string_view text);
  [[nodiscard]] std::u16string_view get_text_a() const { return field_text(m_text_a); }
  [[nodiscard]] std::u16string_view get_text_b() const { return field_text(m_text_b); }
  [[nodiscard]] std::u16string_view get_text_c() const { return field_text(m_text_c); }
  [[nodiscard]] std::u16string_view get_isrc() const { return field_text(m_isrc); }

  // Samples.
  std::int64_t m_time = 0;
  std::uint16_t m_track_number = 0;
  std::uint16_t m_index_number = 0;
  wide_char m_text_a[32] = {};
  wide_char m_text_b[32] = {};
  std::uint32_t m_flag_a = 0;
  std::uint32_t m_flag_b = 0;
  // Twelve places, no terminator promised.
  wide_char m_isrc[12] = {};
  wide_char m_text_c[64] = {};
  std::uint16_t m_major = 0;
  std::uint16_t m_minor = 0;
};

// The texts of a disc.
class CGenericEDLFilePQDetailsChunk : public CGenericEDLFileChunk {
 public:
  static constexpr int text_count = 7;

  [[nodiscard]] int chunk_type() const override { return chunk_type_pq_details; }
  [[nodiscard]] std::uint32_t chunk_size() const override;
  std::uint32_t check_chunk_header(const ChunkHeader& header);
  [[nodiscard]] int read_from_buffer(std::string_view& cursor, const ChunkHeader& header);
  void to_file_record(std::string& record) const;

  // `i` from 0 to 6.
  void set_details(int i, std::u16string_view text);
  [[nodiscard]] std::u16string_view get_details(int i) const { return field_text(m_details[i]); }

  // 128 places each, no terminator promised.
  wide_char m_details[text_count][128] = {};
  std::uint16_t m_value = 0;
  std::uint16_t m_major = 0;
  std::uint16_t m_minor = 0;
};

class CGenericEDLFileAutomationEntry : public CObject {
 public:
  // Samples.
  std::int64_t m_time = 0;
  // In the steps of the format that made it.
  std::uint32_t m_value = 0;
};

// A run of automation of one parameter on one channel.
class CGenericEDLFileAutomationEntryChunk : public CGenericEDLFileChunk {
 public:
  CGenericEDLFileAutomationEntryChunk() = default;
  CGenericEDLFileAutomationEntryChunk(const CGenericEDLFileAutomationEntryChunk&) = delete;
  CGenericEDLFileAutomationEntryChunk& operator=(const CGenericEDLFileAutomationEntryChunk&) =
      delete;
  ~CGenericEDLFileAutomationEntryChunk() override;
  [[nodiscard]] int chunk_type() const override { return chunk_type_automation; }
  // Narrowed to 32 bits.
  [[nodiscard]] std::uint32_t chunk_size() const override;
  std::uint32_t check_chunk_header(const ChunkHeader& header);
  [[nodiscard]] int read_from_buffer(std::string_view& cursor, const ChunkHeader& header);
  // Writes m_count points.
  void to_file_record(std::string& record) const;

  // The list of points, made when there is none.
  CObList& points();

  // What is automated: 0 fader, 1 mute, 2 pan.
  std::uint16_t m_parameter = 0xFFFF;
  std::uint16_t m_channel = 0xFFFF;
  std::uint32_t m_count = 0;
  std::uint16_t m_major = 0;
  std::uint16_t m_minor = 0;
  // CGenericEDLFileAutomationEntry objects in time order. The list and the points
  // are owned; null until somebody makes it.
  CObList* m_points = nullptr;
};

// Warnings about chunks, by the number that stands for their text.
namespace chunk_warning {

inline constexpr int header_version = 1;
inline constexpr int list_version = 2;
inline constexpr int entry_version = 3;
inline constexpr int track_version = 4;
inline constexpr int automation_version = 5;  // locators as well
inline constexpr int pq_header_version = 6;
inline constexpr int pq_entry_version = 7;
inline constexpr int unknown_list = 8;
inline constexpr int unknown_item = 9;
inline constexpr int pq_details_version = 10;
inline constexpr int count = 11;

}  // namespace chunk_warning

// Shows one box for a warning number 0 to 10; nothing for another.
void report_chunk_warning(int number);
