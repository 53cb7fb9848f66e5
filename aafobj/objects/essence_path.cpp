#include "aafobj/objects/essence_path.h"

#include <cctype>
#include <string>

#include "aafobj/objects/text_conversion.h"

namespace aafobj {
namespace {

constexpr std::string_view scheme = "file://";

int digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const int lower = std::tolower(static_cast<unsigned char>(c));
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool is_escape =
        text[i] == '%' && i + 2 < text.size() && digit(text[i + 1]) >= 0 && digit(text[i + 2]) >= 0;
    if (!is_escape) {
      plain += text[i];
      continue;
    }
    plain += static_cast<char>(digit(text[i + 1]) * 16 + digit(text[i + 2]));
    i += 2;
  }
  return plain;
}

bool begins_with_scheme(std::string_view text) {
  if (text.size() < scheme.size()) return false;
  for (std::size_t i = 0; i < scheme.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(text[i])) != scheme[i]) return false;
  }
  return true;
}

}  // namespace

std::filesystem::path path_of_locator(std::wstring_view text, const std::filesystem::path& folder) {
  std::string name = to_utf8(text);
  if (begins_with_scheme(name)) {
    const std::size_t slash = name.find('/', scheme.size());
    name = slash == std::string::npos ? std::string() : unescaped(name.substr(slash));
  }
  const std::filesystem::path path(name);
  return path.is_absolute() ? path : folder / path;
}

}  // namespace aafobj
