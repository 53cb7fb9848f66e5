#include "aaf/export_identification.h"

#include "host/text_format.h"

namespace aaf {

namespace {

constexpr aafUID_t product_id = {
    0x3c1462a0, 0x8401, 0x09ba, {0x81, 0xc4, 0x00, 0x70, 0x06, 0x02, 0xe9, 0x78}};

// Patch levels at which the name of the stage changes.
constexpr std::uint16_t first_beta = 50;
constexpr std::uint16_t first_pre_release = 90;
constexpr std::uint16_t released = 99;

constexpr std::uint16_t two_digits(std::uint32_t digits, unsigned shift) {
  const std::uint32_t field = digits >> shift;
  return static_cast<std::uint16_t>((field >> 4 & 0xF) * 10 + (field & 0xF));
}

std::u16string stage_text(std::uint16_t patch) {
  if (patch >= released) return {};
  if (patch >= first_pre_release) return u" pre-rel " + decimal(patch - first_pre_release);
  if (patch >= first_beta) return u" beta " + decimal(patch - first_beta);
  return u" alpha " + decimal(patch);
}

}  // namespace

aafProductVersion_t version_of_digits(std::uint32_t digits) {
  return {two_digits(digits, 24), two_digits(digits, 16), two_digits(digits, 8),
          two_digits(digits, 0), 0};
}

std::u16string version_text(std::uint32_t digits) {
  const aafProductVersion_t version = version_of_digits(digits);
  return u"v" + decimal(version.major) + u"." + decimal(version.minor) + u"." +
         decimal(version.tertiary) + stage_text(version.patchLevel);
}

ExportIdentification::ExportIdentification()
    : m_company(aaf_from_text(export_company)),
      m_product(aaf_from_text(export_product)),
      m_version_text(aaf_from_text(version_text(export_version_digits))),
      m_version(version_of_digits(export_version_digits)) {
  m_identification.companyName = m_company.data();
  m_identification.productName = m_product.data();
  m_identification.productVersionString = m_version_text.data();
  m_identification.productID = product_id;
  m_identification.productVersion = &m_version;
}

}  // namespace aaf
