// Finds the audio of edits under the folders that a person names.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/audio.h"
#include "embedded/options.h"

namespace embedded {

// The names in folders, read when they are first asked for, and found without
// regard to the case of ASCII letters: lists come from systems that have none.
class FolderNames {
 public:
  // The name in the folder that equals `name`, exactly if there is one, or but for
  // case; empty when there is none.
  [[nodiscard]] std::string find(const std::string& folder, const std::string& name);
  void forget() { folders_.clear(); }

 private:
  // By folded name; of several that fold alike the first in the order of bytes.
  using Names = std::map<std::string, std::string>;
  std::map<std::string, Names> folders_;
};

class MediaLibrary {
 public:
  struct Missing {
    // The path as the edit has it, and why there is no audio for it.
    std::string path;
    std::string reason;
  };

  // Neither is owned.
  MediaLibrary(const EmbeddedOptions& options, EmbeddedAudio& audio)
      : options_(options), audio_(audio) {}

  // The source of an edit's path, "//C:/audio/take 1" without an extension, by its
  // source type: 2 WAVE, 3 AIFF, 7 Sound Designer II, 11 Broadcast WAVE, 14 AIFC;
  // any other type takes what there is. Tried are the path itself on this system,
  // and under each folder the whole path, then ever fewer of its last parts. For
  // each, the extensions of the type come first, then the others. A ".." is not
  // followed. Null when nothing is found.
  [[nodiscard]] CAudCnt* find(std::u16string_view path, std::uint16_t source_type);

  // What stands for the audio of an edit that was not found: never available.
  [[nodiscard]] CAudCnt* absent();

  // The paths that were asked for and not found since the start or the last call of
  // forget, each once, in the order of asking.
  [[nodiscard]] const std::vector<Missing>& missing() const { return missing_; }

  // New files may have come: looks again for what was not found.
  void forget();

 private:
  using Parts = std::vector<std::string>;

  [[nodiscard]] CAudCnt* search(const std::string& path, std::uint16_t source_type,
                                std::string& unreadable);
  [[nodiscard]] CAudCnt* search_below(const std::string& folder, const Parts& parts,
                                      std::size_t first, std::uint16_t source_type,
                                      std::string& unreadable);

  const EmbeddedOptions& options_;
  EmbeddedAudio& audio_;
  FolderNames names_;
  std::map<std::pair<std::u16string, std::uint16_t>, CAudCnt*> known_;
  std::set<std::string> told_;
  std::vector<Missing> missing_;
};

}  // namespace embedded
