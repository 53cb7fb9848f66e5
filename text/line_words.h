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
  struct Word {
    std::uint16_t start = 0;
    std::uint16_t length = 0;
  };

  // Takes a line, which must stay as it is until `forget`. It holds no NUL. One of
  // more words than there is room for is not taken.
  void find(std::u16string_view line);
  void forget() { line_ = nullptr; }
  // Null when there is none.
  [[nodiscard]] const wide_char* line() const { return line_; }
  // The last one is empty and stands at the end of the line.
  [[nodiscard]] const Word* words() const { return words_.data(); }

 private:
  // What the drivers hand out holds fewer.
  static constexpr std::size_t most_words = 80;

  const wide_char* line_ = nullptr;
  std::array<Word, most_words> words_;
};

}  // namespace text
