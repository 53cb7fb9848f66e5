#include "embedded/strings.h"

#include "embedded/string_table.h"

namespace embedded {

namespace {

// A report loads a title, a format and a text, and the longest message five
// pieces; more than that is of earlier boxes.
constexpr std::size_t remembered = 16;

}  // namespace

const wide_char* EnglishStrings::load(unsigned id) {
  return hand_out(id, last_);
}

const wide_char* EnglishStrings::load_into_slot(unsigned id, int slot) {
  return hand_out(id, slots_[slot == 0 ? 0 : 1]);
}

const wide_char* EnglishStrings::hand_out(unsigned id, std::u16string& buffer) {
  const wide_char* const text = english_text(id);
  if (text == nullptr) {
    buffer.clear();
    return buffer.c_str();
  }
  buffer = text;
  if (recent_.size() == remembered) recent_.erase(recent_.begin());
  recent_.push_back(id);
  return buffer.c_str();
}

unsigned EnglishStrings::id_behind(std::u16string_view body) const {
  unsigned best = 0;
  std::size_t best_at = std::u16string_view::npos;
  for (const unsigned id : recent_) {
    const std::u16string_view text = english_text(id);
    const std::u16string_view fixed = text.substr(0, text.find(u'%'));
    if (fixed.empty()) continue;
    const std::size_t at = body.find(fixed);
    if (at < best_at) {
      best = id;
      best_at = at;
    }
  }
  return best;
}

}  // namespace embedded
