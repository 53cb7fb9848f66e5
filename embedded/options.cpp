#include "embedded/options.h"

namespace embedded {

bool set_correction(CorrectionSet& corrections, std::string_view assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string_view::npos) return false;
  const auto correction = correction_by_name(assignment.substr(0, equals));
  const std::string_view value = assignment.substr(equals + 1);
  if (!correction || (value != "on" && value != "off")) return false;
  corrections.set(static_cast<std::size_t>(*correction), value == "on");
  return true;
}

}  // namespace embedded
