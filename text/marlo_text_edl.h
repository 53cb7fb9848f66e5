// The native text EDL: a head of three lines and two lines for each edit.
//
//   Marlo v2.1 Text EDL (c) 1991-1994 Karsten Sound & Film Ltd
//   FRAME RATE=25
//   SAMPLE RATE=48
//
//   0001  TAPE01  1+2  01:00:00:00  01:00:10:00  10:00:00:00  10:00:10:00  "\"
//   1  KICK  1,2  00:00:00:01  00:00:00:02  1.00dB  KICK
//
// Number, reel, streams, source in and out, destination in and out; then the source
// channel, a short name, fade-in, fade-out, level and the short name again. Columns
// are parted by TABs, yet a reader parts them at blanks as well, so that a short
// name of eight blanks shifts the columns behind it.
#pragma once

#include "text/text_edl.h"

class EDL_API CMarloTextEdl : public CTextEdl {
 public:
  CMarloTextEdl(CGenericEdl* parent, int interactive);

  // Writes both lines. Always 101.
  result_code write_event(CTextFile& file, CGenericEdlEntry* entry) override;
  // Reads the head; 0 also for a sample rate that is none of the fifteen.
  int find_first_event(CTextFile& file) override;
  result_code write_header(CTextFile& file, const wide_char* path) override;
  // Reads a line of either kind; a first word of one character marks a second line,
  // which goes to the last entry of the list. 90, 95 with `bad_time` set, or 0 for a
  // second line.
  result_code parse_event(CGenericEdlEntry* entry, const wide_char* text, int* bad_time) override;
  result_code parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) override;
  int is_ignored_event(const wide_char* text) override;
  // Every line is one.
  int is_audio_event(const wide_char* text) override;
  int is_video_event(const wide_char* text) override;
};
