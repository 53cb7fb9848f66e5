// One audio file, read a channel at a time. The only place that knows the library
// behind it.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace embedded {

struct SoundFormat {
  std::uint32_t samples_per_second = 0;
  // 16 for what was stored in 16 bits or fewer, 24 for all else.
  std::uint32_t sample_bits = 0;
  std::uint32_t channels = 0;
  // Samples of each channel.
  std::uint64_t total_samples = 0;

  friend bool operator==(const SoundFormat&, const SoundFormat&) = default;
};

class SoundFile {
 public:
  // Null when there is no such file, or it is none that can be read as audio. A
  // path is UTF-8.
  [[nodiscard]] static std::unique_ptr<SoundFile> open(const std::string& path);
  virtual ~SoundFile() = default;

  [[nodiscard]] virtual const SoundFormat& format() const = 0;
  // Fills `out` with the samples of a channel (from 0) from `position` on, each a
  // signed number of 24 bits; silence from the end of the file on. False when the
  // file cannot be read as far as it says it goes, or has no such channel.
  [[nodiscard]] virtual bool read(std::uint32_t channel, std::uint64_t position,
                                  std::span<std::int32_t> out) = 0;
};

}  // namespace embedded
