#include "tests/support/scripted_audio.h"

#include <algorithm>

namespace support {

FakeAudCnt::FakeAudCnt(std::uint32_t samples_per_second, std::uint32_t sample_bits,
                       std::vector<std::vector<std::int32_t>> channel_samples)
    : rate(samples_per_second) {
  format.sample_bits = sample_bits;
  format.channels = static_cast<std::uint32_t>(channel_samples.size());
  format.total_samples = channel_samples.empty() ? 0 : channel_samples.front().size();
  for (auto& samples : channel_samples) {
    channels.push_back(std::make_unique<FakeChannel>());
    channels.back()->samples = std::move(samples);
  }
}

bool FakeAudCnt::get_format(AudioFormat& out) const {
  if (format_known) out = format;
  return format_known;
}

AudioFile* FakeAudCnt::file() const {
  // The handle is this object; whoever holds it only compares it and hands it
  // back to channel_file.
  return const_cast<FakeAudCnt*>(this);
}

AudioFile* ScriptedAudio::channel_file(AudioFile* file, int channel) {
  const auto* const source = dynamic_cast<FakeAudCnt*>(file);
  if (source == nullptr || channel < 0) return nullptr;
  const auto index = static_cast<std::size_t>(channel);
  return index < source->channels.size() ? source->channels[index].get() : nullptr;
}

int ScriptedAudio::enable_waveforms(int on) {
  enabled.push_back(on);
  return on != 0 ? enable_result : disable_result;
}

void ScriptedAudio::add_waveform_request(AudioFile* file, std::int64_t position,
                                         std::uint32_t count, WaveformCallback callback,
                                         void* packet) {
  requested.push_back({file, position, count, callback, packet});
  waiting.push_back(requested.back());
}

void ScriptedAudio::poll_waveforms() {
  if (waiting.empty() && on_idle_poll) on_idle_poll();
  const std::size_t most = deliver_at_once == 0 ? waiting.size() : deliver_at_once;
  for (std::size_t i = 0; i < most && !waiting.empty(); ++i)
    deliver_one();
}

void ScriptedAudio::deliver_one() {
  std::size_t pick = order == Order::as_asked ? 0 : waiting.size() - 1;
  if (!picks.empty()) {
    pick = std::min(picks.front(), waiting.size() - 1);
    picks.pop_front();
  }
  const Request request = waiting[pick];
  waiting.erase(waiting.begin() + static_cast<std::ptrdiff_t>(pick));
  ++deliveries;

  // A block of its own for each delivery, exactly as long as the request: the
  // memory checker then sees a caller that reads past it or keeps it.
  std::vector<std::int32_t> block(request.count);
  if (const auto* const channel = dynamic_cast<FakeChannel*>(request.file); channel != nullptr) {
    for (std::size_t i = 0; i < block.size(); ++i) {
      const std::uint64_t at = static_cast<std::uint64_t>(request.position) + i;
      if (at < channel->samples.size()) block[i] = channel->samples[at];
    }
  }
  request.callback(block.data(), request.packet, deliveries == error_at_delivery ? 1 : 0);
}

void ScriptedAudio::cancel_waveform_requests(WaveformCallback callback) {
  ++cancels;
  std::erase_if(waiting, [callback](const Request& r) { return r.callback == callback; });
}

void ScriptedAudio::reindex_omf_source(int old_index, int new_index) {
  reindexed.emplace_back(old_index, new_index);
}

}  // namespace support
