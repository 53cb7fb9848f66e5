#include "cli/rescue.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <list>
#include <utility>

namespace cli {

namespace {

constexpr std::array<int, 3> ending_signals = {SIGINT, SIGTERM, SIGHUP};

// What a signal handler may look at: texts that stand ready and do not change.
std::atomic<const KeptFile*> files_to_rescue = nullptr;
std::atomic<std::size_t> file_count = 0;
std::array<struct sigaction, ending_signals.size()> before;
// The files of the one that lives, by generation: a handler may be looking at an earlier
// one, so all stand until the end.
std::list<std::vector<KeptFile>> generations;

void publish(std::vector<KeptFile> files) {
  const std::vector<KeptFile>& kept = generations.emplace_back(std::move(files));
  files_to_rescue = kept.data();
  // After the files: they only ever become more.
  file_count = kept.size();
}

sigset_t signal_set() {
  sigset_t set;
  ::sigemptyset(&set);
  for (const int signal : ending_signals)
    ::sigaddset(&set, signal);
  return set;
}

void say(const char* text, std::size_t size) {
  // Nobody is left to be told of a failure.
  if (::write(STDERR_FILENO, text, size) < 0) return;
}

template <std::size_t size>
void say(const char (&text)[size]) {
  say(text, size - 1);
}

// Only calls that are allowed inside a signal handler.
extern "C" void rescue_and_end(int signal) {
  // Backwards: where an old file was set aside, the new one goes first.
  std::size_t i = file_count.load();
  const KeptFile* const files = files_to_rescue.load();
  while (i-- > 0) {
    if (files[i].aside.empty()) {
      ::unlink(files[i].path.c_str());
    } else {
      ::rename(files[i].aside.c_str(), files[i].path.c_str());
    }
  }
  say("\nedlconv: interrupted; what stood there before is back\n");
  // Waits until this handler returns, and then ends the program.
  std::signal(signal, SIG_DFL);
  ::raise(signal);
}

}  // namespace

Rescue::Rescue(const std::vector<KeptFile>& files) {
  publish(files);
  struct sigaction ours {};
  ours.sa_handler = rescue_and_end;
  ours.sa_mask = signal_set();
  for (std::size_t i = 0; i < ending_signals.size(); ++i) {
    ::sigaction(ending_signals[i], nullptr, &before[i]);
    if (before[i].sa_handler != SIG_IGN) ::sigaction(ending_signals[i], &ours, nullptr);
  }
}

Rescue::~Rescue() {
  file_count = 0;
  for (std::size_t i = 0; i < ending_signals.size(); ++i)
    ::sigaction(ending_signals[i], &before[i], nullptr);
  generations.clear();
}

void Rescue::add(KeptFile file) {
  if (generations.empty()) return;
  std::vector<KeptFile> files = generations.back();
  files.push_back(std::move(file));
  publish(std::move(files));
}

SignalPause::SignalPause() {
  const sigset_t set = signal_set();
  ::sigprocmask(SIG_BLOCK, &set, &before_);
}

SignalPause::~SignalPause() {
  ::sigprocmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace cli
