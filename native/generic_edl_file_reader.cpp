// Reads the chunked file: bytes into records, then records into the generic lists.
#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

#include "core/generic_edl_entry.h"
#include "core/generic_pq_entry.h"
#include "host/dialogs.h"
#include "host/framework/file.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/rates.h"
#include "host/settings.h"
#include "native/chunk_header.h"
#include "native/file_input.h"
#include "native/generic_edl_file.h"
#include "native/generic_edl_file_chunks.h"
#include "native/record_transfer.h"
#include "native/wire_bytes.h"

using native::WireIn;

namespace {

// Shows while it lives.
class WaitCursor {
 public:
  WaitCursor() { host().dialogs().begin_wait(); }
  ~WaitCursor() { host().dialogs().end_wait(); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
};

// Bytes of the head chunk in front of the stream values.
constexpr std::uint32_t head_fixed_size = 8;
constexpr std::uint32_t stream_value_size = 4;
// A head chunk below this size is skipped unread.
constexpr std::uint32_t head_least_size = 12;
constexpr std::size_t item_count_size = 4;

struct ListItem {
  std::string_view list;
  std::string_view item;
};

// What each list takes; any other item is unknown there.
constexpr std::array<ListItem, 7> list_items = {{
    {native::chunk_id::entry_list, native::chunk_id::entry},
    {native::chunk_id::track_list, native::chunk_id::track},
    {native::chunk_id::pq_list, native::chunk_id::pq_entry},
    {native::chunk_id::pq_list, native::chunk_id::pq_header},
    {native::chunk_id::pq_list, native::chunk_id::pq_details},
    {native::chunk_id::locator_list, native::chunk_id::locators},
    {native::chunk_id::automation_list, native::chunk_id::automation},
}};

bool is_list(std::string_view id) {
  return std::any_of(list_items.begin(), list_items.end(),
                     [id](const ListItem& row) { return row.list == id; });
}

bool list_takes(std::string_view list, std::string_view item) {
  return std::any_of(list_items.begin(), list_items.end(),
                     [&](const ListItem& row) { return row.list == list && row.item == item; });
}

// Reads one item and puts it on the list; false when it is damaged.
template <class Chunk>
bool add_item(CObList& list, std::string_view& cursor, const ChunkHeader& header) {
  auto chunk = std::make_unique<Chunk>();
  if (chunk->read_from_buffer(cursor, header) == 0) return false;
  list.AddTail(chunk.release());
  return true;
}

// Imported edits play at full level, whatever the file says.
bool levels_are_ignored() {
  return host().settings().ini_integer(u"marlo3.ini", u"Edl Conversion", u"Studer", 0) != 0;
}

void pq_entry_from_record(CGenericPQEntry& entry, const CGenericEDLFilePQEntryChunk& record) {
  entry.position_a = entry.position_b = record.m_time;
  entry.track_number = record.m_track_number;
  entry.index_number = record.m_index_number;
  entry.first_text = CString(record.get_text_a());
  entry.second_text = CString(record.get_text_b());
  entry.flag_a = static_cast<std::uint8_t>(record.m_flag_a);
  entry.flag_b = static_cast<std::uint8_t>(record.m_flag_b);
  entry.isrc = CString(record.get_isrc());
  entry.third_text = CString(record.get_text_c());
}

// A pause that begins where its track begins starts with the track.
void mend_pauses(const CObList& entries) {
  CGenericPQEntry* before = nullptr;
  for (POSITION at = entries.GetHeadPosition(); at != nullptr;) {
    auto* const entry = static_cast<CGenericPQEntry*>(entries.GetNext(at));
    if (before != nullptr && entry->index_number == 1 && before->index_number == 0 &&
        entry->position_b == before->position_b) {
      before->position_a = entry->position_a;
    }
    before = entry;
  }
}

}  // namespace

class CGenericEDLFile::Reader {
 public:
  Reader(CGenericEDLFile& edl, CFile& file) : m_edl(edl), m_in(file) {}

  // 100, 4 or 10. May raise CFileException.
  [[nodiscard]] result_code read() {
    if (!read_file_head()) return result::damaged;
    ChunkHeader head;
    if (!find_head_chunk(head)) return result::wrong_format;
    if (!read_head_chunk(head)) return result::damaged;
    while (const char* const bytes = m_in.take(native::chunk_header_size)) {
      if (!read_list(native::read_chunk_header(bytes))) return result::damaged;
    }
    return result::import_complete;
  }

 private:
  bool read_file_head() {
    const char* const bytes = m_in.take(native::chunk_file_head_size);
    if (bytes == nullptr) return false;
    WireIn in(bytes);
    const std::uint32_t magic = in.u32();
    const std::uint16_t major = in.u16();
    const std::uint16_t minor = in.u16();
    return (magic == native::chunk_file_magic || magic == native::chunk_file_magic_flagged) &&
           major == 0 && minor == 0;
  }

  // Skips whatever stands in front of it, without a word.
  bool find_head_chunk(ChunkHeader& header) {
    while (const char* const bytes = m_in.take(native::chunk_header_size)) {
      header = native::read_chunk_header(bytes);
      if (header.id_text() == native::chunk_id::header) return true;
      m_in.skip(header.size);
    }
    return false;
  }

  bool read_head_chunk(const ChunkHeader& header) {
    native::warn_of_versions(header, native::header_minor_written, chunk_warning::header_version);
    if (header.size < head_least_size) {
      m_in.skip(header.size);
      return true;
    }
    const char* const bytes = m_in.take(head_fixed_size);
    if (bytes == nullptr) return false;
    WireIn in(bytes);
    const std::uint32_t sample_rate = in.u32();
    const std::uint16_t frame_rate = in.u16();
    take_rates(sample_rate, frame_rate);
    const std::uint16_t stream_count = in.u16();
    if (!read_stream_values(stream_count)) return false;
    // Writers of minor 0 counted one word more than they wrote.
    const std::uint32_t uncounted = header.minor == 0 ? stream_value_size : 0;
    const std::uint32_t counted =
        head_fixed_size + uncounted + stream_value_size * std::uint32_t{stream_count};
    if (header.size > counted) m_in.skip(header.size - counted);
    return true;
  }

  void take_rates(std::uint32_t sample_rate, std::uint16_t frame_rate) {
    const signed char index = sample_rate_to_index(sample_rate);
    if (index >= 0) m_edl.set_sample_rate_index(static_cast<unsigned char>(index));
    if (frame_rate < frame_rate_count) {
      m_edl.set_frame_rate(static_cast<unsigned char>(frame_rate));
    }
  }

  bool read_stream_values(std::uint16_t count) {
    m_edl.note_stream(static_cast<unsigned short>(count - 1));
    for (unsigned stream = 0; stream < count; ++stream) {
      const char* const bytes = m_in.take(stream_value_size);
      if (bytes == nullptr) return false;
      m_edl.set_track_id(stream, WireIn(bytes).u32());
    }
    return true;
  }

  bool read_list(const ChunkHeader& header) {
    if (!is_chunk_id(header.id_text())) return false;
    if (!is_list(header.id_text())) {
      report_chunk_warning(chunk_warning::unknown_list);
      m_in.skip(header.size);
      return true;
    }
    native::warn_of_versions(header, 0, chunk_warning::list_version);
    const char* const bytes = m_in.take(item_count_size);
    if (bytes == nullptr || header.size < item_count_size) return false;
    const std::uint32_t item_count = WireIn(bytes).u32();
    const std::uint32_t length = header.size - static_cast<std::uint32_t>(item_count_size);
    // Nothing is taken for a length that the file does not hold.
    if (length < native::chunk_header_size || length > m_in.left()) return false;
    const std::unique_ptr<char[]> body(new char[length]);
    return m_in.read(body.get(), length) &&
           read_items(header.id_text(), {body.get(), length}, item_count);
  }

  // The list is good when its items end exactly at its end.
  bool read_items(std::string_view list, std::string_view cursor, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
      if (cursor.size() < native::chunk_header_size) return false;
      const ChunkHeader header = native::read_chunk_header(cursor.data());
      cursor.remove_prefix(native::chunk_header_size);
      if (!is_chunk_id(header.id_text()) || header.size > cursor.size()) return false;
      if (!list_takes(list, header.id_text())) {
        report_chunk_warning(chunk_warning::unknown_item);
        cursor.remove_prefix(header.size);
      } else if (!read_item(cursor, header)) {
        return false;
      }
    }
    return cursor.empty();
  }

  bool read_item(std::string_view& cursor, const ChunkHeader& header) {
    const std::string_view id = header.id_text();
    if (id == native::chunk_id::entry) {
      return add_item<CGenericEDLFileEntry>(m_edl.m_entries, cursor, header) && count_streams();
    }
    if (id == native::chunk_id::track) {
      return add_item<CGenericEDLFileTrack>(m_edl.m_tracks, cursor, header);
    }
    if (id == native::chunk_id::pq_header) {
      return add_item<CGenericEDLFilePQHeaderChunk>(m_edl.m_pq_chunks, cursor, header);
    }
    if (id == native::chunk_id::pq_entry) {
      return add_item<CGenericEDLFilePQEntryChunk>(m_edl.m_pq_chunks, cursor, header);
    }
    if (id == native::chunk_id::locators) {
      return add_item<CGenericEDLFileLocatorEntryChunk>(m_edl.m_locator_chunks, cursor, header);
    }
    if (id == native::chunk_id::automation) {
      return add_item<CGenericEDLFileAutomationEntryChunk>(m_edl.m_automation_chunks, cursor,
                                                           header);
    }
    // Texts of the disc. Without the setting only their header is read, so that the
    // walk goes wrong in their body and the list is declared damaged.
    return !native::special_interchange_format() ||
           add_item<CGenericEDLFilePQDetailsChunk>(m_edl.m_pq_chunks, cursor, header);
  }

  bool count_streams() {
    const auto* const entry = static_cast<const CGenericEDLFileEntry*>(m_edl.m_entries.GetTail());
    m_stream_words += entry->m_stream_count;
    return m_stream_words <= native::most_stream_words;
  }

  CGenericEDLFile& m_edl;
  native::FileInput m_in;
  std::uint64_t m_stream_words = 0;
};

result_code CGenericEDLFile::import_edl(const wide_char* path) {
  clear_records();
  host().message_boxes().note_place(path, 0);
  CFile file;
  if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone)) return result::not_opened;
  try {
    const WaitCursor waiting;
    const result_code read = Reader(*this, file).read();
    if (read != result::import_complete) return read;
    native::sort_by_destination(m_entries);
  } catch (const CFileException&) {
    return result::damaged;
  }
  if (get_generic_entry_list() != nullptr) build_lists();
  file.Close();
  return result::import_complete;
}

// An object whose parent is no root has no lists to fill.
void CGenericEDLFile::build_lists() {
  build_entries();
  build_pq();
  native::transfer_locators(m_locator_chunks, *get_locator_list());
  native::transfer_automation(m_automation_chunks, *get_automation_list());
}

void CGenericEDLFile::build_entries() {
  const bool full_level = levels_are_ignored();
  const native::TrackIndex tracks(m_tracks);
  CObList& entries = *get_generic_entry_list();
  for (POSITION at = m_entries.GetHeadPosition(); at != nullptr;) {
    const auto& record = *static_cast<const CGenericEDLFileEntry*>(m_entries.GetNext(at));
    auto entry = std::make_unique<CGenericEdlEntry>(this);
    native::entry_from_record(*entry, record);
    if (full_level) entry->gain_left = 1.0F;
    // An edit whose source is not in the file is dropped; the streams that it noted
    // stay noted.
    const CGenericEDLFileTrack* const track = tracks.find(record.m_track_index);
    if (track == nullptr) continue;
    native::entry_from_track(*entry, *track);
    entry->no_channels = track->m_minor == 0 ? record.m_stream_count : track->m_no_channels;
    entries.AddTail(entry.release());
  }
}

// Chunks are taken by their place in the list. One of another kind than its place
// asks for gives what it can: nothing in place of the header or the texts of the
// disc, an empty entry in place of an entry.
void CGenericEDLFile::build_pq() {
  POSITION at = m_pq_chunks.GetHeadPosition();
  if (at == nullptr) return;
  const auto* const head =
      dynamic_cast<const CGenericEDLFilePQHeaderChunk*>(m_pq_chunks.GetNext(at));
  if (head == nullptr) return;
  PQ_DETAILS details;
  get_pq_details(&details);
  std::copy(std::begin(head->m_catalogue), std::end(head->m_catalogue), details.pq_catalogue);

  // Counted down before it is looked at, in 16 bits: a header that counts none
  // stands for all.
  std::uint16_t left = head->m_count;
  while (at != nullptr) {
    const auto* const record =
        dynamic_cast<const CGenericEDLFilePQEntryChunk*>(m_pq_chunks.GetNext(at));
    auto entry = std::make_unique<CGenericPQEntry>();
    if (record != nullptr) pq_entry_from_record(*entry, *record);
    get_pq_list()->AddTail(entry.release());
    if (--left == 0) break;
  }
  if (at != nullptr && native::special_interchange_format()) {
    const auto* const texts =
        dynamic_cast<const CGenericEDLFilePQDetailsChunk*>(m_pq_chunks.GetAt(at));
    for (int i = 0; texts != nullptr && i < pq_text_count; ++i) {
      std::copy(std::begin(texts->m_details[i]), std::end(texts->m_details[i]), details.pq_text[i]);
    }
    if (texts != nullptr) details.pq_word = texts->m_value;
  }
  set_pq_details(&details);
  mend_pauses(*get_pq_list());
}
