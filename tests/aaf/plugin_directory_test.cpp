#include "aaf/plugin_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "aaf/aaf_dll.h"
#include "tests/support/temp_folder.h"

namespace {

struct Walk {
  std::vector<std::string> seen;
  std::vector<std::string> paths;
  HRESULT answer = 0;
};

HRESULT note(const char* path, const char* name, int is_directory, void* user) {
  auto& walk = *static_cast<Walk*>(user);
  walk.paths.emplace_back(path);
  walk.seen.push_back(std::string(name) + " " + std::to_string(is_directory));
  return walk.answer;
}

TEST(PluginDirectoryTest, NeedsADirectoryAndACallback) {
  Walk walk;
  EXPECT_EQ(walk_plugin_directory(nullptr, &note, &walk), aaf_result::null_argument);
  EXPECT_EQ(walk_plugin_directory("", nullptr, &walk), aaf_result::null_argument);
  EXPECT_TRUE(walk.seen.empty());
}

TEST(PluginDirectoryTest, AnEmptyTextStandsForTheOwnTwo) {
  Walk walk;
  EXPECT_EQ(walk_plugin_directory("", &note, &walk), 0);
  EXPECT_EQ(walk.seen, (std::vector<std::string>{"AAFPGAPI.DLL 0", "AAFINTP.DLL 0"}));
  EXPECT_EQ(walk.paths, (std::vector<std::string>{"AAFPGAPI.DLL", "AAFINTP.DLL"}));
  Walk stopped;
  stopped.answer = 7;
  EXPECT_EQ(walk_plugin_directory("", &note, &stopped), 7);
  EXPECT_EQ(stopped.seen, (std::vector<std::string>{"AAFPGAPI.DLL 0"}));
}

TEST(PluginDirectoryTest, LengthOfTheText) {
  Walk walk;
  EXPECT_EQ(walk_plugin_directory((std::string(256, 'd') + "\\").c_str(), &note, &walk), 0);
  EXPECT_EQ(walk_plugin_directory((std::string(257, 'd') + "\\").c_str(), &note, &walk),
            aaf_result::text_too_long);
  EXPECT_EQ(walk_plugin_directory(std::string(256, 'd').c_str(), &note, &walk), 0);
  EXPECT_EQ(walk_plugin_directory(std::string(257, 'd').c_str(), &note, &walk),
            aaf_result::text_too_long);
  EXPECT_TRUE(walk.seen.empty()) << "there is no such folder";
}

TEST(PluginDirectoryTest, FoldersAndLibrariesAreShown) {
  const support::TempFolder folder;
  for (const char* const name : {"a.dll", "b.DLL", "c.dllx", "d"})
    std::ofstream(folder.path() + "/" + name) << "x";
  std::filesystem::create_directory(folder.path() + "/sub");
  for (const std::string end : {"", "/", "\\"}) {
    Walk walk;
    EXPECT_EQ(walk_plugin_directory((folder.path() + end).c_str(), &note, &walk), 0);
    std::sort(walk.seen.begin(), walk.seen.end());
    std::sort(walk.paths.begin(), walk.paths.end());
    EXPECT_EQ(walk.seen, (std::vector<std::string>{"a.dll 0", "b.DLL 0", "sub 1"}));
    ASSERT_EQ(walk.paths.size(), 3U);
    EXPECT_EQ(walk.paths[0], folder.path() + "/a.dll");
  }
  Walk stopped;
  stopped.answer = -3;
  EXPECT_EQ(walk_plugin_directory(folder.path().c_str(), &note, &stopped), -3);
  EXPECT_EQ(stopped.seen.size(), 1U);
}

}  // namespace
