// Holds docs/adding_a_format.md against the toy format that it walks through.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/generic_edl_entry.h"
#include "formats/format_table.h"
#include "tests/formats/toy/tally_format.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace {

using support::utf8;

std::string source(const std::string& path) {
  return support::read_file(std::string(EDL_SOURCE_DIR) + "/" + path);
}

// The C++ of the page, a text for each fenced block.
std::vector<std::string> code_of_page(const std::string& page) {
  const std::string fence = "```cpp\n";
  std::vector<std::string> blocks;
  for (std::size_t at = page.find(fence); at != std::string::npos; at = page.find(fence, at)) {
    at += fence.size();
    const std::size_t end = page.find("```", at);
    blocks.push_back(page.substr(at, end - at));
    at = end;
  }
  return blocks;
}

TEST(AddingAFormat, CodeOfThePageIsThatOfTheToy) {
  const std::vector<std::string> blocks = code_of_page(source("docs/adding_a_format.md"));
  ASSERT_GE(blocks.size(), 6U);
  const std::string code =
      source("tests/formats/toy/tally_edl.h") + source("tests/formats/toy/tally_edl.cpp") +
      source("tests/formats/toy/tally_format.cpp") + source("tests/formats/walk_all_test.cpp");
  for (const std::string& block : blocks)
    EXPECT_NE(code.find(block), std::string::npos) << "not in the toy format:\n" << block;
}

TEST(AddingAFormat, FilesAndFoldersOfThePageExist) {
  const std::string page = source("docs/adding_a_format.md");
  for (const std::string& path :
       {std::string("text/text_edl.h"), std::string("core/generic_edl.h"),
        std::string("core/result_codes.h"), std::string("core/sample_math.h"),
        std::string("formats/format_rows.h"), std::string("formats/format_table.cpp"),
        std::string("formats/CMakeLists.txt"), std::string("formats/text_head.h"),
        std::string("tests/formats/walk_all_test.cpp")}) {
    EXPECT_NE(page.find("`" + path + "`"), std::string::npos) << path;
    EXPECT_TRUE(support::file_exists(std::string(EDL_SOURCE_DIR) + "/" + path)) << path;
  }
}

TEST(AddingAFormat, ExampleOfThePageIsRead) {
  const std::string page = source("docs/adding_a_format.md");
  const std::size_t start = page.find("```\nTALLY");
  ASSERT_NE(start, std::string::npos);
  const std::string list = page.substr(start + 4, page.find("```", start + 4) - start - 4);
  const std::vector<FormatRow> rows = {tally_row()};
  ASSERT_EQ(detect_format(rows, list, "any"), rows.data());

  const support::ScriptedHost host;
  const support::TempFolder folder;
  support::write_file(folder.file("a"), list);
  const auto edl = rows[0].make(nullptr, 0, {});
  EDL_DETAILS details;
  details.sample_rate_index = 2;
  details.frame_rate = 1;
  edl->set_edl_details(&details);
  ASSERT_EQ(edl->import_edl(folder.wide_file("a")), result::import_complete);
  ASSERT_EQ(edl->get_generic_entry_list()->GetCount(), 1);
  const auto* const entry =
      static_cast<CGenericEdlEntry*>(edl->get_generic_entry_list()->GetHead());
  EXPECT_EQ(entry->event_number, 7);
  EXPECT_EQ(entry->get_stream(0), 1);
  wide_char reel[13];
  entry->get_reel_name(reel, 13);
  EXPECT_EQ(utf8(field_text(reel)), "TAPE01");
  // One hour is 172800000 samples.
  EXPECT_EQ(entry->source_in, 172800000);
  EXPECT_EQ(entry->source_out, 172800000 + 480000);
  EXPECT_EQ(entry->dest_in, 1728000000);
  EXPECT_EQ(entry->dest_out, 1728000000 + 480000);
}

}  // namespace
