#include <algorithm>
#include <cerrno>
#include <cstring>

#include "cli/commands.h"
#include "cli/import_run.h"
#include "cli/messages.h"
#include "cli/output_guard.h"
#include "host/framework/file_exception.h"

namespace cli {

namespace {

// The format that was asked for, else that of the input where the name fits it,
// else the one whose extension the name has.
const FormatRow* output_format(std::span<const FormatRow> rows, const Arguments& arguments,
                               const FormatRow& input) {
  if (!arguments.to.empty()) {
    const FormatRow* const row = find_format(rows, arguments.to);
    if (row == nullptr) tell("there is no format \"" + arguments.to + "\"");
    return row;
  }
  if (fits_extension(input, arguments.output)) return &input;
  const FormatRow* const row = format_for_output(rows, arguments.output);
  if (row == nullptr) {
    tell("the name " + arguments.output + " does not say which format to write");
    hint("name it with --to; \"edlconv formats\" lists the formats");
  }
  return row;
}

std::size_t count_of(const CObList* list) {
  return list == nullptr ? 0 : static_cast<std::size_t>(list->GetCount());
}

// Tells of all that the list holds and the format does not carry; whether there was
// any.
bool tell_of_losses(const FormatRow& format, const CGenericEdl& edl) {
  struct Loss {
    bool carried;
    std::size_t count;
    const char* one;
    const char* many;
  };
  const Loss losses[] = {
      {format.carries.video, count_of(edl.get_video_list()), "video edit", "video edits"},
      {format.carries.locators, count_of(edl.get_locator_list()), "locator", "locators"},
      {format.carries.automation, count_of(edl.get_automation_list()), "run of automation",
       "runs of automation"},
      {format.carries.pq, count_of(edl.get_pq_list()), "disc index entry", "disc index entries"},
  };
  bool any = false;
  for (const Loss& loss : losses) {
    if (loss.carried || loss.count == 0) continue;
    any = true;
    warn(counted(loss.count, loss.one, loss.many) + " not written: " + std::string(format.title) +
         " has no place for them");
  }
  return any;
}

bool boxes_told_of_losses(const embedded::EmbeddedBoxes& boxes) {
  return boxes.suppressed() > 0 ||
         std::any_of(boxes.shown().begin(), boxes.shown().end(), [](const embedded::ShownBox& box) {
           return box.kind == embedded::BoxKind::error || box.kind == embedded::BoxKind::warning;
         });
}

std::unique_ptr<CGenericEdl> exporter(const FormatRow& format, CGenericEdl& root,
                                      const Arguments& arguments) {
  auto edl = format.make(&root, 0, arguments.format);
  EDL_DETAILS details;
  root.get_edl_details(&details);
  details.interactive = 0;
  edl->set_edl_details(&details);
  return edl;
}

// Runs the export; exit_done when the file stands whole.
ExitCode write_list(const FormatRow& format, CGenericEdl& root, const Arguments& arguments) {
  OutputGuard guard(format.outputs(arguments.output));
  if (!guard.ready()) return exit_failed;
  const auto edl = exporter(format, root, arguments);
  try {
    errno = 0;
    const result_code code =
        edl->export_edl(text_from_utf8(arguments.output).c_str(), arguments.export_flag);
    if (code == result::not_done || code == result::not_opened) {
      tell(arguments.output + " could not be written" +
           (errno == 0 ? "" : std::string(": ") + std::strerror(errno)));
      return exit_failed;
    }
    if (code != result::done) {
      tell("the list does not fit the format " + std::string(format.title) + " (result " +
           std::to_string(code) + "); nothing was written");
      return exit_failed;
    }
  } catch (const CFileException& failure) {
    tell(arguments.output +
         " could not be written: " + std::strerror(static_cast<int>(failure.m_lOsError)));
    return exit_failed;
  }
  if (edl->output_incomplete() != 0) {
    tell(arguments.output + " could not be written to its end; is the disk full?");
    return exit_failed;
  }
  guard.commit();
  return exit_done;
}

}  // namespace

int convert(std::span<const FormatRow> rows, const Arguments& arguments,
            embedded::EmbeddedHost& host) {
  tell_of_files_set_aside(arguments.output);
  const ImportRun run = import_list(rows, arguments);
  if (run.exit != exit_done) return run.exit;
  const FormatRow* const format = output_format(rows, arguments, *run.format);
  if (format == nullptr) return exit_usage;
  if (!format->exports) {
    tell(std::string(format->title) + " can only be read");
    return exit_usage;
  }
  const bool losses = tell_of_losses(*format, *run.edl);
  if (const std::uint16_t skipped = run.edl->skipped_count(); skipped > 0) {
    warn(counted(skipped, "line has", "lines have") + " a channel field of no known form");
  }
  const ExitCode written = write_list(*format, *run.edl, arguments);
  if (written != exit_done) return written;
  const bool complete =
      !losses && run.edl->skipped_count() == 0 && !boxes_told_of_losses(host.boxes());
  return complete ? exit_done : exit_incomplete;
}

}  // namespace cli
