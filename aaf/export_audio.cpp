#include "aaf/export_audio.h"

#include <filesystem>
#include <system_error>

#include "host/application.h"
#include "host/host.h"
#include "host/text.h"

namespace aaf {

namespace {

constexpr std::string_view aside_suffix = ".before-export";
constexpr int most_aside = 100;

bool is_there(const std::string& path) {
  std::error_code failure;
  return std::filesystem::exists(std::filesystem::symlink_status(path, failure));
}

void remove(const std::string& path) {
  std::error_code failure;
  std::filesystem::remove(path, failure);
}

bool rename(const std::string& from, const std::string& to) {
  std::error_code failure;
  std::filesystem::rename(from, to, failure);
  return !failure;
}

// A name that nobody has; empty when there are too many.
std::string aside_name(const std::string& path) {
  std::string aside = path;
  aside += aside_suffix;
  for (int number = 2; number <= most_aside; ++number) {
    if (!is_there(aside)) return aside;
    aside = path;
    aside.append(aside_suffix).append("-").append(std::to_string(number));
  }
  return {};
}

}  // namespace

ExternalAudio::ExternalAudio(std::u16string_view folder) : m_folder(folder) {}

ExternalAudio::~ExternalAudio() {
  for (const auto& [folded, name] : m_written)
    remove(path_of(name));
  for (const Replaced& file : m_replaced)
    rename(file.aside, file.path);
}

bool ExternalAudio::has_written(std::u16string_view name) const {
  return m_written.contains(folded_case(name));
}

bool ExternalAudio::exists(std::u16string_view name) const {
  return is_there(path_of(name));
}

void ExternalAudio::note_written(std::u16string_view name) {
  m_written.try_emplace(folded_case(name), name);
  host().application().note_audio_file(text_from_utf8(path_of(name)).c_str(), u"");
}

bool ExternalAudio::set_aside(std::u16string_view name) {
  const std::string path = path_of(name);
  if (has_written(name) || !host().application().may_replace_audio(text_from_utf8(path).c_str())) {
    return false;
  }
  const std::string aside = aside_name(path);
  if (aside.empty()) return false;
  host().application().note_audio_file(text_from_utf8(path).c_str(), text_from_utf8(aside).c_str());
  if (!rename(path, aside)) return false;
  m_replaced.push_back({path, aside});
  return true;
}

void ExternalAudio::keep() {
  m_written.clear();
  for (const Replaced& file : m_replaced)
    remove(file.aside);
  m_replaced.clear();
}

std::string ExternalAudio::path_of(std::u16string_view name) const {
  std::u16string path = m_folder;
  path += name;
  return utf8_from_text(path);
}

}  // namespace aaf
