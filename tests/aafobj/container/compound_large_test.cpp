// Files past 2 and 4 GiB. They are sparse: hardly any of their bytes are on
// the disk.
#include <fstream>

#include "tests/aafobj/container/container_test_support.h"

namespace aafobj::test {
namespace {

constexpr std::uint64_t k_gib = std::uint64_t{1} << 30;

std::uint32_t u32_at(std::ifstream& in, std::uint64_t position) {
  std::array<unsigned char, 4> bytes{};
  in.seekg(static_cast<std::streamoff>(position));
  in.read(reinterpret_cast<char*>(bytes.data()), 4);
  EXPECT_TRUE(in.good());
  return bytes[0] | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 |
         std::uint32_t{bytes[3]} << 24;
}

void expect_bytes(const Stream& stream, std::uint64_t position, const Bytes& expected) {
  Bytes bytes(expected.size());
  std::size_t count = 0;
  ASSERT_EQ(stream.read_at(position, bytes, count), Result::ok);
  ASSERT_EQ(count, expected.size());
  EXPECT_TRUE(bytes == expected) << "at " << position;
}

TEST(CompoundLarge, StreamsPast4GiBWithLargeSectors) {
  const TemporaryFile path;
  std::unique_ptr<CompoundFile> file;
  ASSERT_EQ(CompoundFile::create_disk(path.path(), FileKind::aaf_4k, false, file), Result::ok);
  Stream first;
  Stream second;
  ASSERT_EQ(file->create_stream(k_root_storage, u"first", first), Result::ok);
  ASSERT_EQ(file->create_stream(k_root_storage, u"second", second), Result::ok);
  const std::uint64_t size = 5 * k_gib + 12345;
  ASSERT_EQ(first.write_at(0, pattern(70000, 1)), Result::ok);
  ASSERT_EQ(first.write_at(size - 70000, pattern(70000, 2)), Result::ok);
  // Across the range lock, wherever the sectors before it lie.
  ASSERT_EQ(first.write_at(2 * k_gib - 8000000, pattern(16000000, 3)), Result::ok);
  ASSERT_EQ(second.write_at(0, pattern(100000, 4)), Result::ok);
  ASSERT_EQ(file->close(), Result::ok);
  EXPECT_GT(std::filesystem::file_size(path.path()), size);

  ASSERT_EQ(CompoundFile::open_disk(path.path(), Access::read, file), Result::ok);
  EXPECT_EQ(file->verify(), Result::ok);
  ASSERT_EQ(file->open_stream(k_root_storage, u"first", first), Result::ok);
  ASSERT_EQ(file->open_stream(k_root_storage, u"second", second), Result::ok);
  EXPECT_EQ(first.size(), size);
  expect_bytes(first, 0, pattern(70000, 1));
  expect_bytes(first, 4 * k_gib, Bytes(50000));
  expect_bytes(first, 2 * k_gib - 8000000, pattern(16000000, 3));
  expect_bytes(first, size - 70000, pattern(70000, 2));
  expect_bytes(second, 0, pattern(100000, 4));

  // The sector over bytes 0x7fffff00 to 0x7fffffff ends a chain, is in none,
  // and holds nothing.
  std::ifstream in(path.path(), std::ios::binary);
  const std::uint32_t lock = 0x7fffe;
  ASSERT_LT(lock / 1024, 109U + 1023);
  const std::uint32_t list = u32_at(in, 0x44);
  EXPECT_GE(u32_at(in, 0x48), 1U);
  const std::uint32_t page =
      u32_at(in, (list + std::uint64_t{1}) * 4096 + (lock / 1024 - 109) * std::uint64_t{4});
  EXPECT_EQ(u32_at(in, (page + std::uint64_t{1}) * 4096 + lock % 1024 * 4), 0xfffffffeU);
  EXPECT_NE(u32_at(in, (page + std::uint64_t{1}) * 4096 + (lock % 1024 - 1) * 4), lock);
  EXPECT_EQ(u32_at(in, 0x7ffff000), 0U);
  EXPECT_EQ(u32_at(in, 0x7ffffffc), 0U);
}

TEST(CompoundLarge, LargeFileIsModifiedInPlace) {
  const TemporaryFile path;
  std::unique_ptr<CompoundFile> file;
  ASSERT_EQ(CompoundFile::create_disk(path.path(), FileKind::aaf_4k, false, file), Result::ok);
  Stream stream;
  ASSERT_EQ(file->create_stream(k_root_storage, u"essence", stream), Result::ok);
  ASSERT_EQ(stream.set_size(4 * k_gib + 1), Result::ok);
  ASSERT_EQ(stream.write_at(4 * k_gib, pattern(1, 7)), Result::ok);
  ASSERT_EQ(file->close(), Result::ok);
  ASSERT_EQ(CompoundFile::open_disk(path.path(), Access::modify, file), Result::ok);
  ASSERT_EQ(file->open_stream(k_root_storage, u"essence", stream), Result::ok);
  ASSERT_EQ(stream.write_at(4 * k_gib + 1, pattern(5000000, 8)), Result::ok);
  ASSERT_EQ(file->write_stream(k_root_storage, u"properties", pattern(50, 9)), Result::ok);
  ASSERT_EQ(file->close(), Result::ok);
  ASSERT_EQ(CompoundFile::open_disk(path.path(), Access::modify, file), Result::ok);
  EXPECT_EQ(file->verify(), Result::ok);
  ASSERT_EQ(file->open_stream(k_root_storage, u"essence", stream), Result::ok);
  EXPECT_EQ(stream.size(), 4 * k_gib + 5000001);
  expect_bytes(stream, 4 * k_gib, pattern(1, 7));
  expect_bytes(stream, 4 * k_gib + 1, pattern(5000000, 8));
  ASSERT_EQ(file->remove(k_root_storage, u"essence"), Result::ok);
  ASSERT_EQ(file->close(), Result::ok);
  ASSERT_EQ(CompoundFile::open_disk(path.path(), Access::read, file), Result::ok);
  EXPECT_EQ(file->verify(), Result::ok);
  EXPECT_EQ(read_tree(*file).children[u"properties"].bytes, pattern(50, 9));
}

TEST(CompoundLarge, SmallSectorsStayBelow2GiB) {
  const TemporaryFile path;
  std::unique_ptr<CompoundFile> file;
  ASSERT_EQ(CompoundFile::create_disk(path.path(), FileKind::aaf_512, false, file), Result::ok);
  Stream stream;
  ASSERT_EQ(file->create_stream(k_root_storage, u"a", stream), Result::ok);
  EXPECT_EQ(stream.set_size(2 * k_gib), Result::too_large);
  EXPECT_EQ(stream.size(), 0U);
  ASSERT_EQ(stream.set_size(k_gib), Result::ok);
  ASSERT_EQ(file->create_stream(k_root_storage, u"b", stream), Result::ok);
  EXPECT_EQ(stream.set_size(k_gib), Result::too_large);
  ASSERT_EQ(stream.set_size(k_gib / 2), Result::ok);
  EXPECT_EQ(file->verify(), Result::ok);
  ASSERT_EQ(file->close(), Result::ok);
  EXPECT_LT(std::filesystem::file_size(path.path()), 2 * k_gib);
}

}  // namespace
}  // namespace aafobj::test
