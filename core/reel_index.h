// Finds reels by name beside a reel list, without scanning it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "host/framework/ob_list.h"

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
  void rebuild(const CObList& reels);

  std::unordered_map<std::u16string, CGenericReel*> first_by_name_;
  std::uint64_t known_changes_ = 0;
};
