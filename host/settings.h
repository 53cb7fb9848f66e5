// The host's settings file and registry, read at the moment of use.
#pragma once

#include <cstdint>
#include <optional>

#include "host/api.h"
#include "host/text.h"

class EDL_API Settings {
 public:
  virtual ~Settings() = default;
  // An integer key of a section of a settings file, or `otherwise`.
  [[nodiscard]] virtual int ini_integer(const wide_char* file, const wide_char* section,
                                        const wide_char* key, int otherwise) = 0;
  // A number under a path of the machine's registry. Empty when the path cannot
  // be opened; `otherwise` when it has no such value.
  [[nodiscard]] virtual std::optional<std::uint32_t> registry_number(const wide_char* path,
                                                                     const wide_char* value,
                                                                     std::uint32_t otherwise) = 0;
};
