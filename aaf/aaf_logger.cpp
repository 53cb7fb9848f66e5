#include "aaf/aaf_logger.h"

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <string>

#include "host/framework/file.h"
#include "host/framework/file_exception.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/text_format.h"
#include "host/viewer.h"

namespace {

constexpr int show_normal = 1;

bool in_range(const CAAFLogger::Time& time) {
  return time.year >= 1900 && time.month >= 1 && time.month <= 12 && time.day >= 1 &&
         time.day <= 31 && time.hour < 24 && time.minute < 60 && time.second < 60;
}

// The time in the local zone. The system decides on daylight saving, so a time that a
// change of clocks leaves out moves.
std::tm local_time(const CAAFLogger::Time& time) {
  constexpr auto out_of_range = static_cast<HRESULT>(0x80004005U);
  constexpr auto no_such_time = static_cast<HRESULT>(0x80070057U);
  if (!in_range(time)) throw AAFReportFailure{out_of_range};
  std::tm parts{};
  parts.tm_year = time.year - 1900;
  parts.tm_mon = time.month - 1;
  parts.tm_mday = time.day;
  parts.tm_hour = time.hour;
  parts.tm_min = time.minute;
  parts.tm_sec = time.second;
  parts.tm_isdst = -1;
  // East of Greenwich the first moment of 1970 is a negative count, so the count alone
  // does not tell a refusal: a refusal leaves the weekday alone.
  parts.tm_wday = -1;
  std::mktime(&parts);
  if (parts.tm_wday == -1) throw AAFReportFailure{no_such_time};
  return parts;
}

std::u16string date_text(const std::tm& time) {
  const std::u16string year = decimal(time.tm_year + 1900, 4);
  const std::u16string month = decimal(time.tm_mon + 1, 2);
  const std::u16string day = decimal(time.tm_mday, 2);
  switch (host().viewer().date_order()) {
    case 0:
      return month + u"/" + day + u"/" + year;
    case 1:
      return day + u"/" + month + u"/" + year;
    case 2:
      return year + u"/" + month + u"/" + day;
    default:
      return {};
  }
}

// Noon is "12:00 am" and midnight "00:00 am": only hours above 12 are of the afternoon.
std::u16string clock_text(const std::tm& time) {
  const int form = host().viewer().clock_form();
  if (form != 0 && form != 1) return {};
  const bool twelve_hours = form == 0;
  const bool afternoon = twelve_hours && time.tm_hour > 12;
  std::u16string text = u" " + decimal(afternoon ? time.tm_hour - 12 : time.tm_hour, 2) + u":" +
                        decimal(time.tm_min, 2) + u" ";
  if (twelve_hours) text += afternoon ? u"pm" : u"am";
  return text;
}

// One write: two bytes a character, the lower one first, and no mark in front.
void write(CFile& file, std::u16string_view text) {
  const std::string bytes = bytes_of_units(text);
  file.Write(bytes.data(), static_cast<unsigned>(bytes.size()));
}

constexpr const wide_char* rule = u"<HR SIZE = \"4\">\r\n\r\n";
constexpr const wide_char* tail = u"</BODY>\r\n</HTML>\r\n";

const wide_char* row_head(std::uint32_t severity) {
  if (severity == 0) return u"<TR>\r\n\t<TH><FONT COLOR=\"#DC143C\">ERROR&nbsp</FONT>\t\t<TD>";
  if (severity == 1) return u"<TR>\r\n\t<TH><FONT COLOR=\"#8A2BE2\">WARNING&nbsp</FONT>\t\t<TD>";
  return u"";
}

}  // namespace

CAAFLogger::CAAFLogger(int import) : CGenericEdl(nullptr, 0), import_(import) {}

CAAFLogger::~CAAFLogger() {
  for (const CAAFErrorLog* const row : rows)
    delete row;
}

void CAAFLogger::set_file_path(const wide_char* path) {
  file_path_ = CString(path == nullptr ? u"" : path);
  const std::u16string_view text = file_path_.view();
  std::size_t mark = text.rfind(u'/');
  if (mark == std::u16string_view::npos) mark = text.rfind(u'\\');
  file_name_ = CString(mark == std::u16string_view::npos ? text : text.substr(mark + 1));
}

void CAAFLogger::set_implementation_version(std::uint16_t major, std::uint16_t minor,
                                            std::uint16_t tertiary, std::uint16_t patch) {
  implementation_version_[0] = major;
  implementation_version_[1] = minor;
  implementation_version_[2] = tertiary;
  implementation_version_[3] = patch;
}

CAAFLogger::Time CAAFLogger::unpacked(std::uint64_t packed) {
  const auto part = [packed](unsigned bit) { return static_cast<std::uint8_t>(packed >> bit); };
  return {static_cast<std::uint16_t>(packed), part(16), part(24), part(32), part(40), part(48)};
}

CString CAAFLogger::report_name() const {
  std::u16string_view name = file_name_.view();
  constexpr std::u16string_view extension = u".aaf";
  if (name.size() > extension.size() &&
      equal_no_case(name.substr(name.size() - extension.size()), extension)) {
    name.remove_suffix(extension.size());
  }
  std::u16string path = import_ != 0 ? u"c:\\AAFImportlog_" : u"c:\\AAFExportlog_";
  path += name;
  return {path + u".htm"};
}

int CAAFLogger::write_report() {
  report_path_ = host().viewer().report_path(report_name());
  CFile file;
  if (!file.Open(report_path_, CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive)) {
    return 0;
  }
  try {
    write(file, head());
    write(file, identification());
    if (!rows.IsEmpty()) write(file, reports());
    write(file, tail);
    file.Close();
  } catch (const CFileException&) {
    return 0;
  }
  return 1;
}

std::u16string CAAFLogger::title() const {
  return import_ != 0 ? u" Marlo AAF Import Report" : u" Marlo AAF Export Report";
}

std::u16string CAAFLogger::head() const {
  return u"<!-- What an AAF file says of itself, and what was found amiss -->\r\n"
         u"<HTML>\r\n<HEAD>\r\n\t<TITLE>" +
         title() +
         u"</TITLE>\r\n</Head>\r\n"
         u"<BODY BGCOLOR=\"#BFBFBF\">\r\n\r\n"
         u"<H2><CENTER>" +
         title() +
         u"</CENTER></H2>\r\n\r\n"
         u"<HR SIZE = \"4\"> \r\n\r\n";
}

// Texts go in as they are; nothing is escaped.
std::u16string CAAFLogger::identification() const {
  const std::tm time = local_time(modification_time_);
  std::u16string version = u"v";
  for (const std::uint16_t part : implementation_version_) {
    if (version.size() > 1) version += u".";
    version += decimal(part);
  }
  const std::pair<const wide_char*, std::u16string> facts[] = {
      {u"<TH>Filename&nbsp\t\t<TD>", std::u16string(file_path_.view())},
      {u"<TR><TH>Last Modified&nbsp\t<TD>", date_text(time) + clock_text(time)},
      {u"<TR><TH>Company Name&nbsp\t<TD>", std::u16string(company_name.view())},
      {u"<TR><TH>Product Name&nbsp\t<TD>", std::u16string(product_name.view())},
      {u"<TR><TH>Product Version&nbsp\t<TD>", std::u16string(product_version.view())},
      {u"<TR><TH>Platform&nbsp\t<TD>", std::u16string(platform.view())},
      {u"<TR><TH>AAF Version&nbsp\t<TD>", u"v" + decimal(aaf_major) + u"." + decimal(aaf_minor)},
      {u"<TR><TH>AAF Implementation Version&nbsp\t<TD>", version},
      {u"<TR><TH>Labelled as Edit Protocol&nbsp\t<TD>", edit_protocol != 0 ? u"Yes" : u"No"},
  };
  std::u16string text =
      u"<H3>Identification</H3>\r\n<P>\r\n<TABLE>\r\n<COLGROUP SPAN=2 ALIGN=left>\r\n<TR>\r\n\t";
  for (const auto& [name, value] : facts)
    text += name + value + u"\r\n\t";
  return text + u"\r\n</TABLE>\r\n" + rule;
}

std::u16string CAAFLogger::reports() const {
  std::u16string text =
      u"<H3>Reports</H3>\r\n<P>\r\n"
      u"<TABLE BORDER=2 CELLPADDING=10>\r\n<COLGROUP SPAN=2 ALIGN=left>\r\n"
      u"<TR>\r\n\t<TH><TD><B>Description</B><TD><B>AAF Error Code</B>";
  for (const CAAFErrorLog* const row : rows) {
    text += row_head(row->severity);
    text += row->description.view();
    // The same for every row; codes are not looked up.
    text += u"\r\n\t<TD>AAF Result - Parameter not present (00CF)";
  }
  return text + u"\r\n</TABLE>\r\n" + rule;
}

int CAAFLogger::launch_report() {
  const int answer = host().viewer().open(report_path_, u"open", show_normal, false);
  const wide_char* const refusal = viewer_refusal(answer);
  if (refusal == nullptr) return 1;
  const std::u16string text = u"Failed to launch AAF report.\n\n" + std::u16string(refusal);
  host().message_boxes().show(u"", text.c_str(), MessageBoxes::style_text_message);
  return 0;
}
