// Whole lists in files, and damaged ones.
#include <gtest/gtest.h>

#include "host/rates.h"
#include "tests/support/golden.h"
#include "tests/text/text_fixtures.h"
#include "text/cmx_edl.h"

namespace {

using support::entries_of;
using support::utf8;
using support::videos_of;

template <class Entry>
std::string times_of(const Entry& entry) {
  const auto text = [&entry](std::int64_t samples_in) {
    wide_char out[12];
    entry.samples_to_timecode(samples_in, out);
    return utf8(std::u16string_view(out));
  };
  return " source " + text(entry.source_in) + "-" + text(entry.source_out) + " dest " +
         text(entry.dest_in) + "-" + text(entry.dest_out) + "\n";
}

std::string dump_of(const CGenericEdlEntry& entry) {
  std::string line =
      std::to_string(entry.event_number) + " " + utf8(support::reel_of(entry)) + " streams";
  for (const int stream : support::streams_of(entry))
    line += " " + std::to_string(stream);
  line += " channel " + std::to_string(entry.first_channel);
  line += entry.transition_type == 50 ? " cut" : entry.transition_type == 51 ? " dissolve" : " ?";
  line += " in " + std::to_string(entry.fade_in_length);
  line += " out " + std::to_string(entry.fade_out_length);
  return line + times_of(entry);
}

std::string dump_of(const CGenericEdlVideoEntry& entry) {
  wide_char reel[13];
  entry.get_reel_name(reel, 13);
  return "video " + std::to_string(entry.event_number) + " " + utf8(std::u16string_view(reel)) +
         times_of(entry);
}

class CmxSamplesTest : public support::TextTest {
 protected:
  // All that an import of a sample gives, a line each. A rate of 255 is left to the
  // file.
  std::string imported(const std::string& name, std::uint8_t frame_rate = frame_rate_25) {
    CCMXEdl edl(4, nullptr, 0);
    support::set_rates(edl, 2, frame_rate);
    const result_code code =
        edl.import_edl(text_from_utf8(support::test_data("cmx/" + name)).c_str());
    std::string out = "result " + std::to_string(code) + ", frame rate " +
                      std::to_string(edl.frame_rate()) + ", skipped " +
                      std::to_string(edl.skipped_count()) + "\n";
    for (const CGenericEdlEntry* entry : entries_of(edl))
      out += dump_of(*entry);
    for (const CGenericEdlVideoEntry* entry : videos_of(edl))
      out += dump_of(*entry);
    for (const std::string& body : host.boxes.report_bodies())
      out += "box " + body + "\n";
    return out;
  }
};

TEST_F(CmxSamplesTest, ADialogueList) {
  EXPECT_TRUE(support::matches_golden("cmx/dialogue.txt", imported("dialogue.edl")));
}

TEST_F(CmxSamplesTest, ADropFrameListWithReturnsForLineEnds) {
  EXPECT_TRUE(
      support::matches_golden("cmx/drop_frame_mac.txt", imported("drop_frame_mac.edl", 255)));
}

const std::string first = "result 100, frame rate 1, skipped 0\n";
const std::string of_another_format = "result 4, frame rate 1, skipped 0\n";
const std::string whole =
    " TAPE streams 0 channel 0 cut in 0 out 0 source 01:00:00:00-01:00:10:00 "
    "dest 10:00:00:00-10:00:10:00\n";

TEST_F(CmxSamplesTest, NoEvents) {
  EXPECT_EQ(imported("bad/no_events.edl"), of_another_format);
  EXPECT_EQ(imported("bad/not_a_list.edl"), of_another_format);
}

TEST_F(CmxSamplesTest, CutShort) {
  // "01:00" is no time; it and the two missing ones read as 0. The event starts at 0.
  EXPECT_EQ(imported("bad/cut_short.edl"),
            first +
                "2 TAPE streams 0 channel 0 cut in 0 out 0 source 01:00:10:00-00:00:00:00 "
                "dest 00:00:00:00-00:00:00:00\n1" +
                whole);
}

TEST_F(CmxSamplesTest, NulBytes) {
  // In the second event the NUL parts the reel: "PE" stands in the channel column.
  EXPECT_EQ(imported("bad/nul_bytes.edl"), first + "1" + whole);
}

TEST_F(CmxSamplesTest, EndOfFileBytes) {
  EXPECT_EQ(imported("bad/end_of_file_bytes.edl"), first + "1" + whole + "2" + whole);
}

TEST_F(CmxSamplesTest, LongLines) {
  EXPECT_EQ(imported("bad/long_lines.edl"), first + "1" + whole + "4" + whole);
}

TEST_F(CmxSamplesTest, HugeNumbers) {
  // Event 1: 999999999 hours, out of the range that a text can show, and ten seconds
  // apart at that. The number of the next keeps the low 16 bits of 2147483647, and
  // its dissolve is halved to fit the ten seconds, that of event 3 to fit a frame.
  EXPECT_EQ(imported("bad/huge_numbers.edl"),
            first +
                "65535 TAPE streams 0 channel 0 dissolve in 240000 out 240000 "
                "source 01:00:00:00-01:00:10:00 dest 10:00:00:00-10:00:10:00\n"
                "3 TAPE streams 0 channel 0 dissolve in 960 out 960 "
                "source 00:00:00:00-00:00:00:01 dest 10:00:00:00-10:00:00:01\n"
                "1 TAPE streams 0 channel 0 cut in 0 out 0 "
                "source 01:00:00:00-01:00:10:00 dest 23:59:59:00-23:59:59:00\n");
}

TEST_F(CmxSamplesTest, SignsInFront) {
  EXPECT_EQ(imported("bad/signs_in_front.edl"), first + "1" + whole + "2" + whole + "3" + whole);
}

TEST_F(CmxSamplesTest, RefusedLines) {
  // Event 6 has no times: it starts at 0, in front of event 3.
  EXPECT_EQ(imported("bad/refused_lines.edl"),
            "result 100, frame rate 1, skipped 1\n"
            "6 TAPE streams 0 channel 0 cut in 0 out 0 source 00:00:00:00-00:00:00:00 "
            "dest 00:00:00:00-00:00:00:00\n"
            "3 TAPE streams 65535 channel 0 cut in 0 out 0 source 01:00:00:00-01:00:10:00 "
            "dest 10:00:00:00-10:00:10:00\n"
            "box [22253] [22258] 1\nbox [22253] [22258] 2\n");
}

}  // namespace
