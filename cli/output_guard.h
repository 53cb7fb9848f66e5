// Keeps what stood where an export writes. The export runs under the real names,
// which several formats write into the file; so the old files are first set aside
// under names that say what they are ("film.edl.before-edlconv").
#pragma once

#include <string>
#include <vector>

namespace cli {

class OutputGuard {
 public:
  // `outputs` are the files that the export may write. Those that stand there are
  // set aside. What is no plain file, such as a device, is left alone.
  explicit OutputGuard(std::vector<std::string> outputs);
  // Without a commit: removes what was written and brings the old files back.
  ~OutputGuard();
  OutputGuard(const OutputGuard&) = delete;
  OutputGuard& operator=(const OutputGuard&) = delete;

  // False, with the reason told, when an old file could not be set aside.
  [[nodiscard]] bool ready() const { return ready_; }
  // The export succeeded: the old files go.
  void commit();

 private:
  struct Kept {
    std::string path;
    // Empty when nothing stood there.
    std::string aside;
  };

  bool set_aside(const std::string& path);
  void restore();

  std::vector<Kept> kept_;
  bool ready_ = true;
  bool committed_ = false;
};

// Tells of files that an earlier run, which was killed, has set aside for `path`.
void tell_of_files_set_aside(const std::string& path);

}  // namespace cli
