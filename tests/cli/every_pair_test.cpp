// One list out of every format into every other, by the program alone: every edit must
// arrive at its place. What else a format keeps is held by tests/formats/walk_all_test.cpp.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "formats/format_table.h"
#include "tests/cli/program_run.h"
#include "tests/embedded/audio_files.h"
#include "tests/support/temp_folder.h"

namespace {

using support::run_edlconv;
using support::RunResult;

constexpr std::int64_t frame = 1920;
constexpr std::int64_t second = 25 * frame;
constexpr std::int64_t start = 10 * 3600 * second;

// Where an edit lies, once for each of its streams.
using Places = std::vector<std::pair<std::int64_t, std::int64_t>>;

struct Edit {
  const char* name;
  int first_stream;
  int streams;
  std::int64_t source_in;
  std::int64_t dest_in;
  std::int64_t length;
  std::int64_t fade;
  float level;
};

// The name stands for the file, the clip and the reel, so that every format has a name by
// which the audio is found.
constexpr Edit edits[] = {
    {"T1", 0, 1, second, start, 5 * second, 0, 1.0F},
    {"T2", 1, 1, 2 * second, start + second, 4 * second, 12 * frame, 0.5F},
    {"T3", 0, 2, second, start + 10 * second, 4 * second, 0, 1.0F},
    {"T1", 0, 1, 6 * second, start + 20 * second, 2 * second, 0, 0.25F},
};

Places expected_places() {
  Places places;
  for (const Edit& edit : edits) {
    for (int i = 0; i < edit.streams; ++i)
      places.emplace_back(edit.dest_in, edit.dest_in + edit.length);
  }
  std::sort(places.begin(), places.end());
  return places;
}

void add_entry(CGenericEdl& root, const Edit& edit) {
  auto* const entry = new CGenericEdlEntry(&root);
  root.get_generic_entry_list()->AddTail(entry);
  const std::u16string name = text_from_utf8(edit.name);
  entry->set_no_streams(edit.streams);
  entry->no_channels = static_cast<std::uint16_t>(edit.streams);
  for (int i = 0; i < edit.streams; ++i)
    entry->set_stream(i, static_cast<unsigned short>(edit.first_stream + i));
  // The native text EDL takes streams from source channels.
  entry->first_channel = static_cast<std::uint16_t>(edit.first_stream);
  entry->set_reel_name(name.c_str());
  entry->set_clip_name(name.c_str());
  entry->set_source_reel_name(name.c_str());
  entry->set_file_path((u"//" + name).c_str());
  entry->source_in = edit.source_in;
  entry->source_out = edit.source_in + edit.length;
  entry->dest_in = edit.dest_in;
  entry->dest_out = edit.dest_in + edit.length;
  entry->fade_in_length = entry->fade_out_length = edit.fade;
  entry->gain_left = entry->gain_right = edit.level;
  // A broadcast WAVE file.
  entry->source_index = 11;
}

void add_fader(CGenericEdl& root) {
  auto* const chunk = new CGenericAutomationChunk;
  root.get_automation_list()->AddTail(chunk);
  chunk->points = new CObList(10);
  chunk->no_points = 1;
  auto* const point = new CGenericAutomationEntry;
  chunk->points->AddTail(point);
  point->time = start + second;
  point->value = 324;
}

void write_rich_list(const std::string& path) {
  CGenericEdl root;
  EDL_DETAILS details;
  details.sample_rate_index = 2;
  details.frame_rate = 1;
  root.set_edl_details(&details);
  for (const Edit& edit : edits)
    add_entry(root, edit);
  add_fader(root);
  const auto file = find_format(format_table(), "chunked")->make(&root, 0, {});
  file->set_edl_details(&details);
  ASSERT_EQ(file->export_edl(text_from_utf8(path).c_str(), 0), result::done);
}

class EveryPair : public testing::Test {
 protected:
  EveryPair() {
    for (const char* const name : {"T1", "T2", "T3"}) {
      const std::vector<std::int32_t> silence(static_cast<std::size_t>(10 * second));
      support::write_file(media_ + "/" + name + ".wav",
                          support::wave_file({48000, 16, {silence, silence}}));
    }
  }

  [[nodiscard]] std::string path(const std::string& stem, const FormatRow& row) const {
    return folder_.file(stem + std::string(row.extensions.front()));
  }
  [[nodiscard]] RunResult convert(const FormatRow& from, const std::string& in, const FormatRow& to,
                                  const std::string& out) const {
    return run_edlconv({"convert", in, out, "--from", std::string(from.name), "--to",
                        std::string(to.name), "--sample-rate", "48000", "--frame-rate", "25",
                        "--media", media_, "--audio-folder", folder_.folder("audio"),
                        // Fades of this format come back as edits of black beside the others.
                        "--lw-multichannel-cuts-only", "1"});
  }
  // Where the edits of a list lie; empty when it cannot be read.
  [[nodiscard]] static Places places_of(const FormatRow& row, const std::string& file) {
    const RunResult run = run_edlconv({"inspect", file, "--json", "--from", std::string(row.name),
                                       "--sample-rate", "48000", "--frame-rate", "25"});
    EXPECT_TRUE(run.code == 0 || run.code == 4) << run.err;
    const auto json = nlohmann::json::parse(run.out, nullptr, false);
    Places places;
    if (json.is_discarded()) return places;
    for (const auto& entry : json["entries"]) {
      for (std::size_t i = 0; i < entry["streams"].size(); ++i)
        places.emplace_back(entry["dest_in"], entry["dest_out"]);
    }
    std::sort(places.begin(), places.end());
    return places;
  }

  support::TempFolder folder_;
  std::string media_ = folder_.folder("media");
};

TEST_F(EveryPair, KeepsEveryEditAtItsPlace) {
  const FormatRow& chunked = *find_format(format_table(), "chunked");
  const std::string rich = path("rich", chunked);
  write_rich_list(rich);
  for (const FormatRow& from : format_table()) {
    const std::string in = path("in_" + std::string(from.name), from);
    ASSERT_NE(convert(chunked, rich, from, in).code, 3) << from.name;
    ASSERT_EQ(places_of(from, in), expected_places()) << from.name;
    for (const FormatRow& to : format_table()) {
      const std::string both = std::string(from.name) + " to " + std::string(to.name);
      SCOPED_TRACE(both);
      const std::string out = path("out_" + std::string(from.name), to);
      const RunResult run = convert(from, in, to, out);
      EXPECT_TRUE(run.code == 0 || run.code == 4) << run.code << "\n" << run.err;
      EXPECT_EQ(places_of(to, out), expected_places());
    }
  }
}

}  // namespace
