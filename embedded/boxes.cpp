#include "embedded/boxes.h"

#include "embedded/interrupt.h"
#include "host/string_ids.h"

namespace embedded {

namespace {

std::u16string_view view(const wide_char* text) {
  return {text, text_length(text)};
}

BoxKind kind_of(BoxIcon icon, BoxButtons buttons) {
  if (buttons != BoxButtons::ok) return BoxKind::question;
  switch (icon) {
    case BoxIcon::information:
      return BoxKind::information;
    case BoxIcon::question:
      return BoxKind::question;
    case BoxIcon::warning:
      return BoxKind::warning;
    case BoxIcon::error:
      break;
  }
  return BoxKind::error;
}

// The first letter of an answer, in lower case; 0 for an empty line.
char first_letter(std::string_view line) {
  for (const char c : line) {
    if (c != ' ' && c != '\t' && c != '\r')
      return static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
  }
  return 0;
}

int code_of(BoxAnswer answer) {
  return answer == BoxAnswer::yes ? box_answer_yes : box_answer_no;
}

}  // namespace

const char* name_of(BoxKind kind) {
  static constexpr const char* names[] = {"error", "warning", "information", "question"};
  return names[static_cast<std::size_t>(kind)];
}

const char* name_of(BoxAnswer answer) {
  static constexpr const char* names[] = {"ok", "stop", "yes", "no"};
  return names[static_cast<std::size_t>(answer)];
}

EmbeddedBoxes::EmbeddedBoxes(const EmbeddedOptions& options, EnglishStrings& strings,
                             Terminal& terminal)
    : options_(options), strings_(strings), terminal_(terminal) {}

unsigned EmbeddedBoxes::show(const wide_char* title, const wide_char* body, unsigned style) {
  const bool may_stop = (style & style_may_stop) != 0;
  const bool limited = options_.max_reports > 0;
  if (limited && reports_ >= options_.max_reports) {
    ++suppressed_;
    strings_.forget();
    return may_stop ? result_stop : 0;
  }
  ++reports_;
  const unsigned title_id = strings_.id_behind(view(title));
  const bool warning =
      title_id == string_id::chunk_warning_title || (style & style_text_message) != 0;
  ShownBox& box =
      keep(warning ? BoxKind::warning : BoxKind::error, strings_.id_behind(view(body)), view(body));
  const bool last = limited && reports_ == options_.max_reports;
  if (last && may_stop) box.answer = BoxAnswer::stop;
  print(box);
  if (last) terminal_.write_line(options_.program_name + ": no further reports are shown");
  return box.answer == BoxAnswer::stop ? result_stop : 0;
}

int EmbeddedBoxes::ask_by_ids(unsigned, unsigned text_id, unsigned, unsigned) {
  const std::u16string text(view(strings_.load(text_id)));
  ShownBox& box = keep(BoxKind::question, text_id, text);
  box.answer = decide(box, false);
  return code_of(box.answer);
}

int EmbeddedBoxes::message(const wide_char* text, BoxIcon icon, BoxButtons buttons) {
  ShownBox& box = keep(kind_of(icon, buttons), strings_.id_behind(view(text)), view(text));
  if (buttons == BoxButtons::ok) {
    print(box);
    return box_answer_ok;
  }
  box.answer = decide(box, buttons == BoxButtons::yes_no_default_no);
  return code_of(box.answer);
}

void EmbeddedBoxes::note_place(const wide_char* path, int line) {
  path_ = utf8_from_text(view(path));
  line_ = line;
}

ShownBox& EmbeddedBoxes::keep(BoxKind kind, unsigned id, std::u16string_view text) {
  ShownBox& box = shown_.emplace_back();
  box.kind = kind;
  box.id = id;
  box.text = utf8_from_text(text);
  box.path = path_;
  box.line = line_;
  strings_.forget();
  return box;
}

void EmbeddedBoxes::print(const ShownBox& box) {
  std::string line = box.path.empty() ? options_.program_name : box.path;
  if (!box.path.empty() && box.line > 0) line += ":" + std::to_string(box.line);
  line += std::string(": ") + name_of(box.kind) + ": " + box.text;
  if (box.kind == BoxKind::question) line += std::string(" (answered ") + name_of(box.answer) + ")";
  terminal_.write_line(line);
}

BoxAnswer EmbeddedBoxes::decide(const ShownBox& box, bool default_no) {
  if (options_.assume || !terminal_.interactive()) {
    ShownBox answered = box;
    answered.answer = options_.assume.value_or(false) ? BoxAnswer::yes : BoxAnswer::no;
    print(answered);
    return answered.answer;
  }
  // At a question Ctrl-C does what it does elsewhere in the program.
  const InterruptPause pause;
  const std::string prompt = box.text + (default_no ? " [y/N] " : " [y/n] ");
  while (const auto line = terminal_.ask(prompt)) {
    const char letter = first_letter(*line);
    if (letter == 'y') return BoxAnswer::yes;
    if (letter == 'n' || (letter == 0 && default_no)) return BoxAnswer::no;
  }
  return BoxAnswer::no;
}

}  // namespace embedded
