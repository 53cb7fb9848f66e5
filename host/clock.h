// The present moment, and identifiers that no other file has.
#pragma once

#include <array>
#include <cstdint>

#include "host/api.h"

struct CalendarTime {
  int year = 1970;
  int month = 1;  // 1 to 12
  int day = 1;    // 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;
};

struct Moment {
  CalendarTime local;
  CalendarTime utc;
};

class EDL_API Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual Moment now() = 0;
};

class EDL_API UniqueIds {
 public:
  virtual ~UniqueIds() = default;
  // A new UUID, 16 bytes in the order of its text form.
  [[nodiscard]] virtual std::array<std::uint8_t, 16> create() = 0;
};
