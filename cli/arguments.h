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
  unsigned first = 1;
  unsigned count = 0;
};

struct Arguments {
  embedded::EmbeddedOptions host;
  EDL_CONVERSION_SETTINGS settings;
  // What settings.channel_map points to, when one was given.
  std::array<std::uint16_t, 20> channel_map{};
  FormatOptions format;

  std::string from;
  std::string to;
  std::string input;
  std::string output;
  // Rate indices.
  std::optional<std::uint8_t> sample_rate;
  std::optional<std::uint8_t> frame_rate;
  std::optional<ChannelWindow> channels;
  int export_flag = 0;
  bool json = false;
  bool classic = false;
};

// Options of reading a list, of the host, and of writing a list. The parsed values
// go into `arguments`, which must outlive the parsing.
void add_input_options(CLI::App& command, Arguments& arguments);
void add_host_options(CLI::App& command, Arguments& arguments);
void add_settings_options(CLI::App& command, Arguments& arguments);
void add_output_options(CLI::App& command, Arguments& arguments);

}  // namespace cli
