// Folders of this system behind the host's folder handles.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/folders.h"

namespace embedded {

// The path of EmbeddedFolders::nowhere.
inline constexpr std::string_view inside_the_file = "/dev/null/inside the file";

class EmbeddedFolders final : public Folders {
 public:
  EmbeddedFolders();
  ~EmbeddedFolders() override;
  EmbeddedFolders(const EmbeddedFolders&) = delete;
  EmbeddedFolders& operator=(const EmbeddedFolders&) = delete;

  // The absolute path between two slashes in front and one behind: the form in
  // which the library keeps paths, and which the system opens as it stands. Empty
  // for null and for a path that does not fit.
  void local_path(HostFolder* folder, wide_char* out, std::size_t size) override;
  // Null when there is no such folder. The same folder is always the same handle.
  HostFolder* find_folder(const wide_char* path) override;
  void refresh(HostFolder* folder) override;
  void note_raw_audio(const wide_char* path, const RawAudioFormat& format) override;

  // As find_folder, for a path as the system has it.
  [[nodiscard]] HostFolder* find(const std::string& path);
  // A folder in which no file can be made, for a run that wants none.
  [[nodiscard]] HostFolder* nowhere();
  // Called when the library has put new files into a folder.
  std::function<void()> on_refresh;

 private:
  class Folder;
  std::vector<std::unique_ptr<Folder>> folders_;
};

}  // namespace embedded
