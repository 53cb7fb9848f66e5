#include "host/corrections.h"

#include <algorithm>

#include "host/host.h"

std::optional<Correction> correction_by_name(std::string_view name) {
  const auto* const at = std::find(correction_names.begin(), correction_names.end(), name);
  if (at == correction_names.end()) return std::nullopt;
  return static_cast<Correction>(at - correction_names.begin());
}

bool corrected(Correction correction) {
  return host().corrections().is_on(correction);
}
