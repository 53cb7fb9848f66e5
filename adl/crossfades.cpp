#include "adl/crossfades.h"

#include <algorithm>
#include <compare>
#include <limits>
#include <numeric>
#include <vector>

#include "core/sample_math.h"

namespace adl {

namespace {

using Event = CGenericEDLFileEntry;
using Events = std::span<Event* const>;

// Where an event starts, and its tracks.
struct StartKey {
  std::int64_t start;
  std::uint16_t first_stream;
  std::uint16_t stream_count;

  auto operator<=>(const StartKey&) const = default;
};

// The events without a fade-in by their start, and among equal keys in order of the
// list. An event that is taken as a partner is one no more. Starts are those from
// before any crossfade; an event that moves has been taken.
class Starts {
 public:
  static constexpr std::size_t no_row = std::numeric_limits<std::size_t>::max();

  explicit Starts(Events events) {
    for (std::size_t place = 0; place < events.size(); ++place) {
      const Event& event = *events[place];
      if (event.m_fade_in_length != time_not_given) continue;
      m_rows.push_back({{event.m_dest_in, event.m_first_stream, event.m_stream_count}, place});
    }
    std::sort(m_rows.begin(), m_rows.end());
    m_next.resize(m_rows.size() + 1);
    std::iota(m_next.begin(), m_next.end(), std::size_t{0});
  }

  // The row of the first one with this key behind `place`; no_row for none.
  std::size_t find(const StartKey& key, std::size_t place) {
    const auto at = std::upper_bound(m_rows.begin(), m_rows.end(), Row{key, place});
    const std::size_t row = first_left(static_cast<std::size_t>(at - m_rows.begin()));
    return row == m_rows.size() || m_rows[row].key != key ? no_row : row;
  }
  [[nodiscard]] std::size_t place_of(std::size_t row) const { return m_rows[row].place; }
  void take(std::size_t row) { m_next[row] = row + 1; }

 private:
  struct Row {
    StartKey key;
    std::size_t place;

    auto operator<=>(const Row&) const = default;
  };

  // The first row from here on that was not taken.
  std::size_t first_left(std::size_t row) {
    while (m_next[row] != row) {
      m_next[row] = m_next[m_next[row]];
      row = m_next[row];
    }
    return row;
  }

  std::vector<Row> m_rows;
  std::vector<std::size_t> m_next;
};

// Events that a crossfade has moved later, which a fade-out longer than its event does:
// the latest start among the places of a stretch. Nothing is kept until there is one.
class MovedLater {
 public:
  explicit MovedLater(std::size_t count) : m_count(count) {}

  void set(std::size_t place, std::int64_t start) {
    if (m_starts.empty()) m_starts.assign(m_count * 2, std::numeric_limits<std::int64_t>::min());
    for (std::size_t node = place + m_count; node >= 1; node /= 2)
      m_starts[node] = std::max(m_starts[node], start);
  }
  // Whether one of the places from `first` to in front of `end` starts behind `time`.
  [[nodiscard]] bool any_behind(std::size_t first, std::size_t end, std::int64_t time) const {
    if (m_starts.empty()) return false;
    std::size_t low = first + m_count;
    std::size_t high = end + m_count;
    for (; low < high; low /= 2, high /= 2) {
      if (low % 2 == 1 && m_starts[low++] > time) return true;
      if (high % 2 == 1 && m_starts[--high] > time) return true;
    }
    return false;
  }

 private:
  std::size_t m_count;
  std::vector<std::int64_t> m_starts;
};

// The out-fade of the first event comes with a curve; the in-fade of the second is
// bounded by the material in front of its cut, and then so is the other one.
void join(Event& e, Event& f, const FadeDefaults& defaults) {
  const std::int64_t crossfade = defaults.crossfade_length;
  const std::int64_t half = crossfade / 2;
  const std::int64_t length = e.m_length;
  e.m_fade_out_length = std::min(crossfade, plus(minus(half, e.m_fade_in_length), length));
  e.m_length = plus(length, half);
  e.m_fade_out_curve = defaults.outfade_curve;
  e.m_crossfade_out = 1;
  const std::int64_t fade_out = f.m_fade_out_length != time_not_given
                                    ? f.m_fade_out_length
                                    : std::min(crossfade, f.m_length / 2);
  std::int64_t fade_in = std::min(crossfade, plus(minus(half, fade_out), f.m_length));
  if (fade_in > f.m_source_in) {
    fade_in = f.m_source_in;
    if (fade_in < e.m_fade_out_length) {
      e.m_fade_out_length = fade_in;
      e.m_length = plus(length, fade_in / 2);
    }
  }
  f.m_fade_in_length = fade_in;
  f.m_fade_in_curve = defaults.infade_curve;
  f.m_crossfade_in = 1;
  f.m_source_in = minus(f.m_source_in, fade_in / 2);
  f.m_dest_in = minus(f.m_dest_in, fade_in / 2);
  f.m_length = plus(f.m_length, fade_in / 2);
}

void give_fade_in(Event& e, const FadeDefaults& defaults) {
  const std::int64_t fade_out = e.m_fade_out_length != time_not_given
                                    ? e.m_fade_out_length
                                    : std::min(defaults.crossfade_length, e.m_length / 2);
  e.m_fade_in_length = std::min(defaults.crossfade_length, minus(e.m_length, fade_out));
  e.m_fade_in_curve = defaults.infade_curve;
}

}  // namespace

void reconcile_crossfades(std::span<CGenericEDLFileEntry* const> events,
                          const FadeDefaults& defaults) {
  Starts starts(events);
  MovedLater moved(events.size());
  for (std::size_t place = 0; place < events.size(); ++place) {
    Event& e = *events[place];
    const StartKey end = {plus(e.m_dest_in, e.m_length), e.m_first_stream, e.m_stream_count};
    if (e.m_fade_in_length == time_not_given) give_fade_in(e, defaults);
    if (e.m_fade_out_length != time_not_given) continue;
    const std::size_t row = starts.find(end, place);
    // The search for a partner ends at an event that starts later.
    if (row == Starts::no_row || moved.any_behind(place + 1, starts.place_of(row), end.start)) {
      e.m_fade_out_length =
          std::min(defaults.crossfade_length, minus(e.m_length, e.m_fade_in_length));
      e.m_fade_out_curve = defaults.outfade_curve;
      continue;
    }
    starts.take(row);
    Event& f = *events[starts.place_of(row)];
    if (defaults.interchange) {
      e.m_fade_out_length = 0;
      f.m_fade_in_length = 0;
      continue;
    }
    join(e, f, defaults);
    if (f.m_dest_in > end.start) moved.set(starts.place_of(row), f.m_dest_in);
  }
}

}  // namespace adl
