#include "host/framework/file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tests/support/compare.h"
#include "tests/support/faulty_files.h"
#include "tests/support/temp_folder.h"

namespace {

using support::FaultyFiles;
using support::TempFolder;
using Operation = FileFaults::Operation;

// The cause that an operation raises, 0 for none.
template <class Action>
int cause_of(const Action& action) {
  try {
    action();
  } catch (const CFileException& failure) {
    return failure.m_cause;
  }
  return 0;
}

TEST(File, WritesAndReads) {
  const TempFolder folder;
  CFile file;
  ASSERT_TRUE(file.Open(folder.wide_file("a"), CFile::modeCreate | CFile::modeReadWrite));
  EXPECT_TRUE(file.is_open());
  EXPECT_EQ(support::utf8(file.GetFilePath().view()), folder.file("a"));
  file.Write("hello", 5);
  EXPECT_EQ(file.GetLength(), 5U);
  EXPECT_EQ(file.GetPosition(), 5U);
  EXPECT_EQ(file.Seek(-3, CFile::current), 2U);
  char bytes[8] = {};
  EXPECT_EQ(file.Read(bytes, 8), 3U);
  EXPECT_EQ(std::string(bytes, 3), "llo");
  EXPECT_EQ(file.Read(bytes, 8), 0U);
  file.Close();
  EXPECT_FALSE(file.is_open());
  file.Close();
  EXPECT_EQ(support::read_file(folder.file("a")), "hello");
}

TEST(File, CreateEmptiesAnExistingFile) {
  const TempFolder folder;
  support::write_file(folder.file("a"), "long text");
  CFile file;
  ASSERT_TRUE(file.Open(folder.wide_file("a"), CFile::modeCreate | CFile::modeWrite));
  EXPECT_EQ(file.GetLength(), 0U);
}

TEST(File, SeeksBeyondTheEndAndBeyondFourGigabytes) {
  const TempFolder folder;
  CFile file;
  ASSERT_TRUE(file.Open(folder.wide_file("a"), CFile::modeCreate | CFile::modeReadWrite));
  constexpr std::int64_t far = std::int64_t{5} << 30;
  EXPECT_EQ(file.Seek(far, CFile::begin), 5368709120U);
  EXPECT_EQ(file.GetLength(), 0U);
  file.Write("x", 1);
  EXPECT_EQ(file.GetLength(), 5368709121U);
  EXPECT_EQ(file.Seek(-1, CFile::end), 5368709120U);
  EXPECT_EQ(cause_of([&] { file.Seek(-1, CFile::begin); }), CFileException::badSeek);
}

TEST(File, RefusesWhatCannotBeOpened) {
  const TempFolder folder;
  CFile file;
  CFileException why;
  EXPECT_FALSE(file.Open(folder.wide_file("missing"), CFile::modeRead, &why));
  EXPECT_EQ(why.m_cause, CFileException::fileNotFound);
  EXPECT_EQ(why.m_lOsError, ENOENT);
  EXPECT_EQ(support::utf8(why.m_strFileName.view()), folder.file("missing"));
  EXPECT_FALSE(file.Open(folder.wide_file("missing/a"), CFile::modeCreate | CFile::modeWrite));
  EXPECT_FALSE(file.is_open());
}

TEST(File, AFolderIsNoFile) {
  const TempFolder folder;
  CFile file;
  CFileException why;
  EXPECT_FALSE(file.Open(folder.wide_file("."), CFile::modeRead, &why));
  EXPECT_EQ(why.m_cause, CFileException::accessDenied);
  EXPECT_FALSE(file.Open(folder.wide_file("."), CFile::modeCreate | CFile::modeWrite, &why));
}

TEST(File, NamesAreUtf8) {
  const TempFolder folder;
  CFile file;
  ASSERT_TRUE(file.Open(folder.wide_file("take \xC3\xA9 \xF0\x9F\x8E\xAC"),
                        CFile::modeCreate | CFile::modeWrite));
  EXPECT_TRUE(support::file_exists(folder.file("take \xC3\xA9 \xF0\x9F\x8E\xAC")));
}

TEST(File, ExclusiveShareKeepsOthersOut) {
  const TempFolder folder;
  support::write_file(folder.file("a"), "x");
  CFile first;
  CFile second;
  CFileException why;
  ASSERT_TRUE(first.Open(folder.wide_file("a"), CFile::modeRead | CFile::shareExclusive));
  EXPECT_FALSE(second.Open(folder.wide_file("a"), CFile::modeRead | CFile::shareDenyWrite, &why));
  EXPECT_EQ(why.m_cause, CFileException::sharingViolation);
  EXPECT_TRUE(second.Open(folder.wide_file("a"), CFile::modeRead | CFile::shareDenyNone));
  first.Close();
  EXPECT_TRUE(second.Open(folder.wide_file("a"), CFile::modeRead | CFile::shareExclusive));
}

TEST(File, ReadersShareAndKeepAWriterOut) {
  const TempFolder folder;
  support::write_file(folder.file("a"), "x");
  CFile one;
  CFile two;
  CFile writer;
  ASSERT_TRUE(one.Open(folder.wide_file("a"), CFile::modeRead | CFile::shareDenyWrite));
  EXPECT_TRUE(two.Open(folder.wide_file("a"), CFile::modeRead | CFile::shareDenyWrite));
  EXPECT_FALSE(writer.Open(folder.wide_file("a"), CFile::modeWrite | CFile::shareExclusive));
}

// The person's file must not be lost to an open that fails.
TEST(File, RefusedCreateLeavesTheFileAsItWas) {
  const TempFolder folder;
  support::write_file(folder.file("a"), "precious");
  CFile holder;
  CFile creator;
  ASSERT_TRUE(holder.Open(folder.wide_file("a"), CFile::modeRead | CFile::shareDenyWrite));
  EXPECT_FALSE(creator.Open(folder.wide_file("a"),
                            CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive));
  EXPECT_EQ(support::read_file(folder.file("a")), "precious");
}

TEST(File, FullDiskIsCauseThirteen) {
  CFile file;
  ASSERT_TRUE(file.Open(u"/dev/full", CFile::modeCreate | CFile::modeWrite));
  try {
    file.Write("x", 1);
    ADD_FAILURE() << "nothing was raised";
  } catch (const CFileException& failure) {
    EXPECT_EQ(failure.m_cause, CFileException::diskFull);
    EXPECT_EQ(failure.m_cause, 13);
    EXPECT_EQ(failure.m_lOsError, ENOSPC);
  }
}

TEST(File, RemovesOrRaises) {
  const TempFolder folder;
  support::write_file(folder.file("a"), "x");
  CFile::Remove(folder.wide_file("a"));
  EXPECT_FALSE(support::file_exists(folder.file("a")));
  EXPECT_EQ(cause_of([&] { CFile::Remove(folder.wide_file("a")); }), CFileException::fileNotFound);
}

TEST(File, OpeningAnotherClosesTheFirst) {
  const TempFolder folder;
  support::write_file(folder.file("a"), "aa");
  support::write_file(folder.file("b"), "b");
  CFile file;
  ASSERT_TRUE(file.Open(folder.wide_file("a"), CFile::modeRead | CFile::shareExclusive));
  ASSERT_TRUE(file.Open(folder.wide_file("b"), CFile::modeRead));
  EXPECT_EQ(file.GetLength(), 1U);
  CFile other;
  EXPECT_TRUE(other.Open(folder.wide_file("a"), CFile::modeRead | CFile::shareExclusive));
}

TEST(File, InjectedFaults) {
  const TempFolder folder;
  support::write_file(folder.file("a"), "abc");
  CFile file;
  CFileException why;
  {
    const FaultyFiles faults(Operation::open, 1, EACCES);
    EXPECT_FALSE(file.Open(folder.wide_file("a"), CFile::modeRead, &why));
    EXPECT_EQ(why.m_cause, CFileException::accessDenied);
    ASSERT_TRUE(file.Open(folder.wide_file("a"), CFile::modeReadWrite));
  }
  char byte = 0;
  {
    const FaultyFiles faults(Operation::read, 2, EIO);
    EXPECT_EQ(file.Read(&byte, 1), 1U);
    EXPECT_EQ(cause_of([&] { (void)file.Read(&byte, 1); }), CFileException::hardIO);
    EXPECT_EQ(file.Read(&byte, 1), 1U);
    EXPECT_EQ(byte, 'b');
  }
  const FaultyFiles faults(Operation::write, 1, ENOSPC, FaultyFiles::After::keep_failing);
  EXPECT_EQ(cause_of([&] { file.Write("x", 1); }), CFileException::diskFull);
  EXPECT_EQ(cause_of([&] { file.Write("x", 1); }), CFileException::diskFull);
  EXPECT_EQ(faults.failed(), 2);
}

}  // namespace
