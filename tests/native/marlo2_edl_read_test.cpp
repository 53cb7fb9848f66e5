// Import of the EDL2 file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "native/marlo2_edl.h"
#include "tests/native/bytes.h"
#include "tests/native/scene.h"
#include "tests/support/faulty_files.h"

using namespace native_test;  // NOLINT
using support::utf8;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::size_t head_size = 430;
constexpr std::size_t record_size = 128;

class Edl2Import : public testing::Test, protected Scene<CMarlo2Edl> {
 protected:
  // An import of records alone, each with its channel, under the small file's head.
  result_code import_records(const std::vector<std::pair<unsigned, std::string>>& events,
                             const std::vector<std::string>& pq = {}) {
    return import(file_of(events, pq));
  }

  static std::string file_of(const std::vector<std::pair<unsigned, std::string>>& events,
                             const std::vector<std::string>& pq = {}) {
    std::string file = golden_bytes("edl2_small.hex").substr(0, head_size);
    for (unsigned channel = 0; channel < 8; ++channel) {
      std::uint32_t count = 0;
      for (const auto& [own, record] : events) {
        if (own == channel) ++count;
        if (own == channel) file += record;
      }
      file = patched(file, 394 + 4 * std::size_t{channel}, le32(count));
    }
    for (const std::string& record : pq)
      file += record;
    return patched(file, 426, le32(static_cast<std::uint32_t>(pq.size())));
  }

  // The streams of the entries, in list order.
  std::vector<std::vector<int>> streams() const {
    std::vector<std::vector<int>> all;
    for (const CGenericEdlEntry* const entry : entries_of(*edl)) {
      all.emplace_back();
      for (int i = 0; i < entry->no_streams; ++i)
        all.back().push_back(entry->get_stream(i));
    }
    return all;
  }

  void use_direct_channels() {
    EDL_CONVERSION_SETTINGS settings;
    settings.native_direct_channels = 1;
    edl = std::make_unique<CMarlo2Edl>();
    edl->set_edl_conversion_settings(&settings);
  }
};

std::string small() {
  return golden_bytes("edl2_small.hex");
}
std::string mono() {
  return small().substr(head_size, record_size);
}
std::string left() {
  return small().substr(head_size + record_size, record_size);
}
std::string right() {
  return small().substr(head_size + 2 * record_size, record_size);
}
std::string pq_record() {
  return small().substr(head_size + 3 * record_size, record_size);
}
std::string mono_at(std::uint32_t dest_in) {
  return patched(mono(), 0, le32(dest_in));
}
std::string with_letter(std::string record, char letter) {
  return patched(std::move(record), 46, std::string(1, letter));
}
std::string with_layout(std::string record, unsigned char layout) {
  return patched(std::move(record), 31, std::string(1, static_cast<char>(layout)));
}
// An extension block; its size counts its own 8 bytes.
std::string block(std::uint32_t type, std::string_view body) {
  return joined({le32(type), le32(static_cast<std::uint32_t>(body.size()) + 8), std::string(body)});
}
// What stands behind the records: a value, four bytes, the count of blocks.
std::string extensions(std::uint32_t count, std::initializer_list<std::string> blocks) {
  return joined({le32(1), zeros(4), le32(count), joined(blocks)});
}
std::string extended(const std::string& file, const std::string& behind, std::uint32_t offset = 0) {
  return patched(file, 320, le32(offset)) + behind;
}

TEST_F(Edl2Import, FilesThatAreNot) {
  CMarlo2Edl file;
  EXPECT_EQ(file.import_edl(folder.wide_file("missing")), result::not_opened);
  EXPECT_EQ(import(patched(small(), 0, le32(0x91922134))), result::wrong_format);
  EXPECT_EQ(import(small().substr(0, 429)), result::wrong_format);
  EXPECT_EQ(import(""), result::wrong_format);
  EXPECT_EQ(edl->sample_rate_index(), 255);
}

TEST_F(Edl2Import, MonoEdit) {
  ASSERT_EQ(import(small()), result::import_complete);
  EXPECT_EQ(edl->sample_rate_index(), 2);
  EXPECT_EQ(edl->frame_rate(), 1);
  ASSERT_EQ(entries_of(*edl).size(), 2U);
  const CGenericEdlEntry& entry = *entries_of(*edl)[0];
  EXPECT_EQ(entry.source_in, 48000);
  EXPECT_EQ(entry.source_out, 96000);
  EXPECT_EQ(entry.dest_in, 96000);
  EXPECT_EQ(entry.dest_out, 144000);
  EXPECT_EQ(entry.dest_length, time_not_given);
  EXPECT_EQ(entry.source_timestamp, time_not_given);
  EXPECT_EQ(entry.source_is_timestamped, 0);
  EXPECT_EQ(entry.source_index, 0);
  EXPECT_EQ(entry.fade_in_length, 480);
  EXPECT_EQ(entry.fade_out_length, 240);
  EXPECT_EQ(entry.fade_in_curve, 1);
  EXPECT_EQ(entry.fade_out_curve, 9);
  EXPECT_EQ(utf8(field_text(entry.source_reel_name)), "Line 1" + std::string(26, ' '));
  EXPECT_EQ(utf8(field_text(entry.clip_name)), "TAKE");
  EXPECT_EQ(entry.source_channel, 7U);
  EXPECT_EQ(utf8(field_text(entry.file_path)), "/TAKE07  ");
  EXPECT_EQ(entry.first_channel, 0);
  EXPECT_EQ(entry.no_channels, 1);
  EXPECT_EQ(entry.channel_offset, 0);
  EXPECT_EQ(entry.gain_left, 1.0F);
  EXPECT_EQ(entry.reel, nullptr);
  EXPECT_EQ(entry.reel_no_streams, 1);
  EXPECT_EQ(entry.event_number, 1);
}

TEST_F(Edl2Import, StereoEditComesOnce) {
  ASSERT_EQ(import(small()), result::import_complete);
  const CGenericEdlEntry& entry = *entries_of(*edl)[1];
  EXPECT_THAT(streams(), ElementsAre(std::vector{0}, std::vector{0, 1}));
  EXPECT_EQ(entry.no_channels, 2);
  EXPECT_EQ(entry.channel_offset, 0);
  EXPECT_EQ(entry.reel_no_streams, 2);
  EXPECT_EQ(entry.gain_left, 0.5F);
  EXPECT_EQ(entry.fade_in_curve, 0);
  EXPECT_EQ(entry.fade_out_curve, 13);
  EXPECT_EQ(entry.event_number, 2);
  // The name runs on through the layout, the third position and the source name.
  EXPECT_EQ(field_text(entry.source_reel_name),
            u"Stereo         \u0001\u00FF\u00FF\u00FF\u00FFMUSICBEDADL ");
}

TEST_F(Edl2Import, PqEntry) {
  ASSERT_EQ(import(small()), result::import_complete);
  ASSERT_EQ(pq_of(*edl).size(), 1U);
  const CGenericPQEntry& pq = *pq_of(*edl)[0];
  EXPECT_EQ(pq.position_a, 96000);
  EXPECT_EQ(pq.position_b, 96000);
  EXPECT_EQ(pq.track_number, 1);
  EXPECT_EQ(pq.index_number, 1);
  EXPECT_EQ(utf8(pq.first_text.view()), "Title");
  EXPECT_EQ(utf8(pq.second_text.view()), "Artist");
  EXPECT_EQ(pq.flag_a, 1);
  EXPECT_EQ(pq.flag_b, 0);
  EXPECT_EQ(utf8(pq.isrc.view()), "GBAAA0012345");
  EXPECT_EQ(utf8(pq.third_text.view()), "Note");
  EXPECT_THAT(host.boxes.shown, IsEmpty());
}

TEST_F(Edl2Import, PqRecordsOfAnotherTypeAreSkipped) {
  const std::string other = patched(pq_record(), 12, le32(2));
  const std::string second = patched(patched(pq_record(), 0, le32(7)), 4, le32(9));
  ASSERT_EQ(import_records({}, {other, second}), result::import_complete);
  ASSERT_EQ(pq_of(*edl).size(), 1U);
  EXPECT_EQ(pq_of(*edl)[0]->position_a, 7);
  EXPECT_EQ(pq_of(*edl)[0]->position_b, 7);
}

TEST_F(Edl2Import, FrameRates) {
  for (const auto& [word, index] :
       {std::pair{1U, 0}, {2U, 1}, {3U, 2}, {4U, 3}, {5U, 4}, {0U, 255}}) {
    ASSERT_EQ(import(patched(small(), 206, le16(word))), result::import_complete);
    EXPECT_EQ(edl->frame_rate(), index) << word;
  }
}

TEST_F(Edl2Import, SampleRateWithoutAnIndexIsLeft) {
  ASSERT_EQ(import(patched(small(), 196, le16(44057))), result::import_complete);
  EXPECT_EQ(edl->sample_rate_index(), 255);
  ASSERT_EQ(import(patched(small(), 196, le16(44100))), result::import_complete);
  EXPECT_EQ(edl->sample_rate_index(), 1);
}

TEST_F(Edl2Import, FadeLengthsWrapIn32Bits) {
  ASSERT_EQ(import_records({{0, patched(mono(), 56, le32(47999))}}), result::import_complete);
  EXPECT_EQ(entries_of(*edl)[0]->fade_in_length, 4294967295);
  ASSERT_EQ(import_records({{0, patched(mono(), 60, le32(96001))}}), result::import_complete);
  EXPECT_EQ(entries_of(*edl)[0]->fade_out_length, 4294967295);
}

TEST_F(Edl2Import, CurveNames) {
  ASSERT_EQ(import_records(
                {{0, patched(patched(mono(), 68, text("NOSUCH ", 8)), 80, text("HYPCOS ", 8))}}),
            result::import_complete);
  EXPECT_EQ(entries_of(*edl)[0]->fade_in_curve, 0);
  EXPECT_EQ(entries_of(*edl)[0]->fade_out_curve, 13);
  // No terminator behind the name.
  ASSERT_EQ(import_records({{0, patched(mono(), 68, "CUBIC   ")}}), result::import_complete);
  EXPECT_EQ(entries_of(*edl)[0]->fade_in_curve, 2);

  EDL_CONVERSION_SETTINGS settings;
  settings.force_default_fade_curves = 1;
  settings.default_fade_in_curve = 5;
  settings.default_fade_out_curve = 6;
  edl = std::make_unique<CMarlo2Edl>();
  edl->set_edl_conversion_settings(&settings);
  ASSERT_EQ(import_again(small()), result::import_complete);
  EXPECT_EQ(entries_of(*edl)[0]->fade_in_curve, 5);
  EXPECT_EQ(entries_of(*edl)[0]->fade_out_curve, 6);
}

TEST_F(Edl2Import, SourceNames) {
  struct Row {
    const char* places;
    const char* clip_name;
    unsigned channel;
  };
  const Row rows[] = {{"TAKE07  ", "TAKE", 7},     {"TAKE10  ", "TAKE", 10},
                      {"TAKE00  ", "TAKE00", 0},   {"12      ", "", 12},
                      {"TAKE100 ", "TAKE100", 0},  {"LONGCL05", "LONGCL", 5},
                      {"ABCDEFG5", "ABCDEFG5", 0}, {"TAKE 07 ", "TAKE ", 7},
                      {"1       ", "1", 0},        {"        ", "", 0}};
  for (const Row& row : rows) {
    ASSERT_EQ(import_records({{0, patched(mono(), 36, row.places)}}), result::import_complete);
    const CGenericEdlEntry& entry = *entries_of(*edl)[0];
    EXPECT_EQ(utf8(field_text(entry.clip_name)), row.clip_name) << row.places;
    EXPECT_EQ(entry.source_channel, row.channel) << row.places;
    EXPECT_EQ(utf8(field_text(entry.file_path)), std::string("/") + row.places);
  }
}

TEST_F(Edl2Import, LettersAndLayouts) {
  struct Row {
    std::string record;
    int streams;
    int no_channels;
    int channel_offset;
  };
  const Row kept[] = {{with_letter(mono(), 'M'), 1, 1, 0},
                      {with_letter(left(), 'M'), 2, 1, 0},
                      {with_letter(mono(), 'L'), 1, 2, 0},
                      {with_letter(left(), 'L'), 2, 2, 0},
                      {with_letter(with_layout(left(), 0xFF), 'L'), 2, 2, 0},
                      {with_letter(mono(), 'R'), 1, 2, 1},
                      {with_letter(mono(), ' '), 1, 2, 1}};
  for (const Row& row : kept) {
    ASSERT_EQ(import_records({{0, row.record}}), result::import_complete);
    ASSERT_EQ(entries_of(*edl).size(), 1U);
    const CGenericEdlEntry& entry = *entries_of(*edl)[0];
    EXPECT_EQ(entry.no_streams, row.streams);
    EXPECT_EQ(entry.no_channels, row.no_channels);
    EXPECT_EQ(entry.channel_offset, row.channel_offset);
  }
  for (const std::string& record :
       {with_letter(mono(), 'P'), with_letter(left(), 'P'), right(), with_letter(left(), ' '),
        with_letter(with_layout(mono(), 0xFF), ' ')}) {
    EXPECT_EQ(import_records({{0, record}}), result::import_complete);
    EXPECT_THAT(entries_of(*edl), IsEmpty());
  }
}

TEST_F(Edl2Import, ChannelsAreMappedToStreams) {
  std::vector<std::pair<unsigned, std::string>> events;
  for (unsigned channel = 0; channel < 8; ++channel)
    events.emplace_back(channel, mono_at(channel));
  ASSERT_EQ(import_records(events), result::import_complete);
  EXPECT_THAT(streams(),
              ElementsAre(std::vector{0}, std::vector{1}, std::vector{0}, std::vector{1},
                          std::vector{2}, std::vector{3}, std::vector{2}, std::vector{3}));
  EXPECT_EQ(edl->highest_stream(), 3);
  use_direct_channels();
  ASSERT_EQ(import_again(file_of(events)), result::import_complete);
  EXPECT_THAT(streams(),
              ElementsAre(std::vector{0}, std::vector{1}, std::vector{2}, std::vector{3},
                          std::vector{4}, std::vector{5}, std::vector{6}, std::vector{7}));
}

TEST_F(Edl2Import, StereoTakesThePairOfItsChannel) {
  for (const unsigned channel : {4U, 5U}) {
    ASSERT_EQ(import_records({{channel, left()}}), result::import_complete);
    EXPECT_THAT(streams(), ElementsAre(std::vector{2, 3})) << channel;
    use_direct_channels();
    ASSERT_EQ(import_again(file_of({{channel, left()}})), result::import_complete);
    EXPECT_THAT(streams(), ElementsAre(std::vector{4, 5})) << channel;
  }
}

TEST_F(Edl2Import, ChannelsAreMergedByTime) {
  ASSERT_EQ(import_records({{5, mono_at(10)},
                            {3, mono_at(10)},
                            {5, mono_at(20)},
                            {0, mono_at(15)},
                            {7, mono_at(5)}}),
            result::import_complete);
  std::vector<std::pair<std::int64_t, int>> order;
  for (const CGenericEdlEntry* const entry : entries_of(*edl))
    order.emplace_back(entry->dest_in, entry->event_number);
  EXPECT_THAT(order, ElementsAre(std::pair{5, 1}, std::pair{10, 2}, std::pair{10, 3},
                                 std::pair{15, 4}, std::pair{20, 5}));
  // Of the equal ones channel 3, on stream 1, comes first.
  EXPECT_THAT(streams()[1], ElementsAre(1));
  EXPECT_THAT(streams()[2], ElementsAre(3));
}

TEST_F(Edl2Import, ChannelsOutOfOrderAreTakenAsTheyStand) {
  ASSERT_EQ(import_records({{0, mono_at(100)}, {0, mono_at(1)}, {1, mono_at(50)}}),
            result::import_complete);
  std::vector<std::int64_t> order;
  for (const CGenericEdlEntry* const entry : entries_of(*edl))
    order.push_back(entry->dest_in);
  EXPECT_THAT(order, ElementsAre(50, 100, 1));
}

TEST_F(Edl2Import, EventNumbersWrap) {
  std::vector<std::pair<unsigned, std::string>> events;
  for (std::uint32_t i = 0; i < 65537; ++i)
    events.emplace_back(0, mono_at(i));
  ASSERT_EQ(import_records(events), result::import_complete);
  const auto entries = entries_of(*edl);
  ASSERT_EQ(entries.size(), 65537U);
  EXPECT_EQ(entries[65534]->event_number, 65535);
  EXPECT_EQ(entries[65535]->event_number, 0);
  EXPECT_EQ(entries[65536]->event_number, 1);
}

TEST_F(Edl2Import, ReelBlocks) {
  ASSERT_EQ(import(small()), result::import_complete);
  EXPECT_EQ(edl->reel_records(), nullptr);
  const std::string reels = block(1, std::string(32, 'a') + std::string(32, 'b'));
  ASSERT_EQ(import(extended(small(), extensions(1, {reels}))), result::import_complete);
  EXPECT_EQ(entries_of(*edl).size(), 2U);
  ASSERT_NE(edl->reel_records(), nullptr);
  const auto records = objects<CM2ReelInfo>(edl->reel_records());
  ASSERT_EQ(records.size(), 2U);
  EXPECT_THAT(records[0]->m_bytes, testing::Each('a'));
  EXPECT_THAT(records[1]->m_bytes, testing::Each('b'));
}

TEST_F(Edl2Import, LaterReelBlocksTakeThePlaceOfEarlierOnes) {
  const std::string all =
      extensions(6, {block(1, std::string(64, 'a')), block(1, std::string(32, 'c')),
                     block(0, "xyz"), block(2, ""), block(3, zeros(100)), block(4, "x")});
  // At a distance from the records.
  ASSERT_EQ(import(extended(small(), "12345" + all, 5)), result::import_complete);
  const auto records = objects<CM2ReelInfo>(edl->reel_records());
  ASSERT_EQ(records.size(), 1U);
  EXPECT_THAT(records[0]->m_bytes, testing::Each('c'));
  EXPECT_EQ(import(extended(small(), "12345" + all, 6)), result::damaged);
}

TEST_F(Edl2Import, UnknownBlocksAreReadInto) {
  // The next block stands where the body of the unknown one would.
  const std::string nested = joined({le32(9), le32(16), block(0, "")});
  EXPECT_EQ(import(extended(small(), extensions(2, {nested}))), result::import_complete);
  EXPECT_EQ(import(extended(small(), extensions(3, {nested}))), result::damaged);
  // What is left of a reel block behind its whole records is not skipped either.
  const std::string odd = block(1, std::string(32, 'a') + block(0, ""));
  EXPECT_EQ(import(extended(small(), extensions(2, {odd}))), result::import_complete);
}

TEST_F(Edl2Import, DamagedExtensions) {
  EXPECT_EQ(import(patched(small(), 320, le32(0xFFFFFFFE))), result::damaged);
  EXPECT_EQ(import(extended(small(), zeros(11))), result::damaged);
  EXPECT_EQ(import(extended(small(), zeros(12))), result::import_complete);
  const std::string short_block = joined({le32(0), le32(4)});
  EXPECT_EQ(import(extended(small(), extensions(1, {short_block}))), result::damaged);
  EXPECT_EQ(import(extended(small(), extensions(5, {block(0, "")}))), result::damaged);
  EXPECT_EQ(import(extended(small(), extensions(0xFFFFFFFF, {block(0, "")}))), result::damaged);
  const std::string long_reels = patched(block(1, zeros(32)), 4, le32(0xFFFFFFFF));
  EXPECT_EQ(import(extended(small(), extensions(1, {long_reels}))), result::damaged);
  // A skip past the end matters only when something is to be read there.
  const std::string long_skip = patched(block(2, ""), 4, le32(0xFFFFFFFF));
  EXPECT_EQ(import(extended(small(), extensions(1, {long_skip}))), result::import_complete);
  EXPECT_EQ(import(extended(small(), extensions(2, {long_skip}))), result::damaged);
  EXPECT_THAT(entries_of(*edl), IsEmpty());
}

TEST_F(Edl2Import, TheChannelCountPlacesTheExtensions) {
  const std::string file = patched(file_of({{0, mono()}, {6, mono()}}), 392, le16(4));
  // Channel 6 is not counted, so they are looked for behind the first event: they
  // are the second event itself. Its words 0 and 4 pass, and word 8 counts blocks.
  const std::string second = joined({le32(1), le32(2), le32(0), zeros(116)});
  const std::string crafted = file.substr(0, head_size + record_size) + second;
  EXPECT_EQ(import(patched(crafted, 320, le32(0))), result::import_complete);
  EXPECT_EQ(entries_of(*edl).size(), 2U);
  // With all eight counted they would be looked for behind the end.
  EXPECT_EQ(import(patched(patched(crafted, 320, le32(0)), 392, le16(8))), result::damaged);
  EXPECT_EQ(import(patched(patched(crafted, 320, le32(0)), 392, le16(65535))), result::damaged);
}

TEST_F(Edl2Import, FilesThatEndEarly) {
  // Inside the last event, and inside the PQ record.
  for (const std::size_t length : {head_size + 3 * record_size - 1, head_size + 1, head_size,
                                   head_size + 4 * record_size - 1, head_size + 3 * record_size}) {
    EXPECT_EQ(import(small().substr(0, length)), result::damaged) << length;
    EXPECT_THAT(entries_of(*edl), IsEmpty());
    EXPECT_THAT(pq_of(*edl), IsEmpty());
  }
}

TEST_F(Edl2Import, PqEntriesReadBeforeTheDamageStay) {
  const std::string file = patched(small(), 426, le32(2));
  EXPECT_EQ(import(file), result::damaged);
  EXPECT_THAT(entries_of(*edl), IsEmpty());
  EXPECT_EQ(pq_of(*edl).size(), 1U);
}

TEST_F(Edl2Import, CountsAreNotBelieved) {
  for (const std::size_t offset : {394U, 398U, 422U, 426U})
    EXPECT_EQ(import(patched(small(), offset, le32(0xFFFFFFFF))), result::damaged) << offset;
  std::string all = small();
  for (std::size_t channel = 0; channel < 9; ++channel)
    all = patched(all, 394 + 4 * channel, le32(0xFFFFFFFF));
  EXPECT_EQ(import(all), result::damaged);
  // The same with extensions, whose place is then beyond any file.
  EXPECT_EQ(import(patched(all, 320, le32(0xFFFFFFF0))), result::damaged);
}

TEST_F(Edl2Import, TextsWithoutATerminator) {
  std::string record = patched(pq_record(), 20, "0123456789ABCDEF");
  record = patched(record, 66, std::string(32, 'x'));
  ASSERT_EQ(import_records({}, {record}), result::import_complete);
  EXPECT_EQ(utf8(pq_of(*edl)[0]->first_text.view()), "0123456789ABCDEF");
  EXPECT_EQ(utf8(pq_of(*edl)[0]->second_text.view()), "Artist");
  EXPECT_EQ(utf8(pq_of(*edl)[0]->third_text.view()), std::string(32, 'x'));
  ASSERT_EQ(import_records({{0, patched(mono(), 16, std::string(32, 'n'))}}),
            result::import_complete);
}

TEST_F(Edl2Import, ReadErrorsAreDamage) {
  const support::FaultyFiles faults(FileFaults::Operation::read, 1);
  EXPECT_EQ(import(small()), result::damaged);
  EXPECT_EQ(faults.failed(), 1);
}

TEST_F(Edl2Import, TheSameObjectMayImportTwice) {
  ASSERT_EQ(import(small()), result::import_complete);
  ASSERT_EQ(import_again(small()), result::import_complete);
  EXPECT_EQ(entries_of(*edl).size(), 4U);
}

}  // namespace
