// Options and what they set. The fields of the settings are taken from their header,
// so that a new one without an option is noticed.
#include <gtest/gtest.h>

#include <regex>

#include "cli/arguments.h"
#include "tests/cli/program_run.h"
#include "tests/support/temp_folder.h"

namespace {

using cli::Arguments;

void parse(Arguments& arguments, std::vector<std::string> words) {
  CLI::App app;
  cli::add_input_options(app, arguments);
  cli::add_host_options(app, arguments);
  cli::add_format_options(app, arguments);
  cli::add_output_options(app, arguments);
  words.insert(words.end(), {"in", "out"});
  std::reverse(words.begin(), words.end());
  app.parse(words);
}

// The fields of EDL_CONVERSION_SETTINGS as its header has them.
std::vector<std::string> settings_fields() {
  const std::string header = support::read_file(support::source_path("core/edl_conversion.h"));
  const std::size_t start = header.find("struct EDL_CONVERSION_SETTINGS {");
  const std::string body = header.substr(start, header.find("\n};", start) - start);
  static const std::regex field(R"((\w+)(\[\w+\])? = [^;]*;)");
  std::vector<std::string> names;
  for (auto at = std::sregex_iterator(body.begin(), body.end(), field);
       at != std::sregex_iterator(); ++at) {
    names.push_back((*at)[1]);
  }
  return names;
}

std::string option_of(std::string field) {
  std::replace(field.begin(), field.end(), '_', '-');
  return "--" + field;
}

TEST(Options, EveryFieldOfTheSettingsHasOne) {
  const std::vector<std::string> fields = settings_fields();
  EXPECT_EQ(fields.size(), 30U);
  CLI::App app;
  Arguments arguments;
  cli::add_format_options(app, arguments);
  for (const std::string& field : fields) {
    if (field == "reserved_head") continue;
    EXPECT_NE(app.get_option_no_throw(option_of(field)), nullptr) << field;
  }
}

// Every option reaches the field of its own name: the settings differ from those of
// all other options in that one place.
TEST(Options, EachSetsTheFieldOfItsName) {
  using Settings = EDL_CONVERSION_SETTINGS;
  const auto value_of = [](const Settings& s, const std::string& field) -> std::int64_t {
#define EDL_FIELD(name) \
  if (field == #name) return static_cast<std::int64_t>(s.name)
    EDL_FIELD(default_fade_length);
    EDL_FIELD(default_fade_in_curve);
    EDL_FIELD(default_fade_out_curve);
    EDL_FIELD(ask_on_frame_rate_change);
    EDL_FIELD(native_direct_channels);
    EDL_FIELD(force_default_fade_curves);
    EDL_FIELD(lightworks_merge_channels);
    EDL_FIELD(cmx_channel_mode);
    EDL_FIELD(cmx_use_first_channel);
    EDL_FIELD(cmx_merge_channels);
    EDL_FIELD(cmx_cuts_only);
    EDL_FIELD(cmx_mapping_comments);
    EDL_FIELD(sony_channel_mode);
    EDL_FIELD(sony_use_first_channel);
    EDL_FIELD(sony_merge_channels);
    EDL_FIELD(sony_cuts_only);
    EDL_FIELD(sony_mapping_comments);
    EDL_FIELD(grass_valley_channel_mode);
    EDL_FIELD(grass_valley_use_first_channel);
    EDL_FIELD(grass_valley_merge_channels);
    EDL_FIELD(grass_valley_cuts_only);
    EDL_FIELD(grass_valley_mapping_comments);
    EDL_FIELD(lw_multichannel_channel_mode);
    EDL_FIELD(lw_multichannel_use_first_channel);
    EDL_FIELD(lw_multichannel_merge_channels);
    EDL_FIELD(lw_multichannel_cuts_only);
    EDL_FIELD(lw_multichannel_mapping_comments);
    EDL_FIELD(lw_multichannel_export_mode);
#undef EDL_FIELD
    ADD_FAILURE() << "no such field: " << field;
    return -1;
  };
  for (const std::string& set : settings_fields()) {
    if (set == "reserved_head" || set == "channel_map") continue;
    Arguments arguments;
    parse(arguments, {option_of(set), "3"});
    const Settings settings = cli::conversion_settings(arguments);
    for (const std::string& field : settings_fields()) {
      if (field == "reserved_head" || field == "channel_map") continue;
      EXPECT_EQ(value_of(settings, field), field == set ? 3 : 0) << option_of(set) << ": " << field;
    }
    EXPECT_EQ(settings.channel_map, nullptr);
  }
}

TEST(Options, ChannelMap) {
  Arguments arguments;
  parse(arguments, {"--channel-map", "0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,65535"});
  const Arguments copy = arguments;
  const EDL_CONVERSION_SETTINGS settings = cli::conversion_settings(copy);
  ASSERT_NE(settings.channel_map, nullptr);
  for (std::uint16_t i = 0; i < 19; ++i)
    EXPECT_EQ(settings.channel_map[i], i);
  EXPECT_EQ(settings.channel_map[19], 65535);
}

TEST(Options, NumbersAreDecimal) {
  Arguments arguments;
  parse(arguments, {"--default-fade-length", "010"});
  EXPECT_EQ(arguments.settings.default_fade_length, 10);
  EXPECT_THROW(parse(arguments, {"--default-fade-length", "0x10"}), CLI::ParseError);
  EXPECT_THROW(parse(arguments, {"--default-fade-length", " 1"}), CLI::ParseError);
  EXPECT_THROW(parse(arguments, {"--default-fade-length", ""}), CLI::ParseError);
}

TEST(Options, DefaultsLeaveTheHostAsItIs) {
  Arguments arguments;
  parse(arguments, {});
  EXPECT_EQ(arguments.input, "in");
  EXPECT_EQ(arguments.output, "out");
  EXPECT_EQ(arguments.host.corrections, embedded::all_corrections());
  EXPECT_FALSE(arguments.host.assume.has_value());
  EXPECT_EQ(arguments.host.crossfade_policy, embedded::CrossfadePolicy::adopt);
  EXPECT_EQ(arguments.host.code_page, "windows-1252");
  EXPECT_FALSE(arguments.sample_rate.has_value());
  EXPECT_FALSE(arguments.frame_rate.has_value());
  EXPECT_FALSE(arguments.channels.has_value());
  EXPECT_TRUE(arguments.host.aaf_embed_audio);
}

TEST(Options, OfTheHost) {
  Arguments arguments;
  parse(arguments, {"--assume",
                    "yes",
                    "--max-reports",
                    "5",
                    "--report-dir",
                    "/r",
                    "--open-report",
                    "--code-page",
                    "utf-8",
                    "--media",
                    "/m1",
                    "--media",
                    "/m2",
                    "--audio-folder",
                    "/a",
                    "--setting",
                    "A/B=1",
                    "--setting",
                    "C/D=2",
                    "--composition",
                    "3"});
  const embedded::EmbeddedOptions& host = arguments.host;
  EXPECT_EQ(host.assume, true);
  EXPECT_EQ(host.max_reports, 5U);
  EXPECT_EQ(host.report_folder, "/r");
  EXPECT_TRUE(host.open_report);
  EXPECT_EQ(host.code_page, "utf-8");
  EXPECT_EQ(host.media_folders, (std::vector<std::string>{"/m1", "/m2"}));
  EXPECT_EQ(host.audio_folder, "/a");
  EXPECT_EQ(host.settings, (std::vector<std::string>{"A/B=1", "C/D=2"}));
  EXPECT_EQ(host.choice, "3");
}

TEST(Options, OptionThatTakesOneValueLeavesTheNextWordAlone) {
  Arguments arguments;
  parse(arguments, {"--media", "/m"});
  EXPECT_EQ(arguments.host.media_folders, std::vector<std::string>{"/m"});
  EXPECT_EQ(arguments.input, "in");
}

TEST(Options, OfAudioDecisionLists) {
  Arguments arguments;
  parse(arguments, {"--crossfade-length", "480", "--infade-curve", "5", "--outfade-curve", "6",
                    "--crossfade-policy", "ask", "--butt-splices", "--project-title", "A Film",
                    "--sound-designer", "--interchange", "--aiff"});
  const embedded::EmbeddedOptions& host = arguments.host;
  EXPECT_EQ(host.crossfade_length, 480);
  EXPECT_EQ(host.infade_curve, 5);
  EXPECT_EQ(host.outfade_curve, 6);
  EXPECT_EQ(host.crossfade_policy, embedded::CrossfadePolicy::ask);
  EXPECT_TRUE(host.butt_splices);
  EXPECT_EQ(host.project_title, "A Film");
  EXPECT_TRUE(arguments.format.adl_sound_designer);
  EXPECT_TRUE(arguments.format.adl_interchange);
  EXPECT_TRUE(arguments.format.adl_aiff);
}

TEST(Options, OfAaf) {
  Arguments arguments;
  parse(arguments, {"--essence", "aifc", "--external", "--overwrite-audio", "--no-fixed-gain",
                    "--no-gain-automation", "--no-pan-automation"});
  EXPECT_TRUE(arguments.host.aaf_aifc);
  EXPECT_FALSE(arguments.host.aaf_embed_audio);
  EXPECT_TRUE(arguments.host.aaf_overwrite_audio);
  EXPECT_FALSE(arguments.host.aaf_fixed_gain);
  EXPECT_FALSE(arguments.host.aaf_gain_automation);
  EXPECT_FALSE(arguments.host.aaf_pan_automation);
  parse(arguments,
        {"--essence", "wave", "--embed", "--fixed-gain", "--gain-automation", "--pan-automation"});
  EXPECT_FALSE(arguments.host.aaf_aifc);
  EXPECT_TRUE(arguments.host.aaf_embed_audio);
  EXPECT_TRUE(arguments.host.aaf_fixed_gain);
  EXPECT_TRUE(arguments.host.aaf_gain_automation);
  EXPECT_TRUE(arguments.host.aaf_pan_automation);
}

TEST(Options, Corrections) {
  const auto corrections = [](const std::vector<std::string>& words) {
    Arguments arguments;
    parse(arguments, words);
    return arguments.host.corrections;
  };
  const auto bit = static_cast<std::size_t>(Correction::aaf_clip_rate);
  EXPECT_TRUE(corrections({"--classic"}).none());
  // In either order a correction stands beside --classic.
  EXPECT_EQ(corrections({"--classic", "--correction", "aaf_clip_rate=on"}),
            embedded::CorrectionSet().set(bit));
  EXPECT_EQ(corrections({"--correction", "aaf_clip_rate=on", "--classic"}),
            embedded::CorrectionSet().set(bit));
  EXPECT_EQ(corrections({"--correction", "aaf_clip_rate=off"}),
            embedded::all_corrections().reset(bit));
  EXPECT_EQ(corrections({"--correction", "aaf_clip_rate=off", "--correction", "adl_drop_frame=off"})
                .count(),
            embedded::all_corrections().count() - 2);
}

TEST(Options, ExportFlag) {
  Arguments arguments;
  parse(arguments, {"--export-flag", "-1"});
  EXPECT_EQ(arguments.export_flag, -1);
}

}  // namespace
