#include "cli/commands.h"
#include "cli/exit_codes.h"
#include "cli/messages.h"
#include "cli/records_json.h"
#include "cli/text_table.h"

namespace cli {

namespace {

constexpr std::size_t wide_enough = 200;

Json as_json(const FormatRow& row) {
  return {{"name", row.name},
          {"title", row.title},
          {"extensions", row.extensions},
          {"imports", row.imports},
          {"exports", row.exports},
          {"carries",
           {{"video", row.carries.video},
            {"locators", row.carries.locators},
            {"automation", row.carries.automation},
            {"pq", row.carries.pq}}}};
}

std::string joined(const std::vector<std::string_view>& words) {
  std::string text;
  for (const std::string_view word : words)
    text += (text.empty() ? "" : " ") + std::string(word);
  return text;
}

std::string directions_of(const FormatRow& row) {
  if (row.imports && row.exports) return "read, write";
  return row.imports ? "read" : "write";
}

}  // namespace

int list_formats(std::span<const FormatRow> rows, bool json) {
  std::string out;
  if (json) {
    Json all = Json::array();
    for (const FormatRow& row : rows)
      all.push_back(as_json(row));
    out = all.dump(2) + "\n";
  } else {
    const TextTable table({{"name", 23}, {"directions", 11}, {"extensions", 11}, {"format", 0}},
                          wide_enough);
    out = table.title_line();
    for (const FormatRow& row : rows) {
      out += table.line({std::string(row.name), directions_of(row), joined(row.extensions),
                         std::string(row.title)});
    }
  }
  return put_data(out) && flush_data() ? exit_done : exit_failed;
}

}  // namespace cli
