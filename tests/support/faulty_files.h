// Makes the nth open, read or write of the framework's files fail.
#pragma once

#include <cerrno>

#include "host/framework/file_faults.h"

namespace support {

// In force while it lives; restores what was in force before.
class FaultyFiles final : public FileFaults {
 public:
  enum class After { recover, keep_failing };

  // Operations of the kind count from 1; an nth of 0 never fails and only counts.
  FaultyFiles(Operation operation, int nth, int error = EIO, After after = After::recover);
  ~FaultyFiles() override;
  FaultyFiles(const FaultyFiles&) = delete;
  FaultyFiles& operator=(const FaultyFiles&) = delete;

  int next(Operation operation) override;

  // How many operations of the kind there were, and how many of them failed.
  [[nodiscard]] int count() const { return count_; }
  [[nodiscard]] int failed() const { return failed_; }

 private:
  FileFaults* before_;
  Operation operation_;
  int nth_;
  int error_;
  After after_;
  int count_ = 0;
  int failed_ = 0;
};

}  // namespace support
