// Code pages by name.
#pragma once

#include <memory>
#include <string>

#include "host/code_page.h"

namespace embedded {

// "windows-1252" (also "cp1252", "1252") and "utf-8" ("utf8") are built in; any
// other name is the platform converter's. Null for a name that nobody knows.
[[nodiscard]] std::unique_ptr<CodePage> make_code_page(const std::string& name);

}  // namespace embedded
