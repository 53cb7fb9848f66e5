// Finds reels by name beside a reel list, without scanning it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "host/framework/ob_list.h"
#include "host/text.h"

class CGenericReel;

// A short name in words of four units, with zeros behind it: it can be compared and
// folded four units at a time, and is terminated.
class ReelName {
 public:
  // No reel has a name of more units.
  static constexpr std::size_t longest = 13;
  using Words = std::array<std::uint64_t, 4>;

  // Of at most `longest` units.
  explicit ReelName(std::u16string_view name);

  [[nodiscard]] const wide_char* text() const { return units_; }
  [[nodiscard]] std::u16string_view view() const { return {units_, size_}; }
  // In lower case.
  [[nodiscard]] const Words& key() const { return key_; }
  // Whether a reel's field holds the name, case and zeros behind it included.
  [[nodiscard]] bool fills(const wide_char (&field)[longest]) const;

 private:
  static constexpr std::size_t units_a_word = 4;

  alignas(Words) wide_char units_[units_a_word * std::tuple_size_v<Words>] = {};
  Words key_{};
  std::size_t size_;
};

// Answers as a scan of the list from its head would: the first reel whose name
// equals, ASCII case aside. The index is made anew when somebody else has changed
// the list, and every answer is held against the reel's name of the moment.
class ReelIndex {
 public:
  // Null when no reel has the name.
  [[nodiscard]] CGenericReel* find(const CObList& reels, const ReelName& name);
  // Makes the index anew where somebody else has changed the list, as `find` does.
  void follow(const CObList& reels) {
    if (reels.changes() != known_changes_) rebuild(reels);
  }
  // After either of these, to be told of a reel that was just added at the tail of the list.
  void added(const CObList& reels, CGenericReel* reel);

 private:
  using Key = ReelName::Words;
  struct Slot {
    Key key{};
    // Null in a slot that is free.
    CGenericReel* reel = nullptr;
  };

  // Where the key stands or would stand. The table must have room.
  [[nodiscard]] std::size_t place_of(const Key& key) const;
  [[nodiscard]] CGenericReel* known(const Key& key) const;
  // Of equal names the first stays.
  void put(CGenericReel* reel);
  void grow();
  void rebuild(const CObList& reels);

  // Open addressing, at most half full; its size is a power of two, or 0.
  std::vector<Slot> slots_;
  std::size_t used_ = 0;
  // The last one found, as the index has it: the first of its name.
  CGenericReel* last_ = nullptr;
  std::uint64_t known_changes_ = 0;
};
