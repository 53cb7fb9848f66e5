// The host's audio library: sources, their format, and blocks of samples on
// request.
#pragma once

#include <cstdint>

#include "host/api.h"
#include "host/framework/object.h"

struct AudioFormat {
  // Bits per sample, 16 or 24.
  std::uint32_t sample_bits = 0;
  // Samples of each channel.
  std::uint64_t total_samples = 0;
  std::uint32_t channels = 0;
};

// A host's handle of an audio file, or of one channel of it. Compared by
// address, owned by the host.
class EDL_API AudioFile {
 public:
  virtual ~AudioFile() = default;
};

// One audio source of the host's. The library never looks into it: a pointer is
// an identity, compared by address.
class EDL_API CAudCnt : public CObject {
 public:
  [[nodiscard]] virtual bool is_available() const = 0;
  // Samples per second.
  [[nodiscard]] virtual std::uint32_t sample_rate() const = 0;
  [[nodiscard]] virtual bool get_format(AudioFormat& format) const = 0;
  [[nodiscard]] virtual AudioFile* file() const = 0;
};

// Called from inside LAWaveformPoll. `samples` are 32-bit words, one a sample,
// with the audio in the low 24 bits; they stand until the call returns. `error`
// is nonzero when the block could not be read.
using WaveformCallback = void (*)(std::int32_t* samples, void* packet, int error);

class EDL_API AudioService {
 public:
  virtual ~AudioService() = default;
  // LFAGetAudioFile: one channel (from 0) of a file; null when it has none such.
  [[nodiscard]] virtual AudioFile* channel_file(AudioFile* file, int channel) = 0;
  // LAEnableWaveforms: 0 on success.
  [[nodiscard]] virtual int enable_waveforms(int on) = 0;
  // LAAddWaveformRequest: queues one block of `count` samples from `position`.
  virtual void add_waveform_request(AudioFile* file, std::int64_t position, std::uint32_t count,
                                    WaveformCallback callback, void* packet) = 0;
  // LAWaveformPoll: delivers completed requests, in any order.
  virtual void poll_waveforms() = 0;
  // LACancelWaveformRequests: drops the requests of this callback.
  virtual void cancel_waveform_requests(WaveformCallback callback) = 0;
  // LyraReindexOMFSource: a source of the interchange job has a new number.
  virtual void reindex_omf_source(int old_index, int new_index) = 0;
};
