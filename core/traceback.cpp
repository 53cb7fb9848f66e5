// Tracing edits of one reel back through the list that the reel was made from.
#include <algorithm>
#include <memory>
#include <vector>

#include "core/entry_walk.h"
#include "core/generic_edl.h"
#include "core/generic_edl_entry.h"
#include "core/sample_math.h"

namespace {

using Entries = std::vector<CGenericEdlEntry*>;

// The entries that play from a reel.
Entries entries_of(const CObList* list, const CGenericReel* reel) {
  Entries entries;
  if (list == nullptr) return entries;
  for (EntryWalk<&CGenericEdlEntry::reel> walk(*list); walk.position() != nullptr;) {
    CGenericEdlEntry* const entry = walk.next();
    if (entry->reel == reel) entries.push_back(entry);
  }
  return entries;
}

// Closed ranges of destination in and destination out.
struct Box {
  std::int64_t in_from = INT64_MAX;
  std::int64_t in_to = INT64_MIN;
  std::int64_t out_from = INT64_MAX;
  std::int64_t out_to = INT64_MIN;

  void include(const Box& other) {
    in_from = std::min(in_from, other.in_from);
    in_to = std::max(in_to, other.in_to);
    out_from = std::min(out_from, other.out_from);
    out_to = std::max(out_to, other.out_to);
  }
  [[nodiscard]] bool meets(const Box& other) const {
    return in_from <= other.in_to && other.in_from <= in_to && out_from <= other.out_to &&
           other.out_from <= out_to;
  }
};

// Finds the first entry in list order whose times lie in a box. A tree of boxes
// over stretches of the list: where a stretch misses the box, none of its entries
// is looked at. That takes few steps in a list that is in time order, as a whole or
// channel by channel, and in any other no more than a scan.
class TimesIndex {
 public:
  // Without a list there is nothing to find.
  explicit TimesIndex(const CObList* list) {
    if (list != nullptr) take(*list);
    while (leaves_ * leaf_size < times_.size())
      leaves_ *= 2;
    nodes_.resize(2 * leaves_);
    for (std::size_t i = 0; i < times_.size(); ++i)
      nodes_[leaves_ + i / leaf_size].include(times_[i].box());
    for (std::size_t node = leaves_; node-- > 1;) {
      nodes_[node] = nodes_[2 * node];
      nodes_[node].include(nodes_[2 * node + 1]);
    }
  }

  [[nodiscard]] CGenericEdlEntry* first_in(const Box& box) const { return first_under(1, box); }

 private:
  static constexpr std::size_t leaf_size = 16;

  struct Times {
    std::int64_t in;
    std::int64_t out;

    [[nodiscard]] Box box() const { return {in, in, out, out}; }
  };

  void take(const CObList& list) {
    const auto count = static_cast<std::size_t>(list.GetCount());
    entries_.reserve(count);
    times_.reserve(count);
    for (EntryWalk<&CGenericEdlEntry::dest_in> walk(list); walk.position() != nullptr;) {
      CGenericEdlEntry* const entry = walk.next();
      entries_.push_back(entry);
      times_.push_back({entry->dest_in, entry->dest_out});
    }
  }

  [[nodiscard]] CGenericEdlEntry* first_under(std::size_t node, const Box& box) const {
    if (!nodes_[node].meets(box)) return nullptr;
    if (node >= leaves_) return first_of_leaf(node - leaves_, box);
    CGenericEdlEntry* const left = first_under(2 * node, box);
    return left != nullptr ? left : first_under(2 * node + 1, box);
  }

  [[nodiscard]] CGenericEdlEntry* first_of_leaf(std::size_t leaf, const Box& box) const {
    const std::size_t end = std::min((leaf + 1) * leaf_size, times_.size());
    for (std::size_t i = leaf * leaf_size; i < end; ++i) {
      if (times_[i].box().meets(box)) return entries_[i];
    }
    return nullptr;
  }

  Entries entries_;
  // Of each entry.
  std::vector<Times> times_;
  // The root is node 1, the children of node n are 2n and 2n + 1; the leaves stand
  // at the end. A leaf behind the last entry keeps the box that meets nothing.
  std::vector<Box> nodes_;
  std::size_t leaves_ = 1;
};

class Pieces {
 public:
  explicit Pieces(const CObList* source) : index_(source) {}

  // The pieces of [start, end) and whether they follow on one another up to its end.
  struct Found {
    Entries pieces;
    bool contiguous = false;
  };
  [[nodiscard]] Found search(std::int64_t start, std::int64_t end) const;

 private:
  [[nodiscard]] CGenericEdlEntry* covering_start(std::int64_t start) const {
    if (start == INT64_MAX) return nullptr;
    return index_.first_in({INT64_MIN, start, start + 1, INT64_MAX});
  }
  // A piece that would not move the start forward is none: it would be found again
  // for ever.
  [[nodiscard]] CGenericEdlEntry* inside(std::int64_t start, std::int64_t end) const {
    if (start == INT64_MAX || end == INT64_MIN) return nullptr;
    return index_.first_in({start + 1, INT64_MAX, start + 1, end - 1});
  }
  [[nodiscard]] CGenericEdlEntry* covering_end(std::int64_t end) const {
    if (end == INT64_MIN) return nullptr;
    return index_.first_in({INT64_MIN, end - 1, end, INT64_MAX});
  }

  TimesIndex index_;
};

Pieces::Found Pieces::search(std::int64_t start, std::int64_t end) const {
  Found found;
  bool contiguous = true;
  std::int64_t last = 0;
  for (;;) {
    if (CGenericEdlEntry* const x = covering_start(start); x != nullptr) {
      found.pieces.push_back(x);
      if (x->dest_out >= end) break;
      start = x->dest_out;
      last = x->dest_in;
      continue;
    }
    if (CGenericEdlEntry* const x = inside(start, end); x != nullptr) {
      found.pieces.push_back(x);
      start = x->dest_out;
      if (x->dest_in <= last) {
        last = x->dest_out;
      } else {
        contiguous = false;
      }
      continue;
    }
    CGenericEdlEntry* const x = covering_end(end);
    if (x == nullptr) return found;
    if (x->dest_in > last) contiguous = false;
    found.pieces.push_back(x);
    break;
  }
  found.contiguous = contiguous;
  return found;
}

// Maps T's source range through piece X and takes the names of X's source.
void trim(CGenericEdlEntry& t, const CGenericEdlEntry& x) {
  if (x.dest_in > t.source_in) {
    t.dest_in = plus(t.dest_in, minus(x.dest_in, t.source_in));
    t.source_in = x.source_in;
  } else {
    t.source_in = minus(plus(x.source_in, t.source_in), x.dest_in);
  }
  if (x.dest_out < t.source_out) {
    t.dest_out = plus(t.dest_out, minus(x.dest_out, t.source_out));
    t.source_out = x.source_out;
  } else {
    t.source_out = plus(minus(x.source_out, x.dest_out), t.source_out);
  }
  wide_char name[13];
  x.get_reel_name(name, 13);
  t.set_reel_name(name);
  t.set_clip_name(x.clip_name);
  t.set_file_path(x.file_path);
  t.source_is_timestamped = x.source_is_timestamped;
  t.source_channel = x.source_channel;
  t.source_index = x.source_index;
  t.no_channels = x.no_channels;
}

class Results {
 public:
  Results(CObList& out, CGenericEdl* owner, const CGenericEdlEntry& entry)
      : out_(out), owner_(owner), entry_(entry) {}

  CGenericEdlEntry& add_copy() {
    auto copy = std::make_unique<CGenericEdlEntry>(owner_, &entry_);
    out_.AddTail(copy.get());
    return *copy.release();
  }

  void add_pieces(const Entries& pieces) {
    for (const CGenericEdlEntry* x : pieces)
      trim(add_copy(), *x);
  }

  // The pieces, with what lies between them and around them taken from the edit.
  void add_pieces_and_gaps(const Entries& pieces) {
    std::int64_t p = entry_.dest_in;
    for (const CGenericEdlEntry* x : pieces) {
      auto trimmed = std::make_unique<CGenericEdlEntry>(owner_, &entry_);
      trim(*trimmed, *x);
      if (trimmed->dest_in > p) {
        CGenericEdlEntry& filler = add_from(p);
        const std::int64_t length = minus(trimmed->dest_in, p);
        filler.dest_out = plus(filler.dest_in, length);
        filler.source_out = plus(filler.source_in, length);
      }
      p = trimmed->dest_out;
      out_.AddTail(trimmed.get());
      static_cast<void>(trimmed.release());
    }
    if (p < entry_.dest_out) add_from(p);
  }

 private:
  // A copy whose start is moved forward to `p` on the timeline.
  CGenericEdlEntry& add_from(std::int64_t p) {
    CGenericEdlEntry& copy = add_copy();
    copy.dest_in = plus(copy.dest_in, minus(p, entry_.dest_in));
    copy.source_in = plus(copy.source_in, minus(p, entry_.dest_in));
    return copy;
  }

  CObList& out_;
  CGenericEdl* owner_;
  const CGenericEdlEntry& entry_;
};

void add_results(Results& results, const Pieces::Found& found, unsigned short mode) {
  switch (mode) {
    case 0:
      if (found.contiguous) {
        results.add_pieces(found.pieces);
      } else {
        results.add_copy();
      }
      break;
    case 1:
      results.add_pieces(found.pieces);
      break;
    case 2:
      results.add_pieces_and_gaps(found.pieces);
      break;
    default:
      break;
  }
}

}  // namespace

result_code CGenericEdl::traceback(CObList* out, CGenericEdl* source_edl, CGenericReel* reel,
                                   unsigned short mode) {
  // Both lists are walked as they stand now: `out` may be one of them.
  const Entries edits = entries_of(get_generic_entry_list(), reel);
  const Pieces pieces(source_edl == nullptr ? nullptr : source_edl->get_generic_entry_list());
  for (CGenericEdlEntry* const entry : edits) {
    Results results(*out, this, *entry);
    if (source_edl == nullptr) {
      results.add_copy();
    } else {
      add_results(results, pieces.search(entry->source_in, entry->source_out), mode);
    }
  }
  return result::done;
}
