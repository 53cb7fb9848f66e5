// Libraries that are loaded by name at run time.
#pragma once

#include <cstdint>

#include "host/api.h"
#include "host/framework/string.h"
#include "host/text.h"

class EDL_API DynamicLibraries {
 public:
  // System errors of a failed call: no such library, no such entry point.
  static constexpr std::uint32_t error_not_found = 126;
  static constexpr std::uint32_t error_no_entry = 127;

  virtual ~DynamicLibraries() = default;
  // A handle, or null with the system error. A name without a folder is looked
  // for beside this library first, then by the system's own search.
  [[nodiscard]] virtual void* load(const wide_char* name, std::uint32_t& error) = 0;
  [[nodiscard]] virtual void* entry(void* library, const char* name, std::uint32_t& error) = 0;
  // False with the system error when it could not be freed.
  [[nodiscard]] virtual bool unload(void* library, std::uint32_t& error) = 0;
};

// The platform's dynamic linker; what a host uses unless it has reasons of its
// own.
class EDL_API SystemLibraries final : public DynamicLibraries {
 public:
  void* load(const wide_char* name, std::uint32_t& error) override;
  void* entry(void* library, const char* name, std::uint32_t& error) override;
  bool unload(void* library, std::uint32_t& error) override;
};
