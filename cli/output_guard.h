// Keeps what stood where an export writes. The export runs under the real names,
// which several formats write into the file; so the old files are first set aside
// under names that say what they are ("film.edl.before-edlconv").
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/rescue.h"

namespace cli {

class OutputGuard {
 public:
  // `outputs` are the files that the export may write, the list itself first. Those
  // that stand there are set aside. What is no plain file, such as a device, is left
  // alone.
  explicit OutputGuard(const std::vector<std::string>& outputs);
  // Without a commit: removes what was written and brings the old files back. So
  // does a signal that ends the program.
  ~OutputGuard();
  OutputGuard(const OutputGuard&) = delete;
  OutputGuard& operator=(const OutputGuard&) = delete;

  // False, with the reason told, when an old file could not be set aside.
  [[nodiscard]] bool ready() const { return ready_; }
  // The export succeeded: once the new files are safe on the disk, they take over
  // owner and mode of the old ones, which go. An old file that was not written anew
  // comes back. False, with the reason told and all as before, when the list is not
  // there or cannot be brought to the disk.
  [[nodiscard]] bool commit();

 private:
  bool set_aside(const std::string& path);
  bool bring_to_disk() const;
  void restore();

  std::string list_;
  std::vector<KeptFile> kept_;
  std::optional<Rescue> rescue_;
  bool ready_ = true;
};

// Tells of files that an earlier run, which was killed, has set aside for `path`.
void tell_of_files_set_aside(const std::string& path);

}  // namespace cli
