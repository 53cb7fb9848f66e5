// The bytes of each chunk body. Words are little-endian, texts are 8-bit in the
// host's code page, times are the low 32 bits of a sample count. Offsets stand at
// each field; reading and writing run in the order of the file.
#include <algorithm>
#include <string>

#include "host/host.h"
#include "host/settings.h"
#include "native/chunk_header.h"
#include "native/generic_edl_file_chunks.h"
#include "native/wire_bytes.h"

using native::WireIn;
using native::WireOut;

namespace {

constexpr std::uint32_t no_position = 0xFFFFFFFF;
constexpr std::size_t entry_name_size = 16;
constexpr std::size_t file_name_size = 64;
constexpr std::size_t path_size = 128;
constexpr std::size_t reel_name_size = 12;
constexpr std::size_t originator_size = 32;
constexpr std::size_t locator_name_size = 16;
constexpr std::size_t catalogue_size = 13;
constexpr std::size_t pq_text_size = 32;
constexpr std::size_t isrc_size = 12;
constexpr std::size_t pq_third_text_size = 64;
constexpr std::size_t pq_details_text_size = 128;

// Makes room for a body at the end of `out`.
WireOut appended(std::string& out, std::size_t size) {
  const std::size_t at = out.size();
  out.resize(at + size);
  return WireOut(out.data() + at);
}

// The size of the header when the id is right, after the warnings; else 0.
std::uint32_t checked_size(const ChunkHeader& header, std::string_view id,
                           std::uint16_t known_minor, int warning) {
  if (header.id_text() != id) return 0;
  native::warn_of_versions(header, known_minor, warning);
  return header.size;
}

// Whether a body of a fixed size is right and there.
bool has_body(std::string_view cursor, std::uint32_t size, std::uint32_t wanted) {
  return size == wanted && cursor.size() >= wanted;
}

// A curve that is not set is the straight line.
std::uint16_t curve_of(std::uint16_t word) {
  return word == 0xFFFF ? std::uint16_t{0} : word;
}

}  // namespace

bool is_chunk_id(std::string_view id) {
  if (id.size() != native::chunk_id_size) return false;
  const bool printable =
      std::all_of(id.begin(), id.end(), [](char c) { return c >= 0x20 && c <= 0x7E; });
  const std::size_t blank = id.find(' ');
  return printable && (blank == std::string_view::npos ||
                       id.find_first_not_of(' ', blank) == std::string_view::npos);
}

namespace native {

ChunkHeader read_chunk_header(const char* bytes) {
  WireIn in(bytes);
  ChunkHeader header;
  const std::string_view id = in.bytes(chunk_id_size);
  std::copy(id.begin(), id.end(), header.id);
  header.major = in.u16();
  header.minor = in.u16();
  header.size = in.u32();
  return header;
}

void write_chunk_header(char* out, std::string_view id, std::uint16_t minor, std::uint32_t size) {
  WireOut head(out);
  head.bytes(id);
  head.u16(0);
  head.u16(minor);
  head.u32(size);
}

void warn_of_versions(const ChunkHeader& header, std::uint16_t known_minor, int warning) {
  if (header.major > 0) report_chunk_warning(warning);
  if (header.minor > known_minor) report_chunk_warning(warning);
}

bool special_interchange_format() {
  return host().settings().ini_integer(u"marlo3.ini", u"DG", u"special interchange format", 0) == 1;
}

}  // namespace native

// EDLE

std::uint32_t CGenericEDLFileEntry::chunk_size() const {
  return native::entry_record_size;
}

std::uint32_t CGenericEDLFileEntry::check_chunk_header(const ChunkHeader& header) {
  return checked_size(header, native::chunk_id::entry, 0, chunk_warning::entry_version);
}

int CGenericEDLFileEntry::read_from_buffer(std::string_view& cursor, const ChunkHeader& header) {
  if (!has_body(cursor, check_chunk_header(header), native::entry_record_size)) return 0;
  WireIn in(cursor.data());
  // The name is not converted: bytes from 80 hex take an upper half of all ones.
  const std::string_view name = in.bytes(entry_name_size);  // 0
  std::transform(name.begin(), name.end(), m_name,
                 [](char c) { return static_cast<wide_char>(static_cast<signed char>(c)); });
  m_name[entry_name_size] = u'\0';
  m_dest_in = in.u32();                   // 16
  m_source_in = in.u32();                 // 20
  m_length = in.u32();                    // 24
  m_fade_in_curve = curve_of(in.u16());   // 28
  m_fade_out_curve = curve_of(in.u16());  // 30
  m_fade_in_length = in.u32();            // 32
  m_fade_out_length = in.u32();           // 36
  const std::uint32_t third = in.u32();   // 40
  m_third_position = third == no_position ? time_not_given : std::int64_t{third};
  m_level = in.f32();           // 44
  m_track_index = in.u16();     // 48
  m_stream_count = in.u16();    // 50
  m_flags = in.u32();           // 52
  m_first_stream = in.u16();    // 56
  m_channel_offset = in.u16();  // 58
  cursor.remove_prefix(native::entry_record_size);
  return 1;
}

void CGenericEDLFileEntry::to_file_record(std::string& record) const {
  WireOut out = appended(record, native::entry_record_size);
  out.text(get_name(), entry_name_size - 1);  // 0
  out.u8(0);
  out.low32(m_dest_in);          // 16
  out.low32(m_source_in);        // 20
  out.low32(m_length);           // 24
  out.u16(m_fade_in_curve);      // 28
  out.u16(m_fade_out_curve);     // 30
  out.low32(m_fade_in_length);   // 32
  out.low32(m_fade_out_length);  // 36
  out.low32(m_third_position);   // 40
  out.f32(m_level);              // 44
  out.u16(m_track_index);        // 48
  out.u16(m_stream_count);       // 50
  out.u32(m_flags);              // 52
  out.u16(m_first_stream);       // 56
  out.u16(m_channel_offset);     // 58
}

// TRAK

std::uint32_t CGenericEDLFileTrack::chunk_size() const {
  return native::track_record_size;
}

std::uint32_t CGenericEDLFileTrack::check_chunk_header(const ChunkHeader& header) {
  const std::uint32_t size = checked_size(
      header, native::chunk_id::track, native::track_minor_written, chunk_warning::track_version);
  m_major = header.major;
  m_minor = header.minor;
  return size;
}

int CGenericEDLFileTrack::read_from_buffer(std::string_view& cursor, const ChunkHeader& header) {
  if (!has_body(cursor, check_chunk_header(header), native::track_record_size)) return 0;
  WireIn in(cursor.data());
  m_index = in.u16();                          // 0
  in.text(m_file_name, file_name_size);        // 2
  m_source_type = in.u16();                    // 66
  m_source_time_word = in.u32();               // 68
  in.text(m_path, path_size);                  // 72
  in.text(m_reel_name, reel_name_size);        // 200
  m_source_channel = in.u16();                 // 212
  m_first_channel = in.u16();                  // 214
  m_time_stamp = in.u32();                     // 216; all ones stay a plain number
  const std::uint16_t no_channels = in.u16();  // 220
  in.skip(2);                                  // 222
  const std::string_view originator = in.bytes(originator_size);  // 224
  const std::uint32_t source_word = in.u32();                     // 256
  // The bytes stand in every version; a version above what is known is taken to
  // mean something else by them.
  if (m_minor == 1 || m_minor == 2) m_no_channels = no_channels;
  if (m_minor == 2) {
    WireIn(originator.data()).text(m_originator, originator_size);
    m_source_word = source_word;
  }
  if (get_file_name().empty()) {
    const std::u16string_view path = get_path();
    const std::size_t slash = path.rfind(u'/');
    if (slash != std::u16string_view::npos) set_file_name(path.substr(slash + 1));
  }
  cursor.remove_prefix(native::track_record_size);
  return 1;
}

void CGenericEDLFileTrack::to_file_record(std::string& record) const {
  WireOut out = appended(record, native::track_record_size);
  out.u16(m_index);                             // 0
  out.text(get_file_name(), file_name_size);    // 2
  out.u16(m_source_type);                       // 66
  out.u32(m_source_time_word);                  // 68
  out.text(get_path(), path_size);              // 72
  out.text(get_reel_name(), reel_name_size);    // 200
  out.u16(m_source_channel);                    // 212
  out.u16(m_first_channel);                     // 214
  out.low32(m_time_stamp);                      // 216
  out.u16(m_no_channels);                       // 220
  out.u16(0);                                   // 222
  out.text(get_originator(), originator_size);  // 224
  out.u32(m_source_word);                       // 256
}

// LCTR

std::uint32_t CGenericEDLFileLocatorEntryChunk::chunk_size() const {
  return native::locators_head_size + native::locator_record_size * m_count;
}

std::uint32_t CGenericEDLFileLocatorEntryChunk::check_chunk_header(const ChunkHeader& header) {
  m_major = header.major;
  m_minor = header.minor;
  return checked_size(header, native::chunk_id::locators, 0, chunk_warning::automation_version);
}

int CGenericEDLFileLocatorEntryChunk::read_from_buffer(std::string_view& cursor,
                                                       const ChunkHeader& header) {
  const std::uint32_t size = check_chunk_header(header);
  if (size < native::locators_head_size || cursor.size() < size) return 0;
  WireIn in(cursor.data());
  m_count = in.u16();  // 0
  in.skip(2);          // 2
  if (size != chunk_size()) return 0;
  for (unsigned i = 0; i < m_count; ++i) {
    auto* const locator = new CGenericEDLFileLocatorEntry;
    m_locators.AddTail(locator);
    locator->m_time = in.u32();                        // 0
    in.full_text(locator->m_name, locator_name_size);  // 4
    locator->m_locator_value = in.u16();               // 20
    in.skip(2);                                        // 22
  }
  cursor.remove_prefix(size);
  return 1;
}

void CGenericEDLFileLocatorEntryChunk::to_file_record(std::string& record) const {
  WireOut out = appended(record, chunk_size());
  out.u16(m_count);  // 0
  out.u16(0);        // 2
  POSITION at = m_locators.GetHeadPosition();
  for (unsigned i = 0; i < m_count && at != nullptr; ++i) {
    const auto* const locator =
        static_cast<const CGenericEDLFileLocatorEntry*>(m_locators.GetNext(at));
    out.low32(locator->m_time);                        // 0
    out.text(locator->get_name(), locator_name_size);  // 4
    out.u16(locator->m_locator_value);                 // 20
    out.u16(0);                                        // 22
  }
}

// PQHC

std::uint32_t CGenericEDLFilePQHeaderChunk::chunk_size() const {
  return native::pq_header_record_size;
}

std::uint32_t CGenericEDLFilePQHeaderChunk::check_chunk_header(const ChunkHeader& header) {
  m_major = header.major;
  m_minor = header.minor;
  return checked_size(header, native::chunk_id::pq_header, 0, chunk_warning::pq_header_version);
}

int CGenericEDLFilePQHeaderChunk::read_from_buffer(std::string_view& cursor,
                                                   const ChunkHeader& header) {
  if (!has_body(cursor, check_chunk_header(header), native::pq_header_record_size)) return 0;
  WireIn in(cursor.data());
  in.full_text(m_catalogue, catalogue_size);  // 0
  in.skip(1);                                 // 13
  m_count = in.u16();                         // 14
  cursor.remove_prefix(native::pq_header_record_size);
  return 1;
}

void CGenericEDLFilePQHeaderChunk::to_file_record(std::string& record) const {
  WireOut out = appended(record, native::pq_header_record_size);
  out.text(get_catalogue(), catalogue_size);  // 0
  out.u8(0);                                  // 13
  out.u16(m_count);                           // 14
}

// PQEC

std::uint32_t CGenericEDLFilePQEntryChunk::chunk_size() const {
  return native::pq_entry_record_size;
}

std::uint32_t CGenericEDLFilePQEntryChunk::check_chunk_header(const ChunkHeader& header) {
  m_major = header.major;
  m_minor = header.minor;
  return checked_size(header, native::chunk_id::pq_entry, 0, chunk_warning::pq_entry_version);
}

int CGenericEDLFilePQEntryChunk::read_from_buffer(std::string_view& cursor,
                                                  const ChunkHeader& header) {
  if (!has_body(cursor, check_chunk_header(header), native::pq_entry_record_size)) return 0;
  WireIn in(cursor.data());
  m_time = in.u32();                      // 0
  m_track_number = in.u16();              // 4
  m_index_number = in.u16();              // 6
  in.text(m_text_a, pq_text_size);        // 8
  in.text(m_text_b, pq_text_size);        // 40
  m_flag_a = in.u16();                    // 72
  m_flag_b = in.u16();                    // 74
  in.full_text(m_isrc, isrc_size);        // 76
  in.text(m_text_c, pq_third_text_size);  // 88
  cursor.remove_prefix(native::pq_entry_record_size);
  return 1;
}

void CGenericEDLFilePQEntryChunk::to_file_record(std::string& record) const {
  WireOut out = appended(record, native::pq_entry_record_size);
  out.low32(m_time);                           // 0
  out.u16(m_track_number);                     // 4
  out.u16(m_index_number);                     // 6
  out.text(get_text_a(), pq_text_size);        // 8
  out.text(get_text_b(), pq_text_size);        // 40
  out.u16(m_flag_a);                           // 72
  out.u16(m_flag_b);                           // 74
  out.text(get_isrc(), isrc_size);             // 76
  out.text(get_text_c(), pq_third_text_size);  // 88
}

// PQDC

std::uint32_t CGenericEDLFilePQDetailsChunk::chunk_size() const {
  return native::pq_details_record_size;
}

std::uint32_t CGenericEDLFilePQDetailsChunk::check_chunk_header(const ChunkHeader& header) {
  m_major = header.major;
  m_minor = header.minor;
  return checked_size(header, native::chunk_id::pq_details, 0, chunk_warning::pq_details_version);
}

int CGenericEDLFilePQDetailsChunk::read_from_buffer(std::string_view& cursor,
                                                    const ChunkHeader& header) {
  if (!has_body(cursor, check_chunk_header(header), native::pq_details_record_size)) return 0;
  WireIn in(cursor.data());
  for (auto& details : m_details)  // 0, 128, … 768
    in.full_text(details, pq_details_text_size);
  m_value = in.u16();  // 896; 898 is reserved
  cursor.remove_prefix(native::pq_details_record_size);
  return 1;
}

void CGenericEDLFilePQDetailsChunk::to_file_record(std::string& record) const {
  WireOut out = appended(record, native::pq_details_record_size);
  for (int i = 0; i < text_count; ++i)  // 0, 128, … 768
    out.text(get_details(i), pq_details_text_size);
  out.u16(m_value);  // 896
  out.u16(0);        // 898
}

// AUTO

namespace {

// In 64 bits, so that no count can make a size that wraps into a small one.
std::uint64_t automation_body_size(std::uint32_t count) {
  return native::automation_head_size + std::uint64_t{native::automation_record_size} * count;
}

}  // namespace

std::uint32_t CGenericEDLFileAutomationEntryChunk::chunk_size() const {
  return static_cast<std::uint32_t>(automation_body_size(m_count));
}

std::uint32_t CGenericEDLFileAutomationEntryChunk::check_chunk_header(const ChunkHeader& header) {
  m_major = header.major;
  m_minor = header.minor;
  return checked_size(header, native::chunk_id::automation, 0, chunk_warning::automation_version);
}

int CGenericEDLFileAutomationEntryChunk::read_from_buffer(std::string_view& cursor,
                                                          const ChunkHeader& header) {
  const std::uint32_t size = check_chunk_header(header);
  if (size < native::automation_head_size || cursor.size() < size) return 0;
  WireIn in(cursor.data());
  m_parameter = in.u16();                // 0
  m_channel = in.u16();                  // 2
  const std::uint32_t count = in.u32();  // 4
  if (size != automation_body_size(count)) return 0;
  m_count = count;
  CObList& list = points();
  for (std::uint32_t i = 0; i < count; ++i) {
    auto* const point = new CGenericEDLFileAutomationEntry;
    list.AddTail(point);
    point->m_time = in.u32();   // 0
    point->m_value = in.u32();  // 4
  }
  cursor.remove_prefix(size);
  return 1;
}

void CGenericEDLFileAutomationEntryChunk::to_file_record(std::string& record) const {
  WireOut out = appended(record, automation_body_size(m_count));
  out.u16(m_parameter);  // 0
  out.u16(m_channel);    // 2
  out.u32(m_count);      // 4
  POSITION at = m_points == nullptr ? nullptr : m_points->GetHeadPosition();
  for (std::uint32_t i = 0; i < m_count && at != nullptr; ++i) {
    const auto* const point =
        static_cast<const CGenericEDLFileAutomationEntry*>(m_points->GetNext(at));
    out.low32(point->m_time);  // 0
    out.u32(point->m_value);   // 4
  }
}
