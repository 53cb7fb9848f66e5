#include "aaf/aaf_tree.h"

#include "aafobj/dump/shown_text.h"
#include "aafobj/dump/tree_dump.h"
#include "cli/aaf_dump_bridge.h"
#include "cli/aaf_dump_writers.h"
#include "cli/commands.h"
#include "cli/exit_codes.h"
#include "cli/file_checks.h"
#include "cli/messages.h"

namespace cli {

namespace {

int refuse(const std::string& path, const std::string& why) {
  tell(path + ": cannot be read as an AAF file: " + why);
  return exit_bad_input;
}

// Why the file's tree could not be opened; empty when all that is there was told.
std::string dump_stored_objects(const Arguments& arguments, DumpWriter& writer) {
  std::unique_ptr<aafobj::CompoundFile> container;
  const aafobj::Result opened =
      aafobj::CompoundFile::open_disk(arguments.input, aafobj::Access::read, container);
  if (opened != aafobj::Result::ok) return aafobj::result_text(opened);
  std::unique_ptr<aafobj::ObjectFile> file;
  const AAFRESULT read = aafobj::ObjectFile::open(std::move(container), file);
  if (read < 0) return "its root or header: " + aafobj::shown(read);
  aafobj::StoredObject* top = nullptr;
  if (arguments.all || file->header(top) < 0) top = &file->root();
  DumpBridge bridge(writer);
  aafobj::dump_tree(*top, bridge);
  return {};
}

// The same by way of the library that the person names.
std::string dump_through_library(const Arguments& arguments, DumpWriter& writer) {
  const std::int32_t result = aaf::tell_tree(arguments.input, writer);
  return result < 0 ? aaf::result_words(result) : std::string();
}

}  // namespace

int dump_aaf(const Arguments& arguments) {
  std::string why = why_unreadable(arguments.input);
  if (!why.empty()) {
    tell(arguments.input + ": " + why);
    return exit_bad_input;
  }
  const std::unique_ptr<DumpWriter> writer =
      arguments.json ? make_json_dump_writer() : make_text_dump_writer();
  why = arguments.aaf_library.empty() ? dump_stored_objects(arguments, *writer)
                                      : dump_through_library(arguments, *writer);
  if (!why.empty()) return refuse(arguments.input, why);
  if (!writer->finish()) return exit_failed;
  if (writer->faults() == 0) return exit_done;
  tell(arguments.input + ": " +
       counted(writer->faults(), "value could not be read", "values could not be read"));
  return exit_incomplete;
}

}  // namespace cli
