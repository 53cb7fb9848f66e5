#include "embedded/sound_file.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace embedded {

namespace {

// Values held at once while the channels of a file are parted.
constexpr std::uint64_t piece_values = 1 << 17;
// A file that says it is longer than this, which is 66 days at 192000, lies.
constexpr std::uint64_t most_samples = std::uint64_t{1} << 40;
constexpr double full_scale = 8388608.0;

// Codings that are not whole numbers, and so are read as fractions of full scale.
bool is_fractional(int format) {
  switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_FLOAT:
    case SF_FORMAT_DOUBLE:
    case SF_FORMAT_VORBIS:
    case SF_FORMAT_OPUS:
    case SF_FORMAT_MPEG_LAYER_I:
    case SF_FORMAT_MPEG_LAYER_II:
    case SF_FORMAT_MPEG_LAYER_III:
      return true;
    default:
      return false;
  }
}

std::uint32_t bits_of(int format) {
  switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_ULAW:
    case SF_FORMAT_ALAW:
    case SF_FORMAT_ALAC_16:
    case SF_FORMAT_DPCM_8:
    case SF_FORMAT_DPCM_16:
    case SF_FORMAT_IMA_ADPCM:
    case SF_FORMAT_MS_ADPCM:
    case SF_FORMAT_GSM610:
      return 16;
    default:
      return 24;
  }
}

std::int32_t whole(double value) {
  if (std::isnan(value)) return 0;
  return static_cast<std::int32_t>(
      std::lrint(std::clamp(value * full_scale, -full_scale, full_scale - 1.0)));
}

class Reader final : public SoundFile {
 public:
  explicit Reader(SNDFILE* file, const SF_INFO& info)
      : file_(file), fractional_(is_fractional(info.format)) {
    format_.samples_per_second = static_cast<std::uint32_t>(info.samplerate);
    format_.sample_bits = bits_of(info.format);
    format_.channels = static_cast<std::uint32_t>(info.channels);
    format_.total_samples = static_cast<std::uint64_t>(info.frames);
  }
  ~Reader() override { ::sf_close(file_); }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  [[nodiscard]] const SoundFormat& format() const override { return format_; }

  bool read(std::uint32_t channel, std::uint64_t position, std::span<std::int32_t> out) override {
    if (channel >= format_.channels) return false;
    const std::uint64_t left =
        position < format_.total_samples ? format_.total_samples - position : 0;
    const auto there = static_cast<std::size_t>(std::min<std::uint64_t>(left, out.size()));
    std::fill(out.begin() + static_cast<std::ptrdiff_t>(there), out.end(), 0);
    if (there == 0) return true;
    if (!go_to(position)) return false;
    const std::size_t piece =
        static_cast<std::size_t>(std::max<std::uint64_t>(piece_values / format_.channels, 1));
    for (std::size_t done = 0; done < there;) {
      const std::size_t wanted = std::min(piece, there - done);
      if (!read_piece(channel, out.subspan(done, wanted))) return false;
      done += wanted;
    }
    return true;
  }

 private:
  bool go_to(std::uint64_t position) {
    if (position == position_) return true;
    const auto wanted = static_cast<sf_count_t>(position);
    if (::sf_seek(file_, wanted, SEEK_SET) != wanted) return false;
    position_ = position;
    return true;
  }

  bool read_piece(std::uint32_t channel, std::span<std::int32_t> out) {
    const std::size_t values = out.size() * format_.channels;
    const auto frames = static_cast<sf_count_t>(out.size());
    sf_count_t got = 0;
    if (fractional_) {
      fractions_.resize(values);
      got = ::sf_readf_double(file_, fractions_.data(), frames);
      for (std::size_t i = 0; i < out.size() && got == frames; ++i)
        out[i] = whole(fractions_[i * format_.channels + channel]);
    } else {
      numbers_.resize(values);
      got = ::sf_readf_int(file_, numbers_.data(), frames);
      // The numbers fill 32 bits from the top.
      for (std::size_t i = 0; i < out.size() && got == frames; ++i)
        out[i] = numbers_[i * format_.channels + channel] >> 8;
    }
    position_ = got == frames ? position_ + out.size() : unknown;
    return got == frames;
  }

  static constexpr std::uint64_t unknown = ~std::uint64_t{0};

  SNDFILE* file_;
  bool fractional_;
  SoundFormat format_;
  std::uint64_t position_ = 0;
  std::vector<int> numbers_;
  std::vector<double> fractions_;
};

bool is_usable(const SF_INFO& info) {
  return info.seekable != 0 && info.samplerate > 0 && info.channels > 0 && info.frames >= 0 &&
         static_cast<std::uint64_t>(info.frames) <= most_samples;
}

}  // namespace

std::unique_ptr<SoundFile> SoundFile::open(const std::string& path) {
  SF_INFO info{};
  SNDFILE* const file = ::sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) return nullptr;
  if (!is_usable(info)) {
    ::sf_close(file);
    return nullptr;
  }
  return std::make_unique<Reader>(file, info);
}

}  // namespace embedded
