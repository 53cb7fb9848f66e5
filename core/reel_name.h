// Two rules for names of reels that audio and video entries share.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "host/text.h"

// Whether a name is longer than eight characters once it is cut at its last
// blank: the scan runs from the end past ordinary characters to the last run of
// blanks and cuts there, so a name with a blank inside is measured up to it. The
// first character is never looked at.
inline bool reel_name_is_long(std::u16string_view name) {
  std::size_t length = name.size();
  bool blank_seen = false;
  for (std::size_t i = name.size(); i > 1; --i) {
    if (is_white_space(name[i - 1])) {
      length = i - 1;
      blank_seen = true;
    } else if (blank_seen) {
      break;
    }
  }
  return length > 8;
}

// Fills a name field and pads it with blanks up to its terminator.
template <std::size_t size>
void set_padded_name(wide_char (&field)[size], std::u16string_view text) {
  const std::size_t kept = std::min(text.size(), size - 1);
  std::copy_n(text.data(), kept, field);
  std::fill(field + kept, field + size - 1, u' ');
  field[size - 1] = u'\0';
}
