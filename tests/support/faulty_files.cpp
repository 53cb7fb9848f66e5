#include "tests/support/faulty_files.h"

namespace support {

FaultyFiles::FaultyFiles(Operation operation, int nth, int error, After after)
    : before_(file_faults()), operation_(operation), nth_(nth), error_(error), after_(after) {
  set_file_faults(this);
}

FaultyFiles::~FaultyFiles() {
  set_file_faults(before_);
}

int FaultyFiles::next(Operation operation) {
  if (operation != operation_) return 0;
  ++count_;
  const bool fails =
      nth_ > 0 && (count_ == nth_ || (count_ > nth_ && after_ == After::keep_failing));
  if (!fails) return 0;
  ++failed_;
  return error_;
}

}  // namespace support
