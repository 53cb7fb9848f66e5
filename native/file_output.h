// Gathers what is written and hands it to the file in large pieces.
#pragma once

#include <string>

#include "host/framework/file.h"

namespace native {

class FileOutput {
 public:
  // The file must be open for writing and outlive this object.
  explicit FileOutput(CFile& file) : m_file(file) {}

  // Append to this, then call write_when_full.
  std::string& bytes() { return m_bytes; }
  // Both raise CFileException.
  void write_when_full() {
    if (m_bytes.size() >= piece_size) write();
  }
  void write() {
    m_file.Write(m_bytes.data(), static_cast<unsigned>(m_bytes.size()));
    m_bytes.clear();
  }

 private:
  static constexpr std::size_t piece_size = 262144;

  CFile& m_file;
  std::string m_bytes;
};

}  // namespace native
