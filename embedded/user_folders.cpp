#include "embedded/user_folders.h"

#include <cstdlib>

namespace embedded {

namespace {

std::string absolute_path_in(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && value[0] == '/' ? std::string(value) : std::string();
}

std::string folder(const char* variable, const char* below_home) {
  const std::string base = absolute_path_in(variable);
  if (!base.empty()) return base + "/edl-conversion";
  const std::string home = absolute_path_in("HOME");
  return home.empty() ? std::string() : home + below_home + "/edl-conversion";
}

}  // namespace

std::string user_config_folder() {
  return folder("XDG_CONFIG_HOME", "/.config");
}

std::string user_state_folder() {
  return folder("XDG_STATE_HOME", "/.local/state");
}

}  // namespace embedded
