// Heads, ids and sizes of the chunked EDL file.
//
//   file    magic, two 16-bit versions, then chunks to the end of the file: HDR1,
//           then lists in any order
//   chunk   12 bytes: id of four characters, major, minor, size of the body behind
//   list    a chunk whose body is a 32-bit count and that many item chunks
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace native {

inline constexpr std::uint32_t chunk_file_magic = 0x76172794;
// Written instead when the export flag is set; "nraT" in the file.
inline constexpr std::uint32_t chunk_file_magic_flagged = 0x5461726E;

inline constexpr std::size_t chunk_file_head_size = 8;
inline constexpr std::size_t chunk_header_size = 12;
inline constexpr std::size_t chunk_id_size = 4;

// Bodies of a fixed size, required exactly on reading.
inline constexpr std::uint32_t entry_record_size = 60;
inline constexpr std::uint32_t track_record_size = 260;
inline constexpr std::uint32_t pq_header_record_size = 16;
inline constexpr std::uint32_t pq_entry_record_size = 152;
inline constexpr std::uint32_t pq_details_record_size = 900;
// Bodies of a head and a run of records.
inline constexpr std::uint32_t locators_head_size = 4;
inline constexpr std::uint32_t locator_record_size = 24;
inline constexpr std::uint32_t automation_head_size = 8;
inline constexpr std::uint32_t automation_record_size = 8;

namespace chunk_id {

inline constexpr std::string_view header = "HDR1";
inline constexpr std::string_view track_list = "TLST";
inline constexpr std::string_view entry_list = "ELST";
inline constexpr std::string_view pq_list = "PLST";
inline constexpr std::string_view locator_list = "LLST";
inline constexpr std::string_view automation_list = "ALST";
inline constexpr std::string_view track = "TRAK";
inline constexpr std::string_view entry = "EDLE";
inline constexpr std::string_view pq_header = "PQHC";
inline constexpr std::string_view pq_entry = "PQEC";
inline constexpr std::string_view pq_details = "PQDC";
inline constexpr std::string_view locators = "LCTR";
inline constexpr std::string_view automation = "AUTO";

}  // namespace chunk_id

// What the writer puts into a header, by id. Readers know no later one.
inline constexpr std::uint16_t header_minor_written = 1;
inline constexpr std::uint16_t track_minor_written = 2;

}  // namespace native

struct ChunkHeader {
  char id[native::chunk_id_size] = {};
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  // Bytes of the body.
  std::uint32_t size = 0;

  [[nodiscard]] std::string_view id_text() const { return {id, sizeof id}; }
};

// Four characters from 20 to 7E hex; behind a blank only blanks.
[[nodiscard]] bool is_chunk_id(std::string_view id);

namespace native {

// From the first chunk_header_size bytes, which must be there.
[[nodiscard]] ChunkHeader read_chunk_header(const char* bytes);
void write_chunk_header(char* out, std::string_view id, std::uint16_t minor, std::uint32_t size);

// One warning box for a major above `known_major` and one for a minor above
// `known_minor`.
void warn_of_versions(const ChunkHeader& header, std::uint16_t known_minor, int warning);

// Whether the setting lets texts of the disc into the chunked file and out of it:
// "special interchange format" in section "DG" is 1. Read from the host each time.
[[nodiscard]] bool special_interchange_format();

}  // namespace native
