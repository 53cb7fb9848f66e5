// Words for people, on standard error, one line each.
#pragma once

#include <string>
#include <string_view>

namespace cli {

// "edlconv: text"
void tell(std::string_view text);
// "edlconv: hint: text"
void hint(std::string_view text);
// "edlconv: warning: text"
void warn(std::string_view text);

// "1 edit", "3 edits".
std::string counted(std::size_t count, std::string_view one, std::string_view many);

}  // namespace cli
