// Line formats have no fades: a fade-in is a dissolve from black, a fade-out a
// dissolve to black. Here fades become such events before an export.
#include <map>
#include <memory>
#include <set>
#include <tuple>
#include <vector>

#include "core/generic_edl_entry.h"
#include "core/sample_math.h"
#include "text/text_edl.h"

namespace {

constexpr const wide_char* black_reel = u"BLK";

CGenericEdlEntry* entry_at(const CObList& list, POSITION position) {
  return static_cast<CGenericEdlEntry*>(list.GetAt(position));
}

bool on_black_reel(const CGenericEdlEntry& entry) {
  wide_char name[13];
  entry.get_reel_name(name, 13);
  return field_text(name) == black_reel;
}

std::unique_ptr<CGenericEdlEntry> copy_of(const CGenericEdlEntry& entry) {
  // Under the owner of the original: the copy stays on the list when the object
  // that exports is gone.
  return std::make_unique<CGenericEdlEntry>(entry.owner, &entry);
}

POSITION insert_after(CObList& list, POSITION position, std::unique_ptr<CGenericEdlEntry> entry) {
  const POSITION added = list.InsertAfter(position, entry.get());
  static_cast<void>(entry.release());
  return added;
}

// A cut of no length from black, in front of the edit at `position`.
void insert_black_cut(CObList& list, POSITION position, bool without_fades) {
  const CGenericEdlEntry& e = *entry_at(list, position);
  auto black = copy_of(e);
  black->set_reel_name(black_reel);
  black->source_in = black->source_out = 0;
  black->dest_out = black->dest_in;
  black->transition_type = transition_cut;
  if (without_fades) black->fade_in_length = black->fade_out_length = 0;
  list.InsertBefore(position, black.get());
  static_cast<void>(black.release());
}

// Behind the edit: a cut of no length where its fade-out begins, and a dissolve from
// there to black under the next event number. The edit loses its fade-out. Answers
// the position of the dissolve.
POSITION split_fade_out(CObList& list, POSITION position, bool also_fades_in) {
  CGenericEdlEntry& e = *entry_at(list, position);
  const std::int64_t length = e.fade_out_length;
  auto cut = copy_of(e);
  auto black = copy_of(e);

  cut->source_in = cut->source_out = minus(e.source_out, length);
  cut->dest_in = cut->dest_out = minus(e.dest_out, length);
  cut->fade_in_length = cut->fade_out_length = 0;
  cut->transition_type = transition_cut;
  ++cut->event_number;

  black->set_reel_name(black_reel);
  black->source_in = 0;
  black->source_out = length;
  black->dest_in = minus(e.dest_out, length);
  black->transition_type = transition_dissolve;
  ++black->event_number;
  // The two kinds of edit leave the length in different places; readers of the
  // list rely on it.
  black->fade_in_length = also_fades_in ? length : 0;
  black->fade_out_length = also_fades_in ? 0 : length;

  e.source_out = minus(e.source_out, length);
  e.dest_out = minus(e.dest_out, length);
  e.fade_out_length = 0;
  return insert_after(list, insert_after(list, position, std::move(cut)), std::move(black));
}

// Black events and events of no length, by all that makes one the black before a
// dissolve, each in list order.
class BlackIndex {
 public:
  explicit BlackIndex(const CObList& list) {
    std::size_t place = 0;
    for (POSITION at = list.GetHeadPosition(); at != nullptr; ++place) {
      const POSITION here = at;
      const auto* const entry = static_cast<const CGenericEdlEntry*>(list.GetNext(at));
      if (entry->dest_in == entry->dest_out || on_black_reel(*entry)) {
        blacks_[key_of(*entry)].places.push_back({place, here});
      }
    }
  }

  struct Place {
    std::size_t place = 0;
    POSITION position = nullptr;
  };

  // The first one behind `place`, each handed out once; a null position for none.
  Place take_behind(const CGenericEdlEntry& entry, std::size_t place) {
    const auto hit = blacks_.find(key_of(entry));
    if (hit == blacks_.end()) return {};
    auto& [places, used] = hit->second;
    while (used < places.size() && places[used].place <= place)
      ++used;
    return used < places.size() ? places[used++] : Place();
  }

 private:
  using Key = std::tuple<unsigned short, std::int64_t, std::int64_t>;
  struct Places {
    std::vector<Place> places;
    std::size_t used = 0;
  };

  static Key key_of(const CGenericEdlEntry& entry) {
    return {entry.get_stream(0), entry.dest_in, entry.fade_in_length};
  }

  std::map<Key, Places> blacks_;
};

bool is_all_fade_in(const CGenericEdlEntry& entry) {
  return minus(entry.dest_out, entry.dest_in) == entry.fade_in_length &&
         entry.transition_type == transition_dissolve && !on_black_reel(entry);
}

void remove(CObList& list, POSITION position) {
  const std::unique_ptr<CGenericEdlEntry> entry(entry_at(list, position));
  list.RemoveAt(position);
}

}  // namespace

void CTextEdl::split_fades() {
  CObList* const list = get_generic_entry_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr; list->GetNext(at)) {
    CGenericEdlEntry& e = *entry_at(*list, at);
    const bool fades_in = samples_to_frames(e.fade_in_length) != 0;
    const bool fades_out = samples_to_frames(e.fade_out_length) != 0;
    e.transition_type = fades_in ? transition_dissolve : transition_cut;
    if (fades_in && !fades_out) e.fade_out_length = 0;
    if (fades_out && !fades_in) e.fade_in_length = 0;
    if (fades_in) insert_black_cut(*list, at, fades_out);
    if (fades_out) at = split_fade_out(*list, at, fades_in);
  }
}

void CTextEdl::remove_black_pairs() {
  CObList* const list = get_generic_entry_list();
  BlackIndex blacks(*list);
  // Places count the list as it stood at the start, so those that a pair leaves
  // empty ahead of the walk are stepped over.
  std::set<std::size_t> removed;
  std::size_t place = 0;
  for (POSITION at = list->GetHeadPosition(); at != nullptr; ++place) {
    while (removed.contains(place))
      ++place;
    const POSITION here = at;
    list->GetNext(at);
    const CGenericEdlEntry& entry = *entry_at(*list, here);
    if (!is_all_fade_in(entry)) continue;
    const BlackIndex::Place black = blacks.take_behind(entry, place);
    if (black.position == nullptr) continue;
    removed.insert(black.place);
    if (at == black.position) list->GetNext(at);
    remove(*list, black.position);
    remove(*list, here);
  }
}

void CTextEdl::split_for_export() {
  if (get_generic_entry_list() == nullptr) return;
  split_fades();
  remove_black_pairs();
  sort_same_start(get_generic_entry_list());
  renumber_events(get_generic_entry_list());
}
