// A file of bytes, unbuffered. 64-bit positions. Share modes are advisory locks
// where the system has them.
#pragma once

#include <cstdint>

#include "host/framework/file_exception.h"
#include "host/framework/object.h"

class EDL_API CFile : public CObject {
 public:
  enum OpenFlags : unsigned {
    modeRead = 0x0000,
    modeWrite = 0x0001,
    modeReadWrite = 0x0002,
    shareExclusive = 0x0010,
    shareDenyWrite = 0x0020,
    shareDenyNone = 0x0040,
    modeCreate = 0x1000,
  };
  enum SeekPosition { begin = 0, current = 1, end = 2 };

  CFile() = default;
  ~CFile() override;
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;

  // Opens or creates. False when the system refuses, when another process holds
  // an advisory lock that the share mode excludes, or when `path` is a folder;
  // `error`, if given, then says why. modeCreate empties an existing file.
  [[nodiscard]] virtual bool Open(const wide_char* path, unsigned flags,
                                  CFileException* error = nullptr);
  // Closes; a later call does nothing. Raises CFileException when the system
  // reports a late write error.
  virtual void Close();

  // Bytes read, fewer than `count` only at the end of the file. Raises
  // CFileException.
  virtual unsigned Read(void* buffer, unsigned count);
  // Writes all of it or raises CFileException (cause 13 for a full disk).
  virtual void Write(const void* buffer, unsigned count);
  // The new position. A position past the end is legal. Raises CFileException
  // for one before the start.
  virtual std::uint64_t Seek(std::int64_t offset, unsigned from);
  [[nodiscard]] virtual std::uint64_t GetPosition() const;
  [[nodiscard]] std::uint64_t GetLength() const;

  [[nodiscard]] bool is_open() const { return descriptor_ >= 0; }
  [[nodiscard]] const CString& GetFilePath() const { return path_; }

  // Deletes a file. Raises CFileException when there is none or it cannot go.
  static void Remove(const wide_char* path);

 protected:
  [[noreturn]] void raise(int error) const;

 private:
  int descriptor_ = -1;
  CString path_;
};
