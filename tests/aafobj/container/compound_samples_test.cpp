// Files of several applications, when a folder of them is at hand.
#include <filesystem>

#include "tests/aafobj/container/container_test_support.h"
#include "tests/support/aaf_samples.h"

namespace aafobj::test {
namespace {

bool holds_stream(const Node& node, const std::u16string& name) {
  return node.children.contains(name);
}

TEST(CompoundSamples, WholeTreeIsReadAndEveryObjectHasProperties) {
  const auto files = support::aaf_samples();
  if (files.empty()) GTEST_SKIP() << "EDL_SAMPLES is not set";
  for (const auto& path : files) {
    SCOPED_TRACE(path.string());
    std::unique_ptr<CompoundFile> file;
    ASSERT_EQ(CompoundFile::open_disk(path, Access::read, file), Result::ok);
    EXPECT_EQ(exercise(*file), Result::ok);
    EXPECT_EQ(file->verify(), Result::ok);
    const Node root = read_tree(*file);
    EXPECT_TRUE(holds_stream(root, u"properties"));
    EXPECT_TRUE(holds_stream(root, u"referenced properties"));
    EXPECT_TRUE(root.children.contains(u"Header-2"));
    EXPECT_TRUE(root.children.contains(u"MetaDictionary-1"));
    for (const auto& [name, child] : root.children) {
      EXPECT_TRUE(!child.is_storage || holds_stream(child, u"properties"));
    }
  }
}

TEST(CompoundSamples, ModifiedInPlaceKeepsTheRest) {
  const auto files = support::aaf_samples();
  if (files.empty()) GTEST_SKIP() << "EDL_SAMPLES is not set";
  for (const auto& path : files) {
    SCOPED_TRACE(path.string());
    const TemporaryFile copy;
    std::filesystem::copy_file(path, copy.path());
    std::filesystem::permissions(copy.path(), std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add);
    std::unique_ptr<CompoundFile> file;
    ASSERT_EQ(CompoundFile::open_disk(copy.path(), Access::modify, file), Result::ok);
    Node expected = read_tree(*file);

    StorageId header{};
    ASSERT_EQ(file->open_storage(k_root_storage, u"Header-2", header), Result::ok);
    StorageId added{};
    ASSERT_EQ(file->create_storage(header, u"Added", class_of(1), added), Result::ok);
    ASSERT_EQ(file->write_stream(added, u"small", pattern(100, 1)), Result::ok);
    ASSERT_EQ(file->write_stream(added, u"large", pattern(300000, 2)), Result::ok);
    ASSERT_EQ(file->write_stream(header, u"properties", pattern(5000, 3)), Result::ok);
    ASSERT_EQ(file->remove(k_root_storage, u"MetaDictionary-1"), Result::ok);
    ASSERT_EQ(file->close(), Result::ok);

    Node& changed = expected.children[u"Header-2"];
    Node& child = changed.children[u"Added"];
    child.is_storage = true;
    child.class_id = class_of(1);
    child.children[u"small"].bytes = pattern(100, 1);
    child.children[u"large"].bytes = pattern(300000, 2);
    changed.children[u"properties"].bytes = pattern(5000, 3);
    expected.children.erase(u"MetaDictionary-1");
    ASSERT_EQ(CompoundFile::open_disk(copy.path(), Access::read, file), Result::ok);
    EXPECT_EQ(file->verify(), Result::ok);
    EXPECT_TRUE(read_tree(*file) == expected);
  }
}

}  // namespace
}  // namespace aafobj::test
