#include <gtest/gtest.h>

#include "aafobj/model/tree_walk.h"
#include "tests/aafobj/model/object_trees.h"

namespace aafobj {
namespace {

using testing::MemoryFile;
using testing::new_file;
using testing::open_bytes;
using testing::RandomTree;
using testing::tree_text;

class RandomTrees : public ::testing::TestWithParam<unsigned> {};

StoredObject* content_of(ObjectFile& file) {
  StoredObject* content = nullptr;
  EXPECT_EQ(file.content(content), AAFRESULT_SUCCESS);
  return content;
}

void add_mobs(ObjectFile& file, RandomTree& random, std::uint32_t from, std::uint32_t count) {
  for (std::uint32_t i = from; i < from + count; ++i) {
    aafMobID_t id{};
    id.material.Data1 = i * 0x9e3779b9u;
    StoredObject* mob = random.make(random.random_class(ClassIndex::Mob), 5);
    ASSERT_EQ(content_of(file)->insert_keyed(pid::ContentStorage_Mobs, StoredKey(id), *mob),
              AAFRESULT_SUCCESS);
  }
}

TEST_P(RandomTrees, ComeBackEqual) {
  MemoryFile made = new_file(GetParam() % 2 == 0 ? FileKind::aaf_512 : FileKind::aaf_4k);
  RandomTree random(*made.file, GetParam());
  add_mobs(*made.file, random, 1, 6);
  ASSERT_EQ(made.file->save(), AAFRESULT_SUCCESS);
  const std::string text = tree_text(made.file->root());
  ASSERT_EQ(made.file->close(), AAFRESULT_SUCCESS);
  const auto file = open_bytes(made.storage->bytes());
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(tree_text(file->root()), text);
}

// Changes of every kind, saved in several goes, with and without closing in between.
TEST_P(RandomTrees, ComeBackEqualAfterChanges) {
  MemoryFile made = new_file();
  RandomTree random(*made.file, GetParam() + 1000);
  add_mobs(*made.file, random, 1, 4);
  ASSERT_EQ(made.file->save(), AAFRESULT_SUCCESS);
  ASSERT_EQ(made.file->close(), AAFRESULT_SUCCESS);
  std::vector<std::byte> bytes = made.storage->bytes();
  for (unsigned round = 1; round <= 3; ++round) {
    auto storage = std::make_shared<MemoryStorage>(bytes);
    std::unique_ptr<CompoundFile> container;
    std::unique_ptr<ObjectFile> file;
    ASSERT_EQ(CompoundFile::open(storage, Access::modify, container), Result::ok);
    ASSERT_EQ(ObjectFile::open(std::move(container), file), AAFRESULT_SUCCESS);
    RandomTree again(*file, GetParam() * 7 + round);
    std::vector<StoredObject*> objects;
    ASSERT_EQ(walk_tree(*content_of(*file),
                        [&](StoredObject& object) {
                          if (again.below(3) == 0) objects.push_back(&object);
                          return AAFRESULT_SUCCESS;
                        }),
              AAFRESULT_SUCCESS);
    for (StoredObject* object : objects) {
      // Some of them were let go with an earlier one, and change in memory only.
      if (object != content_of(*file)) again.change(*object, 3);
      if (again.below(20) == 0) {
        ASSERT_EQ(file->save(), AAFRESULT_SUCCESS);
      }
    }
    add_mobs(*file, again, 100 * round, 2);
    ASSERT_EQ(file->save(), AAFRESULT_SUCCESS);
    EXPECT_EQ(file->container().verify(), Result::ok);
    const std::string text = tree_text(file->root());
    ASSERT_EQ(file->close(), AAFRESULT_SUCCESS);
    bytes = storage->bytes();
    const auto read = open_bytes(bytes);
    ASSERT_NE(read, nullptr);
    ASSERT_EQ(tree_text(read->root()), text) << "round " << round;
  }
}

// No change of bytes may lead to more than a failure. Every other one hits the directory or
// the small streams, where objects are told.
TEST_P(RandomTrees, DamageIsMetWithAFailureAtMost) {
  MemoryFile made = new_file();
  RandomTree random(*made.file, GetParam() + 2000);
  add_mobs(*made.file, random, 1, 3);
  ASSERT_EQ(made.file->save(), AAFRESULT_SUCCESS);
  ASSERT_EQ(made.file->close(), AAFRESULT_SUCCESS);
  for (int trial = 0; trial < 20; ++trial) {
    std::vector<std::byte> bytes = made.storage->bytes();
    for (std::size_t i = 1 + random.below(30); i > 0; --i) {
      bytes[24 + random.below(bytes.size() - 24)] = static_cast<std::byte>(random.below(256));
    }
    if (random.below(4) == 0) bytes.resize(random.below(bytes.size()));
    auto storage = std::make_shared<MemoryStorage>(std::move(bytes));
    std::unique_ptr<CompoundFile> container;
    std::unique_ptr<ObjectFile> file;
    if (CompoundFile::open(storage, Access::read, container) != Result::ok) continue;
    if (ObjectFile::open(std::move(container), file) < 0) continue;
    EXPECT_FALSE(tree_text(file->root()).empty());
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomTrees, ::testing::Range(1u, 9u));

}  // namespace
}  // namespace aafobj
