// AES31-3 audio decision lists.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/generic_edl.h"
#include "host/framework/ob_list.h"

class EDL_API CAES31File : public CGenericEdl {
 public:
  CAES31File(CGenericEdl* parent, int interactive, int sd2_sources, int interchange_sources,
             int aiff_sources);
  ~CAES31File() override;

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
  void collect_events();
  [[nodiscard]] result_code check_sources() const;
  [[nodiscard]] bool can_name(std::uint16_t source_type) const;

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
