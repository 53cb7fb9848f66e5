// The Grass Valley edit list: the CMX event line with its channels run together
// behind one "A", and lengths in seconds and frames.
//
//   TITLE: name FORMAT: Grass Valley
//   001  TAPE01  A12  D   02:12   01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00
#pragma once

#include "text/cmx_edl.h"

class EDL_API CGrassValleyEdl : public CCMXEdl {
 public:
  CGrassValleyEdl(CGenericEdl* parent, int interactive);

  unsigned short get_first_stream(const CGenericEdlEntry* entry) const override;
  int get_format_name(wide_char* out) const override;
  // 0 for "." and "END", which close a list.
  int check_special_line(CGenericEdlEntry* entry, const wide_char* text) override;
  int is_audio_event(const wide_char* text) override;
  int is_video_event(const wide_char* text) override;
  void parse_audio_line(CGenericEdlEntry* entry, const wide_char* text) override;

  // "A" with a digit 1 to 4 for each channel. The channel map is not used here.
  result_code parse_channels(CGenericEdlEntry* entry, std::u16string_view token,
                             int* skip) override;
  // Takes "ss:ff".
  void parse_transition_length(CGenericEdlEntry* entry, std::u16string_view token) override;
  [[nodiscard]] int is_audio_field(std::u16string_view token) const override;
  [[nodiscard]] int is_video_field(std::u16string_view token) const override;
  [[nodiscard]] int merge_channels_wanted() const override;
  result_code write_audio_comment(CTextFile& file, const CGenericEdlEntry* entry) override;
  // All four channels have their place, so no note is ever needed.
  result_code write_channels(CTextFile& file, const CGenericEdlEntry* entry,
                             bool* need_comment) override;
  result_code write_transition(CTextFile& file, const CGenericEdlEntry* entry) override;
  [[nodiscard]] int cuts_only_wanted() const override;
};
