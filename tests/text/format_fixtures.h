// What the tests of single line formats share: files written and read through a
// format object.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/generic_edl_entry.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"
#include "tests/support/golden.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"
#include "text/text_edl.h"

namespace support {

class FormatTest : public testing::Test {
 protected:
  // The file that a format writes of a list.
  template <class Format>
  std::string written(CGenericEdl& root, const std::string& name = "b.edl") {
    Format edl(&root, 0);
    EXPECT_EQ(edl.export_edl(folder_.wide_file(name), 0), 101);
    EXPECT_EQ(edl.output_incomplete(), 0);
    return read_file(folder_.file(name));
  }
  // The same of a list with one edit, without the lines of the head.
  template <class Format>
  std::string written_events(const Edit& edit, int head_lines,
                             const EDL_CONVERSION_SETTINGS& settings = {}) {
    CGenericEdl root;
    root.set_edl_conversion_settings(&settings);
    set_rates(root);
    add_entry(root, edit);
    std::string text = written<Format>(root);
    for (int i = 0; i < head_lines; ++i)
      text.erase(0, text.find('\n') + 1);
    return text;
  }
  // Reads a text into an object; its rates are 48000 Hz and 25 frames unless they
  // were set before.
  result_code read(CGenericEdl& edl, const std::string& text, const std::string& name = "in.edl") {
    write_file(folder_.file(name), text);
    if (edl.sample_rate_index() == 255) set_rates(edl);
    return edl.import_edl(folder_.wide_file(name));
  }
  std::vector<std::string> reports() const { return host_.boxes.report_bodies(); }

  ScriptedHost host_;
  TempFolder folder_;
};

using Texts = std::vector<std::string>;
using Streams = std::vector<int>;

// Four edits: a fade-in, a fade-out on another stream, both on a pair of streams, and
// a plain one.
inline void fill_with_fades(CGenericEdl& root, const std::vector<int>& last_streams) {
  set_rates(root);
  add_entry(root, {.dest_in = 0,
                   .dest_out = 480000,
                   .source_in = 48000,
                   .source_out = 528000,
                   .reel = u"ALPHA",
                   .fade_in = 96000,
                   .event_number = 1});
  add_entry(root, {.dest_in = 480000,
                   .dest_out = 960000,
                   .source_in = 4800000,
                   .source_out = 5280000,
                   .streams = {1},
                   .reel = u"BETA",
                   .fade_out = 23040,
                   .event_number = 2});
  add_entry(root, {.dest_in = 1440000,
                   .dest_out = 1920000,
                   .source_in = 172800000,
                   .source_out = 173280000,
                   .streams = {0, 1},
                   .reel = u"GAMMA",
                   .fade_in = 46080,
                   .fade_out = 119040,
                   .event_number = 3});
  add_entry(root, {.dest_in = 1920000,
                   .dest_out = 2400000,
                   .source_in = 0,
                   .source_out = 480000,
                   .streams = last_streams,
                   .reel = u"DELTA",
                   .event_number = 4});
}

// Whether the times of an entry are those of an edit.
inline testing::AssertionResult has_times(const CGenericEdlEntry& entry, const Edit& edit) {
  if (entry.dest_in == edit.dest_in && entry.dest_out == edit.dest_out &&
      entry.source_in == edit.source_in && entry.source_out == edit.source_out) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure()
         << "dest " << entry.dest_in << "-" << entry.dest_out << " source " << entry.source_in
         << "-" << entry.source_out << ", not dest " << edit.dest_in << "-" << edit.dest_out
         << " source " << edit.source_in << "-" << edit.source_out;
}

// Four times of ten seconds each, as an event line of the CMX family ends.
inline const std::string times_of_x = " 01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00";

}  // namespace support
