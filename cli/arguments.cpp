#include "cli/arguments.h"

#include <algorithm>
#include <sstream>
#include <vector>

#include "embedded/code_pages.h"
#include "host/rates.h"

namespace cli {

namespace {

using Check = std::string;

// Runs `take` on the option's text and turns a false answer into a usage error.
template <class Take>
CLI::Option* add_text_option(CLI::App& command, const std::string& name, const std::string& help,
                             const std::string& form, Take take) {
  return command
      .add_option_function<std::string>(
          name,
          [name, form, take](const std::string& text) {
            if (!take(text)) throw CLI::ValidationError(name, "expects " + form + ", not " + text);
          },
          help)
      ->type_name(form);
}

bool take_frame_rate(const std::string& text, std::optional<std::uint8_t>& rate) {
  static constexpr std::array<std::string_view, frame_rate_count> names = {"24", "25", "29.97",
                                                                           "29.97drop", "30"};
  const auto* const at = std::find(names.begin(), names.end(), text);
  if (at == names.end()) return false;
  rate = static_cast<std::uint8_t>(at - names.begin());
  return true;
}

bool take_sample_rate(const std::string& text, std::optional<std::uint8_t>& rate) {
  std::uint32_t hertz = 0;
  if (!CLI::detail::lexical_cast(text, hertz)) return false;
  const std::int8_t index = sample_rate_index_of(hertz);
  if (index < 0) return false;
  rate = static_cast<std::uint8_t>(index);
  return true;
}

bool take_channels(const std::string& text, std::optional<ChannelWindow>& window) {
  const std::size_t colon = text.find(':');
  ChannelWindow taken;
  if (colon == std::string::npos ||
      !CLI::detail::lexical_cast(text.substr(0, colon), taken.first) ||
      !CLI::detail::lexical_cast(text.substr(colon + 1), taken.count) || taken.first < 1 ||
      taken.first > 65535 || taken.count < 1 || taken.count > 65535) {
    return false;
  }
  window = taken;
  return true;
}

bool take_channel_map(const std::string& text, Arguments& arguments) {
  std::istringstream words(text);
  std::string word;
  std::size_t count = 0;
  while (std::getline(words, word, ',')) {
    if (count == arguments.channel_map.size() ||
        !CLI::detail::lexical_cast(word, arguments.channel_map[count])) {
      return false;
    }
    ++count;
  }
  if (count != arguments.channel_map.size()) return false;
  arguments.settings.channel_map = arguments.channel_map.data();
  return true;
}

struct IntSetting {
  const char* name;
  std::int32_t EDL_CONVERSION_SETTINGS::*field;
  const char* help;
};
struct WordSetting {
  const char* name;
  std::uint16_t EDL_CONVERSION_SETTINGS::*field;
  const char* help;
};

constexpr const char* mode_help =
    "How audio fields become streams: 0 keeps fields and source channels, 1 source channels from "
    "1, 2 streams from 1, 3 both from 1";
constexpr const char* first_channel_help = "1: name source channels in place of streams on export";
constexpr const char* merge_help = "1: join mono pairs into stereo edits on import";
constexpr const char* cuts_help = "1: write every edit as a plain cut";
constexpr const char* mapping_help = "1: heed \"COMMENT: AUDIO MAPPING\" lines";

constexpr WordSetting word_settings[] = {
    {"--default-fade-in-curve", &EDL_CONVERSION_SETTINGS::default_fade_in_curve,
     "Fade-in curve of every new edit"},
    {"--default-fade-out-curve", &EDL_CONVERSION_SETTINGS::default_fade_out_curve,
     "Fade-out curve of every new edit"},
    {"--cmx-channel-mode", &EDL_CONVERSION_SETTINGS::cmx_channel_mode, mode_help},
    {"--cmx-use-first-channel", &EDL_CONVERSION_SETTINGS::cmx_use_first_channel,
     first_channel_help},
    {"--sony-channel-mode", &EDL_CONVERSION_SETTINGS::sony_channel_mode, mode_help},
    {"--sony-use-first-channel", &EDL_CONVERSION_SETTINGS::sony_use_first_channel,
     first_channel_help},
    {"--grass-valley-channel-mode", &EDL_CONVERSION_SETTINGS::grass_valley_channel_mode, mode_help},
    {"--grass-valley-use-first-channel", &EDL_CONVERSION_SETTINGS::grass_valley_use_first_channel,
     first_channel_help},
    {"--lw-multichannel-channel-mode", &EDL_CONVERSION_SETTINGS::lw_multichannel_channel_mode,
     mode_help},
    {"--lw-multichannel-use-first-channel",
     &EDL_CONVERSION_SETTINGS::lw_multichannel_use_first_channel, first_channel_help},
};

constexpr IntSetting int_settings[] = {
    {"--ask-on-frame-rate-change", &EDL_CONVERSION_SETTINGS::ask_on_frame_rate_change,
     "1: ask before a list's frame rate replaces the one given"},
    {"--native-direct-channels", &EDL_CONVERSION_SETTINGS::native_direct_channels,
     "EDL2: 1 takes its eight channels as streams"},
    {"--force-default-fade-curves", &EDL_CONVERSION_SETTINGS::force_default_fade_curves,
     "1: give every edit the default curves, whatever the list says"},
    {"--lightworks-merge-channels", &EDL_CONVERSION_SETTINGS::lightworks_merge_channels,
     merge_help},
    {"--cmx-merge-channels", &EDL_CONVERSION_SETTINGS::cmx_merge_channels, merge_help},
    {"--cmx-cuts-only", &EDL_CONVERSION_SETTINGS::cmx_cuts_only, cuts_help},
    {"--cmx-mapping-comments", &EDL_CONVERSION_SETTINGS::cmx_mapping_comments, mapping_help},
    {"--sony-merge-channels", &EDL_CONVERSION_SETTINGS::sony_merge_channels, merge_help},
    {"--sony-cuts-only", &EDL_CONVERSION_SETTINGS::sony_cuts_only, cuts_help},
    {"--sony-mapping-comments", &EDL_CONVERSION_SETTINGS::sony_mapping_comments, mapping_help},
    {"--grass-valley-merge-channels", &EDL_CONVERSION_SETTINGS::grass_valley_merge_channels,
     merge_help},
    {"--grass-valley-cuts-only", &EDL_CONVERSION_SETTINGS::grass_valley_cuts_only, cuts_help},
    {"--grass-valley-mapping-comments", &EDL_CONVERSION_SETTINGS::grass_valley_mapping_comments,
     mapping_help},
    {"--lw-multichannel-merge-channels", &EDL_CONVERSION_SETTINGS::lw_multichannel_merge_channels,
     merge_help},
    {"--lw-multichannel-cuts-only", &EDL_CONVERSION_SETTINGS::lw_multichannel_cuts_only, cuts_help},
    {"--lw-multichannel-mapping-comments",
     &EDL_CONVERSION_SETTINGS::lw_multichannel_mapping_comments,
     "1: heed and write \"COMMENT: AUDIO MAPPING\" lines"},
    {"--lw-multichannel-export-mode", &EDL_CONVERSION_SETTINGS::lw_multichannel_export_mode,
     "1: write crossfades into a dump file beside the list"},
};

}  // namespace

void add_input_options(CLI::App& command, Arguments& arguments) {
  constexpr const char* group = "Reading";
  command.add_option("IN", arguments.input, "The list to read")->required();
  command
      .add_option("--from", arguments.from,
                  "Its format (see \"edlconv formats\"); found by content when not given")
      ->type_name("FORMAT")
      ->group(group);
  add_text_option(command, "--sample-rate", "Samples per second", "HZ",
                  [&arguments](const std::string& text) {
                    return take_sample_rate(text, arguments.sample_rate);
                  })
      ->group(group);
  add_text_option(
      command, "--frame-rate", "Frames per second of the time codes", "24|25|29.97|29.97drop|30",
      [&arguments](const std::string& text) { return take_frame_rate(text, arguments.frame_rate); })
      ->group(group);
  add_text_option(
      command, "--channels", "Keep this window of streams, moved down to stream 1", "FIRST:COUNT",
      [&arguments](const std::string& text) { return take_channels(text, arguments.channels); })
      ->group(group);
  add_text_option(command, "--code-page",
                  "Of 8-bit texts in files: windows-1252 (default), utf-8, or what iconv knows",
                  "NAME",
                  [&arguments](const std::string& text) {
                    arguments.host.code_page = text;
                    return embedded::make_code_page(text) != nullptr;
                  })
      ->group(group);
}

void add_host_options(CLI::App& command, Arguments& arguments) {
  constexpr const char* group = "Questions, reports and settings";
  embedded::EmbeddedOptions& host = arguments.host;
  add_text_option(command, "--assume", "Answer to every question", "yes|no",
                  [&host](const std::string& text) {
                    host.assume = text == "yes";
                    return text == "yes" || text == "no";
                  })
      ->group(group);
  command
      .add_option("--max-reports", host.max_reports,
                  "Errors to show before reporting stops; 0 for all")
      ->type_name("N")
      ->group(group);
  command.add_option("--report-dir", host.report_folder, "Where reports go")
      ->type_name("DIR")
      ->group(group);
  command.add_flag("--open-report", host.open_report, "Open a report in the browser")->group(group);
  command.add_option("--setting", host.settings, "A settings key, stronger than the settings file")
      ->type_name("SECTION/KEY=VALUE")
      ->group(group);
  command
      .add_flag_function(
          "--classic",
          [&host](std::int64_t) { host.corrections = embedded::classic_corrections(); },
          "Keep every rule to the letter: no corrections")
      ->trigger_on_parse()
      ->group(group);
  command
      .add_option_function<std::vector<std::string>>(
          "--correction",
          [&host](const std::vector<std::string>& assignments) {
            for (const std::string& assignment : assignments) {
              if (!embedded::set_correction(host.corrections, assignment)) {
                throw CLI::ValidationError("--correction",
                                           "expects NAME=on or NAME=off, not " + assignment);
              }
            }
          },
          "One correction (see docs/corrections.md)")
      ->type_name("NAME=on|off")
      ->group(group);
}

void add_settings_options(CLI::App& command, Arguments& arguments) {
  constexpr const char* group = "Settings of the formats";
  EDL_CONVERSION_SETTINGS& settings = arguments.settings;
  command
      .add_option("--default-fade-length", settings.default_fade_length,
                  "Samples; fades of every new edit and of every cut that is read")
      ->type_name("N")
      ->group(group);
  for (const WordSetting& setting : word_settings) {
    command.add_option(setting.name, settings.*setting.field, setting.help)
        ->type_name("N")
        ->group(group);
  }
  for (const IntSetting& setting : int_settings) {
    command.add_option(setting.name, settings.*setting.field, setting.help)
        ->type_name("N")
        ->group(group);
  }
  add_text_option(
      command, "--channel-map",
      "Six rows of first stream, stream count, first channel, then two words that are "
      "not 0 to use single rows alone",
      "20 words with commas",
      [&arguments](const std::string& text) { return take_channel_map(text, arguments); })
      ->group(group);
}

void add_output_options(CLI::App& command, Arguments& arguments) {
  constexpr const char* group = "Writing";
  command.add_option("OUT", arguments.output, "The list to write")->required();
  command
      .add_option("--to", arguments.to,
                  "Its format; found by the extension, else that of IN, when not given")
      ->type_name("FORMAT")
      ->group(group);
  command.add_option("--export-flag", arguments.export_flag, "Handed to the export of the format")
      ->type_name("N")
      ->group(group);
}

}  // namespace cli
