#include "adl/aes31_file.h"

#include "host/host.h"
#include "host/settings.h"

CAES31File::CAES31File(CGenericEdl* parent, int interactive, int sd2_sources,
                       int interchange_sources, int aiff_sources)
    : CGenericEdl(parent, interactive),
      m_sd2_sources(sd2_sources),
      m_interchange_sources(interchange_sources),
      m_aiff_sources(aiff_sources) {
  const auto marlo3 = host().settings().registry_number(u"Software\\Karsten Sound & Film\\VCS",
                                                        u"Allow Marlo3 files", 0);
  m_allow_marlo3_files = marlo3.value_or(0) != 0 ? 1 : 0;
}

CAES31File::~CAES31File() {
  delete_all(m_sources);
  delete_all(m_events);
  delete_all(m_automation);
}
