#include "embedded/ini_file.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace embedded {

namespace {

constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view unquoted(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return quoted ? text.substr(1, text.size() - 2) : text;
}

std::string folded(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), [](char c) {
    return static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
  });
  return out;
}

}  // namespace

void IniFile::read(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  Keys* keys = nullptr;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty() || line.front() == ';' || line.front() == '#') continue;
    if (line.front() == '[') {
      const std::size_t close = line.find(']');
      keys = close == std::string_view::npos
                 ? nullptr
                 : &sections_[folded(trimmed(line.substr(1, close - 1)))];
      continue;
    }
    const std::size_t equals = line.find('=');
    if (keys == nullptr || equals == std::string_view::npos) continue;
    keys->emplace(folded(trimmed(line.substr(0, equals))),
                  unquoted(trimmed(line.substr(equals + 1))));
  }
}

void IniFile::set(std::string_view section, std::string_view key, std::string_view value) {
  sections_[folded(trimmed(section))][folded(trimmed(key))] = unquoted(trimmed(value));
}

bool IniFile::has_section(std::string_view section) const {
  return sections_.contains(folded(section));
}

std::optional<std::string> IniFile::value(std::string_view section, std::string_view key) const {
  const auto keys = sections_.find(folded(section));
  if (keys == sections_.end()) return std::nullopt;
  const auto at = keys->second.find(folded(key));
  if (at == keys->second.end()) return std::nullopt;
  return at->second;
}

std::optional<long long> ini_number(std::string_view text) {
  text = trimmed(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  if (text.empty() || text.front() == '-') return std::nullopt;
  long long value = 0;
  const auto read =
      std::from_chars(text.data(), text.data() + text.size(), value, hexadecimal ? 16 : 10);
  if (read.ec == std::errc::invalid_argument) return std::nullopt;
  if (read.ec == std::errc::result_out_of_range) value = std::numeric_limits<long long>::max();
  return negative ? -value : value;
}

}  // namespace embedded
