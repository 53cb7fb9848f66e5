// Message boxes as lines on standard error and questions at the terminal, all of
// them kept for whoever asks later.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "embedded/options.h"
#include "embedded/strings.h"
#include "embedded/terminal.h"
#include "host/message_boxes.h"

namespace embedded {

enum class BoxKind { error, warning, information, question };
enum class BoxAnswer { ok, stop, yes, no };

// "error", "warning", "information", "question"; "ok", "stop", "yes", "no".
[[nodiscard]] const char* name_of(BoxKind kind);
[[nodiscard]] const char* name_of(BoxAnswer answer);

struct ShownBox {
  BoxKind kind = BoxKind::error;
  // The string id of the message; 0 for a text that has none.
  unsigned id = 0;
  // UTF-8, as the library composed it.
  std::string text;
  BoxAnswer answer = BoxAnswer::ok;
  // The file and its line (0: not known) that the run stood at; may be empty.
  std::string path;
  int line = 0;
};

class EmbeddedBoxes final : public MessageBoxes {
 public:
  // None of them owned.
  EmbeddedBoxes(const EmbeddedOptions& options, EnglishStrings& strings, Terminal& terminal);

  unsigned show(const wide_char* title, const wide_char* body, unsigned style) override;
  int ask_by_ids(unsigned title_id, unsigned text_id, unsigned buttons, unsigned icon) override;
  int message(const wide_char* text, BoxIcon icon, BoxButtons buttons) override;
  void note_place(const wide_char* path, int line) override;

  // All boxes in the order in which they came up, but for those that were not
  // shown any more once the limit of reports was reached.
  [[nodiscard]] const std::vector<ShownBox>& shown() const { return shown_; }
  // How many reports were not shown.
  [[nodiscard]] std::size_t suppressed() const { return suppressed_; }

 private:
  ShownBox& keep(BoxKind kind, unsigned id, std::u16string_view text);
  void print(const ShownBox& box);
  [[nodiscard]] BoxAnswer decide(const ShownBox& box, bool default_no);

  const EmbeddedOptions& options_;
  EnglishStrings& strings_;
  Terminal& terminal_;
  std::vector<ShownBox> shown_;
  std::size_t reports_ = 0;
  std::size_t suppressed_ = 0;
  std::string path_;
  int line_ = 0;
};

}  // namespace embedded
