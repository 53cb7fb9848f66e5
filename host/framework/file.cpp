#include "host/framework/file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "host/framework/file_faults.h"

namespace {

FileFaults* faults_in_force = nullptr;

int injected(FileFaults::Operation operation) {
  return faults_in_force == nullptr ? 0 : faults_in_force->next(operation);
}

int cause_of(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return CFileException::fileNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
      return CFileException::accessDenied;
    case EWOULDBLOCK:
      return CFileException::sharingViolation;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return CFileException::diskFull;
    case EINVAL:
      return CFileException::badSeek;
    default:
      return CFileException::hardIO;
  }
}

// 0 or the errno with which the lock was refused. A system without locks, such
// as some network folders, counts as one that grants them.
int take_lock(int descriptor, unsigned flags) {
  const unsigned share = flags & 0x70U;
  int operation = LOCK_UN;
  if (share == CFile::shareExclusive) operation = LOCK_EX;
  if (share == CFile::shareDenyWrite) operation = LOCK_SH;
  if (operation == LOCK_UN) return 0;
  if (::flock(descriptor, operation | LOCK_NB) == 0) return 0;
  return errno == EWOULDBLOCK ? EWOULDBLOCK : 0;
}

int open_modes(unsigned flags) {
  int modes = O_RDONLY;
  if ((flags & 3U) == CFile::modeWrite) modes = O_WRONLY;
  if ((flags & 3U) == CFile::modeReadWrite) modes = O_RDWR;
  if ((flags & CFile::modeCreate) != 0) modes |= O_CREAT;
  return modes | O_CLOEXEC;
}

// 0, or the errno with which the opened file cannot be used as asked. A file is
// emptied only once its lock is held: a refused open leaves it as it was.
int claim(int descriptor, unsigned flags) {
  struct stat about {};
  if (::fstat(descriptor, &about) != 0) return errno;
  if (S_ISDIR(about.st_mode)) return EISDIR;
  if (const int error = take_lock(descriptor, flags); error != 0) return error;
  const bool empty_it = (flags & CFile::modeCreate) != 0 && S_ISREG(about.st_mode);
  return empty_it && ::ftruncate(descriptor, 0) != 0 ? errno : 0;
}

}  // namespace

void set_file_faults(FileFaults* faults) {
  faults_in_force = faults;
}

FileFaults* file_faults() {
  return faults_in_force;
}

CFile::~CFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

bool CFile::Open(const wide_char* path, unsigned flags, CFileException* error) {
  Close();
  path_ = path;
  const std::string name = utf8_from_text(path_.view());
  int failure = injected(FileFaults::Operation::open);
  int opened = -1;
  if (failure == 0) {
    opened = ::open(name.c_str(), open_modes(flags), 0666);
    failure = opened < 0 ? errno : claim(opened, flags);
  }
  if (failure != 0) {
    if (opened >= 0) ::close(opened);
    if (error != nullptr) *error = CFileException(cause_of(failure), failure, path_);
    return false;
  }
  descriptor_ = opened;
  return true;
}

void CFile::Close() {
  if (descriptor_ < 0) return;
  const int closing = descriptor_;
  descriptor_ = -1;
  if (::close(closing) != 0 && errno != EINTR) raise(errno);
}

unsigned CFile::Read(void* buffer, unsigned count) {
  unsigned done = 0;
  while (done < count) {
    if (const int error = injected(FileFaults::Operation::read); error != 0) raise(error);
    const ssize_t got = ::read(descriptor_, static_cast<char*>(buffer) + done, count - done);
    if (got == 0) break;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) raise(errno);
    done += static_cast<unsigned>(got);
  }
  return done;
}

void CFile::Write(const void* buffer, unsigned count) {
  unsigned done = 0;
  while (done < count) {
    if (const int error = injected(FileFaults::Operation::write); error != 0) raise(error);
    const ssize_t put = ::write(descriptor_, static_cast<const char*>(buffer) + done, count - done);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) raise(errno);
    done += static_cast<unsigned>(put);
  }
}

std::uint64_t CFile::Seek(std::int64_t offset, unsigned from) {
  static constexpr int whence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
  const off_t at = ::lseek(descriptor_, offset, whence[from % 3]);
  if (at < 0) raise(errno);
  return static_cast<std::uint64_t>(at);
}

std::uint64_t CFile::GetPosition() const {
  const off_t at = ::lseek(descriptor_, 0, SEEK_CUR);
  if (at < 0) raise(errno);
  return static_cast<std::uint64_t>(at);
}

std::uint64_t CFile::GetLength() const {
  struct stat about {};
  if (::fstat(descriptor_, &about) != 0) raise(errno);
  return static_cast<std::uint64_t>(about.st_size);
}

void CFile::Remove(const wide_char* path) {
  const CString name(path);
  if (::unlink(utf8_from_text(name.view()).c_str()) != 0) {
    const int error = errno;
    throw CFileException(cause_of(error), error, name);
  }
}

void CFile::raise(int error) const {
  throw CFileException(cause_of(error), error, path_);
}
