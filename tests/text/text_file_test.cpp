#include "text/text_file.h"

#include <gtest/gtest.h>

#include "host/code_page.h"
#include "tests/support/compare.h"
#include "tests/support/faulty_files.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace {

using support::utf8;
using namespace std::string_literals;

class TextFile : public testing::Test {
 protected:
  // Opens a file of these bytes for reading.
  void open(const std::string& bytes) {
    support::write_file(folder_.file("in"), bytes);
    ASSERT_TRUE(file_.Open(folder_.wide_file("in"), CFile::modeRead));
  }
  std::vector<std::string> lines_of(const std::string& bytes) {
    open(bytes);
    std::vector<std::string> lines;
    while (file_.get_line() != 0)
      lines.push_back(utf8(file_.line()));
    return lines;
  }

  support::ScriptedHost host_;
  support::TempFolder folder_;
  CTextFile file_{250};
};

TEST_F(TextFile, EmptyLinesAndIndentationAreNotSeen) {
  EXPECT_EQ(lines_of("\n\n  \t A B\r\n\r\nC"), (std::vector<std::string>{"A B", "C"}));
  EXPECT_EQ(file_.line_number(), 2);
}

TEST_F(TextFile, PhysicalLinesCountAsInAnEditor) {
  open("\n\nA\r\n\r\n\rB\n");
  ASSERT_EQ(file_.get_line(), 1);
  EXPECT_EQ(file_.physical_line(), 3);
  ASSERT_EQ(file_.get_line(), 1);
  EXPECT_EQ(file_.physical_line(), 6);
}

TEST_F(TextFile, NulsBecomeBlanksOrVanish) {
  EXPECT_EQ(lines_of("A\0B\n\0\0C\0\0\n"s), (std::vector<std::string>{"A B", "C"}));
}

TEST_F(TextFile, ByteFfEndsALineAsTheEndOfTheFileDoes) {
  open(
      "AB\xFF"
      "CD\n");
  EXPECT_EQ(file_.get_line(), 1);
  EXPECT_EQ(utf8(file_.line()), "AB");
  EXPECT_EQ(file_.get_line(), 1);
  EXPECT_EQ(utf8(file_.line()), "CD");
  EXPECT_EQ(file_.get_line(), 0);
  open(
      "\xFF"
      "CD\n");
  EXPECT_EQ(file_.get_line(), 0);
}

TEST_F(TextFile, LongLineIsCutAndItsRestIsLost) {
  EXPECT_EQ(lines_of(std::string(400, 'x') + "\nX\n"),
            (std::vector<std::string>{std::string(249, 'x'), "X"}));
}

TEST_F(TextFile, VerticalTabIsNotSkippedInFrontOfALine) {
  EXPECT_EQ(lines_of("\vA\n"), std::vector<std::string>{"\vA"});
}

TEST_F(TextFile, TextsPassTheCodePage) {
  EXPECT_EQ(lines_of("\xE9\n"), std::vector<std::string>{"\u00E9"});
  file_.Close();
  ASSERT_TRUE(file_.Open(folder_.wide_file("out"), CFile::modeCreate | CFile::modeWrite));
  file_.WriteString(u"\u00E9\u4E00");
  file_.Close();
  EXPECT_TRUE(support::same_bytes(support::read_file(folder_.file("out")), "\xE9?"));
}

TEST_F(TextFile, PageOfSeveralBytesACharacter) {
  host_.page = &utf8_code_page();
  EXPECT_EQ(lines_of("\xE4\xB8\x80 \xFF"), std::vector<std::string>{"\u4E00 "});
  EXPECT_EQ(lines_of(std::string(248, 'a') + "\xE4\xB8\x80\n").at(0).substr(0, 248),
            std::string(248, 'a'));
}

TEST_F(TextFile, WordsOfALine) {
  open("  AB CD");
  ASSERT_EQ(file_.get_line(), 1);
  CString word;
  EXPECT_EQ(file_.next_word(word), 1);
  EXPECT_EQ(utf8(word.view()), "AB");
  EXPECT_EQ(file_.has_more(), 1);
  EXPECT_EQ(file_.has_more(), 1);
  EXPECT_EQ(file_.next_word(word), 1);
  EXPECT_EQ(utf8(word.view()), "ABCD");
  EXPECT_EQ(file_.has_more(), 0);
  EXPECT_EQ(file_.next_word(word), 0);
}

TEST_F(TextFile, WordIntoABuffer) {
  open("ABCDEFGH IJ");
  ASSERT_EQ(file_.get_line(), 1);
  wide_char word[5] = {u'1', u'2', u'3', u'4', u'5'};
  EXPECT_EQ(file_.next_word(word, 4, 1), 1);
  // Four are stored, five are passed, and nothing stands behind the four.
  EXPECT_EQ(utf8({word, 4}), "ABCD");
  EXPECT_EQ(word[4], u'5');
  EXPECT_EQ(file_.next_word(word, 4, 1), 1);
  EXPECT_EQ(utf8(word), "FGH");
}

TEST_F(TextFile, LineToWriteHoldsTheBuffer) {
  ASSERT_TRUE(file_.Open(folder_.wide_file("out"), CFile::modeCreate | CFile::modeWrite));
  EXPECT_EQ(file_.add_text(std::u16string(249, u'a')), 1);
  EXPECT_EQ(file_.add_text(u"b"), 1);
  EXPECT_EQ(file_.add_text(u"c"), 0);
  EXPECT_EQ(file_.flush_line(), 101);
  EXPECT_EQ(file_.add_text(u"\n"), 1);
  EXPECT_EQ(file_.flush_line(), 101);
  file_.Close();
  EXPECT_EQ(support::read_file(folder_.file("out")), std::string(249, 'a') + "b\n");
}

TEST_F(TextFile, RefusedWriteRaisesButAFlushedLineSwallowsIt) {
  ASSERT_TRUE(file_.Open(u"/dev/full", CFile::modeWrite));
  // Bytes are handed on in large blocks.
  const std::u16string block(200000, u'x');
  try {
    file_.WriteString(block);
    FAIL() << "nothing was raised";
  } catch (const CFileException& failure) {
    EXPECT_EQ(failure.m_cause, 13);
    EXPECT_EQ(failure.m_lOsError, ENOSPC);
    EXPECT_EQ(utf8(failure.m_strFileName.view()), "/dev/full");
  }
  EXPECT_THROW(file_.WriteString(u"more"), CFileException);
  ASSERT_EQ(file_.add_text(u"line"), 1);
  EXPECT_EQ(file_.flush_line(), 101);
  EXPECT_TRUE(file_.write_failed());
  file_.close_quietly();
}

TEST_F(TextFile, ReadFailureIsRaised) {
  open("A\nB\n");
  const support::FaultyFiles faults(FileFaults::Operation::read, 1);
  EXPECT_THROW(static_cast<void>(file_.get_line()), CFileException);
}

TEST_F(TextFile, ReturnsToAMark) {
  open("A\r\n\nB\nC\n");
  ASSERT_EQ(file_.get_line(), 1);
  const CTextFile::Mark mark = file_.mark();
  ASSERT_EQ(file_.get_line(), 1);
  ASSERT_EQ(file_.get_line(), 1);
  file_.return_to(mark);
  EXPECT_EQ(file_.line_number(), 1);
  ASSERT_EQ(file_.get_line(), 1);
  EXPECT_EQ(utf8(file_.line()), "B");
  EXPECT_EQ(file_.physical_line(), 3);
}

TEST_F(TextFile, FolderIsNotOpened) {
  EXPECT_FALSE(file_.Open(CString(text_from_utf8(folder_.path())), CFile::modeRead));
}

}  // namespace
