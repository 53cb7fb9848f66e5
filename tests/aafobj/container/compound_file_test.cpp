#include <algorithm>
#include <array>

#include "tests/aafobj/container/container_test_support.h"
#include "tests/aafobj/container/counting_storage.h"

namespace aafobj::test {
namespace {

class CompoundFileTest : public ::testing::TestWithParam<FileKind> {
 protected:
  void SetUp() override { m_storage = make_file(GetParam(), m_file); }

  // Closes, and opens again.
  void reopen(Access access = Access::read) {
    ASSERT_EQ(m_file->close(), Result::ok);
    ASSERT_EQ(CompoundFile::open(m_storage, access, m_file), Result::ok);
  }

  std::shared_ptr<MemoryStorage> m_storage;
  std::unique_ptr<CompoundFile> m_file;
};

INSTANTIATE_TEST_SUITE_P(Kinds, CompoundFileTest,
                         ::testing::Values(FileKind::aaf_512, FileKind::aaf_4k),
                         [](const auto& kind) {
                           return kind.param == FileKind::aaf_512 ? "Small" : "Large";
                         });

TEST_P(CompoundFileTest, SignatureIsWrittenOnlyByClose) {
  FileKind kind{};
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"properties", pattern(10, 1)), Result::ok);
  ASSERT_EQ(m_file->flush(), Result::ok);
  const Bytes flushed = m_storage->bytes();
  EXPECT_TRUE(std::all_of(flushed.begin() + 8, flushed.begin() + 24,
                          [](std::byte b) { return b == std::byte{0}; }));
  EXPECT_EQ(CompoundFile::recognise(*m_storage, kind), Result::not_aaf);
  ASSERT_EQ(m_file->close(), Result::ok);
  ASSERT_EQ(CompoundFile::recognise(*m_storage, kind), Result::ok);
  EXPECT_EQ(kind, GetParam());
}

TEST_P(CompoundFileTest, DestroyingWithoutCloseLeavesNoAafFile) {
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"properties", pattern(10, 1)), Result::ok);
  m_file.reset();
  FileKind kind{};
  EXPECT_EQ(CompoundFile::recognise(*m_storage, kind), Result::not_aaf);
}

TEST_P(CompoundFileTest, EmptyFileHasARootWithoutChildren) {
  reopen();
  std::vector<Element> elements;
  EXPECT_EQ(m_file->children(k_root_storage, elements), Result::ok);
  EXPECT_TRUE(elements.empty());
  EXPECT_EQ(m_file->verify(), Result::ok);
}

TEST_P(CompoundFileTest, ClassesAreKept) {
  StorageId storage{};
  ASSERT_EQ(m_file->set_class_id(k_root_storage, class_of(7)), Result::ok);
  ASSERT_EQ(m_file->create_storage(k_root_storage, u"Header-2", class_of(9), storage), Result::ok);
  reopen();
  ClassId root{};
  ASSERT_EQ(m_file->class_id(k_root_storage, root), Result::ok);
  EXPECT_EQ(root, class_of(7));
  Element element;
  ASSERT_EQ(m_file->find(k_root_storage, u"HEADER-2", element), Result::ok);
  EXPECT_EQ(element.name, u"Header-2");
  EXPECT_EQ(element.class_id, class_of(9));
}

TEST_P(CompoundFileTest, ChildrenComeShortestFirstThenByUpperCase) {
  for (const char16_t* name : {u"bb", u"A", u"aa", u"c", u"AB", u"z_", u"ZZ"}) {
    ASSERT_EQ(m_file->write_stream(k_root_storage, name, {}), Result::ok);
  }
  reopen();
  std::vector<Element> elements;
  ASSERT_EQ(m_file->children(k_root_storage, elements), Result::ok);
  std::vector<std::u16string> names;
  for (const Element& element : elements)
    names.push_back(element.name);
  // "_" lies above the upper-case letters.
  EXPECT_EQ(names, (std::vector<std::u16string>{u"A", u"c", u"aa", u"AB", u"bb", u"ZZ", u"z_"}));
}

TEST_P(CompoundFileTest, NamesHaveOneTo31UnitsAndNoCase) {
  Stream stream;
  const std::u16string longest(31, u'x');
  EXPECT_EQ(m_file->create_stream(k_root_storage, u"", stream), Result::bad_name);
  EXPECT_EQ(m_file->create_stream(k_root_storage, longest + u"x", stream), Result::bad_name);
  EXPECT_EQ(m_file->create_stream(k_root_storage, std::u16string(1, u'\0'), stream),
            Result::bad_name);
  EXPECT_EQ(m_file->create_stream(k_root_storage, longest, stream), Result::ok);
  EXPECT_EQ(m_file->create_stream(k_root_storage, std::u16string(31, u'X'), stream),
            Result::already_exists);
  EXPECT_EQ(m_file->create_stream(k_root_storage, u"Odd/Scope: 1!", stream), Result::ok);
  reopen();
  EXPECT_EQ(m_file->open_stream(k_root_storage, longest, stream), Result::ok);
  EXPECT_EQ(m_file->open_stream(k_root_storage, u"Odd/Scope: 1!", stream), Result::ok);
}

TEST_P(CompoundFileTest, WrongTypesAndMissingNamesAreTold) {
  StorageId storage{};
  Stream stream;
  ASSERT_EQ(m_file->create_storage(k_root_storage, u"folder", {}, storage), Result::ok);
  ASSERT_EQ(m_file->create_stream(storage, u"stream", stream), Result::ok);
  EXPECT_EQ(m_file->open_stream(k_root_storage, u"folder", stream), Result::wrong_type);
  EXPECT_EQ(m_file->open_storage(storage, u"stream", storage), Result::wrong_type);
  EXPECT_EQ(m_file->open_storage(storage, u"none", storage), Result::not_found);
  EXPECT_EQ(m_file->remove(k_root_storage, u"none"), Result::not_found);
  std::vector<Element> elements;
  EXPECT_NE(m_file->children(StorageId{0x7fffffff}, elements), Result::ok);
}

TEST_P(CompoundFileTest, RemovedStorageIsGoneWithAllInIt) {
  StorageId outer{};
  StorageId inner{};
  Stream stream;
  ASSERT_EQ(m_file->create_storage(k_root_storage, u"outer", {}, outer), Result::ok);
  ASSERT_EQ(m_file->create_storage(outer, u"inner", {}, inner), Result::ok);
  ASSERT_EQ(m_file->create_stream(inner, u"stream", stream), Result::ok);
  ASSERT_EQ(stream.write(pattern(10000, 1)), Result::ok);
  ASSERT_EQ(m_file->remove(k_root_storage, u"outer"), Result::ok);
  std::vector<Element> elements;
  EXPECT_EQ(m_file->children(inner, elements), Result::invalid_argument);
  EXPECT_EQ(stream.write(pattern(1, 1)), Result::closed);
  EXPECT_EQ(stream.size(), 0U);
  reopen();
  ASSERT_EQ(m_file->children(k_root_storage, elements), Result::ok);
  EXPECT_TRUE(elements.empty());
}

TEST_P(CompoundFileTest, HandlesOutliveTheFileHarmlessly) {
  Stream stream;
  ASSERT_EQ(m_file->create_stream(k_root_storage, u"stream", stream), Result::ok);
  ASSERT_EQ(stream.write(pattern(5000, 1)), Result::ok);
  ASSERT_EQ(stream.write(pattern(5, 1)), Result::ok);
  ASSERT_EQ(m_file->close(), Result::ok);
  std::array<std::byte, 4> bytes{};
  std::size_t count = 9;
  EXPECT_EQ(stream.read_at(0, bytes, count), Result::closed);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(m_file->flush(), Result::closed);
  m_file.reset();
  EXPECT_EQ(stream.set_size(0), Result::closed);
}

TEST_P(CompoundFileTest, HandlesOnOneStreamSeeTheSameBytes) {
  Stream writer;
  Stream reader;
  ASSERT_EQ(m_file->create_stream(k_root_storage, u"stream", writer), Result::ok);
  ASSERT_EQ(m_file->open_stream(k_root_storage, u"stream", reader), Result::ok);
  const Bytes expected = pattern(9000, 3);
  for (std::size_t i = 0; i < expected.size(); i += 3) {
    ASSERT_EQ(writer.write(std::span(expected).subspan(i, 3)), Result::ok);
    ASSERT_EQ(reader.size(), i + 3);
  }
  Bytes read(10000);
  std::size_t count = 0;
  ASSERT_EQ(reader.read(read, count), Result::ok);
  ASSERT_EQ(count, expected.size());
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), read.begin()));
  EXPECT_EQ(reader.position(), expected.size());
  ASSERT_EQ(reader.read(read, count), Result::ok);
  EXPECT_EQ(count, 0U);
}

TEST_P(CompoundFileTest, GapBecomesZerosAlsoWhereOldBytesLay) {
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"old", pattern(300000, 1)), Result::ok);
  ASSERT_EQ(m_file->flush(), Result::ok);
  ASSERT_EQ(m_file->remove(k_root_storage, u"old"), Result::ok);
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"other", pattern(10, 1)), Result::ok);
  ASSERT_EQ(m_file->flush(), Result::ok);
  Stream stream;
  ASSERT_EQ(m_file->create_stream(k_root_storage, u"new", stream), Result::ok);
  ASSERT_EQ(stream.write_at(200000, pattern(1, 5)), Result::ok);
  reopen();
  Bytes bytes;
  ASSERT_EQ(m_file->read_stream(k_root_storage, u"new", 1000000, bytes), Result::ok);
  ASSERT_EQ(bytes.size(), 200001U);
  EXPECT_EQ(std::count(bytes.begin(), bytes.end() - 1, std::byte{0}), 200000);
  EXPECT_EQ(bytes.back(), pattern(1, 5)[0]);
}

TEST_P(CompoundFileTest, StreamMovesAtTheCutOffAndBack) {
  Stream stream;
  const Bytes bytes = pattern(5000, 4);
  ASSERT_EQ(m_file->create_stream(k_root_storage, u"stream", stream), Result::ok);
  for (const std::size_t size : {4095U, 4096U, 4095U, 1U, 0U, 64U, 65U, 4097U, 0U, 5000U}) {
    ASSERT_EQ(stream.set_size(0), Result::ok);
    ASSERT_EQ(stream.write_at(0, std::span(bytes).first(size)), Result::ok);
    ASSERT_EQ(m_file->flush(), Result::ok);
    ASSERT_EQ(m_file->verify(), Result::ok);
  }
  for (const std::size_t size : {4096U, 4095U, 4000U, 64U, 63U}) {
    ASSERT_EQ(stream.set_size(size), Result::ok);
    Bytes read(6000);
    std::size_t count = 0;
    ASSERT_EQ(stream.read_at(0, read, count), Result::ok);
    ASSERT_EQ(count, size);
    EXPECT_TRUE(
        std::equal(read.begin(), read.begin() + static_cast<std::ptrdiff_t>(size), bytes.begin()));
  }
}

TEST_P(CompoundFileTest, SpaceOfRemovedStreamsIsUsedAgainAfterAFlush) {
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"a", pattern(1 << 20, 1)), Result::ok);
  ASSERT_EQ(m_file->flush(), Result::ok);
  const std::size_t size = m_storage->bytes().size();
  for (unsigned i = 0; i < 20; ++i) {
    ASSERT_EQ(m_file->write_stream(k_root_storage, u"a", pattern(1 << 20, i)), Result::ok);
    ASSERT_EQ(m_file->flush(), Result::ok);
  }
  const std::size_t most = m_storage->bytes().size();
  EXPECT_LT(most, size * 5 / 2);
  reopen(Access::modify);
  ASSERT_EQ(m_file->remove(k_root_storage, u"a"), Result::ok);
  reopen(Access::modify);
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"b", pattern(1 << 20, 1)), Result::ok);
  ASSERT_EQ(m_file->close(), Result::ok);
  EXPECT_LE(m_storage->bytes().size(), most);
}

TEST_P(CompoundFileTest, AbandonedChangeLeavesTheFormerTree) {
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"small", pattern(100, 1)), Result::ok);
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"large", pattern(200000, 2)), Result::ok);
  reopen(Access::modify);
  const Node before = read_tree(*m_file);
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"small", pattern(3000, 3)), Result::ok);
  ASSERT_EQ(m_file->remove(k_root_storage, u"large"), Result::ok);
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"other", pattern(400000, 4)), Result::ok);
  m_file.reset();
  ASSERT_EQ(CompoundFile::open(m_storage, Access::read, m_file), Result::ok);
  EXPECT_TRUE(read_tree(*m_file) == before);
}

TEST_P(CompoundFileTest, ReadOnlyFileRefusesChanges) {
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"a", pattern(10, 1)), Result::ok);
  reopen();
  Stream stream;
  StorageId storage{};
  EXPECT_EQ(m_file->create_stream(k_root_storage, u"b", stream), Result::read_only);
  EXPECT_EQ(m_file->create_storage(k_root_storage, u"b", {}, storage), Result::read_only);
  EXPECT_EQ(m_file->remove(k_root_storage, u"a"), Result::read_only);
  EXPECT_EQ(m_file->rename(k_root_storage, u"a", u"b"), Result::read_only);
  EXPECT_EQ(m_file->set_class_id(k_root_storage, {}), Result::read_only);
  ASSERT_EQ(m_file->open_stream(k_root_storage, u"a", stream), Result::ok);
  EXPECT_EQ(stream.write(pattern(1, 1)), Result::read_only);
  EXPECT_EQ(stream.set_size(0), Result::read_only);
  const auto locked = std::make_shared<MemoryStorage>(m_storage->bytes(), false);
  EXPECT_EQ(CompoundFile::open(locked, Access::modify, m_file), Result::read_only);
}

TEST_P(CompoundFileTest, OpeningForModificationAndClosingChangesNothing) {
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"a", pattern(10000, 1)), Result::ok);
  reopen(Access::modify);
  const Bytes before = m_storage->bytes();
  EXPECT_EQ(exercise(*m_file), Result::ok);
  ASSERT_EQ(m_file->close(), Result::ok);
  EXPECT_EQ(m_storage->bytes(), before);
}

TEST_P(CompoundFileTest, WholeStreamReadKeepsToItsLimit) {
  ASSERT_EQ(m_file->write_stream(k_root_storage, u"a", pattern(10000, 1)), Result::ok);
  Bytes bytes;
  EXPECT_EQ(m_file->read_stream(k_root_storage, u"a", 9999, bytes), Result::too_large);
  EXPECT_TRUE(bytes.empty());
  EXPECT_EQ(m_file->read_stream(k_root_storage, u"a", 10000, bytes), Result::ok);
  EXPECT_EQ(bytes, pattern(10000, 1));
}

TEST_P(CompoundFileTest, OpeningAStreamForEachPieceCostsNoMoreReads) {
  std::unique_ptr<CompoundFile> file;
  const auto made = make_file(GetParam(), file);
  const Bytes bytes = pattern(std::size_t{1} << 20U, 5);
  ASSERT_EQ(file->write_stream(k_root_storage, u"large", bytes), Result::ok);
  ASSERT_EQ(file->close(), Result::ok);
  const auto storage = std::make_shared<CountingStorage>(made->bytes());
  ASSERT_EQ(CompoundFile::open(storage, Access::read, file), Result::ok);
  Bytes piece(1024);
  for (std::size_t at = 0; at < bytes.size(); at += piece.size()) {
    Stream stream;
    std::size_t count = 0;
    ASSERT_EQ(file->open_stream(k_root_storage, u"large", stream), Result::ok);
    ASSERT_EQ(stream.read_at(at, piece, count), Result::ok);
    ASSERT_EQ(count, piece.size());
    ASSERT_TRUE(
        std::equal(piece.begin(), piece.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at)));
  }
  // 16 buffers of 64 KiB, which table sectors cut in two here and there, and the tables.
  EXPECT_LE(storage->reads, 64U);
}

TEST_P(CompoundFileTest, StreamsThatWereOpenBeforeCanBeRemovedAndMadeAnew) {
  std::unique_ptr<CompoundFile> file;
  make_file(GetParam(), file);
  for (unsigned i = 0; i < 12; ++i) {
    const std::u16string name = {u'a', static_cast<char16_t>(u'0' + i % 3)};
    const Bytes bytes = pattern(5000 + i, i);
    if (i >= 3) {
      ASSERT_EQ(file->remove(k_root_storage, name), Result::ok);
    }
    ASSERT_EQ(file->write_stream(k_root_storage, name, bytes), Result::ok);
    Bytes read;
    ASSERT_EQ(file->read_stream(k_root_storage, name, 6000, read), Result::ok);
    EXPECT_EQ(read, bytes);
    if (i % 4 == 3) {
      ASSERT_EQ(file->flush(), Result::ok);
    }
  }
  EXPECT_EQ(file->verify(), Result::ok);
}

// So scattered that the places of its sectors are not all kept in memory.
TEST(CompoundScattered, EverySectorOnItsOwn) {
  std::unique_ptr<CompoundFile> file;
  const auto storage = make_file(FileKind::aaf_512, file);
  constexpr std::size_t count = 150000;
  std::array<Stream, 2> streams;
  ASSERT_EQ(file->create_stream(k_root_storage, u"a", streams[0]), Result::ok);
  ASSERT_EQ(file->create_stream(k_root_storage, u"b", streams[1]), Result::ok);
  for (std::size_t i = 8; i <= count; ++i) {
    for (const Stream& stream : streams)
      ASSERT_EQ(stream.set_size(i * 512), Result::ok);
  }
  Bytes expected = pattern(count * 512, 1);
  ASSERT_EQ(streams[0].write_at(0, expected), Result::ok);
  ASSERT_EQ(streams[1].write_at(0, pattern(count * 512, 2)), Result::ok);
  const auto check = [&file, &expected](const Stream& stream) {
    Bytes bytes(30000);
    std::size_t got = 0;
    for (std::size_t i = 0; i < 300; ++i) {
      const std::size_t at = i * 7654321 % expected.size();
      ASSERT_EQ(stream.read_at(at, bytes, got), Result::ok);
      ASSERT_EQ(got, std::min(bytes.size(), expected.size() - at));
      ASSERT_TRUE(std::equal(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(got),
                             expected.begin() + static_cast<std::ptrdiff_t>(at)));
    }
    EXPECT_EQ(file->verify(), Result::ok);
  };
  check(streams[0]);
  const Bytes tail = pattern(1000000, 3);
  expected.resize(count * 256 + 5);
  ASSERT_EQ(streams[0].set_size(expected.size()), Result::ok);
  ASSERT_EQ(streams[0].write_at(expected.size(), tail), Result::ok);
  expected.insert(expected.end(), tail.begin(), tail.end());
  check(streams[0]);
  ASSERT_EQ(file->close(), Result::ok);
  ASSERT_EQ(CompoundFile::open(storage, Access::modify, file), Result::ok);
  Stream stream;
  ASSERT_EQ(file->open_stream(k_root_storage, u"a", stream), Result::ok);
  check(stream);
  ASSERT_EQ(file->open_stream(k_root_storage, u"b", streams[1]), Result::ok);
  ASSERT_EQ(file->remove(k_root_storage, u"a"), Result::ok);
  ASSERT_EQ(file->flush(), Result::ok);
  expected = pattern(count * 512, 2);
  check(streams[1]);
}

TEST(CompoundDisk, FilesAreMadeAndReplacedOnlyWhenAsked) {
  const TemporaryFile path;
  std::unique_ptr<CompoundFile> file;
  EXPECT_EQ(CompoundFile::open_disk(path.path(), Access::read, file), Result::not_found);
  ASSERT_EQ(CompoundFile::create_disk(path.path(), FileKind::aaf_4k, false, file), Result::ok);
  ASSERT_EQ(file->write_stream(k_root_storage, u"a", pattern(5000, 1)), Result::ok);
  ASSERT_EQ(file->close(), Result::ok);
  EXPECT_EQ(CompoundFile::create_disk(path.path(), FileKind::aaf_4k, false, file),
            Result::already_exists);
  ASSERT_EQ(CompoundFile::open_disk(path.path(), Access::read, file), Result::ok);
  EXPECT_EQ(read_tree(*file).children[u"a"].bytes, pattern(5000, 1));
  ASSERT_EQ(CompoundFile::create_disk(path.path(), FileKind::aaf_512, true, file), Result::ok);
  ASSERT_EQ(file->close(), Result::ok);
  ASSERT_EQ(CompoundFile::open_disk(path.path(), Access::read, file), Result::ok);
  EXPECT_EQ(file->sector_size(), 512U);
  EXPECT_EQ(CompoundFile::open_disk(std::filesystem::temp_directory_path(), Access::read, file),
            Result::invalid_argument);
}

}  // namespace
}  // namespace aafobj::test
