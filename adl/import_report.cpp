#include "adl/import_report.h"

#include <algorithm>

#include "host/framework/file_exception.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/strings.h"
#include "host/text_format.h"
#include "host/viewer.h"

namespace adl {

namespace {

constexpr const wide_char* report_name = u"c:/aes31importlog.htm";
constexpr int show_normal = 1;

CString report_path() {
  return host().viewer().report_path(report_name);
}

}  // namespace

std::u16string report_head() {
  return u"<!-- What was found amiss in an audio decision list -->\r\n"
         u"<HTML>\r\n<HEAD>\r\n\t<TITLE>"
         u" AES31 ADL Import Error/Warning Report</TITLE>\r\n</Head>\r\n"
         u"<BODY BGCOLOR=\"#BFBFBF\">\r\n\r\n"
         u"<H2><CENTER>"
         u" AES31 ADL Import Error/Warning Report</CENTER></H2>\r\n\r\n"
         u"<HR SIZE = \"4\">\r\n\r\n"
         u"<TABLE>\r\n<COLGROUP SPAN=2 ALIGN=left>\r\n";
}

std::u16string report_row(RowKind kind, std::size_t line, std::u16string_view text) {
  std::u16string row = kind == RowKind::error ? u"<TR>\r\n\t<TH>Error&nbsp\t\t<TD>"
                                              : u"<TR>\r\n\t<TH>Warning&nbsp\t\t<TD>";
  row += u"line <I>" + decimal(static_cast<std::int64_t>(line)) + u" </I>\t\t<TD>";
  row += text;
  return row += u"\r\n\t";
}

std::u16string report_end() {
  return u"\r\n</TABLE>\r\n<HR SIZE = \"4\">\r\n\r\n</BODY>\r\n</HTML>\r\n";
}

void ImportReport::reset(std::string_view list) {
  m_list = list;
  m_line_ends.clear();
  m_lines_known = false;
  try {
    m_file.Close();
  } catch (const CFileException&) {
    // A report that could not be written is nobody's concern any more.
  }
  try {
    CFile::Remove(report_path());
  } catch (const CFileException&) {
    // There was none.
  }
}

void ImportReport::write_line(unsigned message, RowKind kind, std::uint32_t position) {
  std::u16string text;
  if (!is_open()) {
    if (!m_file.Open(report_path(), CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive)) {
      return;
    }
    text = report_head();
  }
  const wide_char* const words = host().strings().load(message);
  write(text + report_row(kind, line_at(position), {words, text_length(words)}));
}

int ImportReport::close() {
  if (!is_open()) return 0;
  write(report_end());
  try {
    m_file.Close();
  } catch (const CFileException&) {
    // The import goes on with a report that is cut short.
  }
  const int answer = host().viewer().open(report_path(), u"open", show_normal, true);
  const wide_char* const refusal = viewer_refusal(answer);
  if (refusal == nullptr) return 1;
  host().message_boxes().show(u"", refusal, MessageBoxes::style_text_message);
  return 0;
}

// From 1. CR alone is no line end.
std::size_t ImportReport::line_at(std::uint32_t position) {
  if (!m_lines_known) {
    for (std::size_t at = m_list.find('\n'); at != std::string_view::npos;
         at = m_list.find('\n', at + 1)) {
      m_line_ends.push_back(at);
    }
    m_lines_known = true;
  }
  const auto before = std::lower_bound(m_line_ends.begin(), m_line_ends.end(), position);
  return static_cast<std::size_t>(before - m_line_ends.begin()) + 1;
}

// Two bytes a character, the lower one first, and no mark in front.
void ImportReport::write(std::u16string_view text) {
  const std::string bytes = bytes_of_units(text);
  try {
    m_file.Write(bytes.data(), static_cast<unsigned>(bytes.size()));
  } catch (const CFileException&) {
    // The report never makes an import fail.
  }
}

}  // namespace adl
