// The report of an AAF import or export: one HTML file that tells who made the AAF and
// what went wrong, shown to the person at the end of the job.
//
// Order of use: make, fill, write_report, launch_report, delete.
#pragma once

#include <cstdint>

#include "aafobj/api/aaf_forward.h"
#include "core/generic_edl.h"
#include "host/framework/collections.h"
#include "host/framework/string.h"

struct CAAFErrorLog {
  std::uint32_t value = 0;
  // Of the column in front: 0 error, 1 warning, anything else none.
  std::uint32_t severity = 0;
  CString description;
};

// A date of the file that is no date.
struct AAFReportFailure {
  HRESULT code;
};

class EDL_API CAAFLogger : public CGenericEdl {
 public:
  struct Time {
    std::uint16_t year = 1970;
    std::uint8_t month = 1;
    std::uint8_t day = 1;
    std::uint8_t hour = 0;
    std::uint8_t minute = 0;
    std::uint8_t second = 0;
  };

  // 1 for the report of an import, 0 for that of an export.
  explicit CAAFLogger(int import);
  // Deletes the rows.
  ~CAAFLogger() override;

  // Also takes the name behind the last "/", or else behind the last "\", or else all.
  void set_file_path(const wide_char* path);
  // Year, month, day, hour, minute and second from bits 0, 16, 24, 32, 40 and 48.
  void set_creation_time(std::uint64_t packed) { creation_time_ = unpacked(packed); }
  void set_modification_time(std::uint64_t packed) { modification_time_ = unpacked(packed); }
  void set_implementation_version(std::uint16_t major, std::uint16_t minor, std::uint16_t tertiary,
                                  std::uint16_t patch);

  // Writes the report, under a name made from the AAF file's, in the host's report
  // folder. 1 when the file was written, 0 when not. Throws AAFReportFailure for a
  // modification time with a part out of range (0x80004005), or which the calendar does
  // not have (0x80070057).
  [[nodiscard]] int write_report();
  // Opens it in the person's viewer. 0 when a box had to say why not, otherwise 1.
  int launch_report();

  [[nodiscard]] const CString& file_name() const { return file_name_; }
  [[nodiscard]] const CString& file_path() const { return file_path_; }
  // Where write_report put it; empty before.
  [[nodiscard]] const CString& report_path() const { return report_path_; }
  [[nodiscard]] const Time& creation_time() const { return creation_time_; }
  [[nodiscard]] const Time& modification_time() const { return modification_time_; }

  // Nonzero: there is something to report, so the report is written.
  std::uint32_t has_report = 1;
  // Of the AAF file.
  std::uint8_t aaf_major = 0;
  std::uint8_t aaf_minor = 0;
  CString company_name;
  CString product_name;
  CString product_version;
  CString platform;
  // Nonzero: the file is labelled as Edit Protocol.
  std::uint32_t edit_protocol = 0;
  // Owned, in order of arrival.
  CList<CAAFErrorLog*, CAAFErrorLog*> rows;

 private:
  static Time unpacked(std::uint64_t packed);

  [[nodiscard]] CString report_name() const;
  [[nodiscard]] std::u16string head() const;
  [[nodiscard]] std::u16string identification() const;
  [[nodiscard]] std::u16string reports() const;
  [[nodiscard]] std::u16string title() const;

  std::int32_t import_;
  CString file_name_;
  CString file_path_;
  CString report_path_;
  Time creation_time_;
  std::uint16_t implementation_version_[4] = {};
  Time modification_time_;
};
