#include "embedded/raw_audio.h"

#include <sndfile.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>
#include <vector>

namespace embedded {

namespace {

constexpr std::uint32_t most_channels = 1024;
constexpr std::size_t block_frames = 65536;

int subtype_of(std::uint32_t bits) {
  switch (bits) {
    case 8:
      return SF_FORMAT_PCM_U8;
    case 16:
      return SF_FORMAT_PCM_16;
    case 24:
      return SF_FORMAT_PCM_24;
    case 32:
      return SF_FORMAT_PCM_32;
    default:
      return 0;
  }
}

// Files of these kinds begin with their names.
bool has_head(std::ifstream& file) {
  std::array<char, 4> head{};
  file.read(head.data(), head.size());
  const std::string_view name(head.data(), static_cast<std::size_t>(file.gcount()));
  file.clear();
  file.seekg(0);
  return name == "RIFF" || name == "RF64" || name == "FORM";
}

struct Closer {
  void operator()(SNDFILE* file) const { sf_close(file); }
};

// Whole samples of all channels; what is left over at the end goes.
bool copy_samples(std::ifstream& from, const std::string& to, const RawAudioFormat& format,
                  int subtype) {
  SF_INFO info{};
  info.samplerate = static_cast<int>(format.sample_rate);
  info.channels = static_cast<int>(format.channels);
  info.format = SF_FORMAT_RF64 | subtype;
  std::unique_ptr<SNDFILE, Closer> out(sf_open(to.c_str(), SFM_WRITE, &info));
  if (!out) return false;
  sf_command(out.get(), SFC_RF64_AUTO_DOWNGRADE, nullptr, SF_TRUE);
  const std::size_t frame = format.sample_bits / 8 * format.channels;
  std::vector<char> bytes(frame * block_frames);
  while (from) {
    from.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const auto whole =
        static_cast<sf_count_t>(static_cast<std::size_t>(from.gcount()) / frame * frame);
    if (sf_write_raw(out.get(), bytes.data(), whole) != whole) return false;
  }
  // The head gets its sizes now, for which there may be no room.
  return !from.bad() && sf_close(out.release()) == 0;
}

}  // namespace

bool make_playable(const std::string& path, const RawAudioFormat& format) {
  const int subtype = subtype_of(format.sample_bits);
  const bool sensible = format.channels >= 1 && format.channels <= most_channels &&
                        format.sample_rate >= 1 && format.sample_rate <= 0x7FFFFFFF;
  std::ifstream from(path, std::ios::binary);
  if (subtype == 0 || !sensible || !from || has_head(from)) return false;
  const std::string playable = path + ".playable";
  std::error_code failure;
  const bool copied = copy_samples(from, playable, format, subtype);
  if (copied) std::filesystem::rename(playable, path, failure);
  if (!copied || failure) {
    std::filesystem::remove(playable, failure);
    return false;
  }
  return true;
}

}  // namespace embedded
