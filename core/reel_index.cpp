#include "core/reel_index.h"

#include <algorithm>
#include <utility>

#include "core/generic_reel.h"

namespace {

// No reel has a name of more units.
constexpr std::size_t longest_name = sizeof(CGenericReel::reel_name) / sizeof(wide_char);

// In words: a comparison of bytes would wait until a key just made is in memory.
bool equal(const std::array<std::uint64_t, 4>& a, const std::array<std::uint64_t, 4>& b) {
  return ((a[0] ^ b[0]) | (a[1] ^ b[1]) | (a[2] ^ b[2]) | (a[3] ^ b[3])) == 0;
}

}  // namespace

ReelIndex::Key ReelIndex::key_of(std::u16string_view name) {
  constexpr std::size_t units_a_word = 4;
  static_assert(longest_name <= units_a_word * std::tuple_size_v<Key>);
  Key key{};
  for (std::size_t word = 0; word * units_a_word < name.size(); ++word) {
    std::uint64_t units = 0;
    for (const wide_char c : name.substr(word * units_a_word, units_a_word))
      units = units << 16 | fold_case(c);
    key[word] = units;
  }
  return key;
}

std::size_t ReelIndex::place_of(const Key& key) const {
  std::uint64_t mixed = 0;
  for (const std::uint64_t units : key) {
    mixed = (mixed ^ units) * 0x9E3779B97F4A7C15ULL;
    mixed ^= mixed >> 32;
  }
  const std::size_t mask = slots_.size() - 1;
  std::size_t place = mixed & mask;
  while (slots_[place].reel != nullptr && !equal(slots_[place].key, key))
    place = (place + 1) & mask;
  return place;
}

CGenericReel* ReelIndex::known(const Key& key) const {
  return slots_.empty() ? nullptr : slots_[place_of(key)].reel;
}

CGenericReel* ReelIndex::find(const CObList& reels, std::u16string_view name) {
  if (reels.changes() != known_changes_) rebuild(reels);
  // Events in a row often come from one reel.
  if (last_ != nullptr && field_text(last_->reel_name) == name) return last_;
  if (name.size() > longest_name) return nullptr;
  const Key key = key_of(name);
  CGenericReel* const reel = known(key);
  if (reel == nullptr) return nullptr;
  if (equal_no_case(field_text(reel->reel_name), name)) return last_ = reel;
  // A reel was renamed under the index.
  rebuild(reels);
  return known(key);
}

void ReelIndex::added(const CObList& reels, CGenericReel* reel) {
  known_changes_ = reels.changes();
  put(reel);
}

void ReelIndex::put(CGenericReel* reel) {
  if (used_ * 2 >= slots_.size()) grow();
  const Key key = key_of(field_text(reel->reel_name));
  Slot& slot = slots_[place_of(key)];
  if (slot.reel != nullptr) return;
  slot = {key, reel};
  ++used_;
}

void ReelIndex::grow() {
  std::vector<Slot> old(std::max<std::size_t>(slots_.size() * 2, 64));
  std::swap(old, slots_);
  for (const Slot& slot : old) {
    if (slot.reel != nullptr) slots_[place_of(slot.key)] = slot;
  }
}

void ReelIndex::rebuild(const CObList& reels) {
  slots_.clear();
  used_ = 0;
  last_ = nullptr;
  for (POSITION at = reels.GetHeadPosition(); at != nullptr;) {
    auto* const reel = static_cast<CGenericReel*>(reels.GetNext(at));
    if (reel != nullptr) put(reel);
  }
  known_changes_ = reels.changes();
}
