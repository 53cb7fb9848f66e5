// Words for people, on standard error, one line each.
#pragma once

#include <cstddef>
#include <cstdint>
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
// "25", "29.97 drop"; 25 for an index that is none, as the library counts it.
std::string frame_rate_text(std::uint8_t frame_rate_index);

// Writes data to standard output. False, with the reason told, when the system
// refuses it.
[[nodiscard]] bool put_data(std::string_view data);
// The same for what is still on its way there.
[[nodiscard]] bool flush_data();

}  // namespace cli
