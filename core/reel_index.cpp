#include "core/reel_index.h"

#include <algorithm>

#include "core/generic_reel.h"

namespace {

std::u16string folded(std::u16string_view name) {
  std::u16string key(name);
  std::transform(key.begin(), key.end(), key.begin(), fold_case);
  return key;
}

}  // namespace

CGenericReel* ReelIndex::find(const CObList& reels, std::u16string_view name) {
  if (reels.changes() != known_changes_) rebuild(reels);
  const std::u16string key = folded(name);
  auto hit = first_by_name_.find(key);
  if (hit == first_by_name_.end()) return nullptr;
  if (equal_no_case(field_text(hit->second->reel_name), name)) return hit->second;
  // A reel was renamed under the index.
  rebuild(reels);
  hit = first_by_name_.find(key);
  return hit == first_by_name_.end() ? nullptr : hit->second;
}

void ReelIndex::added(const CObList& reels, CGenericReel* reel) {
  known_changes_ = reels.changes();
  first_by_name_.try_emplace(folded(field_text(reel->reel_name)), reel);
}

void ReelIndex::rebuild(const CObList& reels) {
  first_by_name_.clear();
  for (POSITION at = reels.GetHeadPosition(); at != nullptr;) {
    auto* const reel = static_cast<CGenericReel*>(reels.GetNext(at));
    if (reel != nullptr) first_by_name_.try_emplace(folded(field_text(reel->reel_name)), reel);
  }
  known_changes_ = reels.changes();
}
