// Where the words of one line stand, found once for all hooks that read the line.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/text.h"

namespace text {

class LineWords {
 public:
  // Takes a line, which must stay as it is until `forget`. It holds no NUL. One of
  // more words than there is room for is not taken.
  void find(std::u16string_view line);
  void forget() { line_ = nullptr; }
  // Null when there is none.
  [[nodiscard]] const wide_char* line() const { return line_; }
  // Two places for each word: of its first unit, and behind its last. The last word is
  // empty and stands at the end of the line.
  [[nodiscard]] const std::uint16_t* edges() const { return edges_.data(); }

 private:
  // What the drivers hand out holds fewer.
  static constexpr std::size_t most_words = 80;

  const wide_char* line_ = nullptr;
  // With room for the edges that 64 units can have on top.
  std::array<std::uint16_t, 2 * most_words + 64> edges_{};
};

}  // namespace text
