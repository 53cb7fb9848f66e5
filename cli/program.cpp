#include "cli/program.h"

#include <exception>
#include <new>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_tree.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/exit_codes.h"
#include "cli/help_texts.h"
#include "cli/messages.h"
#include "cli/rescue.h"
#include "cli/text_table.h"
#include "core/edl_conversion.h"
#include "embedded/embedded_host.h"
#include "host/host.h"

namespace cli {

namespace {

// The host in force for one run, and the library opened for it.
class Session {
 public:
  explicit Session(const embedded::EmbeddedOptions& options) : host_(options) {
    set_host(&host_);
    opened_ = EDLConversionDLLInitialise(edl_conversion_version) == 0;
  }
  ~Session() {
    static_cast<void>(unload_aaf_library());
    if (opened_) EDLConversionDLLWindup();
    set_host(nullptr);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  [[nodiscard]] bool opened() const { return opened_; }
  embedded::EmbeddedHost& host() { return host_; }

 private:
  embedded::EmbeddedHost host_;
  bool opened_ = false;
};

struct Commands {
  CLI::App* convert;
  CLI::App* inspect;
  CLI::App* formats;
  CLI::App* aaf_dump;
};

Commands add_commands(CLI::App& app, Arguments& arguments) {
  Commands commands{};
  commands.convert = app.add_subcommand("convert", convert_summary);
  add_input_options(*commands.convert, arguments);
  add_output_options(*commands.convert, arguments);
  commands.inspect = app.add_subcommand("inspect", inspect_summary);
  add_input_options(*commands.inspect, arguments);
  commands.inspect->add_flag("--json", arguments.json, "As one JSON object, with every field");
  for (CLI::App* const command : {commands.convert, commands.inspect}) {
    add_host_options(*command, arguments);
    add_format_options(*command, arguments);
    command->footer(format_footer);
  }
  commands.aaf_dump = app.add_subcommand("aaf-dump", aaf_dump_summary);
  commands.aaf_dump->add_option("FILE", arguments.input, "The AAF file")
      ->required()
      ->type_name(" ");
  commands.aaf_dump->add_flag("--json", arguments.json, "As one JSON object");
  commands.aaf_dump->add_flag("--all", arguments.all,
                              "From the root of the file, with its definitions of classes and "
                              "types; not with --aaf-library");
  for (CLI::App* const command : {commands.convert, commands.inspect, commands.aaf_dump})
    add_aaf_options(*command, arguments);
  // The interfaces have no way to the root.
  commands.aaf_dump->get_option("--all")->excludes(commands.aaf_dump->get_option("--aaf-library"));
  commands.formats = app.add_subcommand("formats", formats_summary);
  commands.formats->add_flag("--json", arguments.json, "As JSON");
  return commands;
}

// Breaks the help of options into lines that fit beside their names.
class HelpFormatter final : public CLI::Formatter {
 public:
  HelpFormatter() { column_width(name_width); }
  std::string make_option_desc(const CLI::Option* option) const override {
    return wrapped(CLI::Formatter::make_option_desc(option), page_width - name_width);
  }

 private:
  static constexpr std::size_t page_width = 96;
  static constexpr std::size_t name_width = 34;
};

// On its own page a command is told at length.
void teach(const Commands& commands) {
  if (commands.convert->parsed()) commands.convert->description(convert_lesson);
  if (commands.inspect->parsed()) commands.inspect->description(inspect_lesson);
  if (commands.aaf_dump->parsed()) commands.aaf_dump->description(aaf_dump_lesson);
  if (commands.formats->parsed()) commands.formats->description(formats_lesson);
}

std::string usage_message(const CLI::App* app, const CLI::Error& error) {
  std::string command;
  for (const CLI::App* const parsed : app->get_subcommands())
    command += " " + parsed->get_name();
  return std::string("edlconv: ") + error.what() + "\nedlconv: hint: \"edlconv" + command +
         " --help\" tells more\n";
}

// False, with the reason told, when the library that the person names cannot be used. With
// none named it is loaded when it is needed.
bool use_aaf_library(const std::string& path) {
  if (path.empty()) return true;
  const CString name(text_from_utf8(path));
  const HRESULT result = load_aaf_library(name);
  if (result == 0) return true;
  tell(path + ": cannot be used as the AAF object library: " + aaf::result_words(result));
  return false;
}

int run_command(std::span<const FormatRow> rows, const Commands& commands,
                const Arguments& arguments) {
  if (commands.formats->parsed()) return list_formats(rows, arguments.json);
  embedded::EmbeddedOptions options = arguments.host;
  // Looking into a file leaves nothing behind, unless a folder was named for it.
  options.leave_audio_inside = commands.inspect->parsed();
  options.on_audio_file = [](const std::string& path, const std::string& aside) {
    Rescue::add({path, aside});
  };
  Session session(options);
  if (!session.opened()) {
    tell("the conversion library is of another version");
    return exit_failed;
  }
  if (!use_aaf_library(arguments.aaf_library)) return exit_failed;
  if (commands.aaf_dump->parsed()) return dump_aaf(arguments);
  return commands.convert->parsed() ? convert(rows, arguments, session.host())
                                    : inspect(rows, arguments, session.host());
}

}  // namespace

int run_program(std::span<const FormatRow> rows, int argc, const char* const* argv) {
  CLI::App app(program_description, "edlconv");
  app.footer(program_footer);
  app.formatter(std::make_shared<HelpFormatter>());
  app.failure_message(usage_message);
  app.require_subcommand(1);
  app.set_version_flag("--version", EDL_CONVERSION_VERSION);
  Arguments arguments;
  const Commands commands = add_commands(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    teach(commands);
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
