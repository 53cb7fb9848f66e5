#include "embedded/strings.h"

#include <gtest/gtest.h>

#include <set>

#include "embedded/string_table.h"
#include "host/string_ids.h"
#include "host/text_format.h"
#include "tests/support/compare.h"

namespace {

using embedded::english_text;
using support::utf8;

std::size_t count_of(std::u16string_view text, std::u16string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::u16string_view::npos;
       at = text.find(part, at + 1))
    ++count;
  return count;
}

TEST(StringTable, HasATextForEveryIdAndNoOther) {
  std::set<unsigned> known;
  for (const auto& row : embedded::string_table())
    known.insert(row.id);
  const std::set<unsigned> wanted(all_string_ids().begin(), all_string_ids().end());
  EXPECT_EQ(known, wanted);
  EXPECT_EQ(known.size(), embedded::string_table().size());
  for (const unsigned id : all_string_ids()) {
    const char16_t* const text = english_text(id);
    ASSERT_NE(text, nullptr) << id;
    EXPECT_GT(std::u16string_view(text).size(), 2U) << id;
  }
  EXPECT_EQ(english_text(24879), nullptr);
  EXPECT_EQ(english_text(0), nullptr);
}

// A report is cut at 299 characters, its text standing inside a format with a
// number of up to ten digits.
TEST(StringTable, TextsFitAReport) {
  for (const unsigned id : all_string_ids()) {
    const std::u16string whole =
        fill_host_format(english_text(string_id::event_format), english_text(id), 4294967295);
    EXPECT_LE(whole.size(), 299U) << id;
  }
}

// Texts go into HTML reports as they are, and onto terminals and into 8-bit files.
TEST(StringTable, TextsArePlain) {
  for (const auto& row : embedded::string_table()) {
    for (const char16_t c : std::u16string_view(row.text)) {
      EXPECT_TRUE(c >= u' ' && c < 0x7F) << row.id;
      EXPECT_TRUE(c != u'<' && c != u'>' && c != u'&') << row.id;
    }
  }
}

TEST(StringTable, OnlyFormatsHoldPlaces) {
  for (const auto& row : embedded::string_table()) {
    const bool event = row.id == string_id::edit_format || row.id == string_id::event_format;
    const bool rate = row.id == string_id::aaf_rate_changes ||
                      row.id == string_id::aaf_rate_unknown ||
                      row.id == string_id::aaf_rate_refused;
    EXPECT_EQ(count_of(row.text, u"%s"), event ? 1U : 0U) << row.id;
    EXPECT_EQ(count_of(row.text, u"%d"), event || rate ? 1U : 0U) << row.id;
    EXPECT_EQ(count_of(row.text, u"%"), event ? 2U : rate ? 1U : 0U) << row.id;
  }
}

TEST(StringTable, EveryMessageIsDistinct) {
  std::set<std::u16string_view> texts;
  for (const auto& row : embedded::string_table())
    EXPECT_TRUE(texts.insert(row.text).second) << row.id;
}

// The pieces of one message are put together without anything between them.
TEST(StringTable, PiecesJoin) {
  const auto text = [](unsigned id) { return utf8(english_text(id)); };
  EXPECT_EQ(text(string_id::aaf_cannot_create) + text(string_id::aaf_reason_disk_full),
            "The AAF file could not be created. The disk is full.");
  EXPECT_EQ(text(string_id::aaf_audio_exists_head) + "file:///D:/a.wav" +
                text(string_id::aaf_audio_exists_middle) + text(string_id::aaf_audio_exists_tail),
            "The audio file file:///D:/a.wav stands there already and is not overwritten. Move it "
            "away, or export to another folder, or with the audio embedded.");
}

TEST(EnglishStrings, TwoSlotsStandAtOnce) {
  embedded::EnglishStrings strings;
  const wide_char* const format = strings.load_into_slot(string_id::event_format, 0);
  const wide_char* const text = strings.load_into_slot(string_id::source_length_zero, 1);
  const wide_char* const title = strings.load(string_id::error_title);
  EXPECT_EQ(utf8(format), "%s (event %d)");
  EXPECT_EQ(utf8(text), "The source of this edit has no length.");
  EXPECT_EQ(utf8(title), "Edit list conversion report");
}

TEST(EnglishStrings, UnknownIdIsEmpty) {
  embedded::EnglishStrings strings;
  EXPECT_EQ(utf8(strings.load(4711)), "");
  EXPECT_EQ(utf8(strings.load_into_slot(4711, 1)), "");
  EXPECT_EQ(strings.id_behind(u""), 0U);
}

TEST(EnglishStrings, TellsTheIdOfAReport) {
  embedded::EnglishStrings strings;
  (void)strings.load(string_id::error_title);
  const std::u16string text = strings.load_into_slot(string_id::lengths_differ, 1);
  const std::u16string format = strings.load_into_slot(string_id::event_format, 0);
  EXPECT_EQ(strings.id_behind(fill_host_format(format, text, 12)), 22251U);
  strings.forget();
  EXPECT_EQ(strings.id_behind(fill_host_format(format, text, 12)), 0U);
}

TEST(EnglishStrings, TheHeadOfAComposedMessageCounts) {
  embedded::EnglishStrings strings;
  std::u16string message = strings.load(string_id::aaf_cannot_create);
  message += strings.load(string_id::aaf_reason_in_use);
  EXPECT_EQ(strings.id_behind(message), 24787U);
}

TEST(EnglishStrings, AFormatIsKnownByItsHead) {
  embedded::EnglishStrings strings;
  const std::u16string format = strings.load(string_id::aaf_rate_unknown);
  EXPECT_EQ(strings.id_behind(fill_host_format(format, {}, 22050)), 24731U);
}

TEST(EnglishStrings, EveryMessageFindsItsOwnId) {
  for (const unsigned id : all_string_ids()) {
    if (id == string_id::edit_format || id == string_id::event_format) continue;
    embedded::EnglishStrings strings;
    const std::u16string text = strings.load(id);
    EXPECT_EQ(strings.id_behind(fill_host_format(text, {}, 48000)), id);
  }
}

}  // namespace
