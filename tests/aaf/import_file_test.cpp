// The import as a whole: files that are none, the report, and what is left behind.

#include <algorithm>
#include <filesystem>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_rates.h"
#include "aaf/aaf_text.h"
#include "core/generic_edl_video_entry.h"
#include "tests/aaf/import_fixture.h"

using namespace support;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class ImportFileTest : public BothWaysImportTest {
 protected:
  void expect_nothing_read() const {
    EXPECT_THAT(edits(), IsEmpty());
    EXPECT_THAT(automation(), IsEmpty());
    EXPECT_THAT(locators(), IsEmpty());
    EXPECT_THAT(boxes(), IsEmpty());
  }
  static std::size_t open_files() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
  }
};
INSTANTIATE_TEST_SUITE_P(, ImportFileTest, both_ways(), way_name);

TEST_P(ImportFileTest, AMissingFile) {
  EXPECT_EQ(import_path(path), 11);
  expect_nothing_read();
  const std::string text = report();
  EXPECT_THAT(text, HasSubstr("<TITLE> Marlo AAF Import Report</TITLE>"));
  EXPECT_THAT(text, HasSubstr("Filename&nbsp\t\t<TD>" + path + "\r\n"));
  EXPECT_THAT(text, HasSubstr("Last Modified&nbsp\t<TD>01/01/1970 00:00 "));
  EXPECT_THAT(text, HasSubstr("Product Name&nbsp\t<TD>\r\n"));
  EXPECT_THAT(text, HasSubstr("AAF Version&nbsp\t<TD>v0.0"));
}

TEST_P(ImportFileTest, AFileOfAnotherKind) {
  write_file(path, "TITLE: no AAF\r\n");
  EXPECT_EQ(import_path(path), 11);
  expect_nothing_read();
  EXPECT_TRUE(file_exists(folder.file("AAFImportlog_x.htm")));
}

TEST_P(ImportFileTest, AnEmptyFileAndAFolder) {
  write_file(path, "");
  EXPECT_EQ(import_path(path), 11);
  importer = std::make_unique<CAAFEdlFile>(&edl);
  EXPECT_EQ(import_path(folder.path()), 11);
  expect_nothing_read();
}

TEST_P(ImportFileTest, WithoutTheLibraryNothingIsRead) {
  static_cast<void>(take());
  file().save();
  EXPECT_EQ(unload_aaf_library(), 0);
  host.libraries.redirected["libAAFCOAPI.so"] = "";
  host.libraries.redirected["libcom-api.so"] = "";
  EXPECT_EQ(import_path(path), 11);
  expect_nothing_read();
}

TEST_P(ImportFileTest, TheReportIsWrittenAndShown) {
  product = {L"A Company", L"A Product", L"7.8"};
  ASSERT_EQ(import({sound({clip(take(), 10)})}), 100);
  const std::string text = report();
  EXPECT_THAT(text, HasSubstr("Company Name&nbsp\t<TD>A Company\r\n"));
  EXPECT_THAT(text, HasSubstr("Product Name&nbsp\t<TD>A Product\r\n"));
  EXPECT_THAT(text, HasSubstr("Product Version&nbsp\t<TD>7.8\r\n"));
  EXPECT_THAT(text, HasSubstr("Labelled as Edit Protocol&nbsp\t<TD>No\r\n"));
  EXPECT_THAT(text, Not(HasSubstr("Description")));
  ASSERT_EQ(host.browser.opened.size(), 1U);
  EXPECT_EQ(host.browser.opened[0].path, folder.file("AAFImportlog_x.htm"));
}

TEST_P(ImportFileTest, AReportThatCannotBeWrittenChangesNothing) {
  host.browser.report_folder = folder.file("missing");
  ASSERT_EQ(import({sound({clip(take(), 10)})}), 100);
  EXPECT_THAT(host.browser.opened, IsEmpty());
  EXPECT_EQ(edits().size(), 1U);
}

TEST_P(ImportFileTest, TheLabelOfTheEditProtocol) {
  file().set_operational_pattern(kAAFOPDef_EditProtocol);
  ASSERT_EQ(import({sound({clip(take(), 10)})}), 100);
  EXPECT_THAT(report(), HasSubstr("Labelled as Edit Protocol&nbsp\t<TD>Yes\r\n"));
}

TEST_P(ImportFileTest, AnotherLabelIsNotTheEditProtocol) {
  aafUID_t other = kAAFOPDef_EditProtocol;
  ++other.Data2;
  file().set_operational_pattern(other);
  ASSERT_EQ(import({sound({clip(take(), 10)})}), 100);
  EXPECT_THAT(report(), HasSubstr("Labelled as Edit Protocol&nbsp\t<TD>No\r\n"));
}

TEST_P(ImportFileTest, MakersWhoseTimesCountFromTheFile) {
  struct Row {
    const wchar_t* product;
    int timestamped;
  };
  constexpr Row rows[] = {{L"ProTools 12", 0}, {L"Avid AAF Helper x", 0}, {L"myProToolsX", 0},
                          {L"protools", 1},    {L"Pro Tools", 1},         {L"AAF helper", 1},
                          {L"Product", 1}};
  int count = 0;
  for (const Row& row : rows) {
    product.product = row.product;
    path = folder.file(std::to_string(++count) + ".aaf");
    importer = std::make_unique<CAAFEdlFile>(&edl);
    ASSERT_EQ(import({sound({clip(take(), 10)})}), 100);
    EXPECT_EQ(entries().back()->source_is_timestamped, row.timestamped)
        << utf8(text_from_aaf(row.product));
  }
}

TEST_P(ImportFileTest, OnlyTheLastProgramCounts) {
  product.product = L"ProTools";
  file().identify({L"Another", L"Last", L"9"});
  ASSERT_EQ(import({sound({clip(take(), 10)})}), 100);
  EXPECT_EQ(entry(0).source_is_timestamped, 1);
  EXPECT_THAT(report(), HasSubstr("Product Name&nbsp\t<TD>Last\r\n"));
}

// Whatever a file says of itself is read as far as it is there.
TEST_P(ImportFileTest, AFileWithoutItsMakersIsReadAllTheSame) {
  product.product = L"ProTools";
  file().set_operational_pattern(kAAFOPDef_EditProtocol);
  file().composition({.slots = {sound({clip(take(), 10)})}});
  file().save();
  // The list of makers as the header holds it: its number, and how it is stored.
  const std::string list = {0x06, 0x3b, 0x32, 0x00};
  std::string bytes = read_file(path);
  const std::size_t at = bytes.find(list);
  ASSERT_NE(at, std::string::npos);
  ASSERT_EQ(bytes.find(list, at + 1), std::string::npos);
  bytes.replace(at, 2, "\xF0\xFF");
  write_file(path, bytes);
  ASSERT_EQ(import_path(path), 100);
  EXPECT_EQ(entry(0).source_is_timestamped, 1);
  const std::string text = report();
  EXPECT_THAT(text, HasSubstr("Product Name&nbsp\t<TD>\r\n"));
  EXPECT_THAT(text, HasSubstr("AAF Version&nbsp\t<TD>v1."));
  EXPECT_THAT(text, HasSubstr("Labelled as Edit Protocol&nbsp\t<TD>Yes\r\n"));
}

TEST_P(ImportFileTest, AFailureInTheWalkLeavesTheListsAsTheyWere) {
  AafSlot clock = timecode(0, 25);
  clock.mark_in = 5;
  const AafTake source = take();
  const aafMobID_t missing = file().new_id();
  EXPECT_EQ(
      import({clock, sound({gain(10, {point(0, 1, 1)}, clip(source, 10)), clip(missing, 10)})}),
      11);
  expect_nothing_read();
}

TEST_P(ImportFileTest, NewEntriesStandBehindThoseThatAreThere) {
  auto* const before = new CGenericEdlEntry(&edl);
  before->dest_in = 1'000'000;
  edl.get_generic_entry_list()->AddTail(before);
  ASSERT_EQ(import({sound({clip(take(), 10)})}), 100);
  ASSERT_EQ(entries().size(), 2U);
  EXPECT_EQ(entries()[0], before);
}

// Positions of pictures count frames until an import that is read turns them into samples.
TEST_P(ImportFileTest, PicturesOfTheListAreRescaled) {
  auto* const picture = new CGenericEdlVideoEntry(&edl);
  edl.get_video_list()->AddTail(picture);
  picture->dest_in = 1;
  picture->dest_out = 3;
  picture->source_in = 7;
  picture->source_out = -2;
  picture->dest_length = 9;
  const auto positions = [picture] {
    return std::vector{picture->dest_in, picture->dest_out, picture->source_in, picture->source_out,
                       picture->dest_length};
  };
  EXPECT_EQ(import_path(path), 11);
  EXPECT_THAT(positions(), ElementsAre(1, 3, 7, -2, 9));

  importer = std::make_unique<CAAFEdlFile>(&edl);
  ASSERT_EQ(import({timecode(0, 29), sound({clip(take(), 10)})}), 100);
  // 1601.6 samples a frame, cut.
  EXPECT_THAT(positions(), ElementsAre(1601, 4804, 11'211, -3203, 9));
  EXPECT_EQ(picture->detail_words[0], 48'000U);
}

TEST_P(ImportFileTest, TheFileIsClosedOnEveryWay) {
  const std::size_t before = open_files();
  ASSERT_EQ(import({sound({clip(take(), 10)})}), 100);
  EXPECT_EQ(open_files(), before);

  importer = std::make_unique<CAAFEdlFile>(&edl);
  path = folder.file("cancelled.aaf");
  file().composition({.slots = {sound({filler(1)})}});
  file().composition({.slots = {sound({filler(1)})}});
  host.windows.default_choice = -1;
  ASSERT_EQ(import(), 11);
  EXPECT_EQ(open_files(), before);

  importer = std::make_unique<CAAFEdlFile>(&edl);
  path = folder.file("empty.aaf");
  static_cast<void>(file());
  ASSERT_EQ(import(), 11);
  EXPECT_EQ(open_files(), before);

  importer = std::make_unique<CAAFEdlFile>(&edl);
  path = folder.file("none.aaf");
  static_cast<void>(take());
  ASSERT_EQ(import(), 100);
  EXPECT_EQ(open_files(), before);

  importer = std::make_unique<CAAFEdlFile>(&edl);
  path = folder.file("nowhere.aaf");
  const aafMobID_t missing = file().new_id();
  ASSERT_EQ(import({sound({clip(missing, 10)})}), 11);
  EXPECT_EQ(open_files(), before);
}

TEST(AafRatesTest, FrameRatesAsFractions) {
  const auto rate = [](std::uint8_t index) {
    const aafRational_t found = aaf::rational_of_frame_rate(index);
    return std::pair(found.numerator, found.denominator);
  };
  EXPECT_EQ(rate(0), std::pair(24, 1));
  EXPECT_EQ(rate(1), std::pair(25, 1));
  EXPECT_EQ(rate(2), std::pair(30000, 1001));
  EXPECT_EQ(rate(3), std::pair(30000, 1001));
  EXPECT_EQ(rate(4), std::pair(30, 1));
  EXPECT_EQ(rate(9), std::pair(25, 1));
  EXPECT_EQ(rate(255), std::pair(25, 1));
}

TEST(AafRatesTest, EditRatesAsTheyStand) {
  EXPECT_EQ(aaf::rate_from_edit_rate({24, 1}), 0);
  EXPECT_EQ(aaf::rate_from_edit_rate({25, 1}), 1);
  EXPECT_EQ(aaf::rate_from_edit_rate({30000, 1001}), 2);
  EXPECT_EQ(aaf::rate_from_edit_rate({2997, 100}), 2);
  EXPECT_EQ(aaf::rate_from_edit_rate({30, 1}), 4);
  EXPECT_EQ(aaf::rate_from_edit_rate({50, 2}), 0);
  EXPECT_EQ(aaf::rate_from_edit_rate({24000, 1001}), 0);
  EXPECT_EQ(aaf::rate_from_edit_rate({25, 0}), 0);
}

}  // namespace
