#include "native/file_input.h"

#include <gtest/gtest.h>

#include "tests/support/faulty_files.h"
#include "tests/support/temp_folder.h"

namespace {

class FileInputTest : public testing::Test {
 protected:
  // Bytes 0 to 255 over and over.
  void open(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
      bytes[i] = static_cast<char>(static_cast<unsigned char>(i % 256));
    support::write_file(folder.file("in"), bytes);
    ASSERT_TRUE(file.Open(folder.wide_file("in"), CFile::modeRead));
  }

  static unsigned byte_at(const char* bytes) { return static_cast<unsigned char>(*bytes); }

  support::TempFolder folder;
  CFile file;
};

TEST_F(FileInputTest, TakesAndJumpsInAndOutOfTheBuffer) {
  open(300000);
  native::FileInput in(file);
  EXPECT_EQ(in.left(), 300000U);
  EXPECT_EQ(byte_at(in.take(10)), 0U);
  EXPECT_EQ(byte_at(in.take(1)), 10U);
  in.seek(5);
  EXPECT_EQ(byte_at(in.take(1)), 5U);
  in.skip(65530);  // to 65536, the end of the buffer
  EXPECT_EQ(in.position(), 65536U);
  EXPECT_EQ(byte_at(in.take(300)), 0U);
  in.seek(200001);
  EXPECT_EQ(byte_at(in.take(native::FileInput::most_taken)), 200001U % 256);
  in.seek(3);
  EXPECT_EQ(byte_at(in.take(2)), 3U);
  EXPECT_EQ(in.left(), 300000U - 5);
}

TEST_F(FileInputTest, TakingPastTheEndTakesNothing) {
  open(20);
  native::FileInput in(file);
  EXPECT_EQ(in.take(21), nullptr);
  EXPECT_EQ(in.position(), 0U);
  EXPECT_NE(in.take(20), nullptr);
  EXPECT_EQ(in.take(1), nullptr);
  EXPECT_EQ(in.left(), 0U);
  in.skip(0xFFFFFFFF);
  EXPECT_EQ(in.take(1), nullptr);
  EXPECT_EQ(in.left(), 0U);
  in.seek(19);
  EXPECT_EQ(byte_at(in.take(1)), 19U);
}

TEST_F(FileInputTest, ReadsAcrossTheBuffer) {
  open(200000);
  native::FileInput in(file);
  ASSERT_NE(in.take(100), nullptr);
  std::string out(150000, '?');
  ASSERT_TRUE(in.read(out.data(), 150000));
  for (std::size_t i = 0; i < out.size(); ++i)
    ASSERT_EQ(byte_at(&out[i]), (i + 100) % 256) << i;
  EXPECT_EQ(in.position(), 150100U);
  EXPECT_EQ(byte_at(in.take(1)), 150100U % 256);
  EXPECT_TRUE(in.read(out.data(), 5));
  EXPECT_EQ(byte_at(out.data()), 150101U % 256);
  EXPECT_FALSE(in.read(out.data(), 100000));
}

TEST_F(FileInputTest, ReadErrorsPassThrough) {
  open(20);
  native::FileInput in(file);
  const support::FaultyFiles faults(FileFaults::Operation::read, 1);
  EXPECT_THROW(static_cast<void>(in.take(1)), CFileException);
}

}  // namespace
