// Audio sources out of samples in memory, and a waveform queue that delivers in
// the order that a test wants.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "host/audio.h"

namespace support {

// One channel of a FakeAudCnt.
class FakeChannel final : public AudioFile {
 public:
  // 32-bit words with the audio in the low 24 bits.
  std::vector<std::int32_t> samples;
};

class FakeAudCnt final : public CAudCnt, public AudioFile {
 public:
  // All channels hold the same number of samples.
  FakeAudCnt(std::uint32_t samples_per_second, std::uint32_t sample_bits,
             std::vector<std::vector<std::int32_t>> channel_samples);

  [[nodiscard]] bool is_available() const override { return available; }
  [[nodiscard]] std::uint32_t sample_rate() const override { return rate; }
  [[nodiscard]] bool get_format(AudioFormat& out) const override;
  [[nodiscard]] AudioFile* file() const override;

  bool available = true;
  bool format_known = true;
  std::uint32_t rate;
  AudioFormat format;
  std::vector<std::unique_ptr<FakeChannel>> channels;
};

class ScriptedAudio final : public AudioService {
 public:
  enum class Order { as_asked, backwards };
  struct Request {
    AudioFile* file = nullptr;
    std::int64_t position = 0;
    std::uint32_t count = 0;
    WaveformCallback callback = nullptr;
    void* packet = nullptr;
  };

  AudioFile* channel_file(AudioFile* file, int channel) override;
  int enable_waveforms(int on) override;
  void add_waveform_request(AudioFile* file, std::int64_t position, std::uint32_t count,
                            WaveformCallback callback, void* packet) override;
  void poll_waveforms() override;
  void cancel_waveform_requests(WaveformCallback callback) override;
  void reindex_omf_source(int old_index, int new_index) override;

  // Which of the waiting requests a poll delivers next: the places of `picks`
  // while they last (counted from 0 in the queue as it then stands, brought into
  // it when too large), then by `order`.
  std::deque<std::size_t> picks;
  Order order = Order::as_asked;
  // The most requests that one poll delivers; 0 for all.
  std::size_t deliver_at_once = 1;
  // The nth delivery (from 1) comes with the error flag; 0 for none.
  int error_at_delivery = 0;
  // What enable_waveforms answers for on and for off.
  int enable_result = 0;
  int disable_result = 0;

  // Called by a poll that finds nothing to deliver.
  std::function<void()> on_idle_poll;

  std::vector<int> enabled;
  // Every request ever made, and those that still wait.
  std::vector<Request> requested;
  std::deque<Request> waiting;
  int deliveries = 0;
  int cancels = 0;
  std::vector<std::pair<int, int>> reindexed;

 private:
  void deliver_one();
};

}  // namespace support
