#include <cstdio>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/exit_codes.h"

namespace cli {

namespace {

std::string joined(const std::vector<std::string_view>& words) {
  std::string text;
  for (const std::string_view word : words) {
    if (!text.empty()) text += ' ';
    text += word;
  }
  return text;
}

nlohmann::ordered_json as_json(const FormatRow& row) {
  return {{"name", row.name},
          {"title", row.title},
          {"extensions", row.extensions},
          {"imports", row.imports},
          {"exports", row.exports}};
}

}  // namespace

int list_formats(std::span<const FormatRow> rows, bool json) {
  if (json) {
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const FormatRow& row : rows)
      all.push_back(as_json(row));
    std::printf("%s\n", all.dump(2).c_str());
    return exit_done;
  }
  std::printf("%-24s %-12s %-14s %s\n", "name", "directions", "extensions", "format");
  for (const FormatRow& row : rows) {
    const char* const directions = row.imports && row.exports ? "read, write"
                                   : row.imports              ? "read"
                                                              : "write";
    std::printf("%-24s %-12s %-14s %s\n", std::string(row.name).c_str(), directions,
                joined(row.extensions).c_str(), std::string(row.title).c_str());
  }
  return exit_done;
}

}  // namespace cli
