// The toy format of docs/adding_a_format.md: tally lists, a line an edit.
//
//   TALLY LIST 1
//   7 TAPE01 2 01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00
//
// Number, reel, track (from 1), source in and out, destination in and out, parted by
// blanks. A reel has no blanks and at most eight characters, and no edit has more
// than one track. Times are time code at the list's rates, which it does not state.
#pragma once

#include "text/text_edl.h"

class CTallyEdl : public CTextEdl {
 public:
  CTallyEdl(CGenericEdl* parent, int interactive);

  // 92 for an edit with more than one track.
  result_code write_event(CTextFile& file, CGenericEdlEntry* entry) override;
  result_code write_header(CTextFile& file, const wide_char* path) override;
  // 0 unless the first line is the head.
  int find_first_event(CTextFile& file) override;
  int is_audio_event(const wide_char* text) override;
  // 92 for a track that is no number from 1.
  result_code parse_event(CGenericEdlEntry* entry, const wide_char* text, int* skip) override;
  result_code parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) override;
};
