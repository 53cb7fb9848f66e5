// Markers of a cut to black, which become fade-outs of the edit before them.
#include <bit>
#include <cstdint>
#include <memory>
#include <vector>

#include "core/entry_walk.h"
#include "core/generic_edl_entry.h"
#include "text/cmx_edl.h"
#include "text/end_index.h"

namespace {

CGenericEdlEntry* entry_at(const CObList& list, POSITION position) {
  return static_cast<CGenericEdlEntry*>(list.GetAt(position));
}

POSITION next_of(const CObList& list, POSITION position) {
  list.GetNext(position);
  return position;
}

// Any reel whose name begins with these two letters counts as black.
bool on_black_reel(const CGenericEdlEntry& entry) {
  wide_char name[13];
  entry.get_reel_name(name, 13);
  return starts_with_no_case(field_text(name), u"BL");
}

bool is_marker(const CGenericEdlEntry& entry) {
  return entry.dest_in == entry.dest_out;
}

// Times that were put in, in a table of open addressing, at most half full.
class TimeSet {
 public:
  explicit TimeSet(const std::vector<std::int64_t>& times)
      : slots_(std::bit_ceil(2 * times.size() + 1)) {
    for (const std::int64_t time : times)
      slots_[place_of(time)] = {time, true};
  }
  [[nodiscard]] bool contains(std::int64_t time) const { return slots_[place_of(time)].used; }

 private:
  struct Slot {
    std::int64_t time = 0;
    bool used = false;
  };

  // Where the time stands or would stand.
  [[nodiscard]] std::size_t place_of(std::int64_t time) const {
    const std::uint64_t mixed = static_cast<std::uint64_t>(time) * 0x9E3779B97F4A7C15ULL;
    const std::size_t mask = slots_.size() - 1;
    std::size_t place = (mixed ^ (mixed >> 32)) & mask;
    while (slots_[place].used && slots_[place].time != time)
      place = (place + 1) & mask;
    return place;
  }

  std::vector<Slot> slots_;
};

TimeSet starts_of_markers(const CObList& list) {
  std::vector<std::int64_t> starts;
  for (EntryWalk<&CGenericEdlEntry::dest_in> walk(list); walk.position() != nullptr;) {
    const CGenericEdlEntry& entry = *walk.next();
    if (is_marker(entry)) starts.push_back(entry.dest_in);
  }
  return TimeSet(starts);
}

class BlackFold {
 public:
  explicit BlackFold(CObList& list)
      : list_(list),
        marker_starts_(starts_of_markers(list)),
        unindexed_(list.GetHeadPosition()),
        ahead_(list, list.GetHeadPosition()) {}

  void run() {
    POSITION at = list_.GetHeadPosition();
    while (at != nullptr) {
      ahead_.step();
      if (!is_marker(*entry_at(list_, at))) {
        at = next_of(list_, at);
        continue;
      }
      const POSITION next = next_of(list_, at);
      if (next == nullptr) return;
      at =
          on_black_reel(*entry_at(list_, at)) ? drop_black_marker(at, next) : fold_marker(at, next);
    }
  }

 private:
  // The node behind a black marker is not looked at.
  POSITION drop_black_marker(POSITION marker, POSITION next) {
    remove(marker);
    ahead_.step();
    return next_of(list_, next);
  }

  POSITION fold_marker(POSITION marker, POSITION next) {
    const std::int64_t fade = entry_at(list_, next)->fade_in_length;
    index_up_to(marker);
    if (on_black_reel(*entry_at(list_, next))) remove(next);
    const CGenericEdlEntry& a = *entry_at(list_, marker);
    CGenericEdlEntry* const before = ends_.nearest(a.get_stream(0), a.dest_in);
    if (before != nullptr) ends_.let_fade_out(*before, fade);
    POSITION stand = marker;
    list_.GetPrev(stand);
    remove(marker);
    if (stand == nullptr) stand = list_.GetHeadPosition();
    return stand == nullptr ? nullptr : next_of(list_, stand);
  }

  void index_up_to(POSITION end) {
    for (; unindexed_ != end; unindexed_ = next_of(list_, unindexed_)) {
      CGenericEdlEntry* const entry = entry_at(list_, unindexed_);
      if (marker_starts_.contains(entry->dest_out)) ends_.add(entry);
    }
  }

  void remove(POSITION position) {
    if (unindexed_ == position) unindexed_ = next_of(list_, position);
    ahead_.before_removal(position);
    ahead_.step();
    const std::unique_ptr<CGenericEdlEntry> entry(entry_at(list_, position));
    list_.RemoveAt(position);
  }

  CObList& list_;
  // Where markers stand. Only an edit that ends at one is ever looked for, and no entry
  // ahead of the walk becomes a marker.
  TimeSet marker_starts_;
  text::EndIndex ends_;
  // The first node that the walk has not passed to the index.
  POSITION unindexed_;
  EntryLookAhead<&CGenericEdlEntry::dest_in, &CGenericEdlEntry::reel> ahead_;
};

}  // namespace

void CCMXEdl::fold_black_edits() {
  CObList* const list = get_generic_entry_list();
  if (list != nullptr) BlackFold(*list).run();
}
