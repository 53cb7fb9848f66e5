#include "core/reel_index.h"

#include <gtest/gtest.h>

#include <random>

#include "core/generic_edl.h"
#include "core/generic_reel.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"
#include "tests/support/faulty_allocations.h"

namespace {

using support::FaultyAllocations;

// The told search: the first reel from the head whose name equals.
CGenericReel* scan(const CObList& reels, std::u16string_view name) {
  for (POSITION at = reels.GetHeadPosition(); at != nullptr;) {
    auto* const reel = static_cast<CGenericReel*>(reels.GetNext(at));
    if (reel != nullptr && equal_no_case(field_text(reel->reel_name), name)) return reel;
  }
  return nullptr;
}

class ReelIndexOfAList : public testing::Test {
 protected:
  ~ReelIndexOfAList() override { delete_all(reels_); }

  CGenericReel* add(const wide_char* name) {
    auto* const reel = new CGenericReel(name, 1);
    reels_.AddTail(reel);
    return reel;
  }

  CGenericReel* find(std::u16string_view name) { return index_.find(reels_, ReelName(name)); }

  CObList reels_;
  ReelIndex index_;
};

TEST_F(ReelIndexOfAList, FirstOfEqualNames) {
  EXPECT_EQ(find(u"A"), nullptr);
  CGenericReel* const first = add(u"Tape");
  add(u"TAPE");
  EXPECT_EQ(find(u"tape"), first);
  EXPECT_EQ(find(u"TAPE"), first);
  EXPECT_EQ(find(u"TAPE "), nullptr);
  EXPECT_EQ(find(u""), nullptr);
}

TEST_F(ReelIndexOfAList, ReelThatIsRemovedIsForgotten) {
  CGenericReel* const first = add(u"A");
  CGenericReel* const second = add(u"a");
  EXPECT_EQ(find(u"A"), first);
  delete reels_.RemoveHead();
  EXPECT_EQ(find(u"A"), second);
  delete reels_.RemoveHead();
  EXPECT_EQ(find(u"A"), nullptr);
}

TEST_F(ReelIndexOfAList, SeesReelsPutIntoNodesThatStand) {
  CGenericReel* const old_reel = add(u"A");
  EXPECT_EQ(find(u"A"), old_reel);
  auto* const new_reel = new CGenericReel(u"B", 1);
  reels_.SetAt(reels_.GetHeadPosition(), new_reel);
  EXPECT_EQ(find(u"B"), new_reel);
  EXPECT_EQ(find(u"A"), nullptr);
  delete old_reel;
}

TEST_F(ReelIndexOfAList, ReelThatLostItsNameIsNotFoundByIt) {
  CGenericReel* const reel = add(u"A");
  EXPECT_EQ(find(u"A"), reel);
  set_field(reel->reel_name, u"C");
  EXPECT_EQ(find(u"A"), nullptr);
  EXPECT_EQ(find(u"C"), reel);
}

// Names of a few letters in both cases, some longer than a reel keeps.
std::u16string random_name(std::mt19937& random) {
  constexpr wide_char letters[] = u"aAbB ";
  std::u16string name(random() % 12 == 0 ? 12 : 0, u'x');
  for (std::size_t length = 1 + random() % 2; length > 0; --length)
    name.push_back(letters[random() % 5]);
  return name;
}

// One change of the kind that a host may make to the list behind the EDL's back.
void change_list(CObList& reels, std::mt19937& random) {
  POSITION at = reels.GetHeadPosition();
  for (std::size_t skip = random() % 8; at != nullptr && skip > 0; --skip)
    reels.GetNext(at);
  const auto fresh = [&random] {
    return random() % 8 == 0 ? nullptr : new CGenericReel(random_name(random).c_str(), 1);
  };
  switch (random() % 5) {
    case 0:
      reels.AddHead(fresh());
      break;
    case 1:
      reels.AddTail(fresh());
      break;
    case 2:
      reels.InsertBefore(at, fresh());
      break;
    case 3:
      if (at == nullptr) break;
      delete reels.GetAt(at);
      reels.RemoveAt(at);
      break;
    default:
      if (at == nullptr) break;
      delete reels.GetAt(at);
      reels.SetAt(at, fresh());
      break;
  }
}

// Of every length, with units at the edges of the letters and with a high bit.
TEST(ReelName, FoldsAndComparesLikeItsUnits) {
  constexpr std::u16string_view units = u"@AZ[`az{\u00c1\u0141\u4100\u8041\uc15a\uffff09 ";
  std::mt19937 random(7);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (std::size_t length = random() % (ReelName::longest + 1); length > 0; --length)
      text.push_back(units[random() % units.size()]);
    const ReelName name(text);
    ASSERT_EQ(std::u16string(name.text()), text);
    ASSERT_EQ(name.view(), text);
    ASSERT_EQ(name.key(), ReelName(folded_case(text)).key());
    std::u16string other = text;
    if (!other.empty()) other[random() % other.size()] = units[random() % units.size()];
    ASSERT_EQ(name.key() == ReelName(other).key(), folded_case(text) == folded_case(other));
    wide_char field[ReelName::longest] = {};
    other.copy(field, ReelName::longest);
    ASSERT_EQ(name.fills(field), text == other);
  }
}

TEST(FindOrAddReel, EqualsTheScanThroughChangesFromOutside) {
  std::mt19937 random(23);
  CGenericEdl edl;
  support::set_rates(edl);
  CObList& reels = *edl.get_reel_list();
  int found_count = 0;
  for (int round = 0; round < 20000; ++round) {
    if (random() % 4 == 0) change_list(reels, random);
    if (random() % 500 == 0) edl.remove_all_reels();
    const std::u16string name = random_name(random);
    CGenericReel* const known = scan(reels, name);
    const auto count = reels.GetCount();
    CGenericReel* const found = edl.find_or_add_reel(name.c_str());
    ASSERT_NE(found, nullptr);
    if (known != nullptr) {
      ++found_count;
      ASSERT_EQ(found, known) << round << " " << support::utf8(name);
      ASSERT_EQ(reels.GetCount(), count);
    } else {
      ASSERT_EQ(reels.GetTail(), found) << round << " " << support::utf8(name);
      ASSERT_EQ(reels.GetCount(), count + 1);
      ASSERT_EQ(support::utf8(found->reel_name),
                support::utf8(trimmed_right(std::u16string_view(name).substr(0, 12))));
    }
  }
  EXPECT_GT(found_count, 5000);
}

TEST(FindOrAddReel, WithoutMemoryTheEntryKeepsTheName) {
  CGenericEdl edl;
  CGenericEdlEntry entry(&edl);
  // The list has a block of nodes, and the index its table.
  entry.set_reel_name(u"FIRST");
  {
    const FaultyAllocations faults(1);
    entry.set_reel_name(u"TAPE");
    ASSERT_EQ(FaultyAllocations::failed(), 1U);
  }
  EXPECT_EQ(entry.reel, nullptr);
  EXPECT_EQ(support::reel_of(entry), u"TAPE");
  EXPECT_EQ(edl.get_reel_list()->GetCount(), 2);
  EXPECT_EQ(edl.get_reel_list()->GetTail(), nullptr);
  // Every walk steps over the null.
  edl.show_reel_list();
  EXPECT_NE(edl.find_or_add_reel(u"TAPE"), nullptr);
  EXPECT_EQ(edl.get_reel_list()->GetCount(), 3);
  edl.remove_all_reels();
  EXPECT_TRUE(edl.get_reel_list()->IsEmpty());
}

}  // namespace
