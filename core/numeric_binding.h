// A number that the host's binding framework can watch. The library only sets and
// reads it.
#pragma once

#include <cstdint>

#include "host/framework/object.h"

class EDL_API CNumericBinding : public CObject {
 public:
  // `notify` tells the host's framework, where there is one, that the value changed.
  void set_value(std::int64_t value, int notify = 0) {
    static_cast<void>(notify);
    value_ = value;
  }
  void set_word(std::uint32_t word) { word_ = word; }
  void set_both(std::int64_t value, std::uint32_t word) {
    value_ = value;
    word_ = word;
  }
  [[nodiscard]] std::int64_t get_value() const { return value_; }
  [[nodiscard]] std::uint32_t get_word() const { return word_; }

 private:
  std::int64_t value_ = 0;
  std::uint32_t word_ = 0;
};
