// Runs the program as a process of its own.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace support {

struct RunResult {
  // The exit code, or -1 when a signal ended it.
  int code = -1;
  // The signal that ended it, or 0.
  int signal = 0;
  std::string out;
  std::string err;
};

class ProgramRun {
 public:
  // Starts it without a terminal, with an empty standard input and a home folder of
  // its own. `in_child` runs between fork and exec, and may only call what is
  // allowed there.
  ProgramRun(const std::string& program, const std::vector<std::string>& arguments,
             const std::function<void()>& in_child = {});
  // Kills it when it still runs.
  ~ProgramRun();
  ProgramRun(const ProgramRun&) = delete;
  ProgramRun& operator=(const ProgramRun&) = delete;

  [[nodiscard]] pid_t pid() const { return pid_; }
  // Waits for its end. A program that does not end within a minute is killed.
  RunResult wait();

 private:
  pid_t pid_ = -1;
  std::string out_file_;
  std::string err_file_;
};

// edlconv, or the same program over the table with the formats of the tests behind
// the real ones.
RunResult run_edlconv(const std::vector<std::string>& arguments,
                      const std::function<void()>& in_child = {});
RunResult run_toy_edlconv(const std::vector<std::string>& arguments,
                          const std::function<void()>& in_child = {});

// The same at a pseudo terminal: what is typed waits until the program reads. `out`
// is the screen, and `err` is empty.
RunResult run_at_terminal(const std::string& program, const std::vector<std::string>& arguments,
                          const std::string& typed, unsigned short columns = 80);

// The two programs, and a file of the source tree.
std::string edlconv_path();
std::string toy_edlconv_path();
std::string source_path(const std::string& name);

// For the child: gives up the rights of root, who may read and write everything.
void become_nobody();

// Waits up to ten seconds for a file to appear.
bool wait_for_file(const std::string& path);

}  // namespace support
