// Sorting, numbering and folding the entry list of a line format.
#include <algorithm>
#include <vector>

#include "core/entry_walk.h"
#include "core/generic_edl_entry.h"
#include "core/sample_math.h"
#include "text/text_edl.h"

namespace {

template <class Value>
struct Keyed {
  Value value;
  CGenericEdlEntry* entry;
};

// Puts the entries of a stretch of nodes in the order of their values, equal ones as they
// stand, by moving them from node to node.
template <class Value>
void sort_nodes(CObList& list, POSITION first, std::vector<Keyed<Value>>& entries) {
  const auto before = [](const Keyed<Value>& a, const Keyed<Value>& b) {
    return a.value < b.value;
  };
  if (std::is_sorted(entries.begin(), entries.end(), before)) return;
  std::stable_sort(entries.begin(), entries.end(), before);
  POSITION at = first;
  for (const Keyed<Value>& keyed : entries) {
    list.SetAt(at, keyed.entry);
    list.GetNext(at);
  }
}

CGenericEdlEntry* entry_at(const CObList& list, POSITION position) {
  return static_cast<CGenericEdlEntry*>(list.GetAt(position));
}

// Half of the shared fade; less where the second edit has not so much before it, and
// then both fades take what there is.
std::int64_t half_crossfade(CGenericEdlEntry& a, CGenericEdlEntry& b) {
  const std::int64_t half = a.fade_out_length / 2;
  if (b.source_in >= half && b.dest_in >= half) return half;
  const std::int64_t least = std::min(b.source_in, b.dest_in);
  a.fade_out_length = b.fade_in_length = least;
  return least;
}

void fold(CGenericEdlEntry& a, CGenericEdlEntry& b) {
  const std::int64_t h = half_crossfade(a, b);
  a.original_source_out = a.source_out;
  a.original_dest_out = a.dest_out;
  b.original_source_in = b.source_in;
  b.original_dest_in = b.dest_in;
  a.source_out = plus(a.source_out, h);
  a.dest_out = plus(a.dest_out, h);
  b.source_in = minus(b.source_in, h);
  b.dest_in = minus(b.dest_in, h);
}

}  // namespace

void CTextEdl::sort_by_dest_in() {
  CObList* const list = get_generic_entry_list();
  if (list == nullptr) return;
  std::vector<Keyed<std::int64_t>> entries;
  entries.reserve(static_cast<std::size_t>(list->GetCount()));
  for (EntryWalk<&CGenericEdlEntry::dest_in> walk(*list); walk.position() != nullptr;) {
    CGenericEdlEntry* const entry = walk.next();
    entries.push_back({entry->dest_in, entry});
  }
  sort_nodes(*list, list->GetHeadPosition(), entries);
}

void CTextEdl::sort_same_start(CObList* list) {
  if (list == nullptr) return;
  std::vector<Keyed<unsigned short>> entries;
  EntryWalk<&CGenericEdlEntry::dest_in> walk(*list);
  for (POSITION first = walk.position(); first != nullptr;) {
    const std::int64_t dest_in = entry_at(*list, first)->dest_in;
    entries.clear();
    while (walk.position() != nullptr && entry_at(*list, walk.position())->dest_in == dest_in) {
      CGenericEdlEntry* const entry = walk.next();
      entries.push_back({entry->get_stream(0), entry});
    }
    sort_nodes(*list, first, entries);
    first = walk.position();
  }
}

void CTextEdl::renumber_events(CObList* list) {
  if (list == nullptr) return;
  std::uint16_t number = 1;
  int lines = 0;
  bool any = false;
  std::uint16_t last_seen = 0;
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    auto* const entry = static_cast<CGenericEdlEntry*>(list->GetNext(at));
    const bool changed = !any || entry->event_number != last_seen;
    any = true;
    last_seen = entry->event_number;
    if (changed && lines != 0) {
      ++number;
      lines = 0;
    }
    entry->event_number = number;
    if (++lines == 2) {
      ++number;
      lines = 0;
    }
  }
}

void CTextEdl::mark_all_cuts() {
  const CObList* const list = get_generic_entry_list();
  for (POSITION at = list == nullptr ? nullptr : list->GetHeadPosition(); at != nullptr;) {
    static_cast<CGenericEdlEntry*>(list->GetNext(at))->transition_type = transition_cut;
  }
}

void CTextEdl::fold_crossfades() {
  const CObList* const list = get_generic_entry_list();
  if (list == nullptr || list->GetCount() < 2) return;
  // From head to tail: a fold moves the second edit, which the next pair sees.
  EntryWalk<&CGenericEdlEntry::dest_in, &CGenericEdlEntry::fade_in_length> walk(*list);
  auto* a = walk.next();
  while (walk.position() != nullptr) {
    auto* const b = walk.next();
    if (a->dest_out == b->dest_in && a->fade_out_length == b->fade_in_length) fold(*a, *b);
    a = b;
  }
}
