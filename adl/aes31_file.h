// AES31-3 audio decision lists.
//
// Only what an edit list needs is read of a list: the sections of sources, events and
// channel automation, the crossfade length of SYSTEM, and both rates out of the one
// time of SEQUENCE. VERSION and PROJECT must be there and are not looked into; other
// sections are passed over. docs/formats/adl.md tells the form.
//
// Either direction goes through records of the native formats: events name their
// sources by number, and fades that a list leaves out are worked out over all events.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/generic_edl.h"
#include "host/framework/ob_list.h"

class EDL_API CAES31File : public CGenericEdl {
 public:
  // The last three are flags: the sources are Sound Designer II files; they belong to
  // an interchange job; a written list names them as AIFF files.
  CAES31File(CGenericEdl* parent, int interactive, int sd2_sources, int interchange_sources,
             int aiff_sources);
  ~CAES31File() override;

  // 100: read. 11: not opened or not read whole; an older report stays. 0: refused, and
  // the report says why; the generic lists are then as they were. Warnings make a report
  // as well. Runs of automation of an earlier import of this object come again.
  [[nodiscard]] result_code import_edl(const wide_char* path) override;
  // 101: written. 0: the file cannot be made. 27: a source is of a kind that the list
  // cannot name. 28: the sources are said to be Sound Designer II files and one is not.
  // After these nothing was touched. A write that the system refuses raises
  // CFileException; the file is then not whole.
  //
  // A name that ends in ".edl" gets ".adl" in its place. `option` is not used.
  [[nodiscard]] result_code export_edl(const wide_char* path, int option) override;

  // Times of the last written list that read back earlier than they are, because drop
  // frame numbers stand to the letter (correction adl_drop_frame).
  [[nodiscard]] std::size_t moved_times() const { return m_moved_times; }

 private:
  void clear_records();
  [[nodiscard]] bool read_list(std::string_view list);
  void fill_fades(std::int64_t crossfade_length);
  void build_generic_entries();
  void build_generic_automation();
  void collect_events();
  [[nodiscard]] result_code check_sources() const;
  [[nodiscard]] bool can_name(std::uint16_t source_type) const;

  // Records of the last run, owned: CGenericEDLFileTrack, CGenericEDLFileEntry and
  // CGenericEDLFileAutomationEntryChunk objects.
  CObList m_sources{10};
  CObList m_events{10};
  CObList m_automation{10};
  std::int32_t m_sd2_sources;
  std::int32_t m_interchange_sources;
  std::int32_t m_aiff_sources;
  std::int32_t m_allow_marlo3_files = 0;
  std::size_t m_moved_times = 0;
};

namespace adl {

// The name under which export_edl writes a list.
[[nodiscard]] std::u16string output_path(std::u16string_view path);

}  // namespace adl
