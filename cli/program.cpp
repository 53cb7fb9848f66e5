#include "cli/program.h"

#include <exception>
#include <new>

#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/exit_codes.h"
#include "cli/messages.h"
#include "core/edl_conversion.h"
#include "embedded/embedded_host.h"
#include "host/host.h"

namespace cli {

namespace {

constexpr const char* description =
    "Turns edit lists into the files of other systems and back.\n\n"
    "  edlconv convert film.edl film.adl        the formats are found by content and name\n"
    "  edlconv convert --to cmx340 in.edl out   or named\n"
    "  edlconv inspect film.edl                 shows what a list holds\n"
    "  edlconv formats                          lists the formats\n";

constexpr const char* footer =
    "Exit codes: 0 done; 1 wrong use; 2 the input cannot be opened or is not of its format;\n"
    "3 refused, or failed while writing; 4 done, but something was dropped on the way, which is\n"
    "told on standard error.";

// The host in force for one run, and the library opened for it.
class Session {
 public:
  explicit Session(const embedded::EmbeddedOptions& options) : host_(options) {
    set_host(&host_);
    opened_ = EDLConversionDLLInitialise(edl_conversion_version) == 0;
  }
  ~Session() {
    if (opened_) EDLConversionDLLWindup();
    set_host(nullptr);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  embedded::EmbeddedHost& host() { return host_; }

 private:
  embedded::EmbeddedHost host_;
  bool opened_ = false;
};

struct Commands {
  CLI::App* convert;
  CLI::App* inspect;
  CLI::App* formats;
};

Commands add_commands(CLI::App& app, Arguments& arguments) {
  Commands commands{};
  commands.convert = app.add_subcommand("convert", "Read one list and write it as another");
  add_input_options(*commands.convert, arguments);
  add_output_options(*commands.convert, arguments);
  add_host_options(*commands.convert, arguments);
  add_settings_options(*commands.convert, arguments);
  commands.inspect = app.add_subcommand("inspect", "Show what a list holds");
  add_input_options(*commands.inspect, arguments);
  commands.inspect->add_flag("--json", arguments.json, "As one JSON object, with every field");
  add_host_options(*commands.inspect, arguments);
  add_settings_options(*commands.inspect, arguments);
  commands.formats = app.add_subcommand("formats", "List the formats");
  commands.formats->add_flag("--json", arguments.json, "As JSON");
  return commands;
}

int run_command(std::span<const FormatRow> rows, const Commands& commands,
                const Arguments& arguments) {
  if (commands.formats->parsed()) return list_formats(rows, arguments.json);
  Session session(arguments.host);
  return commands.convert->parsed() ? convert(rows, arguments, session.host())
                                    : inspect(rows, arguments, session.host());
}

}  // namespace

int run_program(std::span<const FormatRow> rows, int argc, const char* const* argv) {
  CLI::App app(description, "edlconv");
  app.footer(footer);
  app.require_subcommand(1);
  Arguments arguments;
  const Commands commands = add_commands(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? exit_done : exit_usage;
  }
  try {
    return run_command(rows, commands, arguments);
  } catch (const std::bad_alloc&) {
    tell("there is not enough memory");
  } catch (const std::exception& error) {
    tell(std::string("unexpected: ") + error.what());
  }
  return exit_failed;
}

}  // namespace cli
