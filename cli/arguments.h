// The program's options, the same for all commands that read a list.
#pragma once

#include <CLI/CLI.hpp>
#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "core/edl_conversion.h"
#include "embedded/options.h"
#include "formats/format_table.h"

namespace cli {

struct ChannelWindow {
  // From 1.
  std::uint16_t first = 1;
  std::uint16_t count = 0;
};

struct Arguments {
  embedded::EmbeddedOptions host;
  // Without its channel map: see conversion_settings.
  EDL_CONVERSION_SETTINGS settings;
  std::optional<std::array<std::uint16_t, 20>> channel_map;
  FormatOptions format;

  // As the person typed them; names of formats are not looked up yet.
  std::string from;
  std::string to;
  std::string input;
  std::string output;
  // Empty: the one that lies beside the program or that the system finds.
  std::string aaf_library;
  // Rate indices.
  std::optional<std::uint8_t> sample_rate;
  std::optional<std::uint8_t> frame_rate;
  std::optional<ChannelWindow> channels;
  int export_flag = 0;
  bool json = false;
  // Of a dump: from the root of the file, with the definitions of classes and types.
  bool all = false;
};

// The settings with their channel map, which lives in `arguments`.
[[nodiscard]] EDL_CONVERSION_SETTINGS conversion_settings(const Arguments& arguments);

// Options of reading a list, of the AAF library, of the host, of the formats, and of writing a
// list. The parsed values go into `arguments`, which must outlive the parsing.
void add_input_options(CLI::App& command, Arguments& arguments);
void add_aaf_options(CLI::App& command, Arguments& arguments);
void add_host_options(CLI::App& command, Arguments& arguments);
void add_format_options(CLI::App& command, Arguments& arguments);
void add_output_options(CLI::App& command, Arguments& arguments);

}  // namespace cli
