#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

#include "cli/commands.h"
#include "cli/import_run.h"
#include "cli/list_json.h"
#include "cli/list_table.h"
#include "cli/media_report.h"
#include "cli/option_forms.h"
#include "cli/outcome.h"

namespace cli {

namespace {

constexpr std::size_t usual_columns = 80;

// Of the screen that the table goes to; what the environment says, or the usual
// width, where it goes elsewhere.
std::size_t screen_columns() {
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  const char* const columns = std::getenv("COLUMNS");
  const auto number = number_of<std::uint16_t>(columns == nullptr ? "" : columns);
  return number && *number > 0 ? *number : usual_columns;
}

}  // namespace

int inspect(std::span<const FormatRow> rows, const Arguments& arguments,
            embedded::EmbeddedHost& host) {
  const InputFile input = open_input(rows, arguments);
  if (input.exit != exit_done) return input.exit;
  const ImportRun run = import_list(input, arguments);
  const bool looked_for = run.format->wants_audio || !arguments.host.media_folders.empty();
  const std::vector<MediaRow> media =
      looked_for ? find_media(*run.edl, host.media()) : std::vector<MediaRow>();
  const bool shown =
      arguments.json
          ? put_list_json(run, media, host.boxes())
          : run.exit != exit_done || put_list_table(*run.format, *run.edl, media, screen_columns());
  const bool losses = tell_of_import_report(*run.format, run.exit == exit_done, host.reports());
  if (!shown) return exit_failed;
  if (run.exit != exit_done) return run.exit;
  const bool reports =
      tell_of_reports(host.boxes(), run.edl->skipped_count(), arguments.input + " is read");
  return reports || losses ? exit_incomplete : exit_done;
}

}  // namespace cli
