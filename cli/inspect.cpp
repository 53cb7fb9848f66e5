#include <cstdio>

#include "cli/commands.h"
#include "cli/details_json.h"
#include "cli/entry_table.h"
#include "cli/import_run.h"
#include "cli/messages.h"
#include "host/rates.h"

namespace cli {

namespace {

Json boxes_json(const embedded::EmbeddedBoxes& boxes) {
  Json all = Json::array();
  for (const embedded::ShownBox& box : boxes.shown()) {
    all.push_back({{"kind", embedded::name_of(box.kind)},
                   {"id", box.id},
                   {"text", box.text},
                   {"answer", embedded::name_of(box.answer)}});
  }
  return all;
}

Json list_json(const ImportRun& run, const embedded::EmbeddedHost& host) {
  EDL_DETAILS details;
  run.edl->get_edl_details(&details);
  UPDATE_SETTINGS_DETAILS updates;
  run.edl->get_update_settings_details(&updates);
  Json json;
  json["schema"] = 1;
  json["format"] = run.format->name;
  json["result"] = run.result;
  json["sample_rate"] = samples_per_second(details.sample_rate_index);
  json["frame_rate"] = details.frame_rate;
  json["highest_stream"] = details.highest_stream;
  json["rates_changed"] = {{"sample_rate", updates.sample_rate_changed != 0},
                           {"frame_rate", updates.frame_rate_changed != 0}};
  json["entries"] = entries_json(run.edl->get_generic_entry_list());
  json["reels"] = reels_json(run.edl->get_reel_list());
  json["pq"] = pq_json(*run.edl);
  json["locators"] = locators_json(run.edl->get_locator_list());
  json["automation"] = automation_json(run.edl->get_automation_list());
  json["video"] = video_json(run.edl->get_video_list());
  json["boxes"] = boxes_json(host.boxes());
  return json;
}

void print_summary(const ImportRun& run) {
  static constexpr const char* frame_rates[] = {"24", "25", "29.97 non-drop", "29.97 drop", "30"};
  const TimeBase base = run.edl->time_base();
  std::printf("%s: %u Hz, %s frames a second\n", std::string(run.format->title).c_str(),
              samples_per_second(base.sample_rate_index),
              base.frame_rate_index < frame_rate_count ? frame_rates[base.frame_rate_index] : "?");
  const auto count = [](const CObList* list) { return static_cast<std::size_t>(list->GetCount()); };
  std::printf(
      "%s, %s, %s, %s, %s, %s\n\n",
      counted(count(run.edl->get_generic_entry_list()), "edit", "edits").c_str(),
      counted(count(run.edl->get_reel_list()), "reel", "reels").c_str(),
      counted(count(run.edl->get_video_list()), "video edit", "video edits").c_str(),
      counted(count(run.edl->get_locator_list()), "locator", "locators").c_str(),
      counted(count(run.edl->get_automation_list()), "run of automation", "runs of automation")
          .c_str(),
      counted(count(run.edl->get_pq_list()), "disc index entry", "disc index entries").c_str());
}

bool anything_refused(const ImportRun& run, const embedded::EmbeddedHost& host) {
  if (run.edl->skipped_count() > 0 || host.boxes().suppressed() > 0) return true;
  for (const embedded::ShownBox& box : host.boxes().shown()) {
    if (box.kind == embedded::BoxKind::error || box.kind == embedded::BoxKind::warning) return true;
  }
  return false;
}

}  // namespace

int inspect(std::span<const FormatRow> rows, const Arguments& arguments,
            embedded::EmbeddedHost& host) {
  const ImportRun run = import_list(rows, arguments);
  if (run.exit != exit_done) return run.exit;
  if (arguments.json) {
    std::printf("%s\n", list_json(run, host).dump(2).c_str());
  } else {
    print_summary(run);
    std::fputs(entry_table(*run.edl, host.terminal().columns()).c_str(), stdout);
  }
  return anything_refused(run, host) ? exit_incomplete : exit_done;
}

}  // namespace cli
