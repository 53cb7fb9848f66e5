#include "aafobj/objects/search_index.h"

#include <algorithm>

#include "aafobj/model/stored_values.h"
#include "aafobj/objects/stored_queries.h"

namespace aafobj {

// What the medium refused may be there the next time.
template <typename Entry, typename Reader>
const Entry& SearchIndex::entry_of(std::unordered_map<const StoredObject*, Entry>& entries,
                                   StoredObject& object, const Reader& read) {
  if (m_seen_changes != m_file->change_count()) {
    m_slots.clear();
    m_components.clear();
    m_seen_changes = m_file->change_count();
  }
  const auto [at, is_new] = entries.try_emplace(&object);
  Entry& entry = at->second;
  if (is_new || (entry.result < 0 && entry.result != AAFRESULT_BADCONTAINER)) {
    entry = Entry();
    read(entry);
  }
  return entry;
}

AAFRESULT SearchIndex::find_slot(StoredObject& mob, aafSlotID_t id, StoredObject*& slot) {
  const Slots& slots = entry_of(m_slots, mob, [&](Slots& entry) {
    std::vector<StoredObject*> found;
    const AAFRESULT there = mob.contained_objects(pid::Mob_Slots, found);
    if (there < 0 && there != AAFRESULT_PROP_NOT_PRESENT) {
      entry.result = there;
      return;
    }
    for (StoredObject* each : found) {
      aafSlotID_t slot_id = 0;
      if (get_value(*each, pid::MobSlot_SlotID, slot_id) >= 0) {
        entry.by_id.try_emplace(slot_id, each);
      }
    }
  });
  if (slots.result < 0) return slots.result;
  const auto at = slots.by_id.find(id);
  if (at == slots.by_id.end()) return AAFRESULT_SLOT_NOT_FOUND;
  slot = at->second;
  return AAFRESULT_SUCCESS;
}

AAFRESULT SearchIndex::find_component(StoredObject& sequence, aafPosition_t& position,
                                      StoredObject*& component) {
  const Components& components = entry_of(m_components, sequence, [&](Components& entry) {
    std::vector<StoredObject*> found;
    const AAFRESULT there = sequence.contained_objects(pid::Sequence_Components, found);
    if (there < 0 && there != AAFRESULT_PROP_NOT_PRESENT) {
      entry.result = there;
      return;
    }
    aafPosition_t start = 0;
    for (StoredObject* each : found) {
      const aafLength_t length = length_of(*each);
      if (each->is_kind_of(ClassIndex::Transition)) {
        start = saturating_subtract(start, length);
        continue;
      }
      const aafPosition_t end = saturating_add(start, length);
      const bool is_first = entry.places.empty();
      entry.places.push_back(
          {each, start, is_first ? end : std::max(end, entry.places.back().furthest_end)});
      start = end;
    }
  });
  if (components.result < 0) return components.result;
  // The first that ends behind the position is also the first with such a furthest end.
  const auto at = std::upper_bound(
      components.places.begin(), components.places.end(), position,
      [](aafPosition_t wanted, const Place& place) { return wanted < place.furthest_end; });
  if (at == components.places.end()) return AAFRESULT_TRAVERSAL_NOT_POSS;
  component = at->component;
  position = saturating_subtract(position, at->start);
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
