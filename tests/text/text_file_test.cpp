#include "text/text_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <random>
#include <utility>

#include "host/code_page.h"
#include "tests/support/faulty_files.h"
#include "tests/text/text_fixtures.h"

namespace {

using support::utf8;

constexpr unsigned reading = CFile::modeRead | CFile::shareDenyWrite;
constexpr unsigned writing = CFile::modeCreate | CFile::modeWrite;

class TextFileTest : public support::TextTest {
 protected:
  // A file with these bytes, open for reading.
  void open(CTextFile& file, std::string_view bytes) {
    support::write_file(folder.file("in"), bytes);
    ASSERT_TRUE(file.Open(folder.wide_file("in"), reading));
  }
  std::vector<std::string> lines(std::string_view bytes) {
    CTextFile file(line_file_size);
    open(file, bytes);
    std::vector<std::string> found;
    while (file.get_line() != 0)
      found.push_back(utf8(file.line()));
    return found;
  }
};

using Lines = std::vector<std::string>;

TEST_F(TextFileTest, FlagsAreThoseOfTheFramework) {
  EXPECT_EQ(reading, 32U);
  EXPECT_EQ(writing, 4097U);
}

TEST_F(TextFileTest, EmptyLinesAndIndentationAreNotSeen) {
  CTextFile file(line_file_size);
  open(file, "\n\n  \t A B\r\n\r\nC");
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(utf8(file.line()), "A B");
  EXPECT_EQ(file.line_number(), 1);
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(utf8(file.line()), "C");
  EXPECT_EQ(file.line_number(), 2);
  EXPECT_EQ(file.get_line(), 0);
  EXPECT_EQ(file.line_number(), 2);
  EXPECT_EQ(file.get_line(), 0) << "the end stays the end";
}

TEST_F(TextFileTest, AllThreeLineEnds) {
  EXPECT_EQ(lines("A\rB\nC\r\nD"), (Lines{"A", "B", "C", "D"}));
  EXPECT_EQ(lines("A\n\rB\r\r\n\nC\r"), (Lines{"A", "B", "C"}));
}

// The told reading, byte by byte, of bytes without FF hex, NUL, blanks and TABs.
Lines plain_lines(std::string_view bytes) {
  Lines found;
  std::string line;
  for (const char c : bytes) {
    if (c != '\r' && c != '\n') {
      line += c;
    } else if (!line.empty()) {
      found.push_back(std::exchange(line, {}));
    }
  }
  if (!line.empty()) found.push_back(line);
  return found;
}

TEST_F(TextFileTest, LineEndsAtAnyPlace) {
  // Next to the line ends, in their low seven bits or by one.
  constexpr std::string_view bytes_of_text = "a\x0b\x0c\x0e\x8a\x8d\xfe\x7f\x01z";
  std::mt19937 random(31);
  for (int round = 0; round < 300; ++round) {
    std::string bytes;
    for (int i = 0; i < 400; ++i)
      bytes += random() % 12 == 0 ? "\r\n"[random() % 2]
                                  : bytes_of_text[random() % bytes_of_text.size()];
    Lines expected;
    for (const std::string& line : plain_lines(bytes)) {
      std::u16string text;
      windows_1252().decode(line, text);
      expected.push_back(utf8(text));
    }
    ASSERT_EQ(lines(bytes), expected);
  }
}

TEST_F(TextFileTest, TrailingBlanksStay) {
  EXPECT_EQ(lines("A  \t\nB"), (Lines{"A  \t", "B"}));
}

TEST_F(TextFileTest, VerticalTabAndFormFeedAreOfTheLine) {
  EXPECT_EQ(lines("\vA\n\f\nB"), (Lines{"\vA", "\f", "B"}));
}

TEST_F(TextFileTest, NulsBecomeBlanks) {
  using std::string_view_literals::operator""sv;
  EXPECT_EQ(lines("A\0B\n"sv), (Lines{"A B"}));
  EXPECT_EQ(lines("\0\0 \0A\n"sv), (Lines{"A"}));
  EXPECT_EQ(lines("A\0\0\nB\0 C\0\n"sv), (Lines{"A", "B  C"}));
  EXPECT_EQ(lines("\0\0\n\0"sv), (Lines{}));
}

TEST_F(TextFileTest, Byte255EndsTheLineAsTheEndOfTheFileDoes) {
  CTextFile file(line_file_size);
  open(file,
       "AB\xFF"
       "CD\n");
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(utf8(file.line()), "AB");
  ASSERT_EQ(file.get_line(), 1) << "it does not stick";
  EXPECT_EQ(utf8(file.line()), "CD");
  EXPECT_EQ(file.get_line(), 0);

  open(file,
       "\xFF"
       "CD\n");
  EXPECT_EQ(file.get_line(), 0);
  open(file,
       "A\n \xFF"
       "CD\n");
  EXPECT_EQ(file.get_line(), 1);
  EXPECT_EQ(file.get_line(), 0);
}

TEST_F(TextFileTest, ALongLineIsCutAndItsRestIsDropped) {
  const auto found = lines(std::string(400, 'L') + "\nX\n");
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0], std::string(249, 'L'));
  EXPECT_EQ(found[1], "X");
}

TEST_F(TextFileTest, LinesAtTheBorderOfTheBuffer) {
  const auto found =
      lines(std::string(249, 'a') + "\n" + std::string(250, 'b') + "\r\n" + std::string(251, 'c'));
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0], std::string(249, 'a'));
  EXPECT_EQ(found[1], std::string(249, 'b'));
  EXPECT_EQ(found[2], std::string(249, 'c'));
}

TEST_F(TextFileTest, ALineWithoutEndComesToAnEnd) {
  // More than the file's buffer of 65536 bytes.
  const auto found = lines(std::string(200000, 'x'));
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0], std::string(249, 'x'));
}

TEST_F(TextFileTest, BytesPassTheCodePage) {
  CTextFile file(line_file_size);
  open(file, "\xE9\x80\x81");
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(std::u16string(file.line()), u"\u00E9\u20AC\u0081");

  CTextFile out(line_file_size);
  ASSERT_TRUE(out.Open(folder.wide_file("out"), writing));
  out.WriteString(u"\u00E9\u20AC\u0081\u4E00\n");
  out.Close();
  EXPECT_TRUE(support::same_bytes(support::read_file(folder.file("out")), "\xE9\x80\x81?\n"));
}

TEST_F(TextFileTest, EveryByteSurvives) {
  std::string bytes;
  for (int i = 33; i < 255; ++i)
    bytes += static_cast<char>(i);
  CTextFile file(line_file_size);
  open(file, bytes);
  ASSERT_EQ(file.get_line(), 1);
  CTextFile out(line_file_size);
  ASSERT_TRUE(out.Open(folder.wide_file("out"), writing));
  out.WriteString(file.line());
  out.Close();
  EXPECT_TRUE(support::same_bytes(support::read_file(folder.file("out")), bytes));
}

TEST_F(TextFileTest, APageOfSeveralBytesACharacter) {
  host.page = &utf8_code_page();
  CTextFile file(line_file_size);
  open(file, "\xC3\xA9\xE4\xB8\x80\xC3 A");
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(std::u16string(file.line()), u"\u00E9\u4E00\uFFFD A");
  // The limit counts bytes: 124 characters of two bytes and half of the next.
  std::string bytes;
  for (int i = 0; i < 200; ++i)
    bytes += "\xC3\xA9";
  open(file, bytes);
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(std::u16string(file.line()), std::u16string(124, u'\u00E9') + u"\uFFFD");
}

TEST_F(TextFileTest, TheBufferHoldsNothingOfALongerLineBefore) {
  CTextFile file(line_file_size);
  open(file, "LONGER LINE\nAB\n");
  ASSERT_EQ(file.get_line(), 1);
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_TRUE(std::all_of(file.line() + 2, file.line() + 250, [](wide_char c) { return c == 0; }));
}

TEST_F(TextFileTest, ReadStringTakesAtMostWhatItIsGiven) {
  CTextFile file(line_file_size);
  open(file, "ABCDEF\nGH\n");
  wide_char buffer[4] = {u'x', u'x', u'x', u'x'};
  EXPECT_EQ(file.ReadString(buffer, 3), buffer);
  EXPECT_EQ(std::u16string(buffer, 4), u"ABCx");
  EXPECT_EQ(file.ReadString(buffer, 3), buffer);
  EXPECT_EQ(std::u16string(buffer, 4), u"GHCx");
  EXPECT_EQ(file.ReadString(buffer, 3), nullptr);
}

TEST_F(TextFileTest, WithoutRoomEveryLineIsEmpty) {
  CTextFile file(line_file_size);
  open(file, "ABCDEF\nGH\n");
  wide_char buffer[1] = {u'x'};
  EXPECT_EQ(file.ReadString(buffer, 0), nullptr);
  EXPECT_EQ(buffer[0], u'x');
  EXPECT_EQ(file.ReadString(buffer, 1), buffer);
  EXPECT_EQ(buffer[0], u'G') << "the first line was passed";
  for (const unsigned short size : std::initializer_list<unsigned short>{0, 1}) {
    CTextFile small(size);
    open(small, "ABCDEF\n");
    EXPECT_EQ(small.get_line(), 0);
    EXPECT_EQ(small.line()[0], u'\0');
  }
}

TEST_F(TextFileTest, WordsOfALine) {
  CTextFile file(line_file_size);
  open(file, "X  AB \t CD");
  ASSERT_EQ(file.get_line(), 1);
  CString word;
  EXPECT_EQ(file.next_word(word), 1);
  EXPECT_EQ(file.next_word(word), 1);
  EXPECT_EQ(utf8(word.view()), "XAB") << "the text is appended to";
  EXPECT_EQ(file.has_more(), 1);
  EXPECT_EQ(file.has_more(), 1);
  CString last;
  EXPECT_EQ(file.next_word(last), 1) << "has_more does not move";
  EXPECT_EQ(utf8(last.view()), "CD");
  EXPECT_EQ(file.has_more(), 0);
  EXPECT_EQ(file.next_word(last), 0);
  EXPECT_EQ(utf8(last.view()), "CD");
}

TEST_F(TextFileTest, WordsIntoABuffer) {
  CTextFile file(line_file_size);
  open(file, "ABCDEF  GH I");
  ASSERT_EQ(file.get_line(), 1);
  wide_char word[4] = {u'x', u'x', u'x', u'x'};
  // Four characters are passed, three are stored.
  EXPECT_EQ(file.next_word(word, 3, 0), 1);
  EXPECT_EQ(std::u16string(word, 4), u"ABCx");
  EXPECT_EQ(file.next_word(word, 3, 1), 1);
  EXPECT_EQ(std::u16string(word, 4), std::u16string(u"EF\0x", 4));
  EXPECT_EQ(file.next_word(word, 2, 0), 1);
  EXPECT_EQ(std::u16string(word, 4), std::u16string(u"GH\0x", 4)) << "no room for a terminator";
  EXPECT_EQ(file.next_word(word, 3, 1), 1);
  EXPECT_EQ(std::u16string(word, 4), std::u16string(u"I\0\0x", 4));
  EXPECT_EQ(file.next_word(word, 3, 1), 0);
  EXPECT_EQ(std::u16string(word, 4), std::u16string(u"\0\0\0x", 4));

  open(file, "A B");
  ASSERT_EQ(file.get_line(), 1);
  wide_char used[4] = {u'x', u'x', u'x', u'x'};
  EXPECT_EQ(file.next_word(used, 3, 0), 1);
  EXPECT_EQ(std::u16string(used, 4), std::u16string(u"A\0xx", 4)) << "the rest stays";
  EXPECT_EQ(file.next_word(used, 3, 1), 1);
  EXPECT_EQ(std::u16string(used, 4), std::u16string(u"B\0\0x", 4));
}

TEST_F(TextFileTest, ALineStartsItsWordsAnew) {
  CTextFile file(line_file_size);
  open(file, "A B\nC");
  ASSERT_EQ(file.get_line(), 1);
  CString word;
  EXPECT_EQ(file.next_word(word), 1);
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(file.next_word(word), 1);
  EXPECT_EQ(utf8(word.view()), "AC");
}

TEST_F(TextFileTest, ALineOf250CharactersFits) {
  CTextFile file(line_file_size);
  ASSERT_TRUE(file.Open(folder.wide_file("out"), writing));
  EXPECT_NE(file.add_text(std::u16string(249, u'a')), 0);
  EXPECT_NE(file.add_text(u"b"), 0);
  EXPECT_EQ(file.add_text(u"c"), 0);
  EXPECT_EQ(file.add_text(std::u16string(251, u'd')), 0);
  EXPECT_NE(file.add_text(u""), 0);
  EXPECT_EQ(file.flush_line(), 101);
  EXPECT_EQ(file.line()[0], u'\0');
  EXPECT_EQ(file.flush_line(), 101) << "an empty line writes nothing";
  EXPECT_NE(file.add_text(std::u16string(250, u'e')), 0) << "flushing empties the buffer";
  EXPECT_EQ(file.flush_line(), 101);
  file.Close();
  EXPECT_EQ(support::read_file(folder.file("out")),
            std::string(249, 'a') + "b" + std::string(250, 'e'));
}

TEST_F(TextFileTest, ARefusedWriteRaises) {
  CTextFile file(line_file_size);
  ASSERT_TRUE(file.Open(folder.wide_file("out"), writing));
  const support::FaultyFiles faults(FileFaults::Operation::write, 1, ENOSPC,
                                    support::FaultyFiles::After::keep_failing);
  // Past the file's own buffer of 65536 bytes the system is asked.
  const std::u16string text(70000, u'x');
  try {
    file.WriteString(text);
    FAIL() << "no exception";
  } catch (const CFileException& failure) {
    EXPECT_EQ(failure.m_cause, 13);
    EXPECT_EQ(failure.m_lOsError, ENOSPC);
    EXPECT_EQ(utf8(failure.m_strFileName.view()), folder.file("out"));
  }
}

TEST_F(TextFileTest, FlushLineSwallowsARefusedWrite) {
  CTextFile file(line_file_size);
  ASSERT_TRUE(file.Open(folder.wide_file("out"), writing));
  const support::FaultyFiles faults(FileFaults::Operation::write, 1, EIO,
                                    support::FaultyFiles::After::keep_failing);
  for (int i = 0; i < 400; ++i) {
    ASSERT_NE(file.add_text(std::u16string(200, u'x')), 0);
    ASSERT_EQ(file.flush_line(), 101);
  }
  EXPECT_TRUE(file.write_failed());
  EXPECT_GE(faults.failed(), 1);
}

TEST_F(TextFileTest, AWriteRefusedAtTheCloseIsNoted) {
  CTextFile file(line_file_size);
  ASSERT_TRUE(file.Open(folder.wide_file("out"), writing));
  ASSERT_NE(file.add_text(u"line\n"), 0);
  ASSERT_EQ(file.flush_line(), 101);
  EXPECT_FALSE(file.write_failed());
  const support::FaultyFiles faults(FileFaults::Operation::write, 1, EIO);
  file.close_quietly();
  EXPECT_TRUE(file.write_failed());
}

TEST_F(TextFileTest, WhatCannotBeOpened) {
  CTextFile file(line_file_size);
  EXPECT_FALSE(file.Open(folder.wide_file("missing"), reading));
  EXPECT_FALSE(file.Open(text_from_utf8(folder.folder("sub")).c_str(), reading));
  EXPECT_FALSE(file.Open(folder.wide_file("no/such/folder"), writing));
  EXPECT_FALSE(file.Open(nullptr, reading));
}

TEST_F(TextFileTest, AReadErrorRaises) {
  CTextFile file(line_file_size);
  open(file, "A\n");
  const support::FaultyFiles faults(FileFaults::Operation::read, 1, EIO);
  EXPECT_THROW(file.get_line(), CFileException);
}

TEST_F(TextFileTest, ComesBackToAMark) {
  CTextFile file(line_file_size);
  open(file, "A\r\n\r\nB\r\n  C\nD");
  ASSERT_EQ(file.get_line(), 1);
  const CTextFile::Mark mark = file.mark();
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(utf8(file.line()), "B");
  EXPECT_EQ(file.physical_line(), 3);
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(file.line_number(), 3);
  EXPECT_EQ(file.physical_line(), 4);
  file.return_to(mark);
  EXPECT_EQ(file.line_number(), 1);
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(utf8(file.line()), "B");
  EXPECT_EQ(file.line_number(), 2);
  EXPECT_EQ(file.physical_line(), 3);
}

TEST_F(TextFileTest, ComesBackPastTheFilesBuffer) {
  std::string bytes = "head\nfirst\n";
  while (bytes.size() < 200000)
    bytes += "a line of some length\n";
  CTextFile file(line_file_size);
  open(file, bytes);
  ASSERT_EQ(file.get_line(), 1);
  const CTextFile::Mark mark = file.mark();
  while (file.get_line() != 0) {
  }
  file.return_to(mark);
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(utf8(file.line()), "first");
  EXPECT_EQ(file.line_number(), 2);
}

TEST_F(TextFileTest, PhysicalLinesCountAllLineEnds) {
  CTextFile file(line_file_size);
  open(file, "A\r\rB\n\nC\r\n\r\nD\n\rE");
  std::vector<int> places;
  while (file.get_line() != 0)
    places.push_back(file.physical_line());
  EXPECT_EQ(places, (std::vector<int>{1, 3, 5, 7, 9}));
}

TEST_F(TextFileTest, OpeningAnewStartsAnew) {
  CTextFile file(line_file_size);
  open(file, "A\nB\n");
  ASSERT_EQ(file.get_line(), 1);
  ASSERT_EQ(file.get_line(), 1);
  open(file, "C\n");
  EXPECT_EQ(file.line_number(), 0);
  ASSERT_EQ(file.get_line(), 1);
  EXPECT_EQ(utf8(file.line()), "C");
  EXPECT_EQ(file.physical_line(), 1);
}

}  // namespace
