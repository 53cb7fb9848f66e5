// Boxes that tell or ask something. They may be shown in the middle of a run.
#pragma once

#include "host/api.h"
#include "host/text.h"

enum class BoxIcon { information, question, warning, error };
enum class BoxButtons { ok, yes_no, yes_no_default_no };

// What a box answered.
inline constexpr int box_answer_ok = 1;
inline constexpr int box_answer_yes = 6;
inline constexpr int box_answer_no = 7;

class EDL_API MessageBoxes {
 public:
  // The style word that offers "stop reporting", and the bit of the result word
  // that asks for it.
  static constexpr unsigned style_may_stop = 16384;
  static constexpr unsigned result_stop = 4096;
  // The style of a plain text message.
  static constexpr unsigned style_text_message = 2;
  // Words of ask_by_ids.
  static constexpr unsigned buttons_yes_no = 4;
  static constexpr unsigned icon_question = 2;
  static constexpr unsigned icon_warning = 3;

  virtual ~MessageBoxes() = default;

  // A report. The result word holds result_stop when the person wants no more of
  // them.
  virtual unsigned show(const wide_char* title, const wide_char* body, unsigned style) = 0;
  // A question by string ids. Answers 6 for Yes.
  virtual int ask_by_ids(unsigned title_id, unsigned text_id, unsigned buttons, unsigned icon) = 0;
  // A message with no title of its own. Answers one of box_answer_….
  virtual int message(const wide_char* text, BoxIcon icon, BoxButtons buttons) = 0;

  // Where the run stands, told in front of a box: the file, and its line from 1
  // (0: not known). A host may name the place beside the box's text.
  virtual void note_place(const wide_char* path, int line) = 0;
};
