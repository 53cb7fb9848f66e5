// Real AAF files, which do not stand in the repository.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace support {

// Those in the folder "aaf" of the one that EDL_SAMPLES names, in the order of their names.
// None where it is not set; a test is then skipped. A folder without any is a failure.
inline std::vector<std::filesystem::path> aaf_samples() {
  std::vector<std::filesystem::path> paths;
  const char* const folder = std::getenv("EDL_SAMPLES");
  if (folder == nullptr) return paths;
  for (const auto& item :
       std::filesystem::directory_iterator(std::filesystem::path(folder) / "aaf")) {
    if (item.path().extension() == ".aaf") paths.push_back(item.path());
  }
  std::sort(paths.begin(), paths.end());
  EXPECT_FALSE(paths.empty());
  return paths;
}

}  // namespace support
