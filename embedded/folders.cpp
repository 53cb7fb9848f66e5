#include "embedded/folders.h"

#include <algorithm>
#include <filesystem>

#include "embedded/raw_audio.h"

namespace embedded {

class EmbeddedFolders::Folder final : public HostFolder {
 public:
  explicit Folder(std::string path) : path_(std::move(path)) {}
  // Absolute, without a closing "/".
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

EmbeddedFolders::EmbeddedFolders() = default;
EmbeddedFolders::~EmbeddedFolders() = default;

void EmbeddedFolders::local_path(HostFolder* folder, wide_char* out, std::size_t size) {
  const auto at = std::find_if(folders_.begin(), folders_.end(),
                               [folder](const auto& own) { return own.get() == folder; });
  const std::u16string path =
      at == folders_.end() ? std::u16string() : text_from_utf8("/" + (*at)->path() + "/");
  copy_text(out, size, path.size() < size ? std::u16string_view(path) : std::u16string_view());
}

HostFolder* EmbeddedFolders::find_folder(const wide_char* path) {
  return find(utf8_from_text({path, text_length(path)}));
}

HostFolder* EmbeddedFolders::find(const std::string& path) {
  std::error_code failure;
  const std::filesystem::path real = std::filesystem::canonical(path, failure);
  if (failure || !std::filesystem::is_directory(real, failure)) return nullptr;
  // The root is its own closing slash.
  const std::string name = real == "/" ? std::string() : real.string();
  for (const auto& folder : folders_) {
    if (folder->path() == name) return folder.get();
  }
  return folders_.emplace_back(std::make_unique<Folder>(name)).get();
}

HostFolder* EmbeddedFolders::nowhere() {
  // There is nothing below a device.
  const std::string name(inside_the_file);
  for (const auto& folder : folders_) {
    if (folder->path() == name) return folder.get();
  }
  return folders_.emplace_back(std::make_unique<Folder>(name)).get();
}

void EmbeddedFolders::note_raw_audio(const wide_char* path, const RawAudioFormat& format) {
  make_playable(utf8_from_text({path, text_length(path)}), format);
}

void EmbeddedFolders::refresh(HostFolder*) {
  if (on_refresh) on_refresh();
}

}  // namespace embedded
