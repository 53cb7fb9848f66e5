// Reports: their folder, and the program that shows them.
#pragma once

#include <string>
#include <vector>

#include "embedded/options.h"
#include "embedded/terminal.h"
#include "host/viewer.h"

namespace embedded {

class EmbeddedViewer final : public Viewer {
 public:
  // Not owned.
  EmbeddedViewer(const EmbeddedOptions& options, Terminal& terminal);

  // The fixed name in the report folder, which is made here. Where it cannot be
  // made, writing the report will fail, and that is told by the library.
  CString report_path(const wide_char* fixed_path) override;
  // Makes a copy of the report that a browser can read and tells where it lies.
  // Launches the viewer when a person sits at the terminal or the options ask for
  // it; otherwise that is all, and counts as success.
  int open(const wide_char* path, const wide_char* verb, int show_command,
           bool with_owner) override;
  int date_order() override;
  int clock_form() override;

  // The readable copies made so far.
  [[nodiscard]] const std::vector<std::string>& reports() const { return reports_; }

 private:
  const EmbeddedOptions& options_;
  Terminal& terminal_;
  std::vector<std::string> reports_;
};

// "a.htm" gives "a.view.htm".
[[nodiscard]] std::string readable_copy_path(const std::string& report);

// Runs a program on a file, without a terminal of its own. Waits up to five
// seconds for what it says; a viewer that runs longer has opened. The answers are
// those of Viewer::open.
[[nodiscard]] int launch_viewer(const std::string& program, const std::string& file);

// Of a date or time format of the locale ("%d.%m.%Y", "%r"), as Viewer has it.
[[nodiscard]] int date_order_of(std::string_view format);
[[nodiscard]] int clock_form_of(std::string_view format);

}  // namespace embedded
