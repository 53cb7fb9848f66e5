// Markers of a cut to black, which become fade-outs of the edit before them.
#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "core/generic_edl_entry.h"
#include "core/sample_math.h"
#include "text/cmx_edl.h"

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

// The entries before the walk, by stream 0 and destination out, so that the nearest
// one that ends at a point is found at once.
class EndIndex {
 public:
  // Entries come in list order.
  void add(CGenericEdlEntry* entry) { ends_[key_of(*entry)].emplace_back(count_++, entry); }

  // The entry nearest before the walk that ends at `dest_out` on the stream.
  [[nodiscard]] CGenericEdlEntry* nearest(unsigned short stream, std::int64_t dest_out) const {
    const auto hit = ends_.find({stream, dest_out});
    return hit == ends_.end() || hit->second.empty() ? nullptr : hit->second.back().second;
  }

  // Lets the nearest entry of its key end `length` later.
  void grow_nearest(CGenericEdlEntry& entry, std::int64_t length) {
    Ends& from = ends_[key_of(entry)];
    const auto moved = from.back();
    from.pop_back();
    entry.source_out = plus(entry.source_out, length);
    entry.dest_out = plus(entry.dest_out, length);
    Ends& to = ends_[key_of(entry)];
    to.insert(std::upper_bound(to.begin(), to.end(), moved), moved);
  }

 private:
  using Key = std::pair<unsigned short, std::int64_t>;
  // Places in the list, rising, with their entries.
  using Ends = std::vector<std::pair<std::size_t, CGenericEdlEntry*>>;

  static Key key_of(const CGenericEdlEntry& entry) { return {entry.get_stream(0), entry.dest_out}; }

  std::map<Key, Ends> ends_;
  std::size_t count_ = 0;
};

class BlackFold {
 public:
  explicit BlackFold(CObList& list) : list_(list), unindexed_(list.GetHeadPosition()) {}

  void run() {
    POSITION at = list_.GetHeadPosition();
    while (at != nullptr) {
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
    return next_of(list_, next);
  }

  POSITION fold_marker(POSITION marker, POSITION next) {
    const std::int64_t fade = entry_at(list_, next)->fade_in_length;
    index_up_to(marker);
    if (on_black_reel(*entry_at(list_, next))) remove(next);
    const CGenericEdlEntry& a = *entry_at(list_, marker);
    CGenericEdlEntry* const before = ends_.nearest(a.get_stream(0), a.dest_in);
    if (before != nullptr) {
      ends_.grow_nearest(*before, fade);
      before->fade_out_length = fade;
    }
    POSITION stand = marker;
    list_.GetPrev(stand);
    remove(marker);
    if (stand == nullptr) stand = list_.GetHeadPosition();
    return stand == nullptr ? nullptr : next_of(list_, stand);
  }

  void index_up_to(POSITION end) {
    for (; unindexed_ != end; unindexed_ = next_of(list_, unindexed_)) {
      ends_.add(entry_at(list_, unindexed_));
    }
  }

  void remove(POSITION position) {
    if (unindexed_ == position) unindexed_ = next_of(list_, position);
    const std::unique_ptr<CGenericEdlEntry> entry(entry_at(list_, position));
    list_.RemoveAt(position);
  }

  CObList& list_;
  EndIndex ends_;
  // The first node that is not in the index; all before it are.
  POSITION unindexed_;
};

}  // namespace

void CCMXEdl::fold_black_edits() {
  CObList* const list = get_generic_entry_list();
  if (list != nullptr) BlackFold(*list).run();
}
