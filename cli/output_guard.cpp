#include "cli/output_guard.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "cli/messages.h"

namespace cli {

namespace {

constexpr const char* aside_suffix = ".before-edlconv";
constexpr int most_aside = 1000;

// What a signal handler may still do: rename and unlink, on texts that stand
// ready. One conversion writes at most a list and its companions.
struct Rescue {
  std::array<char, PATH_MAX> path{};
  std::array<char, PATH_MAX> aside{};
};
constexpr std::size_t most_rescues = 8;
std::array<Rescue, most_rescues> rescues;
volatile std::sig_atomic_t rescue_count = 0;

constexpr std::array<int, 3> ending_signals = {SIGINT, SIGTERM, SIGHUP};

extern "C" void rescue_and_end(int signal) {
  for (int i = 0; i < rescue_count; ++i) {
    const Rescue& rescue = rescues[static_cast<std::size_t>(i)];
    if (rescue.aside[0] != '\0') {
      ::rename(rescue.aside.data(), rescue.path.data());
    } else {
      ::unlink(rescue.path.data());
    }
  }
  ::_exit(128 + signal);
}

void arm(const std::string& path, const std::string& aside) {
  const auto count = static_cast<std::size_t>(rescue_count);
  if (count >= most_rescues || path.size() >= PATH_MAX || aside.size() >= PATH_MAX) return;
  std::memcpy(rescues[count].path.data(), path.c_str(), path.size() + 1);
  std::memcpy(rescues[count].aside.data(), aside.c_str(), aside.size() + 1);
  rescue_count = rescue_count + 1;
  for (const int signal : ending_signals)
    std::signal(signal, rescue_and_end);
}

void disarm() {
  rescue_count = 0;
  for (const int signal : ending_signals)
    std::signal(signal, SIG_DFL);
}

// The file that a path leads to, through links; the path itself when there is none.
std::string real_path(const std::string& path) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::weakly_canonical(path, error);
  return error ? path : real.string();
}

std::string aside_name(const std::string& path, int number) {
  return path + aside_suffix + (number == 1 ? "" : "-" + std::to_string(number));
}

bool exists(const std::string& path) {
  struct stat about {};
  return ::lstat(path.c_str(), &about) == 0;
}

}  // namespace

OutputGuard::OutputGuard(std::vector<std::string> outputs) {
  for (const std::string& output : outputs) {
    if (!set_aside(real_path(output))) {
      ready_ = false;
      restore();
      return;
    }
  }
}

bool OutputGuard::set_aside(const std::string& path) {
  struct stat about {};
  if (::stat(path.c_str(), &about) != 0) {
    kept_.push_back({path, ""});
    arm(path, "");
    return true;
  }
  if (S_ISDIR(about.st_mode)) {
    tell(path + " is a folder");
    return false;
  }
  if (!S_ISREG(about.st_mode)) return true;
  int number = 1;
  while (number < most_aside && exists(aside_name(path, number)))
    ++number;
  const std::string aside = aside_name(path, number);
  if (number == most_aside || ::rename(path.c_str(), aside.c_str()) != 0) {
    tell(path + " could not be set aside: " + std::strerror(errno));
    return false;
  }
  kept_.push_back({path, aside});
  arm(path, aside);
  return true;
}

void OutputGuard::commit() {
  committed_ = true;
  disarm();
  for (const Kept& kept : kept_) {
    if (!kept.aside.empty()) ::unlink(kept.aside.c_str());
  }
}

void OutputGuard::restore() {
  // First of all: a signal in the middle must not undo what is brought back.
  disarm();
  for (const Kept& kept : kept_) {
    if (kept.aside.empty()) {
      ::unlink(kept.path.c_str());
    } else if (::rename(kept.aside.c_str(), kept.path.c_str()) != 0) {
      tell("the file that stood at " + kept.path + " now lies at " + kept.aside);
    }
  }
  kept_.clear();
}

OutputGuard::~OutputGuard() {
  if (!committed_) restore();
}

void tell_of_files_set_aside(const std::string& path) {
  const std::string real = real_path(path);
  for (int number = 1; number < most_aside && exists(aside_name(real, number)); ++number) {
    warn("an earlier run was stopped while it wrote " + path +
         "; the file that stood there lies at " + aside_name(real, number));
  }
}

}  // namespace cli
