#include "aafobj/objects/native_layout.h"

#include <gtest/gtest.h>

#include <cstring>

#include "aafobj/api/aaf_types.h"

namespace aafobj {
namespace {

TEST(NativeLayout, IsThatOfThePublishedStructures) {
  MetaModel model;
  const auto layout = [&](TypeIndex index) { return native_layout(model.type_of(index)); };
  EXPECT_EQ(layout(TypeIndex::AUID).size_bytes, sizeof(aafUID_t));
  EXPECT_EQ(layout(TypeIndex::AUID).alignment, alignof(aafUID_t));
  EXPECT_EQ(layout(TypeIndex::MobIDType).size_bytes, sizeof(aafMobID_t));
  EXPECT_EQ(layout(TypeIndex::Rational).size_bytes, sizeof(aafRational_t));
  EXPECT_EQ(layout(TypeIndex::TimeStamp).size_bytes, sizeof(aafTimeStamp_t));
  EXPECT_EQ(layout(TypeIndex::ProductVersion).size_bytes, sizeof(aafProductVersion_t));
  EXPECT_EQ(layout(TypeIndex::VersionType).size_bytes, sizeof(aafVersionType_t));
  EXPECT_EQ(layout(TypeIndex::RGBAComponent).size_bytes, sizeof(aafRGBAComponent_t));
  EXPECT_EQ(layout(TypeIndex::Boolean).size_bytes, sizeof(aafBoolean_t));
  EXPECT_EQ(layout(TypeIndex::PositionType).size_bytes, sizeof(aafPosition_t));
  EXPECT_EQ(layout(TypeIndex::String).size_bytes, 0u);
  EXPECT_EQ(layout(TypeIndex::DataValue).size_bytes, 0u);
}

TEST(NativeLayout, FillsAndClosesGaps) {
  MetaModel model;
  const TypeDef& type = model.type_of(TypeIndex::ProductVersion);
  const std::array<std::uint8_t, 9> stored = {1, 0, 2, 0, 3, 0, 4, 0, 5};
  aafProductVersion_t native{};
  ASSERT_TRUE(to_native(type, std::as_bytes(std::span(stored)),
                        std::as_writable_bytes(std::span(&native, 1))));
  EXPECT_EQ(native.major, 1);
  EXPECT_EQ(native.patchLevel, 4);
  EXPECT_EQ(native.type, 5);
  std::array<std::uint8_t, 9> back{};
  ASSERT_TRUE(from_native(type, std::as_bytes(std::span(&native, 1)),
                          std::as_writable_bytes(std::span(back))));
  EXPECT_EQ(back, stored);
  EXPECT_FALSE(to_native(type, std::as_bytes(std::span(stored)).first(8),
                         std::as_writable_bytes(std::span(&native, 1))));
}

}  // namespace
}  // namespace aafobj
