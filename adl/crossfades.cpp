#include "adl/crossfades.h"

#include <algorithm>
#include <compare>
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

  // The place of the first one with this key behind `place`, which is taken; the count
  // of events is `none`.
  std::size_t take(const StartKey& key, std::size_t place, std::size_t none) {
    const auto at = std::upper_bound(m_rows.begin(), m_rows.end(), Row{key, place});
    const std::size_t row = first_left(static_cast<std::size_t>(at - m_rows.begin()));
    if (row == m_rows.size() || m_rows[row].key != key) return none;
    m_next[row] = row + 1;
    return m_rows[row].place;
  }

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
  for (std::size_t place = 0; place < events.size(); ++place) {
    Event& e = *events[place];
    const StartKey end = {plus(e.m_dest_in, e.m_length), e.m_first_stream, e.m_stream_count};
    if (e.m_fade_in_length == time_not_given) give_fade_in(e, defaults);
    if (e.m_fade_out_length != time_not_given) continue;
    const std::size_t partner = starts.take(end, place, events.size());
    if (partner == events.size()) {
      e.m_fade_out_length =
          std::min(defaults.crossfade_length, minus(e.m_length, e.m_fade_in_length));
      e.m_fade_out_curve = defaults.outfade_curve;
    } else if (defaults.interchange) {
      e.m_fade_out_length = 0;
      events[partner]->m_fade_in_length = 0;
    } else {
      join(e, *events[partner], defaults);
    }
  }
}

}  // namespace adl
