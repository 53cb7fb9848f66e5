// Ctrl-C as the Cancel button of a progress bar. Outside of that the program's own
// handling of the signal holds.
#pragma once

namespace embedded {

// While one lives, Ctrl-C is taken note of instead of ending the program. A second
// one that comes before the first was looked at is passed on to the handling of
// before. May nest.
class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

  // Whether Ctrl-C came since the last call.
  [[nodiscard]] bool take();
};

// While one lives, a watch that is in force sleeps.
class InterruptPause {
 public:
  InterruptPause();
  ~InterruptPause();
  InterruptPause(const InterruptPause&) = delete;
  InterruptPause& operator=(const InterruptPause&) = delete;
};

}  // namespace embedded
