#include "native/file_input.h"

#include <algorithm>

namespace native {

FileInput::FileInput(CFile& file)
    : m_file(file), m_length(file.GetLength()), m_buffer(new char[most_taken]) {}

const char* FileInput::take(std::size_t count) {
  if (m_end - m_at < count) {
    std::copy(m_buffer.get() + m_at, m_buffer.get() + m_end, m_buffer.get());
    m_start += m_at;
    m_end -= m_at;
    m_at = 0;
    m_end += m_file.Read(m_buffer.get() + m_end, static_cast<unsigned>(most_taken - m_end));
    if (m_end < count) return nullptr;
  }
  const char* const taken = m_buffer.get() + m_at;
  m_at += count;
  return taken;
}

bool FileInput::read(char* out, std::uint32_t count) {
  const auto buffered = static_cast<std::uint32_t>(std::min<std::size_t>(count, m_end - m_at));
  std::copy_n(m_buffer.get() + m_at, buffered, out);
  m_at += buffered;
  if (buffered == count) return true;
  const std::uint32_t got = m_file.Read(out + buffered, count - buffered);
  m_start += m_at + got;
  m_at = m_end = 0;
  return got == count - buffered;
}

void FileInput::seek(std::uint64_t position) {
  if (position >= m_start && position - m_start <= m_end) {
    m_at = position - m_start;
    return;
  }
  m_start = std::min(position, m_length);
  m_at = m_end = 0;
  m_file.Seek(static_cast<std::int64_t>(m_start), CFile::begin);
}

}  // namespace native
