#include <gtest/gtest.h>

#include "core/generic_automation.h"
#include "core/generic_locator_entry.h"
#include "core/generic_pq_entry.h"
#include "core/numeric_binding.h"

namespace {

TEST(SideRecords, NewPqEntryIsEmpty) {
  const CGenericPQEntry entry;
  EXPECT_TRUE(entry.first_text.IsEmpty() && entry.second_text.IsEmpty() &&
              entry.third_text.IsEmpty() && entry.isrc.IsEmpty());
  EXPECT_EQ(entry.position_a, 0);
  EXPECT_EQ(entry.position_b, 0);
  EXPECT_EQ(entry.track_number + entry.index_number + entry.flag_a + entry.flag_b, 0);
}

TEST(SideRecords, NewLocatorIsEmpty) {
  const CGenericLocatorEntry entry;
  EXPECT_EQ(entry.time, 0);
  EXPECT_TRUE(entry.name.IsEmpty());
  EXPECT_EQ(entry.locator_value, 0);
}

TEST(SideRecords, NewAutomationHasNoPoints) {
  auto* const chunk = new CGenericAutomationChunk;
  EXPECT_EQ(chunk->type + chunk->channel, 0);
  EXPECT_EQ(chunk->no_points, 0U);
  EXPECT_EQ(chunk->points, nullptr);
  chunk->points = new CObList(10);
  EXPECT_TRUE(chunk->points->IsEmpty());
  delete_automation_chunk(chunk);
}

TEST(SideRecords, BindingHoldsAValueAndAWord) {
  CNumericBinding binding;
  binding.set_value(0x123456789ABCDEF0, 1);
  EXPECT_EQ(binding.get_value(), 0x123456789ABCDEF0);
  EXPECT_EQ(binding.get_word(), 0U);
  binding.set_word(7);
  EXPECT_EQ(binding.get_word(), 7U);
  binding.set_both(-1, 9);
  EXPECT_EQ(binding.get_value(), -1);
  EXPECT_EQ(binding.get_word(), 9U);
}

}  // namespace
