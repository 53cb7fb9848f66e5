#pragma once

#include <memory>
#include <span>

#include "aafobj/essence/essence_sink.h"
#include "aafobj/essence/sound_header.h"

namespace aafobj {

// Writes one sound file to a sink: the head before the first samples, the samples as they are
// given, and at the end the head once more with its sizes. Without samples nothing is written.
class SoundWriter {
 public:
  SoundWriter(SoundCodec codec, std::unique_ptr<EssenceSink> sink)
      : m_codec(codec), m_sink(std::move(sink)) {}

  const SoundFormat& format() const { return m_format; }
  // Errors: invalid_argument once samples have been written, or for a format without samples.
  Result set_format(const SoundFormat& format);

  SoundCodec codec() const { return m_codec; }
  std::uint64_t data_bytes() const { return m_data_bytes; }
  std::uint64_t frames() const { return m_data_bytes / m_format.frame_bytes(); }

  // Samples of all channels, in the byte order of the file. Errors: too_large when a size of
  // the head would pass 2 GiB, which raw PCM has none of; those of the sink.
  Result write(std::span<const std::byte> bytes);
  Result finish();

 private:
  SoundCodec m_codec;
  std::unique_ptr<EssenceSink> m_sink;
  SoundFormat m_format;
  std::uint64_t m_head_bytes = 0;
  std::uint64_t m_data_bytes = 0;
};

}  // namespace aafobj
