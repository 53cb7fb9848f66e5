#include "embedded/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace embedded {

namespace {

// Carriage return and "erase to the end of the line".
constexpr std::string_view erase_line = "\r\x1b[K";
constexpr std::size_t longest_answer = 1024;

}  // namespace

std::string printable(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool upper_control = byte == 0xC2 && i + 1 < text.size() &&
                               static_cast<unsigned char>(text[i + 1]) >= 0x80 &&
                               static_cast<unsigned char>(text[i + 1]) < 0xA0;
    if (upper_control) ++i;
    const bool control = byte < 0x20 || byte == 0x7F || upper_control;
    // The end of a paragraph is one blank, not two.
    if (control && !out.empty() && out.back() == ' ') continue;
    out += control ? ' ' : text[i];
  }
  return out;
}

Terminal::Terminal(int input, int output)
    : input_(input), output_(output), interactive_(::isatty(input) == 1 && ::isatty(output) == 1) {}

Terminal::~Terminal() {
  set_status({});
}

std::size_t Terminal::columns() const {
  winsize size{};
  if (::ioctl(output_, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return 80;
  return size.ws_col;
}

void Terminal::write_line(std::string_view text) {
  if (!status_.empty()) put(erase_line);
  put(printable(text) + "\n");
  put(status_);
}

void Terminal::set_status(std::string_view text) {
  if (!interactive_ || text == status_) return;
  put(erase_line);
  status_ = printable(text);
  put(status_);
}

std::optional<std::string> Terminal::ask(std::string_view prompt) {
  if (!status_.empty()) put(erase_line);
  put(printable(prompt));
  std::string line;
  bool ended = false;
  while (!ended) {
    char byte = 0;
    const ssize_t got = ::read(input_, &byte, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return std::nullopt;
    ended = byte == '\n';
    if (!ended && line.size() < longest_answer) line += byte;
  }
  put(status_);
  return line;
}

void Terminal::put(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t done = ::write(output_, bytes.data(), bytes.size());
    if (done < 0 && errno == EINTR) continue;
    // Nobody is left to be told.
    if (done <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(done));
  }
}

}  // namespace embedded
