#pragma once

#include <unordered_map>
#include <vector>

#include "aafobj/model/object_file.h"

namespace aafobj {

// Slots of mobs by their identifiers, and components of sequences by their places, of one file.
// A composition asks for the same mobs again with every clip, and looking through a long one
// each time would take as long as both multiplied. Any change of the file ends what was
// gathered.
class SearchIndex {
 public:
  explicit SearchIndex(ObjectFile& file) : m_file(&file) {}

  // The same as the function find_slot().
  [[nodiscard]] AAFRESULT find_slot(StoredObject& mob, aafSlotID_t id, StoredObject*& slot);

  // The component of a sequence at a position, which then counts from the component's start.
  // Transitions overlap both neighbours; in the overlap the earlier one is found.
  // Errors: TRAVERSAL_NOT_POSS behind the last.
  [[nodiscard]] AAFRESULT find_component(StoredObject& sequence, aafPosition_t& position,
                                         StoredObject*& component);

 private:
  struct Slots {
    AAFRESULT result = AAFRESULT_SUCCESS;
    std::unordered_map<aafSlotID_t, StoredObject*> by_id;  // the first of each
  };
  struct Place {
    StoredObject* component = nullptr;
    aafPosition_t start = 0;
    aafPosition_t furthest_end = 0;  // of this one and all before it
  };
  struct Components {
    AAFRESULT result = AAFRESULT_SUCCESS;
    std::vector<Place> places;  // without transitions
  };

  template <typename Entry, typename Reader>
  const Entry& entry_of(std::unordered_map<const StoredObject*, Entry>& entries,
                        StoredObject& object, const Reader& read);

  ObjectFile* m_file;  // not owned
  std::uint64_t m_seen_changes = 0;
  std::unordered_map<const StoredObject*, Slots> m_slots;
  std::unordered_map<const StoredObject*, Components> m_components;
};

}  // namespace aafobj
