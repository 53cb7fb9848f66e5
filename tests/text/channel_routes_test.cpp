#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "core/generic_reel.h"
#include "tests/core/edl_fixtures.h"
#include "tests/text/line_format.h"

namespace {

using support::streams_of;

struct Routed {
  std::vector<int> streams;
  int first_channel;
  int source_streams;
  int no_channels;
  friend bool operator==(const Routed&, const Routed&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Routed& r) {
    for (const int s : r.streams)
      out << s << ' ';
    return out << "channel " << r.first_channel << " of " << r.source_streams;
  }
};

template <class Route>
Routed routed(Route route) {
  CGenericEdl edl;
  CGenericEdlEntry entry(&edl);
  entry.set_reel_name(u"R");
  route(entry);
  return {streams_of(entry), entry.first_channel, entry.reel->no_streams, entry.no_channels};
}

Routed by_mode(std::vector<int> flags, unsigned mode) {
  return routed([&](CGenericEdlEntry& entry) {
    CTextEdl::apply_channel_mode(static_cast<int>(flags.size()), flags.data(), mode, &entry);
  });
}

TEST(ChannelMode, SecondFieldAlone) {
  EXPECT_EQ(by_mode({0, 1, 0, 0}, 0), (Routed{{1}, 1, 2, 1}));
  EXPECT_EQ(by_mode({0, 1, 0, 0}, 1), (Routed{{1}, 0, 1, 1}));
  EXPECT_EQ(by_mode({0, 1, 0, 0}, 2), (Routed{{0}, 1, 2, 1}));
  EXPECT_EQ(by_mode({0, 1, 0, 0}, 3), (Routed{{0}, 0, 1, 1}));
}

TEST(ChannelMode, SeveralFields) {
  for (unsigned mode = 0; mode < 4; ++mode) {
    EXPECT_EQ(by_mode({1, 1, 0, 0}, mode).streams, (std::vector<int>{0, 1})) << mode;
  }
  EXPECT_EQ(by_mode({0, 1, 0, 1}, 0), (Routed{{1, 3}, 1, 3, 2}));
  EXPECT_EQ(by_mode({1, 1, 1, 1}, 2), (Routed{{0, 1, 65535, 65535}, 0, 4, 4}));
}

TEST(ChannelMode, NoField) {
  for (unsigned mode = 0; mode < 4; ++mode) {
    EXPECT_EQ(by_mode({0, 0, 0, 0}, mode), (Routed{{65535}, 0, 1, 1})) << mode;
  }
}

using Map = std::array<std::uint16_t, 20>;
constexpr Map map = {0, 1, 0, 1, 1, 1, 2, 1, 0, 3, 1, 1, 0, 2, 0, 2, 2, 0, 0, 0};

Routed by_map(std::vector<int> flags, const Map& table) {
  return routed([&](CGenericEdlEntry& entry) {
    CTextEdl::apply_mapped_channels(static_cast<int>(flags.size()), flags.data(), table.data(),
                                    &entry);
  });
}

TEST(ChannelMap, SingleFieldsAndPairs) {
  EXPECT_EQ(by_map({0, 1, 0, 0}, map), (Routed{{1}, 1, 2, 1}));
  EXPECT_EQ(by_map({1, 1, 0, 0}, map), (Routed{{0, 1}, 0, 2, 2}));
  EXPECT_EQ(by_map({0, 0, 1, 1}, map), (Routed{{2, 3}, 0, 2, 2}));
  EXPECT_EQ(by_map({0, 0, 0, 0}, map), (Routed{{65535}, 0, 1, 1}));
}

TEST(ChannelMap, EitherWordSwitchesPairsOff) {
  for (const std::size_t word : {18U, 19U}) {
    Map table = map;
    table[word] = 1;
    EXPECT_EQ(by_map({1, 1, 0, 0}, table), (Routed{{0}, 0, 1, 1})) << word;
  }
}

TEST(ChannelMap, RowBehindTheTableIsNoField) {
  EXPECT_EQ(by_map({0, 0, 0, 0, 0, 0, 1, 1}, map), (Routed{{65535}, 0, 1, 1}));
}

TEST(ChannelMap, StreamsWrapInSixteenBits) {
  Map table = map;
  table[0] = 65535;
  table[1] = 2;
  EXPECT_EQ(by_map({1, 0, 0, 0}, table).streams, (std::vector<int>{65535, 0}));
}

}  // namespace
