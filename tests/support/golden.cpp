#include "tests/support/golden.h"

#include <algorithm>
#include <filesystem>

#include "tests/support/compare.h"
#include "tests/support/temp_folder.h"

namespace support {

namespace {

bool is_text(std::string_view bytes) {
  return std::none_of(bytes.begin(), bytes.end(), [](char c) {
    return c >= 0 && c < ' ' && c != '\n' && c != '\r' && c != '\t';
  });
}

}  // namespace

testing::AssertionResult matches_golden(const std::string& name, std::string_view actual) {
  return matches_golden_in(EDL_TEST_GOLDEN, name, actual);
}

testing::AssertionResult matches_golden_in(const std::string& root, const std::string& name,
                                           std::string_view actual) {
  const std::string golden = root + "/" + name;
  const std::string received = golden + ".received";
  const bool known = file_exists(golden);
  const std::string expected = known ? read_file(golden) : std::string();
  if (known && actual == expected) {
    std::filesystem::remove(received);
    return testing::AssertionSuccess();
  }
  std::filesystem::create_directories(std::filesystem::path(golden).parent_path());
  write_file(received, actual);
  if (!known) return testing::AssertionFailure() << "no golden file; see " << received;
  const bool text = is_text(actual) && is_text(expected);
  return (text ? same_lines(actual, expected) : same_bytes(actual, expected))
         << "\nreceived: " << received;
}

}  // namespace support
