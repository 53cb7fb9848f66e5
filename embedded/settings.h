// Settings and registry values out of one INI file.
//
// The library asks for keys of "marlo3.ini" and for values of the machine's
// registry. Both stand in one file: a section of the settings file under its own
// name, a path of the registry as a section of that name, or of its last element:
// "[Software\Karsten Sound & Film\VCS]" or "[VCS]".
#pragma once

#include <string>

#include "embedded/ini_file.h"
#include "embedded/options.h"
#include "host/settings.h"

namespace embedded {

class EmbeddedSettings final : public Settings {
 public:
  // Not owned.
  explicit EmbeddedSettings(const EmbeddedOptions& options) : options_(options) {}

  int ini_integer(const wide_char* file, const wide_char* section, const wide_char* key,
                  int otherwise) override;
  std::optional<std::uint32_t> registry_number(const wide_char* path, const wide_char* value,
                                               std::uint32_t otherwise) override;

  // The file that is read; empty when the person has no home folder.
  [[nodiscard]] std::string file() const;

 private:
  [[nodiscard]] IniFile load() const;

  const EmbeddedOptions& options_;
};

// Whether a text is of the form "SECTION/KEY=VALUE". The section ends at the last
// "/" in front of the first "=".
[[nodiscard]] bool is_setting(std::string_view text);

}  // namespace embedded
