#include "embedded/settings.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>

#include "embedded/user_folders.h"

namespace embedded {

namespace {

// A settings file is a page of text; what is larger is something else.
constexpr std::size_t largest_file = 1 << 20;

std::string utf8(const wide_char* text) {
  return utf8_from_text({text, text_length(text)});
}

struct Setting {
  std::string_view section;
  std::string_view key;
  std::string_view value;
};

std::optional<Setting> parse_setting(std::string_view text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  const std::size_t slash = text.rfind('/', equals);
  if (slash == std::string_view::npos || slash == 0 || slash + 1 == equals) return std::nullopt;
  return Setting{text.substr(0, slash), text.substr(slash + 1, equals - slash - 1),
                 text.substr(equals + 1)};
}

template <class Integer>
Integer clamped(long long value) {
  return static_cast<Integer>(std::clamp<long long>(value, std::numeric_limits<Integer>::min(),
                                                    std::numeric_limits<Integer>::max()));
}

}  // namespace

bool is_setting(std::string_view text) {
  return parse_setting(text).has_value();
}

std::string EmbeddedSettings::file() const {
  if (!options_.settings_file.empty()) return options_.settings_file;
  const std::string folder = user_config_folder();
  return folder.empty() ? folder : folder + "/settings.ini";
}

IniFile EmbeddedSettings::load() const {
  IniFile ini;
  std::ifstream in(file(), std::ios::binary);
  std::string text(largest_file, '\0');
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(in.gcount()));
  ini.read(text);
  for (const std::string& each : options_.settings) {
    const auto setting = parse_setting(each);
    if (setting) ini.set(setting->section, setting->key, setting->value);
  }
  return ini;
}

int EmbeddedSettings::ini_integer(const wide_char*, const wide_char* section, const wide_char* key,
                                  int otherwise) {
  const auto value = load().value(utf8(section), utf8(key));
  if (!value) return otherwise;
  // A key that holds no number counts as 0, as settings files have it.
  return clamped<int>(ini_number(*value).value_or(0));
}

std::optional<std::uint32_t> EmbeddedSettings::registry_number(const wide_char* path,
                                                               const wide_char* value,
                                                               std::uint32_t otherwise) {
  const IniFile ini = load();
  const std::string whole = utf8(path);
  const std::string last = whole.substr(whole.rfind('\\') + 1);
  bool opened = false;
  for (const std::string& section : {whole, last}) {
    opened = opened || ini.has_section(section);
    const auto found = ini.value(section, utf8(value));
    if (found) return clamped<std::uint32_t>(ini_number(*found).value_or(0));
  }
  if (!opened) return std::nullopt;
  return otherwise;
}

}  // namespace embedded
