// The operations of CGenericEdl that walk its entries, but for traceback.
#include <map>
#include <memory>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "core/generic_edl.h"
#include "core/generic_edl_entry.h"
#include "core/generic_reel.h"

namespace {

CGenericEdlEntry* entry_at(const CObList& list, POSITION position) {
  return static_cast<CGenericEdlEntry*>(list.GetAt(position));
}

POSITION next_of(const CObList& list, POSITION position) {
  list.GetNext(position);
  return position;
}

// Whether B is the other side of the stereo edit whose left side is A.
bool can_merge(const CGenericEdlEntry& a, const CGenericEdlEntry& b) {
  return a.get_stream(0) % 2 == 0 && a.dest_in == b.dest_in && a.dest_out == b.dest_out &&
         a.source_in == b.source_in && a.source_out == b.source_out &&
         b.get_stream(0) - a.get_stream(0) == 1 && b.first_channel - a.first_channel == 1;
}

void merge_into(CGenericEdlEntry& a, const CGenericEdlEntry& b) {
  const int stream = a.get_stream(0);
  a.set_no_streams(2);
  a.set_stream(0, static_cast<unsigned short>(stream));
  a.set_stream(1, static_cast<unsigned short>(stream + 1));
  if (a.reel != nullptr) {
    a.reel->set_reel_no_streams(2);
  } else {
    a.reel_no_streams = 2;
  }
  a.no_channels = 2;
  a.gain_right = b.gain_left;
}

// The entries of one stretch of equal destination in, by all that a partner must
// have, each in list order. Serves long stretches, where trying every pair would
// take time that grows with the square of their length.
class PartnerIndex {
 public:
  PartnerIndex(const CObList& list, POSITION first, POSITION end) {
    std::size_t place = 0;
    for (POSITION at = first; at != end; at = next_of(list, at), ++place) {
      const CGenericEdlEntry& entry = *entry_at(list, at);
      candidates_[key_of(entry, entry.get_stream(0), entry.first_channel)].positions.push_back(
          {at, place});
    }
  }

  // The first entry behind place `after` of the stretch that merges with A.
  POSITION partner(const CGenericEdlEntry& a, std::size_t after) {
    if (a.get_stream(0) % 2 != 0) return nullptr;
    const auto hit = candidates_.find(key_of(a, a.get_stream(0) + 1, a.first_channel + 1));
    if (hit == candidates_.end()) return nullptr;
    // A moves forward through the stretch, so what lies before it is never wanted
    // again; a partner that is found leaves the list.
    auto& [positions, used] = hit->second;
    while (used < positions.size() && positions[used].place <= after)
      ++used;
    return used < positions.size() ? positions[used++].position : nullptr;
  }

 private:
  using Key = std::tuple<std::int64_t, std::int64_t, std::int64_t, int, int>;
  struct Candidate {
    POSITION position;
    std::size_t place;
  };
  struct Candidates {
    std::vector<Candidate> positions;
    std::size_t used = 0;
  };

  static Key key_of(const CGenericEdlEntry& entry, int stream, int channel) {
    return {entry.dest_out, entry.source_in, entry.source_out, stream, channel};
  }

  std::map<Key, Candidates> candidates_;
};

constexpr std::size_t short_stretch = 16;

// Merges inside the stretch [first, end) of equal destination in. False when the
// whole merge ends here: an entry found no partner and the stretch is the last.
class StretchMerge {
 public:
  StretchMerge(CObList& list, POSITION first, POSITION end, std::size_t length)
      : list_(list), end_(end) {
    if (length > short_stretch) index_ = std::make_unique<PartnerIndex>(list, first, end);
    number(first);
  }

  bool run(POSITION first) {
    for (POSITION at = first; at != end_;) {
      CGenericEdlEntry& a = *entry_at(list_, at);
      const POSITION partner = find_partner(a, at);
      if (partner == nullptr && end_ == nullptr) return false;
      if (partner != nullptr) absorb(a, partner);
      at = next_of(list_, at);
    }
    return true;
  }

 private:
  void number(POSITION first) {
    if (index_ == nullptr) return;
    std::size_t place = 0;
    for (POSITION at = first; at != end_; at = next_of(list_, at))
      places_[at] = place++;
  }

  POSITION find_partner(const CGenericEdlEntry& a, POSITION at) {
    if (index_ != nullptr) return index_->partner(a, places_.at(at));
    for (POSITION next = next_of(list_, at); next != end_; next = next_of(list_, next)) {
      if (can_merge(a, *entry_at(list_, next))) return next;
    }
    return nullptr;
  }

  void absorb(CGenericEdlEntry& a, POSITION partner) {
    const std::unique_ptr<CGenericEdlEntry> b(entry_at(list_, partner));
    merge_into(a, *b);
    list_.RemoveAt(partner);
  }

  CObList& list_;
  POSITION end_;
  std::unique_ptr<PartnerIndex> index_;
  std::unordered_map<POSITION, std::size_t> places_;
};

// What an EDL keeps of an entry whose channels run from `first` to `last` when its
// window is [window, end).
struct KeptChannels {
  bool keep = false;
  // Width of the new streams and the first of them; 0 leaves them as they are.
  int new_width = 0;
  int new_first = 0;
};

KeptChannels kept_channels(int first, int last, int window, int end) {
  if (first >= end || last < window) return {};
  if (first < window) return {true, last - window + 1, window};
  if (first > window && last >= end) return {true, end - first, first};
  return {true, 0, 0};
}

}  // namespace

void CGenericEdl::sort_generic_list() {
  if (entry_list_ == nullptr || entry_list_->IsEmpty()) return;
  POSITION before = entry_list_->GetHeadPosition();
  for (POSITION at = next_of(*entry_list_, before); at != nullptr;
       before = at, at = next_of(*entry_list_, at)) {
    CGenericEdlEntry* const earlier = entry_at(*entry_list_, before);
    CGenericEdlEntry* const later = entry_at(*entry_list_, at);
    if (later->dest_in >= earlier->dest_in) continue;
    entry_list_->SetAt(before, later);
    entry_list_->SetAt(at, earlier);
  }
}

void CGenericEdl::merge_into_n_channel_entries() {
  CObList* const list = get_generic_entry_list();
  if (list == nullptr) return;
  POSITION first = list->GetHeadPosition();
  while (first != nullptr) {
    const std::int64_t dest_in = entry_at(*list, first)->dest_in;
    POSITION end = first;
    std::size_t length = 0;
    for (; end != nullptr && entry_at(*list, end)->dest_in == dest_in; ++length) {
      end = next_of(*list, end);
    }
    if (!StretchMerge(*list, first, end, length).run(first)) return;
    first = end;
  }
}

void CGenericEdl::offset_edl(unsigned short first, unsigned short count) {
  CObList* const list = get_generic_entry_list();
  if (list == nullptr) return;
  const int end = first + count;
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    const POSITION here = at;
    auto* const entry = static_cast<CGenericEdlEntry*>(list->GetNext(at));
    const int entry_first = get_first_stream(entry);
    const KeptChannels kept =
        kept_channels(entry_first, entry_first + entry->no_streams - 1, first, end);
    if (!kept.keep) {
      list->RemoveAt(here);
      delete entry;
      continue;
    }
    if (kept.new_width > 0) {
      entry->set_no_streams(kept.new_width);
      for (int i = 0; i < entry->no_streams; ++i) {
        entry->set_stream(i, static_cast<unsigned short>(kept.new_first + i));
      }
    }
    // 16-bit arithmetic: a stream that goes nowhere wraps like any other.
    for (int i = 0; i < entry->no_streams; ++i) {
      entry->streams[i] = static_cast<std::uint16_t>(entry->streams[i] - first);
    }
  }
}

void CGenericEdl::get_min_max_channels(unsigned short* min, unsigned short* max) const {
  const CObList* const list = get_generic_entry_list();
  if (list == nullptr) return;
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    const auto* const entry = static_cast<const CGenericEdlEntry*>(list->GetNext(at));
    const unsigned short first = get_first_stream(entry);
    const auto top = static_cast<unsigned short>(first + entry->no_streams);
    if (first < *min) *min = first;
    if (top > *max) *max = top;
  }
}

int CGenericEdl::check_reel_frame_rates() {
  if (reel_list.IsEmpty() || entry_list_ == nullptr) return 1;
  for (POSITION at = entry_list_->GetHeadPosition(); at != nullptr;) {
    static_cast<CGenericEdlEntry*>(entry_list_->GetNext(at))->check_reel_frame_rate();
  }
  return 1;
}
