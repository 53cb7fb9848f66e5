#include "tests/embedded/pty.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <stdexcept>

namespace support {

namespace {

// Everything that can be read without waiting.
std::string drained(int descriptor) {
  std::string out;
  char buffer[4096];
  while (true) {
    const ssize_t got = ::read(descriptor, buffer, sizeof buffer);
    if (got <= 0) return out;
    out.append(buffer, static_cast<std::size_t>(got));
  }
}

void set_nonblocking(int descriptor) {
  ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

void put(int descriptor, std::string_view text) {
  if (::write(descriptor, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
    throw std::runtime_error("cannot type");
}

}  // namespace

Pty::Pty() {
  if (::openpty(&person_, &terminal_, nullptr, nullptr, nullptr) != 0)
    throw std::runtime_error("no pseudo terminal");
  termios mode{};
  ::tcgetattr(terminal_, &mode);
  mode.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  mode.c_oflag &= ~static_cast<tcflag_t>(OPOST);
  ::tcsetattr(terminal_, TCSANOW, &mode);
  set_nonblocking(person_);
}

Pty::~Pty() {
  ::close(person_);
  ::close(terminal_);
}

void Pty::type(std::string_view text) const {
  put(person_, text);
}

std::string Pty::screen() {
  seen_ += drained(person_);
  return seen_;
}

void Pty::set_columns(unsigned short columns) const {
  winsize size{};
  size.ws_col = columns;
  size.ws_row = 25;
  ::ioctl(terminal_, TIOCSWINSZ, &size);
}

NoTerminal::NoTerminal(std::string_view input) {
  if (::pipe(input_) != 0 || ::pipe(output_) != 0) throw std::runtime_error("no pipe");
  put(input_[1], input);
  ::close(input_[1]);
  set_nonblocking(output_[0]);
}

NoTerminal::~NoTerminal() {
  ::close(input_[0]);
  ::close(output_[0]);
  ::close(output_[1]);
}

std::string NoTerminal::written() {
  return drained(output_[0]);
}

}  // namespace support
