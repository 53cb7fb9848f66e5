#include "aaf/plugin_directory.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>

#include "aaf/aaf_dll.h"

namespace {

constexpr std::size_t longest_directory = 256;
constexpr const char* own_plugins[] = {"AAFPGAPI.DLL", "AAFINTP.DLL"};

bool separates(char c) {
#ifdef _WIN32
  return c == '\\';
#else
  return c == '\\' || c == '/';
#endif
}

bool is_library(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos) return false;
  std::string extension(name.substr(dot + 1));
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return extension == "DLL";
}

HRESULT walk(const std::string& prefix, PluginDirectoryCallback callback, void* user) {
  std::error_code failure;
  for (std::filesystem::directory_iterator at(prefix, failure), end; !failure && at != end;
       at.increment(failure)) {
    const std::string name = at->path().filename().string();
    std::error_code unknown;
    const bool folder = at->is_directory(unknown);
    if (!folder && !is_library(name)) continue;
    const HRESULT result = callback((prefix + name).c_str(), name.c_str(), folder ? 1 : 0, user);
    if (result != 0) return result;
  }
  return 0;
}

}  // namespace

HRESULT walk_plugin_directory(const char* directory, PluginDirectoryCallback callback, void* user) {
  if (directory == nullptr || callback == nullptr) return aaf_result::null_argument;
  std::string prefix(directory);
  if (prefix.empty()) {
    for (const char* const name : own_plugins) {
      const HRESULT result = callback(name, name, 0, user);
      if (result != 0) return result;
    }
    return 0;
  }
  const bool ended = separates(prefix.back());
  if (prefix.size() > longest_directory + (ended ? 1 : 0)) return aaf_result::text_too_long;
#ifdef _WIN32
  if (!ended) prefix += '\\';
#else
  // A backslash at the end stands for the system's own separator.
  if (ended) prefix.pop_back();
  prefix += '/';
#endif
  return walk(prefix, callback, user);
}
