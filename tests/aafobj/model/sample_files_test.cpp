// Real files through the model.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "aafobj/model/tree_walk.h"
#include "tests/aafobj/model/object_trees.h"
#include "tests/support/aaf_samples.h"

namespace aafobj {
namespace {

std::unique_ptr<ObjectFile> open_sample(const std::filesystem::path& path) {
  std::unique_ptr<CompoundFile> container;
  std::unique_ptr<ObjectFile> file;
  EXPECT_EQ(CompoundFile::open_disk(path, Access::read, container), Result::ok) << path;
  if (container) {
    EXPECT_EQ(ObjectFile::open(std::move(container), file), 0) << path;
  }
  return file;
}

TEST(SampleFiles, EveryObjectIsReadAndEveryPropertyKnown) {
  const auto paths = support::aaf_samples();
  if (paths.empty()) GTEST_SKIP() << "EDL_SAMPLES is not set";
  for (const auto& path : paths) {
    SCOPED_TRACE(path);
    const auto file = open_sample(path);
    ASSERT_NE(file, nullptr);
    std::size_t objects = 0;
    EXPECT_EQ(walk_tree(file->root(),
                        [&](StoredObject& object) {
                          ++objects;
                          EXPECT_FALSE(object.class_def().name.empty())
                              << to_text(object.class_def().identifier);
                          for (const Property& property : object.properties()) {
                            const PropertyDef* definition =
                                file->meta_model().find_property(object.class_def(), property.pid);
                            EXPECT_NE(definition, nullptr) << std::hex << property.pid;
                            if (definition) {
                              EXPECT_EQ(definition->form, property.form);
                            }
                          }
                          return AAFRESULT_SUCCESS;
                        }),
              AAFRESULT_SUCCESS);
    EXPECT_GT(objects, 300u);
  }
}

// The tables give the storage names that real writers give.
TEST(SampleFiles, StorageNamesAreThoseOfTheTables) {
  const auto paths = support::aaf_samples();
  if (paths.empty()) GTEST_SKIP() << "EDL_SAMPLES is not set";
  std::size_t compared = 0;
  for (const auto& path : paths) {
    const auto file = open_sample(path);
    ASSERT_NE(file, nullptr);
    const AAFRESULT walked = walk_tree(file->root(), [&](StoredObject& object) {
      for (const Property& property : object.properties()) {
        const PropertyRow* row = find_property(property.pid);
        if (!row || !property.value) continue;
        std::visit(
            [&](const auto& value) {
              if constexpr (requires { value.name; }) {
                ++compared;
                EXPECT_EQ(std::string(value.name.begin(), value.name.end()), row->storage_name);
              }
            },
            *property.value);
      }
      return AAFRESULT_SUCCESS;
    });
    EXPECT_EQ(walked, AAFRESULT_SUCCESS);
  }
  EXPECT_GT(compared, 10000u);
}

TEST(SampleFiles, ACopyHoldsTheSameTree) {
  const auto paths = support::aaf_samples();
  if (paths.empty()) GTEST_SKIP() << "EDL_SAMPLES is not set";
  for (const auto& path : paths) {
    SCOPED_TRACE(path);
    const auto file = open_sample(path);
    ASSERT_NE(file, nullptr);
    for (const FileKind kind : {FileKind::aaf_512, FileKind::aaf_4k}) {
      auto storage = std::make_shared<MemoryStorage>();
      std::unique_ptr<CompoundFile> copy;
      ASSERT_EQ(CompoundFile::create(storage, kind, copy), Result::ok);
      ASSERT_EQ(file->save_copy(*copy), AAFRESULT_SUCCESS);
      ASSERT_EQ(copy->close(), Result::ok);
      const auto read = testing::open_bytes(storage->bytes());
      ASSERT_NE(read, nullptr);
      EXPECT_EQ(read->container().verify(), Result::ok);
      EXPECT_TRUE(testing::tree_text(read->root()) == testing::tree_text(file->root()));
    }
  }
}

}  // namespace
}  // namespace aafobj
