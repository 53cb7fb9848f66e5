// Where a person's settings and reports lie.
#pragma once

#include <string>

namespace embedded {

// Without a closing "/"; not made here. An environment variable that is not an
// absolute path does not count; without a home folder the answer is empty.
//   $XDG_CONFIG_HOME/edl-conversion, or ~/.config/edl-conversion
//   $XDG_STATE_HOME/edl-conversion, or ~/.local/state/edl-conversion
[[nodiscard]] std::string user_config_folder();
[[nodiscard]] std::string user_state_folder();

}  // namespace embedded
