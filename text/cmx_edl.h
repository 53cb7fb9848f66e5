// The CMX 340 (two channels) and CMX 3600 (four channels) edit lists.
//
//   TITLE: name FORMAT: CMX 3600 4-Ch
//   001  TAPE01  A     C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00
//
// An event line names its number, reel, channels, transition with its length in
// frames, source in and out, destination in and out. Channels 3 and 4 stand on an
// "AUD" line behind an event of channel "NONE". "FCM:" lines give the frame rate,
// "COMMENT:" lines an audio mapping. Fades are dissolves from and to reel "BLK".
#pragma once

#include "text/text_edl.h"

class EDL_API CCMXEdl : public CTextEdl {
 public:
  // 2 for the CMX 340 form, 4 for the CMX 3600 form.
  CCMXEdl(unsigned char max_channels, CGenericEdl* parent, int interactive);

  result_code import_edl(const wide_char* path) override;
  // Changes the entry list: fades become events of their own, unless cuts alone are
  // wanted, and events are numbered.
  result_code export_edl(const wide_char* path, int option) override;
  unsigned short get_first_stream(const CGenericEdlEntry* entry) const override;
  result_code write_event(CTextFile& file, CGenericEdlEntry* entry) override;
  int get_format_name(wide_char* out) const override;
  result_code parse_event(CGenericEdlEntry* entry, const wide_char* text, int* skip) override;
  result_code parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) override;
  int is_audio_event(const wide_char* text) override;
  int is_video_event(const wide_char* text) override;
  void parse_audio_line(CGenericEdlEntry* entry, const wide_char* text) override;
  void parse_video_line(CGenericEdlVideoEntry* entry, const wide_char* text) override;

  // What the formats of this family change.

  // Gives the entry the streams of its channel field: 90, or 92 for a field that
  // cannot be read. `skip` becomes nonzero for a field of no known form.
  virtual result_code parse_channels(CGenericEdlEntry* entry, std::u16string_view token, int* skip);
  // Takes the length field of a transition; one that is no number changes nothing.
  virtual void parse_transition_length(CGenericEdlEntry* entry, std::u16string_view token);
  [[nodiscard]] virtual int is_audio_field(std::u16string_view token) const;
  [[nodiscard]] virtual int is_video_field(std::u16string_view token) const;
  [[nodiscard]] virtual int merge_channels_wanted() const;
  // The end of a line that needs a note of its channels.
  virtual result_code write_audio_comment(CTextFile& file, const CGenericEdlEntry* entry);
  // The channel column. `need_comment` tells whether the note is wanted.
  virtual result_code write_channels(CTextFile& file, const CGenericEdlEntry* entry,
                                     bool* need_comment);
  virtual result_code write_transition(CTextFile& file, const CGenericEdlEntry* entry);
  [[nodiscard]] virtual int cuts_only_wanted() const;

 protected:
  // The columns in front of the channels: number and reel. Behind them: the times.
  [[nodiscard]] static bool add_number_and_reel(CTextFile& file, const CGenericEdlEntry& entry);
  [[nodiscard]] static bool add_times(CTextFile& file, const CGenericEdlEntry& entry);
  // Event number and reel of a line, into an audio or a video entry.
  static void take_number_and_reel(class LineCursor& line, CGenericEdlEntry& entry);
  static void take_number_and_reel(class LineCursor& line, CGenericEdlVideoEntry& entry);
  // Used fields of a line, by channel_map or else by the mode.
  void apply_channels(const int (&flags)[4], unsigned mode, CGenericEdlEntry* entry) const;
  // The word that begins a line decides: an "FCM:" line, or a comment.
  void take_fcm_or_comment(CGenericEdlEntry* entry, const wide_char* text, int allow_comments);

 private:
  void take_aud_line(CGenericEdlEntry* entry, std::u16string_view rest);
  void fold_black_edits();

  std::uint8_t max_channels_;
};
