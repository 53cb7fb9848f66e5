// What the row of AAF files gives a list, and what it tells of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "core/generic_locator_entry.h"
#include "formats/format_table.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const FormatRow& aaf() {
  return *find_format(format_table(), "aaf");
}

CGenericEdlEntry& add_entry(CGenericEdl& root, std::int64_t length, int streams) {
  auto* const entry = new CGenericEdlEntry(&root);
  root.get_generic_entry_list()->AddTail(entry);
  entry->dest_in = 0;
  entry->dest_out = length;
  entry->set_no_streams(streams);
  for (int i = 0; i < streams; ++i)
    entry->set_stream(i, static_cast<unsigned short>(i));
  return *entry;
}

void add_locator(CGenericEdl& root, const wide_char* name) {
  auto* const locator = new CGenericLocatorEntry;
  root.get_locator_list()->AddTail(locator);
  locator->name = name;
}

void add_automation(CGenericEdl& root, std::uint16_t type) {
  auto* const chunk = new CGenericAutomationChunk;
  root.get_automation_list()->AddTail(chunk);
  chunk->type = type;
  chunk->points = new CObList(10);
}

TEST(AafRow, LosesNothingOfAPlainList) {
  const support::ScriptedHost host;
  CGenericEdl root;
  add_entry(root, 10, 1);
  add_locator(root, u"LEFT_LOCATOR\t\t\t");
  add_locator(root, u"RIGHT_LOCATOR\t\t");
  add_automation(root, 0);
  add_automation(root, 2);
  EXPECT_THAT(aaf().further_losses(root), IsEmpty());
}

TEST(AafRow, TellsWhatHasNoPlace) {
  const support::ScriptedHost host;
  CGenericEdl root;
  add_entry(root, 10, 0);
  add_entry(root, 0, 1);
  add_entry(root, 10, 1);
  add_locator(root, u"a mark");
  add_automation(root, 1);
  add_automation(root, 1);
  EXPECT_THAT(aaf().further_losses(root), ElementsAre("1 locator", "2 runs of mute automation",
                                                      "2 edits without a stream or a length"));
}

TEST(AafRow, GivesEditsTheNamesOfClipsAndReels) {
  const support::ScriptedHost host;
  CGenericEdl root;
  add_entry(root, 10, 1).set_reel_name(u"TAPE01");
  add_entry(root, 10, 1).set_clip_name(u"TAKE 1");
  add_entry(root, 10, 1).set_file_path(u"//C:/a");
  EXPECT_EQ(aaf().complete(root, {}),
            "2 edits name no audio file; one with the name of the clip or the reel is taken");
  std::vector<std::string> paths;
  const CObList& entries = *root.get_generic_entry_list();
  for (POSITION at = entries.GetHeadPosition(); at != nullptr;)
    paths.push_back(utf8_from_text(
        field_text(static_cast<const CGenericEdlEntry*>(entries.GetNext(at))->file_path)));
  EXPECT_THAT(paths, ElementsAre("//TAPE01", "//TAKE 1", "//C:/a"));
}

TEST(AafRow, WritesAnEdlNameUnderItsOwn) {
  EXPECT_THAT(aaf().outputs("/a/film.EDL"), ElementsAre("/a/film.aaf"));
  EXPECT_THAT(aaf().outputs("/a/film.aaf"), ElementsAre("/a/film.aaf"));
}

}  // namespace
