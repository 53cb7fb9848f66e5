#include "cli/output_guard.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>

#include "cli/file_checks.h"
#include "cli/messages.h"

namespace cli {

namespace {

constexpr const char* aside_suffix = ".before-edlconv";
constexpr int most_aside = 100;

// The name under which the old file of `path` lies, from 1: those of killed runs
// stay where they are.
std::string aside_name(const std::string& path, int number) {
  const std::string suffix = aside_suffix + (number == 1 ? "" : "-" + std::to_string(number));
  const std::size_t slash = path.rfind('/');
  const std::size_t name = path.size() - (slash == std::string::npos ? 0 : slash + 1);
  const std::size_t surplus = name + suffix.size() > NAME_MAX ? name + suffix.size() - NAME_MAX : 0;
  return path.substr(0, path.size() - surplus) + suffix;
}

bool exists(const std::string& path) {
  struct stat about {};
  return ::lstat(path.c_str(), &about) == 0;
}

// Owner and mode as the old file had them, as far as the system lets us.
void take_over_rights(const std::string& from, const std::string& to) {
  struct stat old {};
  struct stat now {};
  if (::stat(from.c_str(), &old) != 0 || ::stat(to.c_str(), &now) != 0) return;
  const bool same_owner = old.st_uid == now.st_uid && old.st_gid == now.st_gid;
  // Whose owner cannot be kept must not become readable for that owner's group.
  const bool owner_kept = same_owner || ::chown(to.c_str(), old.st_uid, old.st_gid) == 0;
  const mode_t mode = old.st_mode & (owner_kept ? 0777U : 0700U | (now.st_mode & 077U));
  if (::chmod(to.c_str(), mode) != 0) warn(to + " has not the access rights of the old file");
}

// Room may only run out when the file really goes to the disk.
int error_of_sync(const std::string& path) {
  const int opened = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (opened < 0) return errno;
  // A file system that cannot do this has nothing to wait for.
  const int error = ::fsync(opened) == 0 || errno == EINVAL || errno == EROFS ? 0 : errno;
  ::close(opened);
  return error;
}

}  // namespace

OutputGuard::OutputGuard(const std::vector<std::string>& outputs)
    : list_(real_path(outputs.front())) {
  const SignalPause pause;
  for (const std::string& output : outputs) {
    if (!set_aside(real_path(output))) {
      ready_ = false;
      restore();
      return;
    }
  }
  rescue_.emplace(kept_);
}

bool OutputGuard::set_aside(const std::string& path) {
  struct stat about {};
  if (::stat(path.c_str(), &about) != 0) {
    if (errno != ENOENT) {
      tell(path + " cannot be written: " + error_text(errno));
      return false;
    }
    kept_.push_back({path, ""});
    return true;
  }
  if (S_ISDIR(about.st_mode)) {
    tell(path + " is a folder");
    return false;
  }
  if (!S_ISREG(about.st_mode)) return true;
  int number = 1;
  while (number <= most_aside && exists(aside_name(path, number)))
    ++number;
  const std::string aside = aside_name(path, number);
  if (number > most_aside) {
    tell("too many old files lie beside " + path + "; look at them and take them away");
    return false;
  }
  if (::rename(path.c_str(), aside.c_str()) != 0) {
    tell(path + " could not be set aside: " + error_text(errno));
    return false;
  }
  kept_.push_back({path, aside});
  return true;
}

bool OutputGuard::bring_to_disk() const {
  if (!exists(list_)) {
    tell(list_ + " was not written");
    return false;
  }
  for (const KeptFile& kept : kept_) {
    if (!exists(kept.path)) continue;
    if (const int error = error_of_sync(kept.path); error != 0) {
      tell(kept.path + " could not be brought to the disk: " + error_text(error));
      return false;
    }
  }
  return true;
}

bool OutputGuard::commit() {
  if (!bring_to_disk()) return false;
  const SignalPause pause;
  rescue_.reset();
  for (const KeptFile& kept : kept_) {
    if (kept.aside.empty()) continue;
    if (exists(kept.path)) {
      take_over_rights(kept.aside, kept.path);
      ::unlink(kept.aside.c_str());
    } else if (::rename(kept.aside.c_str(), kept.path.c_str()) != 0) {
      warn("the file that stood at " + kept.path + " now lies at " + kept.aside);
    }
  }
  kept_.clear();
  return true;
}

void OutputGuard::restore() {
  const SignalPause pause;
  rescue_.reset();
  for (const KeptFile& kept : kept_) {
    if (kept.aside.empty()) {
      ::unlink(kept.path.c_str());
    } else if (::rename(kept.aside.c_str(), kept.path.c_str()) != 0) {
      warn("the file that stood at " + kept.path + " now lies at " + kept.aside);
    }
  }
  kept_.clear();
}

OutputGuard::~OutputGuard() {
  restore();
}

void tell_of_files_set_aside(const std::string& path) {
  const std::string real = real_path(path);
  for (int number = 1; number <= most_aside; ++number) {
    const std::string aside = aside_name(real, number);
    if (!exists(aside)) continue;
    std::string words = "an earlier run was stopped while it wrote ";
    words.append(path).append("; the file that stood there before lies at ").append(aside);
    warn(words);
  }
}

}  // namespace cli
