#include "formats/text_head.h"

#include <gtest/gtest.h>

namespace {

using formats::format_in_title;
using formats::has_event_line;
using formats::is_time_code;
using formats::states_fcm;
using formats::take_line;
using formats::words_of;

TEST(TextHead, LinesEndAtEitherMark) {
  std::string_view text = "one\r\ntwo\nthree";
  EXPECT_EQ(take_line(text), "one");
  EXPECT_EQ(take_line(text), "");
  EXPECT_EQ(take_line(text), "two");
  EXPECT_EQ(take_line(text), "three");
  EXPECT_TRUE(text.empty());
  EXPECT_EQ(take_line(text), "");
}

TEST(TextHead, WordsArePartedByBlanksAndTabs) {
  EXPECT_TRUE(words_of("").empty());
  EXPECT_TRUE(words_of(" \t ").empty());
  EXPECT_EQ(words_of(" 001\tTAPE  A"), (std::vector<std::string_view>{"001", "TAPE", "A"}));
}

TEST(TextHead, FormatOfATitle) {
  EXPECT_EQ(format_in_title("TITLE: b          FORMAT: CMX 3600 4-Ch \n"), "CMX 3600 4-Ch");
  EXPECT_EQ(format_in_title("\r\n\r\n  TITLE: b FORMAT: CMX 340 2-Ch\r\n"), "CMX 340 2-Ch");
  EXPECT_EQ(format_in_title("\xEF\xBB\xBFTITLE: b FORMAT: X"), "X");
  EXPECT_EQ(format_in_title("* note\nTITLE: b FORMAT: X"), "X");
  // A title that itself holds the word.
  EXPECT_EQ(format_in_title("TITLE: FORMAT: A FORMAT: B"), "B");
}

TEST(TextHead, NoFormatInATitle) {
  EXPECT_EQ(format_in_title(""), "");
  EXPECT_EQ(format_in_title("TITLE: MY_FORMAT_1\nFORMAT: X"), "");
  EXPECT_EQ(format_in_title("FORMAT: X"), "");
  // The first title decides.
  EXPECT_EQ(format_in_title("TITLE: a\nTITLE: b FORMAT: X"), "");
}

TEST(TextHead, TimeCodes) {
  for (const char* const good : {"01:02:03:04", "01:02:03;04", "01.02.03.04", "01,02,03,04"})
    EXPECT_TRUE(is_time_code(good)) << good;
  for (const char* const bad :
       {"", "01:02:03", "1:02:03:04", "01:02:03:0x", "01:02:03:045", "01-02-03-04", "01:02:03:04 "})
    EXPECT_FALSE(is_time_code(bad)) << bad;
}

TEST(TextHead, EventLines) {
  const std::string times = " 01:00:00:00 01:00:01:00 10:00:00:00 10:00:01:00";
  for (const std::string& good :
       {"001 TAPE A C" + times, "1 R V C" + times + " extra", "001  TAPE  A2/V  D  024" + times,
        "0001\tTAPE\tB\tW001\t024" + times, "001 TAPE A W 001 024" + times,
        "TITLE: x\r\n001 TAPE A C" + times}) {
    EXPECT_TRUE(has_event_line(good)) << good;
  }
  for (const std::string& bad :
       {std::string(), "A01 TAPE A C" + times, "001 TAPE A" + times, "001 TAPE A C D E F" + times,
        std::string("001 TAPE A C 01:00:00:00 01:00:01:00"), "x 001 TAPE A C" + times}) {
    EXPECT_FALSE(has_event_line(bad)) << bad;
  }
}

TEST(TextHead, FcmInFrontOfTheFirstEvent) {
  EXPECT_TRUE(states_fcm("TITLE: x\nFCM: NON-DROP FRAME\n001 T A C"));
  EXPECT_TRUE(states_fcm("FCM: DROP FRAME"));
  EXPECT_FALSE(states_fcm(""));
  EXPECT_FALSE(states_fcm("TITLE: x\n001 T A C\nFCM: DROP FRAME"));
  EXPECT_FALSE(states_fcm("FCM: UNKNOWN\n001 T A C"));
  EXPECT_FALSE(states_fcm("FCM:NON-DROP FRAME\n001 T A C"));
  EXPECT_FALSE(states_fcm("FCM:"));
}

}  // namespace
