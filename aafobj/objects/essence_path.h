#pragma once

#include <filesystem>
#include <string_view>

namespace aafobj {

// The file that a locator's text names: "file://host/path" and "file:///path" without what
// leads, with "%" escapes undone; any other text as it stands. A path without a folder at its
// head is one in the folder given.
std::filesystem::path path_of_locator(std::wstring_view text, const std::filesystem::path& folder);

}  // namespace aafobj
