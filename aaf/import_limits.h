// What bounds an import.
#pragma once

#include <cstdint>

// How much one import may ask for: components, control points and records looked at, edits
// and automation points made. A small file can otherwise describe more than any machine
// holds, since compositions may share what they play.
struct AafImportLimits {
  std::uint64_t visits = 10'000'000;
  std::uint64_t records = 1'000'000;
  std::uint64_t points = 4'000'000;
};
