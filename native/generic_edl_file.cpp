#include "native/generic_edl_file.h"

CGenericEDLFile::CGenericEDLFile(CGenericEdl* parent, int interactive)
    : CGenericEdl(parent, interactive) {}

CGenericEDLFile::~CGenericEDLFile() {
  clear_records();
}

void CGenericEDLFile::clear_records() {
  delete_all(m_entries);
  delete_all(m_tracks);
  delete_all(m_pq_chunks);
  delete_all(m_locator_chunks);
  delete_all(m_automation_chunks);
}
