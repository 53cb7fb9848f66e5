// Dissolves of a multitrack list: a pair of lines, a cut of no length where the old
// source ends and a dissolve to the new one. The pair becomes an old edit that runs
// on under the fade of the new one.
#include <memory>
#include <unordered_map>
#include <vector>

#include "core/entry_walk.h"
#include "core/generic_edl_entry.h"
#include "core/sample_math.h"
#include "text/end_index.h"
#include "text/lw_multi_channel_edl.h"

namespace {

bool has_no_length(const CGenericEdlEntry& entry) {
  return entry.dest_in == entry.dest_out;
}

// The walk looks at each pair of neighbours and removes only entries ahead of it.
class DissolveFold {
 public:
  explicit DissolveFold(CObList& list) : list_(list) {
    nodes_.reserve(static_cast<std::size_t>(list.GetCount()));
    for (EntryWalk<&CGenericEdlEntry::event_number> walk(list); walk.position() != nullptr;) {
      const POSITION here = walk.position();
      CGenericEdlEntry* const entry = walk.next();
      add_to_event(entry->event_number);
      nodes_.push_back({here, entry});
    }
  }

  void run() {
    for (std::size_t first = 0; first < nodes_.size(); first = next_of(first)) {
      passed_.add(nodes_[first].entry);
      if (!fold_behind(first)) return;
    }
  }

 private:
  struct Node {
    POSITION position;
    // Null once removed.
    CGenericEdlEntry* entry;
    // The place of the next entry with the same event number.
    std::size_t next_of_event = none;
  };
  // The entries of one event number; those before `looked_at` are behind the walk.
  struct Event {
    std::size_t looked_at;
    std::size_t last;
  };
  static constexpr auto none = static_cast<std::size_t>(-1);

  // Of the node that is put behind the others next.
  void add_to_event(std::uint16_t number) {
    const std::size_t place = nodes_.size();
    const auto [known, is_new] = by_event_.try_emplace(number, Event{place, place});
    if (is_new) return;
    nodes_[known->second.last].next_of_event = place;
    known->second.last = place;
  }

  [[nodiscard]] std::size_t next_of(std::size_t place) const {
    do {
      ++place;
    } while (place < nodes_.size() && nodes_[place].entry == nullptr);
    return place;
  }

  // False ends the walk.
  bool fold_behind(std::size_t first) {
    const std::size_t second = next_of(first);
    if (second >= nodes_.size()) return false;
    const CGenericEdlEntry& entry = *nodes_[second].entry;
    if (entry.transition_type == transition_dissolve) {
      fold_dissolve(first, second);
      return true;
    }
    return !has_no_length(entry) || fold_cut(second);
  }

  // A cut of no length goes; the edit that ends there runs on for as long as the
  // entry behind the cut fades in.
  bool fold_cut(std::size_t second) {
    const CGenericEdlEntry& cut = *nodes_[second].entry;
    CGenericEdlEntry* const before = passed_.nearest(cut.get_stream(0), cut.dest_in);
    if (before == nullptr) return false;
    std::int64_t fade = 0;
    if (const std::size_t third = next_of(second); third < nodes_.size()) {
      fade = nodes_[third].entry->fade_in_length;
      if (has_no_length(*nodes_[third].entry)) remove(third);
    }
    passed_.let_fade_out(*before, fade);
    remove(second);
    return true;
  }

  // A dissolve lets the entry of its event run on: the first of the pair, or one that
  // is still to come.
  void fold_dissolve(std::size_t first, std::size_t second) {
    const CGenericEdlEntry& dissolve = *nodes_[second].entry;
    if (nodes_[first].entry->event_number == dissolve.event_number) {
      passed_.let_fade_out(*nodes_[first].entry, dissolve.fade_in_length);
    } else if (CGenericEdlEntry* const later = later_of_event(second); later != nullptr) {
      later->source_out = plus(later->source_out, dissolve.fade_in_length);
      later->dest_out = plus(later->dest_out, dissolve.fade_in_length);
      later->fade_out_length = dissolve.fade_in_length;
    }
    if (has_no_length(dissolve)) remove(second);
  }

  // The first entry behind `place` with the same event number.
  CGenericEdlEntry* later_of_event(std::size_t place) {
    std::size_t& later = by_event_.at(nodes_[place].entry->event_number).looked_at;
    while (later != none && (later <= place || nodes_[later].entry == nullptr))
      later = nodes_[later].next_of_event;
    return later == none ? nullptr : nodes_[later].entry;
  }

  void remove(std::size_t place) {
    const std::unique_ptr<CGenericEdlEntry> entry(nodes_[place].entry);
    list_.RemoveAt(nodes_[place].position);
    nodes_[place].entry = nullptr;
  }

  CObList& list_;
  // The list as it stood at the start.
  std::vector<Node> nodes_;
  std::unordered_map<std::uint16_t, Event> by_event_;
  text::EndIndex passed_;
};

}  // namespace

void CLWMultiChannelEdl::fold_dissolves() {
  CObList* const list = get_generic_entry_list();
  if (list != nullptr) DissolveFold(*list).run();
}
