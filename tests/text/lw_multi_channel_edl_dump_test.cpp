#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <random>

#include "tests/text/format_fixtures.h"
#include "text/lw_multi_channel_edl.h"

namespace {

using support::add_entry;
using support::entries_of;
using support::Streams;
using support::streams_of;
using support::Texts;
using support::utf8;

class MultiChannelDump : public support::FormatTest {
 protected:
  MultiChannelDump() {
    support::set_rates(root_);
    settings_.lw_multichannel_export_mode = 1;
    root_.set_edl_conversion_settings(&settings_);
  }
  std::string dump() { return support::read_file(folder_.file("b.dmp")); }

  // Two edits of one reel, the second over the end of the first.
  void add_overlap(std::int64_t at, const std::u16string& reel, std::uint16_t event) {
    add_entry(root_, {.dest_in = at,
                      .dest_out = at + 1000000,
                      .source_in = 96000,
                      .source_out = 1096000,
                      .reel = reel,
                      .event_number = event});
    add_entry(root_, {.dest_in = at + 900000,
                      .dest_out = at + 1900000,
                      .source_in = 5000000,
                      .source_out = 6000000,
                      .reel = reel,
                      .fade_in = 46080,
                      .event_number = static_cast<std::uint16_t>(event + 1)});
  }

  EDL_CONVERSION_SETTINGS settings_;
  CGenericEdl root_;
};

TEST_F(MultiChannelDump, NothingToDumpMakesNoFile) {
  add_entry(root_, support::standard_edit());
  EXPECT_EQ(written<CLWMultiChannelEdl>(root_),
            "TITLE: b          FORMAT: Multitrack Audio \n"
            "001  TAPE \tA1    C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n");
  EXPECT_FALSE(support::file_exists(folder_.file("b.dmp")));
}

TEST_F(MultiChannelDump, OverlapGoesToTheDump) {
  add_overlap(0, u"AAAA", 1);
  const CGenericEdlEntry& f = *entries_of(root_).at(1);
  CLWMultiChannelEdl edl(&root_, 0);
  EXPECT_EQ(edl.export_edl(folder_.wide_file("b.edl"), 0), 101);
  const auto dumped = entries_of(edl.get_dump_list());
  ASSERT_EQ(dumped.size(), 1U);
  EXPECT_TRUE(support::has_times(*dumped[0], {0, 1096000, 4952000, 6048000}));
  EXPECT_EQ(dumped[0]->event_number, 1);
  EXPECT_EQ(dumped[0]->transition_type, 50U);
  EXPECT_EQ(f.source_in, 48000);
  EXPECT_EQ(f.source_out, 1048000);
  EXPECT_EQ(f.lw_channel_word, 1U);
  EXPECT_EQ(utf8(support::reel_of(f)), "900");
  EXPECT_EQ(f.owner, &root_);
  EXPECT_TRUE(support::same_lines(
      support::read_file(folder_.file("b.edl")),
      "TITLE: b          FORMAT: Multitrack Audio \n"
      "001  AAAA \tA1    C         00:00:02:00 00:00:22:20 00:00:00:00 00:00:20:20 \n"
      "002  BLK \tA1    C         00:00:00:00 00:00:00:00 00:00:18:18 00:00:18:18 \n"
      "002  900 \tA1    D   024   00:00:01:00 00:00:21:20 00:00:18:18 00:00:39:14 \n"));
  EXPECT_TRUE(support::same_lines(
      dump(),
      "TITLE: b          (dump) FORMAT: Multitrack Audio \n"
      "001  AAAA \tA1    C         00:01:43:04 00:02:06:00 00:00:00:00 00:00:22:20 \n"));
}

TEST_F(MultiChannelDump, NextOverlapStandsBehindIt) {
  add_overlap(0, u"AAAA", 1);
  add_overlap(2000000, u"BBBB", 3);
  const CGenericEdlEntry& second = *entries_of(root_).at(3);
  written<CLWMultiChannelEdl>(root_);
  EXPECT_EQ(second.source_in, 1096000 + 48000);
  EXPECT_EQ(second.source_out, 1096000 + 48000 + 1000000);
  EXPECT_TRUE(support::same_lines(
      dump(),
      "TITLE: b          (dump) FORMAT: Multitrack Audio \n"
      "001  AAAA \tA1    C         00:01:43:04 00:02:06:00 00:00:00:00 00:00:22:20 \n"
      "002  BBBB \tA1    C         00:01:43:04 00:02:06:00 00:00:22:20 00:00:45:16 \n"));
}

TEST_F(MultiChannelDump, CutInsideADumpedEditPointsInFrontOfTheNextPlace) {
  add_overlap(0, u"AAAA", 1);
  CGenericEdlEntry& cut = add_entry(root_, {.dest_in = 1800000,
                                            .dest_out = 1800000,
                                            .source_in = 7,
                                            .source_out = 7,
                                            .reel = u"AAAA",
                                            .event_number = 3});
  written<CLWMultiChannelEdl>(root_);
  EXPECT_EQ(cut.source_in, 1096000 - 48000);
  EXPECT_EQ(cut.source_out, 1096000 - 48000);
  EXPECT_EQ(cut.lw_channel_word, 1U);
  const std::string lines = dump();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 2);
}

TEST_F(MultiChannelDump, DumpLinesHaveNoMappingComment) {
  settings_.lw_multichannel_mapping_comments = 1;
  root_.set_edl_conversion_settings(&settings_);
  add_overlap(0, u"AAAA", 1);
  for (CGenericEdlEntry* entry : entries_of(root_))
    entry->first_channel = 3;
  EXPECT_NE(written<CLWMultiChannelEdl>(root_).find("COMMENT: AUDIO MAPPING\tFROM CH4 TO CH1\n"),
            std::string::npos);
  EXPECT_EQ(dump().find("COMMENT"), std::string::npos);
  EXPECT_TRUE(dump().ends_with("00:00:22:20 \n"));
}

TEST_F(MultiChannelDump, WithoutTheModeNothingIsDumped) {
  settings_.lw_multichannel_export_mode = 0;
  root_.set_edl_conversion_settings(&settings_);
  add_overlap(0, u"AAAA", 1);
  EXPECT_EQ(written<CLWMultiChannelEdl>(root_).find(" 900 "), std::string::npos);
  EXPECT_FALSE(support::file_exists(folder_.file("b.dmp")));
}

TEST_F(MultiChannelDump, DumpThatCannotBeMadeEndsTheExport) {
  add_overlap(0, u"AAAA", 1);
  const CGenericEdlEntry& f = *entries_of(root_).at(1);
  std::filesystem::create_directory(folder_.file("b.dmp"));
  CLWMultiChannelEdl edl(&root_, 0);
  EXPECT_EQ(edl.export_edl(folder_.wide_file("b.edl"), 0), 0);
  EXPECT_FALSE(support::file_exists(folder_.file("b.edl")));
  // The edit still plays its own source, so the list can be exported elsewhere.
  EXPECT_EQ(f.source_in, 5000000);
  EXPECT_EQ(f.lw_channel_word, 0U);
  EXPECT_EQ(utf8(support::reel_of(f)), "AAAA");
  EXPECT_EQ(edl.export_edl(u"ab", 0), 0);
  // One name for both would leave a list without its dump.
  EXPECT_EQ(edl.export_edl(folder_.wide_file("list.dmp"), 0), 0);
  EXPECT_FALSE(support::file_exists(folder_.file("list.dmp")));
}

TEST_F(MultiChannelDump, RefusedWritesOfTheDumpAreKnownAtTheEnd) {
  add_overlap(0, u"AAAA", 1);
  std::filesystem::create_symlink("/dev/full", folder_.file("b.dmp"));
  CLWMultiChannelEdl edl(&root_, 0);
  EXPECT_EQ(edl.export_edl(folder_.wide_file("b.edl"), 0), 101);
  EXPECT_NE(edl.output_incomplete(), 0);
}

TEST_F(MultiChannelDump, NameOfTheDumpFile) {
  EXPECT_EQ(dump_file_path(u"/x/b.edl"), u"/x/b.dmp");
  EXPECT_EQ(dump_file_path(u"/x/list"), u"/x/ldmp");
  EXPECT_EQ(dump_file_path(u"abc"), u"dmp");
  EXPECT_EQ(dump_file_path(u"ab"), u"");
}

// The search and the filling as they are told: for each entry, the first later one
// that counts.
CGenericEdlEntry* partner_of(const std::vector<CGenericEdlEntry*>& list, std::size_t e) {
  const CGenericEdlEntry& first = *list[e];
  for (std::size_t i = e + 1; i < list.size(); ++i) {
    CGenericEdlEntry& f = *list[i];
    if (f.get_stream(0) != first.get_stream(0) || first.dest_out <= f.dest_in) continue;
    if (support::reel_of(f).substr(0, 4) != support::reel_of(first).substr(0, 4)) continue;
    if (f.transition_type == 51 && first.transition_type != 51 && f.lw_channel_word != 1) return &f;
    if (f.transition_type == 50 && first.lw_channel_word == 1 && f.dest_in == f.dest_out) return &f;
  }
  return nullptr;
}

void fill_plainly(CGenericEdl& owner, const std::vector<CGenericEdlEntry*>& list, CObList& dump) {
  const std::int64_t second = 48000;
  std::uint16_t event = 1;
  for (std::size_t e = 0; e < list.size(); ++e) {
    CGenericEdlEntry* const f = partner_of(list, e);
    if (f == nullptr) continue;
    std::int64_t p = list[0]->dest_in;
    for (const CGenericEdlEntry* d : entries_of(&dump))
      if (d->get_stream(0) == f->get_stream(0)) p += d->dest_out - d->dest_in;
    const std::int64_t length = f->dest_out - f->dest_in;
    f->lw_channel_word = 1;
    if (length == 0) {
      f->source_in = f->source_out = p - second;
      continue;
    }
    auto d = std::make_unique<CGenericEdlEntry>(&owner);
    d->dest_in = p;
    d->dest_out = p + 2 * second + length;
    d->source_in = f->source_in - second;
    d->source_out = f->source_out + second;
    d->event_number = event++;
    d->set_reel_name(support::reel_of(*f).c_str());
    d->set_no_streams(f->no_streams);
    for (int i = 0; i < f->no_streams; ++i)
      d->set_stream(i, f->streams[i]);
    dump.AddTail(d.release());
    f->source_in = p + second;
    f->source_out = p + second + length;
  }
}

void fill_at_random(CGenericEdl& root, unsigned seed) {
  static const char16_t* const reels[] = {u"AAAA1", u"AAAA2", u"BBB", u"BLK"};
  std::mt19937 random(seed);
  const int count = static_cast<int>(random() % 40) + 2;
  for (int i = 0; i < count; ++i) {
    const std::int64_t start =
        seed % 2 == 0 ? i * 50000 : static_cast<std::int64_t>(random() % 40) * 50000;
    const std::int64_t length =
        random() % 3 == 0 ? 0 : static_cast<std::int64_t>(random() % 5 + 1) * 60000;
    CGenericEdlEntry& entry = add_entry(root, {.dest_in = start,
                                               .dest_out = start + length,
                                               .source_in = 480000 + i * 1000,
                                               .source_out = 480000 + i * 1000 + length,
                                               .streams = {static_cast<int>(random() % 2)},
                                               .reel = reels[random() % std::size(reels)],
                                               .fade_in = random() % 3 == 0 ? 19200 : 0,
                                               .fade_out = random() % 5 == 0 ? 9600 : 0,
                                               .event_number = static_cast<std::uint16_t>(i)});
    if (random() % 12 == 0) entry.lw_channel_word = 1;
  }
}

TEST_F(MultiChannelDump, AgreesWithSearchingAllPairs) {
  std::size_t dumped = 0;
  std::size_t cuts = 0;
  for (unsigned seed = 0; seed < 400; ++seed) {
    CGenericEdl plain_root;
    support::set_rates(plain_root);
    fill_at_random(plain_root, seed);
    CLWMultiChannelEdl plain(&plain_root, 0);
    plain.split_for_export();
    CObList plain_dump;
    const auto expected = entries_of(plain_root);
    fill_plainly(plain, expected, plain_dump);
    plain.sort_same_start(&plain_dump);
    plain.renumber_events(&plain_dump);

    CGenericEdl root;
    support::set_rates(root);
    root.set_edl_conversion_settings(&settings_);
    fill_at_random(root, seed);
    CLWMultiChannelEdl edl(&root, 0);
    ASSERT_EQ(edl.export_edl(folder_.wide_file("b.edl"), 0), 101);
    const auto entries = entries_of(root);
    ASSERT_EQ(entries.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      ASSERT_EQ(entries[i]->source_in, expected[i]->source_in) << seed;
      ASSERT_EQ(entries[i]->source_out, expected[i]->source_out) << seed;
      ASSERT_EQ(entries[i]->lw_channel_word, expected[i]->lw_channel_word) << seed;
      if (entries[i]->lw_channel_word == 1 && entries[i]->dest_in == entries[i]->dest_out) ++cuts;
    }
    const auto dump = entries_of(edl.get_dump_list());
    const auto expected_dump = entries_of(&plain_dump);
    ASSERT_EQ(dump.size(), expected_dump.size()) << seed;
    for (std::size_t i = 0; i < dump.size(); ++i) {
      const CGenericEdlEntry& e = *expected_dump[i];
      ASSERT_TRUE(support::has_times(*dump[i], {e.dest_in, e.dest_out, e.source_in, e.source_out}));
      ASSERT_EQ(dump[i]->event_number, e.event_number);
      ASSERT_EQ(support::reel_of(*dump[i]), support::reel_of(e));
      ASSERT_EQ(streams_of(*dump[i]), streams_of(e));
    }
    dumped += dump.size();
    delete_all(plain_dump);
  }
  EXPECT_GT(dumped, 400U);
  EXPECT_GT(cuts, 100U);
}

// Reading. A list whose second event plays a second of the dump from 1 s on.
class MultiChannelDumpRead : public support::FormatTest {
 protected:
  static std::string list(const std::string& first_number) {
    return "TITLE: t\n" + first_number +
           "  AAAA \tA1    C         00:00:09:00 00:00:09:00 00:00:10:00 00:00:10:00 \n"
           "001  900 \tA1    D   024   00:00:01:00 00:00:02:00 00:00:10:00 00:00:11:00 \n";
  }
  void write_dump(const std::string& lines) {
    support::write_file(folder_.file("in.dmp"), "TITLE: t (dump)\n" + lines);
  }

  CLWMultiChannelEdl edl_{nullptr, 0};
};

const std::string dump_line =
    "001  AAAA \tA1    C         00:01:40:00 00:01:44:00 00:00:00:00 00:00:04:00 \n";

TEST_F(MultiChannelDumpRead, SourceIsFound) {
  write_dump(dump_line);
  EXPECT_EQ(read(edl_, list("001")), 100);
  const auto entries = entries_of(edl_);
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(utf8(support::reel_of(*entries[1])), "AAAA");
  EXPECT_EQ(utf8(entries[1]->source_reel_name), "AAAA" + std::string(28, ' '));
  EXPECT_EQ(entries[1]->source_in, 101 * 48000);
  EXPECT_EQ(entries[1]->source_out, 102 * 48000);
  EXPECT_EQ(edl_.get_dump_list()->GetCount(), 1);
  EXPECT_TRUE(reports().empty());
}

TEST_F(MultiChannelDumpRead, CutTakesTheSourceOfItsPartner) {
  write_dump(dump_line);
  EXPECT_EQ(read(edl_,
                 "001  AAAA A1 C 00:00:09:00 00:00:09:10 00:00:10:00 00:00:10:10\n"
                 "001  900  A1 C 00:00:01:00 00:00:01:00 00:00:10:10 00:00:10:10\n"),
            100);
  // Then it is a cut of no length, which the edit before it swallows.
  const auto entries = entries_of(edl_);
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0]->source_in, 9 * 48000);
  class Unfolded : public CLWMultiChannelEdl {
   public:
    Unfolded() : CLWMultiChannelEdl(nullptr, 0) {}
    result_code import_edl(const wide_char* path) override {
      const result_code code = CTextEdl::import_edl(path);
      resolve_dump_sources();
      return code;
    }
  } unfolded;
  EXPECT_EQ(read(unfolded,
                 "001  AAAA A1 C 00:00:09:00 00:00:09:10 00:00:10:00 00:00:10:10\n"
                 "001  900  A1 C 00:00:01:00 00:00:01:00 00:00:10:10 00:00:10:10\n"),
            100);
  ASSERT_EQ(entries_of(unfolded).size(), 2U);
  EXPECT_EQ(entries_of(unfolded)[1]->source_in, 9 * 48000);
  EXPECT_EQ(entries_of(unfolded)[1]->source_out, 9 * 48000);
}

TEST_F(MultiChannelDumpRead, EventWithoutAPartnerIsReported) {
  write_dump(dump_line);
  EXPECT_EQ(read(edl_, list("007")), 100);
  const auto entries = entries_of(edl_);
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(utf8(support::reel_of(*entries[1])), "900");
  EXPECT_EQ(entries[1]->source_in, 48000);
  EXPECT_EQ(entries[1]->source_out, 96000);
  EXPECT_EQ(reports(), Texts{"[22252] [22257] 1"});
}

TEST_F(MultiChannelDumpRead, MissingDumpIsReportedAtEachLine) {
  EXPECT_EQ(
      read(edl_, list("001") + "005  900 A1 C 00:00:01:00 00:00:02:00 00:00:20:00 00:00:21:00\n"),
      100);
  EXPECT_EQ(entries_of(edl_).size(), 3U);
  EXPECT_EQ(reports(), (Texts{"[22252] [22256] 1", "[22252] [22256] 5"}));
  host_.boxes.default_report_answer = 4096;
  CLWMultiChannelEdl stopped(nullptr, 0);
  EXPECT_EQ(read(stopped,
                 list("001") + "005  900 A1 C 00:00:01:00 00:00:02:00 00:00:20:00 00:00:21:00\n"),
            100);
  EXPECT_EQ(reports().size(), 3U);
}

TEST_F(MultiChannelDumpRead, DumpOfAnotherFormIsNone) {
  support::write_file(folder_.file("in.dmp"), "no event stands here\n");
  EXPECT_EQ(
      read(edl_, list("001") + "005  900 A1 C 00:00:01:00 00:00:02:00 00:00:20:00 00:00:21:00\n"),
      100);
  EXPECT_EQ(reports(), (Texts{"[22252] [22256] 1", "[22252] [22256] 5"}));
  // Another list of the same object looks again.
  write_dump(dump_line);
  EXPECT_EQ(read(edl_, list("001")), 100);
  EXPECT_EQ(edl_.get_dump_list()->GetCount(), 1);
}

TEST_F(MultiChannelDumpRead, BadLinesOfTheDumpAreReported) {
  write_dump(
      "001  AAAA A1 C 00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\n"
      "002  AAAA A12345 C 00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\n"
      "003  AAAA A1 C -0:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\n" +
      dump_line);
  EXPECT_EQ(read(edl_, list("001")), 100);
  EXPECT_EQ(edl_.get_dump_list()->GetCount(), 2);
  EXPECT_EQ(reports(), Texts{"[22253] [22231] 2"});
  // The first of the two does not hold the second that is asked for.
  EXPECT_EQ(entries_of(edl_).at(1)->source_in, 101 * 48000);
}

// An edit that was dumped comes back with the reel of its partner. That is the black
// line which the writer put in front of its fade, so its material is not found again:
// the list and its dump must both be kept.
TEST_F(MultiChannelDumpRead, RoundTripOfADumpedEdit) {
  CGenericEdl root;
  support::set_rates(root);
  EDL_CONVERSION_SETTINGS settings;
  settings.lw_multichannel_export_mode = 1;
  root.set_edl_conversion_settings(&settings);
  add_entry(root, {.dest_out = 960000, .source_out = 960000, .reel = u"AAAA", .event_number = 1});
  add_entry(root, {.dest_in = 912000,
                   .dest_out = 1872000,
                   .source_in = 4800000,
                   .source_out = 5760000,
                   .reel = u"AAAA",
                   .fade_in = 48000,
                   .event_number = 2});
  written<CLWMultiChannelEdl>(root, "in.edl");
  support::set_rates(edl_);
  EXPECT_EQ(edl_.import_edl(folder_.wide_file("in.edl")), 100);
  EXPECT_TRUE(reports().empty());
  const auto entries = entries_of(edl_);
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_TRUE(support::has_times(*entries[0], {0, 960000, 0, 960000}));
  EXPECT_EQ(utf8(support::reel_of(*entries[1])), "BLK");
  EXPECT_TRUE(support::has_times(*entries[2], {912000, 1872000, 48000, 1008000}));
  EXPECT_EQ(utf8(support::reel_of(*entries[2])), "BLK");
  EXPECT_EQ(entries[2]->fade_in_length, 48000);
}

}  // namespace
