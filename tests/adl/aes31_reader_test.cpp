// Import of audio decision lists: whole files into the generic lists, and what is told.
#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "adl/aes31_file.h"
#include "core/generic_reel.h"
#include "host/framework/file_exception.h"
#include "host/message_boxes.h"
#include "tests/adl/writer_scene.h"
#include "tests/support/faulty_files.h"
#include "tests/support/golden.h"

using namespace adl_test;  // NOLINT

namespace {

constexpr const char* smallest =
    "<ADL>\n<VERSION> </VERSION>\n<PROJECT> </PROJECT>\n"
    "<SEQUENCE>\n(SEQ_DEST_START) 00.00.00.00/0000\n</SEQUENCE>\n";
constexpr const char* one_source =
    "<SOURCE_INDEX>\n(Index) 1 (F) \"URL:file://localhost/C:/audio/take%201.wav\" _ _\n"
    "</SOURCE_INDEX>\n";

std::string event_list(const std::string& entries) {
  return smallest + (one_source + ("<EVENT_LIST>\n" + entries)) + "</EVENT_LIST>\n</ADL>\n";
}

std::string entry(const std::string& times, const std::string& rest = "") {
  return "(Entry) 1 (Cut) I 1 1 1 " + times + " R " + rest + "\n";
}

class AdlImport : public testing::Test, protected WriterScene {
 protected:
  AdlImport() { host.browser.report_folder = folder.path(); }

  result_code import(const std::string& text, const Flags& flags = {}) {
    file = std::make_unique<CAES31File>(nullptr, 0, flags.sd2, flags.interchange, flags.aiff);
    return import_again(text);
  }
  result_code import_again(const std::string& text) {
    support::write_file(folder.file("in.adl"), text);
    return file->import_edl(folder.wide_file("in.adl"));
  }
  [[nodiscard]] std::vector<CGenericEdlEntry*> entries() const {
    std::vector<CGenericEdlEntry*> all;
    const CObList& list = *file->get_generic_entry_list();
    for (POSITION at = list.GetHeadPosition(); at != nullptr;)
      all.push_back(static_cast<CGenericEdlEntry*>(list.GetNext(at)));
    return all;
  }
  // The rows of the report, "Error 3 [24389]".
  [[nodiscard]] std::vector<std::string> rows() const {
    std::vector<std::string> rows;
    if (!support::file_exists(report_file)) return rows;
    std::string text;
    const std::string bytes = support::read_file(report_file);
    for (std::size_t i = 0; i < bytes.size(); i += 2)
      text.push_back(bytes[i]);
    for (std::size_t at = text.find("<TH>"); at != std::string::npos; at = text.find("<TH>", at)) {
      at += 4;
      const std::size_t line = text.find("<I>", at) + 3;
      const std::size_t words = text.find("<TD>", line) + 4;
      rows.push_back(text.substr(at, text.find('&', at) - at) + " " +
                     text.substr(line, text.find('<', line) - line) +
                     text.substr(words, text.find('\r', words) - words));
    }
    return rows;
  }

  const std::string report_file = folder.file("aes31importlog.htm");
  std::unique_ptr<CAES31File> file;
};

using Rows = std::vector<std::string>;

TEST_F(AdlImport, SmallestList) {
  support::write_file(report_file, "old");
  EXPECT_EQ(import(std::string(smallest) + "</ADL>\n"), result::import_complete);
  EXPECT_TRUE(entries().empty());
  EXPECT_EQ(file->frame_rate(), 1);
  EXPECT_EQ(file->sample_rate_index(), 2);
  EXPECT_FALSE(support::file_exists(report_file));
  EXPECT_TRUE(host.browser.opened.empty());
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(AdlImport, FilesThatCannotBeReadKeepTheOldReport) {
  support::write_file(report_file, "old");
  CAES31File missing(nullptr, 0, 0, 0, 0);
  EXPECT_EQ(missing.import_edl(folder.wide_file("missing.adl")), result::not_opened);
  const support::FaultyFiles faults(FileFaults::Operation::read, 1);
  EXPECT_EQ(import(smallest), result::not_opened);
  EXPECT_EQ(support::read_file(report_file), "old");
}

TEST_F(AdlImport, FaultsAreRowsOfAReport) {
  EXPECT_EQ(import(""), result::not_done);
  EXPECT_EQ(rows(), Rows{"Error 1 [24389]"});
  EXPECT_EQ(host.browser.opened.size(), 1U);
  EXPECT_EQ(import(event_list("(Entry) 1\n")), result::not_done);
  EXPECT_EQ(rows(), Rows{"Error 11 [1]"});
  EXPECT_EQ(import(event_list("(Entry) 1 (Cut) I 9\n" + entry("x y z"))), result::not_done);
  EXPECT_EQ(rows(), (Rows{"Warning 11 [24438]", "Error 12 [24443]"}));
  EXPECT_TRUE(entries().empty());
}

TEST_F(AdlImport, WarningsAreShownBeforeTheListIsBuilt) {
  host.browser.on_open = [this] { EXPECT_TRUE(entries().empty()); };
  EXPECT_EQ(import(event_list("(Entry) 1 (Cut) I 9\n" +
                              entry("00.00.00.00/0000 00.00.01.00/0000 00.00.02.00/0000"))),
            result::import_complete);
  EXPECT_EQ(host.browser.opened.size(), 1U);
  EXPECT_EQ(rows(), Rows{"Warning 11 [24438]"});
  EXPECT_EQ(entries().size(), 1U);
}

TEST_F(AdlImport, AReportThatCannotBeWrittenChangesNothing) {
  host.browser.report_folder = folder.file("missing");
  EXPECT_EQ(import(""), result::not_done);
  EXPECT_TRUE(host.browser.opened.empty());
}

TEST_F(AdlImport, FieldsOfAnEntry) {
  ASSERT_EQ(import(event_list(entry("00.00.00.00/0000 00.00.01.00/0000 00.00.02.00/0000"))),
            result::import_complete);
  ASSERT_EQ(entries().size(), 1U);
  const CGenericEdlEntry& e = *entries()[0];
  EXPECT_EQ(e.dest_in, 48000);
  EXPECT_EQ(e.dest_out, 96000);
  EXPECT_EQ(e.source_in, 0);
  EXPECT_EQ(e.source_out, 48000);
  ASSERT_EQ(e.no_streams, 1);
  EXPECT_EQ(e.get_stream(0), 0);
  EXPECT_EQ(e.channel_offset, 0);
  EXPECT_EQ(e.no_channels, 1);
  EXPECT_EQ(e.first_channel, 65535);
  EXPECT_EQ(e.source_index, 11);
  EXPECT_EQ(support::utf8(field_text(e.clip_name)), "take 1");
  EXPECT_EQ(support::utf8(field_text(e.file_path)), "//C:/audio/take 1");
  EXPECT_EQ(e.gain_left, 1.0F);
  EXPECT_EQ(e.chunk_flags, 0);
  EXPECT_EQ(e.dest_length, 0);
  EXPECT_EQ(e.fade_in_length, 200);
  EXPECT_EQ(e.fade_out_length, 200);
  EXPECT_EQ(e.fade_in_curve, 1);
  EXPECT_EQ(e.fade_out_curve, 2);
  EXPECT_EQ(support::utf8(field_text(e.source_reel_name)), std::string(32, ' '));
  EXPECT_EQ(e.source_time_word, 4294967295U);
  EXPECT_EQ(e.source_timestamp, time_not_given);
  EXPECT_EQ(e.source_is_timestamped, 1);
  EXPECT_EQ(e.original_dest_out, 0);
  ASSERT_NE(e.reel, nullptr);
  EXPECT_EQ(e.reel_no_streams, 1);
}

TEST_F(AdlImport, ChannelsOfAnEntry) {
  ASSERT_EQ(import(event_list("(Entry) 1 (Cut) I 1 3~4 1~2 00.00.00.00/0000 00.00.00.00/0000 "
                              "00.00.00.00/0000 M\n")),
            result::import_complete);
  const CGenericEdlEntry& e = *entries().at(0);
  EXPECT_EQ(e.no_streams, 2);
  EXPECT_EQ(e.get_stream(1), 1);
  EXPECT_EQ(e.channel_offset, 2);
  EXPECT_EQ(e.no_channels, 4);
  EXPECT_EQ(e.chunk_flags, 1);
}

TEST_F(AdlImport, CutsOfCrossfades) {
  const std::string two = entry("00.00.00.02/1160 00.00.00.00/0000 00.00.00.00/1000") +
                          entry("00.00.00.03/1240 00.00.00.00/1000 00.00.00.01/0080");
  ASSERT_EQ(import(event_list(two)), result::import_complete);
  const CGenericEdlEntry& e = *entries().at(0);
  const CGenericEdlEntry& f = *entries().at(1);
  EXPECT_EQ(e.dest_out, 1100);
  EXPECT_EQ(f.dest_in, 900);
  EXPECT_EQ(f.source_in, 6900);
  using Times = std::vector<std::int64_t>;
  const auto cuts = [](const CGenericEdlEntry& x) {
    return Times{x.original_dest_in, x.original_source_in, x.original_dest_out,
                 x.original_source_out};
  };
  EXPECT_EQ(cuts(e), (Times{0, 5000, 1000, 6000}));
  EXPECT_EQ(cuts(f), (Times{1000, 7000, 2000, 8000}));
  // An odd fade of 61 has its cut a sample inside.
  ASSERT_EQ(import(event_list(entry("00.00.00.02/1160 00.00.00.00/0000 00.00.00.00/1000") +
                              entry("00.00.00.00/0061 00.00.00.00/1000 00.00.00.01/0080"))),
            result::import_complete);
  EXPECT_EQ(entries().at(0)->original_dest_out, 999);
  EXPECT_EQ(entries().at(1)->original_dest_in, 1001);
}

TEST_F(AdlImport, DefaultsThatAreForcedWin) {
  EDL_CONVERSION_SETTINGS settings;
  settings.force_default_fade_curves = 1;
  settings.default_fade_in_curve = 9;
  CAES31File forced(nullptr, 0, 0, 0, 0);
  forced.set_edl_conversion_settings(&settings);
  support::write_file(folder.file("in.adl"),
                      event_list(entry("00.00.00.00/0000 00.00.01.00/0000 00.00.02.00/0000")));
  ASSERT_EQ(forced.import_edl(folder.wide_file("in.adl")), result::import_complete);
  EXPECT_EQ(
      static_cast<CGenericEdlEntry*>(forced.get_generic_entry_list()->GetHead())->fade_in_curve, 9);
}

TEST_F(AdlImport, CrossfadeLengthMayBecomeTheHosts) {
  const auto with_length = [this](const std::string& length) {
    host.app.crossfade_lengths_set.clear();
    host.app.default_crossfade_length = 200;
    return import(smallest + ("<SYSTEM> (SYS_XFADE_LEN) " + length + " </SYSTEM> </ADL>\n"));
  };
  using Lengths = std::vector<std::int64_t>;
  host.app.crossfade_policy = true;
  EXPECT_EQ(with_length("200"), result::import_complete);
  EXPECT_EQ(host.app.crossfade_lengths_set, Lengths{});
  EXPECT_EQ(with_length("481"), result::import_complete);
  EXPECT_EQ(host.app.crossfade_lengths_set, Lengths{480});
  host.app.crossfade_policy = false;
  EXPECT_EQ(with_length("480"), result::import_complete);
  EXPECT_EQ(host.app.crossfade_lengths_set, Lengths{});
  host.app.crossfade_ask = 1;
  host.boxes.question_answers = {box_answer_yes, box_answer_no};
  EXPECT_EQ(with_length("480"), result::import_complete);
  EXPECT_EQ(host.app.crossfade_lengths_set, Lengths{480});
  EXPECT_EQ(with_length("480"), result::import_complete);
  EXPECT_EQ(host.app.crossfade_lengths_set, Lengths{});
  ASSERT_EQ(host.boxes.shown.size(), 2U);
  EXPECT_EQ(host.boxes.shown[0].text_id, 24494U);
  EXPECT_EQ(host.boxes.shown[0].buttons, MessageBoxes::buttons_yes_no);
  EXPECT_EQ(host.boxes.shown[0].icon, MessageBoxes::icon_question);
}

TEST_F(AdlImport, AnOddLengthOfTheHostDiffersFromTheEvenOne) {
  host.app.default_crossfade_length = 201;
  host.app.crossfade_policy = true;
  EXPECT_EQ(import(std::string(smallest) + "</ADL>\n"), result::import_complete);
  EXPECT_EQ(host.app.crossfade_lengths_set, std::vector<std::int64_t>{200});
}

TEST_F(AdlImport, ASecondImportHandsTheAutomationOverAgain) {
  const std::string list = smallest + std::string(one_source) +
                           "<FADER_LIST> (FP) 1 00.00.00.00/0000 0 </FADER_LIST> </ADL>\n";
  ASSERT_EQ(import(list), result::import_complete);
  EXPECT_EQ(file->get_automation_list()->GetCount(), 1);
  ASSERT_EQ(import_again(list), result::import_complete);
  // The one run, now with both points, behind the one of before.
  ASSERT_EQ(file->get_automation_list()->GetCount(), 2);
  EXPECT_EQ(
      static_cast<CGenericAutomationChunk*>(file->get_automation_list()->GetTail())->no_points, 2U);
}

TEST_F(AdlImport, TimestampFrig) {
  const std::u16string key = u"Software\\Karsten Sound & Film\\MarloPT";
  const auto stamped = [&](const Flags& flags) {
    EXPECT_EQ(
        import(event_list(entry("00.00.00.00/0000 00.00.01.00/0000 00.00.02.00/0000")), flags),
        result::import_complete);
    return entries().at(0)->source_is_timestamped;
  };
  host.keys.registry[{key, u"TIMESTAMP FRIG"}] = 1;
  EXPECT_EQ(stamped({}), 1);
  EXPECT_EQ(stamped({.sd2 = 1}), 0);
  EXPECT_EQ(entries().at(0)->source_index, 7);
  // The flag outlives the object, and stays when the key is gone.
  host.keys.registry.clear();
  EXPECT_EQ(stamped({.sd2 = 1}), 0);
  EXPECT_EQ(stamped({}), 1);
  host.keys.registry[{key, u"TIMESTAMP FRIG"}] = 0;
  EXPECT_EQ(stamped({.sd2 = 1}), 1);
}

TEST_F(AdlImport, TheDemoListComesBack) {
  const std::string golden = ADL_GOLDEN "/adl/demo.adl";
  ASSERT_EQ(import(support::read_file(golden)), result::import_complete);
  ASSERT_EQ(entries().size(), 3U);
  EXPECT_FLOAT_EQ(entries()[0]->gain_left, 0.5000345F);
  EXPECT_EQ(entries()[1]->gain_left, 1.0F);
  EXPECT_FLOAT_EQ(entries()[2]->gain_left, 9.9999999e-9F);
  const auto name = [](const CGenericEdlEntry* e) {
    return support::utf8(trimmed(field_text(e->source_reel_name)));
  };
  EXPECT_EQ(name(entries()[0]), "Line 1");
  EXPECT_EQ(name(entries()[1]), "say \\\"hi\\\"");
  EXPECT_EQ(name(entries()[2]), "_");
  EXPECT_EQ(entries()[1]->chunk_flags, 1);
  EXPECT_EQ(entries()[0]->source_timestamp, 172800000);
  EXPECT_EQ(entries()[1]->source_timestamp, 4151299152);
  EXPECT_EQ(support::utf8(field_text(entries()[1]->originator_reference)), "ABCDEF");
  EXPECT_EQ(file->get_automation_list()->GetCount(), 3);
}

// Every prefix and every change of a byte is read or refused, and nothing worse.
TEST_F(AdlImport, DamagedLists) {
  // Without reports, of which there would be thousands.
  host.browser.report_folder = folder.file("missing");
  const std::string good = support::read_file(ADL_GOLDEN "/adl/demo.adl");
  const auto is_read_or_refused = [this](const std::string& text) {
    const result_code code = import(text);
    return code == result::import_complete || code == result::not_done;
  };
  for (std::size_t length = 0; length < good.size(); ++length)
    ASSERT_TRUE(is_read_or_refused(good.substr(0, length))) << length;
  std::mt19937 random(3);
  for (std::size_t at = 0; at < good.size(); ++at) {
    std::string text = good;
    text[at] = static_cast<char>(random() % 256);
    ASSERT_TRUE(is_read_or_refused(text)) << at;
  }
}

// A random list, written and read, is the same but for what the form changes: times at
// the pull-down rates, levels of two decimals, the pan's steps, names and curves.
void add_random_edits(WriterScene& scene, std::mt19937& random) {
  const auto below = [&random](std::int64_t limit) {
    return std::uniform_int_distribution<std::int64_t>(0, limit - 1)(random);
  };
  const int count = static_cast<int>(below(20));
  for (int i = 0; i < count; ++i) {
    const std::int64_t source = below(4);
    const std::u16string name = text_from_utf8("take " + std::to_string(source));
    Edit edit;
    edit.dest_in = below(1000) * 960;
    edit.dest_out = edit.dest_in + below(2000);
    edit.source_in = below(10000000);
    const auto first = static_cast<std::uint16_t>(below(8));
    edit.streams.clear();
    for (std::int64_t channel = 0; channel < 1 + below(3); ++channel)
      edit.streams.push_back(static_cast<std::uint16_t>(first + channel));
    edit.path = u"//C:/audio/" + name;
    edit.clip = name;
    CGenericEdlEntry& entry = scene.add(edit);
    entry.fade_in_length = below(edit.dest_out - edit.dest_in + 1);
    entry.fade_out_length = below(edit.dest_out - edit.dest_in - entry.fade_in_length + 1);
    entry.fade_in_curve = static_cast<std::uint16_t>(below(117));
    entry.fade_out_curve = static_cast<std::uint16_t>(below(117));
    entry.gain_left = static_cast<float>(below(2000)) / 1000.0F;
    entry.channel_offset = static_cast<std::uint16_t>(below(4));
    entry.chunk_flags = static_cast<std::int32_t>(below(2));
    entry.source_timestamp = source * 48000;
    entry.set_source_reel_name(text_from_utf8("Edit " + std::to_string(i)).c_str());
  }
}

std::uint16_t curve_that_returns(std::uint16_t curve) {
  const std::pair<int, std::uint16_t> moved[] = {{30, 29}, {32, 31}, {91, 24},   {92, 24},
                                                 {93, 25}, {96, 95}, {114, 113}, {116, 87}};
  for (const auto& [from, to] : moved)
    if (from == curve) return to;
  return curve;
}

void expect_same_edit(const CGenericEdlEntry& out, const CGenericEdlEntry& back) {
  EXPECT_EQ(back.dest_in, out.dest_in);
  EXPECT_EQ(back.dest_out, out.dest_out);
  EXPECT_EQ(back.source_in, out.source_in);
  EXPECT_EQ(back.fade_in_length, out.fade_in_length);
  EXPECT_EQ(back.fade_out_length, out.fade_out_length);
  EXPECT_EQ(back.fade_in_curve, curve_that_returns(out.fade_in_curve));
  EXPECT_EQ(back.fade_out_curve, curve_that_returns(out.fade_out_curve));
  EXPECT_NEAR(back.gain_left, out.gain_left, out.gain_left * 0.0006F + 1e-8F);
  EXPECT_EQ(back.channel_offset, out.channel_offset);
  EXPECT_EQ(back.chunk_flags, out.chunk_flags);
  EXPECT_EQ(back.source_timestamp, out.source_timestamp);
  EXPECT_EQ(field_text(back.clip_name), field_text(out.clip_name));
  EXPECT_EQ(field_text(back.file_path), field_text(out.file_path));
  EXPECT_EQ(field_text(back.source_reel_name), field_text(out.source_reel_name));
  ASSERT_EQ(back.no_streams, out.no_streams);
  for (int i = 0; i < out.no_streams; ++i)
    EXPECT_EQ(back.get_stream(i), out.get_stream(i));
}

TEST_F(AdlImport, RandomListsComeBack) {
  std::mt19937 random(20240401);
  for (int round = 0; round < 200; ++round) {
    delete_all(*root.get_generic_entry_list());
    add_random_edits(*this, random);
    ASSERT_EQ(import(written()), result::import_complete) << round;
    EXPECT_EQ(rows(), Rows{}) << round;
    std::vector<CGenericEdlEntry*> expected;
    for (POSITION at = root.get_generic_entry_list()->GetHeadPosition(); at != nullptr;)
      expected.push_back(
          static_cast<CGenericEdlEntry*>(root.get_generic_entry_list()->GetNext(at)));
    std::stable_sort(expected.begin(), expected.end(),
                     [](const auto* a, const auto* b) { return a->dest_in < b->dest_in; });
    ASSERT_EQ(entries().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      SCOPED_TRACE(std::to_string(round) + ", edit " + std::to_string(i));
      expect_same_edit(*expected[i], *entries()[i]);
      if (HasFailure()) return;
    }
  }
}

TEST_F(AdlImport, CrossfadesComeBackThroughButtSplices) {
  host.app.butt_splice_export = 1;
  CGenericEdlEntry& e = add({0, 1100, 5000});
  e.fade_in_length = e.fade_out_length = 200;
  e.fade_out_curve = 2;
  CGenericEdlEntry& f = add({900, 2000, 6900});
  f.fade_in_length = 200;
  f.fade_in_curve = 1;
  for (CGenericEdlEntry* const edit : {&e, &f}) {
    edit->source_timestamp = 48000;
    edit->set_source_reel_name(u"name");
  }
  ASSERT_EQ(import(written()), result::import_complete);
  ASSERT_EQ(entries().size(), 2U);
  expect_same_edit(e, *entries()[0]);
  expect_same_edit(f, *entries()[1]);
}

TEST_F(AdlImport, AutomationComesBack) {
  add_automation(0, 0, {{0, 384}, {480, 0}, {960, 504}});
  add_automation(1, 3, {{0, 0}, {1920, 1}, {3840, 0}});
  add_automation(2, 1, {{0, 0}, {480, 252}, {960, 315}, {1440, 504}});
  ASSERT_EQ(import(written()), result::import_complete);
  const auto runs = [](const CObList& list) {
    std::vector<std::vector<std::int64_t>> all;
    for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
      const auto& chunk = *static_cast<CGenericAutomationChunk*>(list.GetNext(at));
      std::vector<std::int64_t> run = {chunk.type, chunk.channel};
      for (POSITION inner = chunk.points->GetHeadPosition(); inner != nullptr;) {
        const auto& point = *static_cast<CGenericAutomationEntry*>(chunk.points->GetNext(inner));
        run.insert(run.end(), {point.time, point.value});
      }
      all.push_back(run);
    }
    std::sort(all.begin(), all.end());
    return all;
  };
  EXPECT_EQ(runs(*file->get_automation_list()), runs(*root.get_automation_list()));
}

}  // namespace
