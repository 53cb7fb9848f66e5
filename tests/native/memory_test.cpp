// Counts and sizes of a file are not believed: none makes the reader ask for memory
// that the file does not account for.
#include <gtest/gtest.h>

#include "native/generic_edl_file.h"
#include "native/marlo2_edl.h"
#include "tests/native/bytes.h"
#include "tests/native/scene.h"
#include "tests/support/faulty_allocations.h"

using namespace native_test;  // NOLINT

namespace {

// More than the readers' own buffers, and far less than any claim below.
constexpr std::uint64_t most_bytes = 300000;

template <class Edl>
void expect_modest(const std::string& bytes, result_code expected) {
  Scene<Edl> scene;
  support::write_file(scene.folder.file("in"), bytes);
  const CString path = scene.folder.wide_file("in");
  Edl edl;
  result_code told = 0;
  std::uint64_t largest = 0;
  {
    const support::FaultyAllocations none(0);
    told = edl.import_edl(path);
    largest = support::FaultyAllocations::largest();
  }
  EXPECT_EQ(told, expected);
  EXPECT_GT(largest, 0U);
  EXPECT_LE(largest, most_bytes);
}

TEST(Memory, ListThatClaimsMoreThanTheFileHolds) {
  const std::string list = list_chunk("ELST", {entry_item()});
  for (const std::uint32_t size : {0xFFFFFFFFU, 0x7FFFFFFFU, 100000000U})
    expect_modest<CGenericEDLFile>(chunk_file({patched(list, 8, le32(size))}), result::damaged);
}

TEST(Memory, ItemCountsOfAList) {
  const std::string list = list_chunk("ELST", {entry_item()});
  expect_modest<CGenericEDLFile>(chunk_file({patched(list, 12, le32(0xFFFFFFFF))}),
                                 result::damaged);
}

TEST(Memory, CountsOfRuns) {
  for (const std::uint32_t count : {0x20000000U, 0xFFFFFFFFU, 0x1FFFFFFFU}) {
    const std::string run = chunk("AUTO", joined({le32(0), le32(count), zeros(8)}));
    expect_modest<CGenericEDLFile>(chunk_file({list_chunk("ALST", {run})}), result::damaged);
  }
  const std::string locators = chunk("LCTR", joined({le16(65535), le16(0), locator(0, "", 0)}));
  expect_modest<CGenericEDLFile>(chunk_file({list_chunk("LLST", {locators})}), result::damaged);
}

TEST(Memory, StreamCountOfTheHead) {
  const std::string head =
      chunk("HDR1", joined({le32(48000), le16(1), le16(65535), le32(0)}), 0, 1);
  expect_modest<CGenericEDLFile>(file_head() + head, result::damaged);
}

TEST(Memory, EventCountsOfEdl2) {
  const std::string small = golden_bytes("edl2_small.hex");
  for (const std::size_t at : {394U, 422U, 426U})
    expect_modest<CMarlo2Edl>(patched(small, at, le32(0xFFFFFFFF)), result::damaged);
}

TEST(Memory, ReelBlocksOfEdl2) {
  const std::string block = joined({le32(1), le32(0xFFFFFFFF), zeros(64)});
  const std::string behind = joined({zeros(8), le32(0xFFFFFFFF), block});
  expect_modest<CMarlo2Edl>(patched(golden_bytes("edl2_small.hex"), 320, le32(0)) + behind,
                            result::damaged);
}

}  // namespace
