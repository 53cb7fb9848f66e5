#include "core/edl_conversion.h"

#include <gtest/gtest.h>

#include "tests/support/scripted_host.h"

namespace {

class EdlConversion : public testing::Test {
 protected:
  EdlConversion() { edl_conversion_unload(); }
  ~EdlConversion() override { edl_conversion_unload(); }
  support::ScriptedHost host_;
};

TEST_F(EdlConversion, OpensForItsOwnVersion) {
  EXPECT_EQ(EDLConversionDLLInitialise(100738457), 0);
  EXPECT_EQ(edl_conversion_open_count(), 1);
}

TEST_F(EdlConversion, RefusesAnotherVersion) {
  EXPECT_EQ(EDLConversionDLLInitialise(1), 1);
  EXPECT_EQ(edl_conversion_open_count(), 0);
}

TEST_F(EdlConversion, SettingAcceptsAnyVersion) {
  host_.keys.ini[{u"marlo3.ini", u"Tribble", u"Ignore Version Numbers"}] = 1;
  EXPECT_EQ(EDLConversionDLLInitialise(1), 0);
  EXPECT_EQ(edl_conversion_open_count(), 1);
}

TEST_F(EdlConversion, UnloadClosesAllOpens) {
  ASSERT_EQ(EDLConversionDLLInitialise(100738457), 0);
  ASSERT_EQ(EDLConversionDLLInitialise(100738457), 0);
  EDLConversionDLLWindup();
  EXPECT_EQ(edl_conversion_open_count(), 1);
  ASSERT_EQ(EDLConversionDLLInitialise(100738457), 0);
  edl_conversion_unload();
  EXPECT_EQ(edl_conversion_open_count(), 0);
}

TEST_F(EdlConversion, CloseWithoutAnOpenDoesNothing) {
  EDLConversionDLLWindup();
  EXPECT_EQ(edl_conversion_open_count(), 0);
  edl_conversion_unload();
  EXPECT_EQ(edl_conversion_open_count(), 0);
}

TEST_F(EdlConversion, LinksResourcesAtTheFirstOpenOnly) {
  host_.link_result = false;
  EXPECT_EQ(EDLConversionDLLInitialise(100738457), 0);
  EXPECT_EQ(EDLConversionDLLInitialise(100738457), 0);
  EXPECT_EQ(host_.links, 1);
}

TEST_F(EdlConversion, CountWrapsAt65536AndLinkingAgainDoesNoHarm) {
  for (int i = 0; i < 65536; ++i)
    ASSERT_EQ(EDLConversionDLLInitialise(100738457), 0);
  EXPECT_EQ(edl_conversion_open_count(), 0);
  EXPECT_EQ(EDLConversionDLLInitialise(100738457), 0);
  EXPECT_EQ(host_.links, 2);
}

}  // namespace
