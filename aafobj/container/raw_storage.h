#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

#include "aafobj/container/result.h"

namespace aafobj {

/// A flat array of bytes that a compound file lives in. Positions and sizes
/// are in bytes. Not safe for use by two threads at once.
class RawStorage {
 public:
  RawStorage() = default;
  RawStorage(const RawStorage&) = delete;
  RawStorage& operator=(const RawStorage&) = delete;
  virtual ~RawStorage() = default;

  /// Reads from `position`; `count` is the number of bytes delivered, which is
  /// less than asked for only at the end.
  virtual Result read_at(std::uint64_t position, std::span<std::byte> out, std::size_t& count) = 0;

  /// Writes all of `bytes` or fails. Writing past the end grows the storage;
  /// bytes skipped over read as zero.
  virtual Result write_at(std::uint64_t position, std::span<const std::byte> bytes) = 0;

  virtual Result size(std::uint64_t& bytes) = 0;

  /// Cuts, or grows with zeros.
  virtual Result set_size(std::uint64_t bytes) = 0;

  /// Returns once what was written is on the medium.
  virtual Result synchronize() = 0;

  virtual bool writable() const = 0;
};

/// Bytes in memory. They stay readable through bytes() after the compound file
/// on them is closed.
class MemoryStorage final : public RawStorage {
 public:
  explicit MemoryStorage(std::vector<std::byte> bytes = {}, bool writable = true)
      : m_bytes(std::move(bytes)), m_writable(writable) {}

  Result read_at(std::uint64_t position, std::span<std::byte> out, std::size_t& count) override;
  Result write_at(std::uint64_t position, std::span<const std::byte> bytes) override;
  Result size(std::uint64_t& bytes) override;
  Result set_size(std::uint64_t bytes) override;
  Result synchronize() override { return Result::ok; }
  bool writable() const override { return m_writable; }

  const std::vector<std::byte>& bytes() const { return m_bytes; }

 private:
  std::vector<std::byte> m_bytes;
  bool m_writable;
};

enum class DiskMode : std::uint8_t {
  read,         ///< an existing file, for reading
  modify,       ///< an existing file, for reading and writing
  create_new,   ///< a new file; `already_exists` when there is one
  create_over,  ///< a new file; an existing one is emptied
};

/// Opens a file of the file system. Only regular files are taken.
/// Errors: not_found, already_exists, access_denied, no_space, io_error,
/// invalid_argument (not a regular file).
Result open_disk_storage(const std::filesystem::path& path, DiskMode mode,
                         std::shared_ptr<RawStorage>& storage);

}  // namespace aafobj
