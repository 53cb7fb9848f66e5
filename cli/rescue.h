// Puts files back when a signal ends the program in the middle of an export.
#pragma once

#include <csignal>
#include <string>
#include <vector>

namespace cli {

struct KeptFile {
  std::string path;
  // Where the file of that path lies meanwhile; empty when none stood there, so that
  // what stands there later goes.
  std::string aside;
};

// While one lives, SIGINT, SIGTERM and SIGHUP first bring the files back and then
// end the program as they would have. A signal that was ignored stays so. Only one
// may live at a time.
class Rescue {
 public:
  explicit Rescue(const std::vector<KeptFile>& files);
  ~Rescue();
  Rescue(const Rescue&) = delete;
  Rescue& operator=(const Rescue&) = delete;

  // One more file for the one that lives, if any.
  static void add(KeptFile file);
};

// While one lives, these signals wait. May nest.
class SignalPause {
 public:
  SignalPause();
  ~SignalPause();
  SignalPause(const SignalPause&) = delete;
  SignalPause& operator=(const SignalPause&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace cli
