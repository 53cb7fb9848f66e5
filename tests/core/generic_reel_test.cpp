#include "core/generic_reel.h"

#include <gtest/gtest.h>

#include "core/generic_edl.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"

namespace {

using support::utf8;

TEST(GenericReel, KeepsTwelveCharactersWithoutTrailingBlanks) {
  EXPECT_EQ(utf8(CGenericReel(u"ABCDEFGHIJKLMN", 1).reel_name), "ABCDEFGHIJKL");
  EXPECT_EQ(utf8(CGenericReel(u"AB  ", 1).reel_name), "AB");
  EXPECT_EQ(CGenericReel(u"A", 3).frame_rate(), 3);
  EXPECT_EQ(CGenericReel(u"A", 3).no_streams, 0);
}

TEST(GenericReel, StreamCountNeverFalls) {
  CGenericReel reel(u"A", 1);
  reel.set_reel_no_streams(4);
  reel.set_reel_no_streams(2);
  EXPECT_EQ(reel.no_streams, 4);
}

TEST(GenericReel, NameIsCopiedWithinItsSize) {
  const CGenericReel reel(u"TAPE000123", 1);
  wide_char out[16];
  reel.get_reel_name(out, 8);
  EXPECT_EQ(utf8(out), "TAPE000");
  out[0] = u'x';
  reel.get_reel_name(out, 0);
  EXPECT_EQ(out[0], u'x');
}

TEST(GenericReel, ListTextPadsTheNameTo17) {
  const support::ScriptedHost host;
  const std::pair<int, const char*> texts[] = {{0, "[20659]"},  {1, "[20660]"}, {2, "[20661]"},
                                               {3, "[20662]"},  {4, "[20663]"}, {5, "[21641]"},
                                               {255, "[21641]"}};
  for (const auto& [rate, text] : texts) {
    const CGenericReel reel(u"ABCDEFGHIJKL", static_cast<unsigned short>(rate));
    CString out;
    reel.get_reel_name_and_frame_rate_string(out);
    EXPECT_EQ(utf8(out.view()), std::string("ABCDEFGHIJKL     ") + text);
  }
}

class FindReel : public testing::Test {
 protected:
  FindReel() { support::set_rates(edl_, 2, 3); }
  CGenericEdl edl_;
};

TEST_F(FindReel, ComparesTheWholeTextWithoutCase) {
  CGenericReel* const long_reel = edl_.find_or_add_reel(u"ABCDEFGHIJKLMN");
  EXPECT_NE(edl_.find_or_add_reel(u"ABCDEFGHIJKLMN"), long_reel);
  EXPECT_EQ(edl_.get_reel_list()->GetCount(), 2);
  EXPECT_EQ(edl_.find_or_add_reel(u"abcdefghijkl"), long_reel);
  EXPECT_EQ(edl_.find_or_add_reel(u"TAPE"), edl_.find_or_add_reel(u"tape"));
}

TEST_F(FindReel, TrailingBlanksDoNotFind) {
  CGenericReel* const reel = edl_.find_or_add_reel(u"AB");
  CGenericReel* const other = edl_.find_or_add_reel(u"AB ");
  EXPECT_NE(other, reel);
  EXPECT_EQ(utf8(other->reel_name), "AB");
  EXPECT_EQ(edl_.find_or_add_reel(u"AB"), reel);
}

TEST_F(FindReel, NewReelHasTheFrameRateOfTheList) {
  EXPECT_EQ(edl_.find_or_add_reel(u"A")->frame_rate(), 3);
}

TEST_F(FindReel, SeesChangesThatOthersMadeToTheList) {
  CGenericReel* const a = edl_.find_or_add_reel(u"A");
  auto* const b = new CGenericReel(u"B", 1);
  edl_.get_reel_list()->AddHead(b);
  EXPECT_EQ(edl_.find_or_add_reel(u"B"), b);
  edl_.get_reel_list()->AddHead(nullptr);
  EXPECT_EQ(edl_.find_or_add_reel(u"A"), a);
  edl_.get_reel_list()->RemoveAt(edl_.get_reel_list()->Find(a));
  delete a;
  CGenericReel* const new_a = edl_.find_or_add_reel(u"A");
  EXPECT_EQ(edl_.get_reel_list()->GetTail(), new_a);
  set_field(new_a->reel_name, u"C");
  EXPECT_NE(edl_.find_or_add_reel(u"A"), new_a);
}

}  // namespace
