// The silent host, the switches, the ids and the dynamic libraries.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "host/corrections.h"
#include "host/plain_host.h"
#include "host/string_ids.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace {

using support::utf8;

TEST(Corrections, NamesFindTheirSwitches) {
  for (std::size_t i = 0; i < correction_names.size(); ++i)
    EXPECT_EQ(correction_by_name(correction_names[i]), static_cast<Correction>(i));
  EXPECT_EQ(correction_by_name("adl_drop_frame"), Correction::adl_drop_frame);
  EXPECT_EQ(correction_by_name("aaf_external_names"), Correction::aaf_external_names);
  EXPECT_EQ(correction_by_name("ADL_DROP_FRAME"), std::nullopt);
  EXPECT_EQ(correction_by_name(""), std::nullopt);
}

TEST(Corrections, AreTheHostsToAnswer) {
  EXPECT_FALSE(corrected(Correction::aaf_clip_rate));
  support::ScriptedHost host;
  EXPECT_FALSE(corrected(Correction::aaf_clip_rate));
  host.fixes.set(Correction::aaf_clip_rate, true);
  EXPECT_TRUE(corrected(Correction::aaf_clip_rate));
  EXPECT_FALSE(corrected(Correction::adl_drop_frame));
  host.fixes.set(Correction::aaf_clip_rate, false);
  EXPECT_FALSE(corrected(Correction::aaf_clip_rate));
}

// Reads the numbers out of the header itself, so that none is missing from the
// list of all.
TEST(StringIds, AllOfTheHeaderAreListed) {
  const std::string header = support::read_file(EDL_STRING_IDS_HEADER);
  std::set<unsigned> named;
  const std::size_t first = header.find("enum Id");
  const std::size_t last = header.find("};", first);
  ASSERT_NE(last, std::string::npos);
  for (std::size_t at = header.find(" = ", first); at < last; at = header.find(" = ", at + 1))
    named.insert(static_cast<unsigned>(std::stoul(header.substr(at + 3))));
  const auto all = all_string_ids();
  EXPECT_EQ(named, std::set<unsigned>(all.begin(), all.end()));
  EXPECT_EQ(named.size(), all.size());
  EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
}

TEST(StringIds, ReportsHaveTheirNumbers) {
  EXPECT_EQ(string_id::error_title, 22243U);
  EXPECT_EQ(string_id::event_format, 22253U);
  EXPECT_EQ(string_id::adl_fades_too_long, 28198U);
  const auto all = all_string_ids();
  EXPECT_EQ(std::count(all.begin(), all.end(), 24879U), 0);
}

TEST(PlainHost, IsInForceUntilOneIsSet) {
  Host& silent = host();
  {
    support::ScriptedHost scripted;
    EXPECT_EQ(&host(), &scripted);
  }
  EXPECT_EQ(&host(), &silent);
  set_host(nullptr);
  EXPECT_EQ(&host(), &silent);
}

TEST(PlainHost, SaysNothingAndAnswersNo) {
  PlainHost plain;
  EXPECT_EQ(utf8(plain.strings().load(22231)), "");
  EXPECT_EQ(utf8(plain.strings().load_into_slot(22231, 1)), "");
  EXPECT_EQ(plain.message_boxes().show(u"t", u"b", 16384), 0U);
  EXPECT_EQ(plain.message_boxes().ask_by_ids(1, 2, 4, 2), box_answer_no);
  EXPECT_EQ(plain.message_boxes().message(u"t", BoxIcon::error, BoxButtons::ok), box_answer_ok);
  EXPECT_EQ(plain.message_boxes().message(u"t", BoxIcon::question, BoxButtons::yes_no),
            box_answer_no);
  EXPECT_EQ(plain.dialogs().choose({u"", u"", u"", {}}), -1);
  EXPECT_TRUE(plain.link_resources());
}

TEST(PlainHost, SettingsAreAtTheirDefaults) {
  PlainHost plain;
  EXPECT_EQ(plain.settings().ini_integer(u"marlo3.ini", u"Tribble", u"k", 5), 5);
  EXPECT_EQ(plain.settings().registry_number(u"p", u"v", 5), std::nullopt);
  int ask = 7;
  EXPECT_FALSE(plain.application().get_crossfade_update_policy(ask));
  EXPECT_EQ(ask, 0);
  EXPECT_EQ(plain.application().get_fade_curve(0), nullptr);
  EXPECT_EQ(plain.application().get_imported_audio_folder(), nullptr);
}

TEST(PlainHost, ProgressIsSilent) {
  PlainHost plain;
  const auto window = plain.dialogs().open_progress(10);
  ASSERT_NE(window, nullptr);
  window->set_position(5);
  ProgressWindow::Event event{};
  EXPECT_FALSE(window->pump(event));
  window->close();
}

TEST(PlainHost, HasNoFoldersNoAudioAndNoViewer) {
  PlainHost plain;
  wide_char path[4] = {u'x', u'x', u'x', u'x'};
  plain.folders().local_path(nullptr, path, 4);
  EXPECT_EQ(utf8(path), "");
  EXPECT_EQ(plain.folders().find_folder(u"/"), nullptr);
  EXPECT_NE(plain.audio().enable_waveforms(1), 0);
  EXPECT_EQ(plain.audio().channel_file(nullptr, 0), nullptr);
  EXPECT_EQ(utf8(plain.viewer().report_path(u"c:/a.htm").view()), "c:/a.htm");
  EXPECT_EQ(plain.viewer().open(u"a", u"open", 1, false), 31);
  EXPECT_EQ(plain.viewer().date_order(), 1);
  EXPECT_EQ(plain.viewer().clock_form(), 1);
}

TEST(PlainHost, ClockTellsThePresent) {
  PlainHost plain;
  const Moment now = plain.clock().now();
  EXPECT_GE(now.utc.year, 2024);
  EXPECT_GE(now.local.month, 1);
  EXPECT_LE(now.local.month, 12);
  EXPECT_GE(now.local.day, 1);
  EXPECT_LE(now.utc.hour, 23);
}

TEST(PlainHost, IdsAreRandomUuids) {
  PlainHost plain;
  std::set<std::array<std::uint8_t, 16>> seen;
  for (int i = 0; i < 100; ++i) {
    const auto id = plain.unique_ids().create();
    EXPECT_EQ(id[6] >> 4, 4);
    EXPECT_EQ(id[8] >> 6, 2);
    EXPECT_TRUE(seen.insert(id).second);
  }
}

TEST(SystemLibraries, LoadsFindsAndUnloads) {
  SystemLibraries libraries;
  std::uint32_t error = 99;
  void* const library = libraries.load(u"libm.so.6", error);
  ASSERT_NE(library, nullptr);
  EXPECT_EQ(error, 0U);
  EXPECT_NE(libraries.entry(library, "cos", error), nullptr);
  EXPECT_EQ(error, 0U);
  EXPECT_EQ(libraries.entry(library, "no_such_entry_point", error), nullptr);
  EXPECT_EQ(error, 127U);
  EXPECT_TRUE(libraries.unload(library, error));
  EXPECT_EQ(error, 0U);
}

TEST(SystemLibraries, MissingLibrary) {
  SystemLibraries libraries;
  for (const wide_char* const name : {u"no-such-library.so", u"/no/such/folder/x.so", u""}) {
    std::uint32_t error = 0;
    EXPECT_EQ(libraries.load(name, error), nullptr) << utf8(name);
    EXPECT_EQ(error, 126U);
  }
}

TEST(SystemLibraries, NullHandleFindsNothing) {
  SystemLibraries libraries;
  std::uint32_t error = 0;
  EXPECT_EQ(libraries.entry(nullptr, "malloc", error), nullptr);
  EXPECT_EQ(error, 127U);
  EXPECT_FALSE(libraries.unload(nullptr, error));
  EXPECT_NE(error, 0U);
}

}  // namespace
