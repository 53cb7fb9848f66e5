// The person's side of the embedded host: lines out, one line that is redrawn in
// place, and answers in.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace embedded {

class Terminal {
 public:
  // Standard input and standard error of the program, or what a test hands in. The
  // descriptors are not owned.
  explicit Terminal(int input = 0, int output = 2);
  // Takes an unfinished status line away.
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // Whether a person sits at both ends.
  [[nodiscard]] bool interactive() const { return interactive_; }
  // Columns of the screen, 80 where it does not say.
  [[nodiscard]] std::size_t columns() const;

  // A line of its own, in front of the status line. What could steer the terminal
  // is taken out of it; a line feed inside becomes a blank.
  void write_line(std::string_view text);
  // Replaces the status line, which an empty text takes away. Does nothing where
  // nobody sits.
  void set_status(std::string_view text);
  // Asks, and reads one line without its end; empty at the end of the input.
  [[nodiscard]] std::optional<std::string> ask(std::string_view prompt);

 private:
  void put(std::string_view bytes);

  int input_;
  int output_;
  bool interactive_;
  std::string status_;
};

// One line of printable text: control characters become blanks, and so do the
// UTF-8 forms of U+0080 to U+009F. One behind a blank is left out.
[[nodiscard]] std::string printable(std::string_view text);

}  // namespace embedded
