// Long random series of operations, held against a plain tree in memory.
#include <random>

#include "tests/aafobj/container/container_test_support.h"

namespace aafobj::test {
namespace {

class RandomSeries {
 public:
  RandomSeries(FileKind kind, unsigned seed) : m_random(seed) {
    m_storage = make_file(kind, m_file);
    m_expected.is_storage = true;
  }

  void run(int steps) {
    for (int i = 0; i < steps && !::testing::Test::HasFailure(); ++i)
      step();
    reopen();
  }

 private:
  unsigned below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

  std::u16string name() {
    std::u16string text;
    const unsigned length = 1 + below(3);
    for (unsigned i = 0; i < length; ++i)
      text += static_cast<char16_t>(u'A' + below(4));
    return text;
  }

  // Sizes gather around the lines where a stream changes its form.
  std::size_t size() {
    switch (below(6)) {
      case 0:
        return 0;
      case 1:
        return below(200);
      case 2:
        return 4095 + below(3);
      case 3:
        return below(4096);
      case 4:
        return 512 * below(40) + below(3);
      default:
        return below(150000);
    }
  }

  Node& pick_storage(StorageId& id) {
    Node* node = &m_expected;
    id = k_root_storage;
    while (true) {
      std::vector<std::u16string> inner;
      for (const auto& [key, child] : node->children) {
        if (child.is_storage) inner.push_back(key);
      }
      if (inner.empty() || below(3) == 0) return *node;
      const std::u16string& chosen = inner[below(static_cast<unsigned>(inner.size()))];
      EXPECT_EQ(m_file->open_storage(id, chosen, id), Result::ok);
      node = &node->children[chosen];
    }
  }

  void create_storage(Node& node, StorageId id, const std::u16string& key) {
    StorageId made{};
    const Result r = m_file->create_storage(id, key, class_of(below(100)), made);
    if (node.children.contains(key)) {
      EXPECT_EQ(r, Result::already_exists);
      return;
    }
    ASSERT_EQ(r, Result::ok);
    Node& child = node.children[key];
    child.is_storage = true;
    EXPECT_EQ(m_file->class_id(made, child.class_id), Result::ok);
  }

  void write_stream(Node& node, StorageId id, const std::u16string& key) {
    const Bytes bytes = pattern(size(), below(1000));
    const Result r = m_file->write_stream(id, key, bytes);
    if (node.children.contains(key) && node.children[key].is_storage) {
      EXPECT_EQ(r, Result::wrong_type);
      return;
    }
    EXPECT_EQ(r, Result::ok);
    node.children[key].bytes = bytes;
  }

  void patch_stream(Node& node, StorageId id, const std::u16string& key) {
    const auto found = node.children.find(key);
    if (found == node.children.end() || found->second.is_storage) return;
    Bytes& expected = found->second.bytes;
    Stream stream;
    ASSERT_EQ(m_file->open_stream(id, key, stream), Result::ok);
    for (unsigned i = below(6); i > 0; --i) {
      const std::size_t position = below(static_cast<unsigned>(expected.size()) + 500);
      const Bytes bytes = pattern(below(2) == 0 ? below(300) : size(), below(1000));
      ASSERT_EQ(stream.write_at(position, bytes), Result::ok);
      if (bytes.empty()) continue;
      if (expected.size() < position + bytes.size()) expected.resize(position + bytes.size());
      std::copy(bytes.begin(), bytes.end(),
                expected.begin() + static_cast<std::ptrdiff_t>(position));
      check_part(stream, expected);
    }
  }

  void check_part(const Stream& stream, const Bytes& expected) {
    ASSERT_EQ(stream.size(), expected.size());
    const std::size_t position = below(static_cast<unsigned>(expected.size()) + 1);
    Bytes part(below(40000));
    std::size_t count = 0;
    ASSERT_EQ(stream.read_at(position, part, count), Result::ok);
    ASSERT_EQ(count, std::min(part.size(), expected.size() - position));
    EXPECT_TRUE(std::equal(part.begin(), part.begin() + static_cast<std::ptrdiff_t>(count),
                           expected.begin() + static_cast<std::ptrdiff_t>(position)));
  }

  void resize_stream(Node& node, StorageId id, const std::u16string& key) {
    const auto found = node.children.find(key);
    if (found == node.children.end() || found->second.is_storage) return;
    Stream stream;
    ASSERT_EQ(m_file->open_stream(id, key, stream), Result::ok);
    const std::size_t wanted = size();
    ASSERT_EQ(stream.set_size(wanted), Result::ok);
    found->second.bytes.resize(wanted);
  }

  void remove(Node& node, StorageId id, const std::u16string& key) {
    const bool known = node.children.erase(key) != 0;
    EXPECT_EQ(m_file->remove(id, key), known ? Result::ok : Result::not_found);
  }

  void rename(Node& node, StorageId id, const std::u16string& key) {
    const std::u16string other = name();
    const Result r = m_file->rename(id, key, other);
    if (!node.children.contains(key)) {
      EXPECT_EQ(r, Result::not_found);
    } else if (other != key && node.children.contains(other)) {
      EXPECT_EQ(r, Result::already_exists);
    } else {
      EXPECT_EQ(r, Result::ok);
      auto moved = node.children.extract(key);
      moved.key() = other;
      node.children.insert(std::move(moved));
    }
  }

  void reopen() {
    ASSERT_EQ(m_file->close(), Result::ok);
    ASSERT_EQ(CompoundFile::open(m_storage, Access::modify, m_file), Result::ok);
    ASSERT_EQ(m_file->verify(), Result::ok);
    ASSERT_TRUE(read_tree(*m_file) == m_expected);
  }

  void step() {
    StorageId id{};
    Node& node = pick_storage(id);
    const std::u16string key = name();
    const unsigned choice = below(100);
    if (choice < 15)
      create_storage(node, id, key);
    else if (choice < 50)
      write_stream(node, id, key);
    else if (choice < 65)
      patch_stream(node, id, key);
    else if (choice < 75)
      resize_stream(node, id, key);
    else if (choice < 85)
      remove(node, id, key);
    else if (choice < 90)
      rename(node, id, key);
    else if (choice < 95)
      ASSERT_EQ(m_file->flush(), Result::ok);
    else if (choice < 98)
      ASSERT_EQ(m_file->verify(), Result::ok);
    else
      reopen();
  }

  std::mt19937 m_random;
  std::shared_ptr<MemoryStorage> m_storage;
  std::unique_ptr<CompoundFile> m_file;
  Node m_expected;
};

TEST(CompoundRandom, SmallSectors) {
  for (unsigned seed = 1; seed <= 12 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RandomSeries(FileKind::aaf_512, seed).run(250);
  }
}

TEST(CompoundRandom, LargeSectors) {
  for (unsigned seed = 101; seed <= 112 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RandomSeries(FileKind::aaf_4k, seed).run(250);
  }
}

}  // namespace
}  // namespace aafobj::test
