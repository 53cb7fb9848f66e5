// The string service over the table of English texts. It remembers what it handed
// out last, so that a box that is shown as a text can be told by its id again.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "host/strings.h"

namespace embedded {

class EnglishStrings final : public StringService {
 public:
  const wide_char* load(unsigned id) override;
  const wide_char* load_into_slot(unsigned id, int slot) override;

  // The id whose text `body` begins with, or holds nearest to its start, among the
  // texts loaded since the last call of forget; 0 when it holds none of them. A
  // format counts with what stands in front of its first place.
  [[nodiscard]] unsigned id_behind(std::u16string_view body) const;
  void forget() { recent_.clear(); }

 private:
  const wide_char* hand_out(unsigned id, std::u16string& buffer);

  std::u16string last_;
  std::array<std::u16string, 2> slots_;
  std::vector<unsigned> recent_;
};

}  // namespace embedded
