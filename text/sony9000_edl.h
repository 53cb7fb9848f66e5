// The Sony 9000 edit list: the CMX event line with channels "A1" to "A4", lengths
// in seconds and frames, a head of two more lines and a closing "END".
//
//   TITLE: name FORMAT: Sony-9000
//
//   EDT REL MODE  TYP P S   T     P-VTR IN     P-VTR OUT    R-VTR IN     R-VTR OUT
//   BLOCK 001
//   001  TAPE01  A1A2  D   02:12   01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00
//   .
//   END
//
// Readers meet lines with a video mark in front of the audio field, without a
// transition, with a further column behind it, and with the audio field behind the
// times.
#pragma once

#include "text/cmx_edl.h"

class EDL_API CSony9000Edl : public CCMXEdl {
 public:
  CSony9000Edl(CGenericEdl* parent, int interactive);

  unsigned short get_first_stream(const CGenericEdlEntry* entry) const override;
  result_code write_header(CTextFile& file, const wide_char* path) override;
  result_code write_footer(CTextFile& file, const wide_char* path) override;
  int get_format_name(wide_char* out) const override;
  // 0 for the two words that close a list.
  int check_special_line(CGenericEdlEntry* entry, const wide_char* text) override;
  result_code parse_event(CGenericEdlEntry* entry, const wide_char* text, int* skip) override;
  result_code parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) override;
  int is_ignored_event(const wide_char* text) override;
  int is_audio_event(const wide_char* text) override;
  int is_video_event(const wide_char* text) override;
  void parse_audio_line(CGenericEdlEntry* entry, const wide_char* text) override;

  // As in CCMXEdl, and 93 for a field that is the transition already, 94 for a video
  // mark, behind which an audio field may stand; neither gives the entry a stream.
  result_code parse_channels(CGenericEdlEntry* entry, std::u16string_view token,
                             int* skip) override;
  // Takes "ss:ff".
  void parse_transition_length(CGenericEdlEntry* entry, std::u16string_view token) override;
  [[nodiscard]] int is_audio_field(std::u16string_view token) const override;
  [[nodiscard]] int is_video_field(std::u16string_view token) const override;
  [[nodiscard]] int merge_channels_wanted() const override;
  result_code write_audio_comment(CTextFile& file, const CGenericEdlEntry* entry) override;
  result_code write_channels(CTextFile& file, const CGenericEdlEntry* entry,
                             bool* need_comment) override;
  result_code write_transition(CTextFile& file, const CGenericEdlEntry* entry) override;
  [[nodiscard]] int cuts_only_wanted() const override;
};
