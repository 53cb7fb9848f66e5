#include "tests/cli/program_run.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include "tests/embedded/pty.h"
#include "tests/support/temp_folder.h"

namespace support {

namespace {

using std::chrono::steady_clock;

constexpr auto patience = std::chrono::seconds(60);
constexpr auto pause = std::chrono::milliseconds(5);

// A folder for outputs and settings that lives as long as the tests.
const TempFolder& scratch() {
  static const TempFolder folder;
  return folder;
}

std::string next_file(const char* name) {
  static int number = 0;
  return scratch().file(name + std::to_string(++number));
}

std::vector<char*> argument_pointers(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  for (std::string& word : words)
    pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

void open_as(int descriptor, const char* path, int modes) {
  const int opened = ::open(path, modes, 0666);
  if (opened < 0 || ::dup2(opened, descriptor) < 0) ::_exit(126);
}

void set_own_home() {
  ::setenv("HOME", scratch().path().c_str(), 1);
  for (const char* const name : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "COLUMNS"})
    ::unsetenv(name);
}

// False when it did not end in time and was killed.
bool wait_for_end(pid_t pid, RunResult& result) {
  const auto end = steady_clock::now() + patience;
  int status = 0;
  bool in_time = true;
  while (true) {
    const pid_t ended = ::waitpid(pid, &status, in_time ? WNOHANG : 0);
    if (ended == pid) break;
    if (ended < 0) throw std::runtime_error("the program is no child of ours");
    if (steady_clock::now() > end && in_time) {
      in_time = false;
      ::kill(pid, SIGKILL);
    }
    std::this_thread::sleep_for(pause);
  }
  if (WIFEXITED(status)) result.code = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
  return in_time;
}

}  // namespace

ProgramRun::ProgramRun(const std::string& program, const std::vector<std::string>& arguments,
                       const std::function<void()>& in_child)
    : out_file_(next_file("out")), err_file_(next_file("err")) {
  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const std::vector<char*> pointers = argument_pointers(words);
  write_file(out_file_, "");
  write_file(err_file_, "");
  pid_ = ::fork();
  if (pid_ < 0) throw std::runtime_error("fork");
  if (pid_ > 0) return;
  open_as(STDIN_FILENO, "/dev/null", O_RDONLY);
  open_as(STDOUT_FILENO, out_file_.c_str(), O_WRONLY | O_APPEND);
  open_as(STDERR_FILENO, err_file_.c_str(), O_WRONLY | O_APPEND);
  set_own_home();
  if (in_child) in_child();
  ::execv(program.c_str(), pointers.data());
  ::_exit(127);
}

ProgramRun::~ProgramRun() {
  if (pid_ < 0) return;
  ::kill(pid_, SIGKILL);
  ::waitpid(pid_, nullptr, 0);
}

RunResult ProgramRun::wait() {
  RunResult result;
  const bool in_time = wait_for_end(pid_, result);
  pid_ = -1;
  result.out = read_file(out_file_);
  result.err = read_file(err_file_) + (in_time ? "" : "\n(killed: it did not end)");
  return result;
}

RunResult run_edlconv(const std::vector<std::string>& arguments,
                      const std::function<void()>& in_child) {
  return ProgramRun(edlconv_path(), arguments, in_child).wait();
}

RunResult run_toy_edlconv(const std::vector<std::string>& arguments,
                          const std::function<void()>& in_child) {
  return ProgramRun(toy_edlconv_path(), arguments, in_child).wait();
}

RunResult run_at_terminal(const std::string& program, const std::vector<std::string>& arguments,
                          const std::string& typed, unsigned short columns) {
  Pty pty;
  pty.set_columns(columns);
  pty.type(typed);
  ProgramRun run(program, arguments, [&pty] {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
      if (::dup2(pty.terminal(), descriptor) < 0) ::_exit(126);
    }
  });
  RunResult result = run.wait();
  result.out = pty.screen();
  return result;
}

std::string edlconv_path() {
  return EDL_PROGRAM;
}

std::string toy_edlconv_path() {
  return EDL_TOY_PROGRAM;
}

std::string source_path(const std::string& name) {
  return std::string(EDL_SOURCE_DIR) + "/" + name;
}

void become_nobody() {
  constexpr unsigned nobody = 65534;
  if (::geteuid() != 0) return;
  if (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0) ::_exit(126);
}

bool wait_for_file(const std::string& path) {
  const auto end = steady_clock::now() + std::chrono::seconds(10);
  while (!file_exists(path)) {
    if (steady_clock::now() > end) return false;
    std::this_thread::sleep_for(pause);
  }
  return true;
}

}  // namespace support
