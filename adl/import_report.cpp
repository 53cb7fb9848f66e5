#include "adl/import_report.h"

#include <algorithm>
#include <iterator>

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
constexpr int viewer_opened = 33;

struct Refusal {
  int answer;
  const wide_char* text;
};

// Why no viewer opened; other answers below viewer_opened are not told.
constexpr Refusal refusals[] = {
    {0, u"The operating system is out of memory or resources. "},
    {2, u"The specified file was not found."},
    {3, u"The specified path was not found."},
    {5, u"The operating system denied access to the specified file."},
    {8, u"There was not enough memory to complete the operation. "},
    {11, u"The .exe file is invalid (non-Win32\u00AE .exe or error in .exe image)."},
    {26, u"A sharing violation occurred."},
    {27, u"The file name association is incomplete or invalid."},
    {28, u"The DDE transaction could not be completed because the request timed out."},
    {29, u"The DDE transaction failed."},
    {30,
     u"The DDE transaction could not be completed because other DDE transactions were being "
     u"processed."},
    {31, u"There is no application associated with the given file name extension."},
    {32, u"The specified dynamic-link library was not found."},
};

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
  if (answer >= viewer_opened) return 1;
  const auto* const refusal =
      std::find_if(std::begin(refusals), std::end(refusals),
                   [answer](const Refusal& row) { return row.answer == answer; });
  if (refusal == std::end(refusals)) return 1;
  host().message_boxes().show(u"", refusal->text, MessageBoxes::style_text_message);
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
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (const wide_char c : text) {
    bytes.push_back(static_cast<char>(c & 0xFFU));
    bytes.push_back(static_cast<char>(c >> 8U));
  }
  try {
    m_file.Write(bytes.data(), static_cast<unsigned>(bytes.size()));
  } catch (const CFileException&) {
    // The report never makes an import fail.
  }
}

}  // namespace adl
