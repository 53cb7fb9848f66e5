// The report of an import, as a browser of today shows it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

#include "embedded/string_table.h"
#include "host/text.h"
#include "tests/cli/program_run.h"
#include "tests/support/temp_folder.h"

namespace {

using support::file_exists;
using support::run_edlconv;
using support::RunResult;
using support::TempFolder;
using support::write_file;
using testing::HasSubstr;

// VERSION, PROJECT and SEQUENCE must be there, and this list has no PROJECT.
constexpr const char* list_without_project =
    "<ADL>\n"
    "<VERSION>\n</VERSION>\n"
    "<SEQUENCE>\n(SEQ_DEST_START) 01.00.00.00/0000\n</SEQUENCE>\n"
    "</ADL>\n";
constexpr unsigned section_missing = 24409;

// The page's tree as the browser has it after reading; empty when it cannot be run.
std::string dom_of(const std::string& page, const std::string& profile) {
  const std::string command =
      "timeout 50 chromium --headless --no-sandbox --disable-gpu "
      "--disable-dev-shm-usage --user-data-dir='" +
      profile + "' --dump-dom 'file://" + page + "' 2>/dev/null";
  std::FILE* const pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return {};
  std::string text;
  std::array<char, 4096> block{};
  for (std::size_t got = 0; (got = std::fread(block.data(), 1, block.size(), pipe)) > 0;)
    text.append(block.data(), got);
  ::pclose(pipe);
  return text;
}

bool browser_is_here() {
  return std::system("command -v chromium >/dev/null 2>&1") == 0;
}

TEST(ReportPage, ABrowserShowsTheRowsOfAnImport) {
  if (!browser_is_here()) GTEST_SKIP() << "Chromium is not installed";
  const TempFolder folder;
  write_file(folder.file("in.adl"), list_without_project);
  const RunResult run = run_edlconv({"convert", folder.file("in.adl"), folder.file("out.edl"),
                                     "--from", "adl", "--report-dir", folder.folder("reports")});
  EXPECT_EQ(run.code, 2) << run.err;
  EXPECT_FALSE(file_exists(folder.file("out.edl")));
  // What is handed to the viewer is named to the person.
  const std::string page = folder.file("reports/aes31importlog.view.htm");
  EXPECT_THAT(run.err, HasSubstr(page));
  ASSERT_TRUE(file_exists(page));

  const std::string dom = dom_of(page, folder.folder("profile"));
  const std::string words = utf8_from_text(embedded::english_text(section_missing));
  ASSERT_FALSE(words.empty());
  EXPECT_THAT(dom, HasSubstr("<title> AES31 ADL Import Error/Warning Report</title>"));
  EXPECT_THAT(dom, HasSubstr("<th>Error"));
  EXPECT_THAT(dom, HasSubstr("<td>line <i>"));
  EXPECT_THAT(dom, HasSubstr("<td>" + words));
}

}  // namespace
