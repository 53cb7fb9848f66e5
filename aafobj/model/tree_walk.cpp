#include "aafobj/model/tree_walk.h"

#include <algorithm>
#include <vector>

namespace aafobj {
namespace {

bool contains_objects(const Property& property) {
  return property.form == StoredForm::strong_reference ||
         property.form == StoredForm::strong_vector || property.form == StoredForm::strong_set;
}

}  // namespace

AAFRESULT walk_tree(StoredObject& top, const std::function<AAFRESULT(StoredObject&)>& visit) {
  std::vector<StoredObject*> pending{&top};
  std::vector<StoredObject*> contained;
  while (!pending.empty()) {
    StoredObject& object = *pending.back();
    pending.pop_back();
    if (const AAFRESULT r = object.load(); r < 0) return r;
    if (const AAFRESULT r = visit(object); r < 0) return r;
    contained.clear();
    for (const Property& property : object.properties()) {
      if (!contains_objects(property)) continue;
      const AAFRESULT r = object.contained_objects(property.pid, contained);
      if (r < 0) return r;
    }
    pending.insert(pending.end(), contained.rbegin(), contained.rend());
  }
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
