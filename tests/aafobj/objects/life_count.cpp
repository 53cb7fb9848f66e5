// Every test of this program gives back all that it took from the library.
#include <gtest/gtest.h>

#include "aafobj/objects/counted_life.h"

namespace {

class LifeCount final : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override { m_before = aafobj::CountedLife::number(); }
  void OnTestEnd(const testing::TestInfo&) override {
    EXPECT_EQ(aafobj::CountedLife::number(), m_before)
        << "objects of the library that nobody gave back";
  }
  long m_before = 0;
};

// The list of listeners owns it.
[[maybe_unused]] const bool is_listening = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new LifeCount);
  return true;
}();

}  // namespace
