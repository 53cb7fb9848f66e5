#include "host/framework/stdio_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <random>

#include "tests/support/compare.h"
#include "tests/support/faulty_files.h"
#include "tests/support/temp_folder.h"

namespace {

using support::FaultyFiles;
using support::TempFolder;
using Operation = FileFaults::Operation;

// One unit a byte, lines end with "\n".
class PlainText final : public CStdioFile {
 public:
  wide_char* ReadString(wide_char* buffer, unsigned max) override {
    unsigned count = 0;
    int byte = get_byte();
    if (byte < 0 || max == 0) return nullptr;
    for (; byte >= 0 && byte != '\n'; byte = get_byte()) {
      if (count + 1 < max) buffer[count++] = static_cast<wide_char>(byte);
    }
    buffer[count] = u'\0';
    return buffer;
  }
  void WriteString(std::u16string_view text) override { put_bytes(utf8_from_text(text)); }
  using CStdioFile::get_byte;
  using CStdioFile::put_bytes;
};

constexpr unsigned create = CFile::modeCreate | CFile::modeWrite;

TEST(StdioFile, WritesThroughABuffer) {
  const TempFolder folder;
  PlainText file;
  ASSERT_TRUE(file.Open(folder.wide_file("a"), create));
  file.WriteString(u"one\n");
  EXPECT_EQ(file.GetPosition(), 4U);
  EXPECT_EQ(support::read_file(folder.file("a")), "");
  file.WriteString(u"two\n");
  file.Close();
  EXPECT_EQ(support::read_file(folder.file("a")), "one\ntwo\n");
}

TEST(StdioFile, TheDestructorWritesWhatIsLeft) {
  const TempFolder folder;
  {
    PlainText file;
    ASSERT_TRUE(file.Open(folder.wide_file("a"), create));
    file.WriteString(u"x");
  }
  EXPECT_EQ(support::read_file(folder.file("a")), "x");
}

TEST(StdioFile, BytesComeBackInOrderOverManyBuffers) {
  const TempFolder folder;
  std::string bytes(200001, '\0');
  std::mt19937 random(7);
  std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
  {
    PlainText out;
    ASSERT_TRUE(out.Open(folder.wide_file("a"), create));
    for (std::size_t at = 0; at < bytes.size();) {
      const std::size_t part = std::min<std::size_t>(random() % 70000, bytes.size() - at);
      out.put_bytes(std::string_view(bytes).substr(at, part));
      at += part;
    }
    out.Close();
  }
  EXPECT_TRUE(support::same_bytes(support::read_file(folder.file("a")), bytes));
  PlainText in;
  ASSERT_TRUE(in.Open(folder.wide_file("a"), CFile::modeRead));
  std::string read;
  for (int byte = in.get_byte(); byte >= 0; byte = in.get_byte()) {
    read.push_back(static_cast<char>(byte));
    ASSERT_EQ(in.GetPosition(), read.size());
  }
  EXPECT_TRUE(support::same_bytes(read, bytes));
  EXPECT_EQ(in.get_byte(), -1);
}

TEST(StdioFile, SeeksWithinWhatWasReadAhead) {
  const TempFolder folder;
  support::write_file(folder.file("a"), "one\ntwo\nthree\n");
  PlainText file;
  ASSERT_TRUE(file.Open(folder.wide_file("a"), CFile::modeRead));
  wide_char line[16];
  ASSERT_NE(file.ReadString(line, 16), nullptr);
  EXPECT_EQ(file.GetPosition(), 4U);
  EXPECT_EQ(file.Seek(4, CFile::current), 8U);
  ASSERT_NE(file.ReadString(line, 16), nullptr);
  EXPECT_EQ(support::utf8(line), "three");
  EXPECT_EQ(file.ReadString(line, 16), nullptr);
  EXPECT_EQ(file.Seek(0, CFile::begin), 0U);
  ASSERT_NE(file.ReadString(line, 16), nullptr);
  EXPECT_EQ(support::utf8(line), "one");
}

TEST(StdioFile, SeekWritesOutTheBuffer) {
  const TempFolder folder;
  PlainText file;
  ASSERT_TRUE(file.Open(folder.wide_file("a"), create));
  file.WriteString(u"abc");
  EXPECT_EQ(file.Seek(1, CFile::begin), 1U);
  file.WriteString(u"X");
  file.Close();
  EXPECT_EQ(support::read_file(folder.file("a")), "aXc");
}

TEST(StdioFile, FullDiskIsToldAtCloseAtTheLatest) {
  PlainText file;
  ASSERT_TRUE(file.Open(u"/dev/full", create));
  file.WriteString(u"x");
  try {
    file.Close();
    ADD_FAILURE() << "nothing was raised";
  } catch (const CFileException& failure) {
    EXPECT_EQ(failure.m_cause, 13);
    EXPECT_EQ(failure.m_lOsError, ENOSPC);
  }
  EXPECT_FALSE(file.is_open());
  file.Close();
}

TEST(StdioFile, AFailureOnTheDestructorsRoadIsSwallowed) {
  PlainText file;
  ASSERT_TRUE(file.Open(u"/dev/full", create));
  file.WriteString(u"x");
}

TEST(StdioFile, WhatWasLostStaysLost) {
  const TempFolder folder;
  PlainText file;
  ASSERT_TRUE(file.Open(folder.wide_file("a"), create));
  const std::u16string block(70000, u'x');
  {
    const FaultyFiles faults(Operation::write, 1, ENOSPC);
    EXPECT_THROW(file.WriteString(block), CFileException);
  }
  // The disk has room again, but the file has a hole.
  EXPECT_THROW(file.WriteString(u"y"), CFileException);
  file.Close();
  ASSERT_TRUE(file.Open(folder.wide_file("a"), create));
  file.WriteString(u"new");
  file.Close();
  EXPECT_EQ(support::read_file(folder.file("a")), "new");
}

TEST(StdioFile, EveryFailingWriteIsToldOnce) {
  const TempFolder folder;
  const std::u16string block(30000, u'x');
  for (int nth = 1; nth <= 5; ++nth) {
    PlainText file;
    ASSERT_TRUE(file.Open(folder.wide_file("a"), create));
    const FaultyFiles faults(Operation::write, nth, EIO);
    int told = 0;
    try {
      for (int i = 0; i < 10; ++i)
        file.WriteString(block);
      file.Close();
    } catch (const CFileException& failure) {
      EXPECT_EQ(failure.m_cause, 13);
      EXPECT_EQ(failure.m_lOsError, EIO);
      ++told;
    }
    // 300000 bytes in buffers of 65536 take five writes.
    EXPECT_EQ(told, 1) << nth;
  }
}

TEST(StdioFile, FailedReadIsRaised) {
  const TempFolder folder;
  support::write_file(folder.file("a"), "abc");
  PlainText file;
  ASSERT_TRUE(file.Open(folder.wide_file("a"), CFile::modeRead));
  const FaultyFiles faults(Operation::read, 1, EIO);
  EXPECT_THROW(file.get_byte(), CFileException);
}

}  // namespace
