// Everything that a person can choose about the embedded host. The program fills
// it from its arguments; a default is what holds when nothing was given.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/corrections.h"

namespace embedded {

using CorrectionSet = std::bitset<correction_names.size()>;

[[nodiscard]] inline CorrectionSet all_corrections() {
  return CorrectionSet().set();
}
[[nodiscard]] inline CorrectionSet classic_corrections() {
  return {};
}
// Sets one switch by its name, "NAME=on" or "NAME=off"; false for any other text.
[[nodiscard]] bool set_correction(CorrectionSet& corrections, std::string_view assignment);

// What becomes of a crossfade length, or of a default fade, that a file brings.
enum class CrossfadePolicy { keep, adopt, ask };

// Texts are UTF-8, paths as the system has them.
struct EmbeddedOptions {
  // In front of a line on standard error that names no file.
  std::string program_name = "edlconv";
  // The answer to every question. Without one a person at a terminal is asked, and
  // where nobody sits the answer is No.
  std::optional<bool> assume;
  // Boxes of reports that are shown before reporting stops; 0 for no end.
  std::size_t max_reports = 1000;
  // The row of a choice such as that of a composition: its text, or its number from 1.
  // Without one a person is asked, and where nobody sits the choice is cancelled.
  std::string choice;

  // The INI file of settings and registry values; empty for the user's own.
  std::string settings_file;
  // "SECTION/KEY=VALUE", each stronger than the file.
  std::vector<std::string> settings;

  // Where reports go; empty for the user's state folder.
  std::string report_folder;
  // Opens reports even where nobody sits.
  bool open_report = false;
  // The program that is handed the file of a report.
  std::string viewer_command = "xdg-open";
  // As Viewer has them; empty for what the locale of the environment says.
  std::optional<int> date_order;
  std::optional<int> clock_form;

  std::string code_page = "windows-1252";
  CorrectionSet corrections = all_corrections();

  // Samples.
  std::int64_t crossfade_length = 0;
  std::uint16_t infade_curve = 0;
  std::uint16_t outfade_curve = 0;
  CrossfadePolicy crossfade_policy = CrossfadePolicy::adopt;
  bool butt_splices = false;
  std::string project_title;

  bool aaf_aifc = false;
  bool aaf_embed_audio = true;
  // Called before an audio file is written beside an AAF file, or moved aside, as
  // Application::note_audio_file has it. May be empty.
  std::function<void(const std::string& path, const std::string& aside)> on_audio_file;
  // Whether audio written beside a file may take the place of older files.
  bool aaf_overwrite_audio = false;
  bool aaf_fixed_gain = true;
  bool aaf_gain_automation = true;
  bool aaf_pan_automation = true;

  // Where the audio of edits is looked for, in this order.
  std::vector<std::string> media_folders;
  // Where audio that a file carries inside is copied to; empty for nowhere.
  std::string audio_folder;
  // Without a folder such audio is left where it is, and the file is read all the same.
  bool leave_audio_inside = false;
};

}  // namespace embedded
