// The bytes of written files, looked at without the library's own reader.
#include <algorithm>
#include <array>

#include "tests/aafobj/container/raw_view.h"

namespace aafobj::test {
namespace {

std::vector<unsigned> head_of(const Bytes& bytes, std::size_t from, std::size_t count) {
  std::vector<unsigned> numbers;
  for (std::size_t i = from; i < from + count; ++i) {
    numbers.push_back(std::to_integer<unsigned>(bytes.at(i)));
  }
  return numbers;
}

Bytes file_with_children(FileKind kind, unsigned count) {
  std::unique_ptr<CompoundFile> file;
  const auto storage = make_file(kind, file);
  for (unsigned i = 0; i < count; ++i) {
    std::u16string name = u"n";
    for (const char digit : std::to_string(i * 7919 % 100003)) {
      name += static_cast<char16_t>(digit);
    }
    EXPECT_EQ(file->write_stream(k_root_storage, name, pattern(i % 90, i)), Result::ok);
  }
  EXPECT_EQ(file->close(), Result::ok);
  return storage->bytes();
}

TEST(CompoundLayout, HeaderOfSmallSectors) {
  std::unique_ptr<CompoundFile> file;
  const auto storage = make_file(FileKind::aaf_512, file);
  ASSERT_EQ(file->close(), Result::ok);
  Bytes bytes = storage->bytes();
  EXPECT_EQ(
      head_of(bytes, 0, 0x22),
      (std::vector<unsigned>{0xd0, 0xcf, 0x11, 0xe0, 0xa1, 0xb1, 0x1a, 0xe1, 0x41, 0x41, 0x46, 0x42,
                             0x0d, 0x00, 0x4f, 0x4d, 0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0xff,
                             0x3e, 0x00, 0x03, 0x00, 0xfe, 0xff, 0x09, 0x00, 0x06, 0x00}));
  const RawView view(bytes);
  EXPECT_EQ(view.u32(0x28), 0U);       // directory sectors are not counted
  EXPECT_EQ(view.u32(0x2c), 1U);       // one table sector
  EXPECT_EQ(view.u32(0x38), 0x1000U);  // mini stream cut-off
  EXPECT_EQ(view.u32(0x3c), RawView::k_end);
  EXPECT_EQ(view.u32(0x40), 0U);
  EXPECT_EQ(view.u32(0x44), RawView::k_end);
  EXPECT_EQ(view.u32(0x48), 0U);
  EXPECT_EQ(view.u32(0x4c + 4), RawView::k_none);
  // Header, table sector, directory sector.
  EXPECT_EQ(bytes.size(), 3U * 512);
  EXPECT_EQ(view.fat(view.u32(0x4c)), 0xfffffffdU);
}

TEST(CompoundLayout, HeaderOfLargeSectors) {
  std::unique_ptr<CompoundFile> file;
  const auto storage = make_file(FileKind::aaf_4k, file);
  ASSERT_EQ(file->close(), Result::ok);
  Bytes bytes = storage->bytes();
  EXPECT_EQ(head_of(bytes, 8, 0x1a),
            (std::vector<unsigned>{0x01, 0x02, 0x01, 0x0d, 0x00, 0x02, 0x00, 0x00, 0x06,
                                   0x0e, 0x2b, 0x34, 0x03, 0x02, 0x01, 0x01, 0x3e, 0x00,
                                   0x04, 0x00, 0xfe, 0xff, 0x0c, 0x00, 0x06, 0x00}));
  EXPECT_EQ(RawView(bytes).u32(0x28), 1U);
  EXPECT_EQ(bytes.size(), 3U * 4096);
  EXPECT_TRUE(std::all_of(bytes.begin() + 512, bytes.begin() + 4096,
                          [](std::byte b) { return b == std::byte{0}; }));
}

// Checks order and colours below an entry. Gives the number of black entries
// on every way down, -1 when they differ.
int check_tree(const RawView& view, std::uint32_t id, bool above_is_red,
               std::vector<std::u16string>& names) {
  if (id == RawView::k_none) return 0;
  const std::size_t at = view.entry_at(id);
  const bool red = view.u16(at + RawView::k_type) >> 8 == 0;
  EXPECT_FALSE(red && above_is_red);
  const int left = check_tree(view, view.u32(at + RawView::k_left), red, names);
  names.push_back(view.name_of(id));
  const int right = check_tree(view, view.u32(at + RawView::k_right), red, names);
  EXPECT_EQ(left, right);
  return left == right && left >= 0 ? left + (red ? 0 : 1) : -1;
}

TEST(CompoundLayout, TreesAreRedBlackAndInOrder) {
  for (const unsigned count : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 15U, 16U, 100U, 127U, 200U}) {
    SCOPED_TRACE(count);
    Bytes bytes = file_with_children(FileKind::aaf_4k, count);
    const RawView view(bytes);
    const std::uint32_t top = view.u32(view.entry_at(0) + RawView::k_child);
    std::vector<std::u16string> names;
    EXPECT_GE(check_tree(view, top, true, names), 0);
    EXPECT_EQ(names.size(), count);
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end(), [](const auto& a, const auto& b) {
      return a.size() != b.size() ? a.size() < b.size() : a < b;
    }));
  }
}

TEST(CompoundLayout, MiniStreamHasTheExactSize) {
  std::unique_ptr<CompoundFile> file;
  const auto storage = make_file(FileKind::aaf_512, file);
  ASSERT_EQ(file->write_stream(k_root_storage, u"a", pattern(65, 1)),
            Result::ok);  // 2 mini sectors
  ASSERT_EQ(file->write_stream(k_root_storage, u"b", pattern(640, 2)), Result::ok);  // 10
  ASSERT_EQ(file->write_stream(k_root_storage, u"c", {}), Result::ok);
  ASSERT_EQ(file->close(), Result::ok);
  Bytes bytes = storage->bytes();
  const RawView view(bytes);
  const std::size_t root = view.entry_at(0);
  EXPECT_EQ(view.u32(root + RawView::k_size), 12U * 64);
  EXPECT_EQ(view.chain(view.u32(root + RawView::k_start)).size(), 2U);
  EXPECT_EQ(view.u32(0x40), 1U);
  EXPECT_EQ(view.u32(view.entry_at(u"c") + RawView::k_start), RawView::k_end);
  EXPECT_EQ(view.u32(view.mini_fat_at(12)), RawView::k_none);
  // The rest of the second mini sector of "a" is zero.
  const std::size_t data = view.sector_at(view.u32(root + RawView::k_start));
  for (std::size_t i = 65; i < 128; ++i)
    EXPECT_EQ(bytes[data + i], std::byte{0});
}

TEST(CompoundLayout, LongTablesHaveAListOfTheirOwn) {
  std::unique_ptr<CompoundFile> file;
  const auto storage = make_file(FileKind::aaf_512, file);
  // 109 table sectors reach 109 * 128 sectors of 512 bytes; the next ones are
  // listed in sectors of 127 entries.
  const std::size_t size = (109 + 127 + 20) * std::size_t{128} * 512;
  const Bytes expected = pattern(size, 5);
  ASSERT_EQ(file->write_stream(k_root_storage, u"large", expected), Result::ok);
  ASSERT_EQ(file->close(), Result::ok);
  Bytes bytes = storage->bytes();
  const RawView view(bytes);
  EXPECT_EQ(view.u32(0x48), 2U);
  EXPECT_EQ(view.fat(view.u32(0x44)), 0xfffffffcU);
  const auto chain = view.chain(view.u32(view.entry_at(u"large") + RawView::k_start));
  ASSERT_EQ(chain.size(), size / 512);
  for (std::size_t i = 0; i < chain.size(); ++i) {
    ASSERT_TRUE(std::equal(expected.begin() + static_cast<std::ptrdiff_t>(i * 512),
                           expected.begin() + static_cast<std::ptrdiff_t>(i * 512 + 512),
                           bytes.begin() + static_cast<std::ptrdiff_t>(view.sector_at(chain[i]))));
  }
  ASSERT_EQ(open_bytes(bytes, Access::modify, file), Result::ok);
  EXPECT_EQ(file->verify(), Result::ok);
  ASSERT_EQ(file->write_stream(k_root_storage, u"more", pattern(9 << 20, 6)), Result::ok);
  ASSERT_EQ(file->flush(), Result::ok);
  EXPECT_EQ(file->verify(), Result::ok);
  EXPECT_TRUE(read_tree(*file).children[u"large"].bytes == expected);
}

}  // namespace
}  // namespace aafobj::test
