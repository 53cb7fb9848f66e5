// The progress bar and the choice, at a terminal.
#pragma once

#include <string>

#include "embedded/options.h"
#include "embedded/terminal.h"
#include "host/dialogs.h"

namespace embedded {

class EmbeddedDialogs final : public Dialogs {
 public:
  // Not owned.
  EmbeddedDialogs(const EmbeddedOptions& options, Terminal& terminal)
      : options_(options), terminal_(terminal) {}

  // A bar on a terminal, during which Ctrl-C is Cancel; nothing otherwise.
  std::unique_ptr<ProgressWindow> open_progress(std::uint32_t range) override;
  // By option or by the person's answer. A choice that cannot be made is cancelled, and
  // the rows are told.
  int choose(const ChoiceDialog& dialog) override;
  void begin_wait() override {}
  void end_wait() override {}

 private:
  [[nodiscard]] int ask_for_row(const ChoiceDialog& dialog);
  void list_rows(const ChoiceDialog& dialog);

  const EmbeddedOptions& options_;
  Terminal& terminal_;
};

// "[#####     ]  50%  text", at most `columns` wide.
[[nodiscard]] std::string progress_line(std::uint32_t position, std::uint32_t range,
                                        const std::string& text, std::size_t columns);

}  // namespace embedded
