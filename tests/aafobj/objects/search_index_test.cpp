// The index held against looking through mobs and sequences one by one.
#include "aafobj/objects/search_index.h"

#include <gtest/gtest.h>

#include <random>

#include "aafobj/model/stored_values.h"
#include "aafobj/objects/stored_queries.h"
#include "tests/aafobj/model/object_trees.h"

namespace aafobj {
namespace {

using testing::MemoryFile;
using testing::new_file;

AAFRESULT plain_find_component(StoredObject& sequence, aafPosition_t& position,
                               StoredObject*& component) {
  std::vector<StoredObject*> components;
  const AAFRESULT there = sequence.contained_objects(pid::Sequence_Components, components);
  if (there == AAFRESULT_PROP_NOT_PRESENT) return AAFRESULT_TRAVERSAL_NOT_POSS;
  if (there < 0) return there;
  aafPosition_t start = 0;
  for (StoredObject* each : components) {
    const aafLength_t length = length_of(*each);
    if (each->is_kind_of(ClassIndex::Transition)) {
      start = saturating_subtract(start, length);
      continue;
    }
    const aafPosition_t end = saturating_add(start, length);
    if (position < end) {
      component = each;
      position = saturating_subtract(position, start);
      return AAFRESULT_SUCCESS;
    }
    start = end;
  }
  return AAFRESULT_TRAVERSAL_NOT_POSS;
}

class SearchIndexTest : public ::testing::TestWithParam<unsigned> {
 protected:
  StoredObject* made(ClassIndex cls) {
    StoredObject* object = nullptr;
    EXPECT_EQ(file().create_object(cls, object), AAFRESULT_SUCCESS);
    return object;
  }
  ObjectFile& file() { return *m_made.file; }
  std::uint32_t below(std::uint32_t count) {
    return static_cast<std::uint32_t>(m_random() % count);
  }

  StoredObject* random_component() {
    StoredObject* component = made(below(4) == 0 ? ClassIndex::Transition : ClassIndex::SourceClip);
    aafLength_t length = static_cast<aafLength_t>(below(12)) - 2;  // damaged ones are negative
    if (below(40) == 0) length = std::numeric_limits<aafLength_t>::max();
    if (below(40) == 0) return component;  // without one
    EXPECT_EQ(set_value(*component, pid::Component_Length, length), AAFRESULT_SUCCESS);
    return component;
  }

  void expect_components(StoredObject& sequence) {
    for (aafPosition_t at = -5; at < 80; ++at) {
      aafPosition_t plain_at = at;
      aafPosition_t index_at = at;
      StoredObject* plain = nullptr;
      StoredObject* found = nullptr;
      ASSERT_EQ(m_index.find_component(sequence, index_at, found),
                plain_find_component(sequence, plain_at, plain));
      ASSERT_EQ(found, plain) << at;
      ASSERT_EQ(index_at, plain_at) << at;
    }
  }

  void expect_slots(StoredObject& mob) {
    for (aafSlotID_t id = 0; id < 15; ++id) {
      StoredObject* plain = nullptr;
      StoredObject* found = nullptr;
      ASSERT_EQ(m_index.find_slot(mob, id, found), find_slot(mob, id, plain));
      ASSERT_EQ(found, plain) << id;
    }
  }

  MemoryFile m_made = new_file();
  SearchIndex m_index{*m_made.file};
  std::mt19937 m_random{GetParam()};
};

TEST_P(SearchIndexTest, FindsTheComponentsThatAWalkFinds) {
  StoredObject* sequence = made(ClassIndex::Sequence);
  expect_components(*sequence);
  for (int i = 0; i < 30; ++i) {
    ASSERT_EQ(sequence->append(pid::Sequence_Components, *random_component()), AAFRESULT_SUCCESS);
    expect_components(*sequence);
  }
  // A change of a component is one of the sequence.
  for (int i = 0; i < 20; ++i) {
    StoredObject* component = nullptr;
    ASSERT_EQ(sequence->element_at(pid::Sequence_Components, below(30), component), 0);
    ASSERT_EQ(set_value(*component, pid::Component_Length, aafLength_t{below(9)}), 0);
    expect_components(*sequence);
  }
  ASSERT_EQ(sequence->remove_at(pid::Sequence_Components, 3), AAFRESULT_SUCCESS);
  expect_components(*sequence);
}

TEST_P(SearchIndexTest, FindsTheSlotsThatAWalkFinds) {
  StoredObject* mob = made(ClassIndex::MasterMob);
  StoredObject* other = made(ClassIndex::MasterMob);
  expect_slots(*mob);
  for (int i = 0; i < 20; ++i) {
    StoredObject* slot = made(ClassIndex::TimelineMobSlot);
    // Identifiers stand twice in damaged files, or are missing.
    if (below(6) != 0) {
      ASSERT_EQ(set_value(*slot, pid::MobSlot_SlotID, aafSlotID_t{below(12)}), 0);
    }
    ASSERT_EQ((below(3) == 0 ? other : mob)->append(pid::Mob_Slots, *slot), AAFRESULT_SUCCESS);
    expect_slots(*mob);
    expect_slots(*other);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SearchIndexTest, ::testing::Range(1U, 9U));

}  // namespace
}  // namespace aafobj
