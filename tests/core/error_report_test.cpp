#include "core/error_report.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "core/generic_edl.h"
#include "tests/support/scripted_host.h"

namespace {

using support::BoxRecord;

TEST(ErrorReport, EventIsPutIntoItsFormat) {
  support::ScriptedHost host;
  EXPECT_EQ(CGenericEdl::report_edl_conversion_error(18, 1, 12, 0), 0);
  ASSERT_EQ(host.boxes.shown.size(), 1U);
  EXPECT_EQ(host.boxes.shown[0].title, "[22243]");
  EXPECT_EQ(host.boxes.shown[0].body, "[22253] [22251] 12");
  EXPECT_EQ(host.boxes.shown[0].style, 16384U);
}

TEST(ErrorReport, EditKindOneHasAFormatOfItsOwn) {
  support::ScriptedHost host;
  CGenericEdl::report_edl_conversion_error(22, 1, 7, 1);
  EXPECT_EQ(host.boxes.shown.at(0).body, "[22252] [22256] 7");
}

TEST(ErrorReport, WithoutEventTheTextStandsAlone) {
  support::ScriptedHost host;
  CGenericEdl::report_edl_conversion_error(18, 0, -1, 0);
  EXPECT_EQ(host.boxes.shown.at(0).body, "[22251]");
  EXPECT_EQ(host.boxes.shown.at(0).style, 0U);
}

TEST(ErrorReport, OnlyTheStopBitIsAnswered) {
  support::ScriptedHost host;
  host.boxes.report_answers = {4097, 1};
  EXPECT_EQ(CGenericEdl::report_edl_conversion_error(1, 1, 1, 0), 4096);
  EXPECT_EQ(CGenericEdl::report_edl_conversion_error(1, 1, 1, 0), 0);
}

TEST(ErrorReport, TableOfTextIds) {
  const std::array<unsigned, 29> expected = {22230, 22231, 22232, 22233, 22234, 22235, 22236, 22237,
                                             22238, 22239, 22240, 22241, 22242, 22246, 22247, 22248,
                                             22249, 22250, 22251, 23314, 22254, 22255, 22256, 22257,
                                             22258, 22259, 24387, 24388, 25698};
  for (unsigned short i = 0; i < expected.size(); ++i)
    EXPECT_EQ(error_text_id(i), expected[i]) << i;
  EXPECT_EQ(error_text_id(29), 0U);
  EXPECT_EQ(error_text_id(65535), 0U);
  support::ScriptedHost host;
  for (unsigned short i = 0; i < expected.size(); ++i) {
    CGenericEdl::report_edl_conversion_error(i, 1, -1, 0);
    EXPECT_EQ(host.boxes.shown.back().body, "[" + std::to_string(expected[i]) + "]");
  }
}

TEST(ErrorReport, IndexBehindTheTableShowsAnEmptyBody) {
  support::ScriptedHost host;
  CGenericEdl::report_edl_conversion_error(29, 1, -1, 0);
  EXPECT_EQ(host.boxes.shown.at(0).body, "");
  CGenericEdl::report_edl_conversion_error(65535, 1, 4, 0);
  EXPECT_EQ(host.boxes.shown.at(1).body, "[22253]  4");
}

TEST(ErrorReport, LongTextsAreCutAt299) {
  support::ScriptedHost host;
  host.texts.texts[22251] = std::u16string(400, u'x');
  host.texts.texts[22243] = std::u16string(400, u't');
  CGenericEdl::report_edl_conversion_error(18, 1, -1, 0);
  EXPECT_EQ(host.boxes.shown.at(0).body, std::string(299, 'x'));
  EXPECT_EQ(host.boxes.shown.at(0).title, std::string(299, 't'));
  host.texts.texts[22253] = u"%d " + std::u16string(200, u'f') + u"%s";
  CGenericEdl::report_edl_conversion_error(18, 1, 65535, 0);
  EXPECT_EQ(host.boxes.shown.at(1).body, "65535 " + std::string(200, 'f') + std::string(93, 'x'));
}

TEST(ErrorReport, HostileFormatReadsNothingBehindItsValues) {
  support::ScriptedHost host;
  host.texts.texts[22253] = u"%n%s%s%x %d %d %%";
  CGenericEdl::report_edl_conversion_error(18, 1, 3, 0);
  EXPECT_EQ(host.boxes.shown.at(0).body, "%n[22251]%s%x 3 %d %");
}

}  // namespace
