// The numbers that sources get in the source index of a written list.
#pragma once

#include <cstdint>

class CAudCnt;
class CInterchangerSourceList;

namespace adl {

// Counts from 1. The list of an interchange job, where there is one, moves the count:
// a source that it knows has the list's number, and counting goes on from there.
//
// Events name a source by its place, so once the list moves the count, numbers stand
// in the index that no event names.
class SourceNumbers {
 public:
  // For an interchange job without a list a new one is made, which this export fills.
  explicit SourceNumbers(bool interchange);

  // The number of the next source; 16 bits, so 65536 sources end with 0.
  [[nodiscard]] std::uint16_t next(CAudCnt* audio_content);
  // Behind the last source: destroys a list that was there before this export.
  void finish();

 private:
  CInterchangerSourceList* m_list;
  bool m_fill;
  std::uint16_t m_count = 0;
};

}  // namespace adl
