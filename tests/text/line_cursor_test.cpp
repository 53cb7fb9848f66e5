#include "text/line_cursor.h"

#include <gtest/gtest.h>

namespace {

TEST(LineCursor, WordsArePartedByBlanksTabsAndLineFeeds) {
  LineCursor line(u"  A\tBC \nD\rE");
  EXPECT_TRUE(line.next() == u"A");
  EXPECT_TRUE(line.peek() == u"BC");
  EXPECT_TRUE(line.next() == u"BC");
  EXPECT_TRUE(line.next() == u"D\rE");
  EXPECT_TRUE(line.next().empty());
  EXPECT_TRUE(line.rest().empty());
}

TEST(LineCursor, TokenStopsAt1023) {
  EXPECT_EQ(leading_token(std::u16string(2000, u'x')).size(), 1023U);
}

TEST(LineCursor, DigitsLookAtTheFirst255) {
  EXPECT_TRUE(all_digits(u""));
  EXPECT_TRUE(all_digits(u"012"));
  EXPECT_FALSE(all_digits(u"1a"));
  EXPECT_FALSE(all_digits(u"-1"));
  EXPECT_TRUE(all_digits(std::u16string(255, u'1') + u"x"));
  EXPECT_FALSE(all_digits(std::u16string(254, u'1') + u"x"));
}

TEST(LineCursor, NumbersSaturate) {
  EXPECT_EQ(digits_value(u"12x"), 12);
  EXPECT_EQ(digits_value(u"99999999999999999999"), 2147483647);
  EXPECT_EQ(event_number_value(u"65537"), 1);
  EXPECT_EQ(event_number_value(u"99999999999"), 65535);
}

}  // namespace
