#include "aafobj/model/path_index.h"

#include <map>
#include <unordered_map>
#include <vector>

#include "aafobj/model/stored_object.h"

namespace aafobj {

// The sets that one property of a level's objects holds.
struct PathIndex::Set {
  std::map<StoredKey, StoredObject*> owners;  // the first object whose set has the key
  AAFRESULT end = AAFRESULT_SUCCESS;          // of a search for any other key
};

// All objects to which the same properties lead from the root, in the order of a walk.
struct PathIndex::Level {
  std::vector<StoredObject*> objects;
  AAFRESULT end = AAFRESULT_SUCCESS;  // of a search that has passed them all
  bool has_sets = false;
  std::unordered_map<std::uint16_t, Set> sets;
  AAFRESULT sets_end = AAFRESULT_SUCCESS;
  bool has_below = false;
  std::unordered_map<std::uint16_t, std::unique_ptr<Level>> below;
  AAFRESULT below_end = AAFRESULT_SUCCESS;
};

namespace {

// Visits the properties until an object cannot be read, which is where every search ends. The
// result is what a search ends with that comes to the end.
template <typename Visitor>
AAFRESULT visit_properties(std::span<StoredObject* const> objects, AAFRESULT end,
                           const Visitor& visit) {
  for (StoredObject* object : objects) {
    if (const AAFRESULT r = object->load(); r < 0) return r;
    for (const Property& property : object->properties())
      visit(*object, property);
  }
  return end;
}

bool is_strong(StoredForm form) {
  return form == StoredForm::strong_reference || form == StoredForm::strong_vector ||
         form == StoredForm::strong_set;
}

}  // namespace

PathIndex::PathIndex() = default;
PathIndex::~PathIndex() = default;

void PathIndex::clear() {
  m_top.reset();
}

void PathIndex::open_sets(Level& level) {
  if (level.has_sets) return;
  level.has_sets = true;
  level.sets_end = visit_properties(
      level.objects, level.end, [&](StoredObject& object, const Property& property) {
        if (property.form != StoredForm::strong_set) return;
        Set& set = level.sets[property.pid];
        if (set.end < 0) return;
        std::size_t count = 0;
        set.end = object.count_elements(property.pid, count);  // reads the keys
        if (set.end < 0) return;
        for (const auto& [key, element] : std::get<StrongSetValue>(*property.value).elements)
          set.owners.try_emplace(key, &object);
      });
  for (auto& [pid, set] : level.sets) {
    if (set.end >= 0) set.end = level.sets_end;
  }
}

void PathIndex::open_below(Level& level) {
  if (level.has_below) return;
  level.has_below = true;
  level.below_end = visit_properties(
      level.objects, level.end, [&](StoredObject& object, const Property& property) {
        if (!is_strong(property.form)) return;
        std::unique_ptr<Level>& below = level.below[property.pid];
        if (!below) below = std::make_unique<Level>();
        if (below->end < 0) return;
        std::vector<StoredObject*> contained;
        below->end = object.contained_objects(property.pid, contained);
        if (below->end < 0) return;
        below->objects.insert(below->objects.end(), contained.begin(), contained.end());
      });
  for (auto& [pid, below] : level.below) {
    if (below->end >= 0) below->end = level.below_end;
  }
}

AAFRESULT PathIndex::find(StoredObject& root, std::span<const std::uint16_t> path,
                          const StoredKey& key, StoredObject*& object) {
  if (!m_top) {
    m_top = std::make_unique<Level>();
    m_top->objects.push_back(&root);
    m_top->end = AAFRESULT_OBJECT_NOT_FOUND;
  }
  Level* level = m_top.get();
  AAFRESULT end = AAFRESULT_SUCCESS;
  for (const std::uint16_t pid : path.first(path.size() - 1)) {
    open_below(*level);
    const auto at = level->below.find(pid);
    if (at == level->below.end()) {
      end = level->below_end;
      break;
    }
    level = at->second.get();
  }
  if (end >= 0) {
    open_sets(*level);
    const auto set = level->sets.find(path.back());
    end = set == level->sets.end() ? level->sets_end : set->second.end;
    if (set != level->sets.end()) {
      const auto owner = set->second.owners.find(key);
      if (owner != set->second.owners.end()) {
        return owner->second->find_element(path.back(), key, object);
      }
    }
  }
  // What the medium refused may be there the next time.
  if (end != AAFRESULT_OBJECT_NOT_FOUND && end != AAFRESULT_BADCONTAINER) clear();
  return end;
}

}  // namespace aafobj
