#include "aafobj/container/raw_storage.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace aafobj {

namespace {

constexpr std::uint64_t k_largest_offset = std::numeric_limits<::off_t>::max();

Result from_errno(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return Result::not_found;
    case EEXIST:
      return Result::already_exists;
    case EACCES:
    case EPERM:
    case EROFS:
      return Result::access_denied;
    case ENOSPC:
    case EDQUOT:
      return Result::no_space;
    case EFBIG:
      return Result::too_large;
    case EISDIR:
      return Result::invalid_argument;
    default:
      return Result::io_error;
  }
}

class DiskStorage final : public RawStorage {
 public:
  DiskStorage(int descriptor, bool writable) : m_descriptor(descriptor), m_writable(writable) {}
  ~DiskStorage() override { ::close(m_descriptor); }

  Result read_at(std::uint64_t position, std::span<std::byte> out, std::size_t& count) override {
    count = 0;
    if (position > k_largest_offset - out.size()) return Result::ok;
    while (count < out.size()) {
      const ::ssize_t got = ::pread(m_descriptor, out.data() + count, out.size() - count,
                                    static_cast<::off_t>(position + count));
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) return from_errno(errno);
      if (got == 0) break;
      count += static_cast<std::size_t>(got);
    }
    return Result::ok;
  }

  Result write_at(std::uint64_t position, std::span<const std::byte> bytes) override {
    if (!m_writable) return Result::read_only;
    if (position > k_largest_offset - bytes.size()) return Result::too_large;
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ::ssize_t put = ::pwrite(m_descriptor, bytes.data() + done, bytes.size() - done,
                                     static_cast<::off_t>(position + done));
      if (put < 0 && errno == EINTR) continue;
      if (put < 0) return from_errno(errno);
      if (put == 0) return Result::io_error;
      done += static_cast<std::size_t>(put);
    }
    return Result::ok;
  }

  Result size(std::uint64_t& bytes) override {
    struct ::stat status = {};
    if (::fstat(m_descriptor, &status) != 0) return from_errno(errno);
    bytes = static_cast<std::uint64_t>(status.st_size);
    return Result::ok;
  }

  Result set_size(std::uint64_t bytes) override {
    if (!m_writable) return Result::read_only;
    if (bytes > k_largest_offset) return Result::too_large;
    while (::ftruncate(m_descriptor, static_cast<::off_t>(bytes)) != 0) {
      if (errno != EINTR) return from_errno(errno);
    }
    return Result::ok;
  }

  Result synchronize() override {
    return ::fsync(m_descriptor) == 0 ? Result::ok : from_errno(errno);
  }

  bool writable() const override { return m_writable; }

 private:
  int m_descriptor;
  bool m_writable;
};

int open_flags(DiskMode mode) {
  switch (mode) {
    case DiskMode::modify:
      return O_RDWR;
    case DiskMode::create_new:
      return O_RDWR | O_CREAT | O_EXCL;
    case DiskMode::create_over:
      return O_RDWR | O_CREAT;
    case DiskMode::read:
      break;
  }
  return O_RDONLY;
}

}  // namespace

Result MemoryStorage::read_at(std::uint64_t position, std::span<std::byte> out,
                              std::size_t& count) {
  count = 0;
  if (position >= m_bytes.size()) return Result::ok;
  const auto start = position;
  count = std::min(out.size(), m_bytes.size() - start);
  if (count != 0) std::memcpy(out.data(), m_bytes.data() + start, count);
  return Result::ok;
}

Result MemoryStorage::write_at(std::uint64_t position, std::span<const std::byte> bytes) {
  if (!m_writable) return Result::read_only;
  if (bytes.empty()) return Result::ok;
  if (position > std::numeric_limits<std::uint64_t>::max() - bytes.size()) return Result::too_large;
  if (const std::uint64_t end = position + bytes.size(); end > m_bytes.size()) {
    if (const Result r = set_size(end); r != Result::ok) return r;
  }
  std::memcpy(m_bytes.data() + position, bytes.data(), bytes.size());
  return Result::ok;
}

Result MemoryStorage::size(std::uint64_t& bytes) {
  bytes = m_bytes.size();
  return Result::ok;
}

// Growing is the one place where a caller's size turns into memory, so a
// refusal by the allocator is a result here and not an exception.
Result MemoryStorage::set_size(std::uint64_t bytes) {
  if (!m_writable) return Result::read_only;
  try {
    if (bytes > m_bytes.capacity()) {
      m_bytes.reserve(std::max(bytes, m_bytes.capacity() * 2));
    }
    m_bytes.resize(bytes);
  } catch (const std::bad_alloc&) {
    return Result::no_space;
  } catch (const std::length_error&) {
    return Result::too_large;
  }
  return Result::ok;
}

Result open_disk_storage(const std::filesystem::path& path, DiskMode mode,
                         std::shared_ptr<RawStorage>& storage) {
  // Not blocking, so that a pipe of that name cannot hang the caller.
  const int flags = open_flags(mode) | O_CLOEXEC | O_NONBLOCK;
  const int descriptor = ::open(path.c_str(), flags, 0666);
  if (descriptor < 0) return from_errno(errno);
  auto disk = std::make_shared<DiskStorage>(descriptor, mode != DiskMode::read);
  struct ::stat status = {};
  if (::fstat(descriptor, &status) != 0) return from_errno(errno);
  if (!S_ISREG(status.st_mode)) return Result::invalid_argument;
  if (mode == DiskMode::create_over) {
    if (const Result r = disk->set_size(0); r != Result::ok) return r;
  }
  storage = std::move(disk);
  return Result::ok;
}

}  // namespace aafobj
