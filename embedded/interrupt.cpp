#include "embedded/interrupt.h"

#include <csignal>

namespace embedded {

namespace {

int watches = 0;
int pauses = 0;
struct sigaction before {};
volatile std::sig_atomic_t interrupted = 0;

// Only calls that are allowed inside a signal handler.
void on_interrupt(int) {
  if (interrupted == 0) {
    interrupted = 1;
    return;
  }
  ::sigaction(SIGINT, &before, nullptr);
  ::raise(SIGINT);
}

void install() {
  struct sigaction ours {};
  ours.sa_handler = on_interrupt;
  // Reads and writes that it comes into go on.
  ours.sa_flags = SA_RESTART;
  ::sigemptyset(&ours.sa_mask);
  ::sigaction(SIGINT, &ours, &before);
}

void remove() {
  ::sigaction(SIGINT, &before, nullptr);
}

}  // namespace

InterruptWatch::InterruptWatch() {
  if (watches++ == 0) {
    interrupted = 0;
    if (pauses == 0) install();
  }
}

InterruptWatch::~InterruptWatch() {
  if (--watches == 0 && pauses == 0) remove();
}

bool InterruptWatch::take() {
  if (interrupted == 0) return false;
  interrupted = 0;
  return true;
}

InterruptPause::InterruptPause() {
  if (pauses++ == 0 && watches > 0) remove();
}

InterruptPause::~InterruptPause() {
  if (--pauses == 0 && watches > 0) install();
}

}  // namespace embedded
