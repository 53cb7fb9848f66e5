#include "text/line_words.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/support/compare.h"
#include "text/line_cursor.h"

namespace {

struct Step {
  std::string word;
  std::size_t behind;

  bool operator==(const Step&) const = default;
};

// What a reader of the whole line sees, and once more behind its end.
std::vector<Step> steps(LineCursor cursor, const wide_char* line) {
  std::vector<Step> seen;
  for (bool at_end = false; !at_end;) {
    const std::u16string_view peeked = cursor.peek();
    EXPECT_EQ(peeked.data(), cursor.at());
    const std::u16string_view word = cursor.next();
    EXPECT_EQ(word, peeked);
    seen.push_back({support::utf8(word), static_cast<std::size_t>(cursor.at() - line)});
    EXPECT_EQ(cursor.rest(), std::u16string_view(cursor.at()));
    at_end = word.empty();
  }
  EXPECT_TRUE(cursor.next().empty());
  return seen;
}

TEST(LineWords, HandsOutWordsLikeALineReadFresh) {
  // Around the blank, the signs that part words, and units with a high bit.
  constexpr std::u16string_view signs = u"  \t\nab1\u0001\u000b\u001f!\u007f\u8020\u8000\uffff";
  std::mt19937 random(11);
  int not_taken = 0;
  for (int round = 0; round < 20000; ++round) {
    std::u16string line;
    for (std::size_t length = random() % (round % 3 == 0 ? 192 : 40); length > 0; --length)
      line.push_back(signs[random() % (round % 2 == 0 ? 6 : signs.size())]);
    text::LineWords words;
    words.find(line);
    // Of more than 79 words.
    if (words.line() == nullptr) {
      ++not_taken;
      continue;
    }
    ASSERT_EQ(words.line(), line.data());
    ASSERT_EQ(steps(LineCursor(words), line.data()), steps(LineCursor(line.c_str()), line.data()))
        << support::utf8(line);
  }
  EXPECT_LT(not_taken, 200);
}

TEST(LineWords, ALineOfTooManyWordsIsNotTaken) {
  std::u16string line;
  for (int i = 0; i < 79; ++i)
    line += u"a ";
  text::LineWords words;
  words.find(line);
  EXPECT_EQ(words.line(), line.data());
  line += u"a";
  words.find(line);
  EXPECT_EQ(words.line(), nullptr);
}

TEST(LineWords, ForgetsItsLine) {
  const std::u16string line = u"001 TAPE";
  text::LineWords words;
  EXPECT_EQ(words.line(), nullptr);
  words.find(line);
  EXPECT_EQ(words.line(), line.data());
  words.forget();
  EXPECT_EQ(words.line(), nullptr);
}

}  // namespace
