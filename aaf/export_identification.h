// Who an exported AAF file says made it.
#pragma once

#include <cstdint>
#include <string>

#include "aaf/aaf_text.h"

namespace aaf {

inline constexpr std::u16string_view export_company = u"Karsten Sound & Film Ltd";
inline constexpr std::u16string_view export_product = u"Marlo";
// Named in the report alone; the AAF library is left to name its own.
inline constexpr std::u16string_view export_platform = u"Win32";

// Two binary-coded decimal digits each: major, minor, tertiary, patch level.
inline constexpr std::uint32_t export_version_digits = 0x06012599;

[[nodiscard]] aafProductVersion_t version_of_digits(std::uint32_t digits);
// "v6.1.25"; the patch level says how far it is from a release: below 50 " alpha 7",
// below 90 " beta 7" from 50 on, below 99 " pre-rel 7" from 90 on.
[[nodiscard]] std::u16string version_text(std::uint32_t digits);

// The identification that the AAF library takes with a new file. The texts stand in
// this object.
class ExportIdentification {
 public:
  ExportIdentification();
  ExportIdentification(const ExportIdentification&) = delete;
  ExportIdentification& operator=(const ExportIdentification&) = delete;

  [[nodiscard]] aafProductIdentification_t* get() { return &m_identification; }

 private:
  aaf_string m_company;
  aaf_string m_product;
  aaf_string m_version_text;
  aafProductVersion_t m_version;
  aafProductIdentification_t m_identification{};
};

}  // namespace aaf
