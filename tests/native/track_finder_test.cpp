#include "native/track_finder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "native/record_transfer.h"
#include "tests/native/scene.h"

using namespace native_test;  // NOLINT

namespace {

// The plain rule: walk over the sources and take the first that matches, or add one.
class PlainFinder {
 public:
  ~PlainFinder() { delete_all(tracks); }

  std::uint16_t find_or_make(CGenericEdlEntry& entry) {
    std::uint16_t place = 0;
    for (POSITION at = tracks.GetHeadPosition(); at != nullptr; ++place) {
      if (matches(*static_cast<CGenericEDLFileTrack*>(tracks.GetNext(at)), entry)) return place;
    }
    auto* const track = new CGenericEDLFileTrack;
    tracks.AddTail(track);
    native::track_from_entry(*track, entry);
    track->m_index = place;
    return place;
  }

  CObList tracks;

 private:
  static bool matches(const CGenericEDLFileTrack& track, const CGenericEdlEntry& entry) {
    wide_char reel[12];
    entry.get_reel_name(reel, 12);
    const std::int64_t first = track.m_first_channel;
    return field_text(entry.clip_name).substr(0, 100) == track.get_file_name().substr(0, 100) &&
           field_text(reel) == track.get_reel_name() &&
           entry.source_time_word == track.m_source_time_word &&
           entry.source_channel == track.m_source_channel &&
           entry.source_timestamp == track.m_time_stamp && entry.first_channel >= first &&
           entry.first_channel < first + track.m_no_channels;
  }
};

void fill_randomly(CGenericEdlEntry& entry, std::mt19937& random) {
  const auto below = [&random](unsigned limit) {
    return std::uniform_int_distribution<unsigned>(0, limit - 1)(random);
  };
  const wide_char* const names[] = {u"", u"clip", u"CLIP"};
  const wide_char* const reels[] = {u"", u"reel", u"ABCDEFGHIJKL", u"ABCDEFGHIJKM"};
  entry.set_clip_name(names[below(3)]);
  entry.set_reel_name(reels[below(4)]);
  entry.source_time_word = below(8) == 0 ? 1 : 0;
  entry.source_channel = below(16) == 0 ? 65536 + below(2) : below(2);
  entry.source_timestamp = below(8) == 0 ? time_not_given : 0;
  entry.first_channel = static_cast<std::uint16_t>(below(20) == 0 ? 65535 : below(12));
  entry.no_channels = static_cast<std::uint16_t>(below(5));
}

// A source's channels may rise at any time: an earlier source then takes channels that a
// later one had.
TEST(TrackFinder, AgreesWithThePlainWalkWhenChannelsRise) {
  for (unsigned seed = 0; seed < 200; ++seed) {
    std::mt19937 random(seed);
    CGenericEdl root;
    CObList tracks;
    native::TrackFinder finder(tracks);
    PlainFinder plain;
    std::vector<CGenericEDLFileTrack*> known;
    std::vector<CGenericEDLFileTrack*> plain_known;
    for (int i = 0; i < 100; ++i) {
      CGenericEdlEntry& entry = add_entry(root, 0, 1);
      // One key, so that all have to do with each other.
      entry.first_channel = static_cast<std::uint16_t>(random() % 24);
      entry.no_channels = static_cast<std::uint16_t>(random() % 3);
      const std::uint16_t place = finder.find_or_make(entry);
      ASSERT_EQ(place, plain.find_or_make(entry)) << seed << ", " << i;
      if (place == known.size()) {
        known.push_back(static_cast<CGenericEDLFileTrack*>(tracks.GetTail()));
        plain_known.push_back(static_cast<CGenericEDLFileTrack*>(plain.tracks.GetTail()));
      }
      const auto raised = static_cast<std::uint16_t>(random() % known.size());
      const auto channels = static_cast<std::uint16_t>(random() % 8);
      finder.raise_channels(*known[raised], raised, channels);
      plain_known[raised]->m_no_channels = std::max(plain_known[raised]->m_no_channels, channels);
      EXPECT_EQ(known[raised]->m_no_channels, plain_known[raised]->m_no_channels);
    }
    delete_all(tracks);
  }
}

TEST(TrackFinder, AgreesWithThePlainWalk) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    std::mt19937 random(seed);
    CGenericEdl root;
    CObList tracks;
    native::TrackFinder finder(tracks);
    PlainFinder plain;
    for (int i = 0; i < 400; ++i) {
      CGenericEdlEntry& entry = add_entry(root, 0, 1);
      fill_randomly(entry, random);
      ASSERT_EQ(finder.find_or_make(entry), plain.find_or_make(entry)) << seed << ", " << i;
    }
    EXPECT_EQ(tracks.GetCount(), plain.tracks.GetCount());
    EXPECT_LT(tracks.GetCount(), 400);
    delete_all(tracks);
  }
}

TEST(TrackFinder, KnowsTheSourcesThatStandInTheList) {
  std::mt19937 random(7);
  CGenericEdl root;
  CObList tracks;
  PlainFinder plain;
  for (int i = 0; i < 200; ++i) {
    CGenericEdlEntry& entry = add_entry(root, 0, 1);
    fill_randomly(entry, random);
    ASSERT_EQ(native::TrackFinder(tracks).find_or_make(entry), plain.find_or_make(entry)) << i;
  }
  delete_all(tracks);
}

TEST(TrackFinder, FirstSourceThatCoversTheChannelWins) {
  CGenericEdl root;
  CObList tracks;
  native::TrackFinder finder(tracks);
  const auto place_of = [&](std::uint16_t first, std::uint16_t count) {
    CGenericEdlEntry& entry = add_entry(root, 0, 1);
    entry.first_channel = first;
    entry.no_channels = count;
    return finder.find_or_make(entry);
  };
  EXPECT_EQ(place_of(4, 2), 0);  // 4 and 5
  EXPECT_EQ(place_of(8, 1), 1);  // 8
  EXPECT_EQ(place_of(2, 9), 2);  // 2 and 3, 6 and 7, 9 and 10 of 2 to 10
  const std::pair<std::uint16_t, std::uint16_t> rows[] = {{2, 2}, {3, 2}, {4, 0}, {5, 0},  {6, 2},
                                                          {7, 2}, {8, 1}, {9, 2}, {10, 2}, {11, 3}};
  for (const auto& [channel, place] : rows)
    EXPECT_EQ(place_of(channel, 1), place) << channel;
  // Channel 65535 lies in its own range: the sum does not wrap.
  EXPECT_EQ(place_of(65535, 1), 4);
  EXPECT_EQ(place_of(65535, 1), 4);
  delete_all(tracks);
}

}  // namespace
