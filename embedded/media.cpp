#include "embedded/media.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <span>

#include "host/text.h"

namespace embedded {

namespace {

using Extensions = std::span<const std::string_view>;

constexpr std::array<std::string_view, 12> all_extensions = {".wav",  ".bwf",  ".rf64", ".w64",
                                                             ".aif",  ".aiff", ".aifc", ".afc",
                                                             ".flac", ".sd2",  ".caf",  ".au"};
constexpr std::array<std::string_view, 3> wave = {".wav", ".bwf", ".rf64"};
constexpr std::array<std::string_view, 3> broadcast = {".bwf", ".wav", ".rf64"};
constexpr std::array<std::string_view, 3> aiff = {".aif", ".aiff", ".aifc"};
constexpr std::array<std::string_view, 4> aifc = {".afc", ".aifc", ".aif", ".aiff"};
constexpr std::array<std::string_view, 1> sound_designer = {".sd2"};

Extensions extensions_of(std::uint16_t source_type) {
  switch (source_type) {
    case 2:
      return wave;
    case 3:
      return aiff;
    case 7:
      return sound_designer;
    case 11:
      return broadcast;
    case 14:
      return aifc;
    default:
      return {};
  }
}

std::string folded(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), [](char c) {
    return static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
  });
  return out;
}

bool has_audio_extension(const std::string& name) {
  const std::string low = folded(name);
  return std::any_of(all_extensions.begin(), all_extensions.end(),
                     [&low](std::string_view extension) { return low.ends_with(extension); });
}

// The names that the last part of a path may have, best first.
std::vector<std::string> names_of(const std::string& stem, std::uint16_t source_type) {
  std::vector<std::string> names;
  if (has_audio_extension(stem)) names.push_back(stem);
  const Extensions own = extensions_of(source_type);
  for (const std::string_view extension : own)
    names.push_back(stem + std::string(extension));
  for (const std::string_view extension : all_extensions) {
    if (std::find(own.begin(), own.end(), extension) == own.end())
      names.push_back(stem + std::string(extension));
  }
  return names;
}

// The parts of a path between slashes of either kind. None when a part would climb
// out of the folder that is searched.
std::vector<std::string> parts_of(std::string_view path) {
  std::vector<std::string> parts;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find_first_of("/\\"), path.size());
    const std::string_view part = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    if (part == "..") return {};
    if (!part.empty() && part != ".") parts.emplace_back(part);
  }
  return parts;
}

int hex_digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// "%41" becomes "A"; a control character or half an escape stays as it stands.
std::string without_escapes(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '%' && i + 2 < text.size();
    const int high = escape ? hex_digit(text[i + 1]) : -1;
    const int low = escape ? hex_digit(text[i + 2]) : -1;
    if (low >= 0 && high >= 2) {
      out += static_cast<char>(static_cast<unsigned char>(high * 16 + low));
      i += 2;
    } else {
      out += text[i];
    }
  }
  return out;
}

class AbsentSource final : public CAudCnt {
 public:
  [[nodiscard]] bool is_available() const override { return false; }
  [[nodiscard]] std::uint32_t sample_rate() const override { return 0; }
  [[nodiscard]] bool get_format(AudioFormat& /*format*/) const override { return false; }
  [[nodiscard]] AudioFile* file() const override { return nullptr; }
};

}  // namespace

std::string FolderNames::find(const std::string& folder, const std::string& name) {
  std::error_code failure;
  if (std::filesystem::exists(folder + "/" + name, failure)) return name;
  auto at = folders_.find(folder);
  if (at == folders_.end()) {
    std::vector<std::string> all;
    for (std::filesystem::directory_iterator each(folder, failure), end; !failure && each != end;
         each.increment(failure))
      all.push_back(each->path().filename().string());
    std::sort(all.begin(), all.end());
    at = folders_.emplace(folder, Names()).first;
    for (const std::string& one : all)
      at->second.emplace(folded(one), one);
  }
  const auto found = at->second.find(folded(name));
  return found == at->second.end() ? std::string() : found->second;
}

CAudCnt* MediaLibrary::find(std::u16string_view path, std::uint16_t source_type) {
  const auto key = std::make_pair(std::u16string(path), source_type);
  if (const auto at = known_.find(key); at != known_.end()) return at->second;
  const std::string plain = utf8_from_text(path);
  std::string unreadable;
  CAudCnt* source = search(plain, source_type, unreadable);
  // Formats with fields of a fixed width pad them.
  const std::string unpadded = utf8_from_text(trimmed_right(path));
  if (source == nullptr && unpadded != plain) source = search(unpadded, source_type, unreadable);
  const std::string decoded = without_escapes(unpadded);
  if (source == nullptr && decoded != unpadded) source = search(decoded, source_type, unreadable);
  known_[key] = source;
  if (source == nullptr && told_.insert(plain).second) {
    missing_.push_back({plain, unreadable.empty() ? std::string("not found")
                                                  : unreadable + " cannot be read as audio"});
  }
  return source;
}

CAudCnt* MediaLibrary::absent() {
  static AbsentSource source;
  return &source;
}

void MediaLibrary::forget() {
  names_.forget();
  std::erase_if(known_, [](const auto& row) { return row.second == nullptr; });
  told_.clear();
  missing_.clear();
}

CAudCnt* MediaLibrary::search(const std::string& path, std::uint16_t source_type,
                              std::string& unreadable) {
  const Parts parts = parts_of(path);
  if (parts.empty()) return nullptr;
  // A path that begins with a drive is of another system.
  const bool has_drive = parts.front().ends_with(':');
  if (path.starts_with('/') && !has_drive) {
    CAudCnt* const source = search_below("", parts, 0, source_type, unreadable);
    if (source != nullptr) return source;
  }
  for (std::size_t first = 0; first < parts.size(); ++first) {
    for (const std::string& folder : options_.media_folders) {
      CAudCnt* const source = search_below(folder, parts, first, source_type, unreadable);
      if (source != nullptr) return source;
    }
  }
  return nullptr;
}

CAudCnt* MediaLibrary::search_below(const std::string& folder, const Parts& parts,
                                    std::size_t first, std::uint16_t source_type,
                                    std::string& unreadable) {
  std::string at = folder;
  for (std::size_t i = first; i + 1 < parts.size(); ++i) {
    const std::string name = names_.find(at.empty() ? "/" : at, parts[i]);
    if (name.empty()) return nullptr;
    at.append("/").append(name);
  }
  for (const std::string& wanted : names_of(parts.back(), source_type)) {
    const std::string name = names_.find(at.empty() ? "/" : at, wanted);
    if (name.empty()) continue;
    std::string file = at;
    file.append("/").append(name);
    CAudCnt* const source = audio_.source(file);
    if (source != nullptr) return source;
    if (unreadable.empty()) unreadable = file;
  }
  return nullptr;
}

}  // namespace embedded
