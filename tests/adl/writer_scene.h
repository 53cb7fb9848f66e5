// A list to be written as an audio decision list, and the text that comes of it.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "adl/aes31_file.h"
#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace adl_test {

inline void set_rates(CGenericEdl& edl, std::uint8_t sample_rate_index, std::uint8_t frame_rate) {
  EDL_DETAILS details;
  details.sample_rate_index = sample_rate_index;
  details.frame_rate = frame_rate;
  edl.set_edl_details(&details);
}

struct Flags {
  int sd2 = 0;
  int interchange = 0;
  int aiff = 0;
};

// An edit of one channel of a broadcast WAVE file.
struct Edit {
  std::int64_t dest_in = 0;
  std::int64_t dest_out = 48000;
  std::int64_t source_in = 0;
  std::vector<std::uint16_t> streams = {0};
  std::u16string path = u"//C:/audio/take 1";
  std::u16string clip = u"take 1";
  std::uint16_t type = 11;
};

class WriterScene {
 public:
  WriterScene() {
    host.app.default_crossfade_length = 200;
    host.app.default_infade_curve = 1;
    host.app.default_outfade_curve = 2;
    set_rates(root, 2, 1);
  }

  CGenericEdlEntry& add(const Edit& edit) {
    auto* const entry = new CGenericEdlEntry(&root);
    root.get_generic_entry_list()->AddTail(entry);
    entry->dest_in = edit.dest_in;
    entry->dest_out = edit.dest_out;
    entry->source_in = edit.source_in;
    entry->source_out = edit.source_in + edit.dest_out - edit.dest_in;
    entry->set_no_streams(static_cast<int>(edit.streams.size()));
    for (std::size_t i = 0; i < edit.streams.size(); ++i)
      entry->set_stream(static_cast<int>(i), edit.streams[i]);
    entry->no_channels = 2;
    entry->set_file_path(edit.path.c_str());
    entry->set_clip_name(edit.clip.c_str());
    entry->source_index = edit.type;
    return *entry;
  }

  void add_automation(std::uint16_t type, std::uint16_t channel,
                      const std::vector<std::pair<std::int64_t, std::int64_t>>& points) {
    auto* const chunk = new CGenericAutomationChunk;
    root.get_automation_list()->AddTail(chunk);
    chunk->type = type;
    chunk->channel = channel;
    chunk->no_points = static_cast<std::uint32_t>(points.size());
    chunk->points = new CObList(10);
    for (const auto& [time, value] : points) {
      auto* const point = new CGenericAutomationEntry;
      chunk->points->AddTail(point);
      point->time = time;
      point->value = value;
    }
  }

  result_code export_to(const std::string& name, const Flags& flags = {}) {
    CAES31File file(&root, 0, flags.sd2, flags.interchange, flags.aiff);
    return file.export_edl(folder.wide_file(name), 0);
  }

  std::string written(const Flags& flags = {}, const std::string& name = "film.adl") {
    EXPECT_EQ(export_to(name, flags), result::done);
    return support::read_file(folder.file(name));
  }

  // The lines of a written list that begin, blanks aside, with `head`, without it.
  static std::vector<std::string> lines(const std::string& text, const std::string& head) {
    std::vector<std::string> found;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = text.find('\n', at);
      const std::string line = text.substr(at, end - at);
      const std::size_t start = line.find_first_not_of(' ');
      if (start != std::string::npos && line.compare(start, head.size(), head) == 0)
        found.push_back(line.substr(start + head.size()));
      at = end + 1;
    }
    return found;
  }
  // The one such line.
  static std::string line(const std::string& text, const std::string& head) {
    const std::vector<std::string> found = lines(text, head);
    EXPECT_EQ(found.size(), 1U) << head;
    return found.empty() ? "" : found.front();
  }
  // What stands between two texts, the first of each.
  static std::string between(const std::string& text, const std::string& from,
                             const std::string& to) {
    const std::size_t start = text.find(from);
    const std::size_t end = text.find(to, start);
    EXPECT_NE(start, std::string::npos) << from;
    EXPECT_NE(end, std::string::npos) << to;
    if (start == std::string::npos || end == std::string::npos) return {};
    return text.substr(start + from.size(), end - start - from.size());
  }

  support::ScriptedHost host;
  support::TempFolder folder;
  CGenericEdl root;
};

// The list of golden/adl/demo.adl.
void fill_demo(WriterScene& scene);

}  // namespace adl_test
