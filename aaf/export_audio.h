// The audio files that one export has written beside its AAF file.
//
// A file that stood there before is not ours: it stays, unless the host lets it be
// replaced, and then it comes back when the export does not succeed.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace aaf {

class ExternalAudio {
 public:
  // `folder` as folder_of has it.
  explicit ExternalAudio(std::u16string_view folder);
  // Removes what was written and brings back what was replaced, unless keep was called.
  ~ExternalAudio();
  ExternalAudio(const ExternalAudio&) = delete;
  ExternalAudio& operator=(const ExternalAudio&) = delete;

  // Names have no folder. Letters of either case count as one: the files may go to a
  // system that has none.
  [[nodiscard]] bool has_written(std::u16string_view name) const;
  [[nodiscard]] bool exists(std::u16string_view name) const;
  // To be called before the file is made, so that the host knows of it.
  void note_written(std::u16string_view name);

  // Moves an older file out of the way, if the host lets it be replaced. False when it
  // still stands there.
  [[nodiscard]] bool set_aside(std::u16string_view name);

  // The export succeeded: what was written stays, what was replaced goes.
  void keep();

 private:
  struct Replaced {
    std::string path;
    std::string aside;
  };

  [[nodiscard]] std::string path_of(std::u16string_view name) const;

  std::u16string m_folder;
  // By the name in lower case.
  std::unordered_map<std::u16string, std::u16string> m_written;
  std::vector<Replaced> m_replaced;
};

}  // namespace aaf
