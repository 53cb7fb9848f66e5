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

// Answers as a scan of the list from its head would: the first reel whose name
// equals, ASCII case aside. The index is made anew when somebody else has changed
// the list, and every answer is held against the reel's name of the moment.
class ReelIndex {
 public:
  // Null when no reel has the name.
  [[nodiscard]] CGenericReel* find(const CObList& reels, std::u16string_view name);
  // To be told of a reel that was just added at the tail of the list.
  void added(const CObList& reels, CGenericReel* reel);

 private:
  // A name in lower case, four units a word, with zeros behind it.
  using Key = std::array<std::uint64_t, 4>;
  struct Slot {
    Key key;
    // Null in a slot that is free.
    CGenericReel* reel = nullptr;
  };

  static Key key_of(std::u16string_view name);
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
