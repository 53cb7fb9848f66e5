// Arithmetic on the numbers of AAF files, which may be anything: sums that stop at the
// ends of 64 bits, and conversions that have a result for every value.
#pragma once

#include <cstdint>
#include <limits>

#include "aafobj/api/aaf_types.h"

namespace aaf {

inline constexpr std::int64_t most_time = std::numeric_limits<std::int64_t>::max();

constexpr std::int64_t sum(std::int64_t a, std::int64_t b) {
  std::int64_t out = 0;
  if (!__builtin_add_overflow(a, b, &out)) return out;
  return a < 0 ? -most_time : most_time;
}

constexpr std::int64_t difference(std::int64_t a, std::int64_t b) {
  std::int64_t out = 0;
  if (!__builtin_sub_overflow(a, b, &out)) return out;
  return a < 0 ? -most_time : most_time;
}

// Cut to an integer, toward 0. No number gives 0.
constexpr std::int64_t truncated(double value) {
  constexpr double limit = 9223372036854775808.0;
  if (value != value) return 0;
  if (value >= limit) return most_time;
  if (value <= -limit) return -most_time;
  return static_cast<std::int64_t>(value);
}

// value × numerator ÷ denominator, cut toward 0: exact, but for products beyond 64 bits.
// 0 for a denominator of 0.
constexpr std::int64_t scaled(std::int64_t value, std::int64_t numerator,
                              std::int64_t denominator) {
  if (denominator == 0) return 0;
  std::int64_t product = 0;
  if (__builtin_mul_overflow(value, numerator, &product) || product == -most_time - 1) {
    return truncated(static_cast<double>(value) * static_cast<double>(numerator) /
                     static_cast<double>(denominator));
  }
  return product / denominator;
}

constexpr bool is_positive(const aafRational_t& rate) {
  return rate.numerator > 0 && rate.denominator > 0;
}

constexpr double quotient(const aafRational_t& value) {
  return static_cast<double>(value.numerator) / static_cast<double>(value.denominator);
}

}  // namespace aaf
