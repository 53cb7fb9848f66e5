#include "aafobj/essence/sound_writer.h"

namespace aafobj {
namespace {

constexpr std::uint64_t max_file_bytes = 0x7fffffff;
constexpr std::uint32_t max_bits = 64;
constexpr std::uint32_t max_channels = 0xffff;

}  // namespace

Result SoundWriter::set_format(const SoundFormat& format) {
  const bool has_samples = format.bits > 0 && format.bits <= max_bits && format.channels > 0 &&
                           format.channels <= max_channels;
  if (m_data_bytes > 0 || !has_samples) return Result::invalid_argument;
  m_format = format;
  return Result::ok;
}

Result SoundWriter::write(std::span<const std::byte> bytes) {
  if (bytes.empty()) return Result::ok;
  const std::vector<std::byte> head = sound_header(m_codec, m_format, 0);
  if (m_codec != SoundCodec::pcm && bytes.size() > max_file_bytes - head.size() - m_data_bytes) {
    return Result::too_large;
  }
  if (m_data_bytes == 0 && !head.empty()) {
    if (const Result r = m_sink->write_at(0, head); r != Result::ok) return r;
    m_head_bytes = head.size();
  }
  const Result r = m_sink->write_at(m_head_bytes + m_data_bytes, bytes);
  if (r == Result::ok) m_data_bytes += bytes.size();
  return r;
}

Result SoundWriter::finish() {
  if (m_head_bytes > 0) {
    const Result r = m_sink->write_at(0, sound_header(m_codec, m_format, m_data_bytes));
    if (r != Result::ok) return r;
  }
  return m_sink->finish();
}

}  // namespace aafobj
