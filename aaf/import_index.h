// Finds records of an import under way, and bounds what a damaged file can ask for.
//
// Finding a record gives what a walk along its list would give, without the walk. Records
// belong to the lists and must not leave them while this stands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "aaf/import_limits.h"
#include "aafobj/api/aaf_types.h"
#include "host/framework/ob_list.h"

class CGenericEDLFileAutomationEntryChunk;
class CGenericEDLFileEntry;

namespace aaf {

class ImportIndex {
 public:
  explicit ImportIndex(const AafImportLimits& limits) : limits_(limits) {}

  // Segments within segments, and compositions within compositions.
  static constexpr unsigned most_depth = 64;
  static constexpr std::size_t most_nested = 32;

  // False when there were too many, and then for good.
  [[nodiscard]] bool visit() { return within(visits_, limits_.visits); }
  [[nodiscard]] bool make_record() { return within(records_, limits_.records); }
  [[nodiscard]] bool make_point() { return within(points_, limits_.points); }
  // Something was left out because there was too much of it.
  [[nodiscard]] bool is_exhausted() const { return exhausted_; }

  // One segment deeper, while it lives.
  class Deeper {
   public:
    explicit Deeper(ImportIndex& index) : index_(index) { ++index_.depth_; }
    ~Deeper() { --index_.depth_; }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;
    [[nodiscard]] bool fits() const { return index_.depth_ <= most_depth; }

   private:
    ImportIndex& index_;
  };

  // A slot of a composition is being played, while this lives.
  class Playing {
   public:
    Playing(ImportIndex& index, const aafMobID_t& mob, aafSlotID_t slot);
    ~Playing();
    Playing(const Playing&) = delete;
    Playing& operator=(const Playing&) = delete;
    // False for a slot that is being played already, and too deep down.
    [[nodiscard]] bool fits() const { return fits_; }

   private:
    ImportIndex& index_;
    unsigned depth_before_;
    bool fits_;
  };

  // Of CGenericEDLFileEntry objects. Their starts and streams do not change any more.
  void add_event(CGenericEDLFileEntry* event);
  // Tells that an event has another length now.
  void note_length(const CGenericEDLFileEntry& event);
  // The latest event of a stream, and among equal ones the last that arrived. Null for
  // none.
  [[nodiscard]] CGenericEDLFileEntry* last_event(std::uint16_t stream) const;
  // The first event of a stream that begins at or behind `start` and ends at or before
  // `end`, samples. Null for none. Counts as a visit for each event that is too long.
  [[nodiscard]] CGenericEDLFileEntry* first_event_within(std::uint16_t stream, std::int64_t start,
                                                         std::int64_t end);

  // Puts a point into the run of its parameter and channel, made in the list if need be.
  // Runs of a parameter stand in the order of channels, points in the order of time; one
  // at the time of another is moved a sample behind it.
  void add_point(CObList& automation, std::uint16_t parameter, std::uint16_t channel,
                 std::int64_t time, std::uint32_t value);

  // Sources by their path without regard to case. -1 for none.
  [[nodiscard]] int find_source(std::u16string_view path) const;
  void add_source(std::u16string_view path, int index);

  // The first of the mobs whose material number matches this one's; -1 for none.
  template <class Mobs>
  [[nodiscard]] std::ptrdiff_t find_mob(const Mobs& mobs, const aafMobID_t& mob);

 private:
  using MobKey = std::pair<std::uint32_t, std::uint32_t>;
  using Events = std::multimap<std::int64_t, CGenericEDLFileEntry*>;
  struct Run {
    CGenericEDLFileAutomationEntryChunk* chunk = nullptr;
    POSITION place = nullptr;
    // Made when the first point arrives out of order.
    std::multimap<std::int64_t, POSITION> by_time;
  };
  using Runs = std::map<std::pair<std::uint16_t, std::uint16_t>, Run>;

  // What uids_match compares.
  static MobKey key_of(const aafMobID_t& mob) {
    return {mob.material.Data1,
            std::uint32_t{mob.material.Data2} << 16U | std::uint32_t{mob.material.Data3}};
  }
  bool within(std::uint64_t& count, std::uint64_t most) {
    if (++count > most) exhausted_ = true;
    return !exhausted_;
  }
  Run& run_of(CObList& automation, std::uint16_t parameter, std::uint16_t channel);

  AafImportLimits limits_;
  std::uint64_t visits_ = 0;
  std::uint64_t records_ = 0;
  std::uint64_t points_ = 0;
  bool exhausted_ = false;
  unsigned depth_ = 0;
  std::vector<std::pair<aafMobID_t, aafSlotID_t>> playing_;
  std::map<std::uint16_t, Events> events_;
  // The least length of an event, never above 0.
  std::int64_t least_length_ = 0;
  Runs runs_;
  std::unordered_map<std::u16string, int> sources_;
  std::map<MobKey, std::ptrdiff_t> mobs_;
  std::ptrdiff_t mobs_known_ = 0;
};

template <class Mobs>
std::ptrdiff_t ImportIndex::find_mob(const Mobs& mobs, const aafMobID_t& mob) {
  for (; mobs_known_ < mobs.GetSize(); ++mobs_known_)
    mobs_.try_emplace(key_of(mobs.GetAt(mobs_known_)), mobs_known_);
  const auto found = mobs_.find(key_of(mob));
  return found == mobs_.end() ? -1 : found->second;
}

}  // namespace aaf
