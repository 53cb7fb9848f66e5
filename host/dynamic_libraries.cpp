#include "host/dynamic_libraries.h"

#include <dlfcn.h>

#include <string>

namespace {

// The folder of the file that holds this very function, with its closing "/".
std::string own_folder() {
  Dl_info about{};
  const auto* const here = reinterpret_cast<const void*>(&own_folder);
  if (::dladdr(here, &about) == 0 || about.dli_fname == nullptr) return {};
  const std::string path(about.dli_fname);
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

}  // namespace

void* SystemLibraries::load(const wide_char* name, std::uint32_t& error) {
  const std::string file = utf8_from_text({name, text_length(name)});
  void* library = nullptr;
  error = error_not_found;
  // The system takes an empty name for the program itself.
  if (file.empty()) return nullptr;
  if (file.find('/') == std::string::npos) {
    library = ::dlopen((own_folder() + file).c_str(), RTLD_NOW | RTLD_LOCAL);
  }
  if (library == nullptr) library = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  error = library == nullptr ? error_not_found : 0;
  return library;
}

void* SystemLibraries::entry(void* library, const char* name, std::uint32_t& error) {
  // The system takes a null handle for everything that is loaded.
  void* const found = library == nullptr ? nullptr : ::dlsym(library, name);
  error = found == nullptr ? error_no_entry : 0;
  return found;
}

bool SystemLibraries::unload(void* library, std::uint32_t& error) {
  const bool freed = library != nullptr && ::dlclose(library) == 0;
  error = freed ? 0 : error_not_found;
  return freed;
}
