#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "core/generic_edl_entry.h"
#include "formats/format_table.h"
#include "tests/formats/toy/tally_format.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace {

constexpr const char* plain_event =
    "001  TAPE01  A  C  01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n";

std::string detected(std::string_view head, std::string_view path) {
  const FormatRow* const row = detect_format(format_table(), head, path);
  return row == nullptr ? "none" : std::string(row->name);
}

TEST(FormatTable, EveryRowIsWhole) {
  std::set<std::string_view> names;
  for (const FormatRow& row : format_table()) {
    EXPECT_TRUE(names.insert(row.name).second) << row.name << " is there twice";
    EXPECT_FALSE(row.title.empty()) << row.name;
    EXPECT_TRUE(row.imports || row.exports) << row.name;
    ASSERT_FALSE(row.extensions.empty()) << row.name;
    for (const std::string_view extension : row.extensions) {
      EXPECT_TRUE(extension.starts_with('.')) << row.name;
      for (const char c : extension)
        EXPECT_FALSE(c >= 'A' && c <= 'Z') << row.name << ": " << extension;
    }
    ASSERT_NE(row.make, nullptr) << row.name;
    ASSERT_NE(row.match, nullptr) << row.name;
    ASSERT_FALSE(row.outputs("film" + std::string(row.extensions[0])).empty()) << row.name;
    EXPECT_EQ(find_format(format_table(), row.name), &row);
  }
}

TEST(FormatTable, RowsTakeHeadsOfAnyKind) {
  std::string every_byte;
  for (int byte = 0; byte < 256; ++byte)
    every_byte += static_cast<char>(byte);
  for (const FormatRow& row : format_table()) {
    for (const std::string& head : {std::string(), std::string(1, '\0'), every_byte,
                                    std::string(detection_size, ' '), std::string("\n\n\n")}) {
      EXPECT_EQ(row.match(head), HeadMatch::none) << row.name;
      EXPECT_NO_FATAL_FAILURE(static_cast<void>(row.states_sample_rate(head)));
      EXPECT_NO_FATAL_FAILURE(static_cast<void>(row.states_frame_rate(head)));
    }
  }
}

TEST(FormatTable, MakersMakeRootsAndExporters) {
  const support::ScriptedHost host;
  for (const FormatRow& row : format_table()) {
    const auto root = row.make(nullptr, 1, {});
    ASSERT_NE(root, nullptr) << row.name;
    EXPECT_TRUE(root->get_generic_entry_list()->IsEmpty()) << row.name;
    const auto exporter = row.make(root.get(), 0, {});
    EXPECT_EQ(exporter->get_generic_entry_list(), root->get_generic_entry_list()) << row.name;
  }
}

TEST(FindFormat, NamesAreWhole) {
  EXPECT_EQ(find_format(format_table(), "cmx"), nullptr);
  EXPECT_EQ(find_format(format_table(), ""), nullptr);
  EXPECT_EQ(find_format(format_table(), "CMX3600"), nullptr);
}

TEST(DetectFormat, TitleNamesTheForm) {
  EXPECT_EQ(detected("TITLE: b          FORMAT: CMX 3600 4-Ch \n", "b"), "cmx3600");
  EXPECT_EQ(detected("TITLE: b          FORMAT: CMX 340 2-Ch \n", "b"), "cmx340");
}

TEST(DetectFormat, LineListsByTheirTitle) {
  EXPECT_EQ(detected("TITLE: b          FORMAT: Sony-9000 \n", "b.edl"), "sony9000");
  EXPECT_EQ(detected("TITLE: b          FORMAT: Grass Valley \n", "b.edl"), "grassvalley");
  EXPECT_EQ(detected("TITLE: b          FORMAT: Multitrack Audio \n", "b.edl"),
            "lightworks-multichannel");
  EXPECT_EQ(detected("TITLE: b          (dump) FORMAT: Multitrack Audio \n", "b.dmp"),
            "lightworks-multichannel");
  const std::string columns = "EDT REL MODE  TYP P S   T     P-VTR IN\nBLOCK 001\n";
  EXPECT_EQ(detected("TITLE: b\n\n" + columns + plain_event, "b.edl"), "sony9000");
  EXPECT_EQ(detected("TITLE: b FORMAT: CMX 3600 4-Ch\n" + columns, "b.edl"), "cmx3600");
}

TEST(DetectFormat, TablesAndNativeTextByTheirFirstLine) {
  EXPECT_EQ(detected("\"OLEDB:Rev 1\"\n", "b.edl"), "lightworks");
  EXPECT_EQ(detected(" \r\n\"OLEDB:Rev 1\"\r\n", "b"), "lightworks");
  EXPECT_EQ(detected("x \"OLEDB:Rev 1\"\n", "b"), "none");
  EXPECT_EQ(detected("Marlo v2.1 Text EDL (c) 1991-1994 Karsten Sound & Film Ltd\n", "b.edl"),
            "native-text");
  EXPECT_EQ(detected("> Marlo v2.1 Text EDL (c) 1991-1994 Karsten Sound & Film Ltd\n", "b"),
            "native-text");
  EXPECT_EQ(detected("Marlo v2.0 Text EDL\n", "b"), "none");
}

bool states_frame_rate(std::string_view name, std::string_view head) {
  return find_format(format_table(), name)->states_frame_rate(head);
}

TEST(DetectFormat, HeadsThatStateTheirRates) {
  EXPECT_TRUE(states_frame_rate("native-text", "x\nFRAME RATE=29.97 DROP\nSAMPLE RATE=48\n"));
  EXPECT_FALSE(states_frame_rate("native-text", "FRAME RATE=UNKNOWN\nSAMPLE RATE=48\n"));
  EXPECT_FALSE(states_frame_rate("native-text", "SAMPLE RATE=48\n"));
  EXPECT_TRUE(find_format(format_table(), "native-text")->states_sample_rate(""));
  EXPECT_TRUE(states_frame_rate("lightworks", "\"a\"\n\"A01\",\"NN\",\"01.000\"\n"));
  EXPECT_TRUE(states_frame_rate("lightworks", "\"A01\",\"PR25.0\",\"01.000\"\n"));
  EXPECT_FALSE(states_frame_rate("lightworks", "\"A01\",\"00012.000000\",\"01.000\"\n"));
  EXPECT_FALSE(states_frame_rate("lightworks", "\"A01\",\"ENND\",\"NNX\"\n"));
  for (const char* name : {"sony9000", "grassvalley", "lightworks-multichannel"}) {
    EXPECT_TRUE(states_frame_rate(name, "TITLE: b\nFCM: DROP FRAME\n")) << name;
    EXPECT_FALSE(states_frame_rate(name, "TITLE: b\n001 R A1\n")) << name;
  }
}

TEST(FormatTable, DumpFileBelongsToTheOutput) {
  const FormatRow& row = *find_format(format_table(), "lightworks-multichannel");
  EXPECT_EQ(row.outputs("/x/b.edl"), (std::vector<std::string>{"/x/b.edl", "/x/b.dmp"}));
  // Three characters of the name go, whatever they are.
  EXPECT_EQ(row.outputs("b\xC3\xA4\xC3\xB6\xC3\xBC"),
            (std::vector<std::string>{"b\xC3\xA4\xC3\xB6\xC3\xBC", "bdmp"}));
  EXPECT_EQ(row.outputs("b.dmp"), std::vector<std::string>{"b.dmp"});
  EXPECT_EQ(row.outputs("ab"), std::vector<std::string>{"ab"});
}

TEST(DetectFormat, TitleWinsOverExtension) {
  EXPECT_EQ(detected("TITLE: b          FORMAT: CMX 340 2-Ch \n", "b.edl"), "cmx340");
  EXPECT_EQ(detected("TITLE: b          FORMAT: CMX 3600 4-Ch \n", "b.cmx"), "cmx3600");
}

TEST(DetectFormat, ListsWithoutAFormatAreCmx3600) {
  EXPECT_EQ(detected(std::string("TITLE: b\n") + plain_event, "b.txt"), "cmx3600");
  EXPECT_EQ(detected(plain_event, "b"), "cmx3600");
  EXPECT_EQ(detected(plain_event, "b.cmx"), "cmx3600");
}

TEST(DetectFormat, ExtensionDecidesLast) {
  EXPECT_EQ(detected("nothing that is known", "b.edl"), "cmx3600");
  EXPECT_EQ(detected("nothing that is known", "B.EDL"), "cmx3600");
  EXPECT_EQ(detected("nothing that is known", "b.cmx"), "cmx340");
  EXPECT_EQ(detected("nothing that is known", "b.txt"), "none");
  EXPECT_EQ(detected("nothing that is known", "edl"), "none");
  EXPECT_EQ(detected("nothing that is known", ".edl"), "none");
  EXPECT_EQ(detected("", "b"), "none");
}

// Rows of a test, to see the order of the decisions.
FormatRow test_row(std::string_view name, HeadMatch (*match)(std::string_view),
                   std::string_view extension) {
  FormatRow row = tally_row();
  row.name = name;
  row.match = match;
  row.extensions = {extension};
  return row;
}
HeadMatch never(std::string_view) {
  return HeadMatch::none;
}
HeadMatch perhaps(std::string_view) {
  return HeadMatch::possible;
}
HeadMatch surely(std::string_view) {
  return HeadMatch::certain;
}

TEST(DetectFormat, SurerMatchFirstThenExtensionThenOrder) {
  const auto name_of = [](const std::vector<FormatRow>& rows, std::string_view path) {
    const FormatRow* const row = detect_format(rows, "head", path);
    return row == nullptr ? std::string_view("none") : row->name;
  };
  const FormatRow a = test_row("a", perhaps, ".a");
  const FormatRow b = test_row("b", perhaps, ".b");
  const FormatRow c = test_row("c", surely, ".c");
  const FormatRow d = test_row("d", never, ".d");
  EXPECT_EQ(name_of({a, b, c, d}, "x.b"), "c");
  EXPECT_EQ(name_of({a, b, d}, "x.b"), "b");
  EXPECT_EQ(name_of({a, b, d}, "x.x"), "a");
  EXPECT_EQ(name_of({a, b, d}, "x.d"), "a");
  EXPECT_EQ(name_of({d}, "x.d"), "d");
  EXPECT_EQ(name_of({d}, "x.x"), "none");
}

TEST(DetectFormat, RowsThatOnlyWriteAreNotFound) {
  std::vector<FormatRow> rows = {test_row("a", surely, ".a")};
  rows[0].imports = false;
  EXPECT_EQ(detect_format(rows, "head", "x.a"), nullptr);
  EXPECT_EQ(format_for_output(rows, "x.a"), rows.data());
  rows[0].imports = true;
  rows[0].exports = false;
  EXPECT_EQ(detect_format(rows, "head", "x.a"), rows.data());
  EXPECT_EQ(format_for_output(rows, "x.a"), nullptr);
}

TEST(DetectFormat, AudioDecisionListsByTheirTag) {
  EXPECT_EQ(detected("<ADL>\n<VERSION>", "film.txt"), "adl");
  EXPECT_EQ(detected(" \r\n\t<adl> x", "film.edl"), "adl");
  EXPECT_EQ(detected("/* of a workstation */\n<ADL>\n", "film.txt"), "adl");
  EXPECT_EQ(detected("<ADLS> <ADL/>", "film.txt"), "none");
  EXPECT_EQ(detected("words", "film.adl"), "adl");
  // A list of another kind may speak of the tag.
  EXPECT_EQ(detected(std::string("TITLE: <ADL> FORMAT: CMX 340 2-Ch\n") + plain_event, "film.edl"),
            "cmx340");
}

TEST(FormatForOutput, FirstRowWithTheExtension) {
  EXPECT_EQ(format_for_output(format_table(), "b.edl")->name, "cmx3600");
  EXPECT_EQ(format_for_output(format_table(), "b.CMX")->name, "cmx340");
  EXPECT_EQ(format_for_output(format_table(), "b"), nullptr);
  EXPECT_EQ(format_for_output(format_table(), "b.edl.bak"), nullptr);
}

// What a row writes is found again by its content alone, without help of its name.
TEST(DetectFormat, OwnFilesAreFoundWithoutTheirExtension) {
  const support::ScriptedHost host;
  const support::TempFolder folder;
  for (const FormatRow& row : format_table()) {
    if (!row.exports || !row.imports || row.wants_audio) continue;
    const auto root = row.make(nullptr, 0, {});
    EDL_DETAILS details;
    details.frame_rate = 1;
    details.sample_rate_index = 2;
    root->set_edl_details(&details);
    auto* const entry = new CGenericEdlEntry(root.get());
    root->get_generic_entry_list()->AddTail(entry);
    entry->event_number = 1;
    entry->set_reel_name(u"TAPE01");
    entry->set_clip_name(u"TAKE 1");
    entry->set_file_path(u"//C:/audio/TAKE 1");
    entry->source_index = 11;
    entry->set_no_streams(1);
    entry->set_stream(0, 0);
    entry->source_in = 172800000;
    entry->source_out = 173280000;
    entry->dest_in = 1728000000;
    entry->dest_out = 1728480000;
    const auto exporter = row.make(root.get(), 0, {});
    exporter->set_edl_details(&details);
    const std::string path = folder.file(std::string(row.name));
    ASSERT_EQ(exporter->export_edl(text_from_utf8(path).c_str(), 0), 101) << row.name;
    EXPECT_EQ(detected(support::read_file(path).substr(0, detection_size), path), row.name);
  }
}

TEST(DetectFormat, ForeignCmxListsAreFoundByContent) {
  const char* const samples = std::getenv("EDL_SAMPLES");
  if (samples == nullptr) GTEST_SKIP() << "EDL_SAMPLES names no folder of samples";
  int seen = 0;
  for (const auto& item :
       std::filesystem::directory_iterator(std::filesystem::path(samples) / "cmx3600")) {
    std::ifstream file(item.path(), std::ios::binary);
    std::string head(std::istreambuf_iterator<char>(file), {});
    head.resize(std::min(head.size(), detection_size));
    EXPECT_EQ(detected(head, "list"), "cmx3600") << item.path();
    ++seen;
  }
  EXPECT_GE(seen, 30);
}

}  // namespace
