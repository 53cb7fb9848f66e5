// Export of an audio decision list, to the byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "adl/interchanger_source_list.h"
#include "adl/list_sections.h"
#include "host/framework/file_exception.h"
#include "tests/adl/writer_scene.h"
#include "tests/support/faulty_files.h"
#include "tests/support/golden.h"

using namespace adl_test;  // NOLINT

namespace {

using Lines = std::vector<std::string>;

class AdlExport : public testing::Test, protected WriterScene {
 protected:
  ~AdlExport() override { delete GetInterchangerSourceList(); }
};

TEST_F(AdlExport, WholeList) {
  fill_demo(*this);
  EXPECT_TRUE(support::matches_golden("adl/demo.adl", written({}, "demo.adl")));
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  EXPECT_EQ(text.find(from, at + 1), std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

TEST_F(AdlExport, ButtSplicesInPlaceOfACrossfade) {
  fill_demo(*this);
  std::string expected = written({}, "demo.adl");
  expected = replaced(expected, "aabbcc000001", "aabbcc000002");
  expected = replaced(expected, "(SEQ_CLEAN)        FALSE", "(SEQ_CLEAN)        TRUE");
  expected = replaced(expected, "00.00.00.00/1100  R", "00.00.00.00/1000  R");
  expected =
      replaced(expected, "            (Outfade) 00.00.00.00/0200  CURVE  -0.6  -1.5  -3.2\n", "");
  expected = replaced(expected, "00.00.00.03/1140", "00.00.00.03/1240");
  expected = replaced(expected, "00.00.00.00/0900", "00.00.00.00/1000");
  expected =
      replaced(expected, "            (Infade) 00.00.00.00/0200  CURVE  -3.20  -1.50  -0.60\n", "");
  host.app.butt_splice_export = 1;
  EXPECT_TRUE(support::same_lines(written({}, "demo.adl"), expected));
}

TEST_F(AdlExport, EmptyList) {
  EXPECT_TRUE(
      support::same_lines(written({}, "x.adl"),
                          "<ADL>\n"
                          "\n"
                          "    <VERSION>\n"
                          "        (ADL_ID)           \"\"\n"
                          "        (ADL_UID)          00112233-4455-4677-8899-aabbcc000001\n"
                          "        (VER_ADL_VERSION)  01.01.00\n"
                          "        (VER_CREATOR)      \"Marlo\"\n"
                          "        (VER_CRTR)         06.01.37\n"
                          "    </VERSION>\n"
                          "\n"
                          "    <PROJECT>\n"
                          "        (PROJ_TITLE)       \"\"\n"
                          "        (PROJ_ORIGINATOR)  \"\"\n"
                          "        (PROJ_CREATE_DATE) 2021-03-04T15:06:07+01:00\n"
                          "        (PROJ_NOTES)       \"\"\n"
                          "        (PROJ_CLIENT_DATA) \"\"\n"
                          "    </PROJECT>\n"
                          "\n"
                          "    <SYSTEM>\n"
                          "        (SYS_XFADE_LEN)    200\n"
                          "    </SYSTEM>\n"
                          "\n"
                          "    <SEQUENCE>\n"
                          "        (SEQ_TITLE)        \"x\"\n"
                          "        (SEQ_SAMPLE_RATE)  S48000\n"
                          "        (SEQ_FRAME_RATE)   25\n"
                          "        (SEQ_ADL_LEVEL)    1\n"
                          "        (SEQ_CLEAN)        TRUE\n"
                          "        (SEQ_SORT)         0\n"
                          "        (SEQ_MULTICHAN)    FALSE\n"
                          "        (SEQ_DEST_START)   00.00.00.00/0000\n"
                          "    </SEQUENCE>\n"
                          "\n"
                          "    <SOURCE_INDEX>\n"
                          "    </SOURCE_INDEX>\n"
                          "\n"
                          "    <EVENT_LIST>\n"
                          "    </EVENT_LIST>\n"
                          "\n"
                          "</ADL>\n"));
}

TEST_F(AdlExport, NameAndTitle) {
  const auto title = [this](const std::string& name, const std::string& file) {
    EXPECT_EQ(export_to(name), result::done);
    return line(support::read_file(folder.file(file)), "(SEQ_TITLE)        ");
  };
  EXPECT_EQ(title("x.EDL", "x.adl"), "\"x\"");
  EXPECT_FALSE(support::file_exists(folder.file("x.EDL")));
  EXPECT_EQ(title("y.edl", "y.adl"), "\"y\"");
  EXPECT_EQ(title("x.txt", "x.txt"), "\"x.txt\"");
  EXPECT_EQ(title("x.ADL", "x.ADL"), "\"x\"");
  EXPECT_EQ(title("no extension", "no extension"), "\"no extension\"");
  // Quotes of a title are not escaped.
  EXPECT_EQ(title("a\"b.adl", "a\"b.adl"), "\"a\"b\"");
  EXPECT_EQ(adl::output_path(u".edl"), u".adl");
  EXPECT_EQ(adl::output_path(u"edl"), u"edl");
}

TEST_F(AdlExport, AnswersWhetherItWasWritten) {
  EXPECT_EQ(export_to("film.adl"), result::done);
  EXPECT_EQ(export_to("missing/film.adl"), result::not_done);
}

TEST_F(AdlExport, NamesSourcesOfSomeKinds) {
  CGenericEdlEntry& entry = add({});
  for (const std::uint16_t type : std::vector<std::uint16_t>{2, 11, 19, 21}) {
    entry.source_index = type;
    EXPECT_EQ(export_to("film.adl"), result::done) << type;
  }
  for (const std::uint16_t type : std::vector<std::uint16_t>{0, 1, 3, 7, 10, 12, 20, 22, 65535}) {
    entry.source_index = type;
    EXPECT_EQ(export_to("film.adl"), result::source_refused) << type;
  }
  for (const std::uint16_t type : std::vector<std::uint16_t>{0, 1, 3, 7, 11, 65535}) {
    entry.source_index = type;
    EXPECT_EQ(export_to("film.adl", {.interchange = 1}), result::done) << type;
  }
  for (const std::uint16_t type : std::vector<std::uint16_t>{0, 1, 2, 3, 11, 19, 65535}) {
    entry.source_index = type;
    EXPECT_EQ(export_to("film.adl", {.sd2 = 1}), result::not_sd2) << type;
    EXPECT_EQ(export_to("film.adl", {.sd2 = 1, .interchange = 1}), result::not_sd2) << type;
  }
  entry.source_index = 7;
  EXPECT_EQ(export_to("film.adl", {.sd2 = 1}), result::done);
  // One of several is enough.
  add({.path = u"other", .clip = u"other"});
  EXPECT_EQ(export_to("film.adl", {.sd2 = 1}), result::not_sd2);
}

TEST_F(AdlExport, TheRegistryAllowsOneMoreKind) {
  add({}).source_index = 1;
  host.keys.registry[{u"Software\\Karsten Sound & Film\\VCS", u"Allow Marlo3 files"}] = 1;
  EXPECT_EQ(export_to("film.adl"), result::done);
  host.keys.registry[{u"Software\\Karsten Sound & Film\\VCS", u"Allow Marlo3 files"}] = 0;
  EXPECT_EQ(export_to("film.adl"), result::source_refused);
}

TEST_F(AdlExport, ARefusedListLeavesTheFileAsItWas) {
  add({}).source_index = 3;
  support::write_file(folder.file("film.adl"), "before");
  EXPECT_EQ(export_to("film.adl"), result::source_refused);
  EXPECT_EQ(export_to("film.adl", {.sd2 = 1}), result::not_sd2);
  EXPECT_EQ(support::read_file(folder.file("film.adl")), "before");
  EXPECT_EQ(export_to("other.adl"), result::source_refused);
  EXPECT_FALSE(support::file_exists(folder.file("other.adl")));
}

// "x" stands for a hexadecimal digit in lower case.
bool is_of_form(const std::string& text, std::string_view form) {
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char c, char place) {
    return place == 'x' ? (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') : c == place;
  });
}

TEST_F(AdlExport, EachHasAnIdentifierOfItsOwn) {
  const std::string first = line(written(), "(ADL_UID)          ");
  const std::string second = line(written(), "(ADL_UID)          ");
  constexpr std::string_view form = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  EXPECT_TRUE(is_of_form(first, form)) << first;
  EXPECT_TRUE(is_of_form(second, form)) << second;
  EXPECT_NE(first, second);
}

TEST_F(AdlExport, DateAndZone) {
  const auto date = [this](int local_hour, int utc_hour) {
    host.time.moment.local = {2024, 3, 5, local_hour, 7, 9};
    host.time.moment.utc = {2024, 3, 5, utc_hour, 7, 9};
    return line(written(), "(PROJ_CREATE_DATE) ");
  };
  EXPECT_EQ(date(14, 13), "2024-03-05T14:07:09+01:00");
  EXPECT_EQ(date(0, 23), "2024-03-05T00:07:09-23:00");
  EXPECT_EQ(date(8, 8), "2024-03-05T08:07:09+00:00");
  EXPECT_EQ(date(9, 14), "2024-03-05T09:07:09-05:00");
  EXPECT_EQ(date(23, 11), "2024-03-05T23:07:09+12:00");
}

TEST_F(AdlExport, Rates) {
  const char* const starts[] = {"00=00=00.00/0000", "00.00.00.00/0000", "00:00:00.00/0000",
                                "00:00:00,00/0000", "00|00|00.00/0000"};
  const char* const rates[] = {"24", "25", "30", "30", "30"};
  for (std::uint8_t code = 0; code < 5; ++code) {
    CAES31File file(nullptr, 0, 0, 0, 0);
    set_rates(file, 2, code);
    ASSERT_EQ(file.export_edl(folder.wide_file("film.adl"), 0), result::done);
    const std::string text = support::read_file(folder.file("film.adl"));
    EXPECT_EQ(line(text, "(SEQ_FRAME_RATE)   "), rates[code]);
    EXPECT_EQ(line(text, "(SEQ_DEST_START)   "), starts[code]);
    EXPECT_EQ(line(text, "(SEQ_SAMPLE_RATE)  "), "S48000");
  }
  CAES31File file(nullptr, 0, 0, 0, 0);
  ASSERT_EQ(file.export_edl(folder.wide_file("film.adl"), 0), result::done);
  const std::string unset = support::read_file(folder.file("film.adl"));
  EXPECT_EQ(line(unset, "(SEQ_FRAME_RATE)   "), "30");
  EXPECT_EQ(line(unset, "(SEQ_SAMPLE_RATE)  "), "S0");
  EXPECT_EQ(line(unset, "(SEQ_DEST_START)   "), "23:59:59.00/0000");
  set_rates(file, 1, 0);
  ASSERT_EQ(file.export_edl(folder.wide_file("film.adl"), 0), result::done);
  const std::string film = support::read_file(folder.file("film.adl"));
  EXPECT_EQ(line(film, "(SEQ_SAMPLE_RATE)  "), "S44100");
  EXPECT_EQ(line(film, "(SEQ_DEST_START)   "), "00=00=00.00|0000");
}

TEST_F(AdlExport, CrossfadeLengthOfTheHost) {
  for (const std::int64_t length :
       {std::int64_t{0}, std::int64_t{201}, std::int64_t{5000000000}, std::int64_t{-2}}) {
    host.app.default_crossfade_length = length;
    EXPECT_EQ(line(written(), "(SYS_XFADE_LEN)    "), std::to_string(length));
  }
}

TEST(AdlUrlPath, BeginsWithTheDriveOrTheFirstName) {
  struct Case {
    const wide_char* path;
    const wide_char* url;
  };
  const Case cases[] = {{u"\\\\server\\share\\a", u"server/share/a.wav"},
                        {u"C:\\a", u"C:/a.wav"},
                        {u"//C:/audio/take 1", u"C:/audio/take 1.wav"},
                        {u"///C:/x", u"C:/x.wav"},
                        {u":a", u":a.wav"},
                        {u"a", u"a.wav"},
                        {u"\\/\\/a\\b", u"a/b.wav"},
                        {u"/vol:b:c", u"l:b:c.wav"},
                        {u"//", u".wav"},
                        {u"", u".wav"},
                        {u"a.wav", u"a.wav.wav"}};
  for (const Case& one : cases) {
    EXPECT_EQ(support::utf8(adl::url_path(one.path, adl::SourceExtension::wav)),
              support::utf8(one.url));
  }
}

TEST_F(AdlExport, ExtensionOfSources) {
  CGenericEdlEntry& entry = add({.path = u"C:\\a b"});
  const auto url = [this](const Flags& flags) { return line(written(flags), "(F) "); };
  EXPECT_EQ(url({}), "\"URL:file://localhost/C:/a b.wav\"");
  EXPECT_EQ(url({.aiff = 1}), "\"URL:file://localhost/C:/a b.aif\"");
  entry.source_index = 7;
  EXPECT_EQ(url({.sd2 = 1}), "\"URL:file://localhost/C:/a b.sd2\"");
  EXPECT_EQ(url({.sd2 = 1, .aiff = 1}), "\"URL:file://localhost/C:/a b.aif\"");
}

TEST_F(AdlExport, SourceLine) {
  CGenericEdlEntry& entry = add({.clip = u"a \"b\""});
  const auto source = [this] { return between(written(), ".wav\"\n", "    </SOURCE_INDEX>"); };
  EXPECT_EQ(source(), "            _  23:59:59.00/0000  _  \"a \"b\"\"  N\n");
  entry.source_timestamp = 48000;
  entry.set_originator_reference(u"12345678901234567890123456789012");
  EXPECT_EQ(source(),
            "            \"12345678901234567890123456789012\"  00.00.01.00/0000  _  "
            "\"a \"b\"\"  N\n");
}

TEST_F(AdlExport, UnknownStampOfEachFrameRate) {
  for (const std::uint8_t code : std::vector<std::uint8_t>{0, 1, 2, 3, 4}) {
    CAES31File file(&root, 0, 0, 0, 0);
    set_rates(file, 2, code);
    delete_all(*root.get_generic_entry_list());
    add({});
    ASSERT_EQ(file.export_edl(folder.wide_file("film.adl"), 0), result::done);
    EXPECT_EQ(
        line(support::read_file(folder.file("film.adl")), "_  "),
        code == 3 ? "23:59:59,00/0000  _  \"take 1\"  N" : "23:59:59.00/0000  _  \"take 1\"  N");
  }
}

TEST_F(AdlExport, CutLine) {
  add({.dest_in = 48000, .dest_out = 96000, .source_in = 1920});
  CGenericEdlEntry& stereo =
      add({.dest_in = 0, .dest_out = 960, .streams = {2, 3}, .path = u"b", .clip = u"b"});
  stereo.channel_offset = 4;
  CGenericEdlEntry& nowhere = add({.streams = {}});
  nowhere.channel_offset = 65535;
  EXPECT_EQ(lines(written(), "(Cut) "),
            (Lines{"I 0001  1  1  00.00.00.01/0000", "I 0002  5~6  3~4  00.00.00.00/0000",
                   "I 0001  65536  65536  00.00.00.00/0000"}));
}

TEST_F(AdlExport, SecondLineOfACut) {
  CGenericEdlEntry& entry = add({.dest_in = 48000, .dest_out = 96000});
  const auto mode = [&](std::int32_t flags) {
    entry.chunk_flags = flags;
    return between(written(), "(Cut) I 0001  1  1  00.00.00.00/0000\n", "            (Infade)");
  };
  const std::string times = "                  00.00.01.00/0000  00.00.02.00/0000  ";
  EXPECT_EQ(mode(0), times + "R\n");
  EXPECT_EQ(mode(1), times + "M\n");
  EXPECT_EQ(mode(2), times + "R\n");
  EXPECT_EQ(mode(3), times + "M\n");
  // The flag of text formats is another one.
  entry.mute_flag = 1;
  EXPECT_EQ(mode(0), times + "R\n");
}

TEST_F(AdlExport, NumbersGrowPastFourDigits) {
  for (int i = 0; i < 10000; ++i) {
    const std::u16string name = text_from_utf8("clip " + std::to_string(i));
    add({.dest_in = 48000 * i, .dest_out = 48000 * i + 48000, .path = name, .clip = name});
  }
  const std::string text = written();
  const Lines entries = lines(text, "(Entry) ");
  const Lines sources = lines(text, "(Index) ");
  const Lines cuts = lines(text, "(Cut) ");
  ASSERT_EQ(entries.size(), 10000U);
  ASSERT_EQ(sources.size(), 10000U);
  EXPECT_EQ(entries[0], "0001");
  EXPECT_EQ(entries[9998], "9999");
  EXPECT_EQ(entries[9999], "10000");
  EXPECT_EQ(sources[9999], "10000");
  EXPECT_EQ(cuts[9999].substr(0, 9), "I 10000  ");
}

TEST_F(AdlExport, FadesHaveTwoFormsOfNumbers) {
  CGenericEdlEntry& entry = add({});
  entry.fade_in_length = 480;
  entry.fade_out_length = 960;
  const auto fades = [&](std::uint16_t curve) {
    entry.fade_in_curve = entry.fade_out_curve = curve;
    const std::string text = written();
    return Lines{line(text, "(Infade) "), line(text, "(Outfade) ")};
  };
  EXPECT_EQ(fades(33), (Lines{"00.00.00.00/0480  CURVE  -3.20  -1.50  -0.60",
                              "00.00.00.00/0960  CURVE  -0.6  -1.5  -3.2"}));
  EXPECT_EQ(fades(31), (Lines{"00.00.00.00/0480  CURVE  -0.20  +0.00  +0.00",
                              "00.00.00.00/0960  CURVE  +0.0  +0.0  -0.2"}));
  EXPECT_EQ(fades(1), (Lines{"00.00.00.00/0480  CURVE  -43.10  -27.80  -13.80",
                             "00.00.00.00/0960  CURVE  -13.8  -27.8  -43.1"}));
  EXPECT_EQ(fades(116), (Lines{"00.00.00.00/0480  CURVE  -1.50  -0.20  +0.00",
                               "00.00.00.00/0960  CURVE  +0.0  -0.2  -1.5"}));
  const Lines straight = {"00.00.00.00/0480  LIN  _  _  _", "00.00.00.00/0960  LIN  _  _  _"};
  EXPECT_EQ(fades(0), straight);
  // No curve has these numbers.
  EXPECT_EQ(fades(117), straight);
  EXPECT_EQ(fades(65535), straight);
}

TEST_F(AdlExport, GainInDecibels) {
  CGenericEdlEntry& entry = add({});
  const auto gain = [&](float level) {
    entry.gain_left = level;
    return lines(written(), "(Gain)");
  };
  EXPECT_EQ(gain(0.5F), Lines{"  _  -6.02"});
  EXPECT_EQ(gain(0.25F), Lines{"  _  -12.04"});
  EXPECT_EQ(gain(2.0F), Lines{"  _  +6.02"});
  EXPECT_EQ(gain(0.0F), Lines{"  _  -160.00"});
  EXPECT_EQ(gain(1.0F), Lines{});
  EXPECT_EQ(gain(1.0000001F), Lines{"  _  +0.00"});
  EXPECT_EQ(gain(0.9999999F), Lines{"  _  -0.00"});
}

TEST_F(AdlExport, NameIsTrimmedAndItsQuotesEscaped) {
  CGenericEdlEntry& entry = add({});
  const auto name = [&](const wide_char* text) {
    entry.set_source_reel_name(text);
    return line(written(), "(Rem) ");
  };
  EXPECT_EQ(line(written(), "(Rem) "), "NAME \"\"");
  EXPECT_EQ(name(u"Line 1"), "NAME \"Line 1\"");
  EXPECT_EQ(name(u" \tLine\t"), "NAME \"Line\"");
  EXPECT_EQ(name(u"say \"hi\""), "NAME \"say \\\"hi\\\"\"");
  EXPECT_EQ(name(u"\""), "NAME \"\\\"\"");
  EXPECT_EQ(name(u""), "NAME \"\"");
  EXPECT_EQ(name(u"a\\b"), "NAME \"a\\b\"");
  EXPECT_EQ(name(u"12345678901234567890123456789012"), "NAME \"1234567890123456789012345678901\"");
}

TEST_F(AdlExport, EditsOfOneSourceShareIt) {
  const auto twins = [this]() -> CGenericEdlEntry& {
    delete_all(*root.get_generic_entry_list());
    for (const std::uint16_t channel : std::vector<std::uint16_t>{0, 1}) {
      CGenericEdlEntry& entry = add({});
      entry.set_reel_name(u"TAPE01");
      entry.source_timestamp = 96000;
      entry.first_channel = channel;
    }
    return *static_cast<CGenericEdlEntry*>(root.get_generic_entry_list()->GetTail());
  };
  const auto urls = [this] { return lines(written(), "(F) \"URL:file://localhost/"); };
  twins();
  EXPECT_EQ(urls(), Lines{"C:/audio/take 1.wav\""});
  twins().set_file_path(u"//D:/elsewhere/take 1");
  EXPECT_EQ(urls(), Lines{"C:/audio/take 1.wav\""});
  twins().source_timestamp = 96001;
  EXPECT_EQ(urls().size(), 2U);
  twins().set_clip_name(u"take 2");
  EXPECT_EQ(urls().size(), 2U);
  twins().set_reel_name(u"TAPE02");
  EXPECT_EQ(urls().size(), 2U);
  twins().source_channel = 1;
  EXPECT_EQ(urls().size(), 2U);
  twins().source_time_word = 1;
  EXPECT_EQ(urls().size(), 2U);
  twins().first_channel = 2;
  EXPECT_EQ(urls().size(), 2U);
}

TEST_F(AdlExport, KeepsTheOrderOfTheList) {
  add({.dest_in = 96000, .dest_out = 97920});
  add({.dest_in = 0, .dest_out = 1920});
  EXPECT_EQ(lines(written(), "00.00.0"),
            (Lines{"2.00/0000  00.00.02.01/0000  R", "0.00/0000  00.00.00.01/0000  R"}));
}

TEST_F(AdlExport, TellsWhetherEditsOverlap) {
  const auto clean = [this](std::int64_t next, std::uint16_t track) {
    delete_all(*root.get_generic_entry_list());
    add({.dest_in = 0, .dest_out = 48000});
    add({.dest_in = next, .dest_out = next + 48000, .streams = {track}});
    return line(written(), "(SEQ_CLEAN)        ");
  };
  EXPECT_EQ(clean(24000, 0), "FALSE");
  EXPECT_EQ(clean(24000, 1), "TRUE");
  EXPECT_EQ(clean(48000, 0), "TRUE");
  EXPECT_EQ(clean(47999, 0), "FALSE");
}

TEST_F(AdlExport, TellsOfEditsWithSeveralChannels) {
  add({});
  EXPECT_EQ(line(written(), "(SEQ_MULTICHAN)    "), "FALSE");
  add({.dest_in = 48000, .dest_out = 96000, .streams = {0, 1}});
  EXPECT_EQ(line(written(), "(SEQ_MULTICHAN)    "), "TRUE");
}

TEST_F(AdlExport, ButtSplicesOfAnOddCrossfade) {
  host.app.butt_splice_export = 1;
  add({.dest_in = 0, .dest_out = 1030}).fade_out_length = 61;
  add({.dest_in = 970, .dest_out = 1920}).fade_in_length = 61;
  EXPECT_EQ(lines(written(), "00.00.00.00/"),
            (Lines{"0000  00.00.00.00/1000  R", "1000  00.00.00.01/0000  R"}));
}

TEST_F(AdlExport, FaderPoints) {
  add_automation(0, 6, {{0, 324}, {1920, 384}, {3840, 504}, {5760, 0}});
  EXPECT_EQ(between(written(), "    <FADER_LIST>\n", "    </FADER_LIST>"),
            "        (FP)  7  00.00.00.00/0000  -6.00\n"
            "        (FP)  7  00.00.00.01/0000  0.00\n"
            "        (FP)  7  00.00.00.02/0000  12.00\n"
            "        (FP)  7  00.00.00.03/0000  -160.00\n");
}

TEST_F(AdlExport, MutePointsThatChangeSomething) {
  add_automation(1, 0, {{0, 0}, {10, 1}, {20, 1}, {30, 0}});
  // Each run begins unmuted.
  add_automation(1, 1, {{40, 0}, {50, 7}});
  EXPECT_EQ(between(written(), "    <MUTE_LIST>\n", "    </MUTE_LIST>"),
            "        (MP)  1  00.00.00.00/0010  M\n"
            "        (MP)  1  00.00.00.00/0030  U\n"
            "        (MP)  2  00.00.00.00/0050  M\n");
}

TEST_F(AdlExport, MuteListOfNothing) {
  add_automation(1, 0, {{0, 0}, {10, 0}});
  EXPECT_NE(written().find("    <MUTE_LIST>\n    </MUTE_LIST>\n\n</ADL>\n"), std::string::npos);
}

TEST_F(AdlExport, PanPoints) {
  add_automation(2, 0, {{0, 252}, {0, 254}, {0, 257}, {0, 504}, {0, 0}, {0, 251}});
  EXPECT_EQ(lines(written(), "(PP)  1  00.00.00.00/0000  "),
            (Lines{"0", "0", "+1", "+100", "-100", "-1"}));
}

TEST(AdlPanPercent, FollowsTheStepsToTheLeft) {
  for (int step = 0; step <= 504; ++step)
    EXPECT_EQ(adl::pan_percent(static_cast<std::uint32_t>(step)), step * 200 / 504 - 100) << step;
  // Steps beyond the range, as an unchecked value of a list gives them.
  EXPECT_EQ(adl::pan_percent(0xFFFFFF04), -200);
  // 4260880.5 in single precision, times 200 is 852176128 there.
  EXPECT_EQ(adl::pan_percent(0x80000000), -852176228);
}

TEST_F(AdlExport, AutomationStandsByTypeInOrderOfTheList) {
  add_automation(2, 3, {{0, 0}});
  add_automation(0, 2, {{0, 384}});
  add_automation(1, 1, {{0, 1}});
  add_automation(0, 0, {{0, 384}});
  add_automation(3, 0, {{0, 1}});
  const std::string text = written();
  EXPECT_EQ(text.substr(text.find("    </EVENT_LIST>\n\n")),
            "    </EVENT_LIST>\n"
            "\n"
            "    <FADER_LIST>\n"
            "        (FP)  3  00.00.00.00/0000  0.00\n"
            "        (FP)  1  00.00.00.00/0000  0.00\n"
            "    </FADER_LIST>\n"
            "\n"
            "    <MUTE_LIST>\n"
            "        (MP)  2  00.00.00.00/0000  M\n"
            "    </MUTE_LIST>\n"
            "\n"
            "    <PAN_LIST>\n"
            "        (PP)  4  00.00.00.00/0000  -100\n"
            "    </PAN_LIST>\n"
            "\n"
            "</ADL>\n");
}

TEST_F(AdlExport, TextsAreInTheCodePageOfTheHost) {
  add({.clip = u"caf\u00E9 \u0416"});
  EXPECT_EQ(line(written(), "_  23:59:59.00/0000  _  "), "\"caf\xE9 ?\"  N");
}

// A device without room: the exception of the file class, whatever write it hits.
TEST_F(AdlExport, RefusedWritesPassThrough) {
  for (int i = 0; i < 3000; ++i)
    add({.dest_in = 48000 * i, .dest_out = 48000 * i + 48000});
  int writes = 0;
  {
    const support::FaultyFiles counting(FileFaults::Operation::write, 0);
    EXPECT_EQ(export_to("film.adl"), result::done);
    writes = counting.count();
  }
  ASSERT_GT(writes, 3);
  for (int nth = 1; nth <= writes; ++nth) {
    const support::FaultyFiles faults(FileFaults::Operation::write, nth, ENOSPC);
    try {
      static_cast<void>(export_to("film.adl"));
      ADD_FAILURE() << "write " << nth << " was refused and nobody told";
    } catch (const CFileException& failure) {
      EXPECT_EQ(failure.m_cause, CFileException::diskFull);
      EXPECT_EQ(failure.m_lOsError, ENOSPC);
    }
  }
}

TEST_F(AdlExport, AFullDeviceIsTold) {
  if (!support::file_exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  CAES31File file(&root, 0, 0, 0, 0);
  EXPECT_THROW(static_cast<void>(file.export_edl(u"/dev/full", 0)), CFileException);
}

// The object's own records are those of the last export.
TEST_F(AdlExport, ASecondExportIsTheSame) {
  fill_demo(*this);
  CAES31File file(&root, 0, 0, 0, 0);
  ASSERT_EQ(file.export_edl(folder.wide_file("a.adl"), 0), result::done);
  host.ids.next = 1;
  ASSERT_EQ(file.export_edl(folder.wide_file("b.adl"), 0), result::done);
  EXPECT_TRUE(support::same_lines(replaced(support::read_file(folder.file("b.adl")),
                                           "(SEQ_TITLE)        \"b\"", "(SEQ_TITLE)        \"a\""),
                                  support::read_file(folder.file("a.adl"))));
}

// The generic list is only read.
TEST_F(AdlExport, LeavesTheListAsItIs) {
  host.app.butt_splice_export = 1;
  fill_demo(*this);
  static_cast<void>(written({}, "a.adl"));
  host.ids.next = 1;
  const std::string again = written({}, "a.adl");
  host.ids.next = 1;
  EXPECT_TRUE(support::same_lines(written({}, "a.adl"), again));
  EXPECT_EQ(static_cast<CGenericEdlEntry*>(root.get_generic_entry_list()->GetHead())->dest_out,
            1100);
}

TEST_F(AdlExport, NumbersSourcesByTheListOfAJob) {
  support::FakeAudCnt contents[3] = {{48000, 24, {}}, {48000, 24, {}}, {48000, 24, {}}};
  const wide_char* const names[] = {u"a", u"b", u"c"};
  for (std::size_t i = 0; i < 3; ++i) {
    add({.path = names[i], .clip = names[i]}).audio_content = &contents[i];
  }
  const auto numbers = [this](const Flags& flags) {
    const std::string text = written(flags);
    Lines places;
    for (const std::string& cut : lines(text, "(Cut) I "))
      places.push_back(cut.substr(0, 4));
    // Events name sources by their place, whatever the numbers are.
    EXPECT_EQ(places, (Lines{"0001", "0002", "0003"}));
    return lines(text, "(Index) ");
  };
  const Lines plain = {"0001", "0002", "0003"};
  EXPECT_EQ(numbers({}), plain);
  EXPECT_EQ(GetInterchangerSourceList(), nullptr);
  EXPECT_EQ(numbers({.interchange = 1}), plain);
  ASSERT_NE(GetInterchangerSourceList(), nullptr);
  EXPECT_EQ(GetInterchangerSourceList()->GetSourceIndex(&contents[2]), 2);
  EXPECT_EQ(numbers({.interchange = 1}), plain);
  EXPECT_EQ(GetInterchangerSourceList(), nullptr);
  (new CInterchangerSourceList)->AddSource(&contents[1], 4, 0);
  EXPECT_EQ(numbers({.interchange = 1}), (Lines{"0001", "0005", "0006"}));
  EXPECT_EQ(GetInterchangerSourceList(), nullptr);
  (new CInterchangerSourceList)->AddSource(&contents[0], 7, 1);
  EXPECT_EQ(numbers({}), plain);
  EXPECT_EQ(host.sound.reindexed, (std::vector<std::pair<int, int>>{{7, 0}}));
  EXPECT_EQ(GetInterchangerSourceList(), nullptr);
}

// A list that is refused does not use up the numbers of a job.
TEST_F(AdlExport, ARefusedExportLeavesTheListOfTheJob) {
  add({}).source_index = 3;
  auto* const list = new CInterchangerSourceList;
  EXPECT_EQ(export_to("film.adl"), result::source_refused);
  EXPECT_EQ(GetInterchangerSourceList(), list);
  EXPECT_EQ(export_to("missing/film.adl", {.interchange = 1}), result::not_done);
  EXPECT_EQ(GetInterchangerSourceList(), list);
}

TEST_F(AdlExport, CountsTimesThatReadBackMoved) {
  add({.dest_in = 5762557, .dest_out = 28799971, .source_in = 178709731});
  add({.dest_in = 5762557, .dest_out = 28799971, .source_in = 0}).fade_in_length = 5762557;
  const auto moved = [this](std::uint8_t frame_rate) {
    CAES31File file(&root, 0, 0, 0, 0);
    set_rates(file, 2, frame_rate);
    EXPECT_EQ(file.export_edl(folder.wide_file("film.adl"), 0), result::done);
    return file.moved_times();
  };
  // 00:02:00,02 three times, and 01:02:03,04.
  EXPECT_EQ(moved(3), 4U);
  EXPECT_EQ(moved(2), 0U);
  host.fixes.set(Correction::adl_drop_frame, true);
  EXPECT_EQ(moved(3), 0U);
}

TEST_F(AdlExport, OfAnObjectWithoutListsIsEmpty) {
  CGenericEdl middle(&root);
  add({});
  CAES31File file(&middle, 0, 0, 0, 0);
  ASSERT_EQ(file.export_edl(folder.wide_file("film.adl"), 0), result::done);
  EXPECT_EQ(lines(support::read_file(folder.file("film.adl")), "(Entry)").size(), 0U);
}

}  // namespace
