// Every message of the list's parsers, and what they read, through small texts.
#include "adl/list_parser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"

namespace {

using adl::Message;

constexpr const char* head =
    "<ADL>\n<VERSION> </VERSION>\n<PROJECT> </PROJECT>\n"
    "<SEQUENCE>\n(SEQ_DEST_START) 00.00.00.00/0000\n</SEQUENCE>\n";
constexpr const char* one_source =
    "<SOURCE_INDEX>\n(Index) 1 (F) \"URL:file://localhost/C:/audio/take%201.wav\" _ _\n"
    "</SOURCE_INDEX>\n";
// A whole cut of the source, a second long at a second.
constexpr const char* cut = "(Cut) I 1 1 1 00.00.00.00/0000 00.00.01.00/0000 00.00.02.00/0000 R ";

using Points = std::vector<std::pair<std::int64_t, std::uint32_t>>;
// Type, channel and points.
using AutoRun = std::tuple<int, int, Points>;

class Parsing : public testing::Test {
 protected:
  Parsing() {
    host.app.default_infade_curve = 1;
    host.app.default_outfade_curve = 2;
    records.set_rates = [this](std::uint8_t frames, std::int8_t samples) {
      frame_rate = frames;
      sample_rate = samples;
    };
    records.warn = [this](Message message) {
      warnings.emplace_back(message, records.error_position);
    };
  }
  ~Parsing() override { clear(); }

  void clear() {
    delete_all(sources);
    delete_all(events);
    delete_all(automation);
    records.source_numbers.clear();
    warnings.clear();
    frame_rate = 255;
    sample_rate = -1;
  }

  // A whole list.
  Message parse(const std::string& text) {
    clear();
    records.error_position = 0;
    list = text;
    adl::ListParser parser(list, records);
    const Message message = parser.scan_sections();
    return message != 0 ? message : parser.parse_sections();
  }
  // The head and these sections.
  Message parse_with(const std::string& sections) { return parse(head + sections + "</ADL>\n"); }
  Message parse_index(const std::string& entries) {
    return parse_with("<SOURCE_INDEX>\n" + entries + "\n</SOURCE_INDEX>\n");
  }
  Message parse_events(const std::string& entries) {
    return parse_with(one_source + ("<EVENT_LIST>\n" + entries) + "\n</EVENT_LIST>\n");
  }
  Message parse_entry(const std::string& fields) { return parse_events("(Entry) 1 " + fields); }
  // The one event with these fields behind a good cut.
  const CGenericEDLFileEntry& event_with(const std::string& fields) {
    EXPECT_EQ(parse_entry(cut + fields), 0U) << fields;
    EXPECT_EQ(events.GetCount(), 1);
    return *static_cast<CGenericEDLFileEntry*>(events.GetHead());
  }
  template <class Parser>
  Message parse_bare(const std::string& text, Parser parser) {
    clear();
    list = text;
    return (adl::ListParser(list, records).*parser)(0);
  }
  [[nodiscard]] std::size_t line() const {
    return 1 + static_cast<std::size_t>(
                   std::count(list.begin(), list.begin() + records.error_position, '\n'));
  }
  [[nodiscard]] const CGenericEDLFileTrack& source() const {
    return *static_cast<const CGenericEDLFileTrack*>(sources.GetHead());
  }

  [[nodiscard]] std::vector<AutoRun> runs() const {
    std::vector<AutoRun> all;
    for (POSITION at = automation.GetHeadPosition(); at != nullptr;) {
      const auto& run =
          *static_cast<const CGenericEDLFileAutomationEntryChunk*>(automation.GetNext(at));
      Points points;
      for (POSITION inner = run.m_points->GetHeadPosition(); inner != nullptr;) {
        const auto& point =
            *static_cast<const CGenericEDLFileAutomationEntry*>(run.m_points->GetNext(inner));
        points.emplace_back(point.m_time, point.m_value);
      }
      EXPECT_EQ(run.m_count, points.size());
      all.emplace_back(run.m_parameter, run.m_channel, points);
    }
    return all;
  }

  support::ScriptedHost host;
  CObList sources;
  CObList events;
  CObList automation;
  adl::ListRecords records{sources, events, automation};
  std::string list;
  std::vector<std::pair<Message, std::uint32_t>> warnings;
  std::uint8_t frame_rate = 255;
  int sample_rate = -1;
};

TEST_F(Parsing, SmallestList) {
  EXPECT_EQ(parse_with(""), 0U);
  EXPECT_EQ(frame_rate, 1);
  EXPECT_EQ(sample_rate, 2);
  EXPECT_EQ(parse(std::string(head) + "</ADL>"), 0U);
  EXPECT_EQ(parse(head), 0U);
  EXPECT_EQ(parse("x <adl> <version> </VERSION> <Project> </project>\n"
                  "<sequence> (seq_dest_start) 00.00.00.00/0000 </sequence> </adl>\n"),
            0U);
}

TEST_F(Parsing, ListsWithoutATag) {
  EXPECT_EQ(parse(""), 24389U);
  EXPECT_EQ(parse("hello there\n"), 24389U);
  EXPECT_EQ(parse("<ADL>"), 24389U);
}

TEST_F(Parsing, SectionsThatAreMissing) {
  const std::string version = "<VERSION> </VERSION>\n";
  const std::string project = "<PROJECT> </PROJECT>\n";
  const std::string sequence = "<SEQUENCE> (SEQ_DEST_START) 00.00.00.00/0000 </SEQUENCE>\n";
  EXPECT_EQ(parse("<ADL> " + project + sequence + "</ADL>\n"), 24409U);
  EXPECT_EQ(parse("<ADL> " + version + sequence + "</ADL>\n"), 24409U);
  EXPECT_EQ(parse("<ADL> " + version + project + "</ADL>\n"), 24409U);
  EXPECT_EQ(parse("<ADL> " + version + project), 24409U);
  EXPECT_EQ(parse("<ADL> " + version + project + "</ADL> " + sequence), 24409U);
}

TEST_F(Parsing, SectionsTwiceAndUnclosed) {
  const std::tuple<const char*, Message, Message> rows[] = {
      {"VERSION", 24390, 24391},    {"PROJECT", 24392, 24393},    {"SYSTEM", 24394, 24395},
      {"SEQUENCE", 24396, 24397},   {"TRACKLIST", 24398, 24399},  {"SOURCE_INDEX", 24400, 24401},
      {"EVENT_LIST", 24402, 24403}, {"FADER_LIST", 24404, 24405}, {"MUTE_LIST", 24406, 24407},
      {"PAN_LIST", 24875, 24876}};
  for (const auto& [name, twice, open] : rows) {
    const std::string tag = std::string("<") + name + ">";
    const std::string section = tag + " </" + name + ">\n";
    EXPECT_EQ(parse_with(section + section), twice) << name;
    EXPECT_EQ(parse("<ADL>\n" + tag + " x\n</ADL>\n"), open) << name;
  }
  EXPECT_EQ(parse("<ADL> <SEQUENCE> x </SEQUENCE>"), 24397U);
  EXPECT_EQ(parse_with("<FOO> <EVENT_LIST> </FOO>\n"), 0U);
  EXPECT_EQ(parse_with("<FOO> x\n"), 24408U);
  EXPECT_EQ(parse_with("</FOO>\n"), 24408U);
  EXPECT_EQ(parse_with("<TRACKLIST> (SEQ_DEST_START) nonsense </TRACKLIST>\n"), 0U);
}

TEST_F(Parsing, CrossfadeLength) {
  const auto length = [this](const std::string& value) {
    records.crossfade_length = -5;
    EXPECT_EQ(parse_with("<SYSTEM>\n" + value + "\n</SYSTEM>\n"), 0U) << value;
    return records.crossfade_length;
  };
  EXPECT_EQ(length("(SYS_XFADE_LEN) 201"), 200);
  EXPECT_EQ(length("(sys_xfade_len) 480"), 480);
  EXPECT_EQ(length("(FOO) 3 (SYS_XFADE_LEN) 00.00.00.01/0000 x"), 1920);
  EXPECT_EQ(length("(SYS_XFADE_LEN) 99999999999999999999"), INT64_MAX - 1);
  EXPECT_EQ(length("(FOO) 3"), -5);
  for (const char* const bad : {"12a", "_", "00.00.00.30/0000", "-2", "\"\""}) {
    EXPECT_EQ(parse_with(std::string("<SYSTEM>\n(SYS_XFADE_LEN)\n") + bad + " </SYSTEM>\n"), 24493U)
        << bad;
    EXPECT_EQ(line(), std::string(bad).size() == 16 ? 9U : 1U) << bad;
  }
  EXPECT_EQ(parse_with("<SYSTEM> (SYS_XFADE_LEN) </SYSTEM>\n"), 24493U);
  EXPECT_EQ(parse_bare("(SYS_XFADE_LEN) ", &adl::ListParser::parse_system_section), 24410U);
}

TEST_F(Parsing, StartOfTheSequence) {
  const auto start = [this](const std::string& value) {
    return parse("<ADL> <VERSION> </VERSION> <PROJECT> </PROJECT> <SEQUENCE>\n" + value +
                 "\n</SEQUENCE> </ADL>\n");
  };
  EXPECT_EQ(start("(SEQ_SAMPLE_RATE) S44100 (SEQ_DEST_START) 01:00:00,00/0000"), 0U);
  EXPECT_EQ(frame_rate, 3);
  EXPECT_EQ(sample_rate, 2);
  EXPECT_EQ(start("(SEQ_DEST_START) 00.00.00.00/000"), 24411U);
  EXPECT_EQ(start("(SEQ_DEST_START) 00.00.00.25/0000"), 24411U);
  EXPECT_EQ(line(), 2U);
  EXPECT_EQ(start("(SEQ_FRAME_RATE) 25"), 24412U);
  const std::pair<char, int> rates[] = {{'=', 0}, {'|', 1}, {'/', 2}, {'~', 3}, {'-', 4},
                                        {'@', 6}, {'*', 7}, {'?', 8}, {'&', 9}};
  for (const auto& [mark, index] : rates) {
    EXPECT_EQ(start(std::string("(SEQ_DEST_START) 00.00.00.00") + mark + "0000"), 0U);
    EXPECT_EQ(sample_rate, index);
  }
  EXPECT_EQ(start("(SEQ_DEST_START) 00.00.00.00!0000"), 24411U);
  const auto bare = &adl::ListParser::parse_sequence_section;
  EXPECT_EQ(parse_bare("", bare), 24412U);
  EXPECT_EQ(parse_bare("(SEQ_DEST_START) ", bare), 24410U);
  EXPECT_EQ(parse_bare("(SEQ_DEST_START) 00.00.00.00/0000 ", bare), 24413U);
}

TEST_F(Parsing, SourceOfTheIndex) {
  EXPECT_EQ(parse_with(one_source), 0U);
  ASSERT_EQ(sources.GetCount(), 1);
  EXPECT_EQ(source().m_index, 0);
  EXPECT_EQ(source().m_source_type, 11);
  EXPECT_EQ(support::utf8(source().get_path()), "//C:/audio/take 1");
  EXPECT_EQ(support::utf8(source().get_file_name()), "take 1");
  EXPECT_EQ(source().m_time_stamp, time_not_given);
  EXPECT_TRUE(source().get_originator_reference().empty());
  EXPECT_EQ(records.source_numbers, std::vector<std::uint32_t>{1});
}

TEST_F(Parsing, IndexEntriesThatAreWrong) {
  const std::string url = "URL:file://localhost/a.wav";
  const std::pair<std::string, Message> rows[] = {
      {"(Index) x", 24425},
      {"(Index) -1 (F) " + url + " _", 24425},
      {"(Index) 1", 24426},
      {"(Index) 1 (F)", 24427},
      {"(Index) 1 (F) http://x/a.wav _", 24428},
      {"(Index) 1 (F) \"\" _", 24428},
      {"(Index) 1 (F) URL:file://localhost/a.mp3 _", 24429},
      {"(Index) 1 (F) URL:file://localhost/a.aif _", 24429},
      {"(Index) 1 (F) " + url, 24430},
      {"(Index) 1 (F) " + url + " _ 01.00.00.25/0000", 24431},
      {"(Index) 1 (F) " + url + " _\n(Index) 2 (F) x _", 24428}};
  for (const auto& [entry, message] : rows) {
    EXPECT_EQ(parse_index("\n" + entry), message) << entry;
    EXPECT_EQ(line(), message == 24428 && entry.find('\n') != std::string::npos ? 10U : 9U)
        << entry;
  }
  EXPECT_EQ(parse_index("(Index) (Index) 1 (F) " + url + " _"), 0U);
  EXPECT_EQ(sources.GetCount(), 1);
  const auto bare = &adl::ListParser::parse_source_index;
  EXPECT_EQ(parse_bare("", bare), 24414U);
  EXPECT_EQ(parse_bare("(INDEX) 1 ", bare), 24410U);
}

TEST_F(Parsing, ExtensionsByTheKindOfTheJob) {
  const auto result = [this](const char* extension, bool sd2, bool interchange) {
    records.sd2_sources = sd2;
    records.interchange_sources = interchange;
    return parse_index(std::string("(Index) 1 (F) URL:file://localhost/a") + extension + " _");
  };
  for (const bool sd2 : {false, true}) {
    for (const bool interchange : {false, true}) {
      for (const char* const good : {"", ".wav", ".BWF", ".aiff"}) {
        EXPECT_EQ(result(good, sd2, interchange), 0U) << good;
        EXPECT_EQ(source().m_source_type, sd2 ? 7 : 11);
      }
      for (const char* const bad : {".aif", ".mp3"})
        EXPECT_EQ(result(bad, sd2, interchange), 24429U) << bad;
      EXPECT_EQ(result(".sd2", sd2, interchange), sd2 && !interchange ? 0U : 24429U);
      EXPECT_EQ(result(".omf", sd2, interchange), !sd2 && interchange ? 0U : 24429U);
    }
  }
}

TEST_F(Parsing, MarkersOfAnInterchangeJob) {
  for (const bool interchange : {false, true}) {
    records.interchange_sources = interchange;
    for (const char* const marker : {"(F)", "(E)", "(f)", "(X)", "F"}) {
      const bool known = adl::is_keyword(marker, "(F)") || std::string_view(marker) == "(E)";
      EXPECT_EQ(parse_index(std::string("(Index) 1 ") + marker + " URL:file://localhost/a.wav _"),
                interchange && !known ? 24426U : 0U)
          << marker;
    }
  }
}

TEST_F(Parsing, IdentifierAndTimeStamp) {
  const auto parse_tail = [this](const std::string& tail) {
    EXPECT_EQ(parse_index("(Index) 1 (F) URL:file://localhost/a.wav " + tail), 0U) << tail;
    return support::utf8(source().get_originator_reference());
  };
  const std::string most(32, 'u');
  EXPECT_EQ(parse_tail("\"\" 01.00.00.00/0000 _ \"x\" N"), "");
  EXPECT_EQ(source().m_time_stamp, 172800000);
  EXPECT_EQ(parse_tail("\"" + most + "\""), most);
  EXPECT_TRUE(warnings.empty());
  EXPECT_EQ(parse_tail(most + "u 01.00.00.00/000"), "");
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_EQ(warnings[0].first, 24458U);
  EXPECT_EQ(line(), 8U);
  for (const char* const unknown : {"_", "x", "01.00.00.00/000", "01.00.00.00/00000"}) {
    parse_tail(std::string("_ ") + unknown);
    EXPECT_EQ(source().m_time_stamp, time_not_given) << unknown;
  }
}

TEST_F(Parsing, PathsHaveALimit) {
  const auto of_length = [this](std::size_t stored) {
    return parse_index("(Index) 1 (F) URL:file://localhost/" + std::string(stored - 2, 'p') +
                       ".wav _");
  };
  EXPECT_EQ(of_length(255), 0U);
  EXPECT_EQ(source().get_path().size(), 255U);
  EXPECT_EQ(of_length(256), 24428U);
  EXPECT_EQ(sources.GetCount(), 0);
}

TEST_F(Parsing, EntriesThatAreWrong) {
  const std::string t = "00.00.01.00/0000 ";
  const std::pair<std::string, Message> rows[] = {
      {"", 1},
      {"(Cut)", 24435},
      {"(Cut) X", 24439},
      {"(Cut) i 1", 24439},
      {"(Cut) I", 24436},
      {"(Cut) I x", 24437},
      {"(Cut) I 1", 24432},
      {"(Cut) I 1 1a", 24440},
      {"(Cut) I 1 1~2~3", 24440},
      {"(Cut) I 1 3~1", 24440},
      {"(Cut) I 1 ~", 24440},
      {"(Cut) I 1 1~70000", 24440},
      {"(Cut) I 1 " + std::string(40, 'z'), 24440},
      {"(Cut) I 1 " + std::string(40, '#') + "~1", 24440},
      {"(Cut) I 1 1", 24432},
      {"(Cut) I 1 1 x", 24441},
      {"(Cut) I 1 1 3~1", 24441},
      {"(Cut) I 1 1~2 1", 24442},
      {"(Cut) I 1 3 3~3", 24442},
      {"(Cut) I 1 1~2 1~3", 24442},
      {"(Cut) I 1 1 1", 24432},
      {"(Cut) I 1 1 1 x", 24443},
      {"(Cut) I 1 1 1 " + t, 24432},
      {"(Cut) I 1 1 1 " + t + "x", 24444},
      {"(Cut) I 1 1 1 " + t + t + "00.00.01.25/0000", 24445},
      {"(Cut) I 1 1 1 " + t + t + "00.00.00.24/1919", 24446},
      {"(Cut) I 1 1 1 " + t + t + t, 24432},
      {"(Cut) I 1 1 1 " + t + t + t + "RM", 24447},
      {std::string(cut) + cut, 24434},
      {"(Cut) F x", 24428},
      {"(Cut) F URL:file://localhost/a.sd2", 24429},
      {"(Cut) F URL:file://localhost/a.aif", 24429},
      {cut + ("(Infade) " + t) + "LIN _ _ _ (Rem) NAME x (Infade) " + t, 24448},
      {cut + std::string("(Infade)"), 24449},
      {cut + std::string("(Infade) x"), 24450},
      {cut + std::string("(Infade) 00.00.01.25/0000"), 24450},
      {cut + ("(Infade) " + t), 24451},
      {cut + ("(Infade) " + t) + "FOO _ _ _", 24451},
      {cut + ("(Infade) " + t) + "LIN _ _", 24451},
      {cut + ("(Infade) " + t) + "CURVE -1 1-2 -3", 24451},
      {cut + ("(Outfade) " + t) + "LIN _ _ _ (Rem) NAME x (Outfade) " + t, 24452},
      {cut + std::string("(Outfade)"), 24453},
      {cut + std::string("(Outfade) x"), 24454},
      {cut + ("(Outfade) " + t) + "CURVE -1 -2", 24455},
      {cut + std::string("(Gain) _ 1 (Gain) _ 1"), 24456},
      {cut + std::string("(Gain) _ 1e3"), 24457},
      {cut + std::string("(Gain) _"), 24432},
      {cut + std::string("(Gain)"), 24432},
      {cut + std::string("(Rem) FOO x"), 24459},
  };
  for (const auto& [fields, message] : rows) {
    EXPECT_EQ(parse_events("\n(Entry)\n1 " + fields), message) << fields;
    EXPECT_EQ(line(), 12U) << fields;
  }
  EXPECT_EQ(parse_events("(Entry) x"), 24433U);
  EXPECT_EQ(parse_events("(Entry) (Entry) 1 " + std::string(cut)), 0U);
  EXPECT_EQ(events.GetCount(), 1);
  EXPECT_EQ(parse_bare("", &adl::ListParser::parse_event_list), 24415U);
  EXPECT_EQ(parse_bare("(ENTRY) 1 ", &adl::ListParser::parse_event_list), 24410U);
}

TEST_F(Parsing, EntriesWithoutASourceAreWarnedOf) {
  EXPECT_EQ(parse_events("(Entry) 1 (Cut) I 0007\n(Entry) 2 " + std::string(cut)), 0U);
  EXPECT_EQ(events.GetCount(), 1);
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_EQ(warnings[0].first, 24438U);
  EXPECT_EQ(parse_events("(Entry) 1 (Gain) _ 0"), 0U);
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_EQ(warnings[0].first, 24438U);
  ASSERT_EQ(events.GetCount(), 1);
  const auto& event = *static_cast<CGenericEDLFileEntry*>(events.GetHead());
  EXPECT_EQ(event.m_track_index, 0xFFFF);
  EXPECT_EQ(event.m_dest_in, time_not_given);
  EXPECT_EQ(event.m_length, 0);
}

TEST_F(Parsing, NumbersOfSources) {
  const auto index_of = [this](const std::string& numbers, const std::string& wanted) -> int {
    std::string index;
    for (std::size_t at = 0; at < numbers.size();) {
      const std::size_t end = std::min(numbers.find(' ', at), numbers.size());
      index += "(Index) " + numbers.substr(at, end - at) + " (F) file://a.wav/b.wav _\n";
      at = end + 1;
    }
    const std::string entry =
        "(Cut) I " + wanted + " 1 1 00.00.00.00/0000 00.00.00.00/0000 00.00.00.00/0000 R";
    EXPECT_EQ(parse_with("<EVENT_LIST>\n(Entry) 1 " + entry + "\n</EVENT_LIST>\n<SOURCE_INDEX>\n" +
                         index + "</SOURCE_INDEX>\n"),
              0U);
    if (events.IsEmpty()) return -1;
    return static_cast<CGenericEDLFileEntry*>(events.GetHead())->m_track_index;
  };
  EXPECT_EQ(index_of("7 3 9", "3"), 1);
  EXPECT_EQ(records.source_numbers, (std::vector<std::uint32_t>{7, 3, 9}));
  EXPECT_EQ(index_of("7 3 3", "0003"), 1);
  EXPECT_EQ(index_of("65541", "5"), -1);
  EXPECT_EQ(index_of("5", "65541"), 0);
}

TEST_F(Parsing, SourceInTheCut) {
  const std::string entry =
      " (Cut) F \"URL:file://localhost/C:/x.wav\" 1 1 00.00.00.00/0000 00.00.00.00/0000 "
      "00.00.00.00/0000 R\n";
  EXPECT_EQ(parse_events("(Entry) 1" + entry + "(Entry) 2" + entry), 0U);
  EXPECT_EQ(sources.GetCount(), 3);
  EXPECT_EQ(source().m_index, 2);
  EXPECT_EQ(source().m_source_type, 2);
  EXPECT_EQ(support::utf8(source().get_path()), "//C:/x");
  EXPECT_EQ(static_cast<CGenericEDLFileEntry*>(events.GetTail())->m_track_index, 2);
}

TEST_F(Parsing, ChannelsOfACut) {
  const auto channels = [this](const std::string& fields) {
    EXPECT_EQ(parse_entry("(Cut) I 1 " + fields +
                          " 00.00.00.00/0000 00.00.00.00/0000 00.00.00.00/0000 R"),
              0U);
    const auto& event = *static_cast<CGenericEDLFileEntry*>(events.GetHead());
    return std::vector<int>{event.m_channel_offset, event.m_first_stream, event.m_stream_count};
  };
  EXPECT_EQ(channels("1~2 3~4"), (std::vector<int>{0, 2, 2}));
  EXPECT_EQ(channels("1-2 3-4"), (std::vector<int>{0, 2, 2}));
  EXPECT_EQ(channels("3~4 1-2"), (std::vector<int>{2, 0, 2}));
  EXPECT_EQ(channels("2 1"), (std::vector<int>{1, 0, 1}));
  EXPECT_EQ(channels("0 0"), (std::vector<int>{65535, 65535, 1}));
  EXPECT_EQ(channels("~3 0-3"), (std::vector<int>{65535, 65535, 4}));
}

// A few kilobytes must not ask for gigabytes.
TEST_F(Parsing, StreamsOfAllEventsHaveALimit) {
  std::string entries;
  for (int i = 0; i < 1025; ++i)
    entries +=
        "(Entry) 1 (Cut) I 1 1~65535 1~65535 00.00.00.00/0000 00.00.00.00/0000 "
        "00.00.00.00/0000 R\n";
  EXPECT_EQ(parse_events(entries), 24441U);
  EXPECT_EQ(events.GetCount(), 1024);
}

TEST_F(Parsing, Mode) {
  const auto flags = [this](const std::string& mode) {
    EXPECT_EQ(
        parse_entry("(Cut) I 1 1 1 00.00.00.00/0000 00.00.00.00/0000 00.00.00.00/0000 " + mode),
        0U);
    return static_cast<CGenericEDLFileEntry*>(events.GetHead())->m_flags;
  };
  EXPECT_EQ(flags("M"), 1U);
  for (const char* const other : {"m", "R", "X", "_"})
    EXPECT_EQ(flags(other), 0U) << other;
}

TEST_F(Parsing, Fades) {
  const std::string t = "00.00.00.01/0000 ";
  const CGenericEDLFileEntry& none = event_with("");
  EXPECT_EQ(none.m_fade_in_length, time_not_given);
  EXPECT_EQ(none.m_fade_out_length, time_not_given);
  EXPECT_EQ(none.m_fade_in_curve, 1);
  EXPECT_EQ(none.m_fade_out_curve, 2);
  const CGenericEDLFileEntry& both = event_with("(Infade) " + t + "CURVE -3.20 -1.50 -0.60 " +
                                                "(Outfade) " + t + "curve -0.6 -1.5 -3.2");
  EXPECT_EQ(both.m_fade_in_length, 1920);
  EXPECT_EQ(both.m_fade_in_curve, 33);
  EXPECT_EQ(both.m_fade_out_curve, 33);
  const CGenericEDLFileEntry& again = event_with("(Infade) " + t + "lin _ _ _ (Infade) " + t +
                                                 "LIN _ _ _ (Outfade) " + t + "LIN x y z");
  EXPECT_EQ(again.m_fade_in_curve, 0);
  EXPECT_EQ(again.m_fade_out_length, 1920);
  const std::string half = "00.00.00.12/0960 LIN _ _ _ ";
  EXPECT_EQ(parse_entry(cut + ("(Infade) " + half) + "(Outfade) " + half), 0U);
  EXPECT_EQ(parse_entry(cut + ("(Infade) " + half) + "(Outfade) 00.00.00.12/0961 LIN _ _ _"),
            28198U);
}

TEST_F(Parsing, RemarksAndNames) {
  const auto name = [this](const std::string& fields) {
    return support::utf8(event_with(fields).get_name());
  };
  EXPECT_EQ(name(""), "");
  EXPECT_EQ(name("(Rem) NAME \"A\" (Rem) name \"B c\""), "B c");
  EXPECT_EQ(name("(Rem) NAME \"\""), "_");
  EXPECT_EQ(name("(Rem) NAME " + std::string(40, 'n')), std::string(31, 'n'));
  EXPECT_EQ(name("(Rem) SOURCE x (Rem) DESC y (Rem) USER z"), "");
  EXPECT_EQ(name("(Rem)"), "");
  EXPECT_EQ(name("(Rem) NAME"), "");
  EXPECT_EQ(name("(Rem) NAME \"(abc\""), "(ABC");
  EXPECT_EQ(name("(Rem) NAME \"say \\\"hi\\\"\""), "say \\\"hi\\\"");
  EXPECT_EQ(name("(Rem) NAME \"caf\xE9\""), "caf\xC3\xA9");
  // What is in quotes may look like a keyword.
  EXPECT_EQ(parse_entry(cut + std::string("(Rem) NAME \"(entry)\" x")), 24433U);
}

TEST_F(Parsing, Gain) {
  const auto gain = [this](const std::string& value) {
    return event_with("(Gain) _ " + value).m_level;
  };
  EXPECT_FLOAT_EQ(gain("-6.02"), 0.5000345F);
  EXPECT_EQ(gain("0"), 1.0F);
  EXPECT_FLOAT_EQ(gain("-20"), 0.1F);
  EXPECT_FLOAT_EQ(gain("+6"), 1.9952624F);
  EXPECT_EQ(gain("+"), 1.0F);
  EXPECT_TRUE(std::isinf(gain(std::string(300, '9'))));
  EXPECT_EQ(gain("-" + std::string(300, '9')), 0.0F);
  EXPECT_EQ(event_with("").m_level, 1.0F);
}

TEST_F(Parsing, UnknownFieldsArePassedOver) {
  EXPECT_FLOAT_EQ(event_with("(FOO) a b c (Gain) _ -20 junk").m_level, 0.1F);
  EXPECT_FLOAT_EQ(event_with("junk (foo) (bar) (gain) _ -20").m_level, 0.1F);
}

TEST_F(Parsing, EventsAreSortedByDestination) {
  std::string entries;
  for (const auto& [frame, name] :
       std::vector<std::pair<int, char>>{{5, 'a'}, {3, 'b'}, {5, 'c'}, {3, 'd'}}) {
    const std::string t = " 00.00.00.0" + std::to_string(frame) + "/0000";
    entries += "(Entry) 1 (Cut) I 1 1 1" + t + t + t + " R (Rem) NAME " + name + "\n";
  }
  EXPECT_EQ(parse_events(entries), 0U);
  std::string order;
  for (POSITION at = events.GetHeadPosition(); at != nullptr;)
    order += support::utf8(static_cast<CGenericEDLFileEntry*>(events.GetNext(at))->get_name());
  EXPECT_EQ(order, "bdac");
}

std::string point(const char* keyword, int channel, int frame, const std::string& value) {
  char time[32];
  std::snprintf(time, sizeof time, "00.00.%02d.%02d/0000", frame / 25, frame % 25);
  return std::string(keyword) + " " + std::to_string(channel) + " " + time + " " + value + "\n";
}

constexpr std::int64_t frame = 1920;

TEST_F(Parsing, AutomationThatIsWrong) {
  struct Form {
    const char* section;
    const char* keyword;
    Message channel;
    Message time;
    Message value;
    Message end;
    Message (adl::ListParser::*parser)(std::size_t);
    std::vector<const char*> bad_values;
  };
  const Form forms[] = {{"FADER_LIST",
                         "(FP)",
                         24416,
                         24417,
                         24418,
                         24419,
                         &adl::ListParser::parse_fader_list,
                         {"1.2.3", "1-", "x", "1e1"}},
                        {"MUTE_LIST",
                         "(MP)",
                         24420,
                         24421,
                         24422,
                         24423,
                         &adl::ListParser::parse_mute_list,
                         {"X", "MU", "1"}},
                        {"PAN_LIST",
                         "(PP)",
                         24877,
                         24878,
                         24880,
                         24881,
                         &adl::ListParser::parse_pan_list,
                         {"1.5", "x", "1-"}}};
  for (const Form& form : forms) {
    const auto parse_list = [&](const std::string& points) {
      return parse_with(std::string("<") + form.section + ">\n" + form.keyword + points + "</" +
                        form.section + ">\n");
    };
    EXPECT_EQ(parse_list(" x "), form.channel);
    EXPECT_EQ(parse_list(" 1 00.00.00.00/000 "), form.time);
    EXPECT_EQ(parse_list(" 1 00.00.00.25/0000 "), form.time);
    for (const char* const bad : form.bad_values) {
      EXPECT_EQ(parse_list(std::string(" 1 00.00.00.00/0000\n") + bad + "\n"), form.value) << bad;
      EXPECT_EQ(line(), 9U);
    }
    EXPECT_EQ(parse_bare("", form.parser), form.end);
    EXPECT_EQ(parse_bare(form.keyword + std::string(" 1 "), form.parser), 24410U);
  }
  EXPECT_EQ(parse_with("<PAN_LIST> (PP) x </PAN_LIST> <FADER_LIST> (FP) x </FADER_LIST>\n"),
            24416U);
}

TEST_F(Parsing, FaderPoints) {
  std::string points;
  for (const char* const value : {"+20.0", "-200.0", "-", "0.00", "-6.02"})
    points += point("(fp)", 1, 1, value);
  EXPECT_EQ(parse_with("<FADER_LIST> (XX) 1 2 3 " + points + "</FADER_LIST>\n"), 0U);
  // Among equal times the later read stands first.
  EXPECT_EQ(
      runs(),
      (std::vector<AutoRun>{
          {0, 0, {{frame, 324U}, {frame, 384U}, {frame, 384U}, {frame, 0U}, {frame, 504U}}}}));
}

TEST_F(Parsing, PanPoints) {
  const auto step = [this](const std::string& value) {
    EXPECT_EQ(parse_with("<PAN_LIST> " + point("(PP)", 1, 0, value) + "</PAN_LIST>\n"), 0U)
        << value;
    return std::get<2>(runs().at(0)).at(0).second;
  };
  const std::pair<const char*, std::uint32_t> rows[] = {
      {"-100", 0}, {"-99", 2},   {"-75", 63}, {"-50", 126}, {"-25", 189}, {"-1", 249},
      {"0", 252},  {"1", 254},   {"+2", 257}, {"25", 315},  {"50", 378},  {"75", 441},
      {"99", 501}, {"100", 504}, {"+", 252},  {"-", 252},   {"200", 756}, {"-200", 4294967044}};
  for (const auto& [value, expected] : rows)
    EXPECT_EQ(step(value), expected) << value;
  host.fixes.set(Correction::adl_pan_decimals, true);
  EXPECT_EQ(step("-100.0"), 0U);
  EXPECT_EQ(step("0.5"), 253U);
  EXPECT_EQ(step("2"), 257U);
  EXPECT_EQ(parse_with("<PAN_LIST> " + point("(PP)", 1, 0, "1.2.3") + "</PAN_LIST>\n"), 24880U);
}

TEST_F(Parsing, PointsAreSortedByTime) {
  EXPECT_EQ(parse_with("<FADER_LIST> " + point("(FP)", 1, 100, "0") + point("(FP)", 1, 50, "12") +
                       point("(FP)", 1, 75, "-160") + "</FADER_LIST>\n"),
            0U);
  EXPECT_EQ(
      runs(),
      (std::vector<AutoRun>{{0, 0, {{50 * frame, 504U}, {75 * frame, 0U}, {100 * frame, 384U}}}}));
}

TEST_F(Parsing, MuteRunsBeginUnmuted) {
  const auto mute = [this](const std::vector<std::pair<int, const char*>>& points) {
    std::string text;
    for (const auto& [at, value] : points)
      text += point("(MP)", 1, at, value);
    EXPECT_EQ(parse_with("<MUTE_LIST> " + text + "</MUTE_LIST>\n"), 0U);
    return std::get<2>(runs().at(0));
  };
  EXPECT_EQ(mute({{10, "M"}, {20, "u"}}), (Points{{0, 0}, {10 * frame, 1}, {20 * frame, 0}}));
  EXPECT_EQ(mute({{0, "m"}}), (Points{{0, 1}}));
  EXPECT_EQ(mute({{10, "M"}, {0, "M"}}), (Points{{0, 0}, {10 * frame, 1}, {0, 1}}));
  EXPECT_EQ(mute({{10, "M"}, {0, "M"}, {5, "M"}}),
            (Points{{0, 0}, {10 * frame, 1}, {0, 1}, {5 * frame, 1}}));
}

TEST_F(Parsing, RunsStandByChannel) {
  const auto order = [this] {
    std::vector<std::pair<int, int>> all;
    for (const AutoRun& run : runs())
      all.emplace_back(std::get<0>(run), std::get<1>(run));
    return all;
  };
  using Order = std::vector<std::pair<int, int>>;
  EXPECT_EQ(parse_with("<FADER_LIST> " + point("(FP)", 3, 0, "0") + point("(FP)", 1, 0, "0") +
                       point("(FP)", 0, 0, "0") + point("(FP)", 2, 0, "0") + "</FADER_LIST>\n"),
            0U);
  EXPECT_EQ(order(), (Order{{0, 0}, {0, 1}, {0, 2}, {0, 65535}}));
  EXPECT_EQ(parse_with("<PAN_LIST> " + point("(PP)", 1, 0, "0") + "</PAN_LIST> <MUTE_LIST> " +
                       point("(MP)", 2, 0, "M") + "</MUTE_LIST> <FADER_LIST> " +
                       point("(FP)", 2, 0, "0") + point("(FP)", 1, 0, "0") + "</FADER_LIST>\n"),
            0U);
  EXPECT_EQ(order(), (Order{{2, 0}, {1, 1}, {0, 0}, {0, 1}}));
}

// A plain insertion from the tail, as the list is told.
void insert_plainly(Points& points, bool is_mute, std::int64_t time, std::uint32_t value) {
  std::size_t at = points.size();
  while (at > 0 && points[at - 1].first >= time)
    --at;
  const auto place = points.begin() + static_cast<std::ptrdiff_t>(at);
  if (at > 0 || !is_mute) {
    points.insert(place, {time, value});
  } else if (time == 0) {
    points.emplace_back(time, value);
  } else {
    points.insert(points.begin(), {{0, 0}, {time, value}});
  }
}

TEST_F(Parsing, PointsAgreeWithPlainInsertion) {
  std::uint32_t random = 1;
  const auto below = [&random](std::uint32_t limit) {
    random = random * 1664525 + 1013904223;
    return (random >> 16) % limit;
  };
  for (int round = 0; round < 300; ++round) {
    const bool is_mute = round % 2 == 0;
    Points expected;
    std::string text;
    for (std::uint32_t i = 0; i < 1 + below(25); ++i) {
      const std::uint32_t at = below(6);
      // Pan values tell points of equal time apart.
      const std::uint32_t step = is_mute ? below(2) : 252 + below(4) * 63;
      insert_plainly(expected, is_mute, at * frame, step);
      text += is_mute ? point("(MP)", 1, static_cast<int>(at), step != 0 ? "M" : "U")
                      : point("(PP)", 1, static_cast<int>(at),
                              std::to_string((static_cast<int>(step) - 252) / 63 * 25));
    }
    const std::string name = is_mute ? "MUTE_LIST" : "PAN_LIST";
    ASSERT_EQ(parse_with("<" + name + "> " + text + "</" + name + ">\n"), 0U);
    ASSERT_EQ(std::get<2>(runs().at(0)), expected) << round;
  }
}

}  // namespace
