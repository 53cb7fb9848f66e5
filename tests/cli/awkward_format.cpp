#include "tests/cli/awkward_format.h"

#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <new>
#include <sstream>
#include <stdexcept>

#include "host/framework/file_exception.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/rates.h"

namespace {

constexpr std::string_view list_extension = ".awkward";
constexpr std::string_view renamed_extension = ".renamed";

std::string companion_of(const std::string& path) {
  return path + ".notes";
}

std::string renamed(const std::string& path) {
  return path.ends_with(list_extension)
             ? path.substr(0, path.size() - list_extension.size()) + std::string(renamed_extension)
             : path;
}

void append(const std::string& path, const char* text, std::ios::openmode mode) {
  std::ofstream file(path, std::ios::binary | mode);
  file << text;
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

class CAwkwardEdl : public CGenericEdl {
 public:
  CAwkwardEdl(CGenericEdl* parent, int interactive, bool renames)
      : CGenericEdl(parent, interactive), renames_(renames) {}

  result_code import_edl(const wide_char* path) override;
  result_code export_edl(const wide_char* path, int option) override;

 private:
  static void show_boxes();
  result_code finish(const std::string& path, int option);

  bool renames_;
};

result_code CAwkwardEdl::import_edl(const wide_char* path) {
  std::ifstream file(utf8_from_text(path), std::ios::binary);
  std::string head;
  std::string word;
  file >> head >> word;
  if (head != "AWKWARD") return result::wrong_format;
  if (word == "damaged") return result::damaged;
  if (word == "unread") return result::not_done;
  if (word == "failing") throw CFileException(CFileException::hardIO, EIO, CString(path));
  if (word == "boxes") show_boxes();
  if (word == "rates") {
    set_sample_rate_index(1);
    set_frame_rate(frame_rate_24);
  }
  return result::import_complete;
}

void CAwkwardEdl::show_boxes() {
  MessageBoxes& boxes = host().message_boxes();
  boxes.message(u"an error", BoxIcon::error, BoxButtons::ok);
  boxes.message(u"a warning", BoxIcon::warning, BoxButtons::ok);
  boxes.message(u"some information", BoxIcon::information, BoxButtons::ok);
  boxes.message(u"a question", BoxIcon::question, BoxButtons::yes_no_default_no);
}

result_code CAwkwardEdl::export_edl(const wide_char* wide_path, int option) {
  const std::string given = utf8_from_text(wide_path);
  const std::string path = renames_ ? renamed(given) : given;
  append(path, "AWKWARD ", std::ios::trunc);
  if (option != awkward_alone) append(companion_of(path), "half ", std::ios::trunc);
  return finish(path, option);
}

result_code CAwkwardEdl::finish(const std::string& path, int option) {
  switch (option) {
    case awkward_stall:
      append(path + ".half", "", std::ios::trunc);
      while (true)
        ::pause();
    case awkward_not_done:
      return result::not_done;
    case awkward_refused:
      return result::refused;
    case awkward_source_refused:
      return result::source_refused;
    case awkward_not_sd2:
      return result::not_sd2;
    case awkward_throw:
      throw CFileException(CFileException::diskFull, ENOSPC, CString(text_from_utf8(path)));
    case awkward_no_memory:
      throw std::bad_alloc();
    case awkward_incomplete:
      set_output_incomplete(1);
      return result::done;
    case awkward_vanish:
      ::unlink(path.c_str());
      return result::done;
    default:
      break;
  }
  append(path, "good\n", std::ios::app);
  if (option != awkward_alone) append(companion_of(path), "whole\n", std::ios::app);
  return result::done;
}

HeadMatch match_awkward(std::string_view head) {
  return head.starts_with("AWKWARD ") ? HeadMatch::certain : HeadMatch::none;
}

bool states_rates(std::string_view head) {
  return head.starts_with("AWKWARD rates");
}

template <bool renames>
std::unique_ptr<CGenericEdl> make_awkward(CGenericEdl* parent, int interactive,
                                          const FormatOptions&) {
  return std::make_unique<CAwkwardEdl>(parent, interactive, renames);
}

std::vector<std::string> outputs_with_companion(const std::string& path) {
  return {path, companion_of(path)};
}

// The renaming export may not touch what stands under the given name, but guards it.
std::vector<std::string> outputs_renamed(const std::string& path) {
  return {renamed(path), companion_of(renamed(path)), path};
}

}  // namespace

FormatRow awkward_row() {
  FormatRow row;
  row.name = "awkward";
  row.title = "Awkward list";
  row.extensions = {list_extension};
  row.make = make_awkward<false>;
  row.match = match_awkward;
  row.states_sample_rate = states_rates;
  row.states_frame_rate = states_rates;
  row.outputs = outputs_with_companion;
  return row;
}

FormatRow renaming_row() {
  FormatRow row = awkward_row();
  row.name = "renaming";
  row.extensions = {renamed_extension};
  row.make = make_awkward<true>;
  row.match = [](std::string_view) { return HeadMatch::none; };
  row.outputs = outputs_renamed;
  return row;
}

FormatRow reading_row() {
  FormatRow row = renaming_row();
  row.name = "reading";
  row.title = "Reading list";
  row.extensions = {".reading"};
  row.exports = false;
  return row;
}

FormatRow writing_row() {
  FormatRow row = renaming_row();
  row.name = "writing";
  row.title = "Writing list";
  row.extensions = {".writing", list_extension};
  row.imports = false;
  return row;
}
