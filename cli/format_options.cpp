// Options that tune single formats: every field of the conversion settings, and the
// choices of audio decision lists and AAF.
#include <sstream>

#include "cli/arguments.h"
#include "cli/option_forms.h"

namespace cli {

namespace {

using Settings = EDL_CONVERSION_SETTINGS;

template <class Number>
struct Setting {
  const char* group;
  const char* name;
  Number Settings::*field;
  const char* help;
};

constexpr const char* all_group = "All formats";
constexpr const char* cmx_group = "CMX";
constexpr const char* sony_group = "Sony 9000";
constexpr const char* valley_group = "Grass Valley";
constexpr const char* lightworks_group = "Lightworks";
constexpr const char* multichannel_group = "Lightworks multichannel";
constexpr const char* edl2_group = "EDL2";
constexpr const char* adl_group = "Audio decision lists (ADL)";
constexpr const char* aaf_group = "AAF";

constexpr const char* mode_help = "How audio fields become streams: 0 to 3, told below";
constexpr const char* first_channel_help = "1 writes source channels in place of streams";
constexpr const char* merge_help = "1 joins the two sides of a stereo edit when reading";
constexpr const char* cuts_help = "1 writes every edit as a plain cut";
constexpr const char* mapping_help = "1 heeds \"COMMENT: AUDIO MAPPING\" lines";

constexpr Setting<std::uint16_t> word_settings[] = {
    {all_group, "--default-fade-in-curve", &Settings::default_fade_in_curve,
     "Curve number of the fade-in of every new edit"},
    {all_group, "--default-fade-out-curve", &Settings::default_fade_out_curve,
     "The same for the fade-out"},
    {cmx_group, "--cmx-channel-mode", &Settings::cmx_channel_mode, mode_help},
    {cmx_group, "--cmx-use-first-channel", &Settings::cmx_use_first_channel, first_channel_help},
    {sony_group, "--sony-channel-mode", &Settings::sony_channel_mode, mode_help},
    {sony_group, "--sony-use-first-channel", &Settings::sony_use_first_channel, first_channel_help},
    {valley_group, "--grass-valley-channel-mode", &Settings::grass_valley_channel_mode, mode_help},
    {valley_group, "--grass-valley-use-first-channel", &Settings::grass_valley_use_first_channel,
     first_channel_help},
    {multichannel_group, "--lw-multichannel-channel-mode", &Settings::lw_multichannel_channel_mode,
     mode_help},
    {multichannel_group, "--lw-multichannel-use-first-channel",
     &Settings::lw_multichannel_use_first_channel, first_channel_help},
};

constexpr Setting<std::int32_t> int_settings[] = {
    {all_group, "--ask-on-frame-rate-change", &Settings::ask_on_frame_rate_change,
     "1 asks before a frame rate that the list states replaces the one that was given"},
    {all_group, "--force-default-fade-curves", &Settings::force_default_fade_curves,
     "1 gives every edit the two default curves, whatever the list says"},
    {cmx_group, "--cmx-merge-channels", &Settings::cmx_merge_channels, merge_help},
    {cmx_group, "--cmx-cuts-only", &Settings::cmx_cuts_only, cuts_help},
    {cmx_group, "--cmx-mapping-comments", &Settings::cmx_mapping_comments, mapping_help},
    {sony_group, "--sony-merge-channels", &Settings::sony_merge_channels, merge_help},
    {sony_group, "--sony-cuts-only", &Settings::sony_cuts_only, cuts_help},
    {sony_group, "--sony-mapping-comments", &Settings::sony_mapping_comments, mapping_help},
    {valley_group, "--grass-valley-merge-channels", &Settings::grass_valley_merge_channels,
     merge_help},
    {valley_group, "--grass-valley-cuts-only", &Settings::grass_valley_cuts_only, cuts_help},
    {valley_group, "--grass-valley-mapping-comments", &Settings::grass_valley_mapping_comments,
     mapping_help},
    {lightworks_group, "--lightworks-merge-channels", &Settings::lightworks_merge_channels,
     merge_help},
    {multichannel_group, "--lw-multichannel-merge-channels",
     &Settings::lw_multichannel_merge_channels, merge_help},
    {multichannel_group, "--lw-multichannel-cuts-only", &Settings::lw_multichannel_cuts_only,
     cuts_help},
    {multichannel_group, "--lw-multichannel-mapping-comments",
     &Settings::lw_multichannel_mapping_comments,
     "1 heeds and writes \"COMMENT: AUDIO MAPPING\" lines"},
    {multichannel_group, "--lw-multichannel-export-mode", &Settings::lw_multichannel_export_mode,
     "1 writes crossfades into a dump file beside the list"},
    {edl2_group, "--native-direct-channels", &Settings::native_direct_channels,
     "1 takes its channels as streams, as they stand"},
};

template <class Number, std::size_t count>
void add_settings(CLI::App& command, Settings& settings, const Setting<Number> (&rows)[count]) {
  for (const Setting<Number>& row : rows)
    add_number_option(command, row.name, settings.*row.field, row.help)->group(row.group);
}

bool take_channel_map(const std::string& text,
                      std::optional<std::array<std::uint16_t, 20>>& channel_map) {
  std::array<std::uint16_t, 20> words{};
  std::istringstream all(text);
  std::string word;
  std::size_t count = 0;
  while (std::getline(all, word, ',')) {
    const auto number = number_of<std::uint16_t>(word);
    if (count == words.size() || !number) return false;
    words[count++] = *number;
  }
  if (count != words.size() || text.ends_with(',')) return false;
  channel_map = words;
  return true;
}

void add_adl_options(CLI::App& command, Arguments& arguments) {
  using embedded::CrossfadePolicy;
  embedded::EmbeddedOptions& host = arguments.host;
  const auto add = [](CLI::Option* option) { option->group(adl_group); };
  add(add_number_option(command, "--crossfade-length", host.crossfade_length,
                        "Samples of a crossfade: where edits meet in a list that gives no length, "
                        "for --butt-splices, and as the length that a list is written with"));
  add(add_number_option(command, "--infade-curve", host.infade_curve,
                        "Curve number of fade-ins where the list gives none"));
  add(add_number_option(command, "--outfade-curve", host.outfade_curve, "The same for fade-outs"));
  add(add_word_option<CrossfadePolicy>(
      command, "--crossfade-policy",
      {{"keep", CrossfadePolicy::keep},
       {"adopt", CrossfadePolicy::adopt},
       {"ask", CrossfadePolicy::ask}},
      host.crossfade_policy,
      "What becomes of a crossfade length that a list brings; adopt, the default, writes it "
      "out again"));
  add(command.add_flag("--butt-splices", host.butt_splices,
                       "Write crossfades of up to the crossfade length as edits that meet, which "
                       "a reader makes crossfades again"));
  add(command.add_option("--project-title", host.project_title, "Title of the project to write")
          ->type_name("TEXT"));
  add(command.add_flag("--sound-designer", arguments.format.adl_sound_designer,
                       "The sources are Sound Designer II files: reads and writes \".sd2\""));
  add(command.add_flag("--interchange", arguments.format.adl_interchange,
                       "The sources belong to an interchange job: writes sources of every kind, "
                       "reads \".omf\", and makes no crossfades where edits meet"));
  add(command.add_flag("--aiff", arguments.format.adl_aiff,
                       "Write the names of sources with \".aif\" in place of \".wav\""));
}

void add_aaf_options(CLI::App& command, embedded::EmbeddedOptions& host) {
  const auto add = [](CLI::Option* option) { option->group(aaf_group); };
  add(command
          .add_option("--composition", host.choice,
                      "Which composition of a file with several to read: its name, or its number "
                      "from 1. Without it a person is asked; where nobody sits the names are "
                      "listed and nothing is read")
          ->type_name("NAME|N"));
  add(add_word_option<bool>(command, "--essence", {{"wave", false}, {"aifc", true}}, host.aaf_aifc,
                            "Form of the audio that is written. Default wave"));
  add(command.add_flag("--embed,!--external", host.aaf_embed_audio,
                       "Write the audio into the file, which is the default, or beside it"));
  add(command.add_flag("--overwrite-audio", host.aaf_overwrite_audio,
                       "Let audio that is written beside the file take the place of older files"));
  add(command.add_flag("--fixed-gain,!--no-fixed-gain", host.aaf_fixed_gain,
                       "Write the level of each edit. The default, as the next two"));
  add(command.add_flag("--gain-automation,!--no-gain-automation", host.aaf_gain_automation,
                       "Write fader automation"));
  add(command.add_flag("--pan-automation,!--no-pan-automation", host.aaf_pan_automation,
                       "Write pan automation"));
}

}  // namespace

void add_format_options(CLI::App& command, Arguments& arguments) {
  Settings& settings = arguments.settings;
  add_number_option(command, "--default-fade-length", settings.default_fade_length,
                    "Samples of both fades of every new edit and of every cut that is read")
      ->group(all_group);
  add_text_option(
      command, "--channel-map", {"N,N,...", "20 numbers, 0 to 65535, with commas between them"},
      "How audio fields become streams, in place of a channel mode, from 0: four rows for the "
      "fields, two for the pairs 1-2 and 3-4, each of first stream, stream count and "
      "first channel; then two words, not both 0 to use single fields alone",
      [&arguments](const std::string& text) {
        return take_channel_map(text, arguments.channel_map);
      })
      ->group(all_group);
  add_settings(command, settings, word_settings);
  add_settings(command, settings, int_settings);
  add_adl_options(command, arguments);
  add_aaf_options(command, arguments.host);
}

}  // namespace cli
