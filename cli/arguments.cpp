#include "cli/arguments.h"

#include "cli/option_forms.h"
#include "embedded/code_pages.h"
#include "embedded/settings.h"
#include "host/rates.h"

namespace cli {

namespace {

std::string known_sample_rates() {
  std::string all;
  for (std::uint8_t index = 0; index < sample_rate_count; ++index)
    all += (all.empty() ? "" : ", ") + std::to_string(samples_per_second(index));
  return all;
}

bool take_sample_rate(const std::string& text, std::optional<std::uint8_t>& rate) {
  const auto hertz = number_of<std::uint32_t>(text);
  const int index = hertz ? sample_rate_index_of(*hertz) : -1;
  if (index >= 0) rate = static_cast<std::uint8_t>(index);
  return index >= 0;
}

bool take_channels(const std::string& text, std::optional<ChannelWindow>& window) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) return false;
  const auto first = number_of<std::uint16_t>(text.substr(0, colon));
  const auto count = number_of<std::uint16_t>(text.substr(colon + 1));
  if (!first || !count || *first == 0 || *count == 0) return false;
  window = ChannelWindow{*first, *count};
  return true;
}

void take_corrections(embedded::CorrectionSet& corrections,
                      const std::vector<std::string>& assignments) {
  for (const std::string& assignment : assignments) {
    if (!embedded::set_correction(corrections, assignment)) {
      throw CLI::ValidationError("--correction", "expects NAME=on or NAME=off, not \"" +
                                                     assignment +
                                                     "\"; docs/corrections.md has the names");
    }
  }
}

void take_settings(std::vector<std::string>& settings, const std::vector<std::string>& given) {
  for (const std::string& setting : given) {
    if (!embedded::is_setting(setting)) {
      throw CLI::ValidationError("--setting", "expects SECTION/KEY=VALUE, not \"" + setting + "\"");
    }
  }
  settings = given;
}

void add_report_options(CLI::App& command, embedded::EmbeddedOptions& host) {
  constexpr const char* group = "Questions and reports";
  add_text_option(command, "--assume", {"yes|no", "yes or no"},
                  "Answer to every question; without it a person at a terminal is asked, and where "
                  "nobody sits the answer is no",
                  [&host](const std::string& text) {
                    host.assume = text == "yes";
                    return text == "yes" || text == "no";
                  })
      ->group(group);
  add_number_option(command, "--max-reports", host.max_reports,
                    "Errors to show before reporting stops; 0 for all. Default 1000")
      ->group(group);
  command.add_option("--report-dir", host.report_folder, "Where reports go")
      ->type_name("DIR")
      ->group(group);
  command.add_flag("--open-report", host.open_report, "Open a report even where nobody sits")
      ->group(group);
}

void add_rule_options(CLI::App& command, embedded::EmbeddedOptions& host) {
  constexpr const char* group = "Rules and keys";
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
          [&host](const std::vector<std::string>& given) {
            take_corrections(host.corrections, given);
          },
          "One correction, also beside --classic (see docs/corrections.md)")
      ->type_name("NAME=on|off")
      ->allow_extra_args(false)
      ->group(group);
  command
      .add_option_function<std::vector<std::string>>(
          "--setting",
          [&host](const std::vector<std::string>& given) { take_settings(host.settings, given); },
          "A key of the settings file, for this run")
      ->type_name("SECTION/KEY=VALUE")
      ->allow_extra_args(false)
      ->group(group);
}

}  // namespace

EDL_CONVERSION_SETTINGS conversion_settings(const Arguments& arguments) {
  EDL_CONVERSION_SETTINGS settings = arguments.settings;
  settings.channel_map = arguments.channel_map ? arguments.channel_map->data() : nullptr;
  return settings;
}

void add_input_options(CLI::App& command, Arguments& arguments) {
  constexpr const char* group = "Reading";
  command.add_option("IN", arguments.input, "The list to read")->required()->type_name(" ");
  command
      .add_option("--from", arguments.from,
                  "The format of IN (see \"edlconv formats\"); without it the content tells")
      ->type_name("FORMAT")
      ->group(group);
  add_text_option(command, "--sample-rate", {"HZ", "one of " + known_sample_rates()},
                  "Samples per second, such as 44100 or 48000. A rate that the list states wins",
                  [&arguments](const std::string& text) {
                    return take_sample_rate(text, arguments.sample_rate);
                  })
      ->group(group);
  add_word_option<std::optional<std::uint8_t>>(
      command, "--frame-rate",
      {{"24", frame_rate_24},
       {"25", frame_rate_25},
       {"29.97", frame_rate_2997_non_drop},
       {"29.97drop", frame_rate_2997_drop},
       {"30", frame_rate_30}},
      arguments.frame_rate, "Frames per second of its time codes. Wins over what the list states")
      ->group(group);
  add_text_option(
      command, "--channels", {"FIRST:COUNT", "two numbers from 1, as in 3:2"},
      "Keep this window of streams and move it down to stream 1: 3:2 keeps 3 and 4",
      [&arguments](const std::string& text) { return take_channels(text, arguments.channels); })
      ->group(group);
  add_text_option(command, "--code-page", {"NAME", "a code page that is known here"},
                  "Of 8-bit texts in files, read and written: windows-1252 (default), utf-8, or a "
                  "name that iconv knows",
                  [&arguments](const std::string& text) {
                    arguments.host.code_page = text;
                    return embedded::make_code_page(text) != nullptr;
                  })
      ->group(group);
  command
      .add_option("--media", arguments.host.media_folders,
                  "Where to look for the audio of the edits; may be given again")
      ->type_name("DIR")
      ->allow_extra_args(false)
      ->group(group);
  command
      .add_option("--audio-folder", arguments.host.audio_folder,
                  "Where audio inside the list is copied to; nowhere without it")
      ->type_name("DIR")
      ->group(group);
}

void add_aaf_options(CLI::App& command, Arguments& arguments) {
  command
      .add_option("--aaf-library", arguments.aaf_library,
                  "The AAF object library to use in place of the one that comes along")
      ->type_name("PATH");
}

void add_host_options(CLI::App& command, Arguments& arguments) {
  add_report_options(command, arguments.host);
  add_rule_options(command, arguments.host);
}

void add_output_options(CLI::App& command, Arguments& arguments) {
  constexpr const char* group = "Writing";
  command.add_option("OUT", arguments.output, "The list to write")->required()->type_name(" ");
  command
      .add_option("--to", arguments.to,
                  "The format of OUT; without it that of IN where the name fits it, else the first "
                  "one with the extension of OUT")
      ->type_name("FORMAT")
      ->group(group);
  add_number_option(command, "--export-flag", arguments.export_flag,
                    "Handed to the export of the format (chunked: second magic and curve map)")
      ->group(group);
}

}  // namespace cli
