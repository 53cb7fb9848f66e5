// What a file operation raises. Thrown by value, caught by reference.
#pragma once

#include <exception>

#include "host/framework/string.h"

class EDL_API CFileException : public std::exception {
 public:
  enum Cause {
    none = 0,
    genericException = 1,
    fileNotFound = 2,
    accessDenied = 5,
    badSeek = 9,
    hardIO = 10,
    sharingViolation = 11,
    diskFull = 13,
  };

  CFileException() = default;
  CFileException(int cause, long os_error, CString file_name)
      : m_cause(cause), m_lOsError(os_error), m_strFileName(std::move(file_name)) {}

  [[nodiscard]] const char* what() const noexcept override { return "file operation failed"; }

  int m_cause = none;
  // errno of the failed call.
  long m_lOsError = 0;
  CString m_strFileName;
};
