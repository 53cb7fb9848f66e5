// Expected output kept in files under tests/golden.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace support {

// Compares with tests/golden/<name>. A mismatch, or a golden file that does not
// exist, leaves "<name>.received" beside it and shows the first difference;
// building the target update_golden accepts what was received. Agreement removes
// a .received that an earlier run left.
[[nodiscard]] testing::AssertionResult matches_golden(const std::string& name,
                                                      std::string_view actual);
// The same against another root than tests/golden.
[[nodiscard]] testing::AssertionResult matches_golden_in(const std::string& root,
                                                         const std::string& name,
                                                         std::string_view actual);

}  // namespace support
