// The Lightworks "OLEDB" edit list: thirteen head lines, then a table of quoted
// columns parted by commas, a line for each segment of one channel.
//
//   "A01","36000.000000","36010.000000","TAPE01","A01","03600.000000","03610.000000",
//   "PR25.0","01.000","01.000","CT","","","TAKE 1","",""            (one line)
//
//   edit_channel, edit_in, edit_out, src_reelid, src_channel, src_in, src_out,
//   src_standard, level_in, level_out, fx_op, src_index, ref_index, name, scene,
//   description
//
// Times are seconds, levels linear. There are no fades: an edit that fades is
// written as segments that meet, with a level at either end and a code:
//
//   DI fade-in   CI body behind one   CO body in front of a fade-out   DO fade-out
//   CB body between both              CT an edit without fades
//
// A crossfade is the end of one such run over the start of the next.
#pragma once

#include "text/text_edl.h"

// What transition_type holds in the entries of this format.
namespace lightworks {

inline constexpr std::uint32_t plain = 11;
inline constexpr std::uint32_t fade_in = 12;
inline constexpr std::uint32_t fade_out = 13;
inline constexpr std::uint32_t body_after_fade_in = 14;
inline constexpr std::uint32_t body_before_fade_out = 15;
inline constexpr std::uint32_t body_between_fades = 16;
// Read only: a code of another kind.
inline constexpr std::uint32_t other = 17;

}  // namespace lightworks

class EDL_API CLightworksEdl : public CTextEdl {
 public:
  CLightworksEdl(CGenericEdl* parent, int interactive);

  // 100, 4 for a head of another form, 0 when the file cannot be opened.
  result_code import_edl(const wide_char* path) override;
  // Changes the entry list: edits of several streams become mono edits, crossfades
  // are marked in both entries (or cut at their midpoint when the settings force the
  // default curves), and each entry keeps the values of the last line written of it.
  result_code export_edl(const wide_char* path, int option) override;
  result_code write_event(CTextFile& file, CGenericEdlEntry* entry) override;
  // Reads the whole head.
  int find_first_event(CTextFile& file) override;
  result_code write_header(CTextFile& file, const wide_char* path) override;
  result_code write_footer(CTextFile& file, const wide_char* path) override;
  // A line of the table, always 90.
  result_code parse_event(CGenericEdlEntry* entry, const wide_char* text, int* skip) override;
  // The same; a line of another channel than V01 leaves the entry empty.
  result_code parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) override;
  // What stands behind the table: nothing, so always 100.
  virtual result_code read_footer(CTextFile& file);

  // Head texts of the file that was read, with their closing quotes. The writer has
  // fixed texts of its own.
  CString m_variant;
  CString m_edit_cookie;
  CString m_project_name;
  CString m_edit_name;
  CString m_modification_time;
  CString m_edit_date;
  CString m_edit_label_std;
  // Not used by the library.
  std::int32_t m_words[2] = {};
  // The entries of the last export in the order of their channels; not owned.
  CObList m_by_channel{10};

 private:
  // The line is terminated.
  void add_table_line(std::u16string_view text, std::int32_t& report_flag);
  void take_standard(std::u16string_view standard);
  // A box that cannot be answered with "stop".
  void report_line(unsigned short error_index, std::uint16_t event_number) const;
  [[nodiscard]] double samples_of(std::u16string_view seconds) const;

  void rebuild();
  void merge_segments();
  void fold_midpoint_crossfades();

  void split_streams();
  void order_by_channel();
  void mark_crossfades();
  void cut_crossfades();
  result_code write_black_line(CTextFile& file);
  result_code write_line(CTextFile& file, const CGenericEdlEntry& entry) const;
};
