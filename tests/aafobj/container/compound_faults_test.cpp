// Storages that fail: every read and every write of a run once, and a disk
// that is full.
#include <algorithm>
#include <limits>

#include "tests/aafobj/container/container_test_support.h"

namespace aafobj::test {
namespace {

class FaultyStorage final : public RawStorage {
 public:
  explicit FaultyStorage(Bytes bytes) : m_inner(std::move(bytes)) {}

  static constexpr std::size_t k_never = std::numeric_limits<std::size_t>::max();
  std::size_t fail_read = k_never;   // the number of the read that fails, from 0
  std::size_t fail_write = k_never;  // that one and all after it
  std::uint64_t room = std::numeric_limits<std::uint64_t>::max();
  std::size_t reads = 0;
  std::size_t writes = 0;

  Result read_at(std::uint64_t position, std::span<std::byte> out, std::size_t& count) override {
    if (reads++ == fail_read) return Result::io_error;
    return m_inner.read_at(position, out, count);
  }
  Result write_at(std::uint64_t position, std::span<const std::byte> bytes) override {
    if (writes++ >= fail_write) return Result::io_error;
    if (position + bytes.size() > room) return Result::no_space;
    return m_inner.write_at(position, bytes);
  }
  Result size(std::uint64_t& bytes) override { return m_inner.size(bytes); }
  Result set_size(std::uint64_t bytes) override {
    if (writes++ >= fail_write) return Result::io_error;
    return bytes > room ? Result::no_space : m_inner.set_size(bytes);
  }
  Result synchronize() override { return Result::ok; }
  bool writable() const override { return true; }
  const Bytes& bytes() const { return m_inner.bytes(); }

 private:
  MemoryStorage m_inner;
};

Bytes base_file() {
  std::unique_ptr<CompoundFile> file;
  const auto storage = make_file(FileKind::aaf_512, file);
  StorageId inner{};
  EXPECT_EQ(file->create_storage(k_root_storage, u"folder", class_of(1), inner), Result::ok);
  EXPECT_EQ(file->write_stream(inner, u"small", pattern(700, 1)), Result::ok);
  EXPECT_EQ(file->write_stream(inner, u"large", pattern(20000, 2)), Result::ok);
  EXPECT_EQ(file->write_stream(k_root_storage, u"properties", pattern(90, 3)), Result::ok);
  EXPECT_EQ(file->close(), Result::ok);
  return storage->bytes();
}

Result change(CompoundFile& file) {
  StorageId inner{};
  Stream stream;
  Result r = file.open_storage(k_root_storage, u"folder", inner);
  if (r == Result::ok) r = file.write_stream(inner, u"small", pattern(900, 4));
  if (r == Result::ok) r = file.remove(inner, u"large");
  if (r == Result::ok) r = file.create_stream(inner, u"new", stream);
  for (int i = 0; i < 20 && r == Result::ok; ++i)
    r = stream.write(pattern(5000, 5));
  return r;
}

Result change_all(const std::shared_ptr<FaultyStorage>& storage) {
  std::unique_ptr<CompoundFile> file;
  Result r = CompoundFile::open(storage, Access::modify, file);
  if (r == Result::ok) r = change(*file);
  return r == Result::ok ? file->close() : r;
}

TEST(CompoundFaults, EveryFailedReadIsTold) {
  const Bytes base = base_file();
  const auto counted = std::make_shared<FaultyStorage>(base);
  ASSERT_EQ(change_all(counted), Result::ok);
  ASSERT_GT(counted->reads, 3U);
  for (std::size_t i = 0; i < counted->reads; ++i) {
    const auto storage = std::make_shared<FaultyStorage>(base);
    storage->fail_read = i;
    EXPECT_EQ(change_all(storage), Result::io_error) << i;
  }
}

TEST(CompoundFaults, EveryFailedWriteIsTold) {
  const Bytes base = base_file();
  const auto counted = std::make_shared<FaultyStorage>(base);
  ASSERT_EQ(change_all(counted), Result::ok);
  ASSERT_GT(counted->writes, 5U);
  for (std::size_t i = 0; i < counted->writes; ++i) {
    const auto storage = std::make_shared<FaultyStorage>(base);
    storage->fail_write = i;
    EXPECT_EQ(change_all(storage), Result::io_error) << i;
    // Whatever is left is read like any other damaged file.
    std::unique_ptr<CompoundFile> file;
    if (open_bytes(storage->bytes(), Access::read, file) == Result::ok) {
      static_cast<void>(exercise(*file));
    }
  }
}

TEST(CompoundFaults, ChangesThatFailForWantOfSpaceLeaveTheFormerTree) {
  const Bytes base = base_file();
  std::unique_ptr<CompoundFile> file;
  ASSERT_EQ(open_bytes(base, Access::read, file), Result::ok);
  const Node before = read_tree(*file);
  // Up to a buffer of 64 KiB stays in memory until the flush.
  for (std::uint64_t more = 0; more < 60000; more += 7000) {
    const auto storage = std::make_shared<FaultyStorage>(base);
    storage->room = base.size() + more;
    ASSERT_EQ(CompoundFile::open(storage, Access::modify, file), Result::ok);
    EXPECT_EQ(change(*file), Result::no_space) << more;
    file.reset();
    ASSERT_EQ(open_bytes(storage->bytes(), Access::read, file), Result::ok);
    EXPECT_TRUE(read_tree(*file) == before) << more;
  }
}

TEST(CompoundFaults, ErrorOfADroppedHandleIsToldByFlush) {
  const auto storage = std::make_shared<FaultyStorage>(base_file());
  std::unique_ptr<CompoundFile> file;
  ASSERT_EQ(CompoundFile::open(storage, Access::modify, file), Result::ok);
  {
    Stream stream;
    ASSERT_EQ(file->create_stream(k_root_storage, u"new", stream), Result::ok);
    ASSERT_EQ(stream.write(pattern(20000, 1)), Result::ok);
    ASSERT_EQ(stream.write(pattern(100, 1)), Result::ok);  // stays in the buffer
    storage->fail_write = storage->writes;
  }
  storage->fail_write = FaultyStorage::k_never;
  EXPECT_EQ(file->flush(), Result::io_error);
}

}  // namespace
}  // namespace aafobj::test
