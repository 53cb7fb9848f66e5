// Tracing edits of one reel back through the list that the reel was made from.
#include <algorithm>
#include <memory>
#include <vector>

#include "core/generic_edl.h"
#include "core/generic_edl_entry.h"
#include "core/sample_math.h"

namespace {

using Entries = std::vector<CGenericEdlEntry*>;

Entries entries_of(const CObList* list) {
  Entries entries;
  if (list == nullptr) return entries;
  entries.reserve(static_cast<std::size_t>(list->GetCount()));
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    entries.push_back(static_cast<CGenericEdlEntry*>(list->GetNext(at)));
  }
  return entries;
}

// In destination order, none reaching into the next: then at most one entry covers
// a point, and pieces can be found by halving. In any other list the first in list
// order counts, and only a scan finds it.
bool is_plain_timeline(const Entries& source) {
  for (std::size_t i = 0; i < source.size(); ++i) {
    if (source[i]->dest_out < source[i]->dest_in) return false;
    if (i > 0 && source[i]->dest_in < source[i - 1]->dest_out) return false;
  }
  return true;
}

class Pieces {
 public:
  explicit Pieces(const Entries& source) : source_(source), plain_(is_plain_timeline(source)) {}

  // The pieces of [start, end) and whether they follow on one another up to its end.
  struct Found {
    Entries pieces;
    bool contiguous = false;
  };
  [[nodiscard]] Found search(std::int64_t start, std::int64_t end) const;

 private:
  [[nodiscard]] CGenericEdlEntry* covering_start(std::int64_t start) const;
  [[nodiscard]] CGenericEdlEntry* inside(std::int64_t start, std::int64_t end) const;
  [[nodiscard]] CGenericEdlEntry* covering_end(std::int64_t end) const;

  template <class Test>
  [[nodiscard]] CGenericEdlEntry* first_that(Test test) const {
    const auto at = std::find_if(source_.begin(), source_.end(), test);
    return at == source_.end() ? nullptr : *at;
  }

  const Entries& source_;
  bool plain_;
};

CGenericEdlEntry* Pieces::covering_start(std::int64_t start) const {
  const auto covers = [start](const CGenericEdlEntry* x) {
    return x->dest_in <= start && start < x->dest_out;
  };
  if (!plain_) return first_that(covers);
  // The first entry that ends behind the point is the only one that can cover it.
  const auto at =
      std::partition_point(source_.begin(), source_.end(),
                           [start](const CGenericEdlEntry* x) { return x->dest_out <= start; });
  return at != source_.end() && covers(*at) ? *at : nullptr;
}

CGenericEdlEntry* Pieces::inside(std::int64_t start, std::int64_t end) const {
  // A piece that would not move the start forward is none: it would be found again
  // for ever.
  const auto lies_inside = [start, end](const CGenericEdlEntry* x) {
    return x->dest_in > start && x->dest_out < end && x->dest_out > start;
  };
  if (!plain_) return first_that(lies_inside);
  const auto at =
      std::partition_point(source_.begin(), source_.end(),
                           [start](const CGenericEdlEntry* x) { return x->dest_in <= start; });
  return at != source_.end() && lies_inside(*at) ? *at : nullptr;
}

CGenericEdlEntry* Pieces::covering_end(std::int64_t end) const {
  const auto covers = [end](const CGenericEdlEntry* x) {
    return x->dest_in < end && end <= x->dest_out;
  };
  if (!plain_) return first_that(covers);
  const auto at =
      std::partition_point(source_.begin(), source_.end(),
                           [end](const CGenericEdlEntry* x) { return x->dest_out < end; });
  return at != source_.end() && covers(*at) ? *at : nullptr;
}

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
  const Entries edits = entries_of(get_generic_entry_list());
  const Entries source =
      entries_of(source_edl == nullptr ? nullptr : source_edl->get_generic_entry_list());
  const Pieces pieces(source);
  for (CGenericEdlEntry* const entry : edits) {
    if (entry->reel != reel) continue;
    Results results(*out, this, *entry);
    if (source_edl == nullptr) {
      results.add_copy();
    } else {
      add_results(results, pieces.search(entry->source_in, entry->source_out), mode);
    }
  }
  return result::done;
}
