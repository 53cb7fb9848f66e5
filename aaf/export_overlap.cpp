#include "aaf/export_overlap.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "core/sample_math.h"

namespace aaf {

namespace {

// Streams that events may have in all before each is only compared with each: an event
// with all streams there are would otherwise take a record for every one of them.
constexpr std::size_t most_streams = std::size_t{1} << 22;

std::int32_t first_stream(const CGenericEDLFileEntry& event) {
  return event.m_first_stream;
}
std::int32_t last_stream(const CGenericEDLFileEntry& event) {
  return event.m_first_stream + event.m_stream_count - 1;
}
std::int64_t end_of(const CGenericEDLFileEntry& event) {
  return plus(event.m_dest_in, event.m_length);
}

bool streams_meet(const CGenericEDLFileEntry& a, const CGenericEDLFileEntry& b) {
  const std::int32_t first_a = first_stream(a);
  const std::int32_t last_a = last_stream(a);
  const std::int32_t first_b = first_stream(b);
  const std::int32_t last_b = last_stream(b);
  return (first_a <= first_b && first_b <= last_a) || (first_a <= last_b && last_b <= last_a) ||
         (first_b <= first_a && last_a <= last_b);
}

bool times_meet(const CGenericEDLFileEntry& a, const CGenericEDLFileEntry& b) {
  return (a.m_dest_in <= b.m_dest_in && b.m_dest_in < end_of(a)) ||
         (b.m_dest_in < a.m_dest_in && a.m_dest_in < end_of(b));
}

using Events = std::vector<const CGenericEDLFileEntry*>;

// One event on one of its streams.
struct Place {
  std::int32_t stream;
  std::size_t index;
  std::int64_t start;
  // The latest end of this one and of all in front of it on the stream.
  std::int64_t latest_end;
};

bool stands_before(const Place& a, const Place& b) {
  if (a.stream != b.stream) return a.stream < b.stream;
  return a.start != b.start ? a.start < b.start : a.index < b.index;
}

EventPair compare_all(const Events& events) {
  for (std::size_t a = 0; a < events.size(); ++a) {
    for (std::size_t b = a + 1; b < events.size(); ++b) {
      if (is_bad_overlap(*events[a], *events[b])) return {events[a], events[b]};
    }
  }
  return {};
}

// Empty when the events do not suit it: one without streams meets others by a rule of
// its own, and there may be too many streams.
std::vector<Place> places_of(const Events& events) {
  std::size_t total = 0;
  for (const CGenericEDLFileEntry* const event : events) {
    if (event->m_stream_count == 0) return {};
    total += event->m_stream_count;
  }
  if (total > most_streams + events.size() * 2) return {};
  std::vector<Place> places;
  places.reserve(total);
  for (std::size_t index = 0; index < events.size(); ++index) {
    const CGenericEDLFileEntry& event = *events[index];
    for (std::int32_t stream = first_stream(event); stream <= last_stream(event); ++stream)
      places.push_back({stream, index, event.m_dest_in, end_of(event)});
  }
  std::sort(places.begin(), places.end(), stands_before);
  for (std::size_t i = 1; i < places.size(); ++i) {
    if (places[i].stream == places[i - 1].stream)
      places[i].latest_end = std::max(places[i].latest_end, places[i - 1].latest_end);
  }
  return places;
}

// The least index behind `a` of an event that makes a bad pair with it on the stream of
// its place, or `least` when none is below that. Only the neighbours in time are looked
// at: behind, those that begin before it ends; in front, until all have ended.
std::size_t least_bad(const Events& events, const std::vector<Place>& places, std::size_t place,
                      std::size_t least) {
  const std::size_t a = places[place].index;
  const std::int32_t stream = places[place].stream;
  const auto try_place = [&](std::size_t at) {
    const std::size_t b = places[at].index;
    if (b > a && b < least && is_bad_overlap(*events[a], *events[b])) least = b;
  };
  const std::int64_t end = end_of(*events[a]);
  for (std::size_t at = place + 1;
       at < places.size() && places[at].stream == stream && places[at].start < end; ++at)
    try_place(at);
  for (std::size_t at = place; at > 0; --at) {
    const Place& before = places[at - 1];
    // One that begins at the same time need not last as long to meet it.
    if (before.stream != stream ||
        (before.latest_end <= places[place].start && before.start < places[place].start))
      break;
    try_place(at - 1);
  }
  return least;
}

}  // namespace

bool is_bad_overlap(const CGenericEDLFileEntry& a, const CGenericEDLFileEntry& b) {
  if (!streams_meet(a, b) || !times_meet(a, b)) return false;
  return b.m_dest_in <= plus(a.m_dest_in, a.m_fade_in_length) ||
         minus(end_of(b), b.m_fade_out_length) <= end_of(a);
}

EventPair first_bad_overlap(const CObList& list) {
  Events events;
  events.reserve(static_cast<std::size_t>(list.GetCount()));
  for (POSITION at = list.GetHeadPosition(); at != nullptr;)
    events.push_back(static_cast<const CGenericEDLFileEntry*>(list.GetNext(at)));
  const std::vector<Place> places = places_of(events);
  if (places.empty()) return compare_all(events);
  std::size_t first = events.size();
  std::size_t second = events.size();
  for (std::size_t place = 0; place < places.size(); ++place) {
    const std::size_t a = places[place].index;
    if (a > first) continue;
    const std::size_t least = a == first ? second : events.size();
    const std::size_t b = least_bad(events, places, place, least);
    if (b == least) continue;
    first = a;
    second = b;
  }
  if (first == events.size()) return {};
  return {events[first], events[second]};
}

}  // namespace aaf
