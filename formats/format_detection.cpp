#include <algorithm>

#include "formats/format_table.h"

namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool has_extension(std::string_view path, std::string_view extension) {
  return path.size() > extension.size() &&
         std::equal(extension.begin(), extension.end(),
                    path.end() - static_cast<std::ptrdiff_t>(extension.size()),
                    [](char a, char b) { return a == lower(b); });
}

}  // namespace

bool fits_extension(const FormatRow& row, std::string_view path) {
  return std::any_of(row.extensions.begin(), row.extensions.end(),
                     [path](std::string_view e) { return has_extension(path, e); });
}

const FormatRow* find_format(std::span<const FormatRow> rows, std::string_view name) {
  const auto hit =
      std::find_if(rows.begin(), rows.end(), [name](const FormatRow& r) { return r.name == name; });
  return hit == rows.end() ? nullptr : &*hit;
}

const FormatRow* detect_format(std::span<const FormatRow> rows, std::string_view head,
                               std::string_view path) {
  const FormatRow* best = nullptr;
  HeadMatch best_match = HeadMatch::none;
  bool best_extension = false;
  for (const FormatRow& row : rows) {
    const HeadMatch match = row.match(head);
    const bool extension = fits_extension(row, path);
    const bool better = match > best_match || (match == best_match && extension && !best_extension);
    if (!row.imports || !better || (match == HeadMatch::none && !extension)) continue;
    best = &row;
    best_match = match;
    best_extension = extension;
  }
  return best;
}

const FormatRow* format_for_output(std::span<const FormatRow> rows, std::string_view path) {
  const auto hit = std::find_if(rows.begin(), rows.end(), [path](const FormatRow& row) {
    return row.exports && fits_extension(row, path);
  });
  return hit == rows.end() ? nullptr : &*hit;
}

std::vector<std::string> single_output(const std::string& path) {
  return {path};
}
