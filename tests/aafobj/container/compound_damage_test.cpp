// Files that are damaged on purpose. Nothing may crash, hang or take memory
// that the file does not warrant; what is not touched by the damage still
// reads.
#include <functional>

#include "tests/aafobj/container/raw_view.h"

namespace aafobj::test {
namespace {

class CompoundDamage : public ::testing::TestWithParam<FileKind> {
 protected:
  void SetUp() override {
    std::unique_ptr<CompoundFile> file;
    const auto storage = make_file(GetParam(), file);
    StorageId folder{};
    StorageId inner{};
    ASSERT_EQ(file->write_stream(k_root_storage, u"properties", pattern(1000, 1)), Result::ok);
    ASSERT_EQ(file->write_stream(k_root_storage, u"small", pattern(300, 2)), Result::ok);
    ASSERT_EQ(file->write_stream(k_root_storage, u"essence", pattern(60000, 3)), Result::ok);
    ASSERT_EQ(file->write_stream(k_root_storage, u"other", pattern(50000, 4)), Result::ok);
    ASSERT_EQ(file->create_storage(k_root_storage, u"folder", class_of(1), folder), Result::ok);
    ASSERT_EQ(file->create_storage(folder, u"inner", class_of(2), inner), Result::ok);
    for (char16_t c = u'a'; c < u'z'; ++c) {
      ASSERT_EQ(file->write_stream(inner, std::u16string(1, c), pattern(100, c)), Result::ok);
    }
    ASSERT_EQ(file->close(), Result::ok);
    m_bytes = storage->bytes();
  }

  RawView view() { return RawView(m_bytes); }

  Result open(Access access = Access::read) { return open_bytes(m_bytes, access, m_file); }

  Result read(const std::u16string& name) {
    Bytes bytes;
    return m_file->read_stream(k_root_storage, name, 1 << 24, bytes);
  }

  // A damaged file is never modified.
  void expect_unmodifiable() {
    ASSERT_EQ(open(Access::modify), Result::ok);
    EXPECT_NE(m_file->verify(), Result::ok);
    Stream stream;
    EXPECT_NE(m_file->create_stream(k_root_storage, u"new", stream), Result::ok);
    EXPECT_EQ(m_file->close(), Result::ok);
  }

  Bytes m_bytes;
  std::unique_ptr<CompoundFile> m_file;
};

INSTANTIATE_TEST_SUITE_P(Kinds, CompoundDamage,
                         ::testing::Values(FileKind::aaf_512, FileKind::aaf_4k),
                         [](const auto& kind) {
                           return kind.param == FileKind::aaf_512 ? "Small" : "Large";
                         });

TEST_P(CompoundDamage, UndamagedFileIsSound) {
  ASSERT_EQ(open(), Result::ok);
  EXPECT_EQ(exercise(*m_file), Result::ok);
  EXPECT_EQ(m_file->verify(), Result::ok);
}

TEST_P(CompoundDamage, LoopInAStream) {
  RawView raw = view();
  const auto chain = raw.chain(raw.u32(raw.entry_at(u"essence") + RawView::k_start));
  raw.put_u32(raw.fat_at(chain[5]), chain[2]);
  ASSERT_EQ(open(), Result::ok);
  EXPECT_EQ(read(u"essence"), Result::overlapping);
  EXPECT_EQ(read(u"other"), Result::ok);
  EXPECT_EQ(read(u"properties"), Result::ok);
  expect_unmodifiable();
}

TEST_P(CompoundDamage, StreamThatEndsEarly) {
  RawView raw = view();
  const auto chain = raw.chain(raw.u32(raw.entry_at(u"essence") + RawView::k_start));
  raw.put_u32(raw.fat_at(chain[5]), RawView::k_end);
  ASSERT_EQ(open(), Result::ok);
  EXPECT_EQ(read(u"essence"), Result::damaged);
  expect_unmodifiable();
}

TEST_P(CompoundDamage, ChainOutOfTheFile) {
  for (const std::uint32_t wrong :
       {0x7fffffffU, 0xfffffffaU, 0xfffffffbU, 0xfffffffcU, 0xfffffffdU, 0xffffffffU}) {
    RawView raw = view();
    const auto chain = raw.chain(raw.u32(raw.entry_at(u"essence") + RawView::k_start));
    const std::uint32_t right = raw.fat(chain[5]);
    raw.put_u32(raw.fat_at(chain[5]), wrong);
    ASSERT_EQ(open(), Result::ok);
    EXPECT_EQ(read(u"essence"), wrong <= 0xfffffffa ? Result::truncated : Result::damaged);
    expect_unmodifiable();
    raw.put_u32(raw.fat_at(chain[5]), right);
  }
}

TEST_P(CompoundDamage, TwoStreamsOnTheSameSectors) {
  RawView raw = view();
  const auto chain = raw.chain(raw.u32(raw.entry_at(u"essence") + RawView::k_start));
  const auto other = raw.chain(raw.u32(raw.entry_at(u"other") + RawView::k_start));
  raw.put_u32(raw.fat_at(other[3]), chain[3]);
  ASSERT_EQ(open(), Result::ok);
  EXPECT_EQ(read(u"essence"), Result::ok);
  EXPECT_EQ(read(u"other"), Result::overlapping);
  EXPECT_EQ(read(u"essence"), Result::ok);
  expect_unmodifiable();
}

TEST_P(CompoundDamage, StreamOnTheSectorsOfTheDirectory) {
  RawView raw = view();
  raw.put_u32(raw.entry_at(u"essence") + RawView::k_start, raw.u32(0x30));
  ASSERT_EQ(open(), Result::ok);
  EXPECT_EQ(read(u"essence"), Result::overlapping);
  expect_unmodifiable();
}

TEST_P(CompoundDamage, StreamOnTheSectorsOfTheTable) {
  RawView raw = view();
  raw.put_u32(raw.entry_at(u"essence") + RawView::k_start, raw.u32(0x4c));
  ASSERT_EQ(open(), Result::ok);
  EXPECT_NE(read(u"essence"), Result::ok);
  expect_unmodifiable();
}

TEST_P(CompoundDamage, AbsurdStreamSizes) {
  for (const std::uint32_t size : {0x7fffffffU, 0xffffffffU, 10000000U}) {
    RawView raw = view();
    raw.put_u32(raw.entry_at(u"essence") + RawView::k_size, size);
    ASSERT_EQ(open(), Result::ok);
    EXPECT_EQ(read(u"essence"), Result::damaged);
    expect_unmodifiable();
  }
  RawView raw = view();
  raw.put_u32(raw.entry_at(u"essence") + RawView::k_size, 60000);
  raw.put_u32(raw.entry_at(u"essence") + RawView::k_size + 4, 0x80000000);
  ASSERT_EQ(open(), Result::ok);
  // The high half counts with large sectors only.
  EXPECT_EQ(read(u"essence"), GetParam() == FileKind::aaf_4k ? Result::damaged : Result::ok);
}

TEST_P(CompoundDamage, LoopInAMiniStream) {
  RawView raw = view();
  const std::uint32_t first = raw.u32(raw.entry_at(u"properties") + RawView::k_start);
  raw.put_u32(raw.mini_fat_at(first + 3), first);
  ASSERT_EQ(open(), Result::ok);
  EXPECT_EQ(read(u"properties"), Result::overlapping);
  EXPECT_EQ(read(u"small"), Result::ok);
  expect_unmodifiable();
}

TEST_P(CompoundDamage, MiniChainOutOfTheMiniStream) {
  for (const std::uint32_t wrong : {100000U, 0xfffffffeU, 0xffffffffU}) {
    RawView raw = view();
    const std::uint32_t first = raw.u32(raw.entry_at(u"properties") + RawView::k_start);
    raw.put_u32(raw.mini_fat_at(first + 3), wrong);
    ASSERT_EQ(open(), Result::ok);
    EXPECT_EQ(read(u"properties"), Result::damaged);
    EXPECT_EQ(read(u"small"), Result::ok);
    expect_unmodifiable();
  }
}

TEST_P(CompoundDamage, TwoStreamsOnTheSameMiniSectors) {
  RawView raw = view();
  const std::uint32_t first = raw.u32(raw.entry_at(u"properties") + RawView::k_start);
  raw.put_u32(raw.entry_at(u"small") + RawView::k_start, first);
  ASSERT_EQ(open(), Result::ok);
  EXPECT_EQ(read(u"properties"), Result::ok);
  EXPECT_EQ(read(u"small"), Result::overlapping);
  EXPECT_EQ(read(u"properties"), Result::ok);
  expect_unmodifiable();
}

TEST_P(CompoundDamage, MiniStreamWithoutSectors) {
  RawView raw = view();
  raw.put_u32(raw.entry_at(0) + RawView::k_start, RawView::k_end);
  ASSERT_EQ(open(), Result::ok);
  EXPECT_EQ(read(u"properties"), Result::damaged);
  EXPECT_EQ(read(u"essence"), Result::ok);
  expect_unmodifiable();
}

TEST_P(CompoundDamage, AbsurdMiniStreamSize) {
  RawView raw = view();
  raw.put_u32(raw.entry_at(0) + RawView::k_size, 0xffffffff);
  ASSERT_EQ(open(), Result::ok);
  EXPECT_EQ(read(u"properties"), Result::damaged);
  EXPECT_EQ(read(u"essence"), Result::ok);
  expect_unmodifiable();
}

TEST_P(CompoundDamage, LoopInTheMiniTable) {
  RawView raw = view();
  raw.put_u32(0x40, 2);
  raw.put_u32(raw.fat_at(raw.u32(0x3c)), raw.u32(0x3c));
  expect_unmodifiable();
  raw.put_u32(0x40, 0xffffffff);
  expect_unmodifiable();
}

TEST_P(CompoundDamage, LoopInTheDirectory) {
  RawView raw = view();
  const auto chain = raw.chain(raw.u32(0x30));
  raw.put_u32(raw.fat_at(chain.back()), chain.front());
  expect_unmodifiable();
  // An entry that would be reached only by going round the loop.
  const std::size_t folder = raw.entry_at(0);
  raw.put_u32(folder + RawView::k_child, 0x00ffffff);
  ASSERT_EQ(open(), Result::ok);
  EXPECT_NE(exercise(*m_file), Result::ok);
}

TEST_P(CompoundDamage, DirectoryOutOfTheFile) {
  for (const std::uint32_t wrong : {0x00ffffffU, 0xfffffffeU, 0xffffffffU}) {
    view().put_u32(0x30, wrong);
    EXPECT_NE(open(), Result::ok);
  }
}

TEST_P(CompoundDamage, LoopsInTheTree) {
  // Field of an entry, and the name of the entry that it is made to lead to.
  const struct {
    std::u16string from;
    std::size_t field;
    std::u16string to;
  } cases[] = {
      {u"essence", RawView::k_left, u"essence"},    {u"essence", RawView::k_right, u"folder"},
      {u"inner", RawView::k_child, u"folder"},      {u"inner", RawView::k_child, u"inner"},
      {u"folder", RawView::k_child, u"Root Entry"}, {u"inner", RawView::k_left, u"properties"},
  };
  const Bytes sound = m_bytes;
  for (const auto& item : cases) {
    m_bytes = sound;
    RawView raw = view();
    raw.put_u32(raw.entry_at(item.from) + item.field, raw.id_of(item.to));
    ASSERT_EQ(open(), Result::ok);
    EXPECT_EQ(exercise(*m_file), Result::damaged);
    expect_unmodifiable();
  }
}

TEST_P(CompoundDamage, ImpossibleEntries) {
  const Bytes sound = m_bytes;
  for (const std::uint32_t wrong : {3U, 5U, 0U, 0xffU}) {
    m_bytes = sound;
    m_bytes[view().entry_at(u"essence") + RawView::k_type] = static_cast<std::byte>(wrong);
    ASSERT_EQ(open(), Result::ok);
    EXPECT_EQ(exercise(*m_file), Result::damaged);
  }
  for (const std::uint32_t wrong : {0U, 1U, 2U, 5U, 66U, 255U}) {
    m_bytes = sound;
    m_bytes[view().entry_at(u"essence") + 0x40] = static_cast<std::byte>(wrong);
    ASSERT_EQ(open(), Result::ok);
    EXPECT_EQ(exercise(*m_file), Result::damaged);
  }
  m_bytes = sound;
  m_bytes[view().entry_at(0) + RawView::k_type] = std::byte{1};
  EXPECT_EQ(open(), Result::damaged);
}

TEST_P(CompoundDamage, WrongOrderInTheTreeDoesNoHarm) {
  RawView raw = view();
  const std::size_t top = raw.entry_at(raw.u32(raw.entry_at(0) + RawView::k_child));
  const std::uint32_t left = raw.u32(top + RawView::k_left);
  raw.put_u32(top + RawView::k_left, raw.u32(top + RawView::k_right));
  raw.put_u32(top + RawView::k_right, left);
  ASSERT_EQ(open(), Result::ok);
  EXPECT_EQ(exercise(*m_file), Result::ok);
  for (const char16_t* name : {u"properties", u"small", u"essence", u"other"}) {
    EXPECT_EQ(read(name), Result::ok);
  }
}

TEST_P(CompoundDamage, AbsurdCountsInTheHeader) {
  const Bytes sound = m_bytes;
  for (const std::size_t field : {0x28U, 0x2cU, 0x40U, 0x48U}) {
    for (const std::uint32_t wrong : {0xffffffffU, 0x7fffffffU, 0x10000U}) {
      m_bytes = sound;
      view().put_u32(field, wrong);
      if (open() != Result::ok) continue;
      EXPECT_EQ(read(u"essence"), Result::ok);
    }
  }
  m_bytes = sound;
  view().put_u32(0x2c, 0);  // no table at all
  ASSERT_NE(open(), Result::ok);
}

TEST_P(CompoundDamage, TableSectorsOutOfTheFileOrTwice) {
  const Bytes sound = m_bytes;
  view().put_u32(0x4c, 0x00ffffff);
  const Result opened = open();
  EXPECT_TRUE(opened != Result::ok || exercise(*m_file) != Result::ok);
  m_bytes = sound;
  const std::uint32_t count = view().u32(0x2c);
  view().put_u32(0x2c, count + 1);
  view().put_u32(0x4c + count * std::size_t{4}, view().u32(0x30));
  EXPECT_EQ(open(), Result::overlapping);
}

TEST_P(CompoundDamage, UnsupportedHeaders) {
  const Bytes sound = m_bytes;
  const struct {
    std::size_t at;
    unsigned value;
    Result result;
  } cases[] = {{0, 0, Result::not_aaf},         {8, 0, Result::not_aaf},
               {23, 0, Result::not_aaf},        {0x1c, 0xff, Result::unsupported},
               {0x1e, 10, Result::unsupported}, {0x1e, 200, Result::unsupported},
               {0x20, 7, Result::unsupported},  {0x39, 0, Result::unsupported}};
  for (const auto& item : cases) {
    m_bytes = sound;
    m_bytes[item.at] = static_cast<std::byte>(item.value);
    EXPECT_EQ(open(), item.result) << item.at;
  }
}

TEST_P(CompoundDamage, CutAtEveryLength) {
  const Bytes sound = m_bytes;
  const std::size_t step = GetParam() == FileKind::aaf_512 ? 100 : 300;
  for (std::size_t size = 0; size < sound.size(); size += step) {
    m_bytes.assign(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size));
    const Result opened = open(Access::modify);
    EXPECT_EQ(opened == Result::not_aaf, size < 24);
    if (opened != Result::ok) continue;
    const Result read = exercise(*m_file);
    // A cut last sector counts as one filled up with zeros.
    EXPECT_TRUE(read != Result::ok || size > sound.size() / 2) << size;
    StorageId made{};
    if (m_file->create_storage(k_root_storage, u"new", {}, made) == Result::ok) {
      EXPECT_EQ(m_file->close(), Result::ok);
    }
  }
}

TEST_P(CompoundDamage, RandomBytesAnywhere) {
  const Bytes sound = m_bytes;
  std::mt19937 random(GetParam() == FileKind::aaf_512 ? 1 : 2);
  // Half of the changes go to structures, which are a small part of the file.
  std::vector<std::size_t> places;
  for (std::size_t i = 0x18; i < 0x60; ++i)
    places.push_back(i);
  const RawView raw = view();
  for (const std::uint32_t first : {raw.u32(0x30), raw.u32(0x3c), raw.u32(0x4c)}) {
    for (std::size_t i = 0; i < 512; ++i)
      places.push_back(raw.sector_at(first) + i);
  }
  for (int round = 0; round < 3000; ++round) {
    m_bytes = sound;
    for (auto i = random() % 6 + 1; i > 0; --i) {
      const std::size_t at =
          random() % 2 == 0 ? places[random() % places.size()] : random() % m_bytes.size();
      m_bytes[at] = static_cast<std::byte>(random() % 3 == 0 ? 0xff : random());
    }
    if (open(Access::modify) != Result::ok) continue;
    static_cast<void>(exercise(*m_file));
    const Result sound_still = m_file->verify();
    const Result changed = m_file->write_stream(k_root_storage, u"new", pattern(7000, 1));
    if (sound_still != Result::ok) {
      EXPECT_NE(changed, Result::ok);
      continue;
    }
    EXPECT_EQ(changed, Result::ok);
    EXPECT_EQ(m_file->flush(), Result::ok);
    EXPECT_EQ(m_file->verify(), Result::ok);
  }
}

// Loops in the list of table sectors need a file with such a list.
TEST(CompoundDamageOfLists, LoopAndWrongNumbers) {
  std::unique_ptr<CompoundFile> file;
  const auto storage = make_file(FileKind::aaf_512, file);
  const std::size_t size = (109 + 127 + 20) * std::size_t{128} * 512;
  ASSERT_EQ(file->write_stream(k_root_storage, u"large", Bytes(size)), Result::ok);
  ASSERT_EQ(file->close(), Result::ok);
  Bytes bytes = storage->bytes();
  RawView raw(bytes);
  const std::uint32_t list = raw.u32(0x44);
  const std::size_t last_word = raw.sector_at(list) + 508;
  const std::uint32_t second = raw.u32(last_word);
  for (const std::uint32_t wrong : {list, 0x00ffffffU, 0xfffffffeU, 0xffffffffU, 0U}) {
    raw.put_u32(last_word, wrong);
    // The directory lies behind the stream, so even the root is out of reach.
    EXPECT_NE(open_bytes(bytes, Access::modify, file), Result::ok) << wrong;
  }
  raw.put_u32(last_word, second);
  ASSERT_EQ(open_bytes(bytes, Access::read, file), Result::ok);
  EXPECT_EQ(file->verify(), Result::ok);
  // Zeros in place of unused words are ignored.
  for (std::size_t i = 0; i < 508; i += 4) {
    if (raw.u32(raw.sector_at(second) + i) == RawView::k_none) {
      raw.put_u32(raw.sector_at(second) + i, 0);
    }
  }
  ASSERT_EQ(open_bytes(bytes, Access::read, file), Result::ok);
  EXPECT_EQ(exercise(*file), Result::ok);
  EXPECT_EQ(file->verify(), Result::ok);
}

}  // namespace
}  // namespace aafobj::test
