#include "embedded/dialogs.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <optional>

#include "embedded/interrupt.h"

namespace embedded {

namespace {

using std::chrono::steady_clock;

constexpr auto least_pause = std::chrono::milliseconds(100);
constexpr std::size_t bar_width = 30;

std::string utf8(const wide_char* text) {
  return utf8_from_text({text, text_length(text)});
}

std::string one_line(const std::string& text) {
  std::string line;
  for (const char c : text) {
    if (c != '\n') {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  return line;
}

// The row of this text, else the one of this number from 1; -1 for neither.
int find_row(const ChoiceDialog& dialog, const std::string& choice) {
  const std::size_t count = dialog.rows.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (utf8_from_text(dialog.rows[i].view()) == choice) return static_cast<int>(i);
  }
  std::size_t row = 0;
  const auto read = std::from_chars(choice.data(), choice.data() + choice.size(), row);
  const bool whole = read.ec == std::errc() && read.ptr == choice.data() + choice.size();
  return whole && row >= 1 && row <= count ? static_cast<int>(row - 1) : -1;
}

class NoBar final : public ProgressWindow {
 public:
  void set_caption(const wide_char*) override {}
  void set_text(const wide_char*) override {}
  void set_position(std::uint32_t) override {}
  bool pump(Event&) override { return false; }
  void close() override {}
};

class Bar final : public ProgressWindow {
 public:
  Bar(Terminal& terminal, std::uint32_t range) : terminal_(terminal), range_(range) {}
  ~Bar() override { finish(); }
  Bar(const Bar&) = delete;
  Bar& operator=(const Bar&) = delete;

  void set_caption(const wide_char* caption) override { caption_ = utf8(caption); }
  void set_text(const wide_char* text) override { text_ = utf8(text); }

  void set_position(std::uint32_t position) override {
    const auto now = steady_clock::now();
    // A redraw for each block would cost more than the block.
    if (position < range_ && drawn_ && now - *drawn_ < least_pause) return;
    drawn_ = now;
    const std::string text = caption_.empty() ? text_ : caption_ + " " + text_;
    terminal_.set_status(progress_line(position, range_, text, terminal_.columns()));
  }

  bool pump(Event& event) override {
    if (!watch_ || !watch_->take()) return false;
    event = Event::cancel;
    return true;
  }

  void close() override { finish(); }

 private:
  void finish() {
    if (!watch_) return;
    watch_.reset();
    terminal_.set_status({});
  }

  Terminal& terminal_;
  std::uint32_t range_;
  std::string caption_;
  std::string text_;
  std::optional<steady_clock::time_point> drawn_;
  std::optional<InterruptWatch> watch_{std::in_place};
};

}  // namespace

std::string progress_line(std::uint32_t position, std::uint32_t range, const std::string& text,
                          std::size_t columns) {
  const std::uint64_t whole = std::max<std::uint32_t>(range, 1);
  const std::uint64_t done = range == 0 ? 1 : std::min<std::uint64_t>(position, whole);
  const std::size_t filled = done * bar_width / whole;
  const std::string percent = std::to_string(done * 100 / whole);
  std::string line = "[" + std::string(filled, '#') + std::string(bar_width - filled, ' ') + "] " +
                     std::string(3 - percent.size(), ' ') + percent + "%  " + text;
  // The last column stays free, or the line would wrap. A cut inside a UTF-8
  // sequence would leave half a character, so the sequence goes as a whole.
  std::size_t kept = std::min(line.size(), columns > 0 ? columns - 1 : 0);
  while (kept > 0 && kept < line.size() && (static_cast<unsigned char>(line[kept]) & 0xC0) == 0x80)
    --kept;
  return line.substr(0, kept);
}

std::unique_ptr<ProgressWindow> EmbeddedDialogs::open_progress(std::uint32_t range) {
  if (!terminal_.interactive()) return std::make_unique<NoBar>();
  return std::make_unique<Bar>(terminal_, range);
}

int EmbeddedDialogs::choose(const ChoiceDialog& dialog) {
  if (dialog.rows.empty()) return -1;
  if (options_.choice.empty() && terminal_.interactive()) return ask_for_row(dialog);
  const std::string name = options_.program_name + ": ";
  const std::string prompt = one_line(utf8(dialog.prompt));
  if (options_.choice.empty()) {
    terminal_.write_line(name + prompt + " There are:");
    list_rows(dialog);
    return -1;
  }
  const int row = find_row(dialog, options_.choice);
  if (row < 0) {
    terminal_.write_line(name + "there is no row \"" + options_.choice + "\" for \"" + prompt +
                         "\" There are:");
    list_rows(dialog);
  }
  return row;
}

void EmbeddedDialogs::list_rows(const ChoiceDialog& dialog) {
  for (std::size_t i = 0; i < dialog.rows.size(); ++i) {
    terminal_.write_line("  " + std::to_string(i + 1) + "  " +
                         utf8_from_text(dialog.rows[i].view()));
  }
}

int EmbeddedDialogs::ask_for_row(const ChoiceDialog& dialog) {
  const InterruptPause pause;
  const std::size_t count = dialog.rows.size();
  terminal_.write_line(utf8(dialog.caption));
  list_rows(dialog);
  const std::string prompt =
      utf8(dialog.prompt) + " [1-" + std::to_string(count) + ", q to cancel; 1] ";
  while (const auto line = terminal_.ask(prompt)) {
    if (line->empty()) return 0;
    if (*line == "q" || *line == "Q") return -1;
    std::size_t row = 0;
    const auto read = std::from_chars(line->data(), line->data() + line->size(), row);
    if (read.ec == std::errc() && row >= 1 && row <= count) return static_cast<int>(row - 1);
    terminal_.write_line(utf8(dialog.nothing_chosen));
  }
  return -1;
}

}  // namespace embedded
