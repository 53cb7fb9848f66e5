// The list operations of the line formats step by step, as one would tell them:
// slow, without any index, on plain rows. The library's own are held against them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <list>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "core/generic_edl.h"

namespace support {

// What of an entry the operations read or change.
struct Row {
  std::int64_t source_in = 0;
  std::int64_t source_out = 0;
  std::int64_t dest_in = 0;
  std::int64_t dest_out = 0;
  std::vector<int> streams;
  std::u16string reel;
  std::int64_t fade_in = 0;
  std::int64_t fade_out = 0;
  int event_number = 65535;
  int first_channel = 0;
  int no_channels = 0;
  std::uint32_t transition = 0;
  std::int64_t original_source_in = 0;
  std::int64_t original_source_out = 0;
  std::int64_t original_dest_in = 0;
  std::int64_t original_dest_out = 0;
  float gain_left = 1.0F;
  float gain_right = 1.0F;
  // A mark that travels with the entry and tells equal ones apart.
  int mark = 0;

  [[nodiscard]] int stream() const { return streams.empty() ? 65535 : streams[0]; }
  friend bool operator==(const Row&, const Row&) = default;
  friend void PrintTo(const Row& row, std::ostream* out);
};

using Rows = std::list<Row>;

// The entries of a list as rows; the mark is in the entry's source_word.
[[nodiscard]] Rows rows_of(const CGenericEdl& edl);
// Adds an entry for each row.
void add_rows(CGenericEdl& edl, const Rows& rows);

// The same entries, or the first that differs of both sides.
[[nodiscard]] testing::AssertionResult same_rows(const Rows& actual, const Rows& expected);

void plain_sort_by_dest_in(Rows& rows);
void plain_sort_same_start(Rows& rows);
void plain_renumber(Rows& rows);
void plain_fold_crossfades(Rows& rows);
void plain_fold_black(Rows& rows);
void plain_merge(Rows& rows);
// `frame` in samples.
void plain_split_fades(Rows& rows, std::int64_t frame);
void plain_remove_black_pairs(Rows& rows);
// All four steps in front of an export.
void plain_split_for_export(Rows& rows, std::int64_t frame);

// A number from 0 to below `limit`.
[[nodiscard]] inline int below(std::mt19937& random, int limit) {
  return static_cast<int>(random() % static_cast<unsigned>(limit));
}

// Rows out of few different values, so that equal times, shared fades, markers and
// black reels come up often.
[[nodiscard]] Rows crowded_rows(std::mt19937& random, int count);

}  // namespace support
