#include "text/sony_line.h"

#include <gtest/gtest.h>

#include "tests/support/compare.h"
#include "tests/text/text_fixtures.h"

namespace {

using support::ToyEdl;
using support::utf8;

class SonyLine : public testing::Test {
 protected:
  SonyLine() { support::set_rates(edl); }
  std::string note(std::vector<int> streams) {
    return utf8(text::channel_note(*support::make_entry(edl, {.streams = std::move(streams)})));
  }
  std::string transition(const ToyEdl& list, std::int64_t fade_in, std::int64_t fade_out) {
    return utf8(text::seconds_transition(
        list,
        *support::make_entry(edl, {.fade_in = fade_in, .fade_out = fade_out, .transition = 51})));
  }

  support::ScriptedHost host;
  ToyEdl edl;
};

TEST_F(SonyLine, TwoWordsCloseAList) {
  for (const wide_char* line : {u".", u" . A", u"END", u"\tEND OF LIST"})
    EXPECT_TRUE(text::closes_list(line)) << utf8(line);
  for (const wide_char* line : {u"", u"..", u"ENDS", u"end", u"001 END"})
    EXPECT_FALSE(text::closes_list(line)) << utf8(line);
}

TEST_F(SonyLine, FieldsOfANumberedLine) {
  const auto fields = [](const wide_char* line) {
    const auto [third, fourth] = text::fields_of_numbered_event(line);
    return utf8(third) + "|" + utf8(fourth);
  };
  EXPECT_EQ(fields(u"001 R A1 C"), "A1|C");
  EXPECT_EQ(fields(u"001 R A1"), "A1|");
  EXPECT_EQ(fields(u"001"), "|");
  EXPECT_EQ(fields(u"01A R A1 C"), "|") << "three characters are not enough";
}

TEST_F(SonyLine, NotesOfChannels) {
  EXPECT_EQ(note({2}), "\nA3\n");
  EXPECT_EQ(note({3}), "\n  A4\n");
  EXPECT_EQ(note({2, 3}), "\nA3A4\n");
  EXPECT_EQ(note({}), "\nA65536A65537\n") << "any other count than one names two";
}

TEST_F(SonyLine, LengthsOfListsWithoutRates) {
  const ToyEdl unset;
  EXPECT_EQ(transition(unset, 48000, 0), "C         ");
  CGenericEdlEntry entry(&edl);
  entry.fade_in_length = entry.fade_out_length = 7;
  text::take_seconds_and_frames(unset, u"02:12", entry);
  EXPECT_EQ(entry.fade_in_length, 0);
  EXPECT_EQ(entry.fade_out_length, 0);
}

TEST_F(SonyLine, AnySeparatorPartsSecondsAndFrames) {
  CGenericEdlEntry entry(&edl);
  text::take_seconds_and_frames(edl, u"02;12", entry);
  EXPECT_EQ(entry.fade_in_length, 2 * 48000 + 12 * 1920);
  text::take_seconds_and_frames(edl, u"00024", entry);
  EXPECT_EQ(entry.fade_in_length, 24 * 1920) << "the third character is not looked at";
  text::take_seconds_and_frames(edl, u"99:99", entry);
  EXPECT_EQ(entry.fade_in_length, 99 * 48000 + 99 * 1920);
}

TEST_F(SonyLine, LengthsAtTheEndsOf64Bits) {
  // 2^63 - 1 is 2^63 in single precision, and 192153584101141 whole seconds and 7
  // less of it is 2^63 too, so nothing is left over.
  EXPECT_EQ(transition(edl, INT64_MAX, 0), "D   192153584101141:00   ");
  EXPECT_EQ(transition(edl, INT64_MIN, 0), "D   -192153584101141:00   ");
}

}  // namespace
