// The host's audio library over files of this system.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "host/audio.h"

namespace embedded {

// Requests are queued as they come, read ahead by a thread of their own, a few
// blocks at a time, and delivered from the poll, one a poll and in the order in
// which they were asked for.
class EmbeddedAudio final : public AudioService {
 public:
  EmbeddedAudio();
  ~EmbeddedAudio() override;
  EmbeddedAudio(const EmbeddedAudio&) = delete;
  EmbeddedAudio& operator=(const EmbeddedAudio&) = delete;

  // The source that stands for an audio file, owned here and always the same for
  // the same file. Null when it cannot be read as audio.
  [[nodiscard]] CAudCnt* source(const std::string& path);
  // The path of a source that came from here; empty for any other.
  [[nodiscard]] std::string path_of(const CAudCnt* source) const;

  // Whether a file is one of the sources.
  [[nodiscard]] bool is_source(const std::string& path) const;

  AudioFile* channel_file(AudioFile* file, int channel) override;
  int enable_waveforms(int on) override;
  void add_waveform_request(AudioFile* file, std::int64_t position, std::uint32_t count,
                            WaveformCallback callback, void* packet) override;
  // Waits for the next block when it is not read yet. Delivers nothing when no
  // request is open or waveforms are not enabled. A block that could not be read
  // comes with the error flag, and its samples may then be null.
  void poll_waveforms() override;
  void cancel_waveform_requests(WaveformCallback callback) override;
  // Nothing here keeps the numbers of an interchange job.
  void reindex_omf_source(int, int) override {}

 private:
  class Queue;

  std::map<std::string, std::unique_ptr<CAudCnt>> sources_;
  std::unique_ptr<Queue> queue_;
};

}  // namespace embedded
