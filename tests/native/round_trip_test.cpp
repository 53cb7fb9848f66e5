// Random lists out and back.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/generic_reel.h"
#include "native/generic_edl_file.h"
#include "native/marlo2_edl.h"
#include "tests/native/scene.h"

using namespace native_test;  // NOLINT
using support::utf8;

namespace {

class Random {
 public:
  explicit Random(unsigned seed) : m_engine(seed) {}

  std::uint32_t below(std::uint32_t limit) {
    return std::uniform_int_distribution<std::uint32_t>(0, limit - 1)(m_engine);
  }
  std::uint32_t word() { return static_cast<std::uint32_t>(m_engine()); }
  float level() { return static_cast<float>(word()) / 1e9F; }
  // Of characters that are one byte each in the host's code page.
  std::u16string text(std::uint32_t most) {
    return text_of(u"AZaz09 _/\\.\u00E9\u20AC\u00FF", most);
  }
  // Of plain characters: the name of an edit is not converted when it is read.
  std::u16string plain_text(std::uint32_t most) { return text_of(u"AZaz09 _/\\.~", most); }

 private:
  std::u16string text_of(std::u16string_view alphabet, std::uint32_t most) {
    std::u16string out;
    for (std::uint32_t i = below(most + 1); i > 0; --i)
      out.push_back(alphabet[below(static_cast<std::uint32_t>(alphabet.size()))]);
    return out;
  }

  std::mt19937 m_engine;
};

// What the edits of one source have in common.
struct Source {
  std::u16string clip_name;
  std::u16string path;
  std::u16string reel;
  std::u16string originator;
  std::uint16_t index;
  std::uint32_t time_word;
  std::uint16_t channel;
  std::uint16_t first_channel;
  std::uint16_t no_channels;
  std::uint32_t time_stamp;
  std::uint32_t word;
};

Source random_source(Random& random, unsigned number) {
  Source source;
  // Names that are not empty, so that none is taken from the path.
  source.clip_name = u"c" + random.text(60);
  source.path = random.text(128);
  source.reel = u"r" + random.text(9) + u"x";
  source.originator = random.text(31);
  source.index = static_cast<std::uint16_t>(random.word());
  source.time_word = number;
  source.channel = static_cast<std::uint16_t>(random.word());
  source.first_channel = static_cast<std::uint16_t>(random.below(1000));
  source.no_channels = static_cast<std::uint16_t>(1 + random.below(8));
  source.time_stamp = random.word();
  source.word = random.word();
  return source;
}

void add_random_entry(CGenericEdl& root, Random& random, const Source& source) {
  const std::int64_t in = random.below(1U << 31);
  const unsigned count = random.below(4);
  const unsigned first = random.below(40);
  std::vector<unsigned> streams;
  for (unsigned i = 0; i < count; ++i)
    streams.push_back(first + i);
  CGenericEdlEntry& entry = add_entry(root, in, in + random.below(1U << 31), streams);
  entry.source_in = random.word();
  entry.source_out = entry.source_in + entry.dest_out - entry.dest_in;
  entry.set_source_reel_name(random.plain_text(15).c_str());
  entry.fade_in_curve = static_cast<std::uint16_t>(random.below(65535));
  entry.fade_out_curve = static_cast<std::uint16_t>(random.below(65535));
  entry.fade_in_length = random.word();
  entry.fade_out_length = random.word();
  entry.dest_length =
      random.below(2) == 0 ? time_not_given : std::int64_t{random.below(0xFFFFFFFF)};
  entry.gain_left = random.level();
  entry.chunk_flags = static_cast<std::int32_t>(random.word());
  entry.channel_offset = static_cast<std::uint16_t>(random.word());
  entry.set_clip_name(source.clip_name.c_str());
  entry.set_file_path(source.path.c_str());
  entry.set_reel_name(source.reel.c_str());
  entry.set_originator(source.originator.c_str());
  entry.source_index = source.index;
  entry.source_time_word = source.time_word;
  entry.source_channel = source.channel;
  entry.first_channel = source.first_channel;
  entry.no_channels = source.no_channels;
  entry.source_timestamp = source.time_stamp;
  entry.source_word = source.word;
}

std::string reel_of(const CGenericEdlEntry& entry) {
  wide_char name[13];
  entry.get_reel_name(name, 13);
  return utf8(field_text(name));
}

void expect_same(const CGenericEdlEntry& back, const CGenericEdlEntry& entry) {
  EXPECT_EQ(field_text(back.source_reel_name), field_text(entry.source_reel_name));
  EXPECT_EQ(back.dest_in, entry.dest_in);
  EXPECT_EQ(back.dest_out, entry.dest_out);
  EXPECT_EQ(back.source_in, entry.source_in);
  EXPECT_EQ(back.source_out, entry.source_out);
  EXPECT_EQ(back.fade_in_curve, entry.fade_in_curve);
  EXPECT_EQ(back.fade_out_curve, entry.fade_out_curve);
  EXPECT_EQ(back.fade_in_length, entry.fade_in_length);
  EXPECT_EQ(back.fade_out_length, entry.fade_out_length);
  EXPECT_EQ(back.dest_length, entry.dest_length);
  EXPECT_EQ(back.gain_left, entry.gain_left);
  EXPECT_EQ(back.chunk_flags, entry.chunk_flags);
  EXPECT_EQ(back.channel_offset, entry.channel_offset);
  ASSERT_EQ(back.no_streams, entry.no_streams);
  for (int i = 0; i < entry.no_streams; ++i)
    EXPECT_EQ(back.get_stream(i), entry.get_stream(i));
  EXPECT_EQ(field_text(back.clip_name), field_text(entry.clip_name));
  EXPECT_EQ(field_text(back.file_path), field_text(entry.file_path));
  EXPECT_EQ(reel_of(back), reel_of(entry));
  EXPECT_EQ(field_text(back.originator), field_text(entry.originator));
  EXPECT_EQ(back.source_index, entry.source_index);
  EXPECT_EQ(back.source_time_word, entry.source_time_word);
  EXPECT_EQ(back.source_channel, entry.source_channel);
  EXPECT_EQ(back.first_channel, entry.first_channel);
  EXPECT_EQ(back.no_channels, entry.no_channels);
  EXPECT_EQ(back.source_timestamp, entry.source_timestamp);
  EXPECT_EQ(back.source_word, entry.source_word);
}

using ChunkedRoundTrip = Scene<CGenericEDLFile>;

TEST(RoundTrip, ChunkedFileKeepsEveryField) {
  ChunkedRoundTrip scene;
  for (unsigned seed = 0; seed < 60; ++seed) {
    Random random(seed);
    CGenericEdl root;
    set_rates(root, 0, static_cast<std::uint8_t>(random.below(15)),
              static_cast<std::uint8_t>(random.below(5)));
    std::vector<Source> sources;
    for (unsigned i = 0; i < 6; ++i)
      sources.push_back(random_source(random, i));
    for (unsigned i = 0; i < seed; ++i)
      add_random_entry(root, random, sources[random.below(6)]);
    ASSERT_EQ(scene.import(scene.exported(root)), result::import_complete);
    EXPECT_EQ(scene.edl->highest_stream(), root.highest_stream());
    EXPECT_EQ(scene.edl->frame_rate(), root.frame_rate());
    EXPECT_EQ(scene.edl->sample_rate_index(), root.sample_rate_index());
    auto expected = entries_of(root);
    std::stable_sort(expected.begin(), expected.end(),
                     [](const auto* a, const auto* b) { return a->dest_in < b->dest_in; });
    const auto back = entries_of(*scene.edl);
    ASSERT_EQ(back.size(), expected.size());
    for (std::size_t i = 0; i < back.size(); ++i) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", entry " << i);
      expect_same(*back[i], *expected[i]);
    }
    if (testing::Test::HasFailure()) return;
  }
}

TEST(RoundTrip, ChunkedFileKeepsTheSideLists) {
  ChunkedRoundTrip scene;
  scene.set_disc_texts(1);
  for (unsigned seed = 0; seed < 20; ++seed) {
    Random random(seed);
    CGenericEdl root;
    for (unsigned i = 0; i <= seed; ++i) {
      CGenericPQEntry& pq = add_pq_entry(root);
      pq.position_a = random.word();
      pq.track_number = static_cast<std::uint16_t>(random.word());
      pq.index_number = static_cast<std::uint16_t>(random.word());
      pq.first_text = random.text(31);
      pq.second_text = random.text(31);
      pq.third_text = random.text(63);
      pq.isrc = random.text(12);
      pq.flag_a = static_cast<std::uint8_t>(random.word());
      add_locator(root, random.word(), random.text(16).c_str(), random.below(65536));
      add_automation(root, random.below(65536), random.below(65536),
                     {{random.word(), random.word()}, {random.word(), random.word()}});
    }
    PQ_DETAILS details;
    root.get_pq_details(&details);
    set_field(details.pq_text[3], random.text(127));
    details.pq_word = static_cast<std::uint16_t>(random.word());
    root.set_pq_details(&details);

    ASSERT_EQ(scene.import(scene.exported(root)), result::import_complete);
    PQ_DETAILS back;
    scene.edl->get_pq_details(&back);
    EXPECT_EQ(field_text(back.pq_text[3]), field_text(details.pq_text[3]));
    EXPECT_EQ(back.pq_word, details.pq_word);
    for (unsigned i = 0; i <= seed; ++i) {
      const CGenericPQEntry& a = *pq_of(*scene.edl)[i];
      const CGenericPQEntry& b = *pq_of(root)[i];
      EXPECT_EQ(a.position_a, b.position_a);
      EXPECT_EQ(a.track_number, b.track_number);
      EXPECT_EQ(a.index_number, b.index_number);
      EXPECT_EQ(a.first_text, b.first_text);
      EXPECT_EQ(a.second_text, b.second_text);
      EXPECT_EQ(a.third_text, b.third_text);
      EXPECT_EQ(a.isrc, b.isrc);
      EXPECT_EQ(a.flag_a, b.flag_a);
      EXPECT_EQ(locators_of(*scene.edl)[i]->time, locators_of(root)[i]->time);
      EXPECT_EQ(locators_of(*scene.edl)[i]->name, locators_of(root)[i]->name);
      EXPECT_EQ(locators_of(*scene.edl)[i]->locator_value, locators_of(root)[i]->locator_value);
      const CGenericAutomationChunk& run = *automation_of(*scene.edl)[i];
      const CGenericAutomationChunk& from = *automation_of(root)[i];
      EXPECT_EQ(run.type, from.type);
      EXPECT_EQ(run.channel, from.channel);
      const auto points = objects<CGenericAutomationEntry>(run.points);
      const auto expected = objects<CGenericAutomationEntry>(from.points);
      ASSERT_EQ(points.size(), 2U);
      EXPECT_EQ(points[1]->time, expected[1]->time);
      EXPECT_EQ(points[1]->value, expected[1]->value);
    }
    if (testing::Test::HasFailure()) return;
  }
}

// Mono edits one behind the other on their stream, in names that the file can hold.
void add_edl2_entry(CGenericEdl& root, Random& random, unsigned stream, std::int64_t& end) {
  const std::int64_t in = end + random.below(1000);
  end = in + 1 + random.below(100000);
  CGenericEdlEntry& entry = add_entry(root, in, end, {stream});
  entry.source_in = random.word();
  entry.set_source_reel_name(random.text(15).c_str());
  static constexpr const wide_char* names[] = {u"A", u"TAKE", u"\u00C9T\u00C9", u"SIX_CH"};
  entry.set_clip_name(names[random.below(4)]);
  entry.source_channel = random.below(100);
  entry.fade_in_length = random.word();
  entry.fade_out_length = random.word();
  entry.fade_in_curve = static_cast<std::uint16_t>(random.below(20));
  entry.fade_out_curve = static_cast<std::uint16_t>(random.below(20));
  entry.gain_left = random.level();
  entry.no_channels = 1;
}

TEST(RoundTrip, Edl2KeepsMonoEdits) {
  Scene<CMarlo2Edl> scene;
  EDL_CONVERSION_SETTINGS direct;
  direct.native_direct_channels = 1;
  for (unsigned seed = 0; seed < 60; ++seed) {
    Random random(seed);
    CGenericEdl root;
    set_rates(root, 7, static_cast<std::uint8_t>(random.below(3)),
              static_cast<std::uint8_t>(random.below(5)));
    std::int64_t ends[8] = {};
    for (unsigned i = 0; i < seed; ++i) {
      const unsigned stream = random.below(8);
      add_edl2_entry(root, random, stream, ends[stream]);
    }
    const std::string file = scene.exported(root);
    scene.edl = std::make_unique<CMarlo2Edl>();
    scene.edl->set_edl_conversion_settings(&direct);
    ASSERT_EQ(scene.import_again(file), result::import_complete);
    auto expected = entries_of(root);
    std::sort(expected.begin(), expected.end(), [](const auto* a, const auto* b) {
      return std::pair(a->dest_in, a->get_stream(0)) < std::pair(b->dest_in, b->get_stream(0));
    });
    const auto back = entries_of(*scene.edl);
    ASSERT_EQ(back.size(), expected.size());
    for (std::size_t i = 0; i < back.size(); ++i) {
      const CGenericEdlEntry& a = *back[i];
      const CGenericEdlEntry& b = *expected[i];
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", entry " << i);
      EXPECT_EQ(a.dest_in, b.dest_in);
      EXPECT_EQ(a.dest_out, b.dest_out);
      EXPECT_EQ(a.get_stream(0), b.get_stream(0));
      EXPECT_EQ(a.source_in, b.source_in);
      EXPECT_EQ(static_cast<std::uint32_t>(a.source_out),
                static_cast<std::uint32_t>(b.source_in + b.dest_out - b.dest_in));
      EXPECT_EQ(field_text(a.source_reel_name), field_text(b.source_reel_name));
      EXPECT_EQ(field_text(a.clip_name), field_text(b.clip_name));
      EXPECT_EQ(a.source_channel, b.source_channel);
      EXPECT_EQ(a.fade_in_length, b.fade_in_length);
      EXPECT_EQ(a.fade_out_length, b.fade_out_length);
      EXPECT_EQ(a.fade_in_curve, b.fade_in_curve);
      EXPECT_EQ(a.fade_out_curve, b.fade_out_curve);
      EXPECT_EQ(a.gain_left, b.gain_left);
      EXPECT_EQ(a.event_number, i + 1);
    }
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace
