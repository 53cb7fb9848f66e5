// Reports for a person: where they lie, how they are opened, how dates look.
#pragma once

#include "host/api.h"
#include "host/framework/string.h"
#include "host/text.h"

class EDL_API Viewer {
 public:
  virtual ~Viewer() = default;
  // Where a report of a fixed name ("c:/aes31importlog.htm") really lies on this
  // system. The file name stays, the folder may be another.
  [[nodiscard]] virtual CString report_path(const wide_char* fixed_path) = 0;
  // Hands a file to the person's viewer. 33 and above is success; below, a
  // reason: 2 file not found, 3 path not found, 5 access denied, 31 no program
  // for this kind of file. `with_owner` tells whether the application's main
  // window owns the viewer.
  virtual int open(const wide_char* path, const wide_char* verb, int show_command,
                   bool with_owner) = 0;
  // 0 month-day-year, 1 day-month-year, 2 year-month-day.
  [[nodiscard]] virtual int date_order() = 0;
  // 0 for a 12-hour clock, 1 for a 24-hour clock.
  [[nodiscard]] virtual int clock_form() = 0;
};

// What a person is told of an answer of Viewer::open; null for 33 and above, and for an
// answer that has no words.
EDL_API const wide_char* viewer_refusal(int answer);
