// The report of an import, to the byte.
#include "adl/import_report.h"

#include <gtest/gtest.h>

#include "tests/support/compare.h"
#include "tests/support/faulty_files.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace {

using adl::RowKind;

constexpr const char* end_text = "\r\n</TABLE>\r\n<HR SIZE = \"4\">\r\n\r\n</BODY>\r\n</HTML>\r\n";

class Report : public testing::Test {
 protected:
  Report() {
    host.browser.report_folder = folder.path();
    report.reset(list);
  }

  // The characters of the report behind its comment, two bytes each.
  std::string text() {
    const std::string bytes = support::read_file(file);
    std::string characters;
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
      EXPECT_EQ(bytes[i + 1], '\0');
      characters.push_back(bytes[i]);
    }
    EXPECT_EQ(characters.substr(0, 4), "<!--");
    const std::size_t line = characters.find("\r\n");
    EXPECT_EQ(characters.find('\n'), line + 1);
    return characters.substr(line + 2);
  }

  support::ScriptedHost host;
  support::TempFolder folder;
  std::string file = folder.file("aes31importlog.htm");
  std::string list = "one\ntwo\nthree\n";
  adl::ImportReport report;
};

TEST_F(Report, BeginsWithTheFirstRow) {
  EXPECT_EQ(report.close(), 0);
  EXPECT_FALSE(support::file_exists(file));
  EXPECT_TRUE(host.browser.opened.empty());
  report.write_line(24389, RowKind::error, 4);
  report.write_line(24438, RowKind::warning, 8);
  EXPECT_EQ(report.close(), 1);
  EXPECT_TRUE(support::same_lines(
      text(), std::string("<HTML>\r\n<HEAD>\r\n\t<TITLE> AES31 ADL Import Error/Warning "
                          "Report</TITLE>\r\n</Head>\r\n"
                          "<BODY BGCOLOR=\"#BFBFBF\">\r\n\r\n"
                          "<H2><CENTER> AES31 ADL Import Error/Warning Report</CENTER></H2>\r\n\r\n"
                          "<HR SIZE = \"4\">\r\n\r\n"
                          "<TABLE>\r\n<COLGROUP SPAN=2 ALIGN=left>\r\n"
                          "<TR>\r\n\t<TH>Error&nbsp\t\t<TD>line <I>2 </I>\t\t<TD>[24389]\r\n\t"
                          "<TR>\r\n\t<TH>Warning&nbsp\t\t<TD>line <I>3 </I>\t\t<TD>[24438]\r\n\t") +
                  end_text));
  ASSERT_EQ(host.browser.opened.size(), 1U);
  EXPECT_EQ(host.browser.opened[0].path, file);
  EXPECT_EQ(host.browser.opened[0].verb, "open");
  EXPECT_EQ(host.browser.opened[0].show_command, 1);
  EXPECT_TRUE(host.browser.opened[0].with_owner);
  EXPECT_EQ(report.close(), 0);
}

TEST_F(Report, ANewImportDeletesTheOldOne) {
  report.write_line(24389, RowKind::error, 0);
  report.close();
  report.reset(list);
  EXPECT_FALSE(support::file_exists(file));
  report.reset(list);
}

TEST_F(Report, LinesCountFromOne) {
  const std::pair<std::uint32_t, const char*> rows[] = {
      {0, "<I>1 "}, {3, "<I>1 "}, {4, "<I>2 "}, {8, "<I>3 "}, {1000, "<I>4 "}};
  for (const auto& [position, line] : rows) {
    report.reset(list);
    report.write_line(1, RowKind::error, position);
    report.close();
    EXPECT_NE(text().find(line), std::string::npos) << position;
  }
  report.reset("a\rb\rc\r");
  report.write_line(1, RowKind::error, 5);
  report.close();
  EXPECT_NE(text().find("<I>1 "), std::string::npos);
}

TEST_F(Report, TellsWhyNoViewerOpened) {
  const std::pair<int, const char*> rows[] = {
      {0, "The operating system is out of memory or resources. "},
      {2, "The specified file was not found."},
      {3, "The specified path was not found."},
      {5, "The operating system denied access to the specified file."},
      {8, "There was not enough memory to complete the operation. "},
      {11, "The .exe file is invalid (non-Win32\xC2\xAE .exe or error in .exe image)."},
      {26, "A sharing violation occurred."},
      {27, "The file name association is incomplete or invalid."},
      {28, "The DDE transaction could not be completed because the request timed out."},
      {29, "The DDE transaction failed."},
      {30,
       "The DDE transaction could not be completed because other DDE transactions were being "
       "processed."},
      {31, "There is no application associated with the given file name extension."},
      {32, "The specified dynamic-link library was not found."}};
  for (const auto& [answer, told] : rows) {
    host.boxes.shown.clear();
    host.browser.result = answer;
    report.write_line(1, RowKind::error, 0);
    EXPECT_EQ(report.close(), 0);
    ASSERT_EQ(host.boxes.shown.size(), 1U);
    EXPECT_EQ(host.boxes.shown[0].body, told);
    EXPECT_EQ(host.boxes.shown[0].style, 2U);
  }
  for (const int answer : {1, 7, 33, 42}) {
    host.boxes.shown.clear();
    host.browser.result = answer;
    report.write_line(1, RowKind::error, 0);
    EXPECT_EQ(report.close(), 1);
    EXPECT_TRUE(host.boxes.shown.empty());
  }
}

TEST_F(Report, ARowThatCannotBeWrittenIsLost) {
  host.browser.report_folder = folder.file("missing");
  report.write_line(1, RowKind::error, 0);
  EXPECT_FALSE(report.is_open());
  EXPECT_EQ(report.close(), 0);
  host.browser.report_folder = folder.path();
  {
    const support::FaultyFiles faults(FileFaults::Operation::open, 1);
    report.write_line(1, RowKind::error, 0);
  }
  report.write_line(2, RowKind::warning, 0);
  EXPECT_EQ(report.close(), 1);
  EXPECT_NE(text().find("[2]"), std::string::npos);
  EXPECT_EQ(text().find("[1]"), std::string::npos);
  const support::FaultyFiles faults(FileFaults::Operation::write, 1, EIO,
                                    support::FaultyFiles::After::keep_failing);
  report.write_line(3, RowKind::error, 0);
  EXPECT_EQ(report.close(), 1);
}

}  // namespace
