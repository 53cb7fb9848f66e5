// The chunked EDL file: a whole edit list with its sources, disc index, locators
// and automation in one binary file.
//
// Either direction goes through lists of records: a list may stand anywhere in the
// file and an edit names its source by number, so a file is read whole before the
// first generic entry is made, and all records exist before the first is written.
#pragma once

#include <cstdint>

#include "core/generic_edl.h"
#include "host/framework/ob_list.h"

class EDL_API CGenericEDLFile : public CGenericEdl {
 public:
  explicit CGenericEDLFile(CGenericEdl* parent = nullptr, int interactive = 0);
  ~CGenericEDLFile() override;

  // 100: read. 4: no head chunk. 10: a wrong magic or file version, a damaged chunk
  // or list, or a read that the system refused; the generic lists are then as they
  // were. 11: not opened.
  [[nodiscard]] result_code import_edl(const wide_char* path) override;
  // Nonzero `flag` writes the second magic and passes fade curves through the curve
  // map. 101: written. 11: not opened. A write that the system refuses raises
  // CFileException; the file is then not whole.
  [[nodiscard]] result_code export_edl(const wide_char* path, int flag) override;

 private:
  class Reader;
  class Writer;

  void clear_records();

  void build_lists();
  void build_entries();
  void build_pq();
  void collect_entries(const CObList& entries);
  void collect_pq(const CObList& entries);

  std::int32_t m_map_curves = 0;
  // Records of the last run, owned. PQ chunks stand in file order: the header, the
  // entries, then the texts of the disc if there are any.
  CObList m_tracks{10};
  CObList m_entries{10};
  CObList m_pq_chunks{10};
  CObList m_locator_chunks{10};
  CObList m_automation_chunks{10};
};
