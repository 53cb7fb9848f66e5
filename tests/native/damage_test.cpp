// Files that are cut or flipped anywhere: a told result, and nothing half-made.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "native/generic_edl_file.h"
#include "native/marlo2_edl.h"
#include "tests/native/bytes.h"
#include "tests/native/scene.h"

using namespace native_test;  // NOLINT
using testing::AnyOf;
using testing::IsEmpty;

namespace {

const std::string patterns = "\x01\x80\xFF";

std::string flipped(std::string bytes, std::size_t at, char pattern) {
  bytes[at] = static_cast<char>(bytes[at] ^ pattern);
  return bytes;
}

class DamagedChunks : public testing::Test, protected Scene<CGenericEDLFile> {
 protected:
  void expect_told(result_code told) {
    EXPECT_THAT(told, AnyOf(result::import_complete, result::wrong_format, result::damaged));
    if (told == result::import_complete) return;
    EXPECT_THAT(entries_of(*edl), IsEmpty());
    EXPECT_THAT(pq_of(*edl), IsEmpty());
    EXPECT_THAT(locators_of(*edl), IsEmpty());
    EXPECT_THAT(automation_of(*edl), IsEmpty());
  }
};

// Where the lists of the small file begin, and its end.
constexpr std::size_t list_starts[] = {0x20, 0x140, 0x198, 0x268, 0x2A0, 724};

TEST_F(DamagedChunks, CutAnywhere) {
  const std::string small = golden_bytes("chunk_small.hex");
  for (std::size_t length = 0; length <= small.size(); ++length) {
    result_code expected = result::damaged;
    if (length >= 8 && length < 20) expected = result::wrong_format;
    // A header that is not whole is the end of the file.
    for (const std::size_t start : list_starts) {
      if (length >= start && length < start + 12) expected = result::import_complete;
    }
    const result_code told = import(small.substr(0, length));
    EXPECT_EQ(told, expected) << length;
    expect_told(told);
  }
}

// Offsets whose bytes hold ids, sizes and counts.
std::set<std::size_t> structure_of_small() {
  std::set<std::size_t> offsets;
  const auto add = [&offsets](std::size_t at, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
      offsets.insert(at + i);
  };
  const auto add_header = [&add](std::size_t at) {
    add(at, 4);
    add(at + 8, 4);
  };
  add(0, 8);
  add_header(8);
  add(8 + 12 + 6, 2);
  for (const std::size_t start : {0x20U, 0x140U, 0x198U, 0x268U, 0x2A0U}) {
    add_header(start);
    add(start + 12, 4);
    add_header(start + 16);
  }
  add_header(0x198 + 16 + 12 + 16);
  add(0x268 + 28, 2);
  add(0x2A0 + 28 + 4, 4);
  return offsets;
}

TEST_F(DamagedChunks, FlippedAnywhere) {
  const std::string small = golden_bytes("chunk_small.hex");
  const std::set<std::size_t> structure = structure_of_small();
  for (std::size_t at = 0; at < small.size(); ++at) {
    for (const char pattern : patterns) {
      const result_code told = import(flipped(small, at, pattern));
      expect_told(told);
      // Texts, numbers and versions may hold anything.
      if (!structure.contains(at)) {
        EXPECT_EQ(told, result::import_complete) << at;
      }
      if (at < 8) {
        EXPECT_EQ(told, result::damaged) << at;
      }
    }
  }
}

TEST_F(DamagedChunks, WhatWasReadFromADamagedFileCanBeWritten) {
  const std::string small = golden_bytes("chunk_small.hex");
  for (std::size_t at = 0; at < small.size(); ++at) {
    if (import(flipped(small, at, '\xFF')) != result::import_complete) continue;
    EXPECT_EQ(export_from(*edl), result::done) << at;
  }
}

class DamagedEdl2 : public testing::Test, protected Scene<CMarlo2Edl> {};

TEST_F(DamagedEdl2, CutAnywhere) {
  const std::string small = golden_bytes("edl2_small.hex");
  for (std::size_t length = 0; length <= small.size(); ++length) {
    const result_code told = import(small.substr(0, length));
    const result_code expected = length < 430            ? result::wrong_format
                                 : length < small.size() ? result::damaged
                                                         : result::import_complete;
    EXPECT_EQ(told, expected) << length;
    EXPECT_EQ(entries_of(*edl).size(), told == result::import_complete ? 2U : 0U) << length;
  }
}

TEST_F(DamagedEdl2, FlippedAnywhere) {
  const std::string small = golden_bytes("edl2_small.hex");
  for (std::size_t at = 0; at < small.size(); ++at) {
    for (const char pattern : patterns) {
      const result_code told = import(flipped(small, at, pattern));
      EXPECT_THAT(told, AnyOf(result::import_complete, result::wrong_format, result::damaged));
      // Where extensions lie, and the counts: the file is then longer than it is, or
      // there are bytes left behind.
      const bool place_or_count = (at >= 320 && at < 324) || (at >= 394 && at < 430);
      if (!place_or_count) {
        EXPECT_EQ(told, at < 4 ? result::wrong_format : result::import_complete) << at;
      }
      if (told != result::import_complete) {
        EXPECT_THAT(entries_of(*edl), IsEmpty()) << at;
      }
    }
  }
}

TEST_F(DamagedEdl2, WhatWasReadFromADamagedFileCanBeWritten) {
  const std::string small = golden_bytes("edl2_small.hex");
  for (std::size_t at = 0; at < small.size(); ++at) {
    if (import(flipped(small, at, '\xFF')) != result::import_complete) continue;
    EXPECT_THAT(export_from(*edl), AnyOf(result::done, result::refused)) << at;
  }
}

}  // namespace
