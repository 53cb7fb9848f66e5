#include "cli/text_table.h"

#include <gtest/gtest.h>

namespace {

using cli::fitted;
using cli::shown_width;
using cli::TextTable;
using cli::wrapped;

TEST(ShownWidth, CountsColumnsOfTheScreen) {
  EXPECT_EQ(shown_width(""), 0U);
  EXPECT_EQ(shown_width("abc"), 3U);
  EXPECT_EQ(shown_width("é€"), 2U);
  // A letter with a combining accent, two wide characters, a pictograph.
  EXPECT_EQ(shown_width("e\xCC\x81"), 1U);
  EXPECT_EQ(shown_width("日本"), 4U);
  EXPECT_EQ(shown_width("\xF0\x9F\x8E\xAC"), 2U);
}

TEST(Fitted, CutsWithAnEllipsis) {
  EXPECT_EQ(fitted("abcdef", 6), "abcdef");
  EXPECT_EQ(fitted("abcdef", 5), "abcd…");
  EXPECT_EQ(fitted("abcdef", 1), "…");
  EXPECT_EQ(fitted("abcdef", 0), "");
  EXPECT_EQ(fitted("日本語", 5), "日本…");
  EXPECT_EQ(fitted("日本語", 4), "日…");
}

TEST(Wrapped, BreaksBetweenWords) {
  EXPECT_EQ(wrapped("one two three", 7), "one two\nthree");
  EXPECT_EQ(wrapped("one two three", 6), "one\ntwo\nthree");
  EXPECT_EQ(wrapped("endless-word a", 4), "endless-word\na");
  EXPECT_EQ(wrapped("a\nb c\n", 10), "a\nb c\n");
  EXPECT_EQ(wrapped("", 10), "");
}

TEST(TextTable, AlignsCellsAndLeavesNoBlanksBehind) {
  const TextTable table({{"one", 5}, {"two", 4}, {"last", 0}}, 40);
  EXPECT_EQ(table.title_line(), "one   two  last\n");
  EXPECT_EQ(table.line({"a", "b", "c"}), "a     b    c\n");
  EXPECT_EQ(table.line({"a", "", "c"}), "a          c\n");
  EXPECT_EQ(table.line({"a", "b", ""}), "a     b\n");
  EXPECT_EQ(table.line({"toolong", "toolong", "c"}), "tool… too… c\n");
  EXPECT_EQ(table.line({"日本語", "b", "c"}), "日本… b    c\n");
}

TEST(TextTable, LastColumnTakesWhatIsLeft) {
  const TextTable table({{"one", 5}, {"two", 4}, {"last", 0}}, 20);
  EXPECT_EQ(table.line({"a", "b", "123456789"}), "a     b    123456789\n");
  EXPECT_EQ(table.line({"a", "b", "1234567890"}), "a     b    12345678…\n");
}

TEST(TextTable, NarrowScreensLeaveColumnsOut) {
  const std::vector<cli::Column> columns = {{"one", 5}, {"two", 4}, {"three", 5}, {"last", 0}};
  // 17 columns of the first three with their gaps, and 8 for the last at the least.
  EXPECT_EQ(TextTable(columns, 25).title_line(), "one   two  three last\n");
  EXPECT_EQ(TextTable(columns, 24).title_line(), "one   two  three\n");
  EXPECT_EQ(TextTable(columns, 16).title_line(), "one   two  three\n");
  EXPECT_EQ(TextTable(columns, 15).title_line(), "one   two\n");
  EXPECT_EQ(TextTable(columns, 1).title_line(), "one   …\n");
}

TEST(TextTable, TakesOutWhatSteersATerminal) {
  const TextTable table({{"a", 10}, {"b", 0}}, 40);
  EXPECT_EQ(table.line({"x\x1b[2Jy", "z\nw"}), "x [2Jy     z w\n");
}

}  // namespace
