// Audio decision lists through the program: the options, and what is told.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/generic_edl_entry.h"
#include "native/generic_edl_file.h"
#include "tests/cli/lists.h"
#include "tests/cli/program_run.h"
#include "tests/support/temp_folder.h"

namespace {

using support::read_file;
using support::run_edlconv;
using support::RunResult;
using support::TempFolder;
using support::with_rates;
using support::write_file;
using testing::HasSubstr;
using testing::Not;

// Two edits of one track with a dissolve of 12 frames, at 25 frames.
constexpr const char* dissolve_list =
    "TITLE: T\n"
    "001  TAPE01  A  C        01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n"
    "002  TAPE01  A  C        01:00:10:00 01:00:10:00 10:00:10:00 10:00:10:00\n"
    "002  TAPE02  A  D    012 02:00:00:00 02:00:10:00 10:00:10:00 10:00:20:00\n";

struct Adl : testing::Test {
  Adl() { write_file(in, support::silent_list); }

  // Converts `in` with these options besides the rates; the list that was written.
  std::string written(std::vector<std::string> options) {
    std::vector<std::string> arguments = {"convert", in, out};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const RunResult run = run_edlconv(with_rates(arguments));
    EXPECT_EQ(run.code, 0) << run.err;
    told = run.err;
    return read_file(out);
  }

  TempFolder folder;
  std::string in = folder.file("in.edl");
  std::string out = folder.file("out.adl");
  std::string told;
};

TEST_F(Adl, SourcesOfLineListsAreNamedAfterTheirReels) {
  const std::string list = written({});
  EXPECT_THAT(list, HasSubstr("            (F) \"URL:file://localhost/TAPE01.wav\"\n"
                              "            _  23:59:59.00/0000  _  \"TAPE01\"  N\n"));
  EXPECT_THAT(list, HasSubstr("            (Cut) I 0001  1  1  01.00.00.00/0000\n"
                              "                  10.00.00.00/0000  10.00.10.00/0000  R\n"));
  EXPECT_EQ(told,
            "edlconv: hint: 1 edit names no audio file; sources are written as audio files with "
            "the names of clips and reels\n");
}

TEST_F(Adl, ListsOfOtherNamesGetTheExtension) {
  const std::string other = folder.file("list.EDL");
  const RunResult run = run_edlconv(with_rates({"convert", "--to", "adl", in, other}));
  EXPECT_EQ(run.code, 0);
  EXPECT_THAT(run.err, HasSubstr("hint: the list is written as " + folder.file("list.adl")));
  EXPECT_FALSE(support::file_exists(other));
  EXPECT_THAT(read_file(folder.file("list.adl")), HasSubstr("(SEQ_TITLE)        \"list\""));
}

TEST_F(Adl, KindOfSources) {
  EXPECT_THAT(written({"--aiff"}), HasSubstr("/TAPE01.aif\""));
  EXPECT_THAT(written({"--sound-designer"}), HasSubstr("/TAPE01.sd2\""));
  EXPECT_THAT(written({"--sound-designer", "--aiff"}), HasSubstr("/TAPE01.aif\""));
  EXPECT_THAT(written({"--interchange"}), HasSubstr("/TAPE01.wav\""));
}

TEST_F(Adl, ProjectTitle) {
  EXPECT_THAT(written({}), HasSubstr("(PROJ_TITLE)       \"\"\n"));
  EXPECT_THAT(written({"--project-title", "A Film"}), HasSubstr("(PROJ_TITLE)       \"A Film\"\n"));
}

TEST_F(Adl, CrossfadeLength) {
  EXPECT_THAT(written({}), HasSubstr("(SYS_XFADE_LEN)    0\n"));
  EXPECT_THAT(written({"--crossfade-length", "480"}), HasSubstr("(SYS_XFADE_LEN)    480\n"));
}

TEST_F(Adl, ButtSplices) {
  write_file(in, dissolve_list);
  const std::string whole = written({});
  // 12 frames are 23040 samples, half of them on each side of the cut.
  EXPECT_THAT(whole, HasSubstr("10.00.00.00/0000  10.00.10.12/0000  R\n"));
  EXPECT_THAT(whole, HasSubstr("(Outfade) 00.00.00.12/0000"));
  const std::string longer = written({"--butt-splices", "--crossfade-length", "23039"});
  EXPECT_THAT(longer, HasSubstr("(Outfade) 00.00.00.12/0000"));
  const std::string spliced = written({"--butt-splices", "--crossfade-length", "23040"});
  EXPECT_THAT(spliced, Not(HasSubstr("00.00.00.12/0000")));
  EXPECT_THAT(spliced, HasSubstr("10.00.00.00/0000  10.00.10.06/0000  R\n"));
  EXPECT_THAT(spliced, HasSubstr("10.00.10.06/0000  10.00.20.00/0000  R\n"));
}

TEST_F(Adl, DropFrameToTheLetterIsTold) {
  write_file(in,
             "TITLE: T\n"
             "001  TAPE01  A  C  00:02:00:02 00:10:00:00 10:00:00:00 10:07:59:28\n");
  const auto run = [this](const std::string& how) {
    return run_edlconv({"convert", "--sample-rate", "48000", "--frame-rate", "29.97drop",
                        "--correction", "adl_drop_frame=" + how, in, out});
  };
  const RunResult on = run("on");
  EXPECT_EQ(on.code, 0);
  EXPECT_THAT(on.err, Not(HasSubstr("early")));
  EXPECT_THAT(read_file(out), HasSubstr("(Cut) I 0001  1  1  00:02:00,02/0000\n"));
  const RunResult off = run("off");
  EXPECT_EQ(off.code, 0);
  EXPECT_THAT(off.err,
              HasSubstr("warning: " + out + " is written, but 1 time of it reads back early"));
  EXPECT_THAT(read_file(out), HasSubstr("(Cut) I 0001  1  1  00:02:00,00/0000\n"));
}

// A list whose one source is of a kind that has no place.
void write_odd_source(const std::string& path) {
  CGenericEDLFile list;
  EDL_DETAILS details;
  details.sample_rate_index = 2;
  details.frame_rate = 1;
  list.set_edl_details(&details);
  auto* const entry = new CGenericEdlEntry(&list);
  list.get_generic_entry_list()->AddTail(entry);
  entry->dest_out = entry->source_out = 48000;
  entry->set_no_streams(1);
  entry->set_stream(0, 0);
  entry->no_channels = 1;
  entry->source_index = 14;
  entry->set_clip_name(u"odd");
  entry->set_file_path(u"//C:/audio/odd");
  ASSERT_EQ(list.export_edl(text_from_utf8(path).c_str(), 0), result::done);
}

TEST_F(Adl, SourcesThatHaveNoPlace) {
  const std::string chunked = folder.file("in.chk");
  write_odd_source(chunked);
  write_file(out, "before");
  RunResult run = run_edlconv({"convert", chunked, out});
  EXPECT_EQ(run.code, 3);
  EXPECT_EQ(run.err,
            "edlconv: a source of the list is of a kind that AES31 audio decision list (ADL) "
            "cannot name, so " +
                out + " is not written (--interchange lets every kind pass)\n");
  EXPECT_EQ(read_file(out), "before");
  run = run_edlconv({"convert", "--sound-designer", chunked, out});
  EXPECT_EQ(run.code, 3);
  EXPECT_THAT(run.err, HasSubstr("is no Sound Designer II file, as --sound-designer says"));
  EXPECT_EQ(read_file(out), "before");
  // The file that is kept is the one that would be written.
  run = run_edlconv({"convert", "--to", "adl", chunked, folder.file("out.edl")});
  EXPECT_EQ(run.code, 3);
  EXPECT_EQ(read_file(out), "before");
  run = run_edlconv({"convert", "--interchange", chunked, out});
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(read_file(out), HasSubstr("URL:file://localhost/C:/audio/odd.wav"));
}

TEST_F(Adl, AListComesBackAsItIs) {
  write_file(in, dissolve_list);
  const std::string first = written({"--project-title", "A Film"});
  const std::string again = folder.file("again.adl");
  const RunResult run = run_edlconv({"convert", "--project-title", "A Film", out, again});
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.err, "");
  std::string second = read_file(again);
  const std::string events = "    <SOURCE_INDEX>";
  ASSERT_NE(second.find(events), std::string::npos);
  EXPECT_EQ(second.substr(second.find(events)), first.substr(first.find(events)));
}

TEST_F(Adl, RatesComeFromTheList) {
  written({});
  const RunResult run = run_edlconv({"inspect", out});
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, HasSubstr("48000 Hz, 25 frames a second"));
}

TEST_F(Adl, FadesThatAListLeavesOut) {
  write_file(out,
             "<ADL> <VERSION> </VERSION> <PROJECT> </PROJECT>\n"
             "<SEQUENCE> (SEQ_DEST_START) 00.00.00.00/0000 </SEQUENCE>\n"
             "<SOURCE_INDEX> (Index) 1 (F) URL:file://localhost/a.wav _ </SOURCE_INDEX>\n"
             "<EVENT_LIST> (Entry) 1 (Cut) I 1 1 1 00.00.01.00/0000 00.00.00.00/0000 "
             "00.00.01.00/0000 R </EVENT_LIST> </ADL>\n");
  const std::string again = folder.file("again.adl");
  const RunResult run = run_edlconv({"convert", "--crossfade-length", "1920", "--infade-curve",
                                     "33", "--outfade-curve", "34", out, again});
  EXPECT_EQ(run.code, 0) << run.err;
  const std::string list = read_file(again);
  EXPECT_THAT(list, HasSubstr("(Infade) 00.00.00.01/0000  CURVE  -3.20  -1.50  -0.60\n"));
  EXPECT_THAT(list, HasSubstr("(Outfade) 00.00.00.01/0000  CURVE  -0.6  -1.6  -3.4\n"));
}

TEST_F(Adl, CrossfadePolicy) {
  write_file(out,
             "<ADL> <VERSION> </VERSION> <PROJECT> </PROJECT>\n"
             "<SYSTEM> (SYS_XFADE_LEN) 960 </SYSTEM>\n"
             "<SEQUENCE> (SEQ_DEST_START) 00.00.00.00/0000 </SEQUENCE> </ADL>\n");
  const std::string again = folder.file("again.adl");
  const auto length = [&](const std::string& policy) {
    run_edlconv({"convert", "--crossfade-length", "480", "--crossfade-policy", policy, out, again});
    const std::string list = read_file(again);
    const std::size_t at = list.find("(SYS_XFADE_LEN)    ") + 19;
    return list.substr(at, list.find('\n', at) - at);
  };
  EXPECT_EQ(length("adopt"), "960");
  EXPECT_EQ(length("keep"), "480");
  // Nobody sits here to answer Yes.
  EXPECT_EQ(length("ask"), "480");
}

TEST_F(Adl, RefusedListsSendToTheReport) {
  write_file(out, "<ADL>\n<VERSION> </VERSION>\n</ADL>\n");
  const std::string reports = folder.folder("reports");
  const RunResult run = run_edlconv({"inspect", "--report-dir", reports, out});
  EXPECT_EQ(run.code, 2);
  EXPECT_THAT(run.err, HasSubstr("edlconv: report: " + reports + "/aes31importlog.view.htm\n"));
  EXPECT_THAT(run.err, HasSubstr("the report says why"));
}

TEST_F(Adl, EventsThatAreDroppedAreTold) {
  write_file(out,
             "<ADL> <VERSION> </VERSION> <PROJECT> </PROJECT>\n"
             "<SEQUENCE> (SEQ_DEST_START) 00.00.00.00/0000 </SEQUENCE>\n"
             "<EVENT_LIST> (Entry) 1 (Cut) I 1 1 1 00.00.01.00/0000 00.00.00.00/0000 "
             "00.00.01.00/0000 R </EVENT_LIST> </ADL>\n");
  const std::string reports = folder.folder("reports");
  const RunResult run =
      run_edlconv({"convert", "--report-dir", reports, out, folder.file("again.adl")});
  EXPECT_EQ(run.code, 4);
  EXPECT_THAT(run.err, HasSubstr("edlconv: report: "));
  EXPECT_THAT(run.err, HasSubstr("dropped"));
}

TEST_F(Adl, AFullDeviceIsTold) {
  if (!support::file_exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  const RunResult run = run_edlconv(with_rates({"convert", "--to", "adl", in, "/dev/full"}));
  EXPECT_EQ(run.code, 3);
  EXPECT_THAT(run.err, HasSubstr("/dev/full could not be written: No space left on device"));
}

TEST_F(Adl, HelpTellsOfItsOptions) {
  const RunResult run = run_edlconv({"convert", "--help"});
  for (const char* const option :
       {"--crossfade-length N", "--infade-curve N", "--outfade-curve N",
        "--crossfade-policy keep|adopt|ask", "--butt-splices", "--project-title TEXT",
        "--sound-designer", "--interchange", "--aiff"}) {
    EXPECT_THAT(run.out, HasSubstr(option));
  }
}

}  // namespace
