#include "adl/event_joins.h"

#include <algorithm>
#include <bit>
#include <deque>
#include <functional>
#include <limits>
#include <queue>
#include <vector>

#include "core/sample_math.h"

namespace adl {

namespace {

using Event = CGenericEDLFileEntry;
using Events = std::span<Event* const>;

constexpr std::size_t no_place = std::numeric_limits<std::size_t>::max();

// Butt splices

// What two events of a pair have in common: where the crossfade begins, its length and
// the tracks.
struct JoinKey {
  std::int64_t start;
  std::int64_t fade;
  std::uint16_t first_stream;
  std::uint16_t stream_count;

  bool operator==(const JoinKey&) const = default;
};

struct JoinHash {
  std::size_t operator()(const JoinKey& key) const {
    std::uint64_t hash = static_cast<std::uint64_t>(key.start) * 0x9E3779B97F4A7C15U;
    hash ^= static_cast<std::uint64_t>(key.fade) + (hash >> 29);
    hash *= 0xBF58476D1CE4E5B9U;
    hash ^= std::uint64_t{key.first_stream} << 16 | key.stream_count;
    hash *= 0x94D049BB133111EBU;
    return hash ^ (hash >> 31);
  }
};

// Of the event that comes in; an odd fade begins a sample late.
JoinKey key_of_incoming(const Event& f) {
  return {minus(f.m_dest_in, f.m_fade_in_length & 1), f.m_fade_in_length, f.m_first_stream,
          f.m_stream_count};
}

// Of the event that goes out.
JoinKey key_of_outgoing(const Event& e) {
  return {minus(plus(e.m_dest_in, e.m_length), e.m_fade_out_length), e.m_fade_out_length,
          e.m_first_stream, e.m_stream_count};
}

void join(Event& e, Event& f) {
  const std::int64_t half = e.m_fade_out_length / 2;
  e.m_fade_out_length = 0;
  e.m_crossfade_out = 1;
  e.m_length = minus(e.m_length, half);
  f.m_source_in = plus(f.m_source_in, half);
  f.m_dest_in = plus(f.m_dest_in, half);
  f.m_length = minus(f.m_length, half);
  f.m_fade_in_length = 0;
  f.m_crossfade_in = 1;
}

// The places of events that may come in, by key, in an open table. A join gives an
// event another key; it is then entered once more, and what is left of it under the old
// one is passed over when it comes up.
class Incoming {
 public:
  Incoming(Events events, std::int64_t longest_fade)
      : m_events(events),
        // No event is entered more than twice, so a third of the slots stays free.
        m_slots(std::bit_ceil(events.size() * 3 + 1)),
        m_next(events.size()) {
    for (std::size_t place = events.size(); place-- > 0;) {
      if (events[place]->m_fade_in_length > longest_fade) continue;
      Slot& slot = used_slot_of(key_of_incoming(*events[place]));
      m_next[place] = slot.first;
      slot.first = place;
    }
  }

  void enter_again(std::size_t place) {
    Slot& slot = used_slot_of(key_of_incoming(*m_events[place]));
    if (slot.late == nullptr) slot.late = &m_late.emplace_back();
    slot.late->push(place);
  }

  // The first event with this key behind `place`; no_place for none. Places must come
  // in rising order.
  std::size_t find(const JoinKey& key, std::size_t place) {
    const auto is_done = [&](std::size_t other) {
      return other <= place || !(key_of_incoming(*m_events[other]) == key);
    };
    Slot& slot = slot_of(key);
    while (slot.first != no_place && is_done(slot.first))
      slot.first = m_next[slot.first];
    if (slot.late == nullptr) return slot.first;
    while (!slot.late->empty() && is_done(slot.late->top()))
      slot.late->pop();
    return slot.late->empty() ? slot.first : std::min(slot.first, slot.late->top());
  }

 private:
  using Heap = std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>>;
  struct Slot {
    JoinKey key = {};
    bool is_used = false;
    // A chain in rising order, and what was entered again.
    std::size_t first = no_place;
    Heap* late = nullptr;
  };

  // The slot of a key, or the free one where it would be.
  Slot& slot_of(const JoinKey& key) {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t at = JoinHash()(key) & mask;
    while (m_slots[at].is_used && !(m_slots[at].key == key))
      at = (at + 1) & mask;
    return m_slots[at];
  }
  Slot& used_slot_of(const JoinKey& key) {
    Slot& slot = slot_of(key);
    slot.key = key;
    slot.is_used = true;
    return slot;
  }

  Events m_events;
  std::vector<Slot> m_slots;
  // By place, the next of its chain.
  std::vector<std::size_t> m_next;
  std::deque<Heap> m_late;
};

// Overlaps

struct TrackRange {
  std::size_t first;
  // One past the last.
  std::size_t end;
};

TrackRange tracks_of(const Event& event) {
  return {event.m_first_stream, std::size_t{event.m_first_stream} + event.m_stream_count};
}

// For each track the place of the event that was put there last, and the least of them
// over a range of tracks. Places must fall from one call to the next, so that the last
// is the least.
class LastOnTracks {
 public:
  explicit LastOnTracks(std::size_t track_count) {
    while (m_leaves < track_count)
      m_leaves *= 2;
    m_nodes.assign(m_leaves * 2, {no_place, no_place});
  }

  [[nodiscard]] std::size_t least(const TrackRange& range) const {
    std::size_t least = no_place;
    visit(range, [&](std::size_t node) { least = std::min(least, m_nodes[node].least); });
    // What was put on a whole range above also lies on its tracks.
    for (std::size_t edge : {range.first, range.end - 1}) {
      for (std::size_t node = edge + m_leaves; node >= 1; node /= 2)
        least = std::min(least, m_nodes[node].of_all);
    }
    return least;
  }

  void put(const TrackRange& range, std::size_t place) {
    visit(range, [&](std::size_t node) { m_nodes[node] = {place, place}; });
    for (std::size_t edge : {range.first, range.end - 1}) {
      for (std::size_t node = (edge + m_leaves) / 2; node >= 1; node /= 2)
        m_nodes[node].least = std::min(m_nodes[node].least, place);
    }
  }

 private:
  struct Node {
    // On any of the tracks below; on all of them.
    std::size_t least;
    std::size_t of_all;
  };

  // Calls `work` with the nodes that make up a range which is not empty.
  template <class Work>
  void visit(const TrackRange& range, Work work) const {
    std::size_t low = range.first + m_leaves;
    std::size_t high = range.end + m_leaves;
    for (; low < high; low /= 2, high /= 2) {
      if (low % 2 == 1) work(low++);
      if (high % 2 == 1) work(--high);
    }
  }

  std::size_t m_leaves = 1;
  std::vector<Node> m_nodes;
};

// The first event behind each that shares a track with it.
std::vector<std::size_t> first_on_same_tracks(Events events) {
  std::size_t track_count = 1;
  for (const Event* const event : events)
    track_count = std::max(track_count, tracks_of(*event).end);
  LastOnTracks last(track_count);
  std::vector<std::size_t> found(events.size(), no_place);
  for (std::size_t place = events.size(); place-- > 0;) {
    const TrackRange tracks = tracks_of(*events[place]);
    if (tracks.first >= tracks.end) continue;
    found[place] = last.least(tracks);
    last.put(tracks, place);
  }
  return found;
}

// The first event behind each that starts later than it ends; the count of events for
// none. Of the events behind a place only those matter that start later than all
// between, and their starts rise.
std::vector<std::size_t> first_behind_end(Events events) {
  std::vector<std::size_t> found(events.size(), events.size());
  // The nearest on top.
  std::vector<std::size_t> later;
  for (std::size_t place = events.size(); place-- > 0;) {
    const std::int64_t last_sample =
        minus(plus(events[place]->m_dest_in, events[place]->m_length), 1);
    // Starts fall from the bottom to the top.
    const auto at = std::partition_point(later.begin(), later.end(), [&](std::size_t other) {
      return events[other]->m_dest_in > last_sample;
    });
    if (at != later.begin()) found[place] = *std::prev(at);
    while (!later.empty() && events[later.back()]->m_dest_in <= events[place]->m_dest_in)
      later.pop_back();
    later.push_back(place);
  }
  return found;
}

}  // namespace

void convert_butt_splices(std::span<CGenericEDLFileEntry* const> events,
                          std::int64_t crossfade_length) {
  Incoming incoming(events, crossfade_length);
  for (std::size_t place = 0; place < events.size(); ++place) {
    Event& e = *events[place];
    if (e.m_fade_out_length > crossfade_length) continue;
    const std::size_t partner = incoming.find(key_of_outgoing(e), place);
    if (partner == no_place) continue;
    Event& f = *events[partner];
    const JoinKey before = key_of_incoming(f);
    join(e, f);
    if (!(key_of_incoming(f) == before)) incoming.enter_again(partner);
  }
}

void mark_overlaps(std::span<CGenericEDLFileEntry* const> events) {
  const std::vector<std::size_t> shares = first_on_same_tracks(events);
  const std::vector<std::size_t> ends = first_behind_end(events);
  for (std::size_t place = 0; place < events.size(); ++place) {
    if (events[place]->m_clean == 0 || shares[place] >= ends[place]) continue;
    events[place]->m_clean = 0;
    events[shares[place]]->m_clean = 0;
  }
}

}  // namespace adl
