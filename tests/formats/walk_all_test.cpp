// Every row of the format table, out and back: a rich list goes out through the
// format and comes in again, and what the form carries must be as it was. What a form
// loses is told here, row by row, and must really be lost: a loss that is none is a
// fault of this table.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "core/generic_locator_entry.h"
#include "core/generic_pq_entry.h"
#include "formats/format_table.h"
#include "tests/formats/toy/tally_format.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace {

using support::utf8;

enum Lost : unsigned {
  lost_nothing = 0,
  // Edits with two streams are refused.
  lost_stereo = 1U << 0U,
  // Times are cut to whole frames.
  lost_samples = 1U << 1U,
  lost_fades = 1U << 2U,
  lost_curves = 1U << 3U,
  lost_gains = 1U << 4U,
  lost_clip_names = 1U << 5U,
  lost_source_reel_names = 1U << 6U,
  lost_paths = 1U << 7U,
  lost_event_numbers = 1U << 8U,
  lost_video = 1U << 9U,
  lost_locators = 1U << 10U,
  lost_automation = 1U << 11U,
  lost_pq = 1U << 12U,
  // Reels are cut.
  lost_reels = 1U << 13U,
  // Streams are taken from the channels of the source.
  lost_streams = 1U << 14U,
  // An edit with two streams comes back as two edits with one.
  splits_stereo = 1U << 15U,
  // A picture of black that the list did not hold comes back.
  adds_black_picture = 1U << 16U,
  // Locators come back but for all that mark no range.
  keeps_range_alone = 1U << 17U,
};

struct WalkCase {
  std::string_view row;
  unsigned lost;
  // Of the export and the import; null for those of a new list.
  void (*set)(EDL_CONVERSION_SETTINGS& settings) = nullptr;
};

// Fades of this list come back with edits of black beside them, so they are left out.
void without_fades(EDL_CONVERSION_SETTINGS& settings) {
  settings.lw_multichannel_cuts_only = 1;
}

// What every line list of events and time codes leaves behind.
constexpr unsigned lost_by_line_lists = lost_samples | lost_curves | lost_gains | lost_clip_names |
                                        lost_source_reel_names | lost_paths | lost_event_numbers |
                                        lost_video | lost_locators | lost_automation | lost_pq;

// A new row of the format table gets its line here.
constexpr WalkCase walk_cases[] = {
    {"cmx340", lost_by_line_lists},
    {"cmx3600", lost_by_line_lists},
    {"sony9000", lost_by_line_lists},
    {"grassvalley", lost_by_line_lists},
    {"lightworks",
     (lost_by_line_lists & ~lost_samples) | lost_fades | splits_stereo | adds_black_picture},
    {"lightworks-multichannel",
     (lost_by_line_lists & ~lost_event_numbers) | lost_fades | lost_reels, without_fades},
    {"native-text", (lost_by_line_lists & ~lost_event_numbers) | lost_fades | lost_streams},
    // The name of a stereo edit runs on into the bytes behind it, and paths come back
    // from the eight characters of the source name.
    {"edl2", lost_event_numbers | lost_reels | lost_source_reel_names | lost_paths | lost_video |
                 lost_locators | lost_automation},
    {"chunked", lost_event_numbers | lost_video},
    // Levels have two decimals of a dB.
    {"adl", lost_event_numbers | lost_reels | lost_gains | lost_video | lost_locators | lost_pq},
    // Sources are named after the copies of their audio, entries after their clips.
    {"aaf", lost_event_numbers | lost_reels | lost_curves | lost_clip_names |
                lost_source_reel_names | lost_paths | lost_video | lost_pq | splits_stereo |
                keeps_range_alone},
    {"tally", (lost_by_line_lists & ~lost_event_numbers) | lost_stereo | lost_fades},
};

// 48000 Hz and 25 frames a second.
constexpr std::int64_t frame = 1920;
constexpr std::int64_t second = 25 * frame;
constexpr std::int64_t hour = 3600 * second;

// What is compared of an edit.
struct Edit {
  std::uint16_t event_number;
  std::vector<std::uint16_t> streams;
  std::string reel;
  std::int64_t source_in;
  std::int64_t source_out;
  std::int64_t dest_in;
  std::int64_t dest_out;
  std::int64_t fade_in;
  std::int64_t fade_out;
  std::uint16_t curve_in;
  std::uint16_t curve_out;
  float gain;
  std::string clip_name;
  std::string source_reel_name;
  std::string path;
};

// In the order of their destinations, with room between edits of one stream, so that
// no import takes two of them for a crossfade.
std::vector<Edit> rich_edits() {
  const std::int64_t start = 10 * hour;
  std::vector<Edit> edits;
  edits.push_back({11,
                   {0},
                   "TAPE01",
                   1 * hour,
                   1 * hour + 10 * second,
                   start,
                   start + 10 * second,
                   0,
                   8 * frame,
                   0,
                   0,
                   1.0F,
                   "KICK",
                   "KICK DRUM",
                   "//C:/audio/KICK"});
  edits.push_back({12,
                   {1},
                   "TAPE02",
                   2 * hour,
                   2 * hour + 5 * second,
                   start + second,
                   start + 6 * second,
                   24 * frame,
                   0,
                   3,
                   4,
                   0.5F,
                   "SNARE",
                   "SNARE TOP",
                   "//C:/audio/SNARE"});
  edits.push_back({13,
                   {0, 1},
                   "TAPE03",
                   3 * hour,
                   3 * hour + 4 * second,
                   start + 20 * second,
                   start + 24 * second,
                   12 * frame,
                   6 * frame,
                   5,
                   6,
                   0.25F,
                   "HALL",
                   "HALL WIDE",
                   "//C:/audio/HALL"});
  edits.push_back({14,
                   {1},
                   "TAPE04",
                   hour + 100,
                   hour + 100 + 2 * second,
                   start + 30 * second + 100,
                   start + 32 * second + 100,
                   0,
                   0,
                   0,
                   0,
                   1.0F,
                   "VOICE",
                   "VOICE OVER",
                   "//C:/audio/VOICE"});
  return edits;
}

void add_edit(CGenericEdl& edl, const Edit& edit) {
  auto* const entry = new CGenericEdlEntry(&edl);
  edl.get_generic_entry_list()->AddTail(entry);
  entry->event_number = edit.event_number;
  entry->set_no_streams(static_cast<int>(edit.streams.size()));
  entry->no_channels = static_cast<std::uint16_t>(edit.streams.size());
  for (std::size_t i = 0; i < edit.streams.size(); ++i)
    entry->set_stream(static_cast<int>(i), edit.streams[i]);
  entry->first_channel = 0;
  entry->set_reel_name(text_from_utf8(edit.reel).c_str());
  entry->source_in = edit.source_in;
  entry->source_out = edit.source_out;
  entry->dest_in = edit.dest_in;
  entry->dest_out = edit.dest_out;
  entry->fade_in_length = edit.fade_in;
  entry->fade_out_length = edit.fade_out;
  entry->set_fade_in_curve(edit.curve_in);
  entry->set_fade_out_curve(edit.curve_out);
  entry->gain_left = entry->gain_right = edit.gain;
  entry->set_clip_name(text_from_utf8(edit.clip_name).c_str());
  entry->set_source_reel_name(text_from_utf8(edit.source_reel_name).c_str());
  entry->set_file_path(text_from_utf8(edit.path).c_str());
  // A broadcast WAVE file.
  entry->source_index = 11;
}

void add_side_records(CGenericEdl& edl) {
  auto* const video = new CGenericEdlVideoEntry(&edl);
  edl.get_video_list()->AddTail(video);
  video->set_reel_name(u"FILM");
  video->dest_in = 10 * hour;
  video->dest_out = 11 * hour;
  auto* const locator = new CGenericLocatorEntry;
  edl.get_locator_list()->AddTail(locator);
  locator->time = 10 * hour + second;
  locator->name = CString(u"SCENE 2");
  auto* const chunk = new CGenericAutomationChunk;
  edl.get_automation_list()->AddTail(chunk);
  chunk->points = new CObList(10);
  chunk->no_points = 1;
  auto* const point = new CGenericAutomationEntry;
  chunk->points->AddTail(point);
  point->time = 10 * hour;
  point->value = 384;
  auto* const index = new CGenericPQEntry;
  edl.get_pq_list()->AddTail(index);
  index->position_a = index->position_b = 10 * hour;
  index->track_number = 1;
}

std::vector<Edit> edits_of(const CGenericEdl& edl) {
  std::vector<Edit> edits;
  const CObList* const list = edl.get_generic_entry_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    const auto* const entry = static_cast<CGenericEdlEntry*>(list->GetNext(at));
    Edit edit{};
    edit.event_number = entry->event_number;
    for (int i = 0; i < entry->no_streams; ++i)
      edit.streams.push_back(entry->get_stream(i));
    wide_char reel[13];
    entry->get_reel_name(reel, 13);
    edit.reel = utf8(trimmed(field_text(reel)));
    edit.source_in = entry->source_in;
    edit.source_out = entry->source_out;
    edit.dest_in = entry->dest_in;
    edit.dest_out = entry->dest_out;
    edit.fade_in = entry->fade_in_length;
    edit.fade_out = entry->fade_out_length;
    edit.curve_in = entry->fade_in_curve;
    edit.curve_out = entry->fade_out_curve;
    edit.gain = entry->gain_left;
    edit.clip_name = utf8(trimmed(field_text(entry->clip_name)));
    edit.source_reel_name = utf8(trimmed(field_text(entry->source_reel_name)));
    edit.path = utf8(trimmed(field_text(entry->file_path)));
    edits.push_back(edit);
  }
  return edits;
}

// The list as it must come back.
std::vector<Edit> expected_edits(unsigned lost) {
  std::vector<Edit> edits;
  for (Edit edit : rich_edits()) {
    if ((lost & lost_stereo) != 0 && edit.streams.size() > 1) continue;
    if ((lost & lost_samples) != 0) {
      for (std::int64_t* const time :
           {&edit.source_in, &edit.source_out, &edit.dest_in, &edit.dest_out})
        *time -= *time % frame;
    }
    if ((lost & splits_stereo) != 0 && edit.streams.size() > 1) {
      for (const std::uint16_t stream : edit.streams) {
        edits.push_back(edit);
        edits.back().streams = {stream};
      }
      continue;
    }
    edits.push_back(edit);
  }
  return edits;
}

// A field of all edits: it comes back, or it is told as lost and at least one edit
// has something else in it.
template <class Field>
void compare_field(const char* name, bool is_lost, const std::vector<Edit>& actual,
                   const std::vector<Edit>& expected, Field field) {
  SCOPED_TRACE(name);
  bool any_differs = false;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (is_lost) {
      any_differs = any_differs || field(actual[i]) != field(expected[i]);
    } else {
      EXPECT_EQ(field(actual[i]), field(expected[i])) << "edit " << expected[i].event_number;
    }
  }
  EXPECT_EQ(any_differs, is_lost) << "told as lost, and yet it comes back";
}

void compare_edits(const std::vector<Edit>& actual, unsigned lost) {
  const std::vector<Edit> expected = expected_edits(lost);
  ASSERT_EQ(actual.size(), expected.size());
  const auto compare = [&](const char* name, unsigned loss, auto field) {
    compare_field(name, (lost & loss) != 0, actual, expected, field);
  };
  compare("streams", lost_streams, [](const Edit& e) { return e.streams; });
  compare("reel", lost_reels, [](const Edit& e) { return e.reel; });
  compare("source in", 0, [](const Edit& e) { return e.source_in; });
  compare("source out", 0, [](const Edit& e) { return e.source_out; });
  compare("destination in", 0, [](const Edit& e) { return e.dest_in; });
  compare("destination out", 0, [](const Edit& e) { return e.dest_out; });
  compare("fade-in", lost_fades, [](const Edit& e) { return e.fade_in; });
  compare("fade-out", lost_fades, [](const Edit& e) { return e.fade_out; });
  compare("fade-in curve", lost_curves, [](const Edit& e) { return e.curve_in; });
  compare("fade-out curve", lost_curves, [](const Edit& e) { return e.curve_out; });
  compare("gain", lost_gains, [](const Edit& e) { return e.gain; });
  compare("clip name", lost_clip_names, [](const Edit& e) { return e.clip_name; });
  compare("source reel name", lost_source_reel_names,
          [](const Edit& e) { return e.source_reel_name; });
  compare("path", lost_paths, [](const Edit& e) { return e.path; });
  compare("event number", lost_event_numbers, [](const Edit& e) { return e.event_number; });
}

void set_rates(CGenericEdl& edl) {
  EDL_DETAILS details;
  details.sample_rate_index = 2;
  details.frame_rate = 1;
  edl.set_edl_details(&details);
}

// The audio of an edit list, for a row that wants it, and the host of such a row.
class Audio {
 public:
  Audio(support::ScriptedHost& host, const support::TempFolder& folder) {
    host.libraries.redirected["libAAFCOAPI.so"] = EDL_AAF_LIBRARY;
    host.browser.report_folder = folder.folder("reports");
    host.app.imported_audio_folder = host.places.add(folder.folder("audio"));
    host.app.aaf_embed_audio = 1;
    host.app.aaf_export_fixed_gain = 1;
    host.app.aaf_export_gain_automation = 1;
    host.app.aaf_export_pan_automation = 1;
    host.app.curve_count = 1;
    host.app.set_straight_curve(0);
    host.fixes.set_all();
  }

  void give_to(CGenericEdl& edl) {
    const CObList& list = *edl.get_generic_entry_list();
    for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
      auto* const entry = static_cast<CGenericEdlEntry*>(list.GetNext(at));
      const std::vector<std::vector<std::int32_t>> channels(entry->no_channels, {1, 2, 3});
      contents_.push_back(std::make_unique<support::FakeAudCnt>(48000U, 24U, channels));
      entry->audio_content = contents_.back().get();
    }
  }

 private:
  std::vector<std::unique_ptr<support::FakeAudCnt>> contents_;
};

void walk(const FormatRow& row, const WalkCase& one) {
  SCOPED_TRACE(row.name);
  const unsigned lost = one.lost;
  EDL_CONVERSION_SETTINGS settings;
  if (one.set != nullptr) one.set(settings);
  support::ScriptedHost host;
  const support::TempFolder folder;
  Audio audio(host, folder);
  const std::string path = folder.file("film" + std::string(row.extensions.front()));
  const std::u16string wide = text_from_utf8(path);

  CGenericEdl root;
  root.set_edl_conversion_settings(&settings);
  set_rates(root);
  for (const Edit& edit : rich_edits())
    add_edit(root, edit);
  add_side_records(root);
  if (row.wants_audio) audio.give_to(root);
  const auto exporter = row.make(&root, 0, {});
  set_rates(*exporter);
  ASSERT_EQ(exporter->export_edl(wide.c_str(), 0), result::done);
  EXPECT_EQ(exporter->output_incomplete(), 0);
  EXPECT_EQ(host.boxes.shown.size(), (lost & lost_stereo) != 0 ? 1U : 0U);

  const auto edl = row.make(nullptr, 0, {});
  edl->set_edl_conversion_settings(&settings);
  set_rates(*edl);
  ASSERT_EQ(edl->import_edl(text_from_utf8(row.outputs(path).front()).c_str()),
            result::import_complete);
  const TimeBase base = edl->time_base();
  EXPECT_EQ(base.sample_rate_index, 2);
  EXPECT_EQ(base.frame_rate_index, 1);
  compare_edits(edits_of(*edl), lost);

  const auto came_back = [&](const char* name, const CObList* list, unsigned loss, bool carried) {
    SCOPED_TRACE(name);
    const bool added = loss == lost_video && (lost & adds_black_picture) != 0;
    const bool passed_over = loss == lost_locators && (lost & keeps_range_alone) != 0;
    EXPECT_EQ(list->GetCount(), ((lost & loss) != 0 && !added) || passed_over ? 0 : 1);
    EXPECT_EQ(carried, (lost & loss) == 0) << "the row says otherwise";
  };
  came_back("video", edl->get_video_list(), lost_video, row.carries.video);
  came_back("locators", edl->get_locator_list(), lost_locators, row.carries.locators);
  came_back("automation", edl->get_automation_list(), lost_automation, row.carries.automation);
  came_back("disc index", edl->get_pq_list(), lost_pq, row.carries.pq);
}

TEST(WalkAll, EveryRowOutAndBack) {
  std::vector<FormatRow> rows(format_table().begin(), format_table().end());
  rows.push_back(tally_row());
  for (const FormatRow& row : rows) {
    const auto* const known =
        std::find_if(std::begin(walk_cases), std::end(walk_cases),
                     [&row](const WalkCase& one) { return one.row == row.name; });
    ASSERT_NE(known, std::end(walk_cases)) << "no line in walk_cases for " << row.name;
    if (row.imports && row.exports) walk(row, *known);
  }
}

}  // namespace
