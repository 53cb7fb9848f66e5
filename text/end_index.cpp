#include "text/end_index.h"

#include <algorithm>
#include <utility>

#include "core/sample_math.h"

namespace text {

void EndIndex::add(CGenericEdlEntry* entry) {
  put({count_++, entry});
}

std::size_t EndIndex::place_of(const Key& key) const {
  const auto mixed =
      (static_cast<std::uint64_t>(key.second) * 64 + key.first) * 0x9E3779B97F4A7C15ULL;
  const std::size_t mask = slots_.size() - 1;
  std::size_t place = static_cast<std::size_t>(mixed ^ (mixed >> 32)) & mask;
  while (slots_[place].used && slots_[place].key != key)
    place = (place + 1) & mask;
  return place;
}

void EndIndex::grow() {
  std::vector<Slot> old = std::exchange(slots_, {});
  slots_.resize(std::max<std::size_t>(old.size() * 2, 64));
  for (const Slot& slot : old)
    if (slot.used) slots_[place_of(slot.key)] = slot;
}

void EndIndex::put(const Passed& passed) {
  if (used_ * 2 >= slots_.size()) grow();
  const Key key = key_of(*passed.second);
  Slot& slot = slots_[place_of(key)];
  if (!slot.used) {
    slot.used = true;
    slot.key = key;
    ++used_;
  }
  if (slot.last.second == nullptr) {
    slot.last = passed;
    return;
  }
  if (slot.others == none) {
    slot.others = static_cast<std::uint32_t>(heaps_.size());
    heaps_.emplace_back();
  }
  std::vector<Passed>& others = heaps_[slot.others];
  others.push_back(std::min(slot.last, passed));
  std::push_heap(others.begin(), others.end());
  slot.last = std::max(slot.last, passed);
}

CGenericEdlEntry* EndIndex::nearest(unsigned short stream, std::int64_t dest_out) const {
  return slots_.empty() ? nullptr : slots_[place_of({stream, dest_out})].last.second;
}

void EndIndex::let_fade_out(CGenericEdlEntry& entry, std::int64_t length) {
  Slot& slot = slots_[place_of(key_of(entry))];
  const Passed moved = std::exchange(slot.last, {});
  if (slot.others != none && !heaps_[slot.others].empty()) {
    std::vector<Passed>& others = heaps_[slot.others];
    std::pop_heap(others.begin(), others.end());
    slot.last = others.back();
    others.pop_back();
  }
  entry.source_out = plus(entry.source_out, length);
  entry.dest_out = plus(entry.dest_out, length);
  entry.fade_out_length = length;
  put(moved);
}

}  // namespace text
