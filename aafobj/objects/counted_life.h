#pragma once

#include <atomic>

namespace aafobj {

// A base of everything that lives as long as a caller of the library holds a reference:
// interface objects, and the open files behind them. The count of all of them is there for
// tests, which are built from the library's parts; the library itself tells it nobody.
class CountedLife {
 public:
  static long number() { return s_number.load(std::memory_order_relaxed); }

 protected:
  CountedLife() { s_number.fetch_add(1, std::memory_order_relaxed); }
  CountedLife(const CountedLife&) = delete;
  CountedLife& operator=(const CountedLife&) = delete;
  ~CountedLife() { s_number.fetch_sub(1, std::memory_order_relaxed); }

 private:
  inline static std::atomic<long> s_number{0};
};

}  // namespace aafobj
