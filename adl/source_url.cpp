#include "adl/source_url.h"

#include <algorithm>

#include "adl/list_tokens.h"

namespace adl {

namespace {

constexpr std::string_view blank_escape = "%20";
constexpr std::string_view file_scheme = "FILE://";
constexpr std::string_view url_scheme = "URL:FILE://";
constexpr std::string_view local_url = "URL:FILE://LOCALHOST";
constexpr std::size_t extension_length = 4;

bool begins_with(std::string_view text, std::string_view head) {
  return is_keyword(text.substr(0, head.size()), head);
}

std::string with_blanks(std::string_view url) {
  std::string text;
  text.reserve(url.size());
  while (!url.empty()) {
    const bool blank = url.starts_with(blank_escape);
    text.push_back(blank ? ' ' : url.front());
    url.remove_prefix(blank ? blank_escape.size() : 1);
  }
  return text;
}

}  // namespace

std::optional<SourceUrl> parse_source_url(std::string_view url) {
  SourceUrl parsed;
  const std::string text = with_blanks(url);
  if (begins_with(text, file_scheme)) {
    parsed.path = text.substr(file_scheme.size() - 1);
  } else if (!begins_with(text, url_scheme)) {
    return std::nullopt;
  } else if (text.size() > local_url.size() && begins_with(text, local_url)) {
    parsed.path = text.substr(local_url.size());
  } else {
    parsed.path = text.substr(url_scheme.size() - 1);
  }
  const std::size_t tail = parsed.path.size() - std::min(parsed.path.size(), extension_length);
  if (tail < parsed.path.size() && parsed.path[tail] == '.') {
    parsed.extension = parsed.path.substr(tail);
    std::transform(parsed.extension.begin(), parsed.extension.end(), parsed.extension.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    parsed.path.resize(tail);
  }
  if (!parsed.path.starts_with('/')) return std::nullopt;
  parsed.path.insert(0, 1, '/');
  return parsed;
}

std::string_view file_name_of(std::string_view path) {
  return path.substr(path.find_last_of('/') + 1);
}

}  // namespace adl
