// From the used fields of a line to streams and source channels.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "core/generic_reel.h"
#include "tests/text/text_fixtures.h"

namespace {

using support::streams_of;
using Streams = std::vector<int>;

struct Routed {
  Streams streams;
  int first_channel = 0;
  int no_channels = 0;
  int source_streams = 0;
  friend bool operator==(const Routed&, const Routed&) = default;
  friend void PrintTo(const Routed& r, std::ostream* out) {
    *out << "streams";
    for (const int s : r.streams)
      *out << ' ' << s;
    *out << ", channel " << r.first_channel << ", channels " << r.no_channels << ", source "
         << r.source_streams;
  }
};

class ChannelRoutesTest : public testing::Test {
 protected:
  // An entry whose old streams and offset are to go.
  std::unique_ptr<CGenericEdlEntry> used_entry() {
    auto entry = std::make_unique<CGenericEdlEntry>(&edl);
    entry->set_no_streams(3);
    entry->set_stream(0, 9);
    entry->channel_offset = 5;
    return entry;
  }
  static Routed routed(const CGenericEdlEntry& entry) {
    return {streams_of(entry), entry.first_channel, entry.no_channels, entry.reel_no_streams};
  }
  Routed by_mode(const std::vector<int>& flags, unsigned mode) {
    const auto entry = used_entry();
    CTextEdl::apply_channel_mode(static_cast<int>(flags.size()), flags.data(), mode, entry.get());
    offset = entry->channel_offset;
    return routed(*entry);
  }
  Routed by_map(const std::vector<int>& flags, const std::uint16_t* table) {
    const auto entry = used_entry();
    CTextEdl::apply_mapped_channels(static_cast<int>(flags.size()), flags.data(), table,
                                    entry.get());
    offset = entry->channel_offset;
    return routed(*entry);
  }

  support::ScriptedHost host;
  CGenericEdl edl;
  int offset = -1;
};

TEST_F(ChannelRoutesTest, TheSecondFieldAloneInEachMode) {
  EXPECT_EQ(by_mode({0, 1, 0, 0}, 0), (Routed{{1}, 1, 1, 2}));
  EXPECT_EQ(by_mode({0, 1, 0, 0}, 1), (Routed{{1}, 0, 1, 1}));
  EXPECT_EQ(by_mode({0, 1, 0, 0}, 2), (Routed{{0}, 1, 1, 2}));
  EXPECT_EQ(by_mode({0, 1, 0, 0}, 3), (Routed{{0}, 0, 1, 1}));
  EXPECT_EQ(offset, 0);
}

TEST_F(ChannelRoutesTest, APairInEachMode) {
  EXPECT_EQ(by_mode({1, 1, 0, 0}, 0), (Routed{{0, 1}, 0, 2, 2}));
  EXPECT_EQ(by_mode({1, 1, 0, 0}, 1), (Routed{{0, 1}, 0, 2, 2}));
  EXPECT_EQ(by_mode({1, 1, 0, 0}, 2), (Routed{{0, 1}, 0, 2, 2}));
  EXPECT_EQ(by_mode({1, 1, 0, 0}, 3), (Routed{{0, 1}, 0, 2, 2}));
  EXPECT_EQ(by_mode({0, 0, 1, 1}, 0), (Routed{{2, 3}, 2, 2, 4}));
  EXPECT_EQ(by_mode({0, 0, 1, 1}, 1), (Routed{{2, 3}, 0, 2, 2}));
  EXPECT_EQ(by_mode({0, 0, 1, 1}, 2), (Routed{{0, 1}, 2, 2, 4}));
  EXPECT_EQ(by_mode({0, 0, 1, 1}, 3), (Routed{{0, 1}, 0, 2, 2}));
}

TEST_F(ChannelRoutesTest, FieldsWithAGap) {
  // The count of the source is the first field and the number of fields: 1 + 2.
  EXPECT_EQ(by_mode({0, 1, 0, 1}, 0), (Routed{{1, 3}, 1, 2, 3}));
  EXPECT_EQ(by_mode({0, 1, 0, 1}, 1), (Routed{{1, 3}, 0, 2, 2}));
}

TEST_F(ChannelRoutesTest, MoreThanTwoFields) {
  EXPECT_EQ(by_mode({1, 1, 1, 1}, 0), (Routed{{0, 1, 2, 3}, 0, 4, 4}));
  EXPECT_EQ(by_mode({1, 1, 1, 1}, 2), (Routed{{0, 1, 65535, 65535}, 0, 4, 4}));
  EXPECT_EQ(by_mode({0, 1, 1, 1}, 3), (Routed{{0, 1, 65535}, 0, 3, 3}));
}

TEST_F(ChannelRoutesTest, EightFields) {
  EXPECT_EQ(by_mode({0, 0, 0, 0, 0, 1, 0, 1}, 0), (Routed{{5, 7}, 5, 2, 7}));
}

TEST_F(ChannelRoutesTest, OtherModesAreLikeTheLast) {
  EXPECT_EQ(by_mode({0, 1, 1, 0}, 4), by_mode({0, 1, 1, 0}, 3));
  EXPECT_EQ(by_mode({0, 1, 1, 0}, 65535), by_mode({0, 1, 1, 0}, 3));
}

TEST_F(ChannelRoutesTest, AnyNonzeroFlagCounts) {
  EXPECT_EQ(by_mode({0, -1, 256, 0}, 0), by_mode({0, 1, 1, 0}, 0));
}

TEST_F(ChannelRoutesTest, NoFieldGivesOneStreamThatGoesNowhere) {
  const std::uint16_t map[20] = {};
  for (unsigned mode = 0; mode < 4; ++mode) {
    EXPECT_EQ(by_mode({0, 0, 0, 0}, mode), (Routed{{65535}, 0, 1, 1})) << mode;
  }
  EXPECT_EQ(by_map({0, 0, 0, 0}, map), (Routed{{65535}, 0, 1, 1}));
}

TEST_F(ChannelRoutesTest, TheCountOfASourceNeverFalls) {
  CGenericEdlEntry entry(&edl);
  entry.set_reel_name(u"R");
  entry.reel->no_streams = 7;
  const int flags[4] = {1, 1, 0, 0};
  CTextEdl::apply_channel_mode(4, flags, 0, &entry);
  EXPECT_EQ(entry.reel->no_streams, 7);
  EXPECT_EQ(entry.reel_no_streams, 0) << "the reel holds the count";
}

TEST_F(ChannelRoutesTest, StreamsAreNoted) {
  EXPECT_EQ(edl.highest_stream(), 0);
  const int flags[4] = {0, 0, 0, 1};
  CGenericEdlEntry entry(&edl);
  CTextEdl::apply_channel_mode(4, flags, 0, &entry);
  EXPECT_EQ(edl.highest_stream(), 3);
}

// Rows of first stream, stream count and first channel: four for single fields, two
// for the pairs of fields 1-2 and 3-4, then the word that asks for single rows.
constexpr std::uint16_t map[20] = {0, 1, 0, 1, 1, 1, 2, 1, 0, 3, 1, 1, 0, 2, 0, 2, 2, 0, 0, 0};

TEST_F(ChannelRoutesTest, RowsOfTheMap) {
  EXPECT_EQ(by_map({0, 1, 0, 0}, map), (Routed{{1}, 1, 1, 2}));
  EXPECT_EQ(offset, 0);
  EXPECT_EQ(by_map({0, 0, 1, 0}, map), (Routed{{2}, 0, 1, 1}));
  EXPECT_EQ(by_map({0, 0, 0, 1}, map), (Routed{{3}, 1, 1, 2}));
  EXPECT_EQ(by_map({1, 1, 0, 0}, map), (Routed{{0, 1}, 0, 2, 2}));
  EXPECT_EQ(by_map({0, 0, 1, 1}, map), (Routed{{2, 3}, 0, 2, 2}));
  // A pair row is found by the first field, whatever the others are.
  EXPECT_EQ(by_map({0, 1, 0, 1}, map), (Routed{{0, 1}, 0, 2, 2}));
  EXPECT_EQ(by_map({0, 1, 1, 1}, map), (Routed{{0, 1}, 0, 2, 2}));
}

TEST_F(ChannelRoutesTest, SingleRowsOnDemand) {
  std::uint16_t single[20];
  std::copy(std::begin(map), std::end(map), single);
  single[18] = 1;
  EXPECT_EQ(by_map({1, 1, 0, 0}, single), (Routed{{0}, 0, 1, 1}));
  EXPECT_EQ(by_map({0, 0, 1, 1}, single), (Routed{{2}, 0, 1, 1}));
  // The word is 32 bits wide.
  single[18] = 0;
  single[19] = 1;
  EXPECT_EQ(by_map({1, 1, 0, 0}, single), (Routed{{0}, 0, 1, 1}));
}

TEST_F(ChannelRoutesTest, ARowOfManyStreams) {
  std::uint16_t wide[20] = {10, 4, 3};
  EXPECT_EQ(by_map({1, 0, 0, 0}, wide), (Routed{{10, 11, 12, 13}, 3, 4, 7}));
  // Sums wrap in 16 bits; 65535 is the stream that goes nowhere.
  wide[0] = 65534;
  wide[2] = 65533;
  EXPECT_EQ(by_map({1, 0, 0, 0}, wide), (Routed{{65534, 65535, 0, 1}, 65533, 4, 1}));
  EXPECT_EQ(edl.highest_stream(), 65534);
}

TEST_F(ChannelRoutesTest, ARowWithoutStreams) {
  const std::uint16_t none[20] = {5, 0, 2};
  EXPECT_EQ(by_map({1, 0, 0, 0}, none), (Routed{{}, 2, 0, 2}));
}

TEST_F(ChannelRoutesTest, AFieldBehindTheMapCountsAsNone) {
  EXPECT_EQ(by_map({0, 0, 0, 0, 0, 0, 1, 0}, map), (Routed{{65535}, 0, 1, 1}));
  EXPECT_EQ(by_map({0, 0, 0, 0, 1, 1, 0, 0}, map), (Routed{{65535}, 0, 1, 1}));
}

}  // namespace
