// A person at a terminal: what the program writes can be read, and answers typed.
#pragma once

#include <string>
#include <string_view>

namespace support {

class Pty {
 public:
  Pty();
  ~Pty();
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  // The program's end, for both directions.
  [[nodiscard]] int terminal() const { return terminal_; }
  // Types; what is typed waits until the program reads.
  void type(std::string_view text) const;
  // All that was written so far, as the screen gets it. Typed text is not echoed.
  [[nodiscard]] std::string screen();
  void set_columns(unsigned short columns) const;

 private:
  int person_ = -1;
  int terminal_ = -1;
  std::string seen_;
};

// Input and output where nobody sits: an empty input, and an output to be read.
class NoTerminal {
 public:
  explicit NoTerminal(std::string_view input = {});
  ~NoTerminal();
  NoTerminal(const NoTerminal&) = delete;
  NoTerminal& operator=(const NoTerminal&) = delete;

  [[nodiscard]] int input() const { return input_[0]; }
  [[nodiscard]] int output() const { return output_[1]; }
  // What was written since the last call.
  [[nodiscard]] std::string written();

 private:
  int input_[2] = {-1, -1};
  int output_[2] = {-1, -1};
};

}  // namespace support
