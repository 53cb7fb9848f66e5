#include "aaf/aaf_logger.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>

#include "host/text.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace {

constexpr std::uint64_t packed_time(unsigned year, unsigned month, unsigned day, unsigned hour,
                                    unsigned minute, unsigned second = 0) {
  return std::uint64_t{year} | std::uint64_t{month} << 16 | std::uint64_t{day} << 24 |
         std::uint64_t{hour} << 32 | std::uint64_t{minute} << 40 | std::uint64_t{second} << 48;
}

class AafLoggerTest : public testing::Test {
 protected:
  AafLoggerTest() { host.browser.report_folder = folder.path(); }

  // What the file holds, as UTF-8.
  std::string text_of(const CAAFLogger& logger) {
    const std::string bytes = support::read_file(
        utf8_from_text({logger.report_path(), text_length(logger.report_path())}));
    EXPECT_EQ(bytes.size() % 2, 0U);
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
      text.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                           static_cast<unsigned char>(bytes[i + 1]) << 8));
    }
    return utf8_from_text(text);
  }

  std::string written(CAAFLogger& logger) {
    EXPECT_EQ(logger.write_report(), 1);
    return text_of(logger);
  }

  // The date and time of a report for a file of that time.
  std::string last_modified(std::uint64_t packed) {
    CAAFLogger logger(1);
    logger.set_file_path(u"x.aaf");
    logger.set_modification_time(packed);
    const std::string text = written(logger);
    const std::string head = "<TR><TH>Last Modified&nbsp\t<TD>";
    const std::size_t begin = text.find(head) + head.size();
    return text.substr(begin, text.find("\r\n", begin) - begin);
  }

  support::TempFolder folder;
  support::ScriptedHost host;
};

TEST_F(AafLoggerTest, TheReportIsNamedAfterTheFile) {
  const auto name = [this](int import, const wide_char* path) {
    CAAFLogger logger(import);
    logger.set_file_path(path);
    EXPECT_EQ(logger.write_report(), 1);
    const std::string at =
        utf8_from_text({logger.report_path(), text_length(logger.report_path())});
    EXPECT_TRUE(support::file_exists(at));
    return std::filesystem::path(at).filename().string();
  };
  EXPECT_EQ(name(1, u"C:\\a\\x.AAF"), "AAFImportlog_x.htm");
  EXPECT_EQ(name(0, u"C:\\a\\x.AAF"), "AAFExportlog_x.htm");
  EXPECT_EQ(name(1, u"/films/.aaf"), "AAFImportlog_.aaf.htm");
  EXPECT_EQ(name(1, u"x.aaf.omf"), "AAFImportlog_x.aaf.omf.htm");
}

TEST_F(AafLoggerTest, TheReportPathWithoutAFolderOfTheHosts) {
  host.browser.report_folder.clear();
  CAAFLogger logger(1);
  logger.set_file_path(u"films/reel 2.aaf");
  EXPECT_TRUE(logger.report_path().IsEmpty());
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  EXPECT_EQ(logger.write_report(), 1);
  std::filesystem::current_path(before);
  EXPECT_EQ(logger.report_path(), u"c:\\AAFImportlog_reel 2.htm");
}

TEST_F(AafLoggerTest, TheNameBehindTheLastSlashOrElseBackslash) {
  CAAFLogger logger(1);
  logger.set_file_path(u"a/b\\c.aaf");
  EXPECT_EQ(logger.file_name(), u"b\\c.aaf");
  EXPECT_EQ(logger.file_path(), u"a/b\\c.aaf");
  logger.set_file_path(u"a\\b.aaf");
  EXPECT_EQ(logger.file_name(), u"b.aaf");
  logger.set_file_path(u"b.aaf");
  EXPECT_EQ(logger.file_name(), u"b.aaf");
}

TEST_F(AafLoggerTest, AReportWithoutRowsToTheByte) {
  CAAFLogger logger(1);
  logger.set_file_path(u"C:\\a\\x.aaf");
  logger.set_modification_time(packed_time(2024, 3, 5, 15, 7));
  logger.company_name = u"Maker <& Son>";
  logger.product_name = u"Tool";
  logger.product_version = u"7.1";
  logger.platform = u"here";
  logger.aaf_major = 1;
  logger.aaf_minor = 1;
  logger.set_implementation_version(1, 2, 3, 4);
  logger.edit_protocol = 1;
  const std::string text = written(logger);
  const std::size_t line_end = text.find("\r\n");
  ASSERT_NE(line_end, std::string::npos);
  EXPECT_EQ(text.substr(0, 4), "<!--");
  EXPECT_EQ(text.substr(line_end - 3, 3), "-->");
  EXPECT_EQ(text.substr(line_end + 2),
            "<HTML>\r\n<HEAD>\r\n\t<TITLE> Marlo AAF Import Report</TITLE>\r\n</Head>\r\n"
            "<BODY BGCOLOR=\"#BFBFBF\">\r\n\r\n"
            "<H2><CENTER> Marlo AAF Import Report</CENTER></H2>\r\n\r\n"
            "<HR SIZE = \"4\"> \r\n\r\n"
            "<H3>Identification</H3>\r\n<P>\r\n"
            "<TABLE>\r\n<COLGROUP SPAN=2 ALIGN=left>\r\n<TR>\r\n\t"
            "<TH>Filename&nbsp\t\t<TD>C:\\a\\x.aaf\r\n\t"
            "<TR><TH>Last Modified&nbsp\t<TD>05/03/2024 15:07 \r\n\t"
            "<TR><TH>Company Name&nbsp\t<TD>Maker <& Son>\r\n\t"
            "<TR><TH>Product Name&nbsp\t<TD>Tool\r\n\t"
            "<TR><TH>Product Version&nbsp\t<TD>7.1\r\n\t"
            "<TR><TH>Platform&nbsp\t<TD>here\r\n\t"
            "<TR><TH>AAF Version&nbsp\t<TD>v1.1\r\n\t"
            "<TR><TH>AAF Implementation Version&nbsp\t<TD>v1.2.3.4\r\n\t"
            "<TR><TH>Labelled as Edit Protocol&nbsp\t<TD>Yes\r\n\t"
            "\r\n</TABLE>\r\n<HR SIZE = \"4\">\r\n\r\n"
            "</BODY>\r\n</HTML>\r\n");
}

TEST_F(AafLoggerTest, TwoBytesACharacterAndNoMark) {
  CAAFLogger logger(0);
  logger.set_file_path(u"x.aaf");
  ASSERT_EQ(logger.write_report(), 1);
  const std::string bytes = support::read_file(folder.path() + "/AAFExportlog_x.htm");
  EXPECT_EQ(bytes.substr(0, 4), std::string("<\0!\0", 4));
}

TEST_F(AafLoggerTest, AnExportSaysSoTwice) {
  CAAFLogger logger(0);
  logger.set_file_path(u"x.aaf");
  const std::string text = written(logger);
  EXPECT_NE(text.find("<TITLE> Marlo AAF Export Report</TITLE>"), std::string::npos);
  EXPECT_NE(text.find("<CENTER> Marlo AAF Export Report</CENTER>"), std::string::npos);
  EXPECT_EQ(text.find("Import"), std::string::npos);
  EXPECT_NE(text.find("<TR><TH>Labelled as Edit Protocol&nbsp\t<TD>No\r\n"), std::string::npos);
  EXPECT_NE(text.find("<TR><TH>Company Name&nbsp\t<TD>\r\n\t"), std::string::npos)
      << "a value that nobody set is empty";
}

TEST_F(AafLoggerTest, RowsOfThreeSeverities) {
  CAAFLogger logger(1);
  logger.set_file_path(u"x.aaf");
  logger.rows.AddTail(new CAAFErrorLog{0, 0, u"first"});
  logger.rows.AddTail(new CAAFErrorLog{5, 1, u"second"});
  logger.rows.AddTail(new CAAFErrorLog{0, 2, u"third"});
  const std::string text = written(logger);
  EXPECT_NE(text.find("<H3>Reports</H3>\r\n<P>\r\n"
                      "<TABLE BORDER=2 CELLPADDING=10>\r\n<COLGROUP SPAN=2 ALIGN=left>\r\n"
                      "<TR>\r\n\t<TH><TD><B>Description</B><TD><B>AAF Error Code</B>"
                      "<TR>\r\n\t<TH><FONT COLOR=\"#DC143C\">ERROR&nbsp</FONT>\t\t<TD>first"
                      "\r\n\t<TD>AAF Result - Parameter not present (00CF)"
                      "<TR>\r\n\t<TH><FONT COLOR=\"#8A2BE2\">WARNING&nbsp</FONT>\t\t<TD>second"
                      "\r\n\t<TD>AAF Result - Parameter not present (00CF)"
                      "third\r\n\t<TD>AAF Result - Parameter not present (00CF)"
                      "\r\n</TABLE>\r\n<HR SIZE = \"4\">\r\n\r\n</BODY>\r\n</HTML>\r\n"),
            std::string::npos)
      << text;
}

TEST_F(AafLoggerTest, DatesFollowTheLocale) {
  const std::uint64_t afternoon = packed_time(2024, 3, 5, 15, 7);
  EXPECT_EQ(last_modified(afternoon), "05/03/2024 15:07 ");
  host.browser.order = 0;
  host.browser.clock = 0;
  EXPECT_EQ(last_modified(afternoon), "03/05/2024 03:07 pm");
  host.browser.order = 2;
  EXPECT_EQ(last_modified(afternoon), "2024/03/05 03:07 pm");
  host.browser.order = 7;
  EXPECT_EQ(last_modified(afternoon), " 03:07 pm");
  host.browser.clock = 2;
  EXPECT_EQ(last_modified(afternoon), "");
}

TEST_F(AafLoggerTest, OnlyHoursAboveTwelveAreOfTheAfternoon) {
  host.browser.order = 7;
  host.browser.clock = 0;
  EXPECT_EQ(last_modified(packed_time(2024, 3, 5, 12, 0)), " 12:00 am");
  EXPECT_EQ(last_modified(packed_time(2024, 3, 5, 0, 0)), " 00:00 am");
  EXPECT_EQ(last_modified(packed_time(2024, 3, 5, 13, 0)), " 01:00 pm");
}

TEST_F(AafLoggerTest, AnUnsetTimeIsValidInEveryZone) {
  const char* const zone = std::getenv("TZ");
  const std::string before = zone == nullptr ? "" : zone;
  for (const char* const other : {"UTC", "Asia/Tokyo", "TST-14", "America/New_York"}) {
    ::setenv("TZ", other, 1);
    ::tzset();
    CAAFLogger logger(1);
    logger.set_file_path(u"x.aaf");
    EXPECT_NE(written(logger).find("<TD>01/01/1970 00:00 \r\n"), std::string::npos) << other;
  }
  if (zone == nullptr) {
    ::unsetenv("TZ");
  } else {
    ::setenv("TZ", before.c_str(), 1);
  }
  ::tzset();
}

TEST_F(AafLoggerTest, ADateThatIsNone) {
  const std::uint64_t bad[] = {
      packed_time(1899, 1, 1, 0, 0),  packed_time(2024, 0, 1, 0, 0),
      packed_time(2024, 13, 1, 0, 0), packed_time(2024, 1, 0, 0, 0),
      packed_time(2024, 1, 32, 0, 0), packed_time(2024, 1, 1, 24, 0),
      packed_time(2024, 1, 1, 0, 60), packed_time(2024, 1, 1, 0, 0, 60),
  };
  for (const std::uint64_t time : bad) {
    CAAFLogger logger(1);
    logger.set_file_path(u"x.aaf");
    logger.set_modification_time(time);
    try {
      static_cast<void>(logger.write_report());
      ADD_FAILURE() << "a report was written";
    } catch (const AAFReportFailure& failure) {
      EXPECT_EQ(failure.code, static_cast<HRESULT>(0x80004005U));
    }
  }
  EXPECT_EQ(last_modified(packed_time(1900, 1, 1, 0, 0)), "01/01/1900 00:00 ");
  EXPECT_EQ(last_modified(packed_time(2024, 12, 31, 23, 59, 59)), "31/12/2024 23:59 ");
}

TEST_F(AafLoggerTest, PartsOfAPackedTime) {
  CAAFLogger logger(1);
  logger.set_creation_time(0x003B220F050307E8U);
  EXPECT_EQ(logger.creation_time().year, 2024);
  EXPECT_EQ(logger.creation_time().month, 3);
  EXPECT_EQ(logger.creation_time().day, 5);
  EXPECT_EQ(logger.creation_time().hour, 15);
  EXPECT_EQ(logger.creation_time().minute, 34);
  EXPECT_EQ(logger.creation_time().second, 59);
  EXPECT_EQ(logger.modification_time().year, 1970) << "the other one stays";
}

TEST_F(AafLoggerTest, AReportThatCannotBeWritten) {
  host.browser.report_folder = folder.path() + "/none";
  CAAFLogger logger(1);
  logger.set_file_path(u"x.aaf");
  EXPECT_EQ(logger.write_report(), 0);
  EXPECT_TRUE(host.browser.opened.empty());
}

TEST_F(AafLoggerTest, LaunchedWithoutAnOwner) {
  CAAFLogger logger(1);
  logger.set_file_path(u"x.aaf");
  ASSERT_EQ(logger.write_report(), 1);
  EXPECT_EQ(logger.launch_report(), 1);
  ASSERT_EQ(host.browser.opened.size(), 1U);
  EXPECT_EQ(host.browser.opened[0].path, folder.path() + "/AAFImportlog_x.htm");
  EXPECT_EQ(host.browser.opened[0].verb, "open");
  EXPECT_EQ(host.browser.opened[0].show_command, 1);
  EXPECT_FALSE(host.browser.opened[0].with_owner);
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(AafLoggerTest, AFailedLaunchIsTold) {
  CAAFLogger logger(1);
  logger.set_file_path(u"x.aaf");
  ASSERT_EQ(logger.write_report(), 1);
  host.browser.result = 31;
  EXPECT_EQ(logger.launch_report(), 0);
  ASSERT_EQ(host.boxes.report_bodies().size(), 1U);
  EXPECT_EQ(host.boxes.report_bodies()[0],
            "Failed to launch AAF report.\n\n"
            "There is no application associated with the given file name extension.");
  host.browser.result = 7;
  EXPECT_EQ(logger.launch_report(), 1) << "an answer without words";
  EXPECT_EQ(host.boxes.shown.size(), 1U);
}

}  // namespace
