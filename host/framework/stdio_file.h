// A file of bytes behind a buffer: bytes one by one in, texts out.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/framework/file.h"

class EDL_API CStdioFile : public CFile {
 public:
  CStdioFile() = default;
  // Writes what the buffer holds; a failure is lost here, so whoever must know
  // calls Close.
  ~CStdioFile() override;

  bool Open(const wide_char* path, unsigned flags, CFileException* error = nullptr) override;
  // Writes out the buffer and closes. Raises CFileException; the file is closed
  // all the same.
  void Close() override;
  std::uint64_t Seek(std::int64_t offset, unsigned from) override;
  [[nodiscard]] std::uint64_t GetPosition() const override;

  // One line of at most `max` units into `buffer`, or null at the end.
  virtual wide_char* ReadString(wide_char* buffer, unsigned max) = 0;
  // Writes a text. Raises CFileException.
  virtual void WriteString(std::u16string_view text) = 0;

 protected:
  // The next byte, or -1 at the end of the file.
  int get_byte() {
    return read_at_ < read_end_ ? static_cast<unsigned char>(buffer_[read_at_++]) : fill();
  }
  // Lets the byte that get_byte has just read be read again.
  void put_back() { --read_at_; }
  // The bytes that stand in the buffer, at least one unless the file has ended.
  // They stay until more are read from the file.
  std::string_view buffered();
  // Passes over that many of them.
  void consume(std::size_t count) { read_at_ += count; }
  // Raises CFileException of cause 13 with the system's error when the buffer
  // cannot be written, and from then on at once: what was lost stays lost.
  void put_bytes(std::string_view bytes);
  void flush_bytes();

 private:
  bool refill();
  int fill();

  static constexpr std::size_t buffer_size = 65536;
  std::string buffer_;
  // Of the file behind the buffer.
  std::uint64_t offset_ = 0;
  std::size_t read_at_ = 0;
  std::size_t read_end_ = 0;
  std::size_t write_end_ = 0;
  long failed_ = 0;
};
