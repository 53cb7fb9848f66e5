#include "aaf/aaf_edl_file.h"

#include "aaf/essence_progress.h"
#include "aaf/export_audio.h"
#include "aaf/import_index.h"
#include "native/generic_edl_file_chunks.h"

CAAFEdlFile::CAAFEdlFile(CGenericEdl* parent, int interactive) : CGenericEdl(parent, interactive) {}

CAAFEdlFile::~CAAFEdlFile() {
  delete_all(m_sources);
  delete_all(m_events);
  delete_all(m_automation);
  delete_all(m_locator_groups);
  delete_all(m_pending_packets);
}

aaf::ImportIndex& CAAFEdlFile::import_index() {
  if (m_import_index == nullptr)
    m_import_index = std::make_unique<aaf::ImportIndex>(m_import_limits);
  return *m_import_index;
}

std::uint32_t CAAFEdlFile::sample_rate() const {
  return samples_per_second(time_base().sample_rate_index);
}

// A file with a date that is no date has no report; that changes nothing for the job.
void CAAFEdlFile::finish_logger() {
  if (m_logger == nullptr || m_logger->has_report == 0) return;
  try {
    if (m_logger->write_report() == 1) m_logger->launch_report();
  } catch (const AAFReportFailure&) {
  }
}
