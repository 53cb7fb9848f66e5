// The Lightworks multichannel list, "Multitrack Audio": the CMX event line for up to
// eight audio channels.
//
//   TITLE: name FORMAT: Multitrack Audio
//   001  TAPE  A12   D   025   01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00
//   COMMENT: AUDIO MAPPING  FROM CH1 TO CH2
//
// A line plays one stretch of one reel, so an edit that overlaps the one before it
// on its own reel cannot be told. Its material then goes to a second list beside the
// first, the dump file ("name.dmp"), with a second of handle on each side, and the
// edit names the dump as its source: reel "900".
#pragma once

#include "text/text_edl.h"

class EDL_API CLWMultiChannelEdl : public CTextEdl {
 public:
  CLWMultiChannelEdl(CGenericEdl* parent, int interactive);

  // Reads the dump file too, when an event names it.
  result_code import_edl(const wide_char* path) override;
  // Changes the entry list: fades become events of their own, unless cuts alone are
  // wanted, and with the export mode of two passes, entries become edits of the dump.
  // 0, with the main file not touched, when a dump file is wanted and cannot be made,
  // or would have the name of the list.
  result_code export_edl(const wide_char* path, int option) override;
  unsigned short get_first_stream(const CGenericEdlEntry* entry) const override;
  result_code write_event(CTextFile& file, CGenericEdlEntry* entry) override;
  int get_format_name(wide_char* out) const override;
  result_code parse_event(CGenericEdlEntry* entry, const wide_char* text, int* skip) override;
  // 92: there are no video lines.
  result_code parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) override;
  int is_ignored_event(const wide_char* text) override;
  int is_audio_event(const wide_char* text) override;
  int is_video_event(const wide_char* text) override;
  void parse_audio_line(CGenericEdlEntry* entry, const wide_char* text) override;

  // Gives the entry the streams of its channel field: 90, or 92 for a field of a
  // length that has no meaning. `skip` becomes nonzero for a field of no known form.
  virtual result_code parse_channels(CGenericEdlEntry* entry, std::u16string_view token, int* skip);
  // Takes the length of a dissolve, in frames; what is no number changes nothing.
  virtual void parse_transition_length(CGenericEdlEntry* entry, std::u16string_view token);
  // The end of a line whose source channel is not the channel that it names.
  virtual result_code write_mapping_comment(CTextFile& file, const CGenericEdlEntry* entry);
  // The channel column; `need_comment` tells whether that comment is wanted.
  virtual result_code write_channels(CTextFile& file, const CGenericEdlEntry* entry,
                                     bool* need_comment);
  virtual result_code write_transition(CTextFile& file, const CGenericEdlEntry* entry);

 private:
  // Number, reel, channels, transition and times of a line, without its end.
  result_code write_columns(CTextFile& file, const CGenericEdlEntry* entry, bool* need_comment);
  void fold_dissolves();
  // 101 with the dump file written; 200 when there is nothing to dump.
  result_code write_dump(const wide_char* path);
  void fill_dump_list();
  void write_dump_lines(CTextFile& file, const wide_char* path);
};
