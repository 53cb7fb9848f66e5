// The dump file beside a list, which names the sources of reel "900".
#include <gtest/gtest.h>

#include <sstream>

#include "tests/text/text_fixtures.h"

namespace {

using support::add_entry;
using support::Edit;
using support::entries_of;
using support::reel_of;
using Texts = std::vector<std::string>;

// Lines of seven words: number, reel, stream and the four times in samples.
class DumpingEdl : public CTextEdl {
 public:
  explicit DumpingEdl(CGenericEdl* parent = nullptr) : CTextEdl(parent, 0) {}
  int is_audio_event(const wide_char* text) override { return words(text).size() >= 7 ? 1 : 0; }
  result_code parse_event(CGenericEdlEntry* entry, const wide_char* text, int* /*skip*/) override {
    const auto found = words(text);
    entry->event_number = static_cast<std::uint16_t>(std::atoi(found[0].c_str()));
    if (found.size() < 7) return result::line_bad;
    entry->set_reel_name(text_from_utf8(found[1]).c_str());
    entry->set_no_streams(1);
    entry->set_stream(0, static_cast<std::uint16_t>(std::stoi(found[2])));
    entry->source_in = std::stoll(found[3]);
    entry->source_out = std::stoll(found[4]);
    entry->dest_in = std::stoll(found[5]);
    entry->dest_out = std::stoll(found[6]);
    ++parsed;
    return found.size() > 7 ? result::negative_time : result::line_good;
  }
  result_code parse_video_event(CGenericEdlVideoEntry*, const wide_char*) override { return 92; }
  int get_format_name(wide_char* out) const override {
    copy_text(out, format_name_size, format_name);
    return 1;
  }

  std::u16string_view format_name = u"Multitrack Audio";
  int parsed = 0;

 private:
  static Texts words(const wide_char* text) {
    std::istringstream in(utf8_from_text({text, text_length(text)}));
    return {std::istream_iterator<std::string>(in), {}};
  }
};

class DumpTest : public support::TextTest {
 protected:
  DumpTest() { support::set_rates(edl); }
  void write_dump(std::string_view bytes) { support::write_file(folder.file("list.dmp"), bytes); }
  Texts reports() const { return host.boxes.report_bodies(); }
  std::size_t dump_entries() { return entries_of(edl.get_dump_list()).size(); }

  DumpingEdl edl;
};

TEST_F(DumpTest, IsReadAtTheFirst900Line) {
  write_dump("TITLE: X\n001 AAAA 0 100 200 0 100\n002 BBBB 1 5 6 7 8\n");
  EXPECT_EQ(
      import_bytes(edl, "001 TAPE 0 0 100 0 100\n002 900 0 0 100 0 100\n003 900 0 0 50 0 50\n"),
      100);
  EXPECT_EQ(entries_of(edl).size(), 3U);
  EXPECT_EQ(dump_entries(), 2U);
  EXPECT_EQ(edl.parsed, 5) << "it is read once";
  EXPECT_TRUE(host.boxes.shown.empty());
  const auto dump = entries_of(edl.get_dump_list());
  EXPECT_EQ(reel_of(*dump[0]), u"AAAA");
  EXPECT_EQ(dump[1]->dest_out, 8);
  EXPECT_EQ(dump[0]->owner, &edl);
}

TEST_F(DumpTest, OnlyTheReel900AsksForIt) {
  write_dump("001 AAAA 0 100 200 0 100\n");
  EXPECT_EQ(import_bytes(edl, "001 9000 0 0 0 0 0\n002 90 0 0 0 0 0\n003 X900 0 0 0 0 0\n"), 100);
  EXPECT_EQ(dump_entries(), 0U);
}

TEST_F(DumpTest, OnlyTheMultitrackFormatAsksForIt) {
  edl.format_name = u"Multitrack";
  write_dump("001 AAAA 0 100 200 0 100\n");
  EXPECT_EQ(import_bytes(edl, "001 900 0 0 0 0 0\n"), 100);
  EXPECT_EQ(dump_entries(), 0U);
  EXPECT_EQ(entries_of(edl).size(), 1U);
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(DumpTest, AMissingFileIsReportedAtEachLineUntilStopped) {
  host.boxes.report_answers = {0, 4096};
  EXPECT_EQ(import_bytes(edl, "001 900 0 0 0 0 0\n002 900 0 0 0 0 0\n003 900 0 0 0 0 0\n"), 100);
  // The kind of edit "900" has a form of box of its own.
  EXPECT_EQ(reports(), (Texts{"[22252] [22256] 1", "[22252] [22256] 2"}));
  EXPECT_EQ(host.boxes.shown[0].style, 16384U);
  EXPECT_EQ(entries_of(edl).size(), 3U) << "the lines are added all the same";
  EXPECT_EQ(edl.report_dump_errors, 0);

  host.boxes.shown.clear();
  EXPECT_EQ(import_bytes(edl, "004 900 0 0 0 0 0\n005 900 0 0 0 0\n"), 100);
  EXPECT_TRUE(reports().empty()) << "the refusal lasts as long as the object";
}

TEST_F(DumpTest, TheOtherReportsDoNotDependOnIt) {
  host.boxes.report_answers = {4096};
  edl.report_errors = 0;
  EXPECT_EQ(import_bytes(edl, "001 900 0 0 0 0 0\n002 X 0 0 0 0 100 -\n"), 100);
  EXPECT_EQ(reports(), (Texts{"[22252] [22256] 1"})) << "shown with other reports off";
  host.boxes.shown.clear();
  edl.report_errors = 1;
  EXPECT_EQ(import_bytes(edl, "002 900 0 0 0 0 100 -\n"), 100);
  EXPECT_EQ(reports(), (Texts{"[22253] [22258] 2"})) << "the others go on";
}

TEST_F(DumpTest, ALineWithoutNumberShowsTheEntrysOwn) {
  CGenericEdlEntry entry(&edl);
  EXPECT_EQ(edl.check_special_line(&entry, u"A01 900 x"), 1);
  EXPECT_EQ(edl.check_special_line(&entry, u"70001 900 x"), 1);
  EXPECT_EQ(reports(), (Texts{"[22252] [22256] 65535", "[22252] [22256] 4465"}));
  EXPECT_EQ(edl.check_special_line(&entry, u""), 1);
  EXPECT_EQ(edl.check_special_line(&entry, u"900"), 1);
  EXPECT_EQ(reports().size(), 2U);
}

TEST_F(DumpTest, ADumpThatCameLaterIsFound) {
  EXPECT_EQ(import_bytes(edl, "001 900 0 0 0 0 0\n"), 100);
  EXPECT_EQ(reports().size(), 1U);
  write_dump("001 AAAA 0 100 200 0 100\n");
  EXPECT_EQ(edl.load_dump(), 1);
  EXPECT_EQ(dump_entries(), 1U);
  EXPECT_EQ(edl.load_dump(), 1);
  EXPECT_EQ(dump_entries(), 1U) << "a success is kept";
}

TEST_F(DumpTest, ADumpWithoutEventsIsNone) {
  write_dump("TITLE: X\n");
  EXPECT_EQ(import_bytes(edl, "001 900 0 0 0 0 0\n"), 100);
  EXPECT_EQ(reports(), (Texts{"[22252] [22256] 1"}));
}

TEST_F(DumpTest, EveryLineBehindTheHeadIsParsed) {
  write_dump("TITLE: X\n001 AAAA 0 1 2 3 4\nNOTE\n002 900 0 1 2 3 4\n003 CCCC 0 1 2 3 4 -\n");
  EXPECT_EQ(import_bytes(edl, "001 900 0 0 0 0 0\n"), 100);
  // The note is no event: parse_event is asked all the same and refuses it. Lines
  // of reel 900 do not ask for the dump again, and refused times are dropped in
  // silence.
  EXPECT_EQ(reports(), (Texts{"[22253] [22231] 0"}));
  EXPECT_EQ(dump_entries(), 2U);
}

TEST_F(DumpTest, ABoxNamesTheDumpFile) {
  write_dump("001 AAAA 0 1 2 3 4\nNOTE\n");
  EXPECT_EQ(import_bytes(edl, "\n001 900 0 0 0 0 0\n002 X 0 0 0 0 9 -\n"), 100);
  ASSERT_EQ(host.boxes.shown.size(), 2U);
  EXPECT_EQ(host.boxes.shown[0].path, folder.file("list.dmp"));
  EXPECT_EQ(host.boxes.shown[0].line, 2);
  EXPECT_EQ(host.boxes.shown[1].path, folder.file("list.edl"));
  EXPECT_EQ(host.boxes.shown[1].line, 3);
}

TEST_F(DumpTest, TheNameTakesTheLastThreeCharacters) {
  support::write_file(folder.file("lisdmp"), "001 AAAA 0 1 2 3 4\n");
  EXPECT_EQ(import_bytes(edl, "001 900 0 0 0 0 0\n", "listxt"), 100);
  EXPECT_EQ(dump_entries(), 1U);
}

TEST_F(DumpTest, APathThatIsTooShortHasNone) {
  EXPECT_EQ(edl.import_edl(u"ab"), 0);
  EXPECT_EQ(edl.load_dump(), 0);
  EXPECT_EQ(edl.import_edl(u""), 0);
  EXPECT_EQ(edl.load_dump(), 0);
}

TEST_F(DumpTest, APathOf300Characters) {
  // The kept path is cut, so that its dump names another file: none.
  const std::string deep =
      folder.folder(std::string(200, 'd')) + "/" + std::string(90, 'e') + ".edl";
  support::write_file(deep, "001 900 0 0 0 0 0\n");
  support::write_file(deep.substr(0, deep.size() - 3) + "dmp", "001 AAAA 0 1 2 3 4\n");
  EXPECT_EQ(edl.import_edl(text_from_utf8(deep).c_str()), 100);
  EXPECT_EQ(dump_entries(), 0U);
  EXPECT_EQ(reports().size(), 1U);
}

TEST_F(DumpTest, TheListIsMadeWhenItIsFirstNeeded) {
  CGenericEdl root;
  DumpingEdl child(&root);
  EXPECT_EQ(child.find_dump_entry(&add_entry(root, {})), nullptr);
  EXPECT_EQ(child.get_dump_list()->GetCount(), 0);
  write_dump("001 AAAA 0 1 2 3 4\n");
  EXPECT_EQ(import_bytes(child, "001 900 0 0 0 0 0\n"), 100);
  EXPECT_EQ(child.get_dump_list()->GetCount(), 1) << "its own, freed with it";
}

// Neighbours and dump entries

TEST_F(DumpTest, TheNeighbourOfAnEvent) {
  for (const std::uint16_t number : std::initializer_list<std::uint16_t>{1, 1, 2, 1})
    add_entry(edl, {.event_number = number});
  const auto e = entries_of(edl);
  const CObList& list = *edl.get_generic_entry_list();
  const auto neighbour = [&](const CGenericEdlEntry* entry) {
    return edl.find_event_neighbour(entry, list.Find(entry));
  };
  EXPECT_EQ(neighbour(e[0]), e[1]);
  EXPECT_EQ(neighbour(e[1]), e[0]);
  EXPECT_EQ(neighbour(e[2]), nullptr);
  EXPECT_EQ(neighbour(e[3]), nullptr);
  e[3]->event_number = 2;
  EXPECT_EQ(neighbour(e[2]), e[3]);
  EXPECT_EQ(neighbour(e[3]), e[2]);
  e[2]->event_number = 1;
  e[1]->event_number = 1;
  EXPECT_EQ(neighbour(e[1]), e[2]) << "the next one first";
  EXPECT_EQ(edl.find_event_neighbour(e[0], nullptr), nullptr);
  DumpingEdl one;
  CGenericEdlEntry& only = add_entry(one, {});
  EXPECT_EQ(one.find_event_neighbour(&only, one.get_generic_entry_list()->GetHeadPosition()),
            nullptr);
}

class FindDumpTest : public DumpTest {
 protected:
  CGenericEdlEntry& dump(std::int64_t dest_in, std::int64_t dest_out, const std::u16string& reel,
                         int stream = 0) {
    auto entry = support::make_entry(
        edl, {.dest_in = dest_in, .dest_out = dest_out, .streams = {stream}, .reel = reel});
    edl.get_dump_list()->AddTail(entry.get());
    return *entry.release();
  }
  const CGenericEdlEntry* find(std::int64_t source_in, std::int64_t source_out,
                               const std::u16string& reel = u"AAAA", int stream = 0) {
    return edl.find_dump_entry(
        support::make_entry(
            edl,
            {.source_in = source_in, .source_out = source_out, .streams = {stream}, .reel = reel})
            .get());
  }
};

TEST_F(FindDumpTest, CoversTheSourceRange) {
  EXPECT_EQ(find(0, 1), nullptr) << "an empty list";
  const CGenericEdlEntry* const a = &dump(100, 200, u"AAAA");
  EXPECT_EQ(find(100, 200), a);
  EXPECT_EQ(find(150, 160), a);
  EXPECT_EQ(find(99, 150), nullptr);
  EXPECT_EQ(find(150, 201), nullptr);
}

TEST_F(FindDumpTest, ComparesThreeCharactersAndTheStream) {
  const CGenericEdlEntry* const a = &dump(100, 200, u"AAAB", 1);
  EXPECT_EQ(find(100, 200, u"AAAX", 1), a);
  EXPECT_EQ(find(100, 200, u"AAA", 1), a);
  EXPECT_EQ(find(100, 200, u"AAB", 1), nullptr);
  EXPECT_EQ(find(100, 200, u"AA", 1), nullptr);
  EXPECT_EQ(find(100, 200, u"AAAB", 0), nullptr);
}

TEST_F(FindDumpTest, AnEmptyRangeFindsAny) {
  const CGenericEdlEntry* const a = &dump(100, 200, u"AAAA");
  dump(300, 400, u"AAAA");
  EXPECT_EQ(find(5000, 5000), a);
  EXPECT_EQ(find(5000, 5000, u"BBBB"), nullptr);
  EXPECT_EQ(find(5000, 5000, u"AAAA", 1), nullptr);
}

TEST_F(FindDumpTest, TheFirstInListOrder) {
  dump(500, 600, u"AAAA");
  const CGenericEdlEntry* const late = &dump(100, 900, u"AAAA");
  dump(0, 1000, u"AAAA");
  EXPECT_EQ(find(110, 120), late);
}

// Resolving

class ResolveTest : public DumpTest {
 protected:
  // The list, its dump, and the entries after resolving.
  std::vector<CGenericEdlEntry*> resolved(std::string_view list, std::string_view dump) {
    write_dump(dump);
    EXPECT_EQ(import_bytes(edl, list), 100);
    edl.resolve_dump_sources();
    return entries_of(edl);
  }
};

TEST_F(ResolveTest, TakesTheSourceOfTheDump) {
  // The second line plays 300 to 400 of the dump, which starts at 250 and comes from
  // 9000 of its source: 9050 to 9150.
  const auto e = resolved("001 AAAA 0 0 0 500 500\n001 900 0 300 400 500 600\n",
                          "001 AAAA 0 9000 9500 250 750\n");
  EXPECT_EQ(reel_of(*e[1]), u"AAAA");
  EXPECT_EQ(support::utf8(e[1]->source_reel_name), "AAAA" + std::string(28, ' '));
  EXPECT_EQ(e[1]->source_in, 9050);
  EXPECT_EQ(e[1]->source_out, 9150);
  EXPECT_EQ(e[1]->dest_in, 500);
  EXPECT_EQ(e[0]->source_in, 0) << "others stay";
  EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(ResolveTest, FourCharactersOfThePartnersReel) {
  const auto e =
      resolved("001 ABCDEF 0 0 0 0 0\n001 900 0 300 400 0 100\n", "001 ABCX 0 9000 9500 250 750\n");
  EXPECT_EQ(reel_of(*e[1]), u"ABCD");
  EXPECT_EQ(e[1]->source_in, 9050);
}

TEST_F(ResolveTest, AnEmptyRangeTakesThePartnersStart) {
  const auto e =
      resolved("001 AAAA 0 777 888 0 0\n001 900 0 300 300 0 0\n", "001 AAAA 0 9000 9500 250 750\n");
  EXPECT_EQ(e[1]->source_in, 777);
  EXPECT_EQ(e[1]->source_out, 777);
}

TEST_F(ResolveTest, WithoutAPartner) {
  const auto e = resolved("001 AAAA 0 0 0 0 0\n002 900 0 300 400 0 100\n003 900 0 300 400 0 100\n",
                          "001 AAAA 0 9000 9500 250 750\n");
  EXPECT_EQ(reports(), (Texts{"[22252] [22257] 2", "[22252] [22257] 3"}));
  EXPECT_EQ(host.boxes.shown[0].path, folder.file("list.edl"));
  EXPECT_EQ(host.boxes.shown[0].line, 0) << "no line is being read";
  EXPECT_EQ(reel_of(*e[1]), u"900");
  EXPECT_EQ(e[1]->source_in, 300);
}

TEST_F(ResolveTest, TheReportsOfMissingPartnersCanBeStopped) {
  host.boxes.report_answers = {4096};
  resolved("001 900 0 300 400 0 100\n002 900 0 300 400 0 100\n", "001 AAAA 0 9000 9500 250 750\n");
  EXPECT_EQ(reports().size(), 1U);
  EXPECT_EQ(edl.report_dump_errors, 0);
}

TEST_F(ResolveTest, WithoutADumpEntryOnlyTheReelChanges) {
  const auto e =
      resolved("001 AAAA 0 0 0 0 0\n001 900 0 300 400 0 100\n", "001 AAAA 0 9000 9500 350 750\n");
  EXPECT_EQ(reel_of(*e[1]), u"AAAA");
  EXPECT_EQ(e[1]->source_in, 300);
}

TEST_F(ResolveTest, EveryReelThatBeginsWith900) {
  // "9001" does not ask for the dump file, but is resolved with the others.
  const auto e = resolved("001 AAAA 0 0 0 0 0\n001 9001 0 300 400 0 100\n002 900 0 1 1 0 0\n",
                          "001 AAAA 0 9000 9500 250 750\n");
  EXPECT_EQ(reel_of(*e[1]), u"AAAA");
  EXPECT_EQ(e[1]->source_in, 9050);
}

TEST_F(ResolveTest, WithoutADumpFileNothingHappens) {
  EXPECT_EQ(import_bytes(edl, "001 AAAA 0 0 0 0 0\n001 900 0 300 400 0 100\n"), 100);
  host.boxes.shown.clear();
  edl.resolve_dump_sources();
  EXPECT_EQ(reel_of(*entries_of(edl)[1]), u"900");
  EXPECT_TRUE(reports().empty());
}

TEST_F(ResolveTest, TimesAtTheEndsOf64BitsWrap) {
  const auto e =
      resolved("001 AAAA 0 0 0 0 0\n001 900 0 -9223372036854775808 9223372036854775807 0 0\n",
               "001 AAAA 0 9223372036854775807 0 -9223372036854775808 9223372036854775807\n");
  // -2^63 less -2^63 is 0, and 2^63 - 1 is added.
  EXPECT_EQ(e[1]->source_in, INT64_MAX);
  EXPECT_EQ(e[1]->source_out, INT64_MAX - 1);
}

}  // namespace
