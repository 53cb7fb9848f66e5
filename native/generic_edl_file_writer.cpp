// Writes the chunked file: generic lists into records, then records into bytes.
#include <array>
#include <memory>
#include <string_view>

#include "core/generic_edl_entry.h"
#include "core/generic_pq_entry.h"
#include "host/framework/file.h"
#include "host/rates.h"
#include "native/chunk_header.h"
#include "native/entry_walk.h"
#include "native/file_output.h"
#include "native/generic_edl_file.h"
#include "native/generic_edl_file_chunks.h"
#include "native/record_transfer.h"
#include "native/track_finder.h"
#include "native/wire_bytes.h"

using native::WireOut;

namespace {

// What each fade curve is written as when curves are mapped; 0 for any above.
constexpr std::array<std::uint16_t, 32> curve_map = {0, 13, 13, 12, 12, 11, 11, 11, 10, 10, 9,
                                                     9, 9,  8,  8,  5,  5,  0,  0,  0,  0,  0,
                                                     0, 0,  0,  0,  0,  0,  0,  0,  0,  0};

std::uint16_t mapped_curve(std::uint16_t curve) {
  return curve < curve_map.size() ? curve_map[curve] : std::uint16_t{0};
}

// An object whose parent is no root has no lists.
const CObList& list_or_none(const CObList* list) {
  static const CObList none;
  return list == nullptr ? none : *list;
}

// Sizes of items enter their own header and the size of their list by their low 16
// bits, so a list with a longer item cannot be read back.
std::uint32_t written_size(const CGenericEDLFileChunk& chunk) {
  return chunk.chunk_size() & 0xFFFF;
}

std::uint32_t list_size(const CObList& chunks) {
  std::uint32_t size = 4;
  for (POSITION at = chunks.GetHeadPosition(); at != nullptr;) {
    const auto* const chunk = static_cast<const CGenericEDLFileChunk*>(chunks.GetNext(at));
    size += static_cast<std::uint32_t>(native::chunk_header_size) + written_size(*chunk);
  }
  return size;
}

std::unique_ptr<CGenericEDLFilePQEntryChunk> record_from_pq_entry(const CGenericPQEntry& entry) {
  auto record = std::make_unique<CGenericEDLFilePQEntryChunk>();
  record->m_time = entry.position_a;
  record->m_track_number = entry.track_number;
  record->m_index_number = entry.index_number;
  record->set_text_a(entry.first_text.view());
  record->set_text_b(entry.second_text.view());
  record->m_flag_a = entry.flag_a;
  record->m_flag_b = entry.flag_b;
  record->set_isrc(entry.isrc.view());
  record->set_text_c(entry.third_text.view());
  return record;
}

std::unique_ptr<CGenericEDLFilePQDetailsChunk> record_from_pq_details(const PQ_DETAILS& details) {
  auto record = std::make_unique<CGenericEDLFilePQDetailsChunk>();
  for (int i = 0; i < pq_text_count; ++i)
    record->set_details(i, field_text(details.pq_text[i]));
  record->m_value = details.pq_word;
  return record;
}

}  // namespace

class CGenericEDLFile::Writer {
 public:
  Writer(const CGenericEDLFile& edl, CFile& file) : m_edl(edl), m_out(file) {}

  // May raise CFileException.
  void write() {
    write_file_head();
    write_head_chunk();
    write_list<CGenericEDLFileTrack>(native::chunk_id::track_list, native::chunk_id::track,
                                     native::track_minor_written, m_edl.m_tracks);
    write_list<CGenericEDLFileEntry>(native::chunk_id::entry_list, native::chunk_id::entry, 0,
                                     m_edl.m_entries);
    write_pq();
    write_locators();
    write_list<CGenericEDLFileAutomationEntryChunk>(native::chunk_id::automation_list,
                                                    native::chunk_id::automation, 0,
                                                    m_edl.m_automation_chunks);
    m_out.write();
  }

 private:
  WireOut append(std::size_t size) {
    std::string& bytes = m_out.bytes();
    const std::size_t at = bytes.size();
    bytes.resize(at + size);
    return WireOut(bytes.data() + at);
  }

  void write_header(std::string_view id, std::uint16_t minor, std::uint32_t size) {
    native::write_chunk_header(append(native::chunk_header_size).at(), id, minor, size);
  }

  void write_list_head(std::string_view id, std::uint32_t size, std::uint32_t item_count) {
    write_header(id, 0, size);
    append(4).u32(item_count);
  }

  template <class Chunk>
  void write_item(std::string_view id, std::uint16_t minor, const Chunk& chunk) {
    write_header(id, minor, written_size(chunk));
    chunk.to_file_record(m_out.bytes());
    m_out.write_when_full();
  }

  template <class Chunk>
  void write_list(std::string_view list, std::string_view item, std::uint16_t minor,
                  const CObList& chunks) {
    if (chunks.IsEmpty()) return;
    write_list_head(list, list_size(chunks), static_cast<std::uint32_t>(chunks.GetCount()));
    for (POSITION at = chunks.GetHeadPosition(); at != nullptr;)
      write_item(item, minor, *static_cast<const Chunk*>(chunks.GetNext(at)));
  }

  void write_file_head() {
    WireOut out = append(native::chunk_file_head_size);
    out.u32(m_edl.m_map_curves != 0 ? native::chunk_file_magic_flagged : native::chunk_file_magic);
    out.u16(0);
    out.u16(0);
  }

  // The stream values are zeros, whatever the list holds.
  void write_head_chunk() {
    const TimeBase base = m_edl.time_base();
    const std::uint32_t stream_count = std::uint32_t{m_edl.highest_stream()} + 1;
    const std::uint32_t size = 8 + 4 * stream_count;
    write_header(native::chunk_id::header, native::header_minor_written, size);
    WireOut out = append(size);
    out.u32(samples_per_second(base.sample_rate_index));
    out.u16(base.frame_rate_index);
    out.u16(stream_count & 0xFFFF);
  }

  void write_pq() {
    const CObList& chunks = m_edl.m_pq_chunks;
    write_list_head(native::chunk_id::pq_list, list_size(chunks),
                    static_cast<std::uint32_t>(chunks.GetCount()));
    POSITION at = chunks.GetHeadPosition();
    const auto* const head = static_cast<const CGenericEDLFilePQHeaderChunk*>(chunks.GetNext(at));
    write_item(native::chunk_id::pq_header, 0, *head);
    // Counted down before it is looked at, in 16 bits, as the reader does.
    std::uint16_t left = head->m_count;
    while (at != nullptr) {
      write_as_pq_entry(*static_cast<const CGenericEDLFileChunk*>(chunks.GetNext(at)));
      if (--left == 0) break;
    }
    if (at == nullptr || !native::special_interchange_format()) return;
    const auto* const texts = dynamic_cast<const CGenericEDLFilePQDetailsChunk*>(chunks.GetAt(at));
    if (texts != nullptr) write_item(native::chunk_id::pq_details, 0, *texts);
  }

  // With no entries in front of them the texts of the disc end up here. They are
  // written under the entry's id with their own size but only as many bytes as an
  // entry has, and the file cannot be read back.
  void write_as_pq_entry(const CGenericEDLFileChunk& chunk) {
    if (const auto* const entry = dynamic_cast<const CGenericEDLFilePQEntryChunk*>(&chunk);
        entry != nullptr) {
      write_item(native::chunk_id::pq_entry, 0, *entry);
      return;
    }
    write_header(native::chunk_id::pq_entry, 0, written_size(chunk));
    std::string record;
    static_cast<const CGenericEDLFilePQDetailsChunk&>(chunk).to_file_record(record);
    m_out.bytes().append(record, 0, native::pq_entry_record_size);
  }

  void write_locators() {
    const CObList& chunks = m_edl.m_locator_chunks;
    for (POSITION at = chunks.GetHeadPosition(); at != nullptr;) {
      write_list_head(native::chunk_id::locator_list, list_size(chunks), 1);
      write_item(native::chunk_id::locators, 0,
                 *static_cast<const CGenericEDLFileLocatorEntryChunk*>(chunks.GetNext(at)));
    }
  }

  const CGenericEDLFile& m_edl;
  native::FileOutput m_out;
};

result_code CGenericEDLFile::export_edl(const wide_char* path, int flag) {
  m_map_curves = flag;
  CFile file;
  if (!file.Open(path, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyNone)) {
    return result::not_opened;
  }
  clear_records();
  collect_entries(list_or_none(get_generic_entry_list()));
  collect_pq(list_or_none(get_pq_list()));
  m_locator_chunks.AddTail(
      native::collect_locators(list_or_none(get_locator_list()), native::LocatorKind::others)
          .release());
  native::collect_automation(list_or_none(get_automation_list()), m_automation_chunks);
  Writer(*this, file).write();
  file.Close();
  return result::done;
}

void CGenericEDLFile::collect_entries(const CObList& entries) {
  native::TrackFinder tracks(m_tracks);
  native::for_each_entry(entries, [&](CGenericEdlEntry& entry) {
    auto record = std::make_unique<CGenericEDLFileEntry>();
    native::record_from_entry(*record, entry);
    if (m_map_curves != 0) {
      record->m_fade_in_curve = mapped_curve(record->m_fade_in_curve);
      record->m_fade_out_curve = mapped_curve(record->m_fade_out_curve);
    }
    record->m_track_index = tracks.find_or_make(entry);
    m_entries.AddTail(record.release());
  });
}

void CGenericEDLFile::collect_pq(const CObList& entries) {
  PQ_DETAILS details;
  get_pq_details(&details);
  auto head = std::make_unique<CGenericEDLFilePQHeaderChunk>();
  head->set_catalogue({details.pq_catalogue, std::size(details.pq_catalogue)});
  head->m_count = static_cast<std::uint16_t>(entries.GetCount());
  m_pq_chunks.AddTail(head.release());
  for (POSITION at = entries.GetHeadPosition(); at != nullptr;) {
    const auto* const entry = static_cast<const CGenericPQEntry*>(entries.GetNext(at));
    m_pq_chunks.AddTail(record_from_pq_entry(*entry).release());
  }
  if (native::special_interchange_format()) {
    m_pq_chunks.AddTail(record_from_pq_details(details).release());
  }
}
