// Reads a file front to back behind a buffer, with jumps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "host/framework/file.h"

namespace native {

class FileInput {
 public:
  static constexpr std::size_t most_taken = 65536;

  // The file must be open for reading and outlive this object. Every operation may
  // raise CFileException.
  explicit FileInput(CFile& file);

  // The next `count` bytes, at most most_taken, which stand until the next call.
  // Null, without moving on, when the file holds fewer.
  [[nodiscard]] const char* take(std::size_t count);
  // The same into memory of the caller's, in any number; false when the file holds
  // fewer, and the position is then at its end.
  [[nodiscard]] bool read(char* out, std::uint32_t count);
  // To any position; one past the end is the end.
  void seek(std::uint64_t position);
  void skip(std::uint64_t count) { seek(position() + count); }

  [[nodiscard]] std::uint64_t position() const { return m_start + m_at; }
  // Bytes behind the position.
  [[nodiscard]] std::uint64_t left() const {
    return position() < m_length ? m_length - position() : 0;
  }

 private:
  CFile& m_file;
  std::uint64_t m_length;
  std::unique_ptr<char[]> m_buffer;
  // Where the buffer stands in the file, what is read of it and what it holds.
  std::uint64_t m_start = 0;
  std::size_t m_at = 0;
  std::size_t m_end = 0;
};

}  // namespace native
