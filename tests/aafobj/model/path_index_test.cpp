// Weak references whose ways lead through collections, held against a plain walk.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/model/tree_walk.h"
#include "tests/aafobj/model/object_trees.h"

namespace aafobj {
namespace {

using testing::MemoryFile;
using testing::new_file;
using testing::open_bytes;
using testing::RandomTree;

using Path = std::vector<std::uint16_t>;

AAFRESULT walk_along(StoredObject& from, std::span<const std::uint16_t> path, const StoredKey& key,
                     StoredObject*& object) {
  if (path.size() == 1) {
    const AAFRESULT r = from.find_element(path.front(), key, object);
    return r == AAFRESULT_BAD_TYPE ? AAFRESULT_OBJECT_NOT_FOUND : r;
  }
  std::vector<StoredObject*> steps;
  const AAFRESULT there = from.contained_objects(path.front(), steps);
  if (there == AAFRESULT_PROP_NOT_PRESENT || there == AAFRESULT_BAD_TYPE) {
    return AAFRESULT_OBJECT_NOT_FOUND;
  }
  if (there < 0) return there;
  for (StoredObject* step : steps) {
    const AAFRESULT r = walk_along(*step, path.subspan(1), key, object);
    if (r != AAFRESULT_OBJECT_NOT_FOUND) return r;
  }
  return AAFRESULT_OBJECT_NOT_FOUND;
}

struct Target {
  Path path;
  StoredKey key;
};

Path path_to(const StoredObject& object) {
  Path path;
  for (const StoredObject* at = &object; at->owner(); at = at->owner())
    path.insert(path.begin(), at->owner_pid());
  return path;
}

// Every element of every set, each under one key more that is not there and by ways that end
// elsewhere.
std::vector<Target> targets_in(ObjectFile& file) {
  std::vector<Target> targets;
  EXPECT_GE(
      walk_tree(file.root(),
                [&](StoredObject& object) {
                  for (const Property& property : object.properties()) {
                    Path path = path_to(object);
                    path.push_back(property.pid);
                    StoredKey key;
                    StoredObject* element = nullptr;
                    for (bool first = true;
                         object.next_element(property.pid, key, first, element) >= 0 && element;
                         first = false) {
                      targets.push_back({path, key});
                    }
                    targets.push_back({path, StoredKey(AUID_AAFMasterMob)});
                  }
                  return AAFRESULT_SUCCESS;
                }),
      0);
  return targets;
}

// What a result names, also between two openings of one file.
std::string place_of(AAFRESULT result, const StoredObject* object) {
  if (result < 0) return std::to_string(result);
  std::string text;
  for (const std::uint16_t pid : path_to(*object))
    text += std::to_string(pid) + "/";
  return text + to_text(object->class_def().identifier);
}

void expect_same(ObjectFile& file, ObjectFile& walked, const std::vector<Target>& targets) {
  for (const Target& target : targets) {
    WeakTarget weak;
    weak.key = target.key;
    ASSERT_EQ(file.tag_of(target.path, weak.tag), AAFRESULT_SUCCESS);
    StoredObject* found = nullptr;
    StoredObject* expected = nullptr;
    const AAFRESULT result = file.resolve(weak, found);
    const AAFRESULT plain = walk_along(walked.root(), target.path, target.key, expected);
    ASSERT_EQ(place_of(result, found), place_of(plain, expected));
    if (&file == &walked) {
      ASSERT_EQ(found, expected);
    }
  }
}

class PathIndexTest : public ::testing::TestWithParam<unsigned> {
 protected:
  void SetUp() override {
    m_made = new_file();
    RandomTree random(*m_made.file, GetParam());
    StoredObject* content = nullptr;
    ASSERT_EQ(m_made.file->content(content), AAFRESULT_SUCCESS);
    for (std::uint32_t i = 1; i <= 6; ++i) {
      aafMobID_t id{};
      id.material.Data1 = i;
      ASSERT_EQ(
          content->insert_keyed(pid::ContentStorage_Mobs, StoredKey(id),
                                *random.make(random.random_class(ClassIndex::CompositionMob), 6)),
          AAFRESULT_SUCCESS);
    }
  }
  MemoryFile m_made;
};

TEST_P(PathIndexTest, FindsWhatAWalkFinds) {
  const std::vector<Target> targets = targets_in(*m_made.file);
  std::set<Path> through_collections;
  for (const Target& target : targets) {
    if (target.path.size() > 4) through_collections.insert(target.path);
  }
  EXPECT_GT(through_collections.size(), 20U);
  expect_same(*m_made.file, *m_made.file, targets);
}

TEST_P(PathIndexTest, FollowsChanges) {
  const std::vector<Target> targets = targets_in(*m_made.file);
  expect_same(*m_made.file, *m_made.file, targets);
  RandomTree random(*m_made.file, GetParam() + 100);
  std::vector<StoredObject*> mobs;
  StoredObject* content = nullptr;
  ASSERT_EQ(m_made.file->content(content), AAFRESULT_SUCCESS);
  ASSERT_EQ(content->contained_objects(pid::ContentStorage_Mobs, mobs), AAFRESULT_SUCCESS);
  for (StoredObject* mob : mobs) {
    random.change(*mob, 5);
    expect_same(*m_made.file, *m_made.file, targets);
  }
}

// Storages in which to do damage.
void collect(CompoundFile& file, StorageId storage, std::vector<StorageId>& storages) {
  storages.push_back(storage);
  std::vector<Element> elements;
  ASSERT_EQ(file.children(storage, elements), Result::ok);
  for (const Element& element : elements) {
    if (element.type == ElementType::storage) collect(file, element.storage, storages);
  }
}

TEST_P(PathIndexTest, EndsAtDamageAsAWalkDoes) {
  const std::vector<Target> targets = targets_in(*m_made.file);
  ASSERT_EQ(m_made.file->save(), AAFRESULT_SUCCESS);
  ASSERT_EQ(m_made.file->close(), AAFRESULT_SUCCESS);
  RandomTree random(*m_made.file, GetParam() + 200);
  int faults = 0;
  for (int trial = 0; trial < 3; ++trial) {
    auto storage = std::make_shared<MemoryStorage>(m_made.storage->bytes());
    std::unique_ptr<CompoundFile> container;
    ASSERT_EQ(CompoundFile::open(storage, Access::modify, container), Result::ok);
    StorageId header{};
    std::vector<StorageId> storages;
    ASSERT_EQ(container->open_storage(k_root_storage, u"Header-2", header), Result::ok);
    collect(*container, header, storages);
    for (int i = 0; i < 3; ++i) {
      std::vector<Element> elements;
      const StorageId hurt = storages[1 + random.below(storages.size() - 1)];
      ASSERT_EQ(container->children(hurt, elements), Result::ok);
      const Element& element = elements[random.below(elements.size())];
      if (element.type == ElementType::storage) continue;
      ASSERT_EQ(container->write_stream(hurt, element.name, std::vector<std::byte>(2)), Result::ok);
    }
    ASSERT_EQ(container->close(), Result::ok);
    const auto file = open_bytes(storage->bytes());
    const auto walked = open_bytes(storage->bytes());
    ASSERT_NE(file, nullptr);
    ASSERT_NE(walked, nullptr);
    expect_same(*file, *walked, targets);
    StoredObject* object = nullptr;
    faults += static_cast<int>(std::ranges::count_if(targets, [&](const Target& target) {
      return walk_along(walked->root(), target.path, target.key, object) == AAFRESULT_BADCONTAINER;
    }));
  }
  EXPECT_GT(faults, 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, PathIndexTest, ::testing::Range(1u, 5u));

}  // namespace
}  // namespace aafobj
