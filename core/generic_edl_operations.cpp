// The operations of CGenericEdl that walk its entries, but for traceback.
#include <algorithm>
#include <memory>
#include <tuple>
#include <vector>

#include "core/entry_walk.h"
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

// For those who look for B.
using PartnerWalk = EntryWalk<&CGenericEdlEntry::dest_in, &CGenericEdlEntry::first_channel>;

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

void absorb(CObList& list, CGenericEdlEntry& a, POSITION partner) {
  const std::unique_ptr<CGenericEdlEntry> b(entry_at(list, partner));
  merge_into(a, *b);
  list.RemoveAt(partner);
}

// A stretch of equal destination in, of which each entry is tried with all behind it. For
// short ones: trying every pair takes time that grows with the square of the length.
class ShortStretch {
 public:
  ShortStretch(CObList& list, POSITION first, POSITION end)
      : list_(list), first_(first), end_(end) {}

  // Merges. False when the whole merge ends here: an entry found no partner and the
  // stretch is the last.
  bool run() {
    for (POSITION at = first_; at != end_; at = next_of(list_, at)) {
      CGenericEdlEntry& a = *entry_at(list_, at);
      const POSITION partner = partner_of(a, at);
      if (partner == nullptr && end_ == nullptr) return false;
      if (partner != nullptr) absorb(list_, a, partner);
    }
    return true;
  }

 private:
  POSITION partner_of(const CGenericEdlEntry& a, POSITION at) {
    for (POSITION next = next_of(list_, at); next != end_; next = next_of(list_, next)) {
      if (can_merge(a, *entry_at(list_, next))) return next;
    }
    return nullptr;
  }

  CObList& list_;
  POSITION first_;
  POSITION end_;
};

// The same of a long one. What merges differs in nothing but stream and source channel,
// both by 1, and the left side has an even stream. So entries are sorted such that the
// right sides that an entry may have stand directly behind the left sides that it competes
// with; and as merging changes no entry's place in that order, all pairs can be told
// beforehand.
class LongStretch {
 public:
  LongStretch(CObList& list, POSITION first, POSITION end) : list_(list), last_(end == nullptr) {
    std::size_t place = 0;
    for (PartnerWalk walk(list, first); walk.position() != end; ++place) {
      positions_.push_back(walk.position());
      const CGenericEdlEntry& entry = *walk.next();
      const int stream = entry.get_stream(0);
      sides_.push_back({entry.dest_out, entry.source_in, entry.source_out,
                        entry.first_channel - stream, stream, place});
    }
    std::sort(sides_.begin(), sides_.end());
    pair_sides();
  }

  // As ShortStretch::run.
  bool run() {
    for (std::size_t place = 0; place < positions_.size(); ++place) {
      if (positions_[place] == nullptr) continue;
      const std::size_t partner = partners_[place];
      if (partner == none && last_) return false;
      if (partner == none) continue;
      absorb(list_, *entry_at(list_, positions_[place]), positions_[partner]);
      positions_[partner] = nullptr;
    }
    return true;
  }

 private:
  struct Side {
    std::int64_t dest_out;
    std::int64_t source_in;
    std::int64_t source_out;
    int channel_offset;
    int stream;
    std::size_t place;

    bool operator<(const Side& b) const {
      return std::tie(dest_out, source_in, source_out, channel_offset, stream, place) <
             std::tie(b.dest_out, b.source_in, b.source_out, b.channel_offset, b.stream, b.place);
    }
    [[nodiscard]] bool is_left_of(const Side& b) const {
      return stream % 2 == 0 && b.stream == stream + 1 && dest_out == b.dest_out &&
             source_in == b.source_in && source_out == b.source_out &&
             channel_offset == b.channel_offset;
    }
    [[nodiscard]] bool is_beside(const Side& b) const {
      return stream == b.stream && dest_out == b.dest_out && source_in == b.source_in &&
             source_out == b.source_out && channel_offset == b.channel_offset;
    }
  };
  static constexpr auto none = static_cast<std::size_t>(-1);

  [[nodiscard]] std::size_t end_of_group(std::size_t first) const {
    std::size_t end = first + 1;
    while (end < sides_.size() && sides_[end].is_beside(sides_[first]))
      ++end;
    return end;
  }

  // In list order, each left side takes the first right side behind it that is free.
  void pair_sides() {
    partners_.assign(positions_.size(), none);
    for (std::size_t left = 0; left < sides_.size();) {
      const std::size_t end = end_of_group(left);
      if (end == sides_.size() || !sides_[left].is_left_of(sides_[end])) {
        left = end;
        continue;
      }
      std::size_t right = end;
      const std::size_t right_end = end_of_group(end);
      for (; left < end; ++left) {
        while (right < right_end && sides_[right].place < sides_[left].place)
          ++right;
        if (right == right_end) break;
        partners_[sides_[left].place] = sides_[right++].place;
      }
      left = right_end;
    }
  }

  CObList& list_;
  bool last_;
  // By place in the stretch; a side that was merged away has a null.
  std::vector<POSITION> positions_;
  std::vector<std::size_t> partners_;
  std::vector<Side> sides_;
};

constexpr std::size_t short_stretch = 16;

bool merge_stretch(CObList& list, POSITION first, POSITION end, std::size_t length) {
  return length > short_stretch ? LongStretch(list, first, end).run()
                                : ShortStretch(list, first, end).run();
}

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
  EntryWalk<&CGenericEdlEntry::dest_in> walk(*entry_list_);
  POSITION before = walk.position();
  CGenericEdlEntry* earlier = walk.next();
  while (walk.position() != nullptr) {
    const POSITION at = walk.position();
    CGenericEdlEntry* const later = walk.next();
    if (later->dest_in < earlier->dest_in) {
      entry_list_->SetAt(before, later);
      entry_list_->SetAt(at, earlier);
    } else {
      earlier = later;
    }
    before = at;
  }
}

void CGenericEdl::merge_into_n_channel_entries() {
  CObList* const list = get_generic_entry_list();
  if (list == nullptr || list->IsEmpty()) return;
  // The walk runs ahead of the merging, which removes nothing from `end` on.
  PartnerWalk walk(*list);
  POSITION first = walk.position();
  CGenericEdlEntry* next = walk.next();
  while (next != nullptr) {
    const std::int64_t dest_in = next->dest_in;
    POSITION end = nullptr;
    std::size_t length = 0;
    do {
      ++length;
      end = walk.position();
      next = end == nullptr ? nullptr : walk.next();
    } while (next != nullptr && next->dest_in == dest_in);
    if (!merge_stretch(*list, first, end, length)) return;
    first = end;
  }
}

void CGenericEdl::offset_edl(unsigned short first, unsigned short count) {
  CObList* const list = get_generic_entry_list();
  if (list == nullptr) return;
  const int end = first + count;
  for (EntryWalk<&CGenericEdlEntry::streams> walk(*list); walk.position() != nullptr;) {
    const POSITION here = walk.position();
    CGenericEdlEntry* const entry = walk.next();
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
  for (EntryWalk<&CGenericEdlEntry::streams> walk(*list); walk.position() != nullptr;) {
    const CGenericEdlEntry* const entry = walk.next();
    const unsigned short first = get_first_stream(entry);
    const auto top = static_cast<unsigned short>(first + entry->no_streams);
    if (first < *min) *min = first;
    if (top > *max) *max = top;
  }
}

int CGenericEdl::check_reel_frame_rates() {
  if (reel_list.IsEmpty() || entry_list_ == nullptr) return 1;
  for (EntryWalk<&CGenericEdlEntry::source_in, &CGenericEdlEntry::frame_rate> walk(*entry_list_);
       walk.position() != nullptr;)
    walk.next()->check_reel_frame_rate();
  return 1;
}
