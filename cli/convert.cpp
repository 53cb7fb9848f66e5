#include <csignal>

#include "cli/commands.h"
#include "cli/file_checks.h"
#include "cli/import_run.h"
#include "cli/media_report.h"
#include "cli/messages.h"
#include "cli/outcome.h"
#include "cli/output_guard.h"
#include "core/generic_edl_entry.h"
#include "host/framework/file_exception.h"

namespace cli {

namespace {

// Tells that no format, or none that can be written, was named.
const FormatRow* named_format(std::span<const FormatRow> rows, const std::string& name) {
  const FormatRow* const row = find_format(rows, name);
  if (row != nullptr && row->exports) return row;
  tell(row == nullptr ? "there is no format \"" + name + "\"; \"edlconv formats\" lists them"
                      : std::string(row->title) + " can only be read");
  return nullptr;
}

// The format of the input where the name fits it, else the first one whose extension
// the name has. Null with the reason told.
const FormatRow* format_by_name(std::span<const FormatRow> rows, const std::string& path,
                                const FormatRow& input) {
  if (input.exports && fits_extension(input, path)) return &input;
  const FormatRow* const row = format_for_output(rows, path);
  if (row == nullptr) {
    tell("the name " + path + " does not say which format to write");
    hint("--to names it; \"edlconv formats\" lists the formats");
  }
  return row;
}

// Hands each edit the audio of its path, or what stands for audio that is missing. Whether
// all was found; what was not is told.
bool find_audio(const CGenericEdl& edl, embedded::MediaLibrary& media) {
  bool all = true;
  for (const MediaRow& row : find_media(edl, media)) {
    if (row.found) continue;
    warn("no audio for " + row.path + ": " + row.reason);
    all = false;
  }
  if (!all) hint("--media names a folder to look in");
  std::size_t nameless = 0;
  const CObList* const list = edl.get_generic_entry_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    auto* const entry = static_cast<CGenericEdlEntry*>(list->GetNext(at));
    if (entry->audio_content != nullptr) continue;
    if (field_text(entry->file_path).empty()) ++nameless;
    entry->audio_content = media.absent();
  }
  if (nameless > 0) warn(counted(nameless, "edit names", "edits name") + " no audio, clip or reel");
  return all && nameless == 0;
}

// An object of the format that works on the root's lists at the root's rates.
std::unique_ptr<CGenericEdl> exporter(const FormatRow& format, CGenericEdl& root,
                                      const Arguments& arguments) {
  auto edl = format.make(&root, 0, arguments.format);
  EDL_DETAILS details;
  root.get_edl_details(&details);
  details.interactive = 0;
  edl->set_edl_details(&details);
  return edl;
}

// Runs the export. True when the system took every byte.
bool export_to(CGenericEdl& edl, const FormatRow& format, const std::string& path, int flag) {
  try {
    const result_code code = edl.export_edl(path_for(format, path).c_str(), flag);
    if (code != result::done) {
      tell(why_not_exported(format, path, code));
      return false;
    }
  } catch (const CFileException& failure) {
    tell(path + " could not be written: " + error_text(static_cast<int>(failure.m_lOsError)));
    return false;
  }
  if (edl.output_incomplete() != 0) {
    tell(path + " could not be written to its end; there may be no room left");
    return false;
  }
  return true;
}

// Whether nothing stands in the way of writing these files; what does is told.
bool are_writable(const std::vector<std::string>& outputs) {
  for (const std::string& output : outputs) {
    if (const std::string reason = why_unwritable(output); !reason.empty()) {
      tell(reason);
      return false;
    }
    tell_of_files_set_aside(output);
  }
  return true;
}

bool write_list(const FormatRow& format, CGenericEdl& root, const Arguments& arguments) {
  const std::string& path = arguments.output;
  const std::vector<std::string> outputs = format.outputs(path);
  OutputGuard guard(outputs);
  if (!guard.ready()) return false;
  const auto edl = exporter(format, root, arguments);
  host().message_boxes().note_place(text_from_utf8(outputs.front()).c_str(), 0);
  if (!export_to(*edl, format, path, arguments.export_flag) || !guard.commit()) return false;
  if (outputs.front() != path) hint("the list is written as " + outputs.front());
  if (const std::string remark = format.remark(*edl); !remark.empty())
    warn(outputs.front() + " is written, but " + remark);
  return true;
}

}  // namespace

int convert(std::span<const FormatRow> rows, const Arguments& arguments,
            embedded::EmbeddedHost& host) {
  // Whoever reads the messages may go; a file that grows too large is told of.
  for (const int signal : {SIGPIPE, SIGXFSZ})
    std::signal(signal, SIG_IGN);
  const FormatRow* format = nullptr;
  if (!arguments.to.empty()) {
    format = named_format(rows, arguments.to);
    if (format == nullptr) return exit_usage;
  }
  const InputFile input = open_input(rows, arguments);
  if (input.exit != exit_done) return input.exit;
  if (format == nullptr) format = format_by_name(rows, arguments.output, *input.format);
  if (format == nullptr) return exit_usage;
  if (!are_writable(format->outputs(arguments.output))) return exit_failed;
  const ImportRun run = import_list(input, arguments);
  const bool dropped = tell_of_import_report(*run.format, run.exit == exit_done, host.reports());
  if (run.exit != exit_done) return run.exit;
  const bool losses = tell_of_losses(*format, *run.edl) || dropped;
  if (const std::string given = format->complete(*run.edl, arguments.format); !given.empty())
    hint(given);
  const bool audio = !format->wants_audio || find_audio(*run.edl, host.media());
  if (!write_list(*format, *run.edl, arguments)) return exit_failed;
  const bool reports =
      tell_of_reports(host.boxes(), run.edl->skipped_count(), arguments.output + " is written");
  return losses || reports || !audio ? exit_incomplete : exit_done;
}

}  // namespace cli
