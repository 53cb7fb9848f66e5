// The English wording of every text that the library asks for by id.
#pragma once

#include <span>
#include <string_view>

namespace embedded {

struct StringRow {
  unsigned id;
  // No angle brackets and no "&": several of them are put into HTML as they are.
  const char16_t* text;
};

// In rising order of id.
[[nodiscard]] std::span<const StringRow> string_table();

// The text of an id; null for one that the table does not know.
[[nodiscard]] const char16_t* english_text(unsigned id);

}  // namespace embedded
