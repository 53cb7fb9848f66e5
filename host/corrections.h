// Switches for rules that harm real files when they are kept to the letter. All
// are off unless the host turns them on; docs/corrections.md tells each.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "host/api.h"

enum class Correction {
  adl_drop_frame,
  adl_pan_decimals,
  aaf_clip_rate,
  aaf_host_locators,
  aaf_start_frames,
  aaf_group_length,
  aaf_nested_stream,
  aaf_usage_names,
  aaf_stale_position,
  aaf_external_names,
};

inline constexpr std::array<std::string_view, 10> correction_names = {
    "adl_drop_frame",     "adl_pan_decimals",  "aaf_clip_rate",     "aaf_host_locators",
    "aaf_start_frames",   "aaf_group_length",  "aaf_nested_stream", "aaf_usage_names",
    "aaf_stale_position", "aaf_external_names"};

// Empty for a name that is none of these.
EDL_API std::optional<Correction> correction_by_name(std::string_view name);

class EDL_API Corrections {
 public:
  virtual ~Corrections() = default;
  [[nodiscard]] virtual bool is_on(Correction correction) = 0;
};

// Asks the host in force.
EDL_API bool corrected(Correction correction);
