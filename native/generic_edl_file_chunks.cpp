#include "native/generic_edl_file_chunks.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

#include "host/host.h"
#include "host/message_boxes.h"
#include "host/string_ids.h"
#include "host/strings.h"

namespace {

// Rows 0 to 10 of report_chunk_warning; nobody raises row 0.
constexpr std::array<unsigned, chunk_warning::count> warning_text_ids = {
    string_id::chunk_warning_0,          string_id::chunk_header_version,
    string_id::chunk_list_version,       string_id::chunk_entry_version,
    string_id::chunk_track_version,      string_id::chunk_automation_version,
    string_id::chunk_pq_header_version,  string_id::chunk_pq_entry_version,
    string_id::chunk_unknown_list,       string_id::chunk_unknown_item,
    string_id::chunk_pq_details_version,
};

constexpr std::size_t warning_text_size = 300;

std::u16string warning_text(unsigned id) {
  const wide_char* const text = host().strings().load(id);
  return {text, text_length(text, warning_text_size - 1)};
}

// Fills a field in which every place may be text.
template <std::size_t size>
void fill_places(wide_char (&field)[size], std::u16string_view text) {
  const std::u16string_view kept = text.substr(0, size);
  std::fill(std::copy(kept.begin(), kept.end(), field), std::end(field), u'\0');
}

}  // namespace

void report_chunk_warning(int number) {
  if (number < 0 || number >= chunk_warning::count) return;
  const std::u16string title = warning_text(string_id::chunk_warning_title);
  const std::u16string body = warning_text(warning_text_ids[static_cast<std::size_t>(number)]) +
                              u"\n\n" + warning_text(string_id::chunk_warning_tail);
  host().message_boxes().show(title.c_str(), body.c_str(), 0);
}

void CGenericEDLFileLocatorEntry::set_name(std::u16string_view text) {
  fill_places(m_name, text);
}

CGenericEDLFileLocatorEntryChunk::~CGenericEDLFileLocatorEntryChunk() {
  delete_all(m_locators);
}

CGenericEDLFilePQHeaderChunk::CGenericEDLFilePQHeaderChunk() {
  std::fill(std::begin(m_catalogue), std::end(m_catalogue), u'0');
}

void CGenericEDLFilePQHeaderChunk::set_catalogue(std::u16string_view text) {
  fill_places(m_catalogue, text);
}

void CGenericEDLFilePQEntryChunk::set_isrc(std::u16string_view text) {
  fill_places(m_isrc, text);
}

void CGenericEDLFilePQDetailsChunk::set_details(int i, std::u16string_view text) {
  fill_places(m_details[i], text);
}

CGenericEDLFileAutomationEntryChunk::~CGenericEDLFileAutomationEntryChunk() {
  if (m_points != nullptr) delete_all(*m_points);
  delete m_points;
}

CObList& CGenericEDLFileAutomationEntryChunk::points() {
  if (m_points == nullptr) m_points = new CObList(10);
  return *m_points;
}
