// Lets a test make the nth file operation fail. Nothing is set in use.
#pragma once

#include "host/api.h"

class EDL_API FileFaults {
 public:
  enum class Operation { open, read, write };
  virtual ~FileFaults() = default;
  // The errno with which this operation is to fail, or 0 to let it through.
  virtual int next(Operation operation) = 0;
};

// Not owned; null switches faults off.
EDL_API void set_file_faults(FileFaults* faults);
EDL_API FileFaults* file_faults();
