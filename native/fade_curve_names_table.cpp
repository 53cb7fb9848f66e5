#include "native/fade_curve_names_table.h"

#include <algorithm>

static_assert(std::all_of(fade_curve_names.begin(), fade_curve_names.end(),
                          [](std::string_view name) {
                            return !name.empty() && name.size() <= fade_curve_name_length;
                          }));

std::string_view fade_curve_name(std::uint16_t curve) {
  return fade_curve_names[curve < fade_curve_names.size() ? curve : 0];
}

std::uint16_t fade_curve_of(std::string_view name) {
  const std::size_t last = name.find_last_not_of(std::string_view(" \0", 2));
  name = name.substr(0, last + 1);
  const auto* const at = std::find(fade_curve_names.begin(), fade_curve_names.end(), name);
  return at == fade_curve_names.end() ? std::uint16_t{0}
                                      : static_cast<std::uint16_t>(at - fade_curve_names.begin());
}
