#include "host/framework/stdio_file.h"

#include <algorithm>
#include <cstring>

CStdioFile::~CStdioFile() {
  try {
    Close();
  } catch (const CFileException&) {
    // A destructor has nobody to tell.
  }
}

bool CStdioFile::Open(const wide_char* path, unsigned flags, CFileException* error) {
  Close();
  read_at_ = read_end_ = write_end_ = 0;
  offset_ = 0;
  failed_ = 0;
  return CFile::Open(path, flags, error);
}

void CStdioFile::Close() {
  if (!is_open()) return;
  try {
    flush_bytes();
  } catch (...) {
    CFile::Close();
    throw;
  }
  CFile::Close();
}

std::uint64_t CStdioFile::Seek(std::int64_t offset, unsigned from) {
  flush_bytes();
  if (from == current) offset -= static_cast<std::int64_t>(read_end_ - read_at_);
  read_at_ = read_end_ = 0;
  offset_ = CFile::Seek(offset, from);
  return offset_;
}

std::uint64_t CStdioFile::GetPosition() const {
  return offset_ - (read_end_ - read_at_) + write_end_;
}

void CStdioFile::put_bytes(std::string_view bytes) {
  if (failed_ != 0) throw CFileException(CFileException::diskFull, failed_, GetFilePath());
  buffer_.resize(buffer_size);
  while (!bytes.empty()) {
    if (write_end_ == buffer_size) flush_bytes();
    const std::size_t part = std::min(bytes.size(), buffer_size - write_end_);
    std::memcpy(buffer_.data() + write_end_, bytes.data(), part);
    write_end_ += part;
    bytes.remove_prefix(part);
  }
}

void CStdioFile::flush_bytes() {
  if (write_end_ == 0) return;
  const auto count = static_cast<unsigned>(write_end_);
  write_end_ = 0;
  try {
    Write(buffer_.data(), count);
    offset_ += count;
  } catch (const CFileException& failure) {
    failed_ = failure.m_lOsError;
    throw CFileException(CFileException::diskFull, failed_, failure.m_strFileName);
  }
}

int CStdioFile::fill() {
  buffer_.resize(buffer_size);
  read_at_ = 0;
  read_end_ = Read(buffer_.data(), static_cast<unsigned>(buffer_size));
  offset_ += read_end_;
  return read_end_ == 0 ? -1 : static_cast<unsigned char>(buffer_[read_at_++]);
}
