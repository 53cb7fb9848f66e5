// The fades that a list leaves out: worked cases, and the fast search against the plain.
#include "adl/crossfades.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <tuple>
#include <vector>

#include "core/sample_math.h"

namespace {

using Event = CGenericEDLFileEntry;
using EventList = std::vector<std::unique_ptr<Event>>;

constexpr std::int64_t none = time_not_given;

struct Shape {
  std::int64_t dest_in = 0;
  std::int64_t length = 1000;
  std::int64_t source_in = 5000;
  std::int64_t fade_in = none;
  std::int64_t fade_out = none;
  std::uint16_t track = 0;
  std::uint16_t tracks = 1;
};

std::unique_ptr<Event> event_of(const Shape& shape) {
  auto event = std::make_unique<Event>();
  event->m_dest_in = shape.dest_in;
  event->m_length = shape.length;
  event->m_source_in = shape.source_in;
  event->m_fade_in_length = shape.fade_in;
  event->m_fade_out_length = shape.fade_out;
  event->m_first_stream = shape.track;
  event->m_stream_count = shape.tracks;
  event->m_fade_in_curve = 77;
  event->m_fade_out_curve = 78;
  return event;
}

std::vector<Event*> pointers(const EventList& list) {
  std::vector<Event*> events;
  for (const auto& event : list)
    events.push_back(event.get());
  return events;
}

adl::FadeDefaults defaults_of(std::int64_t crossfade, bool interchange = false) {
  return {crossfade, 1, 2, interchange};
}

EventList reconciled(const std::vector<Shape>& shapes, std::int64_t crossfade = 200,
                     bool interchange = false) {
  EventList list;
  for (const Shape& shape : shapes)
    list.push_back(event_of(shape));
  adl::reconcile_crossfades(pointers(list), defaults_of(crossfade, interchange));
  return list;
}

// Destination in, length, fade-in and fade-out.
using Times = std::vector<std::int64_t>;
Times times(const Event& e) {
  return {e.m_dest_in, e.m_length, e.m_fade_in_length, e.m_fade_out_length};
}

TEST(Crossfades, EventsThatMeetGrowOverTheCut) {
  const EventList list = reconciled({{0}, {1000, 1000, 7000}});
  const Event& e = *list[0];
  const Event& f = *list[1];
  EXPECT_EQ(times(e), (Times{0, 1100, 200, 200}));
  EXPECT_EQ(times(f), (Times{900, 1100, 200, 200}));
  EXPECT_EQ(f.m_source_in, 6900);
  EXPECT_EQ(e.m_crossfade_in + f.m_crossfade_out, 0U);
  EXPECT_EQ(e.m_crossfade_out + f.m_crossfade_in, 2U);
  for (const auto& event : list) {
    EXPECT_EQ(event->m_fade_in_curve, 1);
    EXPECT_EQ(event->m_fade_out_curve, 2);
  }
}

TEST(Crossfades, AreBoundedByTheMaterialInFrontOfTheCut) {
  const EventList sixty = reconciled({{0}, {1000, 1000, 60}});
  EXPECT_EQ(times(*sixty[0]), (Times{0, 1030, 200, 60}));
  EXPECT_EQ(times(*sixty[1]), (Times{970, 1030, 60, 200}));
  EXPECT_EQ(sixty[1]->m_source_in, 30);
  const EventList odd = reconciled({{0}, {1000, 1000, 61}});
  EXPECT_EQ(times(*odd[0]), (Times{0, 1030, 200, 61}));
  EXPECT_EQ(times(*odd[1]), (Times{970, 1030, 61, 200}));
  EXPECT_EQ(odd[1]->m_source_in, 31);
  const EventList nothing = reconciled({{0}, {1000, 1000, 0}});
  EXPECT_EQ(times(*nothing[0]), (Times{0, 1000, 200, 0}));
  EXPECT_EQ(times(*nothing[1]), (Times{1000, 1000, 0, 200}));
  EXPECT_EQ(nothing[0]->m_crossfade_out + nothing[1]->m_crossfade_in, 2U);
}

TEST(Crossfades, AreBoundedByShortEvents) {
  const EventList short_f = reconciled({{0}, {1000, 100, 7000}});
  EXPECT_EQ(times(*short_f[0]), (Times{0, 1100, 200, 200}));
  EXPECT_EQ(times(*short_f[1]), (Times{925, 175, 150, 25}));
  EXPECT_EQ(short_f[1]->m_source_in, 6925);
  const EventList short_e = reconciled({{0, 100}, {100, 1000, 7000}});
  EXPECT_EQ(times(*short_e[0]), (Times{0, 200, 50, 150}));
  EXPECT_EQ(times(*short_e[1]), (Times{0, 1100, 200, 200}));
  EXPECT_EQ(short_e[1]->m_source_in, 6900);
  const EventList both = reconciled({{0, 100}, {100, 100, 7000}});
  EXPECT_EQ(times(*both[0]), (Times{0, 200, 50, 150}));
  EXPECT_EQ(times(*both[1]), (Times{25, 175, 150, 25}));
  const EventList given = reconciled({{0}, {1000, 200, 7000, none, 150}});
  EXPECT_EQ(times(*given[0]), (Times{0, 1100, 200, 200}));
  EXPECT_EQ(times(*given[1]), (Times{925, 275, 150, 150}));
}

TEST(Crossfades, RunFromEventToEvent) {
  const EventList list = reconciled({{0}, {1000}, {2000}});
  EXPECT_EQ(times(*list[0]), (Times{0, 1100, 200, 200}));
  EXPECT_EQ(times(*list[1]), (Times{900, 1200, 200, 200}));
  EXPECT_EQ(times(*list[2]), (Times{1900, 1100, 200, 200}));
}

TEST(Crossfades, SingleEventsGetWhatTheyHaveRoomFor) {
  const auto fades = [](std::int64_t length, std::int64_t in = none, std::int64_t out = none) {
    const EventList list = reconciled({{0, length, 5000, in, out}});
    return Times{list[0]->m_fade_in_length, list[0]->m_fade_out_length};
  };
  EXPECT_EQ(fades(100), (Times{50, 50}));
  EXPECT_EQ(fades(101), (Times{51, 50}));
  EXPECT_EQ(fades(1000), (Times{200, 200}));
  EXPECT_EQ(fades(0), (Times{0, 0}));
  EXPECT_EQ(fades(100, 300), (Times{300, -200}));
  EXPECT_EQ(fades(100, none, 300), (Times{-200, 300}));
}

TEST(Crossfades, OnlyWhereEventsMeetWithoutFades) {
  const auto joined = [](const std::vector<Shape>& shapes) {
    const EventList list = reconciled(shapes);
    return list.front()->m_crossfade_out != 0;
  };
  EXPECT_TRUE(joined({{0}, {1000}}));
  EXPECT_FALSE(joined({{0}, {1500}}));
  EXPECT_FALSE(joined({{0, 1000, 0, none, 50}, {1000}}));
  EXPECT_FALSE(joined({{0}, {1000, 1000, 0, 30}}));
  EXPECT_FALSE(joined({{0}, {1000, 1000, 0, none, none, 1}}));
  EXPECT_FALSE(joined({{0}, {1000, 1000, 0, none, none, 0, 2}}));
  // Another track between them.
  EXPECT_TRUE(joined({{0}, {1000, 500, 0, none, none, 1}, {1000}}));
}

TEST(Crossfades, NoneInAnInterchangeJob) {
  const EventList list = reconciled({{0}, {1000}}, 200, true);
  EXPECT_EQ(times(*list[0]), (Times{0, 1000, 200, 0}));
  EXPECT_EQ(times(*list[1]), (Times{1000, 1000, 0, 200}));
  EXPECT_EQ(list[0]->m_crossfade_out + list[1]->m_crossfade_in, 0U);
  EXPECT_EQ(list[0]->m_fade_out_curve, 78);
  EXPECT_EQ(list[1]->m_fade_in_curve, 77);
}

TEST(Crossfades, OfNoLengthMoveNothing) {
  const EventList list = reconciled({{0}, {1000}}, 0);
  EXPECT_EQ(times(*list[0]), (Times{0, 1000, 0, 0}));
  EXPECT_EQ(times(*list[1]), (Times{1000, 1000, 0, 0}));
  EXPECT_EQ(list[0]->m_crossfade_out + list[1]->m_crossfade_in, 2U);
}

// The walk as it is told: each event over those behind it, until one starts later.
void plain_reconcile(const std::vector<Event*>& events, const adl::FadeDefaults& d) {
  const std::int64_t x = d.crossfade_length;
  const std::int64_t h = x / 2;
  for (std::size_t i = 0; i < events.size(); ++i) {
    Event& e = *events[i];
    const std::int64_t end = plus(e.m_dest_in, e.m_length);
    if (e.m_fade_in_length == none) {
      const std::int64_t out =
          e.m_fade_out_length != none ? e.m_fade_out_length : std::min(x, e.m_length / 2);
      e.m_fade_in_length = std::min(x, minus(e.m_length, out));
      e.m_fade_in_curve = d.infade_curve;
    }
    if (e.m_fade_out_length != none) continue;
    bool joined = false;
    for (std::size_t j = i + 1; j < events.size(); ++j) {
      Event& f = *events[j];
      if (f.m_dest_in == end && f.m_fade_in_length == none &&
          f.m_first_stream == e.m_first_stream && f.m_stream_count == e.m_stream_count) {
        joined = true;
        if (d.interchange) {
          e.m_fade_out_length = f.m_fade_in_length = 0;
          break;
        }
        const std::int64_t length = e.m_length;
        e.m_fade_out_length = std::min(x, plus(minus(h, e.m_fade_in_length), length));
        e.m_length = plus(length, h);
        e.m_fade_out_curve = d.outfade_curve;
        e.m_crossfade_out = 1;
        const std::int64_t p =
            f.m_fade_out_length != none ? f.m_fade_out_length : std::min(x, f.m_length / 2);
        std::int64_t c = std::min(x, plus(minus(h, p), f.m_length));
        if (c > f.m_source_in) {
          c = f.m_source_in;
          if (c < e.m_fade_out_length) {
            e.m_fade_out_length = c;
            e.m_length = plus(length, c / 2);
          }
        }
        f.m_fade_in_length = c;
        f.m_fade_in_curve = d.infade_curve;
        f.m_crossfade_in = 1;
        f.m_source_in = minus(f.m_source_in, c / 2);
        f.m_dest_in = minus(f.m_dest_in, c / 2);
        f.m_length = plus(f.m_length, c / 2);
        break;
      }
      if (f.m_dest_in > end) break;
    }
    if (joined) continue;
    e.m_fade_out_length = std::min(x, minus(e.m_length, e.m_fade_in_length));
    e.m_fade_out_curve = d.outfade_curve;
  }
}

EventList random_list(unsigned seed) {
  std::mt19937 random(seed);
  const auto below = [&random](int limit) {
    return std::uniform_int_distribution<int>(0, limit - 1)(random);
  };
  std::vector<Shape> shapes;
  const int count = 1 + below(50);
  const int span = 2 + below(30);
  for (int i = 0; i < count; ++i) {
    Shape shape;
    shape.dest_in = below(span);
    shape.length = below(10);
    shape.source_in = below(12);
    shape.fade_in = below(5) == 0 ? below(6) : none;
    shape.fade_out = below(5) == 0 ? below(6) : none;
    shape.track = static_cast<std::uint16_t>(below(2));
    shape.tracks = static_cast<std::uint16_t>(1 + below(2));
    shapes.push_back(shape);
  }
  if (below(4) == 0) shapes.push_back({none, 0, none});
  std::stable_sort(shapes.begin(), shapes.end(),
                   [](const Shape& a, const Shape& b) { return a.dest_in < b.dest_in; });
  EventList list;
  for (const Shape& shape : shapes)
    list.push_back(event_of(shape));
  return list;
}

auto values(const Event& e) {
  return std::tuple(e.m_dest_in, e.m_source_in, e.m_length, e.m_fade_in_length, e.m_fade_out_length,
                    e.m_fade_in_curve, e.m_fade_out_curve, e.m_crossfade_in, e.m_crossfade_out);
}

TEST(Crossfades, AgreeWithThePlainWalk) {
  int joined = 0;
  for (unsigned seed = 0; seed < 4000; ++seed) {
    const EventList fast = random_list(seed);
    const EventList plain = random_list(seed);
    const adl::FadeDefaults defaults =
        defaults_of(static_cast<std::int64_t>(seed % 5) * 2, seed % 11 == 0);
    adl::reconcile_crossfades(pointers(fast), defaults);
    plain_reconcile(pointers(plain), defaults);
    for (std::size_t i = 0; i < fast.size(); ++i) {
      ASSERT_EQ(values(*fast[i]), values(*plain[i])) << "seed " << seed << ", event " << i;
      joined += fast[i]->m_crossfade_in != 0 ? 1 : 0;
    }
  }
  EXPECT_GT(joined, 4000);
}

}  // namespace
