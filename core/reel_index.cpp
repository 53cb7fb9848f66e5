#include "core/reel_index.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "core/generic_reel.h"

namespace {

static_assert(sizeof(CGenericReel::reel_name) == ReelName::longest * sizeof(wide_char));

std::uint64_t load(const wide_char* units) {
  std::uint64_t word = 0;
  std::memcpy(&word, units, sizeof word);
  return word;
}

// fold_case of four units.
constexpr std::uint64_t fold_units(std::uint64_t units) {
  constexpr std::uint64_t ones = 0x0001000100010001;
  constexpr std::uint64_t high = ones << 15;
  // No sum of two units leaves its 16 bits.
  const std::uint64_t low = units & ~high;
  const std::uint64_t from_a = low + ones * (0x8000 - u'A');
  const std::uint64_t beyond_z = low + ones * (0x8000 - u'Z' - 1);
  return units + ((from_a & ~beyond_z & ~units & high) >> 10);
}
static_assert(fold_units(0x0041005A0040005B) == 0x0061007A0040005B);
static_assert(fold_units(0x8041FFFF00610000) == 0x8041FFFF00610000);

// In words: a comparison of bytes would wait until a key just made is in memory.
bool equal(const ReelName::Words& a, const ReelName::Words& b) {
  return ((a[0] ^ b[0]) | (a[1] ^ b[1]) | (a[2] ^ b[2]) | (a[3] ^ b[3])) == 0;
}

}  // namespace

ReelName::ReelName(std::u16string_view name) : size_(name.size()) {
  for (std::size_t at = 0; at < std::size(units_); at += units_a_word) {
    std::uint64_t word = 0;
    if (at + units_a_word <= size_) {
      word = load(name.data() + at);
    } else {
      // Gathered in a register, since the word is soon read as one.
      for (std::size_t i = at; i < size_; ++i) {
        const std::size_t place = std::endian::native == std::endian::little ? i - at : 3 + at - i;
        word |= std::uint64_t{name[i]} << 16 * place;
      }
    }
    std::memcpy(units_ + at, &word, sizeof word);
    // Not later out of memory, where the word must arrive first.
    key_[at / units_a_word] = fold_units(word);
  }
}

bool ReelName::fills(const wide_char (&field)[longest]) const {
  static_assert(longest == 3 * units_a_word + 1);
  return ((load(field) ^ load(units_)) | (load(field + 4) ^ load(units_ + 4)) |
          (load(field + 8) ^ load(units_ + 8)) | std::uint64_t(field[12] ^ units_[12])) == 0;
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

CGenericReel* ReelIndex::find(const CObList& reels, const ReelName& name) {
  follow(reels);
  // Events in a row often come from one reel.
  if (last_ != nullptr && name.fills(last_->reel_name)) return last_;
  const Key& key = name.key();
  CGenericReel* const reel = known(key);
  if (reel == nullptr) return nullptr;
  if (name.fills(reel->reel_name) || equal_no_case(field_text(reel->reel_name), name.view())) {
    return last_ = reel;
  }
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
  const Key key = ReelName(field_text(reel->reel_name)).key();
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
