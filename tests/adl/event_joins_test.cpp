// The fast searches for joins and overlaps against the plain ones, and the rules that
// both follow.
#include "adl/event_joins.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <tuple>
#include <vector>

#include "core/sample_math.h"

namespace {

using Event = CGenericEDLFileEntry;
using EventList = std::vector<std::unique_ptr<Event>>;

std::vector<Event*> pointers(const EventList& list) {
  std::vector<Event*> events;
  for (const auto& event : list)
    events.push_back(event.get());
  return events;
}

struct Shape {
  std::int64_t dest_in;
  std::int64_t length;
  std::uint16_t track = 0;
  std::uint16_t tracks = 1;
  std::int64_t fade_in = 0;
  std::int64_t fade_out = 0;
};

void add(EventList& list, const Shape& shape) {
  auto event = std::make_unique<Event>();
  event->m_dest_in = shape.dest_in;
  event->m_source_in = shape.dest_in + 5000;
  event->m_length = shape.length;
  event->m_first_stream = shape.track;
  event->m_stream_count = shape.tracks;
  event->m_fade_in_length = shape.fade_in;
  event->m_fade_out_length = shape.fade_out;
  list.push_back(std::move(event));
}

EventList list_of(const std::vector<Shape>& shapes) {
  EventList list;
  for (const Shape& shape : shapes)
    add(list, shape);
  return list;
}

// Every pair of events, in order.
void plain_butt_splices(const std::vector<Event*>& events, std::int64_t crossfade) {
  for (std::size_t i = 0; i < events.size(); ++i) {
    Event& e = *events[i];
    const std::int64_t fade = e.m_fade_out_length;
    if (fade > crossfade) continue;
    for (std::size_t j = i + 1; j < events.size(); ++j) {
      Event& f = *events[j];
      const bool meet =
          plus(minus(e.m_dest_in, fade), e.m_length) == minus(f.m_dest_in, fade & 1) &&
          f.m_fade_in_length == fade && f.m_first_stream == e.m_first_stream &&
          f.m_stream_count == e.m_stream_count;
      if (!meet) continue;
      const std::int64_t half = fade / 2;
      e.m_fade_out_length = 0;
      e.m_crossfade_out = 1;
      e.m_length = minus(e.m_length, half);
      f.m_source_in = plus(f.m_source_in, half);
      f.m_dest_in = plus(f.m_dest_in, half);
      f.m_length = minus(f.m_length, half);
      f.m_fade_in_length = 0;
      f.m_crossfade_in = 1;
      break;
    }
  }
}

bool share_a_track(const Event& a, const Event& b) {
  for (int track = a.m_first_stream; track < a.m_first_stream + a.m_stream_count; ++track) {
    if (track >= b.m_first_stream && track < b.m_first_stream + b.m_stream_count) return true;
  }
  return false;
}

void plain_overlaps(const std::vector<Event*>& events) {
  for (std::size_t i = 0; i < events.size(); ++i) {
    Event& e = *events[i];
    if (e.m_clean == 0) continue;
    for (std::size_t j = i + 1; j < events.size(); ++j) {
      Event& f = *events[j];
      if (f.m_dest_in > minus(plus(e.m_dest_in, e.m_length), 1)) break;
      if (!share_a_track(e, f)) continue;
      e.m_clean = f.m_clean = 0;
      break;
    }
  }
}

auto values(const Event& e) {
  return std::tuple(e.m_dest_in, e.m_source_in, e.m_length, e.m_fade_in_length, e.m_fade_out_length,
                    e.m_crossfade_in, e.m_crossfade_out, e.m_clean);
}

void expect_same(const EventList& fast, const EventList& plain, unsigned seed) {
  for (std::size_t i = 0; i < fast.size(); ++i)
    ASSERT_EQ(values(*fast[i]), values(*plain[i])) << "seed " << seed << ", event " << i;
}

// Few values, so that events often meet; the fewer tracks, the more often.
EventList random_list(unsigned seed, int track_count) {
  std::mt19937 random(seed);
  const auto below = [&random](int limit) {
    return std::uniform_int_distribution<int>(0, limit - 1)(random);
  };
  EventList list;
  const int count = 1 + below(60);
  const bool in_order = below(2) == 0;
  const int span = 1 + below(40);
  std::int64_t at = 0;
  for (int i = 0; i < count; ++i) {
    at = in_order ? at + below(4) : below(span);
    Shape shape{at, below(12)};
    shape.track = static_cast<std::uint16_t>(below(20) == 0 ? 65535 : below(track_count));
    shape.tracks = static_cast<std::uint16_t>(track_count == 1 ? 1 : below(4));
    shape.fade_in = below(4) - (below(10) == 0 ? 3 : 0);
    shape.fade_out = below(4) - (below(10) == 0 ? 3 : 0);
    add(list, shape);
  }
  return list;
}

TEST(ButtSplices, AgreeWithTheSearchThroughAllPairs) {
  int joined = 0;
  for (unsigned seed = 0; seed < 5000; ++seed) {
    const EventList fast = random_list(seed, seed % 3 == 0 ? 5 : 1);
    const EventList plain = random_list(seed, seed % 3 == 0 ? 5 : 1);
    const std::int64_t crossfade = static_cast<std::int64_t>(seed % 7) - 1;
    adl::convert_butt_splices(pointers(fast), crossfade);
    plain_butt_splices(pointers(plain), crossfade);
    expect_same(fast, plain, seed);
    for (const auto& event : fast)
      joined += event->m_crossfade_in != 0 ? 1 : 0;
  }
  EXPECT_GT(joined, 5000);
}

TEST(Overlaps, AgreeWithTheSearchThroughAllPairs) {
  int unclean = 0;
  int clean = 0;
  for (unsigned seed = 0; seed < 5000; ++seed) {
    const EventList fast = random_list(seed, 5);
    const EventList plain = random_list(seed, 5);
    adl::mark_overlaps(pointers(fast));
    plain_overlaps(pointers(plain));
    expect_same(fast, plain, seed);
    for (const auto& event : fast)
      ++(event->m_clean == 0 ? unclean : clean);
  }
  EXPECT_GT(unclean, 5000);
  EXPECT_GT(clean, 5000);
}

TEST(ButtSplices, BothSidesGiveUpHalfOfTheCrossfade) {
  const EventList list = list_of({{0, 1100, 0, 1, 200, 200}, {900, 1100, 0, 1, 200, 480}});
  adl::convert_butt_splices(pointers(list), 200);
  const Event& e = *list[0];
  EXPECT_EQ(e.m_length, 1000);
  EXPECT_EQ(e.m_fade_out_length, 0);
  EXPECT_EQ(e.m_fade_in_length, 200);
  EXPECT_EQ(e.m_crossfade_in, 0U);
  EXPECT_EQ(e.m_crossfade_out, 1U);
  const Event& f = *list[1];
  EXPECT_EQ(f.m_dest_in, 1000);
  EXPECT_EQ(f.m_source_in, 6000);
  EXPECT_EQ(f.m_length, 1000);
  EXPECT_EQ(f.m_fade_in_length, 0);
  EXPECT_EQ(f.m_fade_out_length, 480);
  EXPECT_EQ(f.m_crossfade_in, 1U);
  EXPECT_EQ(f.m_crossfade_out, 0U);
}

// 0 + 1030 - 61 is 969, and the event that comes in starts one later.
TEST(ButtSplices, OddFadesMeetASampleLater) {
  const EventList list = list_of({{0, 1030, 0, 1, 0, 61}, {970, 500, 0, 1, 61, 0}});
  adl::convert_butt_splices(pointers(list), 200);
  EXPECT_EQ(list[0]->m_length, 1000);
  EXPECT_EQ(list[1]->m_dest_in, 1000);
  EXPECT_EQ(list[1]->m_length, 470);
}

TEST(ButtSplices, PlainNeighboursAreJoinedToo) {
  const EventList list = list_of({{0, 1000}, {1000, 1000}});
  adl::convert_butt_splices(pointers(list), 200);
  EXPECT_EQ(list[0]->m_crossfade_out, 1U);
  EXPECT_EQ(list[1]->m_crossfade_in, 1U);
  EXPECT_EQ(list[1]->m_dest_in, 1000);
}

TEST(ButtSplices, LeaveOtherPairsAlone) {
  const std::vector<std::vector<Shape>> pairs = {
      // Longer than the crossfade; another fade-in; another track; another count.
      {{0, 1100, 0, 1, 0, 202}, {898, 1100, 0, 1, 202, 0}},
      {{0, 1100, 0, 1, 0, 200}, {900, 1100, 0, 1, 100, 0}},
      {{0, 1100, 0, 1, 0, 200}, {900, 1100, 1, 1, 200, 0}},
      {{0, 1100, 0, 1, 0, 200}, {900, 1100, 0, 2, 200, 0}},
      // The later one stands in front.
      {{900, 1100, 0, 1, 200, 0}, {0, 1100, 0, 1, 0, 200}},
  };
  for (const std::vector<Shape>& pair : pairs) {
    const EventList list = list_of(pair);
    adl::convert_butt_splices(pointers(list), 200);
    for (const auto& event : list) {
      EXPECT_EQ(event->m_crossfade_in, 0U);
      EXPECT_EQ(event->m_crossfade_out, 0U);
    }
  }
}

bool both_clean(const std::vector<Shape>& shapes) {
  const EventList list = list_of(shapes);
  adl::mark_overlaps(pointers(list));
  EXPECT_EQ(list[0]->m_clean, list[1]->m_clean);
  return list[0]->m_clean != 0;
}

TEST(Overlaps, AreOfTheSameTracksAndTime) {
  EXPECT_FALSE(both_clean({{0, 1000}, {500, 1000}}));
  EXPECT_TRUE(both_clean({{0, 1000, 0}, {500, 1000, 1}}));
  EXPECT_TRUE(both_clean({{0, 1000}, {1000, 1000}}));
  EXPECT_FALSE(both_clean({{0, 1000}, {999, 1000}}));
  EXPECT_FALSE(both_clean({{0, 1000, 0, 3}, {500, 1000, 2, 1}}));
  EXPECT_TRUE(both_clean({{0, 1000, 0, 3}, {500, 1000, 3, 2}}));
  // No tracks at all.
  EXPECT_TRUE(both_clean({{0, 1000, 1, 0}, {500, 1000, 0, 4}}));
}

TEST(Overlaps, AreSoughtUpToTheFirstLaterStart) {
  const EventList list = list_of({{0, 100}, {200, 100}, {50, 100}});
  adl::mark_overlaps(pointers(list));
  EXPECT_EQ(list[0]->m_clean, 1U);
  // The list is not in order of time: from the second, the third is no later start.
  EXPECT_EQ(list[1]->m_clean, 0U);
  EXPECT_EQ(list[2]->m_clean, 0U);
}

// One event over many: only the first of them loses the flag with it.
TEST(Overlaps, EndTheSearchOfAnEvent) {
  const EventList list = list_of({{0, 1000}, {100, 50}, {200, 50}});
  adl::mark_overlaps(pointers(list));
  EXPECT_EQ(list[0]->m_clean, 0U);
  EXPECT_EQ(list[1]->m_clean, 0U);
  EXPECT_EQ(list[2]->m_clean, 1U);
}

TEST(EventJoins, ListsMayBeEmpty) {
  adl::convert_butt_splices({}, 200);
  adl::mark_overlaps({});
}

}  // namespace
