#include "adl/aes31_file.h"

#include "adl/timestamp_frig.h"
#include "host/host.h"
#include "host/settings.h"

namespace {

constexpr const wide_char* product_key = u"Software\\Karsten Sound & Film\\MarloPT";
constexpr const wide_char* common_key = u"Software\\Karsten Sound & Film\\VCS";

bool timestamp_frig_flag = false;

}  // namespace

bool adl::timestamp_frig() {
  return timestamp_frig_flag;
}

CAES31File::CAES31File(CGenericEdl* parent, int interactive, int sd2_sources,
                       int interchange_sources, int aiff_sources)
    : CGenericEdl(parent, interactive),
      m_sd2_sources(sd2_sources),
      m_interchange_sources(interchange_sources),
      m_aiff_sources(aiff_sources) {
  Settings& settings = host().settings();
  if (sd2_sources != 0) {
    if (const auto frig = settings.registry_number(product_key, u"TIMESTAMP FRIG", 0); frig)
      timestamp_frig_flag = *frig != 0;
  }
  const auto marlo3 = settings.registry_number(common_key, u"Allow Marlo3 files", 0);
  m_allow_marlo3_files = marlo3.value_or(0) != 0 ? 1 : 0;
}

CAES31File::~CAES31File() {
  clear_records();
  delete_all(m_automation);
}

// But for the automation.
void CAES31File::clear_records() {
  delete_all(m_sources);
  delete_all(m_events);
}
