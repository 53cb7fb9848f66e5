// The one choice dialog, the one progress dialog and the wait cursor.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "host/api.h"
#include "host/framework/string.h"
#include "host/text.h"

// A modeless window with a bar and a line of text.
class EDL_API ProgressWindow {
 public:
  enum class Event { none, cancel, ok };

  virtual ~ProgressWindow() = default;
  virtual void set_caption(const wide_char* caption) = 0;
  virtual void set_text(const wide_char* text) = 0;
  // 0 to the range with which the window was opened.
  virtual void set_position(std::uint32_t position) = 0;
  // Handles one waiting event of the window's queue and says which button it
  // pressed; false when the queue is empty.
  virtual bool pump(Event& event) = 0;
  // Closes; the object is then only to be deleted.
  virtual void close() = 0;
};

struct ChoiceDialog {
  const wide_char* caption;
  const wide_char* prompt;
  // Shown when OK is pressed with no row chosen.
  const wide_char* nothing_chosen;
  std::span<const CString> rows;
};

class EDL_API Dialogs {
 public:
  virtual ~Dialogs() = default;
  // Opens the window; range is the position of a full bar.
  [[nodiscard]] virtual std::unique_ptr<ProgressWindow> open_progress(std::uint32_t range) = 0;
  // The chosen row from 0, or -1 for Cancel. The first row is chosen at the start.
  [[nodiscard]] virtual int choose(const ChoiceDialog& dialog) = 0;
  virtual void begin_wait() = 0;
  virtual void end_wait() = 0;
};
