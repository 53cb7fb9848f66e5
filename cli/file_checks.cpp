#include "cli/file_checks.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "host/text.h"

namespace cli {

namespace {

// As the system has it before it gives up.
constexpr int most_links = 40;

// The library takes paths as 16-bit text, through which only UTF-8 comes unharmed.
bool is_utf8(const std::string& path) {
  return utf8_from_text(text_from_utf8(path)) == path;
}

}  // namespace

std::string folder_of(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string real_path(const std::string& path) {
  std::filesystem::path at = path;
  std::error_code error;
  for (int links = 0; links < most_links; ++links) {
    const std::filesystem::path target = std::filesystem::read_symlink(at, error);
    if (error) return at.string();
    at = target.is_absolute() ? target : at.parent_path() / target;
  }
  return path;
}

std::string error_text(int error) {
  return std::generic_category().message(error);
}

std::string why_unreadable(const std::string& path) {
  struct stat about {};
  if (!is_utf8(path)) return "the name " + path + " is not UTF-8; give the file another name";
  if (::stat(path.c_str(), &about) != 0) return path + ": " + error_text(errno);
  if (S_ISDIR(about.st_mode)) return path + " is a folder";
  // The head is looked at before the list is read, and a pipe can be read but once.
  if (!S_ISREG(about.st_mode)) return path + " is not a plain file; save it to one first";
  const int opened = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (opened < 0) return path + ": " + error_text(errno);
  ::close(opened);
  return {};
}

std::string why_unwritable(const std::string& given) {
  struct stat about {};
  if (!is_utf8(given)) return "the name " + given + " is not UTF-8; choose another";
  const std::string path = real_path(given);
  const bool exists = ::stat(path.c_str(), &about) == 0;
  if (path.empty() || path.back() == '/' || (exists && S_ISDIR(about.st_mode))) {
    return path.empty() ? "the name of the list to write is empty" : path + " is a folder";
  }
  // A device is written as it stands; nothing is put beside it.
  if (exists && !S_ISREG(about.st_mode)) return {};
  const std::string folder = folder_of(path);
  const std::string refused = path + " cannot be written: ";
  if (::stat(folder.c_str(), &about) != 0) {
    return refused + "folder " + folder + ": " + error_text(errno);
  }
  if (!S_ISDIR(about.st_mode)) return refused + folder + " is not a folder";
  if (::access(folder.c_str(), W_OK | X_OK) != 0) {
    return refused + "folder " + folder + ": " + error_text(errno);
  }
  return {};
}

std::string why_not_made(const std::string& path) {
  const int opened = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  if (opened < 0) return error_text(errno);
  ::close(opened);
  return {};
}

std::u16string path_for(const FormatRow& format, const std::string& path) {
  std::error_code failure;
  const std::filesystem::path whole = std::filesystem::absolute(path, failure);
  return text_from_utf8(format.names_places && !failure ? whole.lexically_normal().string() : path);
}

}  // namespace cli
